// DistributionPointName, CRLDistributionPoints and IssuingDistributionPoint.

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;
const AsnType *const kIssuing = schema::record(schema::Entry::IssuingDistributionPoint);
constexpr char kPath[] = "distributionPoint";

// An IssuingDistributionPoint that holds the given octets as its distributionPoint.
Octets issuingWith(const std::string &pointHex) {
  Octets value = fromHex(pointHex);
  value.insert(value.begin(), {0x30, static_cast<uint8_t>(value.size())});
  return value;
}

TEST(DistributionPointName, BothAlternatives) {
  for (const bool isFull : {true, false}) {
    SCOPED_TRACE(isFull);
    Structures samples(kSamples);
    const X509DistributionPointName name = isFull ? samples.full() : samples.relative();
    ASSERT_EQ(X509MUtilCheckDistributionPointName(&name, nullptr), 0);
    Work built(kIssuing);
    ASSERT_EQ(X509MUtilSetDistributionPointName(built.object, built.value, kPath, &name, nullptr), 0);
    const std::string point = isFull ? Structures::kFullName : Structures::kRelativeName;
    EXPECT_EQ(built.encode(), toHex(issuingWith(point)));

    const Exact encoding(issuingWith(point));
    Work work(kIssuing, encoding.data());
    ASSERT_EQ(work.decode(), 0);
    int32_t choice = -1;
    uint32_t count = 0;
    ASSERT_EQ(X509MUtilCalDistributionPointName(work.object, work.value, kPath, &choice, &count, nullptr), 0);
    EXPECT_EQ(choice, isFull ? 1 : 2);
    EXPECT_EQ(count, 2u);

    const Pool pool;
    Structures prepared(kPrepared);
    X509DistributionPointName read = isFull ? prepared.full() : prepared.relative();
    ASSERT_EQ(X509MUtilSgetDistributionPointName(pool, work.object, work.value, kPath, &read, nullptr), 0);
    EXPECT_EQ(read.type, isFull ? 1 : 2);
    if (isFull) {
      EXPECT_EQ(prepared.fullName.at(1).ber(), sampleOf("iPAddress"));
      continue;
    }
    const X509AttributeTypeAndValue &second = prepared.attributes[1];
    EXPECT_EQ(std::vector(second.type.arcs, second.type.arcs + second.type.count),
              (std::vector<uint32_t>{2, 5, 4, 10}));
    EXPECT_EQ(toHex(second.value), "13 01 42");
    const AsnEncodedData whole = encoding.data();
    EXPECT_TRUE(second.value.octets > whole.octets && second.value.octets < whole.octets + whole.length)
        << "the value points into the encoding";
    EXPECT_EQ(AsnMemObjectFree(pool, second.type.arcs, nullptr), 0) << "the arcs lie in the pool";
  }
}

TEST(DistributionPointName, Absent) {
  const Exact encoding(fromHex("30 00"));
  const Pool pool;
  Structures prepared(kPrepared);
  Work work(kIssuing, encoding.data());
  ASSERT_EQ(work.decode(), 0);
  int32_t choice = -1;
  uint32_t count = 7;
  ASSERT_EQ(X509MUtilCalDistributionPointName(work.object, work.value, kPath, &choice, &count, nullptr), 0);
  EXPECT_EQ(choice, 0);
  EXPECT_EQ(count, 0u);
  Err err;
  EXPECT_EQ(X509MUtilSgetDistributionPointName(pool, work.object, work.value, kPath,
                                               &prepared.issuing.distributionPoint.value, err),
            -1);
  EXPECT_EQ(err.code(), 0x014FD27Bu);
  EXPECT_EQ(err.trace(),
            std::vector<std::string>{"X509MUtilSgetDistributionPointName: Not Exist DistributionPointName"});
  X509DistributionPointNameOpt optional{{9, {}}, 9};
  EXPECT_EQ(X509MUtilSgetDistributionPointNameOpt(pool, work.object, work.value, kPath, &optional, nullptr), 0);
  EXPECT_EQ(optional.option, 0);
  EXPECT_EQ(optional.value.type, 9) << "nothing else is written";
}

