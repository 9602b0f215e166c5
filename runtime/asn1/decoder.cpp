#include "runtime/asn1/decoder.h"

#include "runtime/asn1/content.h"
#include "runtime/asn1/segments.h"

namespace ketra::asn1 {
namespace {

const AsnType *alternativeOf(const AsnType *choice, uint8_t identifier);

bool matchesTag(const AsnType *type, uint8_t identifier) {
  const uint8_t tag = tagOf(type);
  if (tag != 0) {
    if (tag == identifier) return true;
    return (tag | 0x20) == identifier && !isExplicit(type) && isSegmentable(type);
  }
  if (kindOf(type) == Kind::Open) return (identifier & ~0x20) != 0;  // never the tag of end-of-contents
  return alternativeOf(type, identifier) != nullptr;
}

// The alternative of an untagged CHOICE that has this tag, or null. Alternatives that are untagged CHOICEs themselves
// are passed over, so that no schema can make this recurse.
const AsnType *alternativeOf(const AsnType *choice, uint8_t identifier) {
  const AsnType *definition = definitionOf(choice);
  for (uint32_t i = 1; i <= definition->count; ++i) {
    const AsnType *alternative = definition + i;
    if (kindOf(alternative) == Kind::Choice && tagOf(alternative) == 0) continue;
    if (matchesTag(alternative, identifier)) return alternative;
  }
  return nullptr;
}

class Decoder {
 public:
  Decoder(Arena &arena, OpenValue *root)
      : arena_(arena), root_(root), begin_(root->bound.octets), pos_(begin_), end_(begin_ + root->bound.length) {}

  bool run();
  void describe(Text &message) const;
  const Fault &fault() const { return fault_; }

 private:
  // An open constructed encoding.
  enum class Role : uint8_t { Wrapper, Choice, Components, Members };
  struct Frame {
    Node *node;
    const AsnType *current;  // the record of the child that is being read; Wrapper: of the EXPLICIT tag
    const uint8_t *end;      // of the content, or of what surrounds it when the length is indefinite
    uint32_t next;           // Components: index of the next one that may come. Wrapper: values read
    Role role;
    bool indefinite;
  };

  bool readValue(Node *node, const AsnType *type, Header header);
  bool readScalar(Node *node, const AsnType *type, const Header &header);
  bool readOpen(Node *node);
  bool enter(Role role, Node *node, const AsnType *current, const Header &header);
  bool push(const Frame &frame);
  bool atEnd(const Frame &frame) const;
  bool leave(Frame &frame);
  bool nextChild(Frame &frame, const Header &header, Node *&node, const AsnType *&type);
  bool nextComponent(Frame &frame, uint8_t identifier);
  bool failTag(uint8_t identifier, const AsnType *type);
  bool failMemory();
  Frame &top() { return frames_[depth_ - 1]; }
  const uint8_t *bound() const { return depth_ == 0 ? end_ : frames_[depth_ - 1].end; }

