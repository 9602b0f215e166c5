#include "general_names.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "asn1_reader.hpp"
#include "contracts/asn1_schema.hpp"
#include "escape.hpp"
#include "identifier_names.hpp"

namespace tool {
namespace {

ketra::View viewOf(const std::string &text) { return {reinterpret_cast<const uint8_t *>(text.data()), text.size()}; }

// Puts in the text that read() gives, escaped, or the remark when it fails.
template <class Read>
void addText(Json &json, const Read &read, std::string_view remark) {
  try {
    json["text"] = read();
  } catch (const ketra::Error &) {
    json["remark"] = remark;
  }
}

// clang-format off
constexpr ketra::schema::Row kStringRows[] = {
    ketra::schema::Choice("String"),
        ketra::schema::Component("teletexString", ketra::schema::Octets(0x14)),
        ketra::schema::Component("printableString", ketra::schema::Octets(0x13)),
        ketra::schema::Component("bmpString", ketra::schema::Octets(0x1E)),
        ketra::schema::Component("universalString", ketra::schema::Octets(0x1C)),
        ketra::schema::Component("utf8String", ketra::schema::Octets(0x0C)),
        ketra::schema::Component("numericString", ketra::schema::Octets(0x12)),
        ketra::schema::Component("ia5String", ketra::schema::Octets(0x16)),
        ketra::schema::Component("visibleString", ketra::schema::Octets(0x1A)),
};
// clang-format on
constexpr auto kStringRecords = ketra::schema::compile(kStringRows);

// The characters of an encoding of one character string; nothing when it is something else.
std::optional<std::string> stringText(ketra::View encoding) try {
  const Asn1Reader reader(kStringRecords.data(), encoding);
  for (std::size_t i = 1; i < kStringRecords.size(); ++i) {
    const std::optional<ketra::Octets> octets = reader.string(kStringRecords[i].name);
    if (!octets) continue;
    const auto choice = static_cast<uint32_t>(i);
    const bool isWide = choice == X509DirStr_BmpString || choice == X509DirStr_UniversalString;
    return isWide ? ketra::DirectoryString{choice, *octets}.text() : std::string(octets->begin(), octets->end());
  }
  return std::nullopt;
} catch (const ketra::Error &) {
  return std::nullopt;
}

Json directoryString(const ketra::DirectoryString &string) {
  Json json = Json::object();
  addText(
      json, [&] { return escape(string.text()); }, "these octets are no characters");
  json["octets"] = hex(string.octets);
  return json;
}

struct ToJson {
  Json operator()(const ketra::OtherName &name) const {
    Json json{{"kind", "otherName"}};
    json["type"] = name.type.text();
    if (const char *known = identifierName(name.type); known != nullptr) json["typeName"] = known;
    if (!name.value) return json;
    if (const std::optional<std::string> text = stringText(*name.value)) json["text"] = escape(*text);
    json["octets"] = hex(*name.value);
    return json;
  }
  Json operator()(const ketra::Rfc822Name &name) const { return characters("rfc822Name", name.text); }
  Json operator()(const ketra::DnsName &name) const { return characters("dNSName", name.text); }
  Json operator()(const ketra::X400Address &name) const {
    return {{"kind", "x400Address"}, {"octets", hex(name.encoding)}};
  }
  Json operator()(const ketra::DirectoryName &name) const {
    Json json{{"kind", "directoryName"}};
    addText(
        json, [&] { return escapeDirectoryName(name.name.text()); }, "this name has no text form");
    json["octets"] = hex(name.name.encode());
    return json;
  }
  Json operator()(const ketra::EdiPartyName &name) const {
    Json json{{"kind", "ediPartyName"}};
    if (name.nameAssigner) json["nameAssigner"] = directoryString(*name.nameAssigner);
    json["partyName"] = directoryString(name.partyName);
    return json;
  }
  Json operator()(const ketra::Uri &name) const { return characters("uniformResourceIdentifier", name.text); }
  Json operator()(const ketra::IpAddress &name) const {
    Json json{{"kind", "iPAddress"}};
    addText(
        json, [&] { return name.text(); }, std::to_string(name.octets.size()) + " octets are no address");
    json["octets"] = hex(name.octets);
    return json;
  }
  Json operator()(const ketra::RegisteredId &name) const {
    Json json{{"kind", "registeredID"}, {"text", name.id.text()}};
    if (const char *known = identifierName(name.id); known != nullptr) json["typeName"] = known;
    return json;
  }

  static Json characters(const char *kind, const std::string &text) {
    return {{"kind", kind}, {"text", escape(text)}, {"octets", hex(viewOf(text))}};
  }
};

// By the first octets of a name and of how it is written. Values of open types stay as they are.
std::string memberReason(uint8_t before, uint8_t after) {
  constexpr uint8_t kConstructed = 0x20, kX400Address = 0xA3, kDirectoryName = 0xA4, kEdiPartyName = 0xA5;
  if ((before ^ after) == kConstructed || before == kEdiPartyName) return "a string comes in segments";
  const bool hasSet = before == kX400Address || before == kDirectoryName;
  return hasSet ? "the members of a SET are not in the order of DER" : "contents are not DER";
}

}  // namespace

Json nameJson(const ketra::GeneralName &name) { return std::visit(ToJson{}, name); }

Json namesJson(const std::vector<ketra::NameOrError> &names, bool &allRead) {
  constexpr uint32_t kExplained = 100;  // so many bad members of a list come with their trace
  uint32_t badMembers = 0;
  Json list = Json::array();
  for (const ketra::NameOrError &name : names) {
    if (const auto *bad = std::get_if<ketra::UnreadableName>(&name)) {
      allRead = false;
      Json json{{"kind", "unreadable"}};
      if (++badMembers <= kExplained) json["error"] = problem(bad->error);
      json["octets"] = hex(bad->encoding);
      list.push_back(std::move(json));
    } else {
      list.push_back(nameJson(std::get<ketra::GeneralName>(name)));
    }
  }
  return list;
}

std::string namesReason(ketra::View value, ketra::View written) {
  const Asn1Reader before(AsnType_SequenceOfAny, value);
  const Asn1Reader after(AsnType_SequenceOfAny, written);
  const uint32_t count = std::min(before.count("/"), after.count("/"));
  for (uint32_t i = 1; i <= count; ++i) {
    const std::string member = std::to_string(i);
    const ketra::View was = before.octets(member).value();
    const ketra::View is = after.octets(member).value();
    if (!std::ranges::equal(was, is)) return "name " + member + ": " + memberReason(*was.data(), *is.data());
  }
  return "contents are not DER";
}

}  // namespace tool
