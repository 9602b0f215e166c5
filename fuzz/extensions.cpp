// A whole Extensions value after an octet that sets how much memory its pool may take: C walks, searches, reads,
// encodes and empties it. Under a limit everything says the same or that the limit is reached. C++ sees the same
// extensions.

#include <iterator>

#include "c.hpp"
#include "ketra/objects/extensions.hpp"
#include "rewriting.hpp"

namespace fuzz {
namespace {

using ketra::operator""_oid;

Failure decode(KetraObject object, View octets) {
  const AsnEncodedData encoding = encoded(octets);
  return run(KetraObjectSetPduBER, object, &encoding);
}

void setLimit(KetraObject object, uint64_t octets) {
  AsnMemObject pool = nullptr;
  succeed("an object has a pool", KetraObjectGetMemObject, object, &pool);
  succeed("a pool takes a limit", AsnMemObjectSetLimit, pool, octets);
}

uint32_t sizeOf(KetraObject object) {
  uint32_t count = 0;
  succeed("extensions are counted", KetraObjectCalExt, object, &count);
  return count;
}
const KetraExtension *at(KetraObject object, uint32_t index) {
  const KetraExtension *extension = nullptr;
  succeed("each extension has an index", KetraObjectGetExtpByIndex, object, index, &extension);
  return extension;
}
const KetraExtension *find(KetraObject object, const Objid &objid) {
  const KetraExtension *extension = nullptr;
  return run(KetraObjectSearchExtpByObjid, object, &objid, &extension).code == 0 ? extension : nullptr;
}

// The encoding, or none and why.
struct Encoding {
  Octets octets;
  Failure failure;
  friend bool operator==(const Encoding &, const Encoding &) = default;
};
Encoding encodingOf(KetraObject object) {
  AsnEncodedData der{};
  Encoding encoding;
  encoding.failure = run(KetraObjectGetPduDER, object, &der);
  if (encoding.failure.code == 0) encoding.octets = viewOf(der).copy();
  return encoding;
}

void readTyped(KetraObject free, KetraObject bounded) {
  for (const Extension &extension : kExtensions) {
    const Failure outcome = extension.read(free, false).get;
    require(extension.read(free, false).get == outcome, "a second read says the same", outcome.text);
    const uint32_t arcs[] = {2, 5, 29, extension.arc};
    require((find(free, {arcs, 4}) == nullptr) == (outcome.code == KetraError_ExtensionAbsent),
            "an absent extension is called absent", outcome.text);
    const Failure limited = extension.read(bounded, false).get;
    require(limited == outcome || limited.code == AsnMemError_Limit,
            "under a limit a read says the same, or names the limit", limited.text);
  }
}

void walk(KetraObject object) {
  for (uint32_t i = 0; i < sizeOf(object); ++i) {
    const KetraExtension *each = at(object, i);
    const KetraExtension *found = find(object, each->objid);
    require(found == (each->objid.count == 0 ? nullptr : each), "search finds what the walk passes, if it has arcs");
  }
}

void writeAndRead(KetraObject object, View octets) {
  const Encoding encoding = encodingOf(object);
  require(encoding.failure.code == 0 || sizeOf(object) == 0, "extensions are encoded", encoding.failure.text);
  require(compare("extensions", {octets.begin(), octets.end()}, encoding.octets) != Rewriting::unlawful,
          "extensions change by the rules only");
  const Object again;
  const Failure read = decode(again, View(encoding.octets));
  require(read.code == 0, "what was written can be read", read.text);
  require(encodingOf(again) == encoding, "what was written is written again");

  const auto other = ketra::Extensions::decode(octets);
  require(other.size() == sizeOf(object), "C++ has as many extensions");
  uint32_t i = 0;
  for (const auto &each : other) {
    const KetraExtension *extension = at(object, i++);
    if (!each) {  // the value is in segments
      require(each.fault().code() == ketra::FaultCode_Segmented, "C++ reads each extension", each.fault().text());
      continue;
    }
    require(extension->objid.count == 0 || each->extnID == extension->objid, "C++ has the same identifiers");
    require(each->critical.value() == (extension->criticalOption == 1 && extension->critical == 1),
            "C++ has the same criticality");
    require(each->extnValue.octets() == viewOf(extension->value), "C++ has the same values");
  }
  const Object carried;
  const Octets written = other.encode();
  require(decode(carried, View(written)).code == 0 && encodingOf(carried) == encoding, "C reads what C++ writes");
}

// From alternating ends. An extension whose identifier has an arc beyond 32 bits cannot be named, and stays.
void empty(KetraObject object) {
  uint32_t first = 0;  // of those that stay, at either end
  uint32_t last = 0;
  while (first + last < sizeOf(object)) {
    const uint32_t left = sizeOf(object);
    const bool isFront = left % 2 == 0;
    const KetraExtension *each = at(object, isFront ? first : left - 1 - last);
    if (each->objid.count == 0) {
      ++(isFront ? first : last);
      continue;
    }
    const std::vector<uint32_t> arcs(each->objid.arcs, each->objid.arcs + each->objid.count);
    const Objid objid{arcs.data(), each->objid.count};
    const Octets value = viewOf(each->value).copy();
    const KetraExtension replaced{objid, 1, 1, encoded(View(value))};
    succeed("an extension is replaced", KetraObjectSetExt, object, &replaced);
    require(sizeOf(object) == left, "a replaced extension is not counted twice");
    succeed("an extension is erased", KetraObjectDeleteExt, object, &objid);
    require(sizeOf(object) == left - 1 && find(object, objid) == nullptr, "an erased extension is gone");
  }
  if (sizeOf(object) > 0) return;
  require(encodingOf(object).failure.code == KetraObjectError_Empty, "no extension, no encoding");
}

// All that C++ reads of what C refuses.
void refused(View octets) {
  const Object object;
  const KetraBasicConstraints ca{{1, 1}, {1, 1}};
  succeed("a value can be set", KetraObjectSsetBasicConstraints, object, 1, &ca);
  const Encoding before = encodingOf(object);
  require(decode(object, octets).code != 0, "a refused value is refused again");
  require(encodingOf(object) == before, "a failure leaves an object unchanged");
  const ketra::ExtensionsView view(octets);
  if (view.fault()) return;
  auto other = ketra::Extensions::decode(octets);
  require(ketra::Extensions::decode(other.encode()).encode() == other.encode(), "C++ reads what it writes");
  std::size_t count = 0;
  for (const auto &each : other) count += each && other.viewed().isRepeated(each) ? 2 : 1;
  require(count >= other.size(), "each extension is visited");
  other.set("1.2"_oid, true, {});
  require(other.find("1.2"_oid).isCritical(), "what is added is found");
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  using namespace fuzz;
  if (size == 0) return 0;
  constexpr uint64_t kStep = 64;
  const View octets(data + 1, size - 1);
  const Object free;
  const Object bounded;
  setLimit(bounded, data[0] * kStep);
  const Failure outcome = decode(free, octets);
  const Failure limited = decode(bounded, octets);
  require(limited == outcome || limited.code == AsnMemError_Limit, "a limit adds no error but its own", limited.text);
  if (outcome.code != 0) {
    refused(octets);
    return 0;
  }
  walk(free);
  if (limited.code == 0) {
    readTyped(free, bounded);
    const Encoding encoding = encodingOf(bounded);
    require(encoding == encodingOf(free) || encoding.failure.code == AsnMemError_Limit,
            "under a limit the encoding is the same, or the limit is named");
    setLimit(bounded, 0);
    readTyped(free, bounded);
    empty(bounded);
  } else {
    require(sizeOf(bounded) == 0, "a failure leaves an object unchanged");
    readTyped(free, free);
  }
  writeAndRead(free, octets);
  return 0;
}
