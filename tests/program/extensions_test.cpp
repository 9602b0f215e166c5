// What the program makes of key identifiers, policies, usages, CRL numbers, CRL entries and directory attributes,
// hostile ones among them.
#include <gtest/gtest.h>

#include <string>

#include "program.h"

namespace ketra::test {
namespace {

const std::string kAttributes = octets("551d09");
const std::string kPeriod = octets("551d10");
const std::string kCrlNumber = octets("551d14");
const std::string kReason = octets("551d15");
const std::string kInstruction = octets("551d17");
const std::string kInvalidityDate = octets("551d18");
const std::string kDelta = octets("551d1b");
const std::string kPolicies = octets("551d20");
const std::string kMappings = octets("551d21");
const std::string kAuthorityKeyId = octets("551d23");
const std::string kConstraints = octets("551d24");
const std::string kUsage = octets("551d25");

const std::string kCps = "0608 2b06010505070201", kNotice = "0608 2b06010505070202";

const Shown kShown[] = {
    {kAuthorityKeyId, "3000", 0, "(empty)\n", "{}"},
    {kAuthorityKeyId, "3017 8002 aabb a106 8204 610a6201 8209 00ff00000000000001", 0,
     "keyIdentifier: aabb\n"
     "authorityCertIssuer:\n"
     "  dNSName: a\\nb\\x01\n"
     "authorityCertSerialNumber: ff00000000000001\n",
     R"({"keyIdentifier": "aabb", "authorityCertIssuer": [{"kind": "dNSName", "text": "a\\nb\\x01",
         "octets": "610a6201"}], "authorityCertSerialNumber": "ff00000000000001"})"},
    {kPolicies,
     "3072 3006 0604 551d2000"  // anyPolicy
     "3068 0603 2a0304 3061"    // with five qualifiers
     "300f" +
         kCps +
         "1603 610a62"  // a newline
         "300d" +
         kCps +
         "0c01 61"  // malformed
         "301e" +
         kNotice +
         "3012 300b 0c01 61 3006 0201 01 0201 ff 1e03 00610a"  // malformed
         "3019" +
         kNotice +
         "300d 300b 0c04 e280ae61 3003 0201 07"  // a bidirectional override
         "3004 0602 2a03",                       // another one, without value
     0,
     "policies:\n"
     "  - policy: anyPolicy (2.5.29.32.0)\n"
     "  - policy: 1.2.3.4\n"
     "    qualifiers:\n"
     "      cps: a\\nb\n"
     "      cps\n"
     "        remark: this qualifier is malformed\n"
     "        octets: 0c0161\n"
     "      userNotice\n"
     "        remark: this qualifier is malformed\n"
     "        octets: 3012300b0c016130060201010201ff1e0300610a\n"
     "      userNotice\n"
     "        noticeRef: \\u{202e}a\n"
     "          noticeNumbers: 7\n"
     "        octets: 300d300b0c04e280ae613003020107\n"
     "      qualifier 1.2.3\n",
     R"({"policies": [{"policy": {"identifier": "2.5.29.32.0", "name": "anyPolicy"}},
         {"policy": {"identifier": "1.2.3.4"}, "qualifiers": [
           {"kind": "cps", "text": "a\\nb", "octets": "1603610a62"},
           {"kind": "cps", "remark": "this qualifier is malformed", "octets": "0c0161"},
           {"kind": "userNotice", "remark": "this qualifier is malformed",
            "octets": "3012300b0c016130060201010201ff1e0300610a"},
           {"kind": "userNotice", "noticeRef": {"text": "\\u{202e}a", "noticeNumbers": ["7"]},
            "octets": "300d300b0c04e280ae613003020107"},
           {"kind": "qualifier", "type": "1.2.3"}]}]})"},
    {kPolicies, "3006 3004 0602 2a03 0500", 1, "", ""},
    {kMappings, "300c 300a 0602 2a03 0604 551d2000", 0,
     "mappings:\n"
     "  - issuerDomainPolicy: 1.2.3\n"
     "    subjectDomainPolicy: anyPolicy (2.5.29.32.0)\n",
     R"({"mappings": [{"issuerDomainPolicy": {"identifier": "1.2.3"},
                       "subjectDomainPolicy": {"identifier": "2.5.29.32.0", "name": "anyPolicy"}}]})"},
    {kConstraints, "3003 810100", 0, "inhibitPolicyMapping: 0\n", R"({"inhibitPolicyMapping": 0})"},
    {kConstraints, "3003 8101ff", 1, "", ""},
    {kUsage, "300c 0608 2b06010505070309 0600", 1, "", ""},
    {kUsage, "300e 0608 2b06010505070309 0602 2a03", 0, "purposes: OCSPSigning (1.3.6.1.5.5.7.3.9), 1.2.3\n",
     R"({"purposes": [{"identifier": "1.3.6.1.5.5.7.3.9", "name": "OCSPSigning"}, {"identifier": "1.2.3"}]})"},
    {kPeriod, "3013 8011 31393639313233313233353935392e355a", 0, "notBefore: 1969-12-31T23:59:59.5Z\n",
     R"({"notBefore": "1969-12-31T23:59:59.5Z"})"},
    {kCrlNumber, "0205 0080000000", 0, "number: 2147483648\nhex: 80000000\n",
     R"({"number": 2147483648, "hex": "80000000"})"},
    {kDelta, "0209 010000000000000000", 0, "hex: 010000000000000000\n", R"({"hex": "010000000000000000"})"},
    {kCrlNumber, "0201 80", 1, "", ""},
    {kReason, "0a01 08", 0, "reason: removeFromCRL\n", R"({"reason": "removeFromCRL"})"},
    {kReason, "0a01 07", 1, "", ""},
    {kInstruction, "0607 2a8648ce380203", 0, "instruction: reject (1.2.840.10040.2.3)\n",
     R"({"instruction": {"identifier": "1.2.840.10040.2.3", "name": "reject"}})"},
    {kInvalidityDate, "180d 323032363031333132335a", 1, "", ""},  // a length beyond the value
    {kInvalidityDate, "180b 323032363031333132335a", 0, "date: 2026-01-31T23:00:00Z\n",
     R"({"date": "2026-01-31T23:00:00Z"})"},
    {kAttributes, "3018 3016 0608 2b06010505070901 310a 0500 0c01 0a 1403 41e442", 0,
     "attributes:\n"
     "  - type: dateOfBirth (1.3.6.1.5.5.7.9.1)\n"
     "    values:\n"
     "      value\n"
     "        octets: 0500\n"
     "      value: \\n\n"
     "      value: A\\u{e4}B\n",
     R"({"attributes": [{"type": {"identifier": "1.3.6.1.5.5.7.9.1", "name": "dateOfBirth"},
         "values": [{"kind": "value", "octets": "0500"}, {"kind": "value", "text": "\\n", "octets": "0c010a"},
                    {"kind": "value", "text": "A\\u{e4}B", "octets": "140341e442"}]}]})"},
};

