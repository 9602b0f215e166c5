// Chains that ketra_chains.h reads and makes, as a C++17 program uses it.
#include "ketra/ketra_chains.h"

#include <cstring>
#include <functional>

#include "support/structures.h"
#ifndef KETRA_SANITIZED  // a sanitizer brings its own malloc
#include "library/system_requests.h"
#endif

namespace ketra::test {
namespace {

// An owner and an Extensions object with an extension, unless its value is "absent".
struct Stage {
  Stage() = default;
  Stage(const Objid &objid, const std::string &value) {
    if (value != "absent") extensions.store(objid, fromHex(value));
  }
  ~Stage() { KetraChainsFree(&chains); }

  KetraChains chains{};
  Extensions extensions;
  const Structures structures{Structures::Content::Samples};  // to be set
};

// Reads an extension, deletes it, on which nothing depends any more, and sets it anew.
template <class T>
struct Rewrite {
  const Objid &objid;
  int32_t (*read)(KetraChains *, KetraObject, T *, AsnErrorBlock *);
  int32_t (*set)(KetraObject, T *, AsnErrorBlock *);

  int32_t operator()(Stage &stage, AsnErrorBlock *err) const {
    T value, untouched;
    std::memset(&value, 0, sizeof value);
    std::memset(&untouched, 0, sizeof untouched);
    const uint64_t before = usage(stage.extensions.pool()).first;
    const int32_t result = read(&stage.chains, stage.extensions, &value, err);
    EXPECT_EQ(usage(stage.extensions.pool()).first, before) << "the read leaves something in the pool of the object";
    if (result != 0) {
      EXPECT_EQ(std::memcmp(&value, &untouched, sizeof value), 0) << "a failure writes nothing";
      return result;
    }
    return KetraObjectDeleteExt(stage.extensions, &objid, err) == 0 ? set(stage.extensions, &value, err) : -1;
  }
};

struct Kind {
  Objid objid;
  std::function<int32_t(Stage &, AsnErrorBlock *)> rewrite;
};

template <class T, class Set>
Kind kind(const Objid &objid, int32_t (*read)(KetraChains *, KetraObject, T *, AsnErrorBlock *), Set set) {
  return {objid, Rewrite<T>{objid, read, set}};
}

const Kind &kindOf(const std::string &name) {
  static const std::map<std::string, Kind> kinds = {
      {"subjectAltName",
       kind(X509Objid_SubjectAltName, KetraChainsReadSubjectAltName,
            [](auto object, auto names, auto err) { return KetraObjectSsetSubjectAltName(object, 0, names, err); })},
      {"issuerAltName",
       kind(X509Objid_IssuerAltName, KetraChainsReadIssuerAltName,
            [](auto object, auto names, auto err) { return KetraObjectSsetIssuerAltName(object, 0, names, err); })},
      {"certificateIssuer",
       kind(X509Objid_CertIssuer, KetraChainsReadCertIssuer,
            [](auto object, auto names, auto err) { return KetraObjectSsetCertIssuer(object, names, err); })},
      {"cRLDistributionPoints", kind(X509Objid_CRLDistributionPoints, KetraChainsReadCRLDistributionPoints,
                                     [](auto object, auto points, auto err) {
                                       return KetraObjectSsetCRLDistributionPoints(object, 0, *points, err);
                                     })},
      {"issuingDistributionPoint", kind(X509Objid_IssuingDistributionPoint, KetraChainsReadIssuingDistributionPoint,
                                        [](auto object, auto point, auto err) {
                                          return KetraObjectSsetIssuingDistributionPoint(object, point, err);
                                        })},
      {"nameConstraints", kind(X509Objid_NameConstraints, KetraChainsReadNameConstraints,
                               [](auto object, auto constraints, auto err) {
                                 return KetraObjectSsetNameConstraints(object, 0, constraints, err);
                               })},
      {"authorityKeyIdentifier",
       kind(X509Objid_AuthorityKeyId, KetraChainsReadAuthorityKeyId,
            [](auto object, auto keyId, auto err) { return KetraObjectSsetAuthorityKeyId(object, keyId, err); })},
      {"certificatePolicies", kind(X509Objid_CertPolicies, KetraChainsReadCertPolicies,
                                   [](auto object, auto policies, auto err) {
                                     return KetraObjectSsetCertPolicies(object, 0, policies, err);
                                   })},
      {"policyMappings", kind(X509Objid_PolicyMappings, KetraChainsReadPolicyMappings,
                              [](auto object, auto mappings, auto err) {
                                return KetraObjectSsetPolicyMappings(object, *mappings, err);
                              })},
      {"extKeyUsage", kind(X509Objid_ExtKeyUsage, KetraChainsReadExtKeyUsage,
                           [](auto object, auto purposes, auto err) {
                             return KetraObjectSsetExtKeyUsage(object, 0, *purposes, err);
                           })},
  };
  return kinds.at(name);
}

// What the samples of tests/support are encoded as.
constexpr char kPoints[] =
    "30 35 30 19 A0 0B A0 09 82 01 61 87 04 C0 00 02 01 81 02 01 06 A2 06 87 04 C0 00 02 01 30 18 A0 16 A1 14 30 08 06 "
    "03 55 04 03 13 01 41 30 08 06 03 55 04 0A 13 01 42";
constexpr char kBothSubtrees[] =
    "30 2A A0 13 30 09 82 01 61 80 01 00 81 01 05 30 06 87 04 C0 00 02 01 A1 13 30 09 82 01 61 80 01 00 81 01 05 30 06 "
    "87 04 C0 00 02 01";
constexpr char kPermittedSubtrees[] = "30 15 A0 13 30 09 82 01 61 80 01 00 81 01 05 30 06 87 04 C0 00 02 01";
constexpr char kExcludedSubtrees[] = "30 15 A1 13 30 09 82 01 61 80 01 00 81 01 05 30 06 87 04 C0 00 02 01";

// A stored value, and what it is after it was read and set: "" the same, otherwise octets, or how the innermost entry
// of the error begins.
struct Row {
  const char *kind;
  std::string value;
  std::string result = "";
};

const Row kRows[] = {
    {"subjectAltName", "30 0C 82 01 61 87 04 C0 00 02 01 88 01 2A"},
    {"subjectAltName", "30 80 82 01 61 00 00", "30 03 82 01 61"},
    {"subjectAltName", "absent", "0146F204"},
    {"subjectAltName", "30 00", "0147F682 X509MUtilCheckGenNames"},
    {"subjectAltName", "30 05 82 01 61 88 00", "0210002A"},
    {"issuerAltName", "30 03 82 01 61"},
    {"certificateIssuer", "30 03 82 01 61"},
    {"cRLDistributionPoints", golden("cRLDistributionPoints/two")},
    {"cRLDistributionPoints", "30 02 30 00"},
    {"cRLDistributionPoints", "30 0E 30 05 A2 03 82 01 61 30 05 A2 03 82 01 62"},
    {"cRLDistributionPoints", "30 80 30 80 A0 80 A0 80 82 01 61 00 00 00 00 00 00 00 00",
     "30 09 30 07 A0 05 A0 03 82 01 61"},
    {"cRLDistributionPoints", "absent", "0146F204"},
    {"cRLDistributionPoints", "30 00", "0146D787"},
    {"cRLDistributionPoints", "30 06 30 04 A0 02 A0 00", "0147F682 X509MUtilCheckGenNames"},
    {"cRLDistributionPoints", "30 06 30 04 A0 02 A1 00", "014FD288"},
    {"cRLDistributionPoints", "30 04 30 02 A2 00", "0147F682 X509MUtilCheckGenNames"},
    {"cRLDistributionPoints", "30 0B 30 00 30 07 A0 05 A0 03 88 01", "02100020"},
    {"issuingDistributionPoint", golden("issuingDistributionPoint/all")},
    {"issuingDistributionPoint", "30 0A A0 05 A0 03 82 01 61 84 01 FF"},
    {"issuingDistributionPoint", "30 00"},
    {"nameConstraints", kBothSubtrees},
    {"nameConstraints", kExcludedSubtrees},
    {"nameConstraints", "30 00"},
    {"nameConstraints", "30 02 A0 00", "014FB286"},
    {"authorityKeyIdentifier", golden("authorityKeyIdentifier/all")},
    {"authorityKeyIdentifier", "30 04 80 02 AA BB"},
    {"authorityKeyIdentifier", "30 05 80 01 AA A1 00", "01468182"},
    {"certificatePolicies", golden("certificatePolicies/two")},
    {"certificatePolicies", "absent", "0146F204"},
    {"certificatePolicies", "30 00", "01463083 KetraObjectSsetCertPolicies"},
    {"certificatePolicies", "30 0A 30 08 06 06 2A 90 80 80 80 00", "02100017 AsnMUtilGetObjidConstBER"},
    {"policyMappings", golden("policyMappings/two")},
    {"policyMappings", "30 00", "0146C985"},
    {"extKeyUsage", "30 0A 06 03 2A 03 01 06 03 2A 03 02"},
    {"extKeyUsage", "30 00", "0146DF89"},
};

// Names and subtrees of parameters; the reads make nodes of the other kinds.
int32_t makeAndSet(Stage &stage, AsnErrorBlock *err) {
  static const uint8_t kHost[] = {'a'}, kAddress[] = {192, 0, 2, 1};
  X509GenNameParam names[2] = {};
  names[0].type = X509GenName_DNSName;
  names[0].dNSName = {kHost, sizeof kHost};
  names[1].type = X509GenName_IPAddress;
  names[1].iPAddress = {kAddress, sizeof kAddress};
  const Structures &structures = stage.structures;
  KetraDistributionPoint *points = nullptr;
  KetraNameConstraints constraints{};
  constraints.permittedSubtrees.option = 1;
  if (KetraChainsMakeDistributionPoints(&stage.chains, 2, &points, err) != 0) return -1;
  for (std::size_t i = 0; i < 2; ++i) {
    points[i].distributionPoint = structures.points[i].distributionPoint;
    points[i].reasons = structures.points[i].reasons;
  }
  points[0].cRLIssuer.option = 1;
  if (KetraChainsMakeNames(&stage.chains, names, 2, &points[0].distributionPoint.value.fullName, err) != 0 ||
      KetraChainsMakeNames(&stage.chains, names + 1, 1, &points[0].cRLIssuer.genNames, err) != 0 ||
      KetraChainsMakeSubtrees(&stage.chains, names, 2, &constraints.permittedSubtrees.genSubtrees, err) != 0) {
    return -1;
  }
  constraints.permittedSubtrees.genSubtrees[0].minimum = structures.subtrees[0].minimum;
  constraints.permittedSubtrees.genSubtrees[0].maximum = structures.subtrees[0].maximum;
  return KetraObjectSsetCRLDistributionPoints(stage.extensions, 0, points, err) != 0
             ? -1
             : KetraObjectSsetNameConstraints(stage.extensions, 0, &constraints, err);
}

bool isRefused(const Row &row) { return !row.result.empty() && row.result.compare(0, 2, "30") != 0; }

TEST(Chains, ReadAndSetAgain) {
  for (const Row &row : kRows) {
    SCOPED_TRACE(std::string(row.kind) + " " + row.value);
    const Kind &kind = kindOf(row.kind);
    Stage stage(kind.objid, row.value);
    Err err;
    const int32_t result = kind.rewrite(stage, err);
    EXPECT_EQ(result, isRefused(row) ? -1 : 0) << err.text();
    if (result != 0) {
      EXPECT_EQ(err.innermost().compare(0, row.result.size(), row.result), 0) << err.text();
    } else {
      EXPECT_EQ(stage.extensions.stored(kind.objid), toHex(fromHex(row.result.empty() ? row.value : row.result)));
    }
  }
}

TEST(Chains, MadeAndSet) {
  Stage stage;
  Err err;
  EXPECT_EQ(makeAndSet(stage, err), 0) << err.text();
  const Extensions &extensions = stage.extensions;
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), toHex(fromHex(kPoints)));
  EXPECT_EQ(extensions.stored(X509Objid_NameConstraints), toHex(fromHex(kPermittedSubtrees)));
}

