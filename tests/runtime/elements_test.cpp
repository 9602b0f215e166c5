// Reading, setting, making and finding elements, and what is encoded.

#include <cstring>
#include <deque>
#include <functional>
#include <sstream>

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

// ---- What operations read as text, and what they are given ----------------------------------------------------------

std::string textOf(int32_t number) { return std::to_string(number); }
std::string textOf(uint32_t number) { return std::to_string(number); }
std::string textOf(AsnValue element) { return element == nullptr ? "absent" : "present"; }
std::string textOf(const AsnBit &bits) { return toHex(bits.octets, (bits.bits + 7) / 8); }
std::string textOf(const X509DirStr &string) {
  return std::to_string(string.choice) + ": " + toHex(string.octets, string.length);
}
std::string textOf(const Objid &objid) {
  char text[64] = "";
  EXPECT_EQ(ObjidToText(&objid, text, sizeof text, nullptr, nullptr), 0);
  return text;
}
std::string textOf(const Gtime &time) {
  char text[28] = "";
  EXPECT_EQ(GtimeToText(&time, text, sizeof text, nullptr), 0);
  return text;
}
template <class Shape>
std::string textOf(const Shape &shape) {
  if constexpr (requires { shape.option; }) {
    const bool isEmpty = octetsWithin(shape) == Octets(sizeof shape);
    return shape.option == 1 ? textOf(shape.value) : isEmpty ? "absent" : "left over";
  } else {
    return toHex(shape.octets, shape.length);
  }
}

// Octets that are kept.
AsnOct octetsOf(const std::string &hex) {
  const Octets octets = fromHex(hex);
  return exactly({reinterpret_cast<const char *>(octets.data()), octets.size()});
}
void parse(const std::string &text, AsnOct *octets) { *octets = octetsOf(text); }
void parse(const std::string &text, AsnEncodedData *encoding) {
  const AsnOct octets = octetsOf(text);
  *encoding = {octets.octets, octets.length};
}
// "1.2.3", also what is no identifier.
void parse(const std::string &text, Objid *objid) {
  static std::deque<std::vector<uint32_t>> kept;
  std::vector<uint32_t> &arcs = kept.emplace_back();
  std::istringstream parts(text);
  for (std::string arc; std::getline(parts, arc, '.');) arcs.push_back(static_cast<uint32_t>(std::stoul(arc)));
  *objid = {arcs.data(), static_cast<uint32_t>(arcs.size())};
}
void parse(const std::string &text, Gtime *time) {
  if (GtimeFromText(text.c_str(), time, nullptr) != 0) *time = {INT32_MAX, 0};
}
// "80 7F: 9", and "5: 41" for an alternative.
void parse(const std::string &text, AsnBit *bits) {
  const std::size_t colon = text.find(": ");
  const AsnOct octets = octetsOf(text.substr(0, colon));
  bits->octets = octets.octets;
  bits->bits =
      colon == std::string::npos ? 8 * octets.length : static_cast<uint32_t>(std::stoul(text.substr(colon + 2)));
}
void parse(const std::string &text, X509DirStr *string) {
  const AsnOct octets = octetsOf(text.substr(text.find(": ") + 2));
  *string = {static_cast<uint32_t>(std::stoul(text)), octets.octets, octets.length};
}

// ---- Operations
// ------------------------------------------------------------------------------------------------------

struct Step {
  Work &work;
  AsnValue from;
  const char *path;
  std::string given;
  Err err = {};

  // What is read is written on success only.
  template <class Out, class Get>
  std::string read(const Get &get) {
    Out out{};
    Octets room;
    if constexpr (std::is_same_v<Out, AsnBit>) out.bits = static_cast<uint32_t>(std::stoul(given));
    if constexpr (std::is_same_v<Out, AsnBuffer>) {
      uint32_t length = 0;
      EXPECT_EQ(AsnCalLengthOfValFld(work.object, from, path, &length, nullptr), 0);
      room.resize(length);
      out.octets = room.data();
    }
    const Out before = out;
    err = called(get, &out);
    if (err.block.count == 0) return textOf(out);
    EXPECT_EQ(std::memcmp(&out, &before, sizeof out), 0);
    return "";
  }

  template <class Out>
  std::string run(int32_t (*get)(AsnObject, AsnValue, const char *, Out *, AsnErrorBlock *)) {
    return read<Out>([&](Out *out, AsnErrorBlock *to) { return get(work.object, from, path, out, to); });
  }
  template <class Out>
  std::string run(int32_t (*get)(AsnMemObject, AsnObject, AsnValue, const char *, Out *, AsnErrorBlock *)) {
    static const Pool pool;
    return read<Out>([&](Out *out, AsnErrorBlock *to) { return get(pool, work.object, from, path, out, to); });
  }
  template <class In>
  std::string run(int32_t (*set)(AsnObject, AsnValue, const char *, const In *, AsnErrorBlock *)) {
    In in{};
    if (given != "null") parse(given, &in);
    err = called(set, work.object, from, path, given == "null" ? nullptr : &in);
    return "";
  }
  std::string run(int32_t (*set)(AsnObject, AsnValue, const char *, int32_t, AsnErrorBlock *)) {
    err = called(set, work.object, from, path, std::stoi(given));
    return "";
  }
  // "6: 02 01 09": where in the input, and what.
  std::string run(int32_t (*find)(AsnObject, AsnValue, const char *, const uint8_t **, uint32_t *, AsnErrorBlock *)) {
    const uint8_t *at = nullptr;
    uint32_t length = 0;
    err = called(find, work.object, from, path, &at, &length);
    if (length == ASN_ABSENT_LENGTH) return "absent";
    return at == nullptr ? "" : std::to_string(at - work.octets()) + ": " + toHex(at, length);
  }
};

