// The typed operations through the C interface: values, what is stored, refusals, criticality, cache.

#include <algorithm>
#include <cstring>

#include "core/extension_access.h"
#include "ketra.h"
#include "support/support.h"

namespace ketra::test {
namespace {

// The kinds of the cache's nodes, in order.
std::string cacheNodes(KetraObject object) {
  std::string kinds;
  for (auto *node = static_cast<CacheNode *>(object->structuredCache); node != nullptr; node = node->next)
    kinds += std::to_string(static_cast<uint32_t>(node->entry.kind)) + " ";
  return kinds;
}

TEST(BasicConstraints, SetAndGet) {
  struct Row {
    KetraBasicConstraints value;
    const char *golden;
    KetraBasicConstraints read;
  };
  const Row rows[] = {
      {{{1, 1}, {0, 1}}, "basicConstraints/ca-0", {{1, 1}, {0, 1}}},
      {{{1, 0}, {-1, 0}}, "basicConstraints/empty", {{0, 0}, {0, 0}}},
      {{{0, 1}, {5, 0}}, "basicConstraints/false", {{0, 1}, {0, 0}}},
      {{{0, 0}, {INT32_MAX, 1}}, "basicConstraints/largest", {{0, 0}, {INT32_MAX, 1}}},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.golden);
    const Extensions extensions;
    EXPECT_EQ(refusal(KetraObjectSsetBasicConstraints, extensions, 1, &row.value), "");
    EXPECT_EQ(extensions.stored(X509Objid_BasicConstraints), golden(row.golden));
    KetraBasicConstraints read{{9, 9}, {9, 9}};
    EXPECT_EQ(refusal(KetraObjectSgetBasicConstraints, extensions, &read), "");
    EXPECT_EQ(std::memcmp(&read, &row.read, sizeof read), 0);
  }
}

TEST(BasicConstraints, Refusals) {
  Extensions extensions;
  Err err;
  const KetraBasicConstraints negative{{1, 1}, {-1, 1}};
  EXPECT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &negative, err), -1);
  EXPECT_EQ(err.innermost(), "01464852 KetraObjectSsetBasicConstraints: pathLen [-1]");
  EXPECT_TRUE(err.blames(negative.pathLenConstraint.value));
  EXPECT_STREQ(err.block.entries[0].module, "X509");
  for (const KetraBasicConstraints &bad : {KetraBasicConstraints{{2, 1}, {0, 0}}, {{0, 2}, {0, 0}}, {{0, 0}, {0, 3}}}) {
    EXPECT_NE(refusal(KetraObjectSsetBasicConstraints, extensions, 1, &bad), "");
  }
  EXPECT_EQ(extensions.stored(X509Objid_BasicConstraints), "absent");

  extensions.store(X509Objid_BasicConstraints, fromHex("30 06 01 01 FF 02 01 FF"));
  KetraBasicConstraints read{};
  Err get;
  EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, &read, get), -1);
  EXPECT_EQ(get.innermost(), "0146B952 KetraObjectSgetBasicConstraints: pathLen [-1]");
  EXPECT_TRUE(get.blames(read.pathLenConstraint.value));
  const KetraBasicConstraints written{{1, 1}, {-1, 1}};
  EXPECT_EQ(std::memcmp(&read, &written, sizeof read), 0) << "what was read before stays";
}

