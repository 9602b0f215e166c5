// PrivateKeyUsagePeriod ::= SEQUENCE {                           RFC 3280 4.2.1.4
//     notBefore  [0] GeneralizedTime OPTIONAL,
//     notAfter   [1] GeneralizedTime OPTIONAL }

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kPeriod{&X509Objid_PrivateKeyUsagePeriod, schema::Entry::PrivateKeyUsagePeriod, "/"};
constexpr int32_t kNonCritical = 0;

}  // namespace

int32_t KetraObjectSsetPrivateKeyUsagePeriod(KetraObject extensions, const KetraPrivateKeyUsagePeriod *period,
                                             AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    const int32_t before = AsnCheckGtimeOptBER(&period->notBefore, err);
    if (op.failed(before, "Call AsnCheckGtimeOptBER(notBefore)")) return before;
    const int32_t after = AsnCheckGtimeOptBER(&period->notAfter, err);
    return op.failed(after, "Call AsnCheckGtimeOptBER(notAfter)") ? after : 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    const auto &[before, after] = *period;
    if (before.option == 1 &&
        op.failed(AsnSetGtimeDER(work, root, "notBefore", &before.value, err), "Call AsnSetGtimeDER(notBefore)")) {
      return -1;
    }
    if (after.option == 1 &&
        op.failed(AsnSetGtimeDER(work, root, "notAfter", &after.value, err), "Call AsnSetGtimeDER(notAfter)")) {
      return -1;
    }
    return 0;
  };
  return setFrame(op, extensions, period, kPeriod, kNonCritical, check, fill);
}

int32_t KetraObjectSgetPrivateKeyUsagePeriod(KetraObject extensions, KetraPrivateKeyUsagePeriod *period,
                                             AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, period, kPeriod, [&](AsnObject work, AsnValue root) {
    CacheEntry *cached = nullptr;
    if (const int32_t result = ketraObjectSgetSExt(extensions, CacheKind::PrivateKeyUsagePeriod, &cached, err);
        result != 0) {
      return result;
    }
    AsnMemObject pool = extensions->pool;
    if (op.failed(AsnMUtilGetGtimeOptBER(pool, work, root, "notBefore", &cached->period.notBefore, err),
                  "Call AsnMUtilGetGtimeOptBER")) {
      return -1;
    }
    period->notBefore = cached->period.notBefore;
    if (op.failed(AsnMUtilGetGtimeOptBER(pool, work, root, "notAfter", &cached->period.notAfter, err),
                  "Call AsnMUtilGetGtimeOptBER")) {
      return -1;
    }
    period->notAfter = cached->period.notAfter;
    return 0;
  });
}
