// Typed reads of all extensions, with what has to hold of every one of them.
#pragma once

#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ketra/face/face.hpp"
#include "target.hpp"

namespace ketra {
inline bool operator==(const UnreadableName &a, const UnreadableName &b) {
  return a.encoding == b.encoding && std::string(a.error.what()) == b.error.what();
}
}  // namespace ketra

namespace fuzz {

using ketra::Extensions;
using ketra::Octets;
using ketra::View;

// Inputs name an extension by its place here: rows are only added at the end.
using Types = std::tuple<ketra::AuthorityKeyId, ketra::SubjectKeyId, ketra::KeyUsage, ketra::ExtKeyUsage,
                         ketra::PrivateKeyUsagePeriod, ketra::CertificatePolicies, ketra::SubjectAltName,
                         ketra::IssuerAltName, ketra::BasicConstraints, ketra::CrlNumber, ketra::PolicyMappings,
                         ketra::SubjectDirectoryAttributes, ketra::NameConstraints, ketra::PolicyConstraints,
                         ketra::ReasonCode, ketra::HoldInstruction, ketra::InvalidityDate, ketra::CrlDistributionPoints,
                         ketra::IssuingDistributionPoint, ketra::CertificateIssuer, ketra::DeltaCrlIndicator>;
inline constexpr std::size_t kTypes = std::tuple_size_v<Types>;
static_assert(kTypes == 21);

// Calls call.template operator()<T, index>() for the type at an index.
template <class Call>
void withType(std::size_t index, const Call &call) {
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    static_cast<void>(
        ((i == index ? (call.template operator()<std::tuple_element_t<i, Types>, i>(), true) : false) || ...));
  }
  (std::make_index_sequence<kTypes>());
}

// The three extensions that are nothing but a list of names.
template <class T>
concept Names = requires(const T &value) {
  value.names;
};

struct Failure {
  uint32_t code;
  std::string text;
  friend bool operator==(const Failure &, const Failure &) = default;
};

// Codes tell the component in the upper half, a trace has a place for each that failed.
inline Failure failure(const ketra::Error &error) {
  require(error.code() >> 20 != 0, "a failure sets a code", error.what());
  require(!error.trace().empty(), "a failure has a trace", error.what());
  return {error.code(), error.what()};
}

// Runs a C operation, which takes an error block last: the code of its failure, or 0.
template <class Call, class... Arguments>
uint32_t codeOf(const Call &call, Arguments... arguments) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  const int32_t result = call(arguments..., &err);
  require(result == 0 || result == -1, "a result is 0 or -1");
  if (result == -1) return failure(ketra::Error(err)).code;
  require(err.code == 0 && err.count == 0, "success leaves no error");
  return 0;
}

// Runs one that has to succeed.
template <class Call, class... Arguments>
void succeed(const char *property, const Call &call, Arguments... arguments) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  const int32_t result = call(arguments..., &err);
  require(result == 0, property, result == 0 ? "" : ketra::Error(err).what());
  require(err.code == 0 && err.count == 0, "success leaves no error");
}

template <class T>
using Outcome = std::variant<T, Failure>;

template <class T>
Outcome<T> readOnce(const Extensions &extensions) {
  T value{};
  AsnErrorBlock err;
  AsnErrorReset(&err);
  try {
    const int32_t result = ketra::ExtensionTraits<T>::get(extensions.handle(), value, &err);
    require(result == 0 || result == -1, "a result is 0 or -1");
    if (result == -1) return failure(ketra::Error(err));
  } catch (const ketra::Error &error) {
    return failure(error);
  }
  require(err.code == 0 && err.count == 0, "success leaves no error");
  return value;
}

inline uint64_t usage(const Extensions &extensions) {
  AsnMemObject pool = nullptr;
  uint64_t octets = 0;
  uint32_t blocks = 0;
  require(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr) == 0, "an object has a pool");
  require(AsnMemObjectUsage(pool, &octets, &blocks, nullptr) == 0, "a pool tells its use");
  return octets;
}

// Twice: the second read says what the first said, and costs nothing more.
template <class T>
Outcome<T> read(const Extensions &extensions) {
  const Outcome<T> first = readOnce<T>(extensions);
  const uint64_t used = usage(extensions);
  require(readOnce<T>(extensions) == first, "a second read says the same");
  if (std::holds_alternative<T>(first)) {
    require(usage(extensions) == used, "a second read leaves nothing in the pool");
  }
  return first;
}

template <class T>
void store(Extensions &extensions, View value, bool critical = false) {
  extensions.set(ketra::ObjectIdentifier(ketra::ExtensionTraits<T>::objid()), critical, value);
}

// How a set of the value ended.
template <class T>
uint32_t setCode(Extensions &extensions, const T &value, bool critical = false) try {
  if constexpr (ketra::ExtensionTraits<T>::kCallerSetsCritical) {
    extensions.set(value, critical);
  } else {
    extensions.set(value);
  }
  return 0;
} catch (const ketra::Error &error) {
  return failure(error).code;
}

}  // namespace fuzz
