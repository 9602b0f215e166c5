/* The layouts that callers compile against. A change here breaks every program that was built before it. */
#include <stddef.h>

#include "ketra.h"
#include "ketra_runtime.h"

#define OFFSET(type, field, expected) _Static_assert(offsetof(type, field) == (expected), #type "." #field)
#define SIZE(type, expected) _Static_assert(sizeof(type) == (expected), #type)
enum { kPointer = sizeof(void *) };

SIZE(AsnType, 16 + kPointer);
SIZE(Gtime, 8);
SIZE(GtimeOpt, 12);
SIZE(AsnBoolOpt, 8);
SIZE(AsnOct, 2 * kPointer);
SIZE(AsnOctOpt, 3 * kPointer);
SIZE(KetraBasicConstraints, 16);
OFFSET(KetraBasicConstraints, pathLenConstraint, 8);
OFFSET(KetraExtension, critical, 2 * kPointer);
OFFSET(KetraExtension, criticalOption, 2 * kPointer + 4);
OFFSET(KetraExtension, value, 2 * kPointer + 8);
OFFSET(struct KetraObjectRecord, structuredCache, 6 * kPointer);
OFFSET(AsnErrorBlock, code, 0);
SIZE(X509DirStr, 3 * kPointer);
SIZE(X509DirStrOpt, 4 * kPointer);
OFFSET(X509DirStrOpt, option, 3 * kPointer);
SIZE(X509GenNameParam, 8 * kPointer);
OFFSET(X509GenNameParam, dNSName, kPointer);
OFFSET(X509GenNameParam, otherName.value.option, 5 * kPointer);
OFFSET(X509GenNameParam, ediPartyName.partyName, 5 * kPointer);
OFFSET(X509GenNameChain, genName, kPointer);
OFFSET(X509GenNamesOpt, option, kPointer);
SIZE(X509DistributionPointName, 2 * kPointer);
SIZE(X509DistributionPointNameOpt, 3 * kPointer);
OFFSET(X509AttributeTypeAndValue, value, 3 * kPointer);
OFFSET(KetraDistributionPoint, reasons, 4 * kPointer);
OFFSET(KetraDistributionPoint, cRLIssuer, 7 * kPointer);
OFFSET(KetraIssuingDistributionPoint, onlyContainsUserCerts, 3 * kPointer);
OFFSET(KetraIssuingDistributionPoint, onlySomeReasons, 3 * kPointer + 16);
OFFSET(KetraIssuingDistributionPoint, indirectCRL, 6 * kPointer + 16);
OFFSET(X509GenSubtree, minimum, 2 * kPointer);
OFFSET(X509GenSubtree, maximum, 2 * kPointer + 8);
OFFSET(X509GenSubtreesOpt, option, kPointer);
OFFSET(KetraNameConstraints, excludedSubtrees, 2 * kPointer);
OFFSET(X509CertSerialNumber, octets, kPointer);
OFFSET(X509CertSerialNumber, length, 2 * kPointer);
SIZE(X509CertSerialNumber, 2 * kPointer + 8);
OFFSET(KetraAuthorityKeyId, authorityCertIssuer, 3 * kPointer);
OFFSET(KetraAuthorityKeyId, authorityCertSerialNumber, 5 * kPointer);
OFFSET(KetraPolicyQualifierInfo, qualifier, 3 * kPointer);
OFFSET(KetraPolicyInformation, policyQualifiers, 3 * kPointer);
OFFSET(KetraPolicyMapping, subjectDomainPolicy, 3 * kPointer);
OFFSET(KetraKeyPurposeId, keyPurposeId, kPointer);
SIZE(KetraPrivateKeyUsagePeriod, 24);
SIZE(KetraPolicyConstraints, 16);

int main(void) { return 0; }
