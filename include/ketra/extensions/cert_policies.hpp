/// @file
/// CertificatePolicies: the policies under which a certificate was issued.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// NoticeReference ::= SEQUENCE {                                 RFC 5280 4.2.1.4
//     organization   DisplayText,
//     noticeNumbers  SEQUENCE OF INTEGER }
template <class Form>
struct NoticeReferenceOf {
  TextOf<Form> organization{};
  ListOf<Form, IntegerOf<Form>> noticeNumbers{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("organization", self.organization) && visit("noticeNumbers", self.noticeNumbers);
  }
};
using NoticeReference = NoticeReferenceOf<Owned>;       ///< owns what it holds
using NoticeReferenceView = NoticeReferenceOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<NoticeReferenceView>());

// UserNotice ::= SEQUENCE {                                      RFC 5280 4.2.1.4
//     noticeRef     NoticeReference OPTIONAL,
//     explicitText  DisplayText OPTIONAL }
template <class Form>
struct UserNoticeOf {
  std::optional<NoticeReferenceOf<Form>> noticeRef{};
  std::optional<TextOf<Form>> explicitText{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("noticeRef", self.noticeRef) && visit("explicitText", self.explicitText);
  }
};
using UserNotice = UserNoticeOf<Owned>;       ///< owns what it holds
using UserNoticeView = UserNoticeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<UserNoticeView>());

// PolicyQualifierInfo ::= SEQUENCE {                             RFC 5280 4.2.1.4
//     policyQualifierId  OBJECT IDENTIFIER,
//     qualifier          ANY DEFINED BY policyQualifierId }
//
// Qualifiers without a value are met, and can be read.
template <class Form>
struct PolicyQualifierInfoOf {
  ObjectIdentifierOf<Form> policyQualifierId{};
  std::optional<AnyOf<Form>> qualifier{};  ///< as<Text>() for a CPS pointer, as<UserNotice>() for a notice

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("policyQualifierId", self.policyQualifierId) && visit("qualifier", self.qualifier);
  }
};
using PolicyQualifierInfo = PolicyQualifierInfoOf<Owned>;       ///< owns what it holds
using PolicyQualifierInfoView = PolicyQualifierInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PolicyQualifierInfoView>());

// PolicyInformation ::= SEQUENCE {                               RFC 5280 4.2.1.4
//     policyIdentifier  CertPolicyId,
//     policyQualifiers  SEQUENCE SIZE (1..MAX) OF PolicyQualifierInfo OPTIONAL }
template <class Form>
struct PolicyInformationOf {
  ObjectIdentifierOf<Form> policyIdentifier{};
  std::optional<ListOf<Form, PolicyQualifierInfoOf<Form>>> policyQualifiers{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("policyIdentifier", self.policyIdentifier) &&
           visit("policyQualifiers", self.policyQualifiers, nonEmptySet);
  }
};
using PolicyInformation = PolicyInformationOf<Owned>;       ///< owns what it holds
using PolicyInformationView = PolicyInformationOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PolicyInformationView>());

// CertificatePolicies ::= SEQUENCE SIZE (1..MAX) OF PolicyInformation           RFC 5280 4.2.1.4
template <class Form>
struct CertificatePoliciesOf {
  static constexpr std::string_view name = "CertificatePolicies";
  static constexpr OidLiteral oid = "2.5.29.32"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, PolicyInformationOf<Form>> policies{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("policies", self.policies, nonEmptySet);
  }
};
using CertificatePolicies = CertificatePoliciesOf<Owned>;       ///< owns what it holds
using CertificatePoliciesView = CertificatePoliciesOf<Viewed>;  ///< points to what it was read from

/// Any policy (RFC 5280 4.2.1.4).
inline constexpr OidLiteral anyPolicy = "2.5.29.32.0"_oid;
/// The two kinds of qualifiers (RFC 5280 4.2.1.4).
namespace qualifier {
/// @{
inline constexpr OidLiteral cps = "1.3.6.1.5.5.7.2.1"_oid;
inline constexpr OidLiteral userNotice = "1.3.6.1.5.5.7.2.2"_oid;
/// @}
}  // namespace qualifier

}  // namespace ketra
