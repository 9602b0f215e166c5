// The program from outside: what it prints and its exit status.
#include <gtest/gtest.h>

#include <string>

#include "program.h"

namespace ketra::test {
namespace {

// An extension of the CA sample as it stands: identifier, critical, extnValue.
const std::string kBasicConstraints = "0603551d130101ff040830060101ff020101";

TEST(Check, Samples) {
  std::string files;
  for (const char *name : {"ca.pem", "end-entity.pem", "crl.pem", "indirect-crl.pem"})
    files += quote(sample(name)) + " ";
  const Result result = run("check " + files);
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(lastLine(result.out).find("2 certificates, 2 CRLs, 37 extensions: "), 0u) << result.out;
  EXPECT_NE(lastLine(result.out).find(" 0 re-encoded, 0 refused, 0 rejected, "), std::string::npos) << result.out;
}

TEST(Check, AroundTheValue) {
  const std::string path = patched("ca.pem", kBasicConstraints, "0603551d13010100040830060101ff020101");
  const Result result = run("check " + quote(path));
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_NE(result.out.find("critical FALSE is written out"), std::string::npos) << result.out;
  EXPECT_NE(lastLine(result.out).find("8 identical, 1 re-encoded, 0 refused, 0 rejected, "), std::string::npos)
      << result.out;
}

// One bad extension hides no other.
TEST(Hostile, BadExtensions) {
  struct Case {
    std::string from, to;
    std::size_t index;
    std::string json, text, checked;
  };
  const Case cases[] = {
      {kBasicConstraints, "0603551d130101ff040830060102ff020101", 0,
       R"({"identifier": "2.5.29.19", "hex": "30060102ff020101"})",
       "\n    error 0x02100028: ", "#1 basicConstraints: rejected\n"},
      {kBasicConstraints, "0503" + kBasicConstraints.substr(4), 0, R"({"number": 1})", "\n  extension 1\n    error 0x",
       "extension 1: rejected\n"},
      // A second policyConstraints.
      {"0603551d36", "0603551d24", 9, R"({"repeated": true})", "policyConstraints (2.5.29.36), REPEATED",
       "the identifier is repeated\n"},
  };
  for (const Case &c : cases) {
    const std::string path = patched("ca.pem", c.from, c.to);
    const Result json = showJson(path), text = run("show " + quote(path)), check = run("check " + quote(path));
    for (const Result *each : {&json, &text, &check}) EXPECT_EQ(each->status, 1) << each->out;
    const Json certificate = Json::parse(json.out).at(0), bad = certificate.at("extensions").at(c.index);
    EXPECT_EQ(certificate["extensions"].size(), 10u);
    EXPECT_EQ(extension(certificate, "2.5.29.15").at("value").at("usage").size(), 2u);
    const Json expected = Json::parse(c.json);
    for (const auto &[key, value] : expected.items()) EXPECT_EQ(bad.at(key), value);
    EXPECT_FALSE(bad.at("error").at("trace").empty());
    EXPECT_NE(text.out.find(c.text), std::string::npos) << text.out;
    EXPECT_NE(check.out.find(c.checked), std::string::npos) << check.out;
    EXPECT_NE(lastLine(check.out).find(", 1 rejected, "), std::string::npos) << check.out;
  }
}

TEST(Hostile, DamagedObjects) {
  const std::string ca = der("ca.pem");
  const std::string pem = readAll(sample("ca.pem"));
  struct Case {
    std::string input, reason;
  };
  const Case cases[] = {
      {"", "neither PEM nor DER"},
      {"nothing of the kind", "neither PEM nor DER"},
      {"0", "the encoding ends early"},
      {ca.substr(0, 100), "the encoding ends early"},
      {ca.substr(0, ca.size() - 1), "the encoding ends early"},
      {octets("3003020101"), "a component is"},
      {octets("30848000000002"), "the encoding ends early"},
      {pem.substr(0, pem.size() / 2), "no matching END line"},
      {"-----BEGIN CERTIFICATE-----\n*\n-----END CERTIFICATE-----\n", "not base64"},
      {"-----BEGIN CERTIFICATE-----\nAAA\n-----END CERTIFICATE-----\n", "not base64"},
      {"-----BEGIN X509 CRL-----\n" + pem.substr(pem.find('\n')), "no matching END line"},
      {toPem("X509 CRL", ca), "a component is"},
      {toPem("CERTIFICATE", ca + "junk"), "octets after the end"},
  };
  for (const auto &[input, reason] : cases) {
    const Result show = showJson(file(input));
    EXPECT_EQ(show.status, 1) << show.out << show.err;
    ASSERT_TRUE(Json::accept(show.out)) << show.out;
    EXPECT_NE(Json::parse(show.out).at(0).at("error").dump().find(reason), std::string::npos) << reason << show.out;
    const Result check = run("check " + quote(file(input)));
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(lastLine(check.out),
              "0 certificates, 0 CRLs, 0 extensions: 0 identical, 0 re-encoded, 0 refused, 0 rejected, 0 unknown");
  }
}

TEST(Hostile, TextCannotForgeLines) {
  const std::string label = "A\x1b[2J\xe2\x80\xae\xff";
  const std::string path = file("-----BEGIN " + label + "-----\n-----END " + label + "-----\n" + der("ca.pem"),
                                "name\nforged: line\xe2\x80\xae");
  for (const char *form : {"show ", "show --json ", "check "}) {
    const Result result = run(form + quote(path));
    EXPECT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(result.out.find("\nforged"), std::string::npos);
    for (const char c : result.out) EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~'));
  }
  const Json objects = Json::parse(showJson(path).out);
  EXPECT_EQ(objects.at(0).at("note"), R"(skipped the PEM block "A\x1b[2J\u{202e}\xff")");
  EXPECT_EQ(objects.at(1).at("kind"), "certificate");
}

TEST(Container, MixturesAndStandardInput) {
  const std::string ca = der("ca.pem");
  const std::string pem = readAll(sample("ca.pem"));
  const std::string trusted = toPem("TRUSTED CERTIFICATE", ca + octets("3000"));
  const std::string mixed =
      file(ca + der("crl.pem") + "\n 0 s:commentary\n" + pem + "0 more\n" + trusted + readAll(sample("crl.pem")) + ca);
  const Result result = run("show --json - < " + quote(mixed));
  EXPECT_EQ(result.status, 0) << result.out;
  std::string kinds;
  for (const Json &object : Json::parse(result.out)) kinds += object.value("kind", "?").substr(0, 2) + " ";
  EXPECT_EQ(kinds, "ce CR ce ce CR ce ");

  std::string windows = "\xef\xbb\xbf";
  for (const char c : pem) windows += c == '\n' ? "\r\n" : std::string(1, c);
  EXPECT_EQ(run("check " + quote(file(windows))).status, 0);

  const Result trailing = run("check " + quote(file(ca + "junk")));
  EXPECT_EQ(trailing.status, 1);
  EXPECT_NE(trailing.out.find("4 octets at the end"), std::string::npos) << trailing.out;
}

TEST(CommandLine, Statuses) {
  EXPECT_EQ(run("--version").status, 0);
  EXPECT_FALSE(run("--version").out.empty());
  EXPECT_EQ(run("--help").status, 0);
  for (const char *wrong : {"", "show", "check", "frobnicate", "show --yaml x", "check --json x"}) {
    EXPECT_EQ(run(wrong).status, 2) << wrong;
  }
  const Result missing = run("show --json /nonexistent " + quote(sample("ca.pem")) + " /");
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(Json::parse(missing.out).size(), 1u);
  EXPECT_NE(missing.err.find("/nonexistent"), std::string::npos);
  EXPECT_EQ(run("show " + quote(sample("ca.pem")) + " >/dev/full").status, 2);
}

TEST(World, CertificatesOfTheSystem) {
  const std::string bundle = "/etc/ssl/certs/ca-certificates.crt";
  const std::string pem = readAll(bundle);
  if (pem.empty()) GTEST_SKIP() << bundle << " is not on this machine";
  std::size_t count = 0;
  for (std::size_t at = 0; (at = pem.find("-----BEGIN CERTIFICATE", at)) != pem.npos; ++at) ++count;
  const Result result = run("check " + bundle);
  EXPECT_EQ(result.status, 0) << result.out;
  EXPECT_EQ(lastLine(result.out).find(std::to_string(count) + " certificates, 0 CRLs, "), 0u) << result.out;
  EXPECT_NE(lastLine(result.out).find(" 0 refused, 0 rejected, "), std::string::npos) << result.out;
}

}  // namespace
}  // namespace ketra::test
