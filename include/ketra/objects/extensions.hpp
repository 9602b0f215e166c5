/// @file
/// The extensions of one certificate or CRL, as a view and as a value that can be changed. Their type T is a described
/// one (describe.hpp) that also has
/// @code
/// static constexpr std::string_view name;         // what messages call it
/// static constexpr OidLiteral oid;                // extnID
/// static constexpr std::optional<bool> critical;  // where the standard fixes it; set() takes no choice then
/// const char *refusal() const;                    // where more than ASN.1 is demanded: why set() refuses, or null
/// @endcode
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "ketra/asn1/equal.hpp"
#include "ketra/asn1/explain.hpp"
#include "ketra/asn1/field.hpp"
#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// Extension ::= SEQUENCE {                                       RFC 5280 4.1.2.9
//     extnID     OBJECT IDENTIFIER,
//     critical   BOOLEAN DEFAULT FALSE,
//     extnValue  OCTET STRING }
template <class Form>
struct ExtensionOf {
  static constexpr std::string_view name = "Extension";

  ObjectIdentifierOf<Form> extnID{};
  Default<bool, false> critical{};
  OctetStringOf<Form> extnValue{};  ///< the encoding of the value

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("extnID", self.extnID) && visit("critical", self.critical) && visit("extnValue", self.extnValue);
  }
};
using Extension = ExtensionOf<Owned>;       ///< owns what it holds
using ExtensionView = ExtensionOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<ExtensionView>());

/// The result of looking for an extension: absent, good or faulty. What would dangle does not compile.
template <class T>
class Found {
 public:
  Found() = default;
  /// One that is there.
  explicit Found(Item<T> item, bool isCritical) : item_(std::move(item)), isPresent_(true), isCritical_(isCritical) {}

  /// Whether it is there and good.
  explicit operator bool() const { return isPresent_ && item_; }
  bool isAbsent() const { return !isPresent_; }  ///< whether there is no such extension
  /// Whether it is there and cannot be read: then fault() says why.
  bool isFaulty() const { return isPresent_ && !item_; }
  /// What is wrong with a faulty one; otherwise Reason::None.
  const Fault &fault() const { return item_.fault(); }
  /// As stored; false when it is absent.
  bool isCritical() const { return isCritical_; }
  /// The encoding of the value, good or faulty; of the whole Extension, where that cannot be read.
  View octets() const { return item_.octets(); }

  /// The value; absent or faulty, the process ends.
  /// @{
  const T &operator*() const & { return check(); }
  T operator*() && { return check(); }
  const T *operator->() const & { return &check(); }
  const T *operator->() && = delete;
  /// @}

 private:
  const T &check() const {
    if (!isPresent_) std::abort();
    return *item_;
  }

  Item<T> item_;
  bool isPresent_ = false;
  bool isCritical_ = false;
};

namespace detail {

// What can be told of an Extension that is not one: its identifier, no octets if it has none, and its criticality.
struct ExtensionBeginning {
  View id;
  bool isCritical = false;
};
inline ExtensionBeginning beginningOf(View extension) {
  ExtensionBeginning beginning;
  Reader in(extension);
  Tlv tlv;
  Fault ignored;
  if (!readTlv(in, tlv, ignored) || tlv.identifier != 0x30) return beginning;
  in = tlv.reader();
  if (!readTlv(in, tlv, ignored) || tlv.identifier != 0x06) return beginning;
  beginning.id = tlv.contents();
  beginning.isCritical = readTlv(in, tlv, ignored) && tlv.identifier == 0x01 && tlv.size() == 1 && *tlv.content != 0;
  return beginning;
}

}  // namespace detail

/// An extension list as a field of an object, if it is there.
using ExtensionsField = std::optional<Field<Range<ExtensionView>>>;

/// The extensions of an Extensions SEQUENCE in place. Reads nothing ahead, allocates nothing, and any number of threads
/// can use one.
class ExtensionsView {
 public:
  ExtensionsView() = default;
  /// Of one encoding of Extensions; of no octets an empty one.
  explicit ExtensionsView(View encoding) {
    Tlv tlv;
    if (encoding.empty()) return;
    if (!detail::readOnly(encoding, tlv, fault_)) return;
    if (tlv.identifier != 0x30) {
      detail::fail(fault_, Reason::OtherTag, tlv.octets, tlv.identifier, 0x30);
      return;
    }
    members_ = Range<ExtensionView>(tlv.contents());
  }

