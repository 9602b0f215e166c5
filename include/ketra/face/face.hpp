/// @file
/// The C++ face of libketra, header only, over the C interface (ketra.h, ketra_runtime.h). C++17.
/// @code
/// ketra::Extensions extensions;
/// extensions.set(ketra::BasicConstraints{true, 0}, /*critical=*/true);
/// if (auto usage = extensions.get<ketra::KeyUsage>(); usage && usage->keyCertSign) ...
/// @endcode
///
/// Failures are ketra::Error. Values own their memory; views (RawExtension, View) point into the Extensions object and
/// live until the extension they show is replaced or erased. One object is used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>

#include "ketra/face/alternative_names.hpp"
#include "ketra/face/authority_key_id.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/certificate_policies.hpp"
#include "ketra/face/character_string.hpp"
#include "ketra/face/crl_entries.hpp"
#include "ketra/face/crl_numbers.hpp"
#include "ketra/face/directory_attributes.hpp"
#include "ketra/face/distribution_points.hpp"
#include "ketra/face/general_name.hpp"
#include "ketra/face/integer.hpp"
#include "ketra/face/issuing_distribution_point.hpp"
#include "ketra/face/key_and_constraints.hpp"
#include "ketra/face/name.hpp"
#include "ketra/face/name_constraints.hpp"
#include "ketra/face/policy_qualifier.hpp"
#include "ketra/face/policy_rules.hpp"
#include "ketra/face/time.hpp"
#include "ketra/face/usages.hpp"

