// What every target stands on. A target is one function; libFuzzer calls it, or replay.cpp does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size);

namespace fuzz {

// A property that has to hold whatever the input.
inline void require(bool holds, const char *property, const std::string &detail = {}) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n%s\n", property, detail.c_str());
  std::abort();
}

}  // namespace fuzz