// Calls `check` with what makes a stage and what is done in it: each row that succeeds, and the making of all kinds.
template <class Check>
void forEachSuccess(Check &&check) {
  for (const Row &row : kRows) {
    if (isRefused(row)) continue;
    SCOPED_TRACE(std::string(row.kind) + " " + row.value);
    const Kind &kind = kindOf(row.kind);
    check([&] { return std::make_unique<Stage>(kind.objid, row.value); }, kind.rewrite);
  }
  SCOPED_TRACE("made");
  check([] { return std::make_unique<Stage>(); }, makeAndSet);
}

// A bound of as many nodes as there are is enough; any below is not.
TEST(Chains, BoundOnNodes) {
  forEachSuccess([](auto make, auto run) {
    const auto free = make();
    ASSERT_EQ(run(*free, nullptr), 0);
    const uint32_t made = free->chains.made;
    for (uint32_t most = 1; most <= made; ++most) {
      const auto bounded = make();
      bounded->chains.most = most;
      Err err;
      EXPECT_EQ(run(*bounded, err), most < made ? -1 : 0) << most << " of " << made;
      EXPECT_EQ(err.code(), most < made ? static_cast<uint32_t>(AsnMemError_Limit) : 0u) << err.text();
      EXPECT_LE(bounded->chains.made, most);
    }
  });
}

