// DistributionPointName, CRLDistributionPoints and IssuingDistributionPoint.

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;
const AsnType *const kIssuing = schema::record(schema::Entry::IssuingDistributionPoint);
constexpr char kPath[] = "distributionPoint";

// An IssuingDistributionPoint that holds the given octets as its distributionPoint, decoded.
struct Decoded {
  explicit Decoded(const std::string &pointHex)
      : encoding(tlv(0x30, fromHex(pointHex))), work(kIssuing, encoding.data()) {
    EXPECT_EQ(work.decode(), 0);
  }
  std::string get(X509DistributionPointName &name) {
    return refusal(X509MUtilSgetDistributionPointName, pool, work.object, work.value, kPath, &name);
  }
  std::string get(X509DistributionPointNameOpt &name) {
    return refusal(X509MUtilSgetDistributionPointNameOpt, pool, work.object, work.value, kPath, &name);
  }

  Exact encoding;
  Pool pool;
  Work work;
};

TEST(DistributionPointName, WhereItsPartsLie) {
  Decoded decoded(Structures::kRelativeName);
  Structures read(kPrepared);
  X509DistributionPointName name = read.relative();
  ASSERT_EQ(decoded.get(name), "");
  const X509AttributeTypeAndValue &second = read.attributes[1];
  EXPECT_EQ(textOf(second.type) + ": " + toHex(second.value), "2.5.4.10: 13 01 42");
  const AsnEncodedData whole = decoded.encoding.data();
  EXPECT_TRUE(second.value.octets > whole.octets && second.value.octets < whole.octets + whole.length)
      << "the value points into the encoding";
  EXPECT_EQ(AsnMemObjectFree(decoded.pool, second.type.arcs, nullptr), 0) << "the arcs lie in the pool";
}

TEST(DistributionPointName, Absent) {
  Decoded decoded("");
  int32_t choice = -1;
  uint32_t count = 7;
  EXPECT_EQ(refusal(X509MUtilCalDistributionPointName, decoded.work.object, decoded.work.value, kPath, &choice, &count),
            "");
  EXPECT_TRUE(choice == 0 && count == 0);
  X509DistributionPointNameOpt name{{9, {}}, 9};
  EXPECT_EQ(decoded.get(name.value), "014FD27B X509MUtilSgetDistributionPointName: Not Exist DistributionPointName");
  EXPECT_EQ(decoded.get(name), "");
  EXPECT_EQ(name.option, 0);
  EXPECT_EQ(name.value.type, 9) << "nothing else is written";
}

TEST(DistributionPointName, ChainsOfAnotherLength) {
  Decoded decoded(Structures::kRelativeName);
  Structures read(kPrepared);
  read.attributes[0].next = nullptr;
  X509DistributionPointNameOpt name{read.relative(), 0};
  EXPECT_EQ(decoded.get(name), "014FD299 X509MUtilSgetDistributionPointName: Chain of DistributionPointName ");
  EXPECT_TRUE(name.option == 1 && name.value.type == 2);
  EXPECT_EQ(toHex(read.attributes[0].value), "13 01 41") << "stays filled";

  X509AttributeTypeAndValue third{nullptr, {nullptr, 9}, {nullptr, 9}};
  read.attributes[0].next = &read.attributes[1];
  read.attributes[1].next = &third;
  EXPECT_EQ(decoded.get(name), "");
  EXPECT_EQ(third.type.count + third.value.length, 18u);

  EXPECT_EQ(Decoded("A0 02 A1 00").get(name.value).substr(0, 8), "014FD288");
}

TEST(DistributionPointName, Refused) {
  Structures samples(kSamples);
  X509DistributionPointNameOpt name{{3, {}}, 1};
  Work work(kIssuing);
  EXPECT_EQ(refusal(X509MUtilCheckDistributionPointNameOpt, &name),
            "014FD447 X509MUtilCheckDistributionPointName: type [3]");
  Err set;
  EXPECT_EQ(X509MUtilSetDistributionPointName(work.object, work.value, kPath, &name.value, set), -1);
  EXPECT_EQ(set.innermost(), "014FD147 X509MUtilSetDistributionPointName: type [3]");
  EXPECT_TRUE(set.blames(name.value.type));
  AsnValue element = nullptr;
  EXPECT_EQ(AsnGetElement(work.object, work.value, kPath, &element, nullptr), 0);
  EXPECT_NE(element, nullptr) << "made before the alternative is looked at";

  name.value.type = 2;
  EXPECT_EQ(codeOf(X509MUtilCheckDistributionPointNameOpt, &name), 0x014FD488u);
  EXPECT_EQ(codeOf(X509MUtilSetDistributionPointName, work.object, work.value, kPath, &name.value), 0u);
  samples.attributes[1].value.length = 2;
  name.value = samples.relative();
  EXPECT_EQ(codeOf(X509MUtilCheckDistributionPointNameOpt, &name), uint32_t{AsnError_Truncated});

  name.value.type = 1;
  name.value.fullName = nullptr;
  EXPECT_EQ(codeOf(X509MUtilCheckDistributionPointName, &name.value), 0x0147F682u);
  name.option = 2;
  Err option;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, option), -1);
  EXPECT_EQ(option.code(), 0x014FD554u);
  EXPECT_EQ(option.block.entries[0].valueLength, sizeof name);
  name.option = 0;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, nullptr), 0);
}

