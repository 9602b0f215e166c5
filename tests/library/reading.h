// Every way in which an encoding can be read.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/support.h"

namespace ketra::test {

struct Way {
  enum class Kind {
    Get,    // whatever the encoding holds
    Nodes,  // into chains of two nodes
    Count,
    Der,    // refuses lengths that are not DER
    Other,  // reads more, or less, than a get; what C++ reads, tests/cxx/agreement.cpp compares with what C reads
  };
  std::string name;
  Kind kind;
  std::function<int32_t(const Octets &, AsnErrorBlock *)> read;
};

// Types are named as ASN.1 names them, "subjectAltName"; besides extensions there are "GeneralName", by itself and
// inside each extension that holds names, and "Name".
const std::vector<Way> &waysToRead(const std::string &type);
// An ordinary value of each extension.
std::map<std::string, Octets> sampleValues();

// Encodings inside each other in DER, `tags` from the outside in.
Octets wrapped(const Octets &tags, Octets content);
// An Extensions SEQUENCE of this one.
Octets wholeExtensions(const Objid &objid, const Octets &value);

}  // namespace ketra::test
