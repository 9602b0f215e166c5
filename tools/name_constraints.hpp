// Name constraints as JSON: "permittedSubtrees" and "excludedSubtrees", when they are there, lists of names
// (general_names.hpp), each with "minimum" and "maximum" when those are there.
#pragma once

#include "fields.hpp"
#include "ketra/face/face.hpp"

namespace tool {

Fields fields(const ketra::TolerantNameConstraints &value);

}  // namespace tool