  /// Of a field of an object; none when it is absent.
  explicit ExtensionsView(const ExtensionsField &field) {
    if (!field) return;
    const auto list = field->value();
    fault_ = list.fault();
    if (list) members_ = *list;
  }

  /// Without extensions, for that reason.
  static ExtensionsView faulty(const Fault &fault) {
    ExtensionsView view;
    view.fault_ = fault;
    return view;
  }
  /// Of its contents octets: extensions one after the other.
  static ExtensionsView ofMembers(View members) {
    ExtensionsView view;
    view.members_ = Range<ExtensionView>(members);
    return view;
  }

  /// What is wrong with the SEQUENCE itself: then there are no extensions to visit, and any that is looked for is
  /// faulty. Each of them has its own.
  const Fault &fault() const { return fault_; }

  /// Each extension, good or faulty, in the order of the encoding.
  /// @{
  Range<ExtensionView>::Iterator begin() const { return members_.begin(); }
  Range<ExtensionView>::Iterator end() const { return members_.end(); }
  /// @}
  std::size_t size() const { return members_.size(); }  ///< how many, faulty ones too
  bool empty() const { return members_.empty(); }       ///< whether there are none

  /// Whether an extension before this one, an item of this view, has the same identifier (RFC 5280 4.2 allows none).
  /// Takes time in proportion to those before it.
  bool isRepeated(const Item<ExtensionView> &item) const {
    const auto first = item ? find(item->extnID) : Found<ExtensionView>();
    return !first.isAbsent() && first.octets().data() != item.octets().data();
  }

  /// The first extension with an identifier. One that is faulty, but for its identifier, is found as faulty.
  template <class Oid>
  Found<ExtensionView> find(const Oid &oid) const {
    if (fault_) return Found<ExtensionView>(Item<ExtensionView>::faulty({}, fault_), false);
    for (const auto &extension : *this) {
      if (extension) {
        if (extension->extnID == oid) return Found<ExtensionView>(extension, extension->critical.value());
        continue;
      }
      const auto beginning = detail::beginningOf(extension.octets());
      const auto id = ObjectIdentifierView::ofContent(beginning.id);
      if (id && *id == oid) return Found<ExtensionView>(extension, beginning.isCritical);
    }
    return {};
  }
  /// The extension of type T, as a view.
  template <class T>
  Found<typename detail::ViewedOf<T>::type> view() const {
    using V = typename detail::ViewedOf<T>::type;
    const auto extension = find(T::oid);
    if (extension.isAbsent()) return {};
    if (extension.isFaulty()) {
      return Found<V>(Item<V>::faulty(extension.octets(), extension.fault()), extension.isCritical());
    }
    return Found<V>(ketra::view<V>(extension->extnValue.octets()), extension.isCritical());
  }

 private:
  Range<ExtensionView> members_;
  Fault fault_;
};

namespace detail {

template <class T, class = void>
struct IsOneType : std::false_type {};
template <class T>
struct IsOneType<T, std::void_t<decltype(T::kTextType)>> : std::true_type {};

// What ASN.1 or a standard forbids to set although it can be read: empty lists, characters outside IA5String.
struct Refusal {
  Fault fault{};

  template <class T>
  bool operator()(const char *, const T &member, As as = {}) {
    return look(member, as);
  }
  template <class T>
  bool operator()(const char *, const std::optional<T> &member, As as = {}) {
    return !member || look(*member, as);
  }
  template <class T, auto D>
  bool operator()(const char *, const Default<T, D> &, As = {}) {
    return true;
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives... alternatives) {
    const As tags[] = {alternatives.as...};
    return std::visit([&](const auto &alternative) { return this->look(alternative, tags[value.index()]); }, value);
  }
  template <class T>
  bool nameless(const T &) {
    return true;
  }

