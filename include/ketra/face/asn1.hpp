/// @file
/// Encodings opened for reading, piece by piece: what the tolerant reads stand on.
#pragma once

#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

namespace detail {

// The definitions of what is read piece by piece. Names and subtrees stay open types, so that each is read, or found
// unreadable, by itself.
namespace asn1 {

using namespace schema;
using schema::Integer;  // not the types of the face
using schema::ObjectIdentifier;
using schema::Octets;

// clang-format off
inline constexpr Row kRows[] = {
    SequenceOf("Members"),
        Element(OpenType),

    Sequence("AuthorityKeyIdentifier"),
        Component("keyIdentifier", Context(0), OctetString, Optional),
        Component("authorityCertIssuer", Context(1), "Members", Optional),
        Component("authorityCertSerialNumber", Context(2), Integer, Optional),

    Type("CRLNumber", Integer),

    Type("CPSuri", Octets(0x16)),
    Sequence("UserNotice"),
        Component("noticeRef", "NoticeReference", Optional),
        Component("explicitText", "CharacterString", Optional),
    Sequence("NoticeReference"),
        Component("organization", "CharacterString"),
        Component("noticeNumbers", "NoticeNumbers"),
    SequenceOf("NoticeNumbers"),
        Element(Integer),

    // The alternatives of DirectoryString, in their order, and more.
    Choice("CharacterString"),
        Component("teletexString", Octets(0x14)),
        Component("printableString", Octets(0x13)),
        Component("bmpString", Octets(0x1E)),
        Component("universalString", Octets(0x1C)),
        Component("utf8String", Octets(0x0C)),
        Component("numericString", Octets(0x12)),
        Component("ia5String", Octets(0x16)),
        Component("visibleString", Octets(0x1A)),

    Sequence("DistributionPoint"),
        Component("distributionPoint", Explicit(0), "DistributionPointName", Optional),
        Component("reasons", Context(1), BitString, Optional),
        Component("cRLIssuer", Context(2), "Members", Optional),
    Choice("DistributionPointName"),
        Component("fullName", Context(0), "Members"),
        Component("nameRelativeToCRLIssuer", Context(1), "RelativeDistinguishedName"),
    Sequence("IssuingDistributionPoint"),
        Component("distributionPoint", Explicit(0), "DistributionPointName", Optional),
        Component("onlyContainsUserCerts", Context(1), Boolean, Optional),
        Component("onlyContainsCACerts", Context(2), Boolean, Optional),
        Component("onlySomeReasons", Context(3), BitString, Optional),
        Component("indirectCRL", Context(4), Boolean, Optional),

    Sequence("NameConstraints"),
        Component("permittedSubtrees", Context(0), "Members", Optional),
        Component("excludedSubtrees", Context(1), "Members", Optional),
    Sequence("GeneralSubtree"),
        Component("base", OpenType),
        Component("minimum", Context(0), Integer, Optional),
        Component("maximum", Context(1), Integer, Optional),

    SequenceOf("Name"),
        Element("RelativeDistinguishedName"),
    SetOf("RelativeDistinguishedName"),
        Element("AttributeTypeAndValue"),
    Sequence("AttributeTypeAndValue"),
        Component("type", ObjectIdentifier),
        Component("value", OpenType),
};
// clang-format on
inline constexpr auto kRecords = compile(kRows);

inline constexpr const AsnType *kAuthorityKeyId = &kRecords[indexOf(kRows, "AuthorityKeyIdentifier")];
inline constexpr const AsnType *kCrlNumber = &kRecords[indexOf(kRows, "CRLNumber")];
inline constexpr const AsnType *kCpsUri = &kRecords[indexOf(kRows, "CPSuri")];
inline constexpr const AsnType *kUserNotice = &kRecords[indexOf(kRows, "UserNotice")];
inline constexpr const AsnType *kCharacterString = &kRecords[indexOf(kRows, "CharacterString")];
inline constexpr const AsnType *kPoint = &kRecords[indexOf(kRows, "DistributionPoint")];
inline constexpr const AsnType *kIssuingPoint = &kRecords[indexOf(kRows, "IssuingDistributionPoint")];
inline constexpr const AsnType *kNameConstraints = &kRecords[indexOf(kRows, "NameConstraints")];
inline constexpr const AsnType *kSubtree = &kRecords[indexOf(kRows, "GeneralSubtree")];
inline constexpr const AsnType *kName = &kRecords[indexOf(kRows, "Name")];

}  // namespace asn1

// The path of a list member by its number from 1.
class MemberPath {
 public:
  explicit MemberPath(uint32_t number) { std::to_chars(std::begin(text_), std::end(text_), number); }
  const char *get() const { return text_; }

