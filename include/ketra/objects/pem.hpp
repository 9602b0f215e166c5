/// @file
/// Textual encodings (RFC 7468): blocks in text of any kind, one after the other, with whatever stands between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "ketra/asn1/fault.hpp"
#include "ketra/objects/recognise.hpp"

namespace ketra {

/// Textual encodings.
namespace pem {

/// A block, from its BEGIN line on. It points into the text.
struct Block {
  std::string_view label{};  ///< what stands after BEGIN
  std::string_view body{};   ///< between the two boundary lines; empty when the block is not complete
  bool isComplete = false;   ///< an END line with the same label is there
  bool isCut = false;        ///< the text may end too early to know whether the block is complete
  std::size_t begin = 0;     ///< where the block begins in the text
  std::size_t end = 0;       ///< after it, where to look for the next one

  /// What the label says that it is.
  ObjectKind kind() const;
  /// The octets, or what is wrong: a Base64 fault, at the character that is none. Those of a TRUSTED CERTIFICATE end
  /// where the certificate does.
  Result<Octets> decode() const;
};

}  // namespace pem

namespace detail {

inline constexpr std::string_view kPemBegin = "-----BEGIN ", kPemEnd = "-----END ", kPemDashes = "-----";

inline bool startsAt(std::string_view text, std::size_t at, std::string_view what) {
  return text.size() - at >= what.size() && text.compare(at, what.size(), what) == 0;
}

// Where the next boundary at the start of a line is, after a byte order mark too.
inline std::size_t findBoundary(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find(kPemDashes, from); at != text.npos; at = text.find(kPemDashes, at + 1)) {
    const bool startsLine =
        at == 0 || text[at - 1] == '\n' || text[at - 1] == '\r' || (at == 3 && startsAt(text, 0, "\xEF\xBB\xBF"));
    if (startsLine && (startsAt(text, at, kPemBegin) || startsAt(text, at, kPemEnd))) return at;
  }
  return text.npos;
}

inline int base64Value(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}

struct PemLabel {
  std::string_view label;
  ObjectKind kind;
};
inline constexpr PemLabel kPemLabels[] = {
    {"CERTIFICATE", ObjectKind::certificate},
    {"X509 CERTIFICATE", ObjectKind::certificate},
    {"TRUSTED CERTIFICATE", ObjectKind::certificate},
    {"X509 CRL", ObjectKind::crl},
    {"CERTIFICATE REQUEST", ObjectKind::request},
    {"NEW CERTIFICATE REQUEST", ObjectKind::request},
    {"PKCS7", ObjectKind::pkcs7},
    {"PKCS #7 SIGNED DATA", ObjectKind::pkcs7},
    {"CMS", ObjectKind::pkcs7},
    {"PRIVATE KEY", ObjectKind::privateKey},
    {"RSA PRIVATE KEY", ObjectKind::privateKey},
    {"EC PRIVATE KEY", ObjectKind::privateKey},
    {"DSA PRIVATE KEY", ObjectKind::privateKey},
    {"OPENSSH PRIVATE KEY", ObjectKind::privateKey},
    {"ENCRYPTED PRIVATE KEY", ObjectKind::encryptedPrivateKey},
    {"PUBLIC KEY", ObjectKind::publicKey},
    {"RSA PUBLIC KEY", ObjectKind::publicKey},
    {"OCSP RESPONSE", ObjectKind::ocspResponse},
    {"ATTRIBUTE CERTIFICATE", ObjectKind::attributeCertificate},
};

}  // namespace detail

