// Names in the C++ face, as a C++17 program uses them.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <variant>
#include <vector>

#include "ketra.hpp"
#include "refused_allocations.h"
#include "support/octets.h"

namespace {

using ketra::test::allocationsLeft;
using ketra::test::fromHex;
using ketra::test::golden;
using ketra::test::toHex;

const ketra::ObjectIdentifier kSubjectAltName{2, 5, 29, 17};

std::string oneByte(std::size_t value) { return toHex({static_cast<uint8_t>(value)}); }

ketra::Extensions storing(const std::string &members) {
  ketra::Extensions extensions;
  extensions.set(kSubjectAltName, false, fromHex("30" + oneByte(fromHex(members).size()) + members));
  return extensions;
}

// The code of what `action` throws; 0 when it does not.
template <class Action>
uint32_t codeOf(Action &&action) {
  try {
    action();
  } catch (const ketra::Error &error) {
    return error.code();
  }
  return 0;
}

ketra::Name steve() {
  return ketra::Name()
      .add({{ketra::attribute::countryName, "GB"}})
      .add({{ketra::attribute::commonName, "Steve"}, {ketra::attribute::serialNumber, "7"}});
}

struct Kind {
  const char *name;
  ketra::GeneralName value;
};

std::vector<Kind> nineKinds() {
  const ketra::Octets printable = {'X', 'Y', 'Z'};
  return {
      {"otherName", ketra::otherName({1, 3, 6, 1, 4, 1, 311, 20, 2, 3}, ketra::utf8String("a@b.test"))},
      {"rfc822Name", ketra::email("a@b.test")},
      {"dNSName", ketra::dns("a.example")},
      {"x400Address", ketra::x400(fromHex("300F300D61041302474262051303414243"))},
      {"directoryName", ketra::directory(steve())},
      {"ediPartyName", ketra::edi({X509DirStr_PrintableString, printable}, ketra::DirectoryString::utf8("AB"))},
      {"uniformResourceIdentifier", ketra::uri("https://a.test/x")},
      {"iPAddress", ketra::ip("192.0.2.1")},
      {"registeredID", ketra::registeredId({1, 2, 3, 4, 5})},
  };
}

TEST(FaceNames, NineKindsBothWays) {
  uint32_t type = 0;
  for (const Kind &kind : nineKinds()) {
    SCOPED_TRACE(kind.name);
    const std::string expected = golden(std::string("generalName/") + kind.name);
    EXPECT_EQ(kind.value.index() + 1, ++type);
    ketra::Extensions extensions;
    extensions.set(ketra::SubjectAltName{{kind.value, ketra::dns("")}}, true);
    const ketra::Octets stored = extensions.find<ketra::SubjectAltName>()->value.copy();
    EXPECT_EQ(toHex(stored), toHex(fromHex("30" + oneByte(stored.size() - 2) + expected + "8200")));

    const auto strict = extensions.get<ketra::SubjectAltName>();
    ASSERT_EQ(strict->names.size(), 2u);
    EXPECT_EQ(strict->names[0], kind.value);
    EXPECT_NE(strict->names[0], strict->names[1]);
    const auto tolerant = extensions.get<ketra::TolerantSubjectAltName>();
    ASSERT_EQ(tolerant->names.size(), 2u);
    EXPECT_EQ(std::get<ketra::GeneralName>(tolerant->names[0]), kind.value);
  }
}

// At every length of the length.
TEST(FaceNames, Utf8StringIsOneEncoding) {
  for (const std::size_t length : {0u, 0x7Fu, 0x80u, 0xFFu, 0x100u, 0xFFFFu, 0x10000u, 0x1000000u}) {
    const ketra::Octets encoding = ketra::utf8String(std::string(length, 'x'));
    EXPECT_EQ(encoding.size() - length, length < 0x80        ? 2
                                        : length < 0x100     ? 3
                                        : length < 0x10000   ? 4
                                        : length < 0x1000000 ? 5
                                                             : 6);
    ketra::Extensions extensions;
    extensions.set(ketra::SubjectAltName{{ketra::otherName({1, 2, 3}, encoding)}}, false);
    EXPECT_EQ(std::get<ketra::OtherName>(extensions.get<ketra::SubjectAltName>()->names[0]).value, encoding);
  }
}

TEST(FaceNames, OneBadNameHidesNoOther) {
  const std::string good = golden("generalName/dNSName");
  struct Case {
    std::string member;
    uint32_t code;
  };
  const Case cases[] = {
      {"8A0161", AsnError_Component},        // no kind of name
      {"88062A9080808000", AsnError_Range},  // an arc beyond 32 bits
      {"A40530033101FF", AsnError_Truncated},
      {"A50DA0041E020041A1050C03FFFFFF", X509DirStrError_Characters},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.member);
    const ketra::Extensions extensions = storing(good + c.member + good);
    EXPECT_EQ(codeOf([&] { extensions.get<ketra::SubjectAltName>(); }), c.code);
    const auto tolerant = extensions.get<ketra::TolerantSubjectAltName>();
    ASSERT_EQ(tolerant->names.size(), 3u);
    EXPECT_EQ(std::get<ketra::GeneralName>(tolerant->names[0]), ketra::dns("a.example"));
    EXPECT_EQ(std::get<ketra::GeneralName>(tolerant->names[2]), ketra::dns("a.example"));
    const auto &bad = std::get<ketra::UnreadableName>(tolerant->names[1]);
    EXPECT_EQ(bad.encoding, fromHex(c.member));
    EXPECT_EQ(bad.error.code(), c.code);
    EXPECT_FALSE(bad.error.trace().empty());
  }
}