  template <class T>
  bool look(const T &value, As as) {
    if constexpr (kIsList<T>) {
      // The list begins two octets before its contents: identifier and length, which have just been written.
      if (as.isNonEmptyWhenSet && value.empty()) return fail(fault, Reason::EmptyList, value.octets().begin() - 2);
      for (const auto &item : value) {
        if (!item) {
          fault = item.fault();
          return false;
        }
        if (!look(*item, {})) return false;
      }
    } else if constexpr (std::is_same_v<T, GeneralNameView>) {
      const bool isIa5 = isStringKind(static_cast<uint8_t>(value.kind())) && !value.is(NameKind::iPAddress);
      const uint8_t *const outside = isIa5 ? firstOutside(TextType::Ia5, value.content()) : nullptr;
      if (outside != nullptr) return fail(fault, Reason::Alphabet, outside, *outside);
    } else if constexpr (IsOneType<T>::value) {
      const uint8_t *const outside = firstOutside(value.type(), value.octets());
      if (outside != nullptr) return fail(fault, Reason::Alphabet, outside, *outside);
    } else if constexpr (kIsDescribed<T>) {
      return T::describe(value, *this);
    }
    return true;
  }
};

// Whether the type says that an extension of it is always critical, or never.
template <class T, class = void>
struct FixedCritical {
  static constexpr std::optional<bool> value = std::nullopt;
};
template <class T>
struct FixedCritical<T, std::void_t<decltype(T::critical)>> {
  static constexpr std::optional<bool> value = T::critical;
};

template <class T, class = void>
struct HasRefusal : std::false_type {};
template <class T>
struct HasRefusal<T, std::void_t<decltype(std::declval<const T &>().refusal())>> : std::true_type {};

}  // namespace detail

#if defined(__cpp_exceptions)

/// The result of a get: a std::optional<T> whose value cannot be pointed to while it is a temporary.
template <class T>
class Got : public std::optional<T> {
 public:
  using std::optional<T>::optional;
  /// As of std::optional<T>: only value() throws when there is none.
  /// @{
  const T *operator->() const & { return std::optional<T>::operator->(); }
  T *operator->() & { return std::optional<T>::operator->(); }
  const T *operator->() && = delete;
  const T &operator*() const & { return std::optional<T>::operator*(); }
  T &operator*() & { return std::optional<T>::operator*(); }
  T operator*() && { return std::move(std::optional<T>::operator*()); }
  const T &value() const & { return std::optional<T>::value(); }
  T &value() & { return std::optional<T>::value(); }
  T value() && { return std::move(std::optional<T>::value()); }
  /// @}
};

/// The extensions of one certificate or CRL. Reading is const and safe from many threads; views of what it holds live
/// until it is changed, and cannot be taken from a temporary one.
class Extensions {
 public:
  /// An object without extensions.
  Extensions() = default;
  /// From one encoding of Extensions (BER), which is copied; of no octets an empty object. Throws Error when it is no
  /// SEQUENCE; faulty extensions in it do not matter until they are asked for.
  /// @{
  static Extensions decode(View encoding) {
    const ExtensionsView view(encoding);
    if (view.fault()) throw Error(view.fault());
    Extensions extensions;
    if (encoding.empty()) return extensions;
    Tlv tlv;
    Fault fault;
    detail::readOnly(encoding, tlv, fault);
    extensions.members_ = tlv.contents().copy();
    return extensions;
  }
  static Extensions decode(const Octets &encoding) { return decode(View(encoding)); }
  /// @}

  /// As one Extensions SEQUENCE; no octets when there are no extensions. Extensions that were not set are as they were.
  Octets encode() const {
    if (members_.empty()) return {};
    Writer out;
    out.value(0x30, View(members_));
    return out.take();
  }

  /// All of them as a view.
  /// @{
  ExtensionsView viewed() const &KETRA_LIFETIMEBOUND { return ExtensionsView::ofMembers(View(members_)); }
  void viewed() && = delete;
  /// @}
  /// Each extension, good or faulty, in the order of the encoding.
  /// @{
  Range<ExtensionView>::Iterator begin() const &KETRA_LIFETIMEBOUND { return range().begin(); }
  Range<ExtensionView>::Iterator end() const & { return range().end(); }
  Range<ExtensionView>::Iterator begin() && = delete;
  std::size_t size() const { return range().size(); }
  bool empty() const { return members_.empty(); }
  /// @}

