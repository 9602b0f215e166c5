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

using Identifiers = std::set<Identifier>;

// `seen` has the identifiers of the extensions before these.
void walkExtensions(const Asn1Reader &reader, const std::string &list, const Place &place, Visitor &visitor,
                    Identifiers &seen) {
  const uint32_t count = reader.count(list);
  for (uint32_t number = 1; number <= count; ++number) {
    Extension extension;
    try {
      extension = readExtension(reader.octets(memberPath(list, number)).value());
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

// The list in a field of the type, if it is there.
std::optional<Asn1Reader> listIn(const AsnType *type, const std::optional<ketra::View> &field) {
  if (!field) return std::nullopt;
  return std::optional<Asn1Reader>(std::in_place, type, *field);
}

void walkExtensions(const std::optional<Asn1Reader> &extensions, const Place &place, Visitor &visitor) {
  if (extensions) walkExtensions(*extensions, "/", place, visitor);
}

void walkCertificate(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Outline certificate = Outline::ofSigned(Kind::Certificate, encoding);
  const std::optional<Asn1Reader> extensions = listIn(kTbsExtensions, certificate.octets("extensions"));
  visitor.beginObject(place, certificate.facts());
  walkExtensions(extensions, place, visitor);
  visitor.endObject();
}

void walkEntry(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Outline entry = Outline::ofEntry(encoding);
  const std::optional<Asn1Reader> extensions = listIn(kOpenList, entry.octets("crlEntryExtensions"));
  const Json facts = entry.facts();
  if ((!extensions || extensions->count("/") == 0) && !facts.contains("odd")) return;
  visitor.beginEntry(place, facts);
  walkExtensions(extensions, place, visitor);
  visitor.endEntry();
}

// A list that cannot be read is odd, and hides no extension of the CRL.
std::optional<Asn1Reader> revokedIn(const Outline &crl, Json &facts) {
  constexpr char kRevoked[] = "revokedCertificates";
  try {
    return listIn(kOpenList, crl.octets(kRevoked));
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    addOdd(facts, kRevoked, crl.octets(kRevoked).value(), error);
    return std::nullopt;
  }
}

void walkCrl(Place place, ketra::View encoding, Visitor &visitor) {
  const Outline crl = Outline::ofSigned(Kind::Crl, encoding);
  const std::optional<Asn1Reader> extensions = listIn(kCrlExtensions, crl.octets("crlExtensions"));
  Json facts = crl.facts();
  const std::optional<Asn1Reader> revoked = revokedIn(crl, facts);
  const uint32_t count = revoked ? revoked->count("/") : 0;
  facts["revoked"] = count;
  visitor.beginObject(place, facts);
  walkExtensions(extensions, place, visitor);
  for (place.entry = 1; place.entry <= count; ++place.entry) {
    try {
      walkEntry(place, revoked->octets(memberPath("/", place.entry)).value(), visitor);
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      visitor.unreadable(place, problem(error));
    }
  }
  visitor.endObject();
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
    walkExtensions(attribute, memberPath("values", value), place, visitor, seen);
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
  const Outline request = Outline::ofSigned(Kind::Request, encoding);
  const std::optional<Asn1Reader> list = listIn(kAttributes, request.octets("attributes"));
  std::vector<ketra::View> attributes;
  Json types = Json::array();
  const uint32_t count = list ? list->count("/") : 0;
  for (uint32_t number = 1; number <= count; ++number) {
    attributes.push_back(list->octets(memberPath("/", number)).value());
    addType(attributes.back(), types);
  }
  Json facts = request.facts();
  facts["attributes"] = std::move(types);
  visitor.beginObject(place, facts);
  walkAttributes(attributes, place, visitor);
  visitor.endObject();
}

void walkEncoding(Place place, Kind kind, ketra::View encoding, Visitor &visitor) {
  try {
    place.kind = kind == Kind::Unknown ? recognise(encoding) : kind;
    switch (place.kind) {
      case Kind::Certificate: return walkCertificate(place, encoding, visitor);
      case Kind::Crl: return walkCrl(place, encoding, visitor);
      case Kind::Request: return walkRequest(place, encoding, visitor);
      case Kind::Unknown:
        return visitor.unreadable(place, problem("neither a certificate nor a CRL nor a certificate request"));
    }
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    visitor.unreadable(place, problem(error));
  }
}

void walkObject(const Place &place, const Stretch &stretch, Visitor &visitor) {
  if (stretch.form == Stretch::Form::Der) {
    const ketra::View encoding(reinterpret_cast<const uint8_t *>(stretch.text.data()), stretch.text.size());
    return walkEncoding(place, stretch.kind, encoding, visitor);
  }
  const std::optional<ketra::Octets> encoding = decodePem(stretch);
  if (!encoding) return visitor.unreadable(place, problem("the PEM block " + stretch.label + " is not base64"));
  walkEncoding(place, stretch.kind, *encoding, visitor);
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
