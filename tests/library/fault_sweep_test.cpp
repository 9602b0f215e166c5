// Fails every outside call of every operation in turn, and holds calls, results and traces against
// tests/data/outside_calls.txt.

#include <fstream>
#include <functional>
#include <sstream>

#include "ketra.h"
#include "library/outside_calls.h"
#include "schema/schema.h"
#include "support/names.h"

namespace ketra::test {
namespace {

// ---- The table -----------------------------------------------------------------------------------------------------

struct ExpectedCall {
  std::string name;
  std::vector<std::string> trace;  // when it fails
  int32_t result = -1;
};

struct Case {
  std::string name;  // operation and input
  std::string operation;
  std::vector<ExpectedCall> calls;
};

std::string replaced(std::string text, const std::string &rules) {
  for (std::size_t at = 0; (at = text.find("XER", at)) != std::string::npos;) text.replace(at, 3, rules);
  return text;
}

// One line: a function and what stands above it says when it fails.
struct Line {
  std::string name;
  std::string message;
  bool silent = false;
  bool passes = false;

  Line(std::string text, const std::string &rules) {
    const std::size_t colon = text.find(": ");
    if (colon != std::string::npos) message = text.substr(colon + 2);
    std::istringstream words(text.substr(0, colon));
    words >> name;
    name = replaced(name, rules);
    if (message.empty()) message = "Call " + name;
    for (std::string word; words >> word;) {
      silent = silent || word == "silent";
      passes = passes || word == "passes";
    }
  }
};

Case parse(const std::vector<std::string> &paragraph, const std::string &rules) {
  Case one;
  one.name = replaced(paragraph[0], rules);
  one.operation = one.name.substr(0, one.name.find(' '));
  std::vector<Line> path;  // down to the line, without the operation
  for (std::size_t i = 1; i < paragraph.size(); ++i) {
    const std::size_t depth = paragraph[i].find_first_not_of(' ') / 2;
    path.resize(depth - 1, Line("", ""));
    path.emplace_back(paragraph[i], rules);
    const bool isCall = i + 1 == paragraph.size() || paragraph[i + 1].find_first_not_of(' ') / 2 <= depth;
    if (!isCall) continue;
    ExpectedCall call{path.back().name, {}, path.back().passes ? kInjectedResult : -1};
    for (std::size_t at = path.size(); at-- > 0;) {
      if (path[at].silent) continue;
      call.trace.push_back((at == 0 ? one.operation : path[at - 1].name) + ": " + path[at].message);
    }
    one.calls.push_back(call);
  }
  return one;
}

std::vector<Case> readCases() {
  std::vector<Case> cases;
  std::ifstream file(KETRA_OUTSIDE_CALLS);
  std::vector<std::string> paragraph;
  const auto finish = [&] {
    if (paragraph.empty()) return;
    const bool isTwin = paragraph[0].find("XER") != std::string::npos;
    for (const char *rules : {"DER", "BER"}) {
      if (isTwin || *rules == 'D') cases.push_back(parse(paragraph, rules));
    }
    paragraph.clear();
  };
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    if (line.empty()) {
      finish();
    } else {
      paragraph.push_back(line);
    }
  }
  finish();
  return cases;
}

// ---- The operations ------------------------------------------------------------------------------------------------

// Everything that an operation may need, made anew for each failure.
struct Stage {
  explicit Stage(const std::string &kind) : input(kind) {
    EXPECT_EQ(object.setPdu(fromHex(held), false), 0);
    extensions.store(X509Objid_BasicConstraints, fromHex("30 00"));
    extensions.store(X509Objid_KeyUsage, fromHex("03 02 07 80"));
    extensions.store(X509Objid_SubjectKeyId, fromHex("04 01 AA"));
    for (const Objid *objid : {&X509Objid_SubjectAltName, &X509Objid_IssuerAltName, &X509Objid_CertIssuer}) {
      extensions.store(*objid, list);
    }
    EXPECT_EQ(decoded.decode(), 0);
    for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(setName(names.at(i), names.at(i)), 0);  // has to be encoded
    if (kind != "empty") {
      EXPECT_EQ(source.setPdu(fromHex(held), false), 0);
    }
  }
  static bool isKind(const std::string &text) { return std::find(kKinds.begin(), kKinds.end(), text) != kKinds.end(); }
  static int32_t setName(const GenName &to, const GenName &from, AsnErrorBlock *err = nullptr) {
    const X509GenNameParam param = from.param();
    return X509GenNameObjectSetName(to, &param, err);
  }

