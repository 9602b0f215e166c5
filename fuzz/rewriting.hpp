// What reading a value and writing it again may change, by the rules of the encodings alone.
#pragma once

#include <string_view>

#include "tlv.hpp"

namespace fuzz {

enum class Rewriting {
  identical,  // the same octets
  lengths,    // but for the lengths
  lawful,     // but for what a clause wants or the interface does not carry, too
  unlawful,
};

// `type` is the name of an extension type in the tables of rewriting.cpp, or another: then only the rules for all hold.
Rewriting compare(std::string_view type, Bytes before, Bytes after);

}  // namespace fuzz
