// ORAddress ::= SEQUENCE {                                       RFC 5280 Appendix A.1, X.411
//     standardAttributes       BuiltInStandardAttributes,
//     domainDefinedAttributes  SEQUENCE OF ... OPTIONAL,
//     extensionAttributes      SET OF ... OPTIONAL }
//
// Carries an ORAddress from one place of ASN.1 work values to another. Its parts are opaque encodings.
#pragma once

#include "ketra/contracts/asn1.h"

namespace ketra {

struct X509ORAttribute {
  X509ORAttribute *next;
  AsnEncodedData attribute;
};

// The octets lie in the value that was read and live as long as it is open; the nodes lie in the reader's pool.
struct X509ORAddress {
  AsnEncodedData standardAttributes;
  X509ORAttribute *domainDefinedAttributes;
  int32_t domainDefinedAttributesOption;  // 1 = present, everything else = absent
  X509ORAttribute *extensionAttributes;
  int32_t extensionAttributesOption;
};

// Fills a cleared structure from the ORAddress element at the path.
int32_t x509MUtilSgetORAddress(bool ber, AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                               X509ORAddress *address, AsnErrorBlock *err);

// Makes the ORAddress element at the path.
int32_t x509MUtilSetORAddress(bool ber, AsnObject work, AsnValue value, const char *path, const X509ORAddress *address,
                              AsnErrorBlock *err);

}  // namespace ketra
