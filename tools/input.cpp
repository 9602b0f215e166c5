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

bool Input::readMore(uint64_t enough) {
  if (file_ == nullptr) return false;
  const std::size_t size = text().size();
  buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(begin_));
  begin_ = 0;
  const std::size_t wanted = std::max(kPart, static_cast<std::size_t>(std::min<uint64_t>(size, enough)));
  buffer_.reserve(size + wanted + kPart);  // growing by resize() would take more; a last part then fits in
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

void Input::readTo(uint64_t size) {
  while (text().size() < size && readMore(size - text().size())) {
  }
}

void Input::skip(uint64_t size) {
  const std::size_t inWindow = text().size();
  begin_ += static_cast<std::size_t>(std::min<uint64_t>(size, inWindow));
  if (size <= inWindow) return;
  size -= inWindow;
  if (file_ != nullptr && seekForward(file_.get(), size)) return;
  while (size > 0 && readMore(size)) {
    const std::size_t passed = static_cast<std::size_t>(std::min<uint64_t>(size, text().size()));
    begin_ += passed;
    size -= passed;
  }
}

void Input::skipRest() {
  file_.reset();
  begin_ = buffer_.size();
}

}  // namespace tool
