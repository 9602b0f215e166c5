/// @file
/// Algorithms and their parameters.
#pragma once

#include <optional>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// AlgorithmIdentifier ::= SEQUENCE {                             RFC 5280 4.1.1.2
//     algorithm   OBJECT IDENTIFIER,
//     parameters  ANY DEFINED BY algorithm OPTIONAL }
template <class Form>
struct AlgorithmIdentifierOf {
  ObjectIdentifierOf<Form> algorithm{};
  std::optional<AnyOf<Form>> parameters{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("algorithm", self.algorithm) && visit("parameters", self.parameters);
  }
};
using AlgorithmIdentifier = AlgorithmIdentifierOf<Owned>;       ///< owns what it holds
using AlgorithmIdentifierView = AlgorithmIdentifierOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AlgorithmIdentifierView>());

}  // namespace ketra
