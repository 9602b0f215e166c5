/// @file
/// SMIMECapabilities: which algorithms the subject can use in S/MIME.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// SMIMECapability ::= SEQUENCE {                                 RFC 8551 2.5.2
//     capabilityID  OBJECT IDENTIFIER,
//     parameters    ANY DEFINED BY capabilityID OPTIONAL }
template <class Form>
struct SmimeCapabilityOf {
  ObjectIdentifierOf<Form> capabilityID{};
  std::optional<AnyOf<Form>> parameters{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("capabilityID", self.capabilityID) && visit("parameters", self.parameters);
  }
};
using SmimeCapability = SmimeCapabilityOf<Owned>;       ///< owns what it holds
using SmimeCapabilityView = SmimeCapabilityOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<SmimeCapabilityView>());

// SMIMECapabilities ::= SEQUENCE OF SMIMECapability              RFC 4262 2
template <class Form>
struct SmimeCapabilitiesOf {
  static constexpr std::string_view name = "SMIMECapabilities";
  static constexpr OidLiteral oid = "1.2.840.113549.1.9.15"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, SmimeCapabilityOf<Form>> capabilities{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("capabilities", self.capabilities);
  }
};
using SmimeCapabilities = SmimeCapabilitiesOf<Owned>;       ///< owns what it holds
using SmimeCapabilitiesView = SmimeCapabilitiesOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