namespace pem {

/// Where the next BEGIN line starts, from `from` on; npos when there is none. So many octets at the end of a text can
/// belong to one that has only begun, or show that one starts a line: kOverlap.
inline std::size_t find(std::string_view text, std::size_t from) {
  std::size_t at = detail::findBoundary(text, from);
  while (at != text.npos && !detail::startsAt(text, at, detail::kPemBegin)) at = detail::findBoundary(text, at + 1);
  return at;
}
inline constexpr std::size_t kOverlap = sizeof "\n-----BEGIN" - 1;  ///< see find()

/// The block whose BEGIN line starts at `begin`, as find() gives it.
inline Block read(std::string_view text, std::size_t begin) {
  const auto until = [&](std::size_t at) { return at == text.npos ? text.size() : at; };
  Block block;
  block.begin = begin;
  const std::size_t labelAt = begin + detail::kPemBegin.size();
  const std::size_t lineEnd = until(text.find_first_of("\r\n", labelAt));
  block.label = text.substr(labelAt, lineEnd - labelAt);
  block.end = lineEnd;
  block.isCut = lineEnd == text.size();
  const std::size_t dashes = block.label.find(detail::kPemDashes);
  if (dashes == text.npos) return block;
  block.label = block.label.substr(0, dashes);

  const std::size_t boundary = until(detail::findBoundary(text, lineEnd));
  block.end = boundary;
  block.isCut = boundary == text.size();
  if (!detail::startsAt(text, boundary, detail::kPemEnd)) return block;
  const std::size_t endLabel = boundary + detail::kPemEnd.size();
  const std::size_t endDashes = endLabel + block.label.size();
  block.isComplete = detail::startsAt(text, endLabel, block.label) && endDashes <= text.size() &&
                     detail::startsAt(text, endDashes, detail::kPemDashes);
  block.isCut = !block.isComplete && endDashes + detail::kPemDashes.size() > text.size();
  block.end = block.isComplete ? endDashes + detail::kPemDashes.size() : endLabel;
  if (block.isComplete) block.body = text.substr(lineEnd, boundary - lineEnd);
  return block;
}

/// Octets from base64 (RFC 4648 4), in which white space is skipped.
inline Result<Octets> decodeBase64(std::string_view text) {
  Octets octets;
  octets.reserve(text.size() / 4 * 3);
  uint32_t group = 0;
  std::size_t digits = 0, padding = 0;
  const View all(text);
  for (const uint8_t &at : all) {
    const auto c = static_cast<char>(at);
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    const int value = detail::base64Value(c);
    if (c == '=' && digits % 4 >= 2 && padding < 4 - digits % 4) {
      ++padding;
    } else if (value < 0 || padding != 0) {
      return Fault{Reason::Base64, at, 0, &at};
    } else {
      group = group << 6 | static_cast<uint32_t>(value);
      ++digits;
      // Every digit but the first of a group completes an octet.
      if (digits % 4 != 1) octets.push_back(static_cast<uint8_t>(group >> (6 - (digits + 3) % 4 * 2)));
    }
  }
  const std::size_t last = digits % 4 + padding;
  if (last != 0 && last != 4) return Fault{Reason::Base64Ended, 0, 0, all.end()};
  return octets;
}

inline ObjectKind Block::kind() const {
  for (const auto &each : detail::kPemLabels) {
    if (each.label == label) return each.kind;
  }
  return ObjectKind::none;
}

inline Result<Octets> Block::decode() const {
  if (!isComplete) return Fault{Reason::NoEndLine, 0, 0, View(label).begin()};
  Result<Octets> octets = decodeBase64(body);
  if (!octets || label != "TRUSTED CERTIFICATE") return octets;
  Tlv tlv;
  Fault ignored;
  Reader in{View(*octets)};
  if (ketra::detail::readTlv(in, tlv, ignored)) octets->resize(octets->size() - in.left());
  return octets;
}

/// The blocks of a text: an input range that can be walked any number of times. What stands between them is passed
/// over.
class Blocks {
 public:
  explicit Blocks(std::string_view text) : text_(text) {}  ///< of this text, which must outlive them

  class Iterator {
   public:
    /// What std::iterator_traits wants.
    /// @{
    using iterator_category = std::input_iterator_tag;
    using value_type = Block;
    using difference_type = std::ptrdiff_t;
    using pointer = const Block *;
    using reference = const Block &;
    /// @}

    Iterator() { block_.begin = std::string_view::npos; }
    explicit Iterator(std::string_view text) : text_(text) { ++*this; }
    /// The block, held by the iterator until it moves on.
    reference operator*() const { return block_; }
    pointer operator->() const { return &block_; }
    Iterator &operator++() {
      const std::size_t at = find(text_, block_.end);
      block_ = at == text_.npos ? *Iterator() : read(text_, at);
      return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const Iterator &a, const Iterator &b) { return a.block_.begin == b.block_.begin; }
    friend bool operator!=(const Iterator &a, const Iterator &b) { return !(a == b); }

   private:
    std::string_view text_;
    Block block_;
  };

  /// The first block, and the end.
  /// @{
  Iterator begin() const { return Iterator(text_); }
  Iterator end() const { return {}; }
  /// @}

 private:
  std::string_view text_;
};

}  // namespace pem

}  // namespace ketra
