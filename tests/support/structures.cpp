#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr uint8_t kReasons[] = {0x06};
constexpr uint32_t kCommonName[] = {2, 5, 4, 3};
constexpr uint32_t kOrganization[] = {2, 5, 4, 10};
constexpr uint8_t kValueA[] = {0x13, 0x01, 0x41};
constexpr uint8_t kValueB[] = {0x13, 0x01, 0x42};
constexpr char kSubtrees[] = "30 09 82 01 61 80 01 00 81 01 05 30 06 87 04 C0 00 02 01";

std::vector<std::string> kinds(Structures::Content content, std::vector<std::string> samples) {
  if (content == Structures::Content::Prepared) samples.assign(samples.size(), "");
  return samples;
}

}  // namespace

Structures::Structures(Content content)
    : fullName(kinds(content, {"dNSName", "iPAddress"})),
      issuer(kinds(content, {"iPAddress"})),
      bases(kinds(content, {"dNSName", "iPAddress"})),
      attributes{{&attributes[1], {}, {}}, {}},
      points{},
      issuing{},
      subtrees{{&subtrees[1], bases.at(0), {}, {}}, {nullptr, bases.at(1), {}, {}}} {
  points[0].next = &points[1];
  points[0].distributionPoint.value.fullName = fullName.first();
  points[0].cRLIssuer.genNames = issuer.first();
  points[1].distributionPoint.value.nameRelativeToCRLIssuer = attributes;
  issuing.distributionPoint.value.nameRelativeToCRLIssuer = attributes;
  if (content == Content::Prepared) return;
  attributes[0].type = {kCommonName, 4};
  attributes[0].value = {kValueA, 3};
  attributes[1].type = {kOrganization, 4};
  attributes[1].value = {kValueB, 3};
  points[0].distributionPoint.value.type = X509DistributionPointName_FullName;
  points[0].distributionPoint.option = 1;
  points[0].reasons = {{kReasons, 7}, 1};
  points[0].cRLIssuer.option = 1;
  points[1].distributionPoint.value.type = X509DistributionPointName_NameRelativeToCRLIssuer;
  points[1].distributionPoint.option = 1;
  issuing = {points[1].distributionPoint, {1, 1}, {0, 1}, {{kReasons, 7}, 1}, {1, 1}};
  subtrees[0].minimum = {0, 1};
  subtrees[0].maximum = {5, 1};
}

std::string Structures::pointsDer() {
  return std::string("30 35 30 19 ") + kFullName + " 81 02 01 06 A2 06 87 04 C0 00 02 01 30 18 " + kRelativeName;
}

std::string Structures::issuingDer() {
  return std::string("30 25 ") + kRelativeName + " 81 01 FF 82 01 00 83 02 01 06 84 01 FF";
}

std::string Structures::constraintsDer(bool permitted, bool excluded) {
  const std::string length = permitted && excluded ? "2A" : permitted || excluded ? "15" : "00";
  return "30 " + length + (permitted ? std::string(" A0 13 ") + kSubtrees : "") +
         (excluded ? std::string(" A1 13 ") + kSubtrees : "");
}

namespace {

const std::vector<uint32_t> kArcs[] = {{1, 2, 3, 1}, {1, 2, 3, 2}, {1, 2, 3, 3}, {1, 2, 3, 4}};
constexpr uint8_t kKeyIdentifier[] = {0xAA, 0xBB};

Objid objid(std::size_t i) { return {kArcs[i].data(), 4}; }

}  // namespace

Chains::Chains(Structures::Content content)
    : issuer(kinds(content, {"iPAddress"})),
      qualifiers{{&qualifiers[1], {}, {}}, {}},
      policies{{&policies[1], {}, {qualifiers, 0}}, {}},
      mappings{{&mappings[1], {}, {}}, {}},
      purposes{{&purposes[1], {}}, {}},
      keyId{} {
  keyId.authorityCertIssuer.genNames = issuer.first();
  if (content == Structures::Content::Prepared) return;
  for (std::size_t i = 0; i < 2; ++i) {
    policies[i].policyIdentifier = objid(i);
    qualifiers[i].policyQualifierId = objid(2 + i);
    purposes[i].keyPurposeId = objid(i);
    mappings[i].issuerDomainPolicy = objid(2 * i);
    mappings[i].subjectDomainPolicy = objid(2 * i + 1);
  }
  policies[0].policyQualifiers.option = 1;
  qualifiers[0].qualifier = {{kValueA, 3}, 1};
  keyId.keyIdentifier = {{kKeyIdentifier, 2}, 1};
  keyId.authorityCertIssuer.option = 1;
  keyId.authorityCertSerialNumber.value.number = 0x0102;
  keyId.authorityCertSerialNumber.option = 1;
}

std::string textOf(const Objid &objid) {
  std::string text;
  for (uint32_t i = 0; i < objid.count; ++i) text += (i > 0 ? "." : "") + std::to_string(objid.arcs[i]);
  return text;
}

}  // namespace ketra::test
