// GeneralSubtrees and NameConstraints.

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;
const AsnType *const kConstraints = schema::record(schema::Entry::NameConstraints);

TEST(GeneralSubtrees, DistancesAsTheyAre) {
  Structures samples(kSamples);
  X509GenSubtree &subtree = samples.subtrees[0];
  subtree = {nullptr, subtree.base, {-1, 1}, {-5, 1}};
  EXPECT_EQ(X509MUtilCheckGenSubtrees(&subtree, nullptr), 0);
  Work work(kConstraints);
  const Pool pool;
  ASSERT_EQ(X509MUtilSetGenSubtrees(work.object, work.value, "permittedSubtrees", &subtree, nullptr), 0);
  EXPECT_EQ(work.encode(), "30 0D A0 0B 30 09 82 01 61 80 01 FF 81 01 FB");
  subtree.minimum = subtree.maximum = {7, 2};
  EXPECT_EQ(X509MUtilCheckGenSubtrees(&subtree, nullptr), -1) << "no other flag";
  ASSERT_EQ(X509MUtilSgetGenSubtrees(pool, work.object, work.value, "permittedSubtrees", &subtree, nullptr), 0);
  EXPECT_EQ(subtree.minimum.option + subtree.maximum.option, 2);
  EXPECT_TRUE(subtree.minimum.value == -1 && subtree.maximum.value == -5);
}

TEST(GeneralSubtrees, ChainsOfAnotherLength) {
  const Exact encoding(fromHex(Structures::constraintsDer(true, false)));
  const Exact none(fromHex("30 02 A0 00"));
  const Pool pool;
  Work work(kConstraints, encoding.data());
  Work empty(kConstraints, none.data());
  ASSERT_EQ(work.decode() + empty.decode(), 0);
  Structures read(kPrepared);
  X509GenSubtree third{nullptr, nullptr, {9, 9}, {9, 9}};
  read.subtrees[1].next = &third;
  X509GenSubtreesOpt list{read.subtrees, 0};
  const auto get = [&](const char *path) {
    return refusal(X509MUtilSgetGenSubtreesOpt, pool, work.object, work.value, path, &list);
  };
  EXPECT_EQ(get("permittedSubtrees"), "");
  EXPECT_EQ(list.option, 1);
  EXPECT_EQ(read.bases.at(1).ber(), sampleOf("iPAddress"));
  EXPECT_EQ(third.minimum.option, 9);
  read.subtrees[0].next = nullptr;
  EXPECT_EQ(get("permittedSubtrees"), "014FB299 X509MUtilSgetGenSubtrees: Chain of GenSubtrees");
  EXPECT_EQ(get("excludedSubtrees"), "");
  EXPECT_EQ(list.option, 0);
  Err absent;
  EXPECT_EQ(X509MUtilSgetGenSubtrees(pool, work.object, work.value, "excludedSubtrees", read.subtrees, absent), -1);
  EXPECT_EQ(absent.trace().back(), "X509MUtilSgetGenSubtrees: Call AsnCalCountOfSequence");
  EXPECT_EQ(codeOf(X509MUtilSgetGenSubtrees, pool, empty.object, empty.value, "permittedSubtrees", read.subtrees),
            0x014FB286u);
}

TEST(GeneralSubtrees, Refused) {
  Structures samples(kSamples);
  Work work(kConstraints);
  EXPECT_EQ(refusal(X509MUtilSetGenSubtrees, work.object, work.value, "permittedSubtrees", nullptr),
            "014FB186 X509MUtilSetGenSubtrees: GenSubtree");
  X509GenSubtreesOpt list{nullptr, 1};
  EXPECT_EQ(codeOf(X509MUtilCheckGenSubtreesOpt, &list), 0x014FB486u);
  samples.subtrees[1].base = nullptr;
  list.genSubtrees = samples.subtrees;
  EXPECT_EQ(codeOf(X509MUtilCheckGenSubtreesOpt, &list), 0x014FB402u);
  list.option = 2;
  Err option;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, option), -1);
  EXPECT_EQ(option.code(), 0x014FB554u);
  EXPECT_EQ(option.block.entries[0].valueLength, sizeof list);
  list.option = 0;
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(&list, nullptr), 0);
}

TEST(NameConstraints, EitherListOrBoth) {
  for (const int lists : {0, 1, 2, 3}) {
    const int32_t permitted = lists & 1;
    const int32_t excluded = lists >> 1;
    Structures samples(kSamples);
    const Extensions extensions;
    KetraNameConstraints value{{samples.subtrees, permitted}, {samples.subtrees, excluded}};
    ASSERT_EQ(refusal(KetraObjectSsetNameConstraints, extensions, permitted == 1 ? 1 : 2, &value), "");
    EXPECT_EQ(extensions.stored(X509Objid_NameConstraints), Structures::constraintsDer(permitted == 1, excluded == 1));
    uint32_t counts[2] = {9, 9};
    ASSERT_EQ(KetraObjectSgetNameConstraintsCalGenSubtree(extensions, &counts[0], &counts[1], nullptr), 0);
    EXPECT_TRUE(counts[0] == (permitted == 1 ? 2 : 0) && counts[1] == (excluded == 1 ? 2 : 0));
    value.permittedSubtrees.option = value.excludedSubtrees.option = 9;
    ASSERT_EQ(refusal(KetraObjectSgetNameConstraints, extensions, &value), "");
    EXPECT_TRUE(value.permittedSubtrees.option == permitted && value.excludedSubtrees.option == excluded);
    int32_t critical = 7;
    EXPECT_EQ(KetraObjectSgetNameConstraintsCritical(extensions, &critical, nullptr), 0);
    EXPECT_EQ(critical, permitted);
  }
}

TEST(NameConstraints, Failures) {
  Structures samples(kSamples);
  Structures read(kPrepared);
  Extensions extensions;
  KetraNameConstraints value{{nullptr, 1}, {samples.subtrees, 2}};
  EXPECT_EQ(codeOf(KetraObjectSsetNameConstraints, extensions, 1, &value), 0x014FB486u);
  value.permittedSubtrees.genSubtrees = samples.subtrees;
  EXPECT_EQ(codeOf(KetraObjectSsetNameConstraints, extensions, 1, &value), 0x014FB554u);
  EXPECT_EQ(extensions.stored(X509Objid_NameConstraints), "absent");

  extensions.store(X509Objid_NameConstraints, fromHex(Structures::constraintsDer(true, true)));
  KetraNameConstraints filled{{read.subtrees, 0}, {nullptr, 0}};
  EXPECT_EQ(codeOf(KetraObjectSgetNameConstraints, extensions, &filled), 0x014FB299u);
  EXPECT_EQ(read.bases.at(1).ber(), sampleOf("iPAddress")) << "the permitted list is written";

  Err null;
  uint32_t count = 0;
  EXPECT_EQ(KetraObjectSsetNameConstraints(extensions, 1, nullptr, null), -1);
  EXPECT_EQ(KetraObjectSgetNameConstraintsCalGenSubtree(extensions, &count, nullptr, null), -1);
  EXPECT_EQ(X509MUtilSetGenSubtrees(nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilSgetGenSubtrees(nullptr, nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilSgetGenSubtreesOpt(nullptr, nullptr, nullptr, "", nullptr, null), -1);
  EXPECT_EQ(X509MUtilCheckGenSubtreesOpt(nullptr, null), -1);
  EXPECT_EQ(null.code(), 0x01460F02u);
  EXPECT_EQ(null.block.count, 6u);
}

}  // namespace
}  // namespace ketra::test
