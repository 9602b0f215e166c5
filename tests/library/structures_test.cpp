// What sets make of callers' structures, and gets of values and of the chains that are prepared for them.

#include <cstring>
#include <deque>
#include <sstream>

#include "ketra/ketra_errors.h"
#include "library/outside_operations.h"

namespace ketra::test {
namespace {

// The text up to a character, and what follows it.
std::pair<std::string, std::string> parted(const std::string &text, char at) {
  const std::size_t place = std::min(text.find(at), text.size());
  return {text.substr(0, place), text.substr(std::min(place + 1, text.size()))};
}

// ---- Members of a stage by their names, as tests/data/structures.tsv writes them ------------------------------------

// In a stage and in the structures that it has.
// clang-format off
#define MEMBERS(_) \
  _(samples) _(prepared) _(param) _(basicConstraints) _(bits) _(octets) _(name) _(policyConstraints) _(period) \
  _(objid) _(time) _(integer) _(number) _(attributes) _(points) _(issuing) _(subtrees) _(qualifiers) _(policies) \
  _(head) _(mappings) _(purposes) _(keyId) _(names) _(subtreesOpt) _(constraints) _(value) _(option) _(length) \
  _(arcs) _(count) _(next) _(type) _(form) _(reserved) _(high) _(choice) _(base) _(fullName) _(partyName) \
  _(nameRelativeToCRLIssuer) _(nameAssigner) _(ediPartyName) _(directoryName) _(cA) _(pathLenConstraint) \
  _(requireExplicitPolicy) _(inhibitPolicyMapping) _(notBefore) _(notAfter) _(distributionPoint) _(reasons) \
  _(cRLIssuer) _(genNames) _(onlyContainsUserCerts) _(onlyContainsCACerts) _(onlySomeReasons) _(indirectCRL) \
  _(minimum) _(maximum) _(policyQualifierId) _(qualifier) _(policyIdentifier) _(policyQualifiers) \
  _(subjectDomainPolicy) _(keyIdentifier) _(authorityCertIssuer) _(authorityCertSerialNumber) _(permittedSubtrees) \
  _(excludedSubtrees) _(genSubtrees)
// clang-format on

class Members {
 public:
  explicit Members(Stage &stage) {
    add("", stage);
    add(".name[1]", stage.samples.fullName.node(1).genName);
    add(".next[0]", stage.prepared.fullName.node(0).next);
    add(".unfilled", stage.prepared.fullName.at(0).handle);
  }

  void set(const std::string &name, const std::string &text) {
    const Member &member = members_.at("." + name);
    if (member.isPointer) {
      *static_cast<const void **>(member.at) = pointerOf(text);
    } else {
      *static_cast<int32_t *>(member.at) = static_cast<int32_t>(std::stoll(text));
    }
  }
  void expect(const std::string &name, const std::string &text) {
    const Member &member = members_.at("." + name);
    if (!member.isPointer) {
      EXPECT_EQ(*static_cast<const int32_t *>(member.at), std::stoll(text)) << name;
    } else if (text == "null" || text[0] == '&') {
      EXPECT_EQ(*static_cast<void *const *>(member.at), pointerOf(text)) << name;
    } else {
      EXPECT_EQ(toHex(*static_cast<const uint8_t *const *>(member.at), octetsOf(text).size()), toHex(octetsOf(text)))
          << name;
    }
  }
  void expectBlamed(const std::string &name, const AsnErrorBlock &err) const {
    EXPECT_EQ(err.entries[0].value, members_.at("." + name).at);
    EXPECT_EQ(err.entries[0].valueLength, members_.at("." + name).size);
  }

 private:
  struct Member {
    void *at;
    std::size_t size;
    bool isPointer;
  };

