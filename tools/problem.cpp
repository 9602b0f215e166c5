#include "problem.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "colour.hpp"

namespace tool {
namespace {

Json problem(const ketra::Fault &fault, const std::string &message) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "0x%08x", static_cast<unsigned>(fault.code()));
  Json json{{"code", digits}};
  if (fault.code() != ketra::FaultCode_Rule) json["meaning"] = fault.meaning();
  json["message"] = message;
  return json;
}

std::string codeText(const Json &problem) {
  if (!problem.contains("code")) return {};
  const auto code = problem["code"].get<std::string>();
  char digits[16];
  std::snprintf(digits, sizeof digits, "0x%08lX", std::strtoul(code.c_str(), nullptr, 16));
  return std::string("error ") + digits + ": ";
}

}  // namespace

Json problem(const ketra::Fault &fault, const std::optional<ketra::FaultPlace> &place) {
  Json json = problem(fault, fault.text());
  if (place) json["offset"] = place->offset;
  if (place && !place->path.empty()) json["path"] = place->path;
  return json;
}

Json problem(const ketra::Error &error) {
  const std::string text = error.what(), message = error.fault().text(), before = " at offset ";
  if (!text.starts_with(message + before)) return problem(error.fault(), text);
  Json json = problem(error.fault(), message);
  const char *const digits = text.c_str() + message.size() + before.size();
  const std::size_t path = text.find('(', message.size()) + 1;
  json.update({{"offset", std::strtoull(digits, nullptr, 10)}, {"path", text.substr(path, text.size() - 1 - path)}});
  return json;
}

Json problem(const std::string &message) { return {{"message", message}}; }

std::string headline(const Json &problem) {
  return codeText(problem) + problem.at(problem.contains("meaning") ? "meaning" : "message").get<std::string>();
}

void printProblem(std::ostream &out, const Json &problem, const std::string &indent) {
  out << indent << Colour::Bad << codeText(problem) << problem.at("message").get<std::string>();
  if (problem.contains("offset")) out << " at offset " << problem["offset"];
  if (problem.contains("path")) out << " (" << problem["path"].get<std::string>() << ")";
  out << Colour::None << "\n";
}

}  // namespace tool
