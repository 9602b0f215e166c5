// A module with one type of each kind, for the tests of the runtime.
#pragma once

#include <algorithm>
#include <map>
#include <string>

#include "support/support.h"

namespace ketra::test {

// clang-format off
inline constexpr schema::Row kTestRows[] = {
    schema::Type("Bool", schema::Boolean),
    schema::Type("Int", schema::Integer),
    schema::Type("Enum", schema::Enumerated),
    schema::Type("Bits", schema::BitString),
    schema::Type("Oct", schema::OctetString),
    schema::Type("Oid", schema::ObjectIdentifier),
    schema::Type("Any", schema::OpenType),
    schema::Type("Time", schema::Octets(24)),
    schema::Type("Utf8", "Oct", schema::Universal(12)),
    schema::Type("Printable", schema::Octets(19)),
    schema::Type("Ia5", schema::Octets(22)),
    schema::Type("Bmp", "Oct", schema::Universal(30)),
    schema::Type("Universal", "Oct", schema::Universal(28)),
    schema::Type("Teletex", schema::Octets(20)),
    schema::Type("IntString", "Oct", schema::Universal(2)),
    schema::SequenceOf("Ints"),
        schema::Element("Int"),
    schema::SetOf("AnySet"),
        schema::Element(schema::OpenType),
    schema::SequenceOf("Anys"),
        schema::Element(schema::OpenType),
    schema::Choice("Name"),
        schema::Component("dns", schema::Context(2), "Ia5"),
        schema::Component("ints", schema::Context(3), "Ints"),
        schema::Component("wrapped", schema::Explicit(4), "Any"),
        schema::Component("serial", schema::Context(5), "IntString"),
    schema::Sequence("Point"),
        schema::Component("name", schema::Explicit(0), "Name", schema::Optional),
        schema::Component("flag", schema::Context(1), schema::Boolean, schema::Optional),
        schema::Component("number", schema::Integer),
        schema::Component("rest", schema::OpenType, schema::Optional),
    schema::SequenceOf("Points"),
        schema::Element("Point"),
    schema::Sequence("Period"),
        schema::Component("from", schema::Context(0), "Time", schema::Optional),
    schema::Sequence("Wrapped"),
        schema::Component("number", schema::Explicit(0), schema::Integer),
        schema::Component("flag", schema::Context(1), schema::Boolean),
    schema::Choice("DirectoryString"),
        schema::Component("teletexString", "Teletex"),
        schema::Component("printableString", "Printable"),
        schema::Component("bmpString", "Bmp"),
        schema::Component("universalString", "Universal"),
        schema::Component("uTF8String", "Utf8"),
    schema::Sequence("Party"),
        schema::Component("assigner", schema::Explicit(0), "DirectoryString", schema::Optional),
        schema::Component("name", schema::Explicit(1), "DirectoryString"),
        schema::Component("number", schema::Integer, schema::Optional),
    schema::Sequence("Chain"),  // may hold itself: what an input can nest without end
        schema::Component("next", schema::Context(0), "Chain", schema::Optional),
};
// clang-format on
inline constexpr auto kTestRecords = schema::compile(kTestRows);

template <std::size_t N>
consteval const AsnType *type(const char (&name)[N]) {
  return &kTestRecords[schema::indexOf(kTestRows, name)];
}

inline const AsnType *typeNamed(const std::string &name) {
  const auto *found = std::find_if(kTestRecords.begin(), kTestRecords.end() - 1, [&](const AsnType &record) {
    return record.name != nullptr && record.name == name;
  });
  EXPECT_NE(found, kTestRecords.end() - 1) << name;
  return found;
}

// By the name that it has in the contracts.
inline uint32_t codeNamed(const std::string &name) {
  static const std::map<std::string, uint32_t> codes = {
#define NAMED(name, code, meaning) {#name, code},
      ASN_RUNTIME_ERROR_LIST(NAMED) X509_ATTRIBUTES_ERROR_LIST(NAMED) KETRA_CERTIFICATE_ERROR_LIST(NAMED)
          X509_NAME_ERROR_LIST(NAMED)
#undef NAMED
  };
  return codes.at(name);
}

}  // namespace ketra::test
