// Octets from and to hex, and those of tests/golden.tsv. For C++17 too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace ketra::test {

using Octets = std::vector<uint8_t>;

Octets fromHex(const std::string &hex);  // blanks are skipped; "AB*1000" repeats, pieces are joined by "+"
std::string toHex(const uint8_t *octets, std::size_t length);
inline std::string toHex(const Octets &octets) { return toHex(octets.data(), octets.size()); }

Octets operator+(Octets a, const Octets &b);
Octets tlv(uint8_t tag, const Octets &content);  // in DER

// A Name as runtime/name_matches.tsv writes it.
Octets writtenName(const std::string &written);

// The rows of tests/golden.tsv by name, and the octets of one, as toHex writes them.
const std::map<std::string, std::string> &goldenRows();
std::string golden(const std::string &name);

}  // namespace ketra::test
