#include "output.hpp"

#include <algorithm>
#include <string>

#include "colour.hpp"

namespace tool {
namespace {

// ---- Text ---------------------------------------------------------------------------------------------------------

// A value whose type has words of its own: they say what its members say.
bool hasWords(const Json &value) { return value.is_object() && value.contains("text") && !value.contains("kind"); }

// An identifier with its name counts as one.
bool isScalar(const Json &value) { return !value.is_structured() || value.contains("identifier") || hasWords(value); }

std::string scalar(const Json &value) {
  if (value.is_null()) return "(absent)";
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_object()) return value.dump();
  if (hasWords(value)) return value["text"].get<std::string>();
  auto identifier = value.at("identifier").get<std::string>();
  if (value.contains("identifierHex")) identifier += " (hex " + value["identifierHex"].get<std::string>() + ")";
  return value.contains("name") ? value["name"].get<std::string>() + " (" + identifier + ")" : identifier;
}

// Whether a list fits one line, on which commas tell its members apart.
bool isScalarList(const Json &value) {
  return value.is_array() && std::all_of(value.begin(), value.end(), [](const Json &member) {
           return isScalar(member) && scalar(member).find(", ") == std::string::npos;
         });
}

std::string joined(const Json &list) {
  std::string text;
  for (const Json &value : list) text.append(text.empty() ? "" : ", ").append(scalar(value));
  return text.empty() ? "(none)" : text;
}

// "label: text" on one line, and below it what the text does not tell: octets only where there is no text.
void printNamed(std::ostream &out, const std::string &label, const Json &named, const std::string &indent) {
  const bool hasText = named.contains("text");
  out << indent << label << (hasText ? ": " + scalar(named["text"]) : "") << "\n";
  const std::string deeper(indent.size() + 2, ' ');
  for (const auto &[key, value] : named.items()) {
    if (key == "error") {
      printProblem(out, value, deeper);
    } else if (value.is_object()) {
      printNamed(out, key, value, deeper);
    } else if (isScalarList(value)) {
      out << deeper << key << ": " << joined(value) << "\n";
    } else if (key == "remark" || key == "identifierHex" || key == "minimum" || key == "maximum" ||
               (key == "octets" && !hasText)) {
      out << deeper << key << ": " << scalar(value) << "\n";
    }
  }
}

void printName(std::ostream &out, std::string label, const Json &name, const std::string &indent) {
  if (name.contains("type")) label += " " + scalar(name["type"]);
  if (name.contains("typeName")) label += " (" + scalar(name["typeName"]) + ")";
  printNamed(out, label, name, indent);
}

void printFields(std::ostream &out, const Json &fields, const std::string &indent);

void printMember(std::ostream &out, const Json &member, const std::string &indent) {
  if (isScalar(member)) {
    out << indent << "- " << scalar(member) << "\n";
  } else {
    const bool isName = member.contains("kind");
    isName ? printName(out, scalar(member["kind"]), member, indent) : printFields(out, member, indent + "- ");
  }
}

// "key: value" lines; members of a list of objects begin with "- ".
void printFields(std::ostream &out, const Json &fields, const std::string &indent) {
  std::string begin = indent;
  if (indent.ends_with("- ")) begin.replace(begin.size() - 2, 2, "  ");
  const std::string deeper = begin + "  ";
  std::string lead = indent;
  if (fields.empty()) out << indent << "(empty)\n";
  for (const auto &[key, value] : fields.items()) {
    if (isScalar(value)) {
      out << lead << key << ": " << scalar(value) << "\n";
    } else if (value.contains("kind")) {
      const bool isName = value["kind"] != "value";
      printName(out, isName ? key + " " + scalar(value["kind"]) : key, value, lead);
    } else if (value.is_object()) {
      out << lead << key << ":\n";
      printFields(out, value, deeper);
    } else if (isScalarList(value)) {
      out << lead << key << ": " << joined(value) << "\n";
    } else {
      out << lead << key << ":\n";
      for (const Json &member : value) {
        printMember(out, member, deeper);
      }
    }
    lead = begin;
  }
}

// A member of a list that cannot be read has only its number there.
void printLabel(std::ostream &out, const Json &extension) {
  if (extension.contains("identifier")) {
    out << Colour::Name << scalar(extension) << Colour::None;
  } else if (extension.contains("attribute")) {
    out << Colour::Bad << "attribute " << extension.at("attribute") << Colour::None;
  } else {
    out << Colour::Bad << "extension " << extension.at("number") << Colour::None;
  }
}

void printExtension(std::ostream &out, const Json &extension, const std::string &indent) {
  out << indent;
  printLabel(out, extension);
  if (extension.value("critical", false)) out << ", " << Colour::Notable << "critical" << Colour::None;
  if (extension.value("repeated", false)) {
    out << ", " << Colour::Bad << "REPEATED: this identifier occurs before in the same list" << Colour::None;
  }
  out << "\n";
  const std::string deeper = indent + "  ";
  if (extension.contains("value")) printFields(out, extension["value"], deeper);
  if (extension.contains("error")) printProblem(out, extension["error"], deeper);
  if (extension.contains("hex")) out << deeper << "hex: " << scalar(extension["hex"]) << "\n";
}

// Fields that cannot be read, or have no text.
void printOdd(std::ostream &out, const Json &head, const std::string &indent) {
  if (!head.contains("odd")) return;
  for (const Json &field : head["odd"]) {
    out << indent << field.at("field").get<std::string>() << "\n";
    if (field.contains("error")) printProblem(out, field["error"], indent + "  ");
    if (field.contains("remark")) out << indent << "  remark: " << scalar(field["remark"]) << "\n";
    out << indent << "  hex: " << scalar(field.at("hex")) << "\n";
  }
}

std::string textOf(const Json &fact) {
  if (fact.is_null()) return "(unreadable)";
  const std::string text = scalar(fact);
  return text.empty() ? "(empty)" : text;
}

class TextPrinter : public Printer {
 public:
  explicit TextPrinter(std::ostream &out) : out_(out) {}

