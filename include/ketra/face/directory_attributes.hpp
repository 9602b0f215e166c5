/// @file
/// SubjectDirectoryAttributes (RFC 5280 4.2.1.8).
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

/// An attribute of a type and one value or more.
struct Attribute {
  ObjectIdentifier type;       ///< attribute type
  std::vector<Octets> values;  ///< each one complete encoding; a set stores them in the order of DER

  friend bool operator==(const Attribute &a, const Attribute &b) { return a.type == b.type && a.values == b.values; }
  friend bool operator!=(const Attribute &a, const Attribute &b) { return !(a == b); }
};

/// Attributes of the subject (RFC 5280 4.2.1.8). Always non-critical.
struct SubjectDirectoryAttributes {
  std::vector<Attribute> attributes;  ///< one or more, to be set

  friend bool operator==(const SubjectDirectoryAttributes &a, const SubjectDirectoryAttributes &b) {
    return a.attributes == b.attributes;
  }
  friend bool operator!=(const SubjectDirectoryAttributes &a, const SubjectDirectoryAttributes &b) { return !(a == b); }
};

namespace detail {

struct DestroyAttributes {
  void operator()(X509AttributesObject attributes) const { X509AttributesObjectDestroy(attributes, nullptr); }
};
using AttributesObject = std::unique_ptr<X509AttributesObjectRecord, DestroyAttributes>;

inline AttributesObject attributesObject() {
  X509AttributesObject attributes = nullptr;
  run([&](AsnErrorBlock *err) { return X509AttributesObjectCreate(&attributes, err); });
  return AttributesObject(attributes);
}

inline Attribute attributeIn(X509AttributesObject attributes, uint32_t index) {
  Objid type{};
  uint32_t count = 0;
  run([&](AsnErrorBlock *err) { return X509AttributesObjectGetType(attributes, index, &type, &count, err); });
  Attribute attribute{ObjectIdentifier(type), {}};
  attribute.values.reserve(count);
  for (uint32_t i = 0; i < count; ++i) {
    AsnEncodedData value{};
    run([&](AsnErrorBlock *err) { return X509AttributesObjectGetValue(attributes, index, i, &value, err); });
    attribute.values.push_back(view(value).copy());
  }
  return attribute;
}

}  // namespace detail

template <>
struct ExtensionTraits<SubjectDirectoryAttributes> {
  static const Objid &objid() { return X509Objid_SubjectDirectoryAttributes; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const SubjectDirectoryAttributes &value, AsnErrorBlock *err) {
    const detail::AttributesObject attributes = detail::attributesObject();
    for (const Attribute &attribute : value.attributes) {
      const Objid type = attribute.type.objid();
      std::vector<AsnEncodedData> values;
      for (const Octets &each : attribute.values) values.push_back(detail::encoded(each));
      const auto count = static_cast<uint32_t>(values.size());
      detail::run([&](AsnErrorBlock *e) {
        return X509AttributesObjectAppend(attributes.get(), &type, values.data(), count, e);
      });
    }
    return KetraObjectSsetSubjectDirectoryAttributes(object, attributes.get(), err);
  }
  static int32_t get(KetraObject object, SubjectDirectoryAttributes &value, AsnErrorBlock *err) {
    const detail::AttributesObject attributes = detail::attributesObject();
    const int32_t result = KetraObjectSgetSubjectDirectoryAttributes(object, attributes.get(), err);
    if (result != 0) return result;
    uint32_t count = 0;
    detail::run([&](AsnErrorBlock *e) { return X509AttributesObjectCal(attributes.get(), &count, e); });
    value.attributes.reserve(count);
    for (uint32_t i = 0; i < count; ++i) value.attributes.push_back(detail::attributeIn(attributes.get(), i));
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
