// Values that extensions share in the C++ face: integers, policy qualifiers, times.
#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "ketra.hpp"
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
  const auto cps = ketra::PolicyQualifier::ofCps("https://a.test/");
  EXPECT_EQ(cps.value, fromHex("16 0F 68 74 74 70 73 3A 2F 2F 61 2E 74 65 73 74 2F"));
  EXPECT_EQ(cps.cps(), "https://a.test/");
  EXPECT_FALSE(cps.notice().has_value());
  const ketra::UserNotice full{
      {{"\xc3\xa4", {1, -1, ketra::Integer::ofContent(fromHex("00FF0102030405060708090A0B0C0D0E0F101112"))}}}, "text"};
  for (const ketra::UserNotice &notice : {full, ketra::UserNotice{{}, "text"}, ketra::UserNotice{}}) {
    EXPECT_EQ(ketra::PolicyQualifier::ofNotice(notice).notice(), notice);
  }
  EXPECT_EQ(ketra::PolicyQualifier::ofNotice({{{"A", {1}}}, "B"}).value,
            fromHex("30 0D 30 08 0C 01 41 30 03 02 01 01 0C 01 42"));

  struct Case {
    bool isCps;
    const char *value, *text;  // null: malformed
  };
  const Case cases[] = {
      {true, "16 00", ""},
      {true, "36 06 16 01 61 16 01 62", nullptr},
      {true, "36 06 04 01 61 04 01 62", "ab"},
      {true, "0C 01 61", nullptr},
      {true, "16 02 61", nullptr},
      {false, "30 03 0C 01 61", "a"},
      {false, "30 03 16 01 61", "a"},
      {false, "30 03 1A 01 61", "a"},
      {false, "30 04 1E 02 04 16", "\xd0\x96"},
      {false, "30 03 1E 01 04", nullptr},
      {false, "30 06 1C 04 00 01 F6 00", "\xf0\x9f\x98\x80"},
      {false, "30 03 14 01 E4", "\xc3\xa4"},
      {false, "30 03 0C 01 E4", nullptr},
      {false, "30 03 02 01 05", nullptr},
      {false, "30 05 0C 01 61 05 00", nullptr},
      {false, "0C 01 61", nullptr},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.value);
    const ketra::ObjectIdentifier id = c.isCps ? ketra::ObjectIdentifier(ketra::qualifier::cps)
                                               : ketra::ObjectIdentifier(ketra::qualifier::userNotice);
    const ketra::PolicyQualifier qualifier{id, fromHex(c.value)};
    const auto notice = qualifier.notice();
    const auto text = c.isCps ? qualifier.cps() : notice ? notice->explicitText : std::nullopt;
    EXPECT_EQ(text, c.text != nullptr ? std::optional<std::string>(c.text) : std::nullopt);
  }
  EXPECT_FALSE((ketra::PolicyQualifier{ketra::qualifier::cps, {}}.cps().has_value()));
}

TEST(FaceValues, Times) {
  using std::chrono::microseconds;
  const std::pair<const char *, int64_t> cases[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"1969-12-31T23:59:59.999999Z", -1},
      {"1969-12-31T23:59:59.5Z", -500'000},
      {"2026-01-31T23:59:59.000001Z", 1'769'903'999'000'001},
      {"0000-01-01T00:00:00Z", -62'167'219'200'000'000},
      {"9999-12-31T23:59:59.999999Z", 253'402'300'799'999'999},
  };
  for (const auto &[text, sinceEpoch] : cases) {
    const ketra::Time time{microseconds(sinceEpoch)};
    EXPECT_EQ(ketra::timeText(time), text);
    EXPECT_EQ(ketra::parseTime(text), time);
    ketra::Extensions extensions;
    extensions.set(ketra::InvalidityDate{time});
    extensions.set(ketra::PrivateKeyUsagePeriod{time, {}});
    EXPECT_EQ(extensions.get<ketra::InvalidityDate>()->date, time);
    EXPECT_EQ(extensions.get<ketra::PrivateKeyUsagePeriod>(), (ketra::PrivateKeyUsagePeriod{time, {}}));
  }
  ketra::Extensions extensions;
  for (const int64_t outside : {-62'167'219'200'000'001, 253'402'300'800'000'000, INT64_MIN, INT64_MAX}) {
    EXPECT_THROW(extensions.set(ketra::InvalidityDate{ketra::Time{microseconds(outside)}}), ketra::Error);
  }
  EXPECT_EQ(ketra::parseTime("2026-01-31T23:59:59+01:00"), ketra::parseTime("2026-01-31T22:59:59Z"));
  EXPECT_THROW(ketra::parseTime(std::string("2026-01-31T23:59:59Z\0", 21)), ketra::Error);
}

}  // namespace
