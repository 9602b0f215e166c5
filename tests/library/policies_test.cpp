// CertPolicies, PolicyMappings and PolicyConstraints.

#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;

TEST(CertPolicies, OneByOne) {
  Chains samples(kSamples);
  const Extensions extensions;
  ASSERT_EQ(refusal(KetraObjectSsetCertPolicies, extensions, 1, &samples.head), "");
  EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), golden("certificatePolicies/two"));
  for (const auto &[index, qualifiers] : {std::pair{0u, 2u}, {1u, 0u}, {2u, 0u}, {0xFFFFFFFFu, 0u}}) {
    uint32_t count = 9;
    ASSERT_EQ(refusal(KetraObjectSgetCertPoliciesCalQualifier, extensions, index, &count), "");
    EXPECT_EQ(count, qualifiers);
  }

  Chains read(kPrepared);
  KetraPolicyInformation &policy = read.policies[0];
  KetraPolicyQualifierInfo third{nullptr, {nullptr, 9}, {{nullptr, 9}, 9}};
  read.qualifiers[1].next = &third;
  const auto get = [&](uint32_t index) { return refusal(KetraObjectSgetCertPolicies, extensions, index, &policy); };
  ASSERT_EQ(get(0), "");
  EXPECT_EQ(policy.next, &read.policies[1]);
  EXPECT_EQ(textOf(read.qualifiers[0].policyQualifierId) + " " + textOf(read.qualifiers[1].policyQualifierId),
            "1.2.3.3 1.2.3.4");
  EXPECT_EQ(read.qualifiers[1].qualifier.option, 0);
  EXPECT_EQ(read.qualifiers[1].qualifier.value.octets, nullptr);
  EXPECT_EQ(third.qualifier.option, 9);
  const KetraExtension *const stored = extensions.find(X509Objid_CertPolicies);
  const uint8_t *qualifier = read.qualifiers[0].qualifier.value.octets;
  EXPECT_TRUE(qualifier > stored->value.octets && qualifier < stored->value.octets + stored->value.length);

  ASSERT_EQ(get(1), "");
  EXPECT_EQ(textOf(policy.policyIdentifier), "1.2.3.2");
  EXPECT_EQ(policy.policyQualifiers.option, 0);
  EXPECT_EQ(policy.policyQualifiers.policyQualifiers, read.qualifiers) << "left as the caller set it";
  EXPECT_EQ(get(2).substr(0, 50), "0146A383 KetraObjectSgetCertPolicies: certPolicies");
  read.qualifiers[0].next = nullptr;
  EXPECT_EQ(get(0), "0146A399 KetraObjectSgetCertPolicies: policyQualifiers [2]");
}

TEST(CertPolicies, Refused) {
  struct Row {
    void (*change)(Chains &);
    uint32_t code;
  };
  const Row rows[] = {
      {[](Chains &c) { c.head = nullptr; }, 0x01463083},
      {[](Chains &c) { c.policies[1].policyQualifiers.option = 2; }, 0x01463054},
      {[](Chains &c) {
         c.policies[1].policyQualifiers = {nullptr, 1};
       },
       0x01463084},
      {[](Chains &c) { c.policies[1].policyIdentifier.count = 1; }, AsnCheckError_Objid},
      {[](Chains &c) { c.qualifiers[0].qualifier.value.length = 2; }, AsnError_Truncated},
  };
  const Extensions extensions;
  for (const Row &row : rows) {
    Chains samples(kSamples);
    row.change(samples);
    Err err;
    EXPECT_EQ(KetraObjectSsetCertPolicies(extensions, 1, &samples.head, err), -1);
    EXPECT_EQ(err.code(), row.code) << err.text();
    EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), "absent");
    if (row.code == 0x01463054) {
      EXPECT_EQ(err.trace(), std::vector<std::string>{"KetraObjectSsetCertPolicies: option"});
      EXPECT_TRUE(err.blames(samples.policies[1].policyQualifiers));
    }
  }
  Chains ignored(kSamples);
  ignored.policies[0].policyQualifiers.option = 0;
  ignored.qualifiers[0].policyQualifierId.count = 0;
  EXPECT_EQ(refusal(KetraObjectSsetCertPolicies, extensions, 1, &ignored.head), "");
  EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), "30 0E 30 05 06 03 2A 03 01 30 05 06 03 2A 03 02");
}

