// One encoded GeneralName, behind an octet that is not used: both rules, copies, and the road by the structured value
// hold the same name. Then it is shown, parsed and compared as text.

#include <algorithm>

#include "read.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

using ketra::GeneralName;
using ketra::detail::GeneralNameObject;

using Get = int32_t (*)(X509GenNameObject, AsnEncodedData *, AsnErrorBlock *);
using Set = int32_t (*)(X509GenNameObject, const AsnEncodedData *, AsnErrorBlock *);

GeneralNameObject object() { return ketra::detail::generalNameObject(); }

Octets octetsOf(const GeneralNameObject &name, Get get) {
  AsnEncodedData encoding{};
  succeed("a name has an encoding", get, name.get(), &encoding);
  return ketra::detail::view(encoding).copy();
}
Octets der(const GeneralNameObject &name) { return octetsOf(name, X509GenNameObjectGetPduDER); }

uint32_t setCode(const GeneralNameObject &name, View octets, Set set) {
  const AsnEncodedData encoding = ketra::detail::encoded(octets);
  return codeOf(set, name.get(), &encoding);
}

X509GenNameParam parameterOf(const GeneralNameObject &name) {
  X509GenNameParam parameter{};
  succeed("a name has a parameter", X509GenNameObjectGetName, name.get(), &parameter);
  return parameter;
}

GeneralName nameOf(const GeneralNameObject &object) {
  GeneralName name;
  ketra::detail::copyName(object.get(), name);
  return name;
}

// ---- As text --------------------------------------------------------------------------------------------------------

// The same name, its letters in the other case.
Octets otherCase(View name) {
  constexpr uint8_t kStrings[] = {0x0C, 0x13, 0x14, 0x16};
  Tlv tlv = *parseOne(name);
  const auto change = [&](const auto &self, Tlv &each) -> void {
    for (Tlv &member : each.members) self(self, member);
    if (std::ranges::count(kStrings, each.tag[0]) == 0) return;
    for (uint8_t &octet : each.content) {
      if ((octet | 0x20) >= 'a' && (octet | 0x20) <= 'z') octet ^= 0x20;
    }
  };
  change(change, tlv);
  return write(tlv);
}

template <class T>
void look(const T &) {}
void look(const ketra::DirectoryName &name) {
  require(name.name.matches(name.name), "a name matches itself");
  require(!name.name.text().empty() || name.name.encode() == Octets{0x30, 0x00}, "a name has a text");
  const ketra::Name none;
  const ketra::Name similar = ketra::Name::decode(otherCase(name.name.encode()));
  for (const ketra::Name *other : {&none, &similar}) {
    require(name.name.matches(*other) == other->matches(name.name), "matching goes both ways");
  }
}
void look(const ketra::DirectoryString &string) try {
  const std::string text = string.text();
  require(ketra::DirectoryString::utf8(text).text() == text, "text survives as UTF8String");
} catch (const ketra::Error &error) {
  require(failure(error).code == X509DirStrError_Characters, "only what is no character has no text", error.what());
}
void look(const ketra::EdiPartyName &name) {
  look(name.partyName);
  if (name.nameAssigner) look(*name.nameAssigner);
}
void look(const ketra::IpAddress &address) {
  const std::size_t size = address.octets.size();
  const bool hasText = size == 4 || size == 8 || size == 16 || size == 32;
  try {
    const std::string text = address.text();
    require(hasText, "other lengths have no text", text);
    require(ketra::IpAddress::parse(text) == address, "an address survives as text", text);
  } catch (const ketra::Error &error) {
    require(!hasText, "an address has a text", error.what());
  }
}

// ---- The roads ------------------------------------------------------------------------------------------------------

void refused(const GeneralNameObject &name, View octets, Set set) {
  const auto before = der(name);
  require(setCode(name, octets, set) != 0, "a refused encoding is refused again");
  AsnEncodedData encoding{};
  const uint32_t code = codeOf(X509GenNameObjectGetPduDER, name.get(), &encoding);
  require(code == KetraError_GetPduEmpty || (code == 0 && std::ranges::equal(ketra::detail::view(encoding), before)),
          "after a failure an object holds its old name or none");
}

