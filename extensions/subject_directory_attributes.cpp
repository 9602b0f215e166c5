// SubjectDirectoryAttributes ::= SEQUENCE SIZE (1..MAX) OF Attribute        RFC 5280 4.2.1.8
//
// Moved between the Extensions object and an Attributes object as a whole.

#include "core/extension_access.h"
#include "core/operation.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr int32_t kNonCritical = 0;

}  // namespace

int32_t KetraObjectSsetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                  AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(extensions)) return -1;
  if (attributes == nullptr) {
    return op.reject(KetraError_SetAttributesMissing, "Not Exist SubjectDirectoryAttributes");
  }
  AsnEncodedData owned{nullptr, 0};
  AsnEncodedData copy{nullptr, 0};  // storing gives back what it is handed
  const int32_t encoded = X509AttributesObjectGetPduDER(attributes, &owned, err);
  if (op.failed(encoded, "Call X509AttributesObjectGetPduDER")) return encoded;
  if (op.failed(AsnMUtilCopyEncodedDataDER(extensions->pool, &copy, &owned, err), "Call AsnMUtilCopyEncodedDataDER")) {
    return -1;
  }
  const int32_t stored =
      ketraObjectSsetExt(extensions, &X509Objid_SubjectDirectoryAttributes, &copy, kNonCritical, err);
  return op.failed(stored, "Call ketraObjectSsetExt") ? stored : 0;
}

int32_t KetraObjectSgetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                  AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(extensions)) return -1;
  AsnEncodedData encoding{nullptr, 0};
  const int32_t found = ketraObjectSgetValueByObjid(extensions, &X509Objid_SubjectDirectoryAttributes, &encoding, err);
  if (found != 0) return found;
  if (attributes == nullptr) return op.reject(KetraError_GetAttributesMissing, "None Param");
  const int32_t taken = X509AttributesObjectSetPduBER(attributes, &encoding, err);
  return op.failed(taken, "Call X509AttributesObjectSetPduBER") ? taken : 0;
}
