/// @file
/// NameConstraints: for which names a CA may issue.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// GeneralSubtree ::= SEQUENCE {                                  RFC 5280 4.2.1.10
//     base     GeneralName,
//     minimum  [0] BaseDistance DEFAULT 0,
//     maximum  [1] BaseDistance OPTIONAL }
template <class Form>
struct GeneralSubtreeOf {
  GeneralNameOf<Form> base{};
  Default<IntegerOf<Form>, 0> minimum{};
  std::optional<IntegerOf<Form>> maximum{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("base", self.base) && visit("minimum", self.minimum, context(0)) &&
           visit("maximum", self.maximum, context(1));
  }
};
using GeneralSubtree = GeneralSubtreeOf<Owned>;       ///< owns what it holds
using GeneralSubtreeView = GeneralSubtreeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<GeneralSubtreeView>());

// NameConstraints ::= SEQUENCE {                                 RFC 5280 4.2.1.10
//     permittedSubtrees  [0] GeneralSubtrees OPTIONAL,
//     excludedSubtrees   [1] GeneralSubtrees OPTIONAL }
// GeneralSubtrees ::= SEQUENCE SIZE (1..MAX) OF GeneralSubtree
template <class Form>
struct NameConstraintsOf {
  static constexpr std::string_view name = "NameConstraints";
  static constexpr OidLiteral oid = "2.5.29.30"_oid;

  std::optional<ListOf<Form, GeneralSubtreeOf<Form>>> permittedSubtrees{};
  std::optional<ListOf<Form, GeneralSubtreeOf<Form>>> excludedSubtrees{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("permittedSubtrees", self.permittedSubtrees, context(0) | nonEmpty) &&
           visit("excludedSubtrees", self.excludedSubtrees, context(1) | nonEmpty);
  }
};
using NameConstraints = NameConstraintsOf<Owned>;       ///< owns what it holds
using NameConstraintsView = NameConstraintsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<NameConstraintsView>());

}  // namespace ketra
