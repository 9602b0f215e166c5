/// @file
/// SubjectAltName, IssuerAltName (RFC 5280 4.2.1.6, 4.2.1.7), CertificateIssuer (RFC 5280 5.3.3).
///
/// Each comes in two forms. The strict one can be set, and a get of it fails when one member of the list cannot be
/// read. The tolerant one can only be read: it has an UnreadableName in the place of such a member.
/// @code
/// const auto read = extensions.get<ketra::SubjectAltName>();  // kept: a loop over get()->names would outlive it
/// if (read) for (const ketra::GeneralName &name : read->names) ...
/// @endcode
#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_name.hpp"
#include "ketra/face/general_names.hpp"

namespace ketra {
inline namespace face {

/// SubjectAltName (RFC 5280 4.2.1.6); `N` is GeneralName or NameOrError.
template <class N>
struct BasicSubjectAltName {
  std::vector<N> names;  ///< one or more, to be set

  friend bool operator==(const BasicSubjectAltName &a, const BasicSubjectAltName &b) { return a.names == b.names; }
  friend bool operator!=(const BasicSubjectAltName &a, const BasicSubjectAltName &b) { return !(a == b); }
};
/// The strict form.
using SubjectAltName = BasicSubjectAltName<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantSubjectAltName = BasicSubjectAltName<NameOrError>;

/// IssuerAltName (RFC 5280 4.2.1.7); `N` is GeneralName or NameOrError.
template <class N>
struct BasicIssuerAltName {
  std::vector<N> names;  ///< one or more, to be set

  friend bool operator==(const BasicIssuerAltName &a, const BasicIssuerAltName &b) { return a.names == b.names; }
  friend bool operator!=(const BasicIssuerAltName &a, const BasicIssuerAltName &b) { return !(a == b); }
};
/// The strict form.
using IssuerAltName = BasicIssuerAltName<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantIssuerAltName = BasicIssuerAltName<NameOrError>;

/// CertificateIssuer, of a CRL entry (RFC 5280 5.3.3); `N` is GeneralName or NameOrError. Always critical.
template <class N>
struct BasicCertificateIssuer {
  std::vector<N> names;  ///< one or more, to be set

  friend bool operator==(const BasicCertificateIssuer &a, const BasicCertificateIssuer &b) {
    return a.names == b.names;
  }
  friend bool operator!=(const BasicCertificateIssuer &a, const BasicCertificateIssuer &b) { return !(a == b); }
};
/// The strict form.
using CertificateIssuer = BasicCertificateIssuer<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantCertificateIssuer = BasicCertificateIssuer<NameOrError>;

namespace detail {

// What the three have in common. Calls: objid() and the C get.
template <class List, class Calls>
struct NameListTraits {
  static constexpr bool kIsStrict = std::is_same_v<decltype(List::names), std::vector<GeneralName>>;

  static const Objid &objid() { return Calls::objid(); }

  static int32_t get(KetraObject object, List &value, AsnErrorBlock *err) {
    if constexpr (kIsStrict) {
      const uint32_t count = countOf(contentOf(storedValue(object, objid())));
      NameNodes nodes(count);
      const X509GenNames c{nodes.chain(count)};
      if (const int32_t result = Calls::get(object, &c, err); result != 0) return result;
      copyNames(c.genNames, value.names);
      return 0;
    } else {
      const WorkValue list(AsnType_SequenceOfAny, storedValue(object, objid()));
      SharedErrors errors;
      value.names = readNames(list, list.get(), errors);
      return 0;
    }
  }

  template <class Set>
  static int32_t write(const List &value, Set &&set) {
    static_assert(kIsStrict, "a tolerant form is for reading only");
    NameNodes nodes(value.names.size());
    const X509GenNames c{nodes.chain(value.names)};
    return set(&c);
  }
};

struct SubjectAltNameCalls {
  static const Objid &objid() { return X509Objid_SubjectAltName; }
  static int32_t get(KetraObject object, const X509GenNames *names, AsnErrorBlock *err) {
    return KetraObjectSgetSubjectAltName(object, names, err);
  }
};

struct IssuerAltNameCalls {
  static const Objid &objid() { return X509Objid_IssuerAltName; }
  static int32_t get(KetraObject object, const X509GenNames *names, AsnErrorBlock *err) {
    return KetraObjectSgetIssuerAltName(object, names, err);
  }
};

struct CertificateIssuerCalls {
  static const Objid &objid() { return X509Objid_CertIssuer; }
  static int32_t get(KetraObject object, const X509GenNames *names, AsnErrorBlock *err) {
    return KetraObjectSgetCertIssuer(object, names, err);
  }
};

}  // namespace detail

template <class N>
struct ExtensionTraits<BasicSubjectAltName<N>>
    : detail::NameListTraits<BasicSubjectAltName<N>, detail::SubjectAltNameCalls> {
  static constexpr bool kCallerSetsCritical = true;
  static int32_t set(KetraObject object, int32_t critical, const BasicSubjectAltName<N> &value, AsnErrorBlock *err) {
    return ExtensionTraits::write(
        value, [&](const X509GenNames *c) { return KetraObjectSsetSubjectAltName(object, critical, c, err); });
  }
};

template <class N>
struct ExtensionTraits<BasicIssuerAltName<N>>
    : detail::NameListTraits<BasicIssuerAltName<N>, detail::IssuerAltNameCalls> {
  static constexpr bool kCallerSetsCritical = true;
  static int32_t set(KetraObject object, int32_t critical, const BasicIssuerAltName<N> &value, AsnErrorBlock *err) {
    return ExtensionTraits::write(
        value, [&](const X509GenNames *c) { return KetraObjectSsetIssuerAltName(object, critical, c, err); });
  }
};

template <class N>
struct ExtensionTraits<BasicCertificateIssuer<N>>
    : detail::NameListTraits<BasicCertificateIssuer<N>, detail::CertificateIssuerCalls> {
  static constexpr bool kCallerSetsCritical = false;
  static int32_t set(KetraObject object, const BasicCertificateIssuer<N> &value, AsnErrorBlock *err) {
    return ExtensionTraits::write(value,
                                  [&](const X509GenNames *c) { return KetraObjectSsetCertIssuer(object, c, err); });
  }
};

}  // namespace face
}  // namespace ketra