// ---- CRLDistributionPoints -----------------------------------------------------------------------------------------

TEST(CrlDistributionPoints, Counts) {
  Structures samples(kSamples);
  const Extensions extensions;
  for (const int32_t critical : {1, 2}) {
    int32_t stored = -1;
    ASSERT_EQ(refusal(KetraObjectSsetCRLDistributionPoints, extensions, critical, samples.points), "");
    ASSERT_EQ(KetraObjectSgetCRLDistributionPointsCritical(extensions, &stored, nullptr), 0);
    EXPECT_EQ(stored, critical == 1 ? 1 : 0);
  }
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), golden("cRLDistributionPoints/two"));
  struct Row {
    uint32_t index;
    int32_t choice;
    uint32_t names;
    uint32_t issuers;
  };
  for (const Row &row : {Row{0, 1, 2, 1}, Row{1, 2, 2, 0}, Row{2, 0, 0, 0}, Row{0xFFFFFFFF, 0, 0, 0}}) {
    SCOPED_TRACE(row.index);
    int32_t choice = -1;
    uint32_t names = 9;
    uint32_t issuers = 9;
    ASSERT_EQ(
        refusal(KetraObjectSgetCRLDistributionPointsCalDistributionPointName, extensions, row.index, &choice, &names),
        "");
    ASSERT_EQ(refusal(KetraObjectSgetCRLDistributionPointsCalCRLIssuer, extensions, row.index, &issuers), "");
    EXPECT_TRUE(choice == row.choice && names == row.names && issuers == row.issuers);
  }
}

TEST(CrlDistributionPoints, WritesWhatIsThere) {
  Extensions extensions;
  extensions.store(X509Objid_CRLDistributionPoints, fromHex(golden("cRLDistributionPoints/two")));
  Structures read(kPrepared);
  const uint8_t untouched = 0;
  read.points[1].reasons.value = {&untouched, 77};
  KetraDistributionPoint third{nullptr, {{9, {}}, 9}, {}, {}};
  read.points[1].next = &third;
  ASSERT_EQ(refusal(KetraObjectSgetCRLDistributionPoints, extensions, read.points), "");
  EXPECT_EQ(read.points[0].reasons.value.bits, 7u);
  EXPECT_EQ(read.points[0].reasons.value.octets[0], 0x06);
  EXPECT_EQ(read.points[1].reasons.option + read.points[1].cRLIssuer.option, 0);
  EXPECT_TRUE(read.points[1].reasons.value.octets == &untouched && read.points[1].reasons.value.bits == 77);
  EXPECT_EQ(third.distributionPoint.option, 9);

  read.points[0].next = nullptr;
  EXPECT_EQ(refusal(KetraObjectSgetCRLDistributionPoints, extensions, read.points),
            "0146D799 KetraObjectSgetCRLDistributionPoints: Chain of CRLDistributionPoints [2]");
}

TEST(CrlDistributionPoints, ReasonsOfAnyLength) {
  const Extensions extensions;
  const uint8_t nine[] = {0x41, 0x80};
  const KetraDistributionPoint point{nullptr, {}, {{nine, 9}, 1}, {}};
  ASSERT_EQ(refusal(KetraObjectSsetCRLDistributionPoints, extensions, 0, &point), "");
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), "30 07 30 05 81 03 07 41 80");
}

TEST(CrlDistributionPoints, Refused) {
  Extensions extensions;
  Structures samples(kSamples);
  const auto set = [&] { return refusal(KetraObjectSsetCRLDistributionPoints, extensions, 1, samples.points); };
  EXPECT_EQ(refusal(KetraObjectSsetCRLDistributionPoints, extensions, 1, nullptr),
            "014FC187 X509MUtilCheckCRLDistributionPoints: Count = 0");
  samples.points[1].reasons.option = 2;
  EXPECT_EQ(set().substr(9, 17), "AsnCheckBitOptBER");
  samples.points[1].reasons.option = 0;
  samples.points[1].cRLIssuer = {nullptr, 1};
  EXPECT_EQ(set(), "0147F682 X509MUtilCheckGenNames: Count = 0");
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), "absent");

  extensions.store(X509Objid_CRLDistributionPoints, fromHex("30 00"));
  uint32_t count = 7;
  EXPECT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPoint(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(refusal(KetraObjectSgetCRLDistributionPoints, extensions, samples.points),
            "0146D787 KetraObjectSgetCRLDistributionPoints: Count of SequenceOf = 0");
}

