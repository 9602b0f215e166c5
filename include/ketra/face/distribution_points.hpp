/// @file
/// CRLDistributionPoints (RFC 5280 4.2.1.13), in a strict form, which can be set, and a tolerant one, which can only be
/// read and has an UnreadableName in the place of each bad name.
/// @code
/// ketra::DistributionPoint point;
/// point.distributionPoint = ketra::FullName{{ketra::uri("http://ca.example/ca.crl")}};
/// extensions.set(ketra::CrlDistributionPoints{{point}}, /*critical=*/false);
/// @endcode
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/distribution_point_name.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_names.hpp"
#include "ketra/face/point_nodes.hpp"

namespace ketra {
inline namespace face {

/// One distribution point; `N` is GeneralName or NameOrError.
template <class N>
struct BasicDistributionPoint {
  std::optional<BasicDistributionPointName<N>> distributionPoint;  ///< where the CRL is
  std::optional<Reasons> reasons;                                  ///< what it covers; all when absent
  std::optional<std::vector<N>> cRLIssuer;  ///< who issues it, when not the issuer of the certificate

  friend bool operator==(const BasicDistributionPoint &a, const BasicDistributionPoint &b) {
    return a.distributionPoint == b.distributionPoint && a.reasons == b.reasons && a.cRLIssuer == b.cRLIssuer;
  }
  friend bool operator!=(const BasicDistributionPoint &a, const BasicDistributionPoint &b) { return !(a == b); }
};
/// The strict form.
using DistributionPoint = BasicDistributionPoint<GeneralName>;
/// A member of the list that is no point has a fullName of one UnreadableName, which holds the whole member.
using TolerantDistributionPoint = BasicDistributionPoint<NameOrError>;

/// Where the CRLs are (RFC 5280 4.2.1.13); `N` is GeneralName or NameOrError.
template <class N>
struct BasicCrlDistributionPoints {
  std::vector<BasicDistributionPoint<N>> points;  ///< one or more, to be set

  friend bool operator==(const BasicCrlDistributionPoints &a, const BasicCrlDistributionPoints &b) {
    return a.points == b.points;
  }
  friend bool operator!=(const BasicCrlDistributionPoints &a, const BasicCrlDistributionPoints &b) { return !(a == b); }
};
/// The strict form.
using CrlDistributionPoints = BasicCrlDistributionPoints<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantCrlDistributionPoints = BasicCrlDistributionPoints<NameOrError>;

namespace detail {

// What one point needs of nodes.
struct PointShape {
  // Of the point with this content.
  explicit PointShape(View content) : name(contentOf(content, 0)), issuers(countOf(contentOf(content, 2))) {}

  PointNameShape name;
  uint32_t issuers;
};

// The points as the C interface wants them.
class PointChain {
 public:
  // For a get to fill with the points of a list, which leaves memory in the pool of `object`; given back with the
  // chain.
  PointChain(KetraObject object, View list) : object_(object), nodes_(countsOf(list)), points_(countOf(list)) {
    Encodings points(list);
    for (KetraDistributionPoint &c : points_) {
      points.next();
      const PointShape shape(points.content());
      nodes_.prepare(shape.name, c.distributionPoint);
      c.cRLIssuer.genNames = nodes_.names.chain(shape.issuers);
    }
  }
  explicit PointChain(const std::vector<DistributionPoint> &points)
      : nodes_(countsOf(points)), points_(points.size()), reasons_(points.size()) {
    for (std::size_t i = 0; i < points.size(); ++i) {
      points_[i].distributionPoint = nodes_.name(points[i].distributionPoint);
      points_[i].reasons = reasonBits(points[i].reasons, &reasons_[i]);
      if (points[i].cRLIssuer) points_[i].cRLIssuer = {nodes_.names.chain(*points[i].cRLIssuer), 1};
    }
  }
  PointChain(const PointChain &) = delete;
  PointChain &operator=(const PointChain &) = delete;
  ~PointChain() {
    if (object_ == nullptr) return;
    for (const KetraDistributionPoint &point : points_) giveBack(object_, point.distributionPoint, point.reasons);
  }

  KetraDistributionPoint *head() { return points_.head(); }

  std::vector<DistributionPoint> points() const {
    std::vector<DistributionPoint> points;
    points.reserve(points_.size());
    for (const KetraDistributionPoint &c : points_) {
      DistributionPoint &point = points.emplace_back();
      copyPointName(c.distributionPoint, point.distributionPoint);
      copyReasons(c.reasons, point.reasons);
      if (c.cRLIssuer.option == 1) copyNames(c.cRLIssuer.genNames, point.cRLIssuer.emplace());
    }
    return points;
  }

 private:
  static NodeCounts countsOf(View list) {
    NodeCounts counts;
    for (Encodings points(list); points.next();) {
      const PointShape shape(points.content());
      counts.add(shape.name);
      counts.names += shape.issuers;
    }
    return counts;
  }
  static NodeCounts countsOf(const std::vector<DistributionPoint> &points) {
    NodeCounts counts;
    for (const DistributionPoint &point : points) {
      counts.add(point.distributionPoint);
      if (point.cRLIssuer) counts.names += point.cRLIssuer->size();
    }
    return counts;
  }

  KetraObject object_ = nullptr;
  PointNodes nodes_;
  Nodes<KetraDistributionPoint> points_;
  std::vector<uint8_t> reasons_;  // an octet for each
};

// A member of the list by itself.
inline TolerantDistributionPoint readPoint(View encoding, SharedErrors &errors) {
  const auto unreadable = [](UnreadableName name) {
    TolerantDistributionPoint point;
    point.distributionPoint = TolerantFullName{{std::move(name)}};
    return point;
  };
  try {
    AsnErrorBlock err;
    const std::optional<WorkValue> point = WorkValue::decoded(asn1::kPoint, encoding, &err);
    if (!point) return unreadable(errors.unreadable(encoding, err));
    TolerantDistributionPoint read;
    read.distributionPoint = readPointName(*point, point->get(), errors);
    read.reasons = readReasons(*point, point->get(), "reasons");
    AsnValue issuer = point->element(point->get(), "cRLIssuer");
    if (issuer != nullptr) read.cRLIssuer = readNames(*point, issuer, errors);
    return read;
  } catch (const Error &error) {
    return unreadable(errors.unreadable(encoding, error));
  }
}

}  // namespace detail

template <class N>
struct ExtensionTraits<BasicCrlDistributionPoints<N>> {
  using Points = BasicCrlDistributionPoints<N>;
  static constexpr bool kIsStrict = std::is_same_v<N, GeneralName>;
  static constexpr bool kCallerSetsCritical = true;

  static const Objid &objid() { return X509Objid_CRLDistributionPoints; }

  static int32_t set(KetraObject object, int32_t critical, const Points &value, AsnErrorBlock *err) {
    static_assert(kIsStrict, "a tolerant form is for reading only");
    detail::PointChain chain(value.points);
    return KetraObjectSsetCRLDistributionPoints(object, critical, chain.head(), err);
  }

  static int32_t get(KetraObject object, Points &value, AsnErrorBlock *err) {
    if constexpr (kIsStrict) {
      detail::PointChain chain(object, detail::contentOf(detail::storedValue(object, objid())));
      if (const int32_t result = KetraObjectSgetCRLDistributionPoints(object, chain.head(), err); result != 0) {
        return result;
      }
      value.points = chain.points();
    } else {
      const detail::WorkValue list(AsnType_SequenceOfAny, detail::storedValue(object, objid()));
      const uint32_t count = list.count(list.get());
      detail::SharedErrors errors;
      value.points.reserve(count);
      for (uint32_t i = 1; i <= count; ++i) {
        value.points.push_back(detail::readPoint(list.octets(list.get(), detail::MemberPath(i).get()), errors));
      }
    }
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
