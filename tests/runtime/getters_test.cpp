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
    Octets octets(length == ASN_ABSENT_LENGTH ? 0 : length);
    AsnBuffer buffer{octets.data(), 0};
    const auto get = der ? AsnGetEncodedDataDER : AsnGetEncodedDataBER;
    return get(decoded.object, decoded.value, path, &buffer, nullptr) == 0 ? toHex(octets) : "error";
  };
  EXPECT_EQ(encoding("name/wrapped", true), "02 01 09");
  EXPECT_EQ(encoding("name", true), "A4 03 02 01 09");
  EXPECT_EQ(encoding("number", true), "02 02 01 00");
  EXPECT_EQ(encoding("rest", false), "24 80 00 00");
  EXPECT_EQ(encoding("rest", true), "error") << "not DER";

  const Exact segments(fromHex("24 03 04 01 AA"));
  Work string(type("Oct"), segments.data());
  ASSERT_EQ(string.decode(), 0);
  const uint8_t *address = nullptr;
  uint32_t length = 0;
  EXPECT_EQ(AsnCalAddressOfValFld(string.object, string.value, "/", &address, &length, nullptr), -1);
}

TEST(Getters, RangesAndAbsence) {
  struct Row {
    const AsnType *type;
    const char *hex;
    uint32_t code;  // 0: read
  };
  const auto read = [](Work &work, const AsnType *schema, const Pool &pool, Err &err) {
    int32_t number = 0;
    Objid objid{};
    Gtime time{};
    if (schema == type("Int")) return AsnGetIntBER(work.object, work.value, "/", &number, err);
    if (schema == type("Oid")) {
      const int32_t result = AsnGetObjidBER(work.object, work.value, "/", &objid, err);
      Objid pooled{};
      const bool isLong =
          objid.count == 0 && AsnMUtilGetObjidBER(pool, work.object, work.value, "/", &pooled, nullptr) == 0;
      EXPECT_EQ(isLong, result != 0 && pooled.count > 128) << "a pool has room for any number of arcs";
      return result;
    }
    return AsnMUtilGetGtimeBER(pool, work.object, work.value, "/", &time, err);
  };
  const auto time = [](const std::string &text) {
    return toHex({static_cast<uint8_t>(0x18), static_cast<uint8_t>(text.size())}) + " " +
           toHex(reinterpret_cast<const uint8_t *>(text.data()), text.size());
  };
  const std::vector<std::tuple<const AsnType *, std::string, uint32_t>> rows = {
      {type("Int"), "02 04 7F FF FF FF", 0},
      {type("Int"), "02 05 01 00 00 00 00", AsnError_Range},
      {type("Oid"), "06 07 88 37 8F FF FF FF 7F", 0},
      {type("Oid"), "06 07 55 1D 90 80 80 80 25", AsnError_Range},
      {type("Oid"), "06 0A 69 83 CC 93 80 A8 98 CC A8 07", AsnError_Range},
      {type("Oid"), "06 83 00 00 7F+2A*127", 0},
      {type("Oid"), "06 83 00 00 80+2A*128", AsnError_Range},  // one arc more than AsnGetObjidBER has room for
      {type("Time"), time("20240101000000Z"), 0},
      {type("Time"), time("2024010100Z"), 0},
      {type("Time"), time("202401010000.5Z"), 0},
      {type("Time"), time("2024010100,5Z"), 0},
      {type("Time"), time("20240101000000+0100"), 0},
      {type("Time"), time("20240101000000.123456000Z"), 0},
      {type("Time"), time("2024010100.000000005Z"), 0},
      {type("Time"), time("20240101000000"), AsnError_Range},
      {type("Time"), time("20240101000060Z"), AsnError_Range},
      {type("Time"), time("20240101240000Z"), AsnError_Range},
      {type("Time"), time("20240101000000.1234567Z"), AsnError_Range},
      {type("Time"), time("2024010100.0000000001Z"), AsnError_Range},
      {type("Time"), time("00000101000000+0001"), AsnError_Range},
      {type("Time"), time("99991231235959-0001"), AsnError_Range},
  };
  const Pool pool;
  for (const auto &[schema, hex, code] : rows) {
    SCOPED_TRACE(hex);
    const Exact input(fromHex(hex));
    Work work(schema, input.data());
    ASSERT_EQ(work.decode(), 0);
    Err err;
    EXPECT_EQ(read(work, schema, pool, err), code == 0 ? 0 : -1) << err.text();
    EXPECT_EQ(err.code(), code);
    EXPECT_EQ(err.block.count, code == 0 ? 0u : 1u);
  }
  for (const char *malformed : {"20241301000000Z", "20230229000000Z", "20240101250000Z", "20240101000000.Z",
                                "20240101000000ZZ", "2024010100000Z", "20240101000000+01000", "20240101000000 "}) {
    EXPECT_EQ(Work(type("Time"), Exact(fromHex(time(malformed))).data()).decode(), -1) << malformed;
  }

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
  Err err;
  Objid objid{};
  EXPECT_EQ(AsnMUtilGetObjidBER(pool, work.object, work.value, "number", &objid, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Kind});
}

