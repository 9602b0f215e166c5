/// @file
/// To and from OpenSSL: extensions, names, numbers, times and whole objects. Optional; who includes it compiles and
/// links with OpenSSL 3. What OpenSSL refuses is thrown as std::runtime_error.
#pragma once

#include <openssl/err.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "ketra/asn1/write.hpp"
#include "ketra/objects/certificate.hpp"
#include "ketra/objects/crl.hpp"
#include "ketra/objects/request.hpp"

namespace ketra {

/// To and from OpenSSL.
namespace openssl {

/// Frees what OpenSSL has made.
struct Free {
  /// @cond
  void operator()(X509 *object) const { X509_free(object); }
  void operator()(X509_CRL *object) const { X509_CRL_free(object); }
  void operator()(X509_REQ *object) const { X509_REQ_free(object); }
  void operator()(X509_NAME *object) const { X509_NAME_free(object); }
  void operator()(X509_EXTENSION *object) const { X509_EXTENSION_free(object); }
  void operator()(X509_EXTENSIONS *object) const { sk_X509_EXTENSION_pop_free(object, X509_EXTENSION_free); }
  void operator()(ASN1_STRING *object) const { ASN1_STRING_free(object); }  // numbers and times, too
  /// @endcond
};
/// An object of OpenSSL that is freed with it.
template <class T>
using Handle = std::unique_ptr<T, Free>;

}  // namespace openssl

namespace detail {

[[noreturn]] inline void throwOpenSsl(const char *what) {
  char reason[256] = "";
  if (const unsigned long code = ERR_get_error()) ERR_error_string_n(code, reason, sizeof reason);
  throw std::runtime_error(std::string(what) + ": " + reason);
}

// i2d_...
template <class T, class Encode>
Octets encodedBy(const Encode &encode, const T *object) {
  const int size = encode(object, nullptr);
  if (size < 0) throwOpenSsl("OpenSSL does not encode it");
  Octets octets(static_cast<std::size_t>(size));
  unsigned char *at = octets.data();
  encode(object, &at);
  return octets;
}
// d2i_..., of all octets.
template <class T, class Decode>
openssl::Handle<T> decodedBy(const Decode &decode, View octets) {
  const unsigned char *at = octets.begin();
  openssl::Handle<T> object(decode(nullptr, &at, static_cast<long>(octets.size())));
  if (object == nullptr || at != octets.end()) throwOpenSsl("OpenSSL does not decode it");
  return object;
}
template <class T>
T readFromOpenSsl(const Octets &octets) {
  Result<T> value = read<T>(View(octets));
  if (!value) throw Error(value.fault());
  return *std::move(value);
}

inline Extensions extensionsOfStack(const X509_EXTENSIONS *stack) {
  Writer out;
  const std::size_t place = out.begin(0x30);
  for (int i = 0; i < sk_X509_EXTENSION_num(stack); ++i) {
    const Octets each = encodedBy(i2d_X509_EXTENSION, sk_X509_EXTENSION_value(stack, i));
    out.octets(View(each));
  }
  out.end(place);
  return Extensions::decode(out.written());
}
inline openssl::Handle<X509_EXTENSIONS> stackOf(const Extensions &extensions) {
  openssl::Handle<X509_EXTENSIONS> stack(sk_X509_EXTENSION_new_null());
  for (const auto &each : extensions) {
    auto extension = decodedBy<X509_EXTENSION>(d2i_X509_EXTENSION, each.octets());
    if (stack == nullptr || sk_X509_EXTENSION_push(stack.get(), extension.get()) == 0) throwOpenSsl("no memory");
    static_cast<void>(extension.release());  // the stack has it now
  }
  return stack;
}

// Removes what is there, then adds.
template <class T, class Delete, class Add>
void replaceExtensions(T *object, const Extensions &extensions, const Delete &remove, const Add &add) {
  const auto stack = stackOf(extensions);
  while (X509_EXTENSION *const old = remove(object, 0)) X509_EXTENSION_free(old);
  for (int i = 0; i < sk_X509_EXTENSION_num(stack.get()); ++i) {
    if (add(object, sk_X509_EXTENSION_value(stack.get(), i), -1) == 0) throwOpenSsl("the extension is not added");
  }
}

}  // namespace detail

namespace openssl {

/// The extensions of an object, or those that a request asks for; none and an empty list give an empty object.
/// @{
inline Extensions extensionsOf(const X509 *object) { return detail::extensionsOfStack(X509_get0_extensions(object)); }
inline Extensions extensionsOf(const X509_CRL *object) {
  return detail::extensionsOfStack(X509_CRL_get0_extensions(object));
}
inline Extensions extensionsOf(const X509_REVOKED *object) {
  return detail::extensionsOfStack(X509_REVOKED_get0_extensions(object));
}
inline Extensions extensionsOf(X509_REQ *object) {
  const Handle<X509_EXTENSIONS> stack(X509_REQ_get_extensions(object));
  return detail::extensionsOfStack(stack.get());
}
/// @}

/// Replaces the extensions of an object; signing it is up to the caller.
/// @{
inline void setExtensions(X509 *object, const Extensions &extensions) {
  detail::replaceExtensions(object, extensions, X509_delete_ext, X509_add_ext);
}
inline void setExtensions(X509_CRL *object, const Extensions &extensions) {
  detail::replaceExtensions(object, extensions, X509_CRL_delete_ext, X509_CRL_add_ext);
}
inline void setExtensions(X509_REVOKED *object, const Extensions &extensions) {
  detail::replaceExtensions(object, extensions, X509_REVOKED_delete_ext, X509_REVOKED_add_ext);
}
inline void setExtensions(X509_REQ *object, const Extensions &extensions) {
  const auto stack = detail::stackOf(extensions);
  for (const int type : {NID_ext_req, NID_ms_ext_req}) {
    for (int at = 0; (at = X509_REQ_get_attr_by_NID(object, type, -1)) >= 0;) {
      X509_ATTRIBUTE_free(X509_REQ_delete_attr(object, at));
    }
  }
  if (extensions.empty()) return;
  if (X509_REQ_add_extensions(object, stack.get()) == 0) detail::throwOpenSsl("the extensions are not added");
}
/// @}

/// Names, numbers and times, from OpenSSL and back. A time becomes UTCTime or GeneralizedTime as RFC 5280 4.1.2.5
/// demands.
/// @{
inline Name nameOf(const X509_NAME *name) {
  return detail::readFromOpenSsl<Name>(detail::encodedBy(i2d_X509_NAME, name));
}
inline Handle<X509_NAME> from(const Name &name) { return detail::decodedBy<X509_NAME>(d2i_X509_NAME, name.stored()); }
inline Integer integerOf(const ASN1_INTEGER *number) {
  return detail::readFromOpenSsl<Integer>(detail::encodedBy(i2d_ASN1_INTEGER, number));
}
inline Handle<ASN1_INTEGER> from(const Integer &number) {
  const Octets octets = encode(number);
  return detail::decodedBy<ASN1_INTEGER>(d2i_ASN1_INTEGER, View(octets));
}
inline Time timeOf(const ASN1_TIME *time) {
  return detail::readFromOpenSsl<EitherTime>(detail::encodedBy(i2d_ASN1_TIME, time)).time;
}
inline Handle<ASN1_TIME> from(Time time) {
  const Octets octets = encode(EitherTime(time));
  return detail::decodedBy<ASN1_TIME>(d2i_ASN1_TIME, View(octets));
}
/// @}

/// Whole objects, by their octets.
/// @{
inline Certificate certificateOf(const X509 *object) {
  return detail::readFromOpenSsl<Certificate>(detail::encodedBy(i2d_X509, object));
}
inline Crl crlOf(const X509_CRL *object) {
  return detail::readFromOpenSsl<Crl>(detail::encodedBy(i2d_X509_CRL, object));
}
inline Request requestOf(const X509_REQ *object) {
  return detail::readFromOpenSsl<Request>(detail::encodedBy(i2d_X509_REQ, object));
}
inline Handle<X509> from(const Certificate &certificate) {
  return detail::decodedBy<X509>(d2i_X509, certificate.octets());
}
inline Handle<X509_CRL> from(const Crl &crl) { return detail::decodedBy<X509_CRL>(d2i_X509_CRL, crl.octets()); }
inline Handle<X509_REQ> from(const Request &request) {
  return detail::decodedBy<X509_REQ>(d2i_X509_REQ, request.octets());
}
/// @}

}  // namespace openssl

}  // namespace ketra
