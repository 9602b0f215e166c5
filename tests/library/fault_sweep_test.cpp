// Fails every outside call of every typed operation in turn: the functions below stand in front of the runtime's, which
// works because the library calls the runtime through the dynamic symbol table.

#include <dlfcn.h>

#include <functional>

#include "ketra.h"
#include "support/support.h"

namespace ketra::test {
namespace {

constexpr int32_t kInjectedResult = -77;
constexpr uint32_t kInjectedCode = 0x7EA50FFF;

struct Interposer {
  bool armed = false;
  int failAt = 0;  // 0: none
  std::vector<std::string> calls;
  int liveWorkObjects = 0;
  std::vector<const Objid *> lookedUp;
  std::string opened;  // the type of the value
} interposer;

const AsnType *opens(const AsnType *type) {
  interposer.opened = type->name;
  return type;
}

int32_t zero(int32_t argument) {
  EXPECT_EQ(argument, 0);
  return argument;
}

// Counts a call; true when it is the one to fail.
bool fails(const char *name, AsnErrorBlock *err) {
  if (!interposer.armed) return false;
  interposer.calls.push_back(name);
  if (static_cast<int>(interposer.calls.size()) != interposer.failAt) return false;
  if (err != nullptr) err->code = kInjectedCode;
  return true;
}

template <class Function>
Function *real(const char *name, Function *) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace ketra::test

#define REAL(name) (ketra::test::real(#name, &name))
// A call that fails does nothing; a release that fails has still released.
#define CALL(name, parameters, arguments)                                                  \
  extern "C" int32_t name parameters {                                                     \
    static const auto next = REAL(name);                                                   \
    return ketra::test::fails(#name, err) ? ketra::test::kInjectedResult : next arguments; \
  }
#define RELEASE(name, parameters, arguments, after)                                \
  extern "C" int32_t name parameters {                                             \
    static const auto next = REAL(name);                                           \
    const int32_t result = next arguments;                                         \
    after;                                                                         \
    return ketra::test::fails(#name, err) ? ketra::test::kInjectedResult : result; \
  }

#define ELEMENT AsnObject o, AsnValue v, const char *p
CALL(AsnCheckBoolOptBER, (const AsnBoolOpt *x, AsnErrorBlock *err), (x, err))
CALL(AsnCheckIntOptBER, (const AsnIntOpt *x, AsnErrorBlock *err), (x, err))
CALL(AsnCheckBitBER, (const AsnBit *x, AsnErrorBlock *err), (x, err))
CALL(AsnCheckOctBER, (const AsnOct *x, AsnErrorBlock *err), (x, err))
CALL(AsnOpenNew, (AsnObject o, const AsnType *t, AsnValue *v, AsnErrorBlock *err), (o, ketra::test::opens(t), v, err))
CALL(AsnOpenFromMem, (AsnObject o, const AsnType *t, const AsnEncodedData *d, AsnValue *v, AsnErrorBlock *err),
     (o, ketra::test::opens(t), d, v, err))
CALL(AsnDecode, (AsnObject o, AsnValue v, int32_t z, uint32_t *s, AsnErrorBlock *err),
     (o, v, ketra::test::zero(z), s, err))
CALL(AsnSetBoolDER, (ELEMENT, int32_t x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnSetIntDER, (ELEMENT, int32_t x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnSetConstBitDER, (ELEMENT, const AsnBit *x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnSetOctDER, (ELEMENT, const AsnOct *x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnGetOptBoolBER, (ELEMENT, AsnBoolOpt *x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnGetOptIntBER, (ELEMENT, AsnIntOpt *x, AsnErrorBlock *err), (o, v, p, x, err))
CALL(AsnMUtilGetBitConstBER, (AsnMemObject m, ELEMENT, AsnBit *x, AsnErrorBlock *err), (m, o, v, p, x, err))
CALL(AsnMUtilGetOctBER, (AsnMemObject m, ELEMENT, AsnOct *x, AsnErrorBlock *err), (m, o, v, p, x, err))
CALL(AsnMUtilEncodeDER, (AsnMemObject m, ELEMENT, AsnEncodedData *x, AsnErrorBlock *err), (m, o, v, p, x, err))
CALL(AsnMemObjectMalloc, (AsnMemObject m, uint32_t n, void **x, AsnErrorBlock *err), (m, n, x, err))
CALL(KetraObjectSetExt, (KetraObject o, const KetraExtension *x, AsnErrorBlock *err), (o, x, err))
RELEASE(AsnMemObjectFree, (AsnMemObject m, const void *x, AsnErrorBlock *err), (m, x, err), (void)0)
RELEASE(AsnClose, (AsnObject o, AsnValue v, AsnErrorBlock *err), (o, v, err), (void)0)
RELEASE(AsnObjectDestroy, (AsnObject o, AsnErrorBlock *err), (o, err), --ketra::test::interposer.liveWorkObjects)

extern "C" int32_t AsnObjectCreate(AsnObject *o, AsnErrorBlock *err) {
  static const auto next = REAL(AsnObjectCreate);
  if (ketra::test::fails("AsnObjectCreate", err)) return ketra::test::kInjectedResult;
  ++ketra::test::interposer.liveWorkObjects;
  return next(o, err);
}

extern "C" int32_t AsnMUtilErrorFinishAsn(AsnObject o, AsnValue v) {
  static const auto next = REAL(AsnMUtilErrorFinishAsn);
  ketra::test::interposer.calls.push_back(v == nullptr ? "finish(null)" : "finish(value)");
  --ketra::test::interposer.liveWorkObjects;
  return next(o, v);
}

extern "C" int32_t KetraObjectSearchExtpByObjid(KetraObject o, const Objid *x, const KetraExtension **e,
                                                AsnErrorBlock *err) {
  static const auto next = REAL(KetraObjectSearchExtpByObjid);
  if (ketra::test::interposer.armed) ketra::test::interposer.lookedUp.push_back(x);
  return ketra::test::fails("KetraObjectSearchExtpByObjid", err) ? ketra::test::kInjectedResult : next(o, x, e, err);
}

namespace ketra::test {
namespace {

struct Case {
  std::string name;  // of the exported operation
  const Objid *objid;
  const char *type;  // that its value is opened as
  std::function<int32_t(KetraObject, AsnErrorBlock *)> run;
  std::vector<std::string> calls;  // of a run that succeeds
};

std::vector<Case> cases() {
  static const KetraBasicConstraints constraints{{1, 1}, {3, 1}};
  static const uint8_t octets[] = {0x06, 0x00};
  static const AsnBit bits{octets, 9};
  static const AsnOct identifier{octets, 2};
  static KetraBasicConstraints constraintsRead;
  static AsnBit bitsRead;
  static AsnOct identifierRead;
  static int32_t critical;
  const std::vector<std::string> store = {"AsnMUtilEncodeDER", "AsnClose", "AsnObjectDestroy", "KetraObjectSetExt",
                                          "AsnMemObjectFree"};
  const std::vector<std::string> open = {"KetraObjectSearchExtpByObjid", "AsnObjectCreate", "AsnOpenFromMem",
                                         "AsnDecode"};
  const auto set = [&](std::vector<std::string> checks, const std::vector<std::string> &fills) {
    checks.insert(checks.end(), {"AsnObjectCreate", "AsnOpenNew"});
    checks.insert(checks.end(), fills.begin(), fills.end());
    checks.insert(checks.end(), store.begin(), store.end());
    return checks;
  };
  const auto get = [&](const std::vector<std::string> &reads) {
    std::vector<std::string> calls = open;
    calls.insert(calls.end(), reads.begin(), reads.end());
    calls.insert(calls.end(), {"AsnClose", "AsnObjectDestroy"});
    return calls;
  };
  return {
      {"KetraObjectSsetBasicConstraints", &X509Objid_BasicConstraints, "BasicConstraints",
       [](auto o, auto e) { return KetraObjectSsetBasicConstraints(o, 1, &constraints, e); },
       set({"AsnCheckBoolOptBER", "AsnCheckIntOptBER"}, {"AsnSetBoolDER", "AsnSetIntDER"})},
      {"KetraObjectSgetBasicConstraints", &X509Objid_BasicConstraints, "BasicConstraints",
       [](auto o, auto e) { return KetraObjectSgetBasicConstraints(o, &constraintsRead, e); },
       get({"AsnGetOptBoolBER", "AsnGetOptIntBER"})},
      {"KetraObjectSsetKeyUsage", &X509Objid_KeyUsage, "BITSTRING",
       [](auto o, auto e) { return KetraObjectSsetKeyUsage(o, 1, &bits, e); },
       set({"AsnCheckBitBER"}, {"AsnSetConstBitDER"})},
      {"KetraObjectSgetKeyUsage", &X509Objid_KeyUsage, "BITSTRING",
       [](auto o, auto e) { return KetraObjectSgetKeyUsage(o, &bitsRead, e); }, get({"AsnMUtilGetBitConstBER"})},
      {"KetraObjectSsetSubjectKeyId", &X509Objid_SubjectKeyId, "SubjectKeyIdentifier",
       [](auto o, auto e) { return KetraObjectSsetSubjectKeyId(o, &identifier, e); },
       set({"AsnCheckOctBER"}, {"AsnSetOctDER"})},
      {"KetraObjectSgetSubjectKeyId", &X509Objid_SubjectKeyId, "SubjectKeyIdentifier",
       [](auto o, auto e) { return KetraObjectSgetSubjectKeyId(o, &identifierRead, e); },
       get({"AsnMemObjectMalloc", "AsnMUtilGetOctBER"})},
      {"KetraObjectSgetKeyUsageCritical",
       &X509Objid_KeyUsage,
       "",
       [](auto o, auto e) { return KetraObjectSgetKeyUsageCritical(o, &critical, e); },
       {"KetraObjectSearchExtpByObjid"}},
  };
}

struct Outcome {
  int32_t result;
  std::vector<std::string> trace;
  std::string release;  // how the work object went
};

// What must follow when `call` of `operation` fails.
Outcome expected(const std::string &operation, const std::string &call) {
  const auto own = [&](const std::string &message) { return operation + ": " + message; };
  if (call == "KetraObjectSearchExtpByObjid") {
    if (operation.ends_with("Critical")) {
      return {kInjectedResult, {"ketraObjectSgetCritical: Call " + call, own("Call ketraObjectSgetCritical")}, ""};
    }
    return {kInjectedResult, {"ketraObjectSgetValueByObjid: Call " + call}, ""};
  }
  if (call == "KetraObjectSetExt" || call == "AsnMemObjectFree") {
    return {call == "KetraObjectSetExt" ? kInjectedResult : -1,
            {"ketraObjectSsetExt: Call " + call, own("Call ketraObjectSsetExt")},
            ""};
  }
  if (call == "AsnMemObjectMalloc") return {-1, {"ketraObjectSgetSExt: Call " + call}, "finish(value)"};
  if (call == "AsnMUtilGetOctBER") return {-1, {own("Call AsnMUtilGetOctetBER")}, "finish(value)"};
  if (call == "AsnOpenNew" || call == "AsnOpenFromMem" || call == "AsnClose") {
    return {-1, {own("Call " + call)}, "finish(null)"};
  }
  const bool before = call.starts_with("AsnCheck") || call == "AsnObjectCreate" || call == "AsnObjectDestroy";
  return {-1, {own("Call " + call)}, before ? "" : "finish(value)"};
}

TEST(FaultSweep, EveryOutsideCallOfEveryOperation) {
  for (const Case &one : cases()) {
    for (int failAt = 0; failAt <= static_cast<int>(one.calls.size()); ++failAt) {
      SCOPED_TRACE(one.name + ", failing call " + std::to_string(failAt));
      Extensions extensions;
      extensions.store(X509Objid_BasicConstraints, fromHex("30 00"));
      extensions.store(X509Objid_KeyUsage, fromHex("03 02 07 80"));
      extensions.store(X509Objid_SubjectKeyId, fromHex("04 01 AA"));
      const std::string before = extensions.stored(*one.objid);
      Err err;
      interposer = {.armed = true, .failAt = failAt, .calls = {}, .liveWorkObjects = 0, .lookedUp = {}, .opened = {}};
      const int32_t result = one.run(extensions, err);
      interposer.armed = false;
      EXPECT_EQ(interposer.liveWorkObjects, 0);
      for (const Objid *objid : interposer.lookedUp) EXPECT_EQ(objid, one.objid) << "the export itself is passed";
      if (failAt == 0) {
        EXPECT_EQ(result, 0) << err.text();
        EXPECT_EQ(interposer.calls, one.calls);
        EXPECT_EQ(interposer.opened, one.type);
        EXPECT_EQ(err.block.count, 0u);
        continue;
      }
      const std::string &failed = one.calls[static_cast<std::size_t>(failAt) - 1];
      const Outcome outcome = expected(one.name, failed);
      EXPECT_EQ(result, outcome.result) << failed;
      EXPECT_EQ(err.code(), kInjectedCode);
      EXPECT_EQ(err.trace(), outcome.trace);
      std::vector<std::string> calls(one.calls.begin(), one.calls.begin() + failAt);
      if (!outcome.release.empty()) calls.push_back(outcome.release);
      EXPECT_EQ(interposer.calls, calls) << "nothing is called after the failure but the release";
      if (failed != "AsnMemObjectFree") {
        EXPECT_EQ(extensions.stored(*one.objid), before);
      }
      EXPECT_EQ(one.run(extensions, err), 0) << "the next call works";
    }
  }
}

}  // namespace
}  // namespace ketra::test
