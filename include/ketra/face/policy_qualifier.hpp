/// @file
/// Policy qualifiers (RFC 5280 4.2.1.4).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/character_string.hpp"
#include "ketra/face/integer.hpp"

namespace ketra {
inline namespace face {

/// The two kinds of qualifiers.
namespace qualifier {
/// A kind of qualifier.
/// @{
inline constexpr detail::KnownIdentifier cps{1, 3, 6, 1, 5, 5, 7, 2, 1};
inline constexpr detail::KnownIdentifier userNotice{1, 3, 6, 1, 5, 5, 7, 2, 2};
/// @}
}  // namespace qualifier

/// Numbered notices of an organization.
struct NoticeReference {
  std::string organization;            ///< UTF-8
  std::vector<Integer> noticeNumbers;  ///< the numbers

  friend bool operator==(const NoticeReference &a, const NoticeReference &b) {
    return a.organization == b.organization && a.noticeNumbers == b.noticeNumbers;
  }
  friend bool operator!=(const NoticeReference &a, const NoticeReference &b) { return !(a == b); }
};

/// A notice to be shown.
struct UserNotice {
  std::optional<NoticeReference> noticeRef;  ///< where its text is
  std::optional<std::string> explicitText;   ///< UTF-8; RFC 5280 wants at most 200 characters

  friend bool operator==(const UserNotice &a, const UserNotice &b) {
    return a.noticeRef == b.noticeRef && a.explicitText == b.explicitText;
  }
  friend bool operator!=(const UserNotice &a, const UserNotice &b) { return !(a == b); }
};

namespace detail {

inline void append(Octets &octets, const Octets &more) { octets.insert(octets.end(), more.begin(), more.end()); }

inline Octets encodeNotice(const UserNotice &notice) {
  constexpr uint8_t kInteger = 0x02, kUtf8String = 0x0C, kSequence = 0x30;
  Octets content;
  if (notice.noticeRef) {
    Octets reference = encoding(kUtf8String, view(notice.noticeRef->organization));
    Octets numbers;
    for (const Integer &number : notice.noticeRef->noticeNumbers) append(numbers, encoding(kInteger, number.content()));
    append(reference, encoding(kSequence, numbers));
    append(content, encoding(kSequence, reference));
  }
  if (notice.explicitText) append(content, encoding(kUtf8String, view(*notice.explicitText)));
  return encoding(kSequence, content);
}

inline UserNotice readNotice(View encoding) {
  const WorkValue value(asn1::kUserNotice, encoding);
  UserNotice notice;
  if (AsnValue reference = value.element(value.get(), "noticeRef")) {
    notice.noticeRef.emplace().organization = readText(value, value.element(reference, "organization"));
    AsnValue numbers = value.element(reference, "noticeNumbers");
    const uint32_t count = value.count(numbers);
    for (uint32_t i = 1; i <= count; ++i) {
      notice.noticeRef->noticeNumbers.push_back(Integer::ofContent(value.octets(numbers, MemberPath(i).get())));
    }
  }
  if (AsnValue text = value.element(value.get(), "explicitText")) notice.explicitText = readText(value, text);
  return notice;
}

}  // namespace detail

/// PolicyQualifierInfo, kept as it stands, and parsed on demand: nothing gets lost on the way, and one that is
/// malformed hides no other.
struct PolicyQualifier {
  ObjectIdentifier id;          ///< what kind it is
  std::optional<Octets> value;  ///< one complete encoding

  /// Where the certification practice statement is.
  static PolicyQualifier ofCps(const std::string &uri) {
    constexpr uint8_t kIa5String = 0x16;
    return {qualifier::cps, detail::encoding(kIa5String, detail::view(uri))};
  }
  /// Strings become UTF8String.
  static PolicyQualifier ofNotice(const UserNotice &notice) {
    return {qualifier::userNotice, detail::encodeNotice(notice)};
  }

  /// Where the certification practice statement is: characters of IA5String, unchecked. Nothing when this is another
  /// kind of qualifier, or malformed.
  std::optional<std::string> cps() const {
    return parse<std::string>(qualifier::cps, [](View encoding) {
      const detail::WorkValue uri(detail::asn1::kCpsUri, encoding);
      const Octets text = detail::readString(uri, uri.get(), "/");
      return std::string(text.begin(), text.end());
    });
  }
  /// Nothing when this is another kind of qualifier, or malformed.
  std::optional<UserNotice> notice() const { return parse<UserNotice>(qualifier::userNotice, detail::readNotice); }

  friend bool operator==(const PolicyQualifier &a, const PolicyQualifier &b) {
    return a.id == b.id && a.value == b.value;
  }
  friend bool operator!=(const PolicyQualifier &a, const PolicyQualifier &b) { return !(a == b); }

 private:
  template <class T, class Read>
  std::optional<T> parse(const ObjectIdentifier &kind, Read &&read) const try {
    if (id != kind || !value) return std::nullopt;
    return read(*value);
  } catch (const Error &error) {
    if (detail::isOutOfMemory(error.code())) throw;
    return std::nullopt;
  }
};

}  // namespace face
}  // namespace ketra