TEST(DistributionPointName, ChainsOfAnotherLength) {
  const Exact encoding(issuingWith(Structures::kRelativeName));
  const Pool pool;
  Work work(kIssuing, encoding.data());
  ASSERT_EQ(work.decode(), 0);
  Structures prepared(kPrepared);
  prepared.attributes[0].next = nullptr;
  X509DistributionPointNameOpt name{prepared.relative(), 0};
  Err err;
  EXPECT_EQ(X509MUtilSgetDistributionPointNameOpt(pool, work.object, work.value, kPath, &name, err), -1);
  EXPECT_EQ(err.code(), 0x014FD299u);
  EXPECT_EQ(err.trace(), (std::vector<std::string>{
                             "X509MUtilSgetDistributionPointName: Chain of DistributionPointName ",
                             "X509MUtilSgetDistributionPointNameOpt: Call X509MUtilSgetDistributionPointName"}));
  EXPECT_EQ(name.option, 1);
  EXPECT_EQ(name.value.type, 2);
  EXPECT_EQ(toHex(prepared.attributes[0].value), "13 01 41") << "stays filled";

  X509AttributeTypeAndValue third{nullptr, {nullptr, 9}, {nullptr, 9}};
  prepared.attributes[0].next = &prepared.attributes[1];
  prepared.attributes[1].next = &third;
  EXPECT_EQ(X509MUtilSgetDistributionPointNameOpt(pool, work.object, work.value, kPath, &name, nullptr), 0);
  EXPECT_EQ(third.type.count + third.value.length, 18u);

  const Exact none(issuingWith("A0 02 A1 00"));
  Work empty(kIssuing, none.data());
  ASSERT_EQ(empty.decode(), 0);
  Err nothing;
  EXPECT_EQ(X509MUtilSgetDistributionPointName(pool, empty.object, empty.value, kPath, &name.value, nothing), -1);
  EXPECT_EQ(nothing.code(), 0x014FD288u);
}

TEST(DistributionPointName, Refused) {
  Structures samples(kSamples);
  X509DistributionPointNameOpt name{{3, {}}, 1};
  Err check;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, check), -1);
  EXPECT_EQ(check.code(), 0x014FD447u);
  EXPECT_EQ(check.block.entries[0].valueLength, 4u);
  EXPECT_EQ(check.block.entries[0].valueOctets[0], 3u);
  Work work(kIssuing);
  Err set;
  EXPECT_EQ(X509MUtilSetDistributionPointName(work.object, work.value, kPath, &name.value, set), -1);
  EXPECT_EQ(set.code(), 0x014FD147u);
  EXPECT_EQ(set.block.entries[0].value, &name.value.type);
  AsnValue element = nullptr;
  EXPECT_EQ(AsnGetElement(work.object, work.value, kPath, &element, nullptr), 0);
  EXPECT_NE(element, nullptr) << "made before the alternative is looked at";

  name.value.type = 2;
  Err empty;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, empty), -1);
  EXPECT_EQ(empty.code(), 0x014FD488u);
  EXPECT_EQ(X509MUtilSetDistributionPointName(work.object, work.value, kPath, &name.value, nullptr), 0);
  samples.attributes[1].value.length = 2;
  name.value = samples.relative();
  Err malformed;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, malformed), -1);
  EXPECT_EQ(malformed.trace()[1], "X509MUtilCheckDistributionPointName: Call AsnCheckAnydBER");

  name.value.type = 1;
  name.value.fullName = nullptr;
  Err noNames;
  EXPECT_EQ(X509MUtilCheckDistributionPointName(&name.value, noNames), -1);
  EXPECT_EQ(noNames.code(), 0x0147F682u);
  EXPECT_EQ(noNames.trace()[1], "X509MUtilCheckDistributionPointName: Call X509MUtilCheckGenNames");
  name.option = 2;
  Err option;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, option), -1);
  EXPECT_EQ(option.code(), 0x014FD554u);
  EXPECT_EQ(option.block.entries[0].valueLength, sizeof name);
  name.option = 0;
  EXPECT_EQ(X509MUtilCheckDistributionPointNameOpt(&name, nullptr), 0);
}

