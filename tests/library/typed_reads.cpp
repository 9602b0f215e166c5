#include "library/typed_reads.h"

#include <deque>
#include <functional>

#include "support/structures.h"

namespace ketra::test {
namespace {

using Read = std::function<int32_t(KetraObject, AsnErrorBlock *)>;

template <class Node>
std::vector<Node> chainOf(uint32_t count) {
  std::vector<Node> nodes(count);
  for (uint32_t i = 0; i + 1 < count; ++i) nodes[i].next = &nodes[i + 1];
  return nodes;
}
template <class Node>
Node *head(std::vector<Node> &nodes) {
  return nodes.empty() ? nullptr : nodes.data();
}
Names emptyNames(uint32_t count) { return Names(std::vector<std::string>(count, "")); }

template <class Value>
Read scalar(int32_t (*get)(KetraObject, Value *, AsnErrorBlock *)) {
  return [=](KetraObject object, AsnErrorBlock *err) {
    Value value{};
    return get(object, &value, err);
  };
}

template <class Node>
Read list(int32_t (*count)(KetraObject, uint32_t *, AsnErrorBlock *),
          int32_t (*get)(KetraObject, Node *, AsnErrorBlock *)) {
  return [=](KetraObject object, AsnErrorBlock *err) {
    uint32_t members = 0;
    if (count(object, &members, err) != 0) return -1;
    std::vector<Node> nodes = chainOf<Node>(members);
    return get(object, head(nodes), err);
  };
}

Read names(int32_t (*count)(KetraObject, uint32_t *, AsnErrorBlock *),
           int32_t (*get)(KetraObject, const X509GenNames *, AsnErrorBlock *)) {
  return [=](KetraObject object, AsnErrorBlock *err) {
    uint32_t members = 0;
    if (count(object, &members, err) != 0) return -1;
    Names chain = emptyNames(members);
    const X509GenNames value{chain.first()};
    return get(object, &value, err);
  };
}

int32_t readKeyId(KetraObject object, AsnErrorBlock *err) {
  uint32_t members = 0;
  if (KetraObjectSgetAuthorityKeyIdCalGenName(object, &members, err) != 0) return -1;
  Names chain = emptyNames(members);
  KetraAuthorityKeyId value{};
  value.authorityCertIssuer.genNames = chain.first();
  return KetraObjectSgetAuthorityKeyId(object, &value, err);
}

int32_t readPolicies(KetraObject object, AsnErrorBlock *err) {
  uint32_t policies = 0;
  if (KetraObjectSgetCertPoliciesCalInformation(object, &policies, err) != 0) return -1;
  for (uint32_t i = 0; i < policies; ++i) {
    uint32_t members = 0;
    if (KetraObjectSgetCertPoliciesCalQualifier(object, i, &members, err) != 0) return -1;
    std::vector<KetraPolicyQualifierInfo> qualifiers = chainOf<KetraPolicyQualifierInfo>(members);
    KetraPolicyInformation policy{nullptr, {}, {head(qualifiers), 0}};
    if (KetraObjectSgetCertPolicies(object, i, &policy, err) != 0) return -1;
  }
  return 0;
}

// The chain that a DistributionPointName needs.
class PointName {
 public:
  PointName(int32_t choice, uint32_t members, X509DistributionPointNameOpt *name)
      : names_(emptyNames(choice == 1 ? members : 0)),
        attributes_(chainOf<X509AttributeTypeAndValue>(choice == 2 ? members : 0)) {
    if (choice == 1) name->value.fullName = names_.first();
    if (choice == 2) name->value.nameRelativeToCRLIssuer = head(attributes_);
  }

 private:
  Names names_;
  std::vector<X509AttributeTypeAndValue> attributes_;
};

int32_t readPoints(KetraObject object, AsnErrorBlock *err) {
  uint32_t count = 0;
  if (KetraObjectSgetCRLDistributionPointsCalDistributionPoint(object, &count, err) != 0) return -1;
  std::vector<KetraDistributionPoint> points = chainOf<KetraDistributionPoint>(count);
  std::deque<PointName> pointNames;
  std::deque<Names> issuers;
  for (uint32_t i = 0; i < count; ++i) {
    int32_t choice = 0;
    uint32_t members = 0;
    uint32_t issuerMembers = 0;
    if (KetraObjectSgetCRLDistributionPointsCalDistributionPointName(object, i, &choice, &members, err) != 0 ||
        KetraObjectSgetCRLDistributionPointsCalCRLIssuer(object, i, &issuerMembers, err) != 0) {
      return -1;
    }
    pointNames.emplace_back(choice, members, &points[i].distributionPoint);
    points[i].cRLIssuer.genNames = issuers.emplace_back(std::vector<std::string>(issuerMembers, "")).first();
  }
  return KetraObjectSgetCRLDistributionPoints(object, head(points), err);
}

int32_t readIssuingPoint(KetraObject object, AsnErrorBlock *err) {
  int32_t choice = 0;
  uint32_t members = 0;
  if (KetraObjectSgetIssuingDistributionPointCalDistributionPointName(object, &choice, &members, err) != 0) return -1;
  KetraIssuingDistributionPoint value{};
  const PointName name(choice, members, &value.distributionPoint);
  return KetraObjectSgetIssuingDistributionPoint(object, &value, err);
}

class Subtrees {
 public:
  explicit Subtrees(uint32_t count) : bases_(emptyNames(count)), nodes_(chainOf<X509GenSubtree>(count)) {
    for (uint32_t i = 0; i < count; ++i) nodes_[i].base = bases_.at(i);
  }
  X509GenSubtreesOpt list() { return {head(nodes_), 0}; }

