#include "rewriting.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

namespace fuzz {
namespace {

enum class Kind { boolean, falseLeftOut, usageBits, reasonBits, time, set };

// Where a clause lets contents change, by the identifier octets on the way. SETs with the tag of their own need no row.
struct Row {
  std::string_view type;
  std::string_view path;
  Kind kind;
};
constexpr Row kRows[] = {
    {"basicConstraints", "30/01", Kind::boolean},
    {"keyUsage", "03", Kind::usageBits},
    {"cRLDistributionPoints", "30/30/81", Kind::reasonBits},
    {"cRLDistributionPoints", "30/30/A0/A1", Kind::set},
    {"issuingDistributionPoint", "30/A0/A1", Kind::set},
    {"issuingDistributionPoint", "30/81", Kind::boolean},
    {"issuingDistributionPoint", "30/82", Kind::boolean},
    {"issuingDistributionPoint", "30/83", Kind::reasonBits},
    {"issuingDistributionPoint", "30/84", Kind::boolean},
    {"privateKeyUsagePeriod", "30/80", Kind::time},
    {"privateKeyUsagePeriod", "30/81", Kind::time},
    {"invalidityDate", "18", Kind::time},
    {"extensions", "30/30/01", Kind::boolean},
    {"extensions", "30/30", Kind::falseLeftOut},
};

std::string hex(const Octets &octets) {
  std::string text;
  for (const uint8_t octet : octets) {
    text += "0123456789ABCDEF"[octet >> 4];
    text += "0123456789ABCDEF"[octet & 15];
  }
  return text;
}

Octets primitiveTag(const Tlv &tlv) {
  Octets tag = tlv.tag;
  tag[0] = static_cast<uint8_t>(tag[0] & ~0x20);
  return tag;
}

// By its tag; with another than its own anything may be one.
bool isString(const Tlv &tlv) {
  constexpr uint8_t kOthers[] = {0x01, 0x02, 0x05, 0x06, 0x09, 0x0A};
  return std::ranges::count(kOthers, tlv.tag[0]) == 0;
}

// The bits of a BIT STRING, segments joined, up to the last that is set among the first `most`.
std::vector<bool> bitsOf(const Tlv &tlv, std::size_t most) {
  std::vector<bool> bits;
  if (tlv.hasMembers) {
    for (const Tlv &segment : tlv.members) {
      // Only the last may have unused bits, so the others join at octets.
      const std::vector<bool> more = bitsOf(segment, SIZE_MAX);
      bits.insert(bits.end(), more.begin(), more.end());
    }
  } else if (!tlv.content.empty()) {
    const std::size_t count = (tlv.content.size() - 1) * 8 - tlv.content[0];
    for (std::size_t i = 0; i < count; ++i) bits.push_back((tlv.content[1 + i / 8] << i % 8 & 0x80) != 0);
  }
  if (most == SIZE_MAX) return bits;
  bits.resize(std::min(bits.size(), most));
  while (!bits.empty() && !bits.back()) bits.pop_back();
  return bits;
}

// X.690 11.2: unused bits are zero, and no zero bit ends a list of named bits.
bool isDerBits(const Tlv &tlv) {
  const std::vector<bool> bits = bitsOf(tlv, SIZE_MAX);
  const std::size_t octets = (bits.size() + 7) / 8;
  Octets content(1 + octets);
  content[0] = static_cast<uint8_t>(octets * 8 - bits.size());
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (bits[i]) content[1 + i / 8] = static_cast<uint8_t>(content[1 + i / 8] | 0x80 >> i % 8);
  }
  return content == tlv.content && (bits.empty() || bits.back());
}

// X.690 11.7: "YYYYMMDDHHMMSS[.f]Z", the fraction without trailing zeros.
bool isDerTime(const Octets &content) {
  const std::string text(content.begin(), content.end());
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  if (text.size() < 15 || text.back() != 'Z' || !std::all_of(text.begin(), text.begin() + 14, isDigit)) return false;
  if (text.size() == 15) return true;
  return text[14] == '.' && text.size() > 16 && text[text.size() - 2] != '0' &&
         std::all_of(text.begin() + 15, text.end() - 1, isDigit);
}

class Comparison {
 public:
  explicit Comparison(std::string_view type) : type_(type) {}

