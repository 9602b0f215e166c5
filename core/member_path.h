// Element paths with the number of a list member in them, written as "%d" writes it: negative above 2^31-1.
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
    put(prefix);
    then(member, suffix);
  }
  // The path of a member of a list in a member.
  MemberPath &then(uint32_t member, std::string_view suffix) {
    size_ = static_cast<std::size_t>(
        std::to_chars(text_ + size_, text_ + size_ + kDigits, static_cast<int32_t>(member)).ptr - text_);
    put(suffix);
    return *this;
  }
  operator const char *() const { return text_; }

 private:
  static constexpr std::size_t kDigits = 11;  // and a sign

  void put(std::string_view part) {
    std::memcpy(text_ + size_, part.data(), part.size());
    size_ += part.size();
    text_[size_] = '\0';
  }

  char text_[128];
  std::size_t size_ = 0;
};

}  // namespace ketra
