/// @file
/// Admission: to which professions the subject is admitted, in German certificates (Common PKI).
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// NamingAuthority ::= SEQUENCE {                                 Common PKI, part 1, table 29a
//     namingAuthorityId    OBJECT IDENTIFIER OPTIONAL,
//     namingAuthorityUrl   IA5String OPTIONAL,
//     namingAuthorityText  DirectoryString (SIZE (1..128)) OPTIONAL }
template <class Form>
struct NamingAuthorityOf {
  std::optional<ObjectIdentifierOf<Form>> namingAuthorityId{};
  std::optional<Ia5StringOf<Form>> namingAuthorityUrl{};
  std::optional<DirectoryStringOf<Form>> namingAuthorityText{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("namingAuthorityId", self.namingAuthorityId) && visit("namingAuthorityUrl", self.namingAuthorityUrl) &&
           visit("namingAuthorityText", self.namingAuthorityText);
  }
};
using NamingAuthority = NamingAuthorityOf<Owned>;       ///< owns what it holds
using NamingAuthorityView = NamingAuthorityOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<NamingAuthorityView>());

// ProfessionInfo ::= SEQUENCE {
//     namingAuthority     [0] EXPLICIT NamingAuthority OPTIONAL,
//     professionItems     SEQUENCE OF DirectoryString (SIZE (1..128)),
//     professionOIDs      SEQUENCE OF OBJECT IDENTIFIER OPTIONAL,
//     registrationNumber  PrintableString (SIZE (1..128)) OPTIONAL,
//     addProfessionInfo   OCTET STRING OPTIONAL }
template <class Form>
struct ProfessionInfoOf {
  std::optional<NamingAuthorityOf<Form>> namingAuthority{};
  ListOf<Form, DirectoryStringOf<Form>> professionItems{};
  std::optional<ListOf<Form, ObjectIdentifierOf<Form>>> professionOIDs{};
  std::optional<PrintableTextOf<Form>> registrationNumber{};
  std::optional<OctetStringOf<Form>> addProfessionInfo{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("namingAuthority", self.namingAuthority, explicitly(0)) &&
           visit("professionItems", self.professionItems) && visit("professionOIDs", self.professionOIDs) &&
           visit("registrationNumber", self.registrationNumber) && visit("addProfessionInfo", self.addProfessionInfo);
  }
};
using ProfessionInfo = ProfessionInfoOf<Owned>;       ///< owns what it holds
using ProfessionInfoView = ProfessionInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<ProfessionInfoView>());

// Admissions ::= SEQUENCE {
//     admissionAuthority  [0] EXPLICIT GeneralName OPTIONAL,
//     namingAuthority     [1] EXPLICIT NamingAuthority OPTIONAL,
//     professionInfos     SEQUENCE OF ProfessionInfo }
template <class Form>
struct AdmissionsOf {
  std::optional<GeneralNameOf<Form>> admissionAuthority{};
  std::optional<NamingAuthorityOf<Form>> namingAuthority{};
  ListOf<Form, ProfessionInfoOf<Form>> professionInfos{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("admissionAuthority", self.admissionAuthority, explicitly(0)) &&
           visit("namingAuthority", self.namingAuthority, explicitly(1)) &&
           visit("professionInfos", self.professionInfos);
  }
};
using Admissions = AdmissionsOf<Owned>;       ///< owns what it holds
using AdmissionsView = AdmissionsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AdmissionsView>());

// AdmissionSyntax ::= SEQUENCE {
//     admissionAuthority    GeneralName OPTIONAL,
//     contentsOfAdmissions  SEQUENCE OF Admissions }
template <class Form>
struct AdmissionOf {
  static constexpr std::string_view name = "Admission";
  static constexpr OidLiteral oid = "1.3.36.8.3.3"_oid;

  std::optional<GeneralNameOf<Form>> admissionAuthority{};
  ListOf<Form, AdmissionsOf<Form>> contentsOfAdmissions{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("admissionAuthority", self.admissionAuthority) &&
           visit("contentsOfAdmissions", self.contentsOfAdmissions);
  }
};
using Admission = AdmissionOf<Owned>;       ///< owns what it holds
using AdmissionView = AdmissionOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AdmissionView>());

}  // namespace ketra
