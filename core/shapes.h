// Copies of {pointer, length} structures.
#pragma once

namespace ketra {

// Member by member: for a structure that was just written, one wide load would wait until both stores are done.
template <class Shape>
Shape byMember(const Shape &shape) {
  return {shape.octets, shape.length};
}

}  // namespace ketra
