/// @file
/// DistributionPointName and ReasonFlags (RFC 5280 4.2.1.13), which points and issuing points share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/general_names.hpp"
#include "ketra/face/name.hpp"

namespace ketra {
inline namespace face {

/// ReasonFlags, the seven bits that the C interface carries. privilegeWithdrawn and aACompromise, which follow, are not
/// read.
struct Reasons {
  bool unused = false;  ///< the name of bit 0, which has no meaning; some issuers set it
  /// The bit of this name.
  /// @{
  bool keyCompromise = false;
  bool cACompromise = false;
  bool affiliationChanged = false;
  bool superseded = false;
  bool cessationOfOperation = false;
  bool certificateHold = false;
  /// @}

  /// One bit by its name.
  struct Bit {
    const char *name;       ///< as the standard spells it
    bool Reasons::*member;  ///< where it is
  };
  /// All bits, in the order of the standard.
  static const std::vector<Bit> &bits() {
    static const std::vector<Bit> kBits = {
        {"unused", &Reasons::unused},
        {"keyCompromise", &Reasons::keyCompromise},
        {"cACompromise", &Reasons::cACompromise},
        {"affiliationChanged", &Reasons::affiliationChanged},
        {"superseded", &Reasons::superseded},
        {"cessationOfOperation", &Reasons::cessationOfOperation},
        {"certificateHold", &Reasons::certificateHold},
    };
    return kBits;
  }

  friend bool operator==(const Reasons &a, const Reasons &b) {
    for (const Bit &bit : bits()) {
      if (a.*bit.member != b.*bit.member) return false;
    }
    return true;
  }
  friend bool operator!=(const Reasons &a, const Reasons &b) { return !(a == b); }
};

/// One attribute of a relative name.
struct AttributeTypeAndValue {
  ObjectIdentifier type;  ///< attribute type
  Octets value;           ///< one complete encoding

  friend bool operator==(const AttributeTypeAndValue &a, const AttributeTypeAndValue &b) {
    return a.type == b.type && a.value == b.value;
  }
  friend bool operator!=(const AttributeTypeAndValue &a, const AttributeTypeAndValue &b) { return !(a == b); }
};

namespace detail {

// The attributes of a RelativeDistinguishedName that is part of a decoded value.
inline std::vector<AttributeTypeAndValue> attributesIn(const WorkValue &value, AsnValue relativeName) {
  const Pool pool;
  const uint32_t count = value.count(relativeName);
  if (count == 0) fail(KetraError_RelativeNameEmpty, "ketra::RelativeName", "no attribute");
  std::vector<AttributeTypeAndValue> attributes;
  for (uint32_t i = 1; i <= count; ++i) {
    AsnValue member = value.element(relativeName, MemberPath(i).get());
    Objid type{};
    run([&](AsnErrorBlock *err) {
      return AsnMUtilGetObjidConstBER(pool.get(), value.object(), member, "type", &type, err);
    });
    attributes.push_back({ObjectIdentifier(type), value.octets(member, "value").copy()});
  }
  return attributes;
}

// The Name that consists of these attributes (path "/"), or its only RelativeDistinguishedName ("1").
inline Octets encodeName(const std::vector<AttributeTypeAndValue> &attributes, const char *path) {
  const WorkValue name(asn1::kName);
  AsnValue list = nullptr;
  run([&](AsnErrorBlock *err) { return AsnMakeElement(name.object(), name.get(), "1", &list, err); });
  uint32_t number = 0;
  for (const AttributeTypeAndValue &attribute : attributes) {
    const MemberPath member(++number);
    const Objid type = attribute.type.objid();
    const AsnEncodedData value = encoded(attribute.value);
    AsnValue element = nullptr;
    run([&](AsnErrorBlock *err) { return AsnMakeElement(name.object(), list, member.get(), &element, err); });
    run([&](AsnErrorBlock *err) { return AsnSetObjidDER(name.object(), element, "type", &type, err); });
    run([&](AsnErrorBlock *err) { return AsnSetEncodedDataDER(name.object(), element, "value", &value, err); });
  }
  const Pool pool;
  AsnEncodedData encoding{};
  run([&](AsnErrorBlock *err) {
    return AsnMUtilEncodeDER(pool.get(), name.object(), name.get(), path, &encoding, err);
  });
  return view(encoding).copy();
}

}  // namespace detail

/// What has to be appended to the name of the CRL issuer.
struct RelativeName {
  std::vector<AttributeTypeAndValue> attributes;  ///< a set stores them in the order of DER

  /// From text in UTF-8, in the string types that Name::add chooses: of({{attribute::commonName, "CRL 1"}}).
  static RelativeName of(const std::vector<Name::Attribute> &attributes) {
    const Name name = Name().add(attributes);
    const detail::WorkValue value(detail::asn1::kName, name.encode());
    return {detail::attributesIn(value, value.element(value.get(), "1"))};
  }
  /// As in Name::text(): `CN=CRL 1`.
  std::string text() const { return Name::decode(detail::encodeName(attributes, "/")).text(); }
  /// One RelativeDistinguishedName (DER).
  Octets encode() const { return detail::encodeName(attributes, "1"); }

  friend bool operator==(const RelativeName &a, const RelativeName &b) { return a.attributes == b.attributes; }
  friend bool operator!=(const RelativeName &a, const RelativeName &b) { return !(a == b); }
};

/// Full names of one point; `N` is GeneralName or NameOrError.
template <class N>
struct BasicFullName {
  std::vector<N> names;  ///< of one point, each another way to get there

  friend bool operator==(const BasicFullName &a, const BasicFullName &b) { return a.names == b.names; }
  friend bool operator!=(const BasicFullName &a, const BasicFullName &b) { return !(a == b); }
};
/// The strict form.
using FullName = BasicFullName<GeneralName>;
/// The tolerant form.
using TolerantFullName = BasicFullName<NameOrError>;

/// In the order of the CHOICE: index() + 1 is `X509DistributionPointName_...`.
template <class N>
using BasicDistributionPointName = std::variant<BasicFullName<N>, RelativeName>;
/// The strict form.
using DistributionPointName = BasicDistributionPointName<GeneralName>;

}  // namespace face
}  // namespace ketra
