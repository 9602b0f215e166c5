/// @file
/// Whether name constraints permit a name (RFC 5280 4.2.1.10). Decides about one CA's constraints; which certificates
/// of a path they apply to (RFC 5280 6.1.3 (b), (c)) is up to the caller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "ketra/extensions/name_constraints.hpp"
#include "ketra/extensions/subject_alt_name.hpp"
#include "ketra/objects/certificate.hpp"

namespace ketra {

/// What name constraints say of a name, or of all names of a certificate.
struct Permission {
  /// The answers.
  enum class Verdict : uint8_t {
    permitted,     ///< inside a permitted subtree of its kind, or there are none; and in no excluded one
    excluded,      ///< inside an excluded subtree
    notPermitted,  ///< there are permitted subtrees of its kind, and it is in none
    unknown        ///< it cannot be told: treat it as not permitted
  };
  Verdict verdict = Verdict::permitted;  ///< the answer
  const char *why = "";                  ///< why it is unknown, in words
  Fault fault{};                         ///< what is wrong with constraints or names, when that is why
  View octets{};                         ///< the content of the name that decided, of a certificate's

  /// Whether it is permitted.
  explicit operator bool() const { return verdict == Verdict::permitted; }
};

namespace detail {

// How a name lies to a subtree. Part: some of the names that a wildcard stands for are inside.
enum class Inside : uint8_t { No, Yes, Part, Unknown };
struct Relation {
  Inside inside = Inside::No;
  const char *why = "";
  constexpr Relation(bool isInside) : inside(isInside ? Inside::Yes : Inside::No) {}
  constexpr Relation(Inside how) : inside(how) {}
  constexpr Relation(const char *reason) : inside(Inside::Unknown), why(reason) {}
};

constexpr char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool isAlphanumeric(char c) { return (c >= '0' && c <= '9') || (lowerCase(c) >= 'a' && lowerCase(c) <= 'z'); }

inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (lowerCase(a[i]) != lowerCase(b[i])) return false;
  }
  return true;
}

// RFC 1034 3.5 with digits at the start (RFC 1123 2.1) and underscores, which occur: labels of at most 63 letters,
// digits and hyphens, at most 253 octets in all, and no dot at the end.
inline bool isHost(std::string_view text) {
  std::size_t label = 0;
  for (const char c : text) {
    if (c == '.') {
      if (label == 0) return false;
      label = 0;
    } else if ((!isAlphanumeric(c) && c != '-' && c != '_') || ++label > 63) {
      return false;
    }
  }
  return label > 0 && text.size() <= 253;
}
// As a URI has it instead of a host: a number at the end is not that of a domain (RFC 3986 3.2.2).
inline bool looksLikeAddress(std::string_view host) {
  const std::size_t dot = host.rfind('.');
  for (const char c : host.substr(dot == host.npos ? 0 : dot + 1)) {
    if (c < '0' || c > '9') return false;
  }
  return true;
}
// Whether a host is the domain, or labels are added on its left.
inline bool isInDomain(std::string_view host, std::string_view domain) {
  if (host.size() < domain.size() || !equalIgnoringCase(host.substr(host.size() - domain.size()), domain)) return false;
  return host.size() == domain.size() || domain.empty() || host[host.size() - domain.size() - 1] == '.';
}

// dNSName: the domain itself and everything in it; the empty one has all hosts.
inline Relation dnsIn(std::string_view name, std::string_view base) {
  if (!base.empty() && !isHost(base)) return "a dNSName constraint is not a domain name";
  if (name.substr(0, 2) != "*.")
    return isHost(name) ? Relation(isInDomain(name, base)) : "a dNSName is not a host name";
  const std::string_view domain = name.substr(2);
  if (!isHost(domain)) return "a dNSName with a wildcard is not a host name";
  if (isInDomain(domain, base)) return true;
  // One host that the wildcard stands for is the constraint, or above it.
  const std::size_t dot = base.find('.');
  return dot != base.npos && equalIgnoringCase(base.substr(dot + 1), domain) ? Inside::Part : Inside::No;
}

// A host, or a domain that begins with a dot and does not include the host of its own name.
inline Relation hostIn(std::string_view host, std::string_view base) {
  if (base.empty() || base[0] != '.') return equalIgnoringCase(host, base);
  return host.size() > base.size() && isInDomain(host, base.substr(1));
}