// ---- IssuingDistributionPoint --------------------------------------------------------------------------------------

TEST(IssuingDistributionPoint, FalseAndAbsent) {
  Structures samples(kSamples);
  Structures read(kPrepared);
  const Extensions extensions;
  ASSERT_EQ(refusal(KetraObjectSsetIssuingDistributionPoint, extensions, &samples.issuing), "");
  EXPECT_EQ(extensions.stored(X509Objid_IssuingDistributionPoint), golden("issuingDistributionPoint/all"));
  EXPECT_EQ(extensions.find(X509Objid_IssuingDistributionPoint)->critical, 1);
  ASSERT_EQ(refusal(KetraObjectSgetIssuingDistributionPoint, extensions, &read.issuing), "");
  EXPECT_TRUE(read.issuing.onlyContainsCACerts.option == 1 && read.issuing.onlyContainsCACerts.value == 0)
      << "a FALSE that was written";
  EXPECT_EQ(read.issuing.onlySomeReasons.value.bits, 7u);

  const uint8_t untouched = 0;
  const KetraIssuingDistributionPoint none{};
  read.issuing.onlySomeReasons.value = {&untouched, 77};
  ASSERT_EQ(refusal(KetraObjectSsetIssuingDistributionPoint, extensions, &none), "");
  EXPECT_EQ(extensions.stored(X509Objid_IssuingDistributionPoint), "30 00");
  ASSERT_EQ(refusal(KetraObjectSgetIssuingDistributionPoint, extensions, &read.issuing), "");
  EXPECT_EQ(read.issuing.distributionPoint.option + read.issuing.onlySomeReasons.option, 0);
  EXPECT_EQ(read.issuing.indirectCRL.option, 0);
  EXPECT_TRUE(read.issuing.onlySomeReasons.value.octets == &untouched && read.issuing.onlySomeReasons.value.bits == 77);
  int32_t choice = -1;
  uint32_t count = 7;
  ASSERT_EQ(KetraObjectSgetIssuingDistributionPointCalDistributionPointName(extensions, &choice, &count, nullptr), 0);
  EXPECT_TRUE(choice == 0 && count == 0);
}

TEST(IssuingDistributionPoint, Refused) {
  Extensions extensions;
  Structures samples(kSamples);
  samples.issuing.distributionPoint.option = 2;
  EXPECT_EQ(codeOf(KetraObjectSsetIssuingDistributionPoint, extensions, &samples.issuing), 0x014FD554u);
  // A component of a later edition would change what the others mean.
  extensions.store(X509Objid_IssuingDistributionPoint, fromHex("30 03 85 01 FF"));
  EXPECT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &samples.issuing, nullptr), -1);
  extensions.store(X509Objid_IssuingDistributionPoint, tlv(0x30, fromHex(Structures::kFullName)));
  Structures read(kPrepared);
  read.issuing.distributionPoint.value = read.full();
  read.fullName.node(0).next = nullptr;
  EXPECT_EQ(codeOf(KetraObjectSgetIssuingDistributionPoint, extensions, &read.issuing), 0x0147F499u);
  EXPECT_TRUE(read.issuing.distributionPoint.option == 1 && read.issuing.distributionPoint.value.type == 1);
}

TEST(DistributionPoints, NullParameters) {
  const Extensions extensions;
  int32_t choice = 0;
  uint32_t count = 0;
  Err err;
  EXPECT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPoint(extensions, nullptr, err), -1);
  EXPECT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPointName(extensions, 0, nullptr, &count, err), -1);
  EXPECT_EQ(KetraObjectSgetCRLDistributionPointsCalCRLIssuer(extensions, 0, nullptr, err), -1);
  EXPECT_EQ(KetraObjectSsetIssuingDistributionPoint(extensions, nullptr, err), -1);
  EXPECT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, nullptr, err), -1);
  EXPECT_EQ(KetraObjectSgetIssuingDistributionPointCalDistributionPointName(extensions, &choice, nullptr, err), -1);
  EXPECT_EQ(X509MUtilSetDistributionPointName(nullptr, nullptr, kPath, nullptr, err), -1);
  EXPECT_EQ(X509MUtilSgetDistributionPointName(nullptr, nullptr, nullptr, kPath, nullptr, err), -1);
  EXPECT_EQ(X509MUtilSgetDistributionPointNameOpt(nullptr, nullptr, nullptr, kPath, nullptr, err), -1);
  EXPECT_EQ(X509MUtilCalDistributionPointName(nullptr, nullptr, kPath, &choice, &count, err), -1);
  EXPECT_EQ(X509MUtilCheckDistributionPointName(nullptr, err), -1);
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(nullptr, err), -1);
  EXPECT_EQ(err.code(), 0x01460F02u);
  EXPECT_EQ(err.block.count, 12u);
}

}  // namespace
}  // namespace ketra::test
