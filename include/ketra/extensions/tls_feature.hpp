/// @file
/// TLSFeature: what a TLS server with the certificate must do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// Features ::= SEQUENCE OF INTEGER                               RFC 7633 4.1
template <class Form>
struct TlsFeatureOf {
  static constexpr std::string_view name = "TLSFeature";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.24"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, IntegerOf<Form>> features{};  ///< of TLS extensions: 5 is status_request

  /// "status_request", "status_request_v2"; numbers of other features.
  std::string text() const {
    std::string text;
    for (const auto &member : features) {
      const auto *const feature = detail::goodMember(member);
      if (!text.empty()) text += ", ";
      if (feature == nullptr) {
        text += "(malformed)";
      } else {
        const int64_t number = feature->number().value_or(0);
        text += number == 5 ? "status_request" : number == 17 ? "status_request_v2" : feature->text();
      }
    }
    return text;
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("features", self.features);
  }
};
using TlsFeature = TlsFeatureOf<Owned>;       ///< owns what it holds
using TlsFeatureView = TlsFeatureOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
