// Hostile and borderline values with verdicts, read in every way: those of tests/data/odd_values.tsv, and a longer list
// where it is at hand, a tab-separated file of id, type, hex, verdicts as BER, as DER and of the library.

#include <fstream>

#include "library/reading.h"

namespace ketra::test {
namespace {

// "24*100+0400", and "nest:TAG*DEPTH:INNER" for constructed encodings of definite length inside each other.
Octets build(const std::string &hex) {
  const std::size_t nest = hex.find("nest:");
  if (nest == std::string::npos) return fromHex(hex);
  const std::size_t colon = hex.find(':', nest + 5);
  return fromHex(hex.substr(0, nest)) +
         wrapped(fromHex(hex.substr(nest + 5, colon - nest - 5)), fromHex(hex.substr(colon + 1)));
}

// Whether one way to read answers as the verdicts say: of the library, and as DER. Whatever it answers, it is a clean
// result with a trace.
void expectVerdict(const Way &way, const Octets &octets, const std::string &verdict, bool isDer) {
  using Kind = Way::Kind;
  SCOPED_TRACE(way.name);
  Err err;
  const int32_t result = way.read(octets, err);
  EXPECT_EQ(result == 0, err.block.count == 0) << err.text();
  const bool isChainShort = way.kind == Kind::Nodes && (err.code() & 0xFF) == 0x99;
  if (verdict == "limit" || way.kind == Kind::Other || isChainShort) return;
  const bool isGet = way.kind == Kind::Get || way.kind == Kind::Nodes;
  if (verdict == "accept") {
    EXPECT_TRUE(result == 0 || (way.kind == Kind::Der && !isDer)) << err.text();
  } else if (isGet || (way.kind == Kind::Der && verdict == "reject")) {
    EXPECT_EQ(result, -1);
    EXPECT_EQ(err.code() == uint32_t{AsnError_Range}, verdict == "range") << err.text();
  } else if (way.kind == Kind::Count && verdict == "range") {
    EXPECT_EQ(result, 0) << err.text();
  }
}

void expectVerdicts(const std::string &type, const Octets &octets, const std::string &verdict, bool isDer) {
  for (const Way &way : waysToRead(type)) expectVerdict(way, octets, verdict, isDer);
  if (type != "GeneralName" || octets[0] != 0xA4) return;
  for (const Way &way : waysToRead("Name")) expectVerdict(way, {octets.begin() + 2, octets.end()}, verdict, isDer);
}

TEST(BadInputs, OddValues) {
  for (const auto &row : rowsOf(KETRA_ODD_VALUES)) {
    SCOPED_TRACE(row.at(3));
    expectVerdicts(row.at(0), fromHex(row.at(1)), row.at(2), false);
  }
}

TEST(BadInputs, EveryVerdict) {
  if (!std::ifstream(KETRA_BAD_INPUTS)) GTEST_SKIP() << "no list of bad inputs at " << KETRA_BAD_INPUTS;
  for (const auto &row : rowsOf(KETRA_BAD_INPUTS)) {
    SCOPED_TRACE(row.at(0));
    expectVerdicts(row.at(1), build(row.at(2)), row.at(5), row.at(4) == "accept");
  }
}

}  // namespace
}  // namespace ketra::test
