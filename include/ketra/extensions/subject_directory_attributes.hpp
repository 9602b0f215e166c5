/// @file
/// SubjectDirectoryAttributes: attributes of the subject, nationality for one.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// Attribute ::= SEQUENCE {                                       RFC 5280 4.2.1.8, A.1
//     type    AttributeType,
//     values  SET OF AttributeValue }
template <class Form>
struct AttributeOf {
  ObjectIdentifierOf<Form> type{};
  ListOf<Form, AnyOf<Form>> values{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("type", self.type) && visit("values", self.values, setOf | nonEmptySet);
  }
};
using Attribute = AttributeOf<Owned>;       ///< owns what it holds
using AttributeView = AttributeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AttributeView>());

// SubjectDirectoryAttributes ::= SEQUENCE SIZE (1..MAX) OF Attribute            RFC 5280 4.2.1.8
template <class Form>
struct SubjectDirectoryAttributesOf {
  static constexpr std::string_view name = "SubjectDirectoryAttributes";
  static constexpr OidLiteral oid = "2.5.29.9"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, AttributeOf<Form>> attributes{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("attributes", self.attributes, nonEmptySet);
  }
};
using SubjectDirectoryAttributes = SubjectDirectoryAttributesOf<Owned>;       ///< owns what it holds
using SubjectDirectoryAttributesView = SubjectDirectoryAttributesOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
