/* The layouts that callers compile against, in octets where pointers have 32 bits and where they have 64. A change here
 * breaks every program that was built before it. Prints the table of the platform. */
#include <stddef.h>
#include <stdio.h>

#include "ketra/ketra.h"
#include "ketra/ketra_runtime.h"

#define LAYOUTS(SIZE, FIELD)                                          \
  SIZE(Objid, 8, 16)                                                  \
  FIELD(Objid, arcs, 0, 0)                                            \
  FIELD(Objid, count, 4, 8)                                           \
  SIZE(AsnOct, 8, 16)                                                 \
  FIELD(AsnOct, octets, 0, 0)                                         \
  FIELD(AsnOct, length, 4, 8)                                         \
  SIZE(AsnEncodedData, 8, 16)                                         \
  FIELD(AsnEncodedData, octets, 0, 0)                                 \
  FIELD(AsnEncodedData, length, 4, 8)                                 \
  SIZE(AsnBuffer, 8, 16)                                              \
  FIELD(AsnBuffer, octets, 0, 0)                                      \
  FIELD(AsnBuffer, length, 4, 8)                                      \
  SIZE(AsnBit, 8, 16)                                                 \
  FIELD(AsnBit, octets, 0, 0)                                         \
  FIELD(AsnBit, bits, 4, 8)                                           \
  SIZE(Gtime, 8, 8)                                                   \
  FIELD(Gtime, high, 0, 0)                                            \
  FIELD(Gtime, low, 4, 4)                                             \
  SIZE(AsnBoolOpt, 8, 8)                                              \
  FIELD(AsnBoolOpt, value, 0, 0)                                      \
  FIELD(AsnBoolOpt, option, 4, 4)                                     \
  SIZE(AsnIntOpt, 8, 8)                                               \
  FIELD(AsnIntOpt, value, 0, 0)                                       \
  FIELD(AsnIntOpt, option, 4, 4)                                      \
  SIZE(AsnOctOpt, 12, 24)                                             \
  FIELD(AsnOctOpt, value, 0, 0)                                       \
  FIELD(AsnOctOpt, option, 8, 16)                                     \
  SIZE(AsnBitOpt, 12, 24)                                             \
  FIELD(AsnBitOpt, value, 0, 0)                                       \
  FIELD(AsnBitOpt, option, 8, 16)                                     \
  SIZE(AsnEncodedDataOpt, 12, 24)                                     \
  FIELD(AsnEncodedDataOpt, value, 0, 0)                               \
  FIELD(AsnEncodedDataOpt, option, 8, 16)                             \
  SIZE(GtimeOpt, 12, 12)                                              \
  FIELD(GtimeOpt, value, 0, 0)                                        \
  FIELD(GtimeOpt, option, 8, 8)                                       \
  SIZE(AsnType, 20, 24)                                               \
  FIELD(AsnType, descriptor, 0, 0)                                    \
  FIELD(AsnType, flags, 4, 4)                                         \
  FIELD(AsnType, count, 8, 8)                                         \
  FIELD(AsnType, link, 12, 12)                                        \
  FIELD(AsnType, name, 16, 16)                                        \
  SIZE(AsnTraceEntry, 172, 184)                                       \
  FIELD(AsnTraceEntry, module, 0, 0)                                  \
  FIELD(AsnTraceEntry, function, 4, 8)                                \
  FIELD(AsnTraceEntry, message, 8, 16)                                \
  FIELD(AsnTraceEntry, value, 136, 144)                               \
  FIELD(AsnTraceEntry, valueLength, 140, 152)                         \
  FIELD(AsnTraceEntry, valueOctets, 144, 156)                         \
  FIELD(AsnTraceEntry, valueKind, 168, 180)                           \
  SIZE(AsnErrorBlock, 4140, 4432)                                     \
  FIELD(AsnErrorBlock, code, 0, 0)                                    \
  FIELD(AsnErrorBlock, count, 4, 4)                                   \
  FIELD(AsnErrorBlock, dropped, 8, 8)                                 \
  FIELD(AsnErrorBlock, entries, 12, 16)                               \
  SIZE(AsnErrorMeaning, 8, 16)                                        \
  FIELD(AsnErrorMeaning, code, 0, 0)                                  \
  FIELD(AsnErrorMeaning, meaning, 4, 8)                               \
  SIZE(KetraExtension, 24, 40)                                        \
  FIELD(KetraExtension, objid, 0, 0)                                  \
  FIELD(KetraExtension, critical, 8, 16)                              \
  FIELD(KetraExtension, criticalOption, 12, 20)                       \
  FIELD(KetraExtension, value, 16, 24)                                \
  SIZE(struct KetraObjectRecord, 28, 56)                              \
  FIELD(struct KetraObjectRecord, pool, 0, 0)                         \
  FIELD(struct KetraObjectRecord, reserved, 4, 8)                     \
  FIELD(struct KetraObjectRecord, structuredCache, 24, 48)            \
  SIZE(X509DirStr, 12, 24)                                            \
  FIELD(X509DirStr, choice, 0, 0)                                     \
  FIELD(X509DirStr, octets, 4, 8)                                     \
  FIELD(X509DirStr, length, 8, 16)                                    \
  SIZE(X509DirStrOpt, 16, 32)                                         \
  FIELD(X509DirStrOpt, value, 0, 0)                                   \
  FIELD(X509DirStrOpt, option, 12, 24)                                \
  SIZE(X509NameAttribute, 20, 40)                                     \
  FIELD(X509NameAttribute, type, 0, 0)                                \
  FIELD(X509NameAttribute, value, 8, 16)                              \
  SIZE(X509CertSerialNumber, 16, 24)                                  \
  FIELD(X509CertSerialNumber, form, 0, 0)                             \
  FIELD(X509CertSerialNumber, number, 4, 8)                           \
  FIELD(X509CertSerialNumber, octets, 4, 8)                           \
  FIELD(X509CertSerialNumber, length, 8, 16)                          \
  FIELD(X509CertSerialNumber, reserved, 12, 20)                       \
  SIZE(X509CertSerialNumberOpt, 20, 32)                               \
  FIELD(X509CertSerialNumberOpt, value, 0, 0)                         \
  FIELD(X509CertSerialNumberOpt, option, 16, 24)                      \
  SIZE(X509OtherName, 20, 40)                                         \
  FIELD(X509OtherName, type, 0, 0)                                    \
  FIELD(X509OtherName, value, 8, 16)                                  \
  SIZE(X509EdiPartyName, 28, 56)                                      \
  FIELD(X509EdiPartyName, nameAssigner, 0, 0)                         \
  FIELD(X509EdiPartyName, partyName, 16, 32)                          \
  SIZE(X509GenNameParam, 32, 64)                                      \
  FIELD(X509GenNameParam, type, 0, 0)                                 \
  FIELD(X509GenNameParam, otherName, 4, 8)                            \
  FIELD(X509GenNameParam, rfc822Name, 4, 8)                           \
  FIELD(X509GenNameParam, dNSName, 4, 8)                              \
  FIELD(X509GenNameParam, x400Address, 4, 8)                          \
  FIELD(X509GenNameParam, directoryName, 4, 8)                        \
  FIELD(X509GenNameParam, uniformResourceIdentifier, 4, 8)            \
  FIELD(X509GenNameParam, iPAddress, 4, 8)                            \
  FIELD(X509GenNameParam, registeredID, 4, 8)                         \
  FIELD(X509GenNameParam, ediPartyName, 4, 8)                         \
  SIZE(X509GenNameChain, 8, 16)                                       \
  FIELD(X509GenNameChain, next, 0, 0)                                 \
  FIELD(X509GenNameChain, genName, 4, 8)                              \
  SIZE(X509GenNames, 4, 8)                                            \
  FIELD(X509GenNames, genNames, 0, 0)                                 \
  SIZE(X509GenNamesOpt, 8, 16)                                        \
  FIELD(X509GenNamesOpt, genNames, 0, 0)                              \
  FIELD(X509GenNamesOpt, option, 4, 8)                                \
  SIZE(X509AttributeTypeAndValue, 20, 40)                             \
  FIELD(X509AttributeTypeAndValue, next, 0, 0)                        \
  FIELD(X509AttributeTypeAndValue, type, 4, 8)                        \
  FIELD(X509AttributeTypeAndValue, value, 12, 24)                     \
  SIZE(X509DistributionPointName, 8, 16)                              \
  FIELD(X509DistributionPointName, type, 0, 0)                        \
  FIELD(X509DistributionPointName, fullName, 4, 8)                    \
  FIELD(X509DistributionPointName, nameRelativeToCRLIssuer, 4, 8)     \
  SIZE(X509DistributionPointNameOpt, 12, 24)                          \
  FIELD(X509DistributionPointNameOpt, value, 0, 0)                    \
  FIELD(X509DistributionPointNameOpt, option, 8, 16)                  \
  SIZE(X509GenSubtree, 24, 32)                                        \
  FIELD(X509GenSubtree, next, 0, 0)                                   \
  FIELD(X509GenSubtree, base, 4, 8)                                   \
  FIELD(X509GenSubtree, minimum, 8, 16)                               \
  FIELD(X509GenSubtree, maximum, 16, 24)                              \
  SIZE(X509GenSubtreesOpt, 8, 16)                                     \
  FIELD(X509GenSubtreesOpt, genSubtrees, 0, 0)                        \
  FIELD(X509GenSubtreesOpt, option, 4, 8)                             \
  SIZE(KetraBasicConstraints, 16, 16)                                 \
  FIELD(KetraBasicConstraints, cA, 0, 0)                              \
  FIELD(KetraBasicConstraints, pathLenConstraint, 8, 8)               \
  SIZE(KetraDistributionPoint, 36, 72)                                \
  FIELD(KetraDistributionPoint, next, 0, 0)                           \
  FIELD(KetraDistributionPoint, distributionPoint, 4, 8)              \
  FIELD(KetraDistributionPoint, reasons, 16, 32)                      \
  FIELD(KetraDistributionPoint, cRLIssuer, 28, 56)                    \
  SIZE(KetraIssuingDistributionPoint, 48, 72)                         \
  FIELD(KetraIssuingDistributionPoint, distributionPoint, 0, 0)       \
  FIELD(KetraIssuingDistributionPoint, onlyContainsUserCerts, 12, 24) \
  FIELD(KetraIssuingDistributionPoint, onlyContainsCACerts, 20, 32)   \
  FIELD(KetraIssuingDistributionPoint, onlySomeReasons, 28, 40)       \
  FIELD(KetraIssuingDistributionPoint, indirectCRL, 40, 64)           \
  SIZE(KetraNameConstraints, 16, 32)                                  \
  FIELD(KetraNameConstraints, permittedSubtrees, 0, 0)                \
  FIELD(KetraNameConstraints, excludedSubtrees, 8, 16)                \
  SIZE(KetraAuthorityKeyId, 40, 72)                                   \
  FIELD(KetraAuthorityKeyId, keyIdentifier, 0, 0)                     \
  FIELD(KetraAuthorityKeyId, authorityCertIssuer, 12, 24)             \
  FIELD(KetraAuthorityKeyId, authorityCertSerialNumber, 20, 40)       \
  SIZE(KetraPolicyQualifierInfo, 24, 48)                              \
  FIELD(KetraPolicyQualifierInfo, next, 0, 0)                         \
  FIELD(KetraPolicyQualifierInfo, policyQualifierId, 4, 8)            \
  FIELD(KetraPolicyQualifierInfo, qualifier, 12, 24)                  \
  SIZE(KetraPolicyQualifiersOpt, 8, 16)                               \
  FIELD(KetraPolicyQualifiersOpt, policyQualifiers, 0, 0)             \
  FIELD(KetraPolicyQualifiersOpt, option, 4, 8)                       \
  SIZE(KetraPolicyInformation, 20, 40)                                \
  FIELD(KetraPolicyInformation, next, 0, 0)                           \
  FIELD(KetraPolicyInformation, policyIdentifier, 4, 8)               \
  FIELD(KetraPolicyInformation, policyQualifiers, 12, 24)             \
  SIZE(KetraPolicyMapping, 20, 40)                                    \
  FIELD(KetraPolicyMapping, next, 0, 0)                               \
  FIELD(KetraPolicyMapping, issuerDomainPolicy, 4, 8)                 \
  FIELD(KetraPolicyMapping, subjectDomainPolicy, 12, 24)              \
  SIZE(KetraPolicyConstraints, 16, 16)                                \
  FIELD(KetraPolicyConstraints, requireExplicitPolicy, 0, 0)          \
  FIELD(KetraPolicyConstraints, inhibitPolicyMapping, 8, 8)           \
  SIZE(KetraKeyPurposeId, 12, 24)                                     \
  FIELD(KetraKeyPurposeId, next, 0, 0)                                \
  FIELD(KetraKeyPurposeId, keyPurposeId, 4, 8)                        \
  SIZE(KetraPrivateKeyUsagePeriod, 24, 24)                            \
  FIELD(KetraPrivateKeyUsagePeriod, notBefore, 0, 0)                  \
  FIELD(KetraPrivateKeyUsagePeriod, notAfter, 12, 12)

enum { kIs32 = sizeof(void *) == 4 };

#define CHECK_SIZE(type, in32, in64) _Static_assert(sizeof(type) == (kIs32 ? (in32) : (in64)), #type);
#define CHECK_FIELD(type, field, in32, in64) \
  _Static_assert(offsetof(type, field) == (kIs32 ? (in32) : (in64)), #type "." #field);
LAYOUTS(CHECK_SIZE, CHECK_FIELD)

#define PRINT_SIZE(type, in32, in64) printf("%-32s %4u octets\n", #type, (unsigned)sizeof(type));
#define PRINT_FIELD(type, field, in32, in64) printf("%4u  %s\n", (unsigned)offsetof(type, field), #field);

int main(void) {
  LAYOUTS(PRINT_SIZE, PRINT_FIELD)
  return 0;
}
