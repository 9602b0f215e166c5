#include "runtime/asn1/content.h"
#include "runtime/asn1/error.h"

namespace ketra::asn1 {
namespace {

int32_t failNull(Call call) { return call.fail(AsnCheckError_NullParameter, "no structure to check"); }

int32_t checkPointer(Call call, const void *octets, const uint32_t &length) {
  if (octets != nullptr || length == 0) return 0;
  return call.fail(AsnCheckError_Pointer, Text() << "a null pointer with a length of " << length, length);
}

int32_t checkObjidValue(Call call, const Objid &objid) {
  Text reason;
  return checkArcs(objid, reason) ? 0 : call.fail(AsnCheckError_Objid, reason);
}

int32_t checkTimeValue(Call call, const Gtime &time) {
  return isTime(time) ? 0 : call.fail(AsnCheckError_Time, "the time lies outside the years 0000 to 9999");
}

int32_t checkEncoding(Call call, const AsnEncodedData &encoding) {
  if (encoding.octets == nullptr) return call.fail(AsnCheckError_Pointer, "no encoding");
  Fault fault;
  if (isComplete(encoding.octets, encoding.length, fault)) return 0;
  return call.fail(fault.code, Text() << fault.text.c_str() << " at offset " << uint64_t(fault.at - encoding.octets));
}

// An optional value: the flag is 0 or 1, and only a present value is looked at.
template <class Optional, class Check>
int32_t checkOptional(Call call, const Optional *optional, Check &&checkValue) {
  if (optional == nullptr) return failNull(call);
  switch (optional->option) {
    case 0: return 0;
    case 1: return checkValue(call, optional->value);
    default:
      return call.fail(AsnCheckError_Option, Text() << "a presence flag of " << optional->option, optional->option);
  }
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnCheckObjidBER(const Objid *objid, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return objid == nullptr ? failNull(call) : checkObjidValue(call, *objid);
}

int32_t AsnCheckOctBER(const AsnOct *octets, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return octets == nullptr ? failNull(call) : checkPointer(call, octets->octets, octets->length);
}

int32_t AsnCheckOctOptBER(const AsnOctOpt *octets, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, octets,
                       [](Call call, const AsnOct &value) { return checkPointer(call, value.octets, value.length); });
}

int32_t AsnCheckBitBER(const AsnBit *bits, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return bits == nullptr ? failNull(call) : checkPointer(call, bits->octets, bits->bits);
}

int32_t AsnCheckBitOptBER(const AsnBitOpt *bits, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, bits,
                       [](Call call, const AsnBit &value) { return checkPointer(call, value.octets, value.bits); });
}

int32_t AsnCheckBoolOptBER(const AsnBoolOpt *boolean, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, boolean, [](Call call, const int32_t &value) {
    if (value == 0 || value == 1) return 0;
    return call.fail(AsnCheckError_Boolean, Text() << "a BOOLEAN is 0 or 1, not " << value, value);
  });
}

int32_t AsnCheckIntOptBER(const AsnIntOpt *integer, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, integer, [](Call, const int32_t &) { return 0; });
}

int32_t AsnCheckGtimeBER(const Gtime *time, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return time == nullptr ? failNull(call) : checkTimeValue(call, *time);
}

int32_t AsnCheckGtimeOptBER(const GtimeOpt *time, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, time, checkTimeValue);
}

int32_t AsnCheckEncodedDataBER(const AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return encoding == nullptr ? failNull(call) : checkEncoding(call, *encoding);
}

int32_t AsnCheckEncodedDataOptBER(const AsnEncodedDataOpt *encoding, AsnErrorBlock *err) {
  return checkOptional({__func__, err}, encoding, checkEncoding);
}
