#include "batches.hpp"

#include <filesystem>
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
      const std::size_t before = batch.pieces.size();
      readFile(batch);
      if (batch.pieces.size() > before) octets += batch.pieces.back().stretch.text.size();
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

// One stretch further.
void BatchReader::readFile(Batch &batch) {
  std::optional<Stretch> stretch = file_->splitter.next();
  const std::string &failure = file_->input.failure();
  if (failure.empty() && stretch) return add(batch, std::move(*stretch));
  if (!failure.empty()) batch.failure = *file_->name + ": " + escape(failure);
  file_.reset();
  ++files_;
}

void BatchReader::add(Batch &batch, Stretch stretch) {
  using Form = Stretch::Form;
  if (stretch.form == Form::Nothing) stretch.form = file_->isNamed ? Form::Fault : Form::Note;
  if (stretch.form != Form::Note) ++file_->index;
  if (stretch.form == Form::Der || stretch.form == Form::Pem) ++objects_;
  batch.pieces.push_back({file_->name, file_->index, std::move(stretch)});
  ++pieces_;
}

}  // namespace tool
