// Name objects: encodings, appending, text, comparison.

#include <random>

#include "runtime/schema_rows.h"
#include "support/support.h"

namespace ketra::test {
namespace {

class Name {
 public:
  Name() { EXPECT_EQ(X509NameObjectCreate(&name, nullptr), 0); }
  explicit Name(const Octets &octets) : Name() {
    Err err;
    EXPECT_EQ(set(octets, err), 0) << err.text();
  }
  ~Name() { EXPECT_EQ(X509NameObjectDestroy(name, nullptr), 0); }
  Name(const Name &) = delete;
  Name &operator=(const Name &) = delete;
  operator X509NameObject() const { return name; }

  int32_t set(const Octets &octets, AsnErrorBlock *err = nullptr) {
    const Exact exact(octets);
    const AsnEncodedData encoding = exact.data();
    return X509NameObjectSetPduBER(name, &encoding, err);
  }
  AsnEncodedData encoding() const {
    AsnEncodedData read{};
    EXPECT_EQ(X509NameObjectGetPduDER(name, &read, nullptr), 0);
    return read;
  }
  std::string der() const { return toHex(encoding()); }
  std::string text() const {
    uint32_t length = 0;
    EXPECT_EQ(X509NameObjectGetText(name, nullptr, 0, &length, nullptr), -1);
    std::vector<char> text(length + 1);
    EXPECT_EQ(X509NameObjectGetText(name, text.data(), length, nullptr, nullptr), -1) << "one octet short";
    EXPECT_EQ(X509NameObjectGetText(name, text.data(), length + 1, nullptr, nullptr), 0);
    EXPECT_EQ(text[length], '\0');
    return {text.data(), length};
  }