TEST(KeyUsage, SetAndGet) {
  struct Row {
    const char *bits;
    uint32_t count;
    const char *golden;
    const char *read;
    uint32_t readCount;
  };
  const Row rows[] = {
      {"", 0, "keyUsage/none", "00 00", 7},
      {"80", 1, "keyUsage/digitalSignature", "80 00", 7},
      {"06 00", 9, "keyUsage/certSign-cRLSign", "06 00", 7},
      {"01", 8, "keyUsage/encipherOnly", "01 00", 9},
      {"00 80", 9, "keyUsage/decipherOnly", "00 80", 9},
      {"FF FF", 9, "keyUsage/all", "FF 80", 9},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.golden);
    const Extensions extensions;
    const Octets octets = fromHex(row.bits);
    const AsnBit value{octets.data(), row.count};
    EXPECT_EQ(refusal(KetraObjectSsetKeyUsage, extensions, 0, &value), "");
    EXPECT_EQ(extensions.stored(X509Objid_KeyUsage), golden(row.golden));
    AsnBit read{nullptr, 0};
    EXPECT_EQ(refusal(KetraObjectSgetKeyUsage, extensions, &read), "");
    EXPECT_EQ(toHex(read.octets, 2), row.read);
    EXPECT_EQ(read.bits, row.readCount);
    EXPECT_EQ(AsnMemObjectFree(extensions.pool(), read.octets, nullptr), 0) << "the octets lie in the object's pool";
  }
  Extensions wide;  // a tenth bit is neither delivered nor taken
  wide.store(X509Objid_KeyUsage, fromHex("03 03 06 80 40"));
  AsnBit bits{};
  EXPECT_EQ(KetraObjectSgetKeyUsage(wide, &bits, nullptr), 0);
  EXPECT_EQ(toHex(bits.octets, 2), "80 00");
  EXPECT_EQ(bits.bits, 7u);
  const uint8_t octets[] = {0xFF, 0xFF};
  bits = {octets, 10};
  Err err;
  EXPECT_EQ(KetraObjectSsetKeyUsage(wide, 1, &bits, err), -1);
  EXPECT_EQ(err.innermost(), "0146203A KetraObjectSsetKeyUsage: bitlength [10]");
  EXPECT_TRUE(err.blames(bits.bits));
}

TEST(SubjectKeyId, Cache) {
  const Extensions extensions;
  const Octets identifier = fromHex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13");
  const AsnOct value{identifier.data(), 20};
  AsnOct read{nullptr, 77};
  EXPECT_EQ(KetraObjectSgetSubjectKeyId(extensions, &read, nullptr), -1);
  EXPECT_EQ(cacheNodes(extensions), "") << "an absent extension leaves no node";
  EXPECT_EQ(read.length, 77u);

  EXPECT_EQ(refusal(KetraObjectSsetSubjectKeyId, extensions, &value), "");
  EXPECT_EQ(extensions.stored(X509Objid_SubjectKeyId), golden("subjectKeyId/20"));
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(refusal(KetraObjectSgetSubjectKeyId, extensions, &read), "");
    EXPECT_EQ(Octets(read.octets, read.octets + read.length), identifier);
    EXPECT_EQ(cacheNodes(extensions), "2 ");
    EXPECT_EQ(static_cast<CacheNode *>(extensions.operator KetraObject()->structuredCache)->entry.subjectKeyId.octets,
              read.octets);
  }
  CacheEntry *other = nullptr;
  EXPECT_EQ(ketraObjectSgetSExt(extensions, CacheKind::AuthorityKeyId, &other, nullptr), 0);
  EXPECT_EQ(cacheNodes(extensions), "2 1 ") << "appended behind the first";

  const AsnOct empty{nullptr, 0};
  EXPECT_EQ(KetraObjectSsetSubjectKeyId(extensions, &empty, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_SubjectKeyId), golden("subjectKeyId/empty"));
  const AsnOct missing{nullptr, 3};
  EXPECT_EQ(KetraObjectSsetSubjectKeyId(extensions, &missing, nullptr), -1);
}

TEST(Criticality, OnlyExactlyOneIsCritical) {
  const Extensions extensions;
  const KetraBasicConstraints value{{1, 1}, {0, 0}};
  int32_t read = 7;
  for (const int32_t critical : {1, 0, 2, -1}) {
    ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, critical, &value, nullptr), 0);
    EXPECT_EQ(KetraObjectSgetBasicConstraintsCritical(extensions, &read, nullptr), 0);
    EXPECT_EQ(read, critical == 1 ? 1 : 0);
    EXPECT_EQ(extensions.find(X509Objid_BasicConstraints)->criticalOption, critical == 1 ? 1 : 0);
  }
  for (const int32_t flag : {0, 2, 1}) {  // an entry of somebody else's: its value counts only under the flag 1
    const uint8_t octets[] = {0x30, 0x00};
    const KetraExtension entry{X509Objid_BasicConstraints, 5, flag, {octets, 2}};
    ASSERT_EQ(KetraObjectSetExt(extensions, &entry, nullptr), 0);
    EXPECT_EQ(KetraObjectSgetBasicConstraintsCritical(extensions, &read, nullptr), 0);
    EXPECT_EQ(read, flag == 1 ? 5 : 0);
  }
}

