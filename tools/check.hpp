#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tool {

// Takes every typed extension through get and set and reports what comes out differently. Returns the exit status.
int check(const std::vector<std::string> &files, std::ostream &out);

}  // namespace tool