/// The C++ face. Value types own their members, compare with == and != member by member, and are read and written by
/// Extensions. What fails throws Error; containers may throw std::bad_alloc.
namespace ketra {
inline namespace face {

/// What a read may cost. Reading takes less than 260 octets of memory per octet of the value, results included; a list
/// of bad names that all fail differently comes near that, an ordinary value takes 10 to 30.
struct ReadLimits {
  std::size_t octets = std::numeric_limits<std::size_t>::max();  ///< of the value as it is stored
};

/// One extension as it is stored, typed or not.
struct RawExtension {
  ObjectIdentifier objid;  ///< extnID
  bool critical = false;   ///< as it is stored; left out is false
  View value;              ///< the content of extnValue
};

/// The extensions of one certificate or CRL. Moves, does not copy.
class Extensions {
 public:
  /// An object without extensions.
  Extensions() {
    detail::run([&](AsnErrorBlock *err) {
      KetraObject object = nullptr;
      const int32_t result = KetraObjectCreate(&object, err);
      object_.reset(object);
      return result;
    });
  }

  /// From one Extensions SEQUENCE (BER), which is copied. Throws when it is malformed or repeats an identifier.
  static Extensions decode(View encoding) {
    Extensions extensions;
    const AsnEncodedData data = detail::encoded(encoding);
    detail::run([&](AsnErrorBlock *err) { return KetraObjectSetPduBER(extensions.handle(), &data, err); });
    return extensions;
  }

  /// As one Extensions SEQUENCE (DER).
  Octets encode() const {
    AsnEncodedData data{};
    detail::run([&](AsnErrorBlock *err) { return KetraObjectGetPduDER(handle(), &data, err); });
    const detail::PoolMemory memory(handle(), data.octets);
    return detail::view(data).copy();
  }

  /// The extension of type T, or nothing when it is absent; one that cannot be read is an Error. Reading again and
  /// again does not grow the object; but a get that fails at a name leaves that name's octets in its memory, to its
  /// end. A value beyond the limits is AsnError_TooLong and costs nothing.
  template <class T>
  std::optional<T> get(const ReadLimits &limits = {}) const {
    std::optional<T> value;
    detail::run([&](AsnErrorBlock *err) {
      const KetraExtension *extension = nullptr;
      const int32_t result = KetraObjectSearchExtpByObjid(handle(), &ExtensionTraits<T>::objid(), &extension, err);
      if (result != 0 || extension == nullptr) return result;
      if (extension->value.length > limits.octets) {
        detail::fail(AsnError_TooLong, "ketra::Extensions::get", "a value longer than the limit");
      }
      return ExtensionTraits<T>::get(handle(), value.emplace(), err);
    });
    return value;
  }

  /// Stores an extension whose criticality the caller chooses; one of the same type is replaced in its place. On
  /// failure nothing is changed.
  template <class T>
  void set(const T &value, bool critical) {
    static_assert(ExtensionTraits<T>::kCallerSetsCritical, "the criticality of this extension is fixed");
    detail::run([&](AsnErrorBlock *err) { return ExtensionTraits<T>::set(handle(), critical ? 1 : 0, value, err); });
  }

  /// Stores an extension whose criticality is fixed.
  template <class T>
  void set(const T &value) {
    static_assert(!ExtensionTraits<T>::kCallerSetsCritical, "say whether the extension is critical");
    detail::run([&](AsnErrorBlock *err) { return ExtensionTraits<T>::set(handle(), value, err); });
  }

  /// Any extension, typed here or not; replaces one of the same identifier.
  void set(const ObjectIdentifier &objid, bool critical, View value) {
    const KetraExtension extension{objid.objid(), critical ? 1 : 0, critical ? 1 : 0, detail::encoded(value)};
    detail::run([&](AsnErrorBlock *err) { return KetraObjectSetExt(handle(), &extension, err); });
  }

  /// Whether there is one of type T.
  template <class T>
  bool contains() const {
    return search(ExtensionTraits<T>::objid()) != nullptr;
  }
  /// The extension as it is stored; nothing when it is absent.
  template <class T>
  std::optional<RawExtension> find() const {
    return raw(search(ExtensionTraits<T>::objid()));
  }
  /// The same for any identifier.
  std::optional<RawExtension> find(const ObjectIdentifier &objid) const { return raw(search(objid.objid())); }

  /// Removes an extension; false when there was none.
  template <class T>
  bool erase() {
    return erase(ExtensionTraits<T>::objid());
  }
  /// The same for any identifier.
  bool erase(const ObjectIdentifier &objid) { return erase(objid.objid()); }

  /// Number of extensions.
  uint32_t size() const {
    uint32_t count = 0;
    detail::run([&](AsnErrorBlock *err) { return KetraObjectCalExt(handle(), &count, err); });
    return count;
  }
  /// The extension at an index from 0, in encoding order; beyond the last an Error.
  RawExtension at(uint32_t index) const {
    const KetraExtension *extension = nullptr;
    detail::run([&](AsnErrorBlock *err) { return KetraObjectGetExtpByIndex(handle(), index, &extension, err); });
    return *raw(extension);
  }

  /// Visits the extensions in encoding order.
  class Iterator {
   public:
    /// As std::iterator_traits wants it.
    /// @{
    using iterator_category = std::input_iterator_tag;
    using value_type = RawExtension;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = RawExtension;
    /// @}

    /// The extension at an index; `extensions` must outlive this.
    Iterator(const Extensions *extensions, uint32_t index) : extensions_(extensions), index_(index) {}
    /// The extension, as Extensions::at gives it.
    RawExtension operator*() const { return extensions_->at(index_); }
    /// Goes on to the next one.
    Iterator &operator++() {
      ++index_;
      return *this;
    }
    /// Goes on to the next one and returns where it was.
    Iterator operator++(int) {
      Iterator before = *this;
      ++index_;
      return before;
    }
    friend bool operator==(const Iterator &a, const Iterator &b) { return a.index_ == b.index_; }
    friend bool operator!=(const Iterator &a, const Iterator &b) { return a.index_ != b.index_; }

   private:
    const Extensions *extensions_;
    uint32_t index_;
  };
  /// At the first extension.
  Iterator begin() const { return {this, 0}; }
  /// Behind the last extension.
  Iterator end() const { return {this, size()}; }

  /// For the C interface; stays the property of this object.
  KetraObject handle() const { return object_.get(); }

 private:
  struct Destroy {
    void operator()(KetraObject object) const { KetraObjectDestroy(object, nullptr); }
  };

  const KetraExtension *search(const Objid &objid) const {
    const KetraExtension *extension = nullptr;
    detail::run([&](AsnErrorBlock *err) { return KetraObjectSearchExtpByObjid(handle(), &objid, &extension, err); });
    return extension;
  }

  static std::optional<RawExtension> raw(const KetraExtension *extension) {
    if (extension == nullptr) return std::nullopt;
    return RawExtension{ObjectIdentifier(extension->objid), extension->criticalOption == 1 && extension->critical != 0,
                        detail::view(extension->value)};
  }

  bool erase(const Objid &objid) {
    AsnErrorBlock err;
    AsnErrorReset(&err);
    if (KetraObjectDeleteExt(handle(), &objid, &err) == 0) return true;
    if (err.code == KetraObjectError_Absent) return false;
    throw Error(err);
  }

  std::unique_ptr<KetraObjectRecord, Destroy> object_;
};

}  // namespace face
}  // namespace ketra
