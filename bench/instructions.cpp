// Runs one operation, by name, inside measured(), for bench/check-instructions to count its instructions.

#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <string>

#include "certificates.hpp"
#include "structures.hpp"

namespace {

using Operation = std::function<int32_t()>;

}  // namespace

extern "C" [[gnu::noinline]] int32_t measured(const Operation &operation) { return operation(); }

int main(int argc, char **argv) try {
  const bench::Object extensions;
  bench::BasicConstraints basic;
  bench::SubjectAltName names(100);
  const bench::Octets certificate = bench::extensionsIn(BENCH_SAMPLE);
  uint32_t count = 0;
  basic.fill();
  const std::map<std::string, Operation> operations = {
      {"set BasicConstraints", [&] { return bench::write(basic, extensions.handle()); }},
      {"get BasicConstraints", [&] { return bench::read(basic, extensions.handle()); }},
      {"set SubjectAltName of 100 names", [&] { return bench::write(names, extensions.handle()); }},
      {"get SubjectAltName of 100 names", [&] { return bench::read(names, extensions.handle()); }},
      {"all extensions of samples/ca.pem", [&] { return bench::readCertificate(certificate, &count); }},
  };
  const auto found = operations.find(argc == 2 ? argv[1] : "");
  if (found == operations.end()) {
    for (const auto &[name, operation] : operations) std::puts(name.c_str());
    return 2;
  }
  // What is read has to be written first; besides, functions are bound and the allocator is in its usual state then.
  for (int i = 0; i < 3; ++i) {
    for (const auto &[name, operation] : operations) operation();
  }
  return measured(found->second) == 0 ? 0 : 1;
} catch (const std::exception &error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
