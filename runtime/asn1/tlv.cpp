#include "runtime/asn1/tlv.h"

#include <cstring>

namespace ketra::asn1 {
namespace {

// Moves `q` past the identifier octets of the high-tag-number form (X.690 8.1.2.4). No known type has such a tag, so
// the number may be of any size.
bool skipTagNumber(const uint8_t *&q, const uint8_t *end, Fault &fault) {
  const uint8_t *const start = q;
  if (q != end && *q == 0x80) {
    fault.set(AsnError_Tag, q) << "the tag number is padded";
    return false;
  }
  while (q != end && *q >= 0x80) ++q;
  if (q == end) {
    fault.set(AsnError_Truncated, q) << "the encoding ends inside a tag";
    return false;
  }
  if (*start < 31) {
    fault.set(AsnError_Tag, start) << "tag number " << uint32_t{*start} << " in the form for high tag numbers";
    return false;
  }
  ++q;
  return true;
}

bool readLength(const uint8_t *&q, const uint8_t *end, Header &header, Fault &fault) {
  const uint8_t *at = q;
  const uint8_t first = *q++;
  header.indefinite = first == 0x80;
  header.der = !header.indefinite;
  header.length = first < 0x80 ? first : 0;
  if (first < 0x80) return true;
  if (header.indefinite) {
    if (header.constructed()) return true;
    fault.set(AsnError_Length, at) << "indefinite length of a primitive encoding";
    return false;
  }
  if (first == 0xFF) {
    fault.set(AsnError_Length, at) << "reserved length octet 0xFF";
    return false;
  }
  const unsigned count = first & 0x7F;
  if (end - q < static_cast<std::ptrdiff_t>(count)) {
    fault.set(AsnError_Truncated, at) << "the encoding ends inside a length of " << count << " octets";
    return false;
  }
  uint64_t length = 0;
  for (unsigned i = 0; i < count && length <= UINT32_MAX; ++i) length = length << 8 | q[i];
  if (length > UINT32_MAX) {
    fault.set(AsnError_Truncated, at) << "a length beyond 32 bits; " << uint64_t(end - q - count) << " octets are left";
    return false;
  }
  header.der = q[0] != 0 && length >= 0x80;
  header.length = static_cast<uint32_t>(length);
  q += count;
  return true;
}

}  // namespace

bool readHeaderSlow(const uint8_t *p, const uint8_t *end, Header &header, Fault &fault) {
  if (p == end) {
    fault.set(AsnError_Truncated, p) << "the encoding ends where a value is needed";
    return false;
  }
  header.identifier = *p;
  const uint8_t *q = p + 1;
  if ((*p & 0x1F) == 0x1F && !skipTagNumber(q, end, fault)) return false;
  if (q == end) {
    fault.set(AsnError_Truncated, q) << "the encoding ends where a length is needed";
    return false;
  }
  if (!readLength(q, end, header, fault)) return false;
  header.size = static_cast<uint32_t>(q - p);
  if (header.length > static_cast<std::size_t>(end - q)) {
    fault.set(AsnError_Truncated, p) << "a length of " << header.length << " octets where " << uint64_t(end - q)
                                     << " are left";
    return false;
  }
  return true;
}

namespace {

// The header of a value; EOC octets are none.
bool readValueHeader(const uint8_t *p, const uint8_t *end, Header &header, Fault &fault) {
  if (!readHeader(p, end, header, fault)) return false;
  if ((header.identifier & ~0x20) != 0) return true;
  fault.set(AsnError_EndOfContents, p) << "end-of-contents octets where a value is needed";
  return false;
}

// Visits every encoding inside one complete encoding, outermost first: visit(p, header, depth).
template <class Visit>
bool walk(const uint8_t *octets, uint32_t length, Fault &fault, Visit &&visit) {
  struct Level {
    const uint8_t *end;
    bool indefinite;
  } levels[ASN_MAX_NESTING];
  uint32_t depth = 0;
  const uint8_t *p = octets;
  const uint8_t *end = octets + length;
  do {
    const uint8_t *bound = depth == 0 ? end : levels[depth - 1].end;
    if (depth > 0 && levels[depth - 1].indefinite && isEndOfContents(p, bound)) {
      p += 2;
      --depth;
      continue;
    }
    if (depth > 0 && !levels[depth - 1].indefinite && p == bound) {
      --depth;
      continue;
    }
    if (depth > 0 && p == bound) {
      fault.set(AsnError_EndOfContents, p) << "the end-of-contents octets are missing";
      return false;
    }
    Header header;
    if (!readValueHeader(p, bound, header, fault)) return false;
    visit(p, header, depth);
    p += header.size;
    if (!header.constructed()) {
      p += header.length;
    } else if (depth == ASN_MAX_NESTING) {
      fault.set(AsnError_Nesting, p) << "nested deeper than " << uint32_t{ASN_MAX_NESTING} << " levels";
      return false;
    } else {
      levels[depth++] = {header.indefinite ? bound : p + header.length, header.indefinite};
    }
  } while (depth > 0);
  if (p == end) return true;
  fault.set(AsnError_Trailing, p) << uint64_t(end - p) << " octets after the end of the value";
  return false;
}

}  // namespace

const uint8_t *skipValue(const uint8_t *p, const uint8_t *end, Fault &fault) {
  Header header;
  if (!readValueHeader(p, end, header, fault)) return nullptr;
  p += header.size + std::size_t{header.length};
  for (uint32_t open = header.indefinite ? 1 : 0; open > 0;) {
    if (isEndOfContents(p, end)) {
      p += 2;
      --open;
      continue;
    }
    if (p == end) {
      fault.set(AsnError_EndOfContents, p) << "the end-of-contents octets are missing";
      return nullptr;
    }
    if (!readValueHeader(p, end, header, fault)) return nullptr;
    p += header.size + std::size_t{header.length};
    if (header.indefinite) ++open;
  }
  return p;
}

bool isComplete(const uint8_t *octets, uint32_t length, Fault &fault) {
  const uint8_t *end = skipValue(octets, octets + length, fault);
  if (end == nullptr) return false;
  if (end == octets + length) return true;
  fault.set(AsnError_Trailing, end) << uint64_t(octets + length - end) << " octets after the end of the value";
  return false;
}

Lengths checkLengths(const uint8_t *octets, uint32_t length, Fault &fault) {
  bool der = true;
  const bool wellFormed =
      walk(octets, length, fault, [&](const uint8_t *, const Header &header, uint32_t) { der = der && header.der; });
  if (!wellFormed) return Lengths::Malformed;
  return der ? Lengths::Der : Lengths::Other;
}

uint32_t writeLength(uint8_t *end, uint32_t length) {
  if (length < 0x80) {
    end[-1] = static_cast<uint8_t>(length);
    return 1;
  }
  uint32_t count = 0;
  for (; length > 0; length >>= 8) end[-1 - static_cast<int>(count++)] = static_cast<uint8_t>(length);
  end[-1 - static_cast<int>(count)] = static_cast<uint8_t>(0x80 | count);
  return count + 1;
}

namespace {

// Where an encoding inside another one starts, in the order in which they start.
struct Place {
  uint32_t offset;
  uint32_t depth;
};

uint32_t identifierSize(const uint8_t *p) {
  uint32_t size = 1;
  if ((*p & 0x1F) == 0x1F) {
    while ((p[size] & 0x80) != 0) ++size;
    ++size;
  }
  return size;
}

// Writes the same values backwards from `end`, innermost first: when a constructed value's turn comes, its content is
// there. Returns where they start.
uint8_t *writeBackwards(const uint8_t *octets, uint32_t length, const Place *places, std::size_t count, uint8_t *end) {
  uint8_t *out = end;
  const uint8_t *contentEnd[ASN_MAX_NESTING + 1];
  for (uint32_t last = 0; count > 0; --count) {
    const Place &place = places[count - 1];
    for (uint32_t depth = last; depth <= place.depth; ++depth) contentEnd[depth] = out;
    last = place.depth;
    const uint8_t *p = octets + place.offset;
    Fault none;  // the walk has read these headers
    Header header{};
    readHeader(p, octets + length, header, none);
    if (!header.constructed()) {
      out -= header.length;
      std::memcpy(out, p + header.size, header.length);
    }
    out -= writeLength(out, static_cast<uint32_t>(contentEnd[place.depth] - out));
    const uint32_t identifiers = identifierSize(p);
    out -= identifiers;
    std::memcpy(out, p, identifiers);
  }
  return out;
}

}  // namespace

bool rewriteLengths(Arena &arena, const uint8_t *octets, uint32_t length, const uint8_t **rewritten,
                    uint32_t *rewrittenLength, Fault &fault) {
  std::size_t count = 0;
  if (!walk(octets, length, fault, [&](const uint8_t *, const Header &, uint32_t) { ++count; })) return false;
  // An indefinite form takes three octets besides its tag, a definite one at most five.
  const uint64_t room = length + uint64_t{2} * count;
  if (room > UINT32_MAX) {
    fault.set(AsnError_TooLong, octets) << "the encoding could exceed 4294967295 octets";
    return false;
  }
  auto *places = arena.makeArray<Place>(count);
  auto *buffer = arena.makeArray<uint8_t>(static_cast<std::size_t>(room));
  if (places == nullptr || buffer == nullptr) {
    fault.set(AsnError_OutOfMemory, octets) << "the system has no memory to rewrite an encoding";
    return false;
  }
  count = 0;
  walk(octets, length, fault, [&](const uint8_t *p, const Header &, uint32_t depth) {
    places[count++] = {static_cast<uint32_t>(p - octets), depth};
  });
  uint8_t *const end = buffer + room;
  *rewritten = writeBackwards(octets, length, places, count, end);
  *rewrittenLength = static_cast<uint32_t>(end - *rewritten);
  return true;
}

}  // namespace ketra::asn1
