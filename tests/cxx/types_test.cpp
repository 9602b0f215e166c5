// What has to hold of every extension type, whichever it is: from the golden rows, and from values made of them.
#include <cstdlib>
#include <memory>
#include <new>
#include <thread>

#include "cxx/fields.hpp"
#include "ketra/asn1/der.hpp"
#include "ketra/c.hpp"
#include "ketra/extensions.hpp"
#include "ketra/names/identifiers.hpp"
#include "support/support.h"

// All memory that is asked for, and what is held of it.
namespace {
thread_local std::size_t requests = 0;
thread_local std::size_t heldOctets = 0, peakOctets = 0;
constexpr std::size_t kLead = alignof(std::max_align_t);

// Not inlined: what the compiler knows of a block made by new does not hold for the octets in front of it.
[[gnu::noinline]] void release(void *memory) {
  if (memory == nullptr) return;
  auto *const block = static_cast<char *>(memory) - kLead;
  heldOctets -= *reinterpret_cast<std::size_t *>(block);
  std::free(block);
}
}  // namespace
[[gnu::noinline]] void *operator new(std::size_t size) {
  auto *const block = static_cast<char *>(std::malloc(size + kLead));
  if (block == nullptr) std::abort();
  *reinterpret_cast<std::size_t *>(block) = size;
  ++requests;
  heldOctets += size;
  if (heldOctets > peakOctets) peakOctets = heldOctets;
  return block + kLead;
}
std::size_t requestsForMemory() { return requests; }  // for objects_test.cpp, too
void operator delete(void *memory) noexcept { release(memory); }
void operator delete(void *memory, std::size_t) noexcept { release(memory); }

namespace ketra {
namespace {

using test::fromHex;
using test::tlv;

template <class T>
using ViewOf = typename detail::ViewedOf<T>::type;

template <class T, class Call>
void forOne(const Call &call) {
  const testing::ScopedTrace trace(__FILE__, __LINE__, std::string(T::name));
  call(static_cast<T *>(nullptr));
}
template <class Call, class... Ts>
void forEach(Types<Ts...>, const Call &call) {
  (forOne<Ts>(call), ...);
}

// The golden rows of a type: their names begin with its name, however letters are capitalised, and a slash.
bool isRowOf(std::string_view type, const std::string &row) {
  const auto same = [](char a, char b) { return std::tolower(a) == std::tolower(b); };
  return row.size() > type.size() && row[type.size()] == '/' && std::equal(type.begin(), type.end(), row.begin(), same);
}
template <class T>
std::vector<Octets> goldenOf() {
  std::vector<Octets> values;
  for (const auto &[name, hex] : test::goldenRows()) {
    if (isRowOf(T::name, name)) values.push_back(fromHex(hex));
  }
  EXPECT_FALSE(values.empty()) << T::name << " has no row in golden.tsv";
  return values;
}

// The contents of primitive encodings, one after the other.
void flatten(View encodings, std::vector<std::string> &leaves) {
  for (std::size_t at = 0; at < encodings.size();) {
    const bool isConstructed = (encodings[at] & 0x20) != 0;
    std::size_t length = encodings[at + 1], lead = 2;
    if (length >= 0x80) {
      lead += length & 0x7F;
      length = 0;
      for (std::size_t i = 2; i < lead; ++i) length = length << 8 | encodings[at + i];
    }
    const View content(encodings.data() + at + lead, length);
    isConstructed ? flatten(content, leaves) : leaves.push_back(detail::hexOf(content));
    at += lead + length;
  }
}

// What a walk meets, and the contents of primitive encodings among it.
class Events : public Visitor {
 public:
  std::string text;
  std::vector<std::string> leaves;

