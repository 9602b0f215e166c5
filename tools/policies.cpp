#include "policies.hpp"

#include <optional>
#include <string>
#include <utility>

#include "escape.hpp"
#include "identifier_names.hpp"

namespace tool {
namespace {

constexpr char kMalformed[] = "this qualifier is malformed";

void addNotice(Json &json, const ketra::UserNotice &notice) {
  if (notice.explicitText) json["text"] = escape(*notice.explicitText);
  if (!notice.noticeRef) return;
  Json numbers = Json::array();
  for (const ketra::Integer &number : notice.noticeRef->noticeNumbers) numbers.push_back(number.text());
  json["noticeRef"] = {{"text", escape(notice.noticeRef->organization)}, {"noticeNumbers", std::move(numbers)}};
}

Json qualifierJson(const ketra::PolicyQualifier &qualifier) {
  Json json;
  if (qualifier.id == ketra::qualifier::cps) {
    json["kind"] = "cps";
    const std::optional<std::string> uri = qualifier.cps();
    json[uri ? "text" : "remark"] = uri ? escape(*uri) : kMalformed;
  } else if (qualifier.id == ketra::qualifier::userNotice) {
    json["kind"] = "userNotice";
    const std::optional<ketra::UserNotice> notice = qualifier.notice();
    if (notice) addNotice(json, *notice);
    if (!notice) json["remark"] = kMalformed;
  } else {
    json = {{"kind", "qualifier"}, {"type", qualifier.id.text()}};
  }
  if (qualifier.value) json["octets"] = hex(*qualifier.value);
  return json;
}

}  // namespace

Fields fields(const ketra::CertificatePolicies &value) {
  Json list = Json::array();
  for (const ketra::PolicyInformation &policy : value.policies) {
    Json json{{"policy", identifierJson(policy.policy)}};
    for (const ketra::PolicyQualifier &qualifier : policy.qualifiers) {
      json["qualifiers"].push_back(qualifierJson(qualifier));
    }
    list.push_back(std::move(json));
  }
  return {{{"policies", std::move(list)}}};
}

Fields fields(const ketra::PolicyMappings &value) {
  Json list = Json::array();
  for (const ketra::PolicyMapping &mapping : value.mappings) {
    list.push_back({{"issuerDomainPolicy", identifierJson(mapping.issuerDomainPolicy)},
                    {"subjectDomainPolicy", identifierJson(mapping.subjectDomainPolicy)}});
  }
  return {{{"mappings", std::move(list)}}};
}

Fields fields(const ketra::PolicyConstraints &value) {
  Json json = Json::object();
  if (value.requireExplicitPolicy) json["requireExplicitPolicy"] = *value.requireExplicitPolicy;
  if (value.inhibitPolicyMapping) json["inhibitPolicyMapping"] = *value.inhibitPolicyMapping;
  return {std::move(json)};
}

}  // namespace tool
