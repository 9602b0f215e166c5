// CRLReason ::= ENUMERATED {                                     RFC 5280 5.3.1
//     unspecified (0), keyCompromise (1), cACompromise (2), affiliationChanged (3), superseded (4),
//     cessationOfOperation (5), certificateHold (6), removeFromCRL (8) }
//
// The values of RFC 2459: later ones are refused.

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kReasonCode{&X509Objid_ReasonCode, schema::Entry::CRLReason, nullptr};
constexpr int32_t kNonCritical = 0;

bool isReason(int32_t code) { return (code >= 0 && code <= 6) || code == 8; }

}  // namespace

int32_t KetraObjectSsetReasonCode(KetraObject extensions, const int32_t *reasonCode, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    return isReason(*reasonCode) ? 0 : op.reject(KetraError_SetReasonCode, "reasonCode", *reasonCode);
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetIntDER(work, root, "/", *reasonCode, err), "Call AsnSetIntDER") ? -1 : 0;
  };
  return setFrame(op, extensions, reasonCode, kReasonCode, kNonCritical, check, fill);
}

int32_t KetraObjectSgetReasonCode(KetraObject extensions, int32_t *reasonCode, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, reasonCode, kReasonCode, [&](AsnObject work, AsnValue root) {
    if (op.failed(AsnGetIntBER(work, root, "/", reasonCode, err), "Call AsnGetIntBER")) return -1;
    return isReason(*reasonCode) ? 0 : op.reject(KetraError_GetReasonCode, "reasonCode", *reasonCode);
  });
}
