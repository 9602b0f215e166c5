// Key identifiers, policies, usages, CRL numbers, CRL entries and directory attributes in the C++ face, as a C++17
// program uses them.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "ketra.hpp"
#include "library/refused_allocations.h"
#include "support/octets.h"

namespace {

using ketra::test::allocationsLeft;
using ketra::test::fromHex;
using ketra::test::golden;
using ketra::test::toHex;

template <class T>
ketra::Extensions stored(const std::string &hex) {
  ketra::Extensions extensions;
  extensions.set(ketra::ObjectIdentifier(ketra::ExtensionTraits<T>::objid()), false, fromHex(hex));
  return extensions;
}

template <class T>
void store(ketra::Extensions &extensions, const T &value) {
  if constexpr (ketra::ExtensionTraits<T>::kCallerSetsCritical) {
    extensions.set(value, false);
  } else {
    extensions.set(value);
  }
}

// The last line is that of the operation which the face called.
template <class Action>
void fails(uint32_t code, const std::string &operation, Action &&action) {
  try {
    action();
    ADD_FAILURE() << "nothing is thrown";
  } catch (const ketra::Error &error) {
    EXPECT_EQ(error.code(), code) << error.what();
    ASSERT_FALSE(error.trace().empty());
    EXPECT_EQ(error.trace().back().function, operation) << error.what();
  }
}

uint64_t poolUsage(const ketra::Extensions &extensions) {
  AsnMemObject pool = nullptr;
  uint64_t octets = 0;
  uint32_t blocks = 0;
  EXPECT_EQ(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr), 0);
  EXPECT_EQ(AsnMemObjectUsage(pool, &octets, &blocks, nullptr), 0);
  return octets;
}

const std::string kTwentyOctets = "00FF0102030405060708090A0B0C0D0E0F101112";

ketra::AuthorityKeyId keyId(const std::string &serialContent) {
  return {fromHex("AABB"), {{ketra::ip("192.0.2.1")}}, ketra::SerialNumber::ofContent(fromHex(serialContent))};
}

ketra::CertificatePolicies twoPolicies() {
  return {{{{1, 2, 3, 1}, {{{1, 2, 3, 3}, ketra::Octets{0x13, 0x01, 'A'}}, {{1, 2, 3, 4}, {}}}}, {{1, 2, 3, 2}, {}}}};
}

ketra::SubjectDirectoryAttributes attributes() {
  return {{{{1, 2, 3}, {{0x05, 0x00}, {0x13, 0x01, 'A'}}}, {ketra::attribute::title, {ketra::utf8String("x")}}}};
}

// Writing gives these octets and this criticality, and reading them gives the value.
template <class T>
void bothWays(const T &value, const std::string &hex, bool isCritical = false) {
  SCOPED_TRACE(hex);
  ketra::Extensions extensions;
  store(extensions, value);
  EXPECT_EQ(toHex(extensions.find<T>()->value.copy()), toHex(fromHex(hex)));
  EXPECT_EQ(extensions.find<T>()->critical, isCritical);
  EXPECT_EQ(extensions.get<T>(), value);  // makes a node of the cache, which stays
  const uint64_t before = poolUsage(extensions);
  EXPECT_EQ(extensions.get<T>(), value);
  EXPECT_EQ(poolUsage(extensions), before);
}

