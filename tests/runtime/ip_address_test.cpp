// iPAddress to and from text.

#include "support/support.h"

namespace ketra::test {
namespace {

std::string toText(const Octets &octets) {
  const Exact exact(octets);
  const AsnOct address{exact.data().octets, exact.data().length};
  char text[80];
  Err err;
  return X509IpAddressToText(&address, text, sizeof text, err) == 0 ? text : err.text();
}

std::string fromText(const std::string &text) {
  uint8_t octets[32];
  uint32_t length = 99;
  Err err;
  if (X509IpAddressFromText(text.c_str(), octets, &length, err) == 0) return toHex(octets, length);
  EXPECT_EQ(length, 99u);
  EXPECT_EQ(err.code(), uint32_t{X509IpError_Text}) << err.text();
  return "refused";
}

TEST(IpAddress, Texts) {
  for (const auto &row : rowsOf("runtime/ip_addresses.tsv")) {
    const bool isRefused = row.at(1) == "refused";
    EXPECT_EQ(fromText(row.at(0)), isRefused ? "refused" : toHex(fromHex(row.at(1)))) << row.at(0);
    if (isRefused || row.size() > 2) continue;
    EXPECT_EQ(toText(fromHex(row.at(1))), row.at(0));
  }
  EXPECT_EQ(toText(fromHex("FE 80*8+FE 80*8")).size(), 79u) << "the longest";
}

TEST(IpAddress, Lengths) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const bool fits = length == 4 || length == 8 || length == 16 || length == 32;
    EXPECT_EQ(toText(Octets(length)).find("0x02510021") == std::string::npos, fits) << length;
  }
  const uint8_t octets[4] = {127, 0, 0, 1};
  const AsnOct address{octets, 4};
  char text[10];
  EXPECT_EQ(codeOf(X509IpAddressToText, &address, text, 10u), 0u);
  EXPECT_EQ(codeOf(X509IpAddressToText, &address, text, 9u), uint32_t{AsnError_Range});
  EXPECT_NE(codeOf(X509IpAddressToText, &address, nullptr, 10u), 0u);
}

}  // namespace
}  // namespace ketra::test
