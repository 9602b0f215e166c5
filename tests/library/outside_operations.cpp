#include "library/outside_operations.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "library/outside_calls.h"

namespace ketra::test {
namespace {

constexpr uint8_t kOctets[] = {0x06, 0x00};
const std::string kTime = " 32 30 32 34 30 31 30 31 30 30 30 30 30 30 5A ";

bool isKind(const std::string &text) { return std::find(kKinds.begin(), kKinds.end(), text) != kKinds.end(); }

// The kind at an end of "dNSName", "first-dNSName" or "dNSName over otherName": the name given, and the one held.
std::string sampleAt(const std::string &input, std::size_t begin, std::size_t end) {
  const std::string kind = input.substr(begin, end - begin);
  return sampleOf(isKind(kind) ? kind : "directoryName");
}
std::string givenBy(const std::string &input) {
  return sampleAt(input, input.starts_with("first-") ? sizeof "first-" - 1 : 0, input.find(" over "));
}
std::string heldBy(const std::string &input) {
  const std::size_t over = input.find(" over ");
  return sampleAt(input, over == std::string::npos ? 0 : over + sizeof " over " - 1, std::string::npos);
}

int32_t setName(const GenName &to, const GenName &from, AsnErrorBlock *err = nullptr) {
  const X509GenNameParam param = from.param();
  return X509GenNameObjectSetName(to, &param, err);
}

// What nobody has filled yet.
template <class... Fields>
void scribble(Fields &...fields) {
  (std::memset(&fields, 0xA5, sizeof fields), ...);
}

void scribble(Structures &structures) {
  for (auto &node : structures.attributes) scribble(node.type, node.value);
  for (auto &[next, name, reasons, issuer] : structures.points) {
    scribble(name.option, name.value.type, reasons, issuer.option);
  }
  for (auto &node : structures.subtrees) scribble(node.minimum, node.maximum);
}

void scribble(Chains &chains) {
  for (auto &node : chains.qualifiers) scribble(node.policyQualifierId, node.qualifier);
  for (auto &node : chains.mappings) scribble(node.issuerDomainPolicy, node.subjectDomainPolicy);
  for (auto &node : chains.purposes) scribble(node.keyPurposeId);
}

template <class... Nodes>
Stage::Node words(std::initializer_list<const GenName *> objects, const Nodes &...nodes) {
  Stage::Node words;
  for (const GenName *object : objects) words.push_back(object->hasName() ? 1 : 0);
  [[maybe_unused]] const auto append = [&](const auto &node) {
    words.resize(words.size() + sizeof node / sizeof(uint32_t));
    std::memcpy(words.data() + words.size() - sizeof node / sizeof(uint32_t), &node, sizeof node);
  };
  (append(nodes), ...);
  return words;
}

// An object that has its name as a parameter only and has to encode it.
void dropEncoding(GenName &name) { EXPECT_EQ(setName(name, name), 0); }

}  // namespace

Stage::Stage(const std::string &name)
    : input(name),
      held(heldBy(name)),
      sample(fromHex(givenBy(name))),
      sampleName(name == "fullName" ? samples.full() : samples.relative()),
      preparedName{name == "fullName" ? prepared.full() : prepared.relative(), 0},
      encoding(sample.data()),
      bits{kOctets, 9},
      octets{kOctets, 2},
      sampleNames{samples.fullName.first()},
      preparedNames{prepared.fullName.first()},
      sampleConstraints{{samples.subtrees, name == "permittedSubtrees"},
                        {samples.subtrees, name != "permittedSubtrees"}},
      preparedConstraints{{prepared.subtrees, 0}, {prepared.subtrees, 0}},
      sampleSubtrees{samples.subtrees, 1},
      preparedSubtrees{prepared.subtrees, 0} {
  const std::pair<const Objid *, std::string> values[] = {
      {&X509Objid_BasicConstraints, "30 00"},
      {&X509Objid_KeyUsage, "03 02 07 80"},
      {&X509Objid_SubjectKeyId, "04 01 AA"},
      {&X509Objid_SubjectAltName, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_IssuerAltName, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_CertIssuer, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_CRLDistributionPoints, Structures::pointsDer()},
      {&X509Objid_IssuingDistributionPoint, Structures::issuingDer()},
      {&X509Objid_NameConstraints, Structures::constraintsDer(name != "excludedSubtrees", name != "permittedSubtrees")},
      {&X509Objid_CRLNumber, "02 01 2A"},
      {&X509Objid_DeltaCRLIndicator, "02 01 2A"},
      {&X509Objid_AuthorityKeyId, Chains::kKeyId},
      {&X509Objid_CertPolicies, Chains::kPolicies},
      {&X509Objid_PolicyMappings, Chains::kMappings},
      {&X509Objid_PolicyConstraints, "30 06 80 01 03 81 01 00"},
      {&X509Objid_ExtKeyUsage, Chains::kPurposes},
      {&X509Objid_PrivateKeyUsagePeriod, "30 22 80 0F" + kTime + "81 0F" + kTime},
      {&X509Objid_ReasonCode, "0A 01 01"},
      {&X509Objid_InstructionCode, "06 03 2A 03 01"},
      {&X509Objid_InvalidityDate, "18 0F" + kTime},
      {&X509Objid_SubjectDirectoryAttributes, kAttributes},
  };
  for (const auto &[identifier, hex] : values) extensions.store(*identifier, fromHex(hex));
  for (Names *each : {&samples.fullName, &samples.bases}) {
    dropEncoding(each->at(0));
    dropEncoding(each->at(1));
  }
  dropEncoding(samples.issuer.at(0));
  dropEncoding(sampleChains.issuer.at(0));
  EXPECT_EQ(attributes.set(fromHex(kAttributes)), 0);
  EXPECT_EQ(object.setPdu(fromHex(held), false), 0);
  if (input != "empty") {
    EXPECT_EQ(source.setPdu(fromHex(givenBy(name)), false), 0);
    param = source.param();
  }
  scribble(prepared);
  scribble(preparedChains);
}

std::vector<std::vector<Stage::Node>> Stage::nodes() const {
  const Structures &p = prepared;
  const Chains &c = preparedChains;
  const auto both = [](const auto &chain) { return std::vector{words({}, chain[0]), words({}, chain[1])}; };
  return {
      {words({&p.fullName.at(0)}), words({&p.fullName.at(1)})},
      {words({&p.bases.at(0)}, p.subtrees[0]), words({&p.bases.at(1)}, p.subtrees[1])},
      {words({&p.fullName.at(0), &p.fullName.at(1), &p.issuer.at(0)}, p.points[0]),
       words({}, p.points[1], p.attributes[0], p.attributes[1])},
      both(p.attributes),
      both(c.qualifiers),
      both(c.mappings),
      both(c.purposes),
  };
}

namespace {

int32_t createAndDestroy(Stage &, AsnErrorBlock *err) {
  X509GenNameObject made = nullptr;
  const int32_t result = X509GenNameObjectCreate(&made, err);
  outside.armed = false;
  X509GenNameObjectDestroy(made, nullptr);
  return result;
}

int32_t setNameOf(Stage &s, AsnErrorBlock *err) {
  const bool isOwn = s.input.starts_with("its-own") && s.object.hasName();
  X509GenNameParam own = isOwn ? s.object.param() : X509GenNameParam{};  // ends with the name
  if (isOwn && s.input == "its-own-octets") {
    AsnEncodedData name{};
    const bool armed = std::exchange(outside.armed, false);
    EXPECT_EQ(X509NameObjectGetPduDER(own.directoryName, &name, nullptr), 0);
    outside.armed = armed;
    own.type = X509GenName_DNSName;
    own.dNSName = {name.octets, name.length};
  }
  return X509GenNameObjectSetName(s.target(), isOwn ? &own : &s.param, err);
}

int32_t prepareParameter(Stage &s, AsnErrorBlock *err) { return setName(s.object, s.source, err); }

int32_t prepareCopy(Stage &s, AsnErrorBlock *err) {
  dropEncoding(s.source);
  return s.object.setPdu(fromHex(sampleOf("directoryName")), true, err);
}

// The input is the path, or tells the list of one.
template <class Get>
Step getOne(Get get) {
  return [=](Stage &s, AsnErrorBlock *err) {
    const GenName &object = s.prepared.fullName.at(0);
    if (s.input == "iPAddress") return get(s.pool, s.one.object(), s.one.value(), "1", object, err);
    if (s.input.size() == 1) return get(s.pool, s.two.object(), s.two.value(), s.input.c_str(), object, err);
    const bool armed = std::exchange(outside.armed, false);
    const AsnValue list = s.subtrees.element("permittedSubtrees");
    outside.armed = armed;
    return get(s.pool, s.subtrees.object(), list, s.input.c_str(), object, err);
  };
}

constexpr char kPoint[] = "distributionPoint";
constexpr char kPermitted[] = "permittedSubtrees";

// A row: the operation, its arguments before the error block, and what Operation holds besides.
#define STEP(function, ...) \
  []([[maybe_unused]] Stage &s, AsnErrorBlock *err) -> int32_t { return function(__VA_ARGS__, err); }
#define UTILITY(function, ...)                 \
  {                                            \
#function, { STEP(function, __VA_ARGS__) } \
  }
#define EXTENSION(function, extension, type, ...)                                                        \
  {                                                                                                      \
#function, {                                                                                         \
      .run = STEP(function, s.extensions, __VA_ARGS__), .objid = &X509Objid_##extension, .opened = type, \
      .withoutObject = STEP(function, nullptr, __VA_ARGS__)                                              \
    }                                                                                                    \
  }
#define SET(extension, type, ...) EXTENSION(KetraObjectSset##extension, extension, type, __VA_ARGS__)
#define GET(extension, what, type, ...) EXTENSION(KetraObjectSget##extension##what, extension, type, __VA_ARGS__)
#define BOTH(extension, type, ...) SET(extension, type, __VA_ARGS__), GET(extension, , type, __VA_ARGS__)
#define CRITICAL(extension) GET(extension, Critical, "", &s.integer)

const std::map<std::string, Operation> kOperations = {
    SET(BasicConstraints, "BasicConstraints", 1, &s.basicConstraints),
    GET(BasicConstraints, , "BasicConstraints", &s.basicConstraints),
    CRITICAL(BasicConstraints),
    CRITICAL(KeyUsage),
    CRITICAL(ExtKeyUsage),
    CRITICAL(CertPolicies),
    CRITICAL(SubjectAltName),
    CRITICAL(IssuerAltName),
    CRITICAL(NameConstraints),
    CRITICAL(PolicyConstraints),
    CRITICAL(CRLDistributionPoints),
    SET(KeyUsage, "BITSTRING", 1, &s.bits),
    GET(KeyUsage, , "BITSTRING", &s.bits),
    BOTH(SubjectKeyId, "SubjectKeyIdentifier", &s.octets),

    {"X509GenNameObjectCreate", {createAndDestroy}},
    UTILITY(X509GenNameObjectDestroy, std::exchange(s.object.handle, nullptr)),
    {"X509GenNameObjectSetName", {setNameOf}},
    {"X509GenNameObjectGetPduDER",
     {.run = STEP(X509GenNameObjectGetPduDER, s.object, &s.encoding), .prepare = prepareParameter}},
    {"X509GenNameObjectGetPduBER",
     {.run = STEP(X509GenNameObjectGetPduBER, s.object, &s.encoding), .prepare = prepareParameter}},
    UTILITY(X509GenNameObjectSetPduDER, s.target(), &s.encoding),
    UTILITY(X509GenNameObjectSetPduBER, s.target(), &s.encoding),
    UTILITY(X509GenNameObjectCopy, s.object, s.source),
    UTILITY(X509MUtilSetGenNamesDER, s.names.object, s.names.value, "", s.chain()),
    UTILITY(X509MUtilSetGenNamesBER, s.names.object, s.names.value, "", s.chain()),
    UTILITY(X509MUtilSgetGenNamesDER, s.pool, s.list().object(), s.list().value(), "", s.preparedNames.genNames),
    UTILITY(X509MUtilSgetGenNamesBER, s.pool, s.list().object(), s.list().value(), "", s.preparedNames.genNames),
    {"X509MUtilSgetGenNameObjectDER", {getOne(X509MUtilSgetGenNameObjectDER)}},
    {"X509MUtilSgetGenNameObjectBER", {getOne(X509MUtilSgetGenNameObjectBER)}},
    {"X509MUtilCopyGenNameObject",
     {.run = STEP(X509MUtilCopyGenNameObject, &s.object.handle, s.source), .prepare = prepareCopy}},
    SET(SubjectAltName, "GeneralNames", 1, &s.sampleNames),
    SET(IssuerAltName, "GeneralNames", 1, &s.sampleNames),
    SET(CertIssuer, "GeneralNames", &s.sampleNames),
    GET(SubjectAltName, , "GeneralNames", &s.preparedNames),
    GET(IssuerAltName, , "GeneralNames", &s.preparedNames),
    GET(CertIssuer, , "CertificateIssuer", &s.preparedNames),
    GET(SubjectAltName, CalGenName, "GeneralNames", &s.number),
    GET(IssuerAltName, CalGenName, "GeneralNames", &s.number),
    GET(CertIssuer, CalGenName, "CertificateIssuer", &s.number),

    UTILITY(X509MUtilSetDistributionPointName, s.issuing.object, s.issuing.value, kPoint, &s.sampleName),
    UTILITY(X509MUtilSgetDistributionPointName, s.pool, s.point().object(), s.point().value(), kPoint,
            &s.preparedName.value),
    UTILITY(X509MUtilSgetDistributionPointNameOpt, s.pool, s.point().object(), s.point().value(), kPoint,
            &s.preparedName),
    UTILITY(X509MUtilCalDistributionPointName, s.point().object(), s.point().value(), kPoint, &s.integer, &s.number),
    UTILITY(X509MUtilCheckDistributionPointName, &s.sampleName),
    UTILITY(X509MUtilCheckDistributionPointNameOpt, &s.samples.issuing.distributionPoint),
    UTILITY(X509MUtilCheckCRLDistributionPoints, s.samples.points),
    SET(CRLDistributionPoints, "CRLDistributionPoints", 1, s.samples.points),
    GET(CRLDistributionPoints, , "CRLDistributionPoints", s.prepared.points),
    GET(CRLDistributionPoints, CalDistributionPoint, "CRLDistributionPoints", &s.number),
    GET(CRLDistributionPoints, CalDistributionPointName, "CRLDistributionPoints", 0, &s.integer, &s.number),
    GET(CRLDistributionPoints, CalCRLIssuer, "CRLDistributionPoints", 0, &s.number),
    SET(IssuingDistributionPoint, "IssuingDistributionPoint", &s.samples.issuing),
    GET(IssuingDistributionPoint, , "IssuingDistributionPoint", &s.prepared.issuing),
    GET(IssuingDistributionPoint, CalDistributionPointName, "IssuingDistributionPoint", &s.integer, &s.number),
    UTILITY(X509MUtilSetGenSubtrees, s.constraints.object, s.constraints.value, kPermitted, s.samples.subtrees),
    UTILITY(X509MUtilSgetGenSubtrees, s.pool, s.subtrees.object(), s.subtrees.value(), kPermitted, s.prepared.subtrees),
    UTILITY(X509MUtilSgetGenSubtreesOpt, s.pool, s.subtrees.object(), s.subtrees.value(), kPermitted,
            &s.preparedSubtrees),
    UTILITY(X509MUtilCheckGenSubtrees, s.samples.subtrees),
    UTILITY(X509MUtilCheckGenSubtreesOpt, &s.sampleSubtrees),
    SET(NameConstraints, "NameConstraints", 1, &s.sampleConstraints),
    GET(NameConstraints, , "NameConstraints", &s.preparedConstraints),
    GET(NameConstraints, CalGenSubtree, "NameConstraints", &s.number, &s.number),

    SET(AuthorityKeyId, "AuthorityKeyIdentifier", &s.sampleChains.keyId),
    GET(AuthorityKeyId, , "AuthorityKeyIdentifier", &s.preparedChains.keyId),
    GET(AuthorityKeyId, CalGenName, "AuthorityKeyIdentifier", &s.number),
    SET(CertPolicies, "CertificatePoliciesSyntax", 1, &s.sampleChains.head),
    GET(CertPolicies, , "CertificatePoliciesSyntax", 0, s.preparedChains.policies),
    GET(CertPolicies, CalInformation, "CertificatePoliciesSyntax", &s.number),
    GET(CertPolicies, CalQualifier, "CertificatePoliciesSyntax", 0, &s.number),
    SET(PolicyMappings, "PolicyMappings", s.sampleChains.mappings),
    GET(PolicyMappings, , "PolicyMappings", s.preparedChains.mappings),
    GET(PolicyMappings, CalPolicyMapping, "PolicyMappings", &s.number),
    SET(PolicyConstraints, "PolicyConstraints", 1, &s.policyConstraints),
    GET(PolicyConstraints, , "PolicyConstraints", &s.policyConstraints),
    SET(ExtKeyUsage, "ExtKeyUsage", 1, s.sampleChains.purposes),
    GET(ExtKeyUsage, , "ExtKeyUsage", s.preparedChains.purposes),
    GET(ExtKeyUsage, CalKeyPurposeId, "ExtKeyUsage", &s.number),
    BOTH(PrivateKeyUsagePeriod, "PrivateKeyUsagePeriod", &s.period),
    BOTH(CRLNumber, "CRLNumber", &s.integer),
    BOTH(DeltaCRLIndicator, "BaseCRLNumber", &s.integer),
    BOTH(ReasonCode, "CRLReason", &s.integer),
    BOTH(InstructionCode, "HoldInstruction", &s.objid),
    BOTH(InvalidityDate, "InvalidityDate", &s.time),
    BOTH(SubjectDirectoryAttributes, "", s.attributes),
};

}  // namespace

const std::map<std::string, Operation> &operations() { return kOperations; }

}  // namespace ketra::test
