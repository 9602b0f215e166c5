/// @file
/// The parts of distribution points from and to the C interface, and read piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/distribution_point_name.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_names.hpp"

namespace ketra {
inline namespace face {

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

inline void copyReasons(const AsnBitOpt &c, std::optional<Reasons> &reasons) {
  if (c.option != 1) return;
  Reasons &made = reasons.emplace();
  unsigned bits = *c.value.octets;
  for (const Reasons::Bit &each : Reasons::bits()) {
    made.*each.member = (bits & 0x80) != 0;
    bits <<= 1;
  }
}

// ---- Nodes --------------------------------------------------------------------------------------------------------

// What one name needs of nodes.
struct PointNameShape {
  // Of the name that the distributionPoint with this content holds.
  explicit PointNameShape(View content) {
    constexpr uint8_t kRelativeName = 0xA1;
    Encodings name(content);
    if (!name.next()) return;
    choice = name.tag() == kRelativeName ? X509DistributionPointName_NameRelativeToCRLIssuer
                                         : X509DistributionPointName_FullName;
    count = countOf(name.content());
  }

  int32_t choice = 0;
  uint32_t count = 0;
};

// The names and attributes that any number of points need.
struct NodeCounts {
  std::size_t names = 0;
  std::size_t attributes = 0;

  void add(const PointNameShape &shape) {
    (shape.choice == X509DistributionPointName_NameRelativeToCRLIssuer ? attributes : names) += shape.count;
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
  void prepare(const PointNameShape &shape, X509DistributionPointNameOpt &c) {
    c.value.type = shape.choice;
    if (shape.choice == X509DistributionPointName_NameRelativeToCRLIssuer) {
      c.value.nameRelativeToCRLIssuer = attributes(shape.count);
    } else {
      c.value.fullName = names.chain(shape.count);
    }
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
    used_ += count;
    attributes_[used_ - 1].next = nullptr;
    return head;
  }

  Nodes<X509AttributeTypeAndValue> attributes_;
  std::size_t used_ = 0;
};

inline void copyPointName(const X509DistributionPointNameOpt &c, std::optional<DistributionPointName> &name) {
  if (c.option != 1) return;
  DistributionPointName &made = name.emplace();
  if (c.value.type == X509DistributionPointName_FullName) {
    copyNames(c.value.fullName, std::get<FullName>(made).names);
    return;
  }
  auto &attributes = made.emplace<RelativeName>().attributes;
  for (const X509AttributeTypeAndValue *node = c.value.nameRelativeToCRLIssuer; node != nullptr; node = node->next) {
    attributes.push_back({ObjectIdentifier(node->type), view(node->value).copy()});
  }
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
  std::optional<Reasons> reasons;
  copyReasons(c, reasons);
  return reasons;
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

}  // namespace face
}  // namespace ketra
