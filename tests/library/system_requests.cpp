#include "library/system_requests.h"

namespace ketra::test {
SystemRequests requests;
}

extern "C" void *__libc_malloc(std::size_t);

extern "C" void *malloc(std::size_t size) {
  using ketra::test::requests;
  ++requests.made;
  requests.octets += size;
  const bool isRefused =
      requests.refuseFrom != 0 && requests.made >= requests.refuseFrom && requests.made <= requests.refuseTo;
  return isRefused ? nullptr : __libc_malloc(size);
}
