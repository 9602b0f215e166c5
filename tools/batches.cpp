#include "batches.hpp"

#include <filesystem>
#include <new>
#include <system_error>

#include "escape.hpp"

namespace tool {
namespace {

constexpr std::size_t kMostOctets = std::size_t{1} << 16;  // a larger object makes a batch of its own
constexpr std::size_t kMostPieces = 256;

bool isDirectory(const std::string &name) {
  std::error_code error;
  return name != "-" && std::filesystem::is_directory(name, error);
}

}  // namespace

BatchReader::File::File(const std::string &fileName, bool wasNamed, uint64_t mostOctets)
    : name(std::make_shared<const std::string>(escape(fileName))),
      isNamed(wasNamed),
      input(fileName),
      splitter(input, mostOctets) {}

std::optional<Batch> BatchReader::next() {
  Batch batch{.number = batches_, .firstPiece = pieces_, .filesBefore = files_};
  std::size_t octets = 0;
  while (batch.failure.empty() && octets < kMostOctets && batch.pieces.size() < kMostPieces) {
    if (file_) {
      octets += readFile(batch);
    } else if (!openNext(batch)) {
      break;
    }
  }
  if (batch.pieces.empty() && batch.failure.empty()) return std::nullopt;
  ++batches_;
  return batch;
}

// Returns false when there is nothing more.
bool BatchReader::openNext(Batch &batch) {
  if (directory_) {
    if (const std::optional<DirectoryWalk::Found> found = directory_->next()) {
      openFound(*found, batch);
    } else {
      endDirectory(batch);
    }
    return true;
  }
  if (nextName_ == names_.size()) return false;
  const std::string &name = names_[nextName_++];
  if (isDirectory(name)) {
    directory_.emplace(name);
    objectsBeforeDirectory_ = objects_;
  } else {
    file_.emplace(name, true, mostOctets_);
  }
  return true;
}

void BatchReader::openFound(const DirectoryWalk::Found &found, Batch &batch) {
  const std::string name = nameOf(found.path);
  if (found.failure.empty()) {
    file_.emplace(name, false, mostOctets_);
  } else {
    batch.failure = escape(name) + ": " + escape(found.failure);
  }
}

void BatchReader::endDirectory(Batch &batch) {
  directory_.reset();
  if (objects_ != objectsBeforeDirectory_) return;
  Stretch nothing{.form = Stretch::Form::Fault,
                  .text = "no certificate, CRL or certificate request found in this directory"};
  batch.pieces.push_back({std::make_shared<const std::string>(escape(names_[nextName_ - 1])), 1, std::move(nothing)});
  ++pieces_;
}

// One stretch further; returns its length.
std::size_t BatchReader::readFile(Batch &batch) {
  const std::shared_ptr<const std::string> name = file_->name;
  std::string failure;
  try {
    std::optional<Stretch> stretch = file_->splitter.next();
    failure = file_->input.failure();
    if (failure.empty() && stretch) return add(batch, std::move(*stretch));
  } catch (const std::bad_alloc &) {
    file_.reset();
    failure = "out of memory";
  }
  if (!failure.empty()) batch.failure = *name + ": " + escape(failure);
  file_.reset();
  ++files_;
  return 0;
}

std::size_t BatchReader::add(Batch &batch, Stretch stretch) {
  using Form = Stretch::Form;
  if (stretch.form == Form::Nothing) stretch.form = file_->isNamed ? Form::Fault : Form::Note;
  if (stretch.form != Form::Note) ++file_->index;
  if (stretch.form == Form::Der || stretch.form == Form::Pem) ++objects_;
  const std::size_t length = stretch.text.size();
  batch.pieces.push_back({file_->name, file_->index, std::move(stretch)});
  ++pieces_;
  return length;
}

}  // namespace tool
