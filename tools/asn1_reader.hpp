// One encoding opened with a schema. Failures are ketra::Error. The encoding must outlive the reader.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "identifier.hpp"
#include "ketra/face/face.hpp"

namespace tool {

class Asn1Reader {
 public:
  Asn1Reader(const AsnType *type, ketra::View encoding);

  // Where the element stands in the input: the content octets, of an open type the complete encoding. Nothing when it
  // is absent.
  std::optional<ketra::View> octets(const std::string &path) const;
  // Whether it is a string in segments, which stands in no one place.
  bool isInSegments(const std::string &path) const;
  // Members of a list; 0 when it is absent.
  uint32_t count(const std::string &path) const;
  std::optional<bool> boolean(const std::string &path) const;
  Identifier identifier(const std::string &path) const;
  // A string, put together when it comes in segments; nothing when it is absent.
  std::optional<ketra::Octets> string(const std::string &path) const;
  // The first `count` bits, one octet each.
  ketra::Octets bits(const std::string &path, uint32_t count) const;

 private:
  struct Destroy {
    void operator()(AsnObject object) const { AsnObjectDestroy(object, nullptr); }
  };
  std::unique_ptr<AsnObjectRecord, Destroy> object_;
  AsnValue value_ = nullptr;
};

// The path of a member of the list at a path, by its number from 1.
std::string memberPath(const std::string &list, uint32_t number);

// Throws ketra::Error for a fault that the program itself finds.
[[noreturn]] void fail(uint32_t code, const std::string &message);

// Whether every length of the encoding is as DER wants it.
bool hasDerLengths(ketra::View encoding);

}  // namespace tool
