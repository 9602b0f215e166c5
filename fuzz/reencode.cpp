// One stored value, as for typed_get: what is read can be set again. The octets that come of it are the same when they
// were DER, differ lawfully when they were not, read as the same value, and stay what they are from there on.

#include "read.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

// In the order of Types.
constexpr std::string_view kNames[kTypes] = {"authorityKeyIdentifier",
                                             "subjectKeyIdentifier",
                                             "keyUsage",
                                             "extKeyUsage",
                                             "privateKeyUsagePeriod",
                                             "certificatePolicies",
                                             "subjectAltName",
                                             "issuerAltName",
                                             "basicConstraints",
                                             "cRLNumber",
                                             "policyMappings",
                                             "subjectDirectoryAttributes",
                                             "nameConstraints",
                                             "policyConstraints",
                                             "reasonCode",
                                             "holdInstruction",
                                             "invalidityDate",
                                             "cRLDistributionPoints",
                                             "issuingDistributionPoint",
                                             "certificateIssuer",
                                             "deltaCRLIndicator"};

template <class T>
void reencode(View before, std::string_view name) {
  Extensions extensions;
  store<T>(extensions, before);
  const Outcome<T> outcome = readOnce<T>(extensions);
  const T *const value = std::get_if<T>(&outcome);
  if (value == nullptr) return;

  const uint32_t code = setCode(extensions, *value);
  require(code == 0, "what was read can be set");
  const Octets after = extensions.find<T>()->value.copy();
  const Rewriting rewriting = compare(name, before, after);
  require(rewriting != Rewriting::unlawful, "a value changes by the rules only");
  const Outcome<T> again = readOnce<T>(extensions);
  require(std::holds_alternative<T>(again), "what was set can be read");
  if (rewriting == Rewriting::identical) require(again == outcome, "the same octets read as the same value");

  require(setCode(extensions, std::get<T>(again)) == 0, "what was set can be set again");
  require(extensions.find<T>()->value.copy() == after, "what was written is written again");
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  const std::size_t type = data[0] % fuzz::kTypes;
  fuzz::withType(type, [&]<class T>() { fuzz::reencode<T>({data + 1, size - 1}, fuzz::kNames[type]); });
  return 0;
}