  /// The extension of type T, or nothing when it is absent. Throws Error when it cannot be read.
  template <class T>
  Got<T> get() const {
    const View found = search(T::oid);
    if (found.empty()) return {};
    const Result<Extension> extension = read<Extension>(found);
    if (!extension) throw Error(extension.fault(), explain<Extension>(found, extension.fault()));
    const View octets = extension->extnValue.octets();
    Result<T> value = read<T>(octets);
    if (!value) throw Error(value.fault(), explain<T>(octets, value.fault()));
    return *std::move(value);
  }
  /// The same as a view: absent, good or faulty.
  /// @{
  template <class T>
  Found<typename detail::ViewedOf<T>::type> view() const &KETRA_LIFETIMEBOUND {
    return viewed().template view<T>();
  }
  template <class T>
  void view() && = delete;
  /// @}
  /// The first extension with an identifier, as it is stored.
  /// @{
  template <class Oid>
  Found<ExtensionView> find(const Oid &oid) const &KETRA_LIFETIMEBOUND {
    return viewed().find(oid);
  }
  template <class Oid>
  void find(const Oid &oid) && = delete;
  /// @}
  /// Whether there is an extension of type T, good or faulty.
  template <class T>
  bool contains() const {
    return !search(T::oid).empty();
  }

  /// Stores an extension whose criticality the caller chooses; one with the same identifier is replaced in its place.
  /// What ASN.1 forbids is refused with an Error, and nothing changes.
  template <class T>
  void set(const T &value, bool critical) {
    static_assert(!detail::FixedCritical<T>::value, "the criticality of this extension is fixed");
    store(value, critical);
  }
  /// The same for an extension whose criticality is fixed.
  template <class T>
  void set(const T &value) {
    static_assert(detail::FixedCritical<T>::value.has_value(), "say whether the extension is critical");
    store(value, *detail::FixedCritical<T>::value);
  }
  /// Any extension, typed or not, whose value is not judged. Throws Error for an identifier without arcs.
  template <class Oid>
  void set(const Oid &oid, bool critical, View value) {
    if (oid.content().empty()) throw Error({Reason::ObjidEmpty, 0, 0, nullptr});
    Writer out;
    const std::size_t place = out.begin(0x30);
    out.value(0x06, oid.content());
    if (critical) out.value(0x01, View(kTrue));
    out.value(0x04, value);
    out.end(place);
    replace(search(oid), out.written());
  }

  /// Removes the first extension with an identifier; false when there is none.
  /// @{
  template <class T>
  bool erase() {
    return erase(T::oid);
  }
  template <class Oid>
  bool erase(const Oid &oid) {
    const View found = search(oid);
    if (found.empty()) return false;
    replace(found, {});
    return true;
  }
  /// @}

 private:
  static constexpr uint8_t kTrue[] = {0xFF};

  Range<ExtensionView> range() const { return Range<ExtensionView>(View(members_)); }
  // The octets of an extension, or none.
  template <class Oid>
  View search(const Oid &oid) const {
    return viewed().find(oid).octets();
  }

  template <class T>
  void store(const T &value, bool critical) {
    using V = typename detail::ViewedOf<T>::type;
    if constexpr (detail::HasRefusal<T>::value) {
      if (const char *refusal = value.refusal()) throw Error({Reason::Rule, 0, 0, nullptr}, refusal);
    }
    Writer out;
    write(value, out);
    const auto written = ketra::view<V>(out.written());
    detail::Refusal refusal;
    if (!written) {
      refusal.fault = written.fault();
    } else {
      refusal.look(*written, {});
    }
    if (refusal.fault) throw Error(refusal.fault, explain<T>(out.written(), refusal.fault));
    set(T::oid, critical, out.written());
  }

  // After the last member with an end. What follows it, if anything, would swallow what is added after it.
  std::size_t readableEnd() const {
    Reader in{View(members_)};
    Tlv tlv;
    for (Fault fault; !in.done() && detail::readTlv(in, tlv, fault);) {
    }
    return members_.size() - in.left();
  }

  // `now` in the place of `before`, or at the end when that is empty.
  void replace(View before, View now) {
    const auto place = before.empty() ? readableEnd() : static_cast<std::size_t>(before.begin() - members_.data());
    Octets members;
    members.reserve(members_.size() - before.size() + now.size());
    members.insert(members.end(), members_.data(), members_.data() + place);
    members.insert(members.end(), now.begin(), now.end());
    members.insert(members.end(), members_.data() + place + before.size(), members_.data() + members_.size());
    members_ = std::move(members);
  }

  Octets members_;  // the encodings of the extensions, one after the other
};

#endif

}  // namespace ketra
