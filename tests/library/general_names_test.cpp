// Lists of GeneralNames, and the three extensions that are nothing but such a list.

#include <functional>

#include "schema/schema.h"
#include "support/names.h"

namespace ketra::test {
namespace {

const AsnType *const kList = schema::record(schema::Entry::GeneralNames);

TEST(GeneralNames, SetInChainOrder) {
  Names names({"dNSName", "iPAddress", "registeredID"});
  Work work(kList);
  ASSERT_EQ(X509MUtilSetGenNamesDER(work.object, work.value, "", names.first(), nullptr), 0);
  EXPECT_EQ(work.encode(), "30 0E 82 01 61 87 04 C0 00 02 01 88 03 88 37 03");

  // The BER form puts in what an object holds; the DER form has it encoded, and the object holds that from then on.
  ASSERT_EQ(names.at(0).setPdu(fromHex("82 81 01 61")), 0);
  names.node(0).next = nullptr;
  Work ber(kList);
  ASSERT_EQ(X509MUtilSetGenNamesBER(ber.object, ber.value, "", names.first(), nullptr), 0);
  EXPECT_EQ(ber.encode(false), "30 04 82 81 01 61");
  Work der(kList);
  ASSERT_EQ(X509MUtilSetGenNamesDER(der.object, der.value, "", names.first(), nullptr), 0);
  EXPECT_EQ(der.encode(), "30 03 82 01 61");
  EXPECT_EQ(names.at(0).ber(), "82 01 61");
}

TEST(GeneralNames, RefusedChains) {
  Names empty({""});
  Names gap({"dNSName", "dNSName"});
  gap.node(1).genName = nullptr;
  struct Row {
    const X509GenNameChain *chain;
    uint32_t code;
    std::vector<std::string> trace;
  };
  const Row set[] = {
      {nullptr, 0x0147F382, {"x509MUtilSetGenNames: Count of SetOf = 0"}},
      {gap.first(), 0x0147F302, {"x509MUtilSetGenNames: None parameter"}},
      {empty.first(),
       0x01479103,
       {"X509GenNameObjectGetPduDER: None PDU and None Param",
        "x509MUtilSetGenNames: Call X509GenNameObjectGetPduXER"}},
  };
  for (const Row &row : set) {
    Work work(kList);
    Err err;
    EXPECT_EQ(X509MUtilSetGenNamesDER(work.object, work.value, "", row.chain, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace(), row.trace);
  }
  const Row check[] = {
      {nullptr, 0x0147F682, {"X509MUtilCheckGenNames: Count = 0"}},
      {gap.first(), 0x0147F602, {"X509MUtilCheckGenNames: No Object"}},
  };
  for (const Row &row : check) {
    Err err;
    EXPECT_EQ(X509MUtilCheckGenNames(row.chain, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace(), row.trace);
    Err optional;
    const X509GenNamesOpt names{const_cast<X509GenNameChain *>(row.chain), 1};
    EXPECT_EQ(X509MUtilCheckGenNamesOpt(&names, optional), -1);
    EXPECT_EQ(optional.code(), row.code);
    EXPECT_EQ(optional.trace().back(), "X509MUtilCheckGenNamesOpt: Call X509MUtilCheckGenNames");
  }
  EXPECT_EQ(X509MUtilCheckGenNames(empty.first(), nullptr), 0) << "whether objects hold names is not looked at";
  const X509GenNamesOpt absent{gap.first(), 0};
  EXPECT_EQ(X509MUtilCheckGenNamesOpt(&absent, nullptr), 0);
  const X509GenNamesOpt odd{nullptr, 2};
  Err err;
  EXPECT_EQ(X509MUtilCheckGenNamesOpt(&odd, err), -1);
  EXPECT_EQ(err.code(), 0x0147F754u);
  EXPECT_EQ(err.block.entries[0].valueLength, sizeof odd);
  EXPECT_EQ(err.block.entries[0].value, &odd);
}

TEST(GeneralNames, FillsObjectsInOrder) {
  const Pool pool;
  const Exact encoding(fromHex("30 07 82 01 61 82 81 01 62"));
  Work work(kList, encoding.data());
  ASSERT_EQ(work.decode(), 0);
  Names three({"", "", ""});
  ASSERT_EQ(X509MUtilSgetGenNamesBER(pool, work.object, work.value, "", three.first(), nullptr), 0);
  EXPECT_EQ(three.at(0).ber(), "82 01 61");
  EXPECT_EQ(three.at(1).ber(), "82 81 01 62");
  EXPECT_EQ(three.at(2).ber(), "empty");
  uint64_t octets = 0;
  uint32_t blocks = 0;
  ASSERT_EQ(AsnMemObjectUsage(pool, &octets, &blocks, nullptr), 0);
  EXPECT_EQ(blocks, 0u) << "passing buffers are freed";

  Names one({""});
  Err err;
  EXPECT_EQ(X509MUtilSgetGenNamesBER(pool, work.object, work.value, "", one.first(), err), -1);
  EXPECT_EQ(err.code(), 0x0147F499u);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"x509MUtilSgetGenNames: Chain is too short "});
  EXPECT_EQ(one.at(0).ber(), "82 01 61");

  Names strict({"", ""});
  EXPECT_EQ(X509MUtilSgetGenNamesDER(pool, work.object, work.value, "", strict.first(), nullptr), -1);
  EXPECT_EQ(strict.at(0).ber(), "82 01 61");
  EXPECT_EQ(strict.at(1).ber(), "empty");

  const Exact none(fromHex("30 00"));
  Work nothing(kList, none.data());
  ASSERT_EQ(nothing.decode(), 0);
  EXPECT_EQ(X509MUtilSgetGenNamesBER(pool, nothing.object, nothing.value, "", nullptr, nullptr), 0);
}

TEST(GeneralNames, ReadsThatFindNothing) {
  const Pool pool;
  const GenName object;
  Names names({""});
  const Exact encoding(fromHex("30 00"));
  Work list(kList, encoding.data());
  Work identifier(schema::record(schema::Entry::AuthorityKeyIdentifier), encoding.data());
  ASSERT_EQ(list.decode() + identifier.decode(), 0);
  Err none;
  EXPECT_EQ(X509MUtilSgetGenNameObjectBER(pool, list.object, list.value, "1", nullptr, none), -1);
  EXPECT_EQ(none.code(), 0x0147F202u);
  Err absent;
  EXPECT_EQ(X509MUtilSgetGenNameObjectBER(pool, list.object, list.value, "1", object, absent), -1);
  EXPECT_EQ(absent.code(), 0x0147F221u);
  EXPECT_EQ(absent.trace(), std::vector<std::string>{"x509MUtilSgetGenNameObject: 1"});
  Err missing;
  EXPECT_EQ(X509MUtilSgetGenNamesBER(pool, identifier.object, identifier.value, "authorityCertIssuer", names.first(),
                                     missing),
            -1);
  EXPECT_EQ(missing.code(), 0x0147F406u);
  EXPECT_EQ(missing.trace(), std::vector<std::string>{"x509MUtilSgetGenNames: Call AsnGetElement"});

  const Exact full(fromHex("30 03 82 01 61"));
  Work one(kList, full.data());
  ASSERT_EQ(one.decode(), 0);
  ASSERT_EQ(AsnMemObjectSetLimit(pool, 1, nullptr), 0);
  void *memory = nullptr;
  while (AsnMemObjectMalloc(pool, 8, &memory, nullptr) == 0) continue;  // what is held already
  Err full_;
  EXPECT_EQ(X509MUtilSgetGenNameObjectBER(pool, one.object, one.value, "1", object, full_), -1);
  EXPECT_EQ(full_.trace().back(), "x509MUtilSgetGenNameObject: 1");
  EXPECT_EQ(full_.block.entries[1].valueOctets[0], 3) << "the length that was asked for";
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
    Err err;
    EXPECT_EQ(X509MUtilGetPathOfGenName(type, &path, err), -1);
    EXPECT_EQ(err.code(), 0x0147F544u);
    EXPECT_EQ(err.block.entries[0].valueLength, 4u);
  }
}

// ---- The extensions ------------------------------------------------------------------------------------------------

struct Member {
  const char *name;
  const Objid &objid;
  std::function<int32_t(KetraObject, int32_t, const X509GenNames *, AsnErrorBlock *)> set;
  int32_t (*get)(KetraObject, const X509GenNames *, AsnErrorBlock *);
  int32_t (*count)(KetraObject, uint32_t *, AsnErrorBlock *);
  bool alwaysCritical = false;
};

const std::vector<Member> &members() {
  static const std::vector<Member> rows = {
      {"SubjectAltName", X509Objid_SubjectAltName, KetraObjectSsetSubjectAltName, KetraObjectSgetSubjectAltName,
       KetraObjectSgetSubjectAltNameCalGenName},
      {"IssuerAltName", X509Objid_IssuerAltName, KetraObjectSsetIssuerAltName, KetraObjectSgetIssuerAltName,
       KetraObjectSgetIssuerAltNameCalGenName},
      {"CertIssuer", X509Objid_CertIssuer,
       [](auto object, int32_t, auto names, auto err) { return KetraObjectSsetCertIssuer(object, names, err); },
       KetraObjectSgetCertIssuer, KetraObjectSgetCertIssuerCalGenName, true},
  };
  return rows;
}

TEST(AlternativeNames, SetCountGet) {
  for (const Member &member : members()) {
    SCOPED_TRACE(member.name);
    for (const int32_t critical : {0, 1, 2}) {
      const Extensions extensions;
      Names names({kKinds.begin(), kKinds.end()});
      const X509GenNames value{names.first()};
      Err err;
      ASSERT_EQ(member.set(extensions, critical, &value, err), 0) << err.text();
      const KetraExtension *stored = nullptr;
      ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &member.objid, &stored, nullptr), 0);
      ASSERT_NE(stored, nullptr);
      EXPECT_EQ(stored->critical == 1, member.alwaysCritical || critical == 1);
      uint32_t count = 0;
      ASSERT_EQ(member.count(extensions, &count, err), 0);
      EXPECT_EQ(count, 9u);
      Names read({kKinds.size(), ""});
      const X509GenNames filled{read.first()};
      ASSERT_EQ(member.get(extensions, &filled, err), 0) << err.text();
      std::string all;
      for (std::size_t i = 0; i < kKinds.size(); ++i) EXPECT_EQ(read.at(i).ber(), sampleOf(kKinds.at(i)));
    }
  }
}

