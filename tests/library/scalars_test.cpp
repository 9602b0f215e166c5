// Extensions of one value: CRL numbers, reason code, hold instruction, dates; and lists of one kind of value: key
// purposes, directory attributes.

#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;

struct Number {
  const char *name;
  const Objid &objid;
  int32_t (*set)(KetraObject, const int32_t *, AsnErrorBlock *);
  int32_t (*get)(KetraObject, int32_t *, AsnErrorBlock *);
  std::vector<int32_t> valid;
  std::vector<int32_t> refused;
  const char *tag;
  const char *setCode;
  const char *getCode;
  const char *reason;
  bool critical;
};

TEST(Numbers, SetGetRefuse) {
  // clang-format off
  const Number rows[] = {
      {"CRLNumber", X509Objid_CRLNumber, KetraObjectSsetCRLNumber, KetraObjectSgetCRLNumber, {0, 127, INT32_MAX},
       {-1, INT32_MIN}, "02", "01465053", "0146C053", "cRLNumber", false},
      {"DeltaCRLIndicator", X509Objid_DeltaCRLIndicator, KetraObjectSsetDeltaCRLIndicator,
       KetraObjectSgetDeltaCRLIndicator, {0, INT32_MAX}, {-1}, "02", "01466A53", "0146DC53", "deltaCRLIndicator", true},
      {"ReasonCode", X509Objid_ReasonCode, KetraObjectSsetReasonCode, KetraObjectSgetReasonCode,
       {0, 1, 2, 3, 4, 5, 6, 8}, {7, 9, 10, -1}, "0A", "01466463", "0146D063", "reasonCode", false},
  };
  // clang-format on
  for (const Number &row : rows) {
    SCOPED_TRACE(row.name);
    const std::string name = row.name;
    const auto says = [&](int32_t number) { return name + ": " + row.reason + " [" + std::to_string(number) + "]"; };
    Extensions extensions;
    int32_t read = -7;
    for (const int32_t number : row.valid) {
      ASSERT_EQ(refusal(row.set, extensions, &number), "");
      EXPECT_EQ(extensions.stored(row.objid).substr(0, 2), row.tag);
      ASSERT_EQ(refusal(row.get, extensions, &read), "");
      EXPECT_EQ(read, number);
    }
    const KetraExtension *const stored = extensions.find(row.objid);
    EXPECT_EQ(stored->criticalOption == 1 && stored->critical == 1, row.critical);
    for (const int32_t number : row.refused) {
      Err err;
      EXPECT_EQ(row.set(extensions, &number, err), -1);
      EXPECT_EQ(err.innermost(), row.setCode + std::string(" KetraObjectSset") + says(number));
      EXPECT_TRUE(err.blames(number));
    }
    // What another encoder wrote.
    extensions.store(row.objid, fromHex(row.tag) + Octets{1, static_cast<uint8_t>(row.refused[0])});
    Err err;
    EXPECT_EQ(row.get(extensions, &read, err), -1);
    EXPECT_EQ(err.innermost(), row.getCode + std::string(" KetraObjectSget") + says(row.refused[0]));
    EXPECT_TRUE(err.blames(read));
    EXPECT_EQ(read, row.refused[0]);
    extensions.store(row.objid, fromHex(std::string(row.tag) + " 05 01 00 00 00 00"));
    EXPECT_EQ(codeOf(row.get, extensions, &read), uint32_t{AsnError_Range});
    EXPECT_EQ(codeOf(row.set, extensions, nullptr), 0x01460F02u);
  }
}

TEST(InstructionCode, Refused) {
  Extensions extensions;
  const uint32_t arcs[] = {1};
  const Objid one{arcs, 1};
  Objid read{};
  EXPECT_EQ(codeOf(KetraObjectSsetInstructionCode, extensions, &one), uint32_t{AsnCheckError_Objid});
  extensions.store(X509Objid_InstructionCode, fromHex("06 81 81 +01*129"));
  EXPECT_EQ(codeOf(KetraObjectSgetInstructionCode, extensions, &read), uint32_t{AsnError_Range}) << "130 arcs";
}

TEST(Dates, NodesAndRefusals) {
  Extensions extensions;
  const Gtime beyond{0x7FFFFFFF, 0};
  Gtime date{};
  KetraPrivateKeyUsagePeriod period{};
  for (const int32_t option : {0, 1}) {
    period.notAfter.option = option;
    ASSERT_EQ(refusal(KetraObjectSsetInvalidityDate, extensions, &date), "");
    ASSERT_EQ(refusal(KetraObjectSsetPrivateKeyUsagePeriod, extensions, &period), "");
    ASSERT_EQ(refusal(KetraObjectSgetInvalidityDate, extensions, &date), "");
    ASSERT_EQ(refusal(KetraObjectSgetPrivateKeyUsagePeriod, extensions, &period), "");
    EXPECT_TRUE(period.notBefore.option == 0 && period.notAfter.option == option);
  }
  EXPECT_EQ(extensions.stored(X509Objid_PrivateKeyUsagePeriod).substr(0, 11), "30 11 81 0F") << "notAfter alone";
  std::size_t nodes = 0;
  for (void *node = extensions.operator KetraObject()->structuredCache; node != nullptr; ++nodes)
    node = *static_cast<void **>(node);
  EXPECT_EQ(nodes, 2u) << "the second get uses the first one's node";
  period.notAfter.option = 2;
  EXPECT_EQ(codeOf(KetraObjectSsetInvalidityDate, extensions, &beyond), uint32_t{AsnCheckError_Time});
  EXPECT_EQ(codeOf(KetraObjectSsetPrivateKeyUsagePeriod, extensions, &period), uint32_t{AsnCheckError_Option});
}

