#include "policies.hpp"

#include <string>
#include <utility>

#include "escape.hpp"
#include "ketra/extensions/cert_policies.hpp"

namespace tool {
namespace {

using ketra::Text;
using ketra::TextType;

bool isDisplayText(const Text &text) {  // RFC 5280 4.2.1.4
  for (const TextType type : {TextType::Ia5, TextType::Visible, TextType::Bmp, TextType::Utf8}) {
    if (text.type() == type) return !text.hasOutside();
  }
  return false;
}

// False when it is malformed.
bool addCps(Json &json, ketra::View value) {
  const ketra::Result<Text> uri = ketra::read<Text>(value);
  const bool isRight = uri && uri->type() == TextType::Ia5;
  if (isRight) json["text"] = escape(uri->octets().characters());
  return isRight;
}

bool addNotice(Json &json, ketra::View value) {
  const ketra::Result<ketra::UserNotice> notice = ketra::read<ketra::UserNotice>(value);
  if (!notice) return false;
  if (notice->explicitText) {
    if (!isDisplayText(*notice->explicitText)) return false;
    json["text"] = escape(notice->explicitText->utf8());
  }
  if (!notice->noticeRef) return true;
  const ketra::NoticeReference &reference = *notice->noticeRef;
  if (!isDisplayText(reference.organization)) return false;
  Json numbers = Json::array();
  for (const ketra::Integer &number : reference.noticeNumbers) numbers.push_back(number.text());
  json["noticeRef"] = {{"text", escape(reference.organization.utf8())}, {"noticeNumbers", std::move(numbers)}};
  return true;
}

}  // namespace

Json qualifierJson(const Json &id, const std::optional<ketra::View> &value) {
  static const std::string kCps = ketra::ObjectIdentifier(ketra::qualifier::cps).text();
  static const std::string kUserNotice = ketra::ObjectIdentifier(ketra::qualifier::userNotice).text();
  const auto type = id.at("identifier").get<std::string>();
  Json json, read = Json::object();
  bool isRight = true;
  if (type == kCps) {
    json["kind"] = "cps";
    isRight = value && addCps(read, *value);
  } else if (type == kUserNotice) {
    json["kind"] = "userNotice";
    isRight = value && addNotice(read, *value);
  } else {
    json = {{"kind", "qualifier"}, {"type", type}};
    if (id.contains("identifierHex")) json["identifierHex"] = id["identifierHex"];
  }
  if (isRight) {
    json.update(read);
  } else {
    json["remark"] = "this qualifier is malformed";
  }
  if (value) json["octets"] = hex(*value);
  return json;
}

}  // namespace tool