  Arena &arena_;
  OpenValue *root_;
  const uint8_t *begin_;
  const uint8_t *pos_;
  const uint8_t *end_;
  Fault fault_;
  uint32_t depth_ = 0;
  Frame frames_[ASN_MAX_NESTING];
};

bool Decoder::run() {
  Node *node = root_;
  const AsnType *type = root_->record;
  Header header;
  if (!readHeader(pos_, end_, header, fault_)) return false;
  for (;;) {
    if (!readValue(node, type, header)) return false;
    while (depth_ > 0 && atEnd(top())) {
      if (!leave(top())) return false;
    }
    if (depth_ == 0) break;
    if (top().indefinite && pos_ == top().end) {
      fault_.set(AsnError_EndOfContents, pos_) << "the end-of-contents octets are missing";
      return false;
    }
    if (!readHeader(pos_, top().end, header, fault_)) return false;
    if (!nextChild(top(), header, node, type)) return false;
  }
  if (pos_ == end_) return true;
  fault_.set(AsnError_Trailing, pos_) << uint64_t(end_ - pos_) << " octets after the end of the value";
  return false;
}

// One value of type `type`, whose header is at pos_: a scalar is read, a constructed one entered.
bool Decoder::readValue(Node *node, const AsnType *type, Header header) {
  if (!matchesTag(type, header.identifier)) return failTag(header.identifier, type);
  if (isExplicit(type)) return enter(Role::Wrapper, node, type, header);
  node->encoding = pos_;
  const Kind kind = kindOf(type);
  switch (kind) {
    case Kind::Open: return readOpen(node);
    case Kind::Sequence: return enter(Role::Components, node, nullptr, header);
    case Kind::SequenceOf:
    case Kind::SetOf: return enter(Role::Members, node, nullptr, header);
    case Kind::Choice: break;
    default: return readScalar(node, type, header);
  }
  const AsnType *alternative = alternativeOf(type, header.identifier);
  if (!push({node, alternative, bound(), 0, Role::Choice, false})) return false;
  Node *child = newNode(arena_, alternative);
  if (child == nullptr) return failMemory();
  node->children[0] = child;
  return readValue(child, alternative, header);  // never a CHOICE without a tag: no further level
}

bool Decoder::readOpen(Node *node) {
  const uint8_t *end = skipValue(pos_, bound(), fault_);
  if (end == nullptr) return false;
  node->content = pos_;
  node->length = node->encodingLength = static_cast<uint32_t>(end - pos_);
  node->isSet = node->inPlace = true;
  pos_ = end;
  return true;
}

bool Decoder::readScalar(Node *node, const AsnType *type, const Header &header) {
  const uint8_t *content = pos_ + header.size;
  const uint8_t *end = content + header.length;
  node->content = content;
  node->length = header.length;
  node->inPlace = !header.constructed();
  node->derLength = header.der && node->inPlace;
  if (header.constructed()) {
    end = joinSegments(arena_, kindOf(type), content, bound(), header, &node->content, &node->length, fault_);
    if (end == nullptr) return false;
  }
  if (!checkContent(type, node->content, node->length, fault_)) {
    if (!node->inPlace) fault_.at = pos_;  // joined segments have no place in the input
    return false;
  }
  node->isSet = true;
  node->encodingLength = static_cast<uint32_t>(end - pos_);
  pos_ = end;
  return true;
}

bool Decoder::enter(Role role, Node *node, const AsnType *current, const Header &header) {
  const uint8_t *content = pos_ + header.size;
  const uint8_t *end = header.indefinite ? bound() : content + header.length;
  if (!push({node, current, end, 0, role, header.indefinite})) return false;
  pos_ = content;
  return true;
}

bool Decoder::push(const Frame &frame) {
  if (depth_ == ASN_MAX_NESTING) {
    fault_.set(AsnError_Nesting, pos_) << "nested deeper than " << uint32_t{ASN_MAX_NESTING} << " levels";
    return false;
  }
  frames_[depth_++] = frame;
  return true;
}

bool Decoder::atEnd(const Frame &frame) const {
  if (frame.role == Role::Choice) return true;  // its alternative has been read
  return frame.indefinite ? isEndOfContents(pos_, frame.end) : pos_ == frame.end;
}

bool Decoder::leave(Frame &frame) {
  if (frame.role == Role::Components) {
    frame.current = nullptr;
    const AsnType *definition = definitionOf(frame.node->record);
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
  --depth_;
  return true;
}

// The node and type of the value that comes next in the innermost open encoding.
bool Decoder::nextChild(Frame &frame, const Header &header, Node *&node, const AsnType *&type) {
  if (frame.role == Role::Wrapper) {
    if (frame.next++ > 0) {
      fault_.set(AsnError_Component, pos_) << "an EXPLICIT tag around more than one value";
      return false;
    }
    node = frame.node;
    type = wrappedType(frame.current);
    return true;
  }
  if (frame.role == Role::Members) {
    frame.current = definitionOf(frame.node->record) + 1;
    node = appendMember(arena_, frame.node);
  } else {
    if (!nextComponent(frame, header.identifier)) return false;
    node = frame.node->children[frame.next - 1] = newNode(arena_, frame.current);
  }
  type = frame.current;
  return node != nullptr || failMemory();
}

bool Decoder::nextComponent(Frame &frame, uint8_t identifier) {
  const AsnType *definition = definitionOf(frame.node->record);
  for (; frame.next < definition->count; ++frame.next) {
    frame.current = definition + 1 + frame.next;
    if (matchesTag(frame.current, identifier)) {
      ++frame.next;
      return true;
    }
    if (!isOptional(frame.current)) return failTag(identifier, frame.current);
  }
  frame.current = nullptr;
  for (uint32_t i = 1; i <= definition->count; ++i) {
    if (!matchesTag(definition + i, identifier)) continue;
    fault_.set(AsnError_Component, pos_) << "component " << nameOf(definition + i) << " is repeated or out of order";
    return false;
  }
  fault_.set(AsnError_Component, pos_).hex(identifier) << " is the tag of no component";
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
  for (uint32_t i = 0; i < depth_; ++i) {
    const Frame &frame = frames_[i];
    if (frame.role == Role::Members && frame.node->length > 0) message << "/" << frame.node->length;
    if ((frame.role == Role::Components || frame.role == Role::Choice) && frame.current != nullptr) {
      message << "/" << nameOf(frame.current);
    }
  }
  message << ")";
}

}  // namespace

int32_t decode(Arena &arena, OpenValue *root, const Call &call) {
  root->state = OpenValue::State::Bound;
  root->isSet = false;
  root->length = 0;
  root->capacity = 0;
  if (!startChildren(arena, root)) return call.fail(AsnError_OutOfMemory, "the system has no memory for a value");
  Decoder decoder(arena, root);
  if (decoder.run()) {
    root->state = OpenValue::State::Decoded;
    return 0;
  }
  Text message;
  decoder.describe(message);
  return call.fail(decoder.fault().code, message);
}

}  // namespace ketra::asn1
