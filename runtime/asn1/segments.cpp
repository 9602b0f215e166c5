#include "runtime/asn1/segments.h"

#include <cstring>

namespace ketra::asn1 {
namespace {

// Steps through the primitive segments of a constructed string, however they are nested.
class Segments {
 public:
  Segments(Kind kind, const uint8_t *p, const uint8_t *end, const Header &header)
      : tag_(kind == Kind::BitString ? 0x03 : 0x04), p_(p) {
    levels_[0] = {header.indefinite ? end : p + header.length, header.indefinite};
  }

  enum class Step { Segment, End, Fault };
  Step next(const uint8_t *&content, uint32_t &length, Fault &fault) {
    for (;;) {
      const Level &level = levels_[depth_];
      if (level.indefinite ? isEndOfContents(p_, level.end) : p_ == level.end) {
        if (level.indefinite) p_ += 2;
        if (depth_ == 0) return Step::End;
        --depth_;
        continue;
      }
      if (p_ == level.end) {
        fault.set(AsnError_EndOfContents, p_) << "the end-of-contents octets are missing";
        return Step::Fault;
      }
      Header header;
      if (!readHeader(p_, level.end, header, fault)) return Step::Fault;
      if ((header.identifier & ~0x20) != tag_) {
        (fault.set(AsnError_Segment, p_).hex(header.identifier) << " is no tag of a segment, which has ").hex(tag_);
        return Step::Fault;
      }
      const uint8_t *at = p_;
      p_ += header.size;
      if (!header.constructed()) {
        content = p_;
        length = header.length;
        p_ += header.length;
        return Step::Segment;
      }
      if (depth_ + 1 == ASN_MAX_NESTING) {
        fault.set(AsnError_Nesting, at) << "segments nested deeper than " << uint32_t{ASN_MAX_NESTING} << " levels";
        return Step::Fault;
      }
      levels_[depth_ + 1] = {header.indefinite ? level.end : p_ + header.length, header.indefinite};
      ++depth_;
    }
  }
  const uint8_t *position() const { return p_; }

 private:
  struct Level {
    const uint8_t *end;
    bool indefinite;
  };
  uint8_t tag_;
  const uint8_t *p_;
  uint32_t depth_ = 0;
  Level levels_[ASN_MAX_NESTING];
};

// A segment of a bit string: only the last one may have unused bits.
bool checkBitSegment(const uint8_t *content, uint32_t length, bool afterPartial, Fault &fault) {
  if (length == 0 || content[0] > 7 || (content[0] > 0 && length == 1)) {
    fault.set(AsnError_BitString, content) << "a segment with an impossible number of unused bits";
    return false;
  }
  if (afterPartial) {
    fault.set(AsnError_BitString, content) << "unused bits in a segment before the last";
    return false;
  }
  return true;
}

}  // namespace

const uint8_t *joinSegments(Arena &arena, Kind kind, const uint8_t *p, const uint8_t *end, const Header &header,
                            const uint8_t **content, uint32_t *length, Fault &fault) {
  const bool isBits = kind == Kind::BitString;
  const uint32_t lead = isBits ? 1 : 0;  // each bit segment, and the result, starts with its count of unused bits
  uint32_t total = lead;                 // cannot overflow: each segment brings at least its header
  uint8_t unused = 0;
  const uint8_t *part = nullptr;
  uint32_t partLength = 0;
  Segments first(kind, p, end, header);
  Segments::Step step = first.next(part, partLength, fault);
  for (; step == Segments::Step::Segment; step = first.next(part, partLength, fault)) {
    if (isBits && !checkBitSegment(part, partLength, unused != 0, fault)) return nullptr;
    if (isBits) unused = part[0];
    total += partLength - lead;
  }
  if (step == Segments::Step::Fault) return nullptr;

  auto *joined = arena.makeArray<uint8_t>(total);
  if (joined == nullptr) {
    fault.set(AsnError_OutOfMemory, p) << "the system has no memory for a string in segments";
    return nullptr;
  }
  uint8_t *out = joined;
  if (isBits) *out++ = unused;
  Segments second(kind, p, end, header);
  while (second.next(part, partLength, fault) == Segments::Step::Segment) {
    std::memcpy(out, part + lead, partLength - lead);
    out += partLength - lead;
  }
  *content = joined;
  *length = total;
  return second.position();
}

}  // namespace ketra::asn1
