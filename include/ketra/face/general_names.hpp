/// @file
/// Lists of GeneralName: from and to the chains of the C interface, and read member by member.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/general_name.hpp"

namespace ketra {
inline namespace face {

/// A member of a list that is no GeneralName, or one beyond what the interface carries.
struct UnreadableName {
  Octets encoding;  ///< as it stands
  Error error;      ///< why it cannot be read
};

/// What a tolerant read gives for each member.
using NameOrError = std::variant<GeneralName, UnreadableName>;

namespace detail {

struct DestroyGeneralName {
  void operator()(X509GenNameObject name) const { X509GenNameObjectDestroy(name, nullptr); }
};
using GeneralNameObject = std::unique_ptr<X509GenNameObjectRecord, DestroyGeneralName>;

inline GeneralNameObject generalNameObject() {
  X509GenNameObject object = nullptr;
  run([&](AsnErrorBlock *err) { return X509GenNameObjectCreate(&object, err); });
  return GeneralNameObject(object);
}

inline void copyName(X509GenNameObject object, GeneralName &name) {
  X509GenNameParam c;
  look([&](AsnErrorBlock *err) { return X509GenNameObjectGetName(object, &c, err); });
  copyName(c, name);
}

inline void setName(X509GenNameObject object, const GeneralName &name) {
  const NameParameter parameter(name);
  run([&](AsnErrorBlock *err) { return X509GenNameObjectSetName(object, parameter.get(), err); });
}

// Nodes with a GeneralName object each, which they own.
template <class Node, X509GenNameObject Node::*kObject>
class ObjectNodes : public Nodes<Node> {
 public:
  // Objects without names. When one fails, those before it are destroyed, because the other constructor is through.
  explicit ObjectNodes(std::size_t count) : ObjectNodes(count, NoObjects{}) {
    for (Node &node : *this) node.*kObject = generalNameObject().release();
  }
  ObjectNodes(const ObjectNodes &) = delete;
  ObjectNodes &operator=(const ObjectNodes &) = delete;
  ~ObjectNodes() {
    for (const Node &node : *this) X509GenNameObjectDestroy(node.*kObject, nullptr);
  }

 private:
  struct NoObjects {};
  ObjectNodes(std::size_t count, NoObjects) : Nodes<Node>(count) {}
};

// The nodes of names. They serve any number of lists, whose chains are cut off one after the other.
class NameNodes {
 public:
  explicit NameNodes(std::size_t count) : nodes_(count) {}

  // A chain of `count` nodes for a get to fill. Null when that is 0.
  X509GenNameChain *chain(std::size_t count) {
    if (count == 0) return nullptr;
    X509GenNameChain *const head = &nodes_[used_];
    used_ += count;
    nodes_[used_ - 1].next = nullptr;
    return head;
  }
  // A chain that holds these names.
  X509GenNameChain *chain(const std::vector<GeneralName> &names) {
    X509GenNameChain *const head = chain(names.size());
    const X509GenNameChain *node = head;
    for (const GeneralName &name : names) {
      setName(node->genName, name);
      node = node->next;
    }
    return head;
  }

 private:
  ObjectNodes<X509GenNameChain, &X509GenNameChain::genName> nodes_;
  std::size_t used_ = 0;
};

inline void copyNames(const X509GenNameChain *chain, std::vector<GeneralName> &names) {
  std::size_t count = 0;
  for (const X509GenNameChain *node = chain; node != nullptr; node = node->next) ++count;
  names.reserve(count);
  for (; chain != nullptr; chain = chain->next) copyName(chain->genName, names.emplace_back());
}

// Lets members that fail alike share one Error: in a list of a million bad ones it would cost far more than they do.
class SharedErrors {
 public:
  UnreadableName unreadable(View encoding, const Error &error) {
    if (isOutOfMemory(error.code())) throw error;
    return {encoding.copy(), errors_.emplace(error.what(), error).first->second};
  }
  // Of one that failed as the block says; an Error is made only when it says something else than the block before.
  UnreadableName unreadable(View encoding, const AsnErrorBlock &block) {
    if (last_ && isLast(block)) return {encoding.copy(), *last_};
    UnreadableName name = unreadable(encoding, Error(block));
    last_ = name.error;
    lastCode_ = block.code;
    lastTrace_.assign(block.entries, block.entries + block.count);
    return name;
  }

 private:
  static bool isSame(const AsnTraceEntry &a, const AsnTraceEntry &b) {
    return a.module == b.module && a.function == b.function && std::strcmp(a.message, b.message) == 0 &&
           a.valueLength == 0 && b.valueLength == 0;
  }
  bool isLast(const AsnErrorBlock &block) const {
    return block.code == lastCode_ &&
           std::equal(lastTrace_.begin(), lastTrace_.end(), block.entries, block.entries + block.count, isSame);
  }

  std::map<std::string, Error> errors_;
  std::optional<Error> last_;
  uint32_t lastCode_ = 0;
  std::vector<AsnTraceEntry> lastTrace_;
};

// One GeneralName (BER). Each has an object of its own, because an object keeps what it held before.
inline NameOrError readName(View encoding, SharedErrors &errors) try {
  const GeneralNameObject object = generalNameObject();
  const AsnEncodedData data = encoded(encoding);
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (X509GenNameObjectSetPduBER(object.get(), &data, &err) != 0) return errors.unreadable(encoding, err);
  NameOrError name;
  copyName(object.get(), std::get<GeneralName>(name));
  return name;
} catch (const Error &error) {
  return errors.unreadable(encoding, error);
}

// The members of a list of open types, each by itself.
inline std::vector<NameOrError> readNames(const WorkValue &value, AsnValue list, SharedErrors &errors) {
  const uint32_t count = value.count(list);
  std::vector<NameOrError> names;
  names.reserve(count);
  for (uint32_t i = 1; i <= count; ++i) {
    names.push_back(readName(value.octets(list, MemberPath(i).get()), errors));
  }
  return names;
}

}  // namespace detail

}  // namespace face
}  // namespace ketra
