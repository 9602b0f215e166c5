/// @file
/// The bridge to the C interface: extensions to and from a KetraObject. Needs the libraries.
#pragma once

#include "ketra/asn1/oid.hpp"
#include "ketra/ketra_runtime.h"
#include "ketra/objects/extensions.hpp"

#if defined(__cpp_exceptions)

namespace ketra {

/// A failure of the C interface: its code, and code and trace in words.
class CError : public std::exception {
 public:
  explicit CError(const AsnErrorBlock &block)
      : code_(block.code), text_(AsnErrorText(&block, nullptr, 0, nullptr, 0), '\0') {
    AsnErrorText(&block, nullptr, 0, text_.data(), static_cast<uint32_t>(text_.size() + 1));
  }
  uint32_t code() const noexcept { return code_; }
  const char *what() const noexcept override { return text_.c_str(); }

 private:
  uint32_t code_;
  std::string text_;
};

/// The extensions that an object holds, copied. Throws CError.
inline Extensions extensionsOf(KetraObject object) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  uint32_t count = 0;
  AsnEncodedData data{};
  if (KetraObjectCalExt(object, &count, &err) != 0) throw CError(err);
  if (count == 0) return {};
  if (KetraObjectGetPduDER(object, &data, &err) != 0) throw CError(err);
  Extensions extensions = Extensions::decode(View(data.octets, data.length));
  AsnMemObject pool = nullptr;
  if (KetraObjectGetMemObject(object, &pool, &err) == 0) AsnMemObjectFree(pool, data.octets, nullptr);
  return extensions;
}

/// Puts the extensions into an object, in place of those that it holds. Throws CError; an empty object and what the C
/// interface cannot hold, a repeated identifier for one, are refused.
inline void intoObject(const Extensions &extensions, KetraObject object) {
  const Octets encoding = extensions.encode();
  const AsnEncodedData data{encoding.data(), static_cast<uint32_t>(encoding.size())};
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (KetraObjectSetPduBER(object, &data, &err) != 0) throw CError(err);
}

}  // namespace ketra

#endif
