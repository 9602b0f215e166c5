#include "reencoding.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "asn1_reader.hpp"
#include "ketra/contracts/asn1_schema.hpp"
#include "out_of_memory.hpp"

namespace tool {
namespace {

using namespace ketra::schema;

// As much of the definitions as it takes to find the part that differs.
// clang-format off
constexpr Row kRows[] = {
    Sequence("BasicConstraints"),
        Component("cA", Boolean, Optional),
        Component("pathLenConstraint", Integer, Optional),
    Type("KeyUsage", BitString),
    SequenceOf("Names"),
        Element(OpenType),
    Sequence("AuthorityKeyId"),
        Component("keyIdentifier", Context(0), OctetString, Optional),
        Component("authorityCertIssuer", Context(1), "Names", Optional),
        Component("authorityCertSerialNumber", Context(2), Integer, Optional),
    SequenceOf("Policies"),
        Element("Policy"),
    Sequence("Policy"),
        Component("policyIdentifier", ObjectIdentifier),
        Component("policyQualifiers", "Names", Optional),
    SequenceOf("Points"),
        Element("Point"),
    Sequence("Point"),
        Component("distributionPoint", Explicit(0), "PointName", Optional),
        Component("reasons", Context(1), BitString, Optional),
        Component("cRLIssuer", Context(2), "Names", Optional),
    Choice("PointName"),
        Component("fullName", Context(0), "Names"),
        Component("nameRelativeToCRLIssuer", Context(1), "Set"),
    SetOf("Set"),
        Element(OpenType),
    Sequence("IssuingPoint"),
        Component("distributionPoint", Explicit(0), "PointName", Optional),
        Component("onlyContainsUserCerts", Context(1), Boolean, Optional),
        Component("onlyContainsCACerts", Context(2), Boolean, Optional),
        Component("onlySomeReasons", Context(3), BitString, Optional),
        Component("indirectCRL", Context(4), Boolean, Optional),
    Sequence("NameConstraints"),
        Component("permittedSubtrees", Context(0), "Subtrees", Optional),
        Component("excludedSubtrees", Context(1), "Subtrees", Optional),
    SequenceOf("Subtrees"),
        Element("Subtree"),
    Sequence("Subtree"),
        Component("base", OpenType),
        Component("minimum", Context(0), Integer, Optional),
        Component("maximum", Context(1), Integer, Optional),
};
// clang-format on
constexpr auto kRecords = compile(kRows);
constexpr const AsnType *kBasicConstraints = &kRecords[indexOf(kRows, "BasicConstraints")];
constexpr const AsnType *kKeyUsage = &kRecords[indexOf(kRows, "KeyUsage")];
constexpr const AsnType *kNames = &kRecords[indexOf(kRows, "Names")];
constexpr const AsnType *kAuthorityKeyId = &kRecords[indexOf(kRows, "AuthorityKeyId")];
constexpr const AsnType *kPolicies = &kRecords[indexOf(kRows, "Policies")];
constexpr const AsnType *kPoints = &kRecords[indexOf(kRows, "Points")];
constexpr const AsnType *kPoint = &kRecords[indexOf(kRows, "Point")];
constexpr const AsnType *kIssuingPoint = &kRecords[indexOf(kRows, "IssuingPoint")];
constexpr const AsnType *kNameConstraints = &kRecords[indexOf(kRows, "NameConstraints")];

constexpr const char *kFlags[] = {"onlyContainsUserCerts", "onlyContainsCACerts", "indirectCRL"};
constexpr const char *kSubtreeLists[] = {"permittedSubtrees", "excludedSubtrees"};
constexpr std::size_t kUsageBits = 9, kReasonBits = 7;  // what the interface carries

constexpr char kUnordered[] = "the members of a SET are not in the order of DER";
constexpr char kSegments[] = "a string comes in segments";
constexpr char kNotFf[] = "a TRUE is not FF";  // X.690 11.1
constexpr char kDefault[] = "the default is written out";
constexpr char kOther[] = "contents are not DER";

// One value and how it is written. The finders below give the reason for the part at a path; empty: it is the same.
struct Both {
  Both(const AsnType *type, ketra::View value, ketra::View writtenValue)
      : before(type, value), after(type, writtenValue) {}
  Asn1Reader before;
  Asn1Reader after;

