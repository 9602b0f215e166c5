// The tree behind work values and elements: one kind of node for values that were decoded and values that are built.
#pragma once

#include "runtime/asn1/arena.h"
#include "runtime/asn1/error.h"
#include "runtime/asn1/type.h"

struct AsnValueRecord {
  const AsnType *record;  // as it stands in its parent: tag, flags, name
  union {
    const uint8_t *content;     // scalar: content octets in primitive form; open type: one complete encoding
    AsnValueRecord **children;  // SEQUENCE: one place per component, null if absent. CHOICE: one. Lists: the members
  };
  const uint8_t *encoding;  // decoded: where the encoding starts, without the EXPLICIT tag of `record`; else null
  uint32_t encodingLength;
  uint32_t length;    // scalar: of the content; list: number of members
  uint32_t capacity;  // list: room in `children`
  bool isSet;         // scalar: has content
  bool isRoot;        // an OpenValue
  bool inPlace;       // content lies in the bound encoding
  bool derLength;     // decoded scalar: primitive, with a length in DER form. Open type: known to have DER lengths only
};

namespace ketra::asn1 {

using Node = AsnValueRecord;

// What AsnOpenNew and AsnOpenFromMem make.
struct OpenValue : Node {
  enum class State : uint8_t { Built, Bound, Decoded, Closed };
  State state;
  AsnEncodedData bound;
};

// Makes the places for the children of a new node; false without memory.
bool startChildren(Arena &arena, Node *node);
Node *newNode(Arena &arena, const AsnType *record);
// Appends a member to a list, in constant time on average.
Node *appendMember(Arena &arena, Node *list);

inline uint32_t childPlaces(const Node *node) {
  switch (kindOf(node->record)) {
    case Kind::Sequence: return definitionOf(node->record)->count;
    case Kind::Choice: return 1;
    default: return node->length;
  }
}

}  // namespace ketra::asn1
