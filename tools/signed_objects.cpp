#include "signed_objects.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "escape.hpp"
#include "ketra/contracts/asn1_schema.hpp"
#include "out_of_memory.hpp"

namespace tool {
namespace {

using namespace ketra::schema;

// Fields are open types, so that each is opened alone; so are the members of lists that can be long.
// clang-format off
constexpr Row kRows[] = {
    Sequence("SignedObject"),
        Component("toBeSigned", "OpenList"),
        Component("signatureAlgorithm", OpenType),
        Component("signature", OpenType),

    Type("TBSExtensions", "OpenList", Explicit(3)),
    Type("CRLExtensions", "OpenList", Explicit(0)),
    Type("Attributes", "OpenSet", Context(0)),

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

    Type("Integer", Integer),
    Type("Version", "Integer", Explicit(0)),
    Type("BitString", BitString),
    Type("IssuerUniqueID", "BitString", Context(1)),
    Type("SubjectUniqueID", "BitString", Context(2)),
};
// clang-format on

constexpr auto kRecords = compile(kRows);

constexpr const AsnType *record(const char *name) { return &kRecords[indexOf(kRows, name)]; }

constexpr const AsnType *kSignedObject = record("SignedObject");
constexpr const AsnType *kExtension = record("Extension");
constexpr const AsnType *kAttribute = record("Attribute");
constexpr const AsnType *kInteger = record("Integer");
constexpr const AsnType *kTime = record("Time");

// Each of these gives what a field says, and throws when it is malformed.
template <std::size_t kIndex>
Json wellFormed(ketra::View encoding) {
  Asn1Reader(&kRecords[kIndex], encoding);
  return nullptr;
}
constexpr auto readVersion = wellFormed<indexOf(kRows, "Version")>;
constexpr auto readInteger = wellFormed<indexOf(kRows, "Integer")>;
constexpr auto readIssuerUniqueId = wellFormed<indexOf(kRows, "IssuerUniqueID")>;
constexpr auto readSubjectUniqueId = wellFormed<indexOf(kRows, "SubjectUniqueID")>;
constexpr auto readBits = wellFormed<indexOf(kRows, "BitString")>;

Json readSerialNumber(ketra::View encoding) {
  return ketra::SerialNumber::ofContent(Asn1Reader(kInteger, encoding).octets("/").value()).hex();
}

Json readName(ketra::View encoding) { return escapeDirectoryName(ketra::Name::decode(encoding).text()); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The decoder judges a GeneralizedTime only: of a UTCTime it gets the date, the time of day and "Z".
void judgeUtcTime(const std::string &text) {
  constexpr std::size_t kMinutes = 10, kSeconds = 12, kOffset = 5;
  const std::size_t digits =
      static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
  const std::string zone = text.substr(digits);
  const bool isOffset = zone.size() == kOffset && (zone[0] == '+' || zone[0] == '-') &&
                        std::all_of(zone.begin() + 1, zone.end(), isDigit);
  if ((digits != kMinutes && digits != kSeconds) || (zone != "Z" && !isOffset))
    fail(AsnError_Time, "malformed UTCTime");
  const std::string full = (text[0] >= '5' ? "19" : "20") + text.substr(0, digits) + "Z";
  ketra::Octets encoding = {0x18, static_cast<uint8_t>(full.size())};
  encoding.insert(encoding.end(), full.begin(), full.end());
  Asn1Reader(kTime, encoding);
}

// In ISO 8601, escaped as it is when it has not the form of RFC 5280 4.1.2.5.
Json readTime(ketra::View encoding) {
  const Asn1Reader reader(kTime, encoding);
  std::optional<ketra::Octets> octets = reader.string("utcTime");
  const bool isUtcTime = octets.has_value();
  if (!isUtcTime) octets = reader.string("generalTime");
  std::string text(octets->begin(), octets->end());
  if (isUtcTime) judgeUtcTime(text);

  const std::size_t digits = isUtcTime ? 12 : 14;
  if (text.size() != digits + 1 || text.back() != 'Z' || !std::all_of(text.begin(), text.end() - 1, isDigit)) {
    return escape(text);
  }
  if (isUtcTime) text.insert(0, text[0] >= '5' ? "19" : "20");
  return text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + "T" + text.substr(8, 2) + ":" +
         text.substr(10, 2) + ":" + text.substr(12);
}

// `octet`: the first of an encoding. Strings can be constructed.
bool hasTag(uint8_t octet, uint8_t tag) {
  constexpr uint8_t kConstructed = 0x20;
  return (octet | kConstructed) == (tag | kConstructed);
}

}  // namespace

constexpr const AsnType *const kTbsExtensions = record("TBSExtensions");
constexpr const AsnType *const kCrlExtensions = record("CRLExtensions");
constexpr const AsnType *const kAttributes = record("Attributes");
constexpr const AsnType *const kOpenList = record("OpenList");
constexpr const AsnType *const kExtensionRequest = record("ExtensionRequest");

struct Outline::Field {
  const char *name;
  uint8_t tag = 0;                      // of a field that can be absent; 0: it cannot
  Json (*read)(ketra::View) = nullptr;  // null: it is not judged
  bool isFact = false;
};

constexpr uint8_t kOptionalInteger = 0x02, kOptionalTime = 0x17, kGeneralTime = 0x18, kOptionalList = 0x30;
constexpr uint8_t kContext0 = 0xA0;
const Outline::Field Outline::kCertificate[] = {
    {"version", kContext0, readVersion},
    {"serialNumber", 0, readSerialNumber, true},
    {"signature"},
    {"issuer"},
    {"validity"},
    {"subject"},
    {"subjectPublicKeyInfo"},
    {"issuerUniqueID", kContext0 + 1, readIssuerUniqueId},
    {"subjectUniqueID", kContext0 + 2, readSubjectUniqueId},
    {"extensions", kContext0 + 3},
};
const Outline::Field Outline::kCrl[] = {
    {"version", kOptionalInteger, readInteger},
    {"signature"},
    {"issuer"},
    {"thisUpdate", 0, readTime, true},
    {"nextUpdate", kOptionalTime, readTime, true},
    {"revokedCertificates", kOptionalList},
    {"crlExtensions", kContext0},
};
const Outline::Field Outline::kRequest[] = {
    {"version", 0, readInteger},
    {"subject", 0, readName, true},
    {"subjectPKInfo"},
    {"attributes", kContext0},
};
const Outline::Field Outline::kEntry[] = {
    {"serialNumber", 0, readSerialNumber, true},
    {"revocationDate", 0, readTime, true},
    {"crlEntryExtensions", kOptionalList},
};

Outline::Outline(const Asn1Reader &reader, const std::string &list, std::span<const Field> fields) : fields_(fields) {
  const uint32_t count = reader.count(list);
  uint32_t number = 1;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const uint8_t tag = fields[i].tag;
    std::optional<ketra::View> octets;
    if (number <= count) octets = reader.octets(memberPath(list, number));
    if (tag == 0 && !octets) fail(AsnError_Component, std::string(fields[i].name) + " is missing");
    if (!octets) continue;
    const uint8_t first = *octets->data();
    if (tag != 0 && !hasTag(first, tag) && (tag != kOptionalTime || !hasTag(first, kGeneralTime))) continue;
    octets_[i] = octets;
    ++number;
  }
  if (number <= count) fail(AsnError_Component, "field " + std::to_string(number) + " is unknown or out of order");
}

Outline Outline::ofSigned(Kind kind, ketra::View encoding) {
  const Asn1Reader reader(kSignedObject, encoding);
  const std::span<const Field> fields = kind == Kind::Crl       ? std::span<const Field>(kCrl)
                                        : kind == Kind::Request ? std::span<const Field>(kRequest)
                                                                : std::span<const Field>(kCertificate);
  Outline outline(reader, "toBeSigned", fields);
  outline.signature_ = reader.octets("signature");
  return outline;
}

Outline Outline::ofEntry(ketra::View encoding) { return {Asn1Reader(kOpenList, encoding), "/", kEntry}; }

std::optional<ketra::View> Outline::octets(std::string_view name) const {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (fields_[i].name == name) return octets_[i];
  }
  return std::nullopt;
}

