/// @file
/// SignedCertificateTimestampList: promises of logs to publish a certificate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

/// The fields of a SignedCertificateTimestamp of version 1 (RFC 6962 3.2).
struct SctFields {
  View logId{};            ///< 32 octets: SHA-256 of the key of the log
  uint64_t timestamp = 0;  ///< milliseconds since 1970
  View extensions{};       ///< CtExtensions; none are defined for this version
  uint8_t hash = 4;        ///< HashAlgorithm (RFC 5246 7.4.1.4.1): 4 is SHA-256
  uint8_t signature = 3;   ///< SignatureAlgorithm: 1 is RSA, 3 is ECDSA
  View signatureOctets{};  ///< the signature itself
};

/// A SignedCertificateTimestamp: its octets. The fields are those of version 1; other versions are kept as they are.
template <class Form>
class SctOf {
 public:
  SctOf() = default;
  /// Of version 1. What does not fit, such as an identifier of other than 32 octets, is refused when it is set.
  explicit SctOf(const SctFields &fields) {
    static_assert(std::is_same_v<Form, Owned>, "a view would point into nothing");
    Writer out;
    out.octet(0);
    out.octets(fields.logId);
    for (int shift = 56; shift >= 0; shift -= 8) out.octet(static_cast<unsigned>(fields.timestamp >> shift & 0xFF));
    const auto vector = [&out](View octets) {
      const std::size_t place = detail::beginTls(out);
      out.octets(octets);
      detail::endTls(place, out);
    };
    vector(fields.extensions);
    out.octet(fields.hash);
    out.octet(fields.signature);
    vector(fields.signatureOctets);
    octets_ = detail::contentAs<Form>(out.written());
  }

  View octets() const KETRA_LIFETIMEBOUND { return View(octets_); }  ///< all of it
  /// Its first octet: 0 for version 1.
  uint8_t version() const { return octets().empty() ? 0 : octets()[0]; }
  /// The fields of version 1; none of another.
  std::optional<SctFields> fields() const KETRA_LIFETIMEBOUND {
    SctFields fields;
    Fault fault;
    if (version() != 0 || !parse(octets(), fields, fault)) return std::nullopt;
    return fields;
  }
  /// "2014-11-13T01:54:49.579Z log b0cc... ECDSA with SHA-256".
  std::string text() const {
    static constexpr const char *kHashes[] = {"none", "MD5", "SHA-1", "SHA-224", "SHA-256", "SHA-384", "SHA-512"};
    static constexpr const char *kSignatures[] = {"anonymous", "RSA", "DSA", "ECDSA"};
    const auto of = fields();
    if (!of) return "version " + std::to_string(version() + 1) + ' ' + detail::hexOf(octets());
    const bool isTime = of->timestamp < static_cast<uint64_t>(detail::kTimeEnd) / 1000;
    std::string text = isTime ? timeText(Time(std::chrono::milliseconds(static_cast<int64_t>(of->timestamp))))
                              : std::to_string(of->timestamp) + " ms";
    text += " log " + detail::hexOf(of->logId) + ' ';
    text += of->signature < 4 ? kSignatures[of->signature] : "signature " + std::to_string(of->signature);
    text += " with ";
    text += of->hash < 7 ? kHashes[of->hash] : "hash " + std::to_string(of->hash);
    if (!of->extensions.empty()) text += " extensions " + detail::hexOf(of->extensions);
    return text;
  }

  friend bool operator==(const SctOf &a, const SctOf &b) { return a.octets() == b.octets(); }
  friend bool operator!=(const SctOf &a, const SctOf &b) { return !(a == b); }

 private:
  friend struct Leaf<SctOf>;

  static bool take(Reader &in, std::size_t size, View &taken, Fault &fault) {
    if (in.left() < size) return detail::fail(fault, Reason::TlsEnded, in.at, size, in.left());
    taken = View(in.at, in.at + size);
    in.at += size;
    return true;
  }
  static bool takeVector(Reader &in, View &taken, Fault &fault) {
    const Reader before = in;
    View length;
    if (take(in, 2, length, fault) && take(in, std::size_t{length[0]} * 256 + length[1], taken, fault)) return true;
    in = before;
    return false;
  }
  static bool parse(View octets, SctFields &fields, Fault &fault) {
    Reader in(octets);
    View version, timestamp, algorithms;
    if (!take(in, 1, version, fault) || !take(in, 32, fields.logId, fault) || !take(in, 8, timestamp, fault) ||
        !takeVector(in, fields.extensions, fault) || !take(in, 2, algorithms, fault) ||
        !takeVector(in, fields.signatureOctets, fault)) {
      return false;
    }
    for (const uint8_t octet : timestamp) fields.timestamp = fields.timestamp << 8 | octet;
    fields.hash = algorithms[0];
    fields.signature = algorithms[1];
    return in.done() || detail::fail(fault, Reason::TlsTrailing, in.at, in.left());
  }

  typename Form::Content octets_{};
};
using Sct = SctOf<Owned>;       ///< owns what it holds
using SctView = SctOf<Viewed>;  ///< points to what it was read from

/// By itself an OCTET STRING of the octets; in lists as RFC 6962 3.3 has it.
template <class Form>
struct Leaf<SctOf<Form>> {
  using Value = SctOf<Form>;
  static constexpr LeafKind kind = LeafKind::Sct;
  static constexpr uint8_t identifier = 0x04;
  static constexpr bool inSegments = false;
  static bool next(Reader &in, Tlv &tlv, Fault &fault) {
    const uint8_t *const start = in.at;
    View octets;
    if (!Value::takeVector(in, octets, fault)) return false;
    tlv = {identifier, start, octets.begin(), octets.end(), octets.end()};
    return true;
  }
  static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    SctFields fields;
    const View octets = tlv.contents();
    if (octets.empty()) return detail::fail(fault, Reason::TlsEnded, octets.begin(), 1);
    if (octets[0] == 0 && !Value::parse(octets, fields, fault)) return false;
    value.octets_ = detail::contentAs<Form>(octets);
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.octets()); }
  static View content(const Value &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const Value &value) { return value.text(); }
};

// SignedCertificateTimestampList ::= OCTET STRING                RFC 6962 3.3
//
// In it, SerializedSCT sct_list <1..2^16-1>. An empty list occurs in practice.
template <class Form>
struct SctListOf {
  static constexpr std::string_view name = "SignedCertificateTimestampList";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.11129.2.4.2"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, SctOf<Form>> timestamps{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("timestamps", self.timestamps, nonEmptyWhenSet);
  }
};
using SctList = SctListOf<Owned>;       ///< owns what it holds
using SctListView = SctListOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
