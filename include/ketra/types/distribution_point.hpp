/// @file
/// The parts of distribution points, which CRLDistributionPoints, IssuingDistributionPoint and FreshestCRL share.
#pragma once

#include <optional>
#include <variant>

#include "ketra/asn1/write.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// DistributionPointName ::= CHOICE {                             RFC 5280 4.2.1.13
//     fullName                 [0] GeneralNames,
//     nameRelativeToCRLIssuer  [1] RelativeDistinguishedName }
template <class Form>
struct DistributionPointNameOf {
  static constexpr Shape shape = Shape::Choice;
  using FullName = ListOf<Form, GeneralNameOf<Form>>;      ///< the first alternative
  using RelativeName = RelativeDistinguishedNameOf<Form>;  ///< the second alternative

  std::variant<FullName, RelativeName> name{};  ///< whichever it is

  /// The alternative, or null when it is the other one.
  /// @{
  const FullName *fullName() const { return std::get_if<0>(&name); }
  const RelativeName *nameRelativeToCRLIssuer() const { return std::get_if<1>(&name); }
  /// @}

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.name, Alternative{"fullName", context(0) | nonEmptyWhenSet},
                        Alternative{"nameRelativeToCRLIssuer", context(1)});
  }
};
using DistributionPointName = DistributionPointNameOf<Owned>;       ///< owns what it holds
using DistributionPointNameView = DistributionPointNameOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<DistributionPointNameView>());

// ReasonFlags ::= BIT STRING {                                   RFC 5280 4.2.1.13
//     unused (0), keyCompromise (1), cACompromise (2), affiliationChanged (3), superseded (4),
//     cessationOfOperation (5), certificateHold (6), privilegeWithdrawn (7), aACompromise (8) }
template <class Form>
struct ReasonFlagsOf {
  static constexpr Shape shape = Shape::Bits;

  bool unused = false;
  bool keyCompromise = false;
  bool cACompromise = false;
  bool affiliationChanged = false;
  bool superseded = false;
  bool cessationOfOperation = false;
  bool certificateHold = false;
  bool privilegeWithdrawn = false;
  bool aACompromise = false;
  BitsOf<Form> nameless{};  ///< what was read, when bits beyond these are set

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("unused", self.unused, bit(0)) && visit("keyCompromise", self.keyCompromise, bit(1)) &&
           visit("cACompromise", self.cACompromise, bit(2)) &&
           visit("affiliationChanged", self.affiliationChanged, bit(3)) &&
           visit("superseded", self.superseded, bit(4)) &&
           visit("cessationOfOperation", self.cessationOfOperation, bit(5)) &&
           visit("certificateHold", self.certificateHold, bit(6)) &&
           visit("privilegeWithdrawn", self.privilegeWithdrawn, bit(7)) &&
           visit("aACompromise", self.aACompromise, bit(8)) && visit.nameless(self.nameless);
  }
};
using ReasonFlags = ReasonFlagsOf<Owned>;       ///< owns what it holds
using ReasonFlagsView = ReasonFlagsOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
