// Values that extensions share in the C++ face, and their text: integers, qualifiers, times, strings, names.
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "ketra/face/face.hpp"
#include "support/octets.h"

namespace {

using ketra::test::fromHex;

TEST(FaceValues, Integers) {
  struct Case {
    const char *content, *hex, *text;
  };
  const Case cases[] = {
      {"00", "00", "0"},
      {"7F", "7f", "127"},
      {"0080", "80", "128"},
      {"80", "-80", "-128"},
      {"FF", "-01", "-1"},
      {"FF7F", "-81", "-129"},
      {"8000000000000000", "-8000000000000000", "-9223372036854775808"},
      {"008000000000000000", "8000000000000000", "0x8000000000000000"},
      {"FF7FFFFFFFFFFFFFFF", "-8000000000000001", "-0x8000000000000001"},
  };
  for (const Case &c : cases) {
    const auto integer = ketra::Integer::ofContent(fromHex(c.content));
    EXPECT_EQ(integer.hex(), c.hex);
    EXPECT_EQ(integer.text(), c.text);
    EXPECT_EQ(ketra::Integer::fromHex(c.hex), integer) << c.hex;
    EXPECT_EQ(ketra::Integer(integer.number().value_or(0)) == integer, integer.number().has_value());
  }
  EXPECT_EQ(ketra::Integer::fromHex("-0"), ketra::Integer());
  EXPECT_EQ(ketra::Integer::fromHex("00aBc").content(), fromHex("0ABC"));
  EXPECT_EQ(ketra::Integer::ofUnsigned(fromHex("0000FF")).content(), fromHex("00FF"));
  EXPECT_EQ(ketra::Integer::ofUnsigned(ketra::Octets{}), ketra::Integer());
  for (const char *text : {"", "-", "1g", "0x1", " 1"}) EXPECT_THROW(ketra::Integer::fromHex(text), ketra::Error);
  for (const char *content : {"", "007F", "FF80"}) {
    EXPECT_THROW(ketra::Integer::ofContent(fromHex(content)), ketra::Error) << content;
  }
}

TEST(FaceValues, Qualifiers) {
  EXPECT_EQ(ketra::PolicyQualifier::ofCps("a:/").value, fromHex("16 03 61 3A 2F"));
  EXPECT_EQ(ketra::PolicyQualifier::ofNotice({{{"A", {1}}}, "B"}).value,
            fromHex("30 0D 30 08 0C 01 41 30 03 02 01 01 0C 01 42"));
  const ketra::UserNotice full{{{"\xc3\xa4", {1, -1, ketra::Integer::fromHex("ff0102030405060708090a")}}}, "text"};
  for (const ketra::UserNotice &notice : {full, ketra::UserNotice{{}, "text"}, ketra::UserNotice{}}) {
    EXPECT_EQ(ketra::PolicyQualifier::ofNotice(notice).notice(), notice);
  }
  EXPECT_FALSE((ketra::PolicyQualifier{ketra::qualifier::cps, fromHex("16 02 61")}.cps().has_value()));
  EXPECT_FALSE((ketra::PolicyQualifier{{1, 2, 3}, fromHex("16 01 61")}.cps().has_value()));
}

TEST(FaceValues, Times) {
  const std::pair<const char *, int64_t> cases[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"1969-12-31T23:59:59.999999Z", -1},
      {"0000-01-01T00:00:00Z", -62'167'219'200'000'000},
      {"9999-12-31T23:59:59.999999Z", 253'402'300'799'999'999},
  };
  for (const auto &[text, sinceEpoch] : cases) {
    const ketra::Time time{std::chrono::microseconds(sinceEpoch)};
    EXPECT_EQ(ketra::timeText(time), text);
    EXPECT_EQ(ketra::parseTime(text), time);
  }
  ketra::Extensions extensions;
  for (const int64_t outside : {-62'167'219'200'000'001, 253'402'300'800'000'000, INT64_MIN, INT64_MAX}) {
    EXPECT_THROW(extensions.set(ketra::InvalidityDate{ketra::Time{std::chrono::microseconds(outside)}}), ketra::Error);
  }
}

// An embedded NUL does not cut them off.
TEST(FaceValues, TextsThatAreNone) {
  EXPECT_THROW(ketra::ObjectIdentifier::parse("9.9"), ketra::Error);
  EXPECT_THROW(ketra::ObjectIdentifier::parse(std::string("2.5.29.19\0.1", 12)), ketra::Error);
  EXPECT_THROW(ketra::parseTime(std::string("2026-01-31T23:59:59Z\0", 21)), ketra::Error);
  EXPECT_THROW(ketra::IpAddress::parse("192.0.2"), ketra::Error);
  EXPECT_THROW(ketra::IpAddress::parse(std::string("192.0.2.7\0", 10)), ketra::Error);
  EXPECT_THROW(ketra::IpAddress{ketra::Octets(5)}.text(), ketra::Error);
  EXPECT_EQ(ketra::IpAddress::parse("2001:db8::/32").text(), "2001:db8::/32");
}

TEST(FaceValues, Strings) {
  // At every length of the length.
  const std::pair<std::size_t, std::size_t> lengths[] = {{0, 2},     {0x7F, 2},   {0x80, 3},    {0xFF, 3},
                                                         {0x100, 4}, {0xFFFF, 4}, {0x10000, 5}, {0x1000000, 6}};
  for (const auto &[length, header] : lengths) {
    const std::string text(length, 'x');
    EXPECT_EQ(ketra::utf8String(text).size(), header + length);
    EXPECT_TRUE(ketra::stringText(ketra::utf8String(text)) == text) << length;
  }
  for (const std::size_t length : {119u, 120u, 121u, 1000u}) {  // around the size of the first attempt
    EXPECT_EQ(ketra::DirectoryString::utf8(std::string(length, 'x')).text(), std::string(length, 'x'));
  }
  EXPECT_EQ((ketra::DirectoryString{X509DirStr_BmpString, fromHex("00410416")}.text()), "A\xd0\x96");
  EXPECT_THROW((ketra::DirectoryString{X509DirStr_BmpString, fromHex("004104")}.text()), ketra::Error);
  EXPECT_THROW((ketra::DirectoryString{6, fromHex("41")}.text()), ketra::Error);
}

TEST(FaceValues, Names) {
  using namespace ketra::attribute;
  ketra::Name name;
  name.add({{countryName, "GB"}}).add({{commonName, "Steve"}, {serialNumber, "7"}});
  EXPECT_EQ(name.encode(), fromHex("30 27 31 0B 30 09 06 03 55 04 06 13 02 47 42 31 18 30 08 06 03 55 04 05 13 01 37 "
                                   "30 0C 06 03 55 04 03 0C 05 53 74 65 76 65"));
  EXPECT_EQ(name.text(), "serialNumber=7+CN=Steve,C=GB");
  EXPECT_EQ(ketra::Name::decode(name.encode()), name);
  ketra::Name other;
  other.add({{countryName, "gb"}}).add({{serialNumber, "7"}, {commonName, " STEVE "}});
  EXPECT_TRUE(other != name && other.matches(name) && !other.matches(ketra::Name()));

  other = ketra::Name().add({{organizationName, std::string(500, 'x') + ", \xc3\xa4"}});
  const ketra::Name before = other;
  EXPECT_EQ(other.text(), "O=" + std::string(500, 'x') + "\\, \xc3\xa4");
  EXPECT_THROW(other.add({{countryName, "*"}}), ketra::Error);
  EXPECT_EQ(other, before);
  EXPECT_THROW(ketra::Name::decode(fromHex("3002310000")), ketra::Error);

  const auto relative = ketra::RelativeName::of({{commonName, "CRL, 1"}, {countryName, "GB"}});
  EXPECT_EQ(relative.text(), "C=GB+CN=CRL\\, 1");
  EXPECT_EQ(relative.encode(),
            fromHex("31 1A 30 09 06 03 55 04 06 13 02 47 42 30 0D 06 03 55 04 03 0C 06 43 52 4C 2C 20 31"));
  EXPECT_THROW(ketra::RelativeName::of({}), ketra::Error);
  EXPECT_THROW((ketra::RelativeName{{{{1, 2}, {0x05}}}}.text()), ketra::Error);
}

}  // namespace
