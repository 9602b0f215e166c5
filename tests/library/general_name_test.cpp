// The GeneralName object: its states, its nine kinds, and what is left after failures.

#include <algorithm>

#include "names/general_name_object.h"
#include "support/names.h"

namespace ketra::test {
namespace {

using Param = X509GenNameParam;

X509DirStr utf8(std::string_view text) {
  const AsnOct characters = exactly(text);
  return {X509DirStr_Utf8String, characters.octets, characters.length};
}

// Deep ones, the state included: what they were made from may go.
TEST(GeneralName, Copies) {
  for (const char *kind : kKinds) {
    SCOPED_TRACE(kind);
    GenName copy("directoryName");
    GenName set;
    {
      const GenName source(kind);
      const Param view = source.param();
      EXPECT_EQ(view.type, static_cast<uint32_t>(std::find(kKinds.begin(), kKinds.end(), kind) - kKinds.begin() + 1));
      ASSERT_EQ(refusal(X509GenNameObjectCopy, copy, source), "");
      ASSERT_EQ(refusal(X509GenNameObjectSetName, set, &view), "");
    }
    EXPECT_EQ(copy.der(), sampleOf(kind));
    EXPECT_EQ(set.ber(), sampleOf(kind));
  }
  const GenName empty;
  GenName source;
  GenName copy("directoryName");
  ASSERT_EQ(source.setPdu(fromHex("82 81 01 61")), 0);
  ASSERT_EQ(X509GenNameObjectCopy(copy, source, nullptr), 0);
  EXPECT_EQ(copy.ber(), "82 81 01 61");
  ASSERT_EQ(X509GenNameObjectCopy(copy, copy, nullptr), 0);
  EXPECT_EQ(copy.der(), "82 01 61");
  ASSERT_EQ(X509GenNameObjectCopy(copy, empty, nullptr), 0);
  EXPECT_EQ(copy.der(), "empty");
}

TEST(GeneralName, States) {
  GenName object;
  Param param{};
  AsnEncodedData first{};
  AsnEncodedData second{};
  EXPECT_EQ(refusal(X509GenNameObjectGetName, object, &param), "01475102 X509GenNameObjectGetName: None parameter");
  EXPECT_EQ(refusal(X509GenNameObjectGetPduDER, object, &first),
            "01479103 X509GenNameObjectGetPduDER: None PDU and None Param");
  EXPECT_EQ(refusal(X509GenNameObjectGetPduBER, object, &first),
            "01479103 X509GenNameObjectGetPduBER: None PDU and None Param");

  // BER stays what it was until DER is asked for; from then on DER is what is stored.
  const std::string ber = "A2 80 04 01 61 04 01 62 00 00";
  ASSERT_EQ(object.setPdu(fromHex(ber)), 0);
  EXPECT_EQ(object.ber(), ber);
  EXPECT_EQ(object.param().dNSName.length, 2u);
  EXPECT_EQ(object.der(), "82 02 61 62");
  EXPECT_EQ(object.ber(), "82 02 61 62");
  ASSERT_EQ(X509GenNameObjectGetPduDER(object, &first, nullptr), 0);
  ASSERT_EQ(X509GenNameObjectGetPduBER(object, &second, nullptr), 0);
  EXPECT_EQ(first.octets, second.octets) << "encoded once";

  // A new parameter discards the encoding.
  const GenName address("iPAddress");
  param = address.param();
  ASSERT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  EXPECT_EQ(object.ber(), sampleOf("iPAddress"));
  EXPECT_EQ(object.setPdu(fromHex("82 81 01 61"), false), -1) << "the DER form refuses other lengths";
  EXPECT_EQ(X509GenNameObjectDestroy(nullptr, nullptr), 0);
}

// What a caller took from the object comes back into it, whole or in part, of the same kind or another.
TEST(GeneralName, SetFromAViewOfItself) {
  for (const char *kind : kKinds) {
    SCOPED_TRACE(kind);
    GenName object(kind);
    const Param own = object.param();
    ASSERT_EQ(X509GenNameObjectSetName(object, &own, nullptr), 0);
    EXPECT_EQ(object.der(), sampleOf(kind));
    AsnEncodedData encoding{};
    ASSERT_EQ(X509GenNameObjectGetPduDER(object, &encoding, nullptr), 0);
    ASSERT_EQ(X509GenNameObjectSetPduDER(object, &encoding, nullptr), 0);
    EXPECT_EQ(object.der(), sampleOf(kind));
  }
  GenName object("rfc822Name");
  Param view = object.param();
  view.type = X509GenName_DNSName;
  view.dNSName = {view.rfc822Name.octets + 2, 1};  // what stands behind the "@"
  ASSERT_EQ(X509GenNameObjectSetName(object, &view, nullptr), 0);
  EXPECT_EQ(object.der(), sampleOf("dNSName"));
  GenName party("ediPartyName");
  view = party.param();
  view.ediPartyName.nameAssigner.option = 0;
  ASSERT_EQ(X509GenNameObjectSetName(party, &view, nullptr), 0);
  EXPECT_EQ(party.der(), "A5 05 A1 03 13 01 59");
  view = party.param();
  view.type = X509GenName_DNSName;
  const X509DirStr partyName = view.ediPartyName.partyName;
  view.dNSName = {partyName.octets, partyName.length};
  ASSERT_EQ(X509GenNameObjectSetName(party, &view, nullptr), 0);
  EXPECT_EQ(party.der(), "82 01 59");
  GenName other("otherName");
  view = other.param();
  view.type = X509GenName_RegisteredID;
  view.registeredID = {view.otherName.type.arcs, 2};
  ASSERT_EQ(X509GenNameObjectSetName(other, &view, nullptr), 0);
  EXPECT_EQ(other.der(), "88 01 2B");
}

// Octets of the encoding that the object's own Name object has handed out.
TEST(GeneralName, SetFromInsideItsNameObject) {
  GenName object("directoryName");
  AsnEncodedData name{};
  ASSERT_EQ(X509NameObjectGetPduDER(object.param().directoryName, &name, nullptr), 0);
  Param param{};
  param.type = X509GenName_DNSName;
  param.dNSName = {name.octets + name.length - 1, 1};
  ASSERT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  EXPECT_EQ(object.der(), "82 01 41");
}

TEST(GeneralName, RefusedParameters) {
  static const std::string tooLong(32769, 'x');
  const GenName party("ediPartyName");
  const GenName good("dNSName");
  const Param goodParam = good.param();
  struct Row {
    void (*change)(Param &);  // of an ediPartyName
    uint32_t code;
    const char *message;
  };
  const Row rows[] = {
      {[](Param &p) { p.type = 0; }, 0x01472144, "type"},
      {[](Param &p) { p.type = 10; }, 0x01472144, "type"},
      {[](Param &p) {
         p = {};
         p.type = X509GenName_DirectoryName;
       },
       0x01472102, "None NameObject"},
      {[](Param &p) { p.ediPartyName.nameAssigner.value.length = 0; }, X509DirStrError_Length,
       "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/nameAssigner)"},
      {[](Param &p) { p.ediPartyName.partyName = utf8(tooLong); }, X509DirStrError_Length,
       "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)"},
      {[](Param &p) {
         p.ediPartyName.partyName = {X509DirStr_BmpString, exactly("abc").octets, 3};
       },
       X509DirStrError_Characters, "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.message);
    GenName object("registeredID");
    Param param = party.param();
    row.change(param);
    Err err;
    EXPECT_EQ(X509GenNameObjectSetName(object, &param, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace().back(), std::string("X509GenNameObjectSetName: ") + row.message);
    if (row.code == 0x01472144) {
      EXPECT_EQ(err.innermost(), "01472144 X509GenNameObjectSetName: type [" + std::to_string(param.type) + "]");
    }
    EXPECT_EQ(object.der(), "empty");
    EXPECT_EQ(X509GenNameObjectSetName(object, &goodParam, nullptr), 0);
  }
  GenName object;
  Param param = party.param();
  param.ediPartyName.partyName = utf8(std::string_view(tooLong).substr(1));
  param.ediPartyName.nameAssigner.option = 2;
  EXPECT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  EXPECT_EQ(object.param().ediPartyName.nameAssigner.option, 0) << "a flag other than 1 is absence";

  // An x400Address is looked at when it is encoded.
  const GenName address("x400Address");
  param = address.param();
  param.x400Address.length = 3;
  EXPECT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  AsnEncodedData encoding{};
  EXPECT_EQ(codeOf(X509GenNameObjectGetPduDER, object, &encoding), uint32_t{AsnError_Truncated});
}

TEST(GeneralName, RefusedEncodingsLeaveNone) {
  for (const char *hex : {"82 02 61", "A3 04 30 00 30 00", "A4 04 30 02 31 00", "A5 04 A1 02 13 00", "88 00",
                          "88 06 90 80 80 80 80 00"}) {
    SCOPED_TRACE(hex);
    GenName object("directoryName");
    EXPECT_EQ(object.setPdu(fromHex(hex)), -1);
    EXPECT_EQ(object.der(), "empty");
    EXPECT_EQ(object.setPdu(fromHex("82 01 61")), 0);
  }
}

TEST(GeneralName, NullParameters) {
  const GenName object;
  Param param{};
  AsnEncodedData encoding{};
  Err err;
  EXPECT_EQ(X509GenNameObjectCreate(nullptr, err), -1);
  EXPECT_EQ(X509GenNameObjectSetName(nullptr, &param, err), -1);
  EXPECT_EQ(X509GenNameObjectSetName(object, nullptr, err), -1);
  EXPECT_EQ(X509GenNameObjectGetName(object, nullptr, err), -1);
  EXPECT_EQ(X509GenNameObjectSetPduDER(nullptr, &encoding, err), -1);
  EXPECT_EQ(X509GenNameObjectSetPduBER(object, nullptr, err), -1);
  EXPECT_EQ(X509GenNameObjectGetPduDER(object, nullptr, err), -1);
  EXPECT_EQ(X509GenNameObjectGetPduBER(nullptr, &encoding, err), -1);
  EXPECT_EQ(X509GenNameObjectCopy(object, nullptr, err), -1);
  EXPECT_EQ(err.code(), 0x01460F02u);
  EXPECT_EQ(err.block.count, 9u);
  EXPECT_EQ(err.trace()[3], "X509GenNameObjectGetName: None parameter");
}

TEST(GeneralName, DamagedRecord) {
  GenName object("dNSName");
  Param &param = object.operator X509GenNameObject()->param;
  const Param other = param;
  ASSERT_EQ(object.setPdu(fromHex("82 81 01 61")), 0);
  param.type = 12;
  AsnEncodedData encoding{};
  EXPECT_EQ(refusal(X509GenNameObjectGetPduDER, object, &encoding), "0147E244 x509GenNameObjectSetParam: type [12]");
  EXPECT_EQ(codeOf(X509GenNameObjectSetName, object, &other), 0x0147E144u);
  EXPECT_EQ(object.der(), "empty");
}

// Setting one object again and again: replaced parameters and refused encodings go back to the pool.
TEST(GeneralName, MemoryStaysBounded) {
  static const std::string name(32769, 'x');
  const GenName samples[] = {GenName("dNSName"), GenName("ediPartyName"), GenName("otherName")};
  const Param small = samples[0].param();
  Param large = small;
  large.dNSName = exactly(std::string_view(name).substr(0, 1000));
  Param longParty = samples[1].param();
  longParty.ediPartyName.partyName = utf8(name);
  Param noValue = samples[2].param();
  noValue.otherName.value.value.octets = nullptr;
  GenName object;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(X509GenNameObjectSetName(object, &longParty, nullptr), -1);
    ASSERT_EQ(X509GenNameObjectSetName(object, &noValue, nullptr), -1);
    ASSERT_EQ(X509GenNameObjectSetName(object, i % 2 == 0 ? &large : &small, nullptr), 0);
    ASSERT_EQ(object.setPdu(fromHex("82 02 61")), -1);
  }
  EXPECT_LE(usage(object.operator X509GenNameObject()->pool).second, 3u);
}

}  // namespace
}  // namespace ketra::test
