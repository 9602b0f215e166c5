// One stored value, after an octet that chooses the extension, read by OpenSSL too: both take it, with the same
// content, or both refuse it, but for what the tables below settle. The verdict is that of C, the content that of C++;
// agreement.cpp compares the two.

#include <openssl/asn1t.h>
#include <openssl/err.h>
#include <openssl/objects.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <tuple>

#include "c.hpp"
#include "ketra/extensions.hpp"
#include "tlv.hpp"

namespace fuzz {
namespace {

// ---- Contents -------------------------------------------------------------------------------------------------------

// Whether our value is what theirs is.
#define AGREE(Ours, Theirs, ...) \
  static bool agree(const ketra::Ours &ours, const Theirs *theirs) { return __VA_ARGS__; }

// A structure, for each to know all the others.
struct Content {
  static bool agree(View ours, const ASN1_STRING *theirs) {
    return ours == View(ASN1_STRING_get0_data(theirs), static_cast<std::size_t>(ASN1_STRING_length(theirs)));
  }
  AGREE(OctetString, ASN1_STRING, agree(ours.octets(), theirs))
  AGREE(DirectoryString, ASN1_STRING, agree(ours.octets(), theirs))

  static bool agree(const ketra::ObjectIdentifier &ours, const ASN1_OBJECT *theirs) {
    return ours.content() == View(OBJ_get0_data(theirs), OBJ_length(theirs));
  }

