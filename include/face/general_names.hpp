// Lists of GeneralName: from and to the chains of the C interface, and read member by member.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "face/base.hpp"
#include "face/general_name.hpp"

namespace ketra {

// A member of a list that is no GeneralName, or one beyond what the interface carries.
struct UnreadableName {
  Octets encoding;
  Error error;
};

// What a tolerant read gives for each member.
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

inline GeneralName nameIn(X509GenNameObject object) {
  X509GenNameParam c{};
  run([&](AsnErrorBlock *err) { return X509GenNameObjectGetName(object, &c, err); });
  return generalName(c);
}

// Nodes and objects as the C interface wants them; it owns both. Stays where it is.
class NameChain {
 public:
  // Objects without names, for a get to fill.
  explicit NameChain(std::size_t count) : objects_(count), nodes_(count) {
    for (std::size_t i = 0; i < count; ++i) {
      objects_[i] = generalNameObject();
      nodes_[i] = {i + 1 < count ? &nodes_[i + 1] : nullptr, objects_[i].get()};
    }
  }
  explicit NameChain(const std::vector<GeneralName> &names) : NameChain(names.size()) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      const NameParameter parameter(names[i]);
      run([&](AsnErrorBlock *err) { return X509GenNameObjectSetName(nodes_[i].genName, parameter.get(), err); });
    }
  }
  NameChain(const NameChain &) = delete;
  NameChain &operator=(const NameChain &) = delete;

  // Null when there is no node.
  X509GenNameChain *head() { return nodes_.empty() ? nullptr : nodes_.data(); }

  std::vector<GeneralName> names() const {
    std::vector<GeneralName> names;
    names.reserve(nodes_.size());
    for (const X509GenNameChain &node : nodes_) names.push_back(nameIn(node.genName));
    return names;
  }

 private:
  std::vector<GeneralNameObject> objects_;
  std::vector<X509GenNameChain> nodes_;
};

// A list of any members, opened for reading.
class ListReader {
 public:
  explicit ListReader(View encoding) {
    const AsnEncodedData data = encoded(encoding);
    AsnObject object = nullptr;
    run([&](AsnErrorBlock *err) { return AsnObjectCreate(&object, err); });
    object_.reset(object);
    run([&](AsnErrorBlock *err) { return AsnOpenFromMem(object, AsnType_SequenceOfAny, &data, &list_, err); });
    run([&](AsnErrorBlock *err) { return AsnDecode(object, list_, 0, nullptr, err); });
    run([&](AsnErrorBlock *err) { return AsnCalCountOfSequence(object, list_, "/", &count_, err); });
  }

  uint32_t size() const { return count_; }
  // The complete encoding of a member, by its number from 1; a view into what was opened. Visiting one after the other
  // takes constant time each.
  View member(uint32_t number) const {
    char path[std::numeric_limits<uint32_t>::digits10 + 2] = {};
    std::to_chars(std::begin(path), std::end(path), number);
    const uint8_t *octets = nullptr;
    uint32_t length = 0;
    run([&](AsnErrorBlock *err) { return AsnCalAddressOfValFld(object_.get(), list_, path, &octets, &length, err); });
    return {octets, length};
  }

 private:
  struct Destroy {
    void operator()(AsnObject object) const { AsnObjectDestroy(object, nullptr); }
  };
  std::unique_ptr<AsnObjectRecord, Destroy> object_;
  AsnValue list_ = nullptr;
  uint32_t count_ = 0;
};

inline bool isOutOfMemory(const Error &error) {
  return error.code() == AsnError_OutOfMemory || error.code() == AsnMemError_OutOfMemory ||
         error.code() == X509NameError_OutOfMemory;
}

// One GeneralName (BER). Each has an object of its own, because an object keeps what it held before.
inline NameOrError readName(View encoding) {
  try {
    const GeneralNameObject object = generalNameObject();
    const AsnEncodedData data = encoded(encoding);
    run([&](AsnErrorBlock *err) { return X509GenNameObjectSetPduBER(object.get(), &data, err); });
    return nameIn(object.get());
  } catch (const Error &error) {
    if (isOutOfMemory(error)) throw;
    return UnreadableName{encoding.copy(), error};
  }
}

// The members of a GeneralNames SEQUENCE (BER), each by itself. Members that fail alike share one Error: in a list of a
// million bad ones it would cost far more than they do.
inline std::vector<NameOrError> readNames(View encoding) {
  const ListReader list(encoding);
  std::map<std::string, Error> errors;
  std::vector<NameOrError> names;
  names.reserve(list.size());
  for (uint32_t number = 1; number <= list.size(); ++number) {
    names.push_back(readName(list.member(number)));
    if (auto *bad = std::get_if<UnreadableName>(&names.back())) {
      bad->error = errors.emplace(bad->error.what(), bad->error).first->second;
    }
  }
  return names;
}

}  // namespace detail

}  // namespace ketra