TEST(FaceExtensions, BothWays) {
  bothWays(ketra::AuthorityKeyId{}, "30 00");
  bothWays(keyId("0102"), golden("authorityKeyIdentifier/all"));
  bothWays(keyId("FF7F000001"), "30 13 80 02 AA BB A1 06 87 04 C0 00 02 01 82 05 FF 7F 00 00 01");
  bothWays(keyId(kTwentyOctets), "30 22 80 02 AA BB A1 06 87 04 C0 00 02 01 82 14" + kTwentyOctets);
  bothWays(twoPolicies(), golden("certificatePolicies/two"));
  bothWays(ketra::PolicyMappings{{{{1, 2, 3, 1}, {1, 2, 3, 2}}, {{1, 2, 3, 3}, {1, 2, 3, 4}}}},
           golden("policyMappings/two"));
  bothWays(ketra::PolicyConstraints{}, "30 00");
  bothWays(ketra::PolicyConstraints{0, INT32_MAX}, "30 09 80 01 00 81 04 7F FF FF FF");
  bothWays(ketra::ExtKeyUsage{{ketra::purpose::serverAuth, ketra::purpose::anyExtendedKeyUsage}},
           "30 10 06 08 2B 06 01 05 05 07 03 01 06 04 55 1D 25 00");
  bothWays(ketra::PrivateKeyUsagePeriod{}, "30 00");
  bothWays(ketra::PrivateKeyUsagePeriod{{}, ketra::parseTime("2026-01-31T23:59:59.5Z")},
           "30 13 81" + golden("time/fraction").substr(3));
  bothWays(ketra::InvalidityDate{ketra::parseTime("2026-01-31T23:59:59Z")}, golden("time/plain"));
  bothWays(ketra::ReasonCode::removeFromCRL, golden("enumerated/8"));
  bothWays(ketra::HoldInstruction{ketra::instruction::reject}, "06 07 2A 86 48 CE 38 02 03");
  bothWays(attributes(), "30 19 30 0B 06 02 2A 03 31 05 05 00 13 01 41 30 0A 06 03 55 04 0C 31 03 0C 01 78");
}

TEST(FaceExtensions, CrlNumbersOfAnySize) {
  struct Case {
    ketra::Integer number;
    std::string hex;
  };
  const Case cases[] = {
      {0, "02 01 00"},
      {INT32_MAX, "02 04 7F FF FF FF"},
      {int64_t{INT32_MAX} + 1, "02 05 00 80 00 00 00"},
      {INT64_MAX, "02 08 7F FF FF FF FF FF FF FF"},
      {ketra::Integer::ofContent(fromHex(kTwentyOctets)), "02 14" + kTwentyOctets},
  };
  for (const Case &c : cases) {
    bothWays(ketra::CrlNumber{c.number}, c.hex, false);
    bothWays(ketra::DeltaCrlIndicator{c.number}, c.hex, true);
  }
  ketra::Extensions extensions;
  for (const ketra::Integer &negative : {ketra::Integer(-1), ketra::Integer(INT64_MIN)}) {
    fails(KetraError_SetCRLNumber, "KetraObjectSsetCRLNumber", [&] { extensions.set(ketra::CrlNumber{negative}); });
    fails(KetraError_SetDeltaCRLIndicator, "KetraObjectSsetDeltaCRLIndicator",
          [&] { extensions.set(ketra::DeltaCrlIndicator{negative}); });
  }
  EXPECT_EQ(extensions.size(), 0u);
  fails(KetraError_GetCRLNumber, "KetraObjectSgetCRLNumber",
        [] { stored<ketra::CrlNumber>("02 01 FF").get<ketra::CrlNumber>(); });
  fails(KetraError_GetDeltaCRLIndicator, "ketra::ExtensionTraits",
        [] { stored<ketra::DeltaCrlIndicator>("02 05 80 00 00 00 00").get<ketra::DeltaCrlIndicator>(); });
}

