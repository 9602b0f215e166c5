// A file read piece by piece: a window that moves along it, so that files of any size and pipes take little memory.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace tool {

class Input {
 public:
  // "-" is standard input.
  explicit Input(const std::string &name);

  // What has been read and not skipped. Any reading or skipping invalidates it.
  std::string_view text() const { return std::string_view(buffer_).substr(begin_); }
  // Makes the window longer, at least twice as long: whoever looks through it anew each time takes linear time.
  // Returns false, and the window stays as it is, at the end of the file.
  bool readMore();
  // Reads until the window has `size` octets, or the file ends.
  void readTo(std::size_t size);
  void skip(std::size_t size) { begin_ += size; }

  // Why the file cannot be read to its end; empty when nothing is wrong.
  const std::string &failure() const { return failure_; }

 private:
  struct Close {
    void operator()(std::FILE *file) const {
      if (file != stdin) std::fclose(file);
    }
  };
  std::unique_ptr<std::FILE, Close> file_;  // null at the end
  std::string buffer_;
  std::size_t begin_ = 0;  // of the window
  std::string failure_;
};

}  // namespace tool
