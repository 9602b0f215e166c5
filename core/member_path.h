// Element paths with the number of a list member in them.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ketra {

class MemberPath {
 public:
  // Members count from 1. What stands before and behind the number is a literal.
  explicit MemberPath(uint32_t member, std::string_view suffix = "") : MemberPath("", member, suffix) {}
  MemberPath(std::string_view prefix, uint32_t member, std::string_view suffix = "") {
    std::memcpy(text_, prefix.data(), prefix.size());
    char *const begin = text_ + prefix.size();
    char *const end = std::to_chars(begin, begin + kDigits, member).ptr;
    std::memcpy(end, suffix.data(), suffix.size());
    end[suffix.size()] = '\0';
  }
  operator const char *() const { return text_; }

 private:
  static constexpr std::size_t kDigits = 10;
  char text_[128];
};

}  // namespace ketra
