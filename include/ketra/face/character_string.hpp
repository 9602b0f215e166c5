/// @file
/// Character strings of any type as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/name.hpp"

namespace ketra {
inline namespace face {

namespace detail {

// In UTF-8; octets that are no characters are an Error. NumericString, IA5String and VisibleString are read as UTF-8,
// which some issuers put there and which includes what belongs there.
inline std::string readText(const WorkValue &value, AsnValue string) {
  uint32_t choice = 0;
  run([&](AsnErrorBlock *err) { return AsnCalNumberOfChoice(value.object(), string, nullptr, &choice, err); });
  const Octets octets = readString(value, string, asn1::kCharacterString[choice].name);
  if (choice > X509DirStr_Utf8String) choice = X509DirStr_Utf8String;
  return DirectoryString{choice, octets}.text();
}

}  // namespace detail

/// The text, in UTF-8, of one encoding of a character string; nothing when it is something else, or no characters.
inline std::optional<std::string> stringText(View encoding) try {
  const detail::WorkValue value(detail::asn1::kCharacterString, encoding);
  return detail::readText(value, value.get());
} catch (const Error &error) {
  if (detail::isOutOfMemory(error.code())) throw;
  return std::nullopt;
}

}  // namespace face
}  // namespace ketra
