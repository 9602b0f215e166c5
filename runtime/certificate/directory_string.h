// What operations on DirectoryString values share.
#pragma once

#include "ketra/contracts/certificate.h"
#include "runtime/asn1/error.h"
#include "runtime/certificate/characters.h"

namespace ketra::certificate {

// The component of CHOICE DirectoryString that a valid choice means.
const char *componentOf(uint32_t choice);

// Whether a string has a valid choice, and octets if it has a length.
bool hasShape(asn1::Call call, const X509DirStr *string, const char *what);

// Number of characters; false, reported, when the octets are none of its alphabet. UTF-16 code units and UTF-32 code
// units count whatever their value is.
bool countCharacters(asn1::Call call, const X509DirStr &string, const char *what, uint32_t *count);

}  // namespace ketra::certificate