 private:
  char text_[std::numeric_limits<uint32_t>::digits10 + 2] = {};
};

// A value in a work object of its own.
class WorkValue {
 public:
  // An encoding (BER) that is decoded; it must outlive this.
  WorkValue(const AsnType *type, View encoding) : WorkValue() {
    const AsnEncodedData data = encoded(encoding);
    run([&](AsnErrorBlock *err) { return AsnOpenFromMem(object(), type, &data, &value_, err); });
    run([&](AsnErrorBlock *err) { return AsnDecode(object(), value_, 0, nullptr, err); });
  }
  // The same without an exception: nothing when it cannot be decoded, and why in `err`.
  static std::optional<WorkValue> decoded(const AsnType *type, View encoding, AsnErrorBlock *err) {
    WorkValue value;
    const AsnEncodedData data = encoded(encoding);
    AsnErrorReset(err);
    if (AsnOpenFromMem(value.object(), type, &data, &value.value_, err) != 0 ||
        AsnDecode(value.object(), value.value_, 0, nullptr, err) != 0) {
      return std::nullopt;
    }
    return std::optional<WorkValue>(std::move(value));
  }
  // A new one, to be filled.
  explicit WorkValue(const AsnType *type) : WorkValue() {
    run([&](AsnErrorBlock *err) { return AsnOpenNew(object(), type, &value_, err); });
  }

  AsnObject object() const { return object_.get(); }
  AsnValue get() const { return value_; }

  // Null when it is absent.
  AsnValue element(AsnValue parent, const char *path) const {
    AsnValue element = nullptr;
    run([&](AsnErrorBlock *err) { return AsnGetElement(object(), parent, path, &element, err); });
    return element;
  }
  uint32_t count(AsnValue list) const {
    uint32_t count = 0;
    run([&](AsnErrorBlock *err) { return AsnCalCountOfSequence(object(), list, "/", &count, err); });
    return count;
  }
  // The complete encoding that an open type holds, the content octets of an INTEGER; a view into what was opened.
  // Visiting the members of a list one after the other takes constant time each.
  View octets(AsnValue parent, const char *path) const {
    const uint8_t *octets = nullptr;
    uint32_t length = 0;
    run([&](AsnErrorBlock *err) { return AsnCalAddressOfValFld(object(), parent, path, &octets, &length, err); });
    return {octets, length};
  }

 private:
  WorkValue() {
    AsnObject object = nullptr;
    run([&](AsnErrorBlock *err) { return AsnObjectCreate(&object, err); });
    object_.reset(object);
  }

  struct Destroy {
    void operator()(AsnObject object) const { AsnObjectDestroy(object, nullptr); }
  };
  std::unique_ptr<AsnObjectRecord, Destroy> object_;
  AsnValue value_ = nullptr;
};

// A pool for what is read in passing.
class Pool {
 public:
  Pool() {
    AsnMemObject pool = nullptr;
    run([&](AsnErrorBlock *err) { return AsnMemObjectCreate(&pool, err); });
    pool_.reset(pool);
  }
  AsnMemObject get() const { return pool_.get(); }

 private:
  struct Destroy {
    void operator()(AsnMemObject pool) const { AsnMemObjectDestroy(pool, nullptr); }
  };
  std::unique_ptr<AsnMemObjectRecord, Destroy> pool_;
};

// A string, put together when it comes in segments.
inline Octets readString(const WorkValue &value, AsnValue parent, const char *path) {
  const Pool pool;
  AsnOct c{};
  run([&](AsnErrorBlock *err) { return AsnMUtilGetOctBER(pool.get(), value.object(), parent, path, &c, err); });
  return View(c.octets, c.length).copy();
}

// The stored octets of an extension; absent ones are an Error.
inline View storedValue(KetraObject object, const Objid &objid) {
  const KetraExtension *extension = nullptr;
  run([&](AsnErrorBlock *err) { return KetraObjectSearchExtpByObjid(object, &objid, &extension, err); });
  if (extension == nullptr) fail(KetraError_ExtensionAbsent, "ketra::ExtensionTraits", "None extension");
  return view(extension->value);
}

inline bool isOutOfMemory(uint32_t code) {
  return code == AsnError_OutOfMemory || code == AsnMemError_OutOfMemory || code == X509NameError_OutOfMemory;
}

}  // namespace detail

}  // namespace face
}  // namespace ketra
