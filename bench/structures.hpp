// The structures of the C interface for each value: filled to be set, blank nodes to be read into. The GeneralName
// objects in them are created and destroyed with every operation, as a caller does it.
//
// Each has: fill() for everything but the names, set(), get(), giveBack() of what a get leaves in the pool, and
// counts().
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "values.hpp"

namespace bench {

// An Extensions object.
class Object {
 public:
  Object() { KetraObjectCreate(&handle_, nullptr); }
  Object(const Object &) = delete;
  Object &operator=(const Object &) = delete;
  ~Object() { KetraObjectDestroy(handle_, nullptr); }
  KetraObject handle() const { return handle_; }

 private:
  KetraObject handle_ = nullptr;
};

inline AsnOct octetsOf(std::string_view text) {
  return {reinterpret_cast<const uint8_t *>(text.data()), static_cast<uint32_t>(text.size())};
}

// The names of a structure.
class Names {
 public:
  int32_t create() const {
    int32_t result = 0;
    for (const Slot &slot : slots_) result |= X509GenNameObjectCreate(slot.object, nullptr);
    return result;
  }
  int32_t setNames() const {
    int32_t result = 0;
    for (const Slot &slot : slots_)
      result |= slot.kind == X509GenName_DirectoryName ? setDirectory(slot) : setText(slot);
    return result;
  }
  void destroy() const {
    for (const Slot &slot : slots_) X509GenNameObjectDestroy(*slot.object, nullptr);
  }

 protected:
  // `text` stays where it is. A directoryName is always the same.
  void add(X509GenNameObject *object, uint32_t kind, std::string_view text = {}) {
    slots_.push_back({object, kind, octetsOf(text)});
  }

 private:
  struct Slot {
    X509GenNameObject *object;
    uint32_t kind;
    AsnOct text;
  };
  static int32_t setText(const Slot &slot) {
    X509GenNameParam param;
    param.type = slot.kind;
    param.dNSName = slot.text;  // in the place of all that are octets
    return X509GenNameObjectSetName(*slot.object, &param, nullptr);
  }
  static int32_t setDirectory(const Slot &slot) {
    X509GenNameParam param;
    param.type = slot.kind;
    int32_t result = X509NameObjectCreate(&param.directoryName, nullptr);
    for (const Attribute &each : kName) {
      const AsnOct text = octetsOf(each.text);
      const X509NameAttribute attribute{{each.type, 4}, {each.string, text.octets, text.length}};
      result |= X509NameObjectAppendRdn(param.directoryName, &attribute, 1, nullptr);
    }
    result |= X509GenNameObjectSetName(*slot.object, &param, nullptr);
    return result | X509NameObjectDestroy(param.directoryName, nullptr);
  }

  std::vector<Slot> slots_;
};

// What most structures have: no names, nothing in the pool, no lists.
struct Structure : Names {
  void fill() {}
  void giveBack(AsnMemObject) const {}
  static constexpr bool kCounts = false;
};

template <class Node>
void link(std::vector<Node> &nodes) {
  for (std::size_t i = 1; i < nodes.size(); ++i) nodes[i - 1].next = &nodes[i];
}

// Identifiers, in memory of their own.
class Identifiers {
 public:
  Objid keep(Arcs id) {
    const Arcs &kept = kept_.emplace_back(std::move(id));
    return {kept.data(), static_cast<uint32_t>(kept.size())};
  }
  void reserve(std::size_t count) { kept_.reserve(count); }

