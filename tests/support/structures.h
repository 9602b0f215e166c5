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

}  // namespace ketra::test
