// Distribution points and name constraints in the C++ face, as a C++17 program uses them.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <variant>
#include <vector>

#include "ketra.hpp"
#include "refused_allocations.h"
#include "support/octets.h"

namespace {

using ketra::test::allocationsLeft;
using ketra::test::fromHex;
using ketra::test::golden;
using ketra::test::toHex;

ketra::CrlDistributionPoints twoPoints() {
  ketra::DistributionPoint byName;
  byName.distributionPoint = ketra::FullName{{ketra::dns("a"), ketra::ip("192.0.2.1")}};
  byName.reasons.emplace().cessationOfOperation = true;
  byName.reasons->certificateHold = true;
  byName.cRLIssuer = {ketra::ip("192.0.2.1")};
  ketra::DistributionPoint relative;
  relative.distributionPoint = ketra::RelativeName{{
      {ketra::attribute::commonName, {0x13, 0x01, 'A'}},
      {ketra::attribute::organizationName, {0x13, 0x01, 'B'}},
  }};
  return {{byName, relative}};
}

ketra::IssuingDistributionPoint issuingPoint() {
  return {twoPoints().points[1].distributionPoint, true, false, twoPoints().points[0].reasons, true};
}

ketra::NameConstraints constraints() {
  const std::vector<ketra::GeneralSubtree> subtrees = {{ketra::dns("a"), 0, 5}, {ketra::ip("192.0.2.1")}};
  return {subtrees, subtrees};
}

template <class T>
ketra::Extensions stored(const std::string &hex) {
  ketra::Extensions extensions;
  extensions.set(ketra::ObjectIdentifier(ketra::ExtensionTraits<T>::objid()), false, fromHex(hex));
  return extensions;
}

// The error of what `action` throws.
template <class Action>
ketra::Error errorOf(Action &&action) {
  try {
    action();
  } catch (const ketra::Error &error) {
    return error;
  }
  ADD_FAILURE() << "nothing is thrown";
  AsnErrorBlock block;
  AsnErrorReset(&block);
  return ketra::Error(block);
}

bool isUnreadable(const ketra::NameOrError &name, const std::string &hex) {
  const auto *bad = std::get_if<ketra::UnreadableName>(&name);
  return bad != nullptr && bad->encoding == fromHex(hex) && bad->error.code() != 0;
}
bool isName(const ketra::NameOrError &name, const ketra::GeneralName &expected) {
  const auto *good = std::get_if<ketra::GeneralName>(&name);
  return good != nullptr && *good == expected;
}

TEST(FacePoints, GoldenBothWays) {
  ketra::Extensions extensions;
  extensions.set(twoPoints(), true);
  extensions.set(issuingPoint());
  extensions.set(constraints(), true);
  EXPECT_EQ(toHex(extensions.find<ketra::CrlDistributionPoints>()->value.copy()), golden("cRLDistributionPoints/two"));
  EXPECT_EQ(toHex(extensions.find<ketra::IssuingDistributionPoint>()->value.copy()),
            golden("issuingDistributionPoint/all"));
  EXPECT_EQ(toHex(extensions.find<ketra::NameConstraints>()->value.copy()), golden("nameConstraints/both"));
  EXPECT_TRUE(extensions.find<ketra::IssuingDistributionPoint>()->critical);
  EXPECT_EQ(*extensions.get<ketra::CrlDistributionPoints>(), twoPoints());
  EXPECT_EQ(*extensions.get<ketra::IssuingDistributionPoint>(), issuingPoint());
  EXPECT_EQ(*extensions.get<ketra::NameConstraints>(), constraints());
  EXPECT_NE(*extensions.get<ketra::CrlDistributionPoints>(), ketra::CrlDistributionPoints{});

  const auto tolerant = extensions.get<ketra::TolerantCrlDistributionPoints>()->points;
  ASSERT_EQ(tolerant.size(), 2u);
  EXPECT_EQ(tolerant[0].reasons, twoPoints().points[0].reasons);
  EXPECT_EQ(std::get<ketra::RelativeName>(*tolerant[1].distributionPoint),
            std::get<ketra::RelativeName>(*twoPoints().points[1].distributionPoint));
}

TEST(FacePoints, EachReasonHasItsBit) {
  unsigned bit = 0x80;
  for (const ketra::Reasons::Bit &each : ketra::Reasons::bits()) {
    ketra::IssuingDistributionPoint point;
    point.onlySomeReasons.emplace().*each.member = true;
    ketra::Extensions extensions;
    extensions.set(point);
    const ketra::Octets value = extensions.find<ketra::IssuingDistributionPoint>()->value.copy();
    EXPECT_EQ(value.back(), bit) << each.name;
    EXPECT_EQ(*extensions.get<ketra::IssuingDistributionPoint>(), point);
    bit >>= 1;
  }
  const auto read =
      stored<ketra::IssuingDistributionPoint>("30 05 83 03 07 01 80").get<ketra::IssuingDistributionPoint>();
  EXPECT_EQ(read->onlySomeReasons, ketra::Reasons{}) << "bits 7 and 8 are not carried";
}

TEST(FacePoints, RelativeNameFromText) {
  const auto name =
      ketra::RelativeName::of({{ketra::attribute::commonName, "CRL, 1"}, {ketra::attribute::countryName, "GB"}});
  EXPECT_EQ(name.text(), "C=GB+CN=CRL\\, 1");
  EXPECT_EQ(name.encode(),
            fromHex("31 1A 30 09 06 03 55 04 06 13 02 47 42 30 0D 06 03 55 04 03 0C 06 43 52 4C 2C 20 31"));
  EXPECT_THROW(ketra::RelativeName::of({}), ketra::Error);
  EXPECT_THROW((ketra::RelativeName{{{{1, 2}, {0x05}}}}.text()), ketra::Error);
}

TEST(FacePoints, OneBadNameHidesNoOther) {
  // A name of no kind between good ones, in a fullName and in a cRLIssuer; a point that is none; a point behind it.
  const auto points = stored<ketra::CrlDistributionPoints>(
      "30 24 30 16 A0 0B A0 09 82 01 61 8A 01 62 82 01 63 "
      "A2 07 8A 00 82 03 61 62 63 30 03 83 01 00 30 05 A2 03 82 01 64");
  EXPECT_EQ(errorOf([&] { points.get<ketra::CrlDistributionPoints>(); }).trace().back().function,
            "KetraObjectSgetCRLDistributionPoints");
  const auto read = points.get<ketra::TolerantCrlDistributionPoints>()->points;
  ASSERT_EQ(read.size(), 3u);
  const auto &names = std::get<ketra::TolerantFullName>(*read[0].distributionPoint).names;
  ASSERT_EQ(names.size(), 3u);
  EXPECT_TRUE(isName(names[0], ketra::dns("a")) && isUnreadable(names[1], "8A0162") &&
              isName(names[2], ketra::dns("c")));
  EXPECT_TRUE(isUnreadable(read[0].cRLIssuer->at(0), "8A00") && isName(read[0].cRLIssuer->at(1), ketra::dns("abc")));
  EXPECT_TRUE(isUnreadable(std::get<ketra::TolerantFullName>(*read[1].distributionPoint).names.at(0), "3003830100"));
  EXPECT_TRUE(isName(read[2].cRLIssuer->at(0), ketra::dns("d")));

  // A bad base, a distance beyond 32 bits, a member that is none, a good one.
  const auto subtrees = stored<ketra::NameConstraints>(
      "30 23 A0 21 30 06 8A 01 61 80 01 07 30 0A 82 01 62 81 05 01 00 00 00 00 05 00 30 07 82 02 63 63 80 01 01 30 00");
  EXPECT_EQ(errorOf([&] { subtrees.get<ketra::NameConstraints>(); }).trace().back().function,
            "KetraObjectSgetNameConstraints");
  const auto constraints = subtrees.get<ketra::TolerantNameConstraints>();
  const auto &permitted = constraints->permittedSubtrees;
  ASSERT_TRUE(permitted.has_value());
  ASSERT_EQ(permitted->size(), 5u);
  EXPECT_TRUE(isUnreadable(permitted->at(0).base, "8A0161"));
  EXPECT_EQ(permitted->at(0).minimum, std::optional<int32_t>(7));
  EXPECT_TRUE(isUnreadable(permitted->at(1).base, "300A82016281050100000000"));
  EXPECT_TRUE(isUnreadable(permitted->at(2).base, "0500"));
  EXPECT_TRUE(isName(permitted->at(3).base, ketra::dns("cc")));
  EXPECT_TRUE(isUnreadable(permitted->at(4).base, "3000"));
}

// A strict read fails as the C operation does, whether decoding or reading fails.
template <class T>
void refuses(const std::string &value, uint32_t code, const char *operation) {
  SCOPED_TRACE(value);
  const ketra::Extensions extensions = stored<T>(value);
  const ketra::Error error = errorOf([&] { extensions.get<T>(); });
  EXPECT_EQ(error.code(), code) << error.what();
  ASSERT_FALSE(error.trace().empty());
  EXPECT_EQ(error.trace().back().function, operation) << error.what();
}

TEST(FacePoints, ReadsThatFail) {
  const std::pair<const char *, uint32_t> points[] = {
      {"30 00", KetraError_GetDistributionPointsEmpty},
      {"30 04 30 02 A3 00", AsnError_Component},
      {"30 06 30 04 A0 02 A1 00", KetraError_RelativeNameEmpty},
      {"30 0A 30 08 81 02 01 06 A2 02 8A 00", AsnError_Component},
      {"30 03 30 05", AsnError_Truncated},
  };
  for (const auto &[value, code] : points)
    refuses<ketra::CrlDistributionPoints>(value, code, "KetraObjectSgetCRLDistributionPoints");
  const std::pair<const char *, uint32_t> issuing[] = {
      {"30 03 81 01", AsnError_Truncated},
      {"30 06 A0 04 A0 02 8A 00", AsnError_Component},
      {"30 04 81 02 FF FF", AsnError_Boolean},
  };
  for (const auto &[value, code] : issuing)
    refuses<ketra::IssuingDistributionPoint>(value, code, "KetraObjectSgetIssuingDistributionPoint");
  for (const char *value : {"05 00", "30 04 A1 02 30 00"})
    refuses<ketra::NameConstraints>(value, AsnError_Component, "KetraObjectSgetNameConstraints");
  EXPECT_THROW(stored<ketra::CrlDistributionPoints>("05 00").get<ketra::TolerantCrlDistributionPoints>(), ketra::Error);
}

TEST(FacePoints, RefusedSetsStoreNothing) {
  ketra::Extensions extensions;
  ketra::DistributionPoint noNames, noAttributes, badAttribute, noIssuer;
  noNames.distributionPoint = ketra::FullName{};
  noAttributes.distributionPoint = ketra::RelativeName{};
  badAttribute.distributionPoint = ketra::RelativeName{{{ketra::attribute::commonName, {0x0C, 0x05}}}};
  noIssuer.cRLIssuer.emplace();
  const std::pair<std::vector<ketra::DistributionPoint>, uint32_t> cases[] = {
      {{}, KetraError_CheckDistributionPointsEmpty},       {{{}, noNames}, KetraError_CheckGenNamesEmpty},
      {{noAttributes}, KetraError_CheckRelativeNameEmpty}, {{badAttribute}, AsnError_Truncated},
      {{noIssuer}, KetraError_CheckGenNamesEmpty},
  };
  for (const auto &[points, code] : cases) {
    EXPECT_EQ(errorOf([&, &refused = points] { extensions.set(ketra::CrlDistributionPoints{refused}, false); }).code(),
              code);
  }
  EXPECT_THROW(extensions.set(ketra::IssuingDistributionPoint{ketra::FullName{}, {}, {}, {}, {}}), ketra::Error);
  EXPECT_EQ(errorOf([&] {
              extensions.set(ketra::NameConstraints{{}, std::vector<ketra::GeneralSubtree>{}}, true);
            }).code(),
            uint32_t{KetraError_CheckGenSubtreesEmpty});
  EXPECT_EQ(extensions.size(), 0u);
}

uint64_t poolUsage(const ketra::Extensions &extensions) {
  AsnMemObject pool = nullptr;
  uint64_t octets = 0;
  uint32_t blocks = 0;
  EXPECT_EQ(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr), 0);
  EXPECT_EQ(AsnMemObjectUsage(pool, &octets, &blocks, nullptr), 0);
  return octets;
}