  X509NameObject name = nullptr;
};

Octets bytes(std::string_view text) { return {text.begin(), text.end()}; }
Octets attribute(const char *type, const Octets &value) { return tlv(0x30, tlv(6, fromHex(type)) + value); }
Octets cn(uint8_t tag, std::string_view value) { return attribute("55 04 03", tlv(tag, bytes(value))); }
Octets rdn(const Octets &members) { return tlv(0x31, members); }
Octets one(const Octets &member) { return tlv(0x30, rdn(member)); }  // a name of one attribute

TEST(NameObject, BecomesDer) {
  const Octets a = cn(12, "a");
  const Octets b = cn(12, "b");
  const Octets longer = cn(12, "aa");
  const std::pair<Octets, Octets> rows[] = {
      {one(longer + b + a), one(a + b + longer)},  // members of a SET OF in order
      {fromHex("30 80 31 80 30 81 0C 06 03 55 04 03 2C 80 04 01 61 00 00 00 00 00 00"), one(cn(0x2C, "\x04\x01\x61"))},
  };
  for (const auto &[ber, der] : rows) EXPECT_EQ(Name(ber).der(), toHex(der));
  for (const Octets &der : {fromHex("30 00"), one(attribute("2A 03", fromHex("30 03 02 01 05"))), one(cn(12, "")),
                            one(attribute("88 90 80 80 80 80 80 80 80 80 80 01", fromHex("05 00"))),
                            one(cn(12, "\xFF")), one(cn(30, std::string(70000, 'x')))}) {
    EXPECT_EQ(Name(der).der(), toHex(der));
  }
}

TEST(NameObject, RefusesAndKeepsWhatItHas) {
  const std::string before = golden("name/multi-valued");
  Name name(fromHex(before));
  struct Row {
    const char *hex;
    uint32_t code;
  };
  for (const Row &row :
       {Row{"", AsnError_Truncated}, Row{"31 00", AsnError_Component}, Row{"30 80", AsnError_EndOfContents},
        Row{"30 02 31 00", X509NameError_Empty}, Row{"30 00 00", AsnError_Trailing},
        Row{"30 09 31 07 30 05 06 03 55 04 03", AsnError_Component},
        Row{"30 0D 31 0B 30 09 06 03 55 04 03 0C 02 61", AsnError_Truncated},
        Row{"30 0E 31 0C 30 0A 06 03 55 04 03 0C 00 0C 01", AsnError_Truncated},
        Row{"30 0D 31 0B 30 09 06 03 55 04 03 0C 00 0C 00", AsnError_Component},
        Row{"30 0B 31 09 30 07 06 03 55 04 83 0C 00", AsnError_Objid},
        Row{"30 0B 30 09 30 07 06 03 55 04 03 0C 00", AsnError_Component},
        Row{"30 0B 31 09 31 07 06 03 55 04 03 0C 00", AsnError_Component}}) {
    Err err;
    EXPECT_EQ(name.set(fromHex(row.hex), err), -1) << row.hex;
    EXPECT_EQ(err.code(), row.code) << row.hex << err.text();
    EXPECT_EQ(name.der(), before) << row.hex;
  }
}

TEST(NameObject, OwnOctetsAndCopies) {
  Name name(fromHex(golden("name/multi-valued")));
  const AsnEncodedData own = name.encoding();
  EXPECT_EQ(X509NameObjectSetPduBER(name, &own, nullptr), 0);
  Name copy;
  EXPECT_EQ(X509NameObjectDestroy(copy, nullptr), 0);
  ASSERT_EQ(X509MUtilCopyNameObject(&copy.name, name, nullptr), 0);
  ASSERT_EQ(name.set(fromHex("30 00")), 0);
  EXPECT_EQ(copy.der(), golden("name/multi-valued"));
  EXPECT_EQ(X509NameObjectDestroy(nullptr, nullptr), 0);
}

// As in GeneralName: a Name is an open type, behind an EXPLICIT tag.
TEST(NameObject, InElements) {
  const Pool pool;
  const Name name(fromHex(golden("name/ia5")));
  Work built(type("Name"));
  ASSERT_EQ(X509MUtilSetNameObjectDER(built.object, built.value, "wrapped", name, nullptr), 0);
  const std::string wrapped = toHex(tlv(0xA4, fromHex(golden("name/ia5"))));
  EXPECT_EQ(built.encode(), wrapped);
  const auto get = [&](const Work &work, bool der, const char *path) {
    const auto function = der ? X509MUtilGetNameObjectDER : X509MUtilGetNameObjectBER;
    X509NameObject made = nullptr;
    const uint32_t code = codeOf(function, pool, work.object, work.value, path, &made);
    AsnEncodedData encoding{};
    EXPECT_EQ(X509NameObjectGetPduDER(made, &encoding, nullptr), code == 0 ? 0 : -1);
    const std::string read = code == 0 ? toHex(encoding) : std::to_string(code);
    X509NameObjectDestroy(made, nullptr);
    return read;
  };
  const auto code = [](uint32_t number) { return std::to_string(number); };
  EXPECT_EQ(get(built, true, "wrapped"), golden("name/ia5"));
  struct Row {
    std::string hex;
    const char *path;
    std::string der;
    std::string ber;
  };
  for (const Row &row : {Row{wrapped, "wrapped", golden("name/ia5"), golden("name/ia5")},
                         Row{"A4 80 30 80 00 00 00 00", "wrapped", code(AsnError_NotDer), "30 00"},
                         Row{"A4 04 30 02 31 00", "wrapped", code(X509NameError_Empty), code(X509NameError_Empty)},
                         Row{"82 01 61", "wrapped", code(AsnError_Absent), code(AsnError_Absent)},
                         Row{"82 01 61", "dns", code(AsnError_Kind), code(AsnError_Kind)}}) {
    const Exact exact(fromHex(row.hex));
    Work work(type("Name"), exact.data());
    ASSERT_EQ(work.decode(), 0);
    EXPECT_EQ(get(work, true, row.path), row.der) << row.hex;
    EXPECT_EQ(get(work, false, row.path), row.ber) << row.hex;
  }
}

constexpr uint32_t kCn[] = {2, 5, 4, 3};
constexpr uint32_t kDc[] = {0, 9, 2342, 19200300, 100, 1, 25};
constexpr uint32_t kEmail[] = {1, 2, 840, 113549, 1, 9, 1};

X509NameAttribute text(const Objid &type, uint32_t choice, std::string_view value) {
  const AsnOct octets = exactly(value);
  return {type, {choice, octets.octets, octets.length}};
}

TEST(NameObject, AppendRdn) {
  constexpr uint32_t kC[] = {2, 5, 4, 6};
  constexpr uint32_t kO[] = {2, 5, 4, 10};
  constexpr uint32_t kUid[] = {0, 9, 2342, 19200300, 100, 1, 1};
  using Attributes = std::vector<X509NameAttribute>;
  const std::pair<const char *, std::vector<Attributes>> rows[] = {
      {"name/multi-valued",
       {{text({kC, 4}, X509DirStr_PrintableString, "GB")},
        {text({kO, 4}, X509DirStr_Utf8String, "Example, Inc.")},
        {text({kUid, 7}, X509DirStr_Utf8String, "7"), text({kCn, 4}, X509DirStr_Utf8String, "Steve")}}},
      {"name/ia5",
       {{text({kC, 4}, X509DirStr_PrintableString, "DE")},
        {text({kDc, 7}, X509DirStr_PrintableString, "example")},
        {text({kEmail, 7}, X509DirStr_Utf8String, "a@b.c")}}},
  };
  for (const auto &[row, rdns] : rows) {
    const Name name;
    for (const Attributes &rdn : rdns) {
      EXPECT_EQ(codeOf(X509NameObjectAppendRdn, name, rdn.data(), static_cast<uint32_t>(rdn.size())), 0u);
    }
    EXPECT_EQ(name.der(), golden(row));
  }
}

TEST(NameObject, AppendRdnRefuses) {
  constexpr uint32_t kBad[] = {3, 1};
  const Name name(fromHex(golden("name/ia5")));
  struct Row {
    X509NameAttribute attribute;
    uint32_t code;
  };
  for (const Row &row :
       {Row{text({kBad, 2}, 5, "a"), AsnCheckError_Objid}, Row{text({kCn, 4}, 0, "a"), X509DirStrError_Choice},
        Row{text({kCn, 4}, 6, "a"), X509DirStrError_Choice}, Row{text({kCn, 4}, 5, ""), X509DirStrError_Length},
        Row{text({kCn, 4}, 2, "a@b"), X509DirStrError_Characters},
        Row{text({kCn, 4}, 3, "a"), X509DirStrError_Characters},
        Row{text({kCn, 4}, 4, "abc"), X509DirStrError_Characters},
        Row{text({kCn, 4}, 5, "\xC0\x80"), X509DirStrError_Characters},
        Row{text({kEmail, 7}, 5, "\xC3\xA4@b"), X509NameError_Attribute},
        Row{text({kDc, 7}, 1, "a"), X509NameError_Attribute},
        Row{{{kCn, 4}, {5, nullptr, 1}}, X509NameError_NullParameter}}) {
    const X509NameAttribute attributes[] = {text({kCn, 4}, 5, "good"), row.attribute};
    EXPECT_EQ(codeOf(X509NameObjectAppendRdn, name, attributes, 2u), row.code);
    EXPECT_EQ(name.der(), golden("name/ia5"));
  }
  EXPECT_EQ(codeOf(X509NameObjectAppendRdn, name, nullptr, 0u), uint32_t{X509NameError_Empty});
}

TEST(NameObject, Text) {
  using std::string_view_literals::operator""sv;
  const auto value = [](uint8_t tag, std::string_view octets) { return Name(one(cn(tag, octets))).text(); };
  EXPECT_EQ(Name().text(), "");
  EXPECT_EQ(Name(fromHex(golden("name/multi-valued"))).text(), "CN=Steve+UID=7,O=Example\\, Inc.,C=GB");
  EXPECT_EQ(Name(fromHex(golden("name/ia5"))).text(), "emailAddress=a@b.c,DC=example,C=DE");
  struct Row {
    uint8_t tag;
    std::string_view octets;
    std::string text;
  };
  // clang-format off
  for (const Row &row : {
      Row{12, " #x+y ", "\\ #x\\+y\\ "}, Row{12, "##", "\\##"}, Row{12, " ", "\\ "}, Row{12, "  ", "\\ \\ "},
      Row{19, "\"+,;<>\\= a  b", "\\\"\\+\\,\\;\\<\\>\\\\= a  b"}, Row{12, "a\0b\n\x7F"sv, "a\\00b\\0a\\7f"},
      Row{12, "\xC2\x85\xE2\x80\xAEx\xE2\x81\xA6", "\\c2\\85\\e2\\80\\aex\\e2\\81\\a6"},
      Row{12, "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"}, Row{20, "\xE4", "\xC3\xA4"},
      Row{30, "\0A\x20\xAC\xD8\x3D\xDE\x00"sv, "A\xE2\x82\xAC\xF0\x9F\x98\x80"},
      Row{28, "\0\1\xF6\0"sv, "\xF0\x9F\x98\x80"}, Row{22, "", ""}, Row{12, "\xED\xA0\x80", "#0c03eda080"},
      Row{12, "a\xF4\x90\x80\x80", "#0c0561f4908080"}, Row{12, "\xE2\x82", "#0c02e282"},
      Row{30, "\xD8\x00\0A"sv, "#1e04d8000041"}, Row{30, "\xDC\x00"sv, "#1e02dc00"}, Row{30, "abc", "#1e03616263"},
      Row{28, "\0\x11\0\0"sv, "#1c0400110000"}, Row{19, "\xE4", "#1301e4"}, Row{26, "a", "#1a0161"},
      Row{0x2C, "\x04\x01\x61", "#2c03040161"}, Row{0x8C, "a", "#8c0161"},
      Row{28, "\0\0\0A\0"sv, "#1c050000004100"}, Row{30, "\xDC\0\xDC\0"sv, "#1e04dc00dc00"},
      Row{30, "\xD8\0\xE0\0"sv, "#1e04d800e000"}, Row{19, "\x80", "#130180"}, Row{30, "\x08\0"sv, "\xE0\xA0\x80"},
  }) {
    // clang-format on
    EXPECT_EQ(value(row.tag, row.octets), "CN=" + row.text);
  }
  for (const auto &[type, text] : {std::pair{"2A 03", "1.2.3"},
                                   {"55 04 2A", "givenName"},
                                   {"88 37 81 FF FF FF FF FF FF FF FF 7F", "2.999.18446744073709551615"},
                                   {"81 FF FF FF FF FF FF FF FF 7F", "2.18446744073709551535"},
                                   {"69 82 80 80 80 80 80 80 80 80 00", "oid-6982808080808080808000"}}) {
    EXPECT_EQ(Name(one(attribute(type, fromHex("13 01 61")))).text(),
              std::string(text) + (text == std::string("givenName") ? "=a" : "=#130161"));
  }
}

TEST(NameObject, Compare) {
  using std::string_view_literals::operator""sv;
  const Octets a = cn(12, "a");
  const Octets b = cn(12, "b");
  const Octets steve = cn(12, "Steve  Kille");
  struct Row {
    Octets left;
    Octets right;
    int32_t equal;
  };
  for (const Row &row : {
           Row{fromHex("30 00"), fromHex("30 00"), 1},
           Row{fromHex("30 00"), one(a), 0},
           Row{one(steve), one(cn(19, "  sTEVE kille ")), 1},
           Row{one(steve), one(cn(22, "SteveKille")), 0},
           Row{one(cn(30, "\0S\0t"sv)), one(cn(28, "\0\0\0s\0\0\0T"sv)), 1},
           Row{one(cn(20, "\xE4")), one(cn(12, "\xC3\xA4")), 1},
           Row{one(cn(12, "\xC3\x84")), one(cn(12, "\xC3\xA4")), 0},
           Row{one(cn(12, " ")), one(cn(19, "")), 1},
           Row{one(a), one(attribute("55 04 0A", fromHex("0C 01 61"))), 0},
           Row{one(cn(12, "a\0"sv)), one(a), 0},
           Row{one(a + cn(12, "\xFF")), one(cn(12, "A") + cn(12, "\xFF")), 1},  // no text: octet by octet
           Row{one(cn(12, "A\xFF")), one(cn(12, "a\xFF")), 0},
           Row{one(cn(26, "a")), one(a), 0},
           Row{one(a + cn(12, "B")), one(cn(19, "A") + b), 1},
           Row{one(a + cn(19, "b")), one(b + cn(19, "a")), 1},
           Row{one(a + b), one(a + a), 0},
           Row{one(cn(12, "Z")), one(cn(12, "z")), 1},
           Row{one(cn(19, "")), one(cn(2, "\5")), 0},
           Row{one(cn(2, "\5")), one(cn(10, "\5")), 0},
           Row{one(a + b), tlv(0x30, rdn(a) + rdn(b)), 0},
           Row{tlv(0x30, rdn(a) + rdn(b)), tlv(0x30, rdn(b) + rdn(a)), 0},
           Row{tlv(0x30, rdn(a) + rdn(b)), tlv(0x30, rdn(a)), 0},
       }) {
    const Name left(row.left);
    const Name right(row.right);
    int32_t equal = -1;
    int32_t reverse = -1;
    EXPECT_EQ(X509NameObjectCompare(left, right, &equal, nullptr), 0);
    EXPECT_EQ(X509NameObjectCompare(right, left, &reverse, nullptr), 0);
    EXPECT_TRUE(equal == row.equal && reverse == row.equal) << left.text() << " and " << right.text();
  }
}

// Long names, in breadth and length: the time limit of the test is the check.
TEST(NameObject, ManyAttributes) {
  constexpr uint32_t kMany = 200000;
  for (const bool wide : {true, false}) {
    Octets lists[2];
    for (const int letter : {0, 1}) {
      std::mt19937 random(1);
      for (uint32_t i = 0; i < kMany; ++i) {
        const Octets member = cn(12, "xX"[letter] + std::to_string(random()));
        const Octets added = wide ? member : rdn(member);
        lists[letter].insert(lists[letter].end(), added.begin(), added.end());
      }
    }
    const Name lower(wide ? one(lists[0]) : tlv(0x30, lists[0]));
    const Name upper(wide ? one(lists[1]) : tlv(0x30, lists[1]));
    EXPECT_GT(lower.text().size(), 5 * kMany);
    int32_t equal = 0;
    EXPECT_EQ(X509NameObjectCompare(lower, upper, &equal, nullptr), 0);
    EXPECT_EQ(equal, 1);
  }
  const Name appended;
  const X509NameAttribute attribute = text({kCn, 4}, X509DirStr_Utf8String, "a");
  for (uint32_t i = 0; i < kMany; ++i) ASSERT_EQ(X509NameObjectAppendRdn(appended, &attribute, 1, nullptr), 0);
  EXPECT_EQ(appended.encoding().length, kMany * 12 + 5);
}

TEST(NameObject, NullsAreErrors) {
  const Name name;
  const Pool pool;
  Err err;
  EXPECT_EQ(X509NameObjectCreate(nullptr, err), -1);
  EXPECT_EQ(X509NameObjectSetPduBER(name, nullptr, err), -1);
  EXPECT_EQ(X509NameObjectGetPduDER(nullptr, nullptr, err), -1);
  EXPECT_EQ(X509NameObjectGetText(name, nullptr, 1, nullptr, err), -1);
  EXPECT_EQ(X509NameObjectCompare(name, name, nullptr, err), -1);
  EXPECT_EQ(X509NameObjectAppendRdn(name, nullptr, 1, err), -1);
  EXPECT_EQ(X509MUtilCopyNameObject(nullptr, name, err), -1);
  EXPECT_EQ(X509MUtilSetNameObjectBER(nullptr, nullptr, "/", nullptr, err), -1);
  EXPECT_EQ(X509MUtilGetNameObjectBER(pool, nullptr, nullptr, "/", nullptr, err), -1);
  EXPECT_EQ(err.block.count, 9u);
  EXPECT_EQ(err.code(), uint32_t{X509NameError_NullParameter});
}

}  // namespace
}  // namespace ketra::test
