// The C++ library: views of which every member is visited, values that own, and writing those.

#include <memory>
#include <optional>
#include <type_traits>
#include <variant>

#include "ketra/extensions.hpp"
#include "ketra/objects/certificate.hpp"
#include "ketra/objects/crl.hpp"
#include "operations.hpp"
#include "roots.hpp"

namespace bench {
namespace {

// Visits every member of a view, as the floor does; what it sees ends in one sum. In line, as if it were written for
// each view by hand.
struct Seen {
  uint64_t sum = 0;

  template <class T>
  KETRA_INLINE bool operator()(const char *, const T &member, ketra::As = {}) {
    return see(member);
  }
  template <class T>
  KETRA_INLINE bool operator()(const char *, const std::optional<T> &member, ketra::As = {}) {
    return !member || see(*member);
  }
  template <class T, auto D>
  KETRA_INLINE bool operator()(const char *, const ketra::Default<T, D> &member, ketra::As = {}) {
    return see(member.value());
  }
  template <class... Ts, class... Alternatives>
  KETRA_INLINE bool choice(const std::variant<Ts...> &value, Alternatives...) {
    return std::visit([this](const auto &alternative) { return this->see(alternative); }, value);
  }
  KETRA_INLINE bool nameless(const ketra::BitsView &bits) { return octets(bits.octets()); }

  template <class T>
  bool see(const ketra::Range<T> &list) {
    for (const auto &item : list) {
      if (!item || !see(*item)) return false;
    }
    return true;
  }
  KETRA_INLINE bool see(const ketra::GeneralNameView &name) {
    sum += static_cast<uint64_t>(name.kind());
    if (!name.is(ketra::NameKind::directoryName)) return octets(name.content());
    const auto directory = name.directoryName();
    return directory && see(directory->rdns());
  }
  template <class T>
  KETRA_INLINE bool see(const ketra::Field<T> &field) {
    const auto value = field.value();
    return value && see(*value);
  }
  KETRA_INLINE bool see(const ketra::NameView &name) { return see(name.rdns()); }
  KETRA_INLINE bool see(const ketra::BitsView &bits) { return octets(bits.octets()); }
  KETRA_INLINE bool see(const ketra::EitherTime &time) { return see(time.time); }
  KETRA_INLINE bool see(const ketra::IntegerView &integer) {
    const std::optional<int64_t> number = integer.number();
    if (!number) return octets(integer.content());
    sum += static_cast<uint64_t>(*number);
    return true;
  }
  KETRA_INLINE bool see(const ketra::ObjectIdentifierView &id) { return octets(id.content()); }
  KETRA_INLINE bool see(const ketra::OctetStringView &string) { return octets(string.octets()); }
  KETRA_INLINE bool see(const ketra::AnyView &any) { return octets(any.encoding()); }
  KETRA_INLINE bool see(ketra::Time time) {
    sum += static_cast<uint64_t>(time.time_since_epoch().count());
    return true;
  }
  template <class T>
  KETRA_INLINE bool see(const T &value) {
    if constexpr (std::is_enum_v<T> || std::is_same_v<T, bool>) {
      sum += static_cast<uint64_t>(value);
      return true;
    } else {
      return T::describe(value, *this);
    }
  }
  KETRA_INLINE bool octets(ketra::View octets) {
    sum += reinterpret_cast<uintptr_t>(octets.data()) + octets.size();
    return true;
  }
};

template <class T>
using ViewOf = typename ketra::detail::ViewedOf<T>::type;

template <class T>
bool seesAll(ketra::View octets) {
  Seen seen;
  const auto value = ketra::view<ViewOf<T>>(octets);
  const bool isRead = value && seen.see(*value);
  benchmark::DoNotOptimize(seen.sum);
  return isRead;
}

template <class T>
bool reads(ketra::View octets) {
  const auto value = ketra::read<T>(octets);
  sink(&value);
  return static_cast<bool>(value);
}

template <class T>
struct Fixture {
  explicit Fixture(const Octets &der) : expected(der), value(ketra::read<T>(ketra::View(expected))) {}
  bool writes() const { return value && ketra::encode(*value) == expected; }

