// The operations that the sweeps run, and what they run on.
#pragma once

#include <functional>

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {

// A decoded value.
class Decoded {
 public:
  Decoded(schema::Entry type, const std::string &hex)
      : encoding_(fromHex(hex)), work_(schema::record(type), encoding_.data()) {
    EXPECT_EQ(work_.decode(), 0) << hex;
  }
  AsnObject object() const { return work_.object; }
  AsnValue value() const { return work_.value; }
  AsnValue element(const char *path) const {
    AsnValue element = nullptr;
    EXPECT_EQ(AsnGetElement(object(), value(), path, &element, nullptr), 0);
    return element;
  }

 private:
  Exact encoding_;
  Work work_;
};

// Everything that an operation may need, made anew for each failure. `input` tells which of it.
struct Stage {
  explicit Stage(const std::string &name);

  const std::string input;
  Extensions extensions;
  Pool pool;
  Structures samples{Structures::Content::Samples};
  Structures prepared{Structures::Content::Prepared};
  Chains sampleChains{Structures::Content::Samples};
  Chains preparedChains{Structures::Content::Prepared};
  Attributes attributes;
  const std::string held;  // by the next two
  GenName source;          // but not when the input is "empty"
  GenName object;
  Work names{schema::record(schema::Entry::GeneralNames)};  // to be built
  Work issuing{schema::record(schema::Entry::IssuingDistributionPoint)};
  Work constraints{schema::record(schema::Entry::NameConstraints)};
  Decoded two{schema::Entry::GeneralNames, "30 09 82 01 61 87 04 C0 00 02 01"};
  Decoded one{schema::Entry::GeneralNames, "30 06 87 04 C0 00 02 01"};
  Decoded subtrees{schema::Entry::NameConstraints, Structures::constraintsDer(true, false)};
  Decoded fullName{schema::Entry::IssuingDistributionPoint, std::string("30 0D ") + Structures::kFullName};
  Decoded relativeName{schema::Entry::IssuingDistributionPoint, Structures::issuingDer()};
  const Exact sample;  // of the input's kind of name

  // By the input.
  const Decoded &list() const { return input == "two" ? two : one; }
  X509GenNameChain *chain() { return input == "two" ? samples.fullName.first() : samples.issuer.first(); }
  const Decoded &point() const { return input == "fullName" ? fullName : relativeName; }
  X509DistributionPointName sampleName;
  X509DistributionPointNameOpt preparedName;
  // What gets fill, chain by chain: the words of each node, and of each of its objects whether it holds a name.
  using Node = std::vector<uint32_t>;
  std::vector<std::vector<Node>> nodes() const;
  bool holdsOldNameOrNone() { return object.handle == nullptr || object.der() == held || object.der() == "empty"; }
  GenName &target() { return input.starts_with("first-") ? prepared.fullName.at(0) : object; }  // of a name to set

  // Values to set, and places for results.
  X509GenNameParam param{};  // the source's
  AsnEncodedData encoding;
  KetraBasicConstraints basicConstraints{{1, 1}, {3, 1}};
  AsnBit bits;
  AsnOct octets;
  X509GenNames sampleNames;
  X509GenNames preparedNames;
  KetraNameConstraints sampleConstraints;
  KetraNameConstraints preparedConstraints;
  X509GenSubtreesOpt sampleSubtrees;
  X509GenSubtreesOpt preparedSubtrees;
  KetraPolicyConstraints policyConstraints{{3, 1}, {0, 1}};
  KetraPrivateKeyUsagePeriod period{{{0, 0}, 1}, {{0, 0}, 1}};
  Objid objid = X509Objid_KeyUsage;
  Gtime time{0, 0};
  int32_t integer = 1;
  uint32_t number = 0;
};

using Step = std::function<int32_t(Stage &, AsnErrorBlock *)>;

struct Operation {
  Step run;
  const Objid *objid = nullptr;  // of the extension that it reads or writes
  std::string opened = "";       // as that type
  Step prepare = [](Stage &, AsnErrorBlock *) { return 0; };
  Step withoutObject = nullptr;  // the same for a null Extensions object
};

// By the names of the operations.
const std::map<std::string, Operation> &operations();

}  // namespace ketra::test
