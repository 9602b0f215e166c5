#include "walk.hpp"

#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "container.hpp"

namespace tool {
namespace {

template <class T>
Json problemIn(ketra::View octets, const ketra::Fault &fault) {
  return problem(fault, ketra::placeOf<T>(octets, fault));
}

// Lists of extensions, one after the other, in which no identifier should come twice.
class ExtensionLists {
 public:
  ExtensionLists(const Place &place, Visitor &visitor) : place_(place), visitor_(visitor) {}

  void walk(const ketra::ExtensionsView &extensions) {
    uint32_t number = 0;
    for (const auto &item : extensions) {
      ++number;
      const ketra::Result<ketra::Extension> extension = ketra::own(item);
      if (extension) {
        visitor_.extension(place_, *extension, !seen_.insert(extension->extnID).second);
      } else {
        visitor_.unreadableExtension(place_, number, problemIn<ketra::Extension>(item.octets(), extension.fault()));
      }
    }
  }

 private:
  const Place &place_;
  Visitor &visitor_;
  std::set<ketra::ObjectIdentifier> seen_;
};

void walkCertificate(const Place &place, ketra::View encoding, Visitor &visitor) {
  const auto certificate = ketra::view<ketra::CertificateView>(encoding);
  const ketra::Fault fault = certificate ? certificate->extensions().fault() : certificate.fault();
  if (fault) return visitor.unreadable(place, problemIn<ketra::CertificateView>(encoding, fault));
  visitor.beginObject(place, factsOf(*certificate));
  ExtensionLists(place, visitor).walk(certificate->extensions());
  visitor.endObject();
}

void walkEntry(const Place &place, const ketra::CrlEntry &entry, Visitor &visitor) {
  const ketra::Fault fault = entry ? entry->extensions().fault() : entry.fault();
  if (fault) return visitor.unreadable(place, problemIn<ketra::RevokedCertificateView>(entry.octets(), fault));
  const ketra::ExtensionsView extensions = entry->extensions();
  if (extensions.empty() && entry->serialNumber.value() && entry->revocationDate.value()) return;
  const Json facts = factsOf(*entry);
  if (extensions.empty() && !facts.contains("odd")) return;
  visitor.beginEntry(place, facts);
  ExtensionLists(place, visitor).walk(extensions);
  visitor.endEntry();
}

void walkCrl(Place place, ketra::View encoding, Visitor &visitor) {
  const auto crl = ketra::view<ketra::CrlView>(encoding);
  const ketra::Fault fault = crl ? crl->extensions().fault() : crl.fault();
  if (fault) return visitor.unreadable(place, problemIn<ketra::CrlView>(encoding, fault));
  visitor.beginObject(place, factsOf(*crl));
  ExtensionLists(place, visitor).walk(crl->extensions());
  for (const ketra::CrlEntry &entry : crl->entries()) {
    ++place.entry;
    walkEntry(place, entry, visitor);
  }
  visitor.endObject();
}

// Every request for extensions is walked through, although there should be one (RFC 2985 5.4.2).
void walkAttribute(const Place &place, uint32_t number, const ketra::Item<ketra::AttributeView> &attribute,
                   ExtensionLists &lists, Visitor &visitor) {
  if (!attribute) {
    const Json error = problemIn<ketra::AttributeView>(attribute.octets(), attribute.fault());
    return visitor.unreadableAttribute(place, number, error);
  }
  if (!ketra::isExtensionRequest(attribute->type)) return;
  const std::size_t count = attribute->values.size();
  if (count != 1) {
    visitor.unreadableAttribute(place, number, problem("extensionRequest has " + std::to_string(count) + " values"));
  }
  for (const auto &value : attribute->values) {
    const ketra::ExtensionsView list(value.octets());
    if (list.fault()) {
      const Json error = problemIn<ketra::AttributeView>(attribute.octets(), list.fault());
      return visitor.unreadableAttribute(place, number, error);
    }
    lists.walk(list);
  }
}

void walkRequest(const Place &place, ketra::View encoding, Visitor &visitor) {
  const auto request = ketra::view<ketra::RequestView>(encoding);
  const auto attributes =
      request && request->attributes ? request->attributes->value() : ketra::Item<ketra::Range<ketra::AttributeView>>();
  const ketra::Fault fault = request ? attributes.fault() : request.fault();
  if (fault) return visitor.unreadable(place, problemIn<ketra::RequestView>(encoding, fault));
  visitor.beginObject(place, factsOf(*request));
  ExtensionLists lists(place, visitor);
  uint32_t number = 0;
  for (const auto &attribute : *attributes) walkAttribute(place, ++number, attribute, lists, visitor);
  visitor.endObject();
}

void walkEncoding(Place place, Kind kind, ketra::View encoding, Visitor &visitor) {
  place.kind = kind == Kind::none ? ketra::recognise(encoding) : kind;
  switch (place.kind) {
    case Kind::certificate: return walkCertificate(place, encoding, visitor);
    case Kind::crl: return walkCrl(place, encoding, visitor);
    case Kind::request: return walkRequest(place, encoding, visitor);
    case Kind::none: break;
    default: return visitor.unreadable(place, problem("neither a certificate nor a CRL nor a certificate request"));
  }
  const auto any = ketra::view<ketra::AnyView>(encoding);
  if (!any) return visitor.unreadable(place, problemIn<ketra::AnyView>(encoding, any.fault()));
  visitor.unreadable(place, problem("neither a certificate nor a CRL nor a certificate request"));
}

void walkObject(const Place &place, const Stretch &stretch, Visitor &visitor) {
  if (stretch.form == Stretch::Form::Der) {
    const ketra::View encoding(reinterpret_cast<const uint8_t *>(stretch.text.data()), stretch.text.size());
    return walkEncoding(place, stretch.kind, encoding, visitor);
  }
  const ketra::Result<ketra::Octets> encoding = decodePem(stretch);
  if (!encoding) return visitor.unreadable(place, problem("the PEM block " + quote(stretch.label) + " is not base64"));
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
