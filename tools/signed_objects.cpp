#include "signed_objects.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "escape.hpp"
#include "ketra/contracts/asn1_schema.hpp"

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

    Sequence("CertificationRequest"),
        Component("certificationRequestInfo", "CertificationRequestInfo"),
        Component("signatureAlgorithm", OpenType),
        Component("signature", BitString),

    Sequence("CertificationRequestInfo"),
        Component("version", Integer),
        Component("subject", OpenType),
        Component("subjectPKInfo", OpenType),
        Component("attributes", Context(0), "OpenSet", Optional),

    Sequence("Attribute"),
        Component("type", ObjectIdentifier),
        Component("values", "OpenSet"),

    Sequence("ExtensionRequest"),
        Component("type", ObjectIdentifier),
        Component("values", "ExtensionLists"),
    SetOf("ExtensionLists"),
        Element("OpenList"),

    Sequence("Extension"),
        Component("extnID", ObjectIdentifier),
        Component("critical", Boolean, Optional),
        Component("extnValue", OctetString),

    Choice("Time"),
        Component("utcTime", Octets(0x17)),
        Component("generalTime", Octets(0x18)),

    SequenceOf("OpenList"),
        Element(OpenType),
    SetOf("OpenSet"),
        Element(OpenType),

    // Serial numbers have up to 20 octets (RFC 5280 4.1.2.2): an INTEGER read as octets.
    Type("SerialNumber", "OctetString", Universal(2)),
    Type("OctetString", OctetString),
};
// clang-format on

constexpr auto kRecords = compile(kRows);

constexpr const AsnType *kSignedObject = &kRecords[indexOf(kRows, "SignedObject")];
constexpr const AsnType *kExtension = &kRecords[indexOf(kRows, "Extension")];
constexpr const AsnType *kAttribute = &kRecords[indexOf(kRows, "Attribute")];

}  // namespace

constexpr const AsnType *const kCertificate = &kRecords[indexOf(kRows, "Certificate")];
constexpr const AsnType *const kCertificateList = &kRecords[indexOf(kRows, "CertificateList")];
constexpr const AsnType *const kRevokedCertificate = &kRecords[indexOf(kRows, "RevokedCertificate")];
constexpr const AsnType *const kCertificationRequest = &kRecords[indexOf(kRows, "CertificationRequest")];
constexpr const AsnType *const kExtensionRequest = &kRecords[indexOf(kRows, "ExtensionRequest")];

const char *kindName(Kind kind) {
  switch (kind) {
    case Kind::Certificate: return "certificate";
    case Kind::Crl: return "CRL";
    case Kind::Request: return "certificate request";
    case Kind::Unknown: break;
  }
  return "object";
}

// What is signed begins
//   in a certificate: [0], or INTEGER and three SEQUENCEs (the third is validity),
//   in a request:     INTEGER, two SEQUENCEs and [0], which some leave out,
//   in a CRL:         SEQUENCE, or INTEGER, two SEQUENCEs and a time.
Kind recognise(ketra::View encoding) {
  constexpr uint8_t kNone = 0, kAttributes = 0xA0, kVersion = 0xA0, kInteger = 0x02, kSequence = 0x30;
  const Asn1Reader object(kSignedObject, encoding);
  const auto tag = [&](const char *path) {
    const std::optional<ketra::View> member = object.octets(path);
    return member && !member->empty() ? *member->data() : kNone;
  };
  const uint8_t first = tag("toBeSigned/1");
  if (first == kVersion) return Kind::Certificate;
  if (first == kSequence) return Kind::Crl;
  if (first != kInteger) return Kind::Unknown;
  const uint8_t fourth = object.count("toBeSigned") < 4 ? kNone : tag("toBeSigned/4");
  if (fourth == kSequence) return Kind::Certificate;
  return fourth == kAttributes || fourth == kNone ? Kind::Request : Kind::Crl;
}

ketra::ObjectIdentifier attributeType(ketra::View encoding) { return Asn1Reader(kAttribute, encoding).objid("type"); }

bool isExtensionRequest(const ketra::ObjectIdentifier &type) {
  static const ketra::ObjectIdentifier kTypes[] = {
      {1, 2, 840, 113549, 1, 9, 14},      // RFC 2985 5.4.2
      {1, 3, 6, 1, 4, 1, 311, 2, 1, 14},  // of one maker, before that
  };
  return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
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
