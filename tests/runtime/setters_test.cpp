// Setting, making and finding elements, and what is encoded.

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

TEST(Setters, WriteGoldenOctets) {
  Work bits(type("Bits"));
  const uint8_t octets[] = {0x80, 0x7F};
  const AsnBit value{octets, 9};
  EXPECT_EQ(AsnSetBitDER(bits.object, bits.value, nullptr, &value, nullptr), 0);
  EXPECT_EQ(bits.encode(), golden("keyUsage/digitalSignature")) << "bits beyond the length do not count";
  Work wrapped(type("Wrapped"));  // in schema order, whatever the order of the calls
  EXPECT_EQ(AsnSetBoolDER(wrapped.object, wrapped.value, "flag", 1, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(wrapped.object, wrapped.value, "number", 7, nullptr), 0);
  EXPECT_EQ(wrapped.encode(), golden("sequence/explicit"));
}

TEST(Setters, EncodedData) {
  const auto set = [](const char *hex, bool der) {
    Work work(type("Any"));
    const Exact input(fromHex(hex));
    const AsnEncodedData data = input.data();
    const auto function = der ? AsnSetEncodedDataDER : AsnSetEncodedDataBER;
    return codeOf(function, work.object, work.value, "/", &data) == 0 ? work.encode(false) : "";
  };
  for (const auto &[ber, der] : {std::pair{"30 80 24 80 04 81 01 AA 00 00 00 00", "30 05 24 03 04 01 AA"},
                                 {"30 80 30 00 30 80 00 00 BF 81 02 80 00 00 00 00", "30 08 30 00 30 00 BF 81 02 00"},
                                 {"30 80 04 81 C8+BB*200+00 00", "30 81 CB 04 81 C8+BB*200"},
                                 {"04 82 00 C8+BB*200", "04 81 C8+BB*200"},  // no leading zeros
                                 {"30 03 30 02 05", ""}}) {                  // refused: DER looks inside
    EXPECT_EQ(set(ber, false), toHex(fromHex(ber)));
    EXPECT_EQ(set(ber, true), toHex(fromHex(der)));
  }
  for (const char *bad : {"", "30", "05 00 05 00", "30 80", "00 00", "30 03 02 01"}) {
    EXPECT_EQ(set(bad, false), "") << bad;
  }
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
  const auto setBool = [&](const char *path, int32_t value) {
    return codeOf(AsnSetBoolDER, work.object, work.value, path, value);
  };
  const auto setInt = [&](const char *path) { return codeOf(AsnSetIntDER, work.object, work.value, path, 1); };
  EXPECT_EQ(setBool("flag", 2), uint32_t{AsnError_Value});
  EXPECT_EQ(setBool("number", 1), uint32_t{AsnError_Kind});
  EXPECT_EQ(setInt("name"), uint32_t{AsnError_Kind});
  EXPECT_EQ(setInt("nimber"), uint32_t{AsnError_Path});
  EXPECT_EQ(codeOf(AsnSetOctDER, work.object, work.value, "rest", nullptr), uint32_t{AsnError_NullParameter});
  const uint32_t arcs[] = {1, 40};
  const Objid badArcs{arcs, 2};
  const Gtime late{INT32_MAX, 0};
  const AsnOct empty{nullptr, 0};  // an INTEGER has content
  Work oid(type("Oid"));
  Work time(type("Time"));
  Work number(type("IntString"));
  EXPECT_EQ(codeOf(AsnSetObjidBER, oid.object, oid.value, "/", &badArcs), uint32_t{AsnError_Value});
  EXPECT_EQ(codeOf(AsnSetGtimeDER, time.object, time.value, "/", &late), uint32_t{AsnError_Value});
  EXPECT_EQ(codeOf(AsnSetOctDER, number.object, number.value, "/", &empty), uint32_t{AsnError_Value});
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
  EXPECT_EQ(codeOf(AsnSetIntDER, decoded.object, decoded.value, "number", 2), uint32_t{AsnError_State});
}

TEST(Paths, FindAndMake) {
  Work work(type("Points"));
  const auto get = [&](AsnValue from, const char *path) {
    AsnValue element = nullptr;
    const uint32_t code = codeOf(AsnGetElement, work.object, from, path, &element);
    return code == AsnError_Path ? "error" : code != 0 ? "another" : element == nullptr ? "absent" : "present";
  };
  AsnValue first = nullptr;
  ASSERT_EQ(AsnMakeElement(work.object, work.value, "/1", &first, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, first, "number", 5, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, work.value, "2/number", 6, nullptr), 0);
  AsnValue name = nullptr;
  ASSERT_EQ(AsnMakeElement(work.object, work.value, "2/name", &name, nullptr), 0);
  EXPECT_EQ(AsnSetIntDER(work.object, name, "ints/1", 9, nullptr), 0);

  for (const char *path : {"/", "", "1", "/1", "2/name/ints/1", "/2/name", "01"}) {
    EXPECT_STREQ(get(work.value, path), "present") << path;
  }
  EXPECT_STREQ(get(work.value, nullptr), "present");
  EXPECT_STREQ(get(name, "/"), "present");
  EXPECT_STREQ(get(name, "/ints/1"), "present") << "a path starts at the element, with or without a slash";
  for (const char *path : {"0", "-1", "3", "99999999999999999999", "1/name", "1/name/ints/7", "2/name/dns", "1/flag"}) {
    EXPECT_STREQ(get(work.value, path), "absent") << path;
  }
  for (const char *path : {"x", "1/", "//1", "1/nome", "1/number/x", "+1", "1x", "-", "2/name/ints/", "1/rest/1"}) {
    EXPECT_STREQ(get(work.value, path), "error") << path;
  }
  AsnValue made = nullptr;
  for (const char *path : {"4", "0", "-1"})
    EXPECT_EQ(AsnMakeElement(work.object, work.value, path, &made, nullptr), -1);
  AsnValue again = nullptr;
  EXPECT_EQ(AsnMakeElement(work.object, work.value, "1", &again, nullptr), 0);
  EXPECT_EQ(again, first);

  uint32_t number = 0;
  EXPECT_EQ(AsnCalNumberOfChoice(work.object, work.value, "2/name", &number, nullptr), 0);
  EXPECT_EQ(number, 2u);
  uint32_t count = 99;
  EXPECT_EQ(AsnCalCountOfSequence(work.object, name, "ints", &count, nullptr), 0);
  EXPECT_EQ(count, 1u);
  const AsnOct dns{reinterpret_cast<const uint8_t *>("a"), 1};
  EXPECT_EQ(AsnSetOctDER(work.object, name, "dns", &dns, nullptr), 0) << "another alternative replaces the first";
  EXPECT_EQ(work.encode(), "30 0F 30 03 02 01 05 30 08 A0 03 82 01 61 02 01 06");
  EXPECT_EQ(work.encode(true, "2/name"), "82 01 61") << "without the tag that the component adds";
  EXPECT_EQ(AsnCalCountOfSequence(work.object, work.value, "1/name", &count, nullptr), -1);
  EXPECT_EQ(AsnCalCountOfSequence(work.object, nullptr, nullptr, &count, nullptr), -1);
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

}  // namespace
}  // namespace ketra::test
