// How an operation of the library reports. This is the only way to the trace, and the only one to a code.
#pragma once

#include "ketra/contracts/asn1.h"
#include "ketra/ketra_errors.h"

namespace ketra {

// Text of a trace entry that stands in the source.
class Literal {
 public:
  consteval Literal(const char *literal) : text(literal) {}
  const char *const text;
};

// One call of an exported or internal operation: its name, and the caller's error block.
class Operation {
 public:
  Operation(const char *function, AsnErrorBlock *err) : function_(function), err_(err) {}

  AsnErrorBlock *err() const { return err_; }

  // Records that a callee failed, when it did; its code stays.
  bool failed(int32_t result, Literal message) const {
    if (result == 0) [[likely]]
      return false;
    record(message.text, nullptr, 0);
    return true;
  }

  // The same where the message is an element path; the block copies it.
  template <class T>
  bool failedAt(int32_t result, const char *path, const T &offending) const {
    if (result == 0) [[likely]]
      return false;
    record(path, &offending, static_cast<uint32_t>(sizeof offending));
    return true;
  }

  // Refuses the input: code, entry, -1.
  int32_t reject(uint32_t code, Literal reason) const { return rejectValue(code, reason.text, nullptr, 0); }
  template <class T>
  int32_t reject(uint32_t code, Literal reason, const T &offending) const {
    return rejectValue(code, reason.text, &offending, static_cast<uint32_t>(sizeof offending));
  }

  int32_t rejectAt(uint32_t code, const char *path) const { return rejectValue(code, path, nullptr, 0); }

  // Whether a handle, structure or place for a result is null; the caller then returns -1.
  template <class... Pointers>
  bool misses(Pointers... pointers) const {
    if (((pointers != nullptr) && ...)) [[likely]]
      return false;
    reject(KetraError_NullParameter, "None parameter");
    return true;
  }

 private:
  [[gnu::cold, gnu::noinline]] void record(const char *message, const void *value, uint32_t length) const;
  [[gnu::cold, gnu::noinline]] int32_t rejectValue(uint32_t code, const char *reason, const void *value,
                                                   uint32_t length) const;

  const char *function_;
  AsnErrorBlock *err_;
};

}  // namespace ketra