TEST(Chains, FreedTwiceOrEmpty) {
  KetraChains chains{};
  chains.most = 3;
  KetraChainsFree(&chains);
  X509GenNameChain *names = nullptr;
  EXPECT_EQ(KetraChainsMakeNames(&chains, nullptr, 3, &names, nullptr), 0);
  // The objects that the nodes hold by then are destroyed, however the nodes are linked.
  EXPECT_EQ(X509MUtilCopyGenNameObject(&names[1].genName, GenName("dNSName"), nullptr), 0);
  names[0].next = nullptr;
  KetraChainsFree(&chains);
  KetraChainsFree(&chains);
  EXPECT_EQ(KetraChainsMakeNames(&chains, nullptr, 3, &names, nullptr), 0) << "nothing counts any more";
  KetraChainsFree(&chains);
  KetraChainsFree(nullptr);
}

TEST(Chains, Refused) {
  Stage stage;
  KetraKeyPurposeId *purposes = nullptr;
  const uint32_t null = KetraError_NullParameter;
  EXPECT_EQ(codeOf(KetraChainsReadExtKeyUsage, nullptr, stage.extensions, &purposes), null);
  EXPECT_EQ(codeOf(KetraChainsReadExtKeyUsage, &stage.chains, nullptr, &purposes), null);
  EXPECT_EQ(codeOf(KetraChainsReadExtKeyUsage, &stage.chains, stage.extensions, nullptr), null);
  EXPECT_EQ(codeOf(KetraChainsMakeKeyPurposes, nullptr, 1u, &purposes), null);
  EXPECT_EQ(codeOf(KetraChainsMakeKeyPurposes, &stage.chains, 1u, nullptr), null);
  EXPECT_EQ(codeOf(KetraChainsMakeKeyPurposes, &stage.chains, 0x20000000u, &purposes), AsnMemError_OutOfMemory)
      << "of 32 bits the size would lose its upper part";
  const X509GenNameParam wrong{};
  X509GenNameChain *names = nullptr;
  EXPECT_EQ(codeOf(KetraChainsMakeNames, &stage.chains, &wrong, 1u, &names), KetraError_SetNameType);
  EXPECT_EQ(names, nullptr);
}

