#include "names/or_address.h"

#include "schema/schema.h"
#include "support/names.h"

namespace ketra::test {
namespace {

const AsnType *const kAddress = schema::record(schema::Entry::ORAddress);

// Reads an ORAddress and writes it again; hex, or the error code.
std::string carried(const std::string &hex, bool ber) {
  const Pool pool;
  const Exact encoding(fromHex(hex));
  Work from(kAddress, encoding.data());
  Work to(kAddress);
  EXPECT_EQ(from.decode(), 0);
  X509ORAddress address{};
  Err err;
  if (x509MUtilSgetORAddress(ber, pool, from.object, from.value, "/", &address, err) != 0) {
    return err.text().substr(0, sizeof "error 0x01234567" - 1) + " " + err.block.entries[0].message;
  }
  EXPECT_EQ(x509MUtilSetORAddress(ber, to.object, to.value, "/", &address, err), 0) << err.text();
  return to.encode(!ber);
}

TEST(ORAddress, Carried) {
  struct Row {
    const char *given;
    const char *der;
    const char *ber;
  };
  const Row rows[] = {
      {"30 0A 30 00 30 06 13 01 62 13 01 61", "30 0A 30 00 30 06 13 01 62 13 01 61",
       "30 0A 30 00 30 06 13 01 62 13 01 61"},  // domain-defined attributes keep their order
      {"30 0A 30 00 31 06 80 01 02 80 01 01", "30 0A 30 00 31 06 80 01 01 80 01 02",
       "30 0A 30 00 31 06 80 01 02 80 01 01"},  // extension attributes are a set
      {"30 80 30 81 00 00 00", "30 02 30 00", "30 03 30 81 00"},
      {"30 04 30 00 30 00", "error 0x0147FA85 Count of SequenceOf is invalid",
       "error 0x0147FA85 Count of SequenceOf is invalid"},
      {"30 04 30 00 31 00", "error 0x0147FA86 Count of SequenceOf is invalid",
       "error 0x0147FA86 Count of SequenceOf is invalid"},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(carried(row.given, false), row.der);
    EXPECT_EQ(carried(row.given, true), row.ber);
  }
}

TEST(ORAddress, FlagsAndEmptyChains) {
  const uint8_t octets[] = {0x30, 0x00};
  X509ORAttribute attribute{nullptr, {octets, 2}};
  const std::pair<X509ORAddress, const char *> rows[] = {
      {{{octets, 2}, &attribute, 2, &attribute, -1}, ""},  // other flags than 1: left out
      {{{octets, 2}, nullptr, 1, nullptr, 0}, "0147F985 x509MUtilSetORAddress: Count of SequenceOf is invalid"},
      {{{octets, 2}, nullptr, 0, nullptr, 1}, "0147F986 x509MUtilSetORAddress: Count of SequenceOf is invalid"},
  };
  for (const auto &[address, expected] : rows) {
    Work work(kAddress);
    EXPECT_EQ(refusal(x509MUtilSetORAddress, false, work.object, work.value, "/", &address), expected);
    if (*expected == '\0') {
      EXPECT_EQ(work.encode(), "30 02 30 00");
    }
  }
}

TEST(ORAddress, AbsentElement) {
  const Pool pool;
  const Exact encoding(fromHex("82 01 61"));
  Work name(schema::record(schema::Entry::GeneralName), encoding.data());
  ASSERT_EQ(name.decode(), 0);
  X509ORAddress address{};
  EXPECT_EQ(refusal(x509MUtilSgetORAddress, true, pool, name.object, name.value, "x400Address", &address),
            "0147FA06 x509MUtilSgetORAddress: Call AsnGetElement");
}

}  // namespace
}  // namespace ketra::test
