/// @file
/// Walking through a value: what shows, exports, compares or tests it, whatever its type. The visitor is not a
/// template, so each type is instantiated once, however many visitors there are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "ketra/asn1/der.hpp"
#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// What a walk meets. Names are null for the members of lists.
class Visitor {
 public:
  /// A value with members; valid until the visit ends.
  class Structure {
   public:
    Group group() const { return group_; }  ///< what it is: a list, or the shape of its description
    /// Whether the type has words of its own: a member `std::string text() const`.
    bool hasText() const { return text_ != nullptr; }
    /// Those words; empty when there are none.
    std::string text() const { return hasText() ? text_(value_) : std::string(); }

   private:
    friend struct WalkStructure;
    Group group_{};
    const void *value_ = nullptr;
    std::string (*text_)(const void *) = nullptr;
  };

  /// A leaf; valid until the visit ends.
  class LeafValue {
   public:
    LeafKind kind() const { return kind_; }  ///< what it is; value() has the type that goes with it
    /// The contents octets; of an open type and of a Name the whole encoding.
    View content() const { return content_; }
    /// Text for people.
    std::string text() const { return text_(value_); }
    /// One encoding, by the type's own tag.
    Octets encoding() const { return encoding_(value_); }
    /// The value itself.
    const void *value() const { return value_; }

   private:
    friend struct WalkLeaf;
    LeafKind kind_{};
    View content_;
    const void *value_ = nullptr;
    std::string (*text_)(const void *) = nullptr;
    Octets (*encoding_)(const void *) = nullptr;
  };

  virtual ~Visitor() = default;
  /// A value with members begins; leave() when it ends.
  /// @{
  virtual void enter(const char *name, const Structure &structure) = 0;
  virtual void leave() = 0;
  /// @}
  /// A value without members of its own.
  virtual void leaf(const char *name, const LeafValue &value) = 0;
  /// A component with a DEFAULT that is not written.
  virtual void absent(const char *name, const LeafValue &byDefault) = 0;
  /// A member of a list, or a field, that cannot be read.
  virtual void fault(const char *name, View octets, const Fault &fault) = 0;
};

namespace detail {
template <class T, class = void>
struct HasText : std::false_type {};
template <class T>
struct HasText<T, std::void_t<decltype(std::declval<const T &>().text())>> : std::true_type {};
static_assert(static_cast<Group>(Shape::Sequence) == Group::Sequence &&
              static_cast<Group>(Shape::Choice) == Group::Choice && static_cast<Group>(Shape::Is) == Group::Is &&
              static_cast<Group>(Shape::Bits) == Group::Bits);
}  // namespace detail

struct WalkLeaf {
  template <class T>
  static Visitor::LeafValue of(const T &value, detail::Scratch &scratch) {
    Visitor::LeafValue leaf;
    leaf.kind_ = Leaf<T>::kind;
    leaf.content_ = Leaf<T>::content(value, scratch);
    leaf.value_ = &value;
    leaf.text_ = [](const void *of) { return Leaf<T>::text(*static_cast<const T *>(of)); };
    leaf.encoding_ = [](const void *of) { return encode(*static_cast<const T *>(of)); };
    return leaf;
  }
};

struct WalkStructure {
  template <class T>
  static Visitor::Structure of(const T &value) {
    Visitor::Structure structure;
    if constexpr (detail::kIsList<T>) {
      structure.group_ = Group::List;
    } else {
      structure.group_ = static_cast<Group>(detail::ShapeOf<T>::value);
      structure.value_ = &value;
      if constexpr (detail::HasText<T>::value) {
        structure.text_ = [](const void *of) { return static_cast<const T *>(of)->text(); };
      }
    }
    return structure;
  }
};

namespace detail {

struct Walk {
  static constexpr bool kOpensTypes = true;
  Visitor &visitor;

  template <class T>
  bool operator()(const char *name, const T &member, As = {}) {
    walk(name, member);
    return true;
  }
  template <class T>
  bool operator()(const char *name, const std::optional<T> &member, As = {}) {
    if (member) walk(name, *member);
    return true;
  }
  template <class T, auto D>
  bool operator()(const char *name, const Default<T, D> &member, As = {}) {
    Scratch scratch;
    const T value = member.value();
    const Visitor::LeafValue leaf = WalkLeaf::of(value, scratch);
    member.isPresent() ? visitor.leaf(name, leaf) : visitor.absent(name, leaf);
    return true;
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives... alternatives) {
    const char *const names[] = {alternatives.name...};
    std::visit([&](const auto &alternative) { this->walk(names[value.index()], alternative); }, value);
    return true;
  }
  // A value that is not one of the type it should be, or is not DER, shows as it is stored: so nothing is lost.
  template <class Id, class Form, class... Ts>
  bool open(const char *name, const Id &id, const std::optional<AnyOf<Form>> &member, Defined<Ts>... types) {
    if (member && !(... || asType<typename ViewedOf<Ts>::type>(name, id == types.id, *member))) walk(name, *member);
    return true;
  }
  template <class V, class Any>
  bool asType(const char *name, bool isType, const Any &member) {
    if (!isType) return false;
    const auto value = view<V>(member.encoding());
    bool isDer = !firstFault(value);
    if (isDer) derFaults<V>(member.encoding(), [&isDer](const Fault &) { isDer = false; });
    if (!isDer) return false;
    walk(name, *value);
    return true;
  }
  template <class Bits>
  bool nameless(const Bits &bits) {
    if (!bits.empty()) walk("nameless", bits);
    return true;
  }

  template <class T>
  void walk(const char *name, const T &value) {
    if constexpr (IsLeaf<T>::value) {
      Scratch scratch;
      visitor.leaf(name, WalkLeaf::of(value, scratch));
    } else if constexpr (kIsList<T>) {
      visitor.enter(name, WalkStructure::of(value));
      for (const auto &member : value) {
        if constexpr (!isView<T>) {
          walk(nullptr, member);
        } else if (member) {
          walk(nullptr, *member);
        } else {
          visitor.fault(nullptr, member.octets(), member.fault());
        }
      }
      visitor.leave();
    } else if constexpr (kIsField<T>) {
      const auto item = value.value();
      item ? walk(name, *item) : visitor.fault(name, item.octets(), item.fault());
    } else {
      visitor.enter(name, WalkStructure::of(value));
      T::describe(value, *this);
      visitor.leave();
    }
  }
};

}  // namespace detail

/// Visits all members of a value, in the order of their description. `name` is that of the value itself.
template <class T>
void walk(const T &value, Visitor &visitor, const char *name = nullptr) {
  detail::Walk{visitor}.walk(name, value);
}

}  // namespace ketra
