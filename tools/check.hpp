#pragma once

#include "batches.hpp"
#include "parallel.hpp"

namespace tool {

// Reads and writes every typed extension and reports what comes out differently; for a summary, counts only.
// Returns the exit status.
int check(BatchReader &reader, bool isSummary, const Run &run);

}  // namespace tool
