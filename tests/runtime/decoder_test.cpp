#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

template <class Object>
std::string held(const Octets &octets) {
  const Object object;
  Err err;
  EXPECT_EQ(object.set(octets, err), 0) << err.text();
  EXPECT_EQ(object.setFromItself(), 0);
  return object.der();
}

std::string decoded(const std::string &type, const Octets &octets) {
  Work work(typeNamed(type), octets);
  Err err;
  EXPECT_EQ(work.decode(err), 0) << err.text();
  return work.encode();
}

// What BER allows beyond DER is read and written as DER.
TEST(Decoder, ReadsEveryForm) {
  for (const auto &row : rowsOf("runtime/accepted.tsv")) {
    SCOPED_TRACE(row.place + " " + row.at(0));
    const Octets octets = fromHex(row.at(2));
    EXPECT_EQ(row.at(1) == "NameObject"   ? held<NameObject>(octets)
              : row.at(1) == "Attributes" ? held<Attributes>(octets)
              : row.at(1) == "Extensions" ? held<Extensions>(octets)
                                          : decoded(row.at(1), octets),
              row.at(3).find('/') == std::string::npos ? toHex(fromHex(row.at(3))) : golden(row.at(3)));
  }
}

void expectRefused(const std::string &type, const Octets &octets, Err &err) {
  Work work(typeNamed(type), octets);
  EXPECT_EQ(work.decode(err), -1);
  Err state;
  AsnValue element = nullptr;
  EXPECT_EQ(AsnGetElement(work.object, work.value, "/", &element, state), -1);
  EXPECT_EQ(state.code(), uint32_t{AsnError_State}) << "a value that was refused gives nothing away";
}

// What the object has stays.
template <class Object>
void expectKept(const std::string &has, const Octets &octets, Err &err) {
  const Object object;
  ASSERT_EQ(object.set(fromHex(has)), 0);
  EXPECT_EQ(object.set(octets, err), -1);
  EXPECT_EQ(object.der(), toHex(fromHex(has)));
}

TEST(Decoder, RefusesWhatIsMalformed) {
  for (const auto &row : rowsOf("runtime/refused.tsv")) {
    SCOPED_TRACE(row.place + " " + row.at(1));
    const Octets octets = fromHex(row.at(2));
    Err err;
    if (row.at(1) == "NameObject") {
      expectKept<NameObject>(golden("name/multi-valued"), octets, err);
    } else if (row.at(1) == "Attributes") {
      expectKept<Attributes>("30 09 30 07 06 01 2A 31 02 05 00", octets, err);
    } else if (row.at(1) == "Extensions") {
      expectKept<Extensions>("30 0B 30 09 06 03 55 1D 0F 04 02 05 00", octets, err);
    } else {
      expectRefused(row.at(1), octets, err);
    }
    EXPECT_EQ(err.code(), codeNamed(row.at(0))) << err.text();
    ASSERT_EQ(err.block.count, 1u);
    EXPECT_EQ(std::string(err.block.entries[0].message).substr(0, row.at(3).size()), row.at(3));
  }
}

TEST(Decoder, RefusesEveryPrefix) {
  std::vector<std::pair<const AsnType *, std::string>> good = {
      {type("Point"), "30 0D A0 05 A4 03 02 01 09 81 01 FF 02 01 01"},
      {type("Point"), "30 80 A0 80 A4 80 24 80 04 01 61 00 00 00 00 00 00 02 01 01 30 80 00 00 00 00"},
      {type("Oct"), "24 80 24 80 04 01 01 00 00 04 01 02 00 00"},
      {type("Bits"), "23 08 03 02 00 AA 03 02 04 F0"},
      {type("Oid"), "06 81 03 55 1D 25"},
  };
  for (const auto &[name, hex] : goldenRows()) good.emplace_back(type("Any"), hex);
  for (const auto &[schema, hex] : good) {
    const Octets whole = fromHex(hex);
    for (std::size_t n = 0; n <= whole.size(); ++n) {
      const Octets prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(n));
      EXPECT_EQ(Work(schema, prefix).decode(), n == whole.size() ? 0 : -1) << hex << " cut to " << n;
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
  EXPECT_EQ(Work(type("Chain"), chain(ASN_MAX_NESTING - 1)).decode(), 0);
  Err err;
  EXPECT_EQ(Work(type("Chain"), fromHex("30 80+A0 80*64+00 00*65")).decode(err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Nesting});

  Work work(type("Any"), fromHex("30 80*100000+00 00*100000"));
  EXPECT_EQ(work.decode(), 0);
  EXPECT_NE(work.encode().find("nested deeper than 64 levels"), std::string::npos) << "DER has to look inside";
  EXPECT_EQ(work.encode(false).size(), std::size_t{400000} * 3 - 1) << "BER keeps the octets";
}

}  // namespace
}  // namespace ketra::test
