/// @file
/// Distinguished names as text (RFC 4514).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ketra/types/name.hpp"

namespace ketra {

namespace detail {

struct AttributeKeyword {
  OidLiteral type;
  std::string_view keyword;
};

// Keywords of RFC 4514 3, then names of RFC 4519 and of common use.
inline constexpr AttributeKeyword kAttributeKeywords[] = {
    {"2.5.4.3"_oid, "CN"},
    {"2.5.4.7"_oid, "L"},
    {"2.5.4.8"_oid, "ST"},
    {"2.5.4.10"_oid, "O"},
    {"2.5.4.11"_oid, "OU"},
    {"2.5.4.6"_oid, "C"},
    {"2.5.4.9"_oid, "STREET"},
    {"0.9.2342.19200300.100.1.25"_oid, "DC"},
    {"0.9.2342.19200300.100.1.1"_oid, "UID"},
    {"2.5.4.4"_oid, "sn"},
    {"2.5.4.5"_oid, "serialNumber"},
    {"2.5.4.12"_oid, "title"},
    {"2.5.4.13"_oid, "description"},
    {"2.5.4.15"_oid, "businessCategory"},
    {"2.5.4.17"_oid, "postalCode"},
    {"2.5.4.41"_oid, "name"},
    {"2.5.4.42"_oid, "givenName"},
    {"2.5.4.43"_oid, "initials"},
    {"2.5.4.44"_oid, "generationQualifier"},
    {"2.5.4.46"_oid, "dnQualifier"},
    {"2.5.4.65"_oid, "pseudonym"},
    {"2.5.4.97"_oid, "organizationIdentifier"},
    {"1.2.840.113549.1.9.1"_oid, "emailAddress"},
    {"1.3.6.1.4.1.311.60.2.1.1"_oid, "jurisdictionL"},
    {"1.3.6.1.4.1.311.60.2.1.2"_oid, "jurisdictionST"},
    {"1.3.6.1.4.1.311.60.2.1.3"_oid, "jurisdictionC"},
};

inline std::string_view keywordOf(View type) {
  for (const AttributeKeyword &each : kAttributeKeywords) {
    if (each.type.content() == type) return each.keyword;
  }
  return {};
}

// Characters that a display obeys instead of showing them: controls, line separators, invisible and directional ones.
inline bool isControl(uint32_t c) {
  constexpr uint32_t kRanges[][2] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},      {0x61C, 0x61C},
                                     {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F},
                                     {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
  for (const auto &range : kRanges) {
    if (c >= range[0] && c <= range[1]) return true;
  }
  return false;
}

// Writes characters with the escapes of RFC 4514 2.4; false at an octet that is none.
inline bool appendEscaped(std::string &text, TextType type, View octets) {
  uint32_t c = 0;
  for (Reader in(octets); !in.done();) {
    const bool isFirst = in.at == octets.begin();
    if (!nextCharacter(type, in, c)) return false;
    if (isControl(c)) {
      std::string utf8;
      appendUtf8(utf8, c);
      for (const char octet : utf8) {
        const auto value = static_cast<uint8_t>(octet);
        (text += '\\') += hexOf({&value, 1});
      }
      continue;
    }
    const bool isSpecial =
        c < 0x80 && std::string_view("\"+,;<>\\").find(static_cast<char>(c)) != std::string_view::npos;
    if (isSpecial || (c == ' ' && (isFirst || in.done())) || (c == '#' && isFirst)) text += '\\';
    appendUtf8(text, c);
  }
  return true;
}

inline void appendAttribute(std::string &text, View type, View value) {
  const std::string_view keyword = keywordOf(type);
  text += keyword.empty() ? textOfObjid(type) : std::string(keyword);
  text += '=';
  const std::size_t before = text.size();
  Tlv tlv;
  Fault fault;
  const bool isString = !keyword.empty() && readOnly(value, tlv, fault) && !tlv.isConstructed() &&
                        Leaf<TextView>::matches(tlv.identifier);
  if (isString && appendEscaped(text, static_cast<TextType>(tlv.identifier), tlv.contents())) return;
  text.resize(before);
  (text += '#') += hexOf(value);
}

}  // namespace detail

template <class Form>
std::string RelativeDistinguishedNameOf<Form>::text() const {
  std::string text;
  const auto append = [&text](const auto &attribute) {
    if (!text.empty()) text += '+';
    detail::appendAttribute(text, attribute.type.content(), attribute.value.encoding());
  };
  for (const auto &each : attributes) {
    if constexpr (std::is_same_v<Form, Owned>) {
      append(each);
    } else if (each) {
      append(*each);
    }
  }
  return text;
}

template <class Form>
std::string NameOf<Form>::text() const {
  std::string text;
  std::vector<RelativeDistinguishedNameView> levels;
  for (const auto &rdn : rdns()) levels.push_back(*rdn);
  for (std::size_t i = levels.size(); i-- > 0;) {
    if (!text.empty()) text += ',';
    text += levels[i].text();
  }
  return text;
}

}  // namespace ketra
