// The floor, without an allocation and with one: the structure and the octets that it points to, or what was written.

#include "floor.hpp"

#include <cstdlib>
#include <memory>
#include <type_traits>

#include "operations.hpp"

namespace bench {
namespace {

template <class S>
struct Fixture {
  explicit Fixture(const Octets &der) : expected(der), room(der.size() + 16), names(lean::Names::countIn(in())) {
    if constexpr (kIsList) filled.names = {names.data(), static_cast<uint32_t>(names.size()), 0, &directory};
    isRead = filled.read(in());
  }
  static constexpr bool kIsList = std::is_same_v<S, lean::SubjectAltName>;

  lean::Reader in() const { return {expected.data(), expected.size()}; }
  std::size_t write() {
    lean::Writer writer(room.data() + room.size());
    filled.write(writer);
    return static_cast<std::size_t>(room.data() + room.size() - writer.at());
  }
  bool writes() {
    const std::size_t size = write();
    return isRead && Octets(room.end() - static_cast<std::ptrdiff_t>(size), room.end()) == expected;
  }

  Octets expected, room;
  std::vector<lean::Tagged> names;
  lean::Directory directory{};
  S filled{};
  bool isRead = false;
};

template <class S>
void addRow(const std::string &row, const Octets &der) {
  const auto fixture = std::make_shared<Fixture<S>>(der);
  Fixture<S> *f = fixture.get();
  const auto check = [fixture] { return fixture->writes(); };
  add(row, "read", "floor", check, [f] {
    S value;
    if constexpr (Fixture<S>::kIsList) value.names = f->filled.names;
    benchmark::DoNotOptimize(value.read(f->in()));
    sink(&value);
  });
  add(row, "read", "floor, 1 allocation", check, [f] {
    const std::size_t size = f->expected.size();
    const std::size_t names = Fixture<S>::kIsList ? lean::Names::countIn(f->in()) : 0;
    const std::size_t list = Fixture<S>::kIsList ? sizeof(lean::Directory) + names * sizeof(lean::Tagged) : 0;
    auto *memory = static_cast<uint8_t *>(std::malloc(sizeof(S) + list + size));
    S &value = *new (memory) S;
    uint8_t *octets = memory + sizeof(S) + list;
    std::memcpy(octets, f->expected.data(), size);
    if constexpr (Fixture<S>::kIsList) {
      auto *directory = new (memory + sizeof(S)) lean::Directory;
      value.names = {reinterpret_cast<lean::Tagged *>(directory + 1), static_cast<uint32_t>(names), 0, directory};
    }
    benchmark::DoNotOptimize(value.read({octets, size}));
    sink(memory);
    std::free(memory);
  });
  add(row, "write", "floor", check, [f] {
    benchmark::DoNotOptimize(f->write());
    sink(f->room.data());
  });
  add(row, "write", "floor, 1 allocation", check, [f] {
    const std::size_t size = f->write();
    auto *memory = static_cast<uint8_t *>(std::malloc(size));
    std::memcpy(memory, f->room.data() + f->room.size() - size, size);
    sink(memory);
    std::free(memory);
  });
}

}  // namespace

void addFloor() {
  addRow<lean::BasicConstraints>("BasicConstraints", der::basicConstraints());
  addRow<lean::KeyUsage>("KeyUsage", der::keyUsage());
  addRow<lean::SubjectKeyId>("SubjectKeyId", der::subjectKeyId());
  addRow<lean::PolicyConstraints>("PolicyConstraints", der::policyConstraints());
  addRow<lean::Number<0x02>>("CRLNumber", der::crlNumber());
  addRow<lean::Number<0x0A>>("ReasonCode", der::reasonCode());
  addRow<lean::InvalidityDate>("InvalidityDate", der::invalidityDate());
  addRow<lean::ExtKeyUsage>("ExtKeyUsage 3", der::extKeyUsage(3));
  addRow<lean::PolicyMappings>("PolicyMappings 2", der::policyMappings(2));
  addRow<lean::CertPolicies>("CertPolicies 2", der::certPolicies(2));
  addRow<lean::AuthorityKeyId>("AuthorityKeyId", der::authorityKeyId());
  addRow<lean::SubjectAltName>("SubjectAltName directoryName", der::directoryName());
  for (const std::size_t n : kLengths) addRow<lean::SubjectAltName>(sized("SubjectAltName", n), der::subjectAltName(n));
  addRow<lean::CrlDistributionPoints>("CRLDistributionPoints 2", der::crlDistributionPoints(2));
  addRow<lean::IssuingDistributionPoint>("IssuingDistributionPoint", der::issuingDistributionPoint());
  addRow<lean::NameConstraints>("NameConstraints 4", der::nameConstraints(4));
}

}  // namespace bench
