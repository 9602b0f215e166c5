/// @file
/// EntrustVersionInfo: by which version of its software Entrust issued the certificate.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// EntrustInfoFlags ::= BIT STRING {
//     keyUpdateAllowed (0), newExtensions (1), pKIXCertificate (2), enterpriseCategory (3), webCategory (4),
//     sETCategory (5) }
template <class Form>
struct EntrustInfoFlagsOf {
  static constexpr Shape shape = Shape::Bits;

  bool keyUpdateAllowed = false;
  bool newExtensions = false;
  bool pKIXCertificate = false;
  bool enterpriseCategory = false;
  bool webCategory = false;
  bool sETCategory = false;
  BitsOf<Form> nameless{};  ///< what was read, when it has bits beyond these

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("keyUpdateAllowed", self.keyUpdateAllowed, bit(0)) &&
           visit("newExtensions", self.newExtensions, bit(1)) &&
           visit("pKIXCertificate", self.pKIXCertificate, bit(2)) &&
           visit("enterpriseCategory", self.enterpriseCategory, bit(3)) &&
           visit("webCategory", self.webCategory, bit(4)) && visit("sETCategory", self.sETCategory, bit(5)) &&
           visit.nameless(self.nameless);
  }
};
using EntrustInfoFlags = EntrustInfoFlagsOf<Owned>;       ///< owns what it holds
using EntrustInfoFlagsView = EntrustInfoFlagsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<EntrustInfoFlagsView>());

// EntrustVersInfoSyntax ::= SEQUENCE {
//     entrustVers       GeneralString,
//     entrustInfoFlags  EntrustInfoFlags }
template <class Form>
struct EntrustVersionInfoOf {
  static constexpr std::string_view name = "EntrustVersionInfo";
  static constexpr OidLiteral oid = "1.2.840.113533.7.65.0"_oid;

  GeneralStringOf<Form> entrustVers{};  ///< "V7.1"
  EntrustInfoFlagsOf<Form> entrustInfoFlags{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("entrustVers", self.entrustVers) && visit("entrustInfoFlags", self.entrustInfoFlags);
  }
};
using EntrustVersionInfo = EntrustVersionInfoOf<Owned>;       ///< owns what it holds
using EntrustVersionInfoView = EntrustVersionInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<EntrustVersionInfoView>());

}  // namespace ketra