using Operations = std::map<std::string, std::function<std::string(Step &)>>;

template <class... Functions>
Operations operationsOf(const char *names, Functions... functions) {
  Operations operations;
  std::istringstream list(names);
  const auto add = [&](auto function) {
    std::string name;
    std::getline(list >> std::ws, name, ',');
    operations[name] = [function](Step &step) { return step.run(function); };
  };
  (add(functions), ...);
  return operations;
}

std::string runStep(const std::string &name, Step &step) {
#define OPERATIONS(...) operationsOf(#__VA_ARGS__, __VA_ARGS__)
  static const Operations operations = OPERATIONS(
      AsnSetBoolDER, AsnSetIntDER, AsnSetOctDER, AsnSetOctBER, AsnSetObjidDER, AsnSetObjidBER, AsnSetBitDER,
      AsnSetConstBitDER, AsnSetGtimeDER, AsnSetEncodedDataDER, AsnSetEncodedDataBER, X509MUtilSetDirStrDER,
      AsnGetIntBER, AsnGetOptBoolBER, AsnGetOptIntBER, AsnGetObjidBER, AsnGetEncodedDataDER, AsnGetEncodedDataBER,
      AsnMUtilGetObjidDER, AsnMUtilGetObjidBER, AsnMUtilGetOctDER, AsnMUtilGetOctBER, AsnMUtilGetOctOptBER,
      AsnMUtilGetBitConstBER, AsnMUtilGetGtimeBER, AsnMUtilGetGtimeOptBER, AsnMUtilGetEncodedDataOptDER,
      AsnMUtilGetEncodedDataOptBER, X509MUtilGetDirStrDER, X509MUtilGetDirStrBER, X509MUtilGetDirStrOptDER,
      AsnMUtilEncodeDER, AsnMUtilEncodeBER, AsnGetElement, AsnMakeElement, AsnCalCountOfSequence, AsnCalNumberOfChoice,
      AsnCalLengthOfValFld, AsnCalAddressOfValFld);
  return operations.at(name)(step);
}

// "AsnError_Path" or "AsnError_Incomplete component number"; else what was read.
void expectOutcome(const std::string &expected, const std::string &text, const Err &err) {
  if (expected.find("Error_") == std::string::npos) {
    EXPECT_EQ(err.block.count, 0u);
    EXPECT_EQ(text, expected.find('*') == std::string::npos ? expected : toHex(fromHex(expected))) << err.text();
    return;
  }
  const std::size_t blank = std::min(expected.find(' '), expected.size());
  EXPECT_EQ(err.code(), codeNamed(expected.substr(0, blank))) << text << err.text();
  EXPECT_NE(err.text().find(expected.substr(blank)), std::string::npos) << err.text();
}

TEST(Elements, StepByStep) {
  std::optional<Work> work;
  AsnValue from = nullptr;
  for (const Row &row : rowsOf("runtime/elements.tsv")) {
    SCOPED_TRACE(row.place);
    const std::string name = row.column(1), path = row.column(2);
    if (!row.at(0).empty()) {
      if (name == "new") work.emplace(typeNamed(row.at(0)));
      if (name != "new") work.emplace(typeNamed(row.at(0)), fromHex(name));
      from = work->value;
      continue;
    }
    if (name == "from") {
      from = work->element(path.c_str());
    } else if (name == "AsnDecode") {
      expectOutcome(row.column(4), "", called([&](AsnErrorBlock *err) { return work->decode(err); }));
    } else if (name == "AsnClose") {
      expectOutcome(row.column(4), "", called(AsnClose, work->object, from));
    } else {
      Step step{*work, from, path == "null" ? nullptr : path.c_str(), row.column(3)};
      const std::string text = runStep(name, step);
      const std::string expected = row.column(4);
      expectOutcome(expected.find('/') == std::string::npos ? expected : golden(expected), text, step.err);
    }
  }
}

// A value through its getter as text, and on into another value through its setter.
TEST(Elements, Scalars) {
  static const std::map<std::string, std::array<const char *, 3>> kOperations = {
      {"Int", {"AsnGetIntBER", "AsnSetIntDER"}},           {"Enum", {"AsnGetIntBER", "AsnSetIntDER"}},
      {"Bool", {"AsnGetOptBoolBER", "AsnSetBoolDER"}},     {"Oid", {"AsnGetObjidBER", "AsnSetObjidDER"}},
      {"Time", {"AsnMUtilGetGtimeBER", "AsnSetGtimeDER"}}, {"Bits", {"AsnMUtilGetBitConstBER", "AsnSetBitDER", "12"}},
      {"", {"AsnMUtilGetOctBER", "AsnSetOctBER"}},
  };
  for (const Row &row : rowsOf("runtime/scalars.tsv")) {
    SCOPED_TRACE(row.place);
    const bool isGolden = row.at(1).find('/') != std::string::npos;
    const auto found = kOperations.find(row.at(0));
    const auto &[get, set, wanted] = found == kOperations.end() ? kOperations.at("") : found->second;
    Work from(typeNamed(row.at(0)), fromHex(isGolden ? golden(row.at(1)) : row.at(1)));
    Step read{from, from.value, "/", wanted == nullptr ? "" : wanted};
    const std::string text = from.decode(read.err) == 0 ? runStep(get, read) : "";
    expectOutcome(row.at(2), text, read.err);
    if (!isGolden) continue;
    Work to(typeNamed(row.at(0)));
    Step written{to, to.value, "", text};
    runStep(set, written);
    EXPECT_EQ(to.encode(), golden(row.at(1)));
  }
}

}  // namespace
}  // namespace ketra::test
