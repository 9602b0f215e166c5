// InvalidityDate ::= GeneralizedTime                             RFC 5280 5.3.2

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kInvalidityDate{&X509Objid_InvalidityDate, schema::Entry::InvalidityDate, nullptr};
constexpr int32_t kNonCritical = 0;

}  // namespace

int32_t KetraObjectSsetInvalidityDate(KetraObject extensions, const Gtime *date, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] { return op.failed(AsnCheckGtimeBER(date, err), "Call AsnCheckGtimeBER") ? -1 : 0; };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetGtimeDER(work, root, "/", date, err), "Call AsnSetGtimeDER") ? -1 : 0;
  };
  return setFrame(op, extensions, date, kInvalidityDate, kNonCritical, check, fill);
}

int32_t KetraObjectSgetInvalidityDate(KetraObject extensions, Gtime *date, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, date, kInvalidityDate, [&](AsnObject work, AsnValue root) {
    CacheEntry *cached = nullptr;
    if (const int32_t result = ketraObjectSgetSExt(extensions, CacheKind::InvalidityDate, &cached, err); result != 0) {
      return result;
    }
    const int32_t got = AsnMUtilGetGtimeBER(extensions->pool, work, root, "/", &cached->invalidityDate, err);
    if (op.failed(got, "Call AsnMUtilGetGtimeBER")) return -1;
    *date = cached->invalidityDate;
    return 0;
  });
}
