// The C++ face of libketra, header only, over the C interface (ketra.h, ketra_runtime.h). C++17.
//
//   ketra::Extensions extensions;
//   extensions.set(ketra::BasicConstraints{true, 0}, /*critical=*/true);
//   if (auto usage = extensions.get<ketra::KeyUsage>(); usage && usage->keyCertSign) ...
//
// Failures are ketra::Error. Values own their memory; views (RawExtension, View) point into the Extensions object and
// live until the extension they show is replaced or erased. One object is used by one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ketra.h"
#include "ketra_errors.h"
#include "ketra_runtime.h"

namespace ketra {

// A failed operation: its code (ketra_errors.h, contracts/) and, in what(), code and trace as lines of text.
class Error : public std::exception {
 public:
  explicit Error(const AsnErrorBlock &block) : code_(block.code) {
    static constexpr AsnErrorMeaning kMeanings[] = {KETRA_ERROR_LIST(KETRA_ERROR_MEANING)};
    constexpr auto count = static_cast<uint32_t>(std::size(kMeanings));
    text_.resize(AsnErrorText(&block, kMeanings, count, nullptr, 0) + std::size_t{1});
    AsnErrorText(&block, kMeanings, count, text_.data(), static_cast<uint32_t>(text_.size()));
    text_.pop_back();
    for (uint32_t i = 0; i < block.count; ++i) trace_.push_back({block.entries[i].function, block.entries[i].message});
  }

  struct Entry {
    std::string function;
    std::string message;
  };

  uint32_t code() const noexcept { return code_; }
  const std::vector<Entry> &trace() const noexcept { return trace_; }  // innermost failure first
  const char *what() const noexcept override { return text_.c_str(); }

 private:
  uint32_t code_;
  std::string text_;
  std::vector<Entry> trace_;
};

using Octets = std::vector<uint8_t>;

// Octets that somebody else owns.
class View {
 public:
  View() = default;
  View(const uint8_t *data, std::size_t size) : data_(data), size_(size) {}
  template <class Container, class = std::enable_if_t<std::is_convertible_v<
                                 decltype(std::declval<const Container &>().data()), const uint8_t *>>>
  View(const Container &container) : data_(container.data()), size_(container.size()) {}

  const uint8_t *data() const { return data_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const uint8_t *begin() const { return data_; }
  const uint8_t *end() const { return data_ + size_; }
  Octets copy() const { return {begin(), end()}; }

 private:
  const uint8_t *data_ = nullptr;
  std::size_t size_ = 0;
};

namespace detail {

// Runs one C operation, `call(err)`, and turns its failure into an Error.
template <class Call>
void run(Call &&call) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (call(&err) != 0) throw Error(err);
}

[[noreturn]] inline void fail(uint32_t code, const char *function, const char *message) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  err.code = code;
  AsnErrorInfo("ketra.hpp", function, message, &err, nullptr, 0);
  throw Error(err);
}

// The length of `view` as the C interface takes it.
inline uint32_t length(View view) {
  if (view.size() <= std::numeric_limits<uint32_t>::max()) return static_cast<uint32_t>(view.size());
  fail(AsnError_Range, "ketra::View", "more than 4294967295 octets");
}

inline AsnEncodedData encoded(View view) { return {view.data(), length(view)}; }
inline AsnOct octets(View view) { return {view.data(), length(view)}; }
inline View view(const AsnEncodedData &data) { return {data.octets, data.length}; }

inline AsnBoolOpt optional(const std::optional<bool> &value) { return {value.value_or(false) ? 1 : 0, value ? 1 : 0}; }
inline AsnIntOpt optional(const std::optional<int32_t> &value) { return {value.value_or(0), value ? 1 : 0}; }
inline std::optional<bool> optional(const AsnBoolOpt &value) {
  return value.option == 1 ? std::optional<bool>(value.value != 0) : std::nullopt;
}
inline std::optional<int32_t> optional(const AsnIntOpt &value) {
  return value.option == 1 ? std::optional<int32_t>(value.value) : std::nullopt;
}

// Memory that a get has left in the pool of an Extensions object; given back at the end of the scope.
class PoolMemory {
 public:
  PoolMemory(KetraObject object, const void *memory) : memory_(memory) {
    if (KetraObjectGetMemObject(object, &pool_, nullptr) != 0) memory_ = nullptr;
  }
  PoolMemory(const PoolMemory &) = delete;
  PoolMemory &operator=(const PoolMemory &) = delete;
  ~PoolMemory() {
    if (memory_ != nullptr) AsnMemObjectFree(pool_, memory_, nullptr);
  }

 private:
  AsnMemObject pool_ = nullptr;
  const void *memory_;
};

}  // namespace detail

// An object identifier that owns its arcs.
class ObjectIdentifier {
 public:
  ObjectIdentifier() = default;
  ObjectIdentifier(std::initializer_list<uint32_t> arcs) : arcs_(arcs) {}
  explicit ObjectIdentifier(const Objid &objid) : arcs_(objid.arcs, objid.arcs + objid.count) {}

