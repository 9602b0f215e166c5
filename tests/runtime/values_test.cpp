// Setting, encoding, paths and getting back.

#include "runtime/schema_rows.h"
#include "support/support.h"

namespace ketra::test {
namespace {

TEST(Setters, WriteGoldenOctets) {
  const auto integer = [](const AsnType *schema, int32_t number) {
    Work work(schema);
    EXPECT_EQ(AsnSetIntDER(work.object, work.value, "/", number, nullptr), 0);
    return work.encode();
  };
  EXPECT_EQ(integer(type("Int"), 0), golden("integer/0"));
  EXPECT_EQ(integer(type("Int"), 127), golden("integer/127"));
  EXPECT_EQ(integer(type("Int"), 128), golden("integer/128"));
  EXPECT_EQ(integer(type("Int"), -128), golden("integer/-128"));
  EXPECT_EQ(integer(type("Int"), -129), golden("integer/-129"));
  EXPECT_EQ(integer(type("Int"), INT32_MIN), golden("integer/least"));
  EXPECT_EQ(integer(type("Enum"), 8), golden("enumerated/8"));

  const auto octets = [](const AsnType *schema, const Octets &content) {
    Work work(schema);
    const AsnOct value{content.data(), static_cast<uint32_t>(content.size())};
    EXPECT_EQ(AsnSetOctBER(work.object, work.value, "", &value, nullptr), 0);
    return work.encode(false);
  };
  EXPECT_EQ(octets(type("Utf8"), fromHex("61 C3 A4")), golden("string/utf8"));
  EXPECT_EQ(octets(type("Printable"), fromHex("41 42")), golden("string/printable"));
  EXPECT_EQ(octets(type("Ia5"), fromHex("61 40")), golden("string/ia5"));
  EXPECT_EQ(octets(type("Bmp"), fromHex("00 41")), golden("string/bmp"));
  EXPECT_EQ(octets(type("Oct"), fromHex("AA*128")), golden("octets/128"));

  const auto bits = [](const char *hex, uint32_t count) {
    Work work(type("Bits"));
    const Octets content = fromHex(hex);
    const AsnBit value{content.data(), count};
    EXPECT_EQ(AsnSetBitDER(work.object, work.value, nullptr, &value, nullptr), 0);
    return work.encode();
  };
  EXPECT_EQ(bits("", 0), golden("keyUsage/none"));
  EXPECT_EQ(bits("00 00", 16), golden("keyUsage/none"));
  EXPECT_EQ(bits("80 7F", 9), golden("keyUsage/digitalSignature")) << "bits beyond the length do not count";
  EXPECT_EQ(bits("FF FF", 9), golden("keyUsage/all"));
  EXPECT_EQ(bits("01", 8), golden("keyUsage/encipherOnly"));

  for (const std::string name : {"2.5.29.37.0", "2.999.4294967295", "1.2.840.113549", "2.4294967295", "0.39"}) {
    const Pool pool;
    Objid objid{};
    ASSERT_EQ(ObjidFromText(pool, name.c_str(), &objid, nullptr), 0);
    Work work(type("Oid"));
    EXPECT_EQ(AsnSetObjidDER(work.object, work.value, "/", &objid, nullptr), 0);
    EXPECT_EQ(work.encode(), golden("objid/" + name));
    Objid read{};
    EXPECT_EQ(AsnGetObjidBER(work.object, work.value, "/", &read, nullptr), 0);
    char text[64];
    EXPECT_EQ(ObjidToText(&read, text, sizeof text, nullptr, nullptr), 0);
    EXPECT_EQ(text, name);
  }

  for (const auto &[text, row] :
       {std::pair{"2026-01-31T23:59:59Z", "time/plain"}, std::pair{"2026-02-01T01:59:59.500+02:00", "time/fraction"}}) {
    Gtime time{};
    ASSERT_EQ(GtimeFromText(text, &time, nullptr), 0);
    Work work(type("Time"));
    EXPECT_EQ(AsnSetGtimeDER(work.object, work.value, "/", &time, nullptr), 0);
    EXPECT_EQ(work.encode(), golden(row));
  }

  Work wrapped(type("Wrapped"));  // in schema order, whatever the order of the calls
  EXPECT_EQ(AsnSetBoolDER(wrapped.object, wrapped.value, "flag", 1, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(wrapped.object, wrapped.value, "number", 7, nullptr), 0);
  EXPECT_EQ(wrapped.encode(), golden("sequence/explicit"));
}

TEST(Setters, EncodedData) {
  const auto set = [](const char *hex, bool der, Err &err) {
    Work work(type("Any"));
    const Exact input(fromHex(hex));
    const AsnEncodedData data = input.data();
    const int32_t result = der ? AsnSetEncodedDataDER(work.object, work.value, "/", &data, err)
                               : AsnSetEncodedDataBER(work.object, work.value, "/", &data, err);
    return result == 0 ? work.encode(false) : std::string("refused");
  };
  Err err;
  EXPECT_EQ(set("30 80 24 80 04 81 01 AA 00 00 00 00", false, err), "30 80 24 80 04 81 01 AA 00 00 00 00");
  EXPECT_EQ(set("30 80 24 80 04 81 01 AA 00 00 00 00", true, err), "30 05 24 03 04 01 AA");
  EXPECT_EQ(set("30 80 30 00 30 80 00 00 02 81 01 05 BF 81 02 80 00 00 00 00", true, err),
            "30 0B 30 00 30 00 02 01 05 BF 81 02 00");
  EXPECT_EQ(set("30 80 04 81 C8+BB*200+00 00", true, err), toHex(fromHex("30 81 CB 04 81 C8+BB*200")));
  EXPECT_EQ(set("04 82 00 C8+BB*200", true, err), toHex(fromHex("04 81 C8+BB*200"))) << "no leading zeros";
  EXPECT_EQ(err.block.count, 0u);
  for (const char *bad : {"", "30", "05 00 05 00", "30 80", "00 00", "30 03 02 01"}) {
    Err refused;
    EXPECT_EQ(set(bad, false, refused), "refused") << bad;
    EXPECT_EQ(refused.block.count, 1u) << bad;
  }
  EXPECT_EQ(set("30 03 30 02 05", true, err), "refused") << "DER looks inside";
}

TEST(Setters, SetOfIsSortedInDerOnly) {
  Work work(type("AnySet"));
  int member = 0;
  for (const char *hex : {"04 01 42", "02 01 05", "04 01 41", "02 01 02"}) {
    const Octets octets = fromHex(hex);
    const AsnEncodedData data{octets.data(), static_cast<uint32_t>(octets.size())};
    EXPECT_EQ(AsnSetEncodedDataDER(work.object, work.value, std::to_string(++member).c_str(), &data, nullptr), 0);
  }
  EXPECT_EQ(work.encode(), golden("set/sorted"));
  EXPECT_EQ(work.encode(false), "31 0C 04 01 42 02 01 05 04 01 41 02 01 02");
}

TEST(Setters, RefuseWhatCannotBe) {
  Work work(type("Point"));
  const std::pair<uint32_t, int32_t (*)(AsnObject, AsnValue, const void *, AsnErrorBlock *)> calls[] = {
      {AsnError_Value, [](auto o, auto v, auto, auto e) { return AsnSetBoolDER(o, v, "flag", 2, e); }},
      {AsnError_Kind, [](auto o, auto v, auto, auto e) { return AsnSetBoolDER(o, v, "number", 1, e); }},
      {AsnError_Kind, [](auto o, auto v, auto, auto e) { return AsnSetIntDER(o, v, "name", 1, e); }},
      {AsnError_NullParameter, [](auto o, auto v, auto, auto e) { return AsnSetOctDER(o, v, "rest", nullptr, e); }},
      {AsnError_Path, [](auto o, auto v, auto, auto e) { return AsnSetIntDER(o, v, "nimber", 1, e); }},
  };
  for (const auto &[code, call] : calls) {
    Err err;
    EXPECT_EQ(call(work.object, work.value, nullptr, err), -1);
    EXPECT_EQ(err.code(), code) << err.text();
    EXPECT_EQ(err.block.count, 1u);
  }
  Err err;
  const uint32_t arcs[] = {1, 40};
  const Objid badArcs{arcs, 2};
  Work oid(type("Oid"));
  EXPECT_EQ(AsnSetObjidBER(oid.object, oid.value, "/", &badArcs, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Value});
  AsnErrorReset(err);
  const Gtime late{INT32_MAX, 0};
  Work time(type("Time"));
  EXPECT_EQ(AsnSetGtimeDER(time.object, time.value, "/", &late, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Value});
  AsnErrorReset(err);
  const AsnOct empty{nullptr, 0};
  Work number(type("IntString"));
  EXPECT_EQ(AsnSetOctDER(number.object, number.value, "/", &empty, err), -1) << "an INTEGER has content";
  EXPECT_EQ(err.code(), uint32_t{AsnError_Value});
  EXPECT_NE(Work(type("Point")).encode().find("component number of Point is missing"), std::string::npos);
  EXPECT_NE(Work(type("Name")).encode().find("Name has no alternative"), std::string::npos);
  EXPECT_NE(Work(type("Int")).encode().find("is absent"), std::string::npos);
}

// A set that fails makes and replaces nothing.
TEST(Setters, FailedSetsLeaveTheValueAlone) {
  Work work(type("Name"));
  const AsnOct dns{reinterpret_cast<const uint8_t *>("a"), 1};
  ASSERT_EQ(AsnSetOctDER(work.object, work.value, "dns", &dns, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, work.value, "ints/2", 1, nullptr), -1);
  EXPECT_EQ(AsnSetBoolDER(work.object, work.value, "ints/1", 1, nullptr), -1);
  const Octets padded = fromHex("00 01");
  const AsnOct notMinimal{padded.data(), 2};
  EXPECT_EQ(AsnSetOctDER(work.object, work.value, "serial", &notMinimal, nullptr), -1);
  EXPECT_EQ(work.encode(), "82 01 61");

  Work point(type("Point"));
  AsnValue flag = nullptr;
  ASSERT_EQ(AsnMakeElement(point.object, point.value, "flag", &flag, nullptr), 0);
  ASSERT_EQ(AsnSetIntDER(point.object, point.value, "number", 1, nullptr), 0);
  EXPECT_EQ(point.encode(), "30 03 02 01 01") << "an optional scalar that was made but not set is absent";

  const Exact input(fromHex("30 03 02 01 01"));
  Work decoded(type("Point"), input.data());
  ASSERT_EQ(decoded.decode(), 0);
  Err err;
  EXPECT_EQ(AsnSetIntDER(decoded.object, decoded.value, "number", 2, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_State});
}

TEST(Paths, FindAndMake) {
  Work work(type("Points"));
  const auto get = [&](AsnValue from, const char *path, Err &err) {
    AsnValue element = nullptr;
    if (AsnGetElement(work.object, from, path, &element, err) != 0) return std::string("error");
    return std::string(element == nullptr ? "absent" : "present");
  };
  AsnValue first = nullptr;
  Err err;
  ASSERT_EQ(AsnMakeElement(work.object, work.value, "/1", &first, err), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, first, "number", 5, err), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, work.value, "2/number", 6, err), 0);
  AsnValue name = nullptr;
  ASSERT_EQ(AsnMakeElement(work.object, work.value, "2/name", &name, err), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, name, "ints/1", 9, err), 0);

