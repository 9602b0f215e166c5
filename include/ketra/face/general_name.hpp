/// @file
/// GeneralName in its nine kinds (RFC 5280 4.2.1.6).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "ketra/face/base.hpp"
#include "ketra/face/name.hpp"

namespace ketra {
inline namespace face {

/// otherName: a value of a type that its identifier tells.
struct OtherName {
  ObjectIdentifier type;        ///< type-id: what the value is
  std::optional<Octets> value;  ///< one complete encoding

  friend bool operator==(const OtherName &a, const OtherName &b) { return a.type == b.type && a.value == b.value; }
};

/// rfc822Name. The text of this kind and of dNSName and uniformResourceIdentifier is what stands in the encoding: any
/// octets when reading (a NUL, a newline, octets beyond ASCII), and written as they are, unchecked. Internationalised
/// names have to come in their ASCII form.
struct Rfc822Name {
  std::string text;  ///< mailbox
  friend bool operator==(const Rfc822Name &a, const Rfc822Name &b) { return a.text == b.text; }
};
/// dNSName, with the text as it stands (Rfc822Name).
struct DnsName {
  std::string text;  ///< host name
  friend bool operator==(const DnsName &a, const DnsName &b) { return a.text == b.text; }
};
/// uniformResourceIdentifier, with the text as it stands (Rfc822Name).
struct Uri {
  std::string text;  ///< URI
  friend bool operator==(const Uri &a, const Uri &b) { return a.text == b.text; }
};

/// x400Address.
struct X400Address {
  Octets encoding;  ///< one ORAddress SEQUENCE
  friend bool operator==(const X400Address &a, const X400Address &b) { return a.encoding == b.encoding; }
};

/// directoryName.
struct DirectoryName {
  Name name;  ///< the name
  friend bool operator==(const DirectoryName &a, const DirectoryName &b) { return a.name == b.name; }
};

/// ediPartyName: a party of electronic data interchange. Both strings have 1 to 32768 characters.
struct EdiPartyName {
  std::optional<DirectoryString> nameAssigner;  ///< who assigned the name
  DirectoryString partyName;                    ///< the name

  friend bool operator==(const EdiPartyName &a, const EdiPartyName &b) {
    return a.nameAssigner == b.nameAssigner && a.partyName == b.partyName;
  }
};

/// iPAddress: an address, or a range of them.
struct IpAddress {
  Octets octets;  ///< 4 or 16; 8 or 32 with a mask, as in name constraints; any number when reading

  /// "192.0.2.1", "2001:db8::1", "192.0.2.0/24". Other lengths and other texts are an Error.
  static IpAddress parse(const std::string &text) {
    if (text.find('\0') != std::string::npos) detail::fail(X509IpError_Text, "ketra::IpAddress", "an embedded NUL");
    uint8_t octets[32];
    uint32_t length = 0;
    detail::run([&](AsnErrorBlock *err) { return X509IpAddressFromText(text.c_str(), octets, &length, err); });
    return {Octets(octets, octets + length)};
  }
  /// The text form; an Error when there are not 4, 16, 8 or 32 octets.
  std::string text() const {
    const AsnOct c = detail::octets(octets);
    char text[80];
    detail::run([&](AsnErrorBlock *err) { return X509IpAddressToText(&c, text, sizeof text, err); });
    return text;
  }

  friend bool operator==(const IpAddress &a, const IpAddress &b) { return a.octets == b.octets; }
};

/// registeredID.
struct RegisteredId {
  ObjectIdentifier id;  ///< the identifier
  friend bool operator==(const RegisteredId &a, const RegisteredId &b) { return a.id == b.id; }
};

namespace detail {
template <class T, class... Kinds>
constexpr bool isOneOf(const std::variant<Kinds...> *) {
  return (std::is_same_v<T, Kinds> || ...);
}
}  // namespace detail

/// In the order of the CHOICE: index() + 1 is X509GenName_...
using GeneralName = std::variant<OtherName, Rfc822Name, DnsName, X400Address, DirectoryName, EdiPartyName, Uri,
                                 IpAddress, RegisteredId>;

template <class T, class = std::enable_if_t<detail::isOneOf<T>(static_cast<const GeneralName *>(nullptr))>>
bool operator!=(const T &a, const T &b) {
  return !(a == b);
}

/// The encoding of a UTF8String: the value of many an otherName (a user principal name, an XMPP address).
inline Octets utf8String(const std::string &text) { return detail::encoding(0x0C, detail::view(text)); }

/// A GeneralName of the kind; `ip` takes the texts of IpAddress::parse.
/// @{
inline GeneralName otherName(ObjectIdentifier type) { return OtherName{std::move(type), std::nullopt}; }
inline GeneralName otherName(ObjectIdentifier type, Octets value) {
  return OtherName{std::move(type), std::move(value)};
}
inline GeneralName email(std::string address) { return Rfc822Name{std::move(address)}; }
inline GeneralName dns(std::string name) { return DnsName{std::move(name)}; }
inline GeneralName x400(Octets orAddress) { return X400Address{std::move(orAddress)}; }
inline GeneralName directory(Name name) { return DirectoryName{std::move(name)}; }
inline GeneralName edi(DirectoryString partyName) { return EdiPartyName{std::nullopt, std::move(partyName)}; }
inline GeneralName edi(DirectoryString partyName, DirectoryString nameAssigner) {
  return EdiPartyName{std::move(nameAssigner), std::move(partyName)};
}
inline GeneralName uri(std::string text) { return Uri{std::move(text)}; }
inline GeneralName ip(const std::string &text) { return IpAddress::parse(text); }
inline GeneralName registeredId(ObjectIdentifier id) { return RegisteredId{std::move(id)}; }
/// @}

namespace detail {

// A name as the C interface takes it; points into the name, which must outlive it.
class NameParameter {
 public:
  explicit NameParameter(const GeneralName &name) {
    c_.type = static_cast<uint32_t>(name.index()) + 1;
    std::visit([this](const auto &kind) { fill(kind); }, name);
  }
  const X509GenNameParam *get() const { return &c_; }

 private:
  void fill(const OtherName &name) {
    c_.otherName = {name.type.objid(), {name.value ? encoded(*name.value) : AsnEncodedData{}, name.value ? 1 : 0}};
  }
  void fill(const Rfc822Name &name) { c_.rfc822Name = octets(view(name.text)); }
  void fill(const DnsName &name) { c_.dNSName = octets(view(name.text)); }
  void fill(const X400Address &name) { c_.x400Address = encoded(name.encoding); }
  void fill(const DirectoryName &name) {
    directoryName_ = name.name.object();
    c_.directoryName = directoryName_.get();
  }
  void fill(const EdiPartyName &name) {
    c_.ediPartyName = {{name.nameAssigner ? name.nameAssigner->string() : X509DirStr{}, name.nameAssigner ? 1 : 0},
                       name.partyName.string()};
  }
  void fill(const Uri &name) { c_.uniformResourceIdentifier = octets(view(name.text)); }
  void fill(const IpAddress &name) { c_.iPAddress = octets(name.octets); }
  void fill(const RegisteredId &name) { c_.registeredID = name.id.objid(); }

  X509GenNameParam c_{};
  NameObject directoryName_;
};

inline std::string text(const AsnOct &c) { return {reinterpret_cast<const char *>(c.octets), c.length}; }
inline DirectoryString directoryString(const X509DirStr &c) { return {c.choice, View(c.octets, c.length).copy()}; }

inline OtherName otherNameIn(const X509OtherName &c) {
  if (c.value.option != 1) return {ObjectIdentifier(c.type), std::nullopt};
  return {ObjectIdentifier(c.type), view(c.value.value).copy()};
}
inline EdiPartyName ediPartyNameIn(const X509EdiPartyName &c) {
  if (c.nameAssigner.option != 1) return {std::nullopt, directoryString(c.partyName)};
  return {directoryString(c.nameAssigner.value), directoryString(c.partyName)};
}

// Makes `name` a copy of one from the C interface: in its place, because moving a variant costs more than a short copy.
inline void copyName(const X509GenNameParam &c, GeneralName &name) {
  switch (c.type) {
    case X509GenName_OtherName: name = otherNameIn(c.otherName); return;
    case X509GenName_Rfc822Name: name.emplace<Rfc822Name>().text = text(c.rfc822Name); return;
    case X509GenName_DNSName: name.emplace<DnsName>().text = text(c.dNSName); return;
    case X509GenName_X400Address: name.emplace<X400Address>().encoding = view(c.x400Address).copy(); return;
    case X509GenName_DirectoryName: name.emplace<DirectoryName>().name = Name::copyOf(c.directoryName); return;
    case X509GenName_EdiPartyName: name = ediPartyNameIn(c.ediPartyName); return;
    case X509GenName_UniformResourceIdentifier: name.emplace<Uri>().text = text(c.uniformResourceIdentifier); return;
    case X509GenName_IPAddress:
      name.emplace<IpAddress>().octets = View(c.iPAddress.octets, c.iPAddress.length).copy();
      return;
    case X509GenName_RegisteredID: name.emplace<RegisteredId>().id = ObjectIdentifier(c.registeredID); return;
    default: fail(KetraError_GetParamType, "ketra::GeneralName", "no kind of GeneralName has this number");
  }
}

}  // namespace detail

}  // namespace face
}  // namespace ketra
