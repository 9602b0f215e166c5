#include "support/structures.h"

#include <cstring>

namespace ketra::test {
namespace {

constexpr uint8_t kReasons[] = {0x06};
constexpr uint8_t kKeyIdentifier[] = {0xAA, 0xBB};
constexpr uint8_t kValues[][3] = {{0x13, 0x01, 0x41}, {0x13, 0x01, 0x42}};
constexpr uint32_t kTypes[][4] = {{2, 5, 4, 3}, {2, 5, 4, 10}};
constexpr uint32_t kPolicies[][4] = {{1, 2, 3, 1}, {1, 2, 3, 2}, {1, 2, 3, 3}, {1, 2, 3, 4}};

std::vector<std::string> kinds(Structures::Content content, std::vector<std::string> samples) {
  if (content == Structures::Content::Prepared) samples.assign(samples.size(), "");
  return samples;
}

}  // namespace

Structures::Structures(Content content)
    : fullName(kinds(content, {"dNSName", "iPAddress"})),
      issuer(kinds(content, {"iPAddress"})),
      bases(kinds(content, {"dNSName", "iPAddress"})) {
  std::memset(static_cast<Nodes *>(this), content == Content::Samples ? 0 : 0xA5, sizeof(Nodes));
  link();
  if (content == Content::Samples) fill();
}

void Structures::link() {
  const auto chain = [](auto &nodes) {
    nodes[0].next = &nodes[1];
    nodes[1].next = nullptr;
  };
  chain(attributes);
  chain(points);
  chain(subtrees);
  chain(qualifiers);
  chain(policies);
  chain(mappings);
  chain(purposes);
  head = policies;
  points[0].distributionPoint.value.fullName = fullName.first();
  points[0].cRLIssuer.genNames = keyId.authorityCertIssuer.genNames = issuer.first();
  points[1].distributionPoint.value.nameRelativeToCRLIssuer = attributes;
  points[1].cRLIssuer.genNames = nullptr;
  issuing.distributionPoint.value.nameRelativeToCRLIssuer = attributes;
  names.genNames = fullName.first();
  subtreesOpt = {subtrees, 1};
  constraints = {{subtrees, 0}, {subtrees, 0}};
  policies[0].policyQualifiers = {qualifiers, 1};
  policies[1].policyQualifiers = {nullptr, 0};
  for (std::size_t i = 0; i < 2; ++i) subtrees[i].base = bases.at(i);
}

void Structures::fill() {
  const auto objid = [](std::size_t i) { return Objid{kPolicies[i], 4}; };
  for (std::size_t i = 0; i < 2; ++i) {
    attributes[i].type = {kTypes[i], 4};
    attributes[i].value = {kValues[i], 3};
    policies[i].policyIdentifier = purposes[i].keyPurposeId = objid(i);
    qualifiers[i].policyQualifierId = objid(2 + i);
    mappings[i].issuerDomainPolicy = objid(2 * i);
    mappings[i].subjectDomainPolicy = objid(2 * i + 1);
    points[i].distributionPoint.value.type = static_cast<int32_t>(i) + 1;
    points[i].distributionPoint.option = 1;
  }
  qualifiers[0].qualifier = {{kValues[0], 3}, 1};
  points[0].reasons = {{kReasons, 7}, 1};
  points[0].cRLIssuer.option = 1;
  issuing = {points[1].distributionPoint, {1, 1}, {0, 1}, {{kReasons, 7}, 1}, {1, 1}};
  subtrees[0].minimum = {0, 1};
  subtrees[0].maximum = {5, 1};
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
