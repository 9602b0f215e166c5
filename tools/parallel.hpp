// Batches handled by several threads; what they print and count comes in the order of the input all the same.
#pragma once

#include <functional>
#include <ostream>
#include <string_view>

#include "batches.hpp"
#include "tally.hpp"

namespace tool {

// Prints what a batch holds and counts it. Called from several threads at once.
using Handler = std::function<Tally(const Batch &batch, std::ostream &out)>;

struct Run {
  unsigned threads = 1;
  bool isColoured = false;
  bool showsProgress = false;
};

struct Outcome {
  bool allRead = true;  // standard error tells what could not be
  Tally tally;
};

// Throws when the results cannot be written. Takes memory for one batch and its results in each thread.
Outcome handleAll(BatchReader &reader, const Handler &handler, const Run &run);

// Writes to standard output; throws when that is not possible.
void writeResult(std::string_view text);

}  // namespace tool
