/// @file
/// Building a value from named fields: the inverse of walking it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// Fields with names, in whatever they are kept: JSON, or what a walk has seen.
class Fields {
 public:
  virtual ~Fields() = default;
  /// The field of that name, or null when there is none. It lives as long as these fields.
  virtual const Fields *member(const char *name) const = 0;
  /// The members of a list, from 0.
  /// @{
  virtual std::size_t size() const = 0;
  virtual const Fields &at(std::size_t index) const = 0;
  /// @}
  /// A leaf of that kind: one encoding, by the type's own tag; or nothing, when this is no such leaf.
  virtual std::optional<Octets> encoding(LeafKind kind) const = 0;
};

namespace detail {

// Takes each member from the field of its name. The path is that of the field that is missing or wrong.
class Build {
 public:
  static constexpr bool kOpensTypes = true;
  Build(const Fields &fields, std::string &path) : fields_(fields), path_(path) {}

  template <class T>
  bool operator()(const char *name, T &member, As = {}) {
    const Fields *const field = fields_.member(name);
    if (field == nullptr) {
      if constexpr (std::is_same_v<T, bool>) return true;  // a named bit
      (path_ += '/') += name;
      return false;
    }
    return into(name, *field, member);
  }
  template <class T>
  bool operator()(const char *name, std::optional<T> &member, As = {}) {
    const Fields *const field = fields_.member(name);
    return field == nullptr || into(name, *field, member.emplace());
  }
  template <class T, auto D>
  bool operator()(const char *name, Default<T, D> &member, As = {}) {
    const Fields *const field = fields_.member(name);
    return field == nullptr || into(name, *field, member.emplace());
  }
  template <class... Ts, class... Alternatives>
  bool choice(std::variant<Ts...> &value, Alternatives... alternatives) {
    return one<0>(value, alternatives...);
  }
  // As the type that goes with the identifier, or as any encoding.
  template <class Id, class Any, class... Ts>
  bool open(const char *name, const Id &id, std::optional<Any> &member, Defined<Ts>... types) {
    const Fields *const field = fields_.member(name);
    if (field == nullptr) return true;
    const std::size_t before = path_.size();
    if ((... || asType<Ts>(name, id == types.id, *field, member))) return true;
    if (!field->encoding(LeafKind::Any) && path_.size() > before) return false;
    path_.resize(before);
    return into(name, *field, member.emplace());
  }
  template <class T, class Any>
  bool asType(const char *name, bool isType, const Fields &field, std::optional<Any> &member) {
    if (!isType) return false;
    T value{};
    const auto stored = field.encoding(LeafKind::Any);
    if ((stored && !IsLeaf<T>::value) || !into(name, field, value)) return false;
    const Octets encoding = encode(value);
    if (stored && *stored != encoding && read<AnyView>(View(*stored))) return false;  // the type, but not in DER
    member.emplace(View(encoding));
    return true;
  }
  template <class Bits>
  bool nameless(Bits &bits) {
    const Fields *const field = fields_.member("nameless");
    return field == nullptr || into("nameless", *field, bits);
  }

  template <class T>
  bool build(const Fields &field, T &value) {
    if constexpr (IsLeaf<T>::value) {
      const std::optional<Octets> encoding = field.encoding(Leaf<T>::kind);
      if (!encoding) return false;
      Result<T> leaf = read<T>(View(*encoding));
      if (!leaf) return false;
      value = *std::move(leaf);
      return true;
    } else if constexpr (kIsList<T>) {
      for (std::size_t i = 0; i < field.size(); ++i) {
        if (!into(std::to_string(i + 1).c_str(), field.at(i), value.emplace_back())) return false;
      }
      return true;
    } else {
      Build visit(field, path_);
      return T::describe(value, visit);
    }
  }

 private:
  template <class T>
  bool into(const char *name, const Fields &field, T &member) {
    const std::size_t before = path_.size();
    (path_ += '/') += name;
    if (!build(field, member)) return false;
    path_.resize(before);
    return true;
  }

  template <std::size_t kIndex, class... Ts, class... Rest>
  bool one(std::variant<Ts...> &value, Alternative first, Rest... rest) {
    if (const Fields *const field = fields_.member(first.name)) {
      return into(first.name, *field, value.template emplace<kIndex>());
    }
    if constexpr (sizeof...(rest) > 0) return one<kIndex + 1>(value, rest...);
    (path_ += '/') += first.name;
    return false;
  }

  const Fields &fields_;
  std::string &path_;
};

}  // namespace detail

/// Builds an owning value. On failure `path` is that of the field that is missing or cannot be read,
/// "/permittedSubtrees/2/base", and what the value holds is undefined.
template <class T>
bool build(const Fields &fields, T &value, std::string &path) {
  static_assert(!isView<T>, "a view would point into nothing");
  path.clear();
  return detail::Build(fields, path).build(fields, value);
}

}  // namespace ketra
