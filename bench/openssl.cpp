// OpenSSL, and BoringSSL, which has the same functions: d2i and free; build, i2d and free.

#include <openssl/crypto.h>
#include <openssl/x509v3.h>

#include <memory>

#include "operations.hpp"
#include "roots.hpp"

#ifdef OPENSSL_IS_BORINGSSL
#define BENCH_LIBRARY "BoringSSL"
#else
#define BENCH_LIBRARY "OpenSSL"
#endif

namespace bench {
namespace {

ASN1_OBJECT *identifier(const std::string &text) { return OBJ_txt2obj(text.c_str(), 1); }

// A new string of a type, with these octets.
ASN1_STRING *string(int type, const void *octets, std::size_t size) {
  ASN1_STRING *string = ASN1_STRING_type_new(type);
  ASN1_STRING_set(string, octets, static_cast<int>(size));
  return string;
}
ASN1_STRING *string(int type, std::string_view text) { return string(type, text.data(), text.size()); }

ASN1_INTEGER *integer(int32_t number) {
  ASN1_INTEGER *integer = ASN1_INTEGER_new();
  ASN1_INTEGER_set(integer, number);
  return integer;
}

ASN1_BIT_STRING *bits(std::initializer_list<int> set) {
  ASN1_BIT_STRING *bits = ASN1_BIT_STRING_new();
  for (const int bit : set) ASN1_BIT_STRING_set_bit(bits, bit, 1);
  return bits;
}

GENERAL_NAME *generalName(int type, std::string_view text) {
  GENERAL_NAME *name = GENERAL_NAME_new();
  GENERAL_NAME_set0_value(name, type, string(V_ASN1_IA5STRING, text));
  return name;
}
GENERAL_NAME *directoryName() {
  X509_NAME *rdns = X509_NAME_new();
  for (const Attribute &each : kName) {
    const int nid = each.type[3] == 6 ? NID_countryName : each.type[3] == 10 ? NID_organizationName : NID_commonName;
    const int type = each.string == X509DirStr_PrintableString ? V_ASN1_PRINTABLESTRING : V_ASN1_UTF8STRING;
    const auto *text = reinterpret_cast<const unsigned char *>(each.text.data());
    X509_NAME_add_entry_by_NID(rdns, nid, type, text, static_cast<int>(each.text.size()), -1, 0);
  }
  GENERAL_NAME *name = GENERAL_NAME_new();
  GENERAL_NAME_set0_value(name, GEN_DIRNAME, rdns);
  return name;
}
GENERAL_NAMES *names(GENERAL_NAME *only) {
  GENERAL_NAMES *names = sk_GENERAL_NAME_new_null();
  sk_GENERAL_NAME_push(names, only);
  return names;
}
DIST_POINT_NAME *fullName(std::size_t i) {
  DIST_POINT_NAME *name = DIST_POINT_NAME_new();
  name->type = 0;
  name->name.fullname = names(generalName(GEN_URI, crl(i)));
  return name;
}

BASIC_CONSTRAINTS *basicConstraints() {
  BASIC_CONSTRAINTS *value = BASIC_CONSTRAINTS_new();
  value->ca = 0xFF;
  value->pathlen = integer(kPathLength);
  return value;
}

AUTHORITY_KEYID *authorityKeyId() {
  AUTHORITY_KEYID *value = AUTHORITY_KEYID_new();
  value->keyid = string(V_ASN1_OCTET_STRING, kKeyId, sizeof kKeyId);
  value->issuer = names(directoryName());
  value->serial = string(V_ASN1_INTEGER, kSerial, sizeof kSerial);
  return value;
}

EXTENDED_KEY_USAGE *extKeyUsage() {
  EXTENDED_KEY_USAGE *value = sk_ASN1_OBJECT_new_null();
  for (std::size_t i = 0; i < 3; ++i) sk_ASN1_OBJECT_push(value, identifier(purposeText(i)));
  return value;
}

CERTIFICATEPOLICIES *certPolicies() {
  CERTIFICATEPOLICIES *value = sk_POLICYINFO_new_null();
  for (std::size_t i = 0; i < 2; ++i) {
    POLICYQUALINFO *qualifier = POLICYQUALINFO_new();
    qualifier->pqualid = OBJ_nid2obj(NID_id_qt_cps);
    qualifier->d.cpsuri = string(V_ASN1_IA5STRING, kCps);
    POLICYINFO *info = POLICYINFO_new();
    info->policyid = identifier(policyText(i));
    info->qualifiers = sk_POLICYQUALINFO_new_null();
    sk_POLICYQUALINFO_push(info->qualifiers, qualifier);
    sk_POLICYINFO_push(value, info);
  }
  return value;
}

POLICY_MAPPINGS *policyMappings() {
  POLICY_MAPPINGS *value = sk_POLICY_MAPPING_new_null();
  for (std::size_t i = 0; i < 2; ++i) {
    POLICY_MAPPING *mapping = POLICY_MAPPING_new();
    mapping->issuerDomainPolicy = identifier(policyText(i));
    mapping->subjectDomainPolicy = identifier(subjectPolicyText(i));
    sk_POLICY_MAPPING_push(value, mapping);
  }
  return value;
}

POLICY_CONSTRAINTS *policyConstraints() {
  POLICY_CONSTRAINTS *value = POLICY_CONSTRAINTS_new();
  value->requireExplicitPolicy = integer(kExplicit);
  value->inhibitPolicyMapping = integer(kInhibit);
  return value;
}

GENERAL_NAMES *subjectAltName(std::size_t size) {
  GENERAL_NAMES *value = sk_GENERAL_NAME_new_null();
  for (std::size_t i = 0; i < size; ++i) sk_GENERAL_NAME_push(value, generalName(GEN_DNS, host(i)));
  return value;
}

CRL_DIST_POINTS *crlDistributionPoints() {
  CRL_DIST_POINTS *value = sk_DIST_POINT_new_null();
  for (std::size_t i = 0; i < 2; ++i) {
    DIST_POINT *point = DIST_POINT_new();
    point->distpoint = fullName(i);
    sk_DIST_POINT_push(value, point);
  }
  return value;
}

ISSUING_DIST_POINT *issuingDistributionPoint() {
  ISSUING_DIST_POINT *value = ISSUING_DIST_POINT_new();
  value->distpoint = fullName(0);
  value->onlyuser = 0xFF;
  value->onlysomereasons = bits({1, 2});
  return value;
}

NAME_CONSTRAINTS *nameConstraints() {
  NAME_CONSTRAINTS *value = NAME_CONSTRAINTS_new();
  value->permittedSubtrees = sk_GENERAL_SUBTREE_new_null();
  value->excludedSubtrees = sk_GENERAL_SUBTREE_new_null();
  for (std::size_t i = 0; i < 4; ++i) {
    GENERAL_SUBTREE *subtree = GENERAL_SUBTREE_new();
    GENERAL_NAME_free(subtree->base);
    subtree->base = generalName(GEN_DNS, host(i));
    sk_GENERAL_SUBTREE_push(i < 2 ? value->permittedSubtrees : value->excludedSubtrees, subtree);
  }
  return value;
}

ASN1_ENUMERATED *reasonCode() {
  ASN1_ENUMERATED *value = ASN1_ENUMERATED_new();
  ASN1_ENUMERATED_set(value, kReason);
  return value;
}

ASN1_GENERALIZEDTIME *invalidityDate() {
  ASN1_GENERALIZEDTIME *value = ASN1_GENERALIZEDTIME_new();
  ASN1_GENERALIZEDTIME_set_string(value, kDate);
  return value;
}

// An encoding that OpenSSL has allocated.
struct Encoding {
  template <class T>
  Encoding(T *value, const ASN1_ITEM *item)
      : size(ASN1_item_i2d(reinterpret_cast<ASN1_VALUE *>(value), &octets, item)) {}
  Encoding(const Encoding &) = delete;
  ~Encoding() { OPENSSL_free(octets); }
  bool is(const Octets &expected) const { return size > 0 && Octets(octets, octets + size) == expected; }

