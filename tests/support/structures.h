// Caller structures of distribution points and subtrees: samples to set, or the same shapes prepared to be read into.
#pragma once

#include "support/names.h"

namespace ketra::test {

// Two distribution points (a fullName of two names, reasons and a cRLIssuer; a relative name of two attributes), an
// IssuingDistributionPoint with a relative name and all its flags, two subtrees (the first with both distances).
class Structures {
 public:
  enum class Content { Samples, Prepared };
  explicit Structures(Content content);
  Structures(const Structures &) = delete;
  Structures &operator=(const Structures &) = delete;

  Names fullName;
  Names issuer;
  Names bases;
  X509AttributeTypeAndValue attributes[2];
  KetraDistributionPoint points[2];
  KetraIssuingDistributionPoint issuing;
  X509GenSubtree subtrees[2];

  X509DistributionPointName full() { return points[0].distributionPoint.value; }
  X509DistributionPointName relative() { return points[1].distributionPoint.value; }

  // The samples as they are encoded.
  static constexpr char kFullName[] = "A0 0B A0 09 82 01 61 87 04 C0 00 02 01";
  static constexpr char kRelativeName[] = "A0 16 A1 14 30 08 06 03 55 04 03 13 01 41 30 08 06 03 55 04 0A 13 01 42";
  static std::string pointsDer();
  static std::string issuingDer();
  static std::string constraintsDer(bool permitted, bool excluded);
};

// Two policies (the first with two qualifiers, of which the second has no value), two mappings, two key purposes, an
// AuthorityKeyId with all its components.
class Chains {
 public:
  explicit Chains(Structures::Content content);
  Chains(const Chains &) = delete;
  Chains &operator=(const Chains &) = delete;

  Names issuer;
  KetraPolicyQualifierInfo qualifiers[2];
  KetraPolicyInformation policies[2];
  KetraPolicyInformation *head = policies;
  KetraPolicyMapping mappings[2];
  KetraKeyPurposeId purposes[2];
  KetraAuthorityKeyId keyId;

  static constexpr char kPolicies[] =
      "30 21 30 18 06 03 2A 03 01 30 11 30 08 06 03 2A 03 03 13 01 41 30 05 06 03 2A 03 04 30 05 06 03 2A 03 02";
  static constexpr char kMappings[] = "30 18 30 0A 06 03 2A 03 01 06 03 2A 03 02 30 0A 06 03 2A 03 03 06 03 2A 03 04";
  static constexpr char kPurposes[] = "30 0A 06 03 2A 03 01 06 03 2A 03 02";
  static constexpr char kKeyId[] = "30 10 80 02 AA BB A1 06 87 04 C0 00 02 01 82 02 01 02";
};

// One attribute.
inline constexpr char kAttributes[] = "30 0C 30 0A 06 03 2A 03 01 31 03 13 01 41";

// "1.2.3.4"; "" for none.
std::string textOf(const Objid &objid);

}  // namespace ketra::test