  bool areEqual(const std::string &path) const {
    const std::optional<ketra::View> was = before.octets(path);
    const std::optional<ketra::View> is = after.octets(path);
    return was.has_value() == is.has_value() && (!was || std::ranges::equal(*was, *is));
  }
};

std::string labelled(const std::string &label, const std::string &reason) {
  return reason.empty() ? reason : label + ": " + reason;
}

// The first bit that is set behind the `count` bits which the interface carries.
std::string lostBit(const Asn1Reader &reader, const std::string &path, std::size_t count) {
  constexpr std::size_t kMost = 1 << 20, kMostInSegments = 1 << 10;
  std::size_t size = kMostInSegments;
  if (!reader.isInSegments(path)) {
    const std::optional<ketra::View> octets = reader.octets(path);
    if (!octets) return {};
    size = std::min(octets->size() * 8, kMost);
  }
  const ketra::Octets bits = reader.bits(path, static_cast<uint32_t>(size));
  for (std::size_t i = count; i < bits.size(); ++i) {
    if (bits[i] == 1) return "bit " + std::to_string(i) + " is not carried";
  }
  return {};
}

// X.690 11.2
std::string bitsReason(const Both &both, const std::string &path, std::size_t count) {
  std::string lost = lostBit(both.before, path, count);
  if (!lost.empty()) return lost;
  if (both.before.isInSegments(path)) return kSegments;
  if (both.areEqual(path)) return {};
  const ketra::View was = both.before.octets(path).value();
  const ketra::View is = both.after.octets(path).value();
  const bool isShorter = was.size() != is.size() || *was.begin() != *is.begin();
  return isShorter ? "trailing zero bits are written out" : "unused bits are set";
}

// By the first octets of a name and of how it is written. Values of open types stay as they are.
std::string nameReason(const Both &both, const std::string &path) {
  constexpr uint8_t kConstructed = 0x20, kX400Address = 0xA3, kDirectoryName = 0xA4, kEdiPartyName = 0xA5;
  if (both.areEqual(path)) return {};
  const uint8_t before = *both.before.octets(path)->data();
  const uint8_t after = *both.after.octets(path)->data();
  if ((before ^ after) == kConstructed || before == kEdiPartyName) return kSegments;
  return before == kX400Address || before == kDirectoryName ? kUnordered : kOther;
}

// The first member for which `find(path)` has a reason.
template <class Find>
std::string memberReason(const Asn1Reader &reader, const std::string &list, const char *label, const Find &find) {
  const uint32_t count = reader.count(list);
  const std::string prefix = list == "/" ? "" : list + "/";
  for (uint32_t i = 1; i <= count; ++i) {
    const std::string number = std::to_string(i);
    const std::string reason = find(prefix + number);
    if (!reason.empty()) return labelled(std::string(label) + " " + number, reason);
  }
  return {};
}

std::string listReason(const Both &both, const std::string &list) {
  return memberReason(both.before, list, "name", [&](const std::string &path) { return nameReason(both, path); });
}

std::string pointNameReason(const Both &both, const std::string &path) {
  if (both.areEqual(path + "/fullName") && both.areEqual(path + "/nameRelativeToCRLIssuer")) return {};
  const std::string reason = labelled("fullName", listReason(both, path + "/fullName"));
  return reason.empty() ? std::string("nameRelativeToCRLIssuer: ").append(kUnordered) : reason;
}

}  // namespace

std::string basicConstraintsReason(ketra::View, ketra::View) { return kNotFf; }

std::string keyUsageReason(ketra::View value, ketra::View written) {
  return bitsReason(Both(kKeyUsage, value, written), "/", kUsageBits);
}

std::string namesReason(ketra::View value, ketra::View written) {
  const std::string reason = listReason(Both(kNames, value, written), "/");
  return reason.empty() ? kOther : reason;
}

std::string pointsReason(ketra::View value, ketra::View written) {
  const Both both(kPoints, value, written);
  const std::string reason = memberReason(both.before, "/", "point", [&](const std::string &point) {
    std::string found = pointNameReason(both, point + "/distributionPoint");
    if (found.empty()) found = labelled("reasons", bitsReason(both, point + "/reasons", kReasonBits));
    if (found.empty()) found = labelled("cRLIssuer", listReason(both, point + "/cRLIssuer"));
    return found;
  });
  return reason.empty() ? kOther : reason;
}

std::string issuingPointReason(ketra::View value, ketra::View written) {
  const Both both(kIssuingPoint, value, written);
  std::string reason = pointNameReason(both, "distributionPoint");
  if (reason.empty()) reason = labelled("onlySomeReasons", bitsReason(both, "onlySomeReasons", kReasonBits));
  for (const char *flag : kFlags) {
    if (reason.empty() && !both.areEqual(flag)) reason = labelled(flag, kNotFf);
  }
  return reason.empty() ? kOther : reason;
}

std::string nameConstraintsReason(ketra::View value, ketra::View written) {
  const Both both(kNameConstraints, value, written);
  for (const char *list : kSubtreeLists) {
    const std::string reason = memberReason(both.before, list, "subtree",
                                            [&](const std::string &path) { return nameReason(both, path + "/base"); });
    if (!reason.empty()) return labelled(list, reason);
  }
  return kOther;
}

std::string authorityKeyIdReason(ketra::View value, ketra::View written) {
  const Both both(kAuthorityKeyId, value, written);
  if (both.before.isInSegments("keyIdentifier")) return labelled("keyIdentifier", kSegments);
  const std::string reason = labelled("authorityCertIssuer", listReason(both, "authorityCertIssuer"));
  return reason.empty() ? kOther : reason;
}

// Qualifiers stay as they are.
std::string policiesReason(ketra::View value, ketra::View written) {
  const Both both(kPolicies, value, written);
  const std::string reason = memberReason(both.before, "/", "policy", [&](const std::string &policy) {
    const std::optional<ketra::View> list = both.before.octets(policy + "/policyQualifiers");
    return std::string(list && list->empty() ? "an empty list of qualifiers is left out" : "");
  });
  return reason.empty() ? kOther : reason;
}

std::string timeReason(ketra::View, ketra::View) { return "a time is not in the form of DER"; }

std::string attributesReason(ketra::View value, ketra::View written) {
  const Both both(kNames, value, written);
  const std::string reason = memberReason(both.before, "/", "attribute", [&](const std::string &attribute) {
    return std::string(both.areEqual(attribute) ? "" : kUnordered);
  });
  return reason.empty() ? kOther : reason;
}

std::string basicConstraintsDefault(ketra::View value) {
  return Asn1Reader(kBasicConstraints, value).boolean("cA") == false ? labelled("cA", kDefault) : "";
}

std::string issuingPointDefault(ketra::View value) {
  const Asn1Reader reader(kIssuingPoint, value);
  for (const char *flag : kFlags) {
    if (reader.boolean(flag) == false) return labelled(flag, kDefault);
  }
  return {};
}

std::string nameConstraintsDefault(ketra::View value) {
  const Asn1Reader reader(kNameConstraints, value);
  for (const char *list : kSubtreeLists) {
    const std::string reason = memberReason(reader, list, "subtree", [&](const std::string &subtree) {
      const std::optional<ketra::View> minimum = reader.octets(subtree + "/minimum");
      const bool isZero = minimum && minimum->size() == 1 && *minimum->data() == 0;
      return isZero ? labelled("minimum", kDefault) : "";
    });
    if (!reason.empty()) return labelled(list, reason);
  }
  return {};
}

std::string keyUsageLoss(ketra::View value) { return lostBit(Asn1Reader(kKeyUsage, value), "/", kUsageBits); }

// Each point by itself, as show reads them.
std::string pointsLoss(ketra::View value) {
  const Asn1Reader list(AsnType_SequenceOfAny, value);
  return memberReason(list, "/", "point", [&](const std::string &number) {
    try {
      const Asn1Reader point(kPoint, list.octets(number).value());
      return labelled("reasons", lostBit(point, "reasons", kReasonBits));
    } catch (const ketra::Error &error) {
      throwIfOutOfMemory(error);
      return std::string();
    }
  });
}

std::string issuingPointLoss(ketra::View value) {
  return labelled("onlySomeReasons", lostBit(Asn1Reader(kIssuingPoint, value), "onlySomeReasons", kReasonBits));
}

}  // namespace tool
