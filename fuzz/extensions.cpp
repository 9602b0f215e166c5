// A whole Extensions value behind an octet that sets how much memory its pool may take: it is walked, searched, read
// typed, encoded and emptied. Under a limit everything says the same or that the limit is reached.

#include "read.hpp"
#include "rewriting.hpp"
#include "tolerant.hpp"

namespace fuzz {
namespace {

uint32_t decodeCode(const Extensions &extensions, View octets) {
  const AsnEncodedData encoding = ketra::detail::encoded(octets);
  return codeOf(KetraObjectSetPduBER, extensions.handle(), &encoding);
}

void setLimit(const Extensions &extensions, uint64_t octets) {
  AsnMemObject pool = nullptr;
  require(KetraObjectGetMemObject(extensions.handle(), &pool, nullptr) == 0, "an object has a pool");
  require(AsnMemObjectSetLimit(pool, octets, nullptr) == 0, "a pool takes a limit");
}

// The encoding, or the code of why there is none.
std::variant<Octets, uint32_t> encodingOf(const Extensions &extensions) try {
  return extensions.encode();
} catch (const ketra::Error &error) {
  return failure(error).code;
}

template <class T>
bool isLimit(const Outcome<T> &outcome) {
  const auto *failed = std::get_if<Failure>(&outcome);
  return failed != nullptr && failed->code == AsnMemError_Limit;
}

template <class T>
void readBoth(const Extensions &free, const Extensions &bounded) {
  const Outcome<T> outcome = read<T>(free);
  const Outcome<T> limited = readOnce<T>(bounded);
  require(limited == outcome || isLimit<T>(limited), "under a limit a read says the same, or names the limit");
}

void readTyped(const Extensions &free, const Extensions &bounded) {
  for (std::size_t i = 0; i < kTypes; ++i) {
    withType(i, [&]<class T, std::size_t>() {
      const std::optional<ketra::RawExtension> raw = free.find<T>();
      if (!raw) {
        const Outcome<T> absent = readOnce<T>(free);
        require(std::holds_alternative<Failure>(absent) && std::get<Failure>(absent).code == KetraError_ExtensionAbsent,
                "an absent extension is called absent");
        return;
      }
      readBoth<T>(free, bounded);
      using Form = typename TolerantForm<T>::type;
      if constexpr (!std::is_void_v<Form>) readBoth<Form>(free, bounded);
    });
  }
}

void writeAndRead(const Extensions &extensions, View octets) {
  const Octets encoding = extensions.encode();
  require(compare("extensions", octets, encoding) != Rewriting::unlawful, "extensions change by the rules only");
  const Extensions again = Extensions::decode(encoding);
  require(again.size() == extensions.size(), "as many extensions come back");
  for (uint32_t i = 0; i < again.size(); ++i) {
    const ketra::RawExtension one = again.at(i), other = extensions.at(i);
    require(one.objid == other.objid && one.critical == other.critical && one.value.copy() == other.value.copy(),
            "each extension comes back");
  }
  require(again.encode() == encoding, "what was written is written again");
}

void walk(const Extensions &extensions) {
  for (const ketra::RawExtension &each : extensions) {
    const std::optional<ketra::RawExtension> found = extensions.find(each.objid);
    if (each.objid.arcs().empty()) {
      require(!found, "without arcs nothing is found");
      continue;
    }
    require(found && found->value.data() == each.value.data(), "search finds what the walk passes");
  }
}

// From alternating ends. An extension whose identifier has an arc beyond 32 bits cannot be named, and stays.
void empty(Extensions &extensions) {
  uint32_t first = 0;  // of those that stay, at either end
  uint32_t last = 0;
  while (first + last < extensions.size()) {
    const uint32_t left = extensions.size();
    const bool isFront = left % 2 == 0;
    const ketra::ObjectIdentifier objid = extensions.at(isFront ? first : left - 1 - last).objid;
    if (objid.arcs().empty()) {
      ++(isFront ? first : last);
      continue;
    }
    const std::optional<ketra::RawExtension> found = extensions.find(objid);
    extensions.set(objid, !found->critical, found->value);  // replaced by its own octets
    require(extensions.size() == left, "a replaced extension is not counted twice");
    require(extensions.erase(objid) && !extensions.erase(objid), "an extension is erased once");
    require(extensions.size() == left - 1 && !extensions.find(objid), "an erased extension is gone");
  }
  if (extensions.size() > 0) return;
  const auto none = encodingOf(extensions);
  require(none == std::variant<Octets, uint32_t>(uint32_t{KetraObjectError_Empty}), "no extension, no encoding");
}

void unchanged(View octets) {
  Extensions extensions;
  extensions.set(ketra::BasicConstraints{true, 1}, true);
  const Octets before = extensions.encode();
  require(decodeCode(extensions, octets) != 0, "a refused value is refused again");
  require(extensions.encode() == before, "a failure leaves an object unchanged");
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  using namespace fuzz;
  if (size == 0) return 0;
  constexpr uint64_t kStep = 64;
  const View octets(data + 1, size - 1);
  Extensions free;
  Extensions bounded;
  setLimit(bounded, data[0] * kStep);
  const uint32_t code = decodeCode(free, octets);
  const uint32_t boundedCode = decodeCode(bounded, octets);
  require(boundedCode == code || boundedCode == AsnMemError_Limit, "a limit adds no error but its own");
  if (code != 0) {
    unchanged(octets);
    return 0;
  }
  walk(free);
  if (boundedCode == 0) {
    readTyped(free, bounded);
    const auto encoding = encodingOf(bounded);
    require(encoding == encodingOf(free) || encoding == std::variant<Octets, uint32_t>(uint32_t{AsnMemError_Limit}),
            "under a limit the encoding is the same, or the limit is named");
    setLimit(bounded, 0);
    readTyped(free, bounded);
    empty(bounded);
  } else {
    require(bounded.size() == 0, "a failure leaves an object unchanged");
    readTyped(free, free);
  }
  writeAndRead(free, octets);
  return 0;
}
