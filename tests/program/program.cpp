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

Result run(const std::string &arguments) {
  const std::string err = file("", "stderr");
  const std::string command = quote(KETRA_PROGRAM) + " " + arguments + " 2>" + quote(err);
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
  std::string digits = hex;
  std::erase(digits, ' ');
  std::string out;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    out += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return out;
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

std::string tlv(int tag, const std::string &content) {
  std::string length;
  for (std::size_t rest = content.size(); rest > 0; rest >>= 8) length.insert(length.begin(), static_cast<char>(rest));
  if (content.size() < 0x80) length = static_cast<char>(content.size());
  if (content.size() >= 0x80) length.insert(length.begin(), static_cast<char>(0x80 | length.size()));
  return static_cast<char>(tag) + length + content;
}

std::string certificate(const std::string &objid, const std::string &value) {
  const std::string algorithm = octets("300306012a"), empty = octets("3000"), signature = octets("030100");
  const std::string time = tlv(0x17, "260101000000Z");
  const std::string extension = tlv(0x30, tlv(0x06, objid) + tlv(0x04, value));
  const std::string signedPart = octets("a003020102020101") + algorithm + empty + tlv(0x30, time + time) + empty +
                                 tlv(0x30, algorithm + signature) + tlv(0xA3, tlv(0x30, extension));
  return tlv(0x30, tlv(0x30, signedPart) + algorithm + signature);
}

const Json &extension(const Json &object, const std::string &identifier) {
  for (const Json &extension : object.at("extensions")) {
    if (extension.value("identifier", "") == identifier) return extension;
  }
  static const Json kNone;
  return kNone;
}

void expectShown(const Shown &shown) {
  SCOPED_TRACE(shown.value);
  const std::string path = file(certificate(shown.objid, octets(shown.value)));
  const Result text = run("show " + quote(path));
  const Result json = showJson(path);
  EXPECT_EQ(text.status, shown.status) << text.out;
  EXPECT_EQ(json.status, shown.status);
  const Json read = Json::parse(json.out).at(0).at("extensions").at(0);
  if (shown.status != 0) {
    EXPECT_NE(text.out.find("error 0x"), std::string::npos) << text.out;
    EXPECT_TRUE(read.contains("error")) << json.out;
    return;
  }
  std::string lines;
  for (std::size_t at = 0, end; (end = shown.lines.find('\n', at)) != shown.lines.npos; at = end + 1) {
    lines += "    " + shown.lines.substr(at, end + 1 - at);
  }
  const std::size_t head = text.out.find("\n  ") + 1;
  EXPECT_EQ(text.out.substr(text.out.find('\n', head) + 1), lines);
  EXPECT_EQ(read.at("value"), Json::parse(shown.json));
}

void expectReEncoded(const ReEncoded &row) {
  SCOPED_TRACE(row.value);
  const Result check = run("check " + quote(file(certificate(row.objid, octets(row.value)))));
  EXPECT_EQ(check.status, row.reason.empty() ? 1 : 0) << check.out;
  const std::string verdict = row.reason.empty() ? "rejected" : "re-encoded: " + row.reason;
  EXPECT_NE(check.out.find(": " + verdict + "\n"), std::string::npos) << check.out;
}

}  // namespace ketra::test