  unsigned char *octets = nullptr;
  int size;
};

template <class Build>
void addRow(const std::string &row, const ASN1_ITEM *item, const Octets &der, Build build) {
  const auto expected = std::make_shared<const Octets>(der);
  const auto decode = [item, octets = expected->data(), size = static_cast<long>(expected->size())] {
    const unsigned char *at = octets;
    return ASN1_item_d2i(nullptr, &at, size, item);
  };
  const auto release = [item](auto *value) { ASN1_item_free(reinterpret_cast<ASN1_VALUE *>(value), item); };
  const auto gives = [=](auto make) {
    auto *value = make();
    const bool isExpected = value != nullptr && Encoding(value, item).is(*expected);
    release(value);
    return isExpected;
  };
  add(
      row, "read", BENCH_LIBRARY, [=] { return gives(decode); },
      [=] {
        auto *value = decode();
        sink(value);
        release(value);
      });
  add(
      row, "write", BENCH_LIBRARY, [=] { return gives(build); },
      [=] {
        auto *value = build();
        const Encoding encoding(value, item);
        sink(encoding.octets);
        release(value);
      });
}

// Types as OpenSSL knows them by their identifiers.
std::size_t readRoots() {
  std::size_t all = 0;
  for (const Octets &root : roots()) {
    const unsigned char *at = root.data();
    X509_EXTENSIONS *extensions = d2i_X509_EXTENSIONS(nullptr, &at, static_cast<long>(root.size()));
    for (int i = 0; i < X509v3_get_ext_count(extensions); ++i) {
      X509_EXTENSION *extension = X509v3_get_ext(extensions, i);
      const ASN1_OBJECT *id = X509_EXTENSION_get_object(extension);
      const unsigned char *octets = OBJ_get0_data(id);
      if (OBJ_length(id) != 3 || octets[0] != 0x55 || octets[1] != 0x1D || !hasRow(octets[2])) continue;
      void *value = X509V3_EXT_d2i(extension);
      sink(value);
      if (value != nullptr) ++all;
      ASN1_item_free(static_cast<ASN1_VALUE *>(value), ASN1_ITEM_ptr(X509V3_EXT_get(extension)->it));
    }
    sk_X509_EXTENSION_pop_free(extensions, X509_EXTENSION_free);
  }
  return all;
}

std::size_t seeCertificate(const Octets &octets) {
  const unsigned char *at = octets.data();
  X509 *certificate = d2i_X509(nullptr, &at, static_cast<long>(octets.size()));
  std::size_t all = 0;
  for (int i = 0; i < X509_get_ext_count(certificate); ++i) {
    X509_EXTENSION *extension = X509_get_ext(certificate, i);
    const ASN1_OBJECT *id = X509_EXTENSION_get_object(extension);
    const unsigned char *arcs = OBJ_get0_data(id);
    if (OBJ_length(id) != 3 || arcs[0] != 0x55 || arcs[1] != 0x1D || !hasRow(arcs[2])) continue;
    void *value = X509V3_EXT_d2i(extension);
    if (value != nullptr) ++all;
    ASN1_item_free(static_cast<ASN1_VALUE *>(value), ASN1_ITEM_ptr(X509V3_EXT_get(extension)->it));
  }
  X509_free(certificate);
  return all;
}
std::size_t seeCrl(const Octets &octets) {
  const unsigned char *at = octets.data();
  X509_CRL *crl = d2i_X509_CRL(nullptr, &at, static_cast<long>(octets.size()));
  STACK_OF(X509_REVOKED) *entries = X509_CRL_get_REVOKED(crl);
  std::size_t count = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(sk_X509_REVOKED_num(entries)); ++i) {
    const X509_REVOKED *entry = sk_X509_REVOKED_value(entries, static_cast<int>(i));
    sink(X509_REVOKED_get0_serialNumber(entry));
    sink(X509_REVOKED_get0_revocationDate(entry));
    sink(X509_REVOKED_get0_extensions(entry));
    ++count;
  }
  X509_CRL_free(crl);
  return count;
}

}  // namespace

