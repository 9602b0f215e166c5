// The typed operations through the C interface: values, what is stored, refusals, criticality, cache.

#include <algorithm>
#include <cstring>

#include "core/extension_access.h"
#include "ketra.h"
#include "support/support.h"

namespace ketra::test {
namespace {

std::size_t cacheNodes(KetraObject object, std::vector<uint32_t> *kinds = nullptr) {
  std::size_t count = 0;
  for (auto *node = static_cast<CacheNode *>(object->structuredCache); node != nullptr; node = node->next, ++count) {
    if (kinds != nullptr) kinds->push_back(static_cast<uint32_t>(node->entry.kind));
  }
  return count;
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
    Err err;
    EXPECT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &row.value, err), 0) << err.text();
    EXPECT_EQ(extensions.stored(X509Objid_BasicConstraints), golden(row.golden));
    KetraBasicConstraints read{{9, 9}, {9, 9}};
    EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, &read, err), 0);
    EXPECT_EQ(std::memcmp(&read, &row.read, sizeof read), 0);
    EXPECT_EQ(err.block.count, 0u);
  }
}

TEST(BasicConstraints, Refusals) {
  const Extensions extensions;
  Err err;
  const KetraBasicConstraints negative{{1, 1}, {-1, 1}};
  EXPECT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &negative, err), -1);
  EXPECT_EQ(err.code(), 0x01464852u);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"KetraObjectSsetBasicConstraints: pathLen"});
  EXPECT_EQ(err.block.entries[0].value, &negative.pathLenConstraint.value);
  EXPECT_EQ(err.block.entries[0].valueLength, 4u);
  EXPECT_STREQ(err.block.entries[0].module, "X509");
  EXPECT_EQ(extensions.stored(X509Objid_BasicConstraints), "absent");

  for (const KetraBasicConstraints &bad : {KetraBasicConstraints{{2, 1}, {0, 0}}, {{0, 2}, {0, 0}}, {{0, 0}, {0, 3}}}) {
    Err refused;
    EXPECT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &bad, refused), -1);
    EXPECT_EQ(refused.block.count, 2u);
  }

  Extensions stored;
  stored.store(X509Objid_BasicConstraints, fromHex("30 06 01 01 FF 02 01 FF"));
  KetraBasicConstraints read{};
  Err negativeErr;
  EXPECT_EQ(KetraObjectSgetBasicConstraints(stored, &read, negativeErr), -1);
  EXPECT_EQ(negativeErr.code(), 0x0146B952u);
  EXPECT_EQ(negativeErr.trace(), std::vector<std::string>{"KetraObjectSgetBasicConstraints: pathLen"});
  EXPECT_EQ(negativeErr.block.entries[0].value, &read.pathLenConstraint.value);
  EXPECT_TRUE(read.cA.value == 1 && read.cA.option == 1 && read.pathLenConstraint.value == -1 &&
              read.pathLenConstraint.option == 1)
      << "what was read before stays";

  stored.store(X509Objid_BasicConstraints, fromHex("30 0A 01 01 FF 02 05 01 00 00 00 00"));
  Err range;
  EXPECT_EQ(KetraObjectSgetBasicConstraints(stored, &read, range), -1);
  EXPECT_EQ(range.code(), uint32_t{AsnError_Range});
  EXPECT_EQ(range.trace()[1], "KetraObjectSgetBasicConstraints: Call AsnGetOptIntBER");
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
    Err err;
    EXPECT_EQ(KetraObjectSsetKeyUsage(extensions, 0, &value, err), 0) << err.text();
    EXPECT_EQ(extensions.stored(X509Objid_KeyUsage), golden(row.golden));
    AsnBit read{nullptr, 0};
    EXPECT_EQ(KetraObjectSgetKeyUsage(extensions, &read, err), 0) << err.text();
    EXPECT_EQ(toHex(read.octets, 2), row.read);
    EXPECT_EQ(read.bits, row.readCount);
    EXPECT_EQ(AsnMemObjectFree(extensions.pool(), read.octets, err), 0) << "the octets lie in the object's pool";
  }
  Extensions wide;  // a tenth bit is not delivered
  wide.store(X509Objid_KeyUsage, fromHex("03 03 06 80 40"));
  AsnBit read{};
  EXPECT_EQ(KetraObjectSgetKeyUsage(wide, &read, nullptr), 0);
  EXPECT_EQ(toHex(read.octets, 2), "80 00");
  EXPECT_EQ(read.bits, 7u);
}

