// What tells certificates, CRLs, their entries and certificate requests from each other, and what is odd about them.
#pragma once

#include <string>

#include "ketra/objects/certificate.hpp"
#include "ketra/objects/crl.hpp"
#include "ketra/objects/recognise.hpp"
#include "ketra/objects/request.hpp"
#include "problem.hpp"

namespace tool {

using Kind = ketra::ObjectKind;

std::string kindName(Kind kind);

// Facts are null where they cannot be read. When fields are odd, "odd" is a list of them, each with "field", "hex", and
// "error", or "remark" when it is well formed.
Json factsOf(const ketra::CertificateView &certificate);
Json factsOf(const ketra::CrlView &crl);  // with "revoked", the number of entries
Json factsOf(const ketra::RevokedCertificateView &entry);
Json factsOf(const ketra::RequestView &request);  // with "attributes", the types of those that can be read

// Whether a field is malformed.
bool hasFault(const Json &facts);

}  // namespace tool