TEST(FaceNames, ListsThatCannotBeWalked) {
  for (const char *value : {"", "0500", "3003820261", "30038201610000"}) {
    SCOPED_TRACE(value);
    ketra::Extensions extensions;
    extensions.set(kSubjectAltName, false, fromHex(value));
    EXPECT_NE(codeOf([&] { extensions.get<ketra::SubjectAltName>(); }), 0u);
    EXPECT_NE(codeOf([&] { extensions.get<ketra::TolerantSubjectAltName>(); }), 0u);
  }
  EXPECT_FALSE(ketra::Extensions().get<ketra::TolerantSubjectAltName>().has_value());
  EXPECT_TRUE(storing("").get<ketra::TolerantSubjectAltName>()->names.empty());
  EXPECT_TRUE(storing("").get<ketra::SubjectAltName>()->names.empty());
}

TEST(FaceNames, RefusedSetsStoreNothing) {
  ketra::Extensions extensions;
  const ketra::GeneralName refused[] = {
      ketra::otherName({}),        ketra::otherName({1, 2, 3}, ketra::Octets{0x04, 0x02, 0x00}),
      ketra::x400({0x05, 0x00}),   ketra::edi(ketra::DirectoryString::utf8("")),
      ketra::registeredId({9, 9}),
  };
  for (const ketra::GeneralName &name : refused) {
    SCOPED_TRACE(name.index());
    EXPECT_THROW(extensions.set(ketra::IssuerAltName{{ketra::dns("a"), name}}, false), ketra::Error);
  }
  EXPECT_EQ(codeOf([&] { extensions.set(ketra::CertificateIssuer{}); }), uint32_t{KetraError_CheckGenNamesEmpty});
  EXPECT_EQ(extensions.size(), 0u);
  extensions.set(ketra::CertificateIssuer{{ketra::directory(steve())}});
  EXPECT_TRUE(extensions.find<ketra::CertificateIssuer>()->critical);
  EXPECT_EQ(extensions.get<ketra::CertificateIssuer>()->names[0], ketra::directory(steve()));
}

