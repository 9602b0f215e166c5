// GeneralName objects and chains of them that clean up, and one sample of each kind.
#pragma once

#include <array>
#include <deque>

#include "ketra/ketra.h"
#include "support/support.h"

namespace ketra::test {

inline constexpr std::array<const char *, 9> kKinds = {
    "otherName", "rfc822Name",   "dNSName", "x400Address", "directoryName", "ediPartyName", "uniformResourceIdentifier",
    "iPAddress", "registeredID",
};
// DER of a sample with all its optional parts.
std::string sampleOf(const std::string &kind);

class GenName : public Holder<X509GenNameObject, X509GenNameObjectCreate, X509GenNameObjectDestroy,
                              X509GenNameObjectSetPduBER, X509GenNameObjectGetPduDER> {
 public:
  GenName() = default;
  explicit GenName(const std::string &kind);  // a sample, set as DER; "": without a name

  int32_t setPdu(const Octets &octets, bool ber = true, AsnErrorBlock *err = nullptr);
  bool hasName() const;
  X509GenNameParam param() const;
  std::string der() const;  // hex, or "empty"
  std::string ber() const;
};

// A chain with an object per kind.
class Names {
 public:
  Names(const std::vector<std::string> &kinds);
  X509GenNameChain *first() { return nodes_.empty() ? nullptr : nodes_.data(); }
  X509GenNameChain &node(std::size_t i) { return nodes_.at(i); }
  GenName &at(std::size_t i) { return names_.at(i); }
  const GenName &at(std::size_t i) const { return names_.at(i); }
  void dropEncodings();  // each object has its name as a parameter only, then, and has to encode it

 private:
  std::deque<GenName> names_;
  std::vector<X509GenNameChain> nodes_;
};

}  // namespace ketra::test
