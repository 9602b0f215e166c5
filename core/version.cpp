#include "ketra/ketra.h"

int32_t KetraVersion(const char **banner) {
  static constexpr char kBanner[] = "Ketra X.509 extensions library Version " KETRA_VERSION_TEXT " (" KETRA_VERSION_DATE
                                    ")\n"
                                    "Copyright (c) 2026 the Ketra authors\n";
  if (banner != nullptr) *banner = kBanner;
  return 0;
}
