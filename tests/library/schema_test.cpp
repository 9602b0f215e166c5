// Walks every record of the module and compares it with the definitions, which schema.txt holds a second time.

#include "schema/schema.h"

#include <fstream>
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

TEST(Schema, EveryRecord) {
  std::ifstream expected(KETRA_SCHEMA);
  std::size_t index = 0;
  std::size_t components = 0;  // still to come before the next type
  for (std::string line; std::getline(expected, line); ++index) {
    while (line.starts_with('#')) std::getline(expected, line);
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
  const char *const names =
      "AuthorityKeyIdentifier SubjectKeyIdentifier KeyUsage ExtKeyUsage PrivateKeyUsagePeriod "
      "CertificatePoliciesSyntax GeneralNames GeneralName BasicConstraints CRLNumber BITSTRING OCTETSTRING "
      "OBJECTIDENTIFIER PolicyMappings SubjectDirectoryAttributes NameConstraints PolicyConstraints CRLReason "
      "HoldInstruction InvalidityDate CRLDistributionPoints IssuingDistributionPoint CertificateIssuer BaseCRLNumber "
      "ORAddress";
  std::string entries;
  for (std::size_t i = 0; i < schema::kEntryCount; ++i) {
    entries += (i > 0 ? " " : "") + std::string(schema::kEntryPoints[i]->name);
  }
  EXPECT_EQ(entries, names);
}

}  // namespace
}  // namespace ketra::test
