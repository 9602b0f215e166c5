// What files and directories hold, in batches: large enough to be worth a thread's attention, small enough that memory
// does not grow with the input.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "container.hpp"
#include "directory.hpp"
#include "input.hpp"

namespace tool {

struct Piece {
  std::shared_ptr<const std::string> file;  // escaped
  uint64_t index = 0;                       // of the object in the file, from 1; notes have that of the object before
  Stretch stretch;
};

struct Batch {
  uint64_t number = 0;      // from 0
  uint64_t firstPiece = 0;  // how many pieces are before, in all
  uint64_t filesBefore = 0;
  std::vector<Piece> pieces = {};
  std::string failure = {};  // of a file or directory behind the pieces, escaped; the batch ends with it
};

class BatchReader {
 public:
  // Objects of more than `mostOctets` are not read.
  BatchReader(std::vector<std::string> names, uint64_t mostOctets)
      : names_(std::move(names)), mostOctets_(mostOctets) {}
  // Nothing at the end.
  std::optional<Batch> next();
  uint64_t pieces() const { return pieces_; }
  uint64_t files() const { return files_; }

 private:
  struct File {
    File(const std::string &name, bool wasNamed, uint64_t mostOctets);
    std::shared_ptr<const std::string> name;
    bool isNamed;  // on the command line, not found in a directory
    uint64_t index = 0;
    Input input;
    Splitter splitter;
  };
  bool openNext(Batch &batch);
  void openFound(const DirectoryWalk::Found &found, Batch &batch);
  void endDirectory(Batch &batch);
  std::size_t readFile(Batch &batch);
  std::size_t add(Batch &batch, Stretch stretch);

  std::vector<std::string> names_;
  uint64_t mostOctets_;
  std::size_t nextName_ = 0;
  std::optional<DirectoryWalk> directory_;  // that is being walked through, the name before nextName_
  uint64_t objectsBeforeDirectory_ = 0;
  std::optional<File> file_;  // that is being read
  uint64_t batches_ = 0;
  uint64_t pieces_ = 0;
  uint64_t objects_ = 0;
  uint64_t files_ = 0;
};

}  // namespace tool
