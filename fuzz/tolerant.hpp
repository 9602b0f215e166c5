// The reads that pass over bad names, beside the ones that do not.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "read.hpp"

namespace fuzz {

template <class T>
struct TolerantForm {
  using type = void;
};
template <template <class> class Form>
struct TolerantForm<Form<ketra::GeneralName>> {
  using type = Form<ketra::NameOrError>;
};

using ketra::GeneralName;
using ketra::NameOrError;

bool agree(const ketra::DistributionPoint &one, const ketra::TolerantDistributionPoint &other);
bool agree(const ketra::GeneralSubtree &one, const ketra::TolerantGeneralSubtree &other);
inline bool agree(const GeneralName &name, const NameOrError &other) {
  const auto *good = std::get_if<GeneralName>(&other);
  return good != nullptr && *good == name;
}
template <class A, class B>
bool agree(const std::optional<A> &one, const std::optional<B> &other);
template <class A, class B>
bool agree(const std::vector<A> &one, const std::vector<B> &other) {
  return std::ranges::equal(one, other, [](const A &a, const B &b) { return agree(a, b); });
}
inline bool agree(const ketra::DistributionPointName &one,
                  const ketra::BasicDistributionPointName<NameOrError> &other) {
  if (const auto *full = std::get_if<ketra::FullName>(&one)) {
    const auto *otherFull = std::get_if<ketra::TolerantFullName>(&other);
    return otherFull != nullptr && agree(full->names, otherFull->names);
  }
  const auto *relative = std::get_if<ketra::RelativeName>(&other);
  return relative != nullptr && *relative == std::get<ketra::RelativeName>(one);
}
inline bool agree(const ketra::DistributionPoint &one, const ketra::TolerantDistributionPoint &other) {
  return agree(one.distributionPoint, other.distributionPoint) && one.reasons == other.reasons &&
         agree(one.cRLIssuer, other.cRLIssuer);
}
inline bool agree(const ketra::GeneralSubtree &one, const ketra::TolerantGeneralSubtree &other) {
  return agree(one.base, other.base) && one.minimum == other.minimum && one.maximum == other.maximum;
}
template <class A, class B>
bool agree(const std::optional<A> &one, const std::optional<B> &other) {
  return one.has_value() == other.has_value() && (!one || agree(*one, *other));
}

template <Names T, Names U>
bool agree(const T &one, const U &other) {
  return agree(one.names, other.names);
}
inline bool agree(const ketra::AuthorityKeyId &one, const ketra::TolerantAuthorityKeyId &other) {
  return one.keyIdentifier == other.keyIdentifier && agree(one.authorityCertIssuer, other.authorityCertIssuer) &&
         one.authorityCertSerialNumber == other.authorityCertSerialNumber;
}
inline bool agree(const ketra::CrlDistributionPoints &one, const ketra::TolerantCrlDistributionPoints &other) {
  return agree(one.points, other.points);
}
inline bool agree(const ketra::IssuingDistributionPoint &one, const ketra::TolerantIssuingDistributionPoint &other) {
  return agree(one.distributionPoint, other.distributionPoint) &&
         one.onlyContainsUserCerts == other.onlyContainsUserCerts &&
         one.onlyContainsCACerts == other.onlyContainsCACerts && one.onlySomeReasons == other.onlySomeReasons &&
         one.indirectCRL == other.indirectCRL;
}
inline bool agree(const ketra::NameConstraints &one, const ketra::TolerantNameConstraints &other) {
  return agree(one.permittedSubtrees, other.permittedSubtrees) && agree(one.excludedSubtrees, other.excludedSubtrees);
}

}  // namespace fuzz
