// All extensions of a certificate, from the octets of its Extensions SEQUENCE to structures of the C interface.
#pragma once

#include <string>

#include "values.hpp"

namespace bench {

// The first certificate in a PEM file, and its Extensions SEQUENCE; empty when there is none.
Octets certificateIn(const std::string &file);
Octets extensionsIn(const std::string &file);

// Reads those that the rows of the benchmark have, as many as `count` then tells; others are passed over.
int32_t readCertificate(const Octets &extensions, uint32_t *count);

}  // namespace bench