  for (const char *path : {"/", "", "1", "/1", "2/name/ints/1", "/2/name", "01"}) {
    EXPECT_EQ(get(work.value, path, err), "present") << path;
  }
  EXPECT_EQ(get(work.value, nullptr, err), "present");
  EXPECT_EQ(get(name, "/", err), "present");
  EXPECT_EQ(get(name, "/ints/1", err), "present") << "a path starts at the element, with or without a slash";
  for (const char *path : {"0", "-1", "3", "99999999999999999999", "1/name", "1/name/ints/7", "2/name/dns", "1/flag"}) {
    EXPECT_EQ(get(work.value, path, err), "absent") << path;
  }
  EXPECT_EQ(err.block.count, 0u);
  for (const char *path : {"x", "1/", "//1", "1/nome", "1/number/x", "+1", "1x", "-", "2/name/ints/", "1/rest/1"}) {
    Err failed;
    EXPECT_EQ(get(work.value, path, failed), "error") << path;
    EXPECT_EQ(failed.code(), uint32_t{AsnError_Path}) << path;
  }
  AsnValue made = nullptr;
  for (const char *path : {"4", "0", "-1"})
    EXPECT_EQ(AsnMakeElement(work.object, work.value, path, &made, nullptr), -1);
  AsnValue again = nullptr;
  EXPECT_EQ(AsnMakeElement(work.object, work.value, "1", &again, err), 0);
  EXPECT_EQ(again, first);

