// Hostile inputs that are too large for a list: read in every way, in time and memory proportional to their length.

#include <pthread.h>

#include <algorithm>
#include <ctime>
#include <map>

#include "ketra/ketra.h"
#include "library/reading.h"
#include "support/names.h"
#ifndef KETRA_SANITIZED  // a sanitizer brings its own malloc
#include "library/system_requests.h"
#endif

namespace ketra::test {
namespace {

// "30*1000 > 82 00*5 + 82 01 61": tags around what follows, octets, and octets behind them.
Octets build(const std::string &recipe) {
  const std::size_t around = recipe.find('>');
  if (around == std::string::npos) return fromHex(recipe);
  const std::size_t plus = recipe.rfind('+', around);
  const std::size_t tags = plus == std::string::npos ? 0 : plus + 1;
  return fromHex(recipe.substr(0, tags)) +
         wrapped(fromHex(recipe.substr(tags, around - tags)), build(recipe.substr(around + 1)));
}

// A twentieth of a large one: enough where nothing is measured and everything takes longer.
std::string reduced(std::string recipe) {
  for (std::size_t star = 0; (star = recipe.find('*', star)) != std::string::npos; ++star) {
    const unsigned long times = std::stoul(recipe.substr(star + 1));
    if (times < 20000) continue;
    recipe.replace(star + 1, std::to_string(times).size(), std::to_string(times / 20));
  }
  return recipe;
}

// ---- Measuring -----------------------------------------------------------------------------------------------------

struct Cost {
  double seconds;  // of the processor
  double memory;   // at the peak
  int32_t result;
};

Cost costOf(const Way &way, const Octets &octets) {
  Err err;
#ifndef KETRA_SANITIZED
  const std::size_t before = held.peak = held.now;
#endif
  const std::clock_t start = std::clock();
  const int32_t result = way.read(octets, err);
  Cost cost{static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 0, result};
#ifndef KETRA_SANITIZED
  cost.memory = static_cast<double>(held.peak - before);
#endif
  EXPECT_EQ(result == 0, err.block.count == 0) << err.text();
  return cost;
}

// Tools that run programs slowly put a malloc of their own under them.
bool isMeasurable() {
#ifdef KETRA_SANITIZED
  return false;
#else
  const std::size_t before = held.now;
  const Pool pool;
  return held.now != before;
#endif
}

constexpr double kMostTimes = 40;         // the time of an ordinary input, octet for octet
constexpr double kNoticeable = 0.05;      // seconds
constexpr double kMostDecoding = 90 + 1;  // octets per octet: AsnDecode promises it, and the object has a copy
constexpr double kMostWork = 160;         // ketra.h promises it
constexpr double kMostByChains = 250;     // ketra_chains.h does
constexpr double kMostOwning = 90;        // SECURITY.md does, for C++
constexpr double kBesides = 1 << 16;

double mostMemory(const Way &way) {
  if (way.name == "view") return 0;
  if (way.name == "owning read") return kMostOwning;
  if (way.name.find("chains") != std::string::npos) return kMostByChains;
  return way.kind == Way::Kind::Count ? kMostDecoding : kMostWork;
}

class HostileInputs : public testing::TestWithParam<std::string> {};

TEST_P(HostileInputs, InEveryWay) {
  const bool isMeasured = isMeasurable();
  std::map<std::string, double> ordinary;  // seconds per octet, by the names of the ways
  for (const auto &row : rowsOf("data/hostile_inputs.tsv")) {
    if (row.at(0) != GetParam()) continue;
    SCOPED_TRACE(row.place + " " + row.at(1));
    const Octets octets = build(isMeasured ? row.at(2) : reduced(row.at(2)));
    const auto size = static_cast<double>(octets.size());
    for (const Way &way : waysToRead(row.at(0))) {
      SCOPED_TRACE(way.name);
      const Cost cost = costOf(way, octets);
      if (!isMeasured) continue;
      EXPECT_LE(cost.memory, mostMemory(way) * size + kBesides);
      if (row.at(1).starts_with("ordinary")) {
        EXPECT_TRUE(cost.result == 0 || way.kind != Way::Kind::Get);
        ordinary[way.name] = cost.seconds / size;
        continue;
      }
      double seconds = cost.seconds;
      const double most = std::max(kNoticeable, kMostTimes * ordinary.at(way.name) * size);
      for (int again = 0; again < 3 && seconds > most; ++again)
        seconds = std::min(seconds, costOf(way, octets).seconds);
      EXPECT_LE(seconds, most);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Types, HostileInputs, testing::ValuesIn([] {
                           std::vector<std::string> types;
                           for (const auto &row : rowsOf("data/hostile_inputs.tsv")) {
                             if (types.empty() || types.back() != row.at(0)) types.push_back(row.at(0));
                           }
                           return types;
                         }()),
                         [](const auto &type) { return type.param; });

// Lengths that claim what is not there, in the place of each octet: nothing is allocated for them.
TEST(HostileLengths, AtEveryPlace) {
  static const Octets kClaims[] = {
      fromHex("84 7F FF FF FF"),
      fromHex("84 80 00 00 00"),
      fromHex("84 FF FF FF FF"),
      fromHex("85 01 00 00 00 00"),
      fromHex("88 FF FF FF FF FF FF FF FF"),
      fromHex("FE+FF*126"),
  };
  std::vector<std::pair<std::string, Octets>> samples;
  for (const auto &[type, octets] : sampleValues()) samples.emplace_back(type, octets);
  for (const char *kind : kKinds) samples.emplace_back("GeneralName", fromHex(sampleOf(kind)));
  for (const auto &[type, octets] : samples) {
    for (std::size_t at = 1; at < octets.size(); ++at) {
      for (const Octets &claim : kClaims) {
        SCOPED_TRACE(type + " " + toHex(octets) + ": " + toHex(claim) + " at " + std::to_string(at));
        Octets hostile = octets;
        hostile.erase(hostile.begin() + static_cast<std::ptrdiff_t>(at));
        hostile.insert(hostile.begin() + static_cast<std::ptrdiff_t>(at), claim.begin(), claim.end());
        for (const Way &way : waysToRead(type)) {
          const Cost cost = costOf(way, hostile);
          EXPECT_LE(cost.memory, kBesides) << way.name;
          EXPECT_TRUE(at > 1 || way.name.ends_with("Critical") || cost.result != 0) << way.name;
        }
      }
    }
  }
}

#ifndef KETRA_SANITIZED
// However deep an input is: the little that a thread may have is enough.
TEST(HostileStack, IsSmall) {
  if (!isMeasurable()) GTEST_SKIP() << "under a tool that takes stack of its own";
  constexpr std::size_t kStack = 128 << 10;
  const auto readDeep = [](void *) -> void * {
    for (const auto &row : rowsOf("data/hostile_inputs.tsv")) {
      if (row.at(1).find("nested") == std::string::npos) continue;
      const Octets octets = build(row.at(2));
      for (const Way &way : waysToRead(row.at(0))) costOf(way, octets);
    }
    return nullptr;
  };
  pthread_attr_t attributes;
  pthread_t thread = 0;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStack), 0);
  ASSERT_EQ(pthread_create(&thread, &attributes, readDeep, nullptr), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

// Work memory grows by doubling: what lies just past a step costs most.
TEST(HostileMemory, AtEveryStageOfGrowth) {
  if (!isMeasurable()) GTEST_SKIP() << "another malloc than the test's own";
  for (std::size_t count = 1 << 15; count <= 1 << 16; count += 1 << 12) {
    for (const auto &row : rowsOf("data/growing_inputs.tsv")) {
      const std::string recipe = row.at(1) + std::to_string(count);
      const Octets octets = build(recipe);
      for (const Way &way : waysToRead(row.at(0))) {
        if (way.name.find(": ") != std::string::npos) continue;
        EXPECT_LE(costOf(way, octets).memory / static_cast<double>(octets.size()), mostMemory(way))
            << recipe << ", " << way.name;
      }
    }
  }
}

// ---- Whole Extensions ----------------------------------------------------------------------------------------------

// Ten octets each.
Octets manyExtensions(uint32_t count) {
  Octets members;
  for (uint32_t i = 1 << 20; i < (1 << 20) + count; ++i) {
    const auto arc = [i](int shift) { return static_cast<uint8_t>((i >> shift & 0x7F) | (shift > 0 ? 0x80 : 0)); };
    const Octets member = {0x30, 0x08, 0x06, 0x04, 0x2A, arc(14), arc(7), arc(0), 0x04, 0x00};
    members.insert(members.end(), member.begin(), member.end());
  }
  return members;
}

// What a limit on the pool and the length of the input promise together, for a certificate of ten megabytes.
TEST(HostileMemory, StaysBelowTheLimitAndTheMultiple) {
  if (!isMeasurable()) GTEST_SKIP() << "another malloc than the test's own";
  const Octets members = manyExtensions(1000000);
  const Octets first(members.begin(), members.begin() + 10);
  const struct {
    Octets octets;
    uint32_t code;  // without a limit
  } kRows[] = {
      {tlv(0x30, members), 0},
      {tlv(0x30, members + first), KetraObjectError_Duplicate},
      {wholeExtensions(X509Objid_CRLDistributionPoints, build("30 > 30 00*5000000")), 0},
  };
  for (const auto &[octets, code] : kRows) {
    for (const uint64_t limit : {uint64_t{1} << 16, uint64_t{1} << 24, uint64_t{1} << 28}) {
      SCOPED_TRACE(limit);
      const AsnEncodedData encoding{octets.data(), static_cast<uint32_t>(octets.size())};
      const std::size_t before = held.peak = held.now;
      Extensions extensions;
      Err err;
      EXPECT_EQ(AsnMemObjectSetLimit(extensions.pool(), limit, nullptr), 0);
      uint32_t count = 0;
      if (KetraObjectSetPduBER(extensions, &encoding, err) == 0) {
        KetraObjectSgetCRLDistributionPointsCalDistributionPoint(extensions, &count, nullptr);
      }
      EXPECT_TRUE(err.code() == code || err.code() == AsnMemError_Limit) << err.text();
      EXPECT_TRUE(err.code() == code || limit < uint64_t{1} << 28) << err.text();
      EXPECT_LE(held.peak - before, limit + static_cast<uint64_t>(kMostDecoding) * octets.size());
      if (limit < octets.size()) {
        EXPECT_LE(held.peak - before, limit + 1024) << "nothing is decoded";
      }
    }
  }
}
#endif

}  // namespace
}  // namespace ketra::test
