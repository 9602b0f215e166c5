#include "runtime/asn1/decoder.h"

#include "runtime/asn1/content.h"
#include "runtime/asn1/segments.h"

namespace ketra::asn1 {
namespace {

// Whether a value with this identifier octet is one of a tagged type: by the tag itself, or as a string in segments.
bool hasTag(const AsnType *type, uint8_t identifier) {
  const uint8_t tag = tagOf(type);
  if (tag == identifier) [[likely]]
    return true;
  return (tag | 0x20) == identifier && !isExplicit(type) && isSegmentable(type);
}

// The alternative of an untagged CHOICE that has this tag, or null. Alternatives that are untagged CHOICEs themselves
// are passed over, so that no schema can make this recurse.
const AsnType *alternativeOf(const AsnType *choice, uint8_t identifier) {
  const AsnType *definition = definitionOf(choice);
  for (uint32_t i = 1; i <= definition->count; ++i) {
    if (tagOf(definition + i) == identifier) return definition + i;
  }
  for (uint32_t i = 1; i <= definition->count; ++i) {
    const AsnType *alternative = definition + i;
    const bool matches = tagOf(alternative) != 0 ? hasTag(alternative, identifier) : kindOf(alternative) == Kind::Open;
    if (matches) return alternative;
  }
  return nullptr;
}

const AsnType *matchSlow(const AsnType *type, uint8_t identifier) {
  if ((identifier & ~0x20) == 0) return nullptr;  // end-of-contents
  if (tagOf(type) != 0) return hasTag(type, identifier) ? type : nullptr;
  return kindOf(type) == Kind::Open ? type : alternativeOf(type, identifier);
}

// What a value of this type with this identifier octet is read as: the type itself, or the alternative of an untagged
// CHOICE. Null when it is none.
inline const AsnType *match(const AsnType *type, uint8_t identifier) {
  return tagOf(type) == identifier && identifier != 0 ? type : matchSlow(type, identifier);
}

class Decoder {
 public:
  Decoder(Arena &arena, OpenValue *root)
      : arena_(arena), root_(root), begin_(root->bound.octets), pos_(begin_), end_(begin_ + root->bound.length) {
    frames_[0].definition = nullptr;
    frames_[0].indefinite = false;
    frames_[0].end = end_;
  }

  bool run();
  void describe(Text &message) const;
  const Fault &fault() const { return fault_; }

 private:
  // An open constructed encoding.
  enum class Role : uint8_t { Wrapper, Choice, Components, Members };
  struct Frame {
    Role role;
    bool indefinite;
    Node *node;
    const AsnType *definition;  // Components, Members: the records of those follow it; else null
    const AsnType *current;     // the record of the child that is being read; Wrapper: of the EXPLICIT tag
    const uint8_t *end;         // of the content, or of what surrounds it when the length is indefinite
    uint32_t next;              // Components: index of the next one that may come. Wrapper: values read
  };

  // A value whose header is at pos_: where it goes, its type, and what it is read as.
  struct Next {
    Node *node;
    const AsnType *type;
    const AsnType *match;
    Header header;
  };

  static bool isPlain(const Frame &frame) { return frame.definition != nullptr && !frame.indefinite; }
  bool readPlain();
  bool readPlainMembers(Frame &frame, const uint8_t *&p);
  bool readPlainComponents(Frame &frame, const uint8_t *&p);
  const uint8_t *readPlainValue(const AsnType *type, const uint8_t *p, const uint8_t *end, Node **place);
  const uint8_t *enterWrapped(const AsnType *type, const uint8_t *p, Node **place);
  bool enterPlain(const AsnType *type, const uint8_t *p, Node **place);
  bool readValue(Next &next);
  bool readScalar(const Next &next);
  bool readSegments(Node *node, Kind kind, Header header, const uint8_t **end);
  bool readOpen(const Next &next);
  bool enterChoice(Next &next);
  bool enter(Role role, const Next &next, const AsnType *current);
  bool push(Role role, Node *node, const AsnType *current, const uint8_t *end, bool indefinite);
  bool atEnd(const Frame &frame) const;
  bool leave(Frame &frame);
  bool findNext(Next &next);
  bool nextComponent(Frame &frame, uint8_t identifier);
  bool failTag(uint8_t identifier, const AsnType *type);
  bool failMemory();
  [[gnu::cold]] bool failMemory(const uint8_t *at) {
    pos_ = at;
    return failMemory();
  }
  bool isOpen() const { return top_ != frames_; }

