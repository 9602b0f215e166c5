// CertPolicies, PolicyMappings and PolicyConstraints.

#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;

TEST(CertPolicies, SetCountGet) {
  Chains samples(kSamples);
  const Extensions extensions;
  Err err;
  ASSERT_EQ(KetraObjectSsetCertPolicies(extensions, 1, &samples.head, err), 0) << err.text();
  EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), Chains::kPolicies);
  EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), golden("certificatePolicies/two"));
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectSgetCertPoliciesCalInformation(extensions, &count, err), 0);
  EXPECT_EQ(count, 2u);
  for (const auto &[index, qualifiers] : {std::pair{0u, 2u}, {1u, 0u}, {2u, 0u}, {0xFFFFFFFFu, 0u}}) {
    count = 9;
    ASSERT_EQ(KetraObjectSgetCertPoliciesCalQualifier(extensions, index, &count, err), 0);
    EXPECT_EQ(count, qualifiers);
  }

  Chains read(kPrepared);
  KetraPolicyInformation &policy = read.policies[0];
  KetraPolicyQualifierInfo third{nullptr, {nullptr, 9}, {{nullptr, 9}, 9}};
  read.qualifiers[1].next = &third;
  ASSERT_EQ(KetraObjectSgetCertPolicies(extensions, 0, &policy, err), 0) << err.text();
  EXPECT_EQ(policy.next, &read.policies[1]);
  EXPECT_EQ(textOf(policy.policyIdentifier), "1.2.3.1");
  EXPECT_EQ(policy.policyQualifiers.option, 1);
  EXPECT_EQ(textOf(read.qualifiers[0].policyQualifierId), "1.2.3.3");
  EXPECT_EQ(toHex(read.qualifiers[0].qualifier.value), "13 01 41");
  EXPECT_EQ(textOf(read.qualifiers[1].policyQualifierId), "1.2.3.4");
  EXPECT_EQ(read.qualifiers[1].qualifier.option, 0);
  EXPECT_EQ(read.qualifiers[1].qualifier.value.octets, nullptr);
  EXPECT_EQ(third.qualifier.option, 9);
  const KetraExtension *stored = nullptr;
  ASSERT_EQ(KetraObjectSearchExtpByObjid(extensions, &X509Objid_CertPolicies, &stored, nullptr), 0);
  const uint8_t *qualifier = read.qualifiers[0].qualifier.value.octets;
  EXPECT_TRUE(qualifier > stored->value.octets && qualifier < stored->value.octets + stored->value.length);

  ASSERT_EQ(KetraObjectSgetCertPolicies(extensions, 1, &policy, err), 0);
  EXPECT_EQ(textOf(policy.policyIdentifier), "1.2.3.2");
  EXPECT_EQ(policy.policyQualifiers.option, 0);
  EXPECT_EQ(policy.policyQualifiers.policyQualifiers, read.qualifiers) << "left as the caller set it";
  Err beyond;
  EXPECT_EQ(KetraObjectSgetCertPolicies(extensions, 2, &policy, beyond), -1);
  EXPECT_EQ(beyond.code(), 0x0146A383u);
  EXPECT_EQ(beyond.trace(), std::vector<std::string>{"KetraObjectSgetCertPolicies: certPolicies"});

  read.qualifiers[0].next = nullptr;
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetCertPolicies(extensions, 0, &policy, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x0146A399u);
  EXPECT_EQ(tooShort.trace(), std::vector<std::string>{"KetraObjectSgetCertPolicies: policyQualifiers"});
  EXPECT_EQ(tooShort.block.entries[0].valueLength, 4u);
  EXPECT_EQ(tooShort.block.entries[0].valueOctets[0], 2u);
}

TEST(CertPolicies, Refused) {
  struct Row {
    const char *what;
    void (*change)(Chains &);
    uint32_t code;
    const char *message;
  };
  const Row rows[] = {
      {"no policy", [](Chains &c) { c.head = nullptr; }, 0x01463083, "Count = 0"},
      {"flag", [](Chains &c) { c.policies[1].policyQualifiers.option = 2; }, 0x01463054, "option"},
      {"no qualifier",
       [](Chains &c) {
         c.policies[1].policyQualifiers = {nullptr, 1};
       },
       0x01463084, "Count = 0"},
      {"identifier", [](Chains &c) { c.policies[1].policyIdentifier.count = 1; }, AsnCheckError_Objid,
       "Call AsnCheckObjidBER"},
      {"qualifier", [](Chains &c) { c.qualifiers[0].qualifier.value.length = 2; }, AsnError_Truncated,
       "Call AsnCheckAnyOptBER"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.what);
    Chains samples(kSamples);
    row.change(samples);
    const Extensions extensions;
    Err err;
    EXPECT_EQ(KetraObjectSsetCertPolicies(extensions, 1, &samples.head, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace().back(), std::string("KetraObjectSsetCertPolicies: ") + row.message);
    EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), "absent");
    if (row.code == 0x01463054) {
      EXPECT_EQ(err.block.entries[0].value, &samples.policies[1].policyQualifiers);
      EXPECT_EQ(err.block.entries[0].valueLength, sizeof samples.policies[1].policyQualifiers);
    }
  }
  Chains ignored(kSamples);
  ignored.policies[0].policyQualifiers.option = 0;
  ignored.qualifiers[0].policyQualifierId.count = 0;
  const Extensions extensions;
  EXPECT_EQ(KetraObjectSsetCertPolicies(extensions, 1, &ignored.head, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_CertPolicies), "30 0E 30 05 06 03 2A 03 01 30 05 06 03 2A 03 02");
}

