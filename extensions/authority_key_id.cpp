// AuthorityKeyIdentifier ::= SEQUENCE {                          RFC 5280 4.2.1.1
//     keyIdentifier              [0] KeyIdentifier OPTIONAL,
//     authorityCertIssuer        [1] GeneralNames OPTIONAL,
//     authorityCertSerialNumber  [2] CertificateSerialNumber OPTIONAL }
//
// The last two come together or not at all.

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kAuthorityKeyId{&X509Objid_AuthorityKeyId, schema::Entry::AuthorityKeyIdentifier, "/"};
constexpr int32_t kNonCritical = 0;
constexpr char kIssuer[] = "authorityCertIssuer";
constexpr char kSerialNumber[] = "authorityCertSerialNumber";
constexpr uint32_t kNumberOctets = 4;  // longer serial numbers stay octets

int32_t getIssuer(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue root, X509GenNamesOpt *issuer) {
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, root, kIssuer, &element, op.err()), "Call AsnGetElement")) return -1;
  issuer->option = element != nullptr ? 1 : 0;
  if (element == nullptr) return 0;
  uint32_t count = 0;
  if (op.failed(AsnCalCountOfSequence(work, root, kIssuer, &count, op.err()), "Call AsnCalCountOfSequence")) return -1;
  if (count == 0) return op.reject(KetraError_GetAuthorityKeyIdIssuer, "Count of SequenceOf = 0");
  const int32_t got = X509MUtilSgetGenNamesBER(pool, work, root, kIssuer, issuer->genNames, op.err());
  return op.failed(got, "Call X509MUtilSgetGenNamesBER") ? -1 : 0;
}

int32_t getSerialNumber(const Operation &op, AsnObject work, AsnValue root, X509CertSerialNumberOpt *serial) {
  AsnOct content{nullptr, 0};
  const int32_t found = AsnCalAddressOfValFld(work, root, kSerialNumber, &content.octets, &content.length, op.err());
  if (op.failed(found, "Call AsnCalAddressOfValFld")) return -1;
  X509CertSerialNumber &value = serial->value;
  if (content.length == ASN_ABSENT_LENGTH) {
    serial->option = 0;
    value.form = 0;
    value.octets = nullptr;
    value.length = 0;
    return 0;
  }
  serial->option = 1;
  value.form = content.length > kNumberOctets ? 1 : 0;
  if (value.form == 1) {
    value.octets = content.octets;
    value.length = content.length;
    return 0;
  }
  const int32_t converted = X509MUtilGetIntFromIntStr(&content, &value.number, op.err());
  return op.failed(converted, "Call X509MUtilGetIntFromIntStr") ? -1 : 0;
}

}  // namespace

int32_t KetraObjectSsetAuthorityKeyId(KetraObject extensions, const KetraAuthorityKeyId *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    const auto &[identifier, issuer, serial] = *value;
    if (op.failed(AsnCheckOctOptBER(&identifier, err), "Call AsnCheckOctOptBER")) return -1;
    const int32_t names = X509MUtilCheckGenNamesOpt(&issuer, err);
    if (op.failed(names, "Call X509MUtilCheckGenNamesOpt")) return names;
    const int32_t number = X509MUtilCheckCertSerialNumberOpt(&serial, err);
    if (op.failed(number, "Call X509MUtilCheckCertSerialNumberOpt")) return number;
    if (issuer.option == serial.option) return 0;
    return op.rejectStructure(KetraError_SetAuthorityKeyIdOpt, "opt", *value, identifier.value.octets,
                              identifier.value.length, identifier.option, issuer.genNames, issuer.option,
                              serial.value.form, serial.option);
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    const auto &[identifier, issuer, serial] = *value;
    if (identifier.option == 1 &&
        op.failed(AsnSetOctDER(work, root, "keyIdentifier", &identifier.value, err), "Call AsnSetOctDER")) {
      return -1;
    }
    if (issuer.option == 1) {
      const int32_t set = X509MUtilSetGenNamesDER(work, root, kIssuer, issuer.genNames, err);
      if (op.failed(set, "Call X509MUtilSetGenNamesDER")) return set;
    }
    const int32_t set = X509MUtilSetCertSerialNumberOpt(work, root, kSerialNumber, &serial, err);
    return op.failed(set, "Call X509MUtilSetCertSerialNumberOptDER") ? set : 0;
  };
  return setFrame(op, extensions, value, kAuthorityKeyId, kNonCritical, check, fill);
}

int32_t KetraObjectSgetAuthorityKeyId(KetraObject extensions, KetraAuthorityKeyId *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, value, kAuthorityKeyId, [&](AsnObject work, AsnValue root) {
    CacheEntry *cached = nullptr;
    AsnMemObject pool = extensions->pool;
    if (const int32_t result = ketraObjectSgetSExt(extensions, CacheKind::AuthorityKeyId, &cached, err); result != 0) {
      return result;
    }
    const int32_t got = AsnMUtilGetOctOptBER(pool, work, root, "keyIdentifier", &cached->keyIdentifier, err);
    if (op.failed(got, "Call AsnMUtilGetOctetOptBER")) return -1;
    value->keyIdentifier = cached->keyIdentifier;
    if (getIssuer(op, pool, work, root, &value->authorityCertIssuer) != 0) return -1;
    return getSerialNumber(op, work, root, &value->authorityCertSerialNumber);
  });
}

int32_t KetraObjectSgetAuthorityKeyIdCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kAuthorityKeyId, [&](AsnObject work, AsnValue root) {
    AsnValue element = nullptr;
    if (op.failed(AsnGetElement(work, root, kIssuer, &element, err), "Call AsnGetElement")) return -1;
    if (element == nullptr) {
      *count = 0;
      return 0;
    }
    return op.failed(AsnCalCountOfSequence(work, root, kIssuer, count, err), "Call AsnCalCountOfSequence") ? -1 : 0;
  });
}
