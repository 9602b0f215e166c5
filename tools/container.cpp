#include "container.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "escape.hpp"
#include "pem.hpp"

namespace tool {
namespace {

// How many octets the definite-length encoding at the front has. What cannot be told so (indefinite or damaged
// lengths) is taken to be all of `data`: opening it then says what is wrong.
std::size_t frontLength(ketra::View data) {
  if (data.size() < 2) return data.size();
  const std::size_t lengthOctets = data.data()[1] < 0x80 ? 0 : data.data()[1] & 0x7Fu;
  const std::size_t header = 2 + lengthOctets;
  if (data.data()[1] == 0x80 || lengthOctets > sizeof(uint64_t) || header > data.size()) return data.size();
  uint64_t length = lengthOctets == 0 ? data.data()[1] : 0;
  for (std::size_t i = 2; i < header; ++i) length = length << 8 | data.data()[i];
  return length > data.size() - header ? data.size() : header + static_cast<std::size_t>(length);
}

struct Label {
  std::string_view text;
  Kind kind;
  bool hasMore;  // other data follow the object
};
constexpr Label kLabels[] = {
    {"CERTIFICATE", Kind::Certificate, false},
    {"X509 CERTIFICATE", Kind::Certificate, false},
    {"TRUSTED CERTIFICATE", Kind::Certificate, true},
    {"X509 CRL", Kind::Crl, false},
};

const Label *findLabel(std::string_view text) {
  for (const Label &label : kLabels) {
    if (label.text == text) return &label;
  }
  return nullptr;
}

std::string quote(std::string_view label) {
  constexpr std::size_t kShown = 64;
  std::string text = "\"";
  text += escape(label.substr(0, kShown));
  return text += label.size() > kShown ? "...\"" : "\"";
}

void readBlock(const PemBlock &block, ContainerVisitor &visitor) {
  const Label *label = findLabel(block.label);
  if (label == nullptr) return visitor.note("skipped the PEM block " + quote(block.label));
  if (!block.isComplete) return visitor.fault("the PEM block " + quote(block.label) + " has no matching END line");
  const std::optional<ketra::Octets> octets = decodeBase64(block.body);
  if (!octets) return visitor.fault("the PEM block " + quote(block.label) + " is not base64");
  visitor.object(label->kind, {octets->data(), label->hasMore ? frontLength(*octets) : octets->size()});
}

class Splitter {
 public:
  Splitter(ketra::View content, ContainerVisitor &visitor)
      : content_(content),
        text_(reinterpret_cast<const char *>(content.data()), content.size()),
        nextPem_(findPem(text_, 0)),
        visitor_(visitor) {}

  void run() {
    while (skipSpace()) {
      if (startsDer()) {
        takeDer();
      } else if (nextPem_ != text_.npos) {
        takePem();
      } else {
        break;
      }
    }
    // Text around PEM blocks is commentary, octets behind DER objects are not.
    if (last_ == Last::None) return visitor_.fault("neither PEM nor DER");
    if (last_ == Last::Der && at_ < content_.size()) {
      visitor_.fault(std::to_string(content_.size() - at_) + " octets at the end are neither PEM nor DER");
    }
  }

 private:
  bool skipSpace() {
    at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size());
    return at_ < text_.size();
  }

  // A SEQUENCE, which as text would be a "0". Certificates and CRLs are long enough for a length above 0x7F; a shorter
  // SEQUENCE is taken only where no PEM is around whose commentary it could be.
  bool startsDer() const {
    if (text_[at_] != 0x30) return false;
    const bool isPemFile = nextPem_ != text_.npos || last_ == Last::Pem;
    return !isPemFile || (at_ + 1 < content_.size() && content_.data()[at_ + 1] >= 0x80);
  }

  void takeDer() {
    const ketra::View rest(content_.data() + at_, content_.size() - at_);
    const std::size_t length = frontLength(rest);
    visitor_.object(Kind::Unknown, {rest.data(), length});
    at_ += length;
    last_ = Last::Der;
    if (nextPem_ != text_.npos && nextPem_ < at_) nextPem_ = findPem(text_, at_);
  }

  void takePem() {
    const PemBlock block = readPem(text_, nextPem_);
    readBlock(block, visitor_);
    at_ = block.end;
    last_ = Last::Pem;
    nextPem_ = findPem(text_, at_);
  }

  ketra::View content_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t nextPem_;  // at or behind at_
  enum class Last { None, Der, Pem } last_ = Last::None;
  ContainerVisitor &visitor_;
};

}  // namespace

std::optional<ketra::Octets> readFile(const std::string &name, std::string &why) {
  struct Close {
    void operator()(std::FILE *file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> opened;
  if (name != "-") opened.reset(std::fopen(name.c_str(), "rb"));
  std::FILE *file = name == "-" ? stdin : opened.get();

  ketra::Octets content;
  uint8_t part[1 << 16];
  std::size_t got = 1;
  while (file != nullptr && got > 0) {
    got = std::fread(part, 1, sizeof part, file);
    content.insert(content.end(), part, part + got);
  }
  if (file != nullptr && std::ferror(file) == 0) return content;
  why = std::strerror(errno);
  return std::nullopt;
}

void splitContainer(ketra::View content, ContainerVisitor &visitor) {
  constexpr uint8_t kByteOrderMark[] = {0xEF, 0xBB, 0xBF};  // some editors put it before PEM
  constexpr std::size_t kSize = sizeof kByteOrderMark;
  if (content.size() >= kSize && std::equal(kByteOrderMark, kByteOrderMark + kSize, content.begin())) {
    content = {content.data() + kSize, content.size() - kSize};
  }
  Splitter(content, visitor).run();
}

}  // namespace tool
