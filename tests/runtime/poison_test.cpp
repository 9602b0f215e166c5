// AddressSanitizer sees a read beside what the test inputs, pools, work objects and lists hand out; so it would see one
// in every other test.
#include <cstring>
#include <deque>
#include <functional>

#include "runtime/asn1/node.h"
#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

struct Owners {
  ~Owners() { X509NameObjectDestroy(name, nullptr); }

  std::deque<Exact> inputs;
  Pool pool;
  Work work{type("Oct")};
  X509NameObject name = nullptr;
};

AsnOct input(Owners &owners, const std::string &hex) {
  const AsnEncodedData data = owners.inputs.emplace_back(fromHex(hex)).data();
  return {data.octets, data.length};
}

// A block with others around it.
AsnOct block(Owners &owners, uint32_t size) {
  void *memory[3];
  for (void *&each : memory) {
    EXPECT_EQ(AsnMemObjectMalloc(owners.pool, size, &each, nullptr), 0);
    std::memset(each, 1, size);
  }
  return {static_cast<const uint8_t *>(memory[1]), size};
}

AsnOct freed(Owners &owners, uint32_t size) {
  const AsnOct octets = block(owners, size);
  EXPECT_EQ(AsnMemObjectFree(owners.pool, octets.octets, nullptr), 0);
  return octets;
}

// The second block after another has been freed: of the same place, and smaller.
AsnOct reused(Owners &owners, uint32_t size) {
  const AsnOct larger = freed(owners, 200);
  const AsnOct smaller{larger.octets, size};
  void *memory = nullptr;
  EXPECT_EQ(AsnMemObjectMalloc(owners.pool, size, &memory, nullptr), 0);
  EXPECT_EQ(memory, smaller.octets);
  std::memset(memory, 1, size);
  return smaller;
}

// A string that a work object holds, with others around it.
AsnOct content(Owners &owners, uint32_t size) {
  const Octets octets(size, 1);
  const AsnOct value{octets.data(), size};
  const uint8_t *made[3];
  for (const uint8_t *&each : made) {
    EXPECT_EQ(AsnSetOctDER(owners.work.object, owners.work.value, "/", &value, nullptr), 0);
    each = owners.work.value->content;
  }
  return {made[1], size};
}

// The encoding of a list with room to grow.
AsnOct list(Owners &owners) {
  constexpr uint32_t arcs[] = {2, 5, 4, 3};
  constexpr uint8_t octets[] = {'x'};
  const X509NameAttribute attribute{{arcs, 4}, {X509DirStr_Utf8String, octets, 1}};
  AsnEncodedData encoding{};
  EXPECT_EQ(X509NameObjectCreate(&owners.name, nullptr), 0);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(X509NameObjectAppendRdn(owners.name, &attribute, 1, nullptr), 0);
  EXPECT_EQ(X509NameObjectGetPduDER(owners.name, &encoding, nullptr), 0);
  return {encoding.octets, encoding.length};
}

TEST(Poison, ReadsBesideMemory) {
  struct Case {
    const char *memory;
    std::function<AsnOct(Owners &)> make;
    std::vector<std::ptrdiff_t> offsets;  // each is refused; all between 0 and the length are read, but for a `freed`
    const char *report = "use-after-poison";
    bool isFreed = false;
  };
  const Case cases[] = {
      {"input", [](Owners &o) { return input(o, "01 02 03 04 05"); }, {-1, 5}, "heap-buffer-overflow"},
      {"input of whole words", [](Owners &o) { return input(o, "01*16"); }, {-1, 16}, "heap-buffer-overflow"},
      {"empty input", [](Owners &o) { return input(o, ""); }, {0}, "heap-buffer-overflow"},
      {"block without octets", [](Owners &o) { return block(o, 0); }, {-1, 0}},
      {"block", [](Owners &o) { return block(o, 5); }, {-1, 5, 7}},
      {"block of whole words", [](Owners &o) { return block(o, 16); }, {-1, 16}},
      {"block in a coarse size class", [](Owners &o) { return block(o, 257); }, {-1, 257, 319}},
      {"rest of a chunk", [](Owners &o) { return block(o, 40); }, {100, 136}},
      {"large block", [](Owners &o) { return block(o, 20001); }, {-1}},
      {"large block, its end", [](Owners &o) { return block(o, 20001); }, {20001}, "heap-buffer-overflow"},
      {"freed block", [](Owners &o) { return freed(o, 13); }, {0, 8, 12}, "use-after-poison", true},
      {"freed large block", [](Owners &o) { return freed(o, 20001); }, {0, 20000}, "heap-use-after-free", true},
      {"block used again", [](Owners &o) { return reused(o, 195); }, {-1, 195}},
      {"content", [](Owners &o) { return content(o, 5); }, {-1, 5}},
      {"content of whole words", [](Owners &o) { return content(o, 16); }, {-1, 16}},
      {"content in a chunk of its own", [](Owners &o) { return content(o, 5000); }, {-1, 5000}},
      {"list", list, {45}},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.memory);
    Owners owners;
    const AsnOct made = c.make(owners);
    uint32_t sum = 0;
    for (uint32_t i = 0; i < made.length && !c.isFreed; ++i) sum += made.octets[i];
    EXPECT_GE(sum, c.isFreed ? 0 : made.length);
    for (const std::ptrdiff_t offset : c.offsets) {
      SCOPED_TRACE(offset);
      EXPECT_DEATH(static_cast<void>(*const_cast<const volatile uint8_t *>(made.octets + offset)), c.report);
    }
  }
}

}  // namespace
}  // namespace ketra::test
