#include "library/outside_operations.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "library/outside_calls.h"

namespace ketra::test {
namespace {

constexpr uint8_t kOctets[] = {0x06, 0x00};
constexpr char kGet[] = "KetraObjectSget";
constexpr char kPoint[] = "distributionPoint";
constexpr char kPermitted[] = "permittedSubtrees";
constexpr char kSubtrees[] = "NameConstraints permittedSubtrees";

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

template <class... Nodes>
Stage::Node words(std::initializer_list<const GenName *> objects, const Nodes &...nodes) {
  Stage::Node words;
  for (const GenName *object : objects) words.push_back(object->hasName() ? 1 : 0);
  [[maybe_unused]] const auto append = [&](const auto &node) {
    const Octets octets = octetsWithin(node);
    words.resize(words.size() + octets.size() / sizeof(uint32_t));
    std::memcpy(words.data() + words.size() - octets.size() / sizeof(uint32_t), octets.data(), octets.size());
  };
  (append(nodes), ...);
  return words;
}

}  // namespace

std::string sampleValue(const std::string &name) {
  static const std::map<std::string, std::string> values = [] {
    std::map<std::string, std::string> read;
    for (const auto &row : rowsOf("data/sample_values.tsv")) read[row.at(0)] = row.at(1);
    return read;
  }();
  const auto found = values.find(name);
  return found == values.end() ? "" : found->second;
}

Stage::Stage(const std::string &given)
    : input(given),
      held(heldBy(given)),
      sample(fromHex(givenBy(given))),
      encoding(sample.data()),
      bits{kOctets, 9},
      octets{kOctets, 2},
      name(given == "fullName" ? samples.full() : samples.relative()),
      preparedName{given == "fullName" ? prepared.full() : prepared.relative(), 0} {
  for (const auto &[operation, row] : operations()) {
    if (row.objid == nullptr || !operation.starts_with(kGet)) continue;
    const std::string sampled = sampleValue(operation.substr(sizeof kGet - 1));
    if (!sampled.empty()) extensions.store(*row.objid, fromHex(sampled));
  }
  const std::string constraints = sampleValue("NameConstraints " + given);
  if (!constraints.empty()) extensions.store(X509Objid_NameConstraints, fromHex(constraints));
  samples.constraints.permittedSubtrees.option = given == "permittedSubtrees" ? 1 : 0;
  samples.constraints.excludedSubtrees.option = given == "permittedSubtrees" ? 0 : 1;
  for (Names *each : {&samples.fullName, &samples.bases, &samples.issuer}) each->dropEncodings();
  EXPECT_EQ(attributes.set(fromHex(sampleValue("SubjectDirectoryAttributes"))), 0);
  EXPECT_EQ(object.setPdu(fromHex(held), false), 0);
  if (input == "empty") return;
  EXPECT_EQ(source.setPdu(fromHex(givenBy(given)), false), 0);
  param = source.param();
}

std::vector<std::vector<Stage::Node>> Stage::nodes() const {
  const Structures &p = prepared;
  const auto both = [](const auto &chain) { return std::vector{words({}, chain[0]), words({}, chain[1])}; };
  return {
      {words({&p.fullName.at(0)}), words({&p.fullName.at(1)})},
      {words({&p.bases.at(0)}, p.subtrees[0]), words({&p.bases.at(1)}, p.subtrees[1])},
      {words({&p.fullName.at(0), &p.fullName.at(1), &p.issuer.at(0)}, p.points[0]),
       words({}, p.points[1], p.attributes[0], p.attributes[1])},
      both(p.attributes),
      both(p.qualifiers),
      both(p.mappings),
      both(p.purposes),
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

int32_t prepareParameter(Stage &s, AsnErrorBlock *err) { return X509GenNameObjectSetName(s.object, &s.param, err); }

int32_t prepareCopy(Stage &s, AsnErrorBlock *err) {
  EXPECT_EQ(X509GenNameObjectSetName(s.source, &s.param, nullptr), 0);
  return s.object.setPdu(fromHex(sampleOf("directoryName")), true, err);
}

// A new value, or the decoded one of the name.
int32_t prepareWork(Stage &s, schema::Entry type, const std::string &decoded = "") {
  if (decoded.empty()) {
    s.work.emplace(schema::record(type));
  } else {
    s.work.emplace(schema::record(type), fromHex(sampleValue(decoded)));
    EXPECT_EQ(s.work->decode(), 0);
  }
  s.value = s.work->value;
  return 0;
}

std::string listOf(const Stage &s) { return s.input == "two" ? s.input : "iPAddress"; }

// For a name the input is its path, "1", that in a subtree, "1/base", or its kind.
int32_t prepareMember(Stage &s, AsnErrorBlock *) {
  const char *const list = s.input == "iPAddress" ? "iPAddress" : "two";
  if (std::strlen(s.path()) == 1) return prepareWork(s, schema::Entry::GeneralNames, list);
  prepareWork(s, schema::Entry::NameConstraints, kSubtrees);
  s.value = s.work->element(kPermitted);
  return 0;
}

using Named = std::pair<const std::string, Operation>;

// A row: the operation, its arguments before the error block, and what Operation holds besides.
#define STEP(function, ...) \
  []([[maybe_unused]] Stage &s, AsnErrorBlock *err) -> int32_t { return function(__VA_ARGS__, err); }
#define UTILITY(function, ...) Named(#function, {.run = STEP(function, __VA_ARGS__)})
#define PREPARED(preparation, function, ...)            \
  Named(#function, {.run = STEP(function, __VA_ARGS__), \
                    .prepare = [](Stage &s, AsnErrorBlock *err) { return static_cast<void>(err), preparation; }})
// On a value of the type: a new one, or a decoded sample.
#define ON(type, decoded, function, ...) PREPARED(prepareWork(s, schema::Entry::type, decoded), function, __VA_ARGS__)
#define IN(path) s.work->object, s.value, path
#define EXTENSION(function, extension, type, ...)                     \
  Named(#function, {.run = STEP(function, s.extensions, __VA_ARGS__), \
                    .objid = &X509Objid_##extension,                  \
                    .opened = type,                                   \
                    .withoutObject = STEP(function, nullptr, __VA_ARGS__)})
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
    PREPARED(prepareParameter(s, err), X509GenNameObjectGetPduDER, s.object, &s.encoding),
    PREPARED(prepareParameter(s, err), X509GenNameObjectGetPduBER, s.object, &s.encoding),
    UTILITY(X509GenNameObjectSetPduDER, s.target(), &s.encoding),
    UTILITY(X509GenNameObjectSetPduBER, s.target(), &s.encoding),
    UTILITY(X509GenNameObjectCopy, s.object, s.source),
    ON(GeneralNames, "", X509MUtilSetGenNamesDER, IN(""), s.chain()),
    ON(GeneralNames, "", X509MUtilSetGenNamesBER, IN(""), s.chain()),
    ON(GeneralNames, listOf(s), X509MUtilSgetGenNamesDER, s.pool, IN(""), s.prepared.names.genNames),
    ON(GeneralNames, listOf(s), X509MUtilSgetGenNamesBER, s.pool, IN(""), s.prepared.names.genNames),
    PREPARED(prepareMember(s, err), X509MUtilSgetGenNameObjectDER, s.pool, IN(s.path()), s.prepared.fullName.at(0)),
    PREPARED(prepareMember(s, err), X509MUtilSgetGenNameObjectBER, s.pool, IN(s.path()), s.prepared.fullName.at(0)),
    PREPARED(prepareCopy(s, err), X509MUtilCopyGenNameObject, &s.object.handle, s.source),
    SET(SubjectAltName, "GeneralNames", 1, &s.samples.names),
    SET(IssuerAltName, "GeneralNames", 1, &s.samples.names),
    SET(CertIssuer, "GeneralNames", &s.samples.names),
    GET(SubjectAltName, , "GeneralNames", &s.prepared.names),
    GET(IssuerAltName, , "GeneralNames", &s.prepared.names),
    GET(CertIssuer, , "CertificateIssuer", &s.prepared.names),
    GET(SubjectAltName, CalGenName, "GeneralNames", &s.number),
    GET(IssuerAltName, CalGenName, "GeneralNames", &s.number),
    GET(CertIssuer, CalGenName, "CertificateIssuer", &s.number),

