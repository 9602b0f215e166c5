// Runs a target, without libFuzzer, on the inputs that are kept: a file with one in hex per line. Lines that begin with
// "#" tell what the next one is about.

#include <fstream>
#include <iostream>
#include <vector>

#include "target.hpp"

namespace {

int digit(char c) { return c <= '9' ? c - '0' : c - 'a' + 10; }

}  // namespace

int main(int argc, char **argv) {
  std::ifstream file(argc == 2 ? argv[1] : "");
  std::string line;
  int count = 0;
  while (std::getline(file, line)) {
    if (line.starts_with('#')) continue;
    // A block of exactly this size, so that a read beyond it is seen.
    std::vector<uint8_t> octets(line.size() / 2);
    for (std::size_t i = 0; i < octets.size(); ++i) {
      octets[i] = static_cast<uint8_t>(digit(line[2 * i]) << 4 | digit(line[2 * i + 1]));
    }
    std::cout << line << '\n' << std::flush;  // the last one is the culprit
    LLVMFuzzerTestOneInput(octets.data(), octets.size());
    ++count;
  }
  std::cout << count << " inputs\n";
  return count > 0 ? 0 : 1;
}
