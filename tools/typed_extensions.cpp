#include "typed_extensions.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "asn1_reader.hpp"
#include "contracts/asn1_schema.hpp"
#include "escape.hpp"
#include "general_names.hpp"

namespace tool {
namespace {

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

// X.690 11.1
std::string basicConstraintsReason(ketra::View, ketra::View) { return "a TRUE is not FF"; }

// The interface carries nine bits; X.690 11.2 for the others.
std::string keyUsageReason(ketra::View value, ketra::View written) {
  using namespace ketra::schema;
  static constexpr Row kRows[] = {Type("KeyUsage", BitString)};
  static constexpr auto kRecords = compile(kRows);
  constexpr std::ptrdiff_t kNamed = 9;
  constexpr std::size_t kMost = 1 << 20;
  const Asn1Reader reader(kRecords.data(), value);
  const ketra::Octets bits = reader.bits("/", static_cast<uint32_t>(std::min(value.size() * 8, kMost)));
  const auto beyond = std::find(bits.begin() + std::min(kNamed, std::ssize(bits)), bits.end(), 1);
  if (beyond != bits.end()) return "bit " + std::to_string(beyond - bits.begin()) + " has no name";

  constexpr std::ptrdiff_t kUnusedBits = 2;  // behind tag and length
  const bool isShorter = value.size() != written.size() || value.begin()[kUnusedBits] != written.begin()[kUnusedBits];
  return isShorter ? "trailing zero bits are written out" : "unused bits are set";
}

// Shown: the tolerant form, if there is one.
template <class T, class Shown = T>
TypedExtension row(std::string (*reason)(ketra::View, ketra::View) = nullptr) {
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
  };
}

}  // namespace

const TypedExtension *findTyped(const ketra::ObjectIdentifier &objid) {
  static const TypedExtension kRows[] = {
      row<ketra::BasicConstraints>(basicConstraintsReason),
      row<ketra::KeyUsage>(keyUsageReason),
      row<ketra::SubjectKeyId>(),
      row<ketra::SubjectAltName, ketra::TolerantSubjectAltName>(namesReason),
      row<ketra::IssuerAltName, ketra::TolerantIssuerAltName>(namesReason),
      row<ketra::CertificateIssuer, ketra::TolerantCertificateIssuer>(namesReason),
  };
  for (const TypedExtension &row : kRows) {
    if (std::ranges::equal(objid.arcs(), std::span(row.objid->arcs, row.objid->count))) return &row;
  }
  return nullptr;
}

}  // namespace tool
