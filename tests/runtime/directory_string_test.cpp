// DirectoryString elements, and how many characters they have.

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

X509DirStr view(uint32_t choice, const AsnEncodedData &octets) { return {choice, octets.octets, octets.length}; }

TEST(DirectoryString, ReadsWhatIsThere) {
  const Pool pool;
  const Exact exact(fromHex("30 80 A1 80 33 80 04 01 41 04 01 42 00 00 00 00 00 00"));  // "AB" in segments
  Work work(type("Party"), exact.data());
  ASSERT_EQ(work.decode(), 0);
  X509DirStrOpt opt{{1, nullptr, 1}, 1};
  ASSERT_EQ(X509MUtilGetDirStrOptDER(pool, work.object, work.value, "assigner", &opt, nullptr), 0);
  EXPECT_TRUE(opt.option == 0 && opt.value.choice == 0);
  const std::pair<const char *, uint32_t> rows[] = {
      {"name", AsnError_NotDer}, {"assigner", AsnError_Absent}, {"other", AsnError_Path}, {"/", AsnError_Kind}};
  for (const auto &[path, code] : rows) {
    X509DirStr read{9, nullptr, 9};
    EXPECT_EQ(codeOf(X509MUtilGetDirStrDER, pool, work.object, work.value, path, &read), code);
    EXPECT_EQ(read.choice, 9u) << "written on success only";
  }
  Work built(type("Party"));
  for (const uint32_t choice : {0u, 6u}) {
    const X509DirStr string = view(choice, exact.data());
    EXPECT_EQ(codeOf(X509MUtilSetDirStrDER, built.object, built.value, "name", &string),
              uint32_t{X509DirStrError_Choice});
  }
  AsnValue element = nullptr;
  EXPECT_EQ(AsnGetElement(built.object, built.value, "name", &element, nullptr), 0);
  EXPECT_EQ(element, nullptr) << "nothing is made";
  const X509DirStr string = view(1, exact.data());
  const X509DirStr dangling{1, nullptr, 1};
  EXPECT_NE(codeOf(X509MUtilSetDirStrDER, built.object, built.value, "number", &string), 0u) << "no CHOICE";
  for (const uint32_t code : {codeOf(X509MUtilSetDirStrDER, built.object, built.value, "name", &dangling),
                              codeOf(X509MUtilGetDirStrBER, nullptr, work.object, work.value, "name", nullptr),
                              codeOf(X509MUtilFreeDirStrOpt, nullptr, nullptr)}) {
    EXPECT_EQ(code, uint32_t{X509NameError_NullParameter});
  }
}

TEST(DirectoryString, CheckLength) {
  for (const auto &row : rowsOf(KETRA_DIRECTORY_STRINGS)) {
    const Exact exact(fromHex(row.size() > 3 ? row[3] : ""));
    const X509DirStr string = view(static_cast<uint32_t>(std::stoul(row.at(0))), exact.data());
    EXPECT_EQ(codeOf(X509MUtilGetCheckLengthOfDirStr, &string, static_cast<uint32_t>(std::stoul(row.at(1))), 0),
              row.at(2).empty() ? 0 : codeNamed(row.at(2)))
        << row.at(0) << " " << row.back();
  }
  const X509DirStr five = {X509DirStr_Utf8String, exactly("abcde").octets, 5};
  const auto check = [&](const X509DirStr *string, int32_t of) {
    return refusal(X509MUtilGetCheckLengthOfDirStr, string, 4u, of).substr(9);
  };
  EXPECT_EQ(check(&five, X509LengthOf_NameAssigner),
            "X509MUtilGetCheckLengthOfDirStr: nameAssigner has 5 characters; 1 to 4 are allowed [5]");
  EXPECT_EQ(check(&five, X509LengthOf_PartyName),
            "X509MUtilGetCheckLengthOfDirStr: partyName has 5 characters; 1 to 4 are allowed [5]");
  EXPECT_NE(check(nullptr, 0), "");
}

}  // namespace
}  // namespace ketra::test
