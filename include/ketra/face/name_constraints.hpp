/// @file
/// NameConstraints (RFC 5280 4.2.1.10), in a strict form, which can be set, and a tolerant one, which can only be read
/// and has an UnreadableName in the place of each bad base.
/// @code
/// ketra::NameConstraints constraints;
/// constraints.permittedSubtrees = {{ketra::dns("example")}, {ketra::ip("192.0.2.0/24")}};
/// extensions.set(constraints, /*critical=*/true);
/// @endcode
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_name.hpp"
#include "ketra/face/general_names.hpp"

namespace ketra {
inline namespace face {

/// One subtree; `N` is GeneralName or NameOrError.
template <class N>
struct BasicGeneralSubtree {
  N base;                            ///< the name
  std::optional<int32_t> minimum{};  ///< no default is applied
  std::optional<int32_t> maximum{};  ///< absent: no bound

  friend bool operator==(const BasicGeneralSubtree &a, const BasicGeneralSubtree &b) {
    return a.base == b.base && a.minimum == b.minimum && a.maximum == b.maximum;
  }
  friend bool operator!=(const BasicGeneralSubtree &a, const BasicGeneralSubtree &b) { return !(a == b); }
};
/// The strict form.
using GeneralSubtree = BasicGeneralSubtree<GeneralName>;
/// A member of the list that is no subtree, or whose distances need more than 32 bits, has an UnreadableName that holds
/// the whole member.
using TolerantGeneralSubtree = BasicGeneralSubtree<NameOrError>;

/// For which names a CA may issue (RFC 5280 4.2.1.10); `N` is GeneralName or NameOrError.
template <class N>
struct BasicNameConstraints {
  std::optional<std::vector<BasicGeneralSubtree<N>>> permittedSubtrees;  ///< names of such a kind must lie in one
  std::optional<std::vector<BasicGeneralSubtree<N>>> excludedSubtrees;   ///< names must not lie in any

  friend bool operator==(const BasicNameConstraints &a, const BasicNameConstraints &b) {
    return a.permittedSubtrees == b.permittedSubtrees && a.excludedSubtrees == b.excludedSubtrees;
  }
  friend bool operator!=(const BasicNameConstraints &a, const BasicNameConstraints &b) { return !(a == b); }
};
/// The strict form.
using NameConstraints = BasicNameConstraints<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantNameConstraints = BasicNameConstraints<NameOrError>;

namespace detail {

// Subtrees as the C interface wants them.
class SubtreeChain {
 public:
  // For a get to fill.
  explicit SubtreeChain(std::size_t count) : nodes_(count) {}
  explicit SubtreeChain(const std::optional<std::vector<GeneralSubtree>> &subtrees)
      : SubtreeChain(subtrees ? subtrees->size() : 0) {
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
      const GeneralSubtree &subtree = (*subtrees)[i];
      setName(nodes_[i].base, subtree.base);
      nodes_[i].minimum = optional(subtree.minimum);
      nodes_[i].maximum = optional(subtree.maximum);
    }
  }

  X509GenSubtree *head() { return nodes_.head(); }

  std::vector<GeneralSubtree> subtrees() const {
    std::vector<GeneralSubtree> subtrees;
    subtrees.reserve(nodes_.size());
    for (const X509GenSubtree &node : nodes_) {
      GeneralSubtree &subtree = subtrees.emplace_back();
      copyName(node.base, subtree.base);
      subtree.minimum = optional(node.minimum);
      subtree.maximum = optional(node.maximum);
    }
    return subtrees;
  }

 private:
  ObjectNodes<X509GenSubtree, &X509GenSubtree::base> nodes_;
};

inline std::optional<int32_t> readDistance(const WorkValue &subtree, const char *path) {
  AsnIntOpt c{};
  run([&](AsnErrorBlock *err) { return AsnGetOptIntBER(subtree.object(), subtree.get(), path, &c, err); });
  return optional(c);
}

// A member of a list by itself.
inline TolerantGeneralSubtree readSubtree(View encoding, SharedErrors &errors) try {
  AsnErrorBlock err;
  const std::optional<WorkValue> subtree = WorkValue::decoded(asn1::kSubtree, encoding, &err);
  if (!subtree) return {errors.unreadable(encoding, err)};
  return {readName(subtree->octets(subtree->get(), "base"), errors), readDistance(*subtree, "minimum"),
          readDistance(*subtree, "maximum")};
} catch (const Error &error) {
  return {errors.unreadable(encoding, error)};
}

inline std::optional<std::vector<TolerantGeneralSubtree>> readSubtrees(const WorkValue &value, const char *path) {
  AsnValue list = value.element(value.get(), path);
  if (list == nullptr) return std::nullopt;
  const uint32_t count = value.count(list);
  std::vector<TolerantGeneralSubtree> subtrees;
  subtrees.reserve(count);
  SharedErrors errors;
  for (uint32_t i = 1; i <= count; ++i) {
    subtrees.push_back(readSubtree(value.octets(list, MemberPath(i).get()), errors));
  }
  return subtrees;
}

}  // namespace detail

template <class N>
struct ExtensionTraits<BasicNameConstraints<N>> {
  using Constraints = BasicNameConstraints<N>;
  static constexpr bool kIsStrict = std::is_same_v<N, GeneralName>;
  static constexpr bool kCallerSetsCritical = true;

  static const Objid &objid() { return X509Objid_NameConstraints; }

  static int32_t set(KetraObject object, int32_t critical, const Constraints &value, AsnErrorBlock *err) {
    static_assert(kIsStrict, "a tolerant form is for reading only");
    detail::SubtreeChain permitted(value.permittedSubtrees);
    detail::SubtreeChain excluded(value.excludedSubtrees);
    const KetraNameConstraints c{{permitted.head(), value.permittedSubtrees ? 1 : 0},
                                 {excluded.head(), value.excludedSubtrees ? 1 : 0}};
    return KetraObjectSsetNameConstraints(object, critical, &c, err);
  }

  static int32_t get(KetraObject object, Constraints &value, AsnErrorBlock *err) {
    if constexpr (kIsStrict) {
      const View lists = detail::contentOf(detail::storedValue(object, objid()));
      detail::SubtreeChain permitted(detail::countOf(detail::contentOf(lists, 0)));
      detail::SubtreeChain excluded(detail::countOf(detail::contentOf(lists, 1)));
      KetraNameConstraints c{{permitted.head(), 0}, {excluded.head(), 0}};
      if (const int32_t result = KetraObjectSgetNameConstraints(object, &c, err); result != 0) return result;
      if (c.permittedSubtrees.option == 1) value.permittedSubtrees = permitted.subtrees();
      if (c.excludedSubtrees.option == 1) value.excludedSubtrees = excluded.subtrees();
    } else {
      const detail::WorkValue constraints(detail::asn1::kNameConstraints, detail::storedValue(object, objid()));
      value = {detail::readSubtrees(constraints, "permittedSubtrees"),
               detail::readSubtrees(constraints, "excludedSubtrees")};
    }
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
