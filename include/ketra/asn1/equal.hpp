/// @file
/// Comparing values of described types, member by member.
#pragma once

#include <cstddef>
#include <type_traits>
#include <variant>

#include "ketra/asn1/describe.hpp"

namespace ketra {

namespace detail {

// Remembers where the members of one value are, in the order of the description.
struct Members {
  const void *places[16] = {};
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
  const Members &others;
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
    return member == *static_cast<const T *>(others.places[count++]);
  }
};

template <class T, class = void>
struct HasDescription : std::false_type {};
template <class T>
struct HasDescription<T, std::void_t<decltype(T::describe(std::declval<const T &>(), std::declval<Members &>()))>>
    : std::true_type {};

}  // namespace detail

/// Member by member; a written default equals an absent one, and lists of views compare by octets.
/// @{
template <class T, class = std::enable_if_t<detail::HasDescription<T>::value>>
bool operator==(const T &a, const T &b) {
  detail::Members members;
  T::describe(b, members);
  detail::EqualMembers equal{members};
  return T::describe(a, equal);
}
template <class T, class = std::enable_if_t<detail::HasDescription<T>::value>>
bool operator!=(const T &a, const T &b) {
  return !(a == b);
}
/// @}

}  // namespace ketra
