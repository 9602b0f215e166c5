// The GeneralName object and the operations behind its exported functions. Their names are those of the error trace;
// the rules come first, false for DER and true for BER.
#pragma once

#include "core/operation.h"
#include "ketra/ketra.h"

// Everything lies in the pool, the record itself too; only a Name object is a separate object, owned by this one.
// When `paramFlag` is 1 and `pduState` not 0, `param` and `pdu` describe the same name.
struct X509GenNameObjectRecord {
  AsnMemObject pool;
  int32_t paramFlag;       // 1: `param` holds a name
  int32_t pduState;        // which encoding `pdu` holds
  X509GenNameParam param;  // type 0: nothing that would have to be released
  AsnEncodedData pdu;
};

namespace ketra {

enum PduState : int32_t { kNoPdu = 0, kDerPdu = 1, kBerPdu = 2 };

int32_t x509GenNameObjectEncode(bool ber, X509GenNameObject object, AsnErrorBlock *err);
// Releases the old parameter first. After a failure the object may hold parts of a name and must be emptied.
int32_t x509GenNameObjectDecode(bool ber, X509GenNameObject object, AsnErrorBlock *err);
int32_t x509GenNameObjectResetParam(X509GenNameObject object, AsnErrorBlock *err);
int32_t x509GenNameObjectSetParam(bool ber, X509GenNameObject object, AsnObject work, AsnValue value,
                                  AsnErrorBlock *err);
int32_t x509GenNameObjectGetParam(bool ber, X509GenNameObject object, AsnObject work, AsnValue value,
                                  AsnErrorBlock *err);

// ---- Parameters ----------------------------------------------------------------------------------------------------

// A deep copy in the pool; `to` is written whole. After a failure nothing of it is left but pool memory.
int32_t copyParam(const Operation &op, AsnMemObject pool, const X509GenNameParam &from, X509GenNameParam *to);

// Whether `given` points, or may point, into what `held` owns.
bool sharesMemory(const X509GenNameParam &held, const X509GenNameParam &given);

// ---- The x400Address alternative -----------------------------------------------------------------------------------

// Within a GeneralName an ORAddress has the tag of the alternative, in the parameter its own.
int32_t setX400Address(const Operation &op, bool ber, AsnObject work, AsnValue value, const AsnEncodedData &address);
int32_t getX400Address(const Operation &op, bool ber, AsnMemObject pool, AsnObject work, AsnValue value,
                       AsnEncodedData *address);

}  // namespace ketra