// A mailbox: the parts before and after the last at sign. False for what is not one.
inline bool splitMailbox(std::string_view text, std::string_view &local, std::string_view &host) {
  const std::size_t at = text.rfind('@');
  if (at == 0 || at == text.npos) return false;
  local = text.substr(0, at);
  host = text.substr(at + 1);
  const bool isQuoted = local.size() > 2 && local.front() == '"' && local.back() == '"';
  if (isQuoted) local = local.substr(1, local.size() - 2);
  for (const char c : local) {
    const bool isAtom = isAlphanumeric(c) || std::string_view("!#$%&'*+-/=?^_`{|}~.").find(c) != std::string_view::npos;
    const bool isQuotable = c >= ' ' && c < 0x7F && c != '"' && c != '\\';
    if (isQuoted ? !isQuotable : !isAtom) return false;
  }
  return isHost(host);
}

// rfc822Name: one mailbox, all of a host, or all of the hosts in a domain. The local part counts octet by octet (7.5).
inline Relation mailIn(std::string_view name, std::string_view base) {
  std::string_view local, host, baseLocal, baseHost;
  if (!splitMailbox(name, local, host)) return "an rfc822Name is not a mailbox";
  if (base.find('@') == base.npos) {
    if (!isHost(base.substr(!base.empty() && base[0] == '.' ? 1 : 0))) {
      return "an rfc822Name constraint is neither a mailbox nor a host nor a domain";
    }
    return hostIn(host, base);
  }
  if (!splitMailbox(base, baseLocal, baseHost)) return "an rfc822Name constraint is not a mailbox";
  if (local != baseLocal || !equalIgnoringCase(host, baseHost)) return false;
  if (name.size() != base.size()) return "one mailbox with quotes and the same without";
  return true;
}

// The host of a URI (RFC 3986 3.2); empty where it has none that is a domain name.
inline std::string_view hostOfUri(std::string_view uri) {
  const std::size_t colon = uri.find(':');
  if (colon == uri.npos || colon == 0 || uri.substr(colon + 1, 2) != "//") return {};
  for (const char c : uri.substr(0, colon)) {
    if (!isAlphanumeric(c) && c != '+' && c != '-' && c != '.') return {};
  }
  std::string_view host = uri.substr(colon + 3);
  host = host.substr(0, host.find_first_of("/?#"));
  for (const char c : host) {
    if (!isAlphanumeric(c) && std::string_view("-._~!$&'()*+,;=:@%").find(c) == std::string_view::npos) return {};
  }
  const std::size_t at = host.rfind('@');
  if (at != host.npos) host = host.substr(at + 1);
  const std::size_t port = host.find(':');
  if (port != host.npos) {
    for (const char c : host.substr(port + 1)) {
      if (c < '0' || c > '9') return {};
    }
    host = host.substr(0, port);
  }
  return isHost(host) && !looksLikeAddress(host) ? host : std::string_view();
}

inline Relation uriIn(std::string_view name, std::string_view base) {
  const std::string_view host = hostOfUri(name);
  if (host.empty()) return "a URI has no host that is a domain name";
  const std::string_view domain = base.substr(!base.empty() && base[0] == '.' ? 1 : 0);
  if (!isHost(domain) || looksLikeAddress(domain)) return "a URI constraint is not a domain name";
  return hostIn(host, base);
}

// An address, and one with a mask of as many octets (RFC 4632 3.1).
inline Relation addressIn(View name, View base) {
  const std::size_t size = base.size() / 2;
  if (name.size() != 4 && name.size() != 16) return "an iPAddress has neither 4 nor 16 octets";
  if (base.size() != 8 && base.size() != 32) return "an iPAddress constraint has neither 8 nor 32 octets";
  bool isEnded = false;
  for (std::size_t bit = 0; bit < 8 * size; ++bit) {
    const bool isOne = (base[size + bit / 8] & 0x80u >> bit % 8) != 0;
    if (isOne && isEnded) return "the mask of an iPAddress constraint is not a prefix";
    isEnded = !isOne;
  }
  if (name.size() != size) return false;
  for (std::size_t i = 0; i < size; ++i) {
    if (((name[i] ^ base[i]) & base[size + i]) != 0) return false;
  }
  return true;
}

inline constexpr OidLiteral kSmtpUtf8Mailbox = "1.3.6.1.5.5.7.8.9"_oid;

