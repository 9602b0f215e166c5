// The GeneralName object: its states, its kinds, and what is left after failures; and lists of such objects.

#include "names/general_name_object.h"
#include "names/or_address.h"
#include "schema/schema.h"
#include "support/names.h"

namespace ketra::test {
namespace {

using Param = X509GenNameParam;

X509DirStr utf8(std::string_view text) {
  const AsnOct characters = exactly(text);
  return {X509DirStr_Utf8String, characters.octets, characters.length};
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
  GenName copy("directoryName");
  ASSERT_EQ(X509GenNameObjectCopy(copy, object, nullptr), 0);
  ASSERT_EQ(X509GenNameObjectCopy(copy, copy, nullptr), 0);
  EXPECT_EQ(copy.ber(), ber) << "onto itself: without effect";
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
  EXPECT_EQ(object.setPdu(fromHex("A2 03 04 01 61"), false), -1) << "and constructed strings";
  const Octets endless = fromHex("A4 80 30 80 00 00");
  const AsnEncodedData unended{endless.data(), static_cast<uint32_t>(endless.size())};
  EXPECT_EQ(codeOf(X509GenNameObjectSetPduDER, object, &unended), uint32_t{AsnError_EndOfContents});
  EXPECT_EQ(codeOf(X509GenNameObjectSetPduBER, object, &unended), uint32_t{AsnError_EndOfContents});
  EXPECT_EQ(copy.der(), "82 02 61 62");
  ASSERT_EQ(X509GenNameObjectCopy(copy, GenName(), nullptr), 0);
  EXPECT_EQ(copy.der(), "empty");
  EXPECT_EQ(X509GenNameObjectDestroy(nullptr, nullptr), 0);
}

TEST(GeneralName, DamagedRecord) {
  GenName object("dNSName");
  Param &param = object.handle->param;
  const Param other = param;
  ASSERT_EQ(object.setPdu(fromHex("82 81 01 61")), 0);
  param.type = 12;
  AsnEncodedData encoding{};
  EXPECT_EQ(refusal(X509GenNameObjectGetPduDER, object, &encoding), "0147E244 x509GenNameObjectSetParam: type [12]");
  EXPECT_EQ(codeOf(X509GenNameObjectSetName, object, &other), 0x0147E144u);
  EXPECT_EQ(object.der(), "empty");
}

// Whatever kind is held, a kind that does not exist and a copy that fails leave no name.
TEST(GeneralName, FailuresLeaveNoName) {
  GenName large("dNSName");
  Param param = large.param();
  static const std::string name(100000, 'x');
  param.dNSName = exactly(name);
  ASSERT_EQ(X509GenNameObjectSetName(large, &param, nullptr), 0);
  param.type = 10;
  for (const char *kind : kKinds) {
    GenName object(kind);
    EXPECT_EQ(codeOf(X509GenNameObjectSetName, object, &param), uint32_t{KetraError_SetNameType});
    EXPECT_EQ(object.der(), "empty") << kind;
    GenName copy(kind);
    ASSERT_EQ(AsnMemObjectSetLimit(copy.handle->pool, 1, nullptr), 0);
    EXPECT_EQ(codeOf(X509GenNameObjectCopy, copy, large), uint32_t{AsnMemError_Limit});
    EXPECT_EQ(copy.der(), "empty") << kind;
  }
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
  EXPECT_LE(usage(object.handle->pool).second, 3u);
}

// As it is read by each rule: domain-defined attributes keep their order, extension attributes are a set.
TEST(GeneralName, Addresses) {
  const std::tuple<const char *, const char *, const char *> rows[] = {
      {"30 0A 30 00 30 06 13 01 62 13 01 61", "30 0A 30 00 30 06 13 01 62 13 01 61",
       "30 0A 30 00 30 06 13 01 62 13 01 61"},
      {"30 0A 30 00 31 06 80 01 02 80 01 01", "30 0A 30 00 31 06 80 01 01 80 01 02",
       "30 0A 30 00 31 06 80 01 02 80 01 01"},
      {"30 05 30 81 02 05 00", "error", "30 05 30 81 02 05 00"},
  };
  for (const auto &[given, der, ber] : rows) {
    Octets encoding = fromHex(given);
    encoding[0] = 0xA3;
    for (const bool isBer : {false, true}) {
      GenName object;
      const bool isRead = object.setPdu(encoding, isBer) == 0;
      const AsnEncodedData read = isRead ? object.param().x400Address : AsnEncodedData{};
      EXPECT_EQ(isRead ? toHex(read) : "error", isBer ? ber : der);
    }
  }
}

TEST(GeneralName, FlagsOfAddresses) {
  const uint8_t octets[] = {0x30, 0x00};
  X509ORAttribute attribute{nullptr, {octets, 2}};
  const std::pair<X509ORAddress, const char *> rows[] = {
      {{{octets, 2}, &attribute, 2, &attribute, -1}, ""},  // other flags than 1: left out
      {{{octets, 2}, nullptr, 1, nullptr, 0}, "0147F985 x509MUtilSetORAddress: Count of SequenceOf is invalid"},
      {{{octets, 2}, nullptr, 0, nullptr, 1}, "0147F986 x509MUtilSetORAddress: Count of SequenceOf is invalid"},
  };
  for (const auto &[address, expected] : rows) {
    Work work(schema::record(schema::Entry::ORAddress));
    EXPECT_EQ(refusal(x509MUtilSetORAddress, false, work.object, work.value, "/", &address), expected);
    EXPECT_TRUE(*expected != '\0' || work.encode() == "30 02 30 00");
  }
}

// The BER form puts in what an object holds; the DER form has it encoded, and the object holds that from then on.
TEST(GeneralNames, SetAsTheyAreHeld) {
  Names names({"dNSName", "iPAddress"});
  ASSERT_EQ(names.at(0).setPdu(fromHex("82 81 01 61")), 0);
  const auto set = [&](bool der) {
    Work work(schema::record(schema::Entry::GeneralNames));
    const auto function = der ? X509MUtilSetGenNamesDER : X509MUtilSetGenNamesBER;
    EXPECT_EQ(refusal(function, work.object, work.value, "", names.first()), "");
    return work.encode(der);
  };
  EXPECT_EQ(set(false), "30 0A 82 81 01 61 87 04 C0 00 02 01");
  EXPECT_EQ(set(true), "30 09 82 01 61 87 04 C0 00 02 01");
  EXPECT_EQ(names.at(0).ber(), "82 01 61");
}

TEST(GeneralNames, FillsObjectsInOrder) {
  const Pool pool;
  Work work(schema::record(schema::Entry::GeneralNames), fromHex("30 07 82 01 61 82 81 01 62"));
  ASSERT_EQ(work.decode(), 0);
  Names three({"", "", ""});
  Names strict({"", ""});
  ASSERT_EQ(refusal(X509MUtilSgetGenNamesBER, pool, work.object, work.value, "", three.first()), "");
  EXPECT_EQ(three.at(0).ber() + "; " + three.at(1).ber() + "; " + three.at(2).ber(), "82 01 61; 82 81 01 62; empty");
  EXPECT_EQ(usage(pool).second, 0u) << "passing buffers are freed";
  EXPECT_NE(refusal(X509MUtilSgetGenNamesDER, pool, work.object, work.value, "", strict.first()), "");
  EXPECT_EQ(strict.at(0).ber() + "; " + strict.at(1).ber(), "82 01 61; empty");

  ASSERT_EQ(AsnMemObjectSetLimit(pool, 1, nullptr), 0);
  for (void *memory = nullptr; AsnMemObjectMalloc(pool, 8, &memory, nullptr) == 0;) continue;  // what is held already
  const Err err = called(X509MUtilSgetGenNameObjectBER, pool, work.object, work.value, "1", three.at(0));
  EXPECT_EQ(err.block.entries[1].valueOctets[0], 3) << "the length that was asked for";
}

TEST(GeneralNames, CopyObject) {
  GenName target("ediPartyName");
  ASSERT_EQ(X509MUtilCopyGenNameObject(&target.handle, target, nullptr), 0);
  EXPECT_EQ(target.der(), sampleOf("ediPartyName")) << "onto itself: without effect";
  ASSERT_EQ(X509MUtilCopyGenNameObject(&target.handle, nullptr, nullptr), 0);
  EXPECT_EQ(target.handle, nullptr);
}

TEST(GeneralNames, PathsOfKinds) {
  const char *path = nullptr;
  for (uint32_t type = 1; type <= 9; ++type) {
    ASSERT_EQ(X509MUtilGetPathOfGenName(type, &path, nullptr), 0);
    EXPECT_STREQ(path, type == 6 ? "EDIPartyName" : kKinds.at(type - 1));
  }
  for (const uint32_t type : {0u, 10u, 0xFFFFFFFFu}) {
    EXPECT_EQ(refusal(X509MUtilGetPathOfGenName, type, &path),
              "0147F544 X509MUtilGetPathOfGenName: type [" + std::to_string(static_cast<int32_t>(type)) + "]");
  }
}

}  // namespace
}  // namespace ketra::test
