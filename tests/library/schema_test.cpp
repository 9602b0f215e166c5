// Walks every record of the module and compares it with the definitions, written here a second time as text.

#include "schema/schema.h"

#include <sstream>

#include "support/support.h"

namespace ketra::test {
namespace {

// One record a line: depth by indentation. "name tag class kind [own] [explicit] [optional] [count n] [-> type
// #record]"
std::string describe(std::size_t index) {
  const AsnType &r = schema::kModule[index];
  std::ostringstream text;
  text << std::hex << std::uppercase;
  text << (r.name == nullptr ? "(element)" : r.name) << " " << (r.descriptor >> 24) << " " << (r.descriptor >> 8 & 0xFF)
       << " " << (r.descriptor & 0xFF) << std::dec;
  if ((r.flags & ASN_FLAG_OWN_TAG) != 0) text << " own";
  if ((r.flags & ASN_FLAG_EXPLICIT) != 0) text << " explicit";
  if ((r.flags & ASN_FLAG_OPTIONAL) != 0) text << " optional";
  if (r.count != 0) text << " count " << r.count;
  if (r.link != 0) text << " -> " << schema::kModule[index + static_cast<std::size_t>(r.link)].name;
  return text.str();
}

constexpr char kDefinitions[] = R"(KetraDefinitions 0 13 13 count 23
authorityKeyIdentifier 30 11 14 -> AuthorityKeyIdentifier
subjectKeyIdentifier 4 10 3 -> SubjectKeyIdentifier
keyUsage 3 18 10 -> KeyUsage
extKeyUsage 30 15 16 -> ExtKeyUsage
privateKeyUsagePeriod 30 11 14 -> PrivateKeyUsagePeriod
certificatePolicies 30 15 16 -> CertificatePolicies
policyMappings 30 15 16 -> PolicyMappings
subjectAltName 30 15 16 -> SubjectAltName
issuerAltName 30 15 16 -> IssuerAltName
subjectDirectoryAttributes 30 15 16 -> SubjectDirectoryAttributes
basicConstraints 30 11 14 -> BasicConstraints
nameConstraints 30 11 14 -> NameConstraints
policyConstraints 30 11 14 -> PolicyConstraints
cRLNumber 2 10 2 -> CRLNumber
reasonCode A 10 18 -> ReasonCode
instructionCode 6 18 11 -> InstructionCode
invalidityDate 18 10 3 -> InvalidityDate
cRLDistributionPoints 30 15 16 -> CRLDistributionPoints
issuingDistributionPoint 30 11 14 -> IssuingDistributionPoint
certificateIssuer 30 15 16 -> CertificateIssuer
deltaCRLIndicator 2 10 2 -> DeltaCRLIndicator
generalName 0 13 13 -> GeneralName
directoryString 0 13 13 -> DirectoryString
AuthorityKeyIdentifier 30 11 14 count 3
keyIdentifier 80 10 3 own optional -> KeyIdentifier
authorityCertIssuer A1 15 16 own optional -> GeneralNames
authorityCertSerialNumber 82 10 3 own optional -> CertificateSerialNumber
KeyIdentifier 4 10 3 -> OCTETSTRING
SubjectKeyIdentifier 4 10 3 -> KeyIdentifier
KeyUsage 3 18 10 -> BITSTRING
ExtKeyUsage 30 15 16 count 1
(element) 6 18 11 -> KeyPurposeId
KeyPurposeId 6 18 11 -> OBJECTIDENTIFIER
PrivateKeyUsagePeriod 30 11 14 count 2
notBefore 80 10 3 own optional -> GeneralizedTime
notAfter 81 10 3 own optional -> GeneralizedTime
CertificatePolicies 30 15 16 -> CertificatePoliciesSyntax
CertificatePoliciesSyntax 30 15 16 count 1
(element) 30 11 14 -> PolicyInformation
PolicyInformation 30 11 14 count 2
policyIdentifier 6 18 11 -> CertPolicyId
policyQualifiers 30 15 16 optional -> PolicyQualifiers
PolicyQualifiers 30 15 16 count 1
(element) 30 11 14 -> PolicyQualifierInfo
CertPolicyId 6 18 11 -> OBJECTIDENTIFIER
PolicyQualifierInfo 30 11 14 count 2
policyQualifierId 6 18 11 -> OBJECTIDENTIFIER
qualifier 0 12 12 optional
PolicyMappings 30 15 16 -> PolicyMappingsSyntax
PolicyMappingsSyntax 30 15 16 count 1
(element) 30 11 14 -> PolicyMapping
PolicyMapping 30 11 14 count 2
issuerDomainPolicy 6 18 11 -> CertPolicyId
subjectDomainPolicy 6 18 11 -> CertPolicyId
SubjectAltName 30 15 16 -> GeneralNames
GeneralNames 30 15 16 count 1
(element) 0 12 12 -> EncodedGeneralName
EncodedGeneralName 0 12 12
GeneralName 0 13 13 count 9
otherName A0 11 14 own -> InstanceOtherName
rfc822Name 81 10 3 own -> IA5String
dNSName 82 10 3 own -> IA5String
x400Address A3 11 14 own -> ORAddress
directoryName A4 12 12 own explicit -> Name
ediPartyName A5 11 14 own -> EDIPartyName
uniformResourceIdentifier 86 10 3 own -> IA5String
iPAddress 87 10 3 own -> OCTETSTRING
registeredID 88 18 11 own -> OBJECTIDENTIFIER
InstanceOtherName 30 11 14 count 2
type 6 18 11 -> OBJECTIDENTIFIER
value A0 12 12 own explicit optional
EDIPartyName 30 11 14 count 2
nameAssigner A0 13 13 own explicit optional -> DirectoryString
partyName A1 13 13 own explicit -> DirectoryString
IssuerAltName 30 15 16 -> GeneralNames
SubjectDirectoryAttributes 30 15 16 -> AttributesSyntax
AttributesSyntax 30 15 16 count 1
(element) 30 11 14 -> Attribute
BasicConstraints 30 11 14 -> BasicConstraintsSyntax
BasicConstraintsSyntax 30 11 14 count 2
cA 1 10 1 optional
pathLenConstraint 2 10 2 optional
NameConstraints 30 11 14 -> NameConstraintsSyntax
NameConstraintsSyntax 30 11 14 count 2
permittedSubtrees A0 15 16 own optional -> GeneralSubtrees
excludedSubtrees A1 15 16 own optional -> GeneralSubtrees
GeneralSubtrees 30 15 16 count 1
(element) 30 11 14 -> GeneralSubtree
GeneralSubtree 30 11 14 count 3
base 0 12 12 -> EncodedGeneralName
minimum 80 10 2 own optional -> BaseDistance
maximum 81 10 2 own optional -> BaseDistance
BaseDistance 2 10 2
PolicyConstraints 30 11 14 -> PolicyConstraintsSyntax
PolicyConstraintsSyntax 30 11 14 count 2
requireExplicitPolicy 80 10 2 own optional -> SkipCerts
inhibitPolicyMapping 81 10 2 own optional -> SkipCerts
SkipCerts 2 10 2
CRLNumber 2 10 2
ReasonCode A 10 18 -> CRLReason
CRLReason A 10 18
InstructionCode 6 18 11 -> HoldInstruction
HoldInstruction 6 18 11 -> OBJECTIDENTIFIER
InvalidityDate 18 10 3 -> GeneralizedTime
CRLDistributionPoints 30 15 16 -> CRLDistPointsSyntax
CRLDistPointsSyntax 30 15 16 count 1
(element) 30 11 14 -> DistributionPoint
DistributionPoint 30 11 14 count 3
distributionPoint A0 13 13 own explicit optional -> DistributionPointName
reasons 81 18 10 own optional -> ReasonFlags
cRLIssuer A2 15 16 own optional -> GeneralNames
DistributionPointName 0 13 13 count 2
fullName A0 15 16 own -> GeneralNames
nameRelativeToCRLIssuer A1 15 17 own -> RelativeDistinguishedName
ReasonFlags 3 18 10 -> BITSTRING
IssuingDistributionPoint 30 11 14 -> IssuingDistPointSyntax
IssuingDistPointSyntax 30 11 14 count 5
distributionPoint A0 13 13 own explicit optional -> DistributionPointName
onlyContainsUserCerts 81 10 1 own optional
onlyContainsCACerts 82 10 1 own optional
onlySomeReasons 83 18 10 own optional -> ReasonFlags
indirectCRL 84 10 1 own optional
CertificateIssuer 30 15 16 -> GeneralNames
DeltaCRLIndicator 2 10 2 -> BaseCRLNumber
BaseCRLNumber 2 10 2 -> CRLNumber
Name 0 12 12
RelativeDistinguishedName 31 15 17 count 1
(element) 30 11 14 -> AttributeTypeAndValue
Attribute 30 11 14 count 2
type 6 18 11 -> AttributeType
values 31 15 17 -> AttributeValues
AttributeValues 31 15 17 count 1
(element) 0 12 12 -> AttributeValue
AttributeType 6 18 11 -> OBJECTIDENTIFIER
AttributeValue 0 12 12
AttributeTypeAndValue 30 11 14 count 2
type 6 18 11 -> AttributeType
value 0 12 12 -> AttributeValue
AttributeType 6 18 11 -> OBJECTIDENTIFIER
AttributeValue 0 12 12
DirectoryString 0 13 13 count 5
teletexString 14 10 3 -> TeletexString
printableString 13 10 3 -> PrintableString
bmpString 1E 10 3 -> BMPString
universalString 1C 10 3 -> UniversalString
uTF8String C 10 3 -> UTF8String
CertificateSerialNumber 2 10 3 -> SignedIntegerString
ORAddress 30 11 14 count 3
standardAttributes 0 12 12 -> StandardAttributes
domainDefinedAttributes 30 15 16 optional -> DomainDefinedAttributes
extensionAttributes 31 15 17 optional -> ExtensionAttributes
StandardAttributes 0 12 12
DomainDefinedAttributes 30 15 16 count 1
(element) 0 12 12
ExtensionAttributes 31 15 17 count 1
(element) 0 12 12
SignedIntegerString 2 10 3 own -> OCTETSTRING
BITSTRING 3 18 10
OCTETSTRING 4 10 3
OBJECTIDENTIFIER 6 18 11
UniversalString 1C 10 3 own -> OCTETSTRING
BMPString 1E 10 3 own -> OCTETSTRING
UTF8String C 10 3 own -> OCTETSTRING
PrintableString 13 10 3
TeletexString 14 10 3
IA5String 16 10 3
GeneralizedTime 18 10 3
)";

TEST(Schema, EveryRecord) {
  std::istringstream expected(kDefinitions);
  std::size_t index = 0;
  std::size_t components = 0;  // still to come before the next type
  for (std::string line; std::getline(expected, line); ++index) {
    ASSERT_LT(index + 1, schema::kModuleSize) << line;
    EXPECT_EQ(describe(index), line);
    const AsnType &record = schema::kModule[index];
    EXPECT_EQ(record.descriptor >> 16 & 0xFF, 1u) << line;
    EXPECT_EQ(record.flags & 0xF8FFFFFF, 0u) << line;
    if (components > 0) {
      EXPECT_EQ(record.count, 0u) << line;
      --components;
    } else {
      components = record.count;
      EXPECT_NE(record.name, nullptr);
    }
  }
  ASSERT_EQ(index + 1, schema::kModuleSize);
  const AsnType &terminator = schema::kModule[index];
  EXPECT_EQ(terminator.descriptor, 0x00FFFFFFu);
  EXPECT_TRUE(terminator.flags == 0 && terminator.count == 0 && terminator.link == 0 && terminator.name == nullptr);
}

// Two types occur twice by name: the list of attributes refers to the first pair, AttributeTypeAndValue to the second.
TEST(Schema, NamesThatOccurTwice) {
  std::vector<std::size_t> types;
  std::vector<std::size_t> references;
  for (std::size_t i = 0; i + 1 < schema::kModuleSize; ++i) {
    const AsnType &record = schema::kModule[i];
    const std::string name = record.name == nullptr ? "" : record.name;
    if (name == "AttributeType" || name == "AttributeValue") types.push_back(i);
    if (record.link == 0) continue;
    const std::size_t target = i + static_cast<std::size_t>(record.link);
    const std::string targetName = schema::kModule[target].name;
    if (targetName == "AttributeType" || targetName == "AttributeValue") references.push_back(target);
  }
  ASSERT_EQ(types.size(), 4u);
  EXPECT_EQ(references, (std::vector{types[0], types[1], types[2], types[3]}));
}

TEST(Schema, EntryPoints) {
  const char *const names[] = {"AuthorityKeyIdentifier",
                               "SubjectKeyIdentifier",
                               "KeyUsage",
                               "ExtKeyUsage",
                               "PrivateKeyUsagePeriod",
                               "CertificatePoliciesSyntax",
                               "GeneralNames",
                               "GeneralName",
                               "BasicConstraints",
                               "CRLNumber",
                               "BITSTRING",
                               "OCTETSTRING",
                               "OBJECTIDENTIFIER",
                               "PolicyMappings",
                               "SubjectDirectoryAttributes",
                               "NameConstraints",
                               "PolicyConstraints",
                               "CRLReason",
                               "HoldInstruction",
                               "InvalidityDate",
                               "CRLDistributionPoints",
                               "IssuingDistributionPoint",
                               "CertificateIssuer",
                               "BaseCRLNumber",
                               "ORAddress"};
  ASSERT_EQ(std::size(names), schema::kEntryCount);
  for (std::size_t i = 0; i < schema::kEntryCount; ++i) EXPECT_STREQ(schema::kEntryPoints[i]->name, names[i]);
}

}  // namespace
}  // namespace ketra::test