TEST(AlternativeNames, Failures) {
  for (const Member &member : members()) {
    SCOPED_TRACE(member.name);
    const std::string suffix = std::string(member.name);
    Extensions extensions;
    Names names({"dNSName", ""});
    X509GenNames value{nullptr};
    uint32_t count = 7;
    Err empty;
    EXPECT_EQ(member.set(extensions, 1, &value, empty), -1);
    EXPECT_EQ(empty.code(), 0x0147F682u);
    EXPECT_EQ(empty.trace().back(), "KetraObjectSset" + suffix + ": Call X509MUtilCheckGenNames");
    value.genNames = names.first();
    Err unset;
    EXPECT_EQ(member.set(extensions, 1, &value, unset), -1) << "the second object holds no name";
    EXPECT_EQ(unset.code(), 0x01479103u);
    EXPECT_EQ(unset.trace().back(), "KetraObjectSset" + suffix + ": Call X509MUtilSetGenNamesDER");
    Err absent;
    EXPECT_EQ(member.get(extensions, &value, absent), -1);
    EXPECT_EQ(member.count(extensions, &count, absent), -1);
    EXPECT_EQ(absent.code(), 0x0146F204u);
    EXPECT_EQ(absent.trace(), std::vector<std::string>(2, "ketraObjectSgetValueByObjid: None extension"));

    extensions.store(member.objid, fromHex("30 09 82 01 61 82 01 62 82 01 63"));
    Err tooShort;
    EXPECT_EQ(member.get(extensions, &value, tooShort), -1);
    EXPECT_EQ(tooShort.code(), 0x0147F499u);
    EXPECT_EQ(tooShort.trace().back(), "KetraObjectSget" + suffix + ": Call X509MUtilSgetGenNamesBER");
    EXPECT_EQ(names.at(1).der(), "82 01 62");

    extensions.store(member.objid, fromHex("30 00"));
    EXPECT_EQ(member.count(extensions, &count, nullptr), 0);
    EXPECT_EQ(count, 0u);
    Err null;
    EXPECT_EQ(member.set(nullptr, 1, &value, null), -1);
    EXPECT_EQ(member.get(extensions, nullptr, null), -1);
    EXPECT_EQ(member.count(extensions, nullptr, null), -1);
    EXPECT_EQ(null.code(), 0x01460F02u);
    EXPECT_EQ(null.trace()[2], "KetraObjectSget" + suffix + "CalGenName: None parameter");
  }
}

}  // namespace
}  // namespace ketra::test