TEST(FaceExtensions, Integers) {
  struct Case {
    const char *content, *hex, *text;
  };
  const Case cases[] = {
      {"00", "00", "0"},
      {"7F", "7f", "127"},
      {"0080", "80", "128"},
      {"80", "-80", "-128"},
      {"FF", "-01", "-1"},
      {"FF7F", "-81", "-129"},
      {"8000000000000000", "-8000000000000000", "-9223372036854775808"},
      {"008000000000000000", "8000000000000000", "0x8000000000000000"},
      {"FF7FFFFFFFFFFFFFFF", "-8000000000000001", "-0x8000000000000001"},
  };
  for (const Case &c : cases) {
    const auto integer = ketra::Integer::ofContent(fromHex(c.content));
    EXPECT_EQ(integer.hex(), c.hex);
    EXPECT_EQ(integer.text(), c.text);
    EXPECT_EQ(ketra::Integer::fromHex(c.hex), integer) << c.hex;
    EXPECT_EQ(ketra::Integer(integer.number().value_or(0)) == integer, integer.number().has_value());
  }
  EXPECT_EQ(ketra::Integer::fromHex("-0"), ketra::Integer());
  EXPECT_EQ(ketra::Integer::fromHex("00aBc").content(), fromHex("0ABC"));
  EXPECT_EQ(ketra::Integer::ofUnsigned(fromHex("0000FF")).content(), fromHex("00FF"));
  EXPECT_EQ(ketra::Integer::ofUnsigned(ketra::Octets{}), ketra::Integer());
  for (const char *text : {"", "-", "1g", "0x1", " 1"}) EXPECT_THROW(ketra::Integer::fromHex(text), ketra::Error);
  for (const char *content : {"", "007F", "FF80"}) {
    EXPECT_THROW(ketra::Integer::ofContent(fromHex(content)), ketra::Error) << content;
  }
}

TEST(FaceExtensions, TolerantIssuer) {
  const auto extensions = stored<ketra::AuthorityKeyId>(
      "30 1A 80 02 AA BB A1 08 8A 00 82 01 61 8A 01 62 82 0A 00 80 00 00 00 00 00 00 00 00");
  fails(AsnError_Component, "KetraObjectSgetAuthorityKeyId", [&] { extensions.get<ketra::AuthorityKeyId>(); });
  const auto read = extensions.get<ketra::TolerantAuthorityKeyId>();
  EXPECT_EQ(read->keyIdentifier, fromHex("AABB"));
  ASSERT_EQ(read->authorityCertIssuer->size(), 3u);
  EXPECT_EQ(std::get<ketra::UnreadableName>(read->authorityCertIssuer->at(0)).encoding, fromHex("8A00"));
  EXPECT_EQ(std::get<ketra::GeneralName>(read->authorityCertIssuer->at(1)), ketra::dns("a"));
  EXPECT_EQ(read->authorityCertSerialNumber->hex(), "800000000000000000");
  EXPECT_FALSE(stored<ketra::AuthorityKeyId>("3000").get<ketra::TolerantAuthorityKeyId>()->keyIdentifier.has_value());
}

// The list is read as a whole up to two policies, and one by one beyond.
TEST(FaceExtensions, ListsOfPolicies) {
  const std::string good = "30 05 06 03 2A 03 01", farArc = "30 08 06 06 2A 90 80 80 80 00";
  for (int length = 0; length <= 7; ++length) {
    std::string members;
    ketra::CertificatePolicies expected;
    for (int i = 0; i < length; ++i) {
      members += good;
      expected.policies.push_back({{1, 2, 3, 1}, {}});
    }
    const auto size = static_cast<uint8_t>(fromHex(members).size());
    EXPECT_EQ(stored<ketra::CertificatePolicies>("30" + toHex({size}) + members).get<ketra::CertificatePolicies>(),
              expected);
    const auto bad =
        stored<ketra::CertificatePolicies>("30" + toHex({static_cast<uint8_t>(size + 10)}) + members + farArc);
    const uint64_t before = poolUsage(bad);
    fails(AsnError_Range, length < 2 ? "KetraObjectSgetCertPolicies" : "ketra::CertificatePolicies",
          [&] { bad.get<ketra::CertificatePolicies>(); });
    EXPECT_EQ(poolUsage(bad), before);
    fails(AsnError_Component, "KetraObjectSgetCertPolicies", [&, &list = members] {
      stored<ketra::CertificatePolicies>("30" + toHex({static_cast<uint8_t>(size + 2)}) + list + "0500")
          .get<ketra::CertificatePolicies>();
    });
  }
  ketra::CertificatePolicies many;
  for (uint32_t i = 0; i < 200; ++i) {
    many.policies.push_back({{1, 2, i}, {}});
    for (uint32_t j = 0; j < i % 3; ++j) many.policies.back().qualifiers.push_back({{1, 3, j}, ketra::Octets{5, 0}});
  }
  ketra::Extensions extensions;
  extensions.set(many, true);
  EXPECT_EQ(extensions.get<ketra::CertificatePolicies>(), many);
}

