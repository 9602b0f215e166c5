/// @file
/// PolicyConstraints: what paths through a CA need.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// PolicyConstraints ::= SEQUENCE {                               RFC 5280 4.2.1.11
//     requireExplicitPolicy  [0] SkipCerts OPTIONAL,
//     inhibitPolicyMapping   [1] SkipCerts OPTIONAL }
// SkipCerts ::= INTEGER (0..MAX)
template <class Form>
struct PolicyConstraintsOf {
  static constexpr std::string_view name = "PolicyConstraints";
  static constexpr OidLiteral oid = "2.5.29.36"_oid;

  std::optional<IntegerOf<Form>> requireExplicitPolicy{};
  std::optional<IntegerOf<Form>> inhibitPolicyMapping{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("requireExplicitPolicy", self.requireExplicitPolicy, context(0) | natural) &&
           visit("inhibitPolicyMapping", self.inhibitPolicyMapping, context(1) | natural);
  }
};
using PolicyConstraints = PolicyConstraintsOf<Owned>;       ///< owns what it holds
using PolicyConstraintsView = PolicyConstraintsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PolicyConstraintsView>());

}  // namespace ketra
