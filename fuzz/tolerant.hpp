// The forms that pass over bad names, beside the ones that do not.
#pragma once

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

// What a tolerant read gives where all names are good.
struct Tolerant {
  static ketra::NameOrError of(const ketra::GeneralName &name) { return name; }
  template <class A>
  static auto of(const std::vector<A> &list) {
    std::vector<decltype(of(list[0]))> others;
    for (const A &each : list) others.push_back(of(each));
    return others;
  }
  template <class A>
  static auto of(const std::optional<A> &value) {
    return value ? std::optional(of(*value)) : std::nullopt;
  }
  static ketra::BasicDistributionPointName<ketra::NameOrError> of(const ketra::DistributionPointName &name) {
    if (const auto *full = std::get_if<ketra::FullName>(&name)) return ketra::TolerantFullName{of(full->names)};
    return std::get<ketra::RelativeName>(name);
  }
  static ketra::TolerantDistributionPoint of(const ketra::DistributionPoint &point) {
    return {of(point.distributionPoint), point.reasons, of(point.cRLIssuer)};
  }
  static ketra::TolerantGeneralSubtree of(const ketra::GeneralSubtree &subtree) {
    return {of(subtree.base), subtree.minimum, subtree.maximum};
  }

  template <template <class> class Form>
  requires Names<Form<ketra::GeneralName>>
  static Form<ketra::NameOrError> of(const Form<ketra::GeneralName> &value) { return {of(value.names)}; }
  static ketra::TolerantAuthorityKeyId of(const ketra::AuthorityKeyId &value) {
    return {value.keyIdentifier, of(value.authorityCertIssuer), value.authorityCertSerialNumber};
  }
  static ketra::TolerantCrlDistributionPoints of(const ketra::CrlDistributionPoints &value) {
    return {of(value.points)};
  }
  static ketra::TolerantIssuingDistributionPoint of(const ketra::IssuingDistributionPoint &value) {
    return {of(value.distributionPoint), value.onlyContainsUserCerts, value.onlyContainsCACerts, value.onlySomeReasons,
            value.indirectCRL};
  }
  static ketra::TolerantNameConstraints of(const ketra::NameConstraints &value) {
    return {of(value.permittedSubtrees), of(value.excludedSubtrees)};
  }
};

}  // namespace fuzz
