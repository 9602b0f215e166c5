// How an operation of the library reports. This is the only way to the trace, and the only one to a code.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <type_traits>

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
  bool failedAt(int32_t result, const char *path, const uint32_t &offending) const {
    if (result == 0) [[likely]]
      return false;
    record(path, &offending, static_cast<uint32_t>(sizeof offending));
    return true;
  }

  // Refuses the input: code, entry, -1.
  int32_t reject(uint32_t code, Literal reason) const { return rejectValue(code, reason.text, nullptr, 0); }
  template <class Number>
  int32_t reject(uint32_t code, Literal reason, const Number &offending) const {
    static_assert(std::is_integral_v<Number> && sizeof offending == 4);
    return rejectValue(code, reason.text, &offending, static_cast<uint32_t>(sizeof offending));
  }
  // A structure, with its fields in order. It is recorded as far as the last one goes, with zeros for the padding,
  // which callers leave uninitialised.
  template <class Structure, class... Fields>
  int32_t rejectStructure(uint32_t code, Literal reason, const Structure &offending, const Fields &...fields) const {
    return rejectFields(code, reason.text, &offending, {{&fields, sizeof fields}...});
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
  struct Field {
    const void *begin;
    std::size_t size;
  };
  [[gnu::cold, gnu::noinline]] int32_t rejectFields(uint32_t code, const char *reason, const void *structure,
                                                    std::initializer_list<Field> fields) const;

  const char *function_;
  AsnErrorBlock *err_;
};

}  // namespace ketra
