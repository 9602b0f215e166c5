/// @file
/// Adobe's extensions: what helps to sign documents for long.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// TimeStamp ::= SEQUENCE {
//     version       INTEGER { v1(1) },
//     location      GeneralName,
//     requiresAuth  BOOLEAN DEFAULT FALSE }
template <class Form>
struct AdobeTimestampOf {
  static constexpr std::string_view name = "AdobeTimestamp";
  static constexpr OidLiteral oid = "1.2.840.113583.1.1.9.1"_oid;

  IntegerOf<Form> version{};
  GeneralNameOf<Form> location{};  ///< of the server
  Default<bool, false> requiresAuth{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version) && visit("location", self.location) &&
           visit("requiresAuth", self.requiresAuth);
  }
};
using AdobeTimestamp = AdobeTimestampOf<Owned>;       ///< owns what it holds
using AdobeTimestampView = AdobeTimestampOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AdobeTimestampView>());

// ArchiveRevInfo ::= SEQUENCE { version INTEGER { v1(1) } }
template <class Form>
struct AdobeArchiveRevInfoOf {
  static constexpr std::string_view name = "AdobeArchiveRevInfo";
  static constexpr OidLiteral oid = "1.2.840.113583.1.1.9.2"_oid;

  IntegerOf<Form> version{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version);
  }
};
using AdobeArchiveRevInfo = AdobeArchiveRevInfoOf<Owned>;       ///< owns what it holds
using AdobeArchiveRevInfoView = AdobeArchiveRevInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AdobeArchiveRevInfoView>());

}  // namespace ketra
