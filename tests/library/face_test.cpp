// The C++ face, as a C++17 program uses it.

#include "ketra.hpp"

#include <gtest/gtest.h>

namespace {

TEST(Face, SetGetEraseIterate) {
  ketra::Extensions extensions;
  EXPECT_FALSE(extensions.get<ketra::BasicConstraints>().has_value());
  extensions.set(ketra::BasicConstraints{true, std::nullopt}, true);
  ketra::KeyUsage usage;
  usage.digitalSignature = usage.decipherOnly = true;
  extensions.set(usage, false);
  extensions.set(ketra::SubjectKeyId{{1, 2, 3}});
  extensions.set(ketra::ObjectIdentifier{1, 2, 3, 4}, true, ketra::Octets{0x05, 0x00});

  const ketra::Extensions read = ketra::Extensions::decode(extensions.encode());
  std::string text;
  for (const ketra::RawExtension &extension : read) text += extension.objid.text() + (extension.critical ? "! " : " ");
  EXPECT_EQ(text, "2.5.29.19! 2.5.29.15 2.5.29.14 1.2.3.4! ");
  EXPECT_EQ(read.get<ketra::BasicConstraints>()->cA, std::optional<bool>(true));
  EXPECT_EQ(read.get<ketra::BasicConstraints>()->pathLenConstraint, std::nullopt);
  EXPECT_TRUE(read.get<ketra::KeyUsage>()->digitalSignature && read.get<ketra::KeyUsage>()->decipherOnly);
  EXPECT_FALSE(read.get<ketra::KeyUsage>()->keyCertSign);
  EXPECT_EQ(read.get<ketra::SubjectKeyId>()->keyIdentifier, (ketra::Octets{1, 2, 3}));
  EXPECT_TRUE(read.find(ketra::ObjectIdentifier::parse("1.2.3.4"))->critical);

  EXPECT_TRUE(extensions.erase<ketra::KeyUsage>());
  EXPECT_FALSE(extensions.erase<ketra::KeyUsage>());
  EXPECT_EQ(extensions.size(), 3u);
}

// Reading again and again leaves no memory behind.
TEST(Face, GetsReturnTheirMemory) {
  ketra::Extensions extensions;
  extensions.set(ketra::KeyUsage{}, true);
  extensions.set(ketra::SubjectKeyId{ketra::Octets(100, 1)});
  extensions.get<ketra::SubjectKeyId>();  // makes the cache node, which stays
  AsnMemObject pool = nullptr;
  ASSERT_EQ(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr), 0);
  uint64_t before = 0;
  uint64_t after = 0;
  uint32_t blocks = 0;
  ASSERT_EQ(AsnMemObjectUsage(pool, &before, &blocks, nullptr), 0);
  for (int i = 0; i < 100; ++i) {
    extensions.get<ketra::KeyUsage>();
    extensions.get<ketra::SubjectKeyId>();
    extensions.encode();
  }
  ASSERT_EQ(AsnMemObjectUsage(pool, &after, &blocks, nullptr), 0);
  EXPECT_EQ(before, after);
}

TEST(Face, ReadLimits) {
  ketra::Extensions extensions;
  extensions.set(ketra::SubjectAltName{{ketra::dns("example")}}, false);
  const std::size_t size = extensions.find<ketra::SubjectAltName>()->value.size();
  EXPECT_TRUE(extensions.get<ketra::SubjectAltName>(ketra::ReadLimits{size}));
  EXPECT_FALSE(extensions.get<ketra::IssuerAltName>(ketra::ReadLimits{0}));
  try {
    extensions.get<ketra::SubjectAltName>(ketra::ReadLimits{size - 1});
    FAIL();
  } catch (const ketra::Error &error) {
    EXPECT_EQ(error.code(), static_cast<uint32_t>(AsnError_TooLong));
  }
}

TEST(Face, ErrorsCarryCodeAndTrace) {
  ketra::Extensions extensions;
  extensions.set(ketra::ObjectIdentifier{2, 5, 29, 19}, true, ketra::Octets{0x30, 0x04, 0x01, 0x02, 0xFF, 0xFF});
  try {
    extensions.get<ketra::BasicConstraints>();
    FAIL();
  } catch (const ketra::Error &error) {
    EXPECT_EQ(error.code(), static_cast<uint32_t>(AsnError_Boolean));
    ASSERT_EQ(error.trace().size(), 2u);
    EXPECT_EQ(error.trace()[1].function, "KetraObjectSgetBasicConstraints");
    EXPECT_STREQ(error.what(),
                 "error 0x02100028: malformed BOOLEAN\n"
                 "  ASN1 AsnDecode: BOOLEAN content is 2 octets at offset 4 (BasicConstraints/cA)\n"
                 "  X509 KetraObjectSgetBasicConstraints: Call AsnDecode");
  }
  EXPECT_THROW(extensions.set(ketra::BasicConstraints{true, -1}, true), ketra::Error);
  EXPECT_THROW(ketra::Extensions::decode(ketra::Octets{0x30, 0x00}), ketra::Error);
  EXPECT_THROW(ketra::ObjectIdentifier::parse("9.9"), ketra::Error);
  EXPECT_THROW(ketra::ObjectIdentifier::parse(std::string("2.5.29.19\0.1", 12)), ketra::Error);
}

}  // namespace
