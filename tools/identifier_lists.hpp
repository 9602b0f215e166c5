// Values that hold identifiers, shown from their octets: an arc beyond 32 bits is legal, and the library's interface
// does not carry it.
#pragma once

#include "fields.hpp"
#include "ketra/face/face.hpp"

namespace tool {

Fields purposeFields(ketra::View value);      // extKeyUsage
Fields instructionFields(ketra::View value);  // holdInstructionCode
Fields attributeFields(ketra::View value);    // subjectDirectoryAttributes
Fields mappingFields(ketra::View value);      // policyMappings
Fields policyFields(ketra::View value);       // certificatePolicies, see policies.hpp

// A GeneralName that holds such an identifier, without "octets"; null when it is another, or malformed.
Json largeIdentifierName(ketra::View encoding);

}  // namespace tool
