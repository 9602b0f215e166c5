// How many characters DirectoryStrings have.

#include "runtime/schema_rows.h"

namespace ketra::test {
namespace {

TEST(DirectoryString, CheckLength) {
  for (const auto &row : rowsOf("runtime/directory_strings.tsv")) {
    SCOPED_TRACE(row.place);
    const Exact exact(fromHex(row.column(3)));
    const X509DirStr string{static_cast<uint32_t>(std::stoul(row.at(0))), exact.data().octets, exact.data().length};
    EXPECT_EQ(codeOf(X509MUtilGetCheckLengthOfDirStr, &string, static_cast<uint32_t>(std::stoul(row.at(1))), 0),
              row.at(2).empty() ? 0 : codeNamed(row.at(2)));
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
  refuseNulls(X509NameError_NullParameter, nullptr, X509MUtilSetDirStrDER, X509MUtilGetDirStrBER,
              X509MUtilFreeDirStrOpt);
}

}  // namespace
}  // namespace ketra::test
