/// @file
/// AutonomousSysIds: the numbers of autonomous systems that the subject holds.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// ASRange ::= SEQUENCE {                                         RFC 3779 3.2.3.8
//     min  ASId,
//     max  ASId }
// ASId ::= INTEGER
template <class Form>
struct AsRangeOf {
  IntegerOf<Form> min{};
  IntegerOf<Form> max{};

  /// "3000-9001".
  std::string text() const { return min.text() + '-' + max.text(); }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("min", self.min) && visit("max", self.max);
  }
};
using AsRange = AsRangeOf<Owned>;       ///< owns what it holds
using AsRangeView = AsRangeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AsRangeView>());

// ASIdOrRange ::= CHOICE {                                       RFC 3779 3.2.3.5
//     id     ASId,
//     range  ASRange }
template <class Form>
struct AsIdOrRangeOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<IntegerOf<Form>, AsRangeOf<Form>> choice{};  ///< whichever it is

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"id", {}}, Alternative{"range", {}});
  }
};
using AsIdOrRange = AsIdOrRangeOf<Owned>;       ///< owns what it holds
using AsIdOrRangeView = AsIdOrRangeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AsIdOrRangeView>());

// ASIdentifierChoice ::= CHOICE {                                RFC 3779 3.2.3.2
//     inherit        NULL,
//     asIdsOrRanges  SEQUENCE OF ASIdOrRange }
template <class Form>
struct AsIdentifierChoiceOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<Null, ListOf<Form, AsIdOrRangeOf<Form>>> choice{};  ///< whichever it is

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"inherit", {}}, Alternative{"asIdsOrRanges", {}});
  }
};
using AsIdentifierChoice = AsIdentifierChoiceOf<Owned>;       ///< owns what it holds
using AsIdentifierChoiceView = AsIdentifierChoiceOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AsIdentifierChoiceView>());

// ASIdentifiers ::= SEQUENCE {                                   RFC 3779 3.2.3
//     asnum  [0] EXPLICIT ASIdentifierChoice OPTIONAL,
//     rdi    [1] EXPLICIT ASIdentifierChoice OPTIONAL }
template <class Form>
struct AutonomousSysIdsOf {
  static constexpr std::string_view name = "AutonomousSysIds";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.8"_oid;

  std::optional<AsIdentifierChoiceOf<Form>> asnum{};
  std::optional<AsIdentifierChoiceOf<Form>> rdi{};  ///< of routing domains

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("asnum", self.asnum, explicitly(0)) && visit("rdi", self.rdi, explicitly(1));
  }
};
using AutonomousSysIds = AutonomousSysIdsOf<Owned>;       ///< owns what it holds
using AutonomousSysIdsView = AutonomousSysIdsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AutonomousSysIdsView>());

// AutonomousSysIdsV2 ::= ASIdentifiers                           RFC 8360 4.2.2.2
template <class Form>
struct AutonomousSysIdsV2Of : AutonomousSysIdsOf<Form> {
  static constexpr std::string_view name = "AutonomousSysIdsV2";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.29"_oid;
};
using AutonomousSysIdsV2 = AutonomousSysIdsV2Of<Owned>;       ///< owns what it holds
using AutonomousSysIdsV2View = AutonomousSysIdsV2Of<Viewed>;  ///< points to what it was read from

}  // namespace ketra