void getAll(const ketra::Extensions &extensions) {
  extensions.get<ketra::CrlDistributionPoints>();
  extensions.get<ketra::TolerantCrlDistributionPoints>();
  extensions.get<ketra::IssuingDistributionPoint>();
  extensions.get<ketra::TolerantIssuingDistributionPoint>();
  extensions.get<ketra::NameConstraints>();
  extensions.get<ketra::TolerantNameConstraints>();
}

// Reading again and again, with or without success, leaves no memory behind.
TEST(FacePoints, GetsReturnTheirMemory) {
  ketra::Extensions extensions;
  extensions.set(twoPoints(), true);
  extensions.set(issuingPoint());
  extensions.set(constraints(), true);
  const uint64_t before = poolUsage(extensions);
  for (int i = 0; i < 10; ++i) getAll(extensions);
  EXPECT_EQ(poolUsage(extensions), before);

  const ketra::Extensions broken = stored<ketra::CrlDistributionPoints>("30 0C 30 04 81 02 01 06 30 04 A0 02 A1 00");
  const uint64_t beforeBroken = poolUsage(broken);
  for (int i = 0; i < 10; ++i) EXPECT_THROW(broken.get<ketra::CrlDistributionPoints>(), ketra::Error);
  EXPECT_EQ(poolUsage(broken), beforeBroken);
}

// Each request to the system on the C++ side fails in turn: the pool keeps nothing, and the leak checker of the
// sanitizer sees the rest.
TEST(FacePoints, BadAlloc) {
  const auto points = twoPoints();
  const auto issuing = issuingPoint();
  const auto subtrees = constraints();
  int refused = 0;
  for (bool isDone = false; !isDone;) {
    ketra::Extensions extensions;
    extensions.set(points, true);
    extensions.set(issuing);
    extensions.set(subtrees, true);
    const uint64_t before = poolUsage(extensions);
    allocationsLeft = refused;
    try {
      extensions.set(points, true);
      extensions.set(issuing);
      extensions.set(subtrees, true);
      getAll(extensions);
      isDone = true;
    } catch (const std::bad_alloc &) {
      ++refused;
    }
    allocationsLeft = -1;
    EXPECT_EQ(poolUsage(extensions), before);
    EXPECT_EQ(*extensions.get<ketra::CrlDistributionPoints>(), points);
  }
  EXPECT_GT(refused, 50);
}

}  // namespace
