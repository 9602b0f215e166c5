#pragma once

#include "batches.hpp"
#include "parallel.hpp"

namespace tool {

// Prints every extension of what the reader gives. Returns the exit status.
int show(BatchReader &reader, bool asJson, const Run &run);

}  // namespace tool
