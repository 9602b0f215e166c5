// GnuTLS: initialising, importing and releasing an object; filling one, exporting and releasing. It has no operations
// for the other extensions, and does not write every value that it reads.

#include <gnutls/gnutls.h>
#include <gnutls/x509-ext.h>

#include <array>
#include <memory>

#include "operations.hpp"
#include "roots.hpp"

namespace bench {
namespace {

gnutls_datum_t datum(const void *octets, std::size_t size) {
  return {static_cast<unsigned char *>(const_cast<void *>(octets)), static_cast<unsigned>(size)};
}
gnutls_datum_t datum(std::string_view text) { return datum(text.data(), text.size()); }
gnutls_datum_t datum(lean::View view) { return datum(view.at, view.size); }

// Octets that GnuTLS has allocated.
struct Exported {
  Exported() = default;
  Exported(const Exported &) = delete;
  ~Exported() { gnutls_free(data.data); }
  bool operator==(const Octets &expected) const {
    return data.data != nullptr && Octets(data.data, data.data + data.size) == expected;
  }
  gnutls_datum_t data{};
};

// An extension that is read into an object and written from one.
template <class Handle, auto kInit, auto kDeinit, auto kImport, auto kExport>
struct Object {
  Object() { kInit(&handle); }
  Object(const Object &) = delete;
  ~Object() { kDeinit(handle); }
  bool read(const gnutls_datum_t &der) {
    if constexpr (std::is_invocable_v<decltype(kImport), const gnutls_datum_t *, Handle, unsigned>) {
      return kImport(&der, handle, 0) >= 0;
    } else {
      return kImport(&der, handle) >= 0;
    }
  }
  bool write(Exported &out) const { return kExport(handle, &out.data) >= 0; }
  Handle handle{};
};
using KeyIds = Object<gnutls_x509_aki_t, gnutls_x509_aki_init, gnutls_x509_aki_deinit,
                      gnutls_x509_ext_import_authority_key_id, gnutls_x509_ext_export_authority_key_id>;
using Purposes = Object<gnutls_x509_key_purposes_t, gnutls_x509_key_purpose_init, gnutls_x509_key_purpose_deinit,
                        gnutls_x509_ext_import_key_purposes, gnutls_x509_ext_export_key_purposes>;
using Policies = Object<gnutls_x509_policies_t, gnutls_x509_policies_init, gnutls_x509_policies_deinit,
                        gnutls_x509_ext_import_policies, gnutls_x509_ext_export_policies>;
using AltNames = Object<gnutls_subject_alt_names_t, gnutls_subject_alt_names_init, gnutls_subject_alt_names_deinit,
                        gnutls_x509_ext_import_subject_alt_names, gnutls_x509_ext_export_subject_alt_names>;
using Points =
    Object<gnutls_x509_crl_dist_points_t, gnutls_x509_crl_dist_points_init, gnutls_x509_crl_dist_points_deinit,
           gnutls_x509_ext_import_crl_dist_points, gnutls_x509_ext_export_crl_dist_points>;
using Constraints =
    Object<gnutls_x509_name_constraints_t, gnutls_x509_name_constraints_init, gnutls_x509_name_constraints_deinit,
           gnutls_x509_ext_import_name_constraints, gnutls_x509_ext_export_name_constraints>;

// The extensions without an object.
bool readBasicConstraints(const gnutls_datum_t &der) {
  unsigned ca = 0;
  int length = 0;
  return gnutls_x509_ext_import_basic_constraints(&der, &ca, &length) >= 0 && (ca == 1 || length < 0);
}
bool readKeyUsage(const gnutls_datum_t &der) {
  unsigned usage = 0;
  return gnutls_x509_ext_import_key_usage(&der, &usage) >= 0 && usage != 0;
}
bool readSubjectKeyId(const gnutls_datum_t &der) {
  Exported id;
  return gnutls_x509_ext_import_subject_key_id(&der, &id.data) >= 0 && id.data.size > 0;
}
bool writeBasicConstraints(Exported &out) {
  return gnutls_x509_ext_export_basic_constraints(1, kPathLength, &out.data) >= 0;
}
bool writeKeyUsage(Exported &out) {
  return gnutls_x509_ext_export_key_usage(GNUTLS_KEY_KEY_CERT_SIGN | GNUTLS_KEY_CRL_SIGN, &out.data) >= 0;
}
bool writeSubjectKeyId(Exported &out) {
  const gnutls_datum_t id = datum(kKeyId, sizeof kKeyId);
  return gnutls_x509_ext_export_subject_key_id(&id, &out.data) >= 0;
}

template <class Check, class Read>
void addRead(const std::string &row, const Octets &der, Check check, Read read) {
  const auto kept = std::make_shared<const Octets>(der);
  const gnutls_datum_t in = datum(kept->data(), kept->size());
  add(
      row, "read", "GnuTLS", [=] { return check(in, *kept); }, [=] { benchmark::DoNotOptimize(read(in)); });
}
template <class Write>
void addWrite(const std::string &row, const Octets &der, Write write) {
  const auto run = [write] {
    Exported out;
    benchmark::DoNotOptimize(write(out));
  };
  const auto check = [write, der] {
    Exported out;
    return write(out) && out == der;
  };
  add(row, "write", "GnuTLS", check, run);
}

template <class O>
bool readObject(const gnutls_datum_t &der) {
  O object;
  return object.read(der);
}
template <class O>
void addReadObject(const std::string &row, const Octets &der, bool (*isExpected)(O &)) {
  const auto check = [isExpected](const gnutls_datum_t &in, const Octets &expected) {
    O object;
    Exported again;
    if (!object.read(in)) return false;
    return isExpected != nullptr ? isExpected(object) : object.write(again) && again == expected;
  };
  addRead(row, der, check, readObject<O>);
}
template <class O, class Fill>
void addWriteObject(const std::string &row, const Octets &der, Fill fill) {
  addWrite(row, der, [fill](Exported &out) {
    O object;
    return fill(object.handle) && object.write(out);
  });
}

bool fillPolicies(gnutls_x509_policies_t handle) {
  int result = 0;
  for (std::size_t i = 0; i < 2; ++i) {
    gnutls_x509_policy_st info{};
    info.oid = const_cast<char *>(policyText(i).c_str());
    info.qualifiers = 1;
    info.qualifier[0] = {GNUTLS_X509_QUALIFIER_URI, const_cast<char *>(kCps), sizeof kCps - 1};
    result |= gnutls_x509_policies_set(handle, &info);
  }
  return result == 0;
}

bool fillAltNames(gnutls_subject_alt_names_t handle, std::size_t size) {
  int result = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const gnutls_datum_t name = datum(host(i));
    result |= gnutls_subject_alt_names_set(handle, GNUTLS_SAN_DNSNAME, &name, nullptr);
  }
  return result == 0;
}

bool fillConstraints(gnutls_x509_name_constraints_t handle) {
  int result = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const gnutls_datum_t name = datum(host(i));
    const auto add = i < 2 ? gnutls_x509_name_constraints_add_permitted : gnutls_x509_name_constraints_add_excluded;
    result |= add(handle, GNUTLS_SAN_DNSNAME, &name);
  }
  return result == 0;
}

