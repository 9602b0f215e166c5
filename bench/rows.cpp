// What the program measures: this library and the peers that are there.

#include "operations.hpp"

namespace bench {

void addRows() {
  addKetra();
  addKetraCpp();
  addFloor();
  addCertificates();
#ifdef BENCH_OPENSSL
  addOpenSsl();
  benchmark::AddCustomContext("OpenSSL", BENCH_OPENSSL);
#endif
#ifdef BENCH_GNUTLS
  addGnuTls();
  benchmark::AddCustomContext("GnuTLS", BENCH_GNUTLS);
#endif
#ifdef BENCH_BOTAN
  addBotan();
  benchmark::AddCustomContext("Botan", BENCH_BOTAN);
#endif
}

}  // namespace bench
