#include "typed_extensions.hpp"

#include <optional>
#include <utility>
#include <vector>

#include "distribution_points.hpp"
#include "escape.hpp"
#include "general_names.hpp"
#include "identifier_lists.hpp"
#include "name_constraints.hpp"
#include "policies.hpp"
#include "reencoding.hpp"

namespace tool {
namespace {

using tool::fields;  // of families with a file of their own

template <class T>
Json optional(const std::optional<T> &value) {
  return value ? Json(*value) : Json();
}

Fields fields(const ketra::BasicConstraints &value) {
  return {{{"cA", optional(value.cA)}, {"pathLenConstraint", optional(value.pathLenConstraint)}}};
}

Fields fields(const ketra::KeyUsage &value) {
  Json bits = Json::array();
  for (const ketra::KeyUsage::Bit &bit : ketra::KeyUsage::bits()) {
    if (value.*bit.member) bits.push_back(bit.name);
  }
  return {{{"usage", bits}}};
}

Fields fields(const ketra::SubjectKeyId &value) { return {{{"keyIdentifier", hex(value.keyIdentifier)}}}; }

Fields fields(const std::vector<ketra::NameOrError> &names) {
  bool allRead = true;
  Json list = namesJson(names, allRead);
  return {{{"names", std::move(list)}}, allRead};
}
Fields fields(const ketra::TolerantSubjectAltName &value) { return fields(value.names); }
Fields fields(const ketra::TolerantIssuerAltName &value) { return fields(value.names); }
Fields fields(const ketra::TolerantCertificateIssuer &value) { return fields(value.names); }

Fields fields(const ketra::TolerantAuthorityKeyId &value) {
  Fields fields{Json::object()};
  Json &json = fields.json;
  if (value.keyIdentifier) json["keyIdentifier"] = hex(*value.keyIdentifier);
  if (value.authorityCertIssuer) json["authorityCertIssuer"] = namesJson(*value.authorityCertIssuer, fields.allRead);
  if (value.authorityCertSerialNumber) json["authorityCertSerialNumber"] = value.authorityCertSerialNumber->hex();
  return fields;
}

Fields fields(const ketra::PrivateKeyUsagePeriod &value) {
  Json json = Json::object();
  if (value.notBefore) json["notBefore"] = ketra::timeText(*value.notBefore);
  if (value.notAfter) json["notAfter"] = ketra::timeText(*value.notAfter);
  return {std::move(json)};
}

// As a number when it fits 64 bits, and in hex.
Fields numberFields(const char *key, const ketra::Integer &number) {
  Json json = Json::object();
  if (const std::optional<int64_t> small = number.number()) json[key] = *small;
  json["hex"] = number.hex();
  return {std::move(json)};
}
Fields fields(const ketra::CrlNumber &value) { return numberFields("number", value.number); }
Fields fields(const ketra::DeltaCrlIndicator &value) { return numberFields("baseCRLNumber", value.baseCrlNumber); }

Fields fields(const ketra::ReasonCode &value) { return {{{"reason", ketra::nameOf(value)}}}; }
Fields fields(const ketra::InvalidityDate &value) { return {{{"date", ketra::timeText(value.date)}}}; }

// Shown from its octets, which the library judges; arcs beyond 32 bits are not its fault.
template <Fields (*kFields)(ketra::View)>
struct FromOctets {
  template <class T>
  static Fields show(const ketra::Extensions &extensions) {
    try {
      extensions.get<T>();
    } catch (const ketra::Error &error) {
      if (error.code() != AsnError_Range) throw;
    }
    return kFields(extensions.find<T>()->value);
  }
};
template <class Shown>
struct FromValue {
  template <class T>
  static Fields show(const ketra::Extensions &extensions) {
    return fields(extensions.get<Shown>().value());
  }
};

// Show: where the fields come from; the tolerant form, if there is one.
template <class T, class Show = FromValue<T>>
TypedExtension row(std::string (*reason)(ketra::View, ketra::View) = nullptr,
                   std::string (*writtenDefault)(ketra::View) = nullptr, std::string (*loss)(ketra::View) = nullptr) {
  using Traits = ketra::ExtensionTraits<T>;
  const auto read = [](const ketra::Extensions &extensions) -> Writer {
    return [value = extensions.get<T>().value()](ketra::Extensions &to, bool critical) {
      if constexpr (Traits::kCallerSetsCritical) {
        to.set(value, critical);
      } else {
        static_cast<void>(critical);
        to.set(value);
      }
    };
  };
  return {
      .objid = ketra::ObjectIdentifier(Traits::objid()),
      .identifier = Identifier(ketra::ObjectIdentifier(Traits::objid())),
      .fields = &Show::template show<T>,
      .read = read,
      .reason = reason,
      .writtenDefault = writtenDefault,
      .loss = loss,
  };
}

}  // namespace

const TypedExtension *findTyped(const Identifier &identifier) {
  static const TypedExtension kRows[] = {
      row<ketra::BasicConstraints>(basicConstraintsReason, basicConstraintsDefault),
      row<ketra::KeyUsage>(keyUsageReason, nullptr, keyUsageLoss),
      row<ketra::SubjectKeyId>(),
      row<ketra::SubjectAltName, FromValue<ketra::TolerantSubjectAltName>>(namesReason),
      row<ketra::IssuerAltName, FromValue<ketra::TolerantIssuerAltName>>(namesReason),
      row<ketra::CertificateIssuer, FromValue<ketra::TolerantCertificateIssuer>>(namesReason),
      row<ketra::CrlDistributionPoints, FromValue<ketra::TolerantCrlDistributionPoints>>(pointsReason, nullptr,
                                                                                         pointsLoss),
      row<ketra::IssuingDistributionPoint, FromValue<ketra::TolerantIssuingDistributionPoint>>(
          issuingPointReason, issuingPointDefault, issuingPointLoss),
      row<ketra::NameConstraints, FromValue<ketra::TolerantNameConstraints>>(nameConstraintsReason,
                                                                             nameConstraintsDefault),
      row<ketra::AuthorityKeyId, FromValue<ketra::TolerantAuthorityKeyId>>(authorityKeyIdReason),
      row<ketra::CertificatePolicies, FromOctets<policyFields>>(policiesReason),
      row<ketra::PolicyMappings, FromOctets<mappingFields>>(),
      row<ketra::PolicyConstraints>(),
      row<ketra::ExtKeyUsage, FromOctets<purposeFields>>(),
      row<ketra::PrivateKeyUsagePeriod>(timeReason),
      row<ketra::SubjectDirectoryAttributes, FromOctets<attributeFields>>(attributesReason),
      row<ketra::CrlNumber>(),
      row<ketra::DeltaCrlIndicator>(),
      row<ketra::ReasonCode>(),
      row<ketra::HoldInstruction, FromOctets<instructionFields>>(),
      row<ketra::InvalidityDate>(timeReason),
  };
  for (const TypedExtension &row : kRows) {
    if (row.identifier == identifier) return &row;
  }
  return nullptr;
}

}  // namespace tool
