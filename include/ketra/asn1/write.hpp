/// @file
/// Writing described types: DER out (X.690 clauses 10 and 11), of values and of views. Open types and names are written
/// as they are stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/equal.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/writer.hpp"

namespace ketra {

namespace detail {

template <class T>
void writeValue(const T &value, As as, Writer &out);

// Each component that is there.
struct WriteComponents {
  Writer &out;

  template <class T>
  bool operator()(const char *, const T &member, As as = {}) {
    writeValue(member, as, out);
    return true;
  }
  template <class T>
  bool operator()(const char *, const std::optional<T> &member, As as = {}) {
    if (member) writeValue(*member, as, out);
    return true;
  }
  template <class T, auto D>
  bool operator()(const char *, const Default<T, D> &member, As as = {}) {
    if (member.isPresent()) writeValue(member.stored(), as, out);
    return true;
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives... alternatives) {
    return one<0>(value, alternatives...);
  }

 private:
  template <std::size_t kIndex, class... Ts, class... Rest>
  bool one(const std::variant<Ts...> &value, Alternative first, Rest... rest) {
    if (const auto *alternative = std::get_if<kIndex>(&value)) {
      writeValue(*alternative, first.as, out);
      return true;
    }
    if constexpr (sizeof...(rest) > 0) return one<kIndex + 1>(value, rest...);
    return true;
  }
};

// Another name for a type: its tag instead of the member's own.
struct WriteOnlyMember {
  Writer &out;
  As as;
  template <class T>
  bool operator()(const char *, const T &member, As own = {}) {
    writeValue(member, as | own, out);
    return true;
  }
};

// Named bits over what else is stored, without zero bits at the end (X.690 11.2.2).
class WriteBits {
 public:
  explicit WriteBits(Writer &out) : out_(out), place_(out.size()) { out_.octet(0); }

  bool operator()(const char *, const bool &member, As as) {
    const auto number = static_cast<unsigned>(as.number);
    if (number / 8 < sizeof named_) {
      mask_[number / 8] = static_cast<uint8_t>(mask_[number / 8] | 0x80u >> number % 8);
      if (member) named_[number / 8] = static_cast<uint8_t>(named_[number / 8] | 0x80u >> number % 8);
    }
    return true;
  }
  template <class Bits>
  bool nameless(const Bits &bits) {
    const View octets = bits.octets();
    const std::size_t size = octets.size() > sizeof named_ ? octets.size() : sizeof named_;
    for (std::size_t i = 0; i < size; ++i) {
      unsigned octet = i < octets.size() ? octets[i] : 0u;
      if (i + 1 == octets.size() && bits.size() % 8 != 0) octet &= 0xFFu << (8 - bits.size() % 8);
      if (i < sizeof named_) octet = (octet & ~unsigned{mask_[i]}) | named_[i];
      out_.octet(octet & 0xFF);
    }
    std::size_t end = out_.size();
    while (end > place_ + 1 && out_.written()[end - 1] == 0) --end;
    out_.cut(end);
    if (end == place_ + 1) return true;
    unsigned unused = 0;
    while ((out_.written()[end - 1] >> unused & 1) == 0) ++unused;
    const auto count = static_cast<uint8_t>(unused);
    out_.rewrite(place_, {&count, 1});
    return true;
  }

 private:
  Writer &out_;
  std::size_t place_;
  uint8_t named_[4] = {};
  uint8_t mask_[4] = {};
};

// Sorts the encodings written from `place` on, as the members of a SET OF are (X.690 11.6).
inline void sortMembers(Writer &out, std::size_t place) {
  const Octets written = View(out.written().begin() + place, out.written().end()).copy();
  std::vector<View> members;
  Tlv tlv;
  Fault fault;
  for (Reader in{View(written)}; !in.done() && readTlv(in, tlv, fault);) members.push_back(tlv.whole());
  bool isSorted = true;
  for (std::size_t i = 1; i < members.size(); ++i) isSorted = isSorted && !(members[i] < members[i - 1]);
  if (isSorted) return;
  // Not std::sort: every user would pay for compiling <algorithm>.
  std::qsort(members.data(), members.size(), sizeof(View), [](const void *a, const void *b) {
    const View &x = *static_cast<const View *>(a), &y = *static_cast<const View *>(b);
    return x < y ? -1 : y < x ? 1 : 0;
  });
  out.cut(place);
  for (const View member : members) out.octets(member);
}

// A length of two octets, as TLS has them; one that does not fit is found when what was written is read.
inline std::size_t beginTls(Writer &out) {
  out.octet(0);
  out.octet(0);
  return out.size();
}
inline void endTls(std::size_t place, Writer &out) {
  const std::size_t length = out.size() - place;
  const uint8_t octets[] = {static_cast<uint8_t>(length >> 8 & 0xFF), static_cast<uint8_t>(length & 0xFF)};
  out.rewrite(place - 2, octets);
}

template <class T>
void writeList(const T &list, As as, Writer &out) {
  const std::size_t place = out.size();
  if constexpr (kIsTlsList<T>) {
    const std::size_t vector = beginTls(out);
    for (const auto &member : list) {
      if constexpr (isView<T>) {
        out.octets(member.octets());
      } else {
        const std::size_t each = beginTls(out);
        Leaf<typename MemberOf<T>::type>::write(member, out);
        endTls(each, out);
      }
    }
    return endTls(vector, out);
  }
  for (const auto &member : list) {
    if constexpr (isView<T>) {
      out.octets(member.octets());
    } else {
      writeValue(member, {}, out);
    }
  }
  if (as.isSet && !list.empty()) sortMembers(out, place);
}

template <class T>
void writeContents(const T &value, As as, Writer &out) {
  if constexpr (IsLeaf<T>::value) {
    Leaf<T>::write(value, out);
  } else if constexpr (kIsList<T>) {
    writeList(value, as, out);
  } else if constexpr (kHasShape<T, Shape::Bits>) {
    WriteBits visit(out);
    T::describe(value, visit);
  } else {
    WriteComponents visit{out};
    T::describe(value, visit);
  }
}

template <class T>
void writeValue(const T &value, As as, Writer &out) {
  if constexpr (kIsField<T>) {
    out.octets(value.octets());
  } else if constexpr (kHasShape<T, Shape::Is>) {
    WriteOnlyMember visit{out, as};
    T::describe(value, visit);
  } else if (as.isExplicit) {
    const std::size_t place = out.begin(identifierOf<T>(as));
    as.number = -1;
    as.isExplicit = false;
    writeValue(value, as, out);
    out.end(place);
  } else {
    const uint8_t identifier = identifierOf<T>(as);
    if (identifier == 0) return writeContents(value, as, out);  // it brings its own tag
    const std::size_t place = out.begin(identifier);
    writeContents(value, as, out);
    out.end(place);
  }
}

}  // namespace detail

/// Writes a value.
template <class T>
void write(const T &value, Writer &out) {
  detail::writeValue(value, {}, out);
}
/// One value as octets.
template <class T>
Octets encode(const T &value) {
  Writer out;
  write(value, out);
  return out.take();
}

}  // namespace ketra
