// What the tests of the program share: running it, inputs for it, and what it printed.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

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
// `arguments` as the shell reads them.
Result run(const std::string &arguments);
Result showJson(const std::string &path);
std::string lastLine(const std::string &text);

std::string octets(const std::string &hex);  // spaces do not count
// DER of a PEM sample.
std::string der(const std::string &name);
std::string toPem(const std::string &label, const std::string &content);
// A sample in which `from`, which must be there, is replaced by `to` of the same length.
std::string patched(const std::string &name, const std::string &from, const std::string &to);

// Octets with tag and length in front.
std::string tlv(int tag, const std::string &content);
// A certificate with one extension, of the given content of extnID and of extnValue, both in octets.
std::string certificate(const std::string &objid, const std::string &value);

const Json &extension(const Json &object, const std::string &identifier);

// What show makes of a certificate with one extension.
struct Shown {
  std::string objid;  // octets
  std::string value;  // hex
  int status;         // other than 0: the extension has an error, and the rest is not looked at
  std::string lines;  // of the text form, behind the indentation of the value
  std::string json;   // of the value
};
void expectShown(const Shown &shown);

// What check makes of one.
struct ReEncoded {
  std::string objid;   // octets
  std::string value;   // hex
  std::string reason;  // empty: it is rejected
};
void expectReEncoded(const ReEncoded &row);

}  // namespace ketra::test