#ifndef KETRA_SANITIZED
// Whichever request the system refuses, the failure is an ordinary one and nothing stays behind.
TEST(Chains, EachRequestMayBeRefused) {
  forEachSuccess([](auto make, auto run) {
    EXPECT_EQ(run(*make(), nullptr), 0) << "makes what stays to the end of the process";
    bool reached = true;
    for (int refused = 1; reached; ++refused) {
      SCOPED_TRACE("request " + std::to_string(refused));
      const std::size_t before = held.now;
      {
        const auto stage = make();
        Err err;
        requests = {0, refused, refused, 0};
        const int32_t result = run(*stage, err);
        reached = requests.made >= refused;
        requests.refuseFrom = 0;
        EXPECT_EQ(result, reached ? -1 : 0) << err.text();
        if (result != 0) {
          EXPECT_TRUE(err.code() == AsnError_OutOfMemory || err.code() == AsnMemError_OutOfMemory) << err.text();
        }
      }
      EXPECT_EQ(held.now, before);
    }
  });
}

// What a list costs grows with its length: it is not decoded for each of its members.
TEST(Chains, DecodedAFixedNumberOfTimes) {
  for (const Row &row : {Row{"cRLDistributionPoints", "30 82 07 D0 + 30 00*1000"},
                         Row{"certificatePolicies", "30 82 13 88 + 30 03 06 01 2A*1000"}}) {
    Stage stage(kindOf(row.kind).objid, row.value);
    requests = {0, 0, 0, 0};
    EXPECT_EQ(kindOf(row.kind).rewrite(stage, nullptr), 0);
    EXPECT_EQ(stage.chains.made, 1000u);
    EXPECT_LT(requests.made, 100) << "one decoding takes one or more";
  }
}
#endif

}  // namespace
}  // namespace ketra::test
