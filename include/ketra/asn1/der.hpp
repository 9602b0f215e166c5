/// @file
/// What keeps an encoding from being DER: every departure, with its place and its clause.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

namespace detail {

// Goes through octets that have been read, along their description, and reports each departure.
template <class Report>
class DerCheck {
 public:
  explicit DerCheck(Report &report) : report_(report) {}

  template <class Component>
  void value(const Tlv &tlv, As as) {
    using T = typename ValueOf<Component>::type;
    length(tlv);
    if (kIsField<Component> && !matches<T>(as, tlv.identifier)) return;  // it cannot be read, and keeps no rule
    if (!as.isExplicit) return contents<T>(tlv, as);
    as.number = -1;
    as.isExplicit = false;
    Reader in = tlv.reader();
    Tlv inner;
    if (next(in, inner)) value<T>(inner, as);
  }

  template <class T>
  void contents(const Tlv &tlv, As as) {
    if (inSegments<T>() && tlv.isConstructed()) return tell(Reason::InSegments, tlv.octets);
    if constexpr (IsLeaf<T>::value) {
      leaf<T>(tlv);
    } else if constexpr (kIsTlsList<T>) {
      // There is one way to write it.
    } else if constexpr (kIsList<T>) {
      list<typename MemberOf<T>::type>(tlv, as);
    } else if constexpr (kHasShape<T, Shape::Bits>) {
      bits(tlv.contents(), true);
    } else {
      T described{};
      if constexpr (kHasShape<T, Shape::Sequence>) {
        Components visit{*this, tlv.reader()};
        T::describe(described, visit);
      } else {
        Single visit{*this, tlv, as};
        T::describe(described, visit);
      }
    }
  }

 private:
  void tell(Reason reason, const uint8_t *at, std::size_t a = 0) {
    Fault fault;
    fail(fault, reason, at, a);
    report_(fault);
  }
  bool next(Reader &in, Tlv &tlv) const {
    Fault fault;
    return !in.done() && readTlv(in, tlv, fault);
  }

  // X.690 10.1: definite, in as few octets as it takes.
  void length(const Tlv &tlv) {
    if (tlv.end != tlv.contentEnd) return tell(Reason::Indefinite, tlv.octets);
    std::size_t octets = 1;
    if (tlv.size() >= 0x80) {
      for (std::size_t rest = tlv.size(); rest != 0; rest >>= 8) ++octets;
    }
    const uint8_t *at = tlv.octets + 1;
    if ((tlv.identifier & 0x1F) == 0x1F) {
      while ((*at++ & 0x80) != 0) {
      }
    }
    if (at + octets != tlv.content) tell(Reason::LengthForm, tlv.octets);
  }

  template <class T>
  void leaf(const Tlv &tlv) {
    if constexpr (Leaf<T>::kind == LeafKind::Boolean) {
      const bool isTrue = tlv.size() == 1 && *tlv.content != 0;
      if (isTrue && *tlv.content != 0xFF) tell(Reason::TrueOctet, tlv.content, *tlv.content);
    } else if constexpr (Leaf<T>::kind == LeafKind::BitString) {
      bits(tlv.contents(), false);
    } else if constexpr (Leaf<T>::kind == LeafKind::Time) {
      T time{};
      Fault fault;
      Scratch scratch;
      const bool isDer = Leaf<T>::read(tlv, time, fault) && Leaf<T>::content(time, scratch) == tlv.contents();
      if (!isDer) tell(Reason::TimeForm, tlv.octets);
    } else if constexpr (Leaf<T>::kind == LeafKind::Name) {
      list<RelativeDistinguishedNameView>(tlv, {});
    } else if constexpr (Leaf<T>::kind == LeafKind::GeneralName) {
      name(tlv);
    } else if constexpr (Leaf<T>::kind == LeafKind::Any) {
      lengthsInside(tlv);
    }
  }