TEST(KeyUsage, RefusesATenthBit) {
  const Extensions extensions;
  const uint8_t octets[] = {0xFF, 0xFF};
  const AsnBit value{octets, 10};
  Err err;
  EXPECT_EQ(KetraObjectSsetKeyUsage(extensions, 1, &value, err), -1);
  EXPECT_EQ(err.code(), 0x0146203Au);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"KetraObjectSsetKeyUsage: bitlength"});
  EXPECT_EQ(err.block.entries[0].value, &value.bits);
  EXPECT_EQ(extensions.stored(X509Objid_KeyUsage), "absent");
}

TEST(SubjectKeyId, SetGetAndCache) {
  const Extensions extensions;
  const Octets identifier = fromHex("00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13");
  const AsnOct value{identifier.data(), 20};
  Err err;
  AsnOct read{nullptr, 77};
  EXPECT_EQ(KetraObjectSgetSubjectKeyId(extensions, &read, err), -1);
  EXPECT_EQ(cacheNodes(extensions), 0u) << "an absent extension leaves no node";
  EXPECT_EQ(read.length, 77u);
  AsnErrorReset(err);

  EXPECT_EQ(KetraObjectSsetSubjectKeyId(extensions, &value, err), 0);
  EXPECT_EQ(extensions.stored(X509Objid_SubjectKeyId), golden("subjectKeyId/20"));
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(KetraObjectSgetSubjectKeyId(extensions, &read, err), 0) << err.text();
    EXPECT_EQ(Octets(read.octets, read.octets + read.length), identifier);
    std::vector<uint32_t> kinds;
    EXPECT_EQ(cacheNodes(extensions, &kinds), 1u);
    EXPECT_EQ(kinds, std::vector<uint32_t>{2});
    EXPECT_EQ(static_cast<CacheNode *>(extensions.operator KetraObject()->structuredCache)->entry.subjectKeyId.octets,
              read.octets);
  }
  CacheEntry *other = nullptr;
  EXPECT_EQ(ketraObjectSgetSExt(extensions, CacheKind::AuthorityKeyId, &other, err), 0);
  std::vector<uint32_t> kinds;
  cacheNodes(extensions, &kinds);
  EXPECT_EQ(kinds, (std::vector<uint32_t>{2, 1})) << "appended behind the first";

  const AsnOct empty{nullptr, 0};
  EXPECT_EQ(KetraObjectSsetSubjectKeyId(extensions, &empty, err), 0);
  EXPECT_EQ(extensions.stored(X509Objid_SubjectKeyId), golden("subjectKeyId/empty"));
  const AsnOct missing{nullptr, 3};
  EXPECT_EQ(KetraObjectSsetSubjectKeyId(extensions, &missing, err), -1);
}

TEST(SubjectKeyId, CacheNodeThatThePoolCannotSupply) {
  Extensions extensions;
  extensions.store(X509Objid_SubjectKeyId, fromHex("04 01 AA"));
  ASSERT_EQ(AsnMemObjectSetLimit(extensions.pool(), 1, nullptr), 0);
  void *memory = nullptr;
  while (AsnMemObjectMalloc(extensions.pool(), 8, &memory, nullptr) == 0) continue;  // what is held already
  AsnOct read{};
  Err err;
  EXPECT_EQ(KetraObjectSgetSubjectKeyId(extensions, &read, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnMemError_Limit});
  ASSERT_EQ(err.block.count, 2u);
  EXPECT_EQ(err.trace()[1], "ketraObjectSgetSExt: Call AsnMemObjectMalloc");
  EXPECT_EQ(cacheNodes(extensions), 0u);
}

TEST(Criticality, OnlyExactlyOneIsCritical) {
  const KetraBasicConstraints value{{1, 1}, {0, 0}};
  for (const int32_t critical : {1, 0, 2, -1}) {
    const Extensions extensions;
    ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, critical, &value, nullptr), 0);
    int32_t read = 7;
    EXPECT_EQ(KetraObjectSgetBasicConstraintsCritical(extensions, &read, nullptr), 0);
    EXPECT_EQ(read, critical == 1 ? 1 : 0);
    const KetraExtension *entry = nullptr;
    ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &X509Objid_BasicConstraints, &entry, nullptr), 0);
    EXPECT_EQ(entry->criticalOption, critical == 1 ? 1 : 0);
  }
}

