// Hostile and borderline values with verdicts, read in every way.

#include "library/reading.h"

namespace ketra::test {
namespace {

// Whether one way to read answers as the verdict says. Whatever it answers, it is a clean result with a trace.
void expectVerdict(const Way &way, const Octets &octets, const std::string &given) {
  using Kind = Way::Kind;
  SCOPED_TRACE(way.name);
  Err err;
  const int32_t result = way.read(octets, err);
  EXPECT_EQ(result == 0, err.block.count == 0) << err.text();
  if (way.name == "owning read" && given != "range") {  // it reads numbers of any size
    EXPECT_EQ(result == 0, given != "reject") << err.text();
  }
  const std::string verdict = given == "rejected by C" ? "reject" : given;
  const bool isChainShort = way.kind == Kind::Nodes && (err.code() & 0xFF) == 0x99;
  if (way.kind == Kind::Other || isChainShort) return;
  const bool isGet = way.kind == Kind::Get || way.kind == Kind::Nodes;
  if (verdict == "accept" || verdict == "der") {
    EXPECT_TRUE(result == 0 || (way.kind == Kind::Der && verdict != "der")) << err.text();
  } else if (isGet || (way.kind == Kind::Der && verdict == "reject")) {
    EXPECT_EQ(result, -1);
    EXPECT_EQ(err.code() == uint32_t{AsnError_Range}, verdict == "range") << err.text();
  } else if (way.kind == Kind::Count && verdict == "range") {
    EXPECT_EQ(result, 0) << err.text();
  }
}

TEST(BadInputs, OddValues) {
  for (const auto &row : rowsOf("data/odd_values.tsv")) {
    SCOPED_TRACE(row.place + " " + row.at(3));
    const Octets octets = fromHex(row.at(1));
    for (const Way &way : waysToRead(row.at(0))) expectVerdict(way, octets, row.at(2));
    if (row.at(0) != "GeneralName" || octets[0] != 0xA4) continue;
    for (const Way &way : waysToRead("Name")) expectVerdict(way, {octets.begin() + 2, octets.end()}, row.at(2));
  }
}

}  // namespace
}  // namespace ketra::test
