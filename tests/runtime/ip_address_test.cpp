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

std::string fromText(const char *text) {
  uint8_t octets[32];
  uint32_t length = 99;
  Err err;
  if (X509IpAddressFromText(text, octets, &length, err) == 0) return toHex(octets, length);
  EXPECT_EQ(length, 99u);
  EXPECT_EQ(err.code(), uint32_t{X509IpError_Text}) << err.text();
  return "refused";
}

TEST(IpAddress, BothWays) {
  struct Row {
    const char *hex;
    const char *text;
  };
  // clang-format off
  for (const Row &row : {
      Row{"C0 00 02 01", "192.0.2.1"}, Row{"00*4", "0.0.0.0"}, Row{"C0 00 02 00 FF FF FF 00", "192.0.2.0/24"},
      Row{"00*8", "0.0.0.0/0"}, Row{"FF*8", "255.255.255.255/32"},
      Row{"C0 00 02 00 FF FF FE 80", "192.0.2.0/255.255.254.128"},
      Row{"C0 00 02 00 FF 00 FF 00", "192.0.2.0/255.0.255.0"}, Row{"0A 00 00 00 FF 80 00 00", "10.0.0.0/9"},
      Row{"00*16", "::"}, Row{"00*15+01", "::1"}, Row{"00 01+00*14", "1::"},
      Row{"20 01 0D B8+00*11+01", "2001:db8::1"},
      Row{"20 01 0D B8 00 00 00 01 00 01 00 01 00 01 00 01", "2001:db8:0:1:1:1:1:1"},
      Row{"20 01 00 00 00 00 00 01 00 00 00 00 00 00 00 01", "2001:0:0:1::1"},
      Row{"20 01 0D B8 00 00 00 00 00 01 00 00 00 00 00 01", "2001:db8::1:0:0:1"},
      Row{"AB CD+00*2+00 01*6", "abcd:0:1:1:1:1:1:1"}, Row{"FE 80*8", "fe80:fe80:fe80:fe80:fe80:fe80:fe80:fe80"},
      Row{"00*10+FF FF C0 00 02 80", "::ffff:192.0.2.128"}, Row{"00*10+00 00 C0 00 02 80", "::c000:280"},
      Row{"20 01 0D B8+00*12+FF*4+00*12", "2001:db8::/32"}, Row{"00*32", "::/0"},
      Row{"20 01 0D B8+00*12+FF*16", "2001:db8::/128"},
      Row{"20 01 0D B8+00*12+FF FF 00 00 FF FF+00*10", "2001:db8::/ffff:0:ffff::"}}) {
    // clang-format on
    EXPECT_EQ(toText(fromHex(row.hex)), row.text);
    EXPECT_EQ(fromText(row.text), toHex(fromHex(row.hex))) << row.text;
  }
  EXPECT_EQ(toText(fromHex("FE 80*8+FE 80*8")).size(), 79u) << "the longest";
}

TEST(IpAddress, OtherFormsAreRead) {
  EXPECT_EQ(fromText("2001:DB8:0:0:0:0:0:1"), fromText("2001:db8::1"));
  EXPECT_EQ(fromText("1:2:3:4:5:6:1.2.3.4"), fromText("1:2:3:4:5:6:102:304"));
  EXPECT_EQ(fromText("::1.2.3.4"), fromText("::102:304"));
  EXPECT_EQ(fromText("1:2:3:4:5:6:7::"), fromText("1:2:3:4:5:6:7:0"));
  EXPECT_EQ(fromText("192.0.2.0/255.255.255.0"), fromText("192.0.2.0/24"));
  EXPECT_EQ(fromText("2001:db8::/ffff:ffff::"), fromText("2001:db8::/32"));
}

TEST(IpAddress, TextThatIsNone) {
  // clang-format off
  for (const char *text : {
      "", " ", "1", "1.2.3", "1.2.3.4.5", "1.2.3.", ".1.2.3", "1..2.3", "1.2.3.256", "01.2.3.4", "1.2.3.00",
      "1.2.3.4 ", " 1.2.3.4", "0x1.2.3.4", "-1.2.3.4", "+1.2.3.4", "1.2.3.99999999999", "1.2.3.4/", "1.2.3.4/33",
      "1.2.3.4/08", "1.2.3.4/-1", "1.2.3.4/24/24", "1.2.3.4/::", "1.2.3.4/1.2.3", ":", ":::", "::1::", "1::2::3",
      ":1:2:3:4:5:6:7", "1:2:3:4:5:6:7:", "1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "::1:2:3:4:5:6:7:8",
      "1:2:3:4:5:6:7:8::", "12345::", "g::", "::1%eth0", "[::1]", "1:2:3:4:5:6:7:1.2.3.4", "::1.2.3.4:5",
      "::1.2.3", "::/129", "::/1.2.3.4", "::/", "1:2:3:4::5:6:7:8"}) {
    // clang-format on
    EXPECT_EQ(fromText(text), "refused") << text;
  }
}

TEST(IpAddress, Lengths) {
  for (std::size_t length = 0; length <= 40; ++length) {
    const bool fits = length == 4 || length == 8 || length == 16 || length == 32;
    EXPECT_EQ(toText(Octets(length)).find("0x02510021") == std::string::npos, fits) << length;
  }
  const uint8_t octets[4] = {127, 0, 0, 1};
  const AsnOct address{octets, 4};
  char text[10];
  Err err;
  EXPECT_EQ(X509IpAddressToText(&address, text, 10, err), 0);
  EXPECT_EQ(X509IpAddressToText(&address, text, 9, err), -1);
  EXPECT_EQ(err.code(), uint32_t{AsnError_Range});
  EXPECT_EQ(X509IpAddressToText(&address, nullptr, 10, err), -1);
}

}  // namespace
}  // namespace ketra::test
