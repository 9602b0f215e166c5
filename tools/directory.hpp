// The files below a directory, one after the other: sorted by name in each directory. Links to files are followed,
// links to directories are not, so there is an end.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tool {

class DirectoryWalk {
 public:
  explicit DirectoryWalk(const std::filesystem::path &directory) : ahead_{directory.native()} {}

  struct Found {
    std::filesystem::path path;
    std::string failure;  // why this directory cannot be listed; empty: it is a file
  };
  std::optional<Found> next();

 private:
  // The next at the end. There can be many: a path takes several times the memory of its characters.
  std::vector<std::filesystem::path::string_type> ahead_;
  bool isTop_ = true;  // the directory that was named, which may be a link
};

// The name of a file as it is, in UTF-8 where the system has names of characters.
std::string nameOf(const std::filesystem::path &path);

}  // namespace tool
