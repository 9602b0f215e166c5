#include "runtime/asn1/encoder.h"

#include <algorithm>
#include <cstring>

#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"

namespace ketra::asn1 {
namespace {

// What a scalar takes whose content was set, and so is in DER form, and is short, and an open value whose encoding is
// taken as it is; 0 for everything else.
inline uint64_t plainSize(const Node *node, Rules rules) {
  if (!node->isSet || node->encoding != nullptr || isExplicit(node->record)) return 0;
  if (kindOf(node->record) == Kind::Open) return rules == Rules::Ber || node->derLength ? node->length : 0;
  return node->length < 0x80 ? 2 + node->length : 0;
}

inline uint8_t *writePlain(const Node *node, uint8_t *to) {
  if (kindOf(node->record) != Kind::Open) {
    *to++ = tagOf(node->record);
    *to++ = static_cast<uint8_t>(node->length);
  }
  if (node->length > 0) std::memcpy(to, node->content, node->length);
  return to + node->length;
}

// Octets that grow towards lower addresses: contents come before the lengths that count them.
class BackwardBuffer {
 public:
  explicit BackwardBuffer(Arena &arena) : arena_(arena) {}

  uint64_t size() const { return static_cast<uint64_t>(end_ - begin_); }
  uint8_t *begin() { return begin_; }

  // Room for `count` more octets; null without memory.
  uint8_t *prepend(uint64_t count) {
    if (count > static_cast<uint64_t>(begin_ - memory_) && !grow(count)) return nullptr;
    return begin_ -= count;
  }

 private:
  [[gnu::noinline]] bool grow(uint64_t count) {
    const uint64_t held = size();
    const uint64_t capacity = std::max<uint64_t>({128, 2 * static_cast<uint64_t>(end_ - memory_), held + count});
    auto *memory = capacity <= SIZE_MAX / 2 ? arena_.makeArray<uint8_t>(static_cast<std::size_t>(capacity)) : nullptr;
    if (memory == nullptr) return false;
    uint8_t *end = memory + capacity;
    if (held > 0) std::memcpy(end - held, begin_, static_cast<std::size_t>(held));
    memory_ = memory;
    begin_ = end - held;
    end_ = end;
    return true;
  }

  Arena &arena_;
  uint8_t *memory_ = nullptr;
  uint8_t *begin_ = nullptr;
  uint8_t *end_ = nullptr;
};

class Encoder {
 public:
  Encoder(const Call &call, Arena &arena, Rules rules) : call_(call), arena_(arena), rules_(rules), buffer_(arena) {}

  bool run(const Node *root);
  AsnOct encoding() { return {buffer_.begin(), static_cast<uint32_t>(buffer_.size())}; }

 private:
  struct Frame {
    const Node *node;
    uint32_t next;  // children before this index are still to be written
    uint64_t sizeAtEnd;
  };

  bool begin(const Node *node);
  bool writePlainChildren(Frame &frame);
  bool findChild(Frame &frame, const Node **child);
  bool finish(const Frame &frame);
  bool writeScalar(const Node *node);
  bool writeTime(const Node *node);
  bool writeOpen(const Node *node);
  bool writeTags(const Node *node, uint64_t sizeAtEnd);
  bool writeExplicitTags(const Node *node, uint64_t sizeAtEnd);
  bool writeHeader(uint8_t tag, uint64_t sizeAtEnd);
  bool sortMembers(const Frame &frame);
  bool put(const uint8_t *octets, uint32_t count);
  bool failMemory() { return call_.fail(AsnError_OutOfMemory, "the system has no memory to encode") == 0; }

