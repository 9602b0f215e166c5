/// @file
/// What the whole C++ face stands on: errors, octets, identifiers, and how an extension type is described.
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
#include <type_traits>
#include <utility>
#include <vector>

#include "ketra/ketra.h"
#include "ketra/ketra_errors.h"
#include "ketra/ketra_runtime.h"

namespace ketra {
inline namespace face {

/// A failed operation: its code (ketra_errors.h, contracts/) and, in what(), code and trace as lines of text. Copies
/// share what they say.
class Error : public std::exception {
 public:
  /// One failure of a trace.
  struct Entry {
    std::string function;  ///< the operation that failed
    std::string message;   ///< what it says
  };

  /// Copies what the block says.
  explicit Error(const AsnErrorBlock &block) : said_(std::make_shared<const Said>(block)) {}

  /// The code.
  uint32_t code() const noexcept { return said_->code; }
  const std::vector<Entry> &trace() const noexcept { return said_->trace; }  ///< innermost failure first
  /// Code, meaning and trace, as AsnErrorText renders them.
  const char *what() const noexcept override { return said_->text.c_str(); }

 private:
  struct Said {
    explicit Said(const AsnErrorBlock &block) : code(block.code) {
      static constexpr AsnErrorMeaning kMeanings[] = {KETRA_ERROR_LIST(KETRA_ERROR_MEANING)};
      constexpr auto count = static_cast<uint32_t>(std::size(kMeanings));
      text.resize(AsnErrorText(&block, kMeanings, count, nullptr, 0) + std::size_t{1});
      AsnErrorText(&block, kMeanings, count, text.data(), static_cast<uint32_t>(text.size()));
      text.pop_back();
      for (uint32_t i = 0; i < block.count; ++i) trace.push_back({block.entries[i].function, block.entries[i].message});
    }
    uint32_t code;
    std::string text;
    std::vector<Entry> trace;
  };
  std::shared_ptr<const Said> said_;
};

/// Octets that their holder owns.
using Octets = std::vector<uint8_t>;

/// Octets that somebody else owns.
class View {
 public:
  /// An empty view.
  View() = default;
  /// A view of `size` octets.
  View(const uint8_t *data, std::size_t size) : data_(data), size_(size) {}
  /// A view of a container of contiguous octets, which must outlive it.
  template <class Container, class = std::enable_if_t<std::is_convertible_v<
                                 decltype(std::declval<const Container &>().data()), const uint8_t *>>>
  View(const Container &container) : data_(container.data()), size_(container.size()) {}

  /// First octet; may be null when there are none.
  const uint8_t *data() const { return data_; }
  /// What containers have.
  /// @{
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  const uint8_t *begin() const { return data_; }
  const uint8_t *end() const { return data_ + size_; }
  /// @}
  /// A copy of the octets.
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

// The same for one that only looks at what is there: it gets an error block, which is large, when it has failed.
template <class Call>
void look(Call &&call) {
  if (call(nullptr) != 0) run(call);
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
inline View view(const std::string &text) { return {reinterpret_cast<const uint8_t *>(text.data()), text.size()}; }

inline AsnBoolOpt optional(const std::optional<bool> &value) { return {value.value_or(false) ? 1 : 0, value ? 1 : 0}; }
inline AsnIntOpt optional(const std::optional<int32_t> &value) { return {value.value_or(0), value ? 1 : 0}; }
inline std::optional<bool> optional(const AsnBoolOpt &value) {
  return value.option == 1 ? std::optional<bool>(value.value != 0) : std::nullopt;
}
inline std::optional<int32_t> optional(const AsnIntOpt &value) {
  return value.option == 1 ? std::optional<int32_t>(value.value) : std::nullopt;
}

// One DER encoding: tag octet, length, content.
inline Octets encoding(uint8_t tag, View content) {
  const uint32_t size = length(content);
  int shift = 24;
  while (shift > 0 && size >> shift == 0) shift -= 8;
  Octets encoding = {tag};
  if (size >= 0x80) encoding.push_back(static_cast<uint8_t>(0x80 | (shift / 8 + 1)));
  for (; shift >= 0; shift -= 8) encoding.push_back(static_cast<uint8_t>(size >> shift));
  encoding.insert(encoding.end(), content.begin(), content.end());
  return encoding;
}

inline AsnMemObject poolOf(KetraObject object) {
  AsnMemObject pool = nullptr;
  KetraObjectGetMemObject(object, &pool, nullptr);
  return pool;
}

// Memory that a get has left in the pool of an Extensions object; given back at the end of the scope.
class PoolMemory {
 public:
  PoolMemory(KetraObject object, const void *memory) : pool_(poolOf(object)), memory_(memory) {}
  PoolMemory(const PoolMemory &) = delete;
  PoolMemory &operator=(const PoolMemory &) = delete;
  ~PoolMemory() { AsnMemObjectFree(pool_, memory_, nullptr); }

 private:
  AsnMemObject pool_;
  const void *memory_;
};

}  // namespace detail

/// An object identifier that owns its arcs.
class ObjectIdentifier {
 public:
  /// No arcs: refused by sets. Extensions reads an identifier with an arc beyond 32 bits as this.
  ObjectIdentifier() = default;
  /// From arcs, `{2, 5, 29, 19}`; whether they make an identifier, a set judges.
  ObjectIdentifier(std::initializer_list<uint32_t> arcs) : arcs_(arcs) {}
  /// A copy of what the C interface gives.
  explicit ObjectIdentifier(const Objid &objid) : arcs_(objid.arcs, objid.arcs + objid.count) {}

  /// "2.5.29.19"; a malformed text is an Error.
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

  /// The arcs.
  const std::vector<uint32_t> &arcs() const { return arcs_; }
  /// For the C interface; points into this object.
  Objid objid() const { return {arcs_.data(), static_cast<uint32_t>(arcs_.size())}; }
  /// The dotted form.
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

namespace detail {

// An identifier that is known at compile time.
class KnownIdentifier {
 public:
  constexpr KnownIdentifier(std::initializer_list<uint32_t> arcs) {
    for (const uint32_t arc : arcs) arcs_[count_++] = arc;
  }
  operator ObjectIdentifier() const { return ObjectIdentifier(Objid{arcs_, count_}); }

 private:
  uint32_t arcs_[12] = {};
  uint32_t count_ = 0;
};

}  // namespace detail

/// How Extensions reads and writes a value type: its identifier, whether the caller chooses the criticality, and what
/// calls the C interface. Those of the types here are not shown.
/// @code
/// static const Objid &objid();
/// static constexpr bool kCallerSetsCritical;
/// static int32_t set(KetraObject, [int32_t critical,] const T &, AsnErrorBlock *);
/// static int32_t get(KetraObject, T &, AsnErrorBlock *);
/// @endcode
template <class T>
struct ExtensionTraits;

}  // namespace face
}  // namespace ketra
