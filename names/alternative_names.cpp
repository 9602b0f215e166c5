// SubjectAltName ::= GeneralNames                                RFC 5280 4.2.1.6
// IssuerAltName ::= GeneralNames                                 RFC 5280 4.2.1.7
// CertificateIssuer ::= GeneralNames                             RFC 5280 5.3.3

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr char kWholeValue[] = "";
constexpr char kRoot[] = "/";
constexpr int32_t kCritical = 1;

struct AlternativeNames {
  Extension written;
  Extension read;
  const char *readPath;  // of the list
};

constexpr Extension kSubject{&X509Objid_SubjectAltName, schema::Entry::GeneralNames, kRoot};
constexpr Extension kIssuer{&X509Objid_IssuerAltName, schema::Entry::GeneralNames, kRoot};

constexpr AlternativeNames kSubjectAltName{.written = kSubject, .read = kSubject, .readPath = kWholeValue};
constexpr AlternativeNames kIssuerAltName{.written = kIssuer, .read = kIssuer, .readPath = kWholeValue};
constexpr AlternativeNames kCertIssuer{
    .written = {&X509Objid_CertIssuer, schema::Entry::GeneralNames, nullptr},
    .read = {&X509Objid_CertIssuer, schema::Entry::CertificateIssuer, kRoot},
    .readPath = kRoot,
};

int32_t set(const Operation &op, const AlternativeNames &member, KetraObject extensions, int32_t critical,
            const X509GenNames *value) {
  const auto check = [&] {
    const int32_t checked = X509MUtilCheckGenNames(value->genNames, op.err());
    return op.failed(checked, "Call X509MUtilCheckGenNames") ? -1 : 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    const int32_t written = X509MUtilSetGenNamesDER(work, root, kWholeValue, value->genNames, op.err());
    return op.failed(written, "Call X509MUtilSetGenNamesDER") ? written : 0;
  };
  return setFrame(op, extensions, value, member.written, critical, check, fill);
}

int32_t get(const Operation &op, const AlternativeNames &member, KetraObject extensions, const X509GenNames *value) {
  return getFrame(op, extensions, value, member.read, [&](AsnObject work, AsnValue root) {
    const int32_t read =
        X509MUtilSgetGenNamesBER(extensions->pool, work, root, member.readPath, value->genNames, op.err());
    return op.failed(read, "Call X509MUtilSgetGenNamesBER") ? read : 0;
  });
}

int32_t count(const Operation &op, const AlternativeNames &member, KetraObject extensions, uint32_t *names) {
  return getFrame(op, extensions, names, member.read, [&](AsnObject work, AsnValue root) {
    return op.failed(AsnCalCountOfSequence(work, root, kRoot, names, op.err()), "Call AsnCalCountOfSequence") ? -1 : 0;
  });
}

}  // namespace

int32_t KetraObjectSsetSubjectAltName(KetraObject extensions, int32_t critical, const X509GenNames *value,
                                      AsnErrorBlock *err) {
  return set({__func__, err}, kSubjectAltName, extensions, critical, value);
}

int32_t KetraObjectSgetSubjectAltName(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err) {
  return get({__func__, err}, kSubjectAltName, extensions, value);
}

int32_t KetraObjectSgetSubjectAltNameCalGenName(KetraObject extensions, uint32_t *names, AsnErrorBlock *err) {
  return count({__func__, err}, kSubjectAltName, extensions, names);
}

int32_t KetraObjectSsetIssuerAltName(KetraObject extensions, int32_t critical, const X509GenNames *value,
                                     AsnErrorBlock *err) {
  return set({__func__, err}, kIssuerAltName, extensions, critical, value);
}

int32_t KetraObjectSgetIssuerAltName(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err) {
  return get({__func__, err}, kIssuerAltName, extensions, value);
}

int32_t KetraObjectSgetIssuerAltNameCalGenName(KetraObject extensions, uint32_t *names, AsnErrorBlock *err) {
  return count({__func__, err}, kIssuerAltName, extensions, names);
}

int32_t KetraObjectSsetCertIssuer(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err) {
  return set({__func__, err}, kCertIssuer, extensions, kCritical, value);
}

int32_t KetraObjectSgetCertIssuer(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err) {
  return get({__func__, err}, kCertIssuer, extensions, value);
}

int32_t KetraObjectSgetCertIssuerCalGenName(KetraObject extensions, uint32_t *names, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, names, kCertIssuer.read, [&](AsnObject work, AsnValue root) {
    return countRoot(op, work, root, KetraError_CertIssuerAbsent, "CertIssuer", names);
  });
}
