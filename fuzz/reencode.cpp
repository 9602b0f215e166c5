// One stored value, as for typed_get: what is read can be set again. The octets that come of it are the same when they
// were DER, differ lawfully when they were not, read as the same value, and stay what they are from there on.

#include <algorithm>

#include "read.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

// In the order of Types.
constexpr std::string_view kNames[kTypes] = {
    // clang-format off
    "authorityKeyIdentifier", "subjectKeyIdentifier", "keyUsage", "extKeyUsage", "privateKeyUsagePeriod",
    "certificatePolicies", "subjectAltName", "issuerAltName", "basicConstraints", "cRLNumber", "policyMappings",
    "subjectDirectoryAttributes", "nameConstraints", "policyConstraints", "reasonCode", "holdInstruction",
    "invalidityDate", "cRLDistributionPoints", "issuingDistributionPoint", "certificateIssuer", "deltaCRLIndicator"};
// clang-format on

// What a get takes and a set does not: X.509 lets these lists have no fewer than one member, and an issuer comes with a
// serial number (WITH COMPONENTS, RFC 5280 4.2.1.1).
template <class T>
bool isSettable(const T &) {
  return true;
}
template <Names T>
bool isSettable(const T &value) {
  return !value.names.empty();
}
bool isSettable(const std::optional<std::vector<ketra::GeneralName>> &names) { return !names || !names->empty(); }
bool isSettable(const std::optional<ketra::DistributionPointName> &name) {
  const auto *full = name ? std::get_if<ketra::FullName>(&*name) : nullptr;
  return full == nullptr || !full->names.empty();
}
bool isSettable(const ketra::AuthorityKeyId &value) {
  return value.authorityCertIssuer.has_value() == value.authorityCertSerialNumber.has_value() &&
         isSettable(value.authorityCertIssuer);
}
bool isSettable(const ketra::CertificatePolicies &value) { return !value.policies.empty(); }
bool isSettable(const ketra::CrlDistributionPoints &value) {
  return !value.points.empty() && std::ranges::all_of(value.points, [](const ketra::DistributionPoint &each) {
    return isSettable(each.distributionPoint) && isSettable(each.cRLIssuer);
  });
}
bool isSettable(const ketra::IssuingDistributionPoint &value) { return isSettable(value.distributionPoint); }

template <class T>
void reencode(View before, std::string_view name) {
  Extensions extensions;
  store<T>(extensions, before);
  const Outcome<T> outcome = readOnce<T>(extensions);
  const T *const value = std::get_if<T>(&outcome);
  if (value == nullptr) return;

  const uint32_t code = setCode(extensions, *value);
  if (code != 0) {
    require(!isSettable(*value) || !isWellFormed(before), "what was read can be set");
    return;
  }
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
  fuzz::withType(type, [&]<class T, std::size_t>() { fuzz::reencode<T>({data + 1, size - 1}, fuzz::kNames[type]); });
  return 0;
}
