#include "input.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform.hpp"

namespace tool {
namespace {

constexpr std::size_t kPart = std::size_t{1} << 16;

std::string reason(int code) { return std::generic_category().message(code); }

}  // namespace

Input::Input(const std::string &name) : file_(name == "-" ? stdin : openFile(name)) {
  if (file_ == nullptr) {
    failure_ = reason(errno);
  } else if (name != "-") {
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the window is buffer enough
  }
}

bool Input::readMore() {
  if (file_ == nullptr) return false;
  const std::size_t size = buffer_.size() - begin_;
  buffer_.erase(0, begin_);
  begin_ = 0;
  const std::size_t wanted = std::max(kPart, size);
  buffer_.resize(size + wanted);
  errno = 0;
  const std::size_t got = std::fread(buffer_.data() + size, 1, wanted, file_.get());
  buffer_.resize(size + got);
  if (got < wanted) {
    if (std::ferror(file_.get()) != 0) failure_ = reason(errno);
    file_.reset();
  }
  return got > 0;
}

void Input::readTo(std::size_t size) {
  while (text().size() < size && readMore()) {
  }
}

}  // namespace tool