// ---- CRLDistributionPoints -----------------------------------------------------------------------------------------

TEST(CrlDistributionPoints, SetCountGet) {
  Structures samples(kSamples);
  const Extensions extensions;
  Err err;
  for (const int32_t critical : {1, 2}) {
    int32_t stored = -1;
    ASSERT_EQ(KetraObjectSsetCRLDistributionPoints(extensions, critical, samples.points, err), 0) << err.text();
    ASSERT_EQ(KetraObjectSgetCRLDistributionPointsCritical(extensions, &stored, err), 0);
    EXPECT_EQ(stored, critical == 1 ? 1 : 0);
  }
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), Structures::pointsDer());
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), golden("cRLDistributionPoints/two"));

  uint32_t count = 0;
  ASSERT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPoint(extensions, &count, err), 0);
  EXPECT_EQ(count, 2u);
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
    ASSERT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPointName(extensions, row.index, &choice, &names, err),
              0);
    ASSERT_EQ(KetraObjectSgetCRLDistributionPointsCalCRLIssuer(extensions, row.index, &issuers, err), 0);
    EXPECT_EQ(choice, row.choice);
    EXPECT_EQ(names, row.names);
    EXPECT_EQ(issuers, row.issuers);
  }

  Structures read(kPrepared);
  const uint8_t untouched = 0;
  read.points[1].reasons.value = {&untouched, 77};
  KetraDistributionPoint third{nullptr, {{9, {}}, 9}, {}, {}};
  read.points[1].next = &third;
  ASSERT_EQ(KetraObjectSgetCRLDistributionPoints(extensions, read.points, err), 0) << err.text();
  EXPECT_EQ(read.fullName.at(0).ber(), sampleOf("dNSName"));
  EXPECT_EQ(read.points[0].reasons.option, 1);
  EXPECT_EQ(read.points[0].reasons.value.bits, 7u);
  EXPECT_EQ(read.points[0].reasons.value.octets[0], 0x06);
  EXPECT_EQ(read.points[0].cRLIssuer.option, 1);
  EXPECT_EQ(read.issuer.at(0).ber(), sampleOf("iPAddress"));
  EXPECT_EQ(read.points[1].distributionPoint.value.type, 2);
  EXPECT_EQ(toHex(read.attributes[0].value), "13 01 41");
  EXPECT_EQ(read.points[1].reasons.option, 0);
  EXPECT_EQ(read.points[1].reasons.value.octets, &untouched);
  EXPECT_EQ(read.points[1].reasons.value.bits, 77u);
  EXPECT_EQ(read.points[1].cRLIssuer.option, 0);
  EXPECT_EQ(third.distributionPoint.option, 9);

  read.points[0].next = nullptr;
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetCRLDistributionPoints(extensions, read.points, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x0146D799u);
  EXPECT_EQ(tooShort.trace(),
            std::vector<std::string>{"KetraObjectSgetCRLDistributionPoints: Chain of CRLDistributionPoints"});
  EXPECT_EQ(tooShort.block.entries[0].valueLength, 4u);
  EXPECT_EQ(tooShort.block.entries[0].valueOctets[0], 2u) << "the number of points";
}

