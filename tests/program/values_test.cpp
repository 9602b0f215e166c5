// What the program makes of values, hostile ones among them: of each row of values.tsv in a certificate of its own.
#include <gtest/gtest.h>

#include <string>

#include "program.h"
#include "support/support.h"

namespace ketra::test {
namespace {

// Behind the two lines that tell the object and the extension; "|" ends a line.
std::string fieldsOf(const std::string &text) {
  std::string fields;
  std::size_t at = text.find('\n', text.find('\n') + 1) + 1;
  for (std::size_t end; (end = text.find('\n', at)) != text.npos; at = end + 1) {
    EXPECT_EQ(text.substr(at, 4), "    ");
    fields += (fields.empty() ? "" : "|") + text.substr(at + 4, end - at - 4);
  }
  return fields;
}

// Errors by their codes alone: the text form says the rest.
Json withCodesOnly(const std::string &json) {
  return Json::parse(json, [](int, Json::parse_event_t event, const Json &each) {
    const bool isKey = event == Json::parse_event_t::key;
    return !isKey || (each != "meaning" && each != "message" && each != "offset" && each != "path");
  });
}

// "identical", or the verdict and what is said below it: "written: ", "error ", "critical is lost".
std::string verdictOf(const Result &check) {
  const std::size_t begin = check.out.find(": ") + 2, end = check.out.find('\n');
  const std::string verdict = check.out.substr(begin, end - begin);
  if (lastLine(check.out).find(" 1 extensions: 1 identical, ") != std::string::npos) {
    return end + 1 == check.out.size() ? "identical" : verdict;
  }
  const std::size_t below = check.out.find(verdict.starts_with("re-encoded") ? "\n  written" : "\n  error", begin) + 3;
  const bool isLost = check.out.find(": critical is lost: ") != check.out.npos;
  return verdict + "; " + check.out.substr(below, check.out.find('\n', below) - below) + (isLost ? "; lost" : "");
}

TEST(Values, ShownAndChecked) {
  for (const auto &row : rowsOf(KETRA_VALUES)) {
    SCOPED_TRACE(row.at(0) + " " + row.at(1));
    const Octets objid = {0x55, 0x1D, static_cast<uint8_t>(std::stoi(row.at(0)))};
    const std::string path = file(certificate(objid, fromHex(row.at(1)), row.at(0).ends_with('c')));
    const Result text = run("show " + quote(path)), json = showJson(path);
    const Json extension = withCodesOnly(json.out).at(0).at("extensions").at(0);
    std::string fields = fieldsOf(text.out), value;
    if (extension.contains("value")) {
      value = extension["value"].dump();
    } else {
      fields.resize(fields.find(':'));
      value = extension.at("error").at("code");
    }
    EXPECT_EQ(std::to_string(text.status), row.at(2));
    EXPECT_EQ(json.status, text.status);
    EXPECT_EQ(fields, row.at(3));
    EXPECT_EQ(value, row.at(4));
    const Result check = run("check " + quote(path));
    const std::string verdict = verdictOf(check);
    EXPECT_EQ(verdict, row.at(5));
    EXPECT_EQ(check.status, verdict.starts_with("identical") || verdict.starts_with("re-encoded") ? 0 : 1);
  }
}

}  // namespace
}  // namespace ketra::test
