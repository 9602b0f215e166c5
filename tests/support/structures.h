// What callers pass to sets, or prepare for gets: samples with values in every member, or the same shapes without.
#pragma once

#include "support/names.h"

namespace ketra::test {

// The C structures, all of them plain.
struct Nodes {
  X509AttributeTypeAndValue attributes[2];
  KetraDistributionPoint points[2];
  KetraIssuingDistributionPoint issuing;
  X509GenSubtree subtrees[2];
  KetraPolicyQualifierInfo qualifiers[2];
  KetraPolicyInformation policies[2];
  KetraPolicyInformation *head;
  KetraPolicyMapping mappings[2];
  KetraKeyPurposeId purposes[2];
  KetraAuthorityKeyId keyId;
  X509GenNames names;
  X509GenSubtreesOpt subtreesOpt;
  KetraNameConstraints constraints;
};

// Two distribution points (a fullName of two names, reasons and a cRLIssuer; a relative name of two attributes), an
// IssuingDistributionPoint with a relative name and all its flags, two subtrees (the first with both distances), two
// policies (the first with two qualifiers, of which the second has no value), two mappings, two key purposes, an
// AuthorityKeyId with all its components. They are encoded as in tests/data/sample_values.tsv.
class Structures : public Nodes {
 public:
  enum class Content { Samples, Prepared };  // in Prepared is what nobody has filled yet
  explicit Structures(Content content);
  Structures(const Structures &) = delete;
  Structures &operator=(const Structures &) = delete;

  X509DistributionPointName full() { return points[0].distributionPoint.value; }
  X509DistributionPointName relative() { return points[1].distributionPoint.value; }

  Names fullName;
  Names issuer;
  Names bases;

 private:
  void link();
  void fill();
};

// "1.2.3.4"; "" for none.
std::string textOf(const Objid &objid);

}  // namespace ketra::test
