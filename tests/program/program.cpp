#include "program.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace ketra::test {
namespace {

// A directory of this process for inputs, gone at its end.
class Directory {
 public:
  Directory() : path_(testing::TempDir() + "ketra-program-" + std::to_string(getpid())) {
    std::filesystem::create_directory(path_);
  }
  ~Directory() { std::filesystem::remove_all(path_); }
  std::string write(const std::string &name, const std::string &content) const {
    std::ofstream(path_ + "/" + name, std::ios::binary) << content;
    return path_ + "/" + name;
  }

 private:
  std::string path_;
};

}  // namespace

std::string sample(const std::string &name) { return KETRA_SAMPLES "/" + name; }

std::string readAll(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string file(const std::string &content, const std::string &name) {
  static const Directory directory;
  return directory.write(name, content);
}

std::string quote(const std::string &argument) { return "'" + argument + "'"; }

Result run(const std::string &arguments, const std::string &before) {
  const std::string err = file("", "stderr");
  const std::string command = before + " " + quote(KETRA_PROGRAM) + " " + arguments + " 2>" + quote(err);
  std::FILE *pipe = popen(command.c_str(), "r");
  Result result;
  char part[4096];
  for (std::size_t n; (n = std::fread(part, 1, sizeof part, pipe)) > 0;) result.out.append(part, n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + status;
  result.err = readAll(err);
  return result;
}

Result showJson(const std::string &path) { return run("show --json " + quote(path)); }

std::string lastLine(const std::string &text) {
  const std::size_t end = text.find_last_not_of('\n');
  return text.substr(text.rfind('\n', end) + 1, end - text.rfind('\n', end));
}

std::string octets(const std::string &hex) {
  const Octets octets = fromHex(hex);
  return {octets.begin(), octets.end()};
}

std::string der(const std::string &name) {
  const std::string out = file("", "der");
  EXPECT_EQ(std::system(("openssl asn1parse -noout -in " + quote(sample(name)) + " -out " + quote(out)).c_str()), 0);
  return readAll(out);
}

std::string toPem(const std::string &label, const std::string &content) {
  const std::string body = file("", "base64");
  const std::string in = file(content, "content");
  EXPECT_EQ(std::system(("openssl base64 -in " + quote(in) + " -out " + quote(body)).c_str()), 0);
  return "-----BEGIN " + label + "-----\n" + readAll(body) + "-----END " + label + "-----\n";
}

std::string patched(const std::string &name, const std::string &from, const std::string &to) {
  std::string content = der(name);
  const std::size_t at = content.find(octets(from));
  EXPECT_NE(at, content.npos) << from;
  EXPECT_EQ(from.size(), to.size());
  if (at != content.npos) content.replace(at, from.size() / 2, octets(to));
  return file(content);
}

std::string certificate(const Octets &objid, const Octets &value, bool isCritical) {
  const Octets algorithm = fromHex("30 03 06 01 2A"), empty = fromHex("30 00"), signature = fromHex("03 01 00");
  const Octets time = fromHex("17 0D 32 36 30 31 30 31 30 30 30 30 30 30 5A");
  const Octets critical = isCritical ? fromHex("01 01 FF") : Octets{};
  const Octets extension = tlv(0x30, tlv(0x06, objid) + critical + tlv(0x04, value));
  const Octets signedPart = fromHex("A0 03 02 01 02 02 01 01") + algorithm + empty + tlv(0x30, time + time) + empty +
                            tlv(0x30, algorithm + signature) + tlv(0xA3, tlv(0x30, extension));
  const Octets whole = tlv(0x30, tlv(0x30, signedPart) + algorithm + signature);
  return {whole.begin(), whole.end()};
}

const Json &extension(const Json &object, const std::string &identifier) {
  for (const Json &extension : object.at("extensions")) {
    if (extension.value("identifier", "") == identifier) return extension;
  }
  static const Json kNone;
  return kNone;
}

}  // namespace ketra::test
