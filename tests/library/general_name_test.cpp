// The GeneralName object: its states, its nine kinds, and what is left after failures.

#include <functional>

#include "names/general_name_object.h"
#include "support/names.h"

namespace ketra::test {
namespace {

using Param = X509GenNameParam;

X509DirStr utf8(std::string_view text) {
  const AsnOct characters = exactly(text);
  return {X509DirStr_Utf8String, characters.octets, characters.length};
}

// The samples as a caller sets them.
class Samples {
 public:
  Samples() {
    const Octets der = fromHex("30 0C 31 0A 30 08 06 03 55 04 03 13 01 41");
    const AsnEncodedData encoding{der.data(), static_cast<uint32_t>(der.size())};
    EXPECT_EQ(X509NameObjectCreate(&name_, nullptr), 0);
    EXPECT_EQ(X509NameObjectSetPduBER(name_, &encoding, nullptr), 0);
  }
  ~Samples() { EXPECT_EQ(X509NameObjectDestroy(name_, nullptr), 0); }

  Param of(const std::string &kind) const {
    static const uint32_t upn[] = {1, 3, 6, 1, 4, 1, 311, 20, 2, 3};
    static const uint32_t registered[] = {2, 999, 3};
    static const Octets value = fromHex("0C 03 75 40 61");
    static const Octets orAddress = fromHex("30" + sampleOf("x400Address").substr(2));
    static const uint8_t address[] = {192, 0, 2, 1};
    Param param{};
    if (kind == "otherName") {
      param.type = X509GenName_OtherName;
      param.otherName = {{upn, 10}, {{value.data(), 5}, 1}};
    } else if (kind == "rfc822Name") {
      param.type = X509GenName_Rfc822Name;
      param.rfc822Name = exactly("u@a");
    } else if (kind == "dNSName") {
      param.type = X509GenName_DNSName;
      param.dNSName = exactly("a");
    } else if (kind == "x400Address") {
      param.type = X509GenName_X400Address;
      param.x400Address = {orAddress.data(), static_cast<uint32_t>(orAddress.size())};
    } else if (kind == "directoryName") {
      param.type = X509GenName_DirectoryName;
      param.directoryName = name_;
    } else if (kind == "ediPartyName") {
      param.type = X509GenName_EdiPartyName;
      param.ediPartyName = {{utf8("X"), 1}, {X509DirStr_PrintableString, exactly("Y").octets, 1}};
    } else if (kind == "uniformResourceIdentifier") {
      param.type = X509GenName_UniformResourceIdentifier;
      param.uniformResourceIdentifier = exactly("u:a");
    } else if (kind == "iPAddress") {
      param.type = X509GenName_IPAddress;
      param.iPAddress = {address, 4};
    } else {
      param.type = X509GenName_RegisteredID;
      param.registeredID = {registered, 3};
    }
    return param;
  }

