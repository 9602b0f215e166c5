/// @file
/// Comparing values of described types, member by member.
#pragma once

#include <cstddef>
#include <type_traits>
#include <variant>

#include "ketra/asn1/describe.hpp"

namespace ketra {

namespace detail {

// Counts the members of a description.
struct CountMembers {
  std::size_t count = 0;
  template <class T>
  constexpr bool operator()(const char *, const T &, As = {}) {
    return ++count != 0;
  }
  template <class... Ts, class... Alternatives>
  constexpr bool choice(const std::variant<Ts...> &, Alternatives...) {
    return ++count != 0;
  }
  template <class T>
  constexpr bool nameless(const T &) {
    return ++count != 0;
  }
};
template <class T>
constexpr std::size_t countMembers() {
  using V = typename ViewedOf<T>::type;
  V value{};
  CountMembers visit;
  V::describe(value, visit);
  return visit.count;
}

// Remembers where the members of one value are, in the order of the description.
template <std::size_t kCount>
struct Members {
  const void *places[kCount] = {};
  std::size_t count = 0;
  template <class T>
  bool operator()(const char *, const T &member, As = {}) {
    return nameless(member);
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives...) {
    return nameless(value);
  }
  template <class T>
  bool nameless(const T &member) {
    places[count++] = &member;
    return true;
  }
};

// Compares another value of the same type with them.
struct EqualMembers {
  const void *const *others;
  std::size_t count = 0;
  template <class T>
  bool operator()(const char *, const T &member, As = {}) {
    return nameless(member);
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives...) {
    return nameless(value);
  }
  template <class T>
  bool nameless(const T &member) {
    return member == *static_cast<const T *>(others[count++]);
  }
};

template <class T, class = void>
struct HasDescription : std::false_type {};
template <class T>
struct HasDescription<T, std::void_t<decltype(T::describe(std::declval<const T &>(), std::declval<CountMembers &>()))>>
    : std::true_type {};

}  // namespace detail

/// Member by member; a written default equals an absent one, and lists of views compare by octets.
/// @{
template <class T, class = std::enable_if_t<detail::HasDescription<T>::value>>
bool operator==(const T &a, const T &b) {
  detail::Members<detail::countMembers<T>()> members;
  T::describe(b, members);
  detail::EqualMembers equal{members.places};
  return T::describe(a, equal);
}
template <class T, class = std::enable_if_t<detail::HasDescription<T>::value>>
bool operator!=(const T &a, const T &b) {
  return !(a == b);
}
/// @}

}  // namespace ketra
