// A file read piece by piece: a window that moves along it, so that files of any size and pipes take little memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

class Input {
 public:
  // "-" is standard input.
  explicit Input(const std::string &name);

  // What has been read and not skipped. Any reading or skipping invalidates it.
  std::string_view text() const { return {buffer_.data() + begin_, buffer_.size() - begin_}; }
  // Makes the window twice as long, so that looking through it again each time takes linear time; not much longer than
  // by `enough` octets. Returns false, and the window stays as it is, at the end of the file.
  bool readMore(uint64_t enough = std::numeric_limits<uint64_t>::max());
  // Reads until the window has `size` octets, or the file ends.
  void readTo(uint64_t size);
  // What lies beyond the window is not read where the file allows that.
  void skip(uint64_t size);
  // Nothing more is read.
  void skipRest();

  // Why the file cannot be read to its end; empty when nothing is wrong.
  const std::string &failure() const { return failure_; }

 private:
  struct Close {
    void operator()(std::FILE *file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  std::unique_ptr<std::FILE, Close> file_;  // null at the end
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // of the window
  std::string failure_;
};

}  // namespace tool