// Of two names of one kind.
inline Relation isInside(const GeneralNameView &name, const GeneralNameView &base) {
  const std::string_view text = name.content().characters(), domain = base.content().characters();
  switch (name.kind()) {
    case NameKind::rfc822Name: return mailIn(text, domain);
    case NameKind::dNSName: return dnsIn(text, domain);
    case NameKind::uniformResourceIdentifier: return uriIn(text, domain);
    case NameKind::iPAddress: return addressIn(name.content(), base.content());
    case NameKind::directoryName: {
      const auto directory = name.directoryName(), subtree = base.directoryName();
      if (!directory || !subtree) return "a directoryName is malformed";
      return directory->isWithin(*subtree);
    }
    case NameKind::otherName: {
      const auto other = name.otherName(), subtree = base.otherName();
      if (!other || !subtree) return "an otherName is malformed";
      if (other->type != subtree->type) return false;
      break;
    }
    default: break;
  }
  // Every subtree has its base; what else it has is not defined for these kinds.
  if (name == base) return true;
  return "no rule compares names of this kind";
}

// Whether a constraint says anything of a name: those of the same kind, and of the same type of otherName.
inline bool concerns(const GeneralNameView &base, const GeneralNameView &name) {
  if (base.kind() != name.kind()) return false;
  if (!name.is(NameKind::otherName)) return true;
  const auto other = name.otherName(), subtree = base.otherName();
  return !other || !subtree || other->type == subtree->type;
}

class Permits {
 public:
  explicit Permits(std::size_t most) : left_(most) {}

  Permission unknown(const char *why, const Fault &fault = {}, View octets = {}) const {
    return {Permission::Verdict::unknown, why, fault, octets};
  }

  template <class Form>
  Permission judge(const NameConstraintsOf<Form> &constraints, const GeneralNameView &name) {
    Permission result;
    result.octets = name.content();
    Found permitted, excluded;
    if (constraints.permittedSubtrees) look(*constraints.permittedSubtrees, name, permitted, result);
    if (constraints.excludedSubtrees) look(*constraints.excludedSubtrees, name, excluded, result);
    if (!result) return result;
    if (excluded.isAny) {
      result.verdict = Permission::Verdict::excluded;
    } else if (permitted.isThere && !permitted.isAll) {
      result.verdict = Permission::Verdict::notPermitted;
    }
    return result;
  }

 private:
  struct Found {
    bool isThere = false;  // a subtree of the kind
    bool isAll = false;    // the name, with all that it stands for, is in one of them
    bool isAny = false;    // some of it is
  };

  template <class List>
  void look(const List &list, const GeneralNameView &name, Found &found, Permission &result) {
    for (const auto &item : list) {
      if (left_ == 0) {
        result = unknown("more comparisons than allowed", {}, name.content());
        return;
      }
      --left_;
      if constexpr (isView<List>) {
        if (item) {
          compare(*item, name, found, result);
        } else {
          result = unknown("the constraints are malformed", item.fault(), name.content());
        }
      } else {
        compare(item, name, found, result);
      }
      if (!result) return;
    }
  }

  template <class Subtree>
  void compare(const Subtree &subtree, const GeneralNameView &name, Found &found, Permission &result) {
    const GeneralNameView base(subtree.base);
    const auto other = name.otherName();
    const bool isUtf8Mailbox = other && other->type == kSmtpUtf8Mailbox;
    if (isUtf8Mailbox && base.is(NameKind::rfc822Name)) {
      result = unknown("rfc822Name constraints apply to an SmtpUTF8Mailbox (RFC 9598 6)", {}, name.content());
    }
    if (!result || !concerns(base, name)) return;
    Relation relation = isInside(name, base);
    if (subtree.minimum.value().number() != 0 || subtree.maximum) relation = "a subtree has a minimum or maximum";
    if (relation.inside == Inside::Unknown) result = unknown(relation.why, {}, name.content());
    found.isThere = true;
    found.isAll = found.isAll || relation.inside == Inside::Yes;
    found.isAny = found.isAny || relation.inside == Inside::Yes || relation.inside == Inside::Part;
  }

  std::size_t left_;
};