// An entry of somebody else's: the value counts only under the flag 1.
TEST(Criticality, FlagDecides) {
  const Extensions extensions;
  for (const int32_t flag : {0, 2, 1}) {
    const uint8_t value[] = {0x30, 0x00};
    const KetraExtension entry{X509Objid_BasicConstraints, 5, flag, {value, 2}};
    ASSERT_EQ(KetraObjectSetExt(extensions, &entry, nullptr), 0);
    int32_t critical = 7;
    EXPECT_EQ(KetraObjectSgetBasicConstraintsCritical(extensions, &critical, nullptr), 0);
    EXPECT_EQ(critical, flag == 1 ? 5 : 0);
  }
}

TEST(Criticality, Absent) {
  const Extensions extensions;
  int32_t critical = 7;
  Err err;
  EXPECT_EQ(KetraObjectSgetKeyUsageCritical(extensions, &critical, err), -1);
  EXPECT_EQ(err.code(), 0x0146F104u);
  EXPECT_EQ(err.trace(), (std::vector<std::string>{"ketraObjectSgetCritical: None extension",
                                                   "KetraObjectSgetKeyUsageCritical: Call ketraObjectSgetCritical"}));
  EXPECT_EQ(critical, 7);
  EXPECT_EQ(KetraObjectSgetKeyUsageCritical(extensions, nullptr, nullptr), -1);
}

TEST(Frames, AbsentExtensionAndNulls) {
  const Extensions extensions;
  KetraBasicConstraints value{{5, 5}, {5, 5}};
  Err err;
  EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, &value, err), -1);
  EXPECT_EQ(err.code(), 0x0146F204u);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"ketraObjectSgetValueByObjid: None extension"});
  EXPECT_EQ(value.cA.value, 5);
  EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, &value, nullptr), -1) << "an error block is not needed";

  Err null;
  EXPECT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, nullptr, null), -1);
  EXPECT_EQ(KetraObjectSgetBasicConstraints(extensions, nullptr, null), -1);
  EXPECT_EQ(null.code(), 0x01460F02u);
  EXPECT_EQ(null.trace()[1], "KetraObjectSgetBasicConstraints: None parameter");
}

// After a set the encoding is back in the pool: a second set of the same value leaves the usage as it was.
TEST(Frames, SetReturnsItsEncoding) {
  const Extensions extensions;
  const KetraBasicConstraints value{{1, 1}, {3, 1}};
  const auto usage = [&] {
    std::pair<uint64_t, uint32_t> live{};
    EXPECT_EQ(AsnMemObjectUsage(extensions.pool(), &live.first, &live.second, nullptr), 0);
    return live;
  };
  ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr), 0);
  const auto once = usage();
  ASSERT_EQ(KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr), 0);
  EXPECT_EQ(usage(), once);
}

TEST(Identifiers, AllUnderIdCe) {
  const std::pair<const Objid *, uint32_t> rows[] = {
      {&X509Objid_AuthorityKeyId, 35},
      {&X509Objid_SubjectKeyId, 14},
      {&X509Objid_KeyUsage, 15},
      {&X509Objid_ExtKeyUsage, 37},
      {&X509Objid_PrivateKeyUsagePeriod, 16},
      {&X509Objid_CertPolicies, 32},
      {&X509Objid_SubjectAltName, 17},
      {&X509Objid_IssuerAltName, 18},
      {&X509Objid_BasicConstraints, 19},
      {&X509Objid_CRLNumber, 20},
      {&X509Objid_PolicyMappings, 33},
      {&X509Objid_SubjectDirectoryAttributes, 9},
      {&X509Objid_NameConstraints, 30},
      {&X509Objid_PolicyConstraints, 36},
      {&X509Objid_ReasonCode, 21},
      {&X509Objid_InstructionCode, 23},
      {&X509Objid_InvalidityDate, 24},
      {&X509Objid_CRLDistributionPoints, 31},
      {&X509Objid_IssuingDistributionPoint, 28},
      {&X509Objid_CertIssuer, 29},
      {&X509Objid_DeltaCRLIndicator, 27},
  };
  EXPECT_EQ(std::size(rows), 21u);
  for (const auto &[objid, last] : rows) {
    ASSERT_EQ(objid->count, 4u);
    EXPECT_EQ(std::vector(objid->arcs, objid->arcs + 4), (std::vector<uint32_t>{2, 5, 29, last}));
  }
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
