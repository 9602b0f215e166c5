// GeneralSubtrees and NameConstraints.

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;
const AsnType *const kConstraints = schema::record(schema::Entry::NameConstraints);

TEST(GeneralSubtrees, DistancesAsTheyAre) {
  struct Row {
    AsnIntOpt minimum;
    AsnIntOpt maximum;
    const char *hex;  // of the whole value
  };
  const Row rows[] = {
      {{0, 0}, {0, 0}, "30 07 A0 05 30 03 82 01 61"},
      {{7, 0}, {7, 2}, nullptr},  // another flag is refused by the check
      {{0, 1}, {0, 0}, "30 0A A0 08 30 06 82 01 61 80 01 00"},
      {{-1, 1}, {-5, 1}, "30 0D A0 0B 30 09 82 01 61 80 01 FF 81 01 FB"},
  };
  for (const Row &row : rows) {
    Structures samples(kSamples);
    samples.subtrees[0].next = nullptr;
    samples.subtrees[0].minimum = row.minimum;
    samples.subtrees[0].maximum = row.maximum;
    EXPECT_EQ(X509MUtilCheckGenSubtrees(samples.subtrees, nullptr), row.hex == nullptr ? -1 : 0);
    if (row.hex == nullptr) continue;
    Work work(kConstraints);
    ASSERT_EQ(X509MUtilSetGenSubtrees(work.object, work.value, "permittedSubtrees", samples.subtrees, nullptr), 0);
    EXPECT_EQ(work.encode(), row.hex);

    const Exact encoding(fromHex(row.hex));
    Work decoded(kConstraints, encoding.data());
    const Pool pool;
    Structures read(kPrepared);
    ASSERT_EQ(decoded.decode(), 0);
    ASSERT_EQ(
        X509MUtilSgetGenSubtrees(pool, decoded.object, decoded.value, "permittedSubtrees", read.subtrees, nullptr), 0);
    EXPECT_EQ(read.bases.at(0).ber(), "82 01 61");
    EXPECT_EQ(read.subtrees[0].minimum.option, row.minimum.option);
    EXPECT_EQ(read.subtrees[0].maximum.option, row.maximum.option);
    if (row.maximum.option == 1) {
      EXPECT_EQ(read.subtrees[0].maximum.value, row.maximum.value);
    }
  }
}

TEST(GeneralSubtrees, ChainsOfAnotherLength) {
  const Exact encoding(fromHex(Structures::constraintsDer(true, false)));
  const Pool pool;
  Work work(kConstraints, encoding.data());
  ASSERT_EQ(work.decode(), 0);
  Structures read(kPrepared);
  X509GenSubtree third{nullptr, nullptr, {9, 9}, {9, 9}};
  read.subtrees[1].next = &third;
  X509GenSubtreesOpt list{read.subtrees, 0};
  EXPECT_EQ(X509MUtilSgetGenSubtreesOpt(pool, work.object, work.value, "permittedSubtrees", &list, nullptr), 0);
  EXPECT_EQ(list.option, 1);
  EXPECT_EQ(read.bases.at(1).ber(), sampleOf("iPAddress"));
  EXPECT_EQ(third.minimum.option, 9);
  read.subtrees[0].next = nullptr;
  Err err;
  EXPECT_EQ(X509MUtilSgetGenSubtreesOpt(pool, work.object, work.value, "permittedSubtrees", &list, err), -1);
  EXPECT_EQ(err.code(), 0x014FB299u);
  EXPECT_EQ(err.trace(), (std::vector<std::string>{"X509MUtilSgetGenSubtrees: Chain of GenSubtrees",
                                                   "X509MUtilSgetGenSubtreesOpt: Call X509MUtilSgetGenSubtrees"}));
  EXPECT_EQ(err.block.entries[0].value, nullptr);

  EXPECT_EQ(X509MUtilSgetGenSubtreesOpt(pool, work.object, work.value, "excludedSubtrees", &list, nullptr), 0);
  EXPECT_EQ(list.option, 0);
  Err absent;
  EXPECT_EQ(X509MUtilSgetGenSubtrees(pool, work.object, work.value, "excludedSubtrees", read.subtrees, absent), -1);
  EXPECT_EQ(absent.trace().back(), "X509MUtilSgetGenSubtrees: Call AsnCalCountOfSequence");

  const Exact none(fromHex("30 02 A0 00"));
  Work empty(kConstraints, none.data());
  ASSERT_EQ(empty.decode(), 0);
  Err nothing;
  EXPECT_EQ(X509MUtilSgetGenSubtrees(pool, empty.object, empty.value, "permittedSubtrees", read.subtrees, nothing), -1);
  EXPECT_EQ(nothing.code(), 0x014FB286u);
}

