// Mutates inputs as what they are: an octet that chooses, then encodings. A change inside keeps the lengths around it
// right, so that it is the change that the decoder meets.

#include <algorithm>
#include <random>
#include <utility>

#include "tlv.hpp"

extern "C" std::size_t LLVMFuzzerMutate(uint8_t *data, std::size_t size, std::size_t most);
extern "C" std::size_t LLVMFuzzerCustomMutator(uint8_t *data, std::size_t size, std::size_t most, unsigned seed);
extern "C" std::size_t LLVMFuzzerCustomCrossOver(const uint8_t *one, std::size_t oneSize, const uint8_t *other,
                                                 std::size_t otherSize, uint8_t *out, std::size_t most, unsigned seed);

namespace fuzz {
namespace {

// The tags that extensions are made of.
constexpr uint8_t kTags[] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x0A, 0x0C, 0x13, 0x14, 0x16, 0x18,
                             0x1C, 0x1E, 0x30, 0x31, 0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87,
                             0x88, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0x24, 0x23, 0x1F, 0x3F};

class Mutator {
 public:
  Mutator(std::vector<Tlv> &row, unsigned seed) : row_(row), random_(seed) { collect(row_); }

  void graft(const std::vector<Tlv> &donor) {
    std::vector<const Tlv *> nodes;
    const auto visit = [&](const auto &self, const std::vector<Tlv> &row) -> void {
      for (const Tlv &tlv : row) {
        nodes.push_back(&tlv);
        self(self, tlv.members);
      }
    };
    visit(visit, donor);
    if (nodes.empty() || places_.empty()) return;
    const Tlv copy = *nodes[below(nodes.size())];
    const auto [siblings, i] = place();
    if (below(2) == 0) {
      (*siblings)[i] = copy;
    } else {
      siblings->insert(siblings->begin() + static_cast<std::ptrdiff_t>(i), copy);
    }
  }

  void change() {
    if (places_.empty()) return;
    const auto [siblings, i] = place();
    Tlv &tlv = (*siblings)[i];
    const auto at = siblings->begin() + static_cast<std::ptrdiff_t>(i);
    switch (below(9)) {
      case 0: siblings->erase(at); break;
      case 1: siblings->insert(at, Tlv(tlv)); break;
      case 2: std::swap(tlv, (*siblings)[below(siblings->size())]); break;
      case 3: retag(tlv); break;
      case 4: tlv.length = static_cast<Tlv::Length>(below(3)); break;
      case 5: segment(tlv); break;
      case 6: graft(row_); break;
      default: mutateContent(tlv); break;
    }
  }

 private:
  using Place = std::pair<std::vector<Tlv> *, std::size_t>;

  void collect(std::vector<Tlv> &row) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      places_.emplace_back(&row, i);
      collect(row[i].members);
    }
  }
  Place place() { return places_[below(places_.size())]; }
  std::size_t below(std::size_t bound) { return random_() % bound; }

  void retag(Tlv &tlv) {
    const uint8_t tag = kTags[below(std::size(kTags))];
    const bool wasConstructed = tlv.isConstructed();
    tlv.tag = {tag};
    if ((tag & 0x1F) == 0x1F) tlv.tag.push_back(static_cast<uint8_t>(below(0x80)));
    if (tlv.isConstructed() == wasConstructed) return;
    const Octets content = tlv.hasMembers ? write(tlv.members) : tlv.content;
    tlv.hasMembers = false;
    tlv.members.clear();
    tlv.content = content;
  }

  // X.690 8.6.4, 8.7.3
  void segment(Tlv &tlv) {
    if (tlv.isConstructed() || tlv.content.empty()) return;
    const uint8_t inner = below(4) == 0 ? 0x03 : 0x04;
    const auto middle = tlv.content.begin() + static_cast<std::ptrdiff_t>(below(tlv.content.size()));
    tlv.members = {Tlv{{inner}, {}, false, {tlv.content.begin(), middle}, {}},
                   Tlv{{inner}, {}, false, {middle, tlv.content.end()}, {}}};
    tlv.tag[0] |= 0x20;
    tlv.hasMembers = true;
    tlv.content.clear();
  }

  void mutateContent(Tlv &tlv) {
    if (tlv.hasMembers) return;
    const std::size_t size = tlv.content.size();
    const std::size_t most = size + 16;
    tlv.content.resize(most);
    tlv.content.resize(LLVMFuzzerMutate(tlv.content.data(), size, most));
  }

  std::vector<Tlv> &row_;
  std::minstd_rand random_;
  std::vector<Place> places_;
};

std::size_t put(const Octets &octets, uint8_t *data, std::size_t most) {
  if (octets.size() + 1 > most) return 0;
  std::ranges::copy(octets, data + 1);
  return octets.size() + 1;
}

}  // namespace
}  // namespace fuzz

std::size_t LLVMFuzzerCustomMutator(uint8_t *data, std::size_t size, std::size_t most, unsigned seed) {
  using namespace fuzz;
  std::optional<std::vector<Tlv>> row;
  if (size > 1 && seed % 4 != 0) row = parse({data + 1, size - 1});
  if (!row) return LLVMFuzzerMutate(data, size, most);
  const unsigned times = 1 + seed / 4 % 3;
  for (unsigned i = 0; i < times; ++i) Mutator(*row, seed + i).change();
  const std::size_t written = put(write(*row), data, most);
  return written != 0 ? written : LLVMFuzzerMutate(data, size, most);
}

std::size_t LLVMFuzzerCustomCrossOver(const uint8_t *one, std::size_t oneSize, const uint8_t *other,
                                      std::size_t otherSize, uint8_t *out, std::size_t most, unsigned seed) {
  using namespace fuzz;
  if (oneSize < 2 || otherSize < 2 || most == 0) return 0;
  std::optional<std::vector<Tlv>> row = parse({one + 1, oneSize - 1});
  const std::optional<std::vector<Tlv>> donor = parse({other + 1, otherSize - 1});
  if (!row || !donor) return 0;
  Mutator(*row, seed).graft(*donor);
  out[0] = one[0];
  return put(write(*row), out, most);
}
