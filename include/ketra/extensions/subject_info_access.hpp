/// @file
/// SubjectInfoAccess: where the subject offers information and services.
#pragma once

#include "ketra/extensions/authority_info_access.hpp"

namespace ketra {

// SubjectInfoAccessSyntax ::= SEQUENCE SIZE (1..MAX) OF AccessDescription       RFC 5280 4.2.2.2
template <class Form>
struct SubjectInfoAccessOf : AuthorityInfoAccessOf<Form> {
  static constexpr std::string_view name = "SubjectInfoAccess";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.11"_oid;
  static constexpr std::optional<bool> critical = false;
};
using SubjectInfoAccess = SubjectInfoAccessOf<Owned>;       ///< owns what it holds
using SubjectInfoAccessView = SubjectInfoAccessOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
