#include "directory.hpp"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tool {
namespace {

namespace fs = std::filesystem;

// What cannot be told is taken for no directory: opening it says why.
bool isDirectory(const fs::path &path, bool followsLink) {
  std::error_code error;
  return fs::is_directory(followsLink ? fs::status(path, error) : fs::symlink_status(path, error));
}

// Devices, pipes and sockets are left alone. A link to nothing counts as a file: it is one that is missing.
bool isFile(const fs::path &path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  return fs::is_regular_file(status) || !fs::exists(status);
}

}  // namespace

std::optional<DirectoryWalk::Found> DirectoryWalk::next() {
  while (!ahead_.empty()) {
    fs::path path = std::move(ahead_.back());
    ahead_.pop_back();
    if (!isDirectory(path, std::exchange(isTop_, false))) {
      if (isFile(path)) return Found{std::move(path), ""};
      continue;
    }
    std::error_code error;
    const std::size_t before = ahead_.size();
    for (fs::directory_iterator each(path, error), end; !error && each != end; each.increment(error)) {
      ahead_.push_back(each->path().native());
    }
    std::sort(ahead_.begin() + static_cast<std::ptrdiff_t>(before), ahead_.end(), std::greater<>());
    if (error) return Found{std::move(path), error.message()};
  }
  return std::nullopt;
}

std::string nameOf(const fs::path &path) {
  const std::u8string name = path.u8string();
  return {name.begin(), name.end()};
}

}  // namespace tool
