/// @file
/// Components that are judged when they are asked for, so that a bad one costs the others nothing.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "ketra/asn1/read.hpp"
#include "ketra/asn1/writer.hpp"

namespace ketra {

/// A component of an object: its octets, read when value() is called. As a member of a described type it takes its
/// place by its tag alone.
template <class T>
class Field {
 public:
  constexpr Field() = default;
  /// Of one encoding, and what its description says of it.
  constexpr explicit Field(View octets, As as = {}) : octets_(octets), as_(as) {}

  /// The encoding as it is stored, with its tag.
  View octets() const { return octets_; }
  /// The value, or what is wrong with it. Each call reads the octets.
  Item<T> value() const {
    static_assert(isView<T>, "a field points into the octets of its object");
    Item<T> item;
    item.octets_ = octets_;
    Tlv tlv;
    const bool isRead = detail::readOnly(octets_, tlv, item.fault_) &&
                        (detail::matches<T>(as_, tlv.identifier) ||
                         detail::failOtherTag({tlv.octets, tlv.end}, detail::identifierOf<T>(as_), item.fault_)) &&
                        detail::readTagged<false>(tlv, item.value_, as_, item.fault_);
    if (isRead) item.fault_ = {};
    return item;
  }

  /// By octets.
  /// @{
  friend bool operator==(const Field &a, const Field &b) { return a.octets_ == b.octets_; }
  friend bool operator!=(const Field &a, const Field &b) { return !(a == b); }
  /// @}

 private:
  View octets_;
  As as_;
};

/// An object that owns its octets: a certificate, CRL or request, with a view V of them. It does not change; `*` and
/// `->` give the view, which lives as long as this object. Read one with `read<Certificate>(octets)`.
template <class V>
class ObjectOf {
 public:
  static constexpr std::string_view name = V::name;  ///< what messages call it

  ObjectOf() = default;
  /// Copies have octets of their own.
  /// @{
  ObjectOf(const ObjectOf &other) : octets_(other.octets_) { viewAgain(); }
  ObjectOf(ObjectOf &&other) noexcept : octets_(std::move(other.octets_)), view_(other.view_) { other.view_ = {}; }
  ObjectOf &operator=(ObjectOf other) noexcept {
    octets_.swap(other.octets_);
    view_ = other.view_;
    return *this;
  }
  ~ObjectOf() = default;
  /// @}

  /// The encoding.
  View octets() const KETRA_LIFETIMEBOUND { return View(octets_); }
  /// The view of it.
  /// @{
  const V &operator*() const &KETRA_LIFETIMEBOUND { return view_; }
  const V *operator->() const &KETRA_LIFETIMEBOUND { return &view_; }
  const V &operator*() && = delete;
  const V *operator->() && = delete;
  /// @}

  /// By octets.
  /// @{
  friend bool operator==(const ObjectOf &a, const ObjectOf &b) { return a.octets_ == b.octets_; }
  friend bool operator!=(const ObjectOf &a, const ObjectOf &b) { return !(a == b); }
  /// @}

 private:
  friend struct Leaf<ObjectOf>;
  Fault viewAgain() {
    const Item<V> item = ketra::view<V>(View(octets_));
    if (item) view_ = *item;
    return item.fault();
  }

  Octets octets_;
  V view_{};
};

/// A whole object is one leaf; walk `*object` to see its members.
template <class V>
struct Leaf<ObjectOf<V>> {
  using Value = ObjectOf<V>;
  static constexpr LeafKind kind = LeafKind::Any;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = false;
  static constexpr bool matches(uint8_t octet) { return (octet & ~0x20) != 0; }  // the view judges it
  static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    value.octets_ = tlv.whole().copy();
    fault = value.viewAgain();
    if (fault) fault.at = tlv.octets + (fault.at - value.octets_.data());
    return !fault;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.octets()); }
  static View content(const Value &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const Value &value) { return detail::hexOf(value.octets()); }
};

namespace detail {
template <class V>
struct ViewedOf<ObjectOf<V>> {
  using type = V;
};
}  // namespace detail

}  // namespace ketra
