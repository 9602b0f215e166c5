/// @file
/// Linked nodes as the C interface takes and fills them.
#pragma once

#include <cstddef>
#include <vector>

#include "face/base.hpp"

namespace ketra {

namespace detail {

// Nodes in a row, linked by `next`. With an object: for a get to fill; the arcs that it, a failed one too, leaves in
// the pool of the object are given back with the chain. Stays where it is.
template <class Node, Objid Node::*...kArcs>
class Chain {
 public:
  explicit Chain(std::size_t count, KetraObject object = nullptr) : object_(object), nodes_(count) {
    for (std::size_t i = 1; i < count; ++i) nodes_[i - 1].next = &nodes_[i];
  }
  Chain(const Chain &) = delete;
  Chain &operator=(const Chain &) = delete;
  ~Chain() {
    if (object_ == nullptr) return;
    for (const Node &node : nodes_) (giveBack((node.*kArcs).arcs), ...);
  }

  // Null when there is no node.
  Node *head() { return nodes_.empty() ? nullptr : nodes_.data(); }
  std::vector<Node> &nodes() { return nodes_; }

 private:
  void giveBack(const uint32_t *arcs) const { const PoolMemory memory(object_, arcs); }

  KetraObject object_;
  std::vector<Node> nodes_;
};

}  // namespace detail

}  // namespace ketra
