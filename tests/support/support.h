// What the tests share: octets from hex, error blocks, and handles that clean up.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contracts/asn1_schema.hpp"
#include "ketra_runtime.h"
#include "support/octets.h"

namespace ketra::test {

inline std::string toHex(const AsnEncodedData &data) { return toHex(data.octets, data.length); }

// The columns of each row of a tab-separated file; comments and the header row are left out. Fails on an empty file.
std::vector<std::vector<std::string>> rowsOf(const std::string &path);

// A heap block of exactly this size, so that a read beyond it is seen.
class Exact {
 public:
  explicit Exact(const Octets &octets) : block_(new uint8_t[octets.size()]), size_(octets.size()) {
    std::copy(octets.begin(), octets.end(), block_.get());
  }
  AsnEncodedData data() const { return {block_.get(), static_cast<uint32_t>(size_)}; }

 private:
  std::unique_ptr<uint8_t[]> block_;
  std::size_t size_;
};

struct Err {
  Err() { AsnErrorReset(&block); }
  operator AsnErrorBlock *() { return &block; }
  uint32_t code() const { return block.code; }
  std::string text() const;
  // "function: message" per entry, innermost first.
  std::vector<std::string> trace() const;

  AsnErrorBlock block;
};

class Pool {
 public:
  Pool() { EXPECT_EQ(AsnMemObjectCreate(&pool_, nullptr), 0); }
  ~Pool() { EXPECT_EQ(AsnMemObjectDestroy(pool_, nullptr), 0); }
  operator AsnMemObject() const { return pool_; }

 private:
  AsnMemObject pool_ = nullptr;
};

// A work object with one value in it.
class Work {
 public:
  explicit Work(const AsnType *type) { open(type); }
  Work(const AsnType *type, const AsnEncodedData &encoding);  // bound, not decoded
  ~Work() { EXPECT_EQ(AsnObjectDestroy(object, nullptr), 0); }

  int32_t decode(AsnErrorBlock *err = nullptr) { return AsnDecode(object, value, 0, &scratch_, err); }
  std::string encode(bool der = true, const char *path = "/");  // hex, or the error

  AsnObject object = nullptr;
  AsnValue value = nullptr;

 private:
  void open(const AsnType *type);
  uint32_t scratch_ = 0;
};

class Extensions {
 public:
  Extensions() { EXPECT_EQ(KetraObjectCreate(&object_, nullptr), 0); }
  ~Extensions() { EXPECT_EQ(KetraObjectDestroy(object_, nullptr), 0); }
  operator KetraObject() const { return object_; }

  void store(const Objid &objid, const Octets &value, int32_t critical = 0);
  std::string stored(const Objid &objid) const;  // hex, or "absent"
  std::string pdu() const;                       // all of it, hex
  AsnMemObject pool() const { return object_->pool; }

 private:
  KetraObject object_ = nullptr;
};

}  // namespace ketra::test
