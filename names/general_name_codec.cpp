// GeneralName ::= CHOICE {                                       RFC 5280 4.2.1.6
//     otherName                  [0] SEQUENCE { type-id OBJECT IDENTIFIER, value [0] EXPLICIT ANY },
//     rfc822Name                 [1] IA5String,
//     dNSName                    [2] IA5String,
//     x400Address                [3] ORAddress,
//     directoryName              [4] EXPLICIT Name,
//     ediPartyName               [5] SEQUENCE { nameAssigner [0] DirectoryString OPTIONAL,
//                                               partyName    [1] DirectoryString },
//     uniformResourceIdentifier  [6] IA5String,
//     iPAddress                  [7] OCTET STRING,
//     registeredID               [8] OBJECT IDENTIFIER }
//
// How the parameter goes into a work value and comes out of one.

#include "names/general_name_object.h"
#include "names/octets_alternative.h"

namespace ketra {
namespace {

// ---- Set -----------------------------------------------------------------------------------------------------------

int32_t setObjid(bool ber, AsnObject work, AsnValue value, const char *path, const Objid &objid, AsnErrorBlock *err) {
  return (ber ? AsnSetObjidBER : AsnSetObjidDER)(work, value, path, &objid, err);
}

int32_t setOtherName(const Operation &op, bool ber, AsnObject work, AsnValue value, const X509OtherName &name) {
  const int32_t set = setObjid(ber, work, value, "otherName/type", name.type, op.err());
  if (op.failed(set, "Call AsnSetObjidXER(otherName)")) return -1;
  if (name.value.option != 1) return 0;
  const auto setAny = ber ? AsnSetEncodedDataBER : AsnSetEncodedDataDER;
  const int32_t setValue = setAny(work, value, "otherName/value", &name.value.value, op.err());
  return op.failed(setValue, "Call AsnSetAnyXER(otherName)") ? -1 : 0;
}

int32_t setEdiPartyName(const Operation &op, bool ber, AsnObject work, AsnValue value, const X509EdiPartyName &name) {
  const auto setOpt = ber ? X509MUtilSetDirStrOptBER : X509MUtilSetDirStrOptDER;
  if (op.failed(setOpt(work, value, "ediPartyName/nameAssigner", &name.nameAssigner, op.err()),
                "Call X509MUtilSetDirStrOptXER(EDIPartyName/nameAssigner)")) {
    return -1;
  }
  const auto set = ber ? X509MUtilSetDirStrBER : X509MUtilSetDirStrDER;
  const int32_t result = set(work, value, "ediPartyName/partyName", &name.partyName, op.err());
  return op.failed(result, "Call X509MUtilSetDirStrXER(EDIPartyName/partyName)") ? -1 : 0;
}

// ---- Get -----------------------------------------------------------------------------------------------------------

int32_t getObjid(bool ber, AsnMemObject pool, AsnObject work, AsnValue value, const char *path, Objid *objid,
                 AsnErrorBlock *err) {
  return (ber ? AsnMUtilGetObjidBER : AsnMUtilGetObjidDER)(pool, work, value, path, objid, err);
}

int32_t getOtherName(const Operation &op, bool ber, AsnMemObject pool, AsnObject work, AsnValue value,
                     X509OtherName *name) {
  const int32_t got = getObjid(ber, pool, work, value, "otherName/type", &name->type, op.err());
  if (op.failed(got, "Call AsnMUtilGetObjidXER(otherName)")) return -1;
  const auto getAny = ber ? AsnMUtilGetEncodedDataOptBER : AsnMUtilGetEncodedDataOptDER;
  const int32_t gotValue = getAny(pool, work, value, "otherName/value", &name->value, op.err());
  return op.failed(gotValue, "Call AsnMUtilGetAnyOptXER(otherName)") ? -1 : 0;
}

int32_t getEdiPartyName(const Operation &op, bool ber, AsnMemObject pool, AsnObject work, AsnValue value,
                        X509EdiPartyName *name) {
  X509DirStrOpt &assigner = name->nameAssigner;
  const auto getOpt = ber ? X509MUtilGetDirStrOptBER : X509MUtilGetDirStrOptDER;
  if (op.failed(getOpt(pool, work, value, "ediPartyName/nameAssigner", &assigner, op.err()),
                "Call X509MUtilGetDirStrOptXER(EDIPartyName/nameAssigner)")) {
    return -1;
  }
  if (assigner.option == 1 &&
      op.failed(X509MUtilGetCheckLengthOfDirStr(&assigner.value, kLongestString, X509LengthOf_NameAssigner, op.err()),
                "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/nameAssigner)")) {
    return -1;
  }
  const auto get = ber ? X509MUtilGetDirStrBER : X509MUtilGetDirStrDER;
  if (op.failed(get(pool, work, value, "ediPartyName/partyName", &name->partyName, op.err()),
                "Call X509MUtilGetDirStrXER(EDIPartyName/partyName)")) {
    return -1;
  }
  const int32_t checked =
      X509MUtilGetCheckLengthOfDirStr(&name->partyName, kLongestString, X509LengthOf_PartyName, op.err());
  return op.failed(checked, "Call X509MUtilGetCheckLengthOfDirStr(EDIPartyName/partyName)") ? -1 : 0;
}

}  // namespace

int32_t x509GenNameObjectSetParam(bool ber, X509GenNameObject object, AsnObject work, AsnValue value,
                                  AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const X509GenNameParam &param = object->param;
  if (const OctetsAlternative *row = octetsAlternative(param.type)) {
    const auto set = ber ? AsnSetOctBER : AsnSetOctDER;
    return op.failed(set(work, value, row->path, &(param.*row->octets), err), row->set) ? -1 : 0;
  }
  switch (param.type) {
    case X509GenName_OtherName: return setOtherName(op, ber, work, value, param.otherName);
    case X509GenName_X400Address: return setX400Address(op, ber, work, value, param.x400Address);
    case X509GenName_DirectoryName: {
      const auto set = ber ? X509MUtilSetNameObjectBER : X509MUtilSetNameObjectDER;
      const int32_t result = set(work, value, "directoryName", param.directoryName, err);
      return op.failed(result, "Call X509MUtilSetNameObjectXER(directoryName)") ? -1 : 0;
    }
    case X509GenName_EdiPartyName: return setEdiPartyName(op, ber, work, value, param.ediPartyName);
    case X509GenName_RegisteredID: {
      const int32_t result = setObjid(ber, work, value, "registeredID", param.registeredID, err);
      return op.failed(result, "Call AsnSetObjidXER(registeredID)") ? -1 : 0;
    }
    default: return op.reject(KetraError_SetParamType, "type", param.type);
  }
}

int32_t x509GenNameObjectGetParam(bool ber, X509GenNameObject object, AsnObject work, AsnValue value,
                                  AsnErrorBlock *err) {
  const Operation op(__func__, err);
  AsnMemObject pool = object->pool;
  X509GenNameParam &param = object->param;
  if (op.failed(AsnCalNumberOfChoice(work, value, "/", &param.type, err), "Call AsnCalNumberOfChoice")) return -1;
  if (const OctetsAlternative *row = octetsAlternative(param.type)) {
    const auto get = ber ? AsnMUtilGetOctBER : AsnMUtilGetOctDER;
    return op.failed(get(pool, work, value, row->path, &(param.*row->octets), err), row->get) ? -1 : 0;
  }
  switch (param.type) {
    case X509GenName_OtherName: return getOtherName(op, ber, pool, work, value, &param.otherName);
    case X509GenName_X400Address: return getX400Address(op, ber, pool, work, value, &param.x400Address);
    case X509GenName_DirectoryName: {
      const auto get = ber ? X509MUtilGetNameObjectBER : X509MUtilGetNameObjectDER;
      const int32_t result = get(pool, work, value, "directoryName", &param.directoryName, err);
      return op.failed(result, "Call X509MUtilGetNameObjectXER(directoryName)") ? -1 : 0;
    }
    case X509GenName_EdiPartyName: return getEdiPartyName(op, ber, pool, work, value, &param.ediPartyName);
    case X509GenName_RegisteredID: {
      const int32_t result = getObjid(ber, pool, work, value, "registeredID", &param.registeredID, err);
      return op.failed(result, "Call AsnMUtilGetObjidXER(registeredID)") ? -1 : 0;
    }
    default: return op.reject(KetraError_GetParamType, "type", param.type);
  }
}

}  // namespace ketra
