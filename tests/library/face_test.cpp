// The C++ face, as a C++17 program uses it. What each extension gives and how it is written, the rows of
// tests/program/values.tsv say.
#include "ketra/face/face.hpp"

#include <gtest/gtest.h>

#include <initializer_list>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "library/refused_allocations.h"
#include "support/octets.h"

namespace {

using ketra::test::allocationsLeft;
using ketra::test::fromHex;
using ketra::test::golden;
using ketra::test::operator+;
using ketra::test::tlv;

uint64_t poolUsage(const ketra::Extensions &extensions) {
  AsnMemObject pool = nullptr;
  uint64_t octets = 0;
  uint32_t blocks = 0;
  EXPECT_EQ(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr), 0);
  EXPECT_EQ(AsnMemObjectUsage(pool, &octets, &blocks, nullptr), 0);
  return octets;
}

template <class T>
void store(ketra::Extensions &extensions, const T &value) {
  if constexpr (ketra::ExtensionTraits<T>::kCallerSetsCritical) {
    extensions.set(value, false);
  } else {
    extensions.set(value);
  }
}

template <class T>
ketra::Extensions stored(const ketra::Octets &value) {
  ketra::Extensions extensions;
  extensions.set(ketra::ObjectIdentifier(ketra::ExtensionTraits<T>::objid()), false, value);
  return extensions;
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

TEST(Face, SetGetEraseIterate) {
  ketra::Extensions extensions;
  EXPECT_FALSE(extensions.get<ketra::BasicConstraints>().has_value());
  extensions.set(ketra::BasicConstraints{true, std::nullopt}, true);
  ketra::KeyUsage usage;
  usage.digitalSignature = usage.decipherOnly = true;
  extensions.set(usage, false);
  extensions.set(ketra::SubjectKeyId{{1, 2, 3}});
  extensions.set(ketra::ObjectIdentifier{1, 2, 3, 4}, true, ketra::Octets{0x05, 0x00});

  const ketra::Extensions read = ketra::Extensions::decode(extensions.encode());
  std::string text;
  for (const ketra::RawExtension &extension : read) text += extension.objid.text() + (extension.critical ? "! " : " ");
  EXPECT_EQ(text, "2.5.29.19! 2.5.29.15 2.5.29.14 1.2.3.4! ");
  EXPECT_EQ(read.get<ketra::BasicConstraints>()->cA, std::optional<bool>(true));
  EXPECT_EQ(read.get<ketra::BasicConstraints>()->pathLenConstraint, std::nullopt);
  EXPECT_EQ(read.get<ketra::KeyUsage>(), usage);
  EXPECT_NE(read.get<ketra::KeyUsage>(), ketra::KeyUsage{});
  EXPECT_EQ(read.get<ketra::SubjectKeyId>()->keyIdentifier, (ketra::Octets{1, 2, 3}));
  EXPECT_TRUE(read.find(ketra::ObjectIdentifier::parse("1.2.3.4"))->critical);

  EXPECT_TRUE(extensions.erase<ketra::KeyUsage>());
  EXPECT_FALSE(extensions.erase<ketra::KeyUsage>());
  EXPECT_EQ(extensions.size(), 3u);
  EXPECT_THROW(ketra::Extensions::decode(ketra::Octets{0x30, 0x00}), ketra::Error);
}

TEST(Face, ReadLimits) {
  ketra::Extensions extensions;
  extensions.set(ketra::SubjectAltName{{ketra::dns("example")}}, false);
  const std::size_t size = extensions.find<ketra::SubjectAltName>()->value.size();
  EXPECT_TRUE(extensions.get<ketra::SubjectAltName>(ketra::ReadLimits{size}));
  EXPECT_FALSE(extensions.get<ketra::IssuerAltName>(ketra::ReadLimits{0}));
  fails(AsnError_TooLong, "ketra::Extensions::get",
        [&] { extensions.get<ketra::SubjectAltName>(ketra::ReadLimits{size - 1}); });
}

TEST(Face, ErrorsSayWhereAndWhy) {
  try {
    stored<ketra::BasicConstraints>(fromHex("30 04 01 02 FF FF")).get<ketra::BasicConstraints>();
    FAIL();
  } catch (const ketra::Error &error) {
    EXPECT_EQ(error.trace().size(), 2u);
    EXPECT_STREQ(error.what(),
                 "error 0x02100028: malformed BOOLEAN\n"
                 "  ASN1 AsnDecode: BOOLEAN content is 2 octets at offset 4 (BasicConstraints/cA)\n"
                 "  X509 KetraObjectSgetBasicConstraints: Call AsnDecode");
  }
}

// Again and again; what a get has read before it fails goes back to the pool. The codes stand in values.tsv.
template <class T>
void leavesNothing(std::initializer_list<const char *> values) {
  for (const char *value : values) {
    SCOPED_TRACE(value);
    const ketra::Extensions extensions = stored<T>(fromHex(value));
    EXPECT_THROW(extensions.get<T>(), ketra::Error);  // makes the node of the cache, which stays
    const uint64_t before = poolUsage(extensions);
    EXPECT_THROW(extensions.get<T>(), ketra::Error);
    EXPECT_EQ(poolUsage(extensions), before);
  }
}

TEST(Face, RefusedReadsLeaveNothing) {
  leavesNothing<ketra::AuthorityKeyId>({"30 06 80 01 AA A1 01 00", "30 05 80 01 AA A1 00"});
  leavesNothing<ketra::PolicyMappings>({"30 12 30 08 06 02 2A 03 06 02 2A 03 30 06 06 02 2A 03 05 00"});
  leavesNothing<ketra::PolicyMappings>({"30 16 30 08 06 02 2A 03 06 02 2A 03 30 0A 06 02 2A 03 06 04 90 80 80 80 80"});
  leavesNothing<ketra::ExtKeyUsage>({"30 0C 06 02 2A 03 06 06 2A 90 80 80 80 00"});
  leavesNothing<ketra::SubjectDirectoryAttributes>({"30 02 05 00"});
  leavesNothing<ketra::CrlDistributionPoints>({"30 0C 30 04 81 02 01 06 30 04 A0 02 A1 00"});
  leavesNothing<ketra::IssuingDistributionPoint>({"30 03 81 01"});
}

// The list is read as a whole up to two policies, and one by one beyond.
TEST(Face, ListsOfPolicies) {
  const ketra::Octets good = fromHex("30 05 06 03 2A 03 01"), farArc = fromHex("30 08 06 06 2A 90 80 80 80 00");
  ketra::Octets members;
  ketra::CertificatePolicies expected;
  for (int length = 0; length <= 4; ++length) {
    EXPECT_EQ(stored<ketra::CertificatePolicies>(tlv(0x30, members)).get<ketra::CertificatePolicies>(), expected);
    const auto bad = stored<ketra::CertificatePolicies>(tlv(0x30, members + farArc));
    const uint64_t before = poolUsage(bad);
    fails(AsnError_Range, length < 2 ? "KetraObjectSgetCertPolicies" : "ketra::CertificatePolicies",
          [&] { bad.get<ketra::CertificatePolicies>(); });
    EXPECT_EQ(poolUsage(bad), before);
    const auto broken = stored<ketra::CertificatePolicies>(tlv(0x30, members + ketra::Octets{0x05, 0x00}));
    fails(AsnError_Component, "KetraObjectSgetCertPolicies", [&] { broken.get<ketra::CertificatePolicies>(); });
    members = members + good;
    expected.policies.push_back({{1, 2, 3, 1}, {}});
  }
}

template <class T>
void refuses(const T &value, uint32_t code, const char *operation) {
  SCOPED_TRACE(operation);
  ketra::Extensions extensions;
  fails(code, operation, [&] { store(extensions, value); });
  EXPECT_EQ(extensions.size(), 0u);
}

// What the face makes of values that the operations refuse, or it alone.
TEST(Face, RefusedSetsStoreNothing) {
  const ketra::Octets cutOff = {0x0C, 0x05};
  const auto point = [](ketra::DistributionPointName name) {
    return ketra::CrlDistributionPoints{{{}, {std::move(name), {}, {}}}};
  };
  const auto altName = [](ketra::GeneralName name) { return ketra::IssuerAltName{{ketra::dns("a"), std::move(name)}}; };
  const char *const setPoints = "KetraObjectSsetCRLDistributionPoints", *const setNames =
                                                                            "KetraObjectSsetIssuerAltName";
  refuses(ketra::AuthorityKeyId{{}, {}, 1}, KetraError_SetAuthorityKeyIdOpt, "KetraObjectSsetAuthorityKeyId");
  refuses(ketra::CertificatePolicies{}, KetraError_SetCertPoliciesEmpty, "KetraObjectSsetCertPolicies");
  refuses(ketra::CertificatePolicies{{{{1, 2}, {{{1, 2}, cutOff}}}}}, AsnError_Truncated,
          "KetraObjectSsetCertPolicies");
  refuses(ketra::ExtKeyUsage{}, KetraError_SetExtKeyUsageEmpty, "KetraObjectSsetExtKeyUsage");
  for (const ketra::Integer &negative : {ketra::Integer(-1), ketra::Integer(INT64_MIN)}) {
    refuses(ketra::CrlNumber{negative}, KetraError_SetCRLNumber, "KetraObjectSsetCRLNumber");
    refuses(ketra::DeltaCrlIndicator{negative}, KetraError_SetDeltaCRLIndicator, "KetraObjectSsetDeltaCRLIndicator");
  }
  refuses(static_cast<ketra::ReasonCode>(7), KetraError_SetReasonCode, "KetraObjectSsetReasonCode");
  refuses(ketra::CertificateIssuer{}, KetraError_CheckGenNamesEmpty, "KetraObjectSsetCertIssuer");
  refuses(altName(ketra::otherName({})), AsnError_Value, setNames);
  refuses(altName(ketra::otherName({1, 2, 3}, cutOff)), AsnError_Truncated, setNames);
  refuses(altName(ketra::x400({0x05, 0x00})), AsnError_Component, setNames);
  refuses(altName(ketra::edi(ketra::DirectoryString::utf8(""))), X509DirStrError_Length, "X509GenNameObjectSetName");
  refuses(altName(ketra::registeredId({9, 9})), AsnError_Value, setNames);
  refuses(point(ketra::FullName{}), KetraError_CheckGenNamesEmpty, setPoints);
  refuses(point(ketra::RelativeName{}), KetraError_CheckRelativeNameEmpty, setPoints);
  refuses(ketra::CrlDistributionPoints{{{{}, {}, {{}}}}}, KetraError_CheckGenNamesEmpty, setPoints);
  refuses(ketra::NameConstraints{{}, {{}}}, KetraError_CheckGenSubtreesEmpty, "KetraObjectSsetNameConstraints");
  refuses(ketra::SubjectDirectoryAttributes{{{{1, 2}, {}}}}, X509AttributesError_Empty, "X509AttributesObjectAppend");
}

// Each request to the system on the C++ side fails in turn: the extension is as it was, the pool keeps nothing, and the
// leak checker of the sanitizer sees the rest.
template <class T, class Tolerant = T>
int refuseInTurn(const std::string &hex) {
  SCOPED_TRACE(hex);
  const T value = stored<T>(fromHex(hex)).template get<T>().value();
  EXPECT_NE(value, T{});
  const auto get = [](const ketra::Extensions &extensions) {
    extensions.get<T>();
    extensions.get<Tolerant>();
  };
  for (int refused = 0;; ++refused) {
    ketra::Extensions extensions;
    store(extensions, value);
    get(extensions);  // makes the node of the cache, which stays
    const uint64_t before = poolUsage(extensions);
    bool isRefused = false;
    allocationsLeft = refused;
    try {
      store(extensions, value);
      get(extensions);
      extensions.encode();
    } catch (const std::bad_alloc &) {
      isRefused = true;
    }
    allocationsLeft = -1;
    EXPECT_LE(poolUsage(extensions), before);
    EXPECT_EQ(extensions.get<T>(), value);
    EXPECT_EQ(poolUsage(extensions), before);
    if (!isRefused) return refused;
  }
}

TEST(Face, RefusedMemory) {
  std::string names, policies;
  for (const char *kind : {"otherName", "rfc822Name", "dNSName", "x400Address", "directoryName", "ediPartyName",
                           "uniformResourceIdentifier", "iPAddress", "registeredID"}) {
    names += golden(std::string("generalName/") + kind) + " ";
  }
  for (int i = 0; i < 3; ++i) policies += golden("certificatePolicies/two").substr(6);
  const auto list = [](const std::string &members) { return ketra::test::toHex(tlv(0x30, fromHex(members))); };
  const int refused[] = {
      refuseInTurn<ketra::SubjectAltName, ketra::TolerantSubjectAltName>(list(names)),
      refuseInTurn<ketra::AuthorityKeyId, ketra::TolerantAuthorityKeyId>(golden("authorityKeyIdentifier/all")),
      refuseInTurn<ketra::CertificatePolicies>(list(policies)),
      refuseInTurn<ketra::PolicyMappings>(golden("policyMappings/two")),
      refuseInTurn<ketra::ExtKeyUsage>("30 0A 06 03 2A 03 01 06 03 2A 03 02"),
      refuseInTurn<ketra::CrlNumber>("02 0A 01 00 00 00 00 00 00 00 00 00"),
      refuseInTurn<ketra::SubjectDirectoryAttributes>("30 0C 30 0A 06 02 2A 03 31 04 05 00 0C 00"),
      refuseInTurn<ketra::CrlDistributionPoints, ketra::TolerantCrlDistributionPoints>(
          golden("cRLDistributionPoints/two")),
      refuseInTurn<ketra::IssuingDistributionPoint, ketra::TolerantIssuingDistributionPoint>(
          golden("issuingDistributionPoint/all")),
      refuseInTurn<ketra::NameConstraints, ketra::TolerantNameConstraints>(golden("nameConstraints/both")),
  };
  for (const int each : refused) EXPECT_GT(each, 5);
}

}  // namespace