 private:
  X509NameObject name_ = nullptr;
};

TEST(GeneralName, EveryKindFromItsParameterAndBack) {
  uint32_t type = 0;
  for (const char *kind : kKinds) {
    SCOPED_TRACE(kind);
    ++type;
    Err err;
    GenName object;
    {
      const Samples samples;
      const Param param = samples.of(kind);
      ASSERT_EQ(X509GenNameObjectSetName(object, &param, err), 0) << err.text();
    }
    EXPECT_EQ(object.param().type, type);
    EXPECT_EQ(object.ber(), sampleOf(kind));
    EXPECT_EQ(object.der(), sampleOf(kind));

    GenName read;  // takes what the first one wrote, gives its parameter to a third
    ASSERT_EQ(read.setPdu(fromHex(object.der()), false, err), 0) << err.text();
    EXPECT_EQ(read.param().type, type);
    GenName again;
    const Param view = read.param();
    ASSERT_EQ(X509GenNameObjectSetName(again, &view, err), 0) << err.text();
    EXPECT_EQ(again.der(), sampleOf(kind));
  }
}

TEST(GeneralName, ReadsItsFields) {
  GenName object("otherName");
  Param param = object.param();
  ASSERT_EQ(param.otherName.type.count, 10u);
  EXPECT_EQ(param.otherName.type.arcs[6], 311u);
  EXPECT_EQ(param.otherName.value.option, 1);
  EXPECT_EQ(toHex(param.otherName.value.value), "0C 03 75 40 61") << "without the explicit tag";
  ASSERT_EQ(object.setPdu(fromHex("A0 05 06 03 2A 03 04")), 0);
  EXPECT_EQ(object.param().otherName.value.option, 0);

  GenName party("ediPartyName");
  param = party.param();
  EXPECT_EQ(param.ediPartyName.nameAssigner.option, 1);
  EXPECT_EQ(param.ediPartyName.nameAssigner.value.choice, uint32_t{X509DirStr_Utf8String});
  EXPECT_EQ(param.ediPartyName.partyName.choice, uint32_t{X509DirStr_PrintableString});
  ASSERT_EQ(party.setPdu(fromHex("A5 05 A1 03 13 01 41")), 0);
  EXPECT_EQ(party.param().ediPartyName.nameAssigner.option, 0);
  EXPECT_EQ(party.der(), "A5 05 A1 03 13 01 41");

  EXPECT_EQ(toHex(GenName("x400Address").param().x400Address.octets, 1), "30");
}

TEST(GeneralName, States) {
  GenName object;
  Err err;
  Param param{};
  EXPECT_EQ(X509GenNameObjectGetName(object, &param, err), -1);
  EXPECT_EQ(err.code(), 0x01475102u);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"X509GenNameObjectGetName: None parameter"});
  for (const auto getPdu : {X509GenNameObjectGetPduDER, X509GenNameObjectGetPduBER}) {
    AsnEncodedData encoding{};
    Err none;
    EXPECT_EQ(getPdu(object, &encoding, none), -1);
    EXPECT_EQ(none.code(), 0x01479103u);
    EXPECT_EQ(std::string(none.block.entries[0].message), "None PDU and None Param");
  }

  // BER stays what it was until DER is asked for; from then on DER is what is stored.
  const std::string ber = "A2 80 04 01 61 04 01 62 00 00";
  ASSERT_EQ(object.setPdu(fromHex(ber)), 0);
  EXPECT_EQ(object.ber(), ber);
  EXPECT_EQ(object.param().dNSName.length, 2u);
  EXPECT_EQ(object.der(), "82 02 61 62");
  EXPECT_EQ(object.ber(), "82 02 61 62");

  AsnEncodedData first{};
  AsnEncodedData second{};
  ASSERT_EQ(X509GenNameObjectGetPduDER(object, &first, nullptr), 0);
  ASSERT_EQ(X509GenNameObjectGetPduBER(object, &second, nullptr), 0);
  EXPECT_EQ(first.octets, second.octets) << "encoded once";

  // A new parameter discards the encoding.
  const Samples samples;
  param = samples.of("iPAddress");
  ASSERT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  EXPECT_EQ(object.ber(), sampleOf("iPAddress"));
  EXPECT_EQ(object.setPdu(fromHex("82 81 01 61"), false), -1) << "the DER form refuses other lengths";
  EXPECT_EQ(X509GenNameObjectDestroy(nullptr, nullptr), 0);
}

TEST(GeneralName, Copies) {
  for (const char *kind : kKinds) {
    GenName copy("directoryName");
    {
      const GenName source(kind);
      Err err;
      ASSERT_EQ(X509GenNameObjectCopy(copy, source, err), 0) << err.text();
    }
    EXPECT_EQ(copy.der(), sampleOf(kind));
  }
  const GenName empty;
  GenName source;
  GenName copy("directoryName");
  ASSERT_EQ(source.setPdu(fromHex("82 81 01 61")), 0);
  ASSERT_EQ(X509GenNameObjectCopy(copy, source, nullptr), 0);
  EXPECT_EQ(copy.ber(), "82 81 01 61") << "the state comes along";
  EXPECT_EQ(copy.der(), "82 01 61");
  ASSERT_EQ(X509GenNameObjectCopy(copy, empty, nullptr), 0);
  EXPECT_EQ(copy.der(), "empty");

  GenName itself("directoryName");
  ASSERT_EQ(X509GenNameObjectCopy(itself, itself, nullptr), 0);
  EXPECT_EQ(itself.der(), sampleOf("directoryName"));
}

