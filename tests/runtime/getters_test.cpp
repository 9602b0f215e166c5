// What built values take, identifiers of many arcs, and copies.

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

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

TEST(Getters, ManyArcs) {
  const Pool pool;
  for (const auto &[hex, code] : {std::pair{"06 83 00 00 7F+2A*127", 0u}, {"06 83 00 00 80+2A*128", AsnError_Range}}) {
    Work work(type("Oid"), fromHex(hex));
    Objid read{};
    ASSERT_EQ(work.decode(), 0);
    EXPECT_EQ(codeOf(AsnGetObjidBER, work.object, work.value, "/", &read), code);
    EXPECT_EQ(codeOf(AsnMUtilGetObjidBER, pool, work.object, work.value, "/", &read), 0u) << "room for any number";
  }
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
