/// @file
/// TorServiceDescriptor: the keys of onion services.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/algorithm.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// TorServiceDescriptorHash ::= SEQUENCE {                        CA/Browser Forum, EV Guidelines, appendix F
//     onionURI              UTF8String,
//     algorithm             AlgorithmIdentifier,
//     subjectPublicKeyHash  BIT STRING }
template <class Form>
struct TorServiceDescriptorHashOf {
  Utf8StringOf<Form> onionURI{};
  AlgorithmIdentifierOf<Form> algorithm{};
  BitsOf<Form> subjectPublicKeyHash{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("onionURI", self.onionURI) && visit("algorithm", self.algorithm) &&
           visit("subjectPublicKeyHash", self.subjectPublicKeyHash);
  }
};
using TorServiceDescriptorHash = TorServiceDescriptorHashOf<Owned>;       ///< owns what it holds
using TorServiceDescriptorHashView = TorServiceDescriptorHashOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<TorServiceDescriptorHashView>());

// TorServiceDescriptorSyntax ::= SEQUENCE SIZE (1..MAX) OF TorServiceDescriptorHash
template <class Form>
struct TorServiceDescriptorOf {
  static constexpr std::string_view name = "TorServiceDescriptor";
  static constexpr OidLiteral oid = "2.23.140.1.31"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, TorServiceDescriptorHashOf<Form>> hashes{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("hashes", self.hashes, nonEmptyWhenSet);
  }
};
using TorServiceDescriptor = TorServiceDescriptorOf<Owned>;       ///< owns what it holds
using TorServiceDescriptorView = TorServiceDescriptorOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
