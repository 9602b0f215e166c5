// What a certificate, a CRL (RFC 5280 4.1 and 5.1) and a certificate request (RFC 2986 4) look like from outside, down
// to their extensions.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "asn1_reader.hpp"
#include "ketra/ketra.hpp"

namespace tool {

enum class Kind { Unknown, Certificate, Crl, Request };

const char *kindName(Kind kind);

// Tells certificates, CRLs and requests apart by the outline of what is signed; throws when it is no signed object at
// all.
Kind recognise(ketra::View encoding);

extern const AsnType *const kCertificate;
extern const AsnType *const kCertificateList;
extern const AsnType *const kRevokedCertificate;
extern const AsnType *const kCertificationRequest;
extern const AsnType *const kExtensionRequest;  // that attribute of a request

// The type of an attribute of a request; throws when the attribute is malformed.
ketra::ObjectIdentifier attributeType(ketra::View encoding);
bool isExtensionRequest(const ketra::ObjectIdentifier &type);

// One extension as it stands in its list.
struct Extension {
  ketra::ObjectIdentifier objid;
  std::optional<bool> critical;  // nothing: left out, so the default FALSE
  ketra::Octets value;           // the content of extnValue
  bool isRepeated = false;       // an extension before it has the same identifier

  bool isCritical() const { return critical.value_or(false); }
};

Extension readExtension(ketra::View encoding);

// The Time at the path in ISO 8601, escaped as it is when it has not the form of RFC 5280 4.1.2.5; empty when absent.
std::string timeText(const Asn1Reader &reader, const std::string &path);

}  // namespace tool