TEST(CrlDistributionPoints, ReasonsOfAnyLength) {
  Structures samples(kSamples);
  Structures read(kPrepared);
  const Extensions extensions;
  const uint8_t nine[] = {0x41, 0x80};
  samples.points[0].next = nullptr;
  samples.points[0].distributionPoint.option = 0;
  samples.points[0].cRLIssuer.option = 0;
  samples.points[0].reasons.value = {nine, 9};
  ASSERT_EQ(KetraObjectSsetCRLDistributionPoints(extensions, 0, samples.points, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), "30 07 30 05 81 03 07 41 80");
  ASSERT_EQ(KetraObjectSgetCRLDistributionPoints(extensions, read.points, nullptr), 0);
  EXPECT_EQ(read.points[0].reasons.value.bits, 7u);
  EXPECT_EQ(read.points[0].reasons.value.octets[0], 0x40);
  EXPECT_EQ(read.points[0].distributionPoint.option + read.points[0].cRLIssuer.option, 0);

  samples.points[0].reasons.option = 0;
  ASSERT_EQ(KetraObjectSsetCRLDistributionPoints(extensions, 0, samples.points, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), "30 02 30 00");
  ASSERT_EQ(KetraObjectSgetCRLDistributionPoints(extensions, read.points, nullptr), 0);
  EXPECT_EQ(read.points[0].reasons.option, 0);
}

TEST(CrlDistributionPoints, Refused) {
  Extensions extensions;
  Structures samples(kSamples);
  Err empty;
  EXPECT_EQ(KetraObjectSsetCRLDistributionPoints(extensions, 1, nullptr, empty), -1);
  EXPECT_EQ(empty.code(), 0x014FC187u);
  EXPECT_EQ(empty.trace(), (std::vector<std::string>{
                               "X509MUtilCheckCRLDistributionPoints: Count = 0",
                               "KetraObjectSsetCRLDistributionPoints: Call X509MUtilCheckCRLDistributionPoints"}));
  samples.points[1].reasons.option = 2;
  Err option;
  EXPECT_EQ(KetraObjectSsetCRLDistributionPoints(extensions, 1, samples.points, option), -1);
  EXPECT_EQ(option.trace()[1], "X509MUtilCheckCRLDistributionPoints: Call AsnCheckBitOptBER");
  samples.points[1].reasons.option = 0;
  samples.points[1].cRLIssuer = {nullptr, 1};
  Err issuer;
  EXPECT_EQ(X509MUtilCheckCRLDistributionPoints(samples.points, issuer), -1);
  EXPECT_EQ(issuer.code(), 0x0147F682u);
  EXPECT_EQ(issuer.trace().back(), "X509MUtilCheckCRLDistributionPoints: Call X509MUtilCheckGenNamesOpt");
  EXPECT_EQ(extensions.stored(X509Objid_CRLDistributionPoints), "absent");

  extensions.store(X509Objid_CRLDistributionPoints, fromHex("30 00"));
  uint32_t count = 7;
  EXPECT_EQ(KetraObjectSgetCRLDistributionPointsCalDistributionPoint(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  Err none;
  EXPECT_EQ(KetraObjectSgetCRLDistributionPoints(extensions, samples.points, none), -1);
  EXPECT_EQ(none.code(), 0x0146D787u);
  EXPECT_EQ(none.trace(), std::vector<std::string>{"KetraObjectSgetCRLDistributionPoints: Count of SequenceOf = 0"});
}

// ---- IssuingDistributionPoint --------------------------------------------------------------------------------------

TEST(IssuingDistributionPoint, SetCountGet) {
  Structures samples(kSamples);
  Structures read(kPrepared);
  const Extensions extensions;
  Err err;
  ASSERT_EQ(KetraObjectSsetIssuingDistributionPoint(extensions, &samples.issuing, err), 0) << err.text();
  EXPECT_EQ(extensions.stored(X509Objid_IssuingDistributionPoint), golden("issuingDistributionPoint/all"));
  const KetraExtension *stored = nullptr;
  ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &X509Objid_IssuingDistributionPoint, &stored, nullptr), 0);
  EXPECT_EQ(stored->critical, 1);
  int32_t choice = 0;
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectSgetIssuingDistributionPointCalDistributionPointName(extensions, &choice, &count, err), 0);
  EXPECT_EQ(choice, 2);
  EXPECT_EQ(count, 2u);
  ASSERT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &read.issuing, err), 0) << err.text();
  EXPECT_EQ(toHex(read.attributes[1].value), "13 01 42");
  EXPECT_EQ(read.issuing.onlyContainsUserCerts.value, 1);
  EXPECT_EQ(read.issuing.onlyContainsCACerts.option, 1);
  EXPECT_EQ(read.issuing.onlyContainsCACerts.value, 0) << "a FALSE that was written";
  EXPECT_EQ(read.issuing.onlySomeReasons.value.bits, 7u);
  EXPECT_EQ(read.issuing.indirectCRL.value, 1);

  for (const auto &[value, hex] : {std::pair<KetraIssuingDistributionPoint, const char *>{{}, "30 00"},
                                   {{{}, {}, {}, {}, {1, 1}}, "30 03 84 01 FF"}}) {
    ASSERT_EQ(KetraObjectSsetIssuingDistributionPoint(extensions, &value, err), 0);
    EXPECT_EQ(extensions.stored(X509Objid_IssuingDistributionPoint), hex);
    ASSERT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &read.issuing, err), 0);
    EXPECT_EQ(read.issuing.distributionPoint.option + read.issuing.onlySomeReasons.option, 0);
    EXPECT_EQ(read.issuing.indirectCRL.option, value.indirectCRL.option);
    ASSERT_EQ(KetraObjectSgetIssuingDistributionPointCalDistributionPointName(extensions, &choice, &count, err), 0);
    EXPECT_EQ(choice, 0);
  }
}

