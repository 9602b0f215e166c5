#include "problem.hpp"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "colour.hpp"

namespace tool {

Json problem(const ketra::Error &error) {
  char code[16];
  std::snprintf(code, sizeof code, "0x%08x", static_cast<unsigned>(error.code()));
  Json lines = Json::array();
  // what() is escaped text already, but for the ends of its lines, and indented.
  std::string_view text = error.what();
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::size_t begin = std::min(text.find_first_not_of(' '), end);
    if (begin < end) lines.push_back(text.substr(begin, end - begin));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return {{"code", code}, {"trace", lines}};
}

void printProblem(std::ostream &out, const Json &problem, const std::string &indent) {
  std::string begin = indent;
  for (const Json &line : problem.at("trace")) {
    out << begin << Colour::Bad << line.get<std::string>() << Colour::None << "\n";
    begin = indent + "  ";
  }
}

Json problem(const std::string &text) { return {{"trace", Json::array({text})}}; }

}  // namespace tool
