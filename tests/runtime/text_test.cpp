// Times, identifiers and error traces as text.

#include "support/support.h"

namespace ketra::test {
namespace {

TEST(Times, UnixAndText) {
  struct Row {
    int64_t seconds;
    uint32_t microseconds;
    const char *text;
  };
  for (const Row &row :
       {Row{0, 0, "1970-01-01T00:00:00Z"}, Row{951782400, 500000, "2000-02-29T00:00:00.5Z"},
        Row{-62167219200, 0, "0000-01-01T00:00:00Z"}, Row{253402300799, 999999, "9999-12-31T23:59:59.999999Z"},
        Row{-1, 1, "1969-12-31T23:59:59.000001Z"}}) {
    Gtime time{};
    ASSERT_EQ(GtimeFromUnix(row.seconds, row.microseconds, &time, nullptr), 0) << row.text;
    char text[28];
    EXPECT_EQ(GtimeToText(&time, text, sizeof text - 1, nullptr), -1);
    EXPECT_EQ(GtimeToText(&time, text, sizeof text, nullptr), 0);
    EXPECT_STREQ(text, row.text);
    Gtime parsed{};
    EXPECT_EQ(GtimeFromText(row.text, &parsed, nullptr), 0);
    int64_t seconds = 0;
    uint32_t microseconds = 0;
    EXPECT_EQ(GtimeToUnix(&parsed, &seconds, &microseconds, nullptr), 0);
    EXPECT_EQ(seconds, row.seconds);
    EXPECT_EQ(microseconds, row.microseconds);
  }
  Gtime time{};
  EXPECT_EQ(GtimeFromUnix(253402300800, 0, &time, nullptr), -1);
  EXPECT_EQ(GtimeFromUnix(INT64_MAX, 0, &time, nullptr), -1);
  EXPECT_EQ(GtimeFromUnix(0, 1000000, &time, nullptr), -1);
  for (const char *bad : {"", "2024-01-01", "2024-01-01T00:00:00", "2024-01-01T24:00:00Z", "2024-1-1T00:00:00Z",
                          "2024-01-01T00:00:00+01:"}) {
    EXPECT_EQ(GtimeFromText(bad, &time, nullptr), -1) << bad;
  }
}

TEST(Objids, Text) {
  const Pool pool;
  for (const char *bad : {"", "1", "1.", ".1", "1..2", "3.1", "1.40", "2.4294967296", "01.2", "1.2x", "-1.2"}) {
    Objid objid{};
    EXPECT_EQ(ObjidFromText(pool, bad, &objid, nullptr), -1) << bad;
  }
  EXPECT_EQ(usage(pool).second, 0u);
  const uint32_t arcs[] = {2, 5, 29};
  const Objid objid{arcs, 3};
  char text[7];
  uint32_t length = 0;
  EXPECT_EQ(ObjidToText(&objid, text, 6, &length, nullptr), -1);
  EXPECT_EQ(length, 6u);
  EXPECT_EQ(ObjidToText(&objid, text, 7, &length, nullptr), 0);
  EXPECT_STREQ(text, "2.5.29");
}

TEST(Errors, BlockKeepsTheFirstEntriesAndCountsTheRest) {
  Err err;
  const uint32_t value = 0x01020304;
  const std::string longMessage(300, 'm');
  for (int i = 0; i < 30; ++i) AsnErrorInfo("M", "f", longMessage.c_str(), err, &value, 4);
  EXPECT_EQ(err.block.count, uint32_t{ASN_TRACE_ENTRIES});
  EXPECT_EQ(err.block.dropped, 6u);
  EXPECT_EQ(err.trace()[0], "f: " + std::string(127, 'm'));
  AsnErrorReset(err);
  AsnErrorInfo("M", "f", "line\nbreak \xC3 \\", err, nullptr, 0);
  err.block.code = 0x12345678;
  EXPECT_EQ(err.text(), "error 0x12345678\n  M f: line\\x0Abreak \\xC3 \\x5C");
  AsnErrorReset(err);
  const int32_t negative = -2;
  const X509DirStr latin{X509DirStr_Utf8String, reinterpret_cast<const uint8_t *>("\xE9xyz"), 4};
  AsnErrorInfo("M", "f", "unsigned", err, &value, 4);
  AsnErrorInfo("M", "f", "signed", err, &negative, 4);
  AsnErrorInfo("M", "f", "structure", err, &latin, sizeof latin);
  X509MUtilGetCheckLengthOfDirStr(&latin, 10, X509LengthOf_PartyName, err);
  EXPECT_EQ(err.text().substr(err.text().find("\n")),
            "\n  M f: unsigned [16909060]\n  M f: signed [-2 (0xFFFFFFFE)]\n  M f: structure\n"
            "  X509-MUTIL X509MUtilGetCheckLengthOfDirStr: partyName is no UTF-8 from octet 0 on [E9 78 79 7A]");
  char small[8];
  EXPECT_EQ(AsnErrorText(err, nullptr, 0, small, sizeof small), err.text().size());
  EXPECT_STREQ(small, "error 0");
  EXPECT_EQ(AsnErrorInfo("M", "f", "x", nullptr, nullptr, 0), 0);
}

}  // namespace
}  // namespace ketra::test
