/// @file
/// BiometricInfo: hashes of pictures and the like of the subject.
#pragma once

#include <optional>
#include <string_view>
#include <variant>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/algorithm.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// TypeOfBiometricData ::= CHOICE {                               RFC 3739 3.2.5
//     predefinedBiometricType  INTEGER { picture(0), handwritten-signature(1) },
//     biometricDataOid         OBJECT IDENTIFIER }
template <class Form>
struct BiometricTypeOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<IntegerOf<Form>, ObjectIdentifierOf<Form>> choice{};  ///< whichever it is

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"predefinedBiometricType", {}}, Alternative{"biometricDataOid", {}});
  }
};
using BiometricType = BiometricTypeOf<Owned>;       ///< owns what it holds
using BiometricTypeView = BiometricTypeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<BiometricTypeView>());

// BiometricData ::= SEQUENCE {                                   RFC 3739 3.2.5
//     typeOfBiometricData  TypeOfBiometricData,
//     hashAlgorithm        AlgorithmIdentifier,
//     biometricDataHash    OCTET STRING,
//     sourceDataUri        IA5String OPTIONAL }
template <class Form>
struct BiometricDataOf {
  BiometricTypeOf<Form> typeOfBiometricData{};
  AlgorithmIdentifierOf<Form> hashAlgorithm{};
  OctetStringOf<Form> biometricDataHash{};
  std::optional<Ia5StringOf<Form>> sourceDataUri{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("typeOfBiometricData", self.typeOfBiometricData) && visit("hashAlgorithm", self.hashAlgorithm) &&
           visit("biometricDataHash", self.biometricDataHash) && visit("sourceDataUri", self.sourceDataUri);
  }
};
using BiometricData = BiometricDataOf<Owned>;       ///< owns what it holds
using BiometricDataView = BiometricDataOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<BiometricDataView>());

// BiometricSyntax ::= SEQUENCE OF BiometricData                  RFC 3739 3.2.5
template <class Form>
struct BiometricInfoOf {
  static constexpr std::string_view name = "BiometricInfo";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.2"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, BiometricDataOf<Form>> data{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("data", self.data);
  }
};
using BiometricInfo = BiometricInfoOf<Owned>;       ///< owns what it holds
using BiometricInfoView = BiometricInfoOf<Viewed>;  ///< points to what it was read from

// SpanishBiometricInfo ::= BiometricSyntax
//
// By an identifier of its own, in Spanish certificates.
template <class Form>
struct SpanishBiometricInfoOf : BiometricInfoOf<Form> {
  static constexpr std::string_view name = "SpanishBiometricInfo";
  static constexpr OidLiteral oid = "2.16.724.1.2.2.4.1"_oid;
  static constexpr std::optional<bool> critical = std::nullopt;
};
using SpanishBiometricInfo = SpanishBiometricInfoOf<Owned>;       ///< owns what it holds
using SpanishBiometricInfoView = SpanishBiometricInfoOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
