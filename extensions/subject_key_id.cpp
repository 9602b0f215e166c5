// SubjectKeyIdentifier ::= KeyIdentifier                         RFC 5280 4.2.1.2
// KeyIdentifier ::= OCTET STRING

#include "core/frames.h"
#include "core/shapes.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kSubjectKeyId{&X509Objid_SubjectKeyId, schema::Entry::SubjectKeyIdentifier, "/"};
constexpr int32_t kNonCritical = 0;

}  // namespace

int32_t KetraObjectSsetSubjectKeyId(KetraObject extensions, const AsnOct *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] { return op.failed(AsnCheckOctBER(value, err), "Call AsnCheckOctBER") ? -1 : 0; };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetOctDER(work, root, "/", value, err), "Call AsnSetOctDER") ? -1 : 0;
  };
  return setFrame(op, extensions, value, kSubjectKeyId, kNonCritical, check, fill);
}

int32_t KetraObjectSgetSubjectKeyId(KetraObject extensions, AsnOct *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  CacheEntry *cached = nullptr;
  const auto read = [&](AsnObject work, AsnValue root) {
    if (const int32_t result = ketraObjectSgetSExt(extensions, CacheKind::SubjectKeyId, &cached, err); result != 0) {
      return result;
    }
    const int32_t got = AsnMUtilGetOctBER(extensions->pool, work, root, "/", &cached->subjectKeyId, err);
    return op.failed(got, "Call AsnMUtilGetOctetBER") ? -1 : 0;
  };
  const int32_t result = getFrame(op, extensions, value, kSubjectKeyId, read);
  if (result == 0) *value = byMember(cached->subjectKeyId);
  return result;
}
