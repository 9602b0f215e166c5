#include "typed_extensions.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "distribution_points.hpp"
#include "escape.hpp"
#include "general_names.hpp"
#include "name_constraints.hpp"
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

// Shown: the tolerant form, if there is one.
template <class T, class Shown = T>
TypedExtension row(std::string (*reason)(ketra::View, ketra::View) = nullptr,
                   std::string (*loss)(ketra::View) = nullptr) {
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
      .objid = &Traits::objid(),
      .fields = [](const ketra::Extensions &extensions) { return fields(extensions.get<Shown>().value()); },
      .read = read,
      .reason = reason,
      .loss = loss,
  };
}

}  // namespace

const TypedExtension *findTyped(const ketra::ObjectIdentifier &objid) {
  static const TypedExtension kRows[] = {
      row<ketra::BasicConstraints>(basicConstraintsReason),
      row<ketra::KeyUsage>(keyUsageReason, keyUsageLoss),
      row<ketra::SubjectKeyId>(),
      row<ketra::SubjectAltName, ketra::TolerantSubjectAltName>(namesReason),
      row<ketra::IssuerAltName, ketra::TolerantIssuerAltName>(namesReason),
      row<ketra::CertificateIssuer, ketra::TolerantCertificateIssuer>(namesReason),
      row<ketra::CrlDistributionPoints, ketra::TolerantCrlDistributionPoints>(pointsReason, pointsLoss),
      row<ketra::IssuingDistributionPoint, ketra::TolerantIssuingDistributionPoint>(issuingPointReason,
                                                                                    issuingPointLoss),
      row<ketra::NameConstraints, ketra::TolerantNameConstraints>(nameConstraintsReason),
  };
  for (const TypedExtension &row : kRows) {
    if (std::ranges::equal(objid.arcs(), std::span(row.objid->arcs, row.objid->count))) return &row;
  }
  return nullptr;
}

}  // namespace tool
