/// @file
/// Linked nodes as the C interface takes and fills them.
#pragma once

#include <cstddef>
#include <vector>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

namespace detail {

// Nodes in a row, linked by `next`. Stays where it is: a few nodes lie in it, which saves the usual list a request for
// memory.
template <class Node>
class Nodes {
 public:
  explicit Nodes(std::size_t count)
      : count_(count), many_(count > kFew ? count : 0), first_(count > kFew ? many_.data() : few_) {
    for (std::size_t i = 0; i < count; ++i) {
      first_[i] = Node{};
      first_[i].next = i + 1 < count ? &first_[i + 1] : nullptr;
    }
  }
  Nodes(const Nodes &) = delete;
  Nodes &operator=(const Nodes &) = delete;
  ~Nodes() = default;

  std::size_t size() const { return count_; }
  Node *begin() { return first_; }
  Node *end() { return first_ + count_; }
  const Node *begin() const { return first_; }
  const Node *end() const { return first_ + count_; }
  Node &operator[](std::size_t i) { return first_[i]; }
  // Null when there is no node.
  Node *head() { return count_ == 0 ? nullptr : first_; }

 private:
  static constexpr std::size_t kFew = 4;

  std::size_t count_;
  Node few_[kFew];  // those in use are blank
  std::vector<Node> many_;
  Node *first_;
};

// Nodes for a get to fill; the arcs that it, a failed one too, leaves in the pool of the object are given back with the
// chain: the newest first, which the pool takes back whole, so that kArcs are named from the last to the first.
template <class Node, Objid Node::*...kArcs>
class ReadChain : public Nodes<Node> {
 public:
  ReadChain(std::size_t count, KetraObject object) : Nodes<Node>(count), pool_(poolOf(object)) {}
  ReadChain(const ReadChain &) = delete;
  ReadChain &operator=(const ReadChain &) = delete;
  ~ReadChain() {
    for (const Node *node = this->end(); node != this->begin();) {
      --node;
      (AsnMemObjectFree(pool_, (node->*kArcs).arcs, nullptr), ...);
    }
  }

 private:
  AsnMemObject pool_;
};

}  // namespace detail

}  // namespace face
}  // namespace ketra