  const Call &call_;
  Arena &arena_;
  Rules rules_;
  BackwardBuffer buffer_;
  const Node *root_ = nullptr;
  uint32_t depth_ = 0;
  Frame frames_[ASN_MAX_NESTING];
};

bool Encoder::run(const Node *root) {
  root_ = root;
  const Node *node = root;
  do {
    if (node != nullptr && !begin(node)) return false;
    if (depth_ == 0) break;
    Frame &frame = frames_[depth_ - 1];
    node = nullptr;
    if (!writePlainChildren(frame)) return false;
    if (frame.next > 0) {
      if (!findChild(frame, &node)) return false;
    } else {
      --depth_;
      if (!finish(frame)) return false;
    }
  } while (node != nullptr || depth_ > 0);
  if (buffer_.size() <= UINT32_MAX) return true;
  call_.fail(AsnError_TooLong, "the encoding would exceed 4294967295 octets");
  return false;
}

// A scalar is written; a constructed value is entered, to be written from its last child on.
inline bool Encoder::begin(const Node *node) {
  if (!hasChildren(kindOf(node->record))) return writeScalar(node);
  if (depth_ == ASN_MAX_NESTING) {
    call_.fail(AsnError_Nesting, Text() << "nested deeper than " << uint32_t{ASN_MAX_NESTING} << " levels");
    return false;
  }
  frames_[depth_++] = {node, childPlaces(node), buffer_.size()};
  return true;
}

// Children that are absent or plain, up to one that is neither.
inline bool Encoder::writePlainChildren(Frame &frame) {
  const AsnType *const definition = definitionOf(frame.node->record);
  if (kindOf(definition) == Kind::Choice) return true;
  for (; frame.next > 0; --frame.next) {
    const Node *const child = frame.node->children[frame.next - 1];
    if (child == nullptr && isOptional(definition + frame.next)) continue;
    const uint64_t size = child == nullptr ? 0 : plainSize(child, rules_);
    if (size == 0) return true;
    uint8_t *const to = buffer_.prepend(size);
    if (to == nullptr) return failMemory();
    writePlain(child, to);
  }
  return true;
}

// The child whose turn it is; null when that is absent.
inline bool Encoder::findChild(Frame &frame, const Node **found) {
  const Node *node = frame.node;
  const Node *child = childAt(node, --frame.next);
  const bool isUnset = child != nullptr && !child->isSet && !hasChildren(kindOf(child->record));
  if (isUnset && isOptional(child->record)) return true;  // made, but never set: absent
  if (child != nullptr) {
    *found = child;
    return true;
  }
  if (kindOf(node->record) == Kind::Choice) {
    call_.fail(AsnError_Incomplete, Text() << nameOf(node->record) << " has no alternative");
    return false;
  }
  const AsnType *component = definitionOf(node->record) + 1 + frame.next;
  if (isOptional(component)) return true;
  call_.fail(AsnError_Incomplete,
             Text() << "component " << nameOf(component) << " of " << nameOf(node->record) << " is missing");
  return false;
}

bool Encoder::finish(const Frame &frame) {
  if (rules_ == Rules::Der && kindOf(frame.node->record) == Kind::SetOf && !sortMembers(frame)) return false;
  return writeTags(frame.node, frame.sizeAtEnd);
}

inline bool Encoder::writeScalar(const Node *node) {
  if (!node->isSet) {
    call_.fail(AsnError_Incomplete, Text() << nameOf(node->record) << " has no value");
    return false;
  }
  const uint64_t sizeAtEnd = buffer_.size();
  switch (kindOf(node->record)) {
    case Kind::Open:
      if (!writeOpen(node)) return false;
      break;
    case Kind::Octets:
      if (node->encoding != nullptr && contentOf(node->record) == Content::Time) {  // what was set is in DER form
        if (!writeTime(node)) return false;
        break;
      }
      [[fallthrough]];
    default:
      if (!put(node->content, node->length)) return false;
  }
  if (kindOf(node->record) == Kind::Boolean) {
    uint8_t &octet = *buffer_.begin();
    octet = octet != 0 ? 0xFF : 0x00;
  }
  if (kindOf(node->record) == Kind::BitString && node->length > 1) {  // bits beyond the last are zero (X.690 11.2.1)
    uint8_t &last = buffer_.begin()[node->length - 1];
    last = static_cast<uint8_t>(last & (0xFFu << node->content[0]));
  }
  return writeTags(node, sizeAtEnd);
}

bool Encoder::writeTime(const Node *node) {
  int64_t time = 0;
  Text reason;
  if (readTime(node->content, node->length, &time, reason) != TimeForm::Valid) {
    call_.fail(AsnError_Range, Text() << reason.c_str() << " (" << nameOf(node->record) << ")");
    return false;
  }
  uint8_t content[kTimeLength];
  return put(content, asn1::writeTime(time, content));
}

bool Encoder::writeOpen(const Node *node) {
  const uint8_t *octets = node->content;
  uint32_t length = node->length;
  if (rules_ == Rules::Der && !node->derLength) {
    Fault fault;
    Lengths lengths = checkLengths(octets, length, fault);
    if (lengths == Lengths::Other && !rewriteLengths(arena_, octets, length, &octets, &length, fault)) {
      lengths = Lengths::Malformed;
    }
    if (lengths == Lengths::Malformed) {
      call_.fail(fault.code, Text() << fault.text.c_str() << " (" << nameOf(node->record) << ")");
      return false;
    }
  }
  return put(octets, length);
}

// The node's own tag, and the EXPLICIT tags around it.
inline bool Encoder::writeTags(const Node *node, uint64_t sizeAtEnd) {
  const AsnType *type = node->record;
  if (isExplicit(type)) return writeExplicitTags(node, sizeAtEnd);
  const Kind kind = kindOf(type);
  return kind == Kind::Open || kind == Kind::Choice || writeHeader(tagOf(type), sizeAtEnd);
}

bool Encoder::writeExplicitTags(const Node *node, uint64_t sizeAtEnd) {
  uint8_t explicitTags[8];
  std::size_t count = 0;
  const AsnType *type = node->record;
  for (; isExplicit(type); type = wrappedType(type)) {
    if (count == std::size(explicitTags)) {
      call_.fail(AsnError_Nesting, "more than 8 EXPLICIT tags around one value");
      return false;
    }
    explicitTags[count++] = tagOf(type);
  }
  const bool hasTag = tagOf(type) != 0 && kindOf(type) != Kind::Open && kindOf(type) != Kind::Choice;
  if (hasTag && !writeHeader(tagOf(type), sizeAtEnd)) return false;
  if (node == root_ && !isValue(node)) return true;  // an element stands without the tag that its component adds
  while (count > 0) {
    if (!writeHeader(explicitTags[--count], sizeAtEnd)) return false;
  }
  return true;
}

inline bool Encoder::writeHeader(uint8_t tag, uint64_t sizeAtEnd) {
  const uint64_t length = buffer_.size() - sizeAtEnd;
  if (length > UINT32_MAX) {
    call_.fail(AsnError_TooLong, "the encoding would exceed 4294967295 octets");
    return false;
  }
  if (length < 0x80) [[likely]] {
    uint8_t *to = buffer_.prepend(2);
    if (to == nullptr) return failMemory();
    to[0] = tag;
    to[1] = static_cast<uint8_t>(length);
    return true;
  }
  uint8_t octets[6];
  uint8_t *const end = octets + sizeof octets;
  const uint32_t count = writeLength(end, static_cast<uint32_t>(length)) + 1;
  *(end - count) = tag;
  return put(end - count, count);
}

// SET OF members in ascending order of their encodings (X.690 11.6).
bool Encoder::sortMembers(const Frame &frame) {
  const uint32_t count = frame.node->length;
  const auto length = static_cast<std::size_t>(buffer_.size() - frame.sizeAtEnd);
  if (count < 2) return true;
  auto *members = arena_.makeArray<AsnEncodedData>(count);
  if (members == nullptr) return failMemory();
  Fault fault;
  const uint8_t *p = buffer_.begin();
  for (uint32_t i = 0; i < count; ++i) {
    const uint8_t *end = skipValue(p, buffer_.begin() + length, fault);
    members[i] = {p, static_cast<uint32_t>(end - p)};
    p = end;
  }
  const auto before = [](const AsnEncodedData &a, const AsnEncodedData &b) {
    const int order = std::memcmp(a.octets, b.octets, std::min(a.length, b.length));
    return order != 0 ? order < 0 : a.length < b.length;
  };
  if (std::is_sorted(members, members + count, before)) return true;
  std::sort(members, members + count, before);
  auto *sorted = arena_.makeArray<uint8_t>(length);
  if (sorted == nullptr) return failMemory();
  uint8_t *out = sorted;
  for (uint32_t i = 0; i < count; ++i) {
    std::memcpy(out, members[i].octets, members[i].length);
    out += members[i].length;
  }
  std::memcpy(buffer_.begin(), sorted, length);
  return true;
}

inline bool Encoder::put(const uint8_t *octets, uint32_t count) {
  if (count == 0) return true;
  uint8_t *to = buffer_.prepend(count);
  if (to == nullptr) return failMemory();
  std::memcpy(to, octets, count);
  return true;
}

// Values without nested parts, which most are: those are measured, and then written to where they stay.
struct Flat {
  const Node *node;  // plain, or a SEQUENCE or list of what is
  uint32_t size;
  uint32_t content;  // of it, behind tag and length; not used for what is plain
};

bool measureParts(const Node *node, Rules rules, uint64_t *content) {
  const AsnType *const definition = definitionOf(node->record);
  const uint32_t count = childPlaces(node);
  *content = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const Node *const child = node->children[i];
    if (child == nullptr && isOptional(definition + 1 + i)) continue;
    const uint64_t size = child == nullptr ? 0 : plainSize(child, rules);
    if (size == 0) return false;
    *content += size;
  }
  return *content <= UINT32_MAX - 6;
}

// False for what is nested, incomplete, to be sorted, or explicitly tagged.
bool measure(const Node *node, Rules rules, Flat *flat) {
  if (kindOf(node->record) == Kind::Choice && !isExplicit(node->record)) node = node->chosen;
  if (node == nullptr) return false;
  *flat = {node, static_cast<uint32_t>(plainSize(node, rules)), 0};
  if (flat->size > 0) return true;
  const Kind kind = kindOf(node->record);
  const bool isTaken =
      kind == Kind::Sequence || kind == Kind::SequenceOf || (kind == Kind::SetOf && rules == Rules::Ber);
  uint64_t content = 0;
  if (!isTaken || isExplicit(node->record) || !measureParts(node, rules, &content)) return false;
  uint8_t length[5];
  flat->content = static_cast<uint32_t>(content);
  flat->size = 1 + writeLength(length + sizeof length, flat->content) + flat->content;
  return true;
}

void write(const Flat &flat, uint8_t *to) {
  if (!hasChildren(kindOf(flat.node->record))) {
    writePlain(flat.node, to);
    return;
  }
  *to = tagOf(flat.node->record);
  to += flat.size - flat.content;
  writeLength(to, flat.content);
  const uint32_t count = childPlaces(flat.node);
  for (uint32_t i = 0; i < count; ++i) {
    if (const Node *const child = flat.node->children[i]; child != nullptr) to = writePlain(child, to);
  }
}

}  // namespace

AsnOct encode(const Call &call, Arena &arena, const Node *node, Rules rules) {
  Encoder encoder(call, arena, rules);
  return encoder.run(node) ? encoder.encoding() : AsnOct{};
}

int32_t encode(const Call &call, AsnMemObject pool, Arena &arena, const Node *node, Rules rules,
               AsnEncodedData *encoding) {
  Flat flat;
  uint8_t *octets = nullptr;
  if (measure(node, rules, &flat)) {
    octets = static_cast<uint8_t *>(allocate(pool, flat.size, call.err));
    if (octets != nullptr) write(flat, octets);
  } else {
    const AsnOct made = encode(call, arena, node, rules);
    if (made.octets == nullptr) return -1;
    octets = static_cast<uint8_t *>(duplicate(pool, made.octets, made.length, call.err));
    flat.size = made.length;
  }
  if (octets == nullptr) return -1;
  *encoding = {octets, flat.size};
  return 0;
}

}  // namespace ketra::asn1
