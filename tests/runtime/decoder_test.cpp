#include <algorithm>

#include "runtime/schema_rows.h"
#include "support/support.h"

namespace ketra::test {
namespace {

struct Row {
  const char *name;
  const AsnType *type;
  const char *hex;
  const char *expected;  // the DER of what was read, or the code and message of the refusal
};

// What BER allows beyond DER is read and written as DER.
TEST(Decoder, ReadsEveryForm) {
  const Row rows[] = {
      {"true as 01", type("Bool"), "01 01 01", "01 01 FF"},
      {"long-form length", type("Int"), "02 81 01 05", "02 01 05"},
      {"length with leading zeros", type("Int"), "02 85 00 00 00 00 01 05", "02 01 05"},
      {"indefinite sequence", type("Ints"), "30 80 02 01 05 00 00", "30 03 02 01 05"},
      {"segmented octets", type("Oct"), "24 08 04 02 01 02 04 02 03 04", "04 04 01 02 03 04"},
      {"nested indefinite segments", type("Oct"), "24 80 24 80 04 01 01 00 00 04 01 02 00 00", "04 02 01 02"},
      {"no segments", type("Oct"), "24 00", "04 00"},
      {"segmented string", type("Ia5"), "36 05 04 01 61 04 00", "16 01 61"},
      {"segmented bits", type("Bits"), "23 09 03 02 00 AA 03 03 04 BB F7", "03 04 04 AA BB F0"},
      {"segmented bits, none", type("Bits"), "23 00", "03 01 00"},
      {"padding bits set", type("Bits"), "03 02 07 FF", "03 02 07 80"},
      {"segmented time", type("Time"), "38 13 04 08 32 30 32 36 30 31 33 31 04 07 32 33 35 39 35 39 5A", "time/plain"},
      {"segmented name behind a context tag", type("Name"), "A2 08 04 02 61 62 04 02 63 64", "82 04 61 62 63 64"},
      {"explicit, indefinite", type("Point"), "30 80 A0 80 82 01 61 00 00 02 01 01 00 00",
       "30 08 A0 03 82 01 61 02 01 01"},
      {"open type, indefinite inside", type("Any"), "30 80 30 80 04 00 00 00 02 01 01 00 00",
       "30 07 30 02 04 00 02 01 01"},
      {"open type, high tag number", type("Any"), "BF 87 68 80 9F 1F 81 01 AA 00 00", "BF 87 68 04 9F 1F 01 AA"},
      {"optional parts absent", type("Point"), "30 03 02 01 01", "30 03 02 01 01"},
      {"set members out of order", type("AnySet"), "31 06 02 01 05 02 01 02", "31 06 02 01 02 02 01 05"},
      {"integer as octets", type("IntString"), "02 09 00 FF FF FF FF FF FF FF FF", "02 09 00 FF FF FF FF FF FF FF FF"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    const Exact input(fromHex(row.hex));
    Work work(row.type, input.data());
    Err err;
    EXPECT_EQ(work.decode(err), 0) << err.text();
    const std::string expected = row.expected;
    EXPECT_EQ(work.encode(), expected.find('/') == std::string::npos ? expected : golden(expected));
  }
}

TEST(Decoder, RefusesWhatIsMalformed) {
  struct Bad {
    uint32_t code;
    const AsnType *type;
    const char *hex;
    const char *message;
  };
  const Bad rows[] = {
      {AsnError_Truncated, type("Int"), "", "the encoding ends where a value is needed at offset 0 (Int)"},
      {AsnError_Truncated, type("Int"), "02", "the encoding ends where a length is needed at offset 1 (Int)"},
      {AsnError_Truncated, type("Oct"), "04 84 FF FF FF FF AA",
       "a length of 4294967295 octets where 1 are left at offset 0 (Oct)"},
      {AsnError_Truncated, type("Oct"), "04 88 FF FF FF FF FF FF FF FF AA",
       "a length beyond 32 bits; 1 octets are left at offset 1 (Oct)"},
      {AsnError_Truncated, type("Oct"), "04 82 01", "the encoding ends inside a length of 2 octets at offset 1 (Oct)"},
      {AsnError_Truncated, type("Ints"), "30 04 02 03 01 02 05",
       "a length of 3 octets where 2 are left at offset 2 (Ints)"},
      {AsnError_Length, type("Ints"), "30 FF 01 01 FF", "reserved length octet 0xFF at offset 1 (Ints)"},
      {AsnError_Length, type("Oct"), "04 80 AA BB 00 00",
       "indefinite length of a primitive encoding at offset 1 (Oct)"},
      {AsnError_Trailing, type("Int"), "02 01 05 00", "1 octets after the end of the value at offset 3 (Int)"},
      {AsnError_EndOfContents, type("Ints"), "30 80 02 01 05",
       "the end-of-contents octets are missing at offset 5 (Ints/1)"},
      {AsnError_Truncated, type("Ints"), "30 80 02 01 05 00",
       "the encoding ends where a length is needed at offset 6 (Ints/1)"},
      {AsnError_EndOfContents, type("Ints"), "30 05 02 01 05 00 00",
       "end-of-contents octets where a value is needed at offset 5 (Ints/2)"},
      {AsnError_Component, type("Any"), "20 00", "0x20 is no tag of Any at offset 0 (Any)"},
      {AsnError_EndOfContents, type("Any"), "00 00",
       "end-of-contents octets where a value is needed at offset 0 (Any)"},
      {AsnError_Component, type("Ints"), "10 03 02 01 05", "0x10 is no tag of Ints, which has 0x30 at offset 0 (Ints)"},
      {AsnError_Component, type("Enum"), "02 01 01", "0x2 is no tag of Enum, which has 0xa at offset 0 (Enum)"},
      {AsnError_Component, type("Name"), "89 01 61", "0x89 is no tag of Name at offset 0 (Name)"},
      {AsnError_Tag, type("Any"), "9F 02 01 61", "tag number 2 in the form for high tag numbers at offset 1 (Any)"},
      {AsnError_Tag, type("Any"), "9F 1E 00", "tag number 30 in the form for high tag numbers at offset 1 (Any)"},
      {AsnError_Tag, type("Any"), "9F 80 21 00", "the tag number is padded at offset 1 (Any)"},
      {AsnError_Tag, type("Any"), "9F FF FF FF FF FF FF FF FF 7F 00",
       "the tag number exceeds 32 bits at offset 5 (Any)"},
      {AsnError_Boolean, type("Point"), "30 06 81 00 02 01 01 05",
       "BOOLEAN content is 0 octets at offset 4 (Point/flag)"},
      {AsnError_Integer, type("Ints"), "30 05 02 01 01 02 00", "INTEGER content is 0 octets at offset 7 (Ints/2)"},
      {AsnError_Integer, type("Int"), "02 02 00 01",
       "INTEGER content starts with a superfluous octet at offset 2 (Int)"},
      {AsnError_Integer, type("IntString"), "02 02 FF 80",
       "INTEGER content starts with a superfluous octet at offset 2 (IntString)"},
      {AsnError_Component, type("IntString"), "22 03 04 01 05",
       "0x22 is no tag of IntString, which has 0x2 at offset 0"},
      {AsnError_Objid, type("Oid"), "06 00", "OBJECT IDENTIFIER content is 0 octets at offset 2 (Oid)"},
      {AsnError_Objid, type("Oid"), "06 02 55 9D", "OBJECT IDENTIFIER ends inside an arc at offset 2 (Oid)"},
      {AsnError_Objid, type("Oid"), "06 03 55 80 25", "OBJECT IDENTIFIER with a padded arc at offset 3 (Oid)"},
      {AsnError_BitString, type("Bits"), "03 00", "BIT STRING content is 0 octets at offset 2 (Bits)"},
      {AsnError_BitString, type("Bits"), "03 01 07", "BIT STRING of 0 octets with 7 unused bits at offset 2 (Bits)"},
      {AsnError_BitString, type("Bits"), "03 02 08 00", "BIT STRING of 1 octets with 8 unused bits at offset 2 (Bits)"},
      {AsnError_BitString, type("Bits"), "23 08 03 02 04 F0 03 02 00 FF",
       "unused bits in a segment before the last at offset 8 (Bits)"},
      {AsnError_Segment, type("Oct"), "24 04 02 02 01 02",
       "0x2 is no tag of a segment, which has 0x4 at offset 2 (Oct)"},
      {AsnError_Time, type("Time"), "18 00", "malformed time: year at offset 2 (Time)"},
      {AsnError_Component, type("Point"), "30 05 A0 03 82 01 61", "component number is missing at offset 7 (Point)"},
      {AsnError_Component, type("Point"), "30 06 81 01 FF 81 01 FF",
       "0x81 is no tag of number, which has 0x2 at offset 5 (Point/number)"},
      {AsnError_Component, type("Chain"), "30 04 A0 00 A0 00",
       "component next is repeated or out of order at offset 4 (Chain)"},
      {AsnError_Component, type("Chain"), "30 02 A1 00", "0xa1 is the tag of no component at offset 2 (Chain)"},
      {AsnError_Component, type("Wrapped"), "30 0B A0 06 02 01 01 02 01 02 81 01 FF",
       "an EXPLICIT tag around more than one value at offset 7 (Wrapped/number)"},
      {AsnError_Component, type("Wrapped"), "30 05 A0 00 81 01 FF",
       "an EXPLICIT tag around no value at offset 4 (Wrapped/number)"},
      {AsnError_Nesting, type("Oct"), "24 80*100000", ""},
  };
  for (const Bad &row : rows) {
    SCOPED_TRACE(row.hex);
    const Exact input(fromHex(row.hex));
    Work work(row.type, input.data());
    Err err;
    EXPECT_EQ(work.decode(err), -1);
    EXPECT_EQ(err.code(), row.code) << err.text();
    ASSERT_EQ(err.block.count, 1u);
    EXPECT_EQ(err.trace()[0].find("AsnDecode: " + std::string(row.message)), 0u) << err.text();
    AsnValue element = nullptr;
    EXPECT_EQ(AsnGetElement(work.object, work.value, "/", &element, err), -1);
    EXPECT_EQ(err.code(), uint32_t{AsnError_State}) << "a value that was refused gives nothing away";
  }
}

// An open type at the end takes any one value, and no second.
TEST(Decoder, OpenTypeTakesOneValue) {
  const Exact one(fromHex("30 06 02 01 01 81 01 FF"));
  EXPECT_EQ(Work(type("Point"), one.data()).decode(), 0);
  const Exact two(fromHex("30 09 02 01 01 81 01 FF 05 00"));
  EXPECT_EQ(Work(type("Point"), two.data()).decode(), -1);
}

TEST(Decoder, RefusesEveryPrefix) {
  for (const auto &[name, hex] : goldenRows()) {
    const Octets whole = fromHex(hex);
    EXPECT_EQ(Work(type("Any"), Exact(whole).data()).decode(), 0) << name;
    for (std::size_t n = 0; n < whole.size(); ++n) {
      const Exact prefix(Octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)));
      EXPECT_EQ(Work(type("Any"), prefix.data()).decode(), -1) << name << " cut to " << n;
    }
  }
  const std::pair<const AsnType *, const char *> good[] = {
      {type("Point"), "30 0D A0 05 A4 03 02 01 09 81 01 FF 02 01 01"},
      {type("Point"), "30 80 A0 80 A4 80 24 80 04 01 61 00 00 00 00 00 00 02 01 01 30 80 00 00 00 00"},
      {type("Oct"), "24 80 24 80 04 01 01 00 00 04 01 02 00 00"},
      {type("Bits"), "23 08 03 02 00 AA 03 02 04 F0"},
      {type("Oid"), "06 81 03 55 1D 25"},
  };
  for (const auto &[schema, hex] : good) {
    const Octets whole = fromHex(hex);
    EXPECT_EQ(Work(schema, Exact(whole).data()).decode(), 0) << hex;
    for (std::size_t n = 0; n < whole.size(); ++n) {
      const Exact prefix(Octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n)));
      EXPECT_EQ(Work(schema, prefix.data()).decode(), -1) << hex << " cut to " << n;
    }
  }
}