  template <class T>
  void add(const std::string &name, T &member) {
    members_[name] = {const_cast<std::remove_const_t<T> *>(&member), sizeOf(member), std::is_pointer_v<T>};
    if constexpr (std::is_array_v<T>) {
      for (std::size_t i = 0; i < std::size(member); ++i) add(name + "[" + std::to_string(i) + "]", member[i]);
    }
#define ADD(each) \
  if constexpr (requires { member.each; }) add(name + "." #each, member.each);
    MEMBERS(ADD)
#undef ADD
  }

  // As far as the last field goes: what follows is padding.
  template <class T>
  static std::size_t sizeOf(const T &member) {
    const void *end = &member + 1;
    if constexpr (requires { member.authorityCertSerialNumber.option; }) {
      end = &member.authorityCertSerialNumber.option + 1;
    } else if constexpr (requires { member.option; }) {
      end = &member.option + 1;
    }
    return static_cast<std::size_t>(static_cast<const char *>(end) - reinterpret_cast<const char *>(&member));
  }

  static Octets octetsOf(const std::string &text) {
    if (text.find('.') == std::string::npos) return fromHex(text);
    Octets octets;
    for (std::string arcs = text; !arcs.empty(); arcs = parted(arcs, '.').second) {
      const auto arc = static_cast<uint32_t>(std::stoul(arcs));
      octets.resize(octets.size() + sizeof arc);
      std::memcpy(&octets[octets.size() - sizeof arc], &arc, sizeof arc);
    }
    return octets;
  }
  const void *pointerOf(const std::string &text) {
    if (text == "null") return nullptr;
    if (text[0] != '&') return kept_.emplace_back(octetsOf(text)).data();
    const Member &other = members_.at("." + text.substr(1));
    return other.isPointer ? *static_cast<void **>(other.at) : other.at;
  }

  std::map<std::string, Member> members_;
  std::deque<Octets> kept_;
};

// Gives a stage what the row says, and runs the operation.
Err run(const Row &row, const Operation &operation, Stage &stage, Members &members, std::string *before) {
  EXPECT_EQ(operation.prepare(stage, nullptr), 0);
  stage.number = 99;
  std::istringstream given(row.column(1));
  for (std::string each; given >> each;) {
    const auto [what, text] = parted(each, '=');
    if (each == "stored=absent") {
      EXPECT_EQ(KetraObjectDeleteExt(stage.extensions, operation.objid, nullptr), 0);
    } else if (what == "stored") {
      stage.extensions.store(*operation.objid, fromHex(text));
    } else {
      members.set(what, text);
    }
  }
  *before = stage.extensions.pdu();
  return called(operation.run, stage);
}

void expectRow(const Row &row) {
  const auto [name, input] = parted(row.at(0), ' ');
  const Operation &operation = operations().at(name);
  Stage stage(input);
  Members members(stage);
  std::string before;
  const Err err = run(row, operation, stage, members, &before);
  {
    Stage other(input);
    Members ofOther(other);
    std::string ignored;
    EXPECT_EQ(run(row, operation, other, ofOther, &ignored).text(), err.text()) << "no address is printed";
  }
  std::string said = err.block.count == 0 ? "" : err.innermost();
  if (said.find(name + ": ") == 9) said.erase(9, name.size() + 2);
  EXPECT_EQ(said.substr(0, row.column(2).size()), row.column(2));
  EXPECT_EQ(said.empty(), row.column(2).empty()) << said;
  if (!said.empty()) {
    EXPECT_EQ(stage.extensions.pdu(), before);
    EXPECT_TRUE(stage.holdsOldNameOrNone());
  }
  std::istringstream expected(row.column(3));
  for (std::string each; expected >> each;) {
    const auto [what, text] = parted(each, '=');
    if (what == "blamed") {
      members.expectBlamed(text, err.block);
    } else if (what == "der") {
      EXPECT_EQ(stage.object.der(), toHex(fromHex(text)));
    } else if (what == "stored") {
      EXPECT_EQ(stage.extensions.stored(*operation.objid), toHex(fromHex(text)));
    } else if (what == "critical") {
      const KetraExtension *const extension = stage.extensions.find(*operation.objid);
      EXPECT_EQ(std::pair(extension->critical, extension->criticalOption), std::pair(std::stoi(text), std::stoi(text)));
    } else {
      members.expect(what, text);
    }
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

TEST(Structures, SetsAndGets) {
  for (const Row &row : rowsOf("data/structures.tsv")) {
    SCOPED_TRACE(row.place + " " + row.at(0));
    expectRow(row);
  }
}

// From a view of the object itself, in part and as another kind.
TEST(Structures, NamesOfThemselves) {
  const std::tuple<const char *, void (*)(X509GenNameParam &), const char *> rows[] = {
      {"rfc822Name",
       [](auto &p) {
         p.dNSName = {p.rfc822Name.octets + 2, 1}, p.type = X509GenName_DNSName;
       },
       "82 01 61"},
      {"ediPartyName", [](auto &p) { p.ediPartyName.nameAssigner.option = 0; }, "A5 05 A1 03 13 01 59"},
      {"ediPartyName",
       [](auto &p) {
         p.dNSName = {p.ediPartyName.partyName.octets, 1}, p.type = X509GenName_DNSName;
       },
       "82 01 59"},
      {"otherName",
       [](auto &p) {
         p.registeredID = {p.otherName.type.arcs, 2}, p.type = X509GenName_RegisteredID;
       },
       "88 01 2B"},
  };
  for (const auto &[kind, change, expected] : rows) {
    const GenName object(kind);
    X509GenNameParam param = object.param();
    change(param);
    EXPECT_EQ(refusal(X509GenNameObjectSetName, object, &param), "");
    EXPECT_EQ(object.der(), expected);
  }
}

// A set leaves nothing in the pool besides what it stores.
TEST(Structures, SetsReturnTheirEncodings) {
  for (const auto &[name, operation] : operations()) {
    if (!name.starts_with("KetraObjectSset")) continue;
    Stage stage;
    ASSERT_EQ(refusal(operation.run, stage), "") << name;
    const auto once = usage(stage.extensions.pool());
    ASSERT_EQ(refusal(operation.run, stage), "");
    EXPECT_EQ(usage(stage.extensions.pool()), once) << name;
  }
}

// Octets of the stored encoding, and arcs in the pool.
TEST(Structures, WhereResultsLie) {
  Stage s;
  EXPECT_EQ(refusal(KetraObjectSgetCertPolicies, s.extensions, 0u, s.prepared.policies), "");
  const AsnEncodedData &stored = s.extensions.find(X509Objid_CertPolicies)->value;
  const uint8_t *const qualifier = s.prepared.qualifiers[0].qualifier.value.octets;
  EXPECT_TRUE(qualifier > stored.octets && qualifier < stored.octets + stored.length);
  EXPECT_EQ(AsnMemObjectFree(s.extensions.pool(), s.prepared.policies[0].policyIdentifier.arcs, nullptr), 0);
  EXPECT_EQ(refusal(KetraObjectSgetCertPolicies, s.extensions, 1u, s.prepared.policies), "");
  EXPECT_EQ(textOf(s.prepared.policies[0].policyIdentifier), "1.2.3.2");
  EXPECT_EQ(refusal(KetraObjectSgetCRLDistributionPoints, s.extensions, s.prepared.points), "");
  EXPECT_EQ(AsnMemObjectFree(s.extensions.pool(), s.prepared.attributes[1].type.arcs, nullptr), 0);
}

TEST(Structures, Nulls) {
  const Extensions extensions;
  refuseNulls(
      KetraError_NullParameter, KetraObject{extensions}, KetraObjectSsetBasicConstraints, KetraObjectSsetCRLNumber,
      KetraObjectSgetSubjectAltName, KetraObjectSgetSubjectAltNameCalGenName,
      KetraObjectSgetCRLDistributionPointsCalDistributionPoint,
      KetraObjectSgetCRLDistributionPointsCalDistributionPointName, KetraObjectSgetCRLDistributionPointsCalCRLIssuer,
      KetraObjectSsetIssuingDistributionPoint, KetraObjectSgetIssuingDistributionPoint,
      KetraObjectSgetIssuingDistributionPointCalDistributionPointName, X509MUtilSetDistributionPointName,
      X509MUtilSgetDistributionPointName, X509MUtilSgetDistributionPointNameOpt, X509MUtilCalDistributionPointName,
      X509MUtilCheckDistributionPointName, X509MUtilCheckDistributionPointNameOpt, KetraObjectSsetNameConstraints,
      KetraObjectSgetNameConstraintsCalGenSubtree, X509MUtilSetGenSubtrees, X509MUtilSgetGenSubtrees,
      X509MUtilSgetGenSubtreesOpt, X509MUtilCheckGenSubtreesOpt, X509GenNameObjectCreate, X509MUtilCopyGenNameObject);
  const GenName name;
  for (const X509GenNameObject object : {X509GenNameObject{name}, X509GenNameObject{}}) {
    refuseNulls(KetraError_NullParameter, object, X509GenNameObjectSetName, X509GenNameObjectGetName,
                X509GenNameObjectSetPduDER, X509GenNameObjectSetPduBER, X509GenNameObjectGetPduDER,
                X509GenNameObjectGetPduBER);
  }
  EXPECT_EQ(KetraObjectSgetKeyUsageCritical(extensions, nullptr, nullptr), -1) << "no error block either";
  int32_t choice = 0;
  uint32_t count = 0;
  for (const uint32_t code :
       {codeOf(X509GenNameObjectCopy, name, nullptr), codeOf(X509GenNameObjectCopy, nullptr, name),
        codeOf(KetraObjectSgetCRLDistributionPointsCalDistributionPointName, extensions, 0u, nullptr, &count),
        codeOf(KetraObjectSgetIssuingDistributionPointCalDistributionPointName, extensions, &choice, nullptr),
        codeOf(KetraObjectSgetNameConstraintsCalGenSubtree, extensions, &count, nullptr),
        codeOf(X509MUtilCalDistributionPointName, nullptr, nullptr, "", &choice, &count)}) {
    EXPECT_EQ(code, uint32_t{KetraError_NullParameter});
  }
  // Chains and handles have codes of their own.
  const Pool pool;
  const Work list(schema::record(schema::Entry::GeneralNames));
  const std::pair<std::string, const char *> own[] = {
      {refusal(KetraObjectSsetExtKeyUsage, extensions, 1, nullptr), "01467089 KetraObjectSsetExtKeyUsage: Count = 0"},
      {refusal(KetraObjectSsetPolicyMappings, extensions, nullptr), "01466085"},
      {refusal(KetraObjectSsetCRLDistributionPoints, extensions, 1, nullptr),
       "014FC187 X509MUtilCheckCRLDistributionPoints: Count = 0"},
      {refusal(KetraObjectSsetSubjectDirectoryAttributes, extensions, nullptr),
       "0146617C KetraObjectSsetSubjectDirectoryAttributes: Not Exist SubjectDirectoryAttributes"},
      {refusal(KetraObjectSgetSubjectDirectoryAttributes, extensions, nullptr), "0146F204"},  // looked up before
      {refusal(KetraObjectSgetSubjectDirectoryAttributes, Stage().extensions, nullptr),
       "0146CA02 KetraObjectSgetSubjectDirectoryAttributes: None Param"},
      {refusal(X509MUtilSetGenNamesDER, list.object, list.value, "", nullptr),
       "0147F382 x509MUtilSetGenNames: Count of SetOf = 0"},
      {refusal(X509MUtilSgetGenNameObjectBER, pool, list.object, list.value, "1", nullptr), "0147F202"},
      {refusal(X509MUtilSetGenSubtrees, list.object, list.value, "", nullptr),
       "014FB186 X509MUtilSetGenSubtrees: GenSubtree"},
  };
  for (const auto &[said, expected] : own) EXPECT_EQ(said.substr(0, std::strlen(expected)), expected);
}

}  // namespace
}  // namespace ketra::test