  // "2.5.29.19"; a malformed text is an Error.
  static ObjectIdentifier parse(const std::string &text) {
    if (text.find('\0') != std::string::npos)
      detail::fail(AsnError_Objid, "ketra::ObjectIdentifier", "an embedded NUL");
    AsnMemObject pool = nullptr;
    detail::run([&](AsnErrorBlock *err) { return AsnMemObjectCreate(&pool, err); });
    const std::unique_ptr<AsnMemObjectRecord, void (*)(AsnMemObject)> owner(
        pool, [](AsnMemObject p) { AsnMemObjectDestroy(p, nullptr); });
    Objid objid{};
    detail::run([&](AsnErrorBlock *err) { return ObjidFromText(pool, text.c_str(), &objid, err); });
    return ObjectIdentifier(objid);
  }

  const std::vector<uint32_t> &arcs() const { return arcs_; }
  Objid objid() const { return {arcs_.data(), static_cast<uint32_t>(arcs_.size())}; }
  std::string text() const {
    std::string text;
    for (const uint32_t arc : arcs_) text.append(text.empty() ? "" : ".").append(std::to_string(arc));
    return text;
  }

  friend bool operator==(const ObjectIdentifier &a, const ObjectIdentifier &b) { return a.arcs_ == b.arcs_; }
  friend bool operator!=(const ObjectIdentifier &a, const ObjectIdentifier &b) { return a.arcs_ != b.arcs_; }
  friend bool operator<(const ObjectIdentifier &a, const ObjectIdentifier &b) { return a.arcs_ < b.arcs_; }

 private:
  std::vector<uint32_t> arcs_;
};

// ---- The extensions ------------------------------------------------------------------------------------------------

// How Extensions reads and writes a value type: its identifier, whether the caller chooses the criticality, and
//   static int32_t set(KetraObject, [int32_t critical,] const T &, AsnErrorBlock *);
//   static int32_t get(KetraObject, T &, AsnErrorBlock *);
template <class T>
struct ExtensionTraits;

// RFC 5280 4.2.1.9
struct BasicConstraints {
  std::optional<bool> cA;
  std::optional<int32_t> pathLenConstraint;
};

template <>
struct ExtensionTraits<BasicConstraints> {
  static const Objid &objid() { return X509Objid_BasicConstraints; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const BasicConstraints &value, AsnErrorBlock *err) {
    const KetraBasicConstraints c{detail::optional(value.cA), detail::optional(value.pathLenConstraint)};
    return KetraObjectSsetBasicConstraints(object, critical, &c, err);
  }
  static int32_t get(KetraObject object, BasicConstraints &value, AsnErrorBlock *err) {
    KetraBasicConstraints c{};
    const int32_t result = KetraObjectSgetBasicConstraints(object, &c, err);
    if (result == 0) value = {detail::optional(c.cA), detail::optional(c.pathLenConstraint)};
    return result;
  }
};

// RFC 5280 4.2.1.3. X.509 calls nonRepudiation contentCommitment.
struct KeyUsage {
  bool digitalSignature = false;
  bool nonRepudiation = false;
  bool keyEncipherment = false;
  bool dataEncipherment = false;
  bool keyAgreement = false;
  bool keyCertSign = false;
  bool cRLSign = false;
  bool encipherOnly = false;
  bool decipherOnly = false;

  // Each bit by its name, in the order of the standard.
  struct Bit {
    const char *name;
    bool KeyUsage::*member;
  };
  static const std::vector<Bit> &bits() {
    static const std::vector<Bit> kBits = {
        {"digitalSignature", &KeyUsage::digitalSignature},
        {"nonRepudiation", &KeyUsage::nonRepudiation},
        {"keyEncipherment", &KeyUsage::keyEncipherment},
        {"dataEncipherment", &KeyUsage::dataEncipherment},
        {"keyAgreement", &KeyUsage::keyAgreement},
        {"keyCertSign", &KeyUsage::keyCertSign},
        {"cRLSign", &KeyUsage::cRLSign},
        {"encipherOnly", &KeyUsage::encipherOnly},
        {"decipherOnly", &KeyUsage::decipherOnly},
    };
    return kBits;
  }
};

template <>
struct ExtensionTraits<KeyUsage> {
  static const Objid &objid() { return X509Objid_KeyUsage; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const KeyUsage &value, AsnErrorBlock *err) {
    uint8_t octets[2] = {};
    std::size_t n = 0;
    for (const KeyUsage::Bit &bit : KeyUsage::bits()) {
      if (value.*bit.member) octets[n / 8] = static_cast<uint8_t>(octets[n / 8] | 0x80u >> n % 8);
      ++n;
    }
    const AsnBit c{octets, static_cast<uint32_t>(n)};
    return KetraObjectSsetKeyUsage(object, critical, &c, err);
  }
  static int32_t get(KetraObject object, KeyUsage &value, AsnErrorBlock *err) {
    AsnBit c{};
    if (const int32_t result = KetraObjectSgetKeyUsage(object, &c, err); result != 0) return result;
    const detail::PoolMemory memory(object, c.octets);
    std::size_t n = 0;
    for (const KeyUsage::Bit &bit : KeyUsage::bits()) {
      value.*bit.member = (c.octets[n / 8] & 0x80u >> n % 8) != 0;
      ++n;
    }
    return 0;
  }
};

