#include "show.hpp"

#include <utility>

#include "escape.hpp"
#include "exit_status.hpp"
#include "identifier_names.hpp"
#include "ketra/names/identifiers.hpp"
#include "output.hpp"
#include "typed_extensions.hpp"
#include "walk.hpp"

namespace tool {
namespace {

class Show : public Visitor {
 public:
  explicit Show(Printer &printer) : printer_(printer) {}

  bool allGood() const { return allGood_; }

  void note(const std::string &file, const std::string &text) override {
    printer_.open({{"file", file}, {"note", text}});
    printer_.close();
  }

  void unreadable(const Place &place, const Json &error) override {
    allGood_ = false;
    if (place.entry != 0) {
      beginEntries();
      return printer_.item({{"entry", place.entry}, {"error", error}});
    }
    Json head = headOf(place);
    head["error"] = error;
    printer_.open(head);
    printer_.close();
  }

  void beginObject(const Place &place, const Json &facts) override {
    Json head = headOf(place);
    head.update(facts);
    allGood_ = allGood_ && !hasFault(facts);
    printer_.open(head);
    printer_.list("extensions");
    isCrl_ = place.kind == Kind::crl;
    hasEntries_ = false;
  }

  void endObject() override {
    if (isCrl_) beginEntries();
    printer_.close();
  }

  void giveUp() override { printer_.giveUp(problem("out of memory: the rest is not shown")); }

  void beginEntry(const Place &place, const Json &facts) override {
    beginEntries();
    entry_ = {{"entry", place.entry}};
    entry_.update(facts);
    allGood_ = allGood_ && !hasFault(facts);
    entry_["extensions"] = Json::array();
  }

  void endEntry() override { printer_.item(entry_); }

  void extension(const Place &place, const ketra::Extension &extension, bool isRepeated) override {
    const ketra::ObjectIdentifierView id(extension.extnID);
    Json item;
    if (const std::string_view name = ketra::oid::name(id); !name.empty()) item["name"] = name;
    item["identifier"] = id.text();
    addIdentifierHex(item, id);
    item["critical"] = *extension.critical;
    if (isRepeated) {
      item["repeated"] = true;
      allGood_ = false;
    }
    addValue(id, extension.extnValue.octets(), item);
    print(place, std::move(item));
  }

  void unreadableExtension(const Place &place, uint32_t number, const Json &problem) override {
    allGood_ = false;
    print(place, {{"number", number}, {"error", problem}});
  }

  void unreadableAttribute(const Place &place, uint32_t number, const Json &problem) override {
    allGood_ = false;
    print(place, {{"attribute", number}, {"error", problem}});
  }

 private:
  static Json headOf(const Place &place) {
    return {{"file", place.file}, {"index", place.index}, {"kind", kindName(place.kind)}};
  }

  void beginEntries() {
    if (!hasEntries_) printer_.list("entries");
    hasEntries_ = true;
  }

  // The fields of a typed extension; its octets when it is not typed or cannot be read.
  void addValue(const ketra::ObjectIdentifierView &id, ketra::View value, Json &item) {
    if (const TypedExtension *typed = findTyped(id); typed != nullptr) {
      Json problem;
      if (std::optional<Fields> fields = typed->fields(value, problem)) {
        allGood_ = allGood_ && fields->allRead;
        item["value"] = std::move(fields->json);
        return;
      }
      allGood_ = false;
      item["error"] = std::move(problem);
    }
    item["hex"] = hex(value);
  }

  void print(const Place &place, Json item) {
    if (place.entry != 0) {
      entry_["extensions"].push_back(std::move(item));
    } else {
      printer_.item(item);
    }
  }

  Printer &printer_;
  bool allGood_ = true;
  bool isCrl_ = false;
  bool hasEntries_ = false;
  Json entry_;  // the one that is being walked through
};

}  // namespace

int show(BatchReader &reader, bool asJson, const Run &run) {
  const Outcome outcome = handleAll(
      reader,
      [asJson](const Batch &batch, std::ostream &out) {
        const auto printer = asJson ? makeJsonPrinter(out, batch.firstPiece == 0) : makeTextPrinter(out);
        Show visitor(*printer);
        Tally tally;
        tally.failures = walk(batch, visitor);
        tally.allGood = visitor.allGood();
        return tally;
      },
      run);
  if (asJson) writeResult(reader.pieces() == 0 ? "[]\n" : "\n]\n");
  return exitStatus(outcome.allRead, outcome.tally.allGood);
}

}  // namespace tool
