/// @file
/// Octets that somebody else owns, and octets that a value owns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// On a parameter or member function: the result points into it, so it must outlive the result.
#if defined(__clang__)
#define KETRA_LIFETIMEBOUND [[clang::lifetimebound]]
#else
#define KETRA_LIFETIMEBOUND
#endif

/// For the parts of readers: builds that are optimised for speed inline them, so that a view costs as much as
/// hand-written code.
#if defined(__GNUC__) && defined(__OPTIMIZE__) && !defined(__OPTIMIZE_SIZE__)
#define KETRA_INLINE [[gnu::always_inline]] inline
#else
#define KETRA_INLINE inline
#endif
/// @cond
#if defined(__GNUC__)
#define KETRA_LIKELY(condition) __builtin_expect(condition, true)
#define KETRA_UNLIKELY(condition) __builtin_expect(condition, false)
#else
#define KETRA_LIKELY(condition) (condition)
#define KETRA_UNLIKELY(condition) (condition)
#endif
/// @endcond

namespace ketra {

/// Octets that their holder owns.
using Octets = std::vector<uint8_t>;

class View;

namespace detail {

template <class C>
using ElementOf = std::remove_pointer_t<decltype(std::declval<const C &>().data())>;

// A container of contiguous single octets.
template <class C, class = void>
struct HoldsOctets : std::false_type {};
template <class C>
struct HoldsOctets<C, std::void_t<ElementOf<C>, decltype(std::declval<const C &>().size())>>
    : std::bool_constant<sizeof(ElementOf<C>) == 1> {};
template <class C>
inline constexpr bool kHoldsOctets =
    HoldsOctets<std::remove_cv_t<C>>::value && !std::is_same_v<std::remove_cv_t<C>, View>;

// Whether it owns its octets, so that a temporary one would take them along. What only points to them, as
// std::string_view and std::span do, copies trivially.
template <class C>
inline constexpr bool kOwns = !std::is_trivially_copyable_v<C> || std::is_aggregate_v<C>;

template <class C>
const uint8_t *octetsOf(const C &container) {
  return reinterpret_cast<const uint8_t *>(container.data());
}

}  // namespace detail

/// Octets that somebody else owns; trivially copyable. It is made from any container of contiguous octets that
/// outlives it. A temporary that owns its octets does not compile: the view would dangle.
class View {
 public:
  constexpr View() = default;
  /// `size` octets from `data` on, which may be null when there are none.
  constexpr View(const uint8_t *data, std::size_t size) : data_(data), size_(size) {}
  /// The octets from `begin` up to `end`.
  constexpr View(const uint8_t *begin, const uint8_t *end)
      : data_(begin), size_(static_cast<std::size_t>(end - begin)) {}
  /// From std::vector, std::string and other containers that own octets, named ones only.
  template <class C, class = std::enable_if_t<detail::kHoldsOctets<C> && detail::kOwns<C>>>
  View(C &container KETRA_LIFETIMEBOUND) : View(detail::octetsOf(container), container.size()) {}
  template <class C, class = std::enable_if_t<detail::kHoldsOctets<C> && detail::kOwns<C>>>
  View(const C &&container) = delete;
  /// From std::string_view, std::span and whatever else only points to octets.
  template <class C, class = std::enable_if_t<detail::kHoldsOctets<C> && !detail::kOwns<C>>, int = 0>
  View(const C &container) : View(detail::octetsOf(container), container.size()) {}
  /// From an array, all of it.
  template <std::size_t N>
  constexpr View(const uint8_t (&octets KETRA_LIFETIMEBOUND)[N]) : data_(octets), size_(N) {}

  /// As of a container. Indices are not checked; front() and back() need an octet.
  /// @{
  constexpr const uint8_t *data() const { return data_; }
  constexpr std::size_t size() const { return size_; }
  constexpr bool empty() const { return size_ == 0; }
  constexpr const uint8_t *begin() const { return data_; }
  constexpr const uint8_t *end() const { return data_ + size_; }
  constexpr uint8_t operator[](std::size_t i) const { return data_[i]; }
  constexpr uint8_t front() const { return data_[0]; }
  constexpr uint8_t back() const { return data_[size_ - 1]; }
  /// @}

  /// The same octets as characters.
  std::string_view characters() const { return {reinterpret_cast<const char *>(data_), size_}; }
  /// A copy of the octets.
  Octets copy() const { return {begin(), end()}; }

  friend bool operator==(View a, View b) {
    return a.size_ == b.size_ && (a.size_ == 0 || std::memcmp(a.data_, b.data_, a.size_) == 0);
  }
  friend bool operator!=(View a, View b) { return !(a == b); }
  /// By octets, a prefix before what it is a prefix of.
  friend bool operator<(View a, View b) {
    const std::size_t common = a.size_ < b.size_ ? a.size_ : b.size_;
    const int order = common == 0 ? 0 : std::memcmp(a.data_, b.data_, common);
    return order != 0 ? order < 0 : a.size_ < b.size_;
  }

 private:
  const uint8_t *data_ = nullptr;
  std::size_t size_ = 0;
};

namespace detail {
inline std::string hexOf(View octets) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  text.reserve(octets.size() * 2);
  for (const uint8_t octet : octets) {
    text += kDigits[octet >> 4];
    text += kDigits[octet & 15];
  }
  return text;
}
}  // namespace detail

}  // namespace ketra
