// What a certificate, a CRL (RFC 5280 4.1 and 5.1) and a certificate request (RFC 2986 4) look like from outside, down
// to their extensions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "asn1_reader.hpp"
#include "ketra/face/face.hpp"
#include "problem.hpp"

namespace tool {

enum class Kind { Unknown, Certificate, Crl, Request };

const char *kindName(Kind kind);

// Tells certificates, CRLs and requests apart by the outline of what is signed; throws when it is no signed object at
// all.
Kind recognise(ketra::View encoding);

extern const AsnType *const kTbsExtensions;  // of a certificate, with its tag
extern const AsnType *const kCrlExtensions;  // with its tag
extern const AsnType *const kAttributes;     // of a request, with its tag
extern const AsnType *const kOpenList;
extern const AsnType *const kExtensionRequest;  // that attribute of a request

// The fields of what is signed, or of a CRL entry, found by their order and their tags alone: what is wrong in one of
// them hides no other.
class Outline {
 public:
  // `encoding` must outlive this. Throws when fields are missing, or there are others.
  static Outline ofSigned(Kind kind, ketra::View encoding);
  static Outline ofEntry(ketra::View encoding);

  // The complete encoding; nothing when it is absent.
  std::optional<ketra::View> octets(std::string_view name) const;
  // What tells the object from others, null where it cannot be read. When fields are odd, "odd" is a list of them, each
  // with "field", "hex", and "error", or "remark" when it is well formed.
  Json facts() const;

 private:
  struct Field;
  static constexpr std::size_t kMostFields = 10;
  static const Field kCertificate[], kCrl[], kRequest[], kEntry[];

  Outline(const Asn1Reader &reader, const std::string &list, std::span<const Field> fields);

  std::span<const Field> fields_;
  std::array<std::optional<ketra::View>, kMostFields> octets_;
  std::optional<ketra::View> signature_;
};
void addOdd(Json &facts, const char *field, ketra::View octets, const ketra::Error &error);
// Whether a field is malformed.
bool hasFault(const Json &facts);

// The type of an attribute of a request; throws when the attribute is malformed.
Identifier attributeType(ketra::View encoding);
bool isExtensionRequest(const Identifier &type);

// One extension as it stands in its list.
struct Extension {
  Identifier objid;
  std::optional<bool> critical;  // nothing: left out, so the default FALSE
  ketra::Octets value;           // the content of extnValue
  bool isRepeated = false;       // an extension before it has the same identifier

  bool isCritical() const { return critical.value_or(false); }
};

Extension readExtension(ketra::View encoding);

}  // namespace tool
