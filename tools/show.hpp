#pragma once

#include <string>
#include <vector>

#include "output.hpp"

namespace tool {

// Prints every extension of the certificates and CRLs in the files. Returns the exit status.
int show(const std::vector<std::string> &files, Printer &printer);

}  // namespace tool