// What a caller took from the object comes back into it, whole or in part, of the same kind or another.
TEST(GeneralName, SetFromAViewOfItself) {
  for (const char *kind : kKinds) {
    SCOPED_TRACE(kind);
    GenName object(kind);
    for (int i = 0; i < 3; ++i) {
      const Param view = object.param();
      ASSERT_EQ(X509GenNameObjectSetName(object, &view, nullptr), 0);
      EXPECT_EQ(object.der(), sampleOf(kind));
      AsnEncodedData encoding{};
      ASSERT_EQ(X509GenNameObjectGetPduDER(object, &encoding, nullptr), 0);
      ASSERT_EQ(X509GenNameObjectSetPduDER(object, &encoding, nullptr), 0);
      EXPECT_EQ(object.der(), sampleOf(kind));
    }
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
  const Samples samples;
  const std::string longest(32768, 'x');
  const std::string tooLong(32769, 'x');
  struct Row {
    const char *what;
    std::function<void(Param &)> change;  // of an ediPartyName
    uint32_t code;
    const char *message;
  };
  const Row rows[] = {
      {"no kind", [](Param &p) { p.type = 0; }, 0x01472144, "type"},
      {"the tenth kind", [](Param &p) { p.type = 10; }, 0x01472144, "type"},
      {"no Name object",
       [](Param &p) {
         p = Param{};
         p.type = 5;
       },
       0x01472102, "None NameObject"},
      {"an empty assigner", [](Param &p) { p.ediPartyName.nameAssigner.value.length = 0; }, X509DirStrError_Length,
       "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/nameAssigner)"},
      {"a party too long", [&](Param &p) { p.ediPartyName.partyName = utf8(tooLong); }, X509DirStrError_Length,
       "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)"},
      {"half a unit",
       [](Param &p) {
         p.ediPartyName.partyName = {X509DirStr_BmpString, exactly("abc").octets, 3};
       },
       X509DirStrError_Characters, "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.what);
    GenName object("registeredID");
    Param param = samples.of("ediPartyName");
    row.change(param);
    Err err;
    EXPECT_EQ(X509GenNameObjectSetName(object, &param, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace().back(), std::string("X509GenNameObjectSetName: ") + row.message);
    if (row.code == 0x01472144) {
      EXPECT_EQ(err.block.entries[0].valueLength, 4u);
      EXPECT_EQ(err.block.entries[0].valueOctets[0], param.type);
    }
    EXPECT_EQ(object.der(), "empty");
    const Param good = samples.of("dNSName");
    EXPECT_EQ(X509GenNameObjectSetName(object, &good, nullptr), 0);
  }
  GenName object;
  Param param = samples.of("ediPartyName");
  param.ediPartyName.partyName = utf8(longest);
  param.ediPartyName.nameAssigner.option = 2;
  EXPECT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  EXPECT_EQ(object.param().ediPartyName.nameAssigner.option, 0) << "a flag other than 1 is absence";

  // An x400Address is looked at when it is encoded.
  param = samples.of("x400Address");
  param.x400Address.length = 3;
  EXPECT_EQ(X509GenNameObjectSetName(object, &param, nullptr), 0);
  Err err;
  AsnEncodedData encoding{};
  EXPECT_EQ(X509GenNameObjectGetPduDER(object, &encoding, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Truncated}) << err.text();
  EXPECT_EQ(err.trace()[1], "x509GenNameObjectSetParam: Call AsnDecode");
}

TEST(GeneralName, RefusedEncodings) {
  const char *const rows[] = {
      "",                                        // nothing
      "82 02 61",                                // cut off
      "82 01 61 00",                             // octets behind it
      "89 01 61",                                // no such kind
      "30 03 82 01 61",                          // a list
      "A0 03 06 01 80",                          // otherName: malformed identifier
      "A0 0B 06 03 2A 03 04 A0 04 05 00 05 00",  // two values
      "A3 00",                                   // x400Address without standard attributes
      "A3 04 30 00 30 00",                       // empty domain-defined attributes
      "A3 04 30 00 31 00",                       // empty extension attributes
      "A4 04 30 02 31 00",                       // a relative distinguished name without attribute
      "A4 02 04 00",                             // no Name
      "A5 05 A0 03 13 01 41",                    // no partyName
      "A5 04 A1 02 13 00",                       // an empty one
      "A5 07 A1 05 1E 03 00 41 00",              // half a BMP unit
      "A5 05 A1 03 0C 01 FF",                    // no UTF-8
      "A5 05 A1 03 16 01 41",                    // an IA5String
      "88 00",                                   // an empty identifier
      "88 06 90 80 80 80 80 00",                 // an arc of more than 32 bits
  };
  for (const char *hex : rows) {
    SCOPED_TRACE(hex);
    GenName object("directoryName");
    Err err;
    EXPECT_EQ(object.setPdu(fromHex(hex), true, err), -1);
    EXPECT_GE(err.block.count, 3u) << err.text();
    EXPECT_EQ(err.trace().back(), "X509GenNameObjectSetPduBER: Call x509GenNameObjectDecode");
    EXPECT_EQ(object.der(), "empty");
    EXPECT_EQ(object.setPdu(fromHex("82 01 61")), 0);
    EXPECT_EQ(object.der(), "82 01 61");
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
  X509GenNameParam &param = object.operator X509GenNameObject()->param;
  const AsnOct octets = param.dNSName;
  ASSERT_EQ(object.setPdu(fromHex("82 81 01 61")), 0);
  param.type = 12;
  Err set;
  AsnEncodedData encoding{};
  EXPECT_EQ(X509GenNameObjectGetPduDER(object, &encoding, set), -1);
  EXPECT_EQ(set.code(), 0x0147E244u);
  EXPECT_EQ(set.block.entries[0].valueOctets[0], 12u);
  EXPECT_EQ(set.block.entries[0].valueLength, 4u);
  X509GenNameParam other{};
  other.type = X509GenName_DNSName;
  other.dNSName = octets;
  Err reset;
  EXPECT_EQ(X509GenNameObjectSetName(object, &other, reset), -1);
  EXPECT_EQ(reset.code(), 0x0147E144u);
  EXPECT_EQ(object.der(), "empty");
}

// Setting one object again and again: replaced parameters and refused encodings go back to the pool.
TEST(GeneralName, MemoryStaysBounded) {
  const Samples samples;
  GenName object;
  const Param small = samples.of("dNSName");
  const std::string name(1000, 'x');
  Param large = small;
  large.dNSName = exactly(name);
  AsnMemObject pool = *reinterpret_cast<AsnMemObject *>(object.operator X509GenNameObject());
  uint64_t octetsHeld = 0;
  uint32_t blocks = 0;
  const std::string tooLong(32769, 'x');
  Param longParty = samples.of("ediPartyName");
  longParty.ediPartyName.partyName = utf8(tooLong);
  Param noValue = samples.of("otherName");
  noValue.otherName.value.value.octets = nullptr;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(X509GenNameObjectSetName(object, &longParty, nullptr), -1);
    ASSERT_EQ(X509GenNameObjectSetName(object, &noValue, nullptr), -1);
    ASSERT_EQ(X509GenNameObjectSetName(object, i % 2 == 0 ? &large : &small, nullptr), 0);
    ASSERT_EQ(object.setPdu(fromHex("82 02 61")), -1);
  }
  ASSERT_EQ(AsnMemObjectUsage(pool, &octetsHeld, &blocks, nullptr), 0);
  EXPECT_LE(blocks, 3u);
}

}  // namespace
}  // namespace ketra::test
