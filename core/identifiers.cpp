#include "ketra/ketra.h"

namespace {

// id-ce n (2.5.29.n)
template <uint32_t n>
constexpr uint32_t kArcs[] = {2, 5, 29, n};

template <uint32_t n>
constexpr Objid kIdCe{kArcs<n>, 4};

}  // namespace

constexpr Objid X509Objid_AuthorityKeyId = kIdCe<35>;
constexpr Objid X509Objid_SubjectKeyId = kIdCe<14>;
constexpr Objid X509Objid_KeyUsage = kIdCe<15>;
constexpr Objid X509Objid_ExtKeyUsage = kIdCe<37>;
constexpr Objid X509Objid_PrivateKeyUsagePeriod = kIdCe<16>;
constexpr Objid X509Objid_CertPolicies = kIdCe<32>;
constexpr Objid X509Objid_SubjectAltName = kIdCe<17>;
constexpr Objid X509Objid_IssuerAltName = kIdCe<18>;
constexpr Objid X509Objid_BasicConstraints = kIdCe<19>;
constexpr Objid X509Objid_CRLNumber = kIdCe<20>;
constexpr Objid X509Objid_PolicyMappings = kIdCe<33>;
constexpr Objid X509Objid_SubjectDirectoryAttributes = kIdCe<9>;
constexpr Objid X509Objid_NameConstraints = kIdCe<30>;
constexpr Objid X509Objid_PolicyConstraints = kIdCe<36>;
constexpr Objid X509Objid_ReasonCode = kIdCe<21>;
constexpr Objid X509Objid_InstructionCode = kIdCe<23>;
constexpr Objid X509Objid_InvalidityDate = kIdCe<24>;
constexpr Objid X509Objid_CRLDistributionPoints = kIdCe<31>;
constexpr Objid X509Objid_IssuingDistributionPoint = kIdCe<28>;
constexpr Objid X509Objid_CertIssuer = kIdCe<29>;
constexpr Objid X509Objid_DeltaCRLIndicator = kIdCe<27>;