// RFC 5280 4.2.1.2
struct SubjectKeyId {
  Octets keyIdentifier;
};

template <>
struct ExtensionTraits<SubjectKeyId> {
  static const Objid &objid() { return X509Objid_SubjectKeyId; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const SubjectKeyId &value, AsnErrorBlock *err) {
    const AsnOct c = detail::octets(value.keyIdentifier);
    return KetraObjectSsetSubjectKeyId(object, &c, err);
  }
  static int32_t get(KetraObject object, SubjectKeyId &value, AsnErrorBlock *err) {
    AsnOct c{};
    if (const int32_t result = KetraObjectSgetSubjectKeyId(object, &c, err); result != 0) return result;
    const detail::PoolMemory memory(object, c.octets);
    value.keyIdentifier.assign(c.octets, c.octets + c.length);
    return 0;
  }
};

// ---- The Extensions object -----------------------------------------------------------------------------------------

// One extension as it is stored, typed or not.
struct RawExtension {
  ObjectIdentifier objid;
  bool critical = false;
  View value;  // the content of extnValue
};

// The extensions of one certificate or CRL. Moves, does not copy.
class Extensions {
 public:
  Extensions() {
    detail::run([&](AsnErrorBlock *err) {
      KetraObject object = nullptr;
      const int32_t result = KetraObjectCreate(&object, err);
      object_.reset(object);
      return result;
    });
  }

  // From one Extensions SEQUENCE (BER), which is copied. Throws when it is malformed or repeats an identifier.
  static Extensions decode(View encoding) {
    Extensions extensions;
    const AsnEncodedData data = detail::encoded(encoding);
    detail::run([&](AsnErrorBlock *err) { return KetraObjectSetPduBER(extensions.handle(), &data, err); });
    return extensions;
  }

  // As one Extensions SEQUENCE (DER).
  Octets encode() const {
    AsnEncodedData data{};
    detail::run([&](AsnErrorBlock *err) { return KetraObjectGetPduDER(handle(), &data, err); });
    const detail::PoolMemory memory(handle(), data.octets);
    return detail::view(data).copy();
  }

  // The extension of type T, or nothing when it is absent; one that cannot be read is an Error.
  template <class T>
  std::optional<T> get() const {
    if (!contains<T>()) return std::nullopt;
    T value;
    detail::run([&](AsnErrorBlock *err) { return ExtensionTraits<T>::get(handle(), value, err); });
    return value;
  }

  template <class T>
  void set(const T &value, bool critical) {
    static_assert(ExtensionTraits<T>::kCallerSetsCritical, "the criticality of this extension is fixed");
    detail::run([&](AsnErrorBlock *err) { return ExtensionTraits<T>::set(handle(), critical ? 1 : 0, value, err); });
  }

  template <class T>
  void set(const T &value) {
    static_assert(!ExtensionTraits<T>::kCallerSetsCritical, "say whether the extension is critical");
    detail::run([&](AsnErrorBlock *err) { return ExtensionTraits<T>::set(handle(), value, err); });
  }

  // Any extension, typed here or not; replaces one of the same identifier.
  void set(const ObjectIdentifier &objid, bool critical, View value) {
    const KetraExtension extension{objid.objid(), critical ? 1 : 0, critical ? 1 : 0, detail::encoded(value)};
    detail::run([&](AsnErrorBlock *err) { return KetraObjectSetExt(handle(), &extension, err); });
  }

  template <class T>
  bool contains() const {
    return search(ExtensionTraits<T>::objid()) != nullptr;
  }
  template <class T>
  std::optional<RawExtension> find() const {
    return raw(search(ExtensionTraits<T>::objid()));
  }
  std::optional<RawExtension> find(const ObjectIdentifier &objid) const { return raw(search(objid.objid())); }

  // Removes an extension; false when there was none.
  template <class T>
  bool erase() {
    return erase(ExtensionTraits<T>::objid());
  }
  bool erase(const ObjectIdentifier &objid) { return erase(objid.objid()); }

  uint32_t size() const {
    uint32_t count = 0;
    detail::run([&](AsnErrorBlock *err) { return KetraObjectCalExt(handle(), &count, err); });
    return count;
  }
  RawExtension at(uint32_t index) const {
    const KetraExtension *extension = nullptr;
    detail::run([&](AsnErrorBlock *err) { return KetraObjectGetExtpByIndex(handle(), index, &extension, err); });
    return *raw(extension);
  }

  // Visits the extensions in encoding order.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = RawExtension;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = RawExtension;

    Iterator(const Extensions *extensions, uint32_t index) : extensions_(extensions), index_(index) {}
    RawExtension operator*() const { return extensions_->at(index_); }
    Iterator &operator++() {
      ++index_;
      return *this;
    }
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
  Iterator begin() const { return {this, 0}; }
  Iterator end() const { return {this, size()}; }

  // For the C interface; stays the property of this object.
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

}  // namespace ketra
