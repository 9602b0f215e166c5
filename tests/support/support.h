// What the tests share: octets from hex, error blocks, and handles that clean up.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/ketra_runtime.h"
#include "support/octets.h"

namespace ketra::test {

inline std::string toHex(const AsnEncodedData &data) { return toHex(data.octets, data.length); }

// The octets of a structure, with zeros for its padding where the compiler can say which octets those are: a copy need
// not take it along.
template <class Structure>
Octets octetsWithin(Structure structure) {
#ifdef __has_builtin
#if __has_builtin(__builtin_clear_padding)
  __builtin_clear_padding(&structure);
#endif
#endif
  const auto *first = reinterpret_cast<const uint8_t *>(&structure);
  return {first, first + sizeof structure};
}

// A row of a tab-separated file: its columns, and where it stands.
struct Row : std::vector<std::string> {
  std::string column(std::size_t i) const { return i < size() ? (*this)[i] : ""; }
  std::string place;  // "paths.tsv:12"
};
// Comments are left out. Paths are relative to the directory of the tests. Fails on an empty file.
std::vector<Row> rowsOf(const std::string &path);
std::string pathOf(const std::string &path);

// A heap block that ends with these octets, so that a read beyond them is seen. Even one of no octets has one, before
// them: malloc(0) would give memory that can be read.
class Exact {
 public:
  explicit Exact(const Octets &octets)
      : lead_(octets.empty() ? 1 : 0), size_(octets.size()), block_(new uint8_t[lead_ + size_]) {
    std::copy(octets.begin(), octets.end(), block_.get());
  }
  AsnEncodedData data() const { return {block_.get() + lead_, static_cast<uint32_t>(size_)}; }

 private:
  std::size_t lead_;
  std::size_t size_;
  std::unique_ptr<uint8_t[]> block_;
};

// The characters in such a block, which is kept; a string would end with a NUL that can be read.
AsnOct exactly(std::string_view characters);

struct Err {
  Err() { AsnErrorReset(&block); }
  operator AsnErrorBlock *() { return &block; }
  uint32_t code() const { return block.code; }
  std::string text() const;
  // "function: message" per entry, innermost first.
  std::vector<std::string> trace() const;

  // The innermost entry alone, an offending value of four octets behind it: "0146203A function: message [10]".
  std::string innermost() const;
  AsnErrorBlock block;
};

// Calls what takes an error block last.
template <class Function, class... Arguments>
Err called(const Function &function, Arguments &&...arguments) {
  Err err;
  const int32_t result = function(std::forward<Arguments>(arguments)..., err);
  EXPECT_EQ(result, err.block.count == 0 ? 0 : -1) << err.text();
  return err;
}
// Err::innermost of a call's failure, or "".
template <class... Call>
std::string refusal(Call &&...call) {
  const Err err = called(std::forward<Call>(call)...);
  return err.block.count == 0 ? "" : err.innermost();
}
// The code of a call's failure, or 0.
template <class... Call>
uint32_t codeOf(Call &&...call) {
  return called(std::forward<Call>(call)...).code();
}

// Operations with nothing but nulls and zeros besides the handle and an error block: each fails with the code.
template <class Handle, class... Arguments>
void refuseNull(uint32_t code, Handle handle, int32_t (*operation)(Arguments...)) {
  Err err;
  const auto given = [&](auto *null) -> std::remove_pointer_t<decltype(null)> {
    using T = std::remove_pointer_t<decltype(null)>;
    if constexpr (std::is_same_v<T, AsnErrorBlock *>) return err;
    if constexpr (std::is_same_v<T, Handle>) return handle;
    return T{};
  };
  EXPECT_EQ(operation(given(static_cast<Arguments *>(nullptr))...), -1);
  EXPECT_EQ(err.code(), code) << err.text();
}
template <class Handle, class... Operations>
void refuseNulls(uint32_t code, Handle handle, Operations... operations) {
  (refuseNull(code, handle, operations), ...);
}

class Pool {
 public:
  Pool() { EXPECT_EQ(AsnMemObjectCreate(&pool_, nullptr), 0); }
  ~Pool() { EXPECT_EQ(AsnMemObjectDestroy(pool_, nullptr), 0); }
  operator AsnMemObject() const { return pool_; }

 private:
  AsnMemObject pool_ = nullptr;
};

// What is live in a pool: octets and blocks.
std::pair<uint64_t, uint32_t> usage(AsnMemObject pool);

// A work object with one value in it.
class Work {
 public:
  explicit Work(const AsnType *type);
  Work(const AsnType *type, const Octets &encoding);  // bound, not decoded
  ~Work() { EXPECT_EQ(AsnObjectDestroy(object, nullptr), 0); }

  int32_t decode(AsnErrorBlock *err = nullptr) { return AsnDecode(object, value, 0, &scratch_, err); }
  AsnValue element(const char *path) const;
  std::string encode(bool der = true, const char *path = "/");  // hex, or the error
  const uint8_t *octets() const { return encoding_.data().octets; }

  AsnObject object = nullptr;
  AsnValue value = nullptr;

 private:
  Exact encoding_;
  uint32_t scratch_ = 0;
};

// A handle to what has an encoding.
template <class Handle, auto kCreate, auto kDestroy, auto kSetPdu, auto kGetPdu>
class Holder {
 public:
  Holder() { EXPECT_EQ(kCreate(&handle, nullptr), 0); }
  ~Holder() { EXPECT_EQ(kDestroy(handle, nullptr), 0); }
  Holder(const Holder &) = delete;
  Holder &operator=(const Holder &) = delete;
  operator Handle() const { return handle; }

  int32_t set(const Octets &octets, AsnErrorBlock *err = nullptr) const {
    const Exact exact(octets);
    const AsnEncodedData encoding = exact.data();
    return kSetPdu(handle, &encoding, err);
  }
  int32_t setFromItself() const {
    const AsnEncodedData own = encoding();
    return kSetPdu(handle, &own, nullptr);
  }
  AsnEncodedData encoding() const {
    AsnEncodedData read{};
    EXPECT_EQ(kGetPdu(handle, &read, nullptr), 0);
    return read;
  }
  std::string der() const { return toHex(encoding()); }

  Handle handle = nullptr;
};

class Extensions
    : public Holder<KetraObject, KetraObjectCreate, KetraObjectDestroy, KetraObjectSetPduBER, KetraObjectGetPduDER> {
 public:
  void store(const Objid &objid, const Octets &value, int32_t critical = 0);
  const KetraExtension *find(const Objid &objid) const;
  std::string stored(const Objid &objid) const;  // hex, or "absent"
  std::string pdu() const;                       // all of it, hex
  AsnMemObject pool() const { return handle->pool; }
};
using Attributes = Holder<X509AttributesObject, X509AttributesObjectCreate, X509AttributesObjectDestroy,
                          X509AttributesObjectSetPduBER, X509AttributesObjectGetPduDER>;
using NameObject = Holder<X509NameObject, X509NameObjectCreate, X509NameObjectDestroy, X509NameObjectSetPduBER,
                          X509NameObjectGetPduDER>;

}  // namespace ketra::test
