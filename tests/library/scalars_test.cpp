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
  uint32_t setCode;
  uint32_t getCode;
  const char *reason;
  bool critical;
};

TEST(Numbers, SetGetRefuse) {
  const Number rows[] = {
      {"CRLNumber",
       X509Objid_CRLNumber,
       KetraObjectSsetCRLNumber,
       KetraObjectSgetCRLNumber,
       {0, 127, 0x7FFFFFFF},
       {-1, INT32_MIN},
       "02",
       0x01465053,
       0x0146C053,
       "cRLNumber",
       false},
      {"DeltaCRLIndicator",
       X509Objid_DeltaCRLIndicator,
       KetraObjectSsetDeltaCRLIndicator,
       KetraObjectSgetDeltaCRLIndicator,
       {0, 0x7FFFFFFF},
       {-1},
       "02",
       0x01466A53,
       0x0146DC53,
       "deltaCRLIndicator",
       true},
      {"ReasonCode",
       X509Objid_ReasonCode,
       KetraObjectSsetReasonCode,
       KetraObjectSgetReasonCode,
       {0, 1, 2, 3, 4, 5, 6, 8},
       {7, 9, 10, -1},
       "0A",
       0x01466463,
       0x0146D063,
       "reasonCode",
       false},
  };
  for (const Number &row : rows) {
    SCOPED_TRACE(row.name);
    const std::string set = std::string("KetraObjectSset") + row.name;
    const std::string get = std::string("KetraObjectSget") + row.name;
    Extensions extensions;
    for (const int32_t number : row.valid) {
      int32_t read = -7;
      ASSERT_EQ(row.set(extensions, &number, nullptr), 0);
      EXPECT_EQ(extensions.stored(row.objid).substr(0, 2), row.tag);
      ASSERT_EQ(row.get(extensions, &read, nullptr), 0);
      EXPECT_EQ(read, number);
    }
    const KetraExtension *stored = nullptr;
    ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &row.objid, &stored, nullptr), 0);
    EXPECT_EQ(stored->criticalOption == 1 && stored->critical == 1, row.critical);
    for (const int32_t number : row.refused) {
      Err err;
      EXPECT_EQ(row.set(extensions, &number, err), -1);
      EXPECT_EQ(err.code(), row.setCode);
      EXPECT_EQ(err.trace(), std::vector<std::string>{set + ": " + row.reason});
      EXPECT_EQ(err.block.entries[0].value, &number);
      EXPECT_EQ(err.block.entries[0].valueLength, 4u);
    }
    // What another encoder wrote.
    Octets octets = fromHex(std::string(row.tag) + " 01 00");
    octets[2] = static_cast<uint8_t>(row.refused[0]);
    extensions.store(row.objid, octets);
    int32_t read = 0;
    Err err;
    EXPECT_EQ(row.get(extensions, &read, err), -1);
    EXPECT_EQ(err.code(), row.getCode);
    EXPECT_EQ(err.trace(), std::vector<std::string>{get + ": " + row.reason});
    EXPECT_EQ(err.block.entries[0].value, &read);
    EXPECT_EQ(read, row.refused[0]);
    extensions.store(row.objid, fromHex(std::string(row.tag) + " 05 01 00 00 00 00"));
    Err range;
    EXPECT_EQ(row.get(extensions, &read, range), -1);
    EXPECT_EQ(range.code(), uint32_t{AsnError_Range});
    Err null;
    EXPECT_EQ(row.set(extensions, nullptr, null) + row.get(nullptr, &read, null), -2);
    EXPECT_EQ(null.code(), 0x01460F02u);
  }
}

TEST(InstructionCode, SetGet) {
  Extensions extensions;
  const uint32_t arcs[] = {1, 2, 840, 10040, 2, 1};
  const Objid reject{arcs, 6};
  const Objid one{arcs, 1};
  Objid read{};
  ASSERT_EQ(KetraObjectSsetInstructionCode(extensions, &reject, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_InstructionCode), "06 07 2A 86 48 CE 38 02 01");
  ASSERT_EQ(KetraObjectSgetInstructionCode(extensions, &read, nullptr), 0);
  EXPECT_EQ(textOf(read), "1.2.840.10040.2.1");
  Err err;
  EXPECT_EQ(KetraObjectSsetInstructionCode(extensions, &one, err), -1);
  EXPECT_EQ(err.trace().back(), "KetraObjectSsetInstructionCode: Call AsnCheckObjidBER");
  extensions.store(X509Objid_InstructionCode, fromHex("06 81 81 +01*129"));
  Err range;
  EXPECT_EQ(KetraObjectSgetInstructionCode(extensions, &read, range), -1);
  EXPECT_EQ(range.code(), uint32_t{AsnError_Range}) << "130 arcs";
}

