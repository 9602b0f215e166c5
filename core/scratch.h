// Clean-up on a failure path must not disturb what the caller's error block says.
#pragma once

#include "ketra/contracts/asn1.h"

namespace ketra {

// Runs clean-up calls, `cleanUp(err)`, with an error block of their own.
template <class CleanUp>
[[gnu::cold, gnu::noinline]] void intoScratch(CleanUp &&cleanUp) {
  AsnErrorBlock scratch;  // large: only its head is initialised
  scratch.code = 0;
  scratch.count = 0;
  scratch.dropped = 0;
  cleanUp(&scratch);
}

}  // namespace ketra
