// Counts what typed operations ask of the system.

#include <cstdlib>

#include "ketra.h"
#include "support/support.h"

namespace {
int allocations = 0;
}

extern "C" void *__libc_malloc(std::size_t);

extern "C" void *malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

namespace ketra::test {
namespace {

template <class Run>
int count(Run &&run) {
  const int before = allocations;
  EXPECT_EQ(run(), 0);
  return allocations - before;
}

TEST(Allocations, FewPerOperation) {
  const Extensions extensions;
  KetraBasicConstraints value{{1, 1}, {0, 1}};
  EXPECT_LE(count([&] { return KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr); }), 4);
  const int gets = count([&] { return KetraObjectSgetBasicConstraints(extensions, &value, nullptr); });
  EXPECT_GE(gets, 1) << "the count sees the runtime's requests";
  EXPECT_LE(gets, 2);
  KetraObject object = nullptr;
  EXPECT_EQ(count([&] { return KetraObjectCreate(&object, nullptr); }), 1);
  EXPECT_EQ(KetraObjectDestroy(object, nullptr), 0);
  AsnObject work = nullptr;
  const int working = count([&] {
    AsnValue root = nullptr;
    AsnObjectCreate(&work, nullptr);
    AsnOpenNew(work, AsnType_SequenceOfAny, &root, nullptr);
    return AsnObjectDestroy(work, nullptr);
  });
  EXPECT_EQ(working, 1);
}

}  // namespace
}  // namespace ketra::test
