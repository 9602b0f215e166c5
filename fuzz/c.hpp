// The C interface with what has to hold of every call, and each of its extensions: read, and set again.
#pragma once

#include <string>
#include <type_traits>

#include "ketra/asn1/octets.hpp"
#include "ketra/ketra_chains.h"
#include "ketra/ketra_errors.h"
#include "target.hpp"

namespace fuzz {

using ketra::Octets;
using ketra::View;

inline AsnEncodedData encoded(View octets) { return {octets.data(), static_cast<uint32_t>(octets.size())}; }
inline View viewOf(const AsnEncodedData &encoding) { return {encoding.octets, encoding.length}; }

// A code of 0 is success.
struct Failure {
  uint32_t code = 0;
  std::string text;
  friend bool operator==(const Failure &, const Failure &) = default;
};

// Runs an operation, which takes an error block last. Codes have their component in the upper bits, and a trace has an
// entry for each operation that failed.
template <class Call, class... Arguments>
Failure run(const Call &call, Arguments &&...arguments) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  const int32_t result = call(arguments..., &err);
  require(result == 0 || result == -1, "a result is 0 or -1");
  if (result == 0) {
    require(err.code == 0 && err.count == 0, "success leaves no error");
    return {};
  }
  std::string text(AsnErrorText(&err, nullptr, 0, nullptr, 0), '\0');
  AsnErrorText(&err, nullptr, 0, text.data(), static_cast<uint32_t>(text.size() + 1));
  require(err.code >> 20 != 0, "a failure sets a code", text);
  require(err.count != 0, "a failure has a trace", text);
  return {err.code, text};
}

// Runs one that has to succeed.
template <class Call, class... Arguments>
void succeed(const char *property, const Call &call, Arguments &&...arguments) {
  const Failure failure = run(call, arguments...);
  require(failure.code == 0, property, failure.text);
}

template <class Handle, auto kCreate, auto kDestroy>
class Owner {
 public:
  Owner() { succeed("an object can be created", kCreate, &handle_); }
  explicit Owner(Handle handle) : handle_(handle) {}
  Owner(const Owner &) = delete;
  Owner &operator=(const Owner &) = delete;
  ~Owner() { kDestroy(handle_, nullptr); }
  operator Handle() const { return handle_; }

 private:
  Handle handle_ = nullptr;
};
using Object = Owner<KetraObject, KetraObjectCreate, KetraObjectDestroy>;
using NameObject = Owner<X509NameObject, X509NameObjectCreate, X509NameObjectDestroy>;
using GenNameObject = Owner<X509GenNameObject, X509GenNameObjectCreate, X509GenNameObjectDestroy>;
using Attributes = Owner<X509AttributesObject, X509AttributesObjectCreate, X509AttributesObjectDestroy>;

// ---- Every extension -----------------------------------------------------------------------------------------------

// How a get ended, and a set of what was got.
struct Outcome {
  Failure get, set;
};

inline int32_t getAttributes(KetraObject object, Attributes *value, AsnErrorBlock *err) {
  return KetraObjectSgetSubjectDirectoryAttributes(object, *value, err);
}
inline int32_t setAttributes(KetraObject object, Attributes *value, AsnErrorBlock *err) {
  return KetraObjectSsetSubjectDirectoryAttributes(object, *value, err);
}

// By a get of the C interface or a read of ketra_chains.h.
template <class T, auto kGet, auto kSet>
Outcome getAndSet(KetraObject object, bool sets) {
  using Set = decltype(kSet);
  struct Chains : KetraChains {
    Chains() : KetraChains{} {}
    ~Chains() { KetraChainsFree(this); }
  } chains;
  T value{};
  Outcome outcome;
  if constexpr (std::is_invocable_v<decltype(kGet), KetraChains *, KetraObject, T *, AsnErrorBlock *>) {
    outcome.get = run(kGet, static_cast<KetraChains *>(&chains), object, &value);
  } else {
    outcome.get = run(kGet, object, &value);
  }
  if (outcome.get.code != 0 || !sets) return outcome;
  if constexpr (std::is_invocable_v<Set, KetraObject, int32_t, T *, AsnErrorBlock *>) {
    outcome.set = run(kSet, object, 0, &value);
  } else if constexpr (std::is_invocable_v<Set, KetraObject, int32_t, T, AsnErrorBlock *>) {
    outcome.set = run(kSet, object, 0, value);
  } else if constexpr (std::is_invocable_v<Set, KetraObject, T *, AsnErrorBlock *>) {
    outcome.set = run(kSet, object, &value);
  } else {
    outcome.set = run(kSet, object, value);
  }
  return outcome;
}

