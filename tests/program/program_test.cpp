// The program from outside: what it prints and its exit status.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "ketra/ketra.h"
#include "program.h"

namespace ketra::test {
namespace {

// An extension of the CA sample as it stands: identifier, critical, extnValue.
const std::string kBasicConstraints = "0603551d130101ff040830060101ff020101";

TEST(Check, Samples) {
  std::string files;
  for (const char *name : {"ca.pem", "end-entity.pem", "request.pem", "crl.pem", "indirect-crl.pem"})
    files += quote(sample(name)) + " ";
  const Result result = run("check " + files);
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(lastLine(result.out).find("2 certificates, 2 CRLs, 1 requests, 41 extensions: "), 0u) << result.out;
  EXPECT_NE(lastLine(result.out).find(" 0 re-encoded, 0 refused, 0 rejected, "), std::string::npos) << result.out;
}

TEST(Check, AroundTheValue) {
  const std::string path = patched("ca.pem", kBasicConstraints, "0603551d13010100040830060101ff020101");
  const Result result = run("check " + quote(path));
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_NE(result.out.find("critical FALSE is written out"), std::string::npos) << result.out;
  EXPECT_NE(lastLine(result.out).find("9 identical, 1 re-encoded, 0 refused, 0 rejected, "), std::string::npos)
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
    EXPECT_FALSE(bad.at("error").at("message").empty());
    EXPECT_NE(text.out.find(c.text), std::string::npos) << text.out;
    EXPECT_NE(check.out.find(c.checked), std::string::npos) << check.out;
    EXPECT_NE(lastLine(check.out).find(", 1 rejected, "), std::string::npos) << check.out;
  }
}

// Arcs beyond 32 bits in the identifier of an extension; 2^32-1 is the last that is not.
TEST(Extensions, LargeArcs) {
  const std::string cases[][2] = {
      {"908080804F", "2.4294967295\n"},
      {"9080808050", "2.4294967296 (hex 9080808050)\n"},
      {"2A8FFFFFFF7F", "1.2.4294967295\n"},
      {"2A9080808000", "1.2.4294967296 (hex 2a9080808000)\n"},
      {"6983F09DA7EBCFDEE0C7A1A7B2C0948CC8F9D776",
       "2.25.329800735698586629295641978511506172918 (hex 6983f09da7ebcfdee0c7a1a7b2c0948cc8f9d776)\n"},
      {"B3D9B8F99FE8A087CEC080804F", "2.999999999999999999999999999 (hex b3d9b8f99fe8a087cec080804f)\n"},
  };
  for (const auto &[identifier, text] : cases) {
    const std::string path = file(certificate(fromHex(identifier), fromHex("0500")));
    const Result show = run("show " + quote(path)), check = run("check " + quote(path));
    EXPECT_NE(show.out.find("\n  " + text), std::string::npos) << show.out;
    EXPECT_NE(show.out.find("\n    hex: 0500\n"), std::string::npos) << show.out;
    EXPECT_EQ(show.status, 0);
    EXPECT_EQ(showJson(path).out.find("identifierHex") != std::string::npos, text.find("hex") != text.npos);
    EXPECT_NE(check.out.find(" 1 unknown\n"), std::string::npos) << check.out;
    EXPECT_EQ(check.status, 0);
  }
}

// What is odd outside the extensions hides none of them.
TEST(Hostile, OddFields) {
  struct Case {
    std::string sample, from, to, field, text;
  };
  const Case cases[] = {
      {"ca.pem", "02021001", "02020010", "serialNumber",
       ", serialNumber (unreadable)\n  serialNumber\n    error 0x02100029"},
      {"ca.pem", "a003020102", "a003040102", "version", "\n  version\n    error 0x02100025"},
      {"crl.pem", "034800", "034809", "signature", "\n  signature\n    error 0x0210002B"},
      {"crl.pem", "170d323630333031", "180d323630333031", "thisUpdate",
       ", thisUpdate (unreadable), nextUpdate 2026-04-"},
      {"crl.pem", "170d323630343031", "170d323631333031", "nextUpdate", "malformed time at offset 2 (nextUpdate)"},
      {"crl.pem", "170d3236303430313030", "170d323630343031302e", "nextUpdate",
       "malformed time at offset 2 (nextUpdate)"},
      {"crl.pem", "170d3236303430313030303030305a", "180d323032363034303130302e355a", "",
       ", nextUpdate 2026040100.5Z, "},
      {"crl.pem", "02022001", "02020001", "serialNumber",
       "\n  entry 1, serialNumber (unreadable), revocationDate 2026"},
      {"crl.pem", "02022003170d", "02022003040d", "revocationDate", "\n    revocationDate\n      error 0x"},
      {"request.pem", "3028311030", "3028301030", "subject", ", subject (unreadable)\n"},
  };
  for (const auto &[name, from, to, field, text] : cases) {
    SCOPED_TRACE(name + " " + field + " " + to);
    const std::string path = patched(name, from, to);
    const Result json = showJson(path), show = run("show " + quote(path)), check = run("check " + quote(path));
    const Json odd = Json::parse(json.out).at(0), good = Json::parse(showJson(sample(name)).out).at(0);
    EXPECT_EQ(odd["extensions"], good["extensions"]);
    for (const Result *each : {&json, &show, &check}) EXPECT_EQ(each->status, field.empty() ? 0 : 1);
    EXPECT_EQ(json.out.find("{\"field\":\"" + field + "\",\"error\":{") == json.out.npos, field.empty()) << json.out;
    EXPECT_NE(show.out.find(text), std::string::npos) << show.out;
    EXPECT_EQ(check.out.find(" " + field + " is unreadable\n") == check.out.npos, field.empty()) << check.out;
  }
}

TEST(Hostile, DamagedObjects) {
  const std::string ca = der("ca.pem");
  const std::string pem = readAll(sample("ca.pem"));
  struct Case {
    std::string input, reason;
  };
  const Case cases[] = {
      {"", "the file is empty or blank"},
      {"nothing of the kind", "neither PEM nor DER"},
      {"0", "the encoding ends early"},
      {ca.substr(0, 100), "the encoding ends early"},
      {ca.substr(0, ca.size() - 1), "the encoding ends early"},
      {octets("3003020101"), "neither a certificate"},
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
              "0 certificates, 0 CRLs, 0 requests, 0 extensions: 0 identical, 0 re-encoded, 0 refused, 0 rejected, "
              "0 unknown; 1 unreadable");
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

// A mixture longer than any piece that is read or handed to a thread at once.
TEST(Container, ManyObjects) {
  const std::string pem = readAll(sample("ca.pem")), crl = der("crl.pem");
  std::string mixed;
  for (int i = 0; i < 300; ++i) mixed += std::string(static_cast<std::size_t>(i) * 7, '-') + "\n" + pem + crl;
  const std::string path = quote(file(mixed));
  const Result one = run("show --json -j1 - < " + path), many = run("show --json -j4 - < " + path);
  EXPECT_EQ(one.status, 0);
  EXPECT_TRUE(one.out == many.out);
  const Json objects = Json::parse(one.out);
  ASSERT_EQ(objects.size(), 600u);
  for (std::size_t i = 0; i < objects.size(); ++i) {
    EXPECT_EQ(objects[i].at("index"), i + 1);
    EXPECT_EQ(objects[i].at("kind"), i % 2 == 0 ? "certificate" : "CRL");
  }
  EXPECT_NE(run("show -j4 - < " + path + " > /dev/full").err.find("No space left"), std::string::npos);
}

// Each is tried as the start of a PEM block's commentary: a search from each to the end would take minutes.
TEST(Container, ManyShortSequences) {
  std::string input;
  for (int i = 0; i < 150000; ++i) input += "0\x05-----";
  const Result result = run("check --summary " + quote(file(input)), "timeout 20");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(lastLine(result.out).find("; 150000 unreadable"), std::string::npos) << result.out;
}

// What is too long is one fault, and hides nothing but, when it does not say its length, the rest of its file.
TEST(Container, LongObjects) {
  const std::string ca = der("ca.pem"), pem = readAll(sample("ca.pem")), most = std::to_string(ca.size());
  const std::string begin = "-----BEGIN CERTIFICATE-----\n", end = "-----END CERTIFICATE-----\n";
  const std::string longer = octets("30820BB8") + std::string(3000, '\0'), line = std::string(64, 'A') + "\n";
  std::string lines;
  for (int i = 0; i < 3000; ++i) lines += line;
  struct Case {
    std::string size, input, objects;
  };
  const Case cases[] = {
      {most, ca, "cert;"},
      {std::to_string(ca.size() - 1), ca + ca, "an o;an o;"},
      {"2K", ca + longer + ca, "cert;an o;cert;"},
      {"64K", octets("3083100000") + std::string(1 << 20, '\0') + ca, "an o;cert;"},
      {"64K", octets("3080") + std::string(1 << 20, '\0'), "more;"},
      {"2K", ca + octets("3080") + ca + longer, "cert;more;"},
      {std::to_string(pem.size() - 1), pem, "cert;"},  // the newline behind it does not belong to it
      {std::to_string(pem.size() - 2), pem + "\n", "more;"},
      {"2K", ca + begin + lines + end + pem, "cert;more;"},
      {"2K", begin + lines, "more;"},
      {"2K", begin.substr(0, 20) + std::string(1 << 20, 'A'), "more;"},
  };
  for (const auto &[size, input, objects] : cases) {
    SCOPED_TRACE(size + " " + objects);
    const std::string path = quote(file(input)), show = "show --json --max-object " + size + " ";
    const Result named = run(show + path), piped = run(show + "-", "cat " + path + " |");
    std::string seen;
    for (const Json &object : Json::parse(named.out)) {
      const std::string said = object.contains("error") ? object["error"]["message"] : object.at("kind");
      seen += said.substr(0, 4) + ";";
    }
    EXPECT_EQ(seen, objects);
    EXPECT_EQ(named.status, objects == "cert;" ? 0 : 1);
    EXPECT_EQ(piped.status, named.status);
    EXPECT_EQ(Json::parse(piped.out).size(), Json::parse(named.out).size());
  }
  for (const std::string &start : {octets("3080"), begin + "AAAA"}) {
    const Result endless = run("check --max-object 1M -", "(cat " + quote(file(start)) + "; yes) | timeout 20");
    EXPECT_EQ(endless.status, 1);
    EXPECT_NE(endless.out.find("more than 1048576 octets"), std::string::npos) << endless.out;
  }
}

// 20 GB of zeros that take no space, beside good files.
TEST(Container, SparseFile) {
  namespace fs = std::filesystem;
  const fs::path top = fs::path(file("")).parent_path() / "sparse";
  fs::create_directory(top);
  fs::copy_file(sample("ca.pem"), top / "a");
  fs::copy_file(sample("ca.pem"), top / "z");
  std::ofstream(top / "m", std::ios::binary) << octets("3080");
  fs::resize_file(top / "m", uint64_t{20} << 30);
#ifdef KETRA_SANITIZED
  const Result result = run("check --max-object 1M " + quote(top.string()));
#else
  const Result result = run("check " + quote(top.string()), "ulimit -v 3000000;");
#endif
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(lastLine(result.out).find("2 certificates, "), 0u) << result.out;
  EXPECT_NE(lastLine(result.out).find("; 1 unreadable"), std::string::npos) << result.out;
}

#ifndef KETRA_SANITIZED
// A valid certificate that takes too much memory is not faulty, and hides nothing of what comes before and after it.
TEST(Hostile, TooMuchMemory) {
  Octets names(6000000);
  for (std::size_t i = 0; i < names.size(); i += 2) names[i] = 0x82;
  const std::string large = quote(file(certificate(fromHex("551D11"), tlv(0x30, names)), "large"));
  const std::string ca = quote(sample("ca.pem")), files = ca + " " + large + " " + ca;
  for (const int limit : {30000, 50000, 70000, 100000}) {
    const std::string before = "ulimit -v " + std::to_string(limit) + ";";
    const Result check = run("check -j1 " + files, before);
    EXPECT_EQ(check.status, 2);
    EXPECT_NE(check.err.find("large #1: out of memory"), std::string::npos) << check.err;
    EXPECT_EQ(check.out.find('\n'), check.out.size() - 1) << check.out;
    EXPECT_NE(check.out.find(" 20 extensions: 20 identical, 0 re-encoded, 0 refused, 0 rejected, 0 unknown\n"),
              std::string::npos)
        << check.out;
    const Result show = run("show --json " + files, before);
    EXPECT_EQ(show.status, 2);
    EXPECT_NE(show.err.find("out of memory"), std::string::npos) << show.err;
    EXPECT_NE(show.out.find("\"inhibitAnyPolicy\""), std::string::npos) << show.out;
  }
}
#endif

TEST(Container, Directories) {
  namespace fs = std::filesystem;
  const fs::path top = fs::path(file("")).parent_path() / "tree";
  fs::create_directories(top / "b" / "deep");
  fs::create_directories(top / "empty");
  fs::copy_file(sample("ca.pem"), top / "b" / "deep" / "x");
  fs::copy_file(sample("crl.pem"), top / "c.pem");
  std::ofstream(top / "a") << "nothing of the kind";
  fs::create_directory_symlink("..", top / "b" / "round");
  const Result result = run("show --json -j3 " + quote(top.string()) + " " + quote(sample("request.pem")));
  EXPECT_EQ(result.status, 0) << result.err;
  std::string seen;
  for (const Json &object : Json::parse(result.out)) {
    const fs::path path = object.at("file").get<std::string>();
    seen += path.filename().string() + " " + object.value("kind", "note") + "; ";
  }
  EXPECT_EQ(seen, "a note; x certificate; c.pem CRL; request.pem certificate request; ");
  const Result none = run("show " + quote((top / "empty").string()));
  EXPECT_EQ(none.status, 1);
  EXPECT_NE(none.out.find("no certificate, CRL or certificate request"), std::string::npos) << none.out;
}

// Attributes of a request: what follows its first line in text.
TEST(Requests, Attributes) {
  const std::string wanted = "30 1A 06 09 2A864886F70D01090E 31 0D 30 0B 30 09 06 03 551D13 04 02 3000";
  const std::string type = "extensionRequest (1.2.840.113549.1.9.14)";
  const std::string constraints = "  basicConstraints (2.5.29.19)|    cA: (absent)|    pathLenConstraint: (absent)|";
  struct Case {
    std::string attributes, said;
    int status;
  };
  const Case cases[] = {
      {"", "(none)|  no extensions|", 0},
      {"A0 00", "(none)|  no extensions|", 0},
      {"A0 0A 30 08 06 02 2A03 31 02 0500", "1.2.3|  no extensions|", 0},
      {"A0 1C" + wanted, type + "|" + constraints, 0},
      {"A0 1E 05 00" + wanted, type + "|  attribute 1|    error 0x02100025: ", 1},
      {"A0 0F 30 0D 06 09 2A864886F70D01090E 31 00", "(none)|  attribute 1|    error 0x02600002: ", 1},
      {"A0 38" + wanted + wanted, type + ", " + type + "|" + constraints + "  basicConstraints (2.5.29.19), REPEATED",
       1},
  };
  for (const auto &[attributes, said, status] : cases) {
    const Octets algorithm = fromHex("30 03 06 01 2A"), signature = fromHex("03 01 00");
    const Octets info = fromHex("02 01 00 30 00") + tlv(0x30, algorithm + signature) + fromHex(attributes);
    const Octets request = tlv(0x30, tlv(0x30, info) + algorithm + signature);
    const std::string path = quote(file({request.begin(), request.end()}));
    Result result = run("show " + path);
    std::replace(result.out.begin(), result.out.end(), '\n', '|');
    EXPECT_EQ(result.out.find("|  attributes: " + said), result.out.find('|')) << result.out;
    EXPECT_EQ(result.status, status) << result.out;
    EXPECT_EQ(run("check " + path).status, status);
  }
}

TEST(Check, Summary) {
  const std::string bad = quote(patched("ca.pem", kBasicConstraints, "0603551d130101ff040830060102ff020101"));
  const std::string good = quote(sample("request.pem"));
  const Result result = run("check --summary " + good + " " + bad + " " + bad + " - </dev/null");
  EXPECT_EQ(result.status, 1);
  for (const std::string said : {
           "\n          3          2          1          2  basicConstraints (2.5.29.19)\n",
           "\nrejected\n          2  basicConstraints: error 0x02100028: ",
           "\n             first: ",
           "\nunreadable\n          1  object: the file is empty or blank\n             first: - #1\n",
           "\n2 certificates, 0 CRLs, 1 requests, 24 extensions: 22 identical, 0 re-encoded, 0 refused, 2 rejected, 0 ",
       }) {
    EXPECT_NE(result.out.find(said), std::string::npos) << said << result.out;
  }
}

// What comes back valid, but not quite as it was.
TEST(Check, SummaryOfRemarks) {
  const std::string written = quote(file(certificate(fromHex("551D13"), fromHex("3003010100")), "written"));
  const Octets mappings = fromHex("300C300A06022A030604551D2000");
  const std::string critical = quote(file(certificate(fromHex("551D21"), mappings, true), "critical"));
  const Result result = run("check --summary " + written + " " + critical);
  EXPECT_EQ(result.status, 0);
  for (const std::string said : {
           "\nidentical, not DER\n          1  basicConstraints: a written DEFAULT (X.690 11.5)\n",
           "\ncritical is lost\n          1  policyMappings: the library always writes this extension non-critical\n",
           " 2 extensions: 1 identical, 1 re-encoded, 0 refused, 0 rejected, 0 unknown\n",
       }) {
    EXPECT_NE(result.out.find(said), std::string::npos) << said << result.out;
  }
}

TEST(CommandLine, Colours) {
  const std::string path = quote(sample("ca.pem"));
  EXPECT_EQ(run("show " + path).out.find('\x1b'), std::string::npos);
  EXPECT_EQ(run("show --json --color=always " + path).out.find('\x1b'), std::string::npos);
  EXPECT_EQ(run("show --color always " + path).out.find("\x1b[1m"), 0u);
}

TEST(CommandLine, Mistakes) {
  const std::string ca = quote(sample("ca.pem"));
  const std::string cases[][2] = {
      {"", "say what to do"},
      {"chek " + ca, "there is no command chek, there are show and check"},
      {ca, "is a file, not a command; to print what it holds: ketra show "},
      {"--json " + ca, "options come behind the command"},
      {"show", "which files?"},
      {"show --yaml " + ca, "no option --yaml, it has --json, "},
      {"check -j 0 " + ca, "0 is no number from 1 to 1024"},
      {"check " + ca + " -j", "--jobs needs a value"},
      {"show --color=red " + ca, "red is none of auto, always, never"},
      {"show --max-object 0 " + ca, "0 is not a size from 1 to 4G"},
      {"show --max-object 5G " + ca, "5G is not a size"},
      {"show --max-object=K " + ca, "K is not a size"},
      {"check --json " + ca, "no option --json"},
  };
  for (const auto &[arguments, said] : cases) {
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(said), std::string::npos) << result.err;
  }
}

TEST(CommandLine, Statuses) {
  EXPECT_EQ(run("--version").status, 0);
  const char *banner = nullptr;
  KetraVersion(&banner);
  EXPECT_EQ(run("--version").out, banner);
  EXPECT_EQ(run("--help").status, 0);
  const Result missing = run("show --json /nonexistent " + quote(sample("ca.pem")));
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
  EXPECT_EQ(lastLine(result.out).find(std::to_string(count) + " certificates, 0 CRLs, 0 requests, "), 0u) << result.out;
  EXPECT_NE(lastLine(result.out).find(" 0 refused, 0 rejected, "), std::string::npos) << result.out;
}

}  // namespace
}  // namespace ketra::test
