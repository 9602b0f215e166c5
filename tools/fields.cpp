#include "fields.hpp"

#include <cstdint>
#include <string_view>
#include <utility>

#include "escape.hpp"
#include "general_names.hpp"
#include "identifier_names.hpp"
#include "policies.hpp"

namespace tool {
namespace {

using ketra::Group;
using ketra::LeafKind;

// Names that are shorter here than in the ASN.1.
std::string keyOf(const char *name) {
  const std::string_view text = name;
  if (text == "policyIdentifier") return "policy";
  if (text == "policyQualifiers") return "qualifiers";
  return std::string(text);
}

Json integerJson(const char *name, ketra::View content) {
  const ketra::IntegerView integer = *ketra::IntegerView::ofContent(content);
  if (name != nullptr && std::string_view(name).ends_with("SerialNumber")) return integer.hex();
  if (const std::optional<int64_t> number = integer.number()) return *number;
  return integer.text();
}

Json leafJson(const char *name, const ketra::Visitor::LeafValue &value) {
  switch (value.kind()) {
    case LeafKind::Boolean: return value.content()[0] != 0;
    case LeafKind::Integer: return integerJson(name, value.content());
    case LeafKind::Objid: return identifierJson(*ketra::ObjectIdentifierView::ofContent(value.content()));
    case LeafKind::Name: return {{"text", escapeDirectoryName(value.text())}, {"octets", hex(value.content())}};
    case LeafKind::GeneralName: {
      const auto kind = static_cast<ketra::NameKind>(value.encoding()[0] & 0x1F);
      return nameJson(ketra::GeneralNameView::of(kind, value.content()));
    }
    case LeafKind::Any: return valueJson(value.content());
    default: return escape(value.text());
  }
}

}  // namespace

void FieldsBuilder::enter(const char *name, const Structure &structure) {
  const Group group = structure.group();
  Open open{name, group, group == Group::List || group == Group::Bits ? Json::array() : Json::object(), {}, {}};
  if (structure.hasText()) open.text = escapeDirectoryName(structure.text());
  open_.push_back(std::move(open));
}

void FieldsBuilder::leave() {
  Open done = std::move(open_.back());
  open_.pop_back();
  if (open_.empty()) return finish(std::move(done));
  if (done.text) {
    Json json{{"text", *done.text}};
    if (done.json.is_object()) json.update(done.json);
    done.json = std::move(json);
  } else if (done.name != nullptr && std::string_view(done.name) == "distributionPoint") {
    return open_.back().json.update(done.json);  // of a point: the name of its name
  } else if (done.group == Group::Is && done.json.size() == 1) {
    Json member = std::move(done.json.begin().value());
    done.json = std::move(member);
  }
  if (done.json.contains("policyQualifierId")) {
    const bool hasValue = done.json.contains("qualifier");
    done.json = qualifierJson(done.json["policyQualifierId"], hasValue ? std::optional(done.content) : std::nullopt);
  }
  put(done.name, std::move(done.json));
}

void FieldsBuilder::leaf(const char *name, const LeafValue &value) {
  if (open_.back().group == Group::Bits) return addBit(name, value);
  Json json = leafJson(name, value);
  if (name != nullptr && std::string_view(name) == "base") {  // of a subtree: its name is all that there mostly is
    open_.back().json.update(json);
  } else {
    put(name, std::move(json));
  }
  open_.back().content = value.content();
  ++open_.back().leaves;
}

void FieldsBuilder::addBit(const char *name, const LeafValue &value) {
  Open &bits = open_.back();
  if (value.kind() == LeafKind::Boolean) {
    if (value.content()[0] != 0) bits.json.push_back(name);
    ++bits.leaves;
    return;
  }
  // The whole string, when it has bits that have no names.
  constexpr std::size_t kFew = 64;
  const ketra::View octets = value.content();
  if (octets.size() * 8 > kFew) return bits.json.push_back("bits " + hex(octets));
  for (std::size_t bit = bits.leaves; bit < octets.size() * 8; ++bit) {
    if ((octets[bit / 8] & (0x80u >> bit % 8)) != 0) bits.json.push_back("bit " + std::to_string(bit));
  }
}

void FieldsBuilder::fault(const char *name, ketra::View octets, const ketra::Fault &fault) {
  constexpr std::size_t kLocated = 100;  // to find a place, the value is gone through once more
  allRead_ = false;
  const bool isLocated = ++faults_ <= kLocated;
  put(name, {{"kind", "unreadable"},
             {"error", problem(fault, isLocated ? locate_(octets_, fault) : std::nullopt)},
             {"octets", hex(octets)}});
}

void FieldsBuilder::put(const char *name, Json value) {
  Json &parent = open_.back().json;
  if (name == nullptr) {
    parent.push_back(std::move(value));
  } else {
    parent[keyOf(name)] = std::move(value);
  }
}

void FieldsBuilder::finish(Open root) {
  result_ = std::move(root.json);
  if (root.group == Group::Bits) result_ = {{"usage", std::move(result_)}};
  if (root.text) result_["text"] = *root.text;
  // CRL numbers may have 20 octets, and are compared by them.
  const bool isNumber = root.group == Group::Is && root.leaves == 1 && result_.begin().key().ends_with("umber");
  if (isNumber) {
    if (!result_.begin().value().is_number()) result_.clear();
    result_["hex"] = (*ketra::IntegerView::ofContent(root.content)).hex();
  }
}

}  // namespace tool
