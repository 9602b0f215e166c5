// Object identifiers as they are encoded: with arcs of any size, which the library's interface does not have.
#pragma once

#include <string>

#include "ketra/face/face.hpp"

namespace tool {

class Identifier {
 public:
  Identifier() = default;
  // The content octets of a well-formed OBJECT IDENTIFIER (X.690 8.19).
  explicit Identifier(ketra::View content) : content_(content.copy()) {}
  explicit Identifier(const ketra::ObjectIdentifier &objid);

  const ketra::Octets &content() const { return content_; }
  // Decimal; an arc of thousands of digits is left out, since it would take time without bounds.
  std::string text() const;
  // Whether an arc is beyond 32 bits.
  bool isLarge() const;

  friend bool operator==(const Identifier &, const Identifier &) = default;
  // By their arcs.
  friend bool operator<(const Identifier &a, const Identifier &b);

 private:
  ketra::Octets content_;
};

}  // namespace tool
