// The work object: its handle, the first chunk of its arena and its first value come with one request to the system.
#pragma once

#include "runtime/asn1/node.h"

struct AsnObjectRecord {
  ketra::asn1::Arena arena;
};

namespace ketra::asn1 {

inline constexpr std::size_t kWorkObjectSize = 1024;

// Runs `step` with a work object for as long as it takes.
template <class Step>
int32_t withWorkObject(Call call, Step &&step) {
  AsnObject work = nullptr;
  if (AsnObjectCreate(&work, call.err) != 0) return -1;
  const int32_t result = step(work);
  AsnObjectDestroy(work, nullptr);
  return result;
}

}  // namespace ketra::asn1
