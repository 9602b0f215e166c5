#include "certificates.hpp"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "floor.hpp"
#include "ketra/objects/pem.hpp"

namespace bench {

Octets certificateIn(const std::string &file) {
  std::ifstream in(file);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  auto der = ketra::pem::Blocks(text).begin()->decode();
  return der ? *std::move(der) : Octets();
}

Octets extensionsIn(const std::string &file) {
  const Octets der = certificateIn(file);
  lean::Reader certificate, tbs, field;
  if (!lean::Reader(der.data(), der.size()).next(0x30, certificate) || !certificate.next(0x30, tbs)) return {};
  for (uint8_t tag = 0; tag != 0xA3;) {
    if (!tbs.any(tag, field)) return {};
  }
  return {field.view().at, field.view().at + field.view().size};
}

namespace {

constexpr uint32_t kMost = 16;  // members of a list; roots have fewer

// `count` nodes in a row.
template <class Node>
struct List {
  Node *first(uint32_t count) {
    for (uint32_t i = 1; i < count; ++i) nodes[i - 1].next = &nodes[i];
    return count > 0 ? nodes : nullptr;
  }
  Node nodes[kMost] = {};
};

// Names with their objects, for one list after the other.
class NameList {
 public:
  NameList() = default;
  NameList(const NameList &) = delete;
  NameList &operator=(const NameList &) = delete;
  ~NameList() {
    for (uint32_t i = 0; i < used_; ++i) X509GenNameObjectDestroy(nodes_[i].genName, nullptr);
  }
  X509GenNameChain *next(uint32_t count) {
    if (count == 0 || used_ + count > kMost) return nullptr;
    X509GenNameChain *first = &nodes_[used_];
    for (uint32_t i = 0; i < count; ++i, ++used_) {
      nodes_[used_].next = i + 1 < count ? &nodes_[used_ + 1] : nullptr;
      X509GenNameObjectCreate(&nodes_[used_].genName, nullptr);
    }
    return first;
  }

