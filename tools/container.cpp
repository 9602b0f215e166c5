#include "container.hpp"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "escape.hpp"
#include "ketra/objects/pem.hpp"

namespace tool {
namespace {

constexpr std::size_t kNear = std::size_t{1} << 16;

uint8_t octet(std::string_view text, std::size_t at) { return static_cast<uint8_t>(text[at]); }

// How many octets the definite-length encoding at the front has, of which `data` holds the header at least; it can be
// more than there are. What cannot be told so (indefinite or damaged lengths) is taken to be all that follows: opening
// it then says what is wrong.
constexpr std::size_t kLongestHeader = 2 + sizeof(uint64_t);
constexpr uint64_t kAll = UINT64_MAX;
uint64_t frontLength(std::string_view data) {
  if (data.size() < 2) return kAll;
  const std::size_t lengthOctets = octet(data, 1) < 0x80 ? 0 : octet(data, 1) & 0x7Fu;
  const std::size_t header = 2 + lengthOctets;
  if (octet(data, 1) == 0x80 || header > kLongestHeader || header > data.size()) return kAll;
  uint64_t length = lengthOctets == 0 ? octet(data, 1) : 0;
  for (std::size_t i = 2; i < header; ++i) length = length << 8 | octet(data, i);
  return length > kAll - header ? kAll : header + length;
}

Stretch stretchOf(const ketra::pem::Block &block) {
  using Form = Stretch::Form;
  const Kind kind = block.kind();
  if (kind != Kind::certificate && kind != Kind::crl && kind != Kind::request) {
    return {.form = Form::Note, .text = "skipped the PEM block " + quote(block.label)};
  }
  if (!block.isComplete) {
    return {.form = Form::Fault, .text = "the PEM block " + quote(block.label) + " has no matching END line"};
  }
  return {.form = Form::Pem, .kind = kind, .text = std::string(block.body), .label = std::string(block.label)};
}

}  // namespace

ketra::Result<ketra::Octets> decodePem(const Stretch &stretch) {
  ketra::pem::Block block;
  block.label = stretch.label;
  block.body = stretch.text;
  block.isComplete = true;
  return block.decode();
}

std::string quote(std::string_view label) {
  constexpr std::size_t kShown = 64;
  std::string text = "\"";
  text += escape(label.substr(0, kShown));
  return text += label.size() > kShown ? "...\"" : "\"";
}

Splitter::Splitter(Input &input, uint64_t most) : input_(input), most_(most) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // some editors put it before PEM
  input_.readTo(kByteOrderMark.size());
  if (input_.text().starts_with(kByteOrderMark)) input_.skip(kByteOrderMark.size());
}

std::optional<Stretch> Splitter::next() {
  if (!skipSpace()) return end();
  if (startsDer()) return takeDer();
  if (findPem()) return takePem();
  return end();
}

bool Splitter::skipSpace() {
  do {
    const std::string_view text = input_.text();
    const std::size_t at = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const bool isAtEnd = at == text.size();
    skip(at);
    if (!isAtEnd) return true;
  } while (input_.readMore());
  return false;
}

// A SEQUENCE, which as text would be a "0". Certificates and CRLs are long enough for a length above 0x7F; a shorter
// SEQUENCE is taken only where no PEM is near whose commentary it could be.
bool Splitter::startsDer() {
  if (input_.text()[0] != 0x30) return false;
  input_.readTo(2);
  if (input_.text().size() > 1 && octet(input_.text(), 1) >= 0x80) return true;
  if (last_ == Last::Pem) return false;
  input_.readTo(kNear);
  // No octet is searched twice, however many short ones follow each other.
  const std::string_view text = input_.text();
  if (ketra::pem::find(text, withoutPem_) != text.npos) return false;
  withoutPem_ = text.size() - std::min(text.size(), ketra::pem::kOverlap);
  return true;
}

Stretch Splitter::takeDer() {
  input_.readTo(kLongestHeader);
  const uint64_t wanted = frontLength(input_.text());
  // A damaged length can claim anything: when little follows, opening that says what is wrong.
  const uint64_t enough = wanted == kAll ? most_ : std::min<uint64_t>(most_, kNear);
  input_.readTo(wanted <= most_ ? wanted : enough + 1);
  last_ = Last::Der;
  passedOver_ = 0;
  if (wanted > most_ && input_.text().size() > enough) return passOver(wanted);
  const std::string_view text = input_.text().substr(0, static_cast<std::size_t>(std::min<uint64_t>(wanted, SIZE_MAX)));
  Stretch stretch{.form = Stretch::Form::Der, .text = std::string(text)};
  skip(stretch.text.size());
  return stretch;
}

// An object that is too long; where its end is not known, so is all that follows.
Stretch Splitter::passOver(uint64_t length) {
  Stretch stretch{.form = Stretch::Form::Fault};
  if (length == kAll) {
    stretch.text = "more than " + std::to_string(most_) + " octets (--max-object); the rest of the file is not read";
    input_.skipRest();
    last_ = Last::Pem;
  } else {
    stretch.text = "an object of " + std::to_string(length) + " octets, more than " + std::to_string(most_) +
                   " (--max-object), is not read";
    skip(length);
  }
  return stretch;
}

void Splitter::skip(uint64_t size) {
  withoutPem_ -= static_cast<std::size_t>(std::min<uint64_t>(size, withoutPem_));
  input_.skip(size);
}

// Moves on to the next BEGIN line; where there is none, to the end.
bool Splitter::findPem() {
  passedOver_ = 0;
  std::size_t from = 0;  // behind the first octet when that is there only to show what starts a line
  for (;;) {
    const std::string_view text = input_.text();
    const std::size_t begin = ketra::pem::find(text, from);
    const bool isFound = begin != text.npos;
    const std::size_t passed = isFound ? begin : text.size() - std::min(text.size(), ketra::pem::kOverlap);
    passedOver_ += passed;
    skip(passed);
    if (isFound) return true;
    from = passed > 0 ? 1 : from;
    if (!input_.readMore()) break;
  }
  passedOver_ += input_.text().size();
  skip(input_.text().size());
  return false;
}

Stretch Splitter::takePem() {
  ketra::pem::Block block = ketra::pem::read(input_.text(), 0);
  while (block.isCut && input_.text().size() <= most_ && input_.readMore(most_))
    block = ketra::pem::read(input_.text(), 0);
  if (block.end > most_) return passOver(kAll);
  Stretch stretch = stretchOf(block);
  skip(block.end);
  last_ = Last::Pem;
  return stretch;
}

// Text around PEM blocks is commentary, octets behind DER objects are not.
std::optional<Stretch> Splitter::end() {
  const Last last = std::exchange(last_, Last::Pem);
  if (last == Last::None) {
    return Stretch{.form = Stretch::Form::Nothing,
                   .text = passedOver_ == 0 ? "the file is empty or blank" : "neither PEM nor DER"};
  }
  if (last == Last::Der && passedOver_ > 0) {
    return Stretch{.form = Stretch::Form::Fault,
                   .text = std::to_string(passedOver_) + " octets at the end are neither PEM nor DER"};
  }
  return std::nullopt;
}

}  // namespace tool
