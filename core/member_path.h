// Element paths that end in the number of a list member.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ketra {

class MemberPath {
 public:
  // Members count from 1. `prefix` is a literal, a component name with its "/".
  explicit MemberPath(uint32_t member, std::string_view prefix = "") {
    std::memcpy(text_, prefix.data(), prefix.size());
    *std::to_chars(text_ + prefix.size(), text_ + sizeof text_ - 1, member).ptr = '\0';
  }
  operator const char *() const { return text_; }

 private:
  char text_[128];
};

}  // namespace ketra
