// Prints docs/error-codes.md from the lists that the code itself uses.

#include <cstdio>

#include "ketra/asn1/fault.hpp"
#include "ketra/contracts/attributes.h"
#include "ketra/contracts/certificate.h"
#include "ketra/ketra_errors.h"

namespace {

struct Row {
  const char *name;
  unsigned code;
  const char *function;
  const char *reason;
  const char *meaning;
};

#define LIBRARY(name, code, function, reason, meaning) {#name, code, function, reason, meaning},
constexpr Row kLibrary[] = {KETRA_ERROR_LIST(LIBRARY)};

#define RUNTIME(name, code, meaning) {#name, code, nullptr, nullptr, meaning},
constexpr Row kRuntime[] = {ASN_RUNTIME_ERROR_LIST(RUNTIME) ASN_POOL_ERROR_LIST(RUNTIME) ASN_CHECK_ERROR_LIST(RUNTIME)
                                ASN_MUTIL_ERROR_LIST(RUNTIME) KETRA_CERTIFICATE_ERROR_LIST(RUNTIME)
                                    X509_NAME_ERROR_LIST(RUNTIME) X509_ATTRIBUTES_ERROR_LIST(RUNTIME)};

constexpr Row kFaults[] = {KETRA_FAULT_CODE_LIST(RUNTIME)};

}  // namespace

int main() {
  std::puts(
      "# Error codes\n\n"
      "The code stands in `AsnErrorBlock::code`; the trace beside it says where and why, innermost cause first.\n\n"
      "## Of libketra\n\n"
      "| Code | Name | Set by | Trace entry | Meaning |\n|---|---|---|---|---|");
  for (const Row &row : kLibrary) {
    std::printf("| 0x%08X | `%s` | %s | \"%s\" | %s |\n", row.code, row.name, row.function, row.reason, row.meaning);
  }
  std::puts("\n## Of the runtime\n\n| Code | Name | Meaning |\n|---|---|---|");
  for (const Row &row : kRuntime) std::printf("| 0x%08X | `%s` | %s |\n", row.code, row.name, row.meaning);
  std::puts(
      "\n## Of the C++ library\n\n"
      "`Fault::code()` is one of these, or one of `AsnError_...` above.\n\n"
      "| Code | Name | Meaning |\n|---|---|---|");
  for (const Row &row : kFaults) std::printf("| 0x%08X | `%s` | %s |\n", row.code, row.name, row.meaning);
}
