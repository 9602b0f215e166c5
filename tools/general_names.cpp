#include "general_names.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "escape.hpp"
#include "identifier_lists.hpp"
#include "identifier_names.hpp"
#include "out_of_memory.hpp"

namespace tool {
namespace {

ketra::View viewOf(const std::string &text) { return {reinterpret_cast<const uint8_t *>(text.data()), text.size()}; }

// Puts in the text that read() gives, escaped, or the remark when it fails.
template <class Read>
void addText(Json &json, const Read &read, std::string_view remark) {
  try {
    json["text"] = read();
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    json["remark"] = remark;
  }
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
    if (const char *known = identifierName(Identifier(name.type)); known != nullptr) json["typeName"] = known;
    if (!name.value) return json;
    if (const std::optional<std::string> text = ketra::stringText(*name.value)) json["text"] = escape(*text);
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
    if (const char *known = identifierName(Identifier(name.id)); known != nullptr) json["typeName"] = known;
    return json;
  }

  static Json characters(const char *kind, const std::string &text) {
    return {{"kind", kind}, {"text", escape(text)}, {"octets", hex(viewOf(text))}};
  }
};

}  // namespace

Json nameJson(const ketra::GeneralName &name) { return std::visit(ToJson{}, name); }

Json nameJson(const ketra::NameOrError &name, bool &allRead) {
  const auto *bad = std::get_if<ketra::UnreadableName>(&name);
  if (bad == nullptr) return nameJson(std::get<ketra::GeneralName>(name));
  if (bad->error.code() == AsnError_Range) {
    if (Json json = largeIdentifierName(bad->encoding); !json.is_null()) return json;
  }
  allRead = false;
  return {{"kind", "unreadable"}, {"error", problem(bad->error)}, {"octets", hex(bad->encoding)}};
}

Json namesJson(const std::vector<ketra::NameOrError> &names, bool &allRead) {
  constexpr uint32_t kExplained = 100;  // so many bad members of a list come with their trace
  uint32_t badMembers = 0;
  Json list = Json::array();
  for (const ketra::NameOrError &name : names) {
    list.push_back(nameJson(name, allRead));
    const bool isBad = list.back().contains("error");
    if (isBad && ++badMembers > kExplained) list.back().erase("error");
  }
  return list;
}

}  // namespace tool
