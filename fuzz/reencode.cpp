// One stored value, after an octet that chooses the extension: what C reads can be set again. The octets that come of
// it are the same when they were DER, differ lawfully when they were not, and stay what they are from there on.

#include <algorithm>

#include "c.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

// What a get takes and a set does not: X.509 lets these lists have no fewer than one member, and an issuer comes with a
// serial number (WITH COMPONENTS, RFC 5280 4.2.1.1).
bool mayRefuse(uint32_t code) {
  constexpr uint32_t kCodes[] = {KetraError_CheckGenNamesEmpty, KetraError_SetCertPoliciesEmpty,
                                 KetraError_SetCertPoliciesQualifiers, KetraError_SetAuthorityKeyIdOpt};
  return std::ranges::count(kCodes, code) != 0;
}

void reencode(const Extension &extension, View before) {
  const Object object;
  store(object, extension, before);
  const Outcome first = extension.read(object, true);
  if (first.get.code != 0) return;
  if (first.set.code != 0) {
    require(mayRefuse(first.set.code) || !isWellFormed({before.begin(), before.end()}), "what was read can be set",
            first.set.text);
    return;
  }
  const Octets after = stored(object, extension).copy();
  require(compare(extension.name, {before.begin(), before.end()}, after) != Rewriting::unlawful,
          "a value changes by the rules only");
  const Outcome again = extension.read(object, true);
  require(again.get.code == 0, "what was set can be read", again.get.text);
  require(again.set.code == 0, "what was set can be set again", again.set.text);
  require(stored(object, extension) == View(after), "what was written is written again");
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::reencode(fuzz::kExtensions[data[0] % std::size(fuzz::kExtensions)], {data + 1, size - 1});
  return 0;
}
