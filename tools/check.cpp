#include "check.hpp"

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "asn1_reader.hpp"
#include "colour.hpp"
#include "escape.hpp"
#include "exit_status.hpp"
#include "identifier_names.hpp"
#include "out_of_memory.hpp"
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

// The first line of a trace: what is wrong, not where.
std::string headline(const Json &problem) { return problem.at("trace").at(0).get<std::string>(); }

class Check : public Visitor {
 public:
  explicit Check(std::ostream &out) : out_(out) {}

  const Tally &tally() const { return tally_; }
  void setFailures(std::vector<std::string> failures) { tally_.failures = std::move(failures); }

  void note(const std::string &file, const std::string &text) override { out_ << file << ": " << text << "\n"; }

  void unreadable(const Place &place, const Json &problem) override {
    explainUnreadable(place, kindName(place.kind), problem);
  }

  void giveUp() override { out_.clear(); }

  void beginObject(const Place &place, const Json &facts) override {
    sayFaults(place, facts);
    ++(place.kind == Kind::Crl ? tally_.crls : place.kind == Kind::Request ? tally_.requests : tally_.certificates);
  }
  void endObject() override {}
  void beginEntry(const Place &place, const Json &facts) override { sayFaults(place, facts); }
  void endEntry() override {}

  void extension(const Place &place, const Extension &extension) override {
    if (extension.isRepeated) {
      begin(place, extension, true) << Colour::Bad << "the identifier is repeated" << Colour::None << "\n";
      tally_.countReason("repeated", nameOf(extension.objid), placeText(place));
    }
    const TypedExtension *typed = findTyped(extension.objid);
    const Verdict verdict = typed == nullptr ? Verdict::Unknown : roundTrip(place, extension, *typed);
    tally_.count(verdict, extension.isCritical());
    tally_.countRow(extension.objid, verdict, extension.isCritical());
  }

  void unreadableExtension(const Place &place, uint32_t number, const ketra::Error &error) override {
    tally_.count(Verdict::Rejected, false);
    fault(place) << "extension " << number << ": " << Colour::Bad << "rejected" << Colour::None << "\n";
    explain(place, "rejected", "extension", problem(error));
  }

  void unreadableAttribute(const Place &place, uint32_t number, const Json &problem) override {
    ++tally_.unreadable;
    fault(place) << "attribute " << number << " is " << Colour::Bad << "unreadable" << Colour::None << "\n";
    explain(place, "unreadable", "attribute", problem);
  }

 private:
  void explainUnreadable(const Place &place, const std::string &what, const Json &problem) {
    ++tally_.unreadable;
    fault(place) << what << " is " << Colour::Bad << "unreadable" << Colour::None << "\n";
    explain(place, "unreadable", what, problem);
  }

  void sayFaults(const Place &place, const Json &facts) {
    if (!hasFault(facts)) return;
    for (const Json &field : facts.at("odd")) {
      if (field.contains("error")) explainUnreadable(place, field.at("field"), field["error"]);
    }
  }

  Verdict roundTrip(const Place &place, const Extension &extension, const TypedExtension &typed) {
    const Stored before{extension.value, extension.isCritical()};
    Writer writer;
    try {
      writer = typed.read(store(typed.objid, before));
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      return failed(place, extension, Verdict::Rejected, error);
    }
    Stored after;
    try {
      after = write(typed.objid, writer, before.critical);
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      return failed(place, extension, Verdict::Refused, error);
    }
    std::string why = reason(typed, extension, before, after);
    const std::string notDer = typed.writtenDefault != nullptr ? typed.writtenDefault(after.value) : "";
    if (why.empty()) {
      if (!notDer.empty()) remark(place, extension, "identical, not DER", notDer);
      return Verdict::Identical;
    }
    if (!notDer.empty()) why += "; not DER: " + notDer;
    begin(place, extension, false) << Colour::Notable << verdictName(Verdict::ReEncoded) << Colour::None << ": " << why
                                   << "\n";
    out_ << "  read:    " << text(before) << "\n  written: " << text(after) << "\n";
    if (before.critical && !after.critical) {
      remark(place, extension, "critical is lost", "the library always writes this extension non-critical");
    }
    tally_.countReason(verdictName(Verdict::ReEncoded), nameOf(extension.objid) + ": " + why, placeText(place));
    secondRound(place, extension, typed, after);
    return Verdict::ReEncoded;
  }

  // What is no fault and should not be overlooked.
  void remark(const Place &place, const Extension &extension, const char *what, const std::string &why) {
    begin(place, extension, false) << Colour::Notable << what << Colour::None << ": " << why << "\n";
    tally_.countReason(what, nameOf(extension.objid) + ": " + why, placeText(place));
  }

  Verdict failed(const Place &place, const Extension &extension, Verdict verdict, const ketra::Error &error) {
    begin(place, extension, true) << Colour::Bad << verdictName(verdict) << Colour::None << "\n";
    explain(place, verdictName(verdict), nameOf(extension.objid), problem(error));
    return verdict;
  }

  // What the library has written itself must come back as it is.
  void secondRound(const Place &place, const Extension &extension, const TypedExtension &typed, const Stored &written) {
    try {
      const Writer writer = typed.read(store(typed.objid, written));
      const Stored again = write(typed.objid, writer, written.critical);
      if (again == written) return;
      begin(place, extension, true) << Colour::Bad << "FAULT: the second round differs" << Colour::None << "\n";
      out_ << "  written: " << text(again) << "\n";
      tally_.countReason("FAULT", nameOf(extension.objid) + ": the second round differs", placeText(place));
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      begin(place, extension, true) << Colour::Bad << "FAULT: the second round fails" << Colour::None << "\n";
      explain(place, "FAULT", nameOf(extension.objid), problem(error));
    }
  }

  static std::string nameOf(const Identifier &objid) {
    const char *name = identifierName(objid);
    return name != nullptr ? name : objid.text();
  }

  static std::string placeText(const Place &place) {
    std::string text = place.file + " #" + std::to_string(place.index);
    return place.entry != 0 ? text + " entry " + std::to_string(place.entry) : text;
  }

  std::ostream &begin(const Place &place, const Extension &extension, bool isFault) {
    tally_.allGood = tally_.allGood && !isFault;
    return out_ << placeText(place) << " " << nameOf(extension.objid) << ": ";
  }
  std::ostream &fault(const Place &place) {
    tally_.allGood = false;
    return out_ << placeText(place) << " ";
  }
  void explain(const Place &place, const char *what, const std::string &subject, const Json &problem) {
    printProblem(out_, problem, "  ");
    tally_.countReason(what, subject + ": " + headline(problem), placeText(place));
  }

  std::ostream &out_;
  Tally tally_;
};

}  // namespace

int check(BatchReader &reader, bool isSummary, const Run &run) {
  const Outcome outcome = handleAll(
      reader,
      [isSummary](const Batch &batch, std::ostream &out) {
        std::ostream nowhere(nullptr);
        Check visitor(isSummary ? nowhere : out);
        visitor.setFailures(walk(batch, visitor));
        return visitor.tally();
      },
      run);
  std::ostringstream text;
  isSummary ? outcome.tally.printSummary(text) : outcome.tally.printLine(text);
  writeResult(text.str());
  return exitStatus(outcome.allRead, outcome.tally.allGood);
}

}  // namespace tool
