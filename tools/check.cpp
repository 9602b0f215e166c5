#include "check.hpp"

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "colour.hpp"
#include "escape.hpp"
#include "exit_status.hpp"
#include "identifier_names.hpp"
#include "ketra/names/identifiers.hpp"
#include "typed_extensions.hpp"
#include "walk.hpp"

namespace tool {
namespace {

std::string textOf(ketra::View value, bool critical) { return hex(value) + (critical ? " critical" : " non-critical"); }

// What keeps a value from being DER: what is wrong, and where.
struct Departure {
  std::string what, where;
};
Departure departureOf(const TypedExtension &typed, ketra::View value) {
  const Json found = typed.departure(value);
  if (found.is_null()) return {};
  const auto path = found.value("path", "");
  return {found.at("message").get<std::string>(), " at offset " + found["offset"].dump() + " (" + path + ")"};
}

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
    ++(place.kind == Kind::crl ? tally_.crls : place.kind == Kind::request ? tally_.requests : tally_.certificates);
  }
  void endObject() override {}
  void beginEntry(const Place &place, const Json &facts) override { sayFaults(place, facts); }
  void endEntry() override {}

  void extension(const Place &place, const ketra::Extension &extension, bool isRepeated) override {
    const ketra::ObjectIdentifierView id(extension.extnID);
    if (isRepeated) {
      begin(place, id, true) << Colour::Bad << "the identifier is repeated" << Colour::None << "\n";
      tally_.countReason("repeated", nameOf(id), placeText(place));
    }
    const TypedExtension *typed = findTyped(id);
    const Verdict verdict = typed == nullptr ? Verdict::Unknown : roundTrip(place, extension, *typed);
    tally_.count(verdict, *extension.critical);
    tally_.countRow(extension.extnID, verdict, *extension.critical);
  }

  void unreadableExtension(const Place &place, uint32_t number, const Json &problem) override {
    tally_.count(Verdict::Rejected, false);
    fault(place) << "extension " << number << ": " << Colour::Bad << "rejected" << Colour::None << "\n";
    explain(place, "rejected", "extension", problem);
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

  Verdict roundTrip(const Place &place, const ketra::Extension &extension, const TypedExtension &typed) {
    const ketra::ObjectIdentifierView id(extension.extnID);
    const ketra::View value = extension.extnValue.octets();
    const bool critical = *extension.critical;
    const Written written = typed.write(value, critical);
    if (written.outcome != Written::Outcome::Good) {
      const bool isRejected = written.outcome == Written::Outcome::Rejected;
      return failed(place, id, isRejected ? Verdict::Rejected : Verdict::Refused, written.problem);
    }
    std::string why, where;  // it is written differently
    const auto add = [&why](const std::string &more) { why.append(why.empty() ? "" : "; ").append(more); };
    const Departure notDer = departureOf(typed, written.value);
    if (value != ketra::View(written.value)) {
      const Departure departure = departureOf(typed, value);
      add(departure.what.empty() ? "contents are not DER" : departure.what);
      where = departure.where;
    }
    if (critical != written.critical) add("the criticality of this extension is fixed");
    if (extension.critical.isPresent() && !critical) add("the default critical FALSE is written out");
    if (why.empty()) {
      if (!notDer.what.empty()) remark(place, id, "identical, not DER", notDer.what, notDer.where);
      return Verdict::Identical;
    }
    begin(place, id, false) << Colour::Notable << verdictName(Verdict::ReEncoded) << Colour::None << ": " << why
                            << where << "\n";
    out_ << "  read:    " << textOf(value, critical) << "\n  written: " << textOf(written.value, written.critical)
         << "\n";
    if (!notDer.what.empty()) remark(place, id, "re-encoded, not DER", notDer.what, notDer.where);
    if (critical && !written.critical) {
      remark(place, id, "critical is lost", "the library always writes this extension non-critical", "");
    }
    tally_.countReason(verdictName(Verdict::ReEncoded), nameOf(id) + ": " + why, placeText(place));
    secondRound(place, id, typed, written);
    return Verdict::ReEncoded;
  }

  // What is not a fault and should not be overlooked.
  void remark(const Place &place, const ketra::ObjectIdentifierView &id, const char *what, const std::string &why,
              const std::string &where) {
    begin(place, id, false) << Colour::Notable << what << Colour::None << ": " << why << where << "\n";
    tally_.countReason(what, nameOf(id) + ": " + why, placeText(place));
  }

  Verdict failed(const Place &place, const ketra::ObjectIdentifierView &id, Verdict verdict, const Json &problem) {
    begin(place, id, true) << Colour::Bad << verdictName(verdict) << Colour::None << "\n";
    explain(place, verdictName(verdict), nameOf(id), problem);
    return verdict;
  }

  // What the library has written itself must come back as it is.
  void secondRound(const Place &place, const ketra::ObjectIdentifierView &id, const TypedExtension &typed,
                   const Written &written) {
    const Written again = typed.write(written.value, written.critical);
    if (again.outcome != Written::Outcome::Good) {
      begin(place, id, true) << Colour::Bad << "FAULT: the second round fails" << Colour::None << "\n";
      explain(place, "FAULT", nameOf(id), again.problem);
    } else if (again.value != written.value || again.critical != written.critical) {
      begin(place, id, true) << Colour::Bad << "FAULT: the second round differs" << Colour::None << "\n";
      out_ << "  written: " << textOf(again.value, again.critical) << "\n";
      tally_.countReason("FAULT", nameOf(id) + ": the second round differs", placeText(place));
    }
  }

  static std::string nameOf(const ketra::ObjectIdentifierView &id) {
    const std::string_view name = ketra::oid::name(id);
    return name.empty() ? id.text() : std::string(name);
  }

  static std::string placeText(const Place &place) {
    std::string text = place.file + " #" + std::to_string(place.index);
    return place.entry != 0 ? text + " entry " + std::to_string(place.entry) : text;
  }

  std::ostream &begin(const Place &place, const ketra::ObjectIdentifierView &id, bool isFault) {
    tally_.allGood = tally_.allGood && !isFault;
    return out_ << placeText(place) << " " << nameOf(id) << ": ";
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
