// Name objects: encodings, appending, text, comparison.

#include <random>
#include <sstream>

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

// By its text too.
class Name : public NameObject {
 public:
  explicit Name(const Octets &octets = {0x30, 0x00}) {
    Err err;
    EXPECT_EQ(set(octets, err), 0) << err.text();
  }
  std::string text() const {
    uint32_t length = 0;
    EXPECT_EQ(X509NameObjectGetText(handle, nullptr, 0, &length, nullptr), -1);
    std::vector<char> text(length + 1);
    EXPECT_EQ(X509NameObjectGetText(handle, text.data(), length, nullptr, nullptr), -1) << "one octet short";
    EXPECT_EQ(X509NameObjectGetText(handle, text.data(), length + 1, nullptr, nullptr), 0);
    EXPECT_EQ(text[length], '\0');
    return {text.data(), length};
  }
};

Octets bytes(std::string_view text) { return {text.begin(), text.end()}; }
Octets attribute(const std::string &type, const Octets &value) { return tlv(0x30, tlv(6, fromHex(type)) + value); }
Octets cn(uint8_t tag, std::string_view value) { return attribute("55 04 03", tlv(tag, bytes(value))); }
Octets rdn(const Octets &members) { return tlv(0x31, members); }
Octets one(const Octets &member) { return tlv(0x30, rdn(member)); }  // a name of one attribute

TEST(NameObject, Copies) {
  Name name(fromHex(golden("name/multi-valued")));
  Name copy;
  EXPECT_EQ(X509NameObjectDestroy(copy, nullptr), 0);
  ASSERT_EQ(X509MUtilCopyNameObject(&copy.handle, name, nullptr), 0);
  ASSERT_EQ(name.set(fromHex("30 00")), 0);
  EXPECT_EQ(copy.der(), golden("name/multi-valued"));
  EXPECT_EQ(X509NameObjectDestroy(nullptr, nullptr), 0);
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
  const NameObject name;  // what the types want becomes an IA5String
  for (const X509NameAttribute &each :
       {text({kC, 4}, X509DirStr_PrintableString, "DE"), text({kDc, 7}, X509DirStr_PrintableString, "example"),
        text({kEmail, 7}, X509DirStr_Utf8String, "a@b.c")}) {
    EXPECT_EQ(codeOf(X509NameObjectAppendRdn, name, &each, 1u), 0u);
  }
  EXPECT_EQ(name.der(), golden("name/ia5"));
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
  EXPECT_EQ(Name().text(), "");
  EXPECT_EQ(NameObject().encoding().length, 2u) << "a new object holds the empty name";
  EXPECT_EQ(Name(fromHex(golden("name/multi-valued"))).text(), "CN=Steve+UID=7,O=Example\\, Inc.,C=GB");
  EXPECT_EQ(Name(fromHex(golden("name/ia5"))).text(), "emailAddress=a@b.c,DC=example,C=DE");
  for (const auto &row : rowsOf("runtime/name_texts.tsv")) {
    EXPECT_EQ(Name(one(attribute(row.at(0), fromHex(row.at(1))))).text(), row.at(2));
  }
}

TEST(NameObject, Compare) {
  for (const auto &row : rowsOf("runtime/name_matches.tsv")) {
    const Name left(writtenName(row.at(0)));
    const Name right(writtenName(row.at(1)));
    const int32_t expected = row.at(2) == "match" ? 1 : 0;
    int32_t equal = -1;
    int32_t reverse = -1;
    EXPECT_EQ(X509NameObjectCompare(left, right, &equal, nullptr), 0);
    EXPECT_EQ(X509NameObjectCompare(right, left, &reverse, nullptr), 0);
    EXPECT_TRUE(equal == expected && reverse == expected) << left.text() << " and " << right.text();
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
  const uint8_t *at = nullptr;
  uint32_t moves = 0;
  for (uint32_t i = 0; i < kMany; ++i) {
    ASSERT_EQ(X509NameObjectAppendRdn(appended, &attribute, 1, nullptr), 0);
    moves += appended.encoding().octets != std::exchange(at, appended.encoding().octets) ? 1 : 0;
  }
  EXPECT_LE(moves, 30u) << "its memory grows by doubling";
  EXPECT_EQ(appended.encoding().length, kMany * 12 + 5);
}

TEST(NameObject, NullsAreErrors) {
  const Name name;
  for (const X509NameObject object : {X509NameObject{name}, X509NameObject{}}) {
    refuseNulls(X509NameError_NullParameter, object, X509NameObjectCreate, X509NameObjectSetPduBER,
                X509NameObjectGetPduDER, X509NameObjectCompare, X509MUtilGetNameObjectBER);
  }
  for (const uint32_t code :
       {codeOf(X509NameObjectGetText, name, nullptr, 1u, nullptr), codeOf(X509NameObjectAppendRdn, name, nullptr, 1u),
        codeOf(X509MUtilSetNameObjectBER, nullptr, nullptr, "/", nullptr),
        codeOf(X509MUtilCopyNameObject, nullptr, name)}) {
    EXPECT_EQ(code, uint32_t{X509NameError_NullParameter});
  }
}

}  // namespace
}  // namespace ketra::test
