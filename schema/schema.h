// The ASN.1 definitions of every extension value: entry points into the records of the module KetraDefinitions.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ketra/contracts/asn1.h"

namespace ketra::schema {

enum class Entry : uint8_t {
  AuthorityKeyIdentifier,
  SubjectKeyIdentifier,
  KeyUsage,
  ExtKeyUsage,
  PrivateKeyUsagePeriod,
  CertificatePoliciesSyntax,
  GeneralNames,
  GeneralName,
  BasicConstraints,
  CRLNumber,
  BITSTRING,
  OCTETSTRING,
  OBJECTIDENTIFIER,
  PolicyMappings,
  SubjectDirectoryAttributes,
  NameConstraints,
  PolicyConstraints,
  CRLReason,
  HoldInstruction,
  InvalidityDate,
  CRLDistributionPoints,
  IssuingDistributionPoint,
  CertificateIssuer,
  BaseCRLNumber,
  ORAddress,
};
inline constexpr std::size_t kEntryCount = 25;

extern const AsnType *const kEntryPoints[kEntryCount];

inline const AsnType *record(Entry entry) { return kEntryPoints[static_cast<std::size_t>(entry)]; }

// The whole module: its first record, and their number with the terminator.
extern const AsnType *const kModule;
extern const std::size_t kModuleSize;

}  // namespace ketra::schema