// What the DER readers accept, the BER readers accept with the same value; an element that is absent, or whose lengths
// are not DER, tells the forms apart.
TEST(Getters, EveryForm) {
  const Pool pool;
  const auto shown = [](int32_t result, const auto &read, const AsnErrorBlock *err) {
    return result == 0 ? toHex(read.octets, read.length) : err->code == AsnError_NotDer ? "not DER" : "error";
  };
  for (const char *hex : {"04 02 AA BB", "04 81 02 AA BB", "24 04 04 02 AA BB"}) {
    const bool isDer = hex == std::string("04 02 AA BB");
    const Exact input(fromHex(hex));
    Work octets(type("Oct"), input.data());
    Work any(type("Any"), input.data());
    ASSERT_TRUE(octets.decode() == 0 && any.decode() == 0);
    Err err;
    AsnOct read{};
    EXPECT_EQ(shown(AsnMUtilGetOctDER(pool, octets.object, octets.value, "/", &read, err), read, err),
              isDer ? "AA BB" : "not DER");
    EXPECT_EQ(shown(AsnMUtilGetOctBER(pool, octets.object, octets.value, "/", &read, err), read, err), "AA BB");
    AsnOctOpt optional{};
    EXPECT_EQ(AsnMUtilGetOctOptBER(pool, octets.object, octets.value, "/", &optional, err), 0);
    EXPECT_EQ(toHex(optional.value.octets, 2) + std::to_string(optional.option), "AA BB1");
    const bool hasDerLengths = hex != std::string("04 81 02 AA BB");
    AsnEncodedDataOpt open{};
    const int32_t der = AsnMUtilGetEncodedDataOptDER(pool, any.object, any.value, "/", &open, err);
    EXPECT_EQ(shown(der, open.value, err), hasDerLengths ? hex : "not DER");
    const int32_t ber = AsnMUtilGetEncodedDataOptBER(pool, any.object, any.value, "/", &open, err);
    EXPECT_EQ(shown(ber, open.value, err) + std::to_string(open.option), std::string(hex) + "1");
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
  const auto isEmpty = [&] {
    uint64_t octets = 1;
    uint32_t blocks = 1;
    return AsnMemObjectUsage(pool, &octets, &blocks, nullptr) == 0 && blocks == 0;
  };
  const uint8_t octets[] = {0x04, 0x01, 0xAA};
  const uint32_t arcs[] = {2, 5, 29};
  const auto check = [&](auto copy, auto free, const auto &source) {
    auto copied = source;
    Err err;
    EXPECT_EQ(copy(pool, &copied, &source, err), 0) << err.text();
    EXPECT_FALSE(isEmpty());
    EXPECT_EQ(free(pool, &copied, err), 0);
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(free(pool, &copied, err), 0) << "nothing is left to free";
    EXPECT_EQ(copy(nullptr, &copied, &source, err), -1);
    EXPECT_EQ(err.code(), uint32_t{AsnMUtilError_NullParameter});
    EXPECT_EQ(free(pool, nullptr, err), -1);
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
  const AsnEncodedData none{nullptr, 0};
  AsnEncodedData data{};
  EXPECT_EQ(AsnMUtilCopyEncodedDataDER(pool, &data, &none, nullptr), -1);
}

TEST(Getters, DerLooksInside) {
  const Pool pool;
  const Exact nested(fromHex("30 04 04 81 01 AA"));
  const AsnEncodedData source = nested.data();
  AsnEncodedData copy{};
  EXPECT_EQ(AsnMUtilCopyEncodedDataDER(pool, &copy, &source, nullptr), -1);
  EXPECT_EQ(AsnMUtilCopyEncodedDataBER(pool, &copy, &source, nullptr), 0);
  EXPECT_EQ(toHex(copy), "30 04 04 81 01 AA");
}

TEST(Checks, FlagsAndPointers) {
  const uint8_t octet = 0;
  const uint32_t arcs[] = {2, 5};
  const uint32_t badArcs[] = {3, 5};
  const auto passes = [](auto check, const auto &value, AsnErrorBlock *err = nullptr) {
    return check(&value, err) == 0;
  };
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
    Err err;
    EXPECT_FALSE(passes(AsnCheckIntOptBER, AsnIntOpt{0, flag}, err));
    EXPECT_FALSE(passes(AsnCheckBitOptBER, AsnBitOpt{{&octet, 1}, flag}, err));
    EXPECT_FALSE(passes(AsnCheckEncodedDataOptBER, AsnEncodedDataOpt{{&octet, 1}, flag}, err));
    EXPECT_EQ(err.code(), uint32_t{AsnCheckError_Option});
    EXPECT_EQ(err.block.count, 3u);
  }
}

}  // namespace
}  // namespace ketra::test
