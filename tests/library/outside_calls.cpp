#include "library/outside_calls.h"

#include <gtest/gtest.h>

#include "ketra/contracts/attributes.h"
#include "ketra/contracts/certificate.h"

namespace ketra::test {

thread_local OutsideCalls outside;

}  // namespace ketra::test

// The calls between DLLs cannot be replaced: there nothing stands between them.
#ifndef _WIN32

#include <dlfcn.h>

namespace ketra::test {
namespace {

// Notes a call; true when it is the one to fail.
bool fails(const char *name, AsnErrorBlock *err) {
  if (!outside.armed) return false;
  const bool failedBefore = outside.failAt != 0 && static_cast<int>(outside.calls.size()) >= outside.failAt;
  if (failedBefore) {
    EXPECT_NE(err, outside.callers) << name << " cleans up into the caller's block";
    outside.cleanUp.push_back(name);
    if (outside.cleanUpFails && err != nullptr) err->code = kCleanUpCode;
    return outside.cleanUpFails;
  }
  if (outside.answer.call.empty()) {
    EXPECT_EQ(err, outside.callers) << name;
  }
  outside.calls.push_back(name);
  if (static_cast<int>(outside.calls.size()) != outside.failAt) return false;
  if (err != nullptr) err->code = kInjectedCode;
  return true;
}

void opened(AsnObject object, const AsnType *type, AsnValue value) {
  if (!outside.armed) return;
  outside.bound.erase(value);
  if (outside.opened.empty()) outside.opened = type->name;
  outside.openRoots.emplace(object, value);
}

// The structure that a value was opened from lives until that is closed.
void bound(AsnValue value, const AsnEncodedData *encoding) {
  if (outside.armed) outside.bound[value] = {encoding, *encoding};
}
void expectBound(AsnValue value) {
  const auto bound = outside.bound.find(value);
  if (!outside.armed || bound == outside.bound.end()) return;
  const auto &[encoding, given] = bound->second;
  EXPECT_EQ(encoding->octets, given.octets);
  EXPECT_EQ(encoding->length, given.length);
  outside.bound.erase(bound);
}

void closed(AsnObject object, AsnValue value) {
  const auto root = outside.openRoots.find(object);
  if (root != outside.openRoots.end() && root->second == value) outside.openRoots.erase(root);
}

void released(AsnObject object) {
  outside.openRoots.erase(object);
  --outside.liveWorkObjects;
}

// Whether this call is the one whose answer is replaced.
bool isAnswered(const char *name) {
  return outside.armed && outside.answer.call == name && --outside.answer.occurrence == 0;
}

void notePath(const char *call, const char *path) {
  if (outside.armed)
    outside.paths[call] += std::string(" ") + (path == nullptr ? "null" : *path == '\0' ? "empty" : path);
}

template <class Function>
Function *real(const char *name, Function *) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace ketra::test

using ketra::test::outside;

// A call that fails does nothing; a release that fails has still released. `done` runs when the call was made.
#define CALL(name, parameters, arguments, done)                              \
  extern "C" int32_t name parameters {                                       \
    static const auto next = ketra::test::real(#name, &name);                \
    if (ketra::test::fails(#name, err)) return ketra::test::kInjectedResult; \
    const int32_t result = next arguments;                                   \
    if (result == 0) {                                                       \
      done;                                                                  \
    }                                                                        \
    return result;                                                           \
  }
#define RELEASE(name, parameters, arguments, done)            \
  extern "C" int32_t name parameters {                        \
    static const auto next = ketra::test::real(#name, &name); \
    const bool fails = ketra::test::fails(#name, err);        \
    const int32_t result = next arguments;                    \
    done;                                                     \
    return fails ? ketra::test::kInjectedResult : result;     \
  }
#define NOTHING static_cast<void>(0)

// The shapes that most operations share.
#define CHECK(name, type) CALL(name, (const type *x, AsnErrorBlock *err), (x, err), NOTHING)
#define READ(name, type)                                                                               \
  CALL(name, (AsnObject o, AsnValue v, const char *p, type *x, AsnErrorBlock *err), (o, v, p, x, err), \
       ketra::test::notePath(#name, p))
#define ANSWERED(name, type, value)                                                                    \
  CALL(name, (AsnObject o, AsnValue v, const char *p, type *x, AsnErrorBlock *err), (o, v, p, x, err), \
       ketra::test::notePath(#name, p);                                                                \
       if (ketra::test::isAnswered(#name)) *x = value)
#define WRITE(name, type) READ(name, const type)
#define POOL_READ(name, type)                                                                       \
  CALL(name, (AsnMemObject m, AsnObject o, AsnValue v, const char *p, type *x, AsnErrorBlock *err), \
       (m, o, v, p, x, err), ketra::test::notePath(#name, p))
#define COPY(name, type) \
  CALL(name, (AsnMemObject m, type * to, const type *from, AsnErrorBlock *err), (m, to, from, err), NOTHING)
#define FREE(name, type) RELEASE(name, (AsnMemObject m, type * x, AsnErrorBlock * err), (m, x, err), NOTHING)

CHECK(AsnCheckBoolOptBER, AsnBoolOpt)
CHECK(AsnCheckIntOptBER, AsnIntOpt)
CHECK(AsnCheckBitBER, AsnBit)
CHECK(AsnCheckOctBER, AsnOct)
CHECK(AsnCheckBitOptBER, AsnBitOpt)
CHECK(AsnCheckOctOptBER, AsnOctOpt)
CHECK(AsnCheckGtimeBER, Gtime)
CHECK(AsnCheckGtimeOptBER, GtimeOpt)
CHECK(AsnCheckEncodedDataOptBER, AsnEncodedDataOpt)
CHECK(X509MUtilCheckCertSerialNumberOpt, X509CertSerialNumberOpt)
CHECK(AsnCheckObjidBER, Objid)
CHECK(AsnCheckEncodedDataBER, AsnEncodedData)

CALL(AsnSetBoolDER, (AsnObject o, AsnValue v, const char *p, int32_t x, AsnErrorBlock *err), (o, v, p, x, err),
     ketra::test::notePath("AsnSetBoolDER", p))
CALL(AsnSetIntDER, (AsnObject o, AsnValue v, const char *p, int32_t x, AsnErrorBlock *err), (o, v, p, x, err),
     ketra::test::notePath("AsnSetIntDER", p))
WRITE(AsnSetConstBitDER, AsnBit)
WRITE(AsnSetBitDER, AsnBit)
WRITE(AsnSetGtimeDER, Gtime)
WRITE(X509MUtilSetCertSerialNumberOpt, X509CertSerialNumberOpt)
WRITE(AsnSetOctDER, AsnOct)
WRITE(AsnSetOctBER, AsnOct)
WRITE(AsnSetObjidDER, Objid)
WRITE(AsnSetObjidBER, Objid)
WRITE(AsnSetEncodedDataDER, AsnEncodedData)
WRITE(AsnSetEncodedDataBER, AsnEncodedData)
WRITE(X509MUtilSetDirStrDER, X509DirStr)
WRITE(X509MUtilSetDirStrBER, X509DirStr)
WRITE(X509MUtilSetDirStrOptDER, X509DirStrOpt)
WRITE(X509MUtilSetDirStrOptBER, X509DirStrOpt)
READ(X509MUtilSetNameObjectDER, X509NameObjectRecord)
READ(X509MUtilSetNameObjectBER, X509NameObjectRecord)

READ(AsnGetIntBER, int32_t)
READ(AsnGetObjidBER, Objid)
READ(AsnGetOptBoolBER, AsnBoolOpt)
READ(AsnGetOptIntBER, AsnIntOpt)
READ(AsnGetEncodedDataDER, AsnBuffer)
READ(AsnGetEncodedDataBER, AsnBuffer)
READ(AsnMakeElement, AsnValue)
ANSWERED(AsnGetElement, AsnValue, nullptr)
ANSWERED(AsnCalCountOfSequence, uint32_t, outside.answer.value)
ANSWERED(AsnCalNumberOfChoice, uint32_t, outside.answer.value)
ANSWERED(AsnCalLengthOfValFld, uint32_t, outside.answer.value)
CALL(AsnCalAddressOfValFld,
     (AsnObject o, AsnValue v, const char *p, const uint8_t **a, uint32_t *n, AsnErrorBlock *err), (o, v, p, a, n, err),
     ketra::test::notePath("AsnCalAddressOfValFld", p);
     if (ketra::test::isAnswered("AsnCalAddressOfValFld")) *n = outside.answer.value)

POOL_READ(AsnMUtilGetBitConstBER, AsnBit)
POOL_READ(AsnMUtilGetOctOptBER, AsnOctOpt)
POOL_READ(AsnMUtilGetGtimeBER, Gtime)
POOL_READ(AsnMUtilGetGtimeOptBER, GtimeOpt)
POOL_READ(AsnMUtilGetOctDER, AsnOct)
POOL_READ(AsnMUtilGetOctBER, AsnOct)
POOL_READ(AsnMUtilGetObjidDER, Objid)
POOL_READ(AsnMUtilGetObjidBER, Objid)
POOL_READ(AsnMUtilGetObjidConstBER, Objid)
POOL_READ(AsnMUtilGetEncodedDataOptDER, AsnEncodedDataOpt)
POOL_READ(AsnMUtilGetEncodedDataOptBER, AsnEncodedDataOpt)
POOL_READ(AsnMUtilEncodeDER, AsnEncodedData)
POOL_READ(AsnMUtilEncodeBER, AsnEncodedData)
POOL_READ(X509MUtilGetDirStrDER, X509DirStr)
POOL_READ(X509MUtilGetDirStrBER, X509DirStr)
POOL_READ(X509MUtilGetDirStrOptDER, X509DirStrOpt)
POOL_READ(X509MUtilGetDirStrOptBER, X509DirStrOpt)

COPY(AsnMUtilCopyObjidBER, Objid)
COPY(AsnMUtilCopyOctBER, AsnOct)
COPY(AsnMUtilCopyEncodedDataDER, AsnEncodedData)
COPY(AsnMUtilCopyEncodedDataBER, AsnEncodedData)
COPY(AsnMUtilCopyEncodedDataOptBER, AsnEncodedDataOpt)
COPY(X509MUtilCopyDirStrBER, X509DirStr)
COPY(X509MUtilCopyDirStrOptBER, X509DirStrOpt)

FREE(AsnMUtilFreeObjid, Objid)
FREE(AsnMUtilFreeOct, AsnOct)
FREE(AsnMUtilFreeEncodedData, AsnEncodedData)
FREE(AsnMUtilFreeEncodedDataOpt, AsnEncodedDataOpt)
FREE(X509MUtilFreeDirStr, X509DirStr)
FREE(X509MUtilFreeDirStrOpt, X509DirStrOpt)
FREE(AsnMemObjectFree, const void)

CALL(AsnMemObjectCreate, (AsnMemObject * m, AsnErrorBlock *err), (m, err), ++outside.livePools)
CALL(AsnMemObjectMalloc, (AsnMemObject m, uint32_t n, void **x, AsnErrorBlock *err), (m, n, x, err), NOTHING)
RELEASE(AsnMemObjectDestroy, (AsnMemObject m, AsnErrorBlock *err), (m, err), --outside.livePools)

CALL(X509MUtilCopyNameObject, (X509NameObject * n, X509NameObject source, AsnErrorBlock *err), (n, source, err),
     ++outside.liveNames)
#define GET_NAME(name)                                                                                        \
  CALL(name, (AsnMemObject m, AsnObject o, AsnValue v, const char *p, X509NameObject *n, AsnErrorBlock *err), \
       (m, o, v, p, n, err), ++outside.liveNames)
GET_NAME(X509MUtilGetNameObjectDER)
GET_NAME(X509MUtilGetNameObjectBER)
RELEASE(X509NameObjectDestroy, (X509NameObject n, AsnErrorBlock *err), (n, err), outside.liveNames -= n != nullptr)
CALL(X509MUtilGetCheckLengthOfDirStr, (const X509DirStr *x, uint32_t most, int32_t of, AsnErrorBlock *err),
     (x, most, of, err), EXPECT_EQ(most, 32768u);
     if (outside.armed) outside.lengthsOf.push_back(of))

CALL(X509MUtilGetIntFromIntStr, (const AsnOct *x, int32_t *n, AsnErrorBlock *err), (x, n, err), NOTHING)
CALL(X509AttributesObjectGetPduDER, (X509AttributesObject a, AsnEncodedData *x, AsnErrorBlock *err), (a, x, err),
     NOTHING)
CALL(X509AttributesObjectSetPduBER, (X509AttributesObject a, const AsnEncodedData *x, AsnErrorBlock *err), (a, x, err),
     NOTHING)

CALL(KetraObjectSetExt, (KetraObject o, const KetraExtension *x, AsnErrorBlock *err), (o, x, err), NOTHING)
CALL(KetraObjectSearchExtpByObjid, (KetraObject o, const Objid *x, const KetraExtension **e, AsnErrorBlock *err),
     (o, x, e, err), if (outside.armed) outside.lookedUp.push_back(x))

CALL(AsnObjectCreate, (AsnObject * o, AsnErrorBlock *err), (o, err), ++outside.liveWorkObjects)
CALL(AsnOpenNew, (AsnObject o, const AsnType *t, AsnValue *v, AsnErrorBlock *err), (o, t, v, err),
     ketra::test::opened(o, t, *v))
CALL(AsnOpenFromMem, (AsnObject o, const AsnType *t, const AsnEncodedData *d, AsnValue *v, AsnErrorBlock *err),
     (o, t, d, v, err), ketra::test::opened(o, t, *v);
     ketra::test::bound(*v, d))
CALL(AsnDecode, (AsnObject o, AsnValue v, int32_t z, uint32_t *s, AsnErrorBlock *err), (o, v, z, s, err),
     EXPECT_EQ(z, 0))
RELEASE(AsnClose, (AsnObject o, AsnValue v, AsnErrorBlock *err), (o, v, err), ketra::test::expectBound(v);
        ketra::test::closed(o, v))
RELEASE(AsnObjectDestroy, (AsnObject o, AsnErrorBlock *err), (o, err), ketra::test::released(o))

extern "C" int32_t AsnMUtilErrorFinishAsn(AsnObject o, AsnValue v) {
  static const auto next = ketra::test::real("AsnMUtilErrorFinishAsn", &AsnMUtilErrorFinishAsn);
  if (outside.armed) {
    const auto root = outside.openRoots.find(o);
    EXPECT_EQ(v, root == outside.openRoots.end() ? nullptr : root->second)
        << "released with the value while it is open";
    outside.cleanUp.push_back("AsnMUtilErrorFinishAsn");
  }
  ketra::test::released(o);
  const int32_t result = next(o, v);
  return outside.cleanUpFails ? ketra::test::kInjectedResult : result;
}

#endif
