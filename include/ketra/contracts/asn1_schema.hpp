/// @file
/// Compiles ASN.1 definitions, written as a table that reads like the standard, into the type records that AsnOpenNew
/// and AsnOpenFromMem take. Everything happens at compile time: counts, links, tags and kinds are computed, and a name
/// that resolves to nothing does not compile. C++17.
/// @code
/// constexpr Row kRows[] = {
///     Sequence("BasicConstraints"),
///         Component("cA", Boolean, Optional),
///         Component("pathLenConstraint", Integer, Optional),
/// };
/// constexpr auto kRecords = compile(kRows);
/// @endcode
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ketra/contracts/asn1.h"

/// ASN.1 definitions as tables.
namespace ketra::schema {

/// Reached only when a table is wrong: not constexpr, so the table does not compile.
void badSchema(const char *why);

/// What a type is; the last octet of AsnType::descriptor.
enum class Kind : uint8_t {
  /// The type of this name.
  /// @{
  Boolean = 0x01,
  Integer = 0x02,
  Octets = 0x03,
  BitString = 0x10,
  Objid = 0x11,
  Open = 0x12,
  Choice = 0x13,
  Sequence = 0x14,
  SequenceOf = 0x16,
  SetOf = 0x17,
  Enumerated = 0x18,
  /// @}
};

/// The class of a kind, the third octet of AsnType::descriptor.
constexpr uint32_t classOf(Kind kind) {
  switch (kind) {
    case Kind::BitString:
    case Kind::Objid: return 0x18;
    case Kind::Sequence: return 0x11;
    case Kind::Open: return 0x12;
    case Kind::Choice: return 0x13;
    case Kind::SequenceOf:
    case Kind::SetOf: return 0x15;
    default: return 0x10;
  }
}

/// The number, when one identifier octet carries it (X.690 8.1.2.3).
constexpr uint8_t lowTagNumber(uint8_t number) {
  if (number > 30) badSchema("tag numbers above 30 need more than one octet");
  return number;
}

/// A type that is defined on the spot: its kind and universal tag octet (0 for CHOICE and open types).
struct BuiltIn {
  Kind kind;    ///< what it is
  uint8_t tag;  ///< identifier octet (X.690 8.1.2)
};
/// The built-in type of this name.
/// @{
inline constexpr BuiltIn Boolean{Kind::Boolean, 0x01};
inline constexpr BuiltIn Integer{Kind::Integer, 0x02};
inline constexpr BuiltIn BitString{Kind::BitString, 0x03};
inline constexpr BuiltIn OctetString{Kind::Octets, 0x04};
inline constexpr BuiltIn ObjectIdentifier{Kind::Objid, 0x06};
inline constexpr BuiltIn Enumerated{Kind::Enumerated, 0x0A};
inline constexpr BuiltIn OpenType{Kind::Open, 0x00};
/// @}
/// A character string or time, by its universal tag.
constexpr BuiltIn Octets(uint8_t universalTag) { return {Kind::Octets, lowTagNumber(universalTag)}; }

/// A type that is defined by another row. `occurrence` tells equal names apart, by position from 1.
struct Reference {
  std::string_view name{};  ///< of the row that defines it
  unsigned occurrence = 1;  ///< which of the rows of this name
  /// Refers to no row.
  constexpr Reference() = default;
  /// Refers to the row of this name.
  constexpr Reference(const char *typeName) : name(typeName) {}
  /// Refers to one of several rows of this name.
  constexpr Reference(const char *typeName, unsigned position) : name(typeName), occurrence(position) {}
};
/// Refers to the second row of this name.
constexpr Reference Second(const char *name) { return {name, 2}; }

/// The tag a row gives to its element in place of the type's own, or around it.
struct Tag {
  uint8_t octet = 0;        ///< identifier octet; 0 is none
  bool isExplicit = false;  ///< around the type's own encoding (X.690 8.14)
};
/// The tag [n], IMPLICIT.
constexpr Tag Context(uint8_t number) { return {static_cast<uint8_t>(0x80 + lowTagNumber(number)), false}; }
/// The tag [n], EXPLICIT.
constexpr Tag Explicit(uint8_t number) { return {static_cast<uint8_t>(0xA0 + lowTagNumber(number)), true}; }
/// The tag [UNIVERSAL n], IMPLICIT.
constexpr Tag Universal(uint8_t number) { return {lowTagNumber(number), false}; }

/// Whether a component may be left out.
enum Presence : bool {
  Mandatory = false,  ///< it stands in every value
  Optional = true     ///< it may be left out
};

/// One row of a table: a type, or a component of the type above it.
struct Row {
  std::string_view name{};        ///< of the type or component
  bool isComponent = false;       ///< it is a component of the type above
  bool isBuiltIn = false;         ///< its type is defined here
  BuiltIn builtIn{};              ///< that type
  Reference reference{};          ///< otherwise, where the type is defined
  Tag tag{};                      ///< its own tag, if any
  Presence presence = Mandatory;  ///< whether a component may be left out
};

/// A type that is defined here, in general.
constexpr Row Defined(const char *name, Kind kind, uint8_t tag) {
  Row row;
  row.name = name;
  row.isBuiltIn = true;
  row.builtIn = {kind, tag};
  return row;
}
/// SEQUENCE; its components follow.
constexpr Row Sequence(const char *name) { return Defined(name, Kind::Sequence, 0x30); }
/// SEQUENCE OF; one Element follows.
constexpr Row SequenceOf(const char *name) { return Defined(name, Kind::SequenceOf, 0x30); }
/// SET OF; one Element follows.
constexpr Row SetOf(const char *name) { return Defined(name, Kind::SetOf, 0x31); }
/// CHOICE; its alternatives follow. An alternative that is itself an untagged CHOICE is never found when decoding.
constexpr Row Choice(const char *name) { return Defined(name, Kind::Choice, 0x00); }
/// A name for a built-in type.
constexpr Row Type(const char *name, BuiltIn type) { return Defined(name, type.kind, type.tag); }
/// A name for a type that another row defines.
constexpr Row Type(const char *name, Reference type, Tag tag = {}) {
  Row row;
  row.name = name;
  row.reference = type;
  row.tag = tag;
  return row;
}

/// A component of the row above.
/// @{
constexpr Row Component(const char *name, Tag tag, Reference type, Presence presence = Mandatory) {
  Row row = Type(name, type, tag);
  row.isComponent = true;
  row.presence = presence;
  return row;
}
constexpr Row Component(const char *name, Reference type, Presence presence = Mandatory) {
  return Component(name, Tag{}, type, presence);
}
constexpr Row Component(const char *name, Tag tag, BuiltIn type, Presence presence = Mandatory) {
  Row row = Type(name, type);
  row.isComponent = true;
  row.tag = tag;
  row.presence = presence;
  return row;
}
constexpr Row Component(const char *name, BuiltIn type, Presence presence = Mandatory) {
  return Component(name, Tag{}, type, presence);
}
/// @}
/// The member of the SEQUENCE OF or SET OF in the row before.
constexpr Row unnamed(Row row) {
  row.name = {};
  return row;
}
/// The element of the list in the row above.
/// @{
constexpr Row Element(Reference type) { return unnamed(Component("", type)); }
constexpr Row Element(BuiltIn type) { return unnamed(Component("", type)); }
/// @}

/// The array ends with a terminator record.
inline constexpr AsnType kTerminator{0x00FFFFFF, 0, 0, 0, nullptr};

namespace detail {

template <std::size_t N>
constexpr std::size_t find(const Row (&rows)[N], Reference reference) {
  unsigned seen = 0;
  for (std::size_t i = 0; i < N; ++i) {
    if (!rows[i].isComponent && rows[i].name == reference.name && ++seen == reference.occurrence) return i;
  }
  badSchema("no row defines this type");
  return N;
}

// For each row, the row that it refers to; its own index when it defines its type itself.
template <std::size_t N>
constexpr std::array<std::size_t, N> link(const Row (&rows)[N]) {
  std::array<std::size_t, N> targets{};
  for (std::size_t i = 0; i < N; ++i) targets[i] = rows[i].isBuiltIn ? i : find(rows, rows[i].reference);
  return targets;
}

// The tag octet of a row whose type, without the row's own tag, has this one.
constexpr BuiltIn applyTag(const Row &row, BuiltIn type) {
  if (row.tag.octet == 0) return type;
  if (row.isBuiltIn && type.kind == Kind::Octets && type.tag != 0x04) {
    badSchema("a tagged string or time refers to a row of its own, which keeps its universal tag");
  }
  if (row.tag.isExplicit) return {type.kind, row.tag.octet};
  if (type.tag == 0) badSchema("a CHOICE or open type takes an EXPLICIT tag only");
  return {type.kind, static_cast<uint8_t>(row.tag.octet | (type.tag & 0x20))};
}

// Kind and tag octet with which an element of row `i` is encoded.
template <std::size_t N>
constexpr BuiltIn resolve(const Row (&rows)[N], const std::array<std::size_t, N> &targets, std::size_t i) {
  if (targets[i] != i && rows[targets[i]].tag.isExplicit) badSchema("an EXPLICIT tag belongs to a component");
  const BuiltIn type = targets[i] == i ? rows[i].builtIn : resolve(rows, targets, targets[i]);
  return applyTag(rows[i], type);
}

}  // namespace detail

template <std::size_t N>
constexpr std::array<AsnType, N + 1> compile(const Row (&rows)[N]) {
  const auto targets = detail::link(rows);
  std::array<AsnType, N + 1> records{};
  for (std::size_t i = 0; i < N; ++i) {
    const Row &row = rows[i];
    const BuiltIn type = detail::resolve(rows, targets, i);
    uint32_t components = 0;
    if (!row.isComponent) {
      while (i + 1 + components < N && rows[i + 1 + components].isComponent) ++components;
    }
    const bool isList = row.isBuiltIn && (type.kind == Kind::SequenceOf || type.kind == Kind::SetOf);
    if (isList && components != 1) badSchema("a list has exactly one element row");
    AsnType &record = records[i];
    record.descriptor =
        static_cast<uint32_t>(type.tag) << 24 | 1u << 16 | classOf(type.kind) << 8 | static_cast<uint32_t>(type.kind);
    record.flags = (row.tag.octet != 0 ? ASN_FLAG_OWN_TAG : 0) | (row.tag.isExplicit ? ASN_FLAG_EXPLICIT : 0) |
                   (row.presence == Optional ? ASN_FLAG_OPTIONAL : 0);
    record.count = components;
    record.link = static_cast<int32_t>(targets[i]) - static_cast<int32_t>(i);
    record.name = row.name.data();
  }
  records[N] = kTerminator;
  return records;
}

/// The record of a type by name, in rows and records of one module.
template <std::size_t N>
constexpr std::size_t indexOf(const Row (&rows)[N], const char *name) {
  return detail::find(rows, name);
}

}  // namespace ketra::schema
