// What is wrong with a piece of input, ready to be printed.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "ketra/face/face.hpp"

namespace tool {

using Json = nlohmann::ordered_json;

// {"code", "trace": [lines]}; the code is left out when the program itself found the fault.
Json problem(const ketra::Error &error);
Json problem(const std::string &text);

// As lines; those behind the first are indented once more.
void printProblem(std::ostream &out, const Json &problem, const std::string &indent);

}  // namespace tool