TEST(FaceExtensions, Qualifiers) {
  const auto cps = ketra::PolicyQualifier::ofCps("https://a.test/");
  EXPECT_EQ(cps.value, fromHex("16 0F 68 74 74 70 73 3A 2F 2F 61 2E 74 65 73 74 2F"));
  EXPECT_EQ(cps.cps(), "https://a.test/");
  EXPECT_FALSE(cps.notice().has_value());
  const ketra::UserNotice full{{{"\xc3\xa4", {1, -1, ketra::Integer::ofContent(fromHex(kTwentyOctets))}}}, "text"};
  for (const ketra::UserNotice &notice : {full, ketra::UserNotice{{}, "text"}, ketra::UserNotice{}}) {
    EXPECT_EQ(ketra::PolicyQualifier::ofNotice(notice).notice(), notice);
  }
  EXPECT_EQ(ketra::PolicyQualifier::ofNotice({{{"A", {1}}}, "B"}).value,
            fromHex("30 0D 30 08 0C 01 41 30 03 02 01 01 0C 01 42"));

  struct Case {
    bool isCps;
    const char *value, *text;  // null: malformed
  };
  const Case cases[] = {
      {true, "16 00", ""},
      {true, "36 06 16 01 61 16 01 62", nullptr},
      {true, "36 06 04 01 61 04 01 62", "ab"},
      {true, "0C 01 61", nullptr},
      {true, "16 02 61", nullptr},
      {false, "30 03 0C 01 61", "a"},
      {false, "30 03 16 01 61", "a"},
      {false, "30 03 1A 01 61", "a"},
      {false, "30 04 1E 02 04 16", "\xd0\x96"},
      {false, "30 03 1E 01 04", nullptr},
      {false, "30 06 1C 04 00 01 F6 00", "\xf0\x9f\x98\x80"},
      {false, "30 03 14 01 E4", "\xc3\xa4"},
      {false, "30 03 0C 01 E4", nullptr},
      {false, "30 03 02 01 05", nullptr},
      {false, "30 05 0C 01 61 05 00", nullptr},
      {false, "0C 01 61", nullptr},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.value);
    const ketra::ObjectIdentifier id = c.isCps ? ketra::ObjectIdentifier(ketra::qualifier::cps)
                                               : ketra::ObjectIdentifier(ketra::qualifier::userNotice);
    const ketra::PolicyQualifier qualifier{id, fromHex(c.value)};
    const auto notice = qualifier.notice();
    const auto text = c.isCps ? qualifier.cps() : notice ? notice->explicitText : std::nullopt;
    EXPECT_EQ(text, c.text != nullptr ? std::optional<std::string>(c.text) : std::nullopt);
  }
  EXPECT_FALSE((ketra::PolicyQualifier{ketra::qualifier::cps, {}}.cps().has_value()));
}

