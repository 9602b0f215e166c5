/// @file
/// Extensions that are one component.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// Another name for T. An extension derives from it: OCSPNoCheck ::= NULL is Scalar<Null>, with a name and an
// identifier.
template <class T>
struct Scalar {
  static constexpr Shape shape = Shape::Is;

  T value{};  ///< all there is

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("value", self.value);
  }
};

}  // namespace ketra
