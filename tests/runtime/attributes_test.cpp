// Attributes objects: encodings, appending, visiting.

#include "runtime/attributes/attribute_list.h"
#include "support/support.h"

namespace ketra::test {
namespace {

const uint32_t kArcs[] = {1, 3, 6, 1, 5, 5, 7, 9, 1};

class List : public Attributes {
 public:
  int32_t append(const Objid &type, const std::vector<Octets> &values, AsnErrorBlock *err = nullptr) const {
    std::vector<AsnEncodedData> encodings;
    for (const Octets &value : values) encodings.push_back({value.data(), static_cast<uint32_t>(value.size())});
    return X509AttributesObjectAppend(handle, &type, encodings.data(), static_cast<uint32_t>(values.size()), err);
  }
  AsnEncodedData value(uint32_t index, uint32_t valueIndex) const {
    AsnEncodedData value{};
    EXPECT_EQ(X509AttributesObjectGetValue(handle, index, valueIndex, &value, nullptr), 0);
    return value;
  }
  // "1.2: 05 00, 02 01 07; 1.3: 05 00; "
  std::string list() const {
    std::string text;
    uint32_t count = 0;
    EXPECT_EQ(X509AttributesObjectCal(handle, &count, nullptr), 0);
    for (uint32_t i = 0; i < count; ++i) {
      Objid type{};
      uint32_t values = 0;
      EXPECT_EQ(X509AttributesObjectGetType(handle, i, &type, &values, nullptr), 0);
      for (uint32_t arc = 0; arc < type.count; ++arc) text += (arc > 0 ? "." : "") + std::to_string(type.arcs[arc]);
      for (uint32_t v = 0; v < values; ++v) text += (v > 0 ? ", " : ": ") + toHex(value(i, v));
      text += "; ";
    }
    return text;
  }
};

Octets attribute(const Octets &values) { return tlv(0x30, fromHex("06 01 2A") + tlv(0x31, values)); }

TEST(Attributes, RefusesToAppend) {
  const List attributes;
  const Objid type{kArcs, 9};
  const uint32_t noObjid[] = {1, 40};
  ASSERT_EQ(attributes.append(type, {fromHex("0C 01 62"), fromHex("0C 81 01 61"), fromHex("05 00")}), 0);
  ASSERT_EQ(attributes.append({kArcs, 2}, {fromHex("30 80 00 00")}), 0);
  const std::string before = attributes.list();
  EXPECT_EQ(attributes.setFromItself(), 0);
  EXPECT_EQ(attributes.list(), before);
  EXPECT_EQ(before, "1.3.6.1.5.5.7.9.1: 05 00, 0C 01 61, 0C 01 62; 1.3: 30 00; ");
  const std::tuple<uint32_t, Objid, std::vector<Octets>> rows[] = {
      {X509AttributesError_Empty, type, {}},
      {AsnCheckError_Objid, {noObjid, 2}, {fromHex("05 00")}},
      {AsnError_Truncated, type, {fromHex("05 00"), fromHex("05 01")}},
      {AsnError_Trailing, type, {fromHex("05 00 00")}},
  };
  for (const auto &[code, attribute, values] : rows) {
    Err err;
    EXPECT_EQ(attributes.append(attribute, values, err), -1);
    EXPECT_EQ(err.code(), code) << err.text();
    EXPECT_EQ(err.block.count, 1u) << err.text();
    EXPECT_EQ(attributes.list(), before) << err.text();
  }
}

TEST(Attributes, AppendsItsOwnParts) {
  const List attributes;
  ASSERT_EQ(attributes.append({kArcs, 9}, {fromHex("0C 01 62")}), 0);
  const std::string once = attributes.list();
  std::string expected = once;
  for (int i = 0; i < 6; ++i) {
    Objid type{};
    uint32_t count = 0;
    ASSERT_EQ(X509AttributesObjectGetType(attributes, 0, &type, &count, nullptr), 0);
    const AsnEncodedData value = attributes.value(0, 0);
    ASSERT_EQ(X509AttributesObjectAppend(attributes, &type, &value, 1, nullptr), 0);
    EXPECT_EQ(attributes.list(), expected += once);
  }
}

// The time limit of the test is the check that costs grow with the input only.
TEST(Attributes, ManyAttributesAndValues) {
  constexpr uint32_t kMany = 100000;
  Octets values;
  Octets list;
  for (uint32_t i = kMany; i-- > 0;) {
    const Octets value = tlv(4, {static_cast<uint8_t>(i >> 16), static_cast<uint8_t>(i >> 8), static_cast<uint8_t>(i)});
    values.insert(values.end(), value.begin(), value.end());
    const Octets member = attribute(value);
    list.insert(list.end(), member.begin(), member.end());
  }
  const List wide;
  const List deep;
  const List appended;
  ASSERT_EQ(wide.set(tlv(0x30, attribute(values))), 0);
  ASSERT_EQ(deep.set(tlv(0x30, list)), 0);
  for (uint32_t i = 0; i < kMany; ++i) {
    ASSERT_EQ(toHex(wide.value(0, i)), toHex(deep.value(kMany - 1 - i, 0))) << i;
    ASSERT_EQ(appended.append({kArcs, 9}, {fromHex("05 00")}), 0);
  }
  EXPECT_EQ(appended.encoding().length, kMany * 16 + 5);
}

// Whatever a pool at its limit refuses, the object stays as it is; nothing is left behind by failure or success.
TEST(Attributes, MemoryIsBounded) {
  const Octets small = tlv(0x30, attribute(fromHex("05 00")));
  const Octets large = tlv(0x30, attribute(fromHex("05 00*3000")) + attribute(fromHex("05 00*9000")));
  const List attributes;
  const AsnMemObject pool = attributes.handle->pool;
  const auto live = [pool] { return usage(pool).first; };
  ASSERT_EQ(attributes.set(small), 0);
  const uint64_t before = live();
  uint32_t refused = 0;
  for (uint64_t limit = 1000;; limit += 500, ++refused) {
    ASSERT_EQ(AsnMemObjectSetLimit(pool, limit, nullptr), 0);
    Err err;
    if (attributes.set(large, err) == 0) break;
    EXPECT_EQ(err.code(), uint32_t{AsnMemError_Limit}) << err.text();
    EXPECT_EQ(live(), before);
    EXPECT_EQ(attributes.list(), "1.2: 05 00; ");
  }
  EXPECT_GT(refused, 10u);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(attributes.set(small), 0);
    ASSERT_EQ(live(), before);
    ASSERT_EQ(attributes.set(large), 0) << "what was replaced makes room under the limit";
  }
}

TEST(Attributes, NullsAndIndices) {
  const List attributes;
  Objid type{kArcs, 9};
  uint32_t count = 0;
  AsnEncodedData encoding{};
  const auto value = [&](uint32_t index, uint32_t valueIndex) {
    return codeOf(X509AttributesObjectGetValue, attributes, index, valueIndex, &encoding);
  };
  EXPECT_EQ(codeOf(X509AttributesObjectGetPduDER, attributes, &encoding), uint32_t{X509AttributesError_Empty});
  ASSERT_EQ(attributes.append(type, {fromHex("05 00")}), 0);
  for (const uint32_t code : {value(1, 0), value(0, 1), value(0, UINT32_MAX),
                              codeOf(X509AttributesObjectGetType, attributes, 1u, &type, &count)}) {
    EXPECT_EQ(code, uint32_t{X509AttributesError_Index});
  }
  for (const X509AttributesObject object : {X509AttributesObject{attributes}, X509AttributesObject{}}) {
    refuseNulls(X509AttributesError_NullParameter, object, X509AttributesObjectCreate, X509AttributesObjectSetPduBER,
                X509AttributesObjectGetPduDER, X509AttributesObjectAppend, X509AttributesObjectCal,
                X509AttributesObjectGetType, X509AttributesObjectGetValue);
  }
}

}  // namespace
}  // namespace ketra::test