// Unknown when it cannot be told which subjectAltName a certificate has.
inline Permission doubtOfAltName(const Permits &permits, const ExtensionsView &extensions) {
  const auto names = extensions.view<SubjectAltNameView>();
  if (names.isFaulty()) return permits.unknown("the subjectAltName is malformed", names.fault());
  std::size_t count = 0;
  for (const auto &extension : extensions) {
    const View id = extension ? extension->extnID.content() : beginningOf(extension.octets()).id;
    if (id.empty()) {
      return permits.unknown("an extension that could be a subjectAltName is malformed", extension.fault());
    }
    if (id == SubjectAltNameView::oid.content() && ++count > 1) {
      return permits.unknown("the certificate has more than one subjectAltName");
    }
  }
  return {};
}

}  // namespace detail

/// How many comparisons of a name with a subtree a decision makes unless the caller says otherwise. Each takes time in
/// proportion to both.
inline constexpr std::size_t kMostComparisons = 1'000'000;

/// Whether constraints permit one name. They say nothing of names of other kinds than theirs. The answer is unknown
/// when constraints or name are malformed, when a subtree has a minimum or maximum, when names of the kind cannot be
/// compared, and after `most` comparisons.
///
/// - dNSName: the domain and all in it; the empty constraint has all hosts; a wildcard is inside when all that
///   it stands for is, and excluded when any of it is.
/// - rfc822Name: one mailbox, all of a host, or with a dot in front all of the hosts in a domain.
/// - uniformResourceIdentifier: the host, or with a dot in front all hosts in a domain. The URI must have a host.
/// - iPAddress: a prefix; IPv4 is never inside IPv6, nor the other way round.
/// - directoryName: the leading relative distinguished names (NameOf::isWithin()).
/// - otherName, x400Address, ediPartyName, registeredID: only whether it is the constraint itself. Constraints on an
///   otherName concern those of its type-id.
template <class Form, class NameForm>
Permission permits(const NameConstraintsOf<Form> &constraints, const GeneralNameOf<NameForm> &name,
                   std::size_t most = kMostComparisons) {
  return detail::Permits(most).judge(constraints, GeneralNameView(name));
}

/// Whether constraints permit all names of a certificate: its subject unless it is empty, its subjectAltName, and
/// without one the emailAddress attributes of its subject. The first name that is not permitted decides, but for one
/// whose answer is unknown.
template <class Form>
Permission permits(const NameConstraintsOf<Form> &constraints, const TbsCertificateView &certificate,
                   std::size_t most = kMostComparisons) {
  detail::Permits permits(most);
  Permission result;
  const auto add = [&](const GeneralNameView &name) {
    const Permission next = permits.judge(constraints, name);
    if (result || next.verdict == Permission::Verdict::unknown) result = next;
    return result.verdict != Permission::Verdict::unknown;
  };
  if constexpr (std::is_same_v<Form, Viewed>) {
    const Fault fault = firstFault(constraints);
    if (fault) return permits.unknown("the constraints are malformed", fault);
  }
  const auto subject = certificate.subject.value();
  if (!subject) return permits.unknown("the subject is malformed", subject.fault());
  const ExtensionsView extensions = certificate.extensions();
  if (Permission doubt = detail::doubtOfAltName(permits, extensions); !doubt) return doubt;
  const auto names = extensions.template view<SubjectAltNameView>();
  if (!subject->empty() && !add(GeneralNameView::of(NameKind::directoryName, subject->stored()))) return result;
  if (names) {
    for (const auto &name : names->names) {
      if (!name) return permits.unknown("the subjectAltName is malformed", name.fault(), name.octets());
      if (!add(*name)) return result;
    }
    return result;
  }
  for (const auto &rdn : subject->rdns()) {
    for (const auto &attribute : rdn->attributes) {
      if (attribute->type != attribute::emailAddress) continue;
      const auto text = attribute->value.template as<TextView>();
      if (!text) return permits.unknown("an emailAddress is malformed", text.fault());
      if (!add(GeneralNameView::of(NameKind::rfc822Name, text->octets()))) return result;
    }
  }
  return result;
}

/// The same for an extension as it was found: without it everything is permitted, and nothing can be told when it is
/// faulty.
template <class Names>
Permission permits(const Found<NameConstraintsView> &constraints, const Names &names,
                   std::size_t most = kMostComparisons) {
  if (constraints.isAbsent()) return {};
  if (!constraints) return detail::Permits(most).unknown("the constraints are malformed", constraints.fault());
  return permits(*constraints, names, most);
}

}  // namespace ketra