  void name(const Tlv &tlv) {
    switch (static_cast<NameKind>(tlv.identifier & 0x1F)) {
      case NameKind::otherName: return contents<OtherNameView>(tlv, {});
      case NameKind::x400Address: return contents<OrAddressView>(tlv, {});
      case NameKind::ediPartyName: return contents<EdiPartyNameView>(tlv, {});
      case NameKind::directoryName: {
        Reader in = tlv.reader();
        Tlv inner;
        if (next(in, inner)) value<NameView>(inner, {});
        return;
      }
      default:
        if (tlv.isConstructed()) tell(Reason::InSegments, tlv.octets);
    }
  }

  void bits(View content, bool isNamed) {
    if (content.size() < 2 || content[0] > 7) return;  // no bits, or not a BIT STRING
    const unsigned last = content.back();
    if ((last & ((1u << content[0]) - 1)) != 0) tell(Reason::UnusedBits, content.begin());
    if (isNamed && (last >> content[0] & 1) == 0) tell(Reason::ZeroBits, content.begin());
  }

  template <class T>
  void list(const Tlv &tlv, As as) {
    View before;
    Reader in = tlv.reader();
    for (Tlv member; next(in, member); before = member.whole()) {
      value<T>(member, {});
      if (as.isSet && member.whole() < before) tell(Reason::SetOrder, member.octets);
    }
  }

  // Of the values inside one whose type is not known, only lengths can be judged; below 64 levels they are not.
  void lengthsInside(const Tlv &tlv) {
    if (!tlv.isConstructed()) return;
    Reader levels[ASN_MAX_NESTING];
    std::size_t depth = 0;
    levels[0] = tlv.reader();
    for (Tlv member;;) {
      if (!next(levels[depth], member)) {
        if (depth == 0) return;
        --depth;
        continue;
      }
      length(member);
      if (member.isConstructed() && depth + 1 < ASN_MAX_NESTING) levels[++depth] = member.reader();
    }
  }

  struct Components {
    DerCheck &check;
    Reader in;

    template <class T>
    bool operator()(const char *, T &, As as = {}) {
      Tlv tlv;
      if (in.done() || !fits<T>(as, *in.at) || !check.next(in, tlv)) return false;
      check.template value<T>(tlv, as);
      return true;
    }
    template <class T>
    bool operator()(const char *, std::optional<T> &, As as = {}) {
      Tlv tlv;
      take<T>(as, tlv);
      return true;
    }
    template <class T, auto D>
    bool operator()(const char *, Default<T, D> &absent, As as = {}) {
      Tlv tlv;
      T read{};
      Fault fault;
      if (take<T>(as, tlv) && readTagged<false>(tlv, read, as, fault) && read == absent.value()) {
        check.tell(Reason::WrittenDefault, tlv.octets);
      }
      return true;
    }

   private:
    template <class T>
    bool take(As as, Tlv &tlv) {
      if (in.done() || !matches<T>(as, *in.at) || !check.next(in, tlv)) return false;
      check.template value<T>(tlv, as);
      return true;
    }
  };

  // The chosen alternative, or the only member of another name for a type; the length has been judged.
  struct Single {
    DerCheck &check;
    const Tlv &tlv;
    As as;
    template <class T>
    bool operator()(const char *, T &, As own = {}) {
      check.template contents<T>(tlv, as | own);
      return true;
    }
    template <class... Ts, class... Alternatives>
    bool choice(std::variant<Ts...> &, Alternatives... alternatives) {
      return (one<Ts>(alternatives.as) || ...);
    }
    template <class T>
    bool one(As alternative) {
      if (!matches<T>(alternative, tlv.identifier)) return false;
      check.template contents<T>(tlv, alternative);
      return true;
    }
  };

  Report &report_;
};

}  // namespace detail

/// Calls report(const Fault &) for everything that keeps the encoding of a value of type T from being DER (X.690
/// clauses 10 and 11), in the order of the octets. Of octets that cannot be read as T, it reports what it can.
template <class T, class Report>
void derFaults(View octets, Report &&report) {
  using V = typename detail::ViewedOf<T>::type;
  Tlv tlv;
  Fault fault;
  if (detail::readOnly(octets, tlv, fault) && detail::matches<V>({}, tlv.identifier)) {
    detail::DerCheck<std::remove_reference_t<Report>>(report).template value<V>(tlv, {});
  }
}

}  // namespace ketra
