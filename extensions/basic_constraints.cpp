// BasicConstraints ::= SEQUENCE {                                RFC 5280 4.2.1.9
//     cA                 BOOLEAN DEFAULT FALSE,
//     pathLenConstraint  INTEGER (0..MAX) OPTIONAL }
//
// No default is applied in either direction: a present FALSE is written, an absent cA reads as absent.

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kBasicConstraints{&X509Objid_BasicConstraints, schema::Entry::BasicConstraints, "/"};

bool isNegative(const AsnIntOpt &integer) { return integer.option == 1 && integer.value < 0; }

}  // namespace

int32_t KetraObjectSsetBasicConstraints(KetraObject extensions, int32_t critical, const KetraBasicConstraints *value,
                                        AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    const AsnIntOpt &pathLen = value->pathLenConstraint;
    if (op.failed(AsnCheckBoolOptBER(&value->cA, err), "Call AsnCheckBoolOptBER")) return -1;
    if (op.failed(AsnCheckIntOptBER(&pathLen, err), "Call AsnCheckIntOptBER")) return -1;
    if (isNegative(pathLen)) return op.reject(KetraError_SetBasicConstraintsPathLen, "pathLen", pathLen.value);
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    const auto &[cA, pathLen] = *value;
    if (cA.option == 1 && op.failed(AsnSetBoolDER(work, root, "cA", cA.value, err), "Call AsnSetBoolDER")) return -1;
    if (pathLen.option == 1 &&
        op.failed(AsnSetIntDER(work, root, "pathLenConstraint", pathLen.value, err), "Call AsnSetIntDER")) {
      return -1;
    }
    return 0;
  };
  return setFrame(op, extensions, value, kBasicConstraints, critical, check, fill);
}

int32_t KetraObjectSgetBasicConstraints(KetraObject extensions, KetraBasicConstraints *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, value, kBasicConstraints, [&](AsnObject work, AsnValue root) {
    AsnIntOpt &pathLen = value->pathLenConstraint;
    if (op.failed(AsnGetOptBoolBER(work, root, "cA", &value->cA, err), "Call AsnGetOptBoolBER")) return -1;
    if (op.failed(AsnGetOptIntBER(work, root, "pathLenConstraint", &pathLen, err), "Call AsnGetOptIntBER")) return -1;
    if (isNegative(pathLen)) return op.reject(KetraError_GetBasicConstraintsPathLen, "pathLen", pathLen.value);
    return 0;
  });
}
