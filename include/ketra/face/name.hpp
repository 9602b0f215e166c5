/// @file
/// Distinguished names and DirectoryString values.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

namespace detail {

// The text that call(text, size, &length, err) writes: once into a small buffer, and again when it does not fit.
template <class Call>
std::string text(Call &&call) {
  std::string text(120, '\0');
  uint32_t length = 0;
  const auto attempt = [&](AsnErrorBlock *err) {
    return call(text.data(), static_cast<uint32_t>(text.size()), &length, err);
  };
  if (attempt(nullptr) != 0) {
    if (length >= text.size()) text.resize(static_cast<std::size_t>(length) + 1);
    run(attempt);
  }
  text.resize(length);
  return text;
}

struct DestroyName {
  void operator()(X509NameObject name) const { X509NameObjectDestroy(name, nullptr); }
};
using NameObject = std::unique_ptr<X509NameObjectRecord, DestroyName>;

inline NameObject nameObject(View encoding) {
  const AsnEncodedData data = encoded(encoding);
  X509NameObject name = nullptr;
  run([&](AsnErrorBlock *err) { return X509NameObjectCreate(&name, err); });
  NameObject owner(name);
  run([&](AsnErrorBlock *err) { return X509NameObjectSetPduBER(name, &data, err); });
  return owner;
}

inline View encodingOf(X509NameObject name) {
  AsnEncodedData data{};
  run([&](AsnErrorBlock *err) { return X509NameObjectGetPduDER(name, &data, err); });
  return view(data);
}

}  // namespace detail

/// The usual attribute types (X.520, RFC 4519, RFC 2985).
namespace attribute {
/// An attribute type.
/// @{
inline constexpr detail::KnownIdentifier commonName{2, 5, 4, 3};
inline constexpr detail::KnownIdentifier surname{2, 5, 4, 4};
inline constexpr detail::KnownIdentifier serialNumber{2, 5, 4, 5};
inline constexpr detail::KnownIdentifier countryName{2, 5, 4, 6};
inline constexpr detail::KnownIdentifier localityName{2, 5, 4, 7};
inline constexpr detail::KnownIdentifier stateOrProvinceName{2, 5, 4, 8};
inline constexpr detail::KnownIdentifier streetAddress{2, 5, 4, 9};
inline constexpr detail::KnownIdentifier organizationName{2, 5, 4, 10};
inline constexpr detail::KnownIdentifier organizationalUnitName{2, 5, 4, 11};
inline constexpr detail::KnownIdentifier title{2, 5, 4, 12};
inline constexpr detail::KnownIdentifier givenName{2, 5, 4, 42};
inline constexpr detail::KnownIdentifier dnQualifier{2, 5, 4, 46};
inline constexpr detail::KnownIdentifier organizationIdentifier{2, 5, 4, 97};
inline constexpr detail::KnownIdentifier userId{0, 9, 2342, 19200300, 100, 1, 1};
inline constexpr detail::KnownIdentifier domainComponent{0, 9, 2342, 19200300, 100, 1, 25};
inline constexpr detail::KnownIdentifier emailAddress{1, 2, 840, 113549, 1, 9, 1};
/// @}
}  // namespace attribute

/// A string of one of five types (X.520 6.1).
struct DirectoryString {
  uint32_t choice = X509DirStr_Utf8String;  ///< X509DirStr_...
  Octets octets;                            ///< as they are encoded

  /// From text in UTF-8, which is not judged.
  static DirectoryString utf8(const std::string &text) { return {X509DirStr_Utf8String, {text.begin(), text.end()}}; }

  /// The characters in UTF-8; octets that are no characters are an Error.
  std::string text() const {
    const X509DirStr c = string();
    return detail::text([&](char *text, uint32_t size, uint32_t *length, AsnErrorBlock *err) {
      return X509DirStrToText(&c, text, size, length, err);
    });
  }

  /// For the C interface; points into this object.
  X509DirStr string() const { return {choice, octets.data(), detail::length(octets)}; }

  friend bool operator==(const DirectoryString &a, const DirectoryString &b) {
    return a.choice == b.choice && a.octets == b.octets;
  }
  friend bool operator!=(const DirectoryString &a, const DirectoryString &b) { return !(a == b); }
};

/// One distinguished name, held as its DER encoding.
class Name {
 public:
  /// A name without relative distinguished names.
  Name() = default;

  /// From one Name (BER). Throws when it is malformed.
  static Name decode(View encoding) { return Name(detail::encodingOf(detail::nameObject(encoding).get())); }
  /// A copy of the name that the object holds.
  static Name copyOf(X509NameObject name) { return Name(detail::encodingOf(name)); }

  /// One attribute of a relative distinguished name.
  struct Attribute {
    ObjectIdentifier type;  ///< attribute type
    std::string value;      ///< UTF-8
  };

  /// Appends one relative distinguished name: name.add({{attribute::commonName, "Steve"}}). Values become UTF8String,
  /// but where the syntax of the type demands another string type: PrintableString for countryName, serialNumber and
  /// dnQualifier, IA5String for emailAddress and domainComponent. Takes time in proportion to the whole name.
  Name &add(const std::vector<Attribute> &attributes) {
    std::vector<X509NameAttribute> list;
    list.reserve(attributes.size());
    for (const Attribute &each : attributes) list.push_back({each.type.objid(), string(each)});
    const detail::NameObject name = object();
    detail::run([&](AsnErrorBlock *err) {
      return X509NameObjectAppendRdn(name.get(), list.data(), static_cast<uint32_t>(list.size()), err);
    });
    der_ = detail::encodingOf(name.get()).copy();
    return *this;
  }

  /// The text form of RFC 4514, most specific first, in UTF-8: `CN=Steve,O=Example\, Inc.,C=GB`.
  std::string text() const {
    const detail::NameObject name = object();
    return detail::text([&](char *text, uint32_t size, uint32_t *length, AsnErrorBlock *err) {
      return X509NameObjectGetText(name.get(), text, size, length, err);
    });
  }

  /// One Name (DER).
  const Octets &encode() const { return der_; }
  /// For the C interface: a new object that the caller owns.
  detail::NameObject object() const { return detail::nameObject(der_); }

  /// Whether both mean the same: attributes of one relative distinguished name in any order, strings without regard to
  /// their type, to ASCII case and to the amount of space (RFC 5280 7.1). Equality is that of the octets.
  bool matches(const Name &other) const {
    const detail::NameObject a = object();
    const detail::NameObject b = other.object();
    int32_t equal = 0;
    detail::run([&](AsnErrorBlock *err) { return X509NameObjectCompare(a.get(), b.get(), &equal, err); });
    return equal == 1;
  }
  friend bool operator==(const Name &a, const Name &b) { return a.der_ == b.der_; }
  friend bool operator!=(const Name &a, const Name &b) { return a.der_ != b.der_; }

 private:
  explicit Name(View der) : der_(der.copy()) {}

  static X509DirStr string(const Attribute &attribute) {
    static constexpr detail::KnownIdentifier kPrintable[] = {attribute::countryName, attribute::serialNumber,
                                                             attribute::dnQualifier};
    const bool isPrintable = std::any_of(std::begin(kPrintable), std::end(kPrintable),
                                         [&](const ObjectIdentifier &type) { return type == attribute.type; });
    const View value = detail::view(attribute.value);
    return {isPrintable ? X509DirStr_PrintableString : X509DirStr_Utf8String, value.data(), detail::length(value)};
  }

  Octets der_ = {0x30, 0x00};
};

}  // namespace face
}  // namespace ketra
