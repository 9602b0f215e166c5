// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName         RFC 5280 4.2.1.6
//
// The members are open types here: lists exchange whole encodings with GeneralName objects, which convert them. A
// failure releases nothing: the work value belongs to the caller, and objects that were filled keep their names.

#include "core/member_path.h"
#include "core/operation.h"
#include "core/scratch.h"
#include "ketra/ketra.h"

namespace ketra {
namespace {

int32_t x509MUtilSetGenNames(bool ber, AsnObject work, AsnValue value, const char *path, const X509GenNameChain *chain,
                             AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(work, value)) return -1;
  AsnValue names = nullptr;
  if (op.failed(AsnMakeElement(work, value, path, &names, err), "Call AsnMakeElement")) return -1;
  const auto getPdu = ber ? X509GenNameObjectGetPduBER : X509GenNameObjectGetPduDER;
  const auto setEncoded = ber ? AsnSetEncodedDataBER : AsnSetEncodedDataDER;
  uint32_t number = 0;
  for (const X509GenNameChain *node = chain; node != nullptr; node = node->next) {
    if (node->genName == nullptr) return op.reject(KetraError_GenNamesNoObject, "None parameter");
    AsnEncodedData encoding{nullptr, 0};
    const int32_t got = getPdu(node->genName, &encoding, err);
    if (op.failed(got, "Call X509GenNameObjectGetPduXER")) return got;
    if (op.failed(setEncoded(work, names, MemberPath(++number), &encoding, err), "Call AsnSetAnyXER")) return -1;
  }
  return number == 0 ? op.reject(KetraError_GenNamesEmpty, "Count of SetOf = 0") : 0;
}

int32_t x509MUtilSgetGenNameObject(bool ber, AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                   X509GenNameObject object, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (object == nullptr) return op.reject(KetraError_GenNameObjectMissing, "None GenNameObject");
  if (op.misses(pool, work, value)) return -1;
  uint32_t length = 0;
  if (op.failed(AsnCalLengthOfValFld(work, value, path, &length, err), "Call AsnCalLengthOfValFld")) return -1;
  if (length == 0 || length == ASN_ABSENT_LENGTH) return op.rejectAt(KetraError_GenNameElementEmpty, path);
  void *memory = nullptr;
  if (op.failedAt(AsnMemObjectMalloc(pool, length, &memory, err), path, length)) return -1;
  AsnBuffer buffer{static_cast<uint8_t *>(memory), length};
  const auto getEncoded = ber ? AsnGetEncodedDataBER : AsnGetEncodedDataDER;
  if (op.failed(getEncoded(work, value, path, &buffer, err), "Call AsnGetAnyXER")) return -1;
  const auto setPdu = ber ? X509GenNameObjectSetPduBER : X509GenNameObjectSetPduDER;
  const AsnEncodedData encoding{buffer.octets, buffer.length};
  const int32_t set = setPdu(object, &encoding, err);
  if (op.failed(set, "Call X509GenNameObjectSetPduXER")) return set;
  return op.failed(AsnMemObjectFree(pool, memory, err), "Call AsnMemObjectFree") ? -1 : 0;
}

int32_t x509MUtilSgetGenNames(bool ber, AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                              const X509GenNameChain *chain, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(pool, work, value)) return -1;
  AsnValue names = nullptr;
  if (op.failed(AsnGetElement(work, value, path, &names, err), "Call AsnGetElement")) return -1;
  if (names == nullptr) return op.reject(KetraError_GenNamesAbsent, "Call AsnGetElement");
  uint32_t count = 0;
  if (op.failed(AsnCalCountOfSequence(work, names, nullptr, &count, err), "Call AsnCalCountOfSequence")) return -1;
  const auto getName = ber ? X509MUtilSgetGenNameObjectBER : X509MUtilSgetGenNameObjectDER;
  for (uint32_t k = 0; k < count; ++k, chain = chain->next) {
    if (chain == nullptr) return op.reject(KetraError_GenNamesChainShort, "Chain is too short ");
    const int32_t got = getName(pool, work, names, MemberPath(k + 1), chain->genName, err);
    if (op.failed(got, "Call X509MUtilSgetGenNameObjectXER")) return got;
  }
  return 0;
}

