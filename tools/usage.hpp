// The command line: what it asks for, and what is said when it makes no sense.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tool {

enum class Command { Show, Check };
enum class ColourChoice { Auto, Always, Never };

struct Request {
  Command command = Command::Show;
  std::vector<std::string> files = {};
  bool asJson = false;
  bool isSummary = false;
  unsigned threads = 1;
  uint64_t mostOctets = 0;  // of one object
  ColourChoice colour = ColourChoice::Auto;
};

// Nothing when there is nothing to do: help or version are printed then, or what is wrong, and `status` is set.
std::optional<Request> readCommandLine(int argc, char **argv, int &status);

}  // namespace tool
