// ketra_agreement [--all-reasons] PATH...: compares the readers on all values in the files, and in those of
// directories. A file is DER (every extension in it is found by its identifier), PEM, or text whose lines have a value
// in hex: alone after an octet that chooses the type (.hex, as fuzz/corpus keeps them), or in a column, with the type
// in another (.tsv). Of a value whose type is not told, all types are tried. With --all-reasons a reason that nothing
// needed is a failure.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>

#include "cxx/agreement.hpp"
#include "ketra/extensions.hpp"
#include "support/octets.h"

namespace {

using namespace ketra;

struct Counts {
  std::size_t compared = 0, accepted = 0, different = 0;
};
Counts counts[agreement::kTypes];
std::size_t needed[agreement::kReasons];

void compare(std::size_t type, const Octets &value) {
  // A block of exactly this size, so that a read beyond it is seen.
  const Octets octets(value.begin(), value.end());
  const auto comparison = agreement::compare(type, View(octets));
  ++counts[type].compared;
  counts[type].accepted += comparison.isAccepted ? 1 : 0;
  for (std::size_t i = 0; i < agreement::kReasons; ++i) needed[i] += comparison.isExplained[i] ? 1 : 0;
  if (comparison.difference.empty()) return;
  ++counts[type].different;
  if (counts[type].different > 20) return;
  std::cout << agreement::nameOf(type) << '\t' << detail::hexOf(View(octets)).substr(0, 2000) << '\n'
            << comparison.difference.substr(0, 4000) << "\n\n";
}
void compareAll(const Octets &value) {
  for (std::size_t type = 0; type < agreement::kTypes; ++type) compare(type, value);
}

// The extensions of a certificate, request or CRL are found wherever `06 03 55 1D xx [01 01 xx] 04` begins one.
void compareInside(View der) {
  constexpr uint8_t kArcs[] = {0x06, 0x03, 0x55, 0x1D};
  for (const uint8_t *at = der.begin();;) {
    at = std::search(at, der.end(), std::begin(kArcs), std::end(kArcs));
    if (der.end() - at < 7) return;
    const std::size_t type = agreement::typeOf(at[4]);
    at += 5;
    Reader in(at, der.end());
    Tlv tlv;
    Fault fault;
    if (*at == 0x01 && !detail::readTlv(in, tlv, fault)) continue;
    if (type == agreement::kTypes || in.done() || *in.at != 0x04 || !detail::readTlv(in, tlv, fault)) continue;
    compare(type, tlv.contents().copy());
  }
}

void comparePem(const std::string &text) {
  for (std::size_t at = 0; (at = text.find("-----BEGIN ", at)) != std::string::npos;) {
    const std::size_t begin = text.find('\n', at), end = text.find("-----END ", at);
    if (begin == std::string::npos || end == std::string::npos) return;
    Octets der;
    uint32_t bits = 0, count = 0;
    for (const char c : text.substr(begin, end - begin)) {
      static const std::string kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
      const std::size_t digit = kDigits.find(c);
      if (digit == std::string::npos) continue;
      bits = bits << 6 | static_cast<uint32_t>(digit);
      if ((count += 6) < 8) continue;
      der.push_back(static_cast<uint8_t>(bits >> (count -= 8)));
    }
    compareInside(View(der));
    at = end;
  }
}

bool isHex(const std::string &text) {
  return text.size() >= 4 && text.find_first_not_of("0123456789abcdefABCDEF +*>") == std::string::npos;
}
// "30 A0 > ..." puts tags around all that follows. "00*" stands for any number.
Octets octetsOf(const std::string &hex) {
  const std::size_t bracket = hex.find('>');
  if (bracket == std::string::npos) return test::fromHex(hex.back() == '*' ? hex + "3" : hex);
  const Octets tags = test::fromHex(hex.substr(0, bracket));
  if (tags.size() > 100) return {};
  Octets inner = octetsOf(hex.substr(bracket + 1));
  for (std::size_t i = tags.size(); i-- > 0;) inner = test::tlv(tags[i], inner);
  return inner;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}
void compareRow(const std::string &line) {
  std::vector<std::string> columns;
  std::istringstream row(line);
  for (std::string column; std::getline(row, column, '\t');) columns.push_back(column);
  std::size_t type = agreement::kTypes;
  for (const std::string &column : columns) {
    if (column.rfind("2.5.29.", 0) == 0) type = agreement::typeOf(static_cast<unsigned>(std::atoi(column.c_str() + 7)));
    for (std::size_t i = 0; i < agreement::kTypes; ++i) {
      if (lower(column.substr(0, column.find('/'))) == lower(agreement::nameOf(i))) type = i;
    }
  }
  for (const std::string &column : columns) {
    if (!isHex(column)) continue;
    const Octets value = octetsOf(column);
    if (value.size() > 1'000'000) continue;
    type == agreement::kTypes ? compareAll(value) : compare(type, value);
  }
}

void compareFile(const std::filesystem::path &path) {
  std::ifstream file(path, std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const std::string kind = path.extension().string();
  if (kind == ".tsv" || kind == ".hex") {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty() || line[0] == '#') continue;
      if (kind == ".tsv") {
        compareRow(line);
      } else {
        const Octets octets = test::fromHex(line);
        if (octets.empty()) continue;
        const Octets value(octets.begin() + 1, octets.end());
        compareAll(value);
        compareInside(View(value));
      }
    }
  } else if (text.find("-----BEGIN ") != std::string::npos) {
    comparePem(text);
  } else {
    compareInside(View(text));
  }
}

}  // namespace

int main(int argc, char **argv) {
  bool wantsAllReasons = false;
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--all-reasons") {
      wantsAllReasons = true;
    } else if (std::filesystem::is_directory(argv[i])) {
      for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
        if (entry.is_regular_file()) compareFile(entry.path());
      }
    } else {
      compareFile(argv[i]);
    }
  }
  Counts all;
  for (std::size_t type = 0; type < agreement::kTypes; ++type) {
    const Counts &each = counts[type];
    std::cout << agreement::nameOf(type) << ": " << each.compared << " values, " << each.accepted << " accepted, "
              << each.different << " differ\n";
    all = {all.compared + each.compared, all.accepted + each.accepted, all.different + each.different};
  }
  std::cout << "all: " << all.compared << " values, " << all.accepted << " accepted, " << all.different << " differ\n";
  bool isMissing = false;
  for (std::size_t i = 0; i < agreement::kReasons; ++i) {
    std::cout << needed[i] << '\t' << agreement::kReasonNames[i] << '\n';
    isMissing = isMissing || needed[i] == 0;
  }
  return all.compared == 0 || all.different != 0 || (wantsAllReasons && isMissing) ? 1 : 0;
}