// In the order of the kinds, from 1.
constexpr const char *kPaths[] = {
    "otherName", "rfc822Name",   "dNSName", "x400Address", "directoryName", "EDIPartyName", "uniformResourceIdentifier",
    "iPAddress", "registeredID",
};

}  // namespace
}  // namespace ketra

using namespace ketra;

int32_t X509MUtilSetGenNamesDER(AsnObject work, AsnValue value, const char *path, const X509GenNameChain *chain,
                                AsnErrorBlock *err) {
  return x509MUtilSetGenNames(false, work, value, path, chain, err);
}

int32_t X509MUtilSetGenNamesBER(AsnObject work, AsnValue value, const char *path, const X509GenNameChain *chain,
                                AsnErrorBlock *err) {
  return x509MUtilSetGenNames(true, work, value, path, chain, err);
}

int32_t X509MUtilSgetGenNamesDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                 const X509GenNameChain *chain, AsnErrorBlock *err) {
  return x509MUtilSgetGenNames(false, pool, work, value, path, chain, err);
}

int32_t X509MUtilSgetGenNamesBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                 const X509GenNameChain *chain, AsnErrorBlock *err) {
  return x509MUtilSgetGenNames(true, pool, work, value, path, chain, err);
}

int32_t X509MUtilSgetGenNameObjectDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                      X509GenNameObject object, AsnErrorBlock *err) {
  return x509MUtilSgetGenNameObject(false, pool, work, value, path, object, err);
}

int32_t X509MUtilSgetGenNameObjectBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                      X509GenNameObject object, AsnErrorBlock *err) {
  return x509MUtilSgetGenNameObject(true, pool, work, value, path, object, err);
}

int32_t X509MUtilCopyGenNameObject(X509GenNameObject *destination, X509GenNameObject source, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(destination)) return -1;
  X509GenNameObject old = *destination;
  if (old == source) return 0;
  *destination = nullptr;
  if (old != nullptr) {
    const int32_t destroyed = X509GenNameObjectDestroy(old, err);
    if (op.failed(destroyed, "Call X509GenNameObjectDestroy")) return destroyed;
  }
  if (source == nullptr) return 0;
  X509GenNameObject copy = nullptr;
  const int32_t created = X509GenNameObjectCreate(&copy, err);
  if (op.failed(created, "Call X509GenNameObjectCreate")) return created;
  const int32_t copied = X509GenNameObjectCopy(copy, source, err);
  if (op.failed(copied, "Call X509GenNameObjectCopy")) {
    intoScratch([&](AsnErrorBlock *scratch) { X509GenNameObjectDestroy(copy, scratch); });
    return copied;
  }
  *destination = copy;
  return 0;
}

int32_t X509MUtilCheckGenNames(const X509GenNameChain *chain, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (chain == nullptr) return op.reject(KetraError_CheckGenNamesEmpty, "Count = 0");
  for (const X509GenNameChain *node = chain; node != nullptr; node = node->next) {
    if (node->genName == nullptr) return op.reject(KetraError_CheckGenNamesNoObject, "No Object");
  }
  return 0;
}

int32_t X509MUtilCheckGenNamesOpt(const X509GenNamesOpt *names, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(names)) return -1;
  if (names->option != 0 && names->option != 1) {
    return op.rejectStructure(KetraError_CheckGenNamesOption, "option", *names, names->genNames, names->option);
  }
  if (names->option == 0) return 0;
  const int32_t checked = X509MUtilCheckGenNames(names->genNames, err);
  return op.failed(checked, "Call X509MUtilCheckGenNames") ? checked : 0;
}

int32_t X509MUtilGetPathOfGenName(uint32_t type, const char **path, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(path)) return -1;
  if (type < X509GenName_OtherName || type > X509GenName_RegisteredID) {
    return op.reject(KetraError_PathOfGenNameType, "type", type);
  }
  *path = kPaths[type - 1];
  return 0;
}