  Octets expected;
  ketra::Result<T> value;
};

template <class T>
void addRow(const std::string &row, const Octets &der) {
  const auto fixture = std::make_shared<const Fixture<T>>(der);
  const Fixture<T> *f = fixture.get();
  const auto check = [fixture] { return fixture->writes(); };
  add(
      row, "read", "ketra view", [f] { return seesAll<T>(ketra::View(f->expected)); },
      [fixture] { benchmark::DoNotOptimize(seesAll<T>(ketra::View(fixture->expected))); });
  add(row, "read", "ketra read", check, [f] { benchmark::DoNotOptimize(reads<T>(ketra::View(f->expected))); });
  add(row, "write", "ketra write", check, [f] {
    const ketra::Octets written = ketra::encode(*f->value);
    sink(written.data());
  });
}

// use.operator()<T>() of the type with the identifier 2.5.29.`id`.
template <class Use>
bool withType(uint8_t id, Use &&use) {
  switch (id) {
    case 14: return use.template operator()<ketra::SubjectKeyId>();
    case 15: return use.template operator()<ketra::KeyUsage>();
    case 17: return use.template operator()<ketra::SubjectAltName>();
    case 19: return use.template operator()<ketra::BasicConstraints>();
    case 30: return use.template operator()<ketra::NameConstraints>();
    case 31: return use.template operator()<ketra::CrlDistributionPoints>();
    case 32: return use.template operator()<ketra::CertificatePolicies>();
    case 33: return use.template operator()<ketra::PolicyMappings>();
    case 35: return use.template operator()<ketra::AuthorityKeyId>();
    case 36: return use.template operator()<ketra::PolicyConstraints>();
    case 37: return use.template operator()<ketra::ExtKeyUsage>();
    default: return false;
  }
}

template <bool kOwning>
std::size_t readRoots() {
  std::size_t all = 0;
  for (const Octets &root : roots()) {
    for (const auto &extension : ketra::ExtensionsView(ketra::View(root))) {
      if (!extension) continue;
      const ketra::View id = extension->extnID.content(), octets = extension->extnValue.octets();
      if (id.size() != 3 || id[0] != 0x55 || id[1] != 0x1D) continue;
      all += withType(id[2], [octets]<class T>() { return kOwning ? reads<T>(octets) : seesAll<T>(octets); });
    }
  }
  return all;
}

std::size_t seeExtensions(const ketra::ExtensionsView &extensions) {
  std::size_t all = 0;
  for (const auto &extension : extensions) {
    if (!extension) continue;
    const ketra::View id = extension->extnID.content(), octets = extension->extnValue.octets();
    if (id.size() != 3 || id[0] != 0x55 || id[1] != 0x1D) continue;
    all += withType(id[2], [octets]<class T>() { return seesAll<T>(octets); });
  }
  return all;
}
std::size_t seeCertificate(const Octets &octets) {
  const auto certificate = ketra::view<ketra::CertificateView>(ketra::View(octets));
  Seen seen;
  if (!certificate || !seen.see(*certificate)) return 0;
  benchmark::DoNotOptimize(seen.sum);
  return seeExtensions(certificate->extensions());
}
std::size_t seeCrl(const Octets &octets) {
  const auto crl = ketra::view<ketra::CrlView>(ketra::View(octets));
  if (!crl) return 0;
  Seen seen;
  std::size_t count = 0;
  for (const ketra::CrlEntry &entry : crl->entries()) count += entry && seen.see(*entry);
  benchmark::DoNotOptimize(seen.sum);
  return count;
}

}  // namespace

void addKetraCpp() {
  addRow<ketra::BasicConstraints>("BasicConstraints", der::basicConstraints());
  addRow<ketra::KeyUsage>("KeyUsage", der::keyUsage());
  addRow<ketra::SubjectKeyId>("SubjectKeyId", der::subjectKeyId());
  addRow<ketra::PolicyConstraints>("PolicyConstraints", der::policyConstraints());
  addRow<ketra::CrlNumber>("CRLNumber", der::crlNumber());
  addRow<ketra::ReasonCode>("ReasonCode", der::reasonCode());
  addRow<ketra::InvalidityDate>("InvalidityDate", der::invalidityDate());
  addRow<ketra::AuthorityKeyId>("AuthorityKeyId", der::authorityKeyId());
  addRow<ketra::SubjectAltName>("SubjectAltName directoryName", der::directoryName());
  addRow<ketra::IssuingDistributionPoint>("IssuingDistributionPoint", der::issuingDistributionPoint());
  const auto addLists = [](std::size_t purposes, std::size_t others, std::size_t subtrees) {
    addRow<ketra::ExtKeyUsage>(sized("ExtKeyUsage", purposes), der::extKeyUsage(purposes));
    addRow<ketra::CertificatePolicies>(sized("CertPolicies", others), der::certPolicies(others));
    addRow<ketra::PolicyMappings>(sized("PolicyMappings", others), der::policyMappings(others));
    addRow<ketra::CrlDistributionPoints>(sized("CRLDistributionPoints", others), der::crlDistributionPoints(others));
    addRow<ketra::NameConstraints>(sized("NameConstraints", subtrees), der::nameConstraints(subtrees));
  };
  addLists(3, 2, 4);
  for (const std::size_t n : kLengths) {
    addRow<ketra::SubjectAltName>(sized("SubjectAltName", n), der::subjectAltName(n));
    addLists(n, n, n);
  }
  addRoots("ketra view", readRoots<false>);
  addRoots("ketra read", readRoots<true>);
  addObjects("ketra view", seeCertificate, seeCrl);
}

}  // namespace bench