TEST(GeneralSubtrees, Refused) {
  Structures samples(kSamples);
  Work work(kConstraints);
  Err set;
  EXPECT_EQ(X509MUtilSetGenSubtrees(work.object, work.value, "permittedSubtrees", nullptr, set), -1);
  EXPECT_EQ(set.code(), 0x014FB186u);
  EXPECT_EQ(set.trace(), std::vector<std::string>{"X509MUtilSetGenSubtrees: GenSubtree"});
  X509GenSubtreesOpt list{nullptr, 1};
  Err empty;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, empty), -1);
  EXPECT_EQ(empty.code(), 0x014FB486u);
  samples.subtrees[1].base = nullptr;
  list.genSubtrees = samples.subtrees;
  Err noBase;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, noBase), -1);
  EXPECT_EQ(noBase.code(), 0x014FB402u);
  list.option = 2;
  Err option;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, option), -1);
  EXPECT_EQ(option.code(), 0x014FB554u);
  EXPECT_EQ(option.block.entries[0].valueLength, sizeof list);
  list.option = 0;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, nullptr), 0);
}

TEST(NameConstraints, SetCountGet) {
  for (const bool permitted : {false, true}) {
    for (const bool excluded : {false, true}) {
      Structures samples(kSamples);
      Structures first(kPrepared);
      Structures second(kPrepared);
      const Extensions extensions;
      const KetraNameConstraints value{{samples.subtrees, permitted ? 1 : 0}, {samples.subtrees, excluded ? 1 : 0}};
      Err err;
      const int32_t given = permitted ? 1 : 2;
      ASSERT_EQ(KetraObjectSsetNameConstraints(extensions, given, &value, err), 0) << err.text();
      EXPECT_EQ(extensions.stored(X509Objid_NameConstraints), Structures::constraintsDer(permitted, excluded));
      uint32_t counts[2] = {9, 9};
      ASSERT_EQ(KetraObjectSgetNameConstraintsCalGenSubtree(extensions, &counts[0], &counts[1], err), 0);
      EXPECT_EQ(counts[0], permitted ? 2u : 0u);
      EXPECT_EQ(counts[1], excluded ? 2u : 0u);
      KetraNameConstraints read{{first.subtrees, 9}, {second.subtrees, 9}};
      ASSERT_EQ(KetraObjectSgetNameConstraints(extensions, &read, err), 0) << err.text();
      EXPECT_EQ(read.permittedSubtrees.option, permitted ? 1 : 0);
      EXPECT_EQ(read.excludedSubtrees.option, excluded ? 1 : 0);
      EXPECT_EQ(second.bases.at(1).ber(), excluded ? sampleOf("iPAddress") : "empty");
      int32_t critical = 0;
      EXPECT_EQ(KetraObjectSgetNameConstraintsCritical(extensions, &critical, err), 0);
      EXPECT_EQ(critical, permitted ? 1 : 0);
    }
  }
}

TEST(NameConstraints, Failures) {
  Structures samples(kSamples);
  Structures read(kPrepared);
  Extensions extensions;
  KetraNameConstraints value{{nullptr, 1}, {samples.subtrees, 2}};
  Err empty;
  EXPECT_EQ(KetraObjectSsetNameConstraints(extensions, 1, &value, empty), -1);
  EXPECT_EQ(empty.code(), 0x014FB486u);
  EXPECT_EQ(empty.trace().back(),
            "KetraObjectSsetNameConstraints: Call X509MUtilCheckGenSubtreesOpt(permittedSubtrees)");
  value.permittedSubtrees.genSubtrees = samples.subtrees;
  Err option;
  EXPECT_EQ(KetraObjectSsetNameConstraints(extensions, 1, &value, option), -1);
  EXPECT_EQ(option.code(), 0x014FB554u);
  EXPECT_EQ(extensions.stored(X509Objid_NameConstraints), "absent");

  extensions.store(X509Objid_NameConstraints, fromHex(Structures::constraintsDer(true, true)));
  KetraNameConstraints filled{{read.subtrees, 0}, {nullptr, 0}};
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetNameConstraints(extensions, &filled, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x014FB299u);
  EXPECT_EQ(read.bases.at(1).ber(), sampleOf("iPAddress")) << "the permitted list is written";

  Err null;
  uint32_t count = 0;
  EXPECT_EQ(KetraObjectSsetNameConstraints(extensions, 1, nullptr, null), -1);
  EXPECT_EQ(KetraObjectSgetNameConstraints(nullptr, &filled, null), -1);
  EXPECT_EQ(KetraObjectSgetNameConstraintsCalGenSubtree(extensions, &count, nullptr, null), -1);
  EXPECT_EQ(X509MUtilSetGenSubtrees(nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilSgetGenSubtrees(nullptr, nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilSgetGenSubtreesOpt(nullptr, nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(nullptr, null), -1);
  EXPECT_EQ(null.code(), 0x01460F02u);
  EXPECT_EQ(null.block.count, 7u);
}

}  // namespace
}  // namespace ketra::test