 private:
  std::vector<Arcs> kept_;
};

struct BasicConstraints : Structure {
  KetraBasicConstraints c{};
  void fill() { c = {{1, 1}, {kPathLength, 1}}; }
  int32_t set(KetraObject e) const { return KetraObjectSsetBasicConstraints(e, 1, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetBasicConstraints(e, &c, nullptr); }
};

struct KeyUsage : Structure {
  AsnBit c{};
  void fill() { c = {&kCertAndCrlSign, 8}; }
  int32_t set(KetraObject e) const { return KetraObjectSsetKeyUsage(e, 1, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetKeyUsage(e, &c, nullptr); }
  void giveBack(AsnMemObject pool) const { AsnMemObjectFree(pool, c.octets, nullptr); }
};

struct SubjectKeyId : Structure {
  AsnOct c{};
  void fill() { c = {kKeyId, sizeof kKeyId}; }
  int32_t set(KetraObject e) const { return KetraObjectSsetSubjectKeyId(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetSubjectKeyId(e, &c, nullptr); }
  void giveBack(AsnMemObject pool) const { AsnMemObjectFree(pool, c.octets, nullptr); }
};

struct AuthorityKeyId : Structure {
  static constexpr bool kCounts = true;
  KetraAuthorityKeyId c{};
  X509GenNameChain issuer{};
  AuthorityKeyId() {
    add(&issuer.genName, X509GenName_DirectoryName);
    c.authorityCertIssuer.genNames = &issuer;
  }
  void fill() {
    c.keyIdentifier = {{kKeyId, sizeof kKeyId}, 1};
    c.authorityCertIssuer.option = 1;
    c.authorityCertSerialNumber.value = {1, {}, sizeof kSerial, 0};
    c.authorityCertSerialNumber.value.octets = kSerial;
    c.authorityCertSerialNumber.option = 1;
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetAuthorityKeyId(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetAuthorityKeyId(e, &c, nullptr); }
  void giveBack(AsnMemObject pool) const { AsnMemObjectFree(pool, c.keyIdentifier.value.octets, nullptr); }
  static bool counts(KetraObject e) {
    uint32_t count = 0;
    return KetraObjectSgetAuthorityKeyIdCalGenName(e, &count, nullptr) == 0 && count == 1;
  }
};

struct ExtKeyUsage : Structure {
  static constexpr bool kCounts = true;
  std::vector<KetraKeyPurposeId> nodes;
  Identifiers ids;
  explicit ExtKeyUsage(std::size_t size) : nodes(size) { link(nodes); }
  void fill() {
    ids.reserve(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) nodes[i].keyPurposeId = ids.keep(purpose(i));
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetExtKeyUsage(e, 0, nodes.data(), nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetExtKeyUsage(e, nodes.data(), nullptr); }
  void giveBack(AsnMemObject pool) const {
    for (const auto &node : nodes) AsnMemObjectFree(pool, node.keyPurposeId.arcs, nullptr);
  }
  bool counts(KetraObject e) const {
    uint32_t count = 0;
    return KetraObjectSgetExtKeyUsageCalKeyPurposeId(e, &count, nullptr) == 0 && count == nodes.size();
  }
};

struct CertPolicies : Structure {
  static constexpr bool kCounts = true;
  std::vector<KetraPolicyInformation> nodes;
  std::vector<KetraPolicyQualifierInfo> qualifiers;
  Identifiers ids;
  Octets uri;
  explicit CertPolicies(std::size_t size) : nodes(size), qualifiers(size) {
    link(nodes);
    for (std::size_t i = 0; i < size; ++i) nodes[i].policyQualifiers.policyQualifiers = &qualifiers[i];
  }
  void fill() {
    uri = der::ia5String(kCps);
    ids.reserve(nodes.size() + 1);
    const Objid cps = ids.keep(kCpsId);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      nodes[i].policyIdentifier = ids.keep(policy(i));
      nodes[i].policyQualifiers.option = 1;
      qualifiers[i] = {nullptr, cps, {{uri.data(), static_cast<uint32_t>(uri.size())}, 1}};
    }
  }
  int32_t set(KetraObject e) {
    KetraPolicyInformation *const first = nodes.data();
    return KetraObjectSsetCertPolicies(e, 0, &first, nullptr);
  }
  int32_t get(KetraObject e) {
    int32_t result = 0;
    uint32_t index = 0;
    for (KetraPolicyInformation &node : nodes) result |= KetraObjectSgetCertPolicies(e, index++, &node, nullptr);
    return result;
  }
  void giveBack(AsnMemObject pool) const {
    for (const auto &node : nodes) AsnMemObjectFree(pool, node.policyIdentifier.arcs, nullptr);
    for (const auto &qualifier : qualifiers) AsnMemObjectFree(pool, qualifier.policyQualifierId.arcs, nullptr);
  }
  bool counts(KetraObject e) const {
    uint32_t count = 0, each = 0;
    if (KetraObjectSgetCertPoliciesCalInformation(e, &count, nullptr) != 0 || count != nodes.size()) return false;
    for (uint32_t i = 0; i < count; ++i) {
      if (KetraObjectSgetCertPoliciesCalQualifier(e, i, &each, nullptr) != 0 || each != 1) return false;
    }
    return true;
  }
};

struct PolicyMappings : Structure {
  static constexpr bool kCounts = true;
  std::vector<KetraPolicyMapping> nodes;
  Identifiers ids;
  explicit PolicyMappings(std::size_t size) : nodes(size) { link(nodes); }
  void fill() {
    ids.reserve(2 * nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      nodes[i].issuerDomainPolicy = ids.keep(policy(i));
      nodes[i].subjectDomainPolicy = ids.keep(subjectPolicy(i));
    }
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetPolicyMappings(e, nodes.data(), nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetPolicyMappings(e, nodes.data(), nullptr); }
  void giveBack(AsnMemObject pool) const {
    for (const auto &node : nodes) {
      AsnMemObjectFree(pool, node.issuerDomainPolicy.arcs, nullptr);
      AsnMemObjectFree(pool, node.subjectDomainPolicy.arcs, nullptr);
    }
  }
  bool counts(KetraObject e) const {
    uint32_t count = 0;
    return KetraObjectSgetPolicyMappingsCalPolicyMapping(e, &count, nullptr) == 0 && count == nodes.size();
  }
};

struct PolicyConstraints : Structure {
  KetraPolicyConstraints c{};
  void fill() { c = {{kExplicit, 1}, {kInhibit, 1}}; }
  int32_t set(KetraObject e) const { return KetraObjectSsetPolicyConstraints(e, 1, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetPolicyConstraints(e, &c, nullptr); }
};

// As many dNSNames, or one directoryName.
struct SubjectAltName : Structure {
  static constexpr bool kCounts = true;
  std::vector<X509GenNameChain> nodes;
  explicit SubjectAltName(std::size_t size) : nodes(size) {
    link(nodes);
    for (std::size_t i = 0; i < size; ++i) add(&nodes[i].genName, X509GenName_DNSName, host(i));
  }
  SubjectAltName() : nodes(1) { add(&nodes[0].genName, X509GenName_DirectoryName); }
  X509GenNames names() { return {nodes.data()}; }
  int32_t set(KetraObject e) {
    const X509GenNames c = names();
    return KetraObjectSsetSubjectAltName(e, 0, &c, nullptr);
  }
  int32_t get(KetraObject e) {
    const X509GenNames c = names();
    return KetraObjectSgetSubjectAltName(e, &c, nullptr);
  }
  bool counts(KetraObject e) const {
    uint32_t count = 0;
    return KetraObjectSgetSubjectAltNameCalGenName(e, &count, nullptr) == 0 && count == nodes.size();
  }
};

struct CrlDistributionPoints : Structure {
  static constexpr bool kCounts = true;
  std::vector<KetraDistributionPoint> nodes;
  std::vector<X509GenNameChain> uris;
  explicit CrlDistributionPoints(std::size_t size) : nodes(size), uris(size) {
    link(nodes);
    for (std::size_t i = 0; i < size; ++i) {
      add(&uris[i].genName, X509GenName_UniformResourceIdentifier, crl(i));
      nodes[i].distributionPoint.value.fullName = &uris[i];
    }
  }
  void fill() {
    for (auto &node : nodes) {
      node.distributionPoint.value.type = X509DistributionPointName_FullName;
      node.distributionPoint.option = 1;
    }
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetCRLDistributionPoints(e, 0, nodes.data(), nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetCRLDistributionPoints(e, nodes.data(), nullptr); }
  bool counts(KetraObject e) const {
    uint32_t count = 0, names = 0;
    int32_t choice = 0;
    if (KetraObjectSgetCRLDistributionPointsCalDistributionPoint(e, &count, nullptr) != 0) return false;
    for (uint32_t i = 0; i < 1; ++i) {
      if (KetraObjectSgetCRLDistributionPointsCalDistributionPointName(e, i, &choice, &names, nullptr) != 0)
        return false;
    }
    return count == nodes.size() && choice == X509DistributionPointName_FullName && names == 1;
  }
};

struct IssuingDistributionPoint : Structure {
  static constexpr bool kCounts = true;
  KetraIssuingDistributionPoint c{};
  X509GenNameChain uri{};
  IssuingDistributionPoint() {
    add(&uri.genName, X509GenName_UniformResourceIdentifier, crl(0));
    c.distributionPoint.value.fullName = &uri;
  }
  void fill() {
    c.distributionPoint.value.type = X509DistributionPointName_FullName;
    c.distributionPoint.option = 1;
    c.onlyContainsUserCerts = {1, 1};
    c.onlySomeReasons = {{&kCompromises, 7}, 1};
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetIssuingDistributionPoint(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetIssuingDistributionPoint(e, &c, nullptr); }
  void giveBack(AsnMemObject pool) const { AsnMemObjectFree(pool, c.onlySomeReasons.value.octets, nullptr); }
  static bool counts(KetraObject e) {
    int32_t choice = 0;
    uint32_t count = 0;
    return KetraObjectSgetIssuingDistributionPointCalDistributionPointName(e, &choice, &count, nullptr) == 0 &&
           choice == X509DistributionPointName_FullName && count == 1;
  }
};

struct NameConstraints : Structure {
  static constexpr bool kCounts = true;
  std::vector<X509GenSubtree> permitted, excluded;
  KetraNameConstraints c;
  explicit NameConstraints(std::size_t size)
      : permitted(size - size / 2), excluded(size / 2), c{{permitted.data(), 0}, {excluded.data(), 0}} {
    link(permitted);
    link(excluded);
    std::size_t i = 0;
    for (auto *list : {&permitted, &excluded}) {
      for (X509GenSubtree &node : *list) add(&node.base, X509GenName_DNSName, host(i++));
    }
  }
  void fill() {
    c.permittedSubtrees.option = 1;
    c.excludedSubtrees.option = excluded.empty() ? 0 : 1;
  }
  int32_t set(KetraObject e) const { return KetraObjectSsetNameConstraints(e, 1, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetNameConstraints(e, &c, nullptr); }
  bool counts(KetraObject e) const {
    uint32_t most = 0, rest = 0;
    return KetraObjectSgetNameConstraintsCalGenSubtree(e, &most, &rest, nullptr) == 0 && most == permitted.size() &&
           rest == excluded.size();
  }
};

struct CrlNumber : Structure {
  int32_t c = 0;
  void fill() { c = kCrlNumber; }
  int32_t set(KetraObject e) const { return KetraObjectSsetCRLNumber(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetCRLNumber(e, &c, nullptr); }
};

struct ReasonCode : Structure {
  int32_t c = 0;
  void fill() { c = kReason; }
  int32_t set(KetraObject e) const { return KetraObjectSsetReasonCode(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetReasonCode(e, &c, nullptr); }
};

struct InvalidityDate : Structure {
  Gtime c{};
  void fill() { GtimeFromText(kDateText, &c, nullptr); }
  int32_t set(KetraObject e) const { return KetraObjectSsetInvalidityDate(e, &c, nullptr); }
  int32_t get(KetraObject e) { return KetraObjectSgetInvalidityDate(e, &c, nullptr); }
};

// One read or write as a caller does it.
template <class S>
int32_t write(S &structure, KetraObject extensions) {
  const int32_t result = structure.create() | structure.setNames() | structure.set(extensions);
  structure.destroy();
  return result;
}
template <class S>
int32_t read(S &structure, KetraObject extensions) {
  const int32_t result = structure.create() | structure.get(extensions);
  structure.giveBack(extensions->pool);
  structure.destroy();
  return result;
}

}  // namespace bench