TEST(Extensions, ShownHoweverHostile) {
  for (const Shown &shown : kShown) expectShown(shown);
}

TEST(Extensions, ReEncoded) {
  const std::string fixed = "the criticality of this extension is fixed";
  const ReEncoded rows[] = {
      {kAuthorityKeyId, "3006 a004 0402 aabb", "keyIdentifier: a string comes in segments"},
      {kAuthorityKeyId, "300a a105 a203 0401 61 8201 01", "authorityCertIssuer: name 1: a string comes in segments"},
      {kAuthorityKeyId, "3081 02 8000", "lengths are not DER"},
      {kPolicies, "300e 3004 0602 2a03 3006 0602 2a03 3000", "policy 2: an empty list of qualifiers is left out"},
      {kPeriod, "300f 800d 3230323630313331323335395a", "a time is not in the form of DER"},
      {kInvalidityDate, "180d 3230323630313331323335395a", "a time is not in the form of DER"},
      {kAttributes, "300c 300a 0602 2a03 3104 0c00 0500",
       "attribute 1: the members of a SET are not in the order of DER"},
      {kDelta, "0201 01", fixed},
      {kReason, "0a01 0a", ""},
      {kConstraints, "3007 8005 0100000000", ""},
  };
  for (const ReEncoded &row : rows) expectReEncoded(row);
}

// One bad name in authorityCertIssuer hides nothing in show; check refuses the extension, and an issuer alone.
TEST(Extensions, AuthorityKeyIdInParts) {
  const std::string path = file(certificate(kAuthorityKeyId, octets("3010 8001 aa a108 8a00 8201 61 8201 62 8201 05")));
  const Result show = run("show " + quote(path));
  EXPECT_EQ(show.status, 1);
  EXPECT_NE(show.out.find("      unreadable\n"), std::string::npos) << show.out;
  EXPECT_NE(show.out.find("      dNSName: a\n      dNSName: b\n    authorityCertSerialNumber: 05\n"), std::string::npos)
      << show.out;
  EXPECT_NE(run("check " + quote(path)).out.find(": rejected\n"), std::string::npos);

  const Result alone = run("check " + quote(file(certificate(kAuthorityKeyId, octets("3003 8201 05")))));
  EXPECT_EQ(alone.status, 1);
  EXPECT_NE(alone.out.find(": refused\n"), std::string::npos) << alone.out;
}

}  // namespace
}  // namespace ketra::test
