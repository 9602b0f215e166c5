#include "signed_objects.hpp"

#include <algorithm>
#include <string>
#include <string_view>

#include "escape.hpp"
#include "identifier_names.hpp"

namespace tool {
namespace {

using ketra::Field;

class Facts {
 public:
  // A field that is shown: say(field, value) says what.
  template <class T, class Say>
  void show(const char *name, const Field<T> &field, const Say &say) {
    Json &fact = facts_[name];
    const ketra::Item<T> value = field.value();
    if (value) {
      fact = say(*value);
    } else {
      addOdd(name, field.octets(), value.fault());
    }
  }
  template <class T, class Say>
  void show(const char *name, const std::optional<Field<T>> &field, const Say &say) {
    if (field) show(name, *field, say);
  }
  // A field of which only faults are shown.
  template <class T>
  void judge(const char *name, const Field<T> &field) {
    const ketra::Fault fault = ketra::firstFault(field.value());
    if (fault && fault.reason != ketra::Reason::Segmented) addOdd(name, field.octets(), fault);
  }
  template <class T>
  void judge(const char *name, const std::optional<Field<T>> &field) {
    if (field) judge(name, *field);
  }
  void add(const char *name, Json fact) { facts_[name] = std::move(fact); }

  Json take() {
    if (!odd_.empty()) facts_["odd"] = std::move(odd_);
    return std::move(facts_);
  }

 private:
  void addOdd(const char *name, ketra::View octets, const ketra::Fault &fault) {
    Json odd{{"field", name}};
    if (fault.code() == AsnError_Range) {
      odd["remark"] = "well formed, but beyond what can be shown as text";
    } else {
      odd["error"] =
          problem(fault, ketra::FaultPlace{static_cast<std::size_t>(fault.at - octets.begin()), std::string(name)});
    }
    odd["hex"] = hex(octets);
    odd_.push_back(std::move(odd));
  }

  Json facts_ = Json::object();
  Json odd_ = Json::array();
};

Json serialNumber(const ketra::IntegerView &number) { return number.hex(); }
Json name(const ketra::NameView &name) { return escapeDirectoryName(name.text()); }

// In ISO 8601, escaped as it is when it has not the form of RFC 5280 4.1.2.5.
template <class T>
auto timeOf(const Field<T> &field) {
  return [octets = field.octets()](const ketra::EitherTime &time) -> Json {
    ketra::Tlv tlv;
    ketra::Fault fault;
    ketra::detail::readOnly(octets, tlv, fault);
    const std::string_view text = tlv.contents().characters();
    const std::size_t digits = time.isUtcTime ? 12 : 14;
    const bool isPlain = text.size() == digits + 1 && text.back() == 'Z';
    return isPlain ? ketra::timeText(time.time) : escape(text);
  };
}

}  // namespace

std::string kindName(Kind kind) {
  if (kind == Kind::none) return "object";
  return kind == Kind::request ? "certificate request" : std::string(ketra::nameOf(kind));
}

Json factsOf(const ketra::CertificateView &certificate) {
  Facts facts;
  facts.judge("version", certificate.version);
  facts.show("serialNumber", certificate.serialNumber, serialNumber);
  facts.judge("issuerUniqueID", certificate.issuerUniqueID);
  facts.judge("subjectUniqueID", certificate.subjectUniqueID);
  facts.judge("signature", certificate.signatureValue);
  return facts.take();
}

Json factsOf(const ketra::CrlView &crl) {
  Facts facts;
  facts.judge("version", crl.version);
  facts.show("thisUpdate", crl.thisUpdate, timeOf(crl.thisUpdate));
  if (crl.nextUpdate) facts.show("nextUpdate", *crl.nextUpdate, timeOf(*crl.nextUpdate));
  facts.judge("signature", crl.signatureValue);
  if (crl.revokedCertificates && !crl.revokedCertificates->value()) {
    facts.judge("revokedCertificates", crl.revokedCertificates);
  }
  facts.add("revoked", crl.entries().size());
  return facts.take();
}

Json factsOf(const ketra::RevokedCertificateView &entry) {
  Facts facts;
  facts.show("serialNumber", entry.serialNumber, serialNumber);
  facts.show("revocationDate", entry.revocationDate, timeOf(entry.revocationDate));
  return facts.take();
}

Json factsOf(const ketra::RequestView &request) {
  Facts facts;
  facts.judge("version", request.version);
  facts.show("subject", request.subject, name);
  facts.judge("signature", request.signature);
  Json types = Json::array();
  if (request.attributes) {
    const auto attributes = request.attributes->value();
    if (attributes) {
      for (const auto &attribute : *attributes) {
        if (attribute) types.push_back(identifierJson(attribute->type));
      }
    }
  }
  facts.add("attributes", std::move(types));
  return facts.take();
}

bool hasFault(const Json &facts) {
  const auto odd = facts.find("odd");
  if (odd == facts.end()) return false;
  return std::any_of(odd->begin(), odd->end(), [](const Json &field) { return field.contains("error"); });
}

}  // namespace tool