    ON(IssuingDistributionPoint, "", X509MUtilSetDistributionPointName, IN(kPoint), &s.name),
    ON(IssuingDistributionPoint, s.point(), X509MUtilSgetDistributionPointName, s.pool, IN(kPoint),
       &s.preparedName.value),
    ON(IssuingDistributionPoint, s.point(), X509MUtilSgetDistributionPointNameOpt, s.pool, IN(kPoint), &s.preparedName),
    ON(IssuingDistributionPoint, s.point(), X509MUtilCalDistributionPointName, IN(kPoint), &s.integer, &s.number),
    UTILITY(X509MUtilCheckDistributionPointName, &s.name),
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
    ON(NameConstraints, "", X509MUtilSetGenSubtrees, IN(kPermitted), s.samples.subtrees),
    ON(NameConstraints, kSubtrees, X509MUtilSgetGenSubtrees, s.pool, IN(kPermitted), s.prepared.subtrees),
    ON(NameConstraints, kSubtrees, X509MUtilSgetGenSubtreesOpt, s.pool, IN(kPermitted), &s.prepared.subtreesOpt),
    UTILITY(X509MUtilCheckGenSubtrees, s.samples.subtrees),
    UTILITY(X509MUtilCheckGenSubtreesOpt, &s.samples.subtreesOpt),
    SET(NameConstraints, "NameConstraints", 1, &s.samples.constraints),
    GET(NameConstraints, , "NameConstraints", &s.prepared.constraints),
    GET(NameConstraints, CalGenSubtree, "NameConstraints", &s.number, &s.number),

    SET(AuthorityKeyId, "AuthorityKeyIdentifier", &s.samples.keyId),
    GET(AuthorityKeyId, , "AuthorityKeyIdentifier", &s.prepared.keyId),
    GET(AuthorityKeyId, CalGenName, "AuthorityKeyIdentifier", &s.number),
    SET(CertPolicies, "CertificatePoliciesSyntax", 1, &s.samples.head),
    GET(CertPolicies, , "CertificatePoliciesSyntax", 0, s.prepared.policies),
    GET(CertPolicies, CalInformation, "CertificatePoliciesSyntax", &s.number),
    GET(CertPolicies, CalQualifier, "CertificatePoliciesSyntax", s.index(), &s.number),
    SET(PolicyMappings, "PolicyMappings", s.samples.mappings),
    GET(PolicyMappings, , "PolicyMappings", s.prepared.mappings),
    GET(PolicyMappings, CalPolicyMapping, "PolicyMappings", &s.number),
    SET(PolicyConstraints, "PolicyConstraints", 1, &s.policyConstraints),
    GET(PolicyConstraints, , "PolicyConstraints", &s.policyConstraints),
    SET(ExtKeyUsage, "ExtKeyUsage", 1, s.samples.purposes),
    GET(ExtKeyUsage, , "ExtKeyUsage", s.prepared.purposes),
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
