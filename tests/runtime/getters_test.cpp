// Reading elements, copying and checking values.

#include "runtime/schema_rows.h"
#include "support/support.h"

namespace ketra::test {
namespace {

TEST(Elements, ValueFieldsPointIntoTheEncoding) {
  Err err;
  const Exact good(fromHex("30 12 A0 05 A4 03 02 01 09 81 01 FF 02 02 01 00 24 80 00 00"));
  Work decoded(type("Point"), good.data());
  ASSERT_EQ(decoded.decode(err), 0) << err.text();
  const auto field = [&](const char *path) {
    const uint8_t *address = nullptr;
    uint32_t length = 0;
    if (AsnCalAddressOfValFld(decoded.object, decoded.value, path, &address, &length, nullptr) != 0)
      return std::string("error");
    if (length == ASN_ABSENT_LENGTH) return std::string("absent");
    return std::to_string(address - good.data().octets) + ": " + toHex(address, length);
  };
  EXPECT_EQ(field("name/wrapped"), "6: 02 01 09");
  EXPECT_EQ(field("name"), "6: 02 01 09");
  EXPECT_EQ(field("flag"), "11: FF");
  EXPECT_EQ(field("number"), "14: 01 00");
  EXPECT_EQ(field("rest"), "16: 24 80 00 00");
  EXPECT_EQ(field("name/dns"), "absent");
  const Exact indefinite(fromHex("30 80 02 01 05 00 00"));
  Work list(type("Ints"), indefinite.data());
  ASSERT_EQ(list.decode(), 0);
  const uint8_t *content = nullptr;
  uint32_t contentLength = 0;
  ASSERT_EQ(AsnCalAddressOfValFld(list.object, list.value, "/", &content, &contentLength, nullptr), 0);
  EXPECT_EQ(toHex(content, contentLength), "02 01 05") << "without the end-of-contents octets";

  const auto encoding = [&](const char *path, bool der) {
    uint32_t length = 0;
    EXPECT_EQ(AsnCalLengthOfValFld(decoded.object, decoded.value, path, &length, nullptr), 0);
    Octets octets(length);
    AsnBuffer buffer{octets.data(), 0};
    const auto get = der ? AsnGetEncodedDataDER : AsnGetEncodedDataBER;
    return codeOf(get, decoded.object, decoded.value, path, &buffer) == 0 ? toHex(octets) : "error";
  };
  EXPECT_EQ(encoding("name/wrapped", true), "02 01 09");
  EXPECT_EQ(encoding("name", true), "A4 03 02 01 09");
  EXPECT_EQ(encoding("number", true), "02 02 01 00");
  EXPECT_EQ(encoding("rest", false), "24 80 00 00");
  EXPECT_EQ(encoding("rest", true), "error") << "not DER";

  const Exact segments(fromHex("24 03 04 01 AA"));
  Work string(type("Oct"), segments.data());
  ASSERT_EQ(string.decode(), 0);
  EXPECT_EQ(AsnCalAddressOfValFld(string.object, string.value, "/", &content, &contentLength, nullptr), -1);
}

// An indefinite form of 65536 octets ends with two octets, in DER its length takes four: what was built has to fit in
// either rule. What lies deeper than a walk goes is written all the same.
TEST(Getters, BuiltEncodingsFit) {
  const auto get = [](const char *path, const Octets &open) {
    const Exact exact(open);
    const AsnEncodedData encoding = exact.data();
    Work work(type("Point"));
    uint32_t length = 0;
    EXPECT_EQ(AsnSetEncodedDataBER(work.object, work.value, path, &encoding, nullptr), 0);
    EXPECT_EQ(AsnCalLengthOfValFld(work.object, work.value, "name", &length, nullptr), 0);
    const Exact room{Octets(length)};
    AsnBuffer buffer{const_cast<uint8_t *>(room.data().octets), 0};
    EXPECT_EQ(AsnGetEncodedDataDER(work.object, work.value, "name", &buffer, nullptr), 0);
    EXPECT_LE(buffer.length, length);
    return buffer.length;
  };
  Octets large = fromHex("30 80 04 83 01 00 00");
  large.resize(large.size() + 65536);
  large.insert(large.end(), {0, 0});
  EXPECT_EQ(get("name/wrapped", large), 65536u + 5 + 5 + 5);
  Octets deep = fromHex("05 00");
  for (int level = 0; level < ASN_MAX_NESTING; ++level) {
    const auto size = static_cast<uint8_t>(deep.size());
    deep.insert(deep.begin(), {0x30, size});
    if (size > 0x7F) deep.insert(deep.begin() + 1, 0x81);
  }
  EXPECT_EQ(get("name/wrapped", deep), deep.size() + 3);
}

TEST(Getters, Ranges) {
  const Pool pool;
  const auto number = [](Work &work) {
    int32_t read = 0;
    return codeOf(AsnGetIntBER, work.object, work.value, "/", &read);
  };
  const auto identifier = [&](Work &work) {
    Objid read{};
    Objid pooled{};
    const uint32_t code = codeOf(AsnGetObjidBER, work.object, work.value, "/", &read);
    const bool isRead = AsnMUtilGetObjidBER(pool, work.object, work.value, "/", &pooled, nullptr) == 0;
    EXPECT_EQ(isRead, code == 0 || pooled.count > 128) << "a pool has room for any number of arcs";
    return code;
  };
  const auto time = [&](Work &work) {
    Gtime read{};
    return codeOf(AsnMUtilGetGtimeBER, pool, work.object, work.value, "/", &read);
  };
  const auto code = [](const AsnType *schema, const Octets &octets, const auto &get) {
    const Exact input(octets);
    Work work(schema, input.data());
    return work.decode() == 0 ? get(work) : uint32_t{AsnError_Time};
  };
  for (const auto &[hex, expected] : {std::pair{"02 04 7F FF FF FF", 0u}, {"02 05 01 00 00 00 00", AsnError_Range}}) {
    EXPECT_EQ(code(type("Int"), fromHex(hex), number), expected) << hex;
  }
  for (const auto &[hex, expected] : {std::pair{"06 07 88 37 8F FF FF FF 7F", 0u},
                                      {"06 83 00 00 7F+2A*127", 0u},
                                      {"06 83 00 00 80+2A*128", AsnError_Range},  // one arc too many
                                      {"06 07 55 1D 90 80 80 80 25", AsnError_Range},
                                      {"06 0A 69 83 CC 93 80 A8 98 CC A8 07", AsnError_Range}}) {
    EXPECT_EQ(code(type("Oid"), fromHex(hex), identifier), expected) << hex;
  }
  // clang-format off
  const std::pair<uint32_t, std::vector<std::string_view>> times[] = {
      {0, {"20240101000000Z", "2024010100Z", "202401010000.5Z", "2024010100,5Z", "20240101000000+0100",
           "20240101000000.123456000Z", "2024010100.000000005Z"}},
      {AsnError_Range, {"20240101000000", "20240101000060Z", "20240101240000Z", "20240101000000.1234567Z",
                        "2024010100.0000000001Z", "00000101000000+0001", "99991231235959-0001"}},
      {AsnError_Time, {"20241301000000Z", "20230229000000Z", "20240101250000Z", "20240101000000.Z", "20240101000000ZZ",
                       "2024010100000Z", "20240101000000+01000", "20240101000000 "}}};
  // clang-format on
  for (const auto &[expected, texts] : times) {
    for (const std::string_view text : texts) {
      EXPECT_EQ(code(type("Time"), tlv(0x18, {text.begin(), text.end()}), time), expected) << text;
    }
  }
}

TEST(Getters, Absence) {
  const Pool pool;
  const Exact input(fromHex("30 03 02 01 01"));
  Work work(type("Point"), input.data());
  ASSERT_EQ(work.decode(), 0);
  AsnBoolOpt flag{7, 7};
  EXPECT_EQ(AsnGetOptBoolBER(work.object, work.value, "flag", &flag, nullptr), 0);
  EXPECT_EQ(flag.value, 0);
  EXPECT_EQ(flag.option, 0);
  AsnEncodedDataOpt rest{{reinterpret_cast<const uint8_t *>("x"), 1}, 1};
  EXPECT_EQ(AsnMUtilGetEncodedDataOptBER(pool, work.object, work.value, "rest", &rest, nullptr), 0);
  EXPECT_TRUE(rest.value.octets == nullptr && rest.value.length == 0 && rest.option == 0);
  Objid objid{};
  EXPECT_EQ(codeOf(AsnMUtilGetObjidBER, pool, work.object, work.value, "number", &objid), uint32_t{AsnError_Kind});
}

// What the DER readers accept, the BER readers accept with the same value; an element that is absent, or whose lengths
// are not DER, tells the forms apart.
TEST(Getters, EveryForm) {
  const Pool pool;
  const std::tuple<const char *, uint32_t, uint32_t> rows[] = {
      {"04 02 AA BB", 0, 0},
      {"04 81 02 AA BB", AsnError_NotDer, AsnError_NotDer},
      {"24 04 04 02 AA BB", AsnError_NotDer, 0},  // of an open type only the lengths are looked at
  };
  for (const auto &[hex, asString, asOpen] : rows) {
    const Exact input(fromHex(hex));
    Work octets(type("Oct"), input.data());
    Work any(type("Any"), input.data());
    ASSERT_EQ(octets.decode() + any.decode(), 0);
    AsnOct read{};
    AsnOctOpt optional{};
    AsnEncodedDataOpt open{};
    EXPECT_EQ(codeOf(AsnMUtilGetOctDER, pool, octets.object, octets.value, "/", &read), asString);
    EXPECT_EQ(codeOf(AsnMUtilGetOctBER, pool, octets.object, octets.value, "/", &read), 0u);
    EXPECT_EQ(codeOf(AsnMUtilGetOctOptBER, pool, octets.object, octets.value, "/", &optional), 0u);
    EXPECT_EQ(codeOf(AsnMUtilGetEncodedDataOptDER, pool, any.object, any.value, "/", &open), asOpen);
    EXPECT_EQ(codeOf(AsnMUtilGetEncodedDataOptBER, pool, any.object, any.value, "/", &open), 0u);
    EXPECT_EQ(toHex(read.octets, read.length) + " " + toHex(optional.value.octets, optional.value.length) + " " +
                  toHex(open.value),
              std::string("AA BB AA BB ") + hex);
    EXPECT_EQ(optional.option + open.option, 2);
  }
  for (const char *hex : {"06 03 55 1D 13", "06 81 03 55 1D 13"}) {
    const Exact input(fromHex(hex));
    Work work(type("Oid"), input.data());
    ASSERT_EQ(work.decode(), 0);
    Objid read{};
    EXPECT_EQ(AsnMUtilGetObjidDER(pool, work.object, work.value, "/", &read, nullptr), hex[4] == '3' ? 0 : -1);
    EXPECT_EQ(AsnMUtilGetObjidConstBER(pool, work.object, work.value, "/", &read, nullptr), 0);
    EXPECT_EQ(std::vector(read.arcs, read.arcs + read.count), (std::vector<uint32_t>{2, 5, 29, 19}));
  }
  GtimeOpt time{{1, 1}, 1};
  Work period(type("Period"));
  EXPECT_EQ(AsnMUtilGetGtimeOptBER(pool, period.object, period.value, "from", &time, nullptr), 0);
  EXPECT_TRUE(time.option == 0 && time.value.high == 0 && time.value.low == 0);
  const Gtime now{14, 5};
  ASSERT_EQ(AsnSetGtimeDER(period.object, period.value, "from", &now, nullptr), 0);
  EXPECT_EQ(AsnMUtilGetGtimeOptBER(pool, period.object, period.value, "from", &time, nullptr), 0);
  EXPECT_TRUE(time.option == 1 && time.value.high == 14 && time.value.low == 5);
}

// Copies are deep; freeing one empties the field and gives its memory back.
TEST(MemoryUtilities, CopyAndFree) {
  const Pool pool;
  const uint8_t octets[] = {0x04, 0x01, 0xAA};
  const uint32_t arcs[] = {2, 5, 29};
  const auto check = [&](auto copy, auto free, const auto &source) {
    auto copied = source;
    EXPECT_EQ(codeOf(copy, pool, &copied, &source), 0u);
    EXPECT_EQ(usage(pool).second, 1u);
    EXPECT_EQ(codeOf(free, pool, &copied), 0u);
    EXPECT_EQ(usage(pool).second, 0u);
    EXPECT_EQ(codeOf(free, pool, &copied), 0u) << "nothing is left to free";
    EXPECT_EQ(codeOf(copy, nullptr, &copied, &source), uint32_t{AsnMUtilError_NullParameter});
    EXPECT_NE(codeOf(free, pool, nullptr), 0u);
  };
  check(AsnMUtilCopyOctBER, AsnMUtilFreeOct, AsnOct{octets, 3});
  check(AsnMUtilCopyObjidBER, AsnMUtilFreeObjid, Objid{arcs, 3});
  check(AsnMUtilCopyEncodedDataBER, AsnMUtilFreeEncodedData, AsnEncodedData{octets, 3});
  check(AsnMUtilCopyEncodedDataDER, AsnMUtilFreeEncodedData, AsnEncodedData{octets, 3});
  check(AsnMUtilCopyEncodedDataOptBER, AsnMUtilFreeEncodedDataOpt, AsnEncodedDataOpt{{octets, 3}, 1});
  AsnEncodedDataOpt copied{{octets, 3}, 1};
  const AsnEncodedDataOpt absent{{octets, 3}, 2};
  EXPECT_EQ(AsnMUtilCopyEncodedDataOptBER(pool, &copied, &absent, nullptr), 0);
  EXPECT_TRUE(copied.value.octets == nullptr && copied.option == 0) << "only 1 is present";
  const Exact nested(fromHex("30 04 04 81 01 AA"));
  const AsnEncodedData none{nullptr, 0};
  const AsnEncodedData ber = nested.data();
  AsnEncodedData copy{};
  EXPECT_EQ(AsnMUtilCopyEncodedDataDER(pool, &copy, &none, nullptr), -1);
  EXPECT_EQ(AsnMUtilCopyEncodedDataDER(pool, &copy, &ber, nullptr), -1) << "DER looks inside";
  EXPECT_EQ(AsnMUtilCopyEncodedDataBER(pool, &copy, &ber, nullptr), 0);
  EXPECT_EQ(toHex(copy), "30 04 04 81 01 AA");
}

TEST(Checks, FlagsAndPointers) {
  const uint8_t octet = 0;
  const uint32_t arcs[] = {2, 5};
  const uint32_t badArcs[] = {3, 5};
  const auto passes = [](auto check, const auto &value) { return codeOf(check, &value) == 0; };
  const auto option = [](auto check, const auto &value) { return codeOf(check, &value) == AsnCheckError_Option; };
  EXPECT_TRUE(passes(AsnCheckOctBER, AsnOct{nullptr, 0}));
  EXPECT_FALSE(passes(AsnCheckOctBER, AsnOct{nullptr, 1}));
  EXPECT_FALSE(passes(AsnCheckBitBER, AsnBit{nullptr, 1}));
  EXPECT_TRUE(passes(AsnCheckObjidBER, Objid{arcs, 2}));
  EXPECT_FALSE(passes(AsnCheckObjidBER, Objid{arcs, 1}));
  EXPECT_FALSE(passes(AsnCheckObjidBER, Objid{badArcs, 2}));
  EXPECT_TRUE(passes(AsnCheckIntOptBER, AsnIntOpt{-1, 1}));
  EXPECT_TRUE(passes(AsnCheckBoolOptBER, AsnBoolOpt{2, 0})) << "absent: not looked at";
  EXPECT_FALSE(passes(AsnCheckBoolOptBER, AsnBoolOpt{2, 1}));
  EXPECT_TRUE(passes(AsnCheckOctOptBER, AsnOctOpt{{nullptr, 1}, 0}));
  EXPECT_TRUE(passes(AsnCheckGtimeOptBER, GtimeOpt{{0, 0}, 1}));
  EXPECT_FALSE(passes(AsnCheckGtimeBER, Gtime{-1, 0}));
  EXPECT_FALSE(passes(AsnCheckEncodedDataBER, AsnEncodedData{&octet, 1}));
  for (const int32_t flag : {2, -1}) {
    EXPECT_TRUE(option(AsnCheckIntOptBER, AsnIntOpt{0, flag}));
    EXPECT_TRUE(option(AsnCheckBitOptBER, AsnBitOpt{{&octet, 1}, flag}));
    EXPECT_TRUE(option(AsnCheckEncodedDataOptBER, AsnEncodedDataOpt{{&octet, 1}, flag}));
  }
}

}  // namespace
}  // namespace ketra::test
