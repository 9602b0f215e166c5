// What sets make of callers' structures, and gets of values and of the chains that are prepared for them.

#include <cstring>

#include "ketra/ketra_errors.h"
#include "library/outside_operations.h"

namespace ketra::test {
namespace {

// An operation, and the input of its stage behind a blank.
std::pair<std::string, std::string> parted(const std::string &text) {
  const std::size_t blank = std::min(text.find(' '), text.size());
  return {text.substr(0, blank), text.substr(std::min(blank + 1, text.size()))};
}

// The value of the caller's that an error has to name; null: any.
struct Blamed {
  const void *value = nullptr;
  std::size_t length = 0;
};

// Changes what a set or get is given.
#define CHANGED(...)              \
  []([[maybe_unused]] Stage &s) { \
    __VA_ARGS__;                  \
    return Blamed{};              \
  }
#define BLAMED(...)                        \
  []([[maybe_unused]] Stage &s) {          \
    const auto &blamed = (__VA_ARGS__);    \
    return Blamed{&blamed, sizeof blamed}; \
  }

// The whole structure, as far as its last field goes.
#define BLAMED_TO(last, ...)                                                                         \
  []([[maybe_unused]] Stage &s) {                                                                    \
    const auto &blamed = (__VA_ARGS__);                                                              \
    const auto *end = reinterpret_cast<const char *>(&blamed.last) + sizeof blamed.last;             \
    return Blamed{&blamed, static_cast<std::size_t>(end - reinterpret_cast<const char *>(&blamed))}; \
  }

constexpr uint8_t kOnes[] = {0xFF, 0xFF};
constexpr uint8_t kPadded[] = {0x00, 0x01};
constexpr uint32_t kNoArcs[] = {3, 5};

X509DirStr letters(uint32_t count) {
  static const Exact most(Octets(40000, 'x'));
  return {X509DirStr_Utf8String, most.data().octets, count};
}

TEST(Structures, AreSetOrRefused) {
  struct Row {
    std::string operation;  // "": the one above
    Blamed (*change)(Stage &);
    std::string expected;  // how the innermost entry begins, without the operation itself; or "=" and what is stored
  };
  const Row rows[] = {
      {"KetraObjectSsetBasicConstraints", CHANGED(s.basicConstraints = {{1, 1}, {0, 1}}), "=30 06 01 01 FF 02 01 00"},
      {"", CHANGED(s.basicConstraints = {{2, 0}, {-1, 0}}), "=30 00"},
      {"", CHANGED(s.basicConstraints = {{0, 1}, {5, 0}}), "=30 03 01 01 00"},
      {"", BLAMED(s.basicConstraints.pathLenConstraint.value = -1), "01464852 pathLen [-1]"},
      {"", CHANGED(s.basicConstraints.cA.value = 2), "02300005 AsnCheckBoolOptBER"},
      {"", CHANGED(s.basicConstraints.cA.option = 2), "02300004 AsnCheckBoolOptBER"},
      {"", CHANGED(s.basicConstraints.cA.option = -1), "02300004 AsnCheckBoolOptBER"},
      {"", CHANGED(s.basicConstraints.pathLenConstraint.option = 3), "02300004 AsnCheckIntOptBER"},

      {"KetraObjectSsetKeyUsage", CHANGED(s.bits = {kOnes, 0}), "=03 01 00"},
      {"", CHANGED(s.bits = {kOnes, 1}), "=03 02 07 80"},
      {"", CHANGED(s.bits = {kPadded, 8}), "=03 01 00"},
      {"", CHANGED(s.bits = {kPadded + 1, 8}), "=03 02 00 01"},
      {"", CHANGED(s.bits = {kOnes, 9}), "=03 03 07 FF 80"},
      {"", CHANGED(s.bits = {nullptr, 1}), "02300003 AsnCheckBitBER"},
      {"", BLAMED(s.bits.bits = 10), "0146203A bitlength [10]"},
      {"KetraObjectSsetSubjectKeyId", CHANGED(s.octets = {nullptr, 0}), "=04 00"},
      {"", CHANGED(s.octets = {nullptr, 3}), "02300003 AsnCheckOctBER"},

      {"KetraObjectSsetCRLNumber", BLAMED(s.integer = -1), "01465053 cRLNumber [-1]"},
      {"KetraObjectSsetDeltaCRLIndicator", BLAMED(s.integer = INT32_MIN), "01466A53 deltaCRLIndicator [-2147483648]"},
      {"KetraObjectSsetReasonCode", BLAMED(s.integer = 7), "01466463 reasonCode [7]"},
      {"", BLAMED(s.integer = 9), "01466463 reasonCode [9]"},
      {"", BLAMED(s.integer = -1), "01466463 reasonCode [-1]"},
      {"KetraObjectSsetInstructionCode", CHANGED(s.objid.count = 1), "02300006 AsnCheckObjidBER"},
      {"", CHANGED(s.objid = {kNoArcs, 2}), "02300006 AsnCheckObjidBER"},
      {"KetraObjectSsetInvalidityDate", CHANGED(s.time = {-1, 0}), "02300007 AsnCheckGtimeBER"},
      {"", CHANGED(s.time = {0x7FFFFFFF, 0}), "02300007 AsnCheckGtimeBER"},
      {"KetraObjectSsetPrivateKeyUsagePeriod", CHANGED(s.period.notBefore.option = 0),
       "=30 11 81 0F 30 30 30 30 30 31 30 31 30 30 30 30 30 30 5A"},
      {"", CHANGED(s.period = {}), "=30 00"},
      {"", CHANGED(s.period.notAfter.option = 2), "02300004 AsnCheckGtimeOptBER"},

      {"KetraObjectSsetPolicyConstraints", CHANGED(s.policyConstraints = {{-1, 0}, {-1, 0}}), "=30 00"},
      {"", BLAMED(s.policyConstraints.requireExplicitPolicy.value = -1), "01466364 requireExplicitPolicy.value [-1]"},
      {"", BLAMED(s.policyConstraints.inhibitPolicyMapping.value = -2), "01466365 inhibitPolicyMapping.value [-2]"},
      {"KetraObjectSsetCertPolicies", CHANGED(), std::string("=") + Chains::kPolicies},
      {"",
       CHANGED(s.sampleChains.policies[0].policyQualifiers.option = s.sampleChains.qualifiers[0].qualifier.option = 0),
       "=30 0E 30 05 06 03 2A 03 01 30 05 06 03 2A 03 02"},
      {"", CHANGED(s.sampleChains.head = nullptr), "01463083 Count = 0"},
      {"",
       BLAMED_TO(option, s.sampleChains.policies[1].policyQualifiers.option = 2,
                 s.sampleChains.policies[1].policyQualifiers),
       "01463054 option"},
      {"", CHANGED(s.sampleChains.policies[1].policyQualifiers = {nullptr, 1}), "01463084 Count = 0"},
      {"", CHANGED(s.sampleChains.policies[1].policyIdentifier.count = 1), "02300006 AsnCheckObjidBER"},
      {"", CHANGED(s.sampleChains.qualifiers[1].policyQualifierId.count = 0), "02300006 AsnCheckObjidBER"},
      {"", CHANGED(s.sampleChains.qualifiers[0].qualifier.value.length = 2), "02100020 AsnCheckEncodedDataOptBER"},
      {"", CHANGED(s.sampleChains.qualifiers[1].qualifier.option = 2), "02300004 AsnCheckEncodedDataOptBER"},
      {"KetraObjectSgetCertPolicies", CHANGED(s.preparedChains.qualifiers[0].next = nullptr),
       "0146A399 policyQualifiers [2]"},
      {"KetraObjectSsetPolicyMappings", CHANGED(), std::string("=") + Chains::kMappings},
      {"", CHANGED(s.sampleChains.mappings[1].subjectDomainPolicy.count = 0), "02300006 AsnCheckObjidBER"},
      {"KetraObjectSgetPolicyMappings", CHANGED(s.preparedChains.mappings[0].next = nullptr),
       "0146C999 Chain of PolicyMappings [2]"},
      {"KetraObjectSgetExtKeyUsage", CHANGED(s.preparedChains.purposes[0].next = nullptr),
       "0146DF99 Chain of KeyPurposeId [2]"},

      {"KetraObjectSsetAuthorityKeyId", CHANGED(), std::string("=") + Chains::kKeyId},
      {"", CHANGED(s.sampleChains.keyId = {{{nullptr, 1}, 0}, {}, {}}), "=30 00"},
      {"",
       BLAMED_TO(authorityCertSerialNumber.option, s.sampleChains.keyId.authorityCertSerialNumber.option = 0,
                 s.sampleChains.keyId),
       "01461059 opt"},
      {"",
       BLAMED_TO(authorityCertSerialNumber.option, s.sampleChains.keyId.authorityCertIssuer.option = 0,
                 s.sampleChains.keyId),
       "01461059 opt"},
      {"",
       BLAMED_TO(option, s.sampleChains.keyId.authorityCertIssuer.option = 2, s.sampleChains.keyId.authorityCertIssuer),
       "0147F754 X509MUtilCheckGenNamesOpt: option"},
      {"", CHANGED(s.sampleChains.keyId.authorityCertSerialNumber.value.form = 2),
       "02510030 X509MUtilCheckCertSerialNumberOpt"},
      {"",
       CHANGED(X509CertSerialNumber &serial = s.sampleChains.keyId.authorityCertSerialNumber.value; serial.form = 1;
               serial.octets = kPadded; serial.length = 2),
       "02510031 X509MUtilCheckCertSerialNumberOpt"},
      {"", CHANGED(s.sampleChains.keyId.keyIdentifier.value.octets = nullptr), "02300003 AsnCheckOctOptBER"},

      {"KetraObjectSsetSubjectAltName", CHANGED(s.sampleNames = {nullptr}),
       "0147F682 X509MUtilCheckGenNames: Count = 0"},
      {"KetraObjectSsetIssuerAltName", CHANGED(s.samples.fullName.node(1).genName = nullptr),
       "0147F602 X509MUtilCheckGenNames: No Object"},
      {"KetraObjectSsetCertIssuer", CHANGED(s.samples.fullName.node(1).genName = s.prepared.fullName.at(0)),
       "01479103 X509GenNameObjectGetPduDER: None PDU and None Param"},
      {"X509MUtilSetGenNamesDER two", CHANGED(s.samples.fullName.node(1).genName = nullptr),
       "0147F302 x509MUtilSetGenNames: None parameter"},
      {"X509MUtilSgetGenNamesBER two", CHANGED(s.prepared.fullName.node(0).next = nullptr),
       "0147F499 x509MUtilSgetGenNames: Chain is too short "},

      {"X509GenNameObjectSetName", BLAMED(s.param.type = 0), "01472144 type [0]"},
      {"", BLAMED(s.param.type = 10), "01472144 type [10]"},
      {"", CHANGED(s.param.directoryName = nullptr), "01472102 None NameObject"},
      {"X509GenNameObjectSetName ediPartyName", CHANGED(s.param.ediPartyName.nameAssigner.value.length = 0),
       "02510011 X509MUtilGetCheckLengthOfDirStr"},
      {"", CHANGED(s.param.ediPartyName.partyName = letters(32769)), "02510011 X509MUtilGetCheckLengthOfDirStr"},
      {"",  // a flag other than 1 is absence
       CHANGED(s.param.ediPartyName.partyName = letters(32768); s.param.ediPartyName.nameAssigner.option = 2),
       "=" + toHex(fromHex("A5 82 80 08 A1 82 80 04 0C 82 80 00+78*32768"))},
      // From a view of the object itself, in part and as another kind.
      {"X509GenNameObjectSetName rfc822Name",
       CHANGED(s.param.type = X509GenName_DNSName; s.param.dNSName = {s.object.param().rfc822Name.octets + 2, 1}),
       "=82 01 61"},
      {"X509GenNameObjectSetName ediPartyName",
       CHANGED(s.param = s.object.param(); s.param.ediPartyName.nameAssigner.option = 0), "=A5 05 A1 03 13 01 59"},
      {"",
       CHANGED(s.param.type = X509GenName_DNSName;
               s.param.dNSName = {s.object.param().ediPartyName.partyName.octets, 1}),
       "=82 01 59"},
      {"X509GenNameObjectSetName otherName",
       CHANGED(s.param.type = X509GenName_RegisteredID;
               s.param.registeredID = {s.object.param().otherName.type.arcs, 2}),
       "=88 01 2B"},
      {"X509GenNameObjectSetName directoryName",
       CHANGED(AsnEncodedData name{}; X509NameObjectGetPduDER(s.object.param().directoryName, &name, nullptr);
               s.param.type = X509GenName_DNSName; s.param.dNSName = {name.octets + name.length - 1, 1}),
       "=82 01 41"},

      {"X509MUtilSetDistributionPointName", BLAMED(s.sampleName.type = 3), "014FD147 type [3]"},
      {"X509MUtilCheckDistributionPointName", BLAMED(s.sampleName.type = 3), "014FD447 type [3]"},
      {"", CHANGED(s.sampleName.nameRelativeToCRLIssuer = nullptr), "014FD488"},
      {"", CHANGED(s.samples.attributes[1].value.length = 2), "02100020 AsnCheckEncodedDataBER"},
      {"X509MUtilCheckDistributionPointName fullName", CHANGED(s.sampleName.fullName = nullptr),
       "0147F682 X509MUtilCheckGenNames: Count = 0"},
      {"X509MUtilCheckDistributionPointNameOpt",
       BLAMED_TO(option, s.samples.issuing.distributionPoint.option = 2, s.samples.issuing.distributionPoint),
       "014FD554"},
      {"X509MUtilSgetDistributionPointNameOpt", CHANGED(s.prepared.attributes[0].next = nullptr),
       "014FD299 X509MUtilSgetDistributionPointName: Chain of DistributionPointName "},
      {"KetraObjectSsetCRLDistributionPoints", CHANGED(), "=" + Structures::pointsDer()},
      {"", CHANGED(s.samples.points[1] = {nullptr, {}, {{kOnes, 9}, 1}, {}}; s.samples.points[0] = s.samples.points[1]),
       "=30 07 30 05 81 03 07 FF 80"},
      {"", CHANGED(s.samples.points[1].reasons.option = 2), "02300004 AsnCheckBitOptBER"},
      {"", CHANGED(s.samples.points[1].cRLIssuer = {nullptr, 1}), "0147F682 X509MUtilCheckGenNames: Count = 0"},
      {"KetraObjectSgetCRLDistributionPoints", CHANGED(s.prepared.points[0].next = nullptr),
       "0146D799 Chain of CRLDistributionPoints [2]"},
      {"KetraObjectSsetIssuingDistributionPoint", CHANGED(), "=" + Structures::issuingDer()},
      {"", CHANGED(s.samples.issuing = {}), "=30 00"},
      {"", CHANGED(s.samples.issuing.distributionPoint.option = 2), "014FD554"},
      {"KetraObjectSgetIssuingDistributionPoint", CHANGED(s.prepared.attributes[0].next = nullptr), "014FD299"},

      {"X509MUtilCheckGenSubtrees", CHANGED(s.samples.subtrees[1].maximum.option = 2), "02300004 AsnCheckIntOptBER"},
      {"X509MUtilCheckGenSubtreesOpt", CHANGED(s.sampleSubtrees.genSubtrees = nullptr), "014FB486"},
      {"", CHANGED(s.samples.subtrees[1].base = nullptr), "014FB402"},
      {"", BLAMED_TO(option, s.sampleSubtrees.option = 2, s.sampleSubtrees), "014FB554"},
      {"X509MUtilSgetGenSubtreesOpt", CHANGED(s.prepared.subtrees[0].next = nullptr),
       "014FB299 X509MUtilSgetGenSubtrees: Chain of GenSubtrees"},
      {"KetraObjectSsetNameConstraints both", CHANGED(s.sampleConstraints = {}), "=30 00"},
      {"", CHANGED(s.sampleConstraints.permittedSubtrees.option = 1), "=" + Structures::constraintsDer(true, true)},
      {"KetraObjectSsetNameConstraints excludedSubtrees",
       CHANGED(s.samples.subtrees[0] = {nullptr, s.samples.bases.at(0), {-1, 1}, {-5, 1}}),
       "=30 0D A1 0B 30 09 82 01 61 80 01 FF 81 01 FB"},
      {"KetraObjectSsetNameConstraints permittedSubtrees", CHANGED(s.sampleConstraints.excludedSubtrees.option = 2),
       "014FB554"},
      {"KetraObjectSsetNameConstraints excludedSubtrees",
       CHANGED(s.sampleConstraints.excludedSubtrees.genSubtrees = nullptr), "014FB486"},
  };
  std::string name;
  std::string input;
  for (const Row &row : rows) {
    if (!row.operation.empty()) std::tie(name, input) = parted(row.operation);
    const Operation &operation = operations().at(name);
    SCOPED_TRACE(name + " " + row.expected);
    Stage stage(input);
    const Blamed blamed = row.change(stage);
    const std::string before = stage.extensions.pdu();
    const Err err = called(operation.run, stage);
    if (row.expected[0] == '=') {
      const std::string got = operation.objid ? stage.extensions.stored(*operation.objid) : stage.object.der();
      EXPECT_EQ("=" + got, row.expected) << err.text();
      continue;
    }
    ASSERT_NE(err.block.count, 0u);
    std::string said = err.innermost();
    if (said.compare(9, name.size() + 2, name + ": ") == 0) said.erase(9, name.size() + 2);
    EXPECT_EQ(said.substr(0, row.expected.size()), row.expected);
    EXPECT_TRUE(blamed.value == nullptr ||
                (err.block.entries[0].value == blamed.value && err.block.entries[0].valueLength == blamed.length));
    EXPECT_EQ(stage.extensions.pdu(), before);
    EXPECT_TRUE(stage.holdsOldNameOrNone());
    Stage other(input);
    row.change(other);
    EXPECT_EQ(called(operation.run, other).text(), err.text()) << "no address is printed";
  }
}

// What a trace keeps of a structure: its fields and zeros between them, whatever the padding holds. The text has
// nothing of it.
template <class Structure, class Check>
void expectFieldsOnly(const char *text, const std::string &kept, Check &&check, void (*fill)(Structure &)) {
  for (const int garbage : {0xA5, 0x5A}) {
    Structure structure;
    std::memset(&structure, garbage, sizeof structure);
    fill(structure);
    Err err;
    std::memset(&err.block.entries, garbage, sizeof err.block.entries);
    EXPECT_EQ(check(&structure, err), -1);
    EXPECT_EQ(err.text().substr(err.text().find('\n') + 3), text);
    const AsnTraceEntry &entry = err.block.entries[0];
    const Octets octets(entry.valueOctets, entry.valueOctets + ASN_TRACE_VALUE);
    EXPECT_TRUE(sizeof(void *) != 8 || toHex(octets) == toHex(fromHex(kept))) << toHex(octets);
  }
}

TEST(Structures, TracesHaveNoPadding) {
  Extensions extensions;
  const auto setKeyId = [&](const KetraAuthorityKeyId *value, AsnErrorBlock *err) {
    return KetraObjectSsetAuthorityKeyId(extensions, value, err);
  };
  const auto setPolicy = [&](KetraPolicyInformation *value, AsnErrorBlock *err) {
    return KetraObjectSsetCertPolicies(extensions, 0, &value, err);
  };
  expectFieldsOnly<KetraAuthorityKeyId>("X509 KetraObjectSsetAuthorityKeyId: opt", "00*8+03+00*15", setKeyId,
                                        [](KetraAuthorityKeyId &value) {
                                          value.keyIdentifier.value.octets = nullptr;
                                          value.keyIdentifier.value.length = 3;
                                          value.keyIdentifier.option = 0;
                                          value.authorityCertIssuer.option = 0;
                                          value.authorityCertSerialNumber.value.form = 0;
                                          value.authorityCertSerialNumber.option = 1;
                                        });
  expectFieldsOnly<X509GenNamesOpt>("X509 X509MUtilCheckGenNamesOpt: option", "00*8+02+00*15",
                                    X509MUtilCheckGenNamesOpt, [](X509GenNamesOpt &names) {
                                      names.genNames = nullptr;
                                      names.option = 2;
                                    });
  expectFieldsOnly<X509GenSubtreesOpt>("X509 X509MUtilCheckGenSubtreesOpt: option", "00*8+02+00*15",
                                       X509MUtilCheckGenSubtreesOpt, [](X509GenSubtreesOpt &list) {
                                         list.genSubtrees = nullptr;
                                         list.option = 2;
                                       });
  expectFieldsOnly<X509DistributionPointNameOpt>("X509 X509MUtilCheckDistributionPointNameOpt: option",
                                                 "01+00*15+02+00*7", X509MUtilCheckDistributionPointNameOpt,
                                                 [](X509DistributionPointNameOpt &name) {
                                                   name.value.type = 1;
                                                   name.value.fullName = nullptr;
                                                   name.option = 2;
                                                 });
  expectFieldsOnly<KetraPolicyInformation>("X509 KetraObjectSsetCertPolicies: option", "00*8+02+00*15", setPolicy,
                                           [](KetraPolicyInformation &policy) {
                                             policy.next = nullptr;
                                             policy.policyIdentifier = X509Objid_KeyUsage;
                                             policy.policyQualifiers.policyQualifiers = nullptr;
                                             policy.policyQualifiers.option = 2;
                                           });
}

// Of values that are stored: how the innermost entry begins, or what is counted.
TEST(Structures, ReadWhatIsStored) {
  for (const auto &row : rowsOf(KETRA_STORED_VALUES)) {
    SCOPED_TRACE(row.at(0) + " " + row.at(1));
    const Operation &operation = operations().at(row.at(0));
    Stage stage("");
    stage.number = 99;
    if (row.at(1) == "absent") {
      ASSERT_EQ(KetraObjectDeleteExt(stage.extensions, operation.objid, nullptr), 0);
    } else {
      stage.extensions.store(*operation.objid, fromHex(row.at(1)));
    }
    const std::string said = refusal(operation.run, stage);
    EXPECT_EQ(said.empty() ? std::to_string(stage.number) : said.substr(0, row.at(2).size()), row.at(2));
  }
}

// A set leaves nothing in the pool besides what it stores.
TEST(Structures, SetsReturnTheirEncodings) {
  for (const auto &[name, operation] : operations()) {
    if (!name.starts_with("KetraObjectSset")) continue;
    Stage stage("");
    ASSERT_EQ(refusal(operation.run, stage), "") << name;
    const auto once = usage(stage.extensions.pool());
    ASSERT_EQ(refusal(operation.run, stage), "");
    EXPECT_EQ(usage(stage.extensions.pool()), once) << name;
  }
}

// One more node than there are members.
template <class Node>
void staysAsItIs(const char *operation, Node &(*last)(Stage &)) {
  SCOPED_TRACE(operation);
  Stage stage("");
  Node more;
  std::memset(&more, 0xA5, sizeof more);
  more.next = nullptr;
  const Node before = more;
  last(stage).next = &more;
  EXPECT_EQ(refusal(operations().at(operation).run, stage), "");
  EXPECT_EQ(std::memcmp(&more, &before, sizeof more), 0);
}

TEST(Structures, LongerChains) {
  staysAsItIs(
      "KetraObjectSgetExtKeyUsage", +[](Stage & s) -> auto & { return s.preparedChains.purposes[1]; });
  staysAsItIs(
      "KetraObjectSgetPolicyMappings", +[](Stage & s) -> auto & { return s.preparedChains.mappings[1]; });
  staysAsItIs(
      "KetraObjectSgetCertPolicies", +[](Stage & s) -> auto & { return s.preparedChains.qualifiers[1]; });
  staysAsItIs(
      "KetraObjectSgetCRLDistributionPoints", +[](Stage & s) -> auto & { return s.prepared.points[1]; });
  staysAsItIs(
      "X509MUtilSgetDistributionPointName", +[](Stage & s) -> auto & { return s.prepared.attributes[1]; });
  staysAsItIs(
      "X509MUtilSgetGenSubtrees", +[](Stage & s) -> auto & { return s.prepared.subtrees[1]; });
}

// What is read where all is there, and what is left as the caller set it where a component is absent.
TEST(Structures, GetsWriteWhatIsThere) {
  Stage s("");
  const auto get = [&](const char *operation, const char *value) {
    s.extensions.store(*operations().at(operation).objid, fromHex(value));
    EXPECT_EQ(refusal(operations().at(operation).run, s), "");
  };
  s.basicConstraints = {{9, 9}, {9, 9}};
  get("KetraObjectSgetBasicConstraints", "30 00");
  EXPECT_TRUE(s.basicConstraints.cA.option == 0 && s.basicConstraints.cA.value == 0);
  EXPECT_TRUE(s.basicConstraints.pathLenConstraint.option == 0 && s.basicConstraints.pathLenConstraint.value == 0);

  get("KetraObjectSgetPrivateKeyUsagePeriod", "30 00");
  EXPECT_EQ(s.period.notBefore.option + s.period.notAfter.option, 0);

  KetraAuthorityKeyId &key = s.preparedChains.keyId;
  X509CertSerialNumber &number = key.authorityCertSerialNumber.value;
  number.reserved = 77;
  number.length = 88;
  get("KetraObjectSgetAuthorityKeyId", Chains::kKeyId);
  EXPECT_TRUE(number.form == 0 && number.number == 0x0102 && number.reserved == 77 && number.length == 88);
  const std::pair<const char *, int32_t> serials[] = {
      {"30 03 82 01 FF", -1}, {"30 06 82 04 80 00 00 00", INT32_MIN}, {"30 07 82 05 00 80 00 00 00", 5}};
  for (const auto &[value, expected] : serials) {
    get("KetraObjectSgetAuthorityKeyId", value);
    EXPECT_EQ(number.form == 0 ? number.number : static_cast<int32_t>(number.length), expected);
  }
  EXPECT_EQ(toHex(number.octets, number.length), "00 80 00 00 00");
  get("KetraObjectSgetAuthorityKeyId", "30 00");
  EXPECT_EQ(key.keyIdentifier.option + key.authorityCertIssuer.option + key.authorityCertSerialNumber.option, 0);
  EXPECT_EQ(key.authorityCertIssuer.genNames, s.preparedChains.issuer.first());

  KetraPolicyInformation &policy = s.preparedChains.policies[0];
  get("KetraObjectSgetCertPolicies", Chains::kPolicies);
  EXPECT_TRUE(policy.next == &s.preparedChains.policies[1] && policy.policyQualifiers.option == 1);
  EXPECT_EQ(textOf(policy.policyIdentifier) + " " + textOf(s.preparedChains.qualifiers[1].policyQualifierId),
            "1.2.3.1 1.2.3.4");
  const AsnEncodedDataOpt &qualifier = s.preparedChains.qualifiers[0].qualifier;
  const AsnEncodedData &stored = s.extensions.find(X509Objid_CertPolicies)->value;
  EXPECT_TRUE(qualifier.value.octets > stored.octets && qualifier.value.octets < stored.octets + stored.length);
  EXPECT_EQ(s.preparedChains.qualifiers[1].qualifier.option, 0);
  EXPECT_EQ(s.preparedChains.qualifiers[1].qualifier.value.octets, nullptr);
  ASSERT_EQ(refusal(KetraObjectSgetCertPolicies, s.extensions, 1u, &policy), "");
  EXPECT_TRUE(policy.policyQualifiers.option == 0 && policy.policyQualifiers.policyQualifiers != nullptr);
  EXPECT_EQ(textOf(policy.policyIdentifier), "1.2.3.2");

  KetraDistributionPoint *points = s.prepared.points;
  points[1].reasons.value = {kOnes, 77};
  get("KetraObjectSgetCRLDistributionPoints", Structures::pointsDer().c_str());
  EXPECT_TRUE(points[0].reasons.value.bits == 7 && points[0].reasons.value.octets[0] == 0x06);
  EXPECT_EQ(points[1].reasons.option + points[1].cRLIssuer.option, 0);
  EXPECT_TRUE(points[1].reasons.value.octets == kOnes && points[1].reasons.value.bits == 77);
  EXPECT_EQ(textOf(s.prepared.attributes[1].type) + ": " + toHex(s.prepared.attributes[1].value), "2.5.4.10: 13 01 42");
  EXPECT_EQ(AsnMemObjectFree(s.extensions.pool(), s.prepared.attributes[1].type.arcs, nullptr), 0) << "in the pool";

  KetraIssuingDistributionPoint &issuing = s.prepared.issuing;
  get("KetraObjectSgetIssuingDistributionPoint", Structures::issuingDer().c_str());
  EXPECT_TRUE(issuing.onlyContainsCACerts.option == 1 && issuing.onlyContainsCACerts.value == 0) << "a FALSE";
  issuing.onlySomeReasons.value = {kOnes, 77};
  issuing.distributionPoint.value.type = 9;
  get("KetraObjectSgetIssuingDistributionPoint", "30 00");
  EXPECT_EQ(issuing.distributionPoint.option + issuing.onlySomeReasons.option + issuing.indirectCRL.option, 0);
  EXPECT_TRUE(issuing.onlySomeReasons.value.bits == 77 && issuing.distributionPoint.value.type == 9);

  get("KetraObjectSgetNameConstraints", "30 0D A1 0B 30 09 82 01 61 80 01 FF 81 01 FB");
  EXPECT_TRUE(s.preparedConstraints.permittedSubtrees.option == 0 &&
              s.preparedConstraints.excludedSubtrees.option == 1);
  EXPECT_TRUE(s.prepared.subtrees[0].minimum.value == -1 && s.prepared.subtrees[0].maximum.value == -5);
}

TEST(Structures, Nulls) {
  const Extensions extensions;
  const Pool pool;
  const Work list(schema::record(schema::Entry::GeneralNames));
  int32_t choice = 0;
  uint32_t count = 0;
  // Chains and handles have codes of their own.
  const std::pair<std::string, const char *> own[] = {
      {refusal(KetraObjectSsetExtKeyUsage, extensions, 1, nullptr), "01467089 KetraObjectSsetExtKeyUsage: Count = 0"},
      {refusal(KetraObjectSsetPolicyMappings, extensions, nullptr), "01466085"},
      {refusal(KetraObjectSsetCRLDistributionPoints, extensions, 1, nullptr),
       "014FC187 X509MUtilCheckCRLDistributionPoints: Count = 0"},
      {refusal(KetraObjectSsetSubjectDirectoryAttributes, extensions, nullptr),
       "0146617C KetraObjectSsetSubjectDirectoryAttributes: Not Exist SubjectDirectoryAttributes"},
      {refusal(KetraObjectSgetSubjectDirectoryAttributes, extensions, nullptr), "0146F204"},  // looked up before
      {refusal(KetraObjectSgetSubjectDirectoryAttributes, Stage("").extensions, nullptr),
       "0146CA02 KetraObjectSgetSubjectDirectoryAttributes: None Param"},
      {refusal(X509MUtilSetGenNamesDER, list.object, list.value, "", nullptr),
       "0147F382 x509MUtilSetGenNames: Count of SetOf = 0"},
      {refusal(X509MUtilSgetGenNameObjectBER, pool, list.object, list.value, "1", nullptr), "0147F202"},
      {refusal(X509MUtilSetGenSubtrees, list.object, list.value, "", nullptr),
       "014FB186 X509MUtilSetGenSubtrees: GenSubtree"},
  };
  for (const auto &[said, expected] : own) EXPECT_EQ(said.substr(0, std::strlen(expected)), expected);

  EXPECT_EQ(KetraObjectSgetKeyUsageCritical(extensions, nullptr, nullptr), -1) << "an error block is not needed";
  const GenName name;
  X509GenNameParam param{};
  AsnEncodedData encoding{};
  const uint32_t codes[] = {
      codeOf(KetraObjectSsetBasicConstraints, extensions, 1, nullptr),
      codeOf(KetraObjectSsetCRLNumber, extensions, nullptr),
      codeOf(KetraObjectSgetSubjectAltName, extensions, nullptr),
      codeOf(KetraObjectSgetSubjectAltNameCalGenName, extensions, nullptr),
      codeOf(KetraObjectSgetCRLDistributionPointsCalDistributionPoint, extensions, nullptr),
      codeOf(KetraObjectSgetCRLDistributionPointsCalDistributionPointName, extensions, 0u, nullptr, &count),
      codeOf(KetraObjectSgetCRLDistributionPointsCalCRLIssuer, extensions, 0u, nullptr),
      codeOf(KetraObjectSsetIssuingDistributionPoint, extensions, nullptr),
      codeOf(KetraObjectSgetIssuingDistributionPoint, extensions, nullptr),
      codeOf(KetraObjectSgetIssuingDistributionPointCalDistributionPointName, extensions, &choice, nullptr),
      codeOf(X509MUtilSetDistributionPointName, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilSgetDistributionPointName, nullptr, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilSgetDistributionPointNameOpt, nullptr, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilCalDistributionPointName, nullptr, nullptr, "", &choice, &count),
      codeOf(X509MUtilCheckDistributionPointName, nullptr),
      codeOf(X509MUtilCheckDistributionPointNameOpt, nullptr),
      codeOf(KetraObjectSsetNameConstraints, extensions, 1, nullptr),
      codeOf(KetraObjectSgetNameConstraintsCalGenSubtree, extensions, &count, nullptr),
      codeOf(X509MUtilSetGenSubtrees, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilSgetGenSubtrees, nullptr, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilSgetGenSubtreesOpt, nullptr, nullptr, nullptr, "", nullptr),
      codeOf(X509MUtilCheckGenSubtreesOpt, nullptr),
      codeOf(X509GenNameObjectCreate, nullptr),
      codeOf(X509GenNameObjectSetName, nullptr, &param),
      codeOf(X509GenNameObjectSetName, name, nullptr),
      codeOf(X509GenNameObjectGetName, name, nullptr),
      codeOf(X509GenNameObjectSetPduDER, nullptr, &encoding),
      codeOf(X509GenNameObjectSetPduBER, name, nullptr),
      codeOf(X509GenNameObjectGetPduDER, name, nullptr),
      codeOf(X509GenNameObjectGetPduBER, nullptr, &encoding),
      codeOf(X509GenNameObjectCopy, name, nullptr),
      codeOf(X509MUtilCopyGenNameObject, nullptr, nullptr),
  };
  for (const uint32_t &code : codes) EXPECT_EQ(code, uint32_t{KetraError_NullParameter}) << &code - codes;
}

}  // namespace
}  // namespace ketra::test
