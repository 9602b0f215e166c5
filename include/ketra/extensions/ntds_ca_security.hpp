/// @file
/// NTDSCASecurity: the security identifier of an account.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// NTDSCASecurity ::= GeneralNames
template <class Form>
struct NtdsCaSecurityOf {
  static constexpr std::string_view name = "NTDSCASecurity";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.25.2"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, GeneralNameOf<Form>> names{};  ///< otherNames: the SID as text, in an OCTET STRING

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("names", self.names, nonEmptyWhenSet);
  }
};
using NtdsCaSecurity = NtdsCaSecurityOf<Owned>;       ///< owns what it holds
using NtdsCaSecurityView = NtdsCaSecurityOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