TEST(Frames, AbsentExtensionAndNulls) {
  const Extensions extensions;
  int32_t critical = 7;
  KetraBasicConstraints value{{5, 5}, {5, 5}};
  EXPECT_EQ(refusal(KetraObjectSgetKeyUsageCritical, extensions, &critical),
            "0146F104 ketraObjectSgetCritical: None extension");
  EXPECT_EQ(critical, 7);
  EXPECT_EQ(KetraObjectSgetKeyUsageCritical(extensions, nullptr, nullptr), -1) << "an error block is not needed";
  Err err;
  EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, &value, err), -1);
  EXPECT_EQ(err.innermost(), "0146F204 ketraObjectSgetValueByObjid: None extension");
  EXPECT_EQ(err.block.count, 1u);
  EXPECT_EQ(value.cA.value, 5);
  EXPECT_EQ(codeOf(KetraObjectSsetBasicConstraints, extensions, 1, nullptr), 0x01460F02u);
}

// After a set the encoding is back in the pool: a second set of the same value leaves the usage as it was.
TEST(Frames, SetReturnsItsEncoding) {
  const Extensions extensions;
  const KetraBasicConstraints value{{1, 1}, {3, 1}};
  ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr), 0);
  const auto once = usage(extensions.pool());
  ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr), 0);
  EXPECT_EQ(usage(extensions.pool()), once);
}

TEST(Identifiers, AllUnderIdCe) {
  // clang-format off
  const Objid *const objids[] = {
      &X509Objid_AuthorityKeyId, &X509Objid_SubjectKeyId, &X509Objid_KeyUsage, &X509Objid_ExtKeyUsage,
      &X509Objid_PrivateKeyUsagePeriod, &X509Objid_CertPolicies, &X509Objid_SubjectAltName, &X509Objid_IssuerAltName,
      &X509Objid_BasicConstraints, &X509Objid_CRLNumber, &X509Objid_PolicyMappings,
      &X509Objid_SubjectDirectoryAttributes, &X509Objid_NameConstraints, &X509Objid_PolicyConstraints,
      &X509Objid_ReasonCode, &X509Objid_InstructionCode, &X509Objid_InvalidityDate, &X509Objid_CRLDistributionPoints,
      &X509Objid_IssuingDistributionPoint, &X509Objid_CertIssuer, &X509Objid_DeltaCRLIndicator};
  // clang-format on
  std::string last;
  for (const Objid *objid : objids) {
    ASSERT_EQ(objid->count, 4u);
    EXPECT_EQ(std::vector(objid->arcs, objid->arcs + 3), (std::vector<uint32_t>{2, 5, 29}));
    last += std::to_string(objid->arcs[3]) + " ";
  }
  EXPECT_EQ(last, "35 14 15 37 16 32 17 18 19 20 33 9 30 36 21 23 24 31 28 29 27 ");
}

TEST(Version, OneConstantBanner) {
  const char *first = nullptr;
  const char *second = nullptr;
  EXPECT_EQ(KetraVersion(&first), 0);
  EXPECT_EQ(KetraVersion(&second), 0);
  EXPECT_EQ(first, second);
  EXPECT_EQ(KetraVersion(nullptr), 0);
  const std::string banner = first;
  EXPECT_EQ(std::count(banner.begin(), banner.end(), '\n'), 2);
  EXPECT_EQ(banner.back(), '\n');
  EXPECT_NE(banner.find(std::string("Version ") + KETRA_TEST_VERSION + " (" + KETRA_TEST_DATE + ")\n"),
            std::string::npos);
}

}  // namespace
}  // namespace ketra::test
