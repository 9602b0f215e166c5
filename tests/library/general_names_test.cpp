// Lists of GeneralNames, and the three extensions that are nothing but such a list.

#include <functional>

#include "schema/schema.h"
#include "support/names.h"

namespace ketra::test {
namespace {

const AsnType *const kList = schema::record(schema::Entry::GeneralNames);

TEST(GeneralNames, SetInChainOrder) {
  Names names({"dNSName", "iPAddress", "registeredID"});
  const auto set = [&](bool der) {
    Work work(kList);
    const auto function = der ? X509MUtilSetGenNamesDER : X509MUtilSetGenNamesBER;
    EXPECT_EQ(refusal(function, work.object, work.value, "", names.first()), "");
    return work.encode(der);
  };
  EXPECT_EQ(set(true), "30 0E 82 01 61 87 04 C0 00 02 01 88 03 88 37 03");

  // The BER form puts in what an object holds; the DER form has it encoded, and the object holds that from then on.
  ASSERT_EQ(names.at(0).setPdu(fromHex("82 81 01 61")), 0);
  names.node(0).next = nullptr;
  EXPECT_EQ(set(false), "30 04 82 81 01 61");
  EXPECT_EQ(set(true), "30 03 82 01 61");
  EXPECT_EQ(names.at(0).ber(), "82 01 61");
}

TEST(GeneralNames, RefusedChains) {
  Names empty({""});
  Names gap({"dNSName", "dNSName"});
  gap.node(1).genName = nullptr;
  struct Row {
    X509GenNameChain *chain;
    const char *set;
    const char *check;  // whether objects hold names is not looked at
  };
  const Row rows[] = {
      {nullptr, "0147F382 x509MUtilSetGenNames: Count of SetOf = 0", "0147F682 X509MUtilCheckGenNames: Count = 0"},
      {gap.first(), "0147F302 x509MUtilSetGenNames: None parameter", "0147F602 X509MUtilCheckGenNames: No Object"},
      {empty.first(), "01479103 X509GenNameObjectGetPduDER: None PDU and None Param", ""},
  };
  for (const Row &row : rows) {
    Work work(kList);
    const X509GenNamesOpt present{row.chain, 1};
    const X509GenNamesOpt absent{row.chain, 0};
    EXPECT_EQ(refusal(X509MUtilSetGenNamesDER, work.object, work.value, "", row.chain), row.set);
    EXPECT_EQ(refusal(X509MUtilCheckGenNames, row.chain), row.check);
    EXPECT_EQ(refusal(X509MUtilCheckGenNamesOpt, &present), row.check);
    EXPECT_EQ(refusal(X509MUtilCheckGenNamesOpt, &absent), "");
  }
  const X509GenNamesOpt odd{nullptr, 2};
  Err err;
  EXPECT_EQ(X509MUtilCheckGenNamesOpt(&odd, err), -1);
  EXPECT_EQ(err.code(), 0x0147F754u);
  EXPECT_TRUE(err.blames(odd));
}

TEST(GeneralNames, FillsObjectsInOrder) {
  const Pool pool;
  const Exact encoding(fromHex("30 07 82 01 61 82 81 01 62"));
  const Exact none(fromHex("30 00"));
  Work work(kList, encoding.data());
  Work nothing(kList, none.data());
  ASSERT_EQ(work.decode() + nothing.decode(), 0);
  Names three({"", "", ""});
  const auto get = [&](const Work &from, bool der, X509GenNameChain *chain) {
    const auto function = der ? X509MUtilSgetGenNamesDER : X509MUtilSgetGenNamesBER;
    return refusal(function, pool, from.object, from.value, "", chain);
  };
  ASSERT_EQ(get(work, false, three.first()), "");
  EXPECT_EQ(three.at(0).ber() + "; " + three.at(1).ber() + "; " + three.at(2).ber(), "82 01 61; 82 81 01 62; empty");
  EXPECT_EQ(usage(pool).second, 0u) << "passing buffers are freed";

  Names one({""});
  EXPECT_EQ(get(work, false, one.first()), "0147F499 x509MUtilSgetGenNames: Chain is too short ");
  EXPECT_EQ(one.at(0).ber(), "82 01 61");
  Names strict({"", ""});
  EXPECT_NE(get(work, true, strict.first()), "");
  EXPECT_EQ(strict.at(0).ber() + "; " + strict.at(1).ber(), "82 01 61; empty");
  EXPECT_EQ(get(nothing, false, nullptr), "");
}

TEST(GeneralNames, ReadsThatFindNothing) {
  const Pool pool;
  const GenName object;
  Names names({""});
  const Exact encoding(fromHex("30 00"));
  const Exact full(fromHex("30 03 82 01 61"));
  Work list(kList, encoding.data());
  Work identifier(schema::record(schema::Entry::AuthorityKeyIdentifier), encoding.data());
  Work one(kList, full.data());
  ASSERT_EQ(list.decode() + identifier.decode() + one.decode(), 0);
  EXPECT_EQ(codeOf(X509MUtilSgetGenNameObjectBER, pool, list.object, list.value, "1", nullptr), 0x0147F202u);
  EXPECT_EQ(refusal(X509MUtilSgetGenNameObjectBER, pool, list.object, list.value, "1", object),
            "0147F221 x509MUtilSgetGenNameObject: 1");
  EXPECT_EQ(refusal(X509MUtilSgetGenNamesBER, pool, identifier.object, identifier.value, "authorityCertIssuer",
                    names.first()),
            "0147F406 x509MUtilSgetGenNames: Call AsnGetElement");

  ASSERT_EQ(AsnMemObjectSetLimit(pool, 1, nullptr), 0);
  for (void *memory = nullptr; AsnMemObjectMalloc(pool, 8, &memory, nullptr) == 0;) continue;  // what is held already
  Err err;
  EXPECT_EQ(X509MUtilSgetGenNameObjectBER(pool, one.object, one.value, "1", object, err), -1);
  EXPECT_EQ(err.block.entries[1].valueOctets[0], 3) << "the length that was asked for";
}

TEST(GeneralNames, CopyObject) {
  GenName target("directoryName");
  {
    const GenName source("ediPartyName");
    ASSERT_EQ(X509MUtilCopyGenNameObject(target.handle(), source, nullptr), 0);
  }
  EXPECT_EQ(target.der(), sampleOf("ediPartyName"));
  ASSERT_EQ(X509MUtilCopyGenNameObject(target.handle(), target, nullptr), 0);
  EXPECT_EQ(target.der(), sampleOf("ediPartyName")) << "onto itself: without effect";
  ASSERT_EQ(X509MUtilCopyGenNameObject(target.handle(), nullptr, nullptr), 0);
  EXPECT_EQ(*target.handle(), nullptr);
  EXPECT_EQ(X509MUtilCopyGenNameObject(nullptr, nullptr, nullptr), -1);
}

TEST(GeneralNames, PathsOfKinds) {
  const char *path = nullptr;
  for (uint32_t type = 1; type <= 9; ++type) {
    ASSERT_EQ(X509MUtilGetPathOfGenName(type, &path, nullptr), 0);
    EXPECT_STREQ(path, type == 6 ? "EDIPartyName" : kKinds.at(type - 1));
  }
  for (const uint32_t type : {0u, 10u, 0xFFFFFFFFu}) {
    EXPECT_EQ(refusal(X509MUtilGetPathOfGenName, type, &path),
              "0147F544 X509MUtilGetPathOfGenName: type [" + std::to_string(static_cast<int32_t>(type)) + "]");
  }
}

// ---- The extensions ------------------------------------------------------------------------------------------------

struct Member {
  const Objid &objid;
  std::function<int32_t(KetraObject, int32_t, const X509GenNames *, AsnErrorBlock *)> set;
  int32_t (*get)(KetraObject, const X509GenNames *, AsnErrorBlock *);
  int32_t (*count)(KetraObject, uint32_t *, AsnErrorBlock *);
  bool alwaysCritical = false;
};

TEST(AlternativeNames, CriticalityAndRefusals) {
  const Member members[] = {
      {X509Objid_SubjectAltName, KetraObjectSsetSubjectAltName, KetraObjectSgetSubjectAltName,
       KetraObjectSgetSubjectAltNameCalGenName},
      {X509Objid_IssuerAltName, KetraObjectSsetIssuerAltName, KetraObjectSgetIssuerAltName,
       KetraObjectSgetIssuerAltNameCalGenName},
      {X509Objid_CertIssuer,
       [](auto object, int32_t, auto names, auto err) { return KetraObjectSsetCertIssuer(object, names, err); },
       KetraObjectSgetCertIssuer, KetraObjectSgetCertIssuerCalGenName, true},
  };
  for (const Member &member : members) {
    SCOPED_TRACE(member.objid.arcs[3]);
    Extensions extensions;
    Names two({"dNSName", ""});  // the second holds no name
    Names one({"dNSName"});
    const X509GenNames none{nullptr};
    const X509GenNames unset{two.first()};
    const X509GenNames value{one.first()};
    EXPECT_EQ(codeOf(member.set, extensions, 1, &none), 0x0147F682u);
    EXPECT_EQ(codeOf(member.set, extensions, 1, &unset), 0x01479103u);
    for (const int32_t critical : {0, 1, 2}) {
      ASSERT_EQ(codeOf(member.set, extensions, critical, &value), 0u);
      EXPECT_EQ(extensions.find(member.objid)->critical == 1, member.alwaysCritical || critical == 1);
    }
    uint32_t count = 7;
    extensions.store(member.objid, fromHex("30 09 82 01 61 82 01 62 82 01 63"));
    EXPECT_EQ(codeOf(member.count, extensions, &count), 0u);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(codeOf(member.get, extensions, &unset), 0x0147F499u);
    EXPECT_EQ(two.at(1).der(), "82 01 62");
    extensions.store(member.objid, fromHex("30 00"));
    EXPECT_EQ(codeOf(member.count, extensions, &count), 0u);
    EXPECT_EQ(count, 0u);
    const Extensions absent;
    EXPECT_EQ(refusal(member.get, absent, &value), "0146F204 ketraObjectSgetValueByObjid: None extension");
    EXPECT_EQ(refusal(member.count, absent, &count), "0146F204 ketraObjectSgetValueByObjid: None extension");
    EXPECT_EQ(codeOf(member.get, extensions, nullptr), 0x01460F02u);
    EXPECT_EQ(codeOf(member.count, extensions, nullptr), 0x01460F02u);
  }
}

}  // namespace
}  // namespace ketra::test
