// The operations that the sweeps run, and what they run on.
#pragma once

#include <cstdlib>
#include <functional>
#include <optional>

#include "schema/schema.h"
#include "support/structures.h"

namespace ketra::test {

// Everything that an operation may need, made anew for each failure. `input` tells which of it.
struct Stage {
  explicit Stage(const std::string &given = "");

  const std::string input;
  Extensions extensions;  // with one of each type
  Pool pool;
  Structures samples{Structures::Content::Samples};
  Structures prepared{Structures::Content::Prepared};
  Attributes attributes;
  const std::string held;  // by `object`
  GenName object;
  GenName source;  // of a name to set; empty when the input is "empty"
  const Exact sample;
  std::optional<Work> work;  // of operations on a value, made when they are prepared
  AsnValue value = nullptr;

  // What gets fill, chain by chain: the words of each node, and of each of its objects whether it holds a name.
  using Node = std::vector<uint32_t>;
  std::vector<std::vector<Node>> nodes() const;
  bool holdsOldNameOrNone() { return object.handle == nullptr || object.der() == held || object.der() == "empty"; }
  uint32_t index() const { return static_cast<uint32_t>(std::strtoul(input.c_str(), nullptr, 10)); }  // else 0
  GenName &target() { return input.starts_with("first-") ? prepared.fullName.at(0) : object; }  // of a name to set

  // By the input: the names to set, the path of one, and a value.
  X509GenNameChain *chain() { return input == "two" ? samples.fullName.first() : samples.issuer.first(); }
  const char *path() const { return input == "iPAddress" ? "1" : input.c_str(); }
  std::string point() const { return input == "fullName" ? input : "IssuingDistributionPoint"; }

  // Values to set, and places for results.
  X509GenNameParam param{};  // the source's
  AsnEncodedData encoding;
  KetraBasicConstraints basicConstraints{{1, 1}, {3, 1}};
  AsnBit bits;
  AsnOct octets;
  X509DistributionPointName name;  // by the input
  X509DistributionPointNameOpt preparedName;
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
// Of the extension without "KetraObjectSget", or of another kind of input.
std::string sampleValue(const std::string &name);

}  // namespace ketra::test