TEST(PolicyMappings, ChainsOfAnotherLength) {
  Chains samples(kSamples);
  Chains read(kPrepared);
  Extensions extensions;
  const auto set = [&](const KetraPolicyMapping *first) {
    return refusal(KetraObjectSsetPolicyMappings, extensions, first);
  };
  const auto get = [&] { return refusal(KetraObjectSgetPolicyMappings, extensions, read.mappings); };
  ASSERT_EQ(set(samples.mappings), "");
  EXPECT_EQ(extensions.stored(X509Objid_PolicyMappings), golden("policyMappings/two"));
  KetraPolicyMapping third{nullptr, {nullptr, 9}, {nullptr, 9}};
  read.mappings[1].next = &third;
  ASSERT_EQ(get(), "");
  EXPECT_EQ(textOf(read.mappings[1].issuerDomainPolicy) + " " + textOf(read.mappings[1].subjectDomainPolicy),
            "1.2.3.3 1.2.3.4");
  EXPECT_EQ(third.issuerDomainPolicy.count, 9u);
  read.mappings[0].next = nullptr;
  EXPECT_EQ(get(), "0146C999 KetraObjectSgetPolicyMappings: Chain of PolicyMappings [2]");

  uint32_t count = 7;
  extensions.store(X509Objid_PolicyMappings, fromHex("30 00"));
  EXPECT_EQ(KetraObjectSgetPolicyMappingsCalPolicyMapping(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(get(), "0146C985 KetraObjectSgetPolicyMappings: Count of SequenceOf = 0");
  EXPECT_EQ(set(nullptr).substr(0, 8), "01466085");
  samples.mappings[1].subjectDomainPolicy.count = 0;
  EXPECT_EQ(codeOf(KetraObjectSsetPolicyMappings, extensions, samples.mappings), uint32_t{AsnCheckError_Objid});
}

TEST(PolicyConstraints, NegativeNumbers) {
  Extensions extensions;
  const KetraPolicyConstraints absent{{-1, 0}, {-1, 0}};
  EXPECT_EQ(refusal(KetraObjectSsetPolicyConstraints, extensions, 1, &absent), "");
  EXPECT_EQ(extensions.stored(X509Objid_PolicyConstraints), "30 00");
  const std::pair<KetraPolicyConstraints, const char *> rows[] = {
      {{{-1, 1}, {0, 2}}, "01466364 KetraObjectSsetPolicyConstraints: requireExplicitPolicy.value [-1]"},
      {{{0, 1}, {-2, 1}}, "01466365 KetraObjectSsetPolicyConstraints: inhibitPolicyMapping.value [-2]"},
  };
  for (const auto &[value, expected] : rows) {
    EXPECT_EQ(refusal(KetraObjectSsetPolicyConstraints, extensions, 1, &value), expected);
  }
  extensions.store(X509Objid_PolicyConstraints, fromHex("30 06 80 01 02 81 01 FF"));
  KetraPolicyConstraints read{};
  Err err;
  EXPECT_EQ(KetraObjectSgetPolicyConstraints(extensions, &read, err), -1);
  EXPECT_EQ(err.innermost(), "0146CF65 KetraObjectSgetPolicyConstraints: inhibitPolicyMapping [-1]");
  EXPECT_EQ(read.requireExplicitPolicy.value, 2) << "written before";
  EXPECT_TRUE(err.blames(read.inhibitPolicyMapping.value));
}

}  // namespace
}  // namespace ketra::test
