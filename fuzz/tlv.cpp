#include "tlv.hpp"

#include "ketra/contracts/asn1.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace fuzz {
namespace {

constexpr int kDeepest = 100;

class Reader {
 public:
  explicit Reader(Bytes octets) : p_(octets.data()), end_(octets.data() + octets.size()) {}

  bool atEnd() const { return p_ == end_; }

  bool one(Tlv &tlv, int depth) {
    std::size_t size = 0;
    if (!identifier(tlv.tag) || !length(tlv, size)) return false;
    if (tlv.length == Tlv::Length::indefinite) return tlv.isConstructed() && untilEnd(tlv, depth);
    if (size > left()) return false;
    tlv.content.assign(p_, p_ + size);
    p_ += size;
    if (!tlv.isConstructed() || depth == kDeepest) return true;
    Reader inner(tlv.content);
    tlv.hasMembers = inner.row(tlv.members, depth + 1);
    if (tlv.hasMembers) tlv.content.clear();
    if (!tlv.hasMembers) tlv.members.clear();
    return true;
  }

  bool row(std::vector<Tlv> &members, int depth) {
    while (!atEnd()) {
      if (!one(members.emplace_back(), depth)) return false;
    }
    return true;
  }

 private:
  std::size_t left() const { return static_cast<std::size_t>(end_ - p_); }

  bool identifier(Octets &tag) {
    if (atEnd()) return false;
    tag = {*p_++};
    if ((tag[0] & 0x1F) != 0x1F) return true;
    do {
      if (atEnd()) return false;
      tag.push_back(*p_++);
    } while (tag.back() >= 0x80);
    return true;
  }

  bool length(Tlv &tlv, std::size_t &size) {
    if (atEnd()) return false;
    const uint8_t first = *p_++;
    if (first == 0x80) tlv.length = Tlv::Length::indefinite;
    if (first <= 0x80) size = first;
    if (first <= 0x80) return true;
    const std::size_t count = first & 0x7Fu;
    if (first == 0xFF || count > left()) return false;
    if (*p_ == 0) tlv.length = Tlv::Length::notShortest;
    for (std::size_t i = 0; i < count; ++i) {
      if (size > SIZE_MAX >> 8) return false;
      size = size << 8 | *p_++;
    }
    if (size < 0x80) tlv.length = Tlv::Length::notShortest;
    return true;
  }

  bool untilEnd(Tlv &tlv, int depth) {
    tlv.hasMembers = true;
    while (left() >= 2 && (p_[0] != 0 || p_[1] != 0)) {
      if (depth == kDeepest || !one(tlv.members.emplace_back(), depth + 1)) return false;
    }
    if (left() < 2) return false;
    p_ += 2;
    return true;
  }

  const uint8_t *p_;
  const uint8_t *end_;
};

void append(Octets &octets, const Octets &more) { octets.insert(octets.end(), more.begin(), more.end()); }

void append(Octets &octets, const Tlv &tlv) {
  const Octets content = tlv.hasMembers ? write(tlv.members) : tlv.content;
  append(octets, tlv.tag);
  if (tlv.length == Tlv::Length::indefinite && tlv.isConstructed()) {
    octets.push_back(0x80);
    append(octets, content);
    append(octets, Octets{0, 0});
    return;
  }
  const auto size = static_cast<uint32_t>(content.size());
  Octets length = {static_cast<uint8_t>(size >> 24), static_cast<uint8_t>(size >> 16), static_cast<uint8_t>(size >> 8),
                   static_cast<uint8_t>(size)};
  if (tlv.length != Tlv::Length::notShortest) {
    while (length.size() > 1 && length.front() == 0) length.erase(length.begin());
  }
  if (length.size() > 1 || length[0] >= 0x80) octets.push_back(static_cast<uint8_t>(0x80 | length.size()));
  append(octets, length);
  append(octets, content);
}

}  // namespace

std::optional<std::vector<Tlv>> parse(Bytes octets) {
  Reader reader(octets);
  std::vector<Tlv> row;
  if (!reader.row(row, 0)) return std::nullopt;
  return row;
}

std::optional<Tlv> parseOne(Bytes octets) {
  std::optional<std::vector<Tlv>> row = parse(octets);
  if (!row || row->size() != 1) return std::nullopt;
  return std::move(row->front());
}

Octets write(const std::vector<Tlv> &row) {
  Octets octets;
  for (const Tlv &tlv : row) append(octets, tlv);
  return octets;
}

namespace {

// X.690 8.1.2.4: the long form begins with 31, its first octet is not 80.
bool isTagWellFormed(const Octets &tag) {
  if ((tag[0] & ~0x20) == 0) return false;
  if ((tag[0] & 0x1F) != 0x1F) return true;
  return tag[1] != 0x80 && tag[1] >= 0x1F;
}

bool isWellFormed(const Tlv &tlv, int depth) {
  if (!isTagWellFormed(tlv.tag) || (tlv.isConstructed() && depth >= ASN_MAX_NESTING)) return false;
  return tlv.isConstructed() == tlv.hasMembers &&
         std::ranges::all_of(tlv.members, [&](const Tlv &each) { return isWellFormed(each, depth + 1); });
}

}  // namespace

bool isWellFormed(Bytes octets) {
  const std::optional<Tlv> tlv = parseOne(octets);
  return tlv && isWellFormed(*tlv, 0);
}

bool hasDerLengths(const Tlv &tlv) {
  return tlv.length == Tlv::Length::der && std::ranges::all_of(tlv.members, hasDerLengths);
}

Octets joined(const Tlv &string) {
  if (!string.hasMembers) return string.content;
  Octets octets;
  for (const Tlv &segment : string.members) append(octets, joined(segment));
  return octets;
}

}  // namespace fuzz