bool isKeyId(KeyIds &object) {
  gnutls_datum_t name{}, other{}, serial{};
  unsigned type = 0;
  return gnutls_x509_aki_get_cert_issuer(object.handle, 0, &type, &name, &other, &serial) >= 0 &&
         type == GNUTLS_SAN_DN && serial.size == sizeof kSerial;
}
bool isDirectoryName(AltNames &object) {
  gnutls_datum_t name{};
  unsigned type = 0;
  return gnutls_subject_alt_names_get(object.handle, 0, &type, &name, nullptr) >= 0 && type == GNUTLS_SAN_DN;
}
bool isPoints(Points &object) {
  gnutls_datum_t name{};
  unsigned type = 0, reasons = 0;
  return gnutls_x509_crl_dist_points_get(object.handle, 1, &type, &name, &reasons) >= 0 && type == GNUTLS_SAN_URI &&
         crl(1) == std::string(name.data, name.data + name.size);
}

bool readRoot(uint8_t id, const gnutls_datum_t &der) {
  switch (id) {
    case 14: return readSubjectKeyId(der);
    case 15: return readKeyUsage(der);
    case 17: return readObject<AltNames>(der);
    case 19: return readBasicConstraints(der);
    case 30: return readObject<Constraints>(der);
    case 31: return readObject<Points>(der);
    case 32: return readObject<Policies>(der);
    case 35: return readObject<KeyIds>(der);
    case 37: return readObject<Purposes>(der);
    default: return false;
  }
}
std::size_t readRoots() {
  std::size_t all = 0;
  for (const Octets &root : roots()) {
    forEachExtension(root, [&](uint8_t id, lean::View octets) { all += readRoot(id, datum(octets)); });
  }
  return all;
}

}  // namespace

void addGnuTls() {
  const auto scalar = [](const char *row, const Octets &der, auto read, auto write) {
    addRead(
        row, der, [read](const gnutls_datum_t &in, const Octets &) { return read(in); }, read);
    addWrite(row, der, write);
  };
  scalar("BasicConstraints", der::basicConstraints(), readBasicConstraints, writeBasicConstraints);
  scalar("KeyUsage", der::keyUsage(), readKeyUsage, writeKeyUsage);
  scalar("SubjectKeyId", der::subjectKeyId(), readSubjectKeyId, writeSubjectKeyId);
  addReadObject<KeyIds>("AuthorityKeyId", der::authorityKeyId(), isKeyId);
  addReadObject<AltNames>("SubjectAltName directoryName", der::directoryName(), isDirectoryName);
  addReadObject<Points>("CRLDistributionPoints 2", der::crlDistributionPoints(2), isPoints);
  addReadObject<Purposes>("ExtKeyUsage 3", der::extKeyUsage(3), nullptr);
  addWriteObject<Purposes>("ExtKeyUsage 3", der::extKeyUsage(3), [](gnutls_x509_key_purposes_t handle) {
    int result = 0;
    for (std::size_t i = 0; i < 3; ++i) result |= gnutls_x509_key_purpose_set(handle, purposeText(i).c_str());
    return result == 0;
  });
  addReadObject<Policies>("CertPolicies 2", der::certPolicies(2), nullptr);
  addWriteObject<Policies>("CertPolicies 2", der::certPolicies(2), fillPolicies);
  addReadObject<Constraints>("NameConstraints 4", der::nameConstraints(4), nullptr);
  addWriteObject<Constraints>("NameConstraints 4", der::nameConstraints(4), fillConstraints);
  for (const std::size_t n : kLengths) {
    if (n > kMostOfQuadratic) continue;
    addReadObject<AltNames>(sized("SubjectAltName", n), der::subjectAltName(n), nullptr);
    addWriteObject<AltNames>(sized("SubjectAltName", n), der::subjectAltName(n),
                             [n](gnutls_subject_alt_names_t handle) { return fillAltNames(handle, n); });
  }
  addRoots("GnuTLS", readRoots);
}

}  // namespace bench
