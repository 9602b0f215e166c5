// The two sequences of steps that typed operations follow: one for every set, one for every get and count. An extension
// puts in what is its own as callables that return 0, -1 or a callee's result; the frames alone know the order of the
// steps and what is released after each failure.
#pragma once

#include "core/extension_access.h"
#include "core/operation.h"
#include "schema/schema.h"

namespace ketra {

struct Extension {
  const Objid *objid;      // the export itself, so that callers can use the same object
  schema::Entry type;      // of the value
  const char *encodePath;  // "/" or null: both name the whole value
};

// Drops the work object on a failure path and passes the result on.
inline int32_t abandon(AsnObject work, AsnValue value, int32_t result) {
  AsnMUtilErrorFinishAsn(work, value);
  return result;
}

// The steps that sequences are made of. Each reports under `op` what failed and releases the work object then.
int32_t openNew(const Operation &op, schema::Entry type, AsnObject *work, AsnValue *value);
int32_t openEncoded(const Operation &op, schema::Entry type, const AsnEncodedData &encoding, AsnObject *work,
                    AsnValue *value);
int32_t closeAndDestroy(const Operation &op, AsnObject work, AsnValue value);

// Counts the members of a value that is a list; when there is no list, refuses with the given code and reason.
int32_t countRoot(const Operation &op, AsnObject work, AsnValue root, uint32_t absentCode, Literal absentReason,
                  uint32_t *count);

namespace detail {

int32_t finishSet(const Operation &op, KetraObject extensions, const Extension &extension, int32_t critical,
                  AsnObject work, AsnValue value);
inline int32_t beginGet(const Operation &op, KetraObject extensions, const Extension &extension,
                        AsnEncodedData *encoding, AsnObject *work, AsnValue *value) {
  // A failed lookup has said all there is to say.
  const int32_t found = ketraObjectSgetValueByObjid(extensions, extension.objid, encoding, op.err());
  if (found != 0) return found;
  return openEncoded(op, extension.type, *encoding, work, value);
}

}  // namespace detail

// Stands for the structure where it is a chain: an empty one is refused in its own way.
inline constexpr const char *kChain = "";

// `check()` judges the caller's structure before anything is made; `fill(work, value)` writes it into a new value.
template <class Check, class Fill>
int32_t setFrame(const Operation &op, KetraObject extensions, const void *structure, const Extension &extension,
                 int32_t critical, Check &&check, Fill &&fill) {
  if (op.misses(extensions, structure)) return -1;
  if (const int32_t result = check(); result != 0) return result;
  AsnObject work = nullptr;
  AsnValue value = nullptr;
  if (openNew(op, extension.type, &work, &value) != 0) return -1;
  if (const int32_t result = fill(work, value); result != 0) return abandon(work, value, result);
  return detail::finishSet(op, extensions, extension, critical, work, value);
}

// `read(work, value)` takes what it wants from the decoded value of the stored extension.
template <class Read>
int32_t getFrame(const Operation &op, KetraObject extensions, const void *structure, const Extension &extension,
                 Read &&read) {
  if (op.misses(extensions, structure)) return -1;
  AsnEncodedData encoding{nullptr, 0};  // what the value is bound to: it lives until that is closed
  AsnObject work = nullptr;
  AsnValue value = nullptr;
  const int32_t begun = detail::beginGet(op, extensions, extension, &encoding, &work, &value);
  if (begun != 0) return begun;
  if (const int32_t result = read(work, value); result != 0) return abandon(work, value, result);
  return closeAndDestroy(op, work, value);
}

}  // namespace ketra