 private:
  Names bases_;
  std::vector<X509GenSubtree> nodes_;
};

int32_t readConstraints(KetraObject object, AsnErrorBlock *err) {
  uint32_t permitted = 0;
  uint32_t excluded = 0;
  if (KetraObjectSgetNameConstraintsCalGenSubtree(object, &permitted, &excluded, err) != 0) return -1;
  Subtrees first(permitted);
  Subtrees second(excluded);
  KetraNameConstraints value{first.list(), second.list()};
  return KetraObjectSgetNameConstraints(object, &value, err);
}

int32_t readAttributes(KetraObject object, AsnErrorBlock *err) {
  const Attributes attributes;
  return KetraObjectSgetSubjectDirectoryAttributes(object, attributes, err);
}

struct Row {
  const Objid *objid;
  Read read;
};

const std::map<std::string, Row> &rows() {
  static const std::map<std::string, Row> table = {
      {"authorityKeyIdentifier", {&X509Objid_AuthorityKeyId, readKeyId}},
      {"basicConstraints", {&X509Objid_BasicConstraints, scalar(KetraObjectSgetBasicConstraints)}},
      {"cRLDistributionPoints", {&X509Objid_CRLDistributionPoints, readPoints}},
      {"cRLNumber", {&X509Objid_CRLNumber, scalar(KetraObjectSgetCRLNumber)}},
      {"certificateIssuer",
       {&X509Objid_CertIssuer, names(KetraObjectSgetCertIssuerCalGenName, KetraObjectSgetCertIssuer)}},
      {"certificatePolicies", {&X509Objid_CertPolicies, readPolicies}},
      {"deltaCRLIndicator", {&X509Objid_DeltaCRLIndicator, scalar(KetraObjectSgetDeltaCRLIndicator)}},
      {"extKeyUsage",
       {&X509Objid_ExtKeyUsage, list(KetraObjectSgetExtKeyUsageCalKeyPurposeId, KetraObjectSgetExtKeyUsage)}},
      {"holdInstructionCode", {&X509Objid_InstructionCode, scalar(KetraObjectSgetInstructionCode)}},
      {"invalidityDate", {&X509Objid_InvalidityDate, scalar(KetraObjectSgetInvalidityDate)}},
      {"issuerAltName",
       {&X509Objid_IssuerAltName, names(KetraObjectSgetIssuerAltNameCalGenName, KetraObjectSgetIssuerAltName)}},
      {"issuingDistributionPoint", {&X509Objid_IssuingDistributionPoint, readIssuingPoint}},
      {"keyUsage", {&X509Objid_KeyUsage, scalar(KetraObjectSgetKeyUsage)}},
      {"nameConstraints", {&X509Objid_NameConstraints, readConstraints}},
      {"policyConstraints", {&X509Objid_PolicyConstraints, scalar(KetraObjectSgetPolicyConstraints)}},
      {"policyMappings",
       {&X509Objid_PolicyMappings, list(KetraObjectSgetPolicyMappingsCalPolicyMapping, KetraObjectSgetPolicyMappings)}},
      {"privateKeyUsagePeriod", {&X509Objid_PrivateKeyUsagePeriod, scalar(KetraObjectSgetPrivateKeyUsagePeriod)}},
      {"reasonCode", {&X509Objid_ReasonCode, scalar(KetraObjectSgetReasonCode)}},
      {"subjectAltName",
       {&X509Objid_SubjectAltName, names(KetraObjectSgetSubjectAltNameCalGenName, KetraObjectSgetSubjectAltName)}},
      {"subjectDirectoryAttributes", {&X509Objid_SubjectDirectoryAttributes, readAttributes}},
      {"subjectKeyIdentifier", {&X509Objid_SubjectKeyId, scalar(KetraObjectSgetSubjectKeyId)}},
  };
  return table;
}

}  // namespace

int32_t readTyped(const std::string &type, KetraObject extensions, AsnErrorBlock *err) {
  return rows().at(type).read(extensions, err);
}

const Objid *objidOfType(const std::string &type) {
  const auto row = rows().find(type);
  return row == rows().end() ? nullptr : row->second.objid;
}

}  // namespace ketra::test
