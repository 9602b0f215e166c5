#include "check.hpp"

#include <cstdint>
#include <string_view>

#include "asn1_reader.hpp"
#include "escape.hpp"
#include "exit_status.hpp"
#include "identifier_names.hpp"
#include "typed_extensions.hpp"
#include "walk.hpp"

namespace tool {
namespace {

// An extension as an Extensions object holds it.
struct Stored {
  ketra::Octets value;
  bool critical = false;
  friend bool operator==(const Stored &, const Stored &) = default;
};

ketra::Extensions store(const ketra::ObjectIdentifier &objid, const Stored &stored) {
  ketra::Extensions extensions;
  extensions.set(objid, stored.critical, stored.value);
  return extensions;
}

Stored write(const ketra::ObjectIdentifier &objid, const Writer &writer, bool critical) {
  ketra::Extensions extensions;
  writer(extensions, critical);
  const ketra::RawExtension raw = extensions.find(objid).value();
  return {raw.value.copy(), raw.critical};
}

std::string text(const Stored &stored) { return hex(stored.value) + (stored.critical ? " critical" : " non-critical"); }

std::string valueReason(const TypedExtension &typed, ketra::View before, ketra::View after) {
  constexpr uint8_t kConstructed = 0x20;
  if ((*before.data() ^ *after.data()) == kConstructed) return "the string comes in segments";
  if (!hasDerLengths(before)) return "lengths are not DER";
  return typed.reason != nullptr ? typed.reason(before, after) : "contents are not DER";
}

// Why a valid extension is written differently; empty when it is not.
std::string reason(const TypedExtension &typed, const Extension &extension, const Stored &before, const Stored &after) {
  std::string text;
  const auto add = [&](std::string_view more) { text.append(text.empty() ? "" : "; ").append(more); };
  if (before.value != after.value) add(valueReason(typed, before.value, after.value));
  if (before.critical != after.critical) add("the criticality of this extension is fixed");
  if (extension.critical == false) add("the default critical FALSE is written out");
  return text;
}

class Check : public Visitor {
 public:
  explicit Check(std::ostream &out) : out_(out) {}

  bool allGood() const { return allGood_; }

  void note(const std::string &file, const std::string &text) override { out_ << file << ": " << text << "\n"; }

  void unreadable(const Place &place, const Json &problem) override {
    allGood_ = false;
    begin(place) << kindName(place.kind) << " is unreadable\n";
    printProblem(out_, problem, "  ");
  }

  void beginObject(const Place &place, const Json &) override { ++(place.kind == Kind::Crl ? crls_ : certificates_); }
  void endObject() override {}
  void beginEntry(const Place &, const Json &) override {}
  void endEntry() override {}

  void extension(const Place &place, const Extension &extension) override {
    ++extensions_;
    if (extension.isRepeated) fault(place, extension) << "the identifier is repeated\n";
    const TypedExtension *typed = findTyped(extension.objid);
    if (typed == nullptr) {
      ++unknown_;
    } else {
      roundTrip(place, extension, *typed);
    }
  }

  void unreadableExtension(const Place &place, uint32_t number, const ketra::Error &error) override {
    ++extensions_;
    ++rejected_;
    allGood_ = false;
    begin(place) << "extension " << number << ": rejected\n";
    printProblem(out_, problem(error), "  ");
  }

  void summary() {
    out_ << certificates_ << " certificates, " << crls_ << " CRLs, " << extensions_ << " extensions: " << identical_
         << " identical, " << reEncoded_ << " re-encoded, " << refused_ << " refused, " << rejected_ << " rejected, "
         << unknown_ << " unknown\n";
  }

 private:
  void roundTrip(const Place &place, const Extension &extension, const TypedExtension &typed) {
    const Stored before{extension.value, extension.isCritical()};
    Writer writer;
    try {
      writer = typed.read(store(extension.objid, before));
    } catch (const ketra::Error &error) {
      ++rejected_;
      fault(place, extension) << "rejected\n";
      return printProblem(out_, problem(error), "  ");
    }
    Stored after;
    try {
      after = write(extension.objid, writer, before.critical);
    } catch (const ketra::Error &error) {
      ++refused_;
      fault(place, extension) << "refused\n";
      return printProblem(out_, problem(error), "  ");
    }
    const std::string why = reason(typed, extension, before, after);
    if (why.empty()) {
      ++identical_;
      return;
    }
    ++reEncoded_;
    begin(place, extension) << "re-encoded: " << why << "\n";
    out_ << "  read:    " << text(before) << "\n  written: " << text(after) << "\n";
    secondRound(place, extension, typed, after);
  }

  // What the library has written itself must come back as it is.
  void secondRound(const Place &place, const Extension &extension, const TypedExtension &typed, const Stored &written) {
    try {
      const Writer writer = typed.read(store(extension.objid, written));
      const Stored again = write(extension.objid, writer, written.critical);
      if (again == written) return;
      fault(place, extension) << "FAULT: the second round differs\n";
      out_ << "  written: " << text(again) << "\n";
    } catch (const ketra::Error &error) {
      fault(place, extension) << "FAULT: the second round fails\n";
      printProblem(out_, problem(error), "  ");
    }
  }

  std::ostream &begin(const Place &place) {
    out_ << place.file << " #" << place.index << " ";
    if (place.entry != 0) out_ << "entry " << place.entry << " ";
    return out_;
  }
  std::ostream &begin(const Place &place, const Extension &extension) {
    const char *name = identifierName(extension.objid);
    return begin(place) << (name != nullptr ? name : extension.objid.text()) << ": ";
  }
  std::ostream &fault(const Place &place, const Extension &extension) {
    allGood_ = false;
    return begin(place, extension);
  }

  std::ostream &out_;
  bool allGood_ = true;
  uint64_t certificates_ = 0;
  uint64_t crls_ = 0;
  uint64_t extensions_ = 0;
  uint64_t identical_ = 0;
  uint64_t reEncoded_ = 0;
  uint64_t refused_ = 0;
  uint64_t rejected_ = 0;
  uint64_t unknown_ = 0;
};

}  // namespace

int check(const std::vector<std::string> &files, std::ostream &out) {
  Check visitor(out);
  const bool allRead = walk(files, visitor);
  visitor.summary();
  return exitStatus(allRead, visitor.allGood());
}

}  // namespace tool
