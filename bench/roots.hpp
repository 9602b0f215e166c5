// Debian's root certificates (package ca-certificates).
#pragma once

#include <cstdint>
#include <vector>

#include "floor.hpp"
#include "values.hpp"

namespace bench {

// The Extensions SEQUENCE of each, and the certificates themselves; none when the package is not installed.
const std::vector<Octets> &roots();
const std::vector<Octets> &certificates();

// Whether the rows have the extension 2.5.29.`id`.
constexpr bool hasRow(unsigned id) {
  return id == 14 || id == 15 || id == 17 || id == 19 || (id >= 30 && id <= 33) || (id >= 35 && id <= 37);
}

// visit(id, value) for each of those.
template <class Visit>
void forEachExtension(const Octets &extensions, Visit &&visit) {
  lean::Reader list, extension, id, value;
  if (!lean::Reader(extensions.data(), extensions.size()).next(0x30, list)) return;
  while (list.next(0x30, extension) && extension.next(0x06, id)) {
    if (extension.has(0x01)) extension.next(0x01, value);
    const bool isIdCe = id.view().size == 3 && id[0] == 0x55 && id[1] == 0x1D;
    if (extension.next(0x04, value) && isIdCe && hasRow(id[2])) visit(id[2], value.view());
  }
}

// Adds the rows of a library for whole certificates and a CRL of 100,000 entries: see(certificate) visits all fields
// and the extensions, see(CRL) the serial number, date and extensions of each entry. They return how many extensions of
// the rows there are, and how many entries.
void addObjects(const char *library, std::size_t (*seeCertificate)(const Octets &),
                std::size_t (*seeCrl)(const Octets &));

// Adds the row of a library: read() must return how many of those it has read of all roots together.
void addRoots(const char *library, std::size_t (*read)());

}  // namespace bench
