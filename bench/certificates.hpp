// All extensions of a certificate, from the octets of its Extensions SEQUENCE to structures of the C interface.
#pragma once

#include <string>

#include "values.hpp"

namespace bench {

// The Extensions SEQUENCE of a certificate in a PEM file; empty when there is none.
Octets extensionsIn(const std::string &file);

// Reads those that the rows of the benchmark have, as many as `count` then tells; others are passed over.
int32_t readCertificate(const Octets &extensions, uint32_t *count);

}  // namespace bench
