// Textual encodings (RFC 7468).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "ketra/asn1/octets.hpp"

namespace tool {

struct PemBlock {
  std::string_view label;
  std::string_view body;    // between the two boundary lines
  bool isComplete = false;  // the END line with the same label is there
  bool isCut = false;       // `text` may have ended too early to tell whether it is complete
  std::size_t end = 0;      // where to go on
};

// Where the next "-----BEGIN " at the start of a line stands, from `from` on; npos when there is none.
std::size_t findPem(std::string_view text, std::size_t from);
// The block whose BEGIN line starts at `begin`.
PemBlock readPem(std::string_view text, std::size_t begin);
// So many octets at the end of a text can belong to a boundary that has only begun, or tell that one starts a line.
inline constexpr std::size_t kPemOverlap = sizeof "\n-----BEGIN" - 1;

// Nothing when `text` is not base64. White space is skipped.
std::optional<ketra::Octets> decodeBase64(std::string_view text);

}  // namespace tool
