// BoringSSL's CBS, used by hand: a reader for each extension, written for it alone. They see the members that a view of
// this library and the floor see; like the floor, they do not look into identifiers.

#include <openssl/bytestring.h>

#include <memory>

#include "../operations.hpp"
#include "../roots.hpp"

namespace bench {
namespace {

constexpr unsigned context(unsigned number) { return CBS_ASN1_CONTEXT_SPECIFIC | number; }
constexpr unsigned constructed(unsigned number) { return context(number) | CBS_ASN1_CONSTRUCTED; }

// What is seen ends in one sum.
uint64_t sum = 0;

bool see(const CBS &octets) {
  sum += reinterpret_cast<uintptr_t>(CBS_data(&octets)) + CBS_len(&octets);
  return true;
}
bool see(CBS *in, unsigned tag) {
  CBS content;
  return CBS_get_asn1(in, &content, tag) && see(content);
}
bool seeOptional(CBS *in, unsigned tag) {
  CBS content;
  int isPresent = 0;
  return CBS_get_optional_asn1(in, &content, &isPresent, tag) && (!isPresent || see(content));
}
bool seeAny(CBS *in) {
  CBS element;
  return CBS_get_any_asn1_element(in, &element, nullptr, nullptr) && see(element);
}
// The contents octets of an INTEGER.
bool seeNumber(CBS content) {
  uint64_t number = 0;
  uint8_t octet = 0;
  if (!CBS_is_unsigned_asn1_integer(&content) || CBS_len(&content) > 8) return false;
  while (CBS_get_u8(&content, &octet)) number = number << 8 | octet;
  sum += number;
  return true;
}
bool seeOptionalNumber(CBS *in, unsigned tag) {
  CBS content;
  int isPresent = 0;
  return CBS_get_optional_asn1(in, &content, &isPresent, tag) && (!isPresent || seeNumber(content));
}
bool seeOptionalFlag(CBS *in, unsigned tag) {
  CBS content;
  int isPresent = 0;
  uint8_t octet = 0;
  if (!CBS_get_optional_asn1(in, &content, &isPresent, tag)) return false;
  if (!isPresent) return true;
  if (!CBS_get_u8(&content, &octet) || CBS_len(&content) != 0) return false;
  sum += octet != 0 ? 1 : 0;
  return true;
}
bool seeBits(const CBS &content, unsigned count) {
  if (!CBS_is_valid_asn1_bitstring(&content)) return false;
  for (unsigned bit = 0; bit < count; ++bit) sum += static_cast<unsigned>(CBS_asn1_bitstring_has_bit(&content, bit));
  return true;
}

bool seeName(CBS *in) {
  CBS rdns, rdn, attribute;
  if (!CBS_get_asn1(in, &rdns, CBS_ASN1_SEQUENCE)) return false;
  while (CBS_len(&rdns) != 0) {
    if (!CBS_get_asn1(&rdns, &rdn, CBS_ASN1_SET)) return false;
    while (CBS_len(&rdn) != 0) {
      const bool isRead = CBS_get_asn1(&rdn, &attribute, CBS_ASN1_SEQUENCE) && see(&attribute, CBS_ASN1_OBJECT) &&
                          seeAny(&attribute) && CBS_len(&attribute) == 0;
      if (!isRead) return false;
    }
  }
  return true;
}
bool seeGeneralName(CBS *in) {
  CBS content;
  unsigned tag = 0;
  if (!CBS_get_any_asn1(in, &content, &tag)) return false;
  const unsigned number = tag & CBS_ASN1_TAG_NUMBER_MASK;
  if ((tag & CBS_ASN1_CLASS_MASK) != CBS_ASN1_CONTEXT_SPECIFIC || number > 8) return false;
  sum += number;
  return tag == constructed(4) ? seeName(&content) && CBS_len(&content) == 0 : see(content);
}
bool seeGeneralNames(CBS names) {
  while (CBS_len(&names) != 0) {
    if (!seeGeneralName(&names)) return false;
  }
  return true;
}
bool seeOptionalGeneralNames(CBS *in, unsigned tag) {
  CBS names;
  int isPresent = 0;
  return CBS_get_optional_asn1(in, &names, &isPresent, tag) && (!isPresent || seeGeneralNames(names));
}
bool seeDistributionPointName(CBS *in) {
  CBS choice, name;
  int isPresent = 0;
  if (!CBS_get_optional_asn1(in, &choice, &isPresent, constructed(0))) return false;
  return !isPresent || (CBS_get_asn1(&choice, &name, constructed(0)) && seeGeneralNames(name) && CBS_len(&choice) == 0);
}
bool seeOptionalReasons(CBS *in, unsigned tag) {
  CBS content;
  int isPresent = 0;
  return CBS_get_optional_asn1(in, &content, &isPresent, tag) && (!isPresent || seeBits(content, 9));
}

bool seeBasicConstraints(CBS in) {
  CBS members;
  int isCa = 0;
  uint64_t length = 0;
  if (!CBS_get_asn1(&in, &members, CBS_ASN1_SEQUENCE) || CBS_len(&in) != 0) return false;
  if (CBS_peek_asn1_tag(&members, CBS_ASN1_BOOLEAN) && !CBS_get_asn1_bool(&members, &isCa)) return false;
  if (CBS_len(&members) != 0 && !CBS_get_asn1_uint64(&members, &length)) return false;
  sum += static_cast<unsigned>(isCa) + length;
  return CBS_len(&members) == 0;
}
bool seeKeyUsage(CBS in) {
  CBS bits;
  return CBS_get_asn1(&in, &bits, CBS_ASN1_BITSTRING) && CBS_len(&in) == 0 && seeBits(bits, 9);
}
bool seeSubjectKeyId(CBS in) { return see(&in, CBS_ASN1_OCTETSTRING) && CBS_len(&in) == 0; }
bool seePolicyConstraints(CBS in) {
  CBS members;
  return CBS_get_asn1(&in, &members, CBS_ASN1_SEQUENCE) && CBS_len(&in) == 0 &&
         seeOptionalNumber(&members, context(0)) && seeOptionalNumber(&members, context(1)) && CBS_len(&members) == 0;
}
bool seeCrlNumber(CBS in) {
  uint64_t number = 0;
  if (!CBS_get_asn1_uint64(&in, &number)) return false;
  sum += number;
  return CBS_len(&in) == 0;
}
bool seeReasonCode(CBS in) {
  CBS content;
  uint8_t reason = 0;
  if (!CBS_get_asn1(&in, &content, CBS_ASN1_ENUMERATED) || CBS_len(&in) != 0) return false;
  if (!CBS_get_u8(&content, &reason) || CBS_len(&content) != 0 || reason > 10 || reason == 7) return false;
  sum += reason;
  return true;
}
// GeneralizedTime of seven pairs of digits, UTCTime of six, and "Z".
bool seeTime(CBS *in) {
  CBS time;
  unsigned pairs[7] = {};
  uint8_t octets[2], z = 0;
  const bool isUtc = CBS_peek_asn1_tag(in, CBS_ASN1_UTCTIME) != 0;
  if (!CBS_get_asn1(in, &time, isUtc ? CBS_ASN1_UTCTIME : CBS_ASN1_GENERALIZEDTIME)) return false;
  for (unsigned *pair = pairs + (isUtc ? 1 : 0); pair != pairs + 7; ++pair) {
    if (!CBS_copy_bytes(&time, octets, 2)) return false;
    const unsigned tens = octets[0] - unsigned{'0'}, ones = octets[1] - unsigned{'0'};
    if (tens > 9 || ones > 9) return false;
    sum += *pair = tens * 10 + ones;
  }
  return CBS_get_u8(&time, &z) && z == 'Z' && CBS_len(&time) == 0 && pairs[2] - 1 < 12 && pairs[3] - 1 < 31 &&
         pairs[4] < 24 && pairs[5] < 60 && pairs[6] < 61;
}
bool seeInvalidityDate(CBS in) { return seeTime(&in) && CBS_len(&in) == 0; }
bool seeExtKeyUsage(CBS in) {
  CBS purposes;
  if (!CBS_get_asn1(&in, &purposes, CBS_ASN1_SEQUENCE) || CBS_len(&in) != 0) return false;
  while (CBS_len(&purposes) != 0) {
    if (!see(&purposes, CBS_ASN1_OBJECT)) return false;
  }
  return true;
}
bool seePolicyMappings(CBS in) {
  CBS mappings, mapping;
  if (!CBS_get_asn1(&in, &mappings, CBS_ASN1_SEQUENCE) || CBS_len(&in) != 0) return false;
  while (CBS_len(&mappings) != 0) {
    const bool isRead = CBS_get_asn1(&mappings, &mapping, CBS_ASN1_SEQUENCE) && see(&mapping, CBS_ASN1_OBJECT) &&
                        see(&mapping, CBS_ASN1_OBJECT) && CBS_len(&mapping) == 0;
    if (!isRead) return false;
  }
  return true;
}
bool seeCertPolicies(CBS in) {
  CBS policies, policy, qualifiers, qualifier;
  if (!CBS_get_asn1(&in, &policies, CBS_ASN1_SEQUENCE) || CBS_len(&in) != 0) return false;
  while (CBS_len(&policies) != 0) {
    if (!CBS_get_asn1(&policies, &policy, CBS_ASN1_SEQUENCE) || !see(&policy, CBS_ASN1_OBJECT)) return false;
    if (CBS_len(&policy) == 0) continue;
    if (!CBS_get_asn1(&policy, &qualifiers, CBS_ASN1_SEQUENCE) || CBS_len(&policy) != 0) return false;
    while (CBS_len(&qualifiers) != 0) {
      const bool isRead = CBS_get_asn1(&qualifiers, &qualifier, CBS_ASN1_SEQUENCE) &&
                          see(&qualifier, CBS_ASN1_OBJECT) && seeAny(&qualifier) && CBS_len(&qualifier) == 0;
      if (!isRead) return false;
    }
  }
  return true;
}
bool seeAuthorityKeyId(CBS in) {
  CBS members;
  return CBS_get_asn1(&in, &members, CBS_ASN1_SEQUENCE) && CBS_len(&in) == 0 && seeOptional(&members, context(0)) &&
         seeOptionalGeneralNames(&members, constructed(1)) && seeOptional(&members, context(2)) &&
         CBS_len(&members) == 0;
}
bool seeSubjectAltName(CBS in) {
  CBS names;
  return CBS_get_asn1(&in, &names, CBS_ASN1_SEQUENCE) && CBS_len(&in) == 0 && seeGeneralNames(names);
}
bool seeCrlDistributionPoints(CBS in) {
  CBS points, point;
  if (!CBS_get_asn1(&in, &points, CBS_ASN1_SEQUENCE) || CBS_len(&in) != 0) return false;
  while (CBS_len(&points) != 0) {
    const bool isRead = CBS_get_asn1(&points, &point, CBS_ASN1_SEQUENCE) && seeDistributionPointName(&point) &&
                        seeOptionalReasons(&point, context(1)) && seeOptionalGeneralNames(&point, constructed(2)) &&
                        CBS_len(&point) == 0;
    if (!isRead) return false;
  }
  return true;
}
bool seeIssuingDistributionPoint(CBS in) {
  CBS members;
  return CBS_get_asn1(&in, &members, CBS_ASN1_SEQUENCE) && CBS_len(&in) == 0 && seeDistributionPointName(&members) &&
         seeOptionalFlag(&members, context(1)) && seeOptionalFlag(&members, context(2)) &&
         seeOptionalReasons(&members, context(3)) && seeOptionalFlag(&members, context(4)) && CBS_len(&members) == 0;
}
bool seeOptionalSubtrees(CBS *in, unsigned tag) {
  CBS subtrees, subtree;
  int isPresent = 0;
  if (!CBS_get_optional_asn1(in, &subtrees, &isPresent, tag)) return false;
  while (isPresent && CBS_len(&subtrees) != 0) {
    const bool isRead = CBS_get_asn1(&subtrees, &subtree, CBS_ASN1_SEQUENCE) && seeGeneralName(&subtree) &&
                        seeOptionalNumber(&subtree, context(0)) && seeOptionalNumber(&subtree, context(1)) &&
                        CBS_len(&subtree) == 0;
    if (!isRead) return false;
  }
  return true;
}
bool seeNameConstraints(CBS in) {
  CBS members;
  return CBS_get_asn1(&in, &members, CBS_ASN1_SEQUENCE) && CBS_len(&in) == 0 &&
         seeOptionalSubtrees(&members, constructed(0)) && seeOptionalSubtrees(&members, constructed(1)) &&
         CBS_len(&members) == 0;
}

template <class See>
void addRow(const std::string &row, const Octets &der, See seeAll) {
  const auto octets = std::make_shared<const Octets>(der);
  const auto isSeen = [octets, seeAll] {
    CBS in;
    CBS_init(&in, octets->data(), octets->size());
    return seeAll(in);
  };
  add(row, "read", "CBS", isSeen, [isSeen] {
    benchmark::DoNotOptimize(isSeen());
    benchmark::DoNotOptimize(sum);
  });
}

bool seeAlgorithm(CBS *in) {
  CBS members;
  return CBS_get_asn1(in, &members, CBS_ASN1_SEQUENCE) && see(&members, CBS_ASN1_OBJECT) &&
         (CBS_len(&members) == 0 || seeAny(&members)) && CBS_len(&members) == 0;
}
bool seeExtensionOfRow(uint8_t id, const CBS &value) {
  switch (id) {
    case 14: return seeSubjectKeyId(value);
    case 15: return seeKeyUsage(value);
    case 17: return seeSubjectAltName(value);
    case 19: return seeBasicConstraints(value);
    case 30: return seeNameConstraints(value);
    case 31: return seeCrlDistributionPoints(value);
    case 32: return seeCertPolicies(value);
    case 33: return seePolicyMappings(value);
    case 35: return seeAuthorityKeyId(value);
    case 36: return seePolicyConstraints(value);
    case 37: return seeExtKeyUsage(value);
    default: return false;
  }
}
bool seeExtensions(CBS list, std::size_t &count) {
  CBS extension, id, value;
  while (CBS_len(&list) > 0) {
    const bool isRead = CBS_get_asn1(&list, &extension, CBS_ASN1_SEQUENCE) &&
                        CBS_get_asn1(&extension, &id, CBS_ASN1_OBJECT) &&
                        seeOptionalFlag(&extension, CBS_ASN1_BOOLEAN) &&
                        CBS_get_asn1(&extension, &value, CBS_ASN1_OCTETSTRING) && CBS_len(&extension) == 0;
    if (!isRead) return false;
    const uint8_t *arcs = CBS_data(&id);
    const bool isIdCe = CBS_len(&id) == 3 && arcs[0] == 0x55 && arcs[1] == 0x1D;
    if (isIdCe && seeExtensionOfRow(arcs[2], value)) ++count;
  }
  return true;
}
std::size_t seeCertificate(const Octets &octets) {
  CBS in, certificate, tbs, validity, key, explicitly, list;
  std::size_t count = 0;
  CBS_init(&in, octets.data(), octets.size());
  const bool isRead =
      CBS_get_asn1(&in, &certificate, CBS_ASN1_SEQUENCE) && CBS_get_asn1(&certificate, &tbs, CBS_ASN1_SEQUENCE) &&
      seeOptional(&tbs, constructed(0)) && see(&tbs, CBS_ASN1_INTEGER) && seeAlgorithm(&tbs) && seeName(&tbs) &&
      CBS_get_asn1(&tbs, &validity, CBS_ASN1_SEQUENCE) && seeTime(&validity) && seeTime(&validity) && seeName(&tbs) &&
      CBS_get_asn1(&tbs, &key, CBS_ASN1_SEQUENCE) && seeAlgorithm(&key) && see(&key, CBS_ASN1_BITSTRING) &&
      seeOptional(&tbs, context(1)) && seeOptional(&tbs, context(2)) &&
      CBS_get_asn1(&tbs, &explicitly, constructed(3)) && CBS_get_asn1(&explicitly, &list, CBS_ASN1_SEQUENCE) &&
      seeExtensions(list, count) && seeAlgorithm(&certificate) && see(&certificate, CBS_ASN1_BITSTRING);
  benchmark::DoNotOptimize(sum);
  return isRead ? count : 0;
}
std::size_t seeCrl(const Octets &octets) {
  CBS in, crl, tbs, entries, entry, list;
  std::size_t count = 0, reasons = 0;
  CBS_init(&in, octets.data(), octets.size());
  const bool isRead = CBS_get_asn1(&in, &crl, CBS_ASN1_SEQUENCE) && CBS_get_asn1(&crl, &tbs, CBS_ASN1_SEQUENCE) &&
                      see(&tbs, CBS_ASN1_INTEGER) && seeAlgorithm(&tbs) && seeName(&tbs) && seeTime(&tbs) &&
                      CBS_get_asn1(&tbs, &entries, CBS_ASN1_SEQUENCE);
  while (isRead && CBS_len(&entries) > 0) {
    if (!CBS_get_asn1(&entries, &entry, CBS_ASN1_SEQUENCE) || !see(&entry, CBS_ASN1_INTEGER) || !seeTime(&entry)) break;
    if (CBS_len(&entry) > 0 && !(CBS_get_asn1(&entry, &list, CBS_ASN1_SEQUENCE) && seeExtensions(list, reasons))) break;
    ++count;
  }
  benchmark::DoNotOptimize(sum);
  return count;
}

}  // namespace

void addCbs() {
  addObjects("CBS", seeCertificate, seeCrl);
  addRow("BasicConstraints", der::basicConstraints(), seeBasicConstraints);
  addRow("KeyUsage", der::keyUsage(), seeKeyUsage);
  addRow("SubjectKeyId", der::subjectKeyId(), seeSubjectKeyId);
  addRow("PolicyConstraints", der::policyConstraints(), seePolicyConstraints);
  addRow("CRLNumber", der::crlNumber(), seeCrlNumber);
  addRow("ReasonCode", der::reasonCode(), seeReasonCode);
  addRow("InvalidityDate", der::invalidityDate(), seeInvalidityDate);
  addRow("ExtKeyUsage 3", der::extKeyUsage(3), seeExtKeyUsage);
  addRow("PolicyMappings 2", der::policyMappings(2), seePolicyMappings);
  addRow("CertPolicies 2", der::certPolicies(2), seeCertPolicies);
  addRow("AuthorityKeyId", der::authorityKeyId(), seeAuthorityKeyId);
  addRow("SubjectAltName directoryName", der::directoryName(), seeSubjectAltName);
  for (const std::size_t n : kLengths) addRow(sized("SubjectAltName", n), der::subjectAltName(n), seeSubjectAltName);
  addRow("CRLDistributionPoints 2", der::crlDistributionPoints(2), seeCrlDistributionPoints);
  addRow("IssuingDistributionPoint", der::issuingDistributionPoint(), seeIssuingDistributionPoint);
  addRow("NameConstraints 4", der::nameConstraints(4), seeNameConstraints);
}

}  // namespace bench