struct Extension {
  const char *name;  // in the tables of rewriting.cpp
  uint32_t arc;      // of its identifier, after 2.5.29
  Outcome (*read)(KetraObject, bool sets);
};

// In the order of ExtensionTypes (ketra/extensions.hpp). Inputs name an extension by its place.
#define FUZZ_GET(Name, Type) getAndSet<Type, KetraObjectSget##Name, KetraObjectSset##Name>
#define FUZZ_CHAINS(Name, Type) getAndSet<Type, KetraChainsRead##Name, KetraObjectSset##Name>
inline constexpr Extension kExtensions[] = {
    {"subjectDirectoryAttributes", 9, getAndSet<Attributes, getAttributes, setAttributes>},
    {"subjectKeyIdentifier", 14, FUZZ_GET(SubjectKeyId, AsnOct)},
    {"keyUsage", 15, FUZZ_GET(KeyUsage, AsnBit)},
    {"privateKeyUsagePeriod", 16, FUZZ_GET(PrivateKeyUsagePeriod, KetraPrivateKeyUsagePeriod)},
    {"subjectAltName", 17, FUZZ_CHAINS(SubjectAltName, X509GenNames)},
    {"issuerAltName", 18, FUZZ_CHAINS(IssuerAltName, X509GenNames)},
    {"basicConstraints", 19, FUZZ_GET(BasicConstraints, KetraBasicConstraints)},
    {"cRLNumber", 20, FUZZ_GET(CRLNumber, int32_t)},
    {"reasonCode", 21, FUZZ_GET(ReasonCode, int32_t)},
    {"holdInstruction", 23, FUZZ_GET(InstructionCode, Objid)},
    {"invalidityDate", 24, FUZZ_GET(InvalidityDate, Gtime)},
    {"deltaCRLIndicator", 27, FUZZ_GET(DeltaCRLIndicator, int32_t)},
    {"issuingDistributionPoint", 28, FUZZ_CHAINS(IssuingDistributionPoint, KetraIssuingDistributionPoint)},
    {"certificateIssuer", 29, FUZZ_CHAINS(CertIssuer, X509GenNames)},
    {"nameConstraints", 30, FUZZ_CHAINS(NameConstraints, KetraNameConstraints)},
    {"cRLDistributionPoints", 31, FUZZ_CHAINS(CRLDistributionPoints, KetraDistributionPoint *)},
    {"certificatePolicies", 32, FUZZ_CHAINS(CertPolicies, KetraPolicyInformation *)},
    {"policyMappings", 33, FUZZ_CHAINS(PolicyMappings, KetraPolicyMapping *)},
    {"authorityKeyIdentifier", 35, FUZZ_CHAINS(AuthorityKeyId, KetraAuthorityKeyId)},
    {"policyConstraints", 36, FUZZ_GET(PolicyConstraints, KetraPolicyConstraints)},
    {"extKeyUsage", 37, FUZZ_CHAINS(ExtKeyUsage, KetraKeyPurposeId *)},
};
#undef FUZZ_GET
#undef FUZZ_CHAINS

inline void store(KetraObject object, const Extension &extension, View value) {
  const uint32_t arcs[] = {2, 5, 29, extension.arc};
  const KetraExtension stored{{arcs, 4}, 0, 0, encoded(value)};
  succeed("any octets can be stored", KetraObjectSetExt, object, &stored);
}

// The octets of one that is there.
inline View stored(KetraObject object, const Extension &extension) {
  const uint32_t arcs[] = {2, 5, 29, extension.arc};
  const Objid objid{arcs, 4};
  const KetraExtension *found = nullptr;
  succeed("what was stored is found", KetraObjectSearchExtpByObjid, object, &objid, &found);
  return viewOf(found->value);
}

}  // namespace fuzz
