#include "walk.hpp"

#include <new>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "asn1_reader.hpp"
#include "container.hpp"
#include "escape.hpp"
#include "identifier_names.hpp"
#include "out_of_memory.hpp"

namespace tool {
namespace {

std::string member(const std::string &list, uint32_t number) { return list + "/" + std::to_string(number); }

using Identifiers = std::set<ketra::ObjectIdentifier>;

// `seen` has the identifiers of the extensions before these.
void walkExtensions(const Asn1Reader &reader, const std::string &list, const Place &place, Visitor &visitor,
                    Identifiers &seen) {
  const uint32_t count = reader.count(list);
  for (uint32_t number = 1; number <= count; ++number) {
    Extension extension;
    try {
      extension = readExtension(reader.octets(member(list, number)).value());
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      visitor.unreadableExtension(place, number, error);
      continue;
    }
    extension.isRepeated = !seen.insert(extension.objid).second;
    visitor.extension(place, extension);
  }
}

void walkExtensions(const Asn1Reader &reader, const std::string &list, const Place &place, Visitor &visitor) {
  Identifiers seen;
  walkExtensions(reader, list, place, visitor, seen);
}

std::string serialNumber(const Asn1Reader &reader, const std::string &path) {
  return ketra::SerialNumber::ofContent(reader.octets(path).value()).hex();
}

void walkCertificate(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader certificate(kCertificate, encoding);
  visitor.beginObject(place, {{"serialNumber", serialNumber(certificate, "tbsCertificate/serialNumber")}});
  walkExtensions(certificate, "tbsCertificate/extensions", place, visitor);
  visitor.endObject();
}

void walkEntry(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader entry(kRevokedCertificate, encoding);
  if (entry.count("crlEntryExtensions") == 0) return;
  visitor.beginEntry(place, {{"serialNumber", serialNumber(entry, "userCertificate")},
                             {"revocationDate", timeText(entry, "revocationDate")}});
  walkExtensions(entry, "crlEntryExtensions", place, visitor);
  visitor.endEntry();
}

void walkCrl(Place place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader crl(kCertificateList, encoding);
  const std::string revoked = "tbsCertList/revokedCertificates";
  const uint32_t count = crl.count(revoked);
  Json facts{{"thisUpdate", timeText(crl, "tbsCertList/thisUpdate")}};
  if (std::string next = timeText(crl, "tbsCertList/nextUpdate"); !next.empty()) facts["nextUpdate"] = std::move(next);
  facts["revoked"] = count;
  visitor.beginObject(place, facts);
  walkExtensions(crl, "tbsCertList/crlExtensions", place, visitor);
  for (place.entry = 1; place.entry <= count; ++place.entry) {
    try {
      walkEntry(place, crl.octets(member(revoked, place.entry)).value(), visitor);
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      visitor.unreadable(place, problem(error));
    }
  }
  visitor.endObject();
}

// The text form of a name; null when it has none.
Json nameText(ketra::View encoding) {
  try {
    return escapeDirectoryName(ketra::Name::decode(encoding).text());
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    return nullptr;
  }
}

// Every request for extensions is walked through, although there should be one (RFC 2985 5.4.2).
void walkExtensionRequest(const Place &place, uint32_t number, ketra::View encoding, Visitor &visitor,
                          Identifiers &seen) {
  const Asn1Reader attribute(kExtensionRequest, encoding);
  const uint32_t count = attribute.count("values");
  if (count != 1) {
    visitor.unreadableAttribute(place, number, problem("extensionRequest has " + std::to_string(count) + " values"));
  }
  for (uint32_t value = 1; value <= count; ++value) {
    walkExtensions(attribute, member("values", value), place, visitor, seen);
  }
}

void walkAttributes(const std::vector<ketra::View> &attributes, const Place &place, Visitor &visitor) {
  Identifiers seen;
  uint32_t number = 0;
  for (const ketra::View attribute : attributes) {
    ++number;
    try {
      if (isExtensionRequest(attributeType(attribute))) {
        walkExtensionRequest(place, number, attribute, visitor, seen);
      }
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      visitor.unreadableAttribute(place, number, problem(error));
    }
  }
}

// Of an attribute that is not malformed.
void addType(ketra::View attribute, Json &types) {
  try {
    types.push_back(identifierJson(attributeType(attribute)));
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    // walkAttributes tells.
  }
}

void walkRequest(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader request(kCertificationRequest, encoding);
  std::vector<ketra::View> attributes;
  Json types = Json::array();
  const uint32_t count = request.count("certificationRequestInfo/attributes");
  for (uint32_t number = 1; number <= count; ++number) {
    attributes.push_back(request.octets(member("certificationRequestInfo/attributes", number)).value());
    addType(attributes.back(), types);
  }
  const ketra::View subject = request.octets("certificationRequestInfo/subject").value();
  visitor.beginObject(place, {{"subject", nameText(subject)}, {"attributes", std::move(types)}});
  walkAttributes(attributes, place, visitor);
  visitor.endObject();
}

void walkObject(Place place, const Stretch &stretch, Visitor &visitor) {
  const std::optional<ketra::Octets> encoding = encodingOf(stretch);
  if (!encoding) return visitor.unreadable(place, problem("the PEM block " + stretch.label + " is not base64"));
  try {
    place.kind = stretch.kind == Kind::Unknown ? recognise(*encoding) : stretch.kind;
    switch (place.kind) {
      case Kind::Certificate: return walkCertificate(place, *encoding, visitor);
      case Kind::Crl: return walkCrl(place, *encoding, visitor);
      case Kind::Request: return walkRequest(place, *encoding, visitor);
      case Kind::Unknown:
        return visitor.unreadable(place, problem("neither a certificate nor a CRL nor a certificate request"));
    }
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    visitor.unreadable(place, problem(error));
  }
}

void walkPiece(const Piece &piece, Visitor &visitor) {
  const Place place{.file = *piece.file, .index = piece.index};
  switch (piece.stretch.form) {
    case Stretch::Form::Der:
    case Stretch::Form::Pem: return walkObject(place, piece.stretch, visitor);
    case Stretch::Form::Note: return visitor.note(place.file, piece.stretch.text);
    case Stretch::Form::Fault:
    case Stretch::Form::Nothing: return visitor.unreadable(place, problem(piece.stretch.text));
  }
}

}  // namespace

std::vector<std::string> walk(const Batch &batch, Visitor &visitor) {
  std::vector<std::string> failures;
  for (const Piece &piece : batch.pieces) {
    try {
      walkPiece(piece, visitor);
    } catch (const std::bad_alloc &) {
      visitor.giveUp();
      failures.push_back(*piece.file + " #" + std::to_string(piece.index) + ": out of memory");
    }
  }
  return failures;
}

}  // namespace tool
