// One stored value: an octet that chooses the extension, then any octets. The get of that extension, its counts and
// its tolerant form say the same, and say it again.

#include "read.hpp"
#include "tolerant.hpp"

namespace fuzz {
namespace {

// ---- Counts agree with what was read, and fail in good order when the read fails -----------------------------------

using Size = std::optional<std::size_t>;  // nothing: the read failed

// Counts by `count(before..., &number, err)`.
template <class Count, class... Before>
void checkCount(Size expected, const Count &count, Before... before) {
  uint32_t counted = 0;
  const uint32_t code = codeOf(count, before..., &counted);
  if (!expected) return;
  require(code == 0, "what can be read can be counted");
  require(counted == *expected, "a count agrees with what was read");
}

template <class List>
std::size_t sizeOf(const List &list) {
  return list.size();
}
template <class List>
std::size_t sizeOf(const std::optional<List> &list) {
  return list ? list->size() : 0;
}
std::size_t sizeOf(const std::optional<ketra::DistributionPointName> &name) {
  if (!name) return 0;
  if (const auto *full = std::get_if<ketra::FullName>(&*name)) return full->names.size();
  return std::get<ketra::RelativeName>(*name).attributes.size();
}
template <class T, class Member>
Size sizeOf(const T *value, Member T::*member) {
  return value == nullptr ? std::nullopt : Size(sizeOf(value->*member));
}

// For the other types.
template <class T>
void checkCounts(KetraObject, const T *) {}

template <Names T>
void checkCounts(KetraObject object, const T *value) {
  constexpr auto count = std::is_same_v<T, ketra::SubjectAltName>  ? KetraObjectSgetSubjectAltNameCalGenName
                         : std::is_same_v<T, ketra::IssuerAltName> ? KetraObjectSgetIssuerAltNameCalGenName
                                                                   : KetraObjectSgetCertIssuerCalGenName;
  checkCount(sizeOf(value, &T::names), count, object);
}

void checkCounts(KetraObject object, const ketra::AuthorityKeyId *value) {
  checkCount(sizeOf(value, &ketra::AuthorityKeyId::authorityCertIssuer), KetraObjectSgetAuthorityKeyIdCalGenName,
             object);
}
void checkCounts(KetraObject object, const ketra::ExtKeyUsage *value) {
  checkCount(sizeOf(value, &ketra::ExtKeyUsage::purposes), KetraObjectSgetExtKeyUsageCalKeyPurposeId, object);
}
void checkCounts(KetraObject object, const ketra::PolicyMappings *value) {
  checkCount(sizeOf(value, &ketra::PolicyMappings::mappings), KetraObjectSgetPolicyMappingsCalPolicyMapping, object);
}
void checkCounts(KetraObject object, const ketra::NameConstraints *value) {
  uint32_t permitted = 0;
  checkCount(sizeOf(value, &ketra::NameConstraints::excludedSubtrees), KetraObjectSgetNameConstraintsCalGenSubtree,
             object, &permitted);
  if (value != nullptr) require(permitted == sizeOf(value->permittedSubtrees), "both lists are counted");
}

// Of the first members, and of some that may not be there.
constexpr uint32_t kSome = 4;

void checkCounts(KetraObject object, const ketra::CertificatePolicies *value) {
  checkCount(sizeOf(value, &ketra::CertificatePolicies::policies), KetraObjectSgetCertPoliciesCalInformation, object);
  for (uint32_t i = 0; i < kSome; ++i) {
    const ketra::PolicyInformation none;
    const auto *policy = value == nullptr ? nullptr : i < value->policies.size() ? &value->policies[i] : &none;
    checkCount(sizeOf(policy, &ketra::PolicyInformation::qualifiers), KetraObjectSgetCertPoliciesCalQualifier, object,
               i);
  }
}

template <class T, class Count, class... Before>
void checkNameCount(const T *value, const Count &count, Before... before) {
  int32_t choice = -1;
  checkCount(sizeOf(value, &T::distributionPoint), count, before..., &choice);
  if (value == nullptr) return;
  const auto &name = value->distributionPoint;
  require(choice == (name ? static_cast<int32_t>(name->index()) + 1 : 0), "the alternative is the one that was read");
}

void checkCounts(KetraObject object, const ketra::IssuingDistributionPoint *value) {
  checkNameCount(value, KetraObjectSgetIssuingDistributionPointCalDistributionPointName, object);
}

void checkCounts(KetraObject object, const ketra::CrlDistributionPoints *value) {
  checkCount(sizeOf(value, &ketra::CrlDistributionPoints::points),
             KetraObjectSgetCRLDistributionPointsCalDistributionPoint, object);
  for (uint32_t i = 0; i < kSome; ++i) {
    const ketra::DistributionPoint none;
    const auto *point = value == nullptr ? nullptr : i < value->points.size() ? &value->points[i] : &none;
    checkNameCount(point, KetraObjectSgetCRLDistributionPointsCalDistributionPointName, object, i);
    checkCount(sizeOf(point, &ketra::DistributionPoint::cRLIssuer), KetraObjectSgetCRLDistributionPointsCalCRLIssuer,
               object, i);
  }
}

// ---- What the C++ face makes of values on demand --------------------------------------------------------------------

template <class T>
void look(const T &) {}

void look(const ketra::CertificatePolicies &value) {
  for (const ketra::PolicyInformation &policy : value.policies) {
    for (const ketra::PolicyQualifier &qualifier : policy.qualifiers) {
      const std::optional<std::string> cps = qualifier.cps();
      const std::optional<ketra::UserNotice> notice = qualifier.notice();
      require(!cps || !notice, "a qualifier is of one kind");
      if (notice) {
        require(ketra::PolicyQualifier::ofNotice(*notice).notice() == notice, "a notice survives writing and reading");
      }
    }
  }
}

template <class T>
void get(View value) {
  Extensions extensions;
  store<T>(extensions, value);
  const Outcome<T> outcome = read<T>(extensions);
  const T *got = std::get_if<T>(&outcome);
  checkCounts(extensions.handle(), got);
  if (got != nullptr) look(*got);
  using Form = typename TolerantForm<T>::type;
  if constexpr (!std::is_void_v<Form>) {
    const Outcome<Form> tolerant = read<Form>(extensions);
    require(got == nullptr || tolerant == Outcome<Form>(Tolerant::of(*got)),
            "a tolerant read gives what a strict one gives");
  }
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::withType(data[0] % fuzz::kTypes, [&]<class T, std::size_t>() { fuzz::get<T>({data + 1, size - 1}); });
  return 0;
}
