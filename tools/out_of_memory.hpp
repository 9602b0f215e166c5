// Lack of memory is not a fault of the input. Wherever it shows, it is a std::bad_alloc: the object that takes too much
// is given up, the run goes on, and its status is 2.
#pragma once

namespace tool {

// What a thread has finished and not printed, from here to the end of the scope.
class Unprinted {
 public:
  Unprinted();
  Unprinted(const Unprinted &) = delete;
  Unprinted &operator=(const Unprinted &) = delete;
  virtual ~Unprinted();
  // Prints it, without asking for memory.
  virtual void printNow() noexcept = 0;
};

// For std::set_terminate: destructors of JSON ask for memory, and where there is none, unwinding ends here. Prints what
// is unprinted and ends the program with status 2.
[[noreturn]] void endUnwinding() noexcept;

}  // namespace tool
