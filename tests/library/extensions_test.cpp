// What all typed operations share: the cache, criticality; and the version.

#include <algorithm>
#include <cstring>

#include "core/extension_access.h"
#include "library/outside_operations.h"

namespace ketra::test {
namespace {

std::vector<const CacheEntry *> cacheOf(KetraObject object) {
  std::vector<const CacheEntry *> entries;
  auto *node = static_cast<const CacheNode *>(object->structuredCache);
  for (; node != nullptr; node = node->next) entries.push_back(&node->entry);
  return entries;
}

template <class T>
bool isSame(const T &a, const T &b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(Cache, KeepsWhatTheLastGetRead) {
  Stage s;
  ASSERT_EQ(KetraObjectDeleteExt(s.extensions, &X509Objid_SubjectKeyId, nullptr), 0);
  s.octets.length = 77;
  EXPECT_EQ(KetraObjectSgetSubjectKeyId(s.extensions, &s.octets, nullptr), -1);
  EXPECT_TRUE(cacheOf(s.extensions).empty()) << "an absent extension leaves no node";
  EXPECT_EQ(s.octets.length, 77u);
  s.extensions.store(X509Objid_SubjectKeyId, fromHex("04 04 00 01 02 03"));
  for (int round = 0; round < 2; ++round) {
    for (const char *name : {"KetraObjectSgetSubjectKeyId", "KetraObjectSgetInvalidityDate",
                             "KetraObjectSgetAuthorityKeyId", "KetraObjectSgetPrivateKeyUsagePeriod"}) {
      EXPECT_EQ(refusal(operations().at(name).run, s), "");
    }
    const auto entries = cacheOf(s.extensions);
    ASSERT_EQ(entries.size(), 4u) << "in the order of the first gets";
    EXPECT_TRUE(entries[0]->kind == CacheKind::SubjectKeyId && entries[0]->subjectKeyId.octets == s.octets.octets);
    EXPECT_TRUE(entries[1]->kind == CacheKind::InvalidityDate && isSame(entries[1]->invalidityDate, s.time));
    EXPECT_EQ(entries[2]->kind, CacheKind::AuthorityKeyId);
    EXPECT_EQ(entries[2]->keyIdentifier.value.octets, s.prepared.keyId.keyIdentifier.value.octets);
    EXPECT_EQ(entries[3]->kind, CacheKind::PrivateKeyUsagePeriod);
    EXPECT_TRUE(isSame(entries[3]->period.notBefore, s.period.notBefore));
    EXPECT_TRUE(isSame(entries[3]->period.notAfter, s.period.notAfter) && s.period.notAfter.option == 1);
  }
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

TEST(Version, OneConstantBannerThatAgreesWithTheMacros) {
  const char *first = nullptr;
  const char *second = nullptr;
  EXPECT_EQ(KetraVersion(&first), 0);
  EXPECT_EQ(KetraVersion(&second), 0);
  EXPECT_EQ(first, second);
  EXPECT_EQ(KetraVersion(nullptr), 0);
  const std::string banner = first;
  EXPECT_EQ(std::count(banner.begin(), banner.end(), '\n'), 2);
  EXPECT_EQ(banner.back(), '\n');
  EXPECT_NE(banner.find("Version " KETRA_TEST_VERSION " (" KETRA_TEST_DATE ")\n"), std::string::npos);
  EXPECT_STREQ(KETRA_VERSION_TEXT, KETRA_TEST_VERSION);
  EXPECT_EQ(std::to_string(KETRA_VERSION_MAJOR) + "." + std::to_string(KETRA_VERSION_MINOR) + "." +
                std::to_string(KETRA_VERSION_PATCH),
            KETRA_TEST_VERSION);
}

}  // namespace
}  // namespace ketra::test
