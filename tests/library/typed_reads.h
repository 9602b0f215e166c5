// Reads an extension as a caller does who knows nothing about its size: counts, prepares what the counts tell, gets.
#pragma once

#include <string>

#include "support/support.h"

namespace ketra::test {

// `type` is the name of the extension in the standard, such as "subjectAltName". What is read is given up again.
int32_t readTyped(const std::string &type, KetraObject extensions, AsnErrorBlock *err);
const Objid *objidOfType(const std::string &type);  // null when there is no such extension

}  // namespace ketra::test