TEST(ExtKeyUsage, ChainsOfAnotherLength) {
  Chains samples(kSamples);
  Chains read(kPrepared);
  Extensions extensions;
  const auto get = [&] { return refusal(KetraObjectSgetExtKeyUsage, extensions, read.purposes); };
  KetraKeyPurposeId third{nullptr, {nullptr, 9}};
  ASSERT_EQ(refusal(KetraObjectSsetExtKeyUsage, extensions, 1, samples.purposes), "");
  read.purposes[1].next = &third;
  ASSERT_EQ(get(), "");
  EXPECT_EQ(textOf(read.purposes[0].keyPurposeId) + " " + textOf(read.purposes[1].keyPurposeId), "1.2.3.1 1.2.3.2");
  EXPECT_EQ(third.keyPurposeId.count, 9u);
  EXPECT_EQ(AsnMemObjectFree(extensions.pool(), read.purposes[1].keyPurposeId.arcs, nullptr), 0);
  read.purposes[0].next = nullptr;
  EXPECT_EQ(get(), "0146DF99 KetraObjectSgetExtKeyUsage: Chain of KeyPurposeId [2]");

  uint32_t count = 7;
  extensions.store(X509Objid_ExtKeyUsage, fromHex("30 00"));
  EXPECT_EQ(KetraObjectSgetExtKeyUsageCalKeyPurposeId(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(get(), "0146DF89 KetraObjectSgetExtKeyUsage: Count of SequenceOf = 0");
  EXPECT_EQ(refusal(KetraObjectSsetExtKeyUsage, extensions, 1, nullptr),
            "01467089 KetraObjectSsetExtKeyUsage: Count = 0");
}

TEST(SubjectDirectoryAttributes, HandlesAndLists) {
  Extensions extensions;
  Attributes read;
  const auto get = [&](X509AttributesObject into) {
    return refusal(KetraObjectSgetSubjectDirectoryAttributes, extensions, into);
  };
  EXPECT_EQ(get(nullptr).substr(0, 8), "0146F204") << "looked up before the handle is";
  EXPECT_EQ(refusal(KetraObjectSsetSubjectDirectoryAttributes, extensions, nullptr),
            "0146617C KetraObjectSsetSubjectDirectoryAttributes: Not Exist SubjectDirectoryAttributes");
  extensions.store(X509Objid_SubjectDirectoryAttributes, fromHex("30 80 30 80 06 03 2A 03 05 31 02 05 00 00 00 00 00"));
  ASSERT_EQ(get(read), "");
  AsnEncodedData encoding{};
  ASSERT_EQ(X509AttributesObjectGetPduDER(read, &encoding, nullptr), 0);
  EXPECT_EQ(toHex(encoding), "30 0B 30 09 06 03 2A 03 05 31 02 05 00");
  EXPECT_EQ(get(nullptr), "0146CA02 KetraObjectSgetSubjectDirectoryAttributes: None Param");
  extensions.store(X509Objid_SubjectDirectoryAttributes, fromHex("30 00"));
  EXPECT_NE(get(read), "");
}

// The extensions that nobody can make critical.
TEST(Criticality, AlwaysNonCritical) {
  const Extensions extensions;
  Chains samples(kSamples);
  const Attributes attributes;
  const KetraPrivateKeyUsagePeriod period{};
  ASSERT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &samples.keyId, nullptr), 0);
  ASSERT_EQ(KetraObjectSsetPolicyMappings(extensions, samples.mappings, nullptr), 0);
  ASSERT_EQ(KetraObjectSsetPrivateKeyUsagePeriod(extensions, &period, nullptr), 0);
  ASSERT_EQ(KetraObjectSsetInstructionCode(extensions, &X509Objid_KeyUsage, nullptr), 0);
  ASSERT_EQ(KetraObjectSsetInvalidityDate(extensions, &period.notBefore.value, nullptr), 0);
  ASSERT_EQ(KetraObjectSsetSubjectDirectoryAttributes(extensions, attributes, nullptr), 0);
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectCalExt(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 6u);
  for (uint32_t i = 0; i < count; ++i) {
    const KetraExtension *stored = nullptr;
    ASSERT_EQ(KetraObjectGetExtpByIndex(extensions, i, &stored, nullptr), 0);
    EXPECT_NE(stored->criticalOption, 1) << textOf(stored->objid);
  }
}

}  // namespace
}  // namespace ketra::test
