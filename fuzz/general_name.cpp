// One encoded GeneralName, after an octet that is not used: both rules, copies, and the way through the structured
// value hold the same name. Then it is shown, parsed and compared as text.

#include <algorithm>
#include <optional>

#include "c.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

using Get = int32_t (*)(X509GenNameObject, AsnEncodedData *, AsnErrorBlock *);
using Set = int32_t (*)(X509GenNameObject, const AsnEncodedData *, AsnErrorBlock *);

Octets octetsOf(X509GenNameObject name, Get get) {
  AsnEncodedData encoding{};
  succeed("a name has an encoding", get, name, &encoding);
  return viewOf(encoding).copy();
}
Octets der(X509GenNameObject name) { return octetsOf(name, X509GenNameObjectGetPduDER); }

uint32_t set(X509GenNameObject name, View octets, Set by) {
  const AsnEncodedData encoding = encoded(octets);
  return run(by, name, &encoding).code;
}

X509GenNameParam parameterOf(X509GenNameObject name) {
  X509GenNameParam parameter{};
  succeed("a name has a parameter", X509GenNameObjectGetName, name, &parameter);
  return parameter;
}

// ---- As text --------------------------------------------------------------------------------------------------------

// The same name, its letters in the other case.
Octets otherCase(const Octets &name) {
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

int32_t match(X509NameObject name, X509NameObject other) {
  int32_t equal = -1;
  succeed("names are compared", X509NameObjectCompare, name, other, &equal);
  return equal;
}

void look(X509NameObject name) {
  AsnEncodedData encoding{};
  if (run(X509NameObjectGetPduDER, name, &encoding).code != 0) return;
  require(match(name, name) == 1, "a name matches itself");
  uint32_t length = 0;
  X509NameObjectGetText(name, nullptr, 0, &length, nullptr);
  require(length > 0 || encoding.length == 2, "a name has a text");
  std::string text(length + std::size_t{1}, '\0');
  run(X509NameObjectGetText, name, text.data(), length + 1, &length);
  const NameObject none, similar;
  const Octets changed = otherCase(viewOf(encoding).copy());
  const AsnEncodedData other = encoded(View(changed));
  succeed("a name in the other case is one", X509NameObjectSetPduBER, similar, &other);
  for (const X509NameObject each : {static_cast<X509NameObject>(none), static_cast<X509NameObject>(similar)}) {
    require(match(name, each) == match(each, name), "matching goes both ways");
  }
}

// The text of a string: nothing when it has characters that its type does not have.
std::optional<std::string> textOf(const X509DirStr &string) {
  std::string text(4 * std::size_t{string.length} + 1, '\0');
  uint32_t length = 0;
  const Failure failure = run(X509DirStrToText, &string, text.data(), static_cast<uint32_t>(text.size()), &length);
  require(failure.code == 0 || failure.code == X509DirStrError_Characters, "only what is no character has no text",
          failure.text);
  if (failure.code != 0) return std::nullopt;
  text.resize(length);
  return text;
}
void look(const X509DirStr &string) {
  const std::optional<std::string> text = textOf(string);
  if (!text) return;
  const X509DirStr utf8{X509DirStr_Utf8String, reinterpret_cast<const uint8_t *>(text->data()),
                        static_cast<uint32_t>(text->size())};
  require(textOf(utf8) == text, "text survives as UTF8String");
}

void look(const AsnOct &address) {
  const bool hasText = address.length == 4 || address.length == 8 || address.length == 16 || address.length == 32;
  char text[100];
  const Failure failure = run(X509IpAddressToText, &address, text, uint32_t{sizeof text});
  require((failure.code == 0) == hasText, "addresses of four lengths have a text", failure.text);
  if (!hasText) return;
  uint8_t octets[32];
  uint32_t length = 0;
  succeed("the text of an address is one", X509IpAddressFromText, text, octets, &length);
  require(View(octets, length) == View(address.octets, address.length), "an address survives as text", text);
}

void look(const X509GenNameParam &name) {
  switch (name.type) {
    case X509GenName_DirectoryName: return look(name.directoryName);
    case X509GenName_IPAddress: return look(name.iPAddress);
    case X509GenName_EdiPartyName:
      if (name.ediPartyName.nameAssigner.option == 1) look(name.ediPartyName.nameAssigner.value);
      return look(name.ediPartyName.partyName);
    default: return;
  }
}

// ---- The ways -------------------------------------------------------------------------------------------------------

void setSome(X509GenNameObject name) {
  X509GenNameParam parameter{};
  parameter.type = X509GenName_DNSName;
  parameter.dNSName = {reinterpret_cast<const uint8_t *>("a"), 1};
  succeed("a name can be set", X509GenNameObjectSetName, name, &parameter);
}

void refused(View octets, Set by) {
  const GenNameObject name;
  setSome(name);
  const Octets before = der(name);
  require(set(name, octets, by) != 0, "a refused encoding is refused again");
  AsnEncodedData encoding{};
  const uint32_t code = run(X509GenNameObjectGetPduDER, name, &encoding).code;
  require(code == KetraError_GetPduEmpty || (code == 0 && viewOf(encoding) == View(before)),
          "after a failure an object holds its old name or none");
}

void copies(X509GenNameObject name, const Octets &encoding) {
  const GenNameObject copy;
  setSome(copy);
  succeed("a name can be copied", X509GenNameObjectCopy, copy, name);
  require(der(copy) == encoding, "a copy is the same");

  X509GenNameObject other = nullptr;
  succeed("a name can be copied to a new object", X509MUtilCopyGenNameObject, &other, name);
  const GenNameObject owner(other);
  require(der(owner) == encoding, "a new copy is the same");

  const char *path = nullptr;
  const uint32_t kind = parameterOf(name).type;
  succeed("a kind has a path", X509MUtilGetPathOfGenName, kind, &path);
}

void byParameter(X509GenNameObject name, const Octets &encoding) {
  const GenNameObject other;
  setSome(other);
  for (X509GenNameObject source : {name, static_cast<X509GenNameObject>(other)}) {
    const X509GenNameParam parameter = parameterOf(source);
    succeed("a parameter that was got can be set", X509GenNameObjectSetName, other, &parameter);
    require(der(other) == encoding, "the parameter carries the name");
  }
}

void accepted(X509GenNameObject name, View octets) {
  require(octetsOf(name, X509GenNameObjectGetPduBER) == octets.copy(), "BER returns what is stored");
  look(parameterOf(name));

  AsnEncodedData written{};
  if (run(X509GenNameObjectGetPduDER, name, &written).code != 0) {
    require(!isWellFormed({octets.begin(), octets.end()}), "what was read can be written");
    return;
  }
  const Octets encoding = der(name);
  require(compare("generalName", {octets.begin(), octets.end()}, encoding) != Rewriting::unlawful,
          "a name changes by the rules only");
  const GenNameObject again;
  require(set(again, View(encoding), X509GenNameObjectSetPduBER) == 0, "what was written can be read");
  require(der(again) == encoding, "what was written is written again");
  copies(name, encoding);
  byParameter(name, encoding);
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  using namespace fuzz;
  if (size == 0) return 0;
  const View octets(data + 1, size - 1);
  const GenNameObject ber;
  const GenNameObject strict;
  const uint32_t berCode = set(ber, octets, X509GenNameObjectSetPduBER);
  const uint32_t derCode = set(strict, octets, X509GenNameObjectSetPduDER);
  if (berCode != 0) {
    require(derCode != 0, "DER takes nothing that BER refuses");
    refused(octets, X509GenNameObjectSetPduBER);
    return 0;
  }
  if (derCode == 0) {
    require(der(strict) == octets.copy(), "DER returns what is stored");
  } else {
    refused(octets, X509GenNameObjectSetPduDER);
  }
  accepted(ber, octets);
  return 0;
}