  void open(const Json &head) override {
    out_ << Colour::Heading << scalar(head.at("file"));
    if (head.contains("index")) out_ << " #" << head["index"] << ": " << scalar(head.at("kind"));
    out_ << Colour::None;
    if (head.contains("note")) out_ << ": " << scalar(head["note"]);
    for (const char *fact : {"serialNumber", "subject", "thisUpdate", "nextUpdate", "revoked"}) {
      if (head.contains(fact)) out_ << ", " << fact << " " << textOf(head[fact]);
    }
    out_ << "\n";
    if (head.contains("attributes")) out_ << "  attributes: " << joined(head["attributes"]) << "\n";
    printOdd(out_, head, "  ");
    if (head.contains("error")) printProblem(out_, head["error"], "  ");
  }
  void list(const char *) override { isListed_ = true; }
  void item(const Json &item) override {
    isListed_ = false;
    if (!item.contains("entry")) return printExtension(out_, item, "  ");
    out_ << "  entry " << item["entry"];
    for (const char *fact : {"serialNumber", "revocationDate"}) {
      if (item.contains(fact)) out_ << ", " << fact << " " << textOf(item[fact]);
    }
    out_ << "\n";
    printOdd(out_, item, "    ");
    if (item.contains("error")) printProblem(out_, item["error"], "    ");
    if (!item.contains("extensions")) return;
    for (const Json &extension : item["extensions"]) printExtension(out_, extension, "    ");
  }
  void close() override {
    if (isListed_) out_ << "  no extensions\n";
    isListed_ = false;
  }
  void giveUp(const Json &problem) override {
    out_.clear();
    out_ << "\n";
    printProblem(out_, problem, "  ");
    isListed_ = false;
  }

 private:
  std::ostream &out_;
  bool isListed_ = false;  // lists were opened, and nothing has come
};

// ---- JSON ---------------------------------------------------------------------------------------------------------

// Whatever has slipped in unescaped: the result is JSON in ASCII.
std::string dump(const Json &value) { return value.dump(-1, ' ', true, Json::error_handler_t::replace); }

// What is printed at once is printed whole or not at all, so that giveUp() can close it.
class JsonPrinter : public Printer {
 public:
  JsonPrinter(std::ostream &out, bool isFirst) : out_(out), isFirst_(isFirst) {}

  void open(const Json &head) override {
    std::string text = (isFirst_ ? "[\n" : ",\n") + dump(head);
    text.pop_back();  // close() gives the brace
    out_ << text;
    isFirst_ = false;
    isOpen_ = true;
  }
  void list(const char *name) override {
    endList();
    out_ << ",\n  \"" + std::string(name) + "\": [";
    isInList_ = true;
    isFirstItem_ = true;
  }
  void item(const Json &item) override {
    out_ << (isFirstItem_ ? "\n    " : ",\n    ") + dump(item);
    isFirstItem_ = false;
  }
  void close() override {
    endList();
    out_ << "}";
    isOpen_ = false;
  }
  void giveUp(const Json &problem) override {
    out_.clear();
    if (!isOpen_) return;
    endList();
    out_ << ",\n  \"error\": " + dump(problem);
    close();
  }

 private:
  void endList() {
    if (isInList_) out_ << "]";
    isInList_ = false;
  }

  std::ostream &out_;
  bool isFirst_;
  bool isOpen_ = false;
  bool isInList_ = false;
  bool isFirstItem_ = true;
};

}  // namespace

std::unique_ptr<Printer> makeTextPrinter(std::ostream &out) { return std::make_unique<TextPrinter>(out); }
std::unique_ptr<Printer> makeJsonPrinter(std::ostream &out, bool isFirst) {
  return std::make_unique<JsonPrinter>(out, isFirst);
}

}  // namespace tool