  uint32_t number = 0;
  EXPECT_EQ(AsnCalNumberOfChoice(work.object, work.value, "2/name", &number, err), 0);
  EXPECT_EQ(number, 2u);
  uint32_t count = 99;
  EXPECT_EQ(AsnCalCountOfSequence(work.object, name, "ints", &count, err), 0);
  EXPECT_EQ(count, 1u);
  const AsnOct dns{reinterpret_cast<const uint8_t *>("a"), 1};
  EXPECT_EQ(AsnSetOctDER(work.object, name, "dns", &dns, err), 0) << "another alternative replaces the first";
  EXPECT_EQ(work.encode(), "30 0F 30 03 02 01 05 30 08 A0 03 82 01 61 02 01 06");
  EXPECT_EQ(work.encode(true, "2/name"), "82 01 61") << "without the tag that the component adds";
  EXPECT_EQ(AsnCalCountOfSequence(work.object, work.value, "1/name", &count, nullptr), -1);
  EXPECT_EQ(AsnCalCountOfSequence(work.object, nullptr, nullptr, &count, nullptr), -1);
}

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

// A value serves one purpose, and only while it is open.
TEST(Values, StatesAreKept) {
  const Exact input(fromHex("02 01 05"));
  Work built(type("Int"));
  Work bound(type("Int"), input.data());
  int32_t number = 0;
  EXPECT_EQ(built.decode(), -1) << "nothing to decode";
  EXPECT_EQ(AsnGetIntBER(bound.object, bound.value, "/", &number, nullptr), -1) << "not decoded yet";
  EXPECT_EQ(bound.decode(), 0);
  EXPECT_EQ(bound.decode(), 0) << "again";
  EXPECT_EQ(AsnClose(bound.object, bound.value, nullptr), 0);
  EXPECT_EQ(AsnClose(bound.object, bound.value, nullptr), -1);
  EXPECT_EQ(bound.decode(), -1);
  EXPECT_EQ(AsnGetIntBER(bound.object, bound.value, "/", &number, nullptr), -1);
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
  uint64_t octets = 1;
  uint32_t blocks = 1;
  EXPECT_EQ(AsnMemObjectUsage(pool, &octets, &blocks, nullptr), 0);
  EXPECT_EQ(blocks, 0u);
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
  char small[8];
  EXPECT_EQ(AsnErrorText(err, nullptr, 0, small, sizeof small), err.text().size());
  EXPECT_STREQ(small, "error 0");
  EXPECT_EQ(AsnErrorInfo("M", "f", "x", nullptr, nullptr, 0), 0);
}

}  // namespace
}  // namespace ketra::test
