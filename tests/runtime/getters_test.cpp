// Reading elements, copying and checking values.

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

// By path: where the value field lies, and the encoding as BER and as DER.
TEST(Elements, WhereTheyLie) {
  const Exact input(fromHex("30 12 A0 05 A4 03 02 01 09 81 01 FF 02 02 01 00 24 80 00 00"));
  Work decoded(type("Point"), input.data());
  ASSERT_EQ(decoded.decode(), 0);
  const auto encoding = [&](const char *path, bool der) {
    uint32_t length = 0;
    EXPECT_EQ(AsnCalLengthOfValFld(decoded.object, decoded.value, path, &length, nullptr), 0);
    Octets octets(length);
    AsnBuffer buffer{octets.data(), 0};
    const auto get = der ? AsnGetEncodedDataDER : AsnGetEncodedDataBER;
    return codeOf(get, decoded.object, decoded.value, path, &buffer) == 0 ? toHex(octets) : "error";
  };
  const uint8_t *address = nullptr;
  uint32_t length = 0;
  const std::tuple<const char *, const char *, const char *, const char *> rows[] = {
      {"name/wrapped", "6: 02 01 09", "02 01 09", "02 01 09"},
      {"name", "6: 02 01 09", "A4 03 02 01 09", "A4 03 02 01 09"},
      {"number", "14: 01 00", "02 02 01 00", "02 02 01 00"},
      {"rest", "16: 24 80 00 00", "24 80 00 00", "error"},  // not DER
  };
  for (const auto &[path, field, ber, der] : rows) {
    EXPECT_EQ(AsnCalAddressOfValFld(decoded.object, decoded.value, path, &address, &length, nullptr), 0);
    EXPECT_EQ(std::to_string(address - input.data().octets) + ": " + toHex(address, length), field);
    EXPECT_EQ(encoding(path, false), ber);
    EXPECT_EQ(encoding(path, true), der);
  }
  const Exact indefinite(fromHex("30 80 02 01 05 00 00"));
  Work list(type("Ints"), indefinite.data());
  ASSERT_EQ(list.decode(), 0);
  ASSERT_EQ(AsnCalAddressOfValFld(list.object, list.value, "/", &address, &length, nullptr), 0);
  EXPECT_EQ(toHex(address, length), "02 01 05") << "without the end-of-contents octets";
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

// A value through its getter as text, and on into another value through its setter.
std::string carried(const std::string &type, const Work &from, Work &to, Err &err) {
  static const Pool pool;
  char text[64] = "";
  int32_t number = 0;
  Objid objid{};
  Gtime time{};
  AsnBit bits{nullptr, 12};  // as many as are wanted
  AsnOct octets{};
  if (type == "Int" || type == "Enum") {
    if (AsnGetIntBER(from.object, from.value, "/", &number, err) == 0)
      AsnSetIntDER(to.object, to.value, "/", number, err);
    return std::to_string(number);
  }
  if (type == "Bool") {
    AsnBoolOpt flag{};
    AsnGetOptBoolBER(from.object, from.value, "/", &flag, err);
    AsnSetBoolDER(to.object, to.value, "/", flag.value, err);
    return std::to_string(flag.value);
  }
  if (type == "Oid") {
    if (AsnGetObjidBER(from.object, from.value, "/", &objid, err) != 0) return "";
    AsnSetObjidDER(to.object, to.value, "/", &objid, err);
    ObjidToText(&objid, text, sizeof text, nullptr, err);
    return text;
  }
  if (type == "Time") {
    if (AsnMUtilGetGtimeBER(pool, from.object, from.value, "/", &time, err) != 0) return "";
    AsnSetGtimeDER(to.object, to.value, "/", &time, err);
    GtimeToText(&time, text, sizeof text, err);
    return text;
  }
  if (type == "Bits") {
    AsnMUtilGetBitConstBER(pool, from.object, from.value, "/", &bits, err);
    AsnSetBitDER(to.object, to.value, nullptr, &bits, err);
    return toHex(bits.octets, 2);
  }
  AsnMUtilGetOctBER(pool, from.object, from.value, "/", &octets, err);
  AsnSetOctBER(to.object, to.value, "", &octets, err);
  return toHex(octets.octets, octets.length);
}

TEST(Scalars, ReadAndWritten) {
  for (const auto &row : rowsOf(KETRA_SCALARS)) {
    SCOPED_TRACE(row.at(1) + " " + row.at(2));
    const bool isGolden = row.at(1).find('/') != std::string::npos;
    const Exact input(fromHex(isGolden ? golden(row.at(1)) : row.at(1)));
    Work from(typeNamed(row.at(0)), input.data());
    Work to(typeNamed(row.at(0)));
    Err err;
    const bool isDecoded = from.decode(err) == 0;
    const std::string text = isDecoded ? carried(row.at(0), from, to, err) : "";
    if (row.at(2).starts_with("AsnError_")) {
      EXPECT_EQ(err.code(), codeNamed(row.at(2))) << text;
      continue;
    }
    EXPECT_EQ(err.block.count, 0u) << err.text();
    EXPECT_EQ(text, row.at(2).find('*') == std::string::npos ? row.at(2) : toHex(fromHex(row.at(2))));
    EXPECT_TRUE(!isGolden || to.encode() == golden(row.at(1))) << to.encode();
  }
}

TEST(Scalars, ManyArcs) {
  const Pool pool;
  for (const auto &[hex, code] : {std::pair{"06 83 00 00 7F+2A*127", 0u}, {"06 83 00 00 80+2A*128", AsnError_Range}}) {
    const Exact input(fromHex(hex));
    Work work(type("Oid"), input.data());
    Objid read{};
    ASSERT_EQ(work.decode(), 0);
    EXPECT_EQ(codeOf(AsnGetObjidBER, work.object, work.value, "/", &read), code);
    EXPECT_EQ(codeOf(AsnMUtilGetObjidBER, pool, work.object, work.value, "/", &read), 0u) << "room for any number";
  }
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
  }
  const Exact input(fromHex("30 03 02 01 01"));
  Work work(type("Point"), input.data());
  ASSERT_EQ(work.decode(), 0);
  AsnBoolOpt flag{7, 7};
  AsnEncodedDataOpt rest{{input.data().octets, 1}, 1};
  Objid objid{};
  EXPECT_EQ(AsnGetOptBoolBER(work.object, work.value, "flag", &flag, nullptr), 0);
  EXPECT_EQ(AsnMUtilGetEncodedDataOptBER(pool, work.object, work.value, "rest", &rest, nullptr), 0);
  EXPECT_TRUE(flag.value == 0 && flag.option == 0 && rest.value.octets == nullptr && rest.option == 0);
  EXPECT_EQ(codeOf(AsnMUtilGetObjidBER, pool, work.object, work.value, "number", &objid), uint32_t{AsnError_Kind});
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
}

}  // namespace
}  // namespace ketra::test