void addOpenSsl() {
  addObjects(BENCH_LIBRARY, seeCertificate, seeCrl);
  addRow("BasicConstraints", ASN1_ITEM_rptr(BASIC_CONSTRAINTS), der::basicConstraints(), basicConstraints);
  addRow("KeyUsage", ASN1_ITEM_rptr(ASN1_BIT_STRING), der::keyUsage(), [] { return bits({5, 6}); });
  addRow("SubjectKeyId", ASN1_ITEM_rptr(ASN1_OCTET_STRING), der::subjectKeyId(),
         [] { return string(V_ASN1_OCTET_STRING, kKeyId, sizeof kKeyId); });
  addRow("AuthorityKeyId", ASN1_ITEM_rptr(AUTHORITY_KEYID), der::authorityKeyId(), authorityKeyId);
  addRow("ExtKeyUsage 3", ASN1_ITEM_rptr(EXTENDED_KEY_USAGE), der::extKeyUsage(3), extKeyUsage);
  addRow("CertPolicies 2", ASN1_ITEM_rptr(CERTIFICATEPOLICIES), der::certPolicies(2), certPolicies);
  addRow("PolicyMappings 2", ASN1_ITEM_rptr(POLICY_MAPPINGS), der::policyMappings(2), policyMappings);
  addRow("PolicyConstraints", ASN1_ITEM_rptr(POLICY_CONSTRAINTS), der::policyConstraints(), policyConstraints);
  for (const std::size_t n : kLengths) {
    addRow(sized("SubjectAltName", n), ASN1_ITEM_rptr(GENERAL_NAMES), der::subjectAltName(n),
           [n] { return subjectAltName(n); });
  }
  addRow("SubjectAltName directoryName", ASN1_ITEM_rptr(GENERAL_NAMES), der::directoryName(),
         [] { return names(directoryName()); });
  addRow("CRLDistributionPoints 2", ASN1_ITEM_rptr(CRL_DIST_POINTS), der::crlDistributionPoints(2),
         crlDistributionPoints);
  addRow("IssuingDistributionPoint", ASN1_ITEM_rptr(ISSUING_DIST_POINT), der::issuingDistributionPoint(),
         issuingDistributionPoint);
  addRow("NameConstraints 4", ASN1_ITEM_rptr(NAME_CONSTRAINTS), der::nameConstraints(4), nameConstraints);
  addRow("CRLNumber", ASN1_ITEM_rptr(ASN1_INTEGER), der::crlNumber(), [] { return integer(kCrlNumber); });
  addRow("ReasonCode", ASN1_ITEM_rptr(ASN1_ENUMERATED), der::reasonCode(), reasonCode);
  addRow("InvalidityDate", ASN1_ITEM_rptr(ASN1_GENERALIZEDTIME), der::invalidityDate(), invalidityDate);
  addRoots(BENCH_LIBRARY, readRoots);
}

}  // namespace bench
