#include "distribution_points.hpp"

#include <optional>
#include <utility>
#include <variant>

#include "escape.hpp"
#include "general_names.hpp"
#include "out_of_memory.hpp"

namespace tool {
namespace {

Json relativeName(const ketra::RelativeName &name) {
  Json json = Json::object();
  try {
    json["text"] = escapeDirectoryName(name.text());
  } catch (const ketra::Error &error) {
    throwIfOutOfMemory(error);
    json["remark"] = "this name has no text form";
  }
  json["octets"] = hex(name.encode());
  return json;
}

void addName(Json &json, const std::optional<ketra::BasicDistributionPointName<ketra::NameOrError>> &name,
             bool &allRead) {
  if (!name) return;
  if (const auto *full = std::get_if<ketra::TolerantFullName>(&*name)) {
    json["fullName"] = namesJson(full->names, allRead);
  } else {
    json["nameRelativeToCRLIssuer"] = relativeName(std::get<ketra::RelativeName>(*name));
  }
}

void addReasons(Json &json, const char *key, const std::optional<ketra::Reasons> &reasons) {
  if (!reasons) return;
  Json &list = json[key] = Json::array();
  for (const ketra::Reasons::Bit &bit : ketra::Reasons::bits()) {
    if ((*reasons).*bit.member) list.push_back(bit.name);
  }
}

void addFlag(Json &json, const char *key, const std::optional<bool> &flag) {
  if (flag) json[key] = *flag;
}

}  // namespace

Fields fields(const ketra::TolerantCrlDistributionPoints &value) {
  bool allRead = true;
  Json list = Json::array();
  for (const ketra::TolerantDistributionPoint &point : value.points) {
    Json json = Json::object();
    addName(json, point.distributionPoint, allRead);
    addReasons(json, "reasons", point.reasons);
    if (point.cRLIssuer) json["cRLIssuer"] = namesJson(*point.cRLIssuer, allRead);
    list.push_back(std::move(json));
  }
  return {{{"points", std::move(list)}}, allRead};
}

Fields fields(const ketra::TolerantIssuingDistributionPoint &value) {
  bool allRead = true;
  Json json = Json::object();
  addName(json, value.distributionPoint, allRead);
  addFlag(json, "onlyContainsUserCerts", value.onlyContainsUserCerts);
  addFlag(json, "onlyContainsCACerts", value.onlyContainsCACerts);
  addReasons(json, "onlySomeReasons", value.onlySomeReasons);
  addFlag(json, "indirectCRL", value.indirectCRL);
  return {std::move(json), allRead};
}

}  // namespace tool