  void enter(const char *name, const Structure &structure) override {
    add(name, structure.group() == Group::List ? "[" : "{");
    if (structure.hasText()) text += '"' + structure.text() + "\" ";
    groups_.push_back(structure.group());
    if (structure.group() == Group::Bits) bits_.emplace();
    if (name != nullptr && std::string(name) == "timestamps") tls_.emplace();
  }
  void leave() override {
    text += "} ";
    if (groups_.back() == Group::Bits) endBits();
    if (tls_) leaves.push_back(tlsVector(*tls_));
    tls_.reset();
    groups_.pop_back();
  }
  void leaf(const char *name, const LeafValue &value) override {
    add(name, value.text() + "=" + detail::hexOf(value.content()));
    const View content = value.content();
    if (bits_ && value.kind() == LeafKind::Boolean) return bits_->push_back(content[0] != 0);
    const Octets encoding = value.encoding();
    switch (value.kind()) {
      case LeafKind::BitString:  // the nameless bits are all of them
        bits_.reset();
        return flatten(View(encoding), leaves);
      case LeafKind::Any:
      case LeafKind::Name: return flatten(content, leaves);
      case LeafKind::GeneralName: return flatten(View(encoding), leaves);
      case LeafKind::Sct: *tls_ += tlsVector(detail::hexOf(content)); return;
      default: leaves.push_back(detail::hexOf(content));
    }
  }
  void absent(const char *name, const LeafValue &value) override { add(name, "default " + value.text()); }
  void fault(const char *name, View octets, const Fault &fault) override {
    add(name, "FAULT " + fault.text() + detail::hexOf(octets));
  }

 private:
  void add(const char *name, const std::string &what) { text += (name != nullptr ? name : "-") + (' ' + what) + ' '; }
  // The contents of a BIT STRING (X.690 11.2.2), unless it has nameless bits.
  void endBits() {
    if (!bits_) return;
    while (!bits_->empty() && !bits_->back()) bits_->pop_back();
    Octets content(1 + (bits_->size() + 7) / 8);
    for (std::size_t i = 0; i < bits_->size(); ++i) {
      if ((*bits_)[i]) content[1 + i / 8] = static_cast<uint8_t>(content[1 + i / 8] | 0x80 >> i % 8);
    }
    content[0] = static_cast<uint8_t>((content.size() - 1) * 8 - bits_->size());
    leaves.push_back(detail::hexOf(View(content)));
    bits_.reset();
  }
  // In hex, after its length of two octets.
  static std::string tlsVector(const std::string &hex) {
    const uint8_t length[] = {static_cast<uint8_t>(hex.size() / 512), static_cast<uint8_t>(hex.size() / 2 % 256)};
    return detail::hexOf(length) + hex;
  }

