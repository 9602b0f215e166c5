// What the program makes of distribution points and name constraints, hostile ones among them.
#include <gtest/gtest.h>

#include <string>

#include "program.h"

namespace ketra::test {
namespace {

const std::string kPoints = octets("551d1f");
const std::string kIssuingPoint = octets("551d1c");
const std::string kConstraints = octets("551d1e");

const Shown kShown[] = {
    {kPoints, "3014 3010 a009a007 8205612c0a62c3 8103 076280 3000", 0,
     "points:\n"
     "  - fullName:\n"
     "      dNSName: a,\\nb\\xc3\n"
     "    reasons: keyCompromise, cACompromise, certificateHold\n"
     "  - (empty)\n"
     "remark: point 1: reasons: bit 8 is not carried\n",
     R"({"points": [{"fullName": [{"kind": "dNSName", "text": "a,\\nb\\xc3", "octets": "612c0a62c3"}],
                     "reasons": ["keyCompromise", "cACompromise", "certificateHold"]}, {}],
         "remark": "point 1: reasons: bit 8 is not carried"})"},
    {kPoints,
     "302a 3019 a012a110 300e 0603550403 0c07 410a202020422b a203 8201 0a 300d a00b a109 3007 0603 2a0304 0500", 0,
     "points:\n"
     "  - nameRelativeToCRLIssuer: CN=A\\0a   B\\+\n"
     "    cRLIssuer:\n"
     "      dNSName: \\n\n"
     "  - nameRelativeToCRLIssuer: 1.2.3.4=#0500\n",
     R"({"points": [{"nameRelativeToCRLIssuer": {"text": "CN=A\\0a   B\\+",
                                                 "octets": "3110300e06035504030c07410a202020422b"},
                     "cRLIssuer": [{"kind": "dNSName", "text": "\\n", "octets": "0a"}]},
                    {"nameRelativeToCRLIssuer": {"text": "1.2.3.4=#0500", "octets": "3109300706032a03040500"}}]})"},
    {kIssuingPoint, "300d a005a003 820161 810100 8401ff", 0,
     "fullName:\n"
     "  dNSName: a\n"
     "onlyContainsUserCerts: false\n"
     "indirectCRL: true\n",
     R"({"fullName": [{"kind": "dNSName", "text": "a", "octets": "61"}], "onlyContainsUserCerts": false,
         "indirectCRL": true})"},
    {kIssuingPoint, "3000", 0, "(empty)\n", "{}"},
    {kIssuingPoint, "30038501ff", 1, "", ""},  // a component that the library does not know
    {kConstraints,
     "302d a014 300a 8708 c0000200 ffffff00 3006 8201 61 8001 05 a115 3013 8708 c0000200 ff00ff00 8000 8101", 1, "",
     ""},
    {kConstraints,
     "3029 a014 300a 8708 c0000200 ffffff00 3006 8201 61 8001 05 a111 300f 8708 c0000200 ff00ff00 8103 010000", 0,
     "permittedSubtrees:\n"
     "  iPAddress: 192.0.2.0/24\n"
     "  dNSName: a\n"
     "    minimum: 5\n"
     "excludedSubtrees:\n"
     "  iPAddress: 192.0.2.0/255.0.255.0\n"
     "    maximum: 65536\n",
     R"({"permittedSubtrees": [{"kind": "iPAddress", "text": "192.0.2.0/24", "octets": "c0000200ffffff00"},
                               {"kind": "dNSName", "text": "a", "octets": "61", "minimum": 5}],
         "excludedSubtrees": [{"kind": "iPAddress", "text": "192.0.2.0/255.0.255.0", "octets": "c0000200ff00ff00",
                               "maximum": 65536}]})"},
};

TEST(Points, ShownHoweverHostile) {
  for (const Shown &shown : kShown) expectShown(shown);
}

// One bad name, point or subtree hides no other in show; check refuses the extension.
TEST(Points, UnreadableAmongReadable) {
  const std::string constraints = "301e a11c 3003 8a0161 300a 8201 62 8105 0100000000 0500 3007 8205 6578616d70";
  struct {
    std::string objid, value;
    int unreadable;
    std::string last;
  } cases[] = {
      {kPoints, "3023 300f a00aa008 820161 8a00 820162 8101 00 3003 830100 300b a209 8a0162 8704 c0000201", 3,
       "192.0.2.1"},
      {kConstraints, constraints, 3, "examp"},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.value);
    const std::string path = file(certificate(c.objid, octets(c.value)));
    const Result show = run("show " + quote(path));
    EXPECT_EQ(show.status, 1);
    int found = 0;
    for (std::size_t at = 0; (at = show.out.find(" unreadable\n", at)) != show.out.npos; ++at) ++found;
    EXPECT_EQ(found, c.unreadable) << show.out;
    EXPECT_NE(show.out.find(": " + c.last + "\n"), std::string::npos) << show.out;
    EXPECT_EQ(showJson(path).status, 1);
    const Result check = run("check " + quote(path));
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find(": rejected\n"), std::string::npos) << check.out;
  }
}

TEST(Points, ReEncoded) {
  const std::string fixed = "the criticality of this extension is fixed";
  const std::string cn = "3008 0603550403 0c0141", o = "3008 060355040a 0c0141";
  const ReEncoded rows[] = {
      {kPoints, "3008 3006 81 8103 0640 00", "lengths are not DER"},
      {kPoints, "3007 3000 3003 810106", ""},
      {kPoints, "3007 3005 8103 064000", "point 1: reasons: trailing zero bits are written out"},
      {kPoints, "3008 3000 3004 8102 0641", "point 2: reasons: unused bits are set"},
      {kPoints, "3008 3006 8104 00400180", "point 1: reasons: bit 15 is not carried"},
      {kPoints, "3008 3006 a104 0302 0640", "point 1: reasons: a string comes in segments"},
      {kPoints, "3018 3016 a014a114" + o + cn, ""},
      {kPoints, "301a 3018 a016a114" + o + cn,
       "point 1: nameRelativeToCRLIssuer: the members of a SET are not in the order of DER"},
      {kPoints, "300c 300a a208 8201 62 a203 0401 61", "point 1: cRLIssuer: name 2: a string comes in segments"},
      {kIssuingPoint, "3003 840101", "indirectCRL: a TRUE is not FF; " + fixed},
      {kIssuingPoint, "300c a007 a005 a203 040161 8101ff", "fullName: name 1: a string comes in segments; " + fixed},
      {kConstraints, "3009 a007 3005 a203 040161", "permittedSubtrees: subtree 1: a string comes in segments"},
  };
  for (const ReEncoded &row : rows) expectReEncoded(row);
}

}  // namespace
}  // namespace ketra::test