Gtime timeOf(const char *text) {
  Gtime time{};
  EXPECT_EQ(GtimeFromText(text, &time, nullptr), 0);
  return time;
}
std::string textOfTime(const Gtime &time) {
  char text[40];
  EXPECT_EQ(GtimeToText(&time, text, sizeof text, nullptr), 0);
  return text;
}
std::size_t cacheNodes(KetraObject object) {
  std::size_t count = 0;
  for (void *node = object->structuredCache; node != nullptr; node = *static_cast<void **>(node)) ++count;
  return count;
}

TEST(InvalidityDate, SetGet) {
  Extensions extensions;
  const Gtime date = timeOf("2024-01-01T00:00:00Z");
  const Gtime beyond{0x7FFFFFFF, 0};
  Gtime read{};
  ASSERT_EQ(KetraObjectSsetInvalidityDate(extensions, &date, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_InvalidityDate), "18 0F 32 30 32 34 30 31 30 31 30 30 30 30 30 30 5A");
  ASSERT_EQ(KetraObjectSgetInvalidityDate(extensions, &read, nullptr), 0);
  EXPECT_EQ(textOfTime(read), "2024-01-01T00:00:00Z");
  extensions.store(X509Objid_InvalidityDate, fromHex("18 13 32 30 32 34 30 31 30 31 30 30 30 30 30 30 2B 30 31 30 30"));
  ASSERT_EQ(KetraObjectSgetInvalidityDate(extensions, &read, nullptr), 0);
  EXPECT_EQ(textOfTime(read), "2023-12-31T23:00:00Z");
  EXPECT_EQ(cacheNodes(extensions), 1u) << "the second get uses the first one's node";
  Err err;
  EXPECT_EQ(KetraObjectSsetInvalidityDate(extensions, &beyond, err), -1);
  EXPECT_EQ(err.trace().back(), "KetraObjectSsetInvalidityDate: Call AsnCheckGtimeBER");
}

TEST(PrivateKeyUsagePeriod, SetGet) {
  const Gtime from = timeOf("2024-01-01T00:00:00Z");
  const Gtime to = timeOf("2025-01-01T00:00:00.5Z");
  const Extensions extensions;
  for (const bool before : {false, true}) {
    for (const bool after : {false, true}) {
      const KetraPrivateKeyUsagePeriod period{{from, before ? 1 : 0}, {to, after ? 1 : 0}};
      KetraPrivateKeyUsagePeriod read{{{9, 9}, 9}, {{9, 9}, 9}};
      ASSERT_EQ(KetraObjectSsetPrivateKeyUsagePeriod(extensions, &period, nullptr), 0);
      const std::string stored = extensions.stored(X509Objid_PrivateKeyUsagePeriod);
      EXPECT_EQ(stored.find("80 0F 32 30 32 34") != std::string::npos, before);
      EXPECT_EQ(stored.find("81 11 32 30 32 35") != std::string::npos, after);
      ASSERT_EQ(KetraObjectSgetPrivateKeyUsagePeriod(extensions, &read, nullptr), 0);
      EXPECT_EQ(read.notBefore.option, before ? 1 : 0);
      EXPECT_EQ(read.notAfter.option, after ? 1 : 0);
      if (after) {
        EXPECT_EQ(textOfTime(read.notAfter.value), "2025-01-01T00:00:00.5Z");
      }
    }
  }
  EXPECT_EQ(cacheNodes(extensions), 1u);
  const KetraPrivateKeyUsagePeriod odd{{from, 1}, {to, 2}};
  Err err;
  EXPECT_EQ(KetraObjectSsetPrivateKeyUsagePeriod(extensions, &odd, err), -1);
  EXPECT_EQ(err.trace().back(), "KetraObjectSsetPrivateKeyUsagePeriod: Call AsnCheckGtimeOptBER(notAfter)");
}

