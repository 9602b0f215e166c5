#include "name_constraints.hpp"

#include <optional>
#include <utility>
#include <vector>

#include "general_names.hpp"

namespace tool {
namespace {

void addSubtrees(Json &json, const char *key, const std::optional<std::vector<ketra::TolerantGeneralSubtree>> &subtrees,
                 bool &allRead) {
  if (!subtrees) return;
  Json &list = json[key] = Json::array();
  for (const ketra::TolerantGeneralSubtree &subtree : *subtrees) {
    Json name = nameJson(subtree.base, allRead);
    if (subtree.minimum) name["minimum"] = *subtree.minimum;
    if (subtree.maximum) name["maximum"] = *subtree.maximum;
    list.push_back(std::move(name));
  }
}

}  // namespace

Fields fields(const ketra::TolerantNameConstraints &value) {
  bool allRead = true;
  Json json = Json::object();
  addSubtrees(json, "permittedSubtrees", value.permittedSubtrees, allRead);
  addSubtrees(json, "excludedSubtrees", value.excludedSubtrees, allRead);
  return {std::move(json), allRead};
}

}  // namespace tool
