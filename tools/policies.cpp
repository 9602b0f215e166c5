#include "policies.hpp"

#include <optional>
#include <string>
#include <utility>

#include "escape.hpp"
#include "identifier_names.hpp"

namespace tool {
namespace {

ketra::PolicyQualifier qualifierOf(const ketra::ObjectIdentifier &id, const std::optional<ketra::View> &value) {
  if (!value) return {id, std::nullopt};
  return {id, value->copy()};
}

constexpr char kMalformed[] = "this qualifier is malformed";

void addNotice(Json &json, const ketra::UserNotice &notice) {
  if (notice.explicitText) json["text"] = escape(*notice.explicitText);
  if (!notice.noticeRef) return;
  Json numbers = Json::array();
  for (const ketra::Integer &number : notice.noticeRef->noticeNumbers) numbers.push_back(number.text());
  json["noticeRef"] = {{"text", escape(notice.noticeRef->organization)}, {"noticeNumbers", std::move(numbers)}};
}

}  // namespace

Json qualifierJson(const Identifier &id, const std::optional<ketra::View> &value) {
  static const Identifier kCps{ketra::qualifier::cps}, kUserNotice{ketra::qualifier::userNotice};
  Json json;
  if (id == kCps) {
    json["kind"] = "cps";
    const std::optional<std::string> uri = qualifierOf(ketra::qualifier::cps, value).cps();
    json[uri ? "text" : "remark"] = uri ? escape(*uri) : kMalformed;
  } else if (id == kUserNotice) {
    json["kind"] = "userNotice";
    const std::optional<ketra::UserNotice> notice = qualifierOf(ketra::qualifier::userNotice, value).notice();
    if (notice) addNotice(json, *notice);
    if (!notice) json["remark"] = kMalformed;
  } else {
    json = {{"kind", "qualifier"}, {"type", id.text()}};
    addIdentifierHex(json, id);
  }
  if (value) json["octets"] = hex(*value);
  return json;
}

Fields fields(const ketra::PolicyConstraints &value) {
  Json json = Json::object();
  if (value.requireExplicitPolicy) json["requireExplicitPolicy"] = *value.requireExplicitPolicy;
  if (value.inhibitPolicyMapping) json["inhibitPolicyMapping"] = *value.inhibitPolicyMapping;
  return {std::move(json)};
}

}  // namespace tool
