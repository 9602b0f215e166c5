// What is wrong with a piece of input, ready to be printed.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>

#include "ketra/ketra.hpp"

namespace tool {

using Json = nlohmann::ordered_json;

// {"code", "meaning", "message", "offset", "path"}: the meaning is that of the code, the message says more; the place
// is left out where it is not known, the code where the program itself found the fault.
Json problem(const ketra::Fault &fault, const std::optional<ketra::FaultPlace> &place = std::nullopt);
Json problem(const ketra::Error &error);
Json problem(const std::string &message);

// What kind of fault it is: the same for many.
std::string headline(const Json &problem);

// One line.
void printProblem(std::ostream &out, const Json &problem, const std::string &indent);

}  // namespace tool
