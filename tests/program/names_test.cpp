// What the program makes of names, hostile ones among them.
#include <gtest/gtest.h>

#include <string>

#include "program.h"

namespace ketra::test {
namespace {

const std::string kSubjectAltName = octets("551d11");
const std::string kIssuerAltName = octets("551d12");
const std::string kCertificateIssuer = octets("551d1d");

std::string certificateWith(const std::string &names) { return certificate(kSubjectAltName, tlv(0x30, names)); }

Json names(const Json &object, const std::string &identifier = "2.5.29.17") {
  return extension(object, identifier).at("value").at("names");
}

struct Case {
  std::string member;
  std::string lines;  // of the text form
  std::string json;   // the whole object, or for unreadable members what its error says
};

const Case kReadable[] = {
    {tlv(0x82, "a.example"), "dNSName: a.example\n",
     R"({"kind": "dNSName", "text": "a.example", "octets": "612e6578616d706c65"})"},
    {tlv(0x82, ""), "dNSName: \n", R"({"kind": "dNSName", "text": "", "octets": ""})"},
    {tlv(0x82, std::string("a\0b", 3)), "dNSName: a\\x00b\n",
     R"({"kind": "dNSName", "text": "a\\x00b", "octets": "610062"})"},
    {tlv(0x81, "a\n      dNSName: b"), "rfc822Name: a\\n      dNSName: b\n",
     R"({"kind": "rfc822Name", "text": "a\\n      dNSName: b", "octets": "610a202020202020644e534e616d653a2062"})"},
    {tlv(0x86, "\"}\\\x1b[2J"), "uniformResourceIdentifier: \"}\\\\\\x1b[2J\n",
     R"({"kind": "uniformResourceIdentifier", "text": "\"}\\\\\\x1b[2J", "octets": "227d5c1b5b324a"})"},
    {tlv(0x82, "\xe2\x80\xae\xff"), "dNSName: \\u{202e}\\xff\n",
     R"({"kind": "dNSName", "text": "\\u{202e}\\xff", "octets": "e280aeff"})"},
    {octets("8704c0000201"), "iPAddress: 192.0.2.1\n",
     R"({"kind": "iPAddress", "text": "192.0.2.1", "octets": "c0000201"})"},
    {octets("8705c000020101"), "iPAddress\n  remark: 5 octets are no address\n  octets: c000020101\n",
     R"({"kind": "iPAddress", "remark": "5 octets are no address", "octets": "c000020101"})"},
    {octets("a013060a2b060104018237140203a0050c03610a62"),
     "otherName 1.3.6.1.4.1.311.20.2.3 (userPrincipalName): a\\nb\n",
     R"({"kind": "otherName", "type": "1.3.6.1.4.1.311.20.2.3", "typeName": "userPrincipalName", "text": "a\\nb",
         "octets": "0c03610a62"})"},
    {octets("a00a06022a03a0041e020416"), "otherName 1.2.3: \\u{416}\n",
     R"({"kind": "otherName", "type": "1.2.3", "text": "\\u{416}", "octets": "1e020416"})"},
    {octets("a00906022a03a003020105"), "otherName 1.2.3\n  octets: 020105\n",
     R"({"kind": "otherName", "type": "1.2.3", "octets": "020105"})"},
    {octets("a00406022a03"), "otherName 1.2.3\n", R"({"kind": "otherName", "type": "1.2.3"})"},
    {octets("a30430020500"), "x400Address\n  octets: 300430020500\n",
     R"({"kind": "x400Address", "octets": "300430020500"})"},
    {octets("a417301531133011060355040a0c0a412c20e280aee4bda00a"), "directoryName: O=A\\, \\e2\\80\\ae\\u{4f60}\\0a\n",
     R"({"kind": "directoryName", "text": "O=A\\, \\e2\\80\\ae\\u{4f60}\\0a",
         "octets": "301531133011060355040a0c0a412c20e280aee4bda00a"})"},
    {octets("a50da0041e020041a1050c03610a62"), "ediPartyName\n  nameAssigner: A\n  partyName: a\\nb\n",
     R"({"kind": "ediPartyName", "nameAssigner": {"text": "A", "octets": "0041"},
         "partyName": {"text": "a\\nb", "octets": "610a62"}})"},
    {octets("88042a030405"), "registeredID: 1.2.3.4.5\n", R"({"kind": "registeredID", "text": "1.2.3.4.5"})"},
};

