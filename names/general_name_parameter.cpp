// What a GeneralName object owns: copying a parameter, releasing it, and telling whether another points into it.

#include <cstring>

#include "core/scratch.h"
#include "names/general_name_object.h"
#include "names/octets_alternative.h"

namespace ketra {
namespace {

// ---- Copy ----------------------------------------------------------------------------------------------------------

int32_t copyOtherName(const Operation &op, AsnMemObject pool, const X509OtherName &from, X509OtherName *to) {
  if (op.failed(AsnMUtilCopyObjidBER(pool, &to->type, &from.type, op.err()), "Call AsnMUtilCopyObjidBER(otherName)")) {
    return -1;
  }
  const int32_t copied = AsnMUtilCopyEncodedDataOptBER(pool, &to->value, &from.value, op.err());
  if (!op.failed(copied, "Call AsnMUtilCopyAnyOptBER(otherName)")) return 0;
  intoScratch([&](AsnErrorBlock *err) { AsnMUtilFreeObjid(pool, &to->type, err); });
  return -1;
}

int32_t copyPartyName(const Operation &op, AsnMemObject pool, const X509DirStr &from, X509DirStr *to) {
  if (op.failed(X509MUtilGetCheckLengthOfDirStr(&from, kLongestString, X509LengthOf_PartyName, op.err()),
                "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)")) {
    return -1;
  }
  const int32_t copied = X509MUtilCopyDirStrBER(pool, to, &from, op.err());
  return op.failed(copied, "Call X509MUtilCopyDirStrBER(EDIPartyName/partyName)") ? -1 : 0;
}

int32_t copyEdiPartyName(const Operation &op, AsnMemObject pool, const X509EdiPartyName &from, X509EdiPartyName *to) {
  const X509DirStrOpt &assigner = from.nameAssigner;
  if (assigner.option == 1 &&
      op.failed(X509MUtilGetCheckLengthOfDirStr(&assigner.value, kLongestString, X509LengthOf_NameAssigner, op.err()),
                "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/nameAssigner)")) {
    return -1;
  }
  if (op.failed(X509MUtilCopyDirStrOptBER(pool, &to->nameAssigner, &assigner, op.err()),
                "Call X509MUtilCopyDirStrOptBER(EDIPartyName/nameAssigner)")) {
    return -1;
  }
  if (copyPartyName(op, pool, from.partyName, &to->partyName) == 0) return 0;
  intoScratch([&](AsnErrorBlock *err) { X509MUtilFreeDirStrOpt(pool, &to->nameAssigner, err); });
  return -1;
}

int32_t copyDirectoryName(const Operation &op, X509NameObject from, X509NameObject *to) {
  if (from == nullptr) return op.reject(KetraError_SetNameNoNameObject, "None NameObject");
  const int32_t copied = X509MUtilCopyNameObject(to, from, op.err());
  return op.failed(copied, "Call X509MUtilCopyNameObjectBER(directoryName)") ? -1 : 0;
}

// ---- Release -------------------------------------------------------------------------------------------------------

int32_t releaseOtherName(const Operation &op, AsnMemObject pool, X509OtherName *name) {
  if (op.failed(AsnMUtilFreeObjid(pool, &name->type, op.err()), "Call AsnMUtilFreeObjid(otherName)")) return -1;
  const int32_t freed = AsnMUtilFreeEncodedDataOpt(pool, &name->value, op.err());
  return op.failed(freed, "Call AsnMUtilFreeAnyOpt(otherName)") ? -1 : 0;
}

int32_t releaseDirectoryName(const Operation &op, X509NameObject *name) {
  const int32_t destroyed = X509NameObjectDestroy(*name, op.err());
  *name = nullptr;
  return op.failed(destroyed, "Call X509NameObjectDestroy(directoryName)") ? -1 : 0;
}

int32_t releaseEdiPartyName(const Operation &op, AsnMemObject pool, X509EdiPartyName *name) {
  if (op.failed(X509MUtilFreeDirStrOpt(pool, &name->nameAssigner, op.err()),
                "Call X509MUtilFreeDirStrOpt(nameAssigner)")) {
    return -1;
  }
  const int32_t freed = X509MUtilFreeDirStr(pool, &name->partyName, op.err());
  return op.failed(freed, "Call X509MUtilFreeDirStr(partyName)") ? -1 : 0;
}

// ---- What a parameter owns -----------------------------------------------------------------------------------------

struct Span {
  const void *begin;
  uint64_t size;
};
struct Owned {
  Span spans[2];
};

Owned ownedBy(const X509GenNameParam &param) {
  const auto octets = [](const auto &shape) { return Span{shape.octets, shape.length}; };
  const auto arcs = [](const Objid &objid) { return Span{objid.arcs, objid.count * uint64_t{sizeof(uint32_t)}}; };
  if (const OctetsAlternative *row = octetsAlternative(param.type)) return {{octets(param.*row->octets), {}}};
  switch (param.type) {
    case X509GenName_OtherName: {
      const AsnEncodedDataOpt &value = param.otherName.value;
      return {{arcs(param.otherName.type), value.option == 1 ? octets(value.value) : Span{}}};
    }
    case X509GenName_X400Address: return {{octets(param.x400Address), {}}};
    case X509GenName_DirectoryName: return {{{param.directoryName, 1}, {}}};
    case X509GenName_EdiPartyName: {
      const auto &[assigner, party] = param.ediPartyName;
      return {{assigner.option == 1 ? octets(assigner.value) : Span{}, octets(party)}};
    }
    case X509GenName_RegisteredID: return {{arcs(param.registeredID), {}}};
    default: return {};
  }
}

bool overlap(const Span &a, const Span &b) {
  const auto beginA = reinterpret_cast<uintptr_t>(a.begin);
  const auto beginB = reinterpret_cast<uintptr_t>(b.begin);
  return a.begin != nullptr && b.begin != nullptr && beginA < beginB + b.size && beginB < beginA + a.size;
}

}  // namespace

bool sharesMemory(const X509GenNameParam &held, const X509GenNameParam &given) {
  if (held.type == 0) return false;
  // What lies inside a Name object is not known here: whatever is given may be octets of its encoding.
  const bool mayBeInside = held.type == X509GenName_DirectoryName && given.type != X509GenName_DirectoryName;
  for (const Span &a : ownedBy(held).spans) {
    for (const Span &b : ownedBy(given).spans) {
      if (mayBeInside ? b.begin != nullptr && b.size > 0 : overlap(a, b)) return true;
    }
  }
  return false;
}

int32_t copyParam(const Operation &op, AsnMemObject pool, const X509GenNameParam &from, X509GenNameParam *to) {
  std::memset(to, 0, sizeof *to);
  to->type = from.type;
  if (const OctetsAlternative *row = octetsAlternative(from.type)) {
    const AsnOct &octets = from.*row->octets;
    return op.failed(AsnMUtilCopyOctBER(pool, &(to->*row->octets), &octets, op.err()), row->copy) ? -1 : 0;
  }
  switch (from.type) {
    case X509GenName_OtherName: return copyOtherName(op, pool, from.otherName, &to->otherName);
    case X509GenName_X400Address: {
      const int32_t copied = AsnMUtilCopyEncodedDataBER(pool, &to->x400Address, &from.x400Address, op.err());
      return op.failed(copied, "Call AsnMUtilCopyAnyBER(x400Address)") ? -1 : 0;
    }
    case X509GenName_DirectoryName: return copyDirectoryName(op, from.directoryName, &to->directoryName);
    case X509GenName_EdiPartyName: return copyEdiPartyName(op, pool, from.ediPartyName, &to->ediPartyName);
    case X509GenName_RegisteredID: {
      const int32_t copied = AsnMUtilCopyObjidBER(pool, &to->registeredID, &from.registeredID, op.err());
      return op.failed(copied, "Call AsnMUtilCopyObjidBER(registeredID)") ? -1 : 0;
    }
    default: return op.reject(KetraError_SetNameType, "type", from.type);
  }
}

int32_t x509GenNameObjectResetParam(X509GenNameObject object, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  AsnMemObject pool = object->pool;
  X509GenNameParam &param = object->param;
  if (const OctetsAlternative *row = octetsAlternative(param.type)) {
    return op.failed(AsnMUtilFreeOct(pool, &(param.*row->octets), err), row->release) ? -1 : 0;
  }
  switch (param.type) {
    case 0: return 0;
    case X509GenName_OtherName: return releaseOtherName(op, pool, &param.otherName);
    case X509GenName_X400Address: {
      const int32_t freed = AsnMUtilFreeEncodedData(pool, &param.x400Address, err);
      return op.failed(freed, "Call AsnMUtilFreeAny(x400Address)") ? -1 : 0;
    }
    case X509GenName_DirectoryName: return releaseDirectoryName(op, &param.directoryName);
    case X509GenName_EdiPartyName: return releaseEdiPartyName(op, pool, &param.ediPartyName);
    case X509GenName_RegisteredID: {
      const int32_t freed = AsnMUtilFreeObjid(pool, &param.registeredID, err);
      return op.failed(freed, "Call AsnMUtilFreeObjid(registeredID)") ? -1 : 0;
    }
    default: return op.reject(KetraError_ResetParamType, "type", param.type);
  }
}

}  // namespace ketra