 private:
  uint32_t used_ = 0;
  X509GenNameChain nodes_[kMost];
};

int32_t readAuthorityKeyId(KetraObject e, AsnMemObject pool) {
  NameList names;
  KetraAuthorityKeyId value{};
  uint32_t count = 0;
  int32_t result = KetraObjectSgetAuthorityKeyIdCalGenName(e, &count, nullptr);
  value.authorityCertIssuer.genNames = names.next(count);
  result |= KetraObjectSgetAuthorityKeyId(e, &value, nullptr);
  AsnMemObjectFree(pool, value.keyIdentifier.value.octets, nullptr);
  return result;
}

int32_t readCertPolicies(KetraObject e, AsnMemObject pool) {
  uint32_t count = 0, qualifiers = 0;
  int32_t result = KetraObjectSgetCertPoliciesCalInformation(e, &count, nullptr);
  for (uint32_t i = 0; i < count; ++i) {
    List<KetraPolicyQualifierInfo> list;
    KetraPolicyInformation value{};
    result |= KetraObjectSgetCertPoliciesCalQualifier(e, i, &qualifiers, nullptr);
    value.policyQualifiers.policyQualifiers = list.first(qualifiers);
    result |= KetraObjectSgetCertPolicies(e, i, &value, nullptr);
    AsnMemObjectFree(pool, value.policyIdentifier.arcs, nullptr);
    for (uint32_t k = 0; k < qualifiers; ++k) AsnMemObjectFree(pool, list.nodes[k].policyQualifierId.arcs, nullptr);
  }
  return result;
}

int32_t readCrlDistributionPoints(KetraObject e, AsnMemObject pool) {
  NameList names;
  List<KetraDistributionPoint> points;
  uint32_t count = 0, members = 0, issuers = 0;
  int32_t choice = 0;
  int32_t result = KetraObjectSgetCRLDistributionPointsCalDistributionPoint(e, &count, nullptr);
  KetraDistributionPoint *first = points.first(count);
  for (uint32_t i = 0; i < count; ++i) {
    result |= KetraObjectSgetCRLDistributionPointsCalDistributionPointName(e, i, &choice, &members, nullptr);
    result |= KetraObjectSgetCRLDistributionPointsCalCRLIssuer(e, i, &issuers, nullptr);
    points.nodes[i].distributionPoint.value.fullName = names.next(members);
    points.nodes[i].cRLIssuer.genNames = names.next(issuers);
  }
  result |= KetraObjectSgetCRLDistributionPoints(e, first, nullptr);
  for (uint32_t i = 0; i < count; ++i) AsnMemObjectFree(pool, points.nodes[i].reasons.value.octets, nullptr);
  return result;
}

int32_t readExtKeyUsage(KetraObject e, AsnMemObject pool) {
  List<KetraKeyPurposeId> list;
  uint32_t count = 0;
  int32_t result = KetraObjectSgetExtKeyUsageCalKeyPurposeId(e, &count, nullptr);
  result |= KetraObjectSgetExtKeyUsage(e, list.first(count), nullptr);
  for (uint32_t i = 0; i < count; ++i) AsnMemObjectFree(pool, list.nodes[i].keyPurposeId.arcs, nullptr);
  return result;
}

int32_t readPolicyMappings(KetraObject e, AsnMemObject pool) {
  List<KetraPolicyMapping> list;
  uint32_t count = 0;
  int32_t result = KetraObjectSgetPolicyMappingsCalPolicyMapping(e, &count, nullptr);
  result |= KetraObjectSgetPolicyMappings(e, list.first(count), nullptr);
  for (uint32_t i = 0; i < count; ++i) {
    AsnMemObjectFree(pool, list.nodes[i].issuerDomainPolicy.arcs, nullptr);
    AsnMemObjectFree(pool, list.nodes[i].subjectDomainPolicy.arcs, nullptr);
  }
  return result;
}

int32_t readNameConstraints(KetraObject e) {
  NameList names;
  List<X509GenSubtree> permitted, excluded;
  uint32_t counts[2] = {};
  int32_t result = KetraObjectSgetNameConstraintsCalGenSubtree(e, &counts[0], &counts[1], nullptr);
  KetraNameConstraints value{{permitted.first(counts[0]), 0}, {excluded.first(counts[1]), 0}};
  for (uint32_t i = 0; i < counts[0]; ++i) permitted.nodes[i].base = names.next(1)->genName;
  for (uint32_t i = 0; i < counts[1]; ++i) excluded.nodes[i].base = names.next(1)->genName;
  return result | KetraObjectSgetNameConstraints(e, &value, nullptr);
}

int32_t readSubjectAltName(KetraObject e) {
  NameList names;
  uint32_t count = 0;
  const int32_t result = KetraObjectSgetSubjectAltNameCalGenName(e, &count, nullptr);
  const X509GenNames value{names.next(count)};
  return result | KetraObjectSgetSubjectAltName(e, &value, nullptr);
}

// The extension 2.5.29.`id`.
int32_t readExtension(KetraObject e, uint32_t id, AsnMemObject pool, uint32_t *count) {
  ++*count;
  KetraBasicConstraints basic{};
  KetraPolicyConstraints policies{};
  AsnBit bits{};
  AsnOct octets{};
  int32_t result = 0;
  switch (id) {
    case 14: result = KetraObjectSgetSubjectKeyId(e, &octets, nullptr); break;
    case 15: result = KetraObjectSgetKeyUsage(e, &bits, nullptr); break;
    case 17: return readSubjectAltName(e);
    case 19: return KetraObjectSgetBasicConstraints(e, &basic, nullptr);
    case 30: return readNameConstraints(e);
    case 31: return readCrlDistributionPoints(e, pool);
    case 32: return readCertPolicies(e, pool);
    case 33: return readPolicyMappings(e, pool);
    case 35: return readAuthorityKeyId(e, pool);
    case 36: return KetraObjectSgetPolicyConstraints(e, &policies, nullptr);
    case 37: return readExtKeyUsage(e, pool);
    default: --*count;
  }
  AsnMemObjectFree(pool, bits.octets, nullptr);
  AsnMemObjectFree(pool, octets.octets, nullptr);
  return result;
}

}  // namespace

int32_t readCertificate(const Octets &extensions, uint32_t *count) {
  const AsnEncodedData encoding{extensions.data(), static_cast<uint32_t>(extensions.size())};
  KetraObject e = nullptr;
  const KetraExtension *extension = nullptr;
  uint32_t size = 0;
  int32_t result = KetraObjectCreate(&e, nullptr) | KetraObjectSetPduBER(e, &encoding, nullptr) |
                   KetraObjectCalExt(e, &size, nullptr);
  *count = 0;
  for (uint32_t i = 0; i < size; ++i) {
    result |= KetraObjectGetExtpByIndex(e, i, &extension, nullptr);
    const Objid &id = extension->objid;
    const bool isIdCe = id.count == 4 && id.arcs[0] == 2 && id.arcs[1] == 5 && id.arcs[2] == 29;
    if (isIdCe) result |= readExtension(e, id.arcs[3], e->pool, count);
  }
  return result | KetraObjectDestroy(e, nullptr);
}

}  // namespace bench