  const std::string input;
  const Octets list = fromHex("30 09 82 01 61 87 04 C0 00 02 01");
  const Exact encodedList{list};
  Extensions extensions;
  Work built{AsnType_SequenceOfAny};
  Work decoded{AsnType_SequenceOfAny, encodedList.data()};
  Pool pool;
  Names names{{"dNSName", "iPAddress"}};
  Names fresh{{"", ""}};
  GenName source;                                                              // the name of the input's kind, or none
  const std::string held = sampleOf(isKind(input) ? input : "directoryName");  // by both
  GenName object;
};

using Step = std::function<int32_t(Stage &, AsnErrorBlock *)>;

struct Operation {
  Step run;
  const Objid *objid = nullptr;  // of the extension that it reads or writes
  std::string opened = "";       // the type of the value it opens
  Step prepare = [](Stage &, AsnErrorBlock *) { return 0; };
};

const std::map<std::string, Operation> &operations() {
  static const KetraBasicConstraints constraints{{1, 1}, {3, 1}};
  static const uint8_t octets[] = {0x06, 0x00};
  static const AsnBit bits{octets, 9};
  static const AsnOct identifier{octets, 2};
  static KetraBasicConstraints constraintsRead;
  static AsnBit bitsRead;
  static AsnOct identifierRead;
  static int32_t critical;
  static uint32_t count;
  const auto getPdu = [](auto get) {
    return Operation{.run =
                         [=](Stage &s, auto err) {
                           AsnEncodedData encoding{};
                           return get(s.object, &encoding, err);
                         },
                     .opened = "GeneralName",
                     .prepare = [](Stage &s, auto err) { return Stage::setName(s.object, s.source, err); }};
  };
  const auto setPdu = [](auto set) {
    return Operation{.run =
                         [=](Stage &s, auto err) {
                           const Exact encoding(fromHex(sampleOf(s.input)));
                           const AsnEncodedData data = encoding.data();
                           return set(s.object, &data, err);
                         },
                     .opened = "GeneralName"};
  };
  const auto setList = [](auto set) {
    return Operation{
        .run = [=](Stage &s, auto err) { return set(s.built.object, s.built.value, "", s.names.first(), err); },
        .opened = "GeneralName"};
  };
  const auto getList = [](auto get) {
    return Operation{
        .run = [=](Stage &s,
                   auto err) { return get(s.pool, s.decoded.object, s.decoded.value, "", s.fresh.first(), err); },
        .opened = "GeneralName"};
  };
  const auto getOne = [](auto get) {
    return Operation{
        .run = [=](Stage &s,
                   auto err) { return get(s.pool, s.decoded.object, s.decoded.value, "1", s.fresh.at(0), err); },
        .opened = "GeneralName"};
  };
  const auto setNames = [](auto set, const Objid &objid) {
    return Operation{.run =
                         [=](Stage &s, auto err) {
                           const X509GenNames value{s.names.first()};
                           return set(s.extensions, &value, err);
                         },
                     .objid = &objid,
                     .opened = "GeneralNames"};
  };
  const auto getNames = [](auto get, const Objid &objid, const char *opened) {
    return Operation{.run =
                         [=](Stage &s, auto err) {
                           const X509GenNames value{s.fresh.first()};
                           return get(s.extensions, &value, err);
                         },
                     .objid = &objid,
                     .opened = opened};
  };
  const auto countNames = [](auto get, const Objid &objid, const char *opened) {
    return Operation{[=](Stage &s, auto err) { return get(s.extensions, &count, err); }, &objid, opened};
  };
  const auto critically = [](auto set) {
    return [=](KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err) {
      return set(extensions, 1, value, err);
    };
  };
  static const std::map<std::string, Operation> rows = {
      {"KetraObjectSsetBasicConstraints",
       {[](Stage &s, auto err) { return KetraObjectSsetBasicConstraints(s.extensions, 1, &constraints, err); },
        &X509Objid_BasicConstraints, "BasicConstraints"}},
      {"KetraObjectSgetBasicConstraints",
       {[](Stage &s, auto err) { return KetraObjectSgetBasicConstraints(s.extensions, &constraintsRead, err); },
        &X509Objid_BasicConstraints, "BasicConstraints"}},
      {"KetraObjectSgetBasicConstraintsCritical",
       {[](Stage &s, auto err) { return KetraObjectSgetBasicConstraintsCritical(s.extensions, &critical, err); },
        &X509Objid_BasicConstraints}},
      {"KetraObjectSsetKeyUsage",
       {[](Stage &s, auto err) { return KetraObjectSsetKeyUsage(s.extensions, 1, &bits, err); }, &X509Objid_KeyUsage,
        "BITSTRING"}},
      {"KetraObjectSgetKeyUsage",
       {[](Stage &s, auto err) { return KetraObjectSgetKeyUsage(s.extensions, &bitsRead, err); }, &X509Objid_KeyUsage,
        "BITSTRING"}},
      {"KetraObjectSsetSubjectKeyId",
       {[](Stage &s, auto err) { return KetraObjectSsetSubjectKeyId(s.extensions, &identifier, err); },
        &X509Objid_SubjectKeyId, "SubjectKeyIdentifier"}},
      {"KetraObjectSgetSubjectKeyId",
       {[](Stage &s, auto err) { return KetraObjectSgetSubjectKeyId(s.extensions, &identifierRead, err); },
        &X509Objid_SubjectKeyId, "SubjectKeyIdentifier"}},
      {"X509GenNameObjectCreate", {[](Stage &, auto err) {
         X509GenNameObject made = nullptr;
         const int32_t result = X509GenNameObjectCreate(&made, err);
         outside.armed = false;
         X509GenNameObjectDestroy(made, nullptr);
         return result;
       }}},
      {"X509GenNameObjectDestroy",
       {[](Stage &s, auto err) { return X509GenNameObjectDestroy(std::exchange(*s.object.handle(), nullptr), err); }}},
      {"X509GenNameObjectSetName", {[](Stage &s, auto err) {
         const bool isOwn = s.input.starts_with("its-own") && s.object.hasName();
         return Stage::setName(s.object, isOwn ? s.object : s.source, err);
       }}},
      {"X509GenNameObjectGetPduDER", getPdu(X509GenNameObjectGetPduDER)},
      {"X509GenNameObjectGetPduBER", getPdu(X509GenNameObjectGetPduBER)},
      {"X509GenNameObjectSetPduDER", setPdu(X509GenNameObjectSetPduDER)},
      {"X509GenNameObjectSetPduBER", setPdu(X509GenNameObjectSetPduBER)},
      {"X509GenNameObjectCopy", {[](Stage &s, auto err) { return X509GenNameObjectCopy(s.object, s.source, err); }}},
      {"X509MUtilSetGenNamesDER", setList(X509MUtilSetGenNamesDER)},
      {"X509MUtilSetGenNamesBER", setList(X509MUtilSetGenNamesBER)},
      {"X509MUtilSgetGenNamesDER", getList(X509MUtilSgetGenNamesDER)},
      {"X509MUtilSgetGenNamesBER", getList(X509MUtilSgetGenNamesBER)},
      {"X509MUtilSgetGenNameObjectDER", getOne(X509MUtilSgetGenNameObjectDER)},
      {"X509MUtilSgetGenNameObjectBER", getOne(X509MUtilSgetGenNameObjectBER)},
      {"X509MUtilCopyGenNameObject",
       {.run = [](Stage &s, auto err) { return X509MUtilCopyGenNameObject(s.object.handle(), s.source, err); },
        .prepare =
            [](Stage &s, auto err) {
              Stage::setName(s.source, s.source, err);
              return s.object.setPdu(fromHex(sampleOf("directoryName")), true, err);
            }}},
      {"KetraObjectSsetSubjectAltName", setNames(critically(KetraObjectSsetSubjectAltName), X509Objid_SubjectAltName)},
      {"KetraObjectSsetIssuerAltName", setNames(critically(KetraObjectSsetIssuerAltName), X509Objid_IssuerAltName)},
      {"KetraObjectSsetCertIssuer", setNames(KetraObjectSsetCertIssuer, X509Objid_CertIssuer)},
      {"KetraObjectSgetSubjectAltName",
       getNames(KetraObjectSgetSubjectAltName, X509Objid_SubjectAltName, "GeneralNames")},
      {"KetraObjectSgetIssuerAltName", getNames(KetraObjectSgetIssuerAltName, X509Objid_IssuerAltName, "GeneralNames")},
      {"KetraObjectSgetCertIssuer", getNames(KetraObjectSgetCertIssuer, X509Objid_CertIssuer, "CertificateIssuer")},
      {"KetraObjectSgetSubjectAltNameCalGenName",
       countNames(KetraObjectSgetSubjectAltNameCalGenName, X509Objid_SubjectAltName, "GeneralNames")},
      {"KetraObjectSgetIssuerAltNameCalGenName",
       countNames(KetraObjectSgetIssuerAltNameCalGenName, X509Objid_IssuerAltName, "GeneralNames")},
      {"KetraObjectSgetCertIssuerCalGenName",
       countNames(KetraObjectSgetCertIssuerCalGenName, X509Objid_CertIssuer, "CertificateIssuer")},
  };
  return rows;
}

// ---- The sweep -----------------------------------------------------------------------------------------------------

struct Live {
  int workObjects = outside.liveWorkObjects;
  int pools = outside.livePools;
  int names = outside.liveNames;
  bool operator==(const Live &) const = default;
};

int32_t runArmed(const Operation &operation, Stage &stage, Err &err, int failAt) {
  outside.callers = err;
  outside.failAt = failAt;
  outside.calls.clear();
  outside.cleanUp.clear();
  outside.lookedUp.clear();
  outside.opened.clear();
  outside.armed = true;
  const int32_t result = operation.run(stage, err);
  outside.armed = false;
  return result;
}

void expectSuccess(const Case &one, const Operation &operation) {
  Stage stage(one.name.substr(std::min(one.name.size(), one.operation.size() + 1)));
  Err err;
  ASSERT_EQ(operation.prepare(stage, err), 0);
  EXPECT_EQ(runArmed(operation, stage, err, 0), 0) << err.text();
  std::vector<std::string> calls;
  for (const ExpectedCall &call : one.calls) calls.push_back(call.name);
  EXPECT_EQ(outside.calls, calls);
  EXPECT_EQ(outside.opened, operation.opened);
  EXPECT_EQ(err.block.count, 0u);
}

void expectFailure(const Case &one, const Operation &operation, int failAt) {
  const ExpectedCall &call = one.calls.at(static_cast<std::size_t>(failAt) - 1);
  SCOPED_TRACE(call.name + ", call " + std::to_string(failAt));
  Stage stage(one.name.substr(std::min(one.name.size(), one.operation.size() + 1)));
  Err err;
  ASSERT_EQ(operation.prepare(stage, err), 0);
  const std::string stored = operation.objid == nullptr ? "" : stage.extensions.stored(*operation.objid);
  const Live before;
  EXPECT_EQ(runArmed(operation, stage, err, failAt), call.result);
  EXPECT_EQ(err.code(), kInjectedCode);
  EXPECT_EQ(err.trace(), call.trace);
  EXPECT_EQ(outside.liveWorkObjects, before.workObjects);
  for (const Objid *objid : outside.lookedUp) EXPECT_EQ(objid, operation.objid) << "the export itself is passed";
  if (operation.objid != nullptr && call.name != "AsnMemObjectFree") {
    EXPECT_EQ(stage.extensions.stored(*operation.objid), stored);
  }
  if (*stage.object.handle() != nullptr) {
    const std::string holds = stage.object.der();
    EXPECT_TRUE(holds == stage.held || holds == "empty") << holds;
  }
  Err again;
  EXPECT_EQ(operation.run(stage, again), 0) << "the next call works: " << again.text();
}

TEST(FaultSweep, EveryOutsideCallOfEveryOperation) {
  const std::vector<Case> cases = readCases();
  const Live before;
  for (const Case &one : cases) {
    SCOPED_TRACE(one.name);
    const auto operation = operations().find(one.operation);
    ASSERT_NE(operation, operations().end());
    expectSuccess(one, operation->second);
    for (int failAt = 1; failAt <= static_cast<int>(one.calls.size()); ++failAt) {
      expectFailure(one, operation->second, failAt);
    }
    EXPECT_EQ(Live(), before) << "everything is released";
  }
  for (const auto &[name, operation] : operations()) {
    const auto isTested = [&, &wanted = name](const Case &one) { return one.operation == wanted; };
    EXPECT_TRUE(std::any_of(cases.begin(), cases.end(), isTested)) << name;
  }
}

}  // namespace
}  // namespace ketra::test
