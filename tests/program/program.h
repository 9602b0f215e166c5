// What the tests of the program share: running it, inputs for it, and what it printed.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "support/octets.h"

namespace ketra::test {

using Json = nlohmann::json;

std::string sample(const std::string &name);
std::string readAll(const std::string &path);
// Writes a file into a directory of this process, gone at its end, and returns its path.
std::string file(const std::string &content, const std::string &name = "input");

struct Result {
  int status = -1;
  std::string out;
  std::string err;
};

std::string quote(const std::string &argument);
// `arguments` as the shell reads them; `before`: a command that runs the program, or what limits it.
Result run(const std::string &arguments, const std::string &before = "");
Result showJson(const std::string &path);
std::string lastLine(const std::string &text);

std::string octets(const std::string &hex);
// DER of a PEM sample.
std::string der(const std::string &name);
std::string toPem(const std::string &label, const std::string &content);
// A sample in which `from`, which must be there, is replaced by `to` of the same length.
std::string patched(const std::string &name, const std::string &from, const std::string &to);

// A certificate with one extension, of the given content of extnID and of extnValue.
std::string certificate(const Octets &objid, const Octets &value, bool isCritical = false);

const Json &extension(const Json &object, const std::string &identifier);

}  // namespace ketra::test