GeneralNameObject someName() {
  GeneralNameObject name = object();
  ketra::detail::setName(name.get(), ketra::dns("a"));
  return name;
}

void copies(const GeneralNameObject &name, const GeneralName &value, const Octets &encoding) {
  const GeneralNameObject copy = someName();
  succeed("a name can be copied", X509GenNameObjectCopy, copy.get(), name.get());
  require(nameOf(copy) == value && der(copy) == encoding, "a copy is the same");

  X509GenNameObject other = nullptr;
  succeed("a name can be copied to a new object", X509MUtilCopyGenNameObject, &other, name.get());
  const GeneralNameObject owner(other);
  require(der(owner) == encoding && nameOf(owner) == value, "a new copy is the same");

  const char *path = nullptr;
  const uint32_t kind = parameterOf(name).type;
  succeed("a kind has a path", X509MUtilGetPathOfGenName, kind, &path);
}

void byParameter(const GeneralNameObject &name, const GeneralName &value, const Octets &encoding) {
  const GeneralNameObject other = someName();
  const X509GenNameParam parameter = parameterOf(name);
  succeed("a parameter that was got can be set", X509GenNameObjectSetName, other.get(), &parameter);
  require(nameOf(other) == value && der(other) == encoding, "the parameter carries the name");

  const X509GenNameParam own = parameterOf(other);
  succeed("an object takes its own parameter", X509GenNameObjectSetName, other.get(), &own);
  require(der(other) == encoding, "its own parameter carries the name");
}

void accepted(const GeneralNameObject &name, View octets) {
  const GeneralName value = nameOf(name);
  require(std::ranges::equal(octetsOf(name, X509GenNameObjectGetPduBER), octets), "BER returns what is stored");
  std::visit([](const auto &kind) { look(kind); }, value);

  AsnEncodedData written{};
  if (codeOf(X509GenNameObjectGetPduDER, name.get(), &written) != 0) {
    require(!isWellFormed(octets), "what was read can be written");
    return;
  }
  const Octets encoding = der(name);
  const Rewriting rewriting = compare("generalName", octets, encoding);
  require(rewriting != Rewriting::unlawful, "a name changes by the rules only");
  const GeneralNameObject again = object();
  require(setCode(again, encoding, X509GenNameObjectSetPduBER) == 0, "what was written can be read");
  require(der(again) == encoding, "what was written is written again");
  // These stand in the value as they came, until they are written.
  const bool isOpen =
      std::holds_alternative<ketra::X400Address>(value) || std::holds_alternative<ketra::OtherName>(value);
  if (rewriting == Rewriting::identical || !isOpen) {
    require(nameOf(again) == value, "what was written reads as the same name");
  }

  copies(name, value, encoding);
  byParameter(name, value, encoding);
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  using namespace fuzz;
  if (size == 0) return 0;
  const View octets(data + 1, size - 1);
  const GeneralNameObject ber = object();
  const GeneralNameObject strict = object();
  const uint32_t berCode = setCode(ber, octets, X509GenNameObjectSetPduBER);
  const uint32_t derCode = setCode(strict, octets, X509GenNameObjectSetPduDER);
  if (berCode != 0) {
    require(derCode != 0, "DER takes nothing that BER refuses");
    refused(someName(), octets, X509GenNameObjectSetPduBER);
    return 0;
  }
  if (derCode == 0) {
    // DER is told by the lengths, and what it took is returned as it was. Only the members of a SET in an ORAddress are
    // sorted in the structured value.
    require(std::ranges::equal(der(strict), octets), "DER returns what is stored");
    const GeneralName name = nameOf(ber);
    require(name == nameOf(strict) || std::holds_alternative<ketra::X400Address>(name),
            "both rules read the same name");
  } else {
    refused(someName(), octets, X509GenNameObjectSetPduDER);
  }
  accepted(ber, octets);
  return 0;
}