  bool same(const Tlv &before, const Tlv &after, const std::string &parent) {
    const std::string path = (parent.empty() ? "" : parent + "/") + hex(after.tag);
    if (before.tag == after.tag && before.hasMembers == after.hasMembers && before.hasMembers) {
      return sameMembers(before.members, after.members, path);
    }
    if (primitiveTag(before) != primitiveTag(after)) return false;
    if (before.tag == after.tag && before.content == after.content && !before.hasMembers && !after.hasMembers) {
      return true;
    }
    isLawful_ = true;
    // X.690 10.2: what came in segments is written in one piece.
    if (after.isConstructed() || (before.isConstructed() && !(before.hasMembers && isString(after)))) return false;
    if (has(path, Kind::usageBits)) return bitsOf(before, 9) == bitsOf(after, SIZE_MAX) && isDerBits(after);
    if (has(path, Kind::reasonBits)) return bitsOf(before, 7) == bitsOf(after, SIZE_MAX) && isDerBits(after);
    const Octets content = joined(before);
    // X.690 11.1: TRUE is FF.
    if (has(path, Kind::boolean)) return content != Octets{0} && after.content == Octets{0xFF};
    if (has(path, Kind::time)) return isDerTime(after.content) && (!isDerTime(content) || content == after.content);
    return content == after.content;
  }

  bool isLawful() const { return isLawful_; }

 private:
  bool has(const std::string &path, Kind kind) const {
    return std::ranges::any_of(
        kRows, [&](const Row &row) { return row.type == type_ && row.path == path && row.kind == kind; });
  }

  bool sameMembers(std::vector<Tlv> before, const std::vector<Tlv> &after, const std::string &path) {
    // X.690 11.5: a DEFAULT value is left out.
    if (before.size() == after.size() + 1 && before.size() > 1 && has(path, Kind::falseLeftOut)) {
      Tlv member = before[1];
      member.length = Tlv::Length::der;
      if (write(member) == Octets{0x01, 0x01, 0x00}) {
        before.erase(before.begin() + 1);
        isLawful_ = true;
      }
    }
    const bool isSet = path == "31" || path.ends_with("/31") || has(path, Kind::set);
    if (before.size() != after.size()) return false;
    return isSet ? sameSet(before, after, path) : sameRow(before, after, path);
  }

  bool sameRow(const std::vector<Tlv> &before, const std::vector<Tlv> &after, const std::string &path) {
    for (std::size_t i = 0; i < before.size(); ++i) {
      if (!same(before[i], after[i], path)) return false;
    }
    return true;
  }

  // X.690 11.6: members of a SET OF are sorted.
  bool sameSet(std::vector<Tlv> before, const std::vector<Tlv> &after, const std::string &path) {
    Comparison inOrder(type_);
    if (inOrder.sameRow(before, after, path)) {
      isLawful_ |= inOrder.isLawful_;
      return true;
    }
    isLawful_ = true;
    // First those that only moved: another may look like what has become of one of them.
    std::vector<Tlv> rest;
    for (const Tlv &member : after) {
      if (!take(before, [&](const Tlv &each) { return isMoved(each, member, path); })) rest.push_back(member);
    }
    return std::ranges::all_of(rest, [&](const Tlv &member) {
      return take(before, [&](const Tlv &each) { return same(each, member, path); });
    });
  }

  bool isMoved(const Tlv &before, const Tlv &after, const std::string &path) const {
    Comparison comparison(type_);
    return comparison.same(before, after, path) && !comparison.isLawful_;
  }

  template <class Test>
  static bool take(std::vector<Tlv> &row, const Test &test) {
    const auto found = std::ranges::find_if(row, test);
    if (found == row.end()) return false;
    row.erase(found);
    return true;
  }

  std::string_view type_;
  bool isLawful_ = false;
};

}  // namespace

Rewriting compare(std::string_view type, Bytes before, Bytes after) {
  const std::optional<Tlv> beforeTlv = parseOne(before);
  const std::optional<Tlv> afterTlv = parseOne(after);
  if (!beforeTlv || !afterTlv) return Rewriting::unlawful;
  Comparison comparison(type);
  if (!comparison.same(*beforeTlv, *afterTlv, "")) return Rewriting::unlawful;
  if (std::ranges::equal(before, after)) return Rewriting::identical;
  if (comparison.isLawful()) return Rewriting::lawful;
  return hasDerLengths(*beforeTlv) ? Rewriting::unlawful : Rewriting::lengths;
}

}  // namespace fuzz