TEST(IssuingDistributionPoint, Refused) {
  Extensions extensions;
  Structures samples(kSamples);
  samples.issuing.distributionPoint.option = 2;
  Err option;
  EXPECT_EQ(KetraObjectSsetIssuingDistributionPoint(extensions, &samples.issuing, option), -1);
  EXPECT_EQ(option.code(), 0x014FD554u);
  // A component of a later edition would change what the others mean.
  extensions.store(X509Objid_IssuingDistributionPoint, fromHex("30 03 85 01 FF"));
  EXPECT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &samples.issuing, nullptr), -1);
  extensions.store(X509Objid_IssuingDistributionPoint, issuingWith(Structures::kFullName));
  Structures read(kPrepared);
  read.issuing.distributionPoint.value = read.full();
  read.fullName.node(0).next = nullptr;
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &read.issuing, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x0147F499u);
  EXPECT_EQ(read.issuing.distributionPoint.option, 1);
  EXPECT_EQ(read.issuing.distributionPoint.value.type, 1);
  const uint8_t untouched = 0;
  read.issuing.onlySomeReasons.value = {&untouched, 77};
  extensions.store(X509Objid_IssuingDistributionPoint, fromHex("30 00"));
  ASSERT_EQ(KetraObjectSgetIssuingDistributionPoint(extensions, &read.issuing, nullptr), 0);
  EXPECT_EQ(read.issuing.onlySomeReasons.value.octets, &untouched);
  EXPECT_EQ(read.issuing.onlySomeReasons.value.bits, 77u);
}

TEST(DistributionPoints, NullParameters) {
  const Extensions extensions;
  Structures samples(kSamples);
  int32_t choice = 0;
  uint32_t count = 0;
  Err err;
  EXPECT_EQ(KetraObjectSsetCRLDistributionPoints(nullptr, 1, samples.points, err), -1);
  EXPECT_EQ(KetraObjectSgetCRLDistributionPoints(nullptr, samples.points, err), -1);
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
  EXPECT_EQ(err.block.count, 14u);
}

}  // namespace
}  // namespace ketra::test
