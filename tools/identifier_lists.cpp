#include "identifier_lists.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "asn1_reader.hpp"
#include "escape.hpp"
#include "identifier_names.hpp"
#include "ketra/contracts/asn1_schema.hpp"
#include "out_of_memory.hpp"
#include "policies.hpp"

namespace tool {
namespace {

using namespace ketra::schema;

// clang-format off
constexpr Row kRows[] = {
    Type("Identifier", ObjectIdentifier),
    SequenceOf("Identifiers"),
        Element(ObjectIdentifier),

    SequenceOf("Attributes"),
        Element("Attribute"),
    Sequence("Attribute"),
        Component("type", ObjectIdentifier),
        Component("values", "Values"),
    SetOf("Values"),
        Element(OpenType),

    SequenceOf("Mappings"),
        Element("Mapping"),
    Sequence("Mapping"),
        Component("issuerDomainPolicy", ObjectIdentifier),
        Component("subjectDomainPolicy", ObjectIdentifier),

    SequenceOf("Policies"),
        Element("Policy"),
    Sequence("Policy"),
        Component("policyIdentifier", ObjectIdentifier),
        Component("policyQualifiers", "Qualifiers", Optional),
    SequenceOf("Qualifiers"),
        Element("Qualifier"),
    Sequence("Qualifier"),
        Component("policyQualifierId", ObjectIdentifier),
        Component("qualifier", OpenType, Optional),

    Choice("Name"),
        Component("otherName", Context(0), "OtherName"),
        Component("registeredID", Context(8), ObjectIdentifier),
    Sequence("OtherName"),
        Component("type-id", ObjectIdentifier),
        Component("value", Explicit(0), OpenType, Optional),
};
// clang-format on
constexpr auto kRecords = compile(kRows);
constexpr const AsnType *record(const char *name) { return &kRecords[indexOf(kRows, name)]; }

constexpr const AsnType *kIdentifier = record("Identifier");
constexpr const AsnType *kIdentifiers = record("Identifiers");
constexpr const AsnType *kAttributes = record("Attributes");
constexpr const AsnType *kMappings = record("Mappings");
constexpr const AsnType *kPolicies = record("Policies");
constexpr const AsnType *kName = record("Name");

// member(path) of each member of the list.
template <class Member>
Json listJson(const Asn1Reader &reader, const std::string &list, const Member &member) {
  Json json = Json::array();
  const uint32_t count = reader.count(list);
  for (uint32_t number = 1; number <= count; ++number) json.push_back(member(memberPath(list, number)));
  return json;
}

Json identifierAt(const Asn1Reader &reader, const std::string &path) { return identifierJson(reader.identifier(path)); }

Json valueJson(ketra::View encoding) {
  Json json{{"kind", "value"}};
  if (const std::optional<std::string> text = ketra::stringText(encoding)) json["text"] = escape(*text);
  json["octets"] = hex(encoding);
  return json;
}

}  // namespace

Fields purposeFields(ketra::View value) {
  const Asn1Reader reader(kIdentifiers, value);
  return {{{"purposes", listJson(reader, "/", [&](const std::string &path) { return identifierAt(reader, path); })}}};
}

Fields instructionFields(ketra::View value) {
  return {{{"instruction", identifierAt(Asn1Reader(kIdentifier, value), "/")}}};
}

Fields attributeFields(ketra::View value) {
  const Asn1Reader reader(kAttributes, value);
  Json list = listJson(reader, "/", [&](const std::string &attribute) {
    const auto member = [&](const std::string &path) { return valueJson(reader.octets(path).value()); };
    return Json{{"type", identifierAt(reader, attribute + "/type")},
                {"values", listJson(reader, attribute + "/values", member)}};
  });
  return {{{"attributes", std::move(list)}}};
}

Fields mappingFields(ketra::View value) {
  const Asn1Reader reader(kMappings, value);
  Json list = listJson(reader, "/", [&](const std::string &mapping) {
    return Json{{"issuerDomainPolicy", identifierAt(reader, mapping + "/issuerDomainPolicy")},
                {"subjectDomainPolicy", identifierAt(reader, mapping + "/subjectDomainPolicy")}};
  });
  return {{{"mappings", std::move(list)}}};
}

Fields policyFields(ketra::View value) {
  const Asn1Reader reader(kPolicies, value);
  Json list = listJson(reader, "/", [&](const std::string &policy) {
    Json json{{"policy", identifierAt(reader, policy + "/policyIdentifier")}};
    Json qualifiers = listJson(reader, policy + "/policyQualifiers", [&](const std::string &path) {
      return qualifierJson(reader.identifier(path + "/policyQualifierId"), reader.octets(path + "/qualifier"));
    });
    if (!qualifiers.empty()) json["qualifiers"] = std::move(qualifiers);
    return json;
  });
  return {{{"policies", std::move(list)}}};
}

Json largeIdentifierName(ketra::View encoding) try {
  const Asn1Reader reader(kName, encoding);
  const bool isOtherName = reader.octets("registeredID") == std::nullopt;
  const Identifier identifier = reader.identifier(isOtherName ? "otherName/type-id" : "registeredID");
  if (!identifier.isLarge()) return nullptr;
  Json json{{"kind", isOtherName ? "otherName" : "registeredID"}, {isOtherName ? "type" : "text", identifier.text()}};
  addIdentifierHex(json, identifier);
  if (!isOtherName) return json;
  if (const std::optional<ketra::View> value = reader.octets("otherName/value")) {
    json.update(valueJson(*value));
    json["kind"] = "otherName";
  }
  return json;
} catch (const ketra::Error &error) {
  throwIfOutOfMemory(error);
  return nullptr;
}

}  // namespace tool
