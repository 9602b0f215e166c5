#include <algorithm>
#include <cstring>
#include <random>

#include "support/support.h"

namespace ketra::test {
namespace {

uint8_t *allocate(AsnMemObject pool, uint32_t size) {
  void *memory = nullptr;
  EXPECT_EQ(AsnMemObjectMalloc(pool, size, &memory, nullptr), 0);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(memory) % 8, 0u);
  return static_cast<uint8_t *>(memory);
}

// Blocks of every size class and beyond, freed in any order, never overlap and are all accounted for.
TEST(Pool, RandomUse) {
  const Pool pool;
  std::mt19937 random(1);
  struct Block {
    uint8_t *memory;
    uint32_t size;
    uint8_t fill;
  };
  std::vector<Block> blocks;
  uint64_t live = 0;
  for (int step = 0; step < 20000; ++step) {
    if (blocks.empty() || random() % 5 < 3) {
      const auto size = static_cast<uint32_t>(random() % (1u << random() % 17));
      const Block block{allocate(pool, size), size, static_cast<uint8_t>(step)};
      std::memset(block.memory, block.fill, size);
      live += size;
      blocks.push_back(block);
    } else {
      std::swap(blocks[random() % blocks.size()], blocks.back());
      const Block block = blocks.back();
      blocks.pop_back();
      const auto isFill = [&](uint8_t octet) { return octet == block.fill; };
      ASSERT_TRUE(std::all_of(block.memory, block.memory + block.size, isFill)) << "step " << step;
      ASSERT_EQ(AsnMemObjectFree(pool, block.memory, nullptr), 0);
      live -= block.size;
    }
    ASSERT_EQ(usage(pool), std::pair(live, static_cast<uint32_t>(blocks.size())));
  }
}

TEST(Pool, RefusesWhatItDoesNotOwn) {
  const Pool pool;
  const Pool other;
  for (const uint32_t size : {16u, 40000u}) {
    uint8_t *memory = allocate(pool, size);
    std::memset(memory, 0, size);  // what stands before a stray pointer is looked at
    allocate(pool, size);
    uint8_t *foreign = allocate(other, size);
    const auto free = [&](const void *pointer) { return codeOf(AsnMemObjectFree, pool, pointer); };
    const void *const strays[] = {foreign, memory + 8, memory + 1, &memory};
    for (const void *stray : strays) EXPECT_EQ(free(stray), uint32_t{AsnMemError_NotOwned});
    EXPECT_EQ(free(memory), 0u);
    EXPECT_EQ(free(memory), uint32_t{AsnMemError_NotOwned}) << "freed already";
  }
  EXPECT_EQ(AsnMemObjectFree(pool, nullptr, nullptr), 0);
}

TEST(Pool, FreedMemoryIsUsedAgain) {
  const Pool pool;
  ASSERT_EQ(AsnMemObjectSetLimit(pool, 64 * 1024, nullptr), 0);
  for (int round = 0; round < 10000; ++round) {
    uint8_t *first = allocate(pool, 100);
    uint8_t *second = allocate(pool, 3000);
    uint8_t *large = allocate(pool, 20000);
    for (const uint8_t *memory : {first, second, large}) ASSERT_EQ(AsnMemObjectFree(pool, memory, nullptr), 0);
  }
}

TEST(Pool, LimitBoundsWhatTheSystemGives) {
  const Pool pool;
  ASSERT_EQ(AsnMemObjectSetLimit(pool, 100 * 1024, nullptr), 0);
  uint64_t total = 0;
  void *memory = nullptr;
  while (AsnMemObjectMalloc(pool, 500, &memory, nullptr) == 0) total += 500;
  EXPECT_EQ(codeOf(AsnMemObjectMalloc, pool, 500u, &memory), uint32_t{AsnMemError_Limit});
  EXPECT_GT(total, 80u * 1024);
  EXPECT_LT(total, 100u * 1024);
  EXPECT_EQ(AsnMemObjectFree(pool, memory, nullptr), 0);
  EXPECT_EQ(AsnMemObjectMalloc(pool, 500, &memory, nullptr), 0) << "what was freed can be had again";
  EXPECT_EQ(AsnMemObjectMalloc(pool, UINT32_MAX, &memory, nullptr), -1);
  EXPECT_EQ(codeOf(AsnMemObjectMalloc, pool, 20000u, &memory), uint32_t{AsnMemError_Limit});
  ASSERT_EQ(AsnMemObjectSetLimit(pool, 0, nullptr), 0);
  allocate(pool, 1000000);
}

TEST(Pool, FullPoolTakesBackAndGivesOut) {
  const Pool pool;
  ASSERT_EQ(AsnMemObjectSetLimit(pool, 2000, nullptr), 0);
  for (int round = 0; round < 3; ++round) {
    std::vector<void *> blocks;
    for (void *memory = nullptr; AsnMemObjectMalloc(pool, 64, &memory, nullptr) == 0;) blocks.push_back(memory);
    EXPECT_GE(blocks.size(), 20u) << "round " << round;
    for (const void *memory : blocks) ASSERT_EQ(AsnMemObjectFree(pool, memory, nullptr), 0);
  }
}

}  // namespace
}  // namespace ketra::test
