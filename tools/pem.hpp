// Textual encodings (RFC 7468).
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "ketra.hpp"

namespace tool {

struct PemBlock {
  std::string_view label;
  std::string_view body;    // between the two boundary lines
  bool isComplete = false;  // the END line with the same label is there
  std::size_t end = 0;      // where to go on
};

// Where the next "-----BEGIN " at the start of a line stands, from `from` on; npos when there is none.
std::size_t findPem(std::string_view text, std::size_t from);
// The block whose BEGIN line starts at `begin`.
PemBlock readPem(std::string_view text, std::size_t begin);
// Nothing when `text` is not base64. White space is skipped.
std::optional<ketra::Octets> decodeBase64(std::string_view text);

}  // namespace tool
