/// @file
/// KeyUsage: what the key may be used for.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/bits.hpp"

namespace ketra {

// KeyUsage ::= BIT STRING {                                      RFC 5280 4.2.1.3
//     digitalSignature (0), nonRepudiation (1), keyEncipherment (2), dataEncipherment (3), keyAgreement (4),
//     keyCertSign (5), cRLSign (6), encipherOnly (7), decipherOnly (8) }
template <class Form>
struct KeyUsageOf {
  static constexpr std::string_view name = "KeyUsage";
  static constexpr OidLiteral oid = "2.5.29.15"_oid;
  static constexpr Shape shape = Shape::Bits;

  bool digitalSignature = false;
  bool nonRepudiation = false;
  bool keyEncipherment = false;
  bool dataEncipherment = false;
  bool keyAgreement = false;
  bool keyCertSign = false;
  bool cRLSign = false;
  bool encipherOnly = false;
  bool decipherOnly = false;
  BitsOf<Form> nameless{};  ///< what was read, when bits beyond these are set

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("digitalSignature", self.digitalSignature, bit(0)) &&
           visit("nonRepudiation", self.nonRepudiation, bit(1)) &&
           visit("keyEncipherment", self.keyEncipherment, bit(2)) &&
           visit("dataEncipherment", self.dataEncipherment, bit(3)) &&
           visit("keyAgreement", self.keyAgreement, bit(4)) && visit("keyCertSign", self.keyCertSign, bit(5)) &&
           visit("cRLSign", self.cRLSign, bit(6)) && visit("encipherOnly", self.encipherOnly, bit(7)) &&
           visit("decipherOnly", self.decipherOnly, bit(8)) && visit.nameless(self.nameless);
  }
};
using KeyUsage = KeyUsageOf<Owned>;       ///< owns what it holds
using KeyUsageView = KeyUsageOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
