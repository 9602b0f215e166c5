// A walk, recorded as fields from which the value can be built again.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ketra/asn1/build.hpp"
#include "ketra/asn1/walk.hpp"

namespace ketra::test {

// What a walk has seen, as fields to build from.
struct Node : Fields {
  std::vector<std::pair<std::string, std::unique_ptr<Node>>> members;
  std::optional<Octets> octets;
  const Fields *member(const char *name) const override {
    for (const auto &[each, field] : members) {
      if (each == name) return field.get();
    }
    return nullptr;
  }
  std::size_t size() const override { return members.size(); }
  const Fields &at(std::size_t index) const override { return *members[index].second; }
  std::optional<Octets> encoding(LeafKind) const override { return octets; }
};

class Recorder : public Visitor {
 public:
  Node root;  // with one member, the value
  std::size_t faults = 0;
  void enter(const char *name, const Structure &) override { open_.push_back(add(name)); }
  void leave() override { open_.pop_back(); }
  void leaf(const char *name, const LeafValue &value) override { add(name)->octets = value.encoding(); }
  void absent(const char *, const LeafValue &) override {}
  void fault(const char *, View, const Fault &) override { ++faults; }

 private:
  Node *add(const char *name) {
    Node &in = open_.empty() ? root : *open_.back();
    return in.members.emplace_back(name == nullptr ? "" : name, std::make_unique<Node>()).second.get();
  }
  std::vector<Node *> open_;
};

}  // namespace ketra::test