  std::optional<std::string> tls_;  // the members of a list in the form of TLS
  std::vector<Group> groups_;
  std::optional<std::vector<bool>> bits_;
};

// Allocates nothing.
class Counter : public Visitor {
 public:
  std::size_t leaves = 0, faults = 0;
  void enter(const char *, const Structure &) override {}
  void leave() override {}
  void leaf(const char *, const LeafValue &) override { ++leaves; }
  void absent(const char *, const LeafValue &) override {}
  void fault(const char *, View, const Fault &) override { ++faults; }
};

TEST(Types, GoldenValues) {
  forEach(ExtensionTypes{}, [](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    for (const Octets &golden : goldenOf<T>()) {
      SCOPED_TRACE(test::toHex(golden));
      const auto viewed = view<ViewOf<T>>(View(golden));
      const auto owned = read<T>(View(golden));
      ASSERT_TRUE(viewed && !firstFault(viewed)) << explain<T>(View(golden), firstFault(viewed));
      ASSERT_TRUE(owned) << explain<T>(View(golden), owned.fault());
      EXPECT_EQ(encode(*owned), golden);
      EXPECT_EQ(encode(*viewed), golden);
      EXPECT_TRUE(*owned == *read<T>(View(golden)));
      Events owning, viewing;
      walk(*owned, owning);
      walk(*viewed, viewing);
      EXPECT_EQ(owning.text, viewing.text);
      std::vector<std::string> leaves;
      flatten(View(golden), leaves);
      EXPECT_EQ(owning.leaves, leaves);
      EXPECT_EQ(viewing.leaves, leaves);
    }
  });
}

TEST(Types, Words) {
  const auto rows = test::rowsOf("golden.tsv");
  forEach(ExtensionTypes{}, [&](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    for (const auto &row : rows) {
      if (row.size() < 4 || !isRowOf(T::name, row[0])) continue;
      Events events;
      const Octets octets = fromHex(row[1]);
      walk(*read<T>(View(octets)), events);
      EXPECT_NE(events.text.find(row[3]), std::string::npos) << row.place << ": " << events.text;
    }
  });
}

// With its identifier, and whether it is critical; and the identifier has a name.
TEST(Types, AreInTheReadme) {
  std::string readme;
  for (const auto &row : test::rowsOf("../README.md")) readme += (row.empty() ? "" : row[0]) + '\n';
  forEach(ExtensionTypes{}, [&](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    const std::string id = ObjectIdentifier(T::oid).text();
    EXPECT_FALSE(oid::name(T::oid).empty()) << id;
    const std::size_t begin = readme.find("\n| " + std::string(oid::name(T::oid)) + " (" + id + ") | ");
    ASSERT_NE(begin, std::string::npos) << id;
    const std::string row = readme.substr(begin + 1, readme.find('\n', begin + 1) - begin - 1);
    const auto critical = detail::FixedCritical<T>::value;
    const char *const said = !critical ? "you say" : *critical ? "yes" : "no";
    EXPECT_NE(row.find(std::string(" | ") + said + " | "), std::string::npos) << row;
  });
}

// Both readers give the same verdict, and a fault has a place in the octets, which explain() names.
template <class T>
bool isAccepted(const Octets &octets) {
  const auto viewed = view<ViewOf<T>>(View(octets));
  const Fault fault = firstFault(viewed);
  const auto owned = read<T>(View(octets));
  for (const Fault &each : {fault, owned.fault()}) {
    if (!each) continue;
    if (each.at == nullptr) {
      EXPECT_TRUE(octets.empty());
      continue;
    }
    const auto offset = static_cast<std::size_t>(each.at - octets.data());
    EXPECT_LE(offset, octets.size());
    EXPECT_NE(explain<T>(View(octets), each).find(" at offset " + std::to_string(offset) + " ("), std::string::npos);
  }
  derFaults<T>(View(octets), [](const Fault &each) { EXPECT_EQ(each.code(), uint32_t{AsnError_NotDer}); });
  EXPECT_TRUE(static_cast<bool>(owned) == !fault || fault.code() == FaultCode_Segmented);
  return static_cast<bool>(owned);
}

TEST(Types, DamagedValues) {
  forEach(ExtensionTypes{}, [](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    for (const Octets &golden : goldenOf<T>()) {
      for (std::size_t size = 0; size < golden.size(); ++size) {
        const Octets truncated(golden.begin(), golden.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(isAccepted<T>(truncated)) << test::toHex(truncated);
        Octets damaged = golden;
        for (const int change : {0x01, 0x02, 0x20, 0x80, 0xFF, int{golden[size]}}) {
          damaged[size] = static_cast<uint8_t>(golden[size] ^ change);
          isAccepted<T>(damaged);
        }
      }
    }
  });
}

TEST(Types, ViewsAllocateNothing) {
  forEach(ExtensionTypes{}, [](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    for (const Octets &golden : goldenOf<T>()) {
      Counter counter;
      const std::size_t before = requests;
      const auto viewed = view<ViewOf<T>>(View(golden));
      EXPECT_FALSE(firstFault(viewed));
      walk(*viewed, counter);
      EXPECT_EQ(requests, before);
    }
  });
}

// The shortest members there are, as many as 2 million octets hold.
template <class T>
void readLong(const char *tags, const char *member) {
  const Octets each = fromHex(member);
  Octets octets;
  while (octets.size() < 2'000'000) octets.insert(octets.end(), each.begin(), each.end());
  const Octets around = fromHex(tags);
  for (std::size_t i = around.size(); i-- > 0;) octets = tlv(around[i], octets);
  const std::size_t before = heldOctets;
  peakOctets = before;
  const auto owned = read<T>(View(octets));
  ASSERT_TRUE(owned) << explain<T>(View(octets), owned.fault());
  EXPECT_LE(peakOctets - before, 90 * octets.size()) << T::name << ' ' << member;
  const std::size_t asked = requests;
  const auto viewed = view<ViewOf<T>>(View(octets));
  EXPECT_FALSE(firstFault(viewed));
  Counter counter;
  walk(*viewed, counter);
  EXPECT_EQ(requests, asked);
}
TEST(Types, LongListsTakeLittleMemory) {
  readLong<SubjectAltName>("30", "82 00");
  readLong<CrlDistributionPoints>("30", "30 00");
  readLong<CrlDistributionPoints>("30 30 A0 A0", "82 00");
  readLong<IssuingDistributionPoint>("30 A0 A1", "30 05 06 01 2A 05 00");
  readLong<NameConstraints>("30 A1", "30 02 82 00");
  readLong<ExtKeyUsage>("30", "06 01 2A");
  readLong<PolicyMappings>("30", "30 06 06 01 2A 06 01 2A");
  readLong<CertificatePolicies>("30", "30 03 06 01 2A");
  readLong<SubjectDirectoryAttributes>("30", "30 07 06 01 2A 31 02 05 00");
  readLong<QcStatements>("30", "30 03 06 01 2A");
  readLong<Admission>("30 30", "30 02 30 00");
  readLong<Admission>("30 30 30 30", "30 02 30 00");
}

// Each is faulty by itself: nothing is remembered of them, and none ends the list.
TEST(Types, ManyFaultyMembers) {
  Octets names;
  for (std::size_t i = 0; i < 1'000'000; ++i) {
    names.push_back(static_cast<uint8_t>(1 + i % 30));
    names.push_back(0);
  }
  const Octets octets = tlv(0x30, names);
  const std::size_t before = requests;
  const auto viewed = view<SubjectAltNameView>(View(octets));
  ASSERT_TRUE(viewed);
  Counter counter;
  walk(*viewed, counter);
  EXPECT_EQ(counter.faults, 1'000'000u);
  EXPECT_EQ(viewed->names.size(), 1'000'000u);
  EXPECT_EQ(firstFault(viewed).at, octets.data() + 5);
  EXPECT_EQ(requests, before);
}

TEST(Types, FaultsInsideAreFound) {
  const Octets octets = fromHex("30 0C A0 04 30 02 82 00 A1 04 30 02 89 00");
  const auto constraints = view<NameConstraintsView>(View(octets));
  ASSERT_TRUE(constraints);
  EXPECT_EQ(explain<NameConstraints>(View(octets), firstFault(constraints)),
            "tag 0x89 is not that of an alternative at offset 12 (NameConstraints/excludedSubtrees/1/base)");
}

TEST(Types, FaultyOnesCannotBeUsed) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const uint8_t octets[] = {0x30, 0x02, 0x30, 0x01};
  EXPECT_DEATH(static_cast<void>(*view<BasicConstraintsView>(View(octets))), "");
  EXPECT_DEATH(static_cast<void>(*read<BasicConstraints>(View(octets))), "");
  const auto points = view<CrlDistributionPointsView>(View(octets));
  EXPECT_DEATH(static_cast<void>(points->points.begin()->operator*()), "");
  EXPECT_DEATH(static_cast<void>(*Found<KeyUsageView>()), "");
}

TEST(Types, AWrittenFalseIsFalse) {
  const uint8_t octets[] = {0x30, 0x03, 0x01, 0x01, 0x00};
  const auto bc = view<BasicConstraintsView>(View(octets));
  EXPECT_FALSE(bc && bc->cA);
  EXPECT_TRUE(bc->cA.isPresent());
}

// What is malformed in the form of TLS, in the OCTET STRING around it and in times of two forms.
TEST(Types, RefusedValues) {
  const auto refusal = [](auto *type, const char *hex) {
    using T = std::remove_pointer_t<decltype(type)>;
    const Octets octets = fromHex(hex);
    isAccepted<T>(octets);
    return explain<T>(View(octets), firstFault(view<ViewOf<T>>(View(octets))));
  };
  SctList *const scts = nullptr;
  ExpiredCertsOnCrl *const time = nullptr;
  EXPECT_EQ(refusal(scts, "04 08 00 05 00 04 01 02 03 04"),
            "1 octet after the end of a TLS structure at offset 9 (SignedCertificateTimestampList)");
  EXPECT_EQ(refusal(scts, "04 08 00 07 00 04 01 02 03 04"),
            "a TLS structure ends early: 7 octets wanted, 6 remain at offset 4 (SignedCertificateTimestampList)");
  EXPECT_EQ(refusal(scts, "04 08 00 06 00 05 01 02 03 04"),
            "a TLS structure ends early: 5 octets wanted, 4 remain at offset 6 (SignedCertificateTimestampList/1)");
  EXPECT_EQ(refusal(scts, "04 0B 00 09 00 01 01 00 04 00 02 03 04"),
            "a TLS structure ends early: 32 octets wanted, 3 remain at offset 10 "
            "(SignedCertificateTimestampList/2)");
  EXPECT_EQ(refusal(scts, "04 04 00 02 00 00"),
            "a TLS structure ends early: 1 octet wanted, 0 remain at offset 6 (SignedCertificateTimestampList)");
  EXPECT_EQ(refusal(scts, "24 04 04 02 00 00"),
            "a string in segments: only an owning read joins it at offset 0 (SignedCertificateTimestampList)");
  EXPECT_EQ(refusal(time, "17 0B 32 30 31 32 31 30 31 36 30 32 5A"), "");
  EXPECT_EQ(refusal(time, "17 0A 32 30 31 32 31 30 31 36 5A 5A"), "malformed time at offset 2 (ExpiredCertsOnCRL)");
  EXPECT_EQ(refusal(static_cast<OcspNoCheck *>(nullptr), "05 01 00"),
            "NULL content is 1 octet at offset 2 (OCSPNoCheck)");
}

TEST(Types, OpenTypesAreReadByTheirIdentifier) {
  const Octets octets = fromHex(test::golden("qCStatements/limit and retention"));
  const auto read = ketra::read<QcStatements>(View(octets));
  const QcStatement &limit = read->statements[1];
  const auto value = limit.as<MonetaryValue>(statement::qcLimitValue);
  EXPECT_EQ(value->text(), "1000000 HUF");
  EXPECT_EQ(limit.as<Integer>(statement::qcRetentionPeriod).fault().code(), uint32_t{FaultCode_OtherKind});
  const auto wrong = limit.as<Integer>(statement::qcLimitValue);
  EXPECT_EQ(wrong.fault().text(), "unexpected tag 0x30, expected 0x02");
}

// An Extension whose value is in segments, or that is no Extension: neither is taken for absent.
TEST(ExtensionsObject, FaultyExtensionsAreNotAbsent) {
  for (const char *extension : {"30 0B 06 03 55 1D 13 24 04 04 02 30 00", "30 0A 06 03 55 1D 13 01 01 FF 04 05"}) {
    const bool isGood = extension[4] == 'B';
    const Octets octets = tlv(0x30, fromHex(extension));
    const Extensions all = Extensions::decode(octets);
    const auto viewed = all.view<BasicConstraints>();
    EXPECT_TRUE(viewed.isFaulty()) << extension;
    EXPECT_TRUE(all.contains<BasicConstraints>());
    EXPECT_TRUE(all.find("2.5.29.19"_oid).isFaulty());
    EXPECT_EQ(viewed.isCritical(), !isGood);
    if (isGood) {
      EXPECT_TRUE(all.get<BasicConstraints>());
    } else {
      EXPECT_THROW(all.get<BasicConstraints>(), Error);
    }
    EXPECT_TRUE(all.find("2.5.29.15"_oid).isAbsent());
    EXPECT_FALSE(all.find("2.5.29.15"_oid));
  }
}

// Extensions are replaced in their places, and erased by type or identifier.
TEST(ExtensionsObject, SetGetEraseIterate) {
  Extensions all;
  EXPECT_FALSE(all.get<BasicConstraints>());
  all.set(BasicConstraints{true}, true);
  KeyUsage usage;
  usage.digitalSignature = usage.decipherOnly = true;
  all.set(usage, false);
  all.set(SubjectKeyId{{1, 2, 3}});
  const Octets null = fromHex("05 00");
  all.set("1.2.3.4"_oid, true, View(null));
  all.set(BasicConstraints{true, 1}, false);
  const auto text = [](const Extensions &of) {
    std::string ids;
    for (const auto &each : of) ids += each->extnID.text() + (each->critical ? "! " : " ");
    return ids;
  };
  const Extensions read = Extensions::decode(all.encode());
  EXPECT_EQ(text(read), "2.5.29.19 2.5.29.15 2.5.29.14 1.2.3.4! ");
  const auto constraints = read.get<BasicConstraints>();
  EXPECT_TRUE(constraints && constraints->cA && *constraints->pathLenConstraint == Integer(1));
  const auto used = read.get<KeyUsage>();
  EXPECT_TRUE(used && *used == usage && *used != KeyUsage());
  EXPECT_TRUE(read.find("1.2.3.4"_oid).isCritical());
  EXPECT_TRUE(all.erase<KeyUsage>() && !all.erase<KeyUsage>() && all.erase("1.2.3.4"_oid));
  EXPECT_EQ(text(all), "2.5.29.19 2.5.29.14 ");
  EXPECT_THROW(Extensions::decode(fromHex("31 00")), Error);
  EXPECT_TRUE(Extensions::decode(Octets()).empty());
}

template <class T>
std::string refusalOf(const T &value) {
  Extensions all;
  try {
    if constexpr (detail::FixedCritical<T>::value) {
      all.set(value);
    } else {
      all.set(value, false);
    }
  } catch (const Error &error) {
    EXPECT_TRUE(all.empty());
    return error.what();
  }
  return "set";
}

TEST(ExtensionsObject, RefusedSetsStoreNothing) {
  const auto point = [](DistributionPointName name) { return CrlDistributionPoints{{{}, {std::move(name)}}}; };
  const auto altName = [](NameKind kind, const char *content) {
    const Octets octets = fromHex(content);
    return IssuerAltName{{dns("a"), GeneralName::of(kind, View(octets))}};
  };
  const std::string empty = "a list without members, one or more are required at offset ";
  const std::string negative = "a negative number, 0 or more is required at offset ";
  const std::pair<std::string, std::string> cases[] = {
      {refusalOf(AuthorityKeyId{{}, {}, 1}), "issuer and serial number come together or not at all (RFC 5280 4.2.1.1)"},
      {refusalOf(CertificatePolicies{}), empty + "0 (CertificatePolicies)"},
      {refusalOf(CertificatePolicies{{{"1.2.3"_oid, {{}}}}}), empty + "8 (CertificatePolicies/1/policyQualifiers)"},
      {refusalOf(ExtKeyUsage{}), empty + "0 (ExtKeyUsage)"},
      {refusalOf(ExtKeyUsage{{{}}}), "OBJECT IDENTIFIER content is 0 octets at offset 2 (ExtKeyUsage/1)"},
      {refusalOf(CrlNumber{-1}), negative + "2 (CRLNumber)"},
      {refusalOf(DeltaCrlIndicator{INT64_MIN}), negative + "2 (DeltaCRLIndicator)"},
      {refusalOf(ReasonCode{static_cast<CrlReason>(7)}), "7 is a value without a name at offset 2 (ReasonCode)"},
      {refusalOf(CertificateIssuer{}), empty + "0 (CertificateIssuer)"},
      {refusalOf(altName(NameKind::otherName, "")),
       "the component with tag 0x06 is missing at offset 5 (IssuerAltName/2)"},
      {refusalOf(altName(NameKind::otherName, "06 01 2A A0 02 0C 05")),
       "length 5 exceeds the 0 remaining octets at offset 12 (IssuerAltName/2)"},
      {refusalOf(altName(NameKind::x400Address, "")),
       "a component that may have several tags is missing at offset 5 (IssuerAltName/2)"},
      {refusalOf(altName(NameKind::registeredID, "")),
       "OBJECT IDENTIFIER content is 0 octets at offset 5 (IssuerAltName/2)"},
      {refusalOf(altName(NameKind::rfc822Name, "C3 A4")),
       "octet 195 is not a character of the string type at offset 7 (IssuerAltName/2)"},
      {refusalOf(point({DistributionPointName::FullName{}})),
       empty + "8 (CRLDistributionPoints/2/distributionPoint/fullName)"},
      {refusalOf(point({DistributionPointName::RelativeName{}})),
       empty + "8 (CRLDistributionPoints/2/distributionPoint/nameRelativeToCRLIssuer)"},
      {refusalOf(CrlDistributionPoints{{{{}, {}, {{}}}}}), empty + "4 (CRLDistributionPoints/1/cRLIssuer)"},
      {refusalOf(NameConstraints{{}, {{}}}), empty + "2 (NameConstraints/excludedSubtrees)"},
      {refusalOf(SubjectDirectoryAttributes{{{"1.2"_oid, {}}}}), empty + "7 (SubjectDirectoryAttributes/1/values)"},
      {refusalOf(InvalidityDate{Time::max()}), "malformed time at offset 0 (InvalidityDate)"},
      {refusalOf(InvalidityDate{Time::min()}), "malformed time at offset 0 (InvalidityDate)"},
  };
  for (const auto &[refusal, expected] : cases) EXPECT_EQ(refusal, expected);
}

TEST(ExtensionsObject, WhatCannotBeSet) {
  SctFields fields;
  const Octets id(32, 0xAB), signature(70'000, 1);
  fields.logId = View(id);
  EXPECT_EQ(refusalOf(SctList{{Sct(fields), Sct(fields)}}), "set");
  fields.signatureOctets = View(signature);
  EXPECT_NE(refusalOf(SctList{{Sct(fields)}}), "set");
  EXPECT_NE(refusalOf(SctList{{Sct(SctFields{})}}), "set");
  EXPECT_NE(refusalOf(SctList{}), "set");
  EXPECT_EQ(refusalOf(AuthorityInfoAccess{{{access::ocsp, uri("http://a.test/")}}}), "set");
  EXPECT_NE(refusalOf(AuthorityInfoAccess{}), "set");
  EXPECT_EQ(refusalOf(NetscapeComment{{"K\xC3\xB6ln"}}),
            "octet 195 is not a character of the string type at offset 3 (NetscapeComment)");
  EXPECT_EQ(refusalOf(MicrosoftCertTypeName{BmpStringOf<Owned>("K\xC3\xB6ln")}), "set");
  EXPECT_NE(refusalOf(MicrosoftCertificateTemplate{access::ocsp, {}, 1}), "set");
  EXPECT_EQ(refusalOf(ExpiredCertsOnCrl{Time()}), "set");
  EXPECT_EQ(encode(ExpiredCertsOnCrl{Time()})[0], 0x18);
}

TEST(Values, Integers) {
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
    const Octets content = fromHex(c.content);
    const auto integer = Integer::ofContent(View(content));
    ASSERT_TRUE(integer) << c.content;
    EXPECT_EQ(integer->hex(), c.hex);
    EXPECT_EQ(integer->text(), c.text);
    EXPECT_EQ(Integer(integer->number().value_or(0)) == *integer, integer->number().has_value());
  }
  const Octets padded = fromHex("0000FF");
  EXPECT_EQ(Integer::ofUnsigned(View(padded)), Integer(255));
  EXPECT_EQ(Integer::ofUnsigned({}), Integer());
  EXPECT_TRUE(Integer(-129) < Integer(-128) && Integer(-1) < Integer(0) && Integer(255) < Integer(256));
}

TEST(Values, Texts) {
  const std::pair<const char *, int64_t> times[] = {
      {"1970-01-01T00:00:00Z", 0},
      {"1969-12-31T23:59:59.999999Z", -1},
      {"0000-01-01T00:00:00Z", -62'167'219'200'000'000},
      {"9999-12-31T23:59:59.999999Z", 253'402'300'799'999'999},
  };
  for (const auto &[text, sinceEpoch] : times) EXPECT_EQ(timeText(Time(std::chrono::microseconds(sinceEpoch))), text);

  for (const std::string text : {"9.9", "1", "1.2.", "01.2", "1.40"}) EXPECT_FALSE(ObjectIdentifier::parse(text));
  EXPECT_FALSE(ObjectIdentifier::parse(std::string("2.5.29.19\0.1", 12)));
  EXPECT_EQ((*ObjectIdentifier::parse("2.999.9223372036854775807")).text(), "2.999.9223372036854775807");

  for (const char *address : {"C0000201", "C0000200FFFFFF00", "C0000200FF00FF00", "20010DB8000000000000000000000001",
                              "00000000000000000000000000000000", "00010000000200000003000000040000",
                              "20010DB8000000000000000000000000FFFFFFFF000000000000000000000000"}) {
    const Octets octets = fromHex(address);
    const AsnOct c{octets.data(), static_cast<uint32_t>(octets.size())};
    char text[80];
    ASSERT_EQ(X509IpAddressToText(&c, text, sizeof text, nullptr), 0);
    EXPECT_EQ(ip(View(octets)).text(), text);
  }

  const Octets bmp = fromHex("0041 0416");
  EXPECT_EQ(Text(TextType::Bmp, View(bmp)).utf8(), "A\xd0\x96");
  EXPECT_TRUE(Text(TextType::Visible, View(std::string_view("\xe4"))).hasOutside());
  const Octets notice = encode(UserNotice{NoticeReference{"A", {1}}, "B"});
  EXPECT_EQ(notice, fromHex("30 0D 30 08 0C 01 41 30 03 02 01 01 0C 01 42"));
  const Any qualifier{View(notice)};
  EXPECT_TRUE(qualifier.as<UserNotice>() && !qualifier.as<Text>());

  Name name;
  name.add(attribute::countryName, "GB").add(attribute::organizationName, "a, \xc3\xa4").add("1.2.3"_oid, "x");
  EXPECT_EQ(name.text(), "1.2.3=#0c0178,O=a\\, \xc3\xa4,C=GB");
  EXPECT_EQ(*Name::of(name.stored()), name);
  EXPECT_TRUE(name.find(attribute::countryName) && !name.find(attribute::commonName));
}

TEST(Values, LengthsOfEverySize) {
  for (const std::size_t size : {0u, 0x7Fu, 0x80u, 0xFFu, 0x100u, 0xFFFFu, 0x10000u, 0x1000000u}) {
    const Octets octets(size, 0x42);
    const Octets encoding = encode(OctetString(View(octets)));
    const auto viewed = view<OctetStringView>(View(encoding));
    ASSERT_TRUE(viewed);
    EXPECT_TRUE(viewed->octets() == View(octets)) << size;
    EXPECT_EQ(encoding, tlv(0x04, octets)) << size;
  }
}

// A member without an end is the last one, whatever is added.
TEST(ExtensionsObject, WhatIsAddedCanBeRead) {
  for (const char *members : {"30 02 30 05", "30 02 30 80", "30 01 30"}) {
    Extensions all = Extensions::decode(fromHex(members));
    all.set(BasicConstraints{true}, true);
    all.set(CrlNumber{1});
    EXPECT_EQ(all.size(), 3u) << members;
    const Extensions again = Extensions::decode(all.encode());
    EXPECT_TRUE(again.get<BasicConstraints>()) << members;
    EXPECT_TRUE(again.get<CrlNumber>()) << members;
  }
}

TEST(ExtensionsObject, IsReadByManyThreads) {
  Octets members;
  forEach(ExtensionTypes{}, [&](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    const Octets value = goldenOf<T>().front();
    const Octets id = tlv(0x06, T::oid.content().copy());
    members = test::operator+(members, tlv(0x30, test::operator+(id, tlv(0x04, value))));
  });
  const Extensions all = Extensions::decode(tlv(0x30, members));
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&all] {
      forEach(ExtensionTypes{}, [&](auto *type) {
        using T = std::remove_pointer_t<decltype(type)>;
        EXPECT_FALSE(firstFault(*all.view<T>()));
        EXPECT_EQ(encode(*all.get<T>()), goldenOf<T>().front());
      });
    });
  }
  for (std::thread &thread : threads) thread.join();
}

TEST(Build, GivesTheValueThatWasWalked) {
  forEach(ExtensionTypes{}, [](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    for (const Octets &octets : goldenOf<T>()) {
      test::Recorder recorder;
      walk(*read<T>(View(octets)), recorder);
      T built{};
      std::string path;
      EXPECT_TRUE(build(recorder.root.at(0), built, path)) << T::name << path;
      EXPECT_EQ(encode(built), octets) << T::name;
    }
  });
  test::Recorder recorder;
  walk(NameConstraints{{{{dns("a")}}}, {}}, recorder);
  recorder.root.members[0].second->members[0].second->members[0].second->members.clear();
  NameConstraints built;
  std::string path;
  EXPECT_FALSE(build(recorder.root.at(0), built, path));
  EXPECT_EQ(path, "/permittedSubtrees/1/base");
}

uint32_t codeOfText(const std::string &text) {
  try {
    ipFromText(text);
  } catch (const CError &error) {
    return error.code();
  }
  return 0;
}

TEST(CBridge, CarriesExtensionsAndRefusals) {
  Extensions extensions;
  extensions.set(BasicConstraints{true, 3}, true);
  extensions.set(SubjectAltName{{ipFromText("192.0.2.1"), ipFromText("2001:db8::1")}}, false);
  const test::Extensions object;
  EXPECT_TRUE(extensionsOf(object).empty());
  intoObject(extensions, object);
  EXPECT_EQ(extensionsOf(object).encode(), extensions.encode());
  EXPECT_THROW(intoObject({}, object), CError) << "an object is never emptied by one without extensions";
  EXPECT_EQ(extensionsOf(object).encode(), extensions.encode());
  EXPECT_EQ(codeOfText("192.0.2.256"), uint32_t{X509IpError_Text});
  EXPECT_EQ(codeOfText(std::string("192.0.2.1\0.example", 18)), uint32_t{X509IpError_Text});
}

}  // namespace
}  // namespace ketra