// Nesting that the type follows is limited at a named depth; nesting inside an open type is not, nor does it recurse.
TEST(Decoder, Nesting) {
  const auto chain = [](unsigned levels) {
    Octets octets;
    for (unsigned i = 0; i < levels; ++i) octets.insert(octets.begin(), {0xA0, static_cast<uint8_t>(octets.size())});
    if (!octets.empty()) octets[0] = 0x30;
    return octets;
  };
  EXPECT_EQ(Work(type("Chain"), Exact(chain(ASN_MAX_NESTING - 1)).data()).decode(), 0);
  Err err;
  const Exact deeper(fromHex("30 80+A0 80*64+00 00*65"));
  EXPECT_EQ(Work(type("Chain"), deeper.data()).decode(err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Nesting});

  const Exact open(fromHex("30 80*100000+00 00*100000"));
  Work work(type("Any"), open.data());
  EXPECT_EQ(work.decode(), 0);
  EXPECT_NE(work.encode().find("nested deeper than 64 levels"), std::string::npos) << "DER has to look inside";
  EXPECT_EQ(work.encode(false).size(), std::size_t{400000} * 3 - 1) << "BER keeps the octets";
}

// Time grows with the members, not faster: ten times as many may take ten times as long, with room for noise.
TEST(Decoder, VisitsAMillionMembersInLinearTime) {
  const auto visit = [](uint32_t members) {
    const uint32_t content = members * 3;
    Octets list = {0x30,
                   0x84,
                   static_cast<uint8_t>(content >> 24),
                   static_cast<uint8_t>(content >> 16),
                   static_cast<uint8_t>(content >> 8),
                   static_cast<uint8_t>(content)};
    for (uint32_t i = 0; i < members; ++i) list.insert(list.end(), {0x02, 0x01, static_cast<uint8_t>(i % 100)});
    const Exact input(list);
    const clock_t start = clock();
    Work work(type("Ints"), input.data());
    EXPECT_EQ(work.decode(), 0);
    uint32_t count = 0;
    EXPECT_EQ(AsnCalCountOfSequence(work.object, work.value, "/", &count, nullptr), 0);
    EXPECT_EQ(count, members);
    uint64_t sum = 0;
    for (uint32_t i = 1; i <= members; ++i) {
      int32_t number = 0;
      EXPECT_EQ(AsnGetIntBER(work.object, work.value, std::to_string(i).c_str(), &number, nullptr), 0);
      sum += static_cast<uint32_t>(number);
    }
    EXPECT_EQ(sum, uint64_t{members} / 100 * 4950);
    return static_cast<double>(clock() - start);
  };
  const double hundredThousand = std::min({visit(100'000), visit(100'000), visit(100'000)});
  EXPECT_LT(visit(1'000'000), 30 * hundredThousand) << "a square would take a hundred times as long";
}

}  // namespace
}  // namespace ketra::test
