// What all typed operations share: the cache, criticality; and the version.

#include <algorithm>

#include "core/extension_access.h"
#include "ketra/ketra.h"
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

TEST(SubjectKeyId, Cache) {
  const Extensions extensions;
  const Octets identifier = fromHex("00 01 02 03");
  const AsnOct value{identifier.data(), 4};
  AsnOct read{nullptr, 77};
  EXPECT_EQ(KetraObjectSgetSubjectKeyId(extensions, &read, nullptr), -1);
  EXPECT_EQ(cacheNodes(extensions), "") << "an absent extension leaves no node";
  EXPECT_EQ(read.length, 77u);

  EXPECT_EQ(refusal(KetraObjectSsetSubjectKeyId, extensions, &value), "");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(refusal(KetraObjectSgetSubjectKeyId, extensions, &read), "");
    EXPECT_EQ(Octets(read.octets, read.octets + read.length), identifier);
    EXPECT_EQ(cacheNodes(extensions), "2 ");
    EXPECT_EQ(static_cast<CacheNode *>(extensions.handle->structuredCache)->entry.subjectKeyId.octets, read.octets);
  }
  CacheEntry *other = nullptr;
  EXPECT_EQ(ketraObjectSgetSExt(extensions, CacheKind::AuthorityKeyId, &other, nullptr), 0);
  EXPECT_EQ(cacheNodes(extensions), "2 1 ") << "appended behind the first";
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
