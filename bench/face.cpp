// The C++ face.

#include <memory>

#include "operations.hpp"

namespace bench {
namespace {

template <class T>
struct Fixture {
  Fixture(const Octets &der, T contents) : value(std::move(contents)), expected(der) {
    stored.set(ketra::ObjectIdentifier(ketra::ExtensionTraits<T>::objid()), false, expected);
  }
  void write() {
    if constexpr (ketra::ExtensionTraits<T>::kCallerSetsCritical) {
      written.set(value, false);
    } else {
      written.set(value);
    }
  }
  void read() const {
    const auto read = stored.template get<T>();
    sink(&read);
  }
  bool writes() {
    write();
    return written.at(0).value.copy() == expected;
  }
  bool reads() const { return stored.template get<T>() == value; }

  T value;
  Octets expected;
  ketra::Extensions stored, written;
};

template <class T>
void addRow(const std::string &row, const Octets &der, T value) {
  const auto fixture = std::make_shared<Fixture<T>>(der, std::move(value));
  Fixture<T> *f = fixture.get();
  add(
      row, "read", "ketra.hpp", [fixture] { return fixture->reads(); }, [f] { f->read(); });
  add(
      row, "write", "ketra.hpp", [fixture] { return fixture->writes(); }, [f] { f->write(); });
}

Octets keyId() { return {std::begin(kKeyId), std::end(kKeyId)}; }

ketra::Name name() {
  ketra::Name name;
  for (const Attribute &each : kName) {
    name.add({{ketra::ObjectIdentifier(Objid{each.type, 4}), std::string(each.text)}});
  }
  return name;
}

ketra::KeyUsage certAndCrlSign() {
  ketra::KeyUsage usage;
  usage.keyCertSign = usage.cRLSign = true;
  return usage;
}

ketra::ExtKeyUsage purposes(std::size_t size) {
  ketra::ExtKeyUsage value;
  for (std::size_t i = 0; i < size; ++i) value.purposes.push_back(purpose(i));
  return value;
}

ketra::CertificatePolicies policies(std::size_t size) {
  ketra::CertificatePolicies value;
  for (std::size_t i = 0; i < size; ++i) {
    value.policies.push_back({policy(i), {ketra::PolicyQualifier::ofCps(kCps)}});
  }
  return value;
}

ketra::PolicyMappings mappings(std::size_t size) {
  ketra::PolicyMappings value;
  for (std::size_t i = 0; i < size; ++i) value.mappings.push_back({policy(i), subjectPolicy(i)});
  return value;
}

ketra::SubjectAltName hosts(std::size_t size) {
  ketra::SubjectAltName value;
  for (std::size_t i = 0; i < size; ++i) value.names.push_back(ketra::dns(host(i)));
  return value;
}

ketra::CrlDistributionPoints points(std::size_t size) {
  ketra::CrlDistributionPoints value;
  for (std::size_t i = 0; i < size; ++i) {
    value.points.emplace_back().distributionPoint = ketra::FullName{{ketra::uri(crl(i))}};
  }
  return value;
}

ketra::IssuingDistributionPoint issuingPoint() {
  ketra::IssuingDistributionPoint value;
  value.distributionPoint = ketra::FullName{{ketra::uri(crl(0))}};
  value.onlyContainsUserCerts = true;
  value.onlySomeReasons.emplace().keyCompromise = true;
  value.onlySomeReasons->cACompromise = true;
  return value;
}

ketra::NameConstraints constraints(std::size_t size) {
  ketra::NameConstraints value;
  for (std::size_t i = 0; i < size; ++i) {
    auto &list = i < size - size / 2 ? value.permittedSubtrees : value.excludedSubtrees;
    if (!list) list.emplace();
    list->push_back({ketra::dns(host(i))});
  }
  return value;
}

}  // namespace

void addFace() {
  addRow("BasicConstraints", der::basicConstraints(), ketra::BasicConstraints{true, kPathLength});
  addRow("KeyUsage", der::keyUsage(), certAndCrlSign());
  addRow("SubjectKeyId", der::subjectKeyId(), ketra::SubjectKeyId{keyId()});
  addRow("PolicyConstraints", der::policyConstraints(), ketra::PolicyConstraints{kExplicit, kInhibit});
  addRow("CRLNumber", der::crlNumber(), ketra::CrlNumber{kCrlNumber});
  addRow("ReasonCode", der::reasonCode(), ketra::ReasonCode{kReason});
  addRow("InvalidityDate", der::invalidityDate(), ketra::InvalidityDate{ketra::parseTime(kDateText)});
  addRow("AuthorityKeyId", der::authorityKeyId(),
         ketra::AuthorityKeyId{keyId(), {{ketra::directory(name())}}, ketra::Integer::ofContent({kSerial, 16})});
  addRow("SubjectAltName directoryName", der::directoryName(), ketra::SubjectAltName{{ketra::directory(name())}});
  addRow("IssuingDistributionPoint", der::issuingDistributionPoint(), issuingPoint());
  const auto addLists = [](std::size_t purposeCount, std::size_t policyCount, std::size_t subtreeCount) {
    addRow(sized("ExtKeyUsage", purposeCount), der::extKeyUsage(purposeCount), purposes(purposeCount));
    addRow(sized("CertPolicies", policyCount), der::certPolicies(policyCount), policies(policyCount));
    addRow(sized("PolicyMappings", policyCount), der::policyMappings(policyCount), mappings(policyCount));
    addRow(sized("CRLDistributionPoints", policyCount), der::crlDistributionPoints(policyCount), points(policyCount));
    addRow(sized("NameConstraints", subtreeCount), der::nameConstraints(subtreeCount), constraints(subtreeCount));
  };
  addLists(3, 2, 4);
  for (const std::size_t n : kLengths) {
    addRow(sized("SubjectAltName", n), der::subjectAltName(n), hosts(n));
    addLists(n, n, n);
  }
}

}  // namespace bench