Json Outline::facts() const {
  Json facts = Json::object();
  Json odd = Json::object();
  const auto read = [&](const Field &field, ketra::View octets) {
    Json fact;
    try {
      fact = field.read(octets);
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      addOdd(odd, field.name, octets, error);
    }
    if (field.isFact) facts[field.name] = std::move(fact);
  };
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (octets_[i] && fields_[i].read != nullptr) read(fields_[i], *octets_[i]);
  }
  if (signature_) read({"signature", 0, readBits}, *signature_);
  facts.update(odd);
  return facts;
}

void addOdd(Json &facts, const char *field, ketra::View octets, const ketra::Error &error) {
  Json odd{{"field", field}};
  if (error.code() == AsnError_Range) {
    odd["remark"] = "well formed, but beyond what can be shown as text";
  } else {
    odd["error"] = problem(error);
  }
  odd["hex"] = hex(octets);
  facts["odd"].push_back(std::move(odd));
}

bool hasFault(const Json &facts) {
  const auto odd = facts.find("odd");
  if (odd == facts.end()) return false;
  return std::any_of(odd->begin(), odd->end(), [](const Json &field) { return field.contains("error"); });
}

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
  constexpr uint8_t kNone = 0, kAttributesTag = 0xA0, kVersion = 0xA0, kInteger = 0x02, kSequence = 0x30;
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
  return fourth == kAttributesTag || fourth == kNone ? Kind::Request : Kind::Crl;
}

Identifier attributeType(ketra::View encoding) { return Asn1Reader(kAttribute, encoding).identifier("type"); }

bool isExtensionRequest(const Identifier &type) {
  static const Identifier kTypes[] = {
      Identifier({1, 2, 840, 113549, 1, 9, 14}),      // RFC 2985 5.4.2
      Identifier({1, 3, 6, 1, 4, 1, 311, 2, 1, 14}),  // of one maker, before that
  };
  return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

Extension readExtension(ketra::View encoding) {
  const Asn1Reader reader(kExtension, encoding);
  return {reader.identifier("extnID"), reader.boolean("critical"), reader.string("extnValue").value()};
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
