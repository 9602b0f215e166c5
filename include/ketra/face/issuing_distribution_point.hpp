/// @file
/// IssuingDistributionPoint (RFC 5280 5.2.5), in a strict form, which can be set, and a tolerant one, which can only be
/// read and has an UnreadableName in the place of each bad name.
#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/distribution_point_name.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_names.hpp"
#include "ketra/face/point_nodes.hpp"

namespace ketra {
inline namespace face {

/// What a CRL covers (RFC 5280 5.2.5); `N` is GeneralName or NameOrError. Always critical.
template <class N>
struct BasicIssuingDistributionPoint {
  std::optional<BasicDistributionPointName<N>> distributionPoint;  ///< where the CRL is
  std::optional<bool> onlyContainsUserCerts;                       ///< of end entities only
  std::optional<bool> onlyContainsCACerts;                         ///< of CAs only
  std::optional<Reasons> onlySomeReasons;                          ///< for these reasons only
  std::optional<bool> indirectCRL;                                 ///< of several issuers

  friend bool operator==(const BasicIssuingDistributionPoint &a, const BasicIssuingDistributionPoint &b) {
    return a.distributionPoint == b.distributionPoint && a.onlyContainsUserCerts == b.onlyContainsUserCerts &&
           a.onlyContainsCACerts == b.onlyContainsCACerts && a.onlySomeReasons == b.onlySomeReasons &&
           a.indirectCRL == b.indirectCRL;
  }
  friend bool operator!=(const BasicIssuingDistributionPoint &a, const BasicIssuingDistributionPoint &b) {
    return !(a == b);
  }
};
/// The strict form.
using IssuingDistributionPoint = BasicIssuingDistributionPoint<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantIssuingDistributionPoint = BasicIssuingDistributionPoint<NameOrError>;

namespace detail {

// What a get fills. The memory that it leaves in the pool of `object` is given back with this.
class IssuingPoint {
 public:
  KetraIssuingDistributionPoint c{};

  IssuingPoint(KetraObject object, const PointNameShape &shape) : object_(object), nodes_(countsOf(shape)) {
    nodes_.prepare(shape, c.distributionPoint);
  }
  IssuingPoint(const IssuingPoint &) = delete;
  IssuingPoint &operator=(const IssuingPoint &) = delete;
  ~IssuingPoint() { giveBack(object_, c.distributionPoint, c.onlySomeReasons); }

 private:
  static NodeCounts countsOf(const PointNameShape &shape) {
    NodeCounts counts;
    counts.add(shape);
    return counts;
  }

  KetraObject object_;
  PointNodes nodes_;
};

inline std::optional<bool> readBoolean(const WorkValue &value, const char *path) {
  AsnBoolOpt c{};
  run([&](AsnErrorBlock *err) { return AsnGetOptBoolBER(value.object(), value.get(), path, &c, err); });
  return optional(c);
}

}  // namespace detail

template <class N>
struct ExtensionTraits<BasicIssuingDistributionPoint<N>> {
  using Point = BasicIssuingDistributionPoint<N>;
  static constexpr bool kIsStrict = std::is_same_v<N, GeneralName>;
  static constexpr bool kCallerSetsCritical = false;

  static const Objid &objid() { return X509Objid_IssuingDistributionPoint; }

  static int32_t set(KetraObject object, const Point &value, AsnErrorBlock *err) {
    static_assert(kIsStrict, "a tolerant form is for reading only");
    detail::NodeCounts counts;
    counts.add(value.distributionPoint);
    detail::PointNodes nodes(counts);
    uint8_t reasons = 0;
    const KetraIssuingDistributionPoint c{
        nodes.name(value.distributionPoint), detail::optional(value.onlyContainsUserCerts),
        detail::optional(value.onlyContainsCACerts), detail::reasonBits(value.onlySomeReasons, &reasons),
        detail::optional(value.indirectCRL)};
    return KetraObjectSsetIssuingDistributionPoint(object, &c, err);
  }

  static int32_t get(KetraObject object, Point &value, AsnErrorBlock *err) {
    if constexpr (kIsStrict) {
      const View stored = detail::contentOf(detail::storedValue(object, objid()));
      detail::IssuingPoint point(object, detail::PointNameShape(detail::contentOf(stored, 0)));
      if (const int32_t result = KetraObjectSgetIssuingDistributionPoint(object, &point.c, err); result != 0) {
        return result;
      }
      detail::copyPointName(point.c.distributionPoint, value.distributionPoint);
      value.onlyContainsUserCerts = detail::optional(point.c.onlyContainsUserCerts);
      value.onlyContainsCACerts = detail::optional(point.c.onlyContainsCACerts);
      detail::copyReasons(point.c.onlySomeReasons, value.onlySomeReasons);
      value.indirectCRL = detail::optional(point.c.indirectCRL);
    } else {
      const detail::WorkValue point(detail::asn1::kIssuingPoint, detail::storedValue(object, objid()));
      detail::SharedErrors errors;
      value = {detail::readPointName(point, point.get(), errors), detail::readBoolean(point, "onlyContainsUserCerts"),
               detail::readBoolean(point, "onlyContainsCACerts"),
               detail::readReasons(point, point.get(), "onlySomeReasons"), detail::readBoolean(point, "indirectCRL")};
    }
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
