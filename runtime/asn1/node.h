// The tree behind work values and elements: one kind of node for values that were decoded and values that are built.
#pragma once

#include "runtime/asn1/arena.h"
#include "runtime/asn1/error.h"
#include "runtime/asn1/type.h"

namespace ketra::asn1 {

// Of an element: Element. Of a value: how far it has come. Elements can be reached from the first three.
enum class State : uint8_t { Element, Built, Decoded, Bound, Closed };

}  // namespace ketra::asn1

struct AsnValueRecord {
  const AsnType *record;  // as it stands in its parent: tag, flags, name
  union {
    const uint8_t *content;     // scalar: content octets in primitive form; open type: one complete encoding
    AsnValueRecord **children;  // SEQUENCE: one place per component, null if absent. Lists: the members
    AsnValueRecord *chosen;     // CHOICE: the alternative, or null
  };
  const uint8_t *encoding;  // decoded: where the encoding starts, without the EXPLICIT tag of `record`; else null
  uint32_t encodingLength;
  uint32_t length;    // scalar: of the content; list: number of members
  uint32_t capacity;  // list: room in `children`
  bool isSet;         // scalar: has content
  ketra::asn1::State state;
  bool inPlace;    // content lies in the bound encoding
  bool derLength;  // decoded scalar: primitive, with a length in DER form. Open type: known to have DER lengths only
};

namespace ketra::asn1 {

using Node = AsnValueRecord;

// What AsnOpenNew and AsnOpenFromMem make.
struct OpenValue : Node {
  AsnEncodedData bound;
};

inline bool isValue(const Node *node) { return node->state != State::Element; }

// Makes the places for the components of a SEQUENCE; of other kinds, nothing. False without memory.
inline bool makePlaces(Arena &arena, Node *node) {
  if (kindOf(node->record) != Kind::Sequence) return true;
  const uint32_t count = definitionOf(node->record)->count;
  node->children = arena.makeArray<Node *>(count);
  if (node->children == nullptr) return false;
  for (uint32_t i = 0; i < count; ++i) node->children[i] = nullptr;
  return true;
}

inline Node *newNode(Arena &arena, const AsnType *record) {
  Node *node = arena.make<Node>();
  if (node == nullptr) return nullptr;
  node->record = record;
  return makePlaces(arena, node) ? node : nullptr;
}

// More room for the members of a list; false without memory.
bool growList(Arena &arena, Node *list);

// Appends a member to a list, in constant time on average.
inline Node *appendMember(Arena &arena, Node *list) {
  if (list->length == list->capacity && !growList(arena, list)) return nullptr;
  Node *member = newNode(arena, definitionOf(list->record) + 1);
  if (member != nullptr) list->children[list->length++] = member;
  return member;
}

// How many children a constructed node has room for, and one of them.
inline uint32_t childPlaces(const Node *node) {
  switch (kindOf(node->record)) {
    case Kind::Sequence: return definitionOf(node->record)->count;
    case Kind::Choice: return 1;
    default: return node->length;
  }
}
inline const Node *childAt(const Node *node, uint32_t place) {
  return kindOf(node->record) == Kind::Choice ? node->chosen : node->children[place];
}

}  // namespace ketra::asn1
