#include "core/extension_access.h"
#include "core/operation.h"
#include "ketra/ketra.h"

namespace ketra {
namespace {

int32_t query(const Operation &op, const Objid &objid, KetraObject extensions, int32_t *critical) {
  if (op.misses(extensions, critical)) return -1;
  const int32_t result = ketraObjectSgetCritical(extensions, &objid, critical, op.err());
  return op.failed(result, "Call ketraObjectSgetCritical") ? result : 0;
}

}  // namespace
}  // namespace ketra

using namespace ketra;

int32_t KetraObjectSgetBasicConstraintsCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_BasicConstraints, extensions, critical);
}

int32_t KetraObjectSgetKeyUsageCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_KeyUsage, extensions, critical);
}

int32_t KetraObjectSgetExtKeyUsageCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_ExtKeyUsage, extensions, critical);
}

int32_t KetraObjectSgetCertPoliciesCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_CertPolicies, extensions, critical);
}

int32_t KetraObjectSgetSubjectAltNameCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_SubjectAltName, extensions, critical);
}

int32_t KetraObjectSgetIssuerAltNameCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_IssuerAltName, extensions, critical);
}

int32_t KetraObjectSgetNameConstraintsCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_NameConstraints, extensions, critical);
}

int32_t KetraObjectSgetPolicyConstraintsCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_PolicyConstraints, extensions, critical);
}

int32_t KetraObjectSgetCRLDistributionPointsCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err) {
  return query({__func__, err}, X509Objid_CRLDistributionPoints, extensions, critical);
}
