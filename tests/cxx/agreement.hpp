// One value, read through the C interface, into a value that owns, and as a view: the verdicts and all fields are the
// same, but for the reasons listed here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ketra/asn1/octets.hpp"

namespace ketra::agreement {

/// Why the readers may differ. Each is recognised by the octets, and by how the readers differ.
#define AGREEMENT_REASONS(X)                                                                                        \
  X(Segments, "a string in segments has no octets that a view can point to")                                        \
  X(LongInteger, "C carries integers of 32 bits")                                                                   \
  X(LongIdentifier, "C carries arcs of 32 bits, and 128 of them in an instruction code")                            \
  X(LateReason, "C does not know the CRL reasons 9 and 10")                                                         \
  X(LateBits, "C delivers seven reason bits and nine key usages")                                                   \
  X(PartyLength, "C refuses parts of an ediPartyName that have no characters, too many, or others than their type") \
  X(OpenValue, "C rewrites the values of attributes as DER, so they have to be well formed down to the last")

enum Reason : std::size_t {
#define AGREEMENT_REASON(name, text) name,
  AGREEMENT_REASONS(AGREEMENT_REASON)
#undef AGREEMENT_REASON
      kReasons
};
extern const char *const kReasonNames[kReasons];

/// The types that the C interface has.
constexpr std::size_t kTypes = 21;
/// The type of an extension by its identifier 2.5.29.`arc`, or kTypes.
std::size_t typeOf(unsigned arc);
const char *nameOf(std::size_t type);

struct Comparison {
  bool isAccepted = false;          ///< by the reader of values that own
  bool isExplained[kReasons] = {};  ///< reasons that were needed
  std::string difference;           ///< one that no reason explains
};
Comparison compare(std::size_t type, View octets);

}  // namespace ketra::agreement
