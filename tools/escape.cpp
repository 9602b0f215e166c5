#include "escape.hpp"

#include <cstddef>
#include <cstdint>

namespace tool {
namespace {

constexpr char kDigits[] = "0123456789abcdef";

void appendHex(std::string &out, uint8_t octet) {
  out += kDigits[octet >> 4];
  out += kDigits[octet & 15];
}

struct Sequence {
  std::size_t length = 0;  // in octets; 0: not UTF-8
  uint32_t codePoint = 0;
};

// The multi-octet UTF-8 sequence at the front of `text` (RFC 3629 4).
Sequence utf8(std::string_view text) {
  const auto lead = static_cast<uint8_t>(text[0]);
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
  uint32_t codePoint = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<uint8_t>(text[i]);
    if ((next & 0xC0) != 0x80) return {};
    codePoint = codePoint << 6 | (next & 0x3F);
  }
  constexpr uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (codePoint < kSmallest[length] || codePoint > 0x10FFFF || isSurrogate) return {};
  return {length, codePoint};
}

void appendCodePoint(std::string &out, uint32_t codePoint) {
  out += "\\u{";
  int shift = 20;
  while (shift > 0 && (codePoint >> shift) == 0) shift -= 4;
  for (; shift >= 0; shift -= 4) out += kDigits[(codePoint >> shift) & 15];
  out += '}';
}

void appendOctet(std::string &out, char c) {
  if (c == '\\') {
    out += "\\\\";
  } else if (c == '\n') {
    out += "\\n";
  } else if (c >= 0x20 && c <= 0x7E) {
    out += c;
  } else {
    out += "\\x";
    appendHex(out, static_cast<uint8_t>(c));
  }
}

std::string escape(std::string_view text, bool keepsBackslash) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Sequence sequence = static_cast<uint8_t>(text[0]) >= 0x80 ? utf8(text) : Sequence{};
    if (sequence.length != 0) {
      appendCodePoint(out, sequence.codePoint);
    } else if (keepsBackslash && text[0] == '\\') {
      out += '\\';
    } else {
      appendOctet(out, text[0]);
    }
    text.remove_prefix(sequence.length != 0 ? sequence.length : 1);
  }
  return out;
}

}  // namespace

std::string escape(std::string_view text) { return escape(text, false); }
std::string escapeDirectoryName(std::string_view text) { return escape(text, true); }

std::string hex(ketra::View octets) {
  std::string out;
  out.reserve(octets.size() * 2);
  for (const uint8_t octet : octets) appendHex(out, octet);
  return out;
}

}  // namespace tool
