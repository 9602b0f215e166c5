// Foreign text made harmless: what comes out is printable ASCII on one line, and no two inputs give the same text.
#pragma once

#include <string>
#include <string_view>

#include "ketra/asn1/octets.hpp"

namespace tool {

// Backslash, control characters, everything beyond ASCII (so bidirectional overrides too) and octets that are not
// UTF-8 become \\, \n, \xNN and \u{N}.
std::string escape(std::string_view text);

// The same for the text form of a distinguished name (RFC 4514), in which a backslash stays: it begins an escape of
// that form, which is never \u or \x.
std::string escapeDirectoryName(std::string_view text);

// Lower-case hexadecimal digits.
std::string hex(ketra::View octets);

}  // namespace tool
