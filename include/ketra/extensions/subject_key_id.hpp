/// @file
/// SubjectKeyIdentifier: tells the keys of a subject apart.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// SubjectKeyIdentifier ::= KeyIdentifier                         RFC 5280 4.2.1.2
// KeyIdentifier ::= OCTET STRING
template <class Form>
struct SubjectKeyIdOf {
  static constexpr std::string_view name = "SubjectKeyIdentifier";
  static constexpr OidLiteral oid = "2.5.29.14"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  OctetStringOf<Form> keyIdentifier{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("keyIdentifier", self.keyIdentifier);
  }
};
using SubjectKeyId = SubjectKeyIdOf<Owned>;       ///< owns what it holds
using SubjectKeyIdView = SubjectKeyIdOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
