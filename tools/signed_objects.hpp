// What a certificate and a CRL look like from outside, down to their extensions (RFC 5280 4.1 and 5.1).
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "asn1_reader.hpp"
#include "ketra.hpp"

namespace tool {

enum class Kind { Unknown, Certificate, Crl };

const char *kindName(Kind kind);

// Tells certificate and CRL apart by the outline of what is signed; throws when it is no signed object at all.
Kind recognise(ketra::View encoding);

extern const AsnType *const kCertificate;
extern const AsnType *const kCertificateList;
extern const AsnType *const kRevokedCertificate;

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
