#include "signed_objects.hpp"

#include <algorithm>
#include <string_view>

#include "contracts/asn1_schema.hpp"
#include "escape.hpp"

namespace tool {
namespace {

using namespace ketra::schema;

// What is not looked into is open, or has the kind of its tag where an open type would swallow what follows. Lists
// that can be long have open members, so each is opened alone.
// clang-format off
constexpr Row kRows[] = {
    Sequence("SignedObject"),
        Component("toBeSigned", "OpenList"),
        Component("signatureAlgorithm", OpenType),
        Component("signature", BitString),

    Sequence("Certificate"),
        Component("tbsCertificate", "TBSCertificate"),
        Component("signatureAlgorithm", OpenType),
        Component("signature", BitString),

    Sequence("TBSCertificate"),
        Component("version", Explicit(0), Integer, Optional),
        Component("serialNumber", "SerialNumber"),
        Component("signature", OpenType),
        Component("issuer", OpenType),
        Component("validity", OpenType),
        Component("subject", OpenType),
        Component("subjectPublicKeyInfo", OpenType),
        Component("issuerUniqueID", Context(1), BitString, Optional),
        Component("subjectUniqueID", Context(2), BitString, Optional),
        Component("extensions", Explicit(3), "OpenList", Optional),

    Sequence("CertificateList"),
        Component("tbsCertList", "TBSCertList"),
        Component("signatureAlgorithm", OpenType),
        Component("signature", BitString),

    Sequence("TBSCertList"),
        Component("version", Integer, Optional),
        Component("signature", OpenType),
        Component("issuer", OpenType),
        Component("thisUpdate", "Time"),
        Component("nextUpdate", "Time", Optional),
        Component("revokedCertificates", "OpenList", Optional),
        Component("crlExtensions", Explicit(0), "OpenList", Optional),

    Sequence("RevokedCertificate"),
        Component("userCertificate", "SerialNumber"),
        Component("revocationDate", "Time"),
        Component("crlEntryExtensions", "OpenList", Optional),

    Sequence("Extension"),
        Component("extnID", ObjectIdentifier),
        Component("critical", Boolean, Optional),
        Component("extnValue", OctetString),

    Choice("Time"),
        Component("utcTime", Octets(0x17)),
        Component("generalTime", Octets(0x18)),

    SequenceOf("OpenList"),
        Element(OpenType),

    // Serial numbers have up to 20 octets (RFC 5280 4.1.2.2): an INTEGER read as octets.
    Type("SerialNumber", "OctetString", Universal(2)),
    Type("OctetString", OctetString),
};
// clang-format on

constexpr auto kRecords = compile(kRows);

constexpr const AsnType *kSignedObject = &kRecords[indexOf(kRows, "SignedObject")];
constexpr const AsnType *kExtension = &kRecords[indexOf(kRows, "Extension")];

}  // namespace

constexpr const AsnType *const kCertificate = &kRecords[indexOf(kRows, "Certificate")];
constexpr const AsnType *const kCertificateList = &kRecords[indexOf(kRows, "CertificateList")];
constexpr const AsnType *const kRevokedCertificate = &kRecords[indexOf(kRows, "RevokedCertificate")];

const char *kindName(Kind kind) {
  return kind == Kind::Certificate ? "certificate" : kind == Kind::Crl ? "CRL" : "object";
}

// TBSCertificate begins [0], or INTEGER and three SEQUENCEs (the third is validity); TBSCertList has a time there, or
// begins with a SEQUENCE.
Kind recognise(ketra::View encoding) {
  constexpr uint8_t kVersion = 0xA0, kInteger = 0x02, kSequence = 0x30;
  const Asn1Reader object(kSignedObject, encoding);
  const auto tag = [&](const char *path) {
    const std::optional<ketra::View> member = object.octets(path);
    return member && !member->empty() ? *member->data() : uint8_t{0};
  };
  const uint8_t first = tag("toBeSigned/1");
  if (first == kVersion) return Kind::Certificate;
  if (first == kInteger && tag("toBeSigned/4") == kSequence) return Kind::Certificate;
  return first == kInteger || first == kSequence ? Kind::Crl : Kind::Unknown;
}

Extension readExtension(ketra::View encoding) {
  const Asn1Reader reader(kExtension, encoding);
  return {reader.objid("extnID"), reader.boolean("critical"), reader.string("extnValue").value()};
}

std::string timeText(const Asn1Reader &reader, const std::string &path) {
  std::optional<ketra::Octets> octets = reader.string(path + "/utcTime");
  const bool isUtcTime = octets.has_value();
  if (!isUtcTime) octets = reader.string(path + "/generalTime");
  if (!octets) return "";

  std::string text(octets->begin(), octets->end());
  const std::size_t digits = isUtcTime ? 12 : 14;
  const bool isDigits =
      std::all_of(text.begin(), text.end() - (text.empty() ? 0 : 1), [](char c) { return c >= '0' && c <= '9'; });
  if (text.size() != digits + 1 || text.back() != 'Z' || !isDigits) return escape(text);
  if (isUtcTime) text.insert(0, text[0] >= '5' ? "19" : "20");
  return text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + "T" + text.substr(8, 2) + ":" +
         text.substr(10, 2) + ":" + text.substr(12);
}

}  // namespace tool
