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
  /// Of a block that a failed call has filled, which is copied.
  explicit CError(const AsnErrorBlock &block)
      : code_(block.code), text_(AsnErrorText(&block, nullptr, 0, nullptr, 0), '\0') {
    AsnErrorText(&block, nullptr, 0, text_.data(), static_cast<uint32_t>(text_.size() + 1));
  }
  uint32_t code() const noexcept { return code_; }                      ///< that of the block
  const char *what() const noexcept override { return text_.c_str(); }  ///< lines of AsnErrorText

 private:
  uint32_t code_;
  std::string text_;
};

namespace detail {
[[noreturn]] inline void refuseForC(uint32_t code, const char *function, const char *message) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  err.code = code;
  AsnErrorInfo("ketra/c.hpp", function, message, &err, nullptr, 0);
  throw CError(err);
}
}  // namespace detail

/// An iPAddress from text: "192.0.2.1", "2001:db8::1", for name constraints "192.0.2.0/24". Throws CError.
inline GeneralName ipFromText(const std::string &text) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  uint8_t octets[32];
  uint32_t length = 0;
  if (text.find('\0') != std::string::npos)
    detail::refuseForC(X509IpError_Text, "ketra::ipFromText", "an embedded NUL");
  if (X509IpAddressFromText(text.c_str(), octets, &length, &err) != 0) throw CError(err);
  return ip(View(octets, length));
}

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
  if (encoding.size() > UINT32_MAX) {
    detail::refuseForC(AsnError_TooLong, "ketra::intoObject", "more than 4294967295 octets");
  }
  const AsnEncodedData data{encoding.data(), static_cast<uint32_t>(encoding.size())};
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (KetraObjectSetPduBER(object, &data, &err) != 0) throw CError(err);
}

}  // namespace ketra

#endif
