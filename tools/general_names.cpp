#include "general_names.hpp"

#include <string>

#include "escape.hpp"
#include "identifier_names.hpp"
#include "ketra/asn1/writer.hpp"
#include "ketra/names/identifiers.hpp"

namespace tool {
namespace {

using ketra::NameKind;

// A SEQUENCE of which only the contents octets are there.
ketra::Octets sequenceOf(ketra::View contents) {
  ketra::Writer out;
  out.value(0x30, contents);
  return out.take();
}

Json directoryString(const ketra::DirectoryString &string) {
  Json json = Json::object();
  if (string.hasOutside()) {
    json["remark"] = "some octets are not characters of the string's type";
  } else {
    json["text"] = escape(string.utf8());
  }
  json["octets"] = hex(string.octets());
  return json;
}

void addIdentifier(Json &json, const char *key, const ketra::ObjectIdentifierView &id) {
  json[key] = id.text();
  addIdentifierHex(json, id);
  if (const std::string_view known = ketra::oid::name(id); !known.empty()) json["typeName"] = known;
}

Json otherName(const ketra::OtherNameView &name) {
  Json json{{"kind", "otherName"}};
  addIdentifier(json, "type", name.type);
  if (!name.value) return json;
  json.update(valueJson(name.value->encoding()));
  json["kind"] = "otherName";
  return json;
}

// Its strings may come in segments, which only an owning read joins.
Json ediPartyName(ketra::View content) {
  const ketra::Octets sequence = sequenceOf(content);
  const ketra::EdiPartyName name = *ketra::read<ketra::EdiPartyName>(sequence);
  Json json{{"kind", "ediPartyName"}};
  if (name.nameAssigner) json["nameAssigner"] = directoryString(*name.nameAssigner);
  json["partyName"] = directoryString(name.partyName);
  return json;
}

Json ipAddress(ketra::View octets) {
  Json json{{"kind", "iPAddress"}};
  const std::size_t size = octets.size();
  if (size == 4 || size == 8 || size == 16 || size == 32) {
    json["text"] = ketra::GeneralNameView::of(NameKind::iPAddress, octets).text();
  } else {
    json["remark"] = std::to_string(size) + " octets are no address";
  }
  json["octets"] = hex(octets);
  return json;
}

Json characters(const char *kind, ketra::View text) {
  return {{"kind", kind}, {"text", escape(text.characters())}, {"octets", hex(text)}};
}

}  // namespace

Json nameJson(const ketra::GeneralNameView &name) {
  const ketra::View content = name.content();
  switch (name.kind()) {
    case NameKind::otherName: return otherName(*name.otherName());
    case NameKind::rfc822Name: return characters("rfc822Name", content);
    case NameKind::dNSName: return characters("dNSName", content);
    case NameKind::x400Address: {
      const ketra::Octets address = sequenceOf(content);
      return {{"kind", "x400Address"}, {"octets", hex(address)}};
    }
    case NameKind::directoryName:
      return {{"kind", "directoryName"}, {"text", escapeDirectoryName(name.text())}, {"octets", hex(content)}};
    case NameKind::ediPartyName: return ediPartyName(content);
    case NameKind::uniformResourceIdentifier: return characters("uniformResourceIdentifier", content);
    case NameKind::iPAddress: return ipAddress(content);
    case NameKind::registeredID: {
      Json json{{"kind", "registeredID"}};
      addIdentifier(json, "text", *name.registeredID());
      return json;
    }
  }
  return nullptr;
}

Json valueJson(ketra::View encoding) {
  Json json{{"kind", "value"}};
  const ketra::Result<ketra::Text> text = ketra::read<ketra::Text>(encoding);
  if (text && !text->hasOutside()) json["text"] = escape(text->utf8());
  json["octets"] = hex(encoding);
  return json;
}

}  // namespace tool