TEST(ExtKeyUsage, SetCountGet) {
  Chains samples(kSamples);
  Chains read(kPrepared);
  Extensions extensions;
  uint32_t count = 0;
  KetraKeyPurposeId third{nullptr, {nullptr, 9}};
  ASSERT_EQ(KetraObjectSsetExtKeyUsage(extensions, 1, samples.purposes, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_ExtKeyUsage), Chains::kPurposes);
  ASSERT_EQ(KetraObjectSgetExtKeyUsageCalKeyPurposeId(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 2u);
  read.purposes[1].next = &third;
  ASSERT_EQ(KetraObjectSgetExtKeyUsage(extensions, read.purposes, nullptr), 0);
  EXPECT_EQ(textOf(read.purposes[0].keyPurposeId) + " " + textOf(read.purposes[1].keyPurposeId), "1.2.3.1 1.2.3.2");
  EXPECT_EQ(third.keyPurposeId.count, 9u);
  EXPECT_EQ(AsnMemObjectFree(extensions.pool(), read.purposes[1].keyPurposeId.arcs, nullptr), 0);
  read.purposes[0].next = nullptr;
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetExtKeyUsage(extensions, read.purposes, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x0146DF99u);
  EXPECT_EQ(tooShort.trace(), std::vector<std::string>{"KetraObjectSgetExtKeyUsage: Chain of KeyPurposeId"});
  EXPECT_EQ(tooShort.block.entries[0].valueOctets[0], 2u);

  extensions.store(X509Objid_ExtKeyUsage, fromHex("30 00"));
  EXPECT_EQ(KetraObjectSgetExtKeyUsageCalKeyPurposeId(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  Err none;
  EXPECT_EQ(KetraObjectSgetExtKeyUsage(extensions, read.purposes, none), -1);
  EXPECT_EQ(none.code(), 0x0146DF89u);
  EXPECT_EQ(none.trace(), std::vector<std::string>{"KetraObjectSgetExtKeyUsage: Count of SequenceOf = 0"});
  Err empty;
  EXPECT_EQ(KetraObjectSsetExtKeyUsage(extensions, 1, nullptr, empty), -1);
  EXPECT_EQ(empty.code(), 0x01467089u);
  EXPECT_EQ(empty.trace(), std::vector<std::string>{"KetraObjectSsetExtKeyUsage: Count = 0"});
}

TEST(SubjectDirectoryAttributes, SetGet) {
  const Attributes attributes;
  Extensions extensions;
  Err absent;
  EXPECT_EQ(KetraObjectSgetSubjectDirectoryAttributes(extensions, nullptr, absent), -1);
  EXPECT_EQ(absent.code(), 0x0146F204u) << "looked up before the handle is";
  ASSERT_EQ(KetraObjectSsetSubjectDirectoryAttributes(extensions, attributes, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_SubjectDirectoryAttributes), Attributes::kDer);
  const KetraExtension *stored = nullptr;
  ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &X509Objid_SubjectDirectoryAttributes, &stored, nullptr), 0);
  EXPECT_NE(stored->criticalOption, 1);

  Attributes read;
  AsnEncodedData encoding{};
  extensions.store(X509Objid_SubjectDirectoryAttributes, fromHex("30 80 30 80 06 03 2A 03 05 31 02 05 00 00 00 00 00"));
  ASSERT_EQ(KetraObjectSgetSubjectDirectoryAttributes(extensions, read, nullptr), 0);
  ASSERT_EQ(X509AttributesObjectGetPduDER(read, &encoding, nullptr), 0);
  EXPECT_EQ(toHex(encoding), "30 0B 30 09 06 03 2A 03 05 31 02 05 00");
  extensions.store(X509Objid_SubjectDirectoryAttributes, fromHex("30 00"));
  Err empty;
  EXPECT_EQ(KetraObjectSgetSubjectDirectoryAttributes(extensions, read, empty), -1);
  EXPECT_EQ(empty.trace().back(), "KetraObjectSgetSubjectDirectoryAttributes: Call X509AttributesObjectSetPduBER");

  Err set;
  EXPECT_EQ(KetraObjectSsetSubjectDirectoryAttributes(extensions, nullptr, set), -1);
  EXPECT_EQ(set.code(), 0x0146617Cu);
  EXPECT_EQ(set.trace(), std::vector<std::string>{
                             "KetraObjectSsetSubjectDirectoryAttributes: Not Exist SubjectDirectoryAttributes"});
  Err get;
  EXPECT_EQ(KetraObjectSgetSubjectDirectoryAttributes(extensions, nullptr, get), -1);
  EXPECT_EQ(get.code(), 0x0146CA02u);
  EXPECT_EQ(get.trace(), std::vector<std::string>{"KetraObjectSgetSubjectDirectoryAttributes: None Param"});
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
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectCalExt(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 5u);
  for (uint32_t i = 0; i < count; ++i) {
    const KetraExtension *stored = nullptr;
    ASSERT_EQ(KetraObjectGetExtpByIndex(extensions, i, &stored, nullptr), 0);
    EXPECT_NE(stored->criticalOption, 1) << textOf(stored->objid);
  }
}

}  // namespace
}  // namespace ketra::test
