/// @file
/// ValidityModel: as of when the certificates of a path have to be valid.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// ValidityModel ::= SEQUENCE {
//     validityModelId    OBJECT IDENTIFIER,
//     validityModelInfo  ANY DEFINED BY validityModelId OPTIONAL }
template <class Form>
struct ValidityModelOf {
  static constexpr std::string_view name = "ValidityModel";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.8301.3.5"_oid;

  ObjectIdentifierOf<Form> validityModelId{};
  std::optional<AnyOf<Form>> validityModelInfo{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("validityModelId", self.validityModelId) && visit("validityModelInfo", self.validityModelInfo);
  }
};
using ValidityModel = ValidityModelOf<Owned>;       ///< owns what it holds
using ValidityModelView = ValidityModelOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<ValidityModelView>());

}  // namespace ketra
