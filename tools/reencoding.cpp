#include "reencoding.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "asn1_reader.hpp"
#include "contracts/asn1_schema.hpp"

namespace tool {
namespace {

using namespace ketra::schema;

// As much of the definitions as it takes to find the part that differs.
// clang-format off
constexpr Row kRows[] = {
    Type("KeyUsage", BitString),
    SequenceOf("Names"),
        Element(OpenType),
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
constexpr const AsnType *kKeyUsage = &kRecords[indexOf(kRows, "KeyUsage")];
constexpr const AsnType *kNames = &kRecords[indexOf(kRows, "Names")];
constexpr const AsnType *kPoints = &kRecords[indexOf(kRows, "Points")];
constexpr const AsnType *kIssuingPoint = &kRecords[indexOf(kRows, "IssuingPoint")];
constexpr const AsnType *kNameConstraints = &kRecords[indexOf(kRows, "NameConstraints")];

constexpr char kUnordered[] = "the members of a SET are not in the order of DER";
constexpr char kSegments[] = "a string comes in segments";
constexpr char kNotFf[] = "a TRUE is not FF";  // X.690 11.1
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

// The interface carries the first `count` bits; X.690 11.2 for the others.
std::string bitsReason(const Both &both, const std::string &path, std::size_t count) {
  constexpr std::size_t kMost = 1 << 20;
  const std::optional<ketra::View> was = both.before.octets(path);
  const std::optional<ketra::View> is = both.after.octets(path);
  const ketra::Octets bits = both.before.bits(path, static_cast<uint32_t>(std::min(was->size() * 8, kMost)));
  for (std::size_t i = count; i < bits.size(); ++i) {
    if (bits[i] == 1) return "bit " + std::to_string(i) + " is not carried";
  }
  if (std::ranges::equal(*was, *is)) return {};
  const bool isShorter = was->size() != is->size() || was->begin()[0] != is->begin()[0];
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
std::string memberReason(const Both &both, const std::string &list, const char *label, const Find &find) {
  const uint32_t count = both.before.count(list);
  for (uint32_t i = 1; i <= count; ++i) {
    const std::string number = std::to_string(i);
    const std::string reason = find(list == "/" ? number : list + "/" + number);
    if (!reason.empty()) return label + (" " + number) + ": " + reason;
  }
  return {};
}

std::string listReason(const Both &both, const std::string &list) {
  return memberReason(both, list, "name", [&](const std::string &path) { return nameReason(both, path); });
}

std::string pointNameReason(const Both &both, const std::string &path) {
  if (both.areEqual(path + "/fullName") && both.areEqual(path + "/nameRelativeToCRLIssuer")) return {};
  const std::string reason = labelled("fullName", listReason(both, path + "/fullName"));
  return reason.empty() ? std::string("nameRelativeToCRLIssuer: ") + kUnordered : reason;
}

std::string reasonsReason(const Both &both, const std::string &path) {
  constexpr std::size_t kCarried = 7;
  if (both.before.isInSegments(path)) return kSegments;
  return both.before.octets(path) ? bitsReason(both, path, kCarried) : "";
}

}  // namespace

std::string basicConstraintsReason(ketra::View, ketra::View) { return kNotFf; }

std::string keyUsageReason(ketra::View value, ketra::View written) {
  constexpr std::size_t kNamed = 9;
  return bitsReason(Both(kKeyUsage, value, written), "/", kNamed);
}

std::string namesReason(ketra::View value, ketra::View written) {
  const std::string reason = listReason(Both(kNames, value, written), "/");
  return reason.empty() ? kOther : reason;
}

std::string pointsReason(ketra::View value, ketra::View written) {
  const Both both(kPoints, value, written);
  const std::string reason = memberReason(both, "/", "point", [&](const std::string &point) {
    std::string found = pointNameReason(both, point + "/distributionPoint");
    if (found.empty()) found = labelled("reasons", reasonsReason(both, point + "/reasons"));
    if (found.empty()) found = labelled("cRLIssuer", listReason(both, point + "/cRLIssuer"));
    return found;
  });
  return reason.empty() ? kOther : reason;
}

std::string issuingPointReason(ketra::View value, ketra::View written) {
  const Both both(kIssuingPoint, value, written);
  std::string reason = pointNameReason(both, "distributionPoint");
  if (reason.empty()) reason = labelled("onlySomeReasons", reasonsReason(both, "onlySomeReasons"));
  for (const char *flag : {"onlyContainsUserCerts", "onlyContainsCACerts", "indirectCRL"}) {
    if (reason.empty() && !both.areEqual(flag)) reason = labelled(flag, kNotFf);
  }
  return reason.empty() ? kOther : reason;
}

std::string nameConstraintsReason(ketra::View value, ketra::View written) {
  const Both both(kNameConstraints, value, written);
  for (const char *list : {"permittedSubtrees", "excludedSubtrees"}) {
    const std::string reason =
        memberReason(both, list, "subtree", [&](const std::string &path) { return nameReason(both, path + "/base"); });
    if (!reason.empty()) return labelled(list, reason);
  }
  return kOther;
}

}  // namespace tool