TEST(PolicyMappings, SetCountGet) {
  Chains samples(kSamples);
  Extensions extensions;
  Err err;
  ASSERT_EQ(KetraObjectSsetPolicyMappings(extensions, samples.mappings, err), 0) << err.text();
  EXPECT_EQ(extensions.stored(X509Objid_PolicyMappings), golden("policyMappings/two"));
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectSgetPolicyMappingsCalPolicyMapping(extensions, &count, err), 0);
  EXPECT_EQ(count, 2u);
  Chains read(kPrepared);
  KetraPolicyMapping third{nullptr, {nullptr, 9}, {nullptr, 9}};
  read.mappings[1].next = &third;
  ASSERT_EQ(KetraObjectSgetPolicyMappings(extensions, read.mappings, err), 0) << err.text();
  EXPECT_EQ(textOf(read.mappings[0].issuerDomainPolicy) + " " + textOf(read.mappings[0].subjectDomainPolicy),
            "1.2.3.1 1.2.3.2");
  EXPECT_EQ(textOf(read.mappings[1].issuerDomainPolicy) + " " + textOf(read.mappings[1].subjectDomainPolicy),
            "1.2.3.3 1.2.3.4");
  EXPECT_EQ(third.issuerDomainPolicy.count, 9u);
  read.mappings[0].next = nullptr;
  Err tooShort;
  EXPECT_EQ(KetraObjectSgetPolicyMappings(extensions, read.mappings, tooShort), -1);
  EXPECT_EQ(tooShort.code(), 0x0146C999u);
  EXPECT_EQ(tooShort.trace(), std::vector<std::string>{"KetraObjectSgetPolicyMappings: Chain of PolicyMappings"});
  EXPECT_EQ(tooShort.block.entries[0].valueOctets[0], 2u);

  extensions.store(X509Objid_PolicyMappings, fromHex("30 00"));
  EXPECT_EQ(KetraObjectSgetPolicyMappingsCalPolicyMapping(extensions, &count, err), 0);
  EXPECT_EQ(count, 0u);
  Err none;
  EXPECT_EQ(KetraObjectSgetPolicyMappings(extensions, read.mappings, none), -1);
  EXPECT_EQ(none.code(), 0x0146C985u);
  EXPECT_EQ(none.trace(), std::vector<std::string>{"KetraObjectSgetPolicyMappings: Count of SequenceOf = 0"});
  Err empty;
  EXPECT_EQ(KetraObjectSsetPolicyMappings(extensions, nullptr, empty), -1);
  EXPECT_EQ(empty.code(), 0x01466085u);
  samples.mappings[1].subjectDomainPolicy.count = 0;
  Err bad;
  EXPECT_EQ(KetraObjectSsetPolicyMappings(extensions, samples.mappings, bad), -1);
  EXPECT_EQ(bad.trace().back(), "KetraObjectSsetPolicyMappings: Call AsnCheckObjidBER(subjectDomainPolicy)");
}

TEST(PolicyConstraints, SetGet) {
  struct Row {
    KetraPolicyConstraints value;
    const char *hex;
  };
  for (const Row &row : {Row{{{3, 1}, {0, 1}}, "30 06 80 01 03 81 01 00"}, Row{{{-1, 0}, {-1, 0}}, "30 00"},
                         Row{{{0, 0}, {0x7FFFFFFF, 1}}, "30 06 81 04 7F FF FF FF"}}) {
    const Extensions extensions;
    KetraPolicyConstraints read{{9, 9}, {9, 9}};
    ASSERT_EQ(KetraObjectSsetPolicyConstraints(extensions, 1, &row.value, nullptr), 0);
    EXPECT_EQ(extensions.stored(X509Objid_PolicyConstraints), row.hex);
    ASSERT_EQ(KetraObjectSgetPolicyConstraints(extensions, &read, nullptr), 0);
    EXPECT_EQ(read.requireExplicitPolicy.option, row.value.requireExplicitPolicy.option);
    EXPECT_EQ(read.inhibitPolicyMapping.option, row.value.inhibitPolicyMapping.option);
    if (read.inhibitPolicyMapping.option == 1) {
      EXPECT_EQ(read.inhibitPolicyMapping.value, row.value.inhibitPolicyMapping.value);
    }
  }
  Extensions extensions;
  struct Bad {
    KetraPolicyConstraints value;
    uint32_t code;
    const char *message;
  };
  for (const Bad &row : {Bad{{{-1, 1}, {0, 2}}, 0x01466364, "requireExplicitPolicy.value"},
                         Bad{{{0, 1}, {-2, 1}}, 0x01466365, "inhibitPolicyMapping.value"}}) {
    Err err;
    EXPECT_EQ(KetraObjectSsetPolicyConstraints(extensions, 1, &row.value, err), -1);
    EXPECT_EQ(err.code(), row.code);
    EXPECT_EQ(err.trace(), std::vector<std::string>{std::string("KetraObjectSsetPolicyConstraints: ") + row.message});
    EXPECT_EQ(err.block.entries[0].valueLength, 4u);
  }
  extensions.store(X509Objid_PolicyConstraints, fromHex("30 06 80 01 02 81 01 FF"));
  KetraPolicyConstraints read{};
  Err err;
  EXPECT_EQ(KetraObjectSgetPolicyConstraints(extensions, &read, err), -1);
  EXPECT_EQ(err.code(), 0x0146CF65u);
  EXPECT_EQ(err.trace(), std::vector<std::string>{"KetraObjectSgetPolicyConstraints: inhibitPolicyMapping"});
  EXPECT_EQ(read.requireExplicitPolicy.value, 2) << "written before";
  EXPECT_EQ(err.block.entries[0].value, &read.inhibitPolicyMapping.value);
}

}  // namespace
}  // namespace ketra::test
