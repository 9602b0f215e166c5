// One stored value, as for typed_get, read by OpenSSL too: both take it, with the same content, or both refuse it, but
// for what the tables below settle.

#include <openssl/asn1t.h>
#include <openssl/err.h>
#include <openssl/objects.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <cctype>
#include <memory>

#include "read.hpp"
#include "tlv.hpp"

namespace fuzz {
namespace {

// ---- Contents -------------------------------------------------------------------------------------------------------

// Whether our value is what theirs is.
#define AGREE(Ours, Theirs, ...) \
  static bool agree(const ketra::Ours &ours, const Theirs *theirs) { return __VA_ARGS__; }
#define AGREE_NAME(Ours, ...) \
  static bool agree(const GENERAL_NAME *theirs, const ketra::Ours &ours) { return __VA_ARGS__; }

// A structure, for each to know all the others.
struct Content {
  static bool agree(const Octets &ours, const ASN1_STRING *theirs) {
    const auto size = static_cast<std::size_t>(ASN1_STRING_length(theirs));
    return std::ranges::equal(ours, View(ASN1_STRING_get0_data(theirs), size));
  }
  static bool agree(const std::string &ours, const ASN1_STRING *theirs) {
    return agree(Octets(ours.begin(), ours.end()), theirs);
  }

