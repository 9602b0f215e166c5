#include "pem.hpp"

#include <algorithm>
#include <cstdint>

namespace tool {
namespace {

constexpr std::string_view kBegin = "-----BEGIN ";
constexpr std::string_view kEnd = "-----END ";
constexpr std::string_view kDashes = "-----";

bool startsAt(std::string_view text, std::size_t at, std::string_view what) {
  return text.substr(at, what.size()) == what;
}

// As findPem, for any boundary.
std::size_t findBoundary(std::string_view text, std::size_t from) {
  for (std::size_t at = text.find(kDashes, from); at != text.npos; at = text.find(kDashes, at + 1)) {
    const bool startsLine = at == 0 || text[at - 1] == '\n' || text[at - 1] == '\r';
    if (startsLine && (startsAt(text, at, kBegin) || startsAt(text, at, kEnd))) return at;
  }
  return text.npos;
}

int base64Value(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}

bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

std::size_t findPem(std::string_view text, std::size_t from) {
  std::size_t at = findBoundary(text, from);
  while (at != text.npos && !startsAt(text, at, kBegin)) at = findBoundary(text, at + 1);
  return at;
}

PemBlock readPem(std::string_view text, std::size_t begin) {
  PemBlock block;
  const std::size_t labelAt = begin + kBegin.size();
  const std::size_t lineEnd = std::min(text.find_first_of("\r\n", labelAt), text.size());
  block.label = text.substr(labelAt, lineEnd - labelAt);
  block.end = lineEnd;
  block.isCut = lineEnd == text.size();
  const std::size_t dashes = block.label.find(kDashes);
  if (dashes == text.npos) return block;
  block.label = block.label.substr(0, dashes);

  const std::size_t boundary = std::min(findBoundary(text, lineEnd), text.size());
  block.end = boundary;
  block.isCut = boundary == text.size();
  if (!startsAt(text, boundary, kEnd)) return block;
  const std::size_t endLabel = boundary + kEnd.size();
  const std::size_t endDashes = endLabel + block.label.size();
  block.body = text.substr(lineEnd, boundary - lineEnd);
  block.isComplete = startsAt(text, endLabel, block.label) && startsAt(text, endDashes, kDashes);
  block.isCut = !block.isComplete && endDashes + kDashes.size() > text.size();
  block.end = block.isComplete ? endDashes + kDashes.size() : endLabel;
  return block;
}

std::optional<ketra::Octets> decodeBase64(std::string_view text) {
  ketra::Octets out;
  out.reserve(text.size() / 4 * 3);
  uint32_t group = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char c : text) {
    if (isSpace(c)) continue;
    const int value = base64Value(c);
    if (c == '=' && digits % 4 >= 2 && padding < 4 - digits % 4) {
      ++padding;
    } else if (value < 0 || padding != 0) {
      return std::nullopt;
    } else {
      group = group << 6 | static_cast<uint32_t>(value);
      ++digits;
      // Every digit but the first of a group completes an octet.
      if (digits % 4 != 1) out.push_back(static_cast<uint8_t>(group >> (6 - (digits + 3) % 4 * 2)));
    }
  }
  if (digits % 4 + padding != 0 && digits % 4 + padding != 4) return std::nullopt;
  return out;
}

}  // namespace tool