  static bool agree(const ketra::Integer &ours, const ASN1_INTEGER *theirs) {
    const std::unique_ptr<BIGNUM, decltype(&BN_free)> number(ASN1_INTEGER_to_BN(theirs, nullptr), BN_free);
    char *digits = BN_bn2hex(number.get());
    std::string hex = digits;
    OPENSSL_free(digits);
    std::ranges::transform(hex, hex.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ours.hex() == (hex == "0" ? "00" : hex);
  }

  static bool agree(ketra::Time ours, const ASN1_GENERALIZEDTIME *theirs) {
    tm parts{};
    if (ASN1_TIME_to_tm(theirs, &parts) != 1)
      return true;  // its reader takes any octets; this is settled by kTheyRefuse
    const std::string text = ketra::timeText(ours).substr(0, 19);
    char expected[40];
    std::snprintf(expected, sizeof expected, "%04d-%02d-%02dT%02d:%02d:%02d", parts.tm_year + 1900, parts.tm_mon + 1,
                  parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
    return text == expected;
  }

  template <class T, class Theirs>
  static bool agree(const std::optional<T> &ours, const Theirs *theirs) {
    return ours.has_value() == (theirs != nullptr) && (!ours || agree(*ours, theirs));
  }
  template <auto D>
  static bool agree(const ketra::Default<ketra::Integer, D> &ours, const ASN1_INTEGER *theirs) {
    return ours.isPresent() == (theirs != nullptr) && (!ours.isPresent() || agree(*ours, theirs));
  }

  // The bits that have names.
  struct Bits {
    const ASN1_BIT_STRING *theirs;
    bool operator()(const char *, const bool &ours, ketra::As as) const {
      return ours == (ASN1_BIT_STRING_get_bit(theirs, as.number) != 0);
    }
    template <class T>
    bool nameless(const T &) const {
      return true;
    }
  };
  template <class T>
  static bool agreeBits(const T &ours, const ASN1_BIT_STRING *theirs) {
    const Bits visit{theirs};
    return T::describe(ours, visit);
  }
  AGREE(KeyUsage, ASN1_BIT_STRING, agreeBits(ours, theirs))
  AGREE(ReasonFlags, ASN1_BIT_STRING, agreeBits(ours, theirs))

  // Lists; `stack` is any STACK_OF.
  template <class T, class Agree>
  static bool agreeAll(const std::vector<T> &ours, const void *stack, const Agree &agreeOne) {
    const auto *theirs = static_cast<const OPENSSL_STACK *>(stack);
    int i = 0;
    return static_cast<int>(ours.size()) == OPENSSL_sk_num(theirs) &&
           std::ranges::all_of(ours, [&](const T &each) { return agreeOne(each, OPENSSL_sk_value(theirs, i++)); });
  }
  template <class Theirs, class T>
  static bool agreeAll(const std::vector<T> &ours, const void *stack) {
    return agreeAll(ours, stack,
                    [](const T &one, const void *other) { return agree(one, static_cast<const Theirs *>(other)); });
  }

  // Both are written anew by C, in DER.
  static Octets derOf(View name) {
    const AsnEncodedData stored = encoded(name);
    const NameObject object;
    AsnEncodedData der{};
    succeed("a name is one to C", X509NameObjectSetPduBER, object, &stored);
    return X509NameObjectGetPduDER(object, &der, nullptr) == 0 ? viewOf(der).copy() : Octets();
  }
  static bool agree(ketra::NameView ours, X509_NAME *theirs) {
    const uint8_t *octets = nullptr;
    std::size_t size = 0;
    return X509_NAME_get0_der(theirs, &octets, &size) == 1 && derOf(ours.stored()) == derOf({octets, size});
  }

  static bool agree(const ketra::GeneralName &ours, const GENERAL_NAME *theirs) {
    if (static_cast<int>(ours.kind()) != theirs->type) return false;  // GEN_OTHERNAME is 0
    switch (ours.kind()) {
      case ketra::NameKind::otherName: {
        const auto name = ours.otherName();
        return name->value.has_value() && agree(ketra::ObjectIdentifier(name->type), theirs->d.otherName->type_id);
      }
      case ketra::NameKind::x400Address: return true;  // kept as octets on both sides
      case ketra::NameKind::directoryName: return agree(*ours.directoryName(), theirs->d.dirn);
      case ketra::NameKind::ediPartyName: return agreeParty(ours.content(), theirs->d.ediPartyName);
      case ketra::NameKind::registeredID: {
        return agree(*ketra::ObjectIdentifier::ofContent(ours.content()), theirs->d.rid);
      }
      default: return agree(ours.content(), theirs->d.ia5);
    }
  }
  static bool agreeParty(View content, const EDIPARTYNAME *theirs) {
    ketra::Writer out;
    out.value(0x30, content);
    const auto ours = ketra::read<ketra::EdiPartyName>(out.written());
    return ours && agree(ours->partyName, theirs->partyName) && agree(ours->nameAssigner, theirs->nameAssigner);
  }
  static bool agree(const std::vector<ketra::GeneralName> &ours, const GENERAL_NAMES *theirs) {
    return agreeAll<GENERAL_NAME>(ours, theirs);
  }
  AGREE(SubjectAltName, GENERAL_NAMES, agree(ours.names, theirs))
  AGREE(IssuerAltName, GENERAL_NAMES, agree(ours.names, theirs))
  AGREE(CertificateIssuer, GENERAL_NAMES, agree(ours.names, theirs))

  static bool agree(const ketra::DistributionPointName &ours, const DIST_POINT_NAME *theirs) {
    if (const auto *names = ours.fullName()) return theirs->type == 0 && agree(*names, theirs->name.fullname);
    const auto &attributes = ours.nameRelativeToCRLIssuer()->attributes;
    return theirs->type == 1 && agreeAll(attributes, theirs->name.relativename, [](const auto &one, const void *other) {
             return agree(one.type, X509_NAME_ENTRY_get_object(static_cast<const X509_NAME_ENTRY *>(other)));
           });
  }
  AGREE(DistributionPoint, DIST_POINT,
        agree(ours.distributionPoint, theirs->distpoint) && agree(ours.reasons, theirs->reasons) &&
            agree(ours.cRLIssuer, theirs->CRLissuer))
  AGREE(CrlDistributionPoints, STACK_OF(DIST_POINT), agreeAll<DIST_POINT>(ours.points, theirs))
  AGREE(IssuingDistributionPoint, ISSUING_DIST_POINT,
        agree(ours.distributionPoint, theirs->distpoint) && agree(ours.onlySomeReasons, theirs->onlysomereasons) &&
            *ours.onlyContainsUserCerts == (theirs->onlyuser > 0) &&
            *ours.onlyContainsCACerts == (theirs->onlyCA > 0) && *ours.indirectCRL == (theirs->indirectCRL > 0))

  AGREE(GeneralSubtree, GENERAL_SUBTREE,
        agree(ours.base, theirs->base) && agree(ours.minimum, theirs->minimum) && agree(ours.maximum, theirs->maximum))
  static bool agree(const std::vector<ketra::GeneralSubtree> &ours, const STACK_OF(GENERAL_SUBTREE) * theirs) {
    return agreeAll<GENERAL_SUBTREE>(ours, theirs);
  }
  AGREE(NameConstraints, NAME_CONSTRAINTS,
        agree(ours.permittedSubtrees, theirs->permittedSubtrees) &&
            agree(ours.excludedSubtrees, theirs->excludedSubtrees))

  AGREE(AuthorityKeyId, AUTHORITY_KEYID,
        agree(ours.keyIdentifier, theirs->keyid) && agree(ours.authorityCertIssuer, theirs->issuer) &&
            agree(ours.authorityCertSerialNumber, theirs->serial))
  AGREE(SubjectKeyId, ASN1_OCTET_STRING, agree(ours.keyIdentifier, theirs))
  AGREE(ExtKeyUsage, EXTENDED_KEY_USAGE, agreeAll<ASN1_OBJECT>(ours.purposes, theirs))
  AGREE(PrivateKeyUsagePeriod, PKEY_USAGE_PERIOD,
        agree(ours.notBefore, theirs->notBefore) && agree(ours.notAfter, theirs->notAfter))
  AGREE(PolicyQualifierInfo, POLICYQUALINFO, agree(ours.policyQualifierId, theirs->pqualid))
  AGREE(PolicyInformation, POLICYINFO,
        agree(ours.policyIdentifier, theirs->policyid) &&
            ours.policyQualifiers.has_value() == (theirs->qualifiers != nullptr) &&
            (!ours.policyQualifiers || agreeAll<POLICYQUALINFO>(*ours.policyQualifiers, theirs->qualifiers)))
  AGREE(CertificatePolicies, CERTIFICATEPOLICIES, agreeAll<POLICYINFO>(ours.policies, theirs))
  AGREE(BasicConstraints, BASIC_CONSTRAINTS,
        *ours.cA == (theirs->ca != 0) && agree(ours.pathLenConstraint, theirs->pathlen))
  AGREE(CrlNumber, ASN1_INTEGER, agree(ours.number, theirs))
  AGREE(DeltaCrlIndicator, ASN1_INTEGER, agree(ours.baseCrlNumber, theirs))
  AGREE(PolicyMapping, POLICY_MAPPING,
        agree(ours.issuerDomainPolicy, theirs->issuerDomainPolicy) &&
            agree(ours.subjectDomainPolicy, theirs->subjectDomainPolicy))
  AGREE(PolicyMappings, POLICY_MAPPINGS, agreeAll<POLICY_MAPPING>(ours.mappings, theirs))
  AGREE(PolicyConstraints, POLICY_CONSTRAINTS,
        agree(ours.requireExplicitPolicy, theirs->requireExplicitPolicy) &&
            agree(ours.inhibitPolicyMapping, theirs->inhibitPolicyMapping))
  AGREE(ReasonCode, ASN1_ENUMERATED, static_cast<long>(ours.reason) == ASN1_ENUMERATED_get(theirs))
  AGREE(HoldInstruction, ASN1_OBJECT, agree(ours.instruction, theirs))
  AGREE(InvalidityDate, ASN1_GENERALIZEDTIME, agree(ours.date, theirs))
};

// ---- Verdicts -------------------------------------------------------------------------------------------------------

struct Case {
  View octets;
  std::optional<Tlv> value;
  Failure ours;        // when we refuse
  std::string theirs;  // when they do
};

template <class Test>
bool any(const Tlv &tlv, const Test &test) {
  return test(tlv) || std::ranges::any_of(tlv.members, [&](const Tlv &each) { return any(each, test); });
}

struct Settled {
  const char *clause;
  bool (*applies)(const Case &);
};

bool says(const std::string &text, const char *part) { return text.find(part) != std::string::npos; }

bool isOneOf(uint32_t code, std::initializer_list<uint32_t> codes) { return std::ranges::count(codes, code) != 0; }

// X.690 8.6.4: each segment of a BIT STRING has an octet for unused bits; they take those behind the first for content.
bool hasBitSegments(const Case &c) {
  const auto isSegment = [](const Tlv &tlv) { return (tlv.tag[0] & ~0x20) == 0x03; };
  return c.value && any(*c.value, [&](const Tlv &tlv) {
           return !tlv.members.empty() && std::ranges::all_of(tlv.members, isSegment);
         });
}

#define WHEN(...) [](const Case &c) { return __VA_ARGS__; }

// What we refuse and they take.
constexpr Settled kWeRefuse[] = {
    {"numbers and arcs of the interface have 32 bits", WHEN(c.ours.code == AsnError_Range)},
    {"X.680 46: they take any octets for a time", WHEN(c.ours.code == AsnError_Time)},
    {"X.690 8.6.4, 8.7.3, 8.23: segments have the tag of their string; they take any",
     WHEN(c.ours.code == AsnError_Segment)},
    {"X.690 8.6.2.3: a BIT STRING without bits has no unused ones", WHEN(c.ours.code == AsnError_BitString)},
    {"X.411 8.5: to them an ORAddress is any SEQUENCE",
     WHEN(says(c.ours.text, "x400Address") || says(c.ours.text, "ORAddress"))},
    {"X.690 8.1.4: what is constructed holds encodings, in the values of a name too",
     WHEN(says(c.ours.text, "directoryName") && !isWellFormed({c.octets.begin(), c.octets.end()}))},
    {"X.690 8.1.5: the tag of end-of-contents stands for no value",
     WHEN(c.ours.code == AsnError_EndOfContents ||
          (c.ours.code == AsnError_Component &&
           (says(c.ours.text, " 0x0 is the tag of no") || says(c.ours.text, " 0x20 is the tag of no"))))},
    {"RFC 5280 5.2.5: a component [5] is of a later edition",
     WHEN(c.ours.code == AsnError_Component && says(c.ours.text, "0x85 is the tag of no"))},
    {"X.690 8.1.2.2: tags to 30 take one octet", WHEN(c.ours.code == AsnError_Tag)},
    {"RFC 5280 A.2: lists and sets have SIZE (1..MAX)",
     WHEN(isOneOf(c.ours.code,
                  {KetraError_GetPolicyMappingsEmpty, KetraError_GetExtKeyUsageEmpty, KetraError_GetGenSubtreesEmpty,
                   KetraError_GetDistributionPointsEmpty, KetraError_RelativeNameEmpty,
                   KetraError_GetAuthorityKeyIdIssuer, X509NameError_Empty}))},
    {"RFC 5280 A.2: these are INTEGER (0..MAX)",
     WHEN(isOneOf(c.ours.code,
                  {KetraError_GetBasicConstraintsPathLen, KetraError_GetCRLNumber, KetraError_GetDeltaCRLIndicator,
                   KetraError_GetRequireExplicitPolicy, KetraError_GetInhibitPolicyMapping}))},
    {"RFC 5280 5.3.1: CRLReason has some numbers", WHEN(c.ours.code == KetraError_GetReasonCode)},
    {"X.520 6.1: a DirectoryString has SIZE (1..MAX) characters",
     WHEN(isOneOf(c.ours.code, {X509DirStrError_Length, X509DirStrError_Characters}) &&
          says(c.ours.text, "EDIPartyName"))},
    {"X.690 8.9.1, 8.10.1, 8.12.1: lists and sets are constructed",
     WHEN(c.ours.code == AsnError_Component && c.value &&
          any(*c.value,
              [](const Tlv &tlv) {
                const bool isList = tlv.tag[0] >= 0x80 || tlv.tag[0] == 0x10 || tlv.tag[0] == 0x11;
                return isList && !tlv.isConstructed() && parse(tlv.content);
              }))},
};

// What they refuse and we take.
constexpr Settled kTheyRefuse[] = {
    {"X.690 8.7.3: segments may come in segments; they follow five levels, of encodings thirty",
     WHEN(says(c.theirs, "nested asn1 string") || says(c.theirs, "nested too deep"))},
    {"X.690 8.6.4: a BIT STRING in segments may have none",
     WHEN(says(c.theirs, "BIT_STRING:string too short") && c.value &&
          any(*c.value, [](const Tlv &tlv) { return tlv.isConstructed() && joined(tlv).empty(); }))},
    {"X.690 8.1.3.5: a long length may begin with zeros, and be nothing else",
     WHEN(says(c.theirs, "header too long") && c.value &&
          any(*c.value, [](const Tlv &tlv) { return tlv.length == Tlv::Length::notShortest; }))},
    {"X.501 9.2: the value of an attribute is an open type",
     WHEN(says(c.theirs, "Type=X509_NAME_ENTRY") ||
          (says(c.theirs, "ASN1_mbstring_ncopy") && says(c.theirs, "x509_name")))},
    {"RFC 5280 4.2.1.4: a qualifier is an open type", WHEN(says(c.theirs, "Type=POLICYQUALINFO"))},
    {"RFC 5280 4.2.1.6: the value of an otherName is an open type, and may be left out here",
     WHEN(says(c.theirs, "Type=OTHERNAME"))},
};

template <std::size_t size>
void settle(const Settled (&rows)[size], const Case &disagreement, const char *who) {
  const bool isSettled = std::ranges::any_of(rows, [&](const Settled &row) { return row.applies(disagreement); });
  require(isSettled, who, disagreement.ours.text + "\n" + disagreement.theirs);
}

// What OpenSSL says of its failure.
std::string errors() {
  std::string text;
  const auto add = [](const char *line, std::size_t length, void *to) {
    static_cast<std::string *>(to)->append(line, length);
    return 1;
  };
  ERR_print_errors_cb(add, &text);
  return text;
}

// How OpenSSL calls a type, and what its reader makes of it; it does not read subjectDirectoryAttributes.
template <class Ours, class Theirs, int nid>
struct Peer {
  using ours = Ours;
  using theirs = Theirs;
  static constexpr int kNid = nid;
};
// In the order of kExtensions.
using Peers = std::tuple<void, Peer<ketra::SubjectKeyId, ASN1_OCTET_STRING, NID_subject_key_identifier>,
                         Peer<ketra::KeyUsage, ASN1_BIT_STRING, NID_key_usage>,
                         Peer<ketra::PrivateKeyUsagePeriod, PKEY_USAGE_PERIOD, NID_private_key_usage_period>,
                         Peer<ketra::SubjectAltName, GENERAL_NAMES, NID_subject_alt_name>,
                         Peer<ketra::IssuerAltName, GENERAL_NAMES, NID_issuer_alt_name>,
                         Peer<ketra::BasicConstraints, BASIC_CONSTRAINTS, NID_basic_constraints>,
                         Peer<ketra::CrlNumber, ASN1_INTEGER, NID_crl_number>,
                         Peer<ketra::ReasonCode, ASN1_ENUMERATED, NID_crl_reason>,
                         Peer<ketra::HoldInstruction, ASN1_OBJECT, NID_hold_instruction_code>,
                         Peer<ketra::InvalidityDate, ASN1_GENERALIZEDTIME, NID_invalidity_date>,
                         Peer<ketra::DeltaCrlIndicator, ASN1_INTEGER, NID_delta_crl>,
                         Peer<ketra::IssuingDistributionPoint, ISSUING_DIST_POINT, NID_issuing_distribution_point>,
                         Peer<ketra::CertificateIssuer, GENERAL_NAMES, NID_certificate_issuer>,
                         Peer<ketra::NameConstraints, NAME_CONSTRAINTS, NID_name_constraints>,
                         Peer<ketra::CrlDistributionPoints, CRL_DIST_POINTS, NID_crl_distribution_points>,
                         Peer<ketra::CertificatePolicies, CERTIFICATEPOLICIES, NID_certificate_policies>,
                         Peer<ketra::PolicyMappings, POLICY_MAPPINGS, NID_policy_mappings>,
                         Peer<ketra::AuthorityKeyId, AUTHORITY_KEYID, NID_authority_key_identifier>,
                         Peer<ketra::PolicyConstraints, POLICY_CONSTRAINTS, NID_policy_constraints>,
                         Peer<ketra::ExtKeyUsage, EXTENDED_KEY_USAGE, NID_ext_key_usage>>;

struct Free {
  const ASN1_ITEM *item;
  void operator()(ASN1_VALUE *value) const { ASN1_item_free(value, item); }
};

template <std::size_t type>
void differ(View octets) {
  using P = std::tuple_element_t<type, Peers>;
  if constexpr (!std::is_void_v<P>) {
    const Object object;
    store(object, kExtensions[type], octets);
    const Failure refusal = kExtensions[type].read(object, false).get;
    const bool weTake = refusal.code == 0;

    ERR_clear_error();
    const ASN1_ITEM *item = ASN1_ITEM_ptr(X509V3_EXT_get_nid(P::kNid)->it);
    const uint8_t *end = octets.begin();
    const std::unique_ptr<ASN1_VALUE, Free> theirs(ASN1_item_d2i(nullptr, &end, static_cast<long>(octets.size()), item),
                                                   Free{item});
    const bool theyTake = theirs != nullptr && end == octets.end();

    const Case disagreement{octets, parseOne({octets.begin(), octets.end()}), refusal, errors()};
    if (weTake && theyTake) {
      const auto ours = ketra::read<typename P::ours>(octets);
      require(ours && (hasBitSegments(disagreement) ||
                       Content::agree(*ours, reinterpret_cast<const typename P::theirs *>(theirs.get()))),
              "both read the same content");
    } else if (weTake) {
      settle(kTheyRefuse, disagreement, "what we take, they take");
    } else if (theyTake) {
      settle(kWeRefuse, disagreement, "what we refuse, they refuse");
    }
  }
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    constexpr void (*kDiffer[])(fuzz::View) = {fuzz::differ<i>...};
    kDiffer[data[0] % sizeof...(i)]({data + 1, size - 1});
  }
  (std::make_index_sequence<std::tuple_size_v<fuzz::Peers>>());
  return 0;
}
