/// @file
/// Where a fault is: the path of an octet, found by going through the octets once more along the description. So
/// nothing has to remember a path while it reads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"

namespace ketra {

namespace detail {

// The names on the way to an octet.
class Path {
 public:
  Path(const Fault &fault, std::string &text) : at_(fault.at), isAtEnd_(isAtEnd(fault.reason)), text_(text) {}

  template <class T>
  void into(const Tlv &tlv, As as) {
    if constexpr (kIsField<T>) {
      using Value = typename ValueOf<T>::type;
      if (matches<Value>(as, tlv.identifier)) into<Value>(tlv, as);
    } else if (as.isExplicit) {
      Reader in = tlv.reader();
      Tlv inner;
      Fault fault;
      as.number = -1;
      as.isExplicit = false;
      if (readTlv(in, inner, fault)) into<T>(inner, as);
    } else if constexpr (kIsTlsList<T>) {
      Tlv vector;
      Fault fault;
      if (!tlv.isConstructed() && readTlsVector<typename MemberOf<T>::type>(tlv, vector, fault)) {
        members<typename MemberOf<T>::type>(vector.reader());
      }
    } else if constexpr (kIsList<T>) {
      members<typename MemberOf<T>::type>(tlv.reader());
    } else if constexpr (kIsDescribed<T> && !kHasShape<T, Shape::Bits>) {
      if (!tlv.isConstructed() && !kHasShape<T, Shape::Is>) return;
      T value{};
      if constexpr (kHasShape<T, Shape::Is>) {
        Only visit{*this, tlv, as};
        T::describe(value, visit);
      } else if constexpr (kHasShape<T, Shape::Choice>) {
        Chosen visit{*this, tlv};
        T::describe(value, visit);
      } else {
        Components visit{*this, tlv.reader()};
        T::describe(value, visit);
      }
    }
  }

 private:
  // What ends too early, or has something missing, is found at its end: not in what follows there.
  static bool isAtEnd(Reason reason) {
    for (const Reason each :
         {Reason::Missing, Reason::MissingChoice, Reason::Ended, Reason::EndedInTag, Reason::EndedInLength}) {
      if (reason == each) return true;
    }
    return false;
  }
  bool endsAt(const uint8_t *end) const { return isAtEnd_ && end == at_; }
  bool covers(const uint8_t *begin, const uint8_t *end) const { return at_ >= begin && at_ < end; }

  template <class T>
  void members(Reader in) {
    for (std::size_t number = 1; !in.done(); ++number) {
      const uint8_t *const begin = in.at;
      Tlv tlv;
      Fault fault;
      const bool isRead = nextMember<T>(in, tlv, fault);
      // Of a member without contents the place is its beginning: where the one before it ends.
      const bool isNext = in.left() >= 2 && in.at[1] == 0;
      if (isRead && !covers(begin, in.at) && (isNext || !endsAt(in.at))) continue;
      (text_ += '/') += std::to_string(number);
      if (isRead && matches<T>({}, tlv.identifier)) into<T>(tlv, {});
      return;
    }
  }

  struct Only {
    Path &path;
    const Tlv &tlv;
    As as;
    template <class T>
    bool operator()(const char *, T &, As own = {}) {
      path.into<T>(tlv, as | own);
      return true;
    }
  };

  struct Components {
    Path &path;
    Reader in;
    std::size_t length = path.text_.size();

    template <class T>
    bool operator()(const char *name, T &, As as = {}) {
      return next<T>(name, as, false);
    }
    template <class T>
    bool operator()(const char *name, std::optional<T> &, As as = {}) {
      return next<T>(name, as, true);
    }
    template <class T, auto D>
    bool operator()(const char *name, Default<T, D> &, As as = {}) {
      return next<T>(name, as, true);
    }

   private:
    // False when the octet has been found.
    template <class T>
    bool next(const char *name, As as, bool isOptional) {
      const uint8_t *const begin = in.at;
      const bool isThere = !in.done() && (isOptional ? matches<T>(as, *in.at) : fits<T>(as, *in.at));
      if (!isThere && (isOptional || in.at != path.at_)) return true;
      Tlv tlv;
      Fault fault;
      const bool isRead = isThere && readTlv(in, tlv, fault);
      const bool endsThere = isRead && path.endsAt(in.at);
      if (isRead && !endsThere && !path.covers(begin, in.at)) return true;
      path.text_.resize(length);
      (path.text_ += '/') += name;
      if (isRead) path.into<T>(tlv, as);
      return endsThere && in.done();  // a component that is missing after it would be found there, too
    }
  };

  struct Chosen {
    Path &path;
    const Tlv &tlv;
    template <class... Ts, class... Alternatives>
    bool choice(std::variant<Ts...> &, Alternatives... alternatives) {
      return (one<Ts>(alternatives) || ...);
    }
    template <class T>
    bool one(Alternative alternative) {
      if (!matches<T>(alternative.as, tlv.identifier)) return false;
      (path.text_ += '/') += alternative.name;
      path.into<T>(tlv, alternative.as);
      return true;
    }
  };

  const uint8_t *at_;
  bool isAtEnd_;
  std::string &text_;
};

template <class T, class = void>
struct HasName : std::false_type {};
template <class T>
struct HasName<T, std::void_t<decltype(T::name)>> : std::is_convertible<decltype(T::name), std::string_view> {};

template <class T>
std::string typeName() {
  if constexpr (HasName<T>::value) {
    return std::string(T::name);
  } else {
    return {};
  }
}

}  // namespace detail

/// Where a fault is.
struct FaultPlace {
  std::size_t offset = 0;  ///< from the beginning of the octets
  std::string path;        ///< "NameConstraints/excludedSubtrees/2/maximum"; members of lists by number, from 1
};

/// The place of a fault in the octets of a value of type T. `octets` are those that were read, from their beginning.
/// Nothing when the fault has no address.
template <class T>
std::optional<FaultPlace> placeOf(View octets, const Fault &fault) {
  using V = typename detail::ViewedOf<T>::type;
  if (fault.at == nullptr) return std::nullopt;
  FaultPlace place{static_cast<std::size_t>(fault.at - octets.begin()), detail::typeName<T>()};
  Tlv tlv;
  Fault ignored;
  Reader in(octets);
  if (detail::readTlv(in, tlv, ignored) && detail::matches<V>({}, tlv.identifier)) {
    detail::Path(fault, place.path).template into<V>(tlv, {});
    if (place.path.size() > 1 && place.path[0] == '/') place.path.erase(0, 1);  // the type has no name
  }
  return place;
}

/// A fault in words, with its place in the octets of a value of type T: "length 9 exceeds the 2 remaining octets at
/// offset 12 (NameConstraints/excludedSubtrees/2/maximum)".
template <class T>
std::string explain(View octets, const Fault &fault) {
  const std::optional<FaultPlace> place = placeOf<T>(octets, fault);
  if (!place) return fault.text();
  const std::string text = fault.text() + " at offset " + std::to_string(place->offset);
  return place->path.empty() ? text : text + " (" + place->path + ")";
}

}  // namespace ketra
