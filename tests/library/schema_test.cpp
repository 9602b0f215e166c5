// Walks every record of the module and compares it with the definitions, which schema.txt holds a second time.

#include "schema/schema.h"

#include <fstream>
#include <sstream>

#include "support/support.h"

namespace ketra::test {
namespace {

// "name tag class kind [own] [explicit] [optional] [count n] [-> type #record]"
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
  if (r.link != 0) {
    const std::size_t target = index + static_cast<std::size_t>(r.link);
    text << " -> " << schema::kModule[target].name << " #" << target;
  }
  return text.str();
}

TEST(Schema, EveryRecord) {
  std::ifstream expected(pathOf("schema.txt"));
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

}  // namespace
}  // namespace ketra::test