  Arena &arena_;
  OpenValue *root_;
  const uint8_t *begin_;
  const uint8_t *pos_;
  const uint8_t *end_;
  Fault fault_;
  Frame *top_ = frames_;  // the innermost open encoding; the first stands for the whole input
  Frame frames_[1 + ASN_MAX_NESTING];
};

bool Decoder::run() {
  Next next{root_, root_->record, nullptr, {}};
  if (!readHeader(pos_, end_, next.header, fault_)) return false;
  next.match = match(next.type, next.header.identifier);
  if (next.match == nullptr) return failTag(next.header.identifier, next.type);
  for (;;) {
    if (!readValue(next)) return false;
    if (isPlain(*top_) && !readPlain()) return false;
    while (isOpen() && atEnd(*top_)) {
      if (!leave(*top_) || (isPlain(*top_) && !readPlain())) return false;
    }
    if (!isOpen()) break;
    if (!findNext(next)) return false;
  }
  if (pos_ == end_) return true;
  fault_.set(AsnError_Trailing, pos_) << uint64_t(end_ - pos_) << " octets after the end of the value";
  return false;
}

// Nearly all that is open are components and members, and nearly all of those have a short definite length and the very
// tag of their type. Such are read here; whatever is another, or not right, is left to the steps below as it was found.
// False without memory. The place in the input is kept in a register: from one value to the next all waits for it.
bool Decoder::readPlain() {
  const uint8_t *p = pos_;
  while (isPlain(*top_)) {
    Frame &frame = *top_;
    const bool isStuck = frame.role == Role::Members ? !readPlainMembers(frame, p) : !readPlainComponents(frame, p);
    if (isStuck) break;
    if (&frame != top_) continue;  // one was entered
    frame.node->encodingLength = static_cast<uint32_t>(p - frame.node->encoding);
    --top_;
  }
  pos_ = p;
  return fault_.code == 0;
}

// Members up to the end, or to one that is entered. False when one is no plain one.
[[gnu::always_inline]] inline bool Decoder::readPlainMembers(Frame &frame, const uint8_t *&p) {
  Node *const list = frame.node;
  const AsnType *const type = frame.current = frame.definition + 1;
  while (p != frame.end && top_ == &frame) {
    if (list->length == list->capacity && !growList(arena_, list)) return failMemory(p);
    const uint8_t *const next = readPlainValue(type, p, frame.end, &list->children[list->length]);
    if (next == nullptr) return false;
    ++list->length;
    p = next;
  }
  return true;
}

// The same for components; false also when one is missing at the end.
[[gnu::always_inline]] inline bool Decoder::readPlainComponents(Frame &frame, const uint8_t *&p) {
  const AsnType *const definition = frame.definition;
  while (p != frame.end && top_ == &frame) {
    const uint8_t identifier = *p;
    const AsnType *type = nullptr;
    uint32_t index = frame.next;
    do {
      if (index == definition->count) return false;
      type = definition + ++index;
    } while (tagOf(type) != identifier && tagOf(type) != 0 && isOptional(type) && !hasTag(type, identifier));
    frame.current = type;
    const uint8_t *const next = readPlainValue(type, p, frame.end, &frame.node->children[index - 1]);
    if (next == nullptr) return false;
    frame.next = index;
    p = next;
  }
  if (top_ != &frame) return true;
  uint32_t index = frame.next;
  while (index < definition->count && isOptional(definition + 1 + index)) ++index;
  return index == definition->count;
}

// Reads the value at p, or enters it; where to go on. Null when it is no plain one of the type, or without memory.
[[gnu::always_inline]] inline const uint8_t *Decoder::readPlainValue(const AsnType *type, const uint8_t *p,
                                                                     const uint8_t *end, Node **place) {
  if (end - p < 2 || p[1] >= 0x80 || p[1] > end - p - 2) return nullptr;
  if (isExplicit(type)) return p[0] == tagOf(type) ? enterWrapped(type, p, place) : nullptr;
  const uint32_t length = p[1];
  const Kind kind = kindOf(type);
  // Any tag of one octet suits an open type, but that of end-of-contents.
  const bool fits = kind == Kind::Open ? (p[0] & 0x1F) != 0x1F && (p[0] & ~0x20) != 0 : p[0] == tagOf(type);
  if (!fits) return nullptr;
  if (hasChildren(kind)) return enterPlain(type, p, place) ? p + 2 : nullptr;
  if (!isContentOf(type, p + 2, length)) return nullptr;
  auto *const node = static_cast<Node *>(arena_.allocate(sizeof(Node)));
  if (node == nullptr) {
    failMemory(p);
    return nullptr;
  }
  const bool isScalar = kind != Kind::Open;
  const uint32_t headerLength = isScalar ? 2 : 0;
  *place = new (node)
      Node{type, {p + headerLength}, p, 2 + length, 2 + length - headerLength, 0, true, State::Element, true, isScalar};
  return p + 2 + length;
}

// Enters the SEQUENCE or list that is the alternative of a CHOICE in an EXPLICIT tag, all with headers of two octets.
const uint8_t *Decoder::enterWrapped(const AsnType *type, const uint8_t *p, Node **place) {
  const AsnType *const choice = wrappedType(type);
  const uint8_t *const inner = p + 2;
  if (kindOf(choice) != Kind::Choice || tagOf(choice) != 0) return nullptr;
  if (p[1] < 2 || inner[0] == 0 || inner[1] != p[1] - 2 || top_ + 3 > frames_ + ASN_MAX_NESTING) return nullptr;
  const AsnType *const alternative = alternativeOf(choice, inner[0]);
  if (alternative == nullptr || tagOf(alternative) != inner[0] || isExplicit(alternative)) return nullptr;
  if (!hasChildren(kindOf(alternative))) return nullptr;
  Node *const node = newNode(arena_, type);
  if (node == nullptr) {
    failMemory(p);
    return nullptr;
  }
  *place = node;
  node->encoding = inner;
  push(Role::Wrapper, node, type, inner + p[1], false);
  top_->next = 1;
  push(Role::Choice, node, alternative, inner + p[1], false);
  return enterPlain(alternative, inner, &node->chosen) ? inner + 2 : nullptr;
}

// Enters a SEQUENCE or list with a header of two octets.
inline bool Decoder::enterPlain(const AsnType *type, const uint8_t *p, Node **place) {
  if (kindOf(type) == Kind::Choice || top_ == frames_ + ASN_MAX_NESTING) return false;
  Node *const node = newNode(arena_, type);
  if (node == nullptr) return failMemory(p);
  *place = node;
  node->encoding = p;
  return push(isList(kindOf(type)) ? Role::Members : Role::Components, node, nullptr, p + 2 + p[1], false);
}

// A scalar is read, a constructed value entered.
inline bool Decoder::readValue(Next &next) {
  if (next.match != next.type && !enterChoice(next)) return false;
  if (isExplicit(next.type)) return enter(Role::Wrapper, next, next.type);
  next.node->encoding = pos_;
  switch (kindOf(next.type)) {
    case Kind::Open: return readOpen(next);
    case Kind::Sequence: return enter(Role::Components, next, nullptr);
    case Kind::SequenceOf:
    case Kind::SetOf: return enter(Role::Members, next, nullptr);
    default: return readScalar(next);
  }
}

// Goes on with the alternative, which is no CHOICE without a tag: there is one level at most.
inline bool Decoder::enterChoice(Next &next) {
  next.node->encoding = pos_;
  if (!push(Role::Choice, next.node, next.match, top_->end, false)) return false;
  Node *child = newNode(arena_, next.match);
  if (child == nullptr) return failMemory();
  next.node = next.node->chosen = child;
  next.type = next.match;
  return true;
}

inline bool Decoder::readOpen(const Next &next) {
  const uint8_t *end = pos_ + next.header.size + next.header.length;
  if (next.header.indefinite) {
    end = skipValue(pos_, top_->end, fault_);
    if (end == nullptr) return false;
  }
  Node *const node = next.node;
  node->content = pos_;
  node->length = node->encodingLength = static_cast<uint32_t>(end - pos_);
  node->isSet = node->inPlace = true;
  pos_ = end;
  return true;
}

inline bool Decoder::readScalar(const Next &next) {
  Node *const node = next.node;
  const uint8_t *end = pos_ + next.header.size + next.header.length;
  node->content = pos_ + next.header.size;
  node->length = next.header.length;
  node->inPlace = true;
  node->derLength = next.header.der;
  if (next.header.constructed() && !readSegments(node, kindOf(next.type), next.header, &end)) return false;
  if (!isContentOf(next.type, node->content, node->length)) {
    explainContent(next.type, node->content, node->length, fault_);
    if (!node->inPlace) fault_.at = pos_;  // joined segments have no place in the input
    return false;
  }
  node->isSet = true;
  node->encodingLength = static_cast<uint32_t>(end - pos_);
  pos_ = end;
  return true;
}

bool Decoder::readSegments(Node *node, Kind kind, Header header, const uint8_t **end) {
  node->inPlace = node->derLength = false;
  *end = joinSegments(arena_, kind, node->content, top_->end, header, &node->content, &node->length, fault_);
  return *end != nullptr;
}

inline bool Decoder::enter(Role role, const Next &next, const AsnType *current) {
  const uint8_t *content = pos_ + next.header.size;
  const uint8_t *end = next.header.indefinite ? top_->end : content + next.header.length;
  if (!push(role, next.node, current, end, next.header.indefinite)) return false;
  pos_ = content;
  return true;
}

inline bool Decoder::push(Role role, Node *node, const AsnType *current, const uint8_t *end, bool indefinite) {
  if (top_ == frames_ + ASN_MAX_NESTING) [[unlikely]] {
    fault_.set(AsnError_Nesting, pos_) << "nested deeper than " << uint32_t{ASN_MAX_NESTING} << " levels";
    return false;
  }
  Frame &frame = *++top_;
  frame.node = node;
  frame.definition = role == Role::Components || role == Role::Members ? definitionOf(node->record) : nullptr;
  frame.current = current;
  frame.end = end;
  frame.next = 0;
  frame.role = role;
  frame.indefinite = indefinite;
  return true;
}

bool Decoder::atEnd(const Frame &frame) const {
  if (frame.role == Role::Choice) return true;  // its alternative has been read
  return frame.indefinite ? isEndOfContents(pos_, frame.end) : pos_ == frame.end;
}

bool Decoder::leave(Frame &frame) {
  if (frame.role == Role::Components) {
    frame.current = nullptr;
    const AsnType *definition = frame.definition;
    for (uint32_t i = frame.next; i < definition->count; ++i) {
      if (isOptional(definition + 1 + i)) continue;
      fault_.set(AsnError_Component, pos_) << "component " << nameOf(definition + 1 + i) << " is missing";
      return false;
    }
  }
  if (frame.role == Role::Wrapper && frame.next == 0) {
    fault_.set(AsnError_Component, pos_) << "an EXPLICIT tag around no value";
    return false;
  }
  if (frame.indefinite) pos_ += 2;
  if (frame.role != Role::Wrapper) {
    frame.node->encodingLength = static_cast<uint32_t>(pos_ - frame.node->encoding);
  }
  --top_;
  return true;
}

// What comes next in the innermost open encoding.
inline bool Decoder::findNext(Next &next) {
  Frame &frame = *top_;
  if (frame.indefinite && pos_ == frame.end) {
    fault_.set(AsnError_EndOfContents, pos_) << "the end-of-contents octets are missing";
  } else {
    readHeader(pos_, frame.end, next.header, fault_);
  }
  if (fault_.code != 0) {
    if (frame.role == Role::Components) frame.current = nullptr;  // it was the one before
    return false;
  }
  switch (frame.role) {
    case Role::Components:
      if (!nextComponent(frame, next.header.identifier)) return false;
      next.type = frame.current;
      next.node = frame.node->children[frame.next - 1] = newNode(arena_, next.type);
      break;
    case Role::Members:
      next.type = frame.current = frame.definition + 1;
      next.node = appendMember(arena_, frame.node);
      break;
    default:
      if (frame.next++ > 0) {
        fault_.set(AsnError_Component, pos_) << "an EXPLICIT tag around more than one value";
        return false;
      }
      next.node = frame.node;
      next.type = wrappedType(frame.current);
  }
  if (next.node == nullptr) return failMemory();
  next.match = match(next.type, next.header.identifier);
  return next.match != nullptr || failTag(next.header.identifier, next.type);
}

bool Decoder::nextComponent(Frame &frame, uint8_t identifier) {
  const AsnType *definition = frame.definition;
  for (; frame.next < definition->count; ++frame.next) {
    frame.current = definition + 1 + frame.next;
    if (match(frame.current, identifier) != nullptr) {
      ++frame.next;
      return true;
    }
    if (!isOptional(frame.current)) return failTag(identifier, frame.current);
  }
  frame.current = nullptr;
  for (uint32_t i = 1; i <= definition->count; ++i) {
    // An open type takes any tag: that says nothing about which component this was meant to be.
    const AsnType *const matched = match(definition + i, identifier);
    if (matched == nullptr || kindOf(matched) == Kind::Open) continue;
    fault_.set(AsnError_Component, pos_) << "component " << nameOf(definition + i) << " is repeated or out of order";
    return false;
  }
  fault_.set(AsnError_Component, pos_).hex(identifier) << " is the tag of no component that may follow";
  return false;
}

bool Decoder::failTag(uint8_t identifier, const AsnType *type) {
  if (identifier == 0) {
    fault_.set(AsnError_EndOfContents, pos_) << "end-of-contents octets where a value is needed";
    return false;
  }
  fault_.set(AsnError_Component, pos_).hex(identifier) << " is no tag of " << nameOf(type);
  if (tagOf(type) != 0) (fault_.text << ", which has ").hex(tagOf(type));
  return false;
}

bool Decoder::failMemory() {
  fault_.set(AsnError_OutOfMemory, pos_) << "the system has no memory for the elements";
  return false;
}

// "BOOLEAN content is 2 octets at offset 4 (BasicConstraints/cA)": what, where in the input, where in the value.
void Decoder::describe(Text &message) const {
  message << fault_.text.c_str() << " at offset " << uint64_t(fault_.at - begin_) << " (" << nameOf(root_->record);
  for (const Frame *each = frames_ + 1; each <= top_; ++each) {
    const Frame &frame = *each;
    if (frame.role == Role::Members && frame.node->length > 0) message << "/" << frame.node->length;
    if ((frame.role == Role::Components || frame.role == Role::Choice) && frame.current != nullptr) {
      message << "/" << nameOf(frame.current);
    }
  }
  message << ")";
}

// What a value with this primitive identifier octet is read as, where that is told by its tag: a scalar then.
inline const AsnType *scalarOf(const AsnType *type, uint8_t identifier) {
  if (tagOf(type) == 0 && kindOf(type) == Kind::Choice) {
    const AsnType *const definition = definitionOf(type);
    for (uint32_t i = 1; i <= definition->count; ++i) {
      if (tagOf(definition + i) == identifier) return definition + i;
    }
    return nullptr;
  }
  return tagOf(type) == identifier ? type : nullptr;
}

// Most values are one primitive encoding, of a scalar or of an alternative that is one: those need no frames. False
// when the value is another, or not right, which has to be told with all that the decoder knows.
[[gnu::always_inline]] inline bool decodeScalar(Arena &arena, OpenValue *root) {
  const auto [octets, length] = root->bound;
  if (length < 2 || octets[1] != length - 2 || octets[1] >= 0x80) return false;
  if (octets[0] == 0 || (octets[0] & 0x20) != 0) return false;
  const AsnType *const type = scalarOf(root->record, octets[0]);
  if (type == nullptr || !isContentOf(type, octets + 2, length - 2)) return false;
  Node *node = root;
  if (type != root->record) {
    node = arena.make<Node>();
    if (node == nullptr) return false;
    node->record = type;
    root->encoding = octets;
    root->encodingLength = length;
    root->chosen = node;
  }
  node->content = octets + 2;
  node->encoding = octets;
  node->encodingLength = length;
  node->length = length - 2;
  node->isSet = node->inPlace = node->derLength = true;
  return true;
}

[[gnu::noinline]] int32_t decodeAny(Arena &arena, OpenValue *root, Call call) {
  if (!makePlaces(arena, root)) return call.fail(AsnError_OutOfMemory, "the system has no memory for a value");
  Decoder decoder(arena, root);
  if (decoder.run()) {
    root->state = State::Decoded;
    return 0;
  }
  Text message;
  decoder.describe(message);
  return call.fail(decoder.fault().code, message);
}

}  // namespace

int32_t decode(Arena &arena, OpenValue *root, Call call) {
  root->state = State::Bound;
  root->isSet = false;
  root->length = 0;
  root->capacity = 0;
  root->chosen = nullptr;
  if (decodeScalar(arena, root)) {
    root->state = State::Decoded;
    return 0;
  }
  return decodeAny(arena, root, call);
}

}  // namespace ketra::asn1
