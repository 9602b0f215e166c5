// One stored value: an octet that chooses the extension, then any octets. The C interface and both forms of the C++
// library read the same, but for the reasons of tests/cxx/agreement.hpp.
#include "cxx/agreement.hpp"

#include "target.hpp"

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  namespace agreement = ketra::agreement;
  if (size == 0) return 0;
  const std::size_t type = data[0] % agreement::kTypes;
  const agreement::Comparison comparison = agreement::compare(type, {data + 1, size - 1});
  fuzz::require(comparison.difference.empty(), agreement::nameOf(type), comparison.difference);
  return 0;
}
