// What the program for BoringSSL measures. It is a program of its own, because BoringSSL and OpenSSL have the same
// names.

#include "../operations.hpp"

namespace bench {

void addRows() {
  addOpenSsl();  // compiled for BoringSSL, whose structures are the same
  addCbs();
}

}  // namespace bench
