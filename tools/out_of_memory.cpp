#include "out_of_memory.hpp"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "exit_status.hpp"

namespace tool {
namespace {

thread_local Unprinted *unprinted = nullptr;

bool isUnwindingForMemory() noexcept {
  try {
    if (const std::exception_ptr current = std::current_exception()) std::rethrow_exception(current);
  } catch (const std::bad_alloc &) {
    return true;
  } catch (...) {
  }
  return false;
}

}  // namespace

Unprinted::Unprinted() { unprinted = this; }
Unprinted::~Unprinted() { unprinted = nullptr; }

void endUnwinding() noexcept {
  if (!isUnwindingForMemory()) std::abort();
  if (unprinted != nullptr) unprinted->printNow();
  std::fputs("ketra: out of memory\n", stderr);
  std::_Exit(kNotPossible);
}

}  // namespace tool
