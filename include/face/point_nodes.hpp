/// @file
/// The parts of distribution points from and to the C interface, and read piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

#include "face/asn1.hpp"
#include "face/base.hpp"
#include "face/distribution_point_name.hpp"
#include "face/general_names.hpp"

namespace ketra {

namespace detail {

// ---- ReasonFlags --------------------------------------------------------------------------------------------------

inline constexpr uint32_t kReasonBits = 7;  // they fit one octet

// `octet` holds the bits.
inline AsnBitOpt reasonBits(const std::optional<Reasons> &reasons, uint8_t *octet) {
  if (!reasons) return {};
  unsigned bit = 0x80;
  *octet = 0;
  for (const Reasons::Bit &each : Reasons::bits()) {
    if ((*reasons).*each.member) *octet = static_cast<uint8_t>(*octet | bit);
    bit >>= 1;
  }
  return {{octet, kReasonBits}, 1};
}

inline std::optional<Reasons> reasonsIn(const AsnBitOpt &c) {
  if (c.option != 1) return std::nullopt;
  Reasons reasons;
  unsigned bit = 0x80;
  for (const Reasons::Bit &each : Reasons::bits()) {
    reasons.*each.member = (*c.value.octets & bit) != 0;
    bit >>= 1;
  }
  return reasons;
}

// ---- Nodes --------------------------------------------------------------------------------------------------------

// The names and attributes that any number of points need.
struct NodeCounts {
  std::size_t names = 0;
  std::size_t attributes = 0;

  void add(int32_t choice, std::size_t count) {
    (choice == X509DistributionPointName_NameRelativeToCRLIssuer ? attributes : names) += count;
  }
  void add(const std::optional<DistributionPointName> &name) {
    if (!name) return;
    if (const auto *full = std::get_if<FullName>(&*name)) names += full->names.size();
    if (const auto *relative = std::get_if<RelativeName>(&*name)) attributes += relative->attributes.size();
  }
};

// All of them; the chains of the points are cut off one after the other.
class PointNodes {
 public:
  explicit PointNodes(const NodeCounts &counts) : names(counts.names), attributes_(counts.attributes) {}

  NameNodes names;

  // For a get to fill.
  X509DistributionPointNameOpt name(int32_t choice, std::size_t count) {
    X509DistributionPointNameOpt c{};
    c.value.type = choice;
    if (choice == X509DistributionPointName_NameRelativeToCRLIssuer) {
      c.value.nameRelativeToCRLIssuer = attributes(count);
    } else {
      c.value.fullName = names.chain(count);
    }
    return c;
  }
  // Points into the name, which must outlive it.
  X509DistributionPointNameOpt name(const std::optional<DistributionPointName> &name) {
    X509DistributionPointNameOpt c{};
    if (!name) return c;
    c.option = 1;
    c.value.type = static_cast<int32_t>(name->index()) + 1;
    if (const auto *full = std::get_if<FullName>(&*name)) {
      c.value.fullName = names.chain(full->names);
    } else {
      const auto &relative = std::get<RelativeName>(*name);
      c.value.nameRelativeToCRLIssuer = attributes(relative.attributes.size());
      X509AttributeTypeAndValue *node = c.value.nameRelativeToCRLIssuer;
      for (const AttributeTypeAndValue &attribute : relative.attributes) {
        node->type = attribute.type.objid();
        node->value = encoded(attribute.value);
        node = node->next;
      }
    }
    return c;
  }

 private:
  X509AttributeTypeAndValue *attributes(std::size_t count) {
    if (count == 0) return nullptr;
    X509AttributeTypeAndValue *const head = &attributes_[used_];
    for (std::size_t i = 1; i < count; ++i) head[i - 1].next = &head[i];
    used_ += count;
    return head;
  }

  std::vector<X509AttributeTypeAndValue> attributes_;
  std::size_t used_ = 0;
};

inline std::optional<DistributionPointName> pointNameIn(const X509DistributionPointNameOpt &c) {
  if (c.option != 1) return std::nullopt;
  if (c.value.type == X509DistributionPointName_FullName) return FullName{namesIn(c.value.fullName)};
  RelativeName name;
  for (const X509AttributeTypeAndValue *node = c.value.nameRelativeToCRLIssuer; node != nullptr; node = node->next) {
    name.attributes.push_back({ObjectIdentifier(node->type), view(node->value).copy()});
  }
  return name;
}

// Gives back what a get, a failed one too, has left of a point in the pool of the Extensions object. The point was
// prepared with null pointers.
inline void giveBack(KetraObject object, const X509DistributionPointNameOpt &name, const AsnBitOpt &reasons) {
  const PoolMemory flags(object, reasons.value.octets);
  if (name.value.type != X509DistributionPointName_NameRelativeToCRLIssuer) return;
  for (const X509AttributeTypeAndValue *node = name.value.nameRelativeToCRLIssuer; node != nullptr; node = node->next) {
    const PoolMemory arcs(object, node->type.arcs);
  }
}

// ---- Piece by piece -----------------------------------------------------------------------------------------------

inline std::optional<Reasons> readReasons(const WorkValue &value, AsnValue parent, const char *path) {
  AsnValue element = value.element(parent, path);
  if (element == nullptr) return std::nullopt;
  const Pool pool;
  AsnBitOpt c{{nullptr, kReasonBits}, 1};
  run([&](AsnErrorBlock *err) {
    return AsnMUtilGetBitConstBER(pool.get(), value.object(), element, nullptr, &c.value, err);
  });
  return reasonsIn(c);
}

inline std::optional<BasicDistributionPointName<NameOrError>> readPointName(const WorkValue &value, AsnValue point,
                                                                            SharedErrors &errors) {
  AsnValue element = value.element(point, "distributionPoint");
  if (element == nullptr) return std::nullopt;
  uint32_t choice = 0;
  run([&](AsnErrorBlock *err) { return AsnCalNumberOfChoice(value.object(), element, nullptr, &choice, err); });
  if (choice == X509DistributionPointName_FullName) {
    return TolerantFullName{readNames(value, value.element(element, "fullName"), errors)};
  }
  return RelativeName{attributesIn(value, value.element(element, "nameRelativeToCRLIssuer"))};
}

}  // namespace detail

}  // namespace ketra