TEST(FaceExtensions, Times) {
  using std::chrono::microseconds;
  const std::pair<const char *, int64_t> cases[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"1969-12-31T23:59:59.999999Z", -1},
      {"1969-12-31T23:59:59.5Z", -500'000},
      {"2026-01-31T23:59:59.000001Z", 1'769'903'999'000'001},
      {"0000-01-01T00:00:00Z", -62'167'219'200'000'000},
      {"9999-12-31T23:59:59.999999Z", 253'402'300'799'999'999},
  };
  for (const auto &[text, sinceEpoch] : cases) {
    const ketra::Time time{microseconds(sinceEpoch)};
    EXPECT_EQ(ketra::timeText(time), text);
    EXPECT_EQ(ketra::parseTime(text), time);
    ketra::Extensions extensions;
    extensions.set(ketra::InvalidityDate{time});
    extensions.set(ketra::PrivateKeyUsagePeriod{time, {}});
    EXPECT_EQ(extensions.get<ketra::InvalidityDate>()->date, time);
    EXPECT_EQ(extensions.get<ketra::PrivateKeyUsagePeriod>(), (ketra::PrivateKeyUsagePeriod{time, {}}));
  }
  ketra::Extensions extensions;
  for (const int64_t outside : {-62'167'219'200'000'001, 253'402'300'800'000'000, INT64_MIN, INT64_MAX}) {
    EXPECT_THROW(extensions.set(ketra::InvalidityDate{ketra::Time{microseconds(outside)}}), ketra::Error);
  }
  EXPECT_EQ(ketra::parseTime("2026-01-31T23:59:59+01:00"), ketra::parseTime("2026-01-31T22:59:59Z"));
  EXPECT_THROW(ketra::parseTime(std::string("2026-01-31T23:59:59Z\0", 21)), ketra::Error);
}

TEST(FaceExtensions, NamedValues) {
  for (int32_t code = -1; code <= 11; ++code) {
    const auto reason = static_cast<ketra::ReasonCode>(code);
    ketra::Extensions extensions;
    if (ketra::nameOf(reason) != nullptr) {
      extensions.set(reason);
      EXPECT_EQ(extensions.get<ketra::ReasonCode>(), reason);
    } else {
      fails(KetraError_SetReasonCode, "KetraObjectSsetReasonCode", [&] { extensions.set(reason); });
    }
  }
  const ketra::ExtKeyUsage usage{{ketra::purpose::timeStamping}};
  EXPECT_TRUE(usage.has(ketra::purpose::timeStamping));
  EXPECT_FALSE(usage.has(ketra::purpose::serverAuth));
  EXPECT_EQ(ketra::ObjectIdentifier(ketra::anyPolicy).text(), "2.5.29.32.0");
}

TEST(FaceExtensions, RefusedReads) {
  fails(KetraError_GetReasonCode, "KetraObjectSgetReasonCode",
        [] { stored<ketra::ReasonCode>("0A 01 07").get<ketra::ReasonCode>(); });
  fails(AsnError_Range, "KetraObjectSgetInvalidityDate",  // local time
        [] { stored<ketra::InvalidityDate>("18 0A 32303236303133313233").get<ketra::InvalidityDate>(); });
  fails(AsnError_Range, "KetraObjectSgetPolicyConstraints",
        [] { stored<ketra::PolicyConstraints>("30 07 80 05 01 00 00 00 00").get<ketra::PolicyConstraints>(); });
  fails(KetraError_GetExtKeyUsageEmpty, "KetraObjectSgetExtKeyUsage",
        [] { stored<ketra::ExtKeyUsage>("30 00").get<ketra::ExtKeyUsage>(); });
  fails(AsnError_Component, "KetraObjectSgetExtKeyUsage",
        [] { stored<ketra::ExtKeyUsage>("30 02 05 00").get<ketra::ExtKeyUsage>(); });
  fails(AsnError_Component, "KetraObjectSgetPolicyMappings",
        [] { stored<ketra::PolicyMappings>("30 02 30 00").get<ketra::PolicyMappings>(); });
  fails(AsnError_Objid, "KetraObjectSgetInstructionCode",
        [] { stored<ketra::HoldInstruction>("06 01 80").get<ketra::HoldInstruction>(); });
  fails(AsnError_Component, "KetraObjectSgetSubjectDirectoryAttributes",
        [] { stored<ketra::SubjectDirectoryAttributes>("30 02 05 00").get<ketra::SubjectDirectoryAttributes>(); });
  fails(KetraError_GetAuthorityKeyIdIssuer, "KetraObjectSgetAuthorityKeyId",
        [] { stored<ketra::AuthorityKeyId>("30 02 A1 00").get<ketra::AuthorityKeyId>(); });
  // What a get has read before it fails goes back to the pool.
  const auto farArc = stored<ketra::ExtKeyUsage>("30 0C 06 02 2A 03 06 06 2A 90 80 80 80 00");
  const uint64_t before = poolUsage(farArc);
  fails(AsnError_Range, "KetraObjectSgetExtKeyUsage", [&] { farArc.get<ketra::ExtKeyUsage>(); });
  EXPECT_EQ(poolUsage(farArc), before);
}

TEST(FaceExtensions, RefusedSetsStoreNothing) {
  ketra::Extensions extensions;
  ketra::AuthorityKeyId noIssuer = keyId("01"), noName = keyId("01");
  noIssuer.authorityCertIssuer.reset();
  noName.authorityCertIssuer->clear();
  fails(KetraError_SetAuthorityKeyIdOpt, "KetraObjectSsetAuthorityKeyId", [&] { extensions.set(noIssuer); });
  fails(KetraError_CheckGenNamesEmpty, "KetraObjectSsetAuthorityKeyId", [&] { extensions.set(noName); });
  fails(KetraError_SetCertPoliciesEmpty, "KetraObjectSsetCertPolicies",
        [&] { extensions.set(ketra::CertificatePolicies{}, false); });
  fails(AsnError_Truncated, "KetraObjectSsetCertPolicies", [&] {
    extensions.set(ketra::CertificatePolicies{{{{1, 2}, {{{1, 2}, ketra::Octets{0x04, 0x05}}}}}}, false);
  });
  fails(KetraError_SetExtKeyUsageEmpty, "KetraObjectSsetExtKeyUsage",
        [&] { extensions.set(ketra::ExtKeyUsage{}, false); });
  fails(AsnCheckError_Objid, "KetraObjectSsetPolicyMappings", [&] {
    extensions.set(ketra::PolicyMappings{{{{1, 2}, {}}}});
  });
  fails(KetraError_SetRequireExplicitPolicy, "KetraObjectSsetPolicyConstraints", [&] {
    extensions.set(ketra::PolicyConstraints{-1, {}}, false);
  });
  EXPECT_THROW(extensions.set(ketra::SubjectDirectoryAttributes{}), ketra::Error);
  EXPECT_THROW(extensions.set(ketra::SubjectDirectoryAttributes{{{{1, 2}, {}}}}), ketra::Error);
  EXPECT_EQ(extensions.size(), 0u);
}

void getAll(const ketra::Extensions &extensions) {
  extensions.get<ketra::AuthorityKeyId>();
  extensions.get<ketra::TolerantAuthorityKeyId>();
  extensions.get<ketra::CertificatePolicies>();
  extensions.get<ketra::PolicyMappings>();
  extensions.get<ketra::ExtKeyUsage>();
  extensions.get<ketra::CrlNumber>();
  extensions.get<ketra::SubjectDirectoryAttributes>();
}

// Each request to the system on the C++ side fails in turn: the pool keeps nothing, and the leak checker of the
// sanitizer sees the rest.
TEST(FaceExtensions, BadAlloc) {
  const auto setAll = [policies = twoPolicies(), id = keyId(kTwentyOctets)](ketra::Extensions &extensions) {
    ketra::CertificatePolicies long_ = policies;
    for (int i = 0; i < 2; ++i)
      long_.policies.insert(long_.policies.end(), policies.policies.begin(), policies.policies.end());
    extensions.set(id);
    extensions.set(long_, true);
    extensions.set(ketra::PolicyMappings{{{{1, 2, 3}, {1, 2, 4}}}});
    extensions.set(ketra::ExtKeyUsage{{ketra::purpose::serverAuth, ketra::purpose::clientAuth}}, true);
    extensions.set(ketra::CrlNumber{*id.authorityCertSerialNumber});
    extensions.set(attributes());
  };
  int refused = 0;
  for (bool isDone = false; !isDone;) {
    ketra::Extensions extensions;
    setAll(extensions);
    getAll(extensions);  // makes the nodes of the cache, which stay
    const uint64_t before = poolUsage(extensions);
    allocationsLeft = refused;
    try {
      setAll(extensions);
      getAll(extensions);
      isDone = true;
    } catch (const std::bad_alloc &) {
      ++refused;
    }
    allocationsLeft = -1;
    EXPECT_LE(poolUsage(extensions), before);
    getAll(extensions);
    EXPECT_EQ(poolUsage(extensions), before);
  }
  EXPECT_GT(refused, 100);
}

}  // namespace