const Case kUnreadable[] = {
    {octets("8a0161"), "", "0x8a is no tag of GeneralName"},
    {octets("88062a9080808000"), "", "arc"},
    {octets("a40530033101ff"), "", "directoryName"},
    {octets("a50da0041e020041a0050c03610a62"), "", "ediPartyName"},
};

TEST(Names, EachIsShownHoweverHostile) {
  for (const Case &c : kReadable) {
    const std::string path = file(certificateWith(c.member));
    const Result show = run("show " + quote(path));
    EXPECT_EQ(show.status, 0) << show.out;
    std::string lines = "    names:\n";
    std::string rest = c.lines;
    for (std::size_t end; (end = rest.find('\n')) != rest.npos; rest.erase(0, end + 1)) {
      lines += "      " + rest.substr(0, end + 1);
    }
    EXPECT_EQ(show.out.substr(show.out.find("    names:")), lines);
    EXPECT_EQ(names(Json::parse(showJson(path).out).at(0)), Json::array({Json::parse(c.json)}));
    const Result check = run("check " + quote(path));
    EXPECT_EQ(check.status, 0) << check.out;
    EXPECT_NE(check.out.find(": 1 identical, "), std::string::npos) << check.out;
  }
}

// One bad name hides no other, in show; check refuses the list.
TEST(Names, UnreadableAmongReadable) {
  const std::string good = tlv(0x82, "a.example");
  for (const Case &c : kUnreadable) {
    const std::string path = file(certificateWith(good + c.member + good));
    const Result show = showJson(path);
    EXPECT_EQ(show.status, 1) << show.out;
    const Json list = names(Json::parse(show.out).at(0));
    ASSERT_EQ(list.size(), 3u);
    EXPECT_EQ(list.at(0).at("text"), "a.example");
    EXPECT_EQ(list.at(2), list.at(0));
    EXPECT_EQ(list.at(1).at("kind"), "unreadable");
    EXPECT_EQ(octets(list.at(1).at("octets")), c.member);
    EXPECT_NE(list.at(1).at("error").at("trace").dump().find(c.json), std::string::npos) << list.at(1);

    const std::string text = run("show " + quote(path)).out;
    EXPECT_NE(text.find("\n      dNSName: a.example\n      unreadable\n        error 0x"), std::string::npos) << text;
    const Result check = run("check " + quote(path));
    EXPECT_EQ(check.status, 1);
    EXPECT_NE(check.out.find("#1 subjectAltName: rejected\n"), std::string::npos) << check.out;
  }
}

TEST(Names, ListsThatAreNone) {
  for (const char *value : {"3005820161", "31038201610000", "30048203616161", "0500", ""}) {
    const Result show = showJson(file(certificate(kIssuerAltName, octets(value))));
    EXPECT_EQ(show.status, 1) << value;
    EXPECT_TRUE(extension(Json::parse(show.out).at(0), "2.5.29.18").contains("error")) << show.out;
  }
  const std::string empty = file(certificateWith(""));
  EXPECT_EQ(names(Json::parse(showJson(empty).out).at(0)), Json::array());
  EXPECT_NE(run("check " + quote(empty)).out.find("the chain of GeneralNames is empty"), std::string::npos);
}

TEST(Names, ReEncoded) {
  struct Row {
    std::string objid, names, reason;
  };
  const std::string cn = "300806035504030c0141", o = "3008060355040a0c0141";
  const Row rows[] = {
      {kSubjectAltName, octets("82810161"), "lengths are not DER"},
      {kSubjectAltName, octets("820161a2800401610000"), "lengths are not DER"},
      {kSubjectAltName, octets("820161a20404020061"), "name 2: a string comes in segments"},
      {kSubjectAltName, octets("a509a1072c050403414243"), "name 1: a string comes in segments"},
      {kIssuerAltName, octets("a41830163114" + o + cn), "name 1: the members of a SET are not in the order of DER"},
      {kCertificateIssuer, tlv(0x82, "a"), "the criticality of this extension is fixed"},
  };
  for (const Row &row : rows) {
    const Result check = run("check " + quote(file(certificate(row.objid, tlv(0x30, row.names)))));
    EXPECT_EQ(check.status, 0) << check.out;
    EXPECT_NE(check.out.find("re-encoded: " + row.reason + "\n"), std::string::npos) << check.out;
  }
}

}  // namespace
}  // namespace ketra::test