  static bool agree(const ketra::ObjectIdentifier &ours, const ASN1_OBJECT *theirs) {
    const auto size = static_cast<std::size_t>(OBJ_obj2txt(nullptr, 0, theirs, 1));
    std::string text(size + 1, '\0');
    OBJ_obj2txt(text.data(), static_cast<int>(text.size()), theirs, 1);
    text.pop_back();
    return ours.text() == text;
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
  static bool agree(const std::optional<int32_t> &ours, const ASN1_INTEGER *theirs) {
    return ours.has_value() == (theirs != nullptr) && (!ours || agree(ketra::Integer(*ours), theirs));
  }

  // The bits up to the last that the interface carries.
  template <class T>
  static bool agreeBits(const T &ours, const ASN1_BIT_STRING *theirs) {
    int i = 0;
    return std::ranges::all_of(
        T::bits(), [&](const auto &bit) { return ours.*bit.member == (ASN1_BIT_STRING_get_bit(theirs, i++) != 0); });
  }
  AGREE(KeyUsage, ASN1_BIT_STRING, agreeBits(ours, theirs))
  AGREE(Reasons, ASN1_BIT_STRING, agreeBits(ours, theirs))

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

  static bool agree(const ketra::Name &ours, X509_NAME *theirs) {
    const uint8_t *octets = nullptr;
    std::size_t size = 0;
    return X509_NAME_get0_der(theirs, &octets, &size) == 1 && ketra::Name::decode({octets, size}) == ours;
  }

  AGREE_NAME(OtherName, agree(ours.type, theirs->d.otherName->type_id) && ours.value.has_value())
  AGREE_NAME(Rfc822Name, agree(ours.text, theirs->d.ia5))
  AGREE_NAME(DnsName, agree(ours.text, theirs->d.ia5))
  AGREE_NAME(Uri, agree(ours.text, theirs->d.ia5))
  static bool agree(const GENERAL_NAME *, const ketra::X400Address &) { return true; }  // kept as octets on both sides
  AGREE_NAME(DirectoryName, agree(ours.name, theirs->d.dirn))
  static bool agree(const GENERAL_NAME *theirs, const ketra::EdiPartyName &ours) {
    const EDIPARTYNAME *name = theirs->d.ediPartyName;
    return agree(ours.partyName.octets, name->partyName) &&
           ours.nameAssigner.has_value() == (name->nameAssigner != nullptr) &&
           (!ours.nameAssigner || agree(ours.nameAssigner->octets, name->nameAssigner));
  }
  AGREE_NAME(IpAddress, agree(ours.octets, theirs->d.ip))
  AGREE_NAME(RegisteredId, agree(ours.id, theirs->d.rid))
  static bool agree(const ketra::GeneralName &ours, const GENERAL_NAME *theirs) {
    return static_cast<int>(ours.index()) == theirs->type &&  // GEN_OTHERNAME is 0
           std::visit([&](const auto &kind) { return agree(theirs, kind); }, ours);
  }
  static bool agree(const std::vector<ketra::GeneralName> &ours, const GENERAL_NAMES *theirs) {
    return agreeAll<GENERAL_NAME>(ours, theirs);
  }
  template <Names T>
  static bool agree(const T &ours, const GENERAL_NAMES *theirs) {
    return agree(ours.names, theirs);
  }

  static bool agree(const ketra::DistributionPointName &ours, const DIST_POINT_NAME *theirs) {
    if (const auto *full = std::get_if<ketra::FullName>(&ours)) {
      return theirs->type == 0 && agree(full->names, theirs->name.fullname);
    }
    const auto &attributes = std::get<ketra::RelativeName>(ours).attributes;
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
            ours.onlyContainsUserCerts.value_or(false) == (theirs->onlyuser > 0) &&
            ours.onlyContainsCACerts.value_or(false) == (theirs->onlyCA > 0) &&
            ours.indirectCRL.value_or(false) == (theirs->indirectCRL > 0))

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
  AGREE(PolicyQualifier, POLICYQUALINFO, agree(ours.id, theirs->pqualid))
  AGREE(PolicyInformation, POLICYINFO,
        agree(ours.policy, theirs->policyid) &&
            (theirs->qualifiers == nullptr ? ours.qualifiers.empty()
                                           : agreeAll<POLICYQUALINFO>(ours.qualifiers, theirs->qualifiers)))
  AGREE(CertificatePolicies, CERTIFICATEPOLICIES, agreeAll<POLICYINFO>(ours.policies, theirs))
  AGREE(BasicConstraints, BASIC_CONSTRAINTS,
        ours.cA.value_or(false) == (theirs->ca != 0) && agree(ours.pathLenConstraint, theirs->pathlen))
  AGREE(CrlNumber, ASN1_INTEGER, agree(ours.number, theirs))
  AGREE(DeltaCrlIndicator, ASN1_INTEGER, agree(ours.baseCrlNumber, theirs))
  AGREE(PolicyMapping, POLICY_MAPPING,
        agree(ours.issuerDomainPolicy, theirs->issuerDomainPolicy) &&
            agree(ours.subjectDomainPolicy, theirs->subjectDomainPolicy))
  AGREE(PolicyMappings, POLICY_MAPPINGS, agreeAll<POLICY_MAPPING>(ours.mappings, theirs))
  AGREE(PolicyConstraints, POLICY_CONSTRAINTS,
        agree(ours.requireExplicitPolicy, theirs->requireExplicitPolicy) &&
            agree(ours.inhibitPolicyMapping, theirs->inhibitPolicyMapping))
  AGREE(ReasonCode, ASN1_ENUMERATED, static_cast<long>(ours) == ASN1_ENUMERATED_get(theirs))
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
     WHEN(says(c.ours.text, "directoryName") && !isWellFormed(c.octets))},
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

// How OpenSSL calls the types, in the order of Types; it does not read subjectDirectoryAttributes.
// clang-format off
constexpr int kNids[kTypes] = {
    NID_authority_key_identifier, NID_subject_key_identifier, NID_key_usage, NID_ext_key_usage,
    NID_private_key_usage_period, NID_certificate_policies, NID_subject_alt_name, NID_issuer_alt_name,
    NID_basic_constraints, NID_crl_number, NID_policy_mappings, NID_undef, NID_name_constraints,
    NID_policy_constraints, NID_crl_reason, NID_hold_instruction_code, NID_invalidity_date,
    NID_crl_distribution_points, NID_issuing_distribution_point, NID_certificate_issuer, NID_delta_crl};
// clang-format on

// What its reader makes of each.
using Peers = std::tuple<AUTHORITY_KEYID, ASN1_OCTET_STRING, ASN1_BIT_STRING, EXTENDED_KEY_USAGE, PKEY_USAGE_PERIOD,
                         CERTIFICATEPOLICIES, GENERAL_NAMES, GENERAL_NAMES, BASIC_CONSTRAINTS, ASN1_INTEGER,
                         POLICY_MAPPINGS, void, NAME_CONSTRAINTS, POLICY_CONSTRAINTS, ASN1_ENUMERATED, ASN1_OBJECT,
                         ASN1_GENERALIZEDTIME, CRL_DIST_POINTS, ISSUING_DIST_POINT, GENERAL_NAMES, ASN1_INTEGER>;

struct Free {
  const ASN1_ITEM *item;
  void operator()(ASN1_VALUE *value) const { ASN1_item_free(value, item); }
};

template <class T, std::size_t type>
void differ(View octets) {
  using Peer = std::tuple_element_t<type, Peers>;
  if constexpr (!std::is_void_v<Peer>) {
    Extensions extensions;
    store<T>(extensions, octets);
    const Outcome<T> outcome = readOnce<T>(extensions);
    const T *ours = std::get_if<T>(&outcome);

    ERR_clear_error();
    const ASN1_ITEM *item = ASN1_ITEM_ptr(X509V3_EXT_get_nid(kNids[type])->it);
    const uint8_t *end = octets.begin();
    const std::unique_ptr<ASN1_VALUE, Free> theirs(ASN1_item_d2i(nullptr, &end, static_cast<long>(octets.size()), item),
                                                   Free{item});
    const bool theyTake = theirs != nullptr && end == octets.end();

    const Case disagreement{octets, parseOne(octets), ours == nullptr ? std::get<Failure>(outcome) : Failure{},
                            errors()};
    if (ours != nullptr && theyTake) {
      require(hasBitSegments(disagreement) || Content::agree(*ours, reinterpret_cast<const Peer *>(theirs.get())),
              "both read the same content");
    } else if (ours != nullptr) {
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
  fuzz::withType(data[0] % fuzz::kTypes, [&]<class T, std::size_t type>() {
    fuzz::differ<T, type>({data + 1, size - 1});
  });
  return 0;
}
