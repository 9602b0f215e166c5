// One stored value: an octet that chooses the extension, then any octets. The get of that extension, its counts and
// its tolerant form say the same, and say it again.

#include "read.hpp"
#include "tolerant.hpp"

namespace fuzz {
namespace {

// ---- Counts agree with what was read, and fail in good order when the read fails -----------------------------------

template <class Count>
void checkCount(const Count &count, std::optional<std::size_t> expected) {
  uint32_t counted = 0;
  const uint32_t code = codeOf([&](AsnErrorBlock *err) { return count(&counted, err); });
  if (!expected) return;
  require(code == 0, "what can be read can be counted");
  require(counted == *expected, "a count agrees with what was read");
}

// For the other types.
template <class T>
void checkCounts(KetraObject, const T *) {}

template <class T, class Member>
std::optional<std::size_t> sizeOf(const T *value, const Member &member) {
  return value == nullptr ? std::nullopt : std::optional<std::size_t>(((*value).*member).size());
}

template <Names T>
void checkCounts(KetraObject object, const T *value) {
  constexpr auto count = std::is_same_v<T, ketra::SubjectAltName>  ? KetraObjectSgetSubjectAltNameCalGenName
                         : std::is_same_v<T, ketra::IssuerAltName> ? KetraObjectSgetIssuerAltNameCalGenName
                                                                   : KetraObjectSgetCertIssuerCalGenName;
  checkCount([&](uint32_t *n, AsnErrorBlock *err) { return count(object, n, err); }, sizeOf(value, &T::names));
}

void checkCounts(KetraObject object, const ketra::AuthorityKeyId *value) {
  std::optional<std::size_t> names;
  if (value != nullptr) names = value->authorityCertIssuer ? value->authorityCertIssuer->size() : 0;
  checkCount([&](uint32_t *n, AsnErrorBlock *err) { return KetraObjectSgetAuthorityKeyIdCalGenName(object, n, err); },
             names);
}

void checkCounts(KetraObject object, const ketra::ExtKeyUsage *value) {
  checkCount([&](uint32_t *n, AsnErrorBlock *err) { return KetraObjectSgetExtKeyUsageCalKeyPurposeId(object, n, err); },
             sizeOf(value, &ketra::ExtKeyUsage::purposes));
}

void checkCounts(KetraObject object, const ketra::PolicyMappings *value) {
  checkCount(
      [&](uint32_t *n, AsnErrorBlock *err) { return KetraObjectSgetPolicyMappingsCalPolicyMapping(object, n, err); },
      sizeOf(value, &ketra::PolicyMappings::mappings));
}

void checkCounts(KetraObject object, const ketra::NameConstraints *value) {
  const auto size = [&](const auto &list) {
    return value == nullptr ? std::nullopt : std::optional<std::size_t>(list(*value) ? list(*value)->size() : 0);
  };
  uint32_t other = 0;
  const auto calls = [&](bool first) {
    return [&other, object, first](uint32_t *n, AsnErrorBlock *err) {
      return KetraObjectSgetNameConstraintsCalGenSubtree(object, first ? n : &other, first ? &other : n, err);
    };
  };
  checkCount(calls(true), size([](const auto &v) { return v.permittedSubtrees; }));
  checkCount(calls(false), size([](const auto &v) { return v.excludedSubtrees; }));
}

void checkCounts(KetraObject object, const ketra::CertificatePolicies *value) {
  checkCount([&](uint32_t *n, AsnErrorBlock *err) { return KetraObjectSgetCertPoliciesCalInformation(object, n, err); },
             sizeOf(value, &ketra::CertificatePolicies::policies));
  constexpr std::size_t kSome = 4;
  for (uint32_t i = 0; i < kSome; ++i) {
    std::optional<std::size_t> qualifiers;
    if (value != nullptr) qualifiers = i < value->policies.size() ? value->policies[i].qualifiers.size() : 0;
    checkCount(
        [&](uint32_t *n, AsnErrorBlock *err) { return KetraObjectSgetCertPoliciesCalQualifier(object, i, n, err); },
        qualifiers);
  }
}

std::size_t sizeOf(const std::optional<ketra::DistributionPointName> &name) {
  if (!name) return 0;
  if (const auto *full = std::get_if<ketra::FullName>(&*name)) return full->names.size();
  return std::get<ketra::RelativeName>(*name).attributes.size();
}

template <class Count>
void checkNameCount(const Count &count, const std::optional<ketra::DistributionPointName> *name) {
  int32_t choice = -1;
  checkCount([&](uint32_t *n, AsnErrorBlock *err) { return count(&choice, n, err); },
             name == nullptr ? std::nullopt : std::optional<std::size_t>(sizeOf(*name)));
  if (name == nullptr) return;
  const int32_t expected = *name ? static_cast<int32_t>((*name)->index()) + 1 : 0;
  require(choice == expected, "the alternative is the one that was read");
}

void checkCounts(KetraObject object, const ketra::IssuingDistributionPoint *value) {
  checkNameCount(
      [&](int32_t *choice, uint32_t *n, AsnErrorBlock *err) {
        return KetraObjectSgetIssuingDistributionPointCalDistributionPointName(object, choice, n, err);
      },
      value == nullptr ? nullptr : &value->distributionPoint);
}

void checkCounts(KetraObject object, const ketra::CrlDistributionPoints *value) {
  checkCount(
      [&](uint32_t *n, AsnErrorBlock *err) {
        return KetraObjectSgetCRLDistributionPointsCalDistributionPoint(object, n, err);
      },
      sizeOf(value, &ketra::CrlDistributionPoints::points));
  constexpr uint32_t kSome = 4;
  const ketra::DistributionPoint none;
  for (uint32_t i = 0; i < kSome; ++i) {
    const ketra::DistributionPoint *point = nullptr;
    if (value != nullptr) point = i < value->points.size() ? &value->points[i] : &none;
    checkNameCount(
        [&](int32_t *choice, uint32_t *n, AsnErrorBlock *err) {
          return KetraObjectSgetCRLDistributionPointsCalDistributionPointName(object, i, choice, n, err);
        },
        point == nullptr ? nullptr : &point->distributionPoint);
    std::optional<std::size_t> issuers;
    if (point != nullptr) issuers = point->cRLIssuer ? point->cRLIssuer->size() : 0;
    checkCount([&](uint32_t *n,
                   AsnErrorBlock *err) { return KetraObjectSgetCRLDistributionPointsCalCRLIssuer(object, i, n, err); },
               issuers);
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

void look(const ketra::SubjectDirectoryAttributes &value) {
  for (const ketra::Attribute &attribute : value.attributes) {
    for (const Octets &each : attribute.values) {
      const std::optional<std::string> text = ketra::stringText(each);
      if (text) require(ketra::stringText(ketra::utf8String(*text)) == text, "text survives as UTF8String");
    }
  }
}

void look(const ketra::ExtKeyUsage &value) {
  for (const ketra::ObjectIdentifier &each : value.purposes) {
    const Objid objid = each.objid();
    std::string text(each.text().size() + 1, '\0');
    const auto size = static_cast<uint32_t>(text.size());
    succeed("an identifier has a text",
            [&](AsnErrorBlock *err) { return ObjidToText(&objid, text.data(), size, nullptr, err); });
    text.pop_back();
    require(text == each.text() && ketra::ObjectIdentifier::parse(text) == each, "an identifier survives as text");
  }
}

void look(const ketra::InvalidityDate &value) {
  require(ketra::parseTime(ketra::timeText(value.date)) == value.date, "a time survives as text");
}

template <class T>
void look(KetraObject object, const T &value) {
  static_cast<void>(object);
  look(value);
}
void look(KetraObject object, const ketra::KeyUsage &value) {
  AsnBit bits{};
  require(KetraObjectSgetKeyUsage(object, &bits, nullptr) == 0, "KeyUsage reads again");
  require(bits.bits == (value.encipherOnly || value.decipherOnly ? 9 : 7), "7 bits of KeyUsage, or 9");
}

template <class T>
void get(View value) {
  Extensions extensions;
  store<T>(extensions, value);
  const Outcome<T> outcome = read<T>(extensions);
  const T *got = std::get_if<T>(&outcome);
  checkCounts(extensions.handle(), got);
  if (got != nullptr) look(extensions.handle(), *got);
  using Tolerant = typename TolerantForm<T>::type;
  if constexpr (!std::is_void_v<Tolerant>) {
    const Outcome<Tolerant> tolerant = read<Tolerant>(extensions);
    if (got == nullptr) return;
    const Tolerant *names = std::get_if<Tolerant>(&tolerant);
    require(names != nullptr && agree(*got, *names), "a tolerant read gives what a strict one gives");
  }
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::withType(data[0] % fuzz::kTypes, [&]<class T, std::size_t>() { fuzz::get<T>({data + 1, size - 1}); });
  return 0;
}
