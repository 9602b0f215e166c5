#include "typed_extensions.hpp"

#include <algorithm>
#include <vector>

namespace tool {
namespace {

template <class T>
Json problemIn(ketra::View value, const ketra::Fault &fault) {
  return problem(fault, ketra::placeOf<T>(value, fault));
}

// BasicConstraints is short enough to say what it does not have.
template <class T>
void addAbsent(Json &json) {
  if constexpr (std::is_same_v<T, ketra::BasicConstraints>) {
    Json all{{"cA", nullptr}, {"pathLenConstraint", nullptr}};
    all.update(json);
    json = std::move(all);
  }
}

template <class T>
std::optional<Fields> fields(ketra::View value, Json &problem) {
  using V = typename ketra::detail::ViewedOf<T>::type;
  ketra::Item<V> viewed = ketra::view<V>(value);
  ketra::Octets joined;
  // A view does not join strings that come in segments: what is shown then is the value as it is written.
  if (ketra::firstFault(viewed).reason == ketra::Reason::Segmented) {
    if (const ketra::Result<T> owned = ketra::read<T>(value)) {
      joined = ketra::encode(*owned);
      value = joined;
      viewed = ketra::view<V>(value);
    }
  }
  if (!viewed) {
    problem = problemIn<T>(value, viewed.fault());
    return std::nullopt;
  }
  FieldsBuilder builder(value, &ketra::placeOf<T>);
  ketra::walk(*viewed, builder);
  Fields fields = builder.take();
  addAbsent<T>(fields.json);
  return fields;
}

template <class T>
Written write(ketra::View value, bool critical) {
  const ketra::Result<T> read = ketra::read<T>(value);
  if (!read) return {Written::Outcome::Rejected, problemIn<T>(value, read.fault())};
  ketra::Extensions extensions;
  try {
    if constexpr (ketra::detail::FixedCritical<T>::value.has_value()) {
      static_cast<void>(critical);
      extensions.set(*read);
    } else {
      extensions.set(*read, critical);
    }
  } catch (const ketra::Error &error) {
    return {Written::Outcome::Refused, problem(error)};
  }
  const ketra::Found<ketra::ExtensionView> found = extensions.find(T::oid);
  return {Written::Outcome::Good, {}, found->extnValue.octets().copy(), found.isCritical()};
}

template <class T>
Json departure(ketra::View value) {
  Json first;
  ketra::derFaults<T>(value, [&](const ketra::Fault &fault) {
    if (first.is_null()) first = problemIn<T>(value, fault);
  });
  return first;
}

template <class... Ts>
std::vector<TypedExtension> sortedTable(ketra::Types<Ts...>) {
  std::vector<TypedExtension> table = {{Ts::oid, fields<Ts>, write<Ts>, departure<Ts>}...};
  std::sort(table.begin(), table.end(),
            [](const TypedExtension &a, const TypedExtension &b) { return a.oid.content() < b.oid.content(); });
  return table;
}

}  // namespace

const TypedExtension *findTyped(const ketra::ObjectIdentifierView &identifier) {
  static const std::vector<TypedExtension> kTable = sortedTable(ketra::ExtensionTypes());
  const auto found =
      std::lower_bound(kTable.begin(), kTable.end(), identifier.content(),
                       [](const TypedExtension &row, ketra::View content) { return row.oid.content() < content; });
  return found != kTable.end() && found->oid == identifier ? &*found : nullptr;
}

}  // namespace tool