TEST(FaceNames, Name) {
  const ketra::Name name = steve();
  EXPECT_EQ(name.text(), "serialNumber=7+CN=Steve,C=GB");
  EXPECT_EQ(ketra::Name::decode(name.encode()), name);
  EXPECT_EQ(ketra::Name().text(), "");
  EXPECT_NE(ketra::Name(), name);

  const ketra::Name other =
      ketra::Name()
          .add({{ketra::attribute::countryName, "gb"}})
          .add({{ketra::attribute::serialNumber, "7"}, {ketra::attribute::commonName, " STEVE "}});
  EXPECT_NE(other, name);
  EXPECT_TRUE(other.matches(name));
  EXPECT_FALSE(other.matches(ketra::Name()));

  ketra::Name longName;
  longName.add({{ketra::attribute::organizationName, std::string(500, 'x') + ", \xc3\xa4"}});
  EXPECT_EQ(longName.text(), "O=" + std::string(500, 'x') + "\\, \xc3\xa4");
  const ketra::Name before = longName;
  EXPECT_THROW(longName.add({}), ketra::Error);
  EXPECT_THROW(longName.add({{ketra::attribute::countryName, "*"}}), ketra::Error);
  EXPECT_THROW(longName.add({{ketra::attribute::emailAddress, "\xc3\xa4@b"}}), ketra::Error);
  EXPECT_EQ(longName, before);
  EXPECT_THROW(ketra::Name::decode(fromHex("3002310000")), ketra::Error);
}

TEST(FaceNames, DirectoryStringText) {
  struct Case {
    uint32_t choice;
    const char *octets;
    const char *text;  // null: no characters
  };
  const Case cases[] = {
      {X509DirStr_TeletexString, "41E4", "A\xc3\xa4"},
      {X509DirStr_PrintableString, "4142", "AB"},
      {X509DirStr_BmpString, "00410416", "A\xd0\x96"},
      {X509DirStr_BmpString, "004104", nullptr},
      {X509DirStr_UniversalString, "0001F600", "\xf0\x9f\x98\x80"},
      {X509DirStr_UniversalString, "00110000", nullptr},
      {X509DirStr_Utf8String, "C3A4", "\xc3\xa4"},
      {X509DirStr_Utf8String, "C3", nullptr},
      {X509DirStr_Utf8String, "", ""},
      {6, "41", nullptr},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.octets);
    const ketra::DirectoryString string{c.choice, fromHex(c.octets)};
    if (c.text != nullptr) {
      EXPECT_EQ(string.text(), c.text);
    } else {
      EXPECT_THROW(string.text(), ketra::Error);
    }
  }
  for (const std::size_t length : {119u, 120u, 121u, 1000u}) {  // around the size of the first attempt
    EXPECT_EQ(ketra::DirectoryString::utf8(std::string(length, 'x')).text(), std::string(length, 'x'));
  }
}

TEST(FaceNames, IpAddress) {
  for (const char *text : {"192.0.2.7", "2001:db8::7", "192.0.2.0/24", "2001:db8::/32", "192.0.2.0/255.0.255.0"}) {
    EXPECT_EQ(ketra::IpAddress::parse(text).text(), text);
  }
  EXPECT_THROW(ketra::IpAddress::parse("192.0.2"), ketra::Error);
  EXPECT_THROW(ketra::IpAddress::parse(std::string("192.0.2.7\0", 10)), ketra::Error);
  EXPECT_THROW(ketra::IpAddress{ketra::Octets(5)}.text(), ketra::Error);
}

// Each request to the system on the C++ side fails in turn. That nothing leaks, the leak checker of the sanitizer sees.
TEST(FaceNames, BadAlloc) {
  std::vector<ketra::GeneralName> names;
  for (const Kind &kind : nineKinds()) names.push_back(kind.value);
  int refused = 0;
  for (bool isDone = false; !isDone;) {
    ketra::Extensions extensions;
    extensions.set(ketra::SubjectAltName{{ketra::dns("before")}}, false);
    allocationsLeft = refused;
    bool isSet = false;
    try {
      extensions.set(ketra::SubjectAltName{names}, false);
      isSet = true;
      extensions.get<ketra::SubjectAltName>();
      extensions.get<ketra::TolerantSubjectAltName>();
      isDone = true;
    } catch (const std::bad_alloc &) {
      ++refused;
    }
    allocationsLeft = -1;
    const auto read = extensions.get<ketra::SubjectAltName>();
    EXPECT_EQ(read->names, isSet ? names : std::vector<ketra::GeneralName>{ketra::dns("before")});
  }
  EXPECT_GT(refused, 20);
}

}  // namespace
