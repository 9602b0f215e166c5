// What show prints of the samples, word for word. CONTRIBUTING.md tells how to renew the transcripts.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "program.h"

namespace ketra::test {
namespace {

TEST(Transcripts, Samples) {
  const bool renews = std::getenv("KETRA_RENEW_TRANSCRIPTS") != nullptr;
  for (const std::string name : {"ca", "end-entity", "request", "crl", "indirect-crl"}) {
    for (const std::string form : {"txt", "json"}) {
      const std::string path = KETRA_TRANSCRIPTS "/" + name + "." + form;
      const Result result = run((form == "json" ? "show --json - < " : "show - < ") + quote(sample(name + ".pem")));
      EXPECT_EQ(result.status, 0) << result.err;
      if (renews) {
        std::ofstream(path, std::ios::binary) << result.out;
      } else {
        EXPECT_EQ(result.out, readAll(path)) << path;
      }
    }
  }
  if (renews) GTEST_SKIP() << "the transcripts are written anew: look through their changes";
}

}  // namespace
}  // namespace ketra::test
