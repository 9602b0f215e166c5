// CRLNumber ::= INTEGER (0..MAX)                                 RFC 5280 5.2.3
// BaseCRLNumber ::= CRLNumber                                    RFC 5280 5.2.4, in the DeltaCRLIndicator

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

struct Number {
  Extension extension;
  int32_t critical;
  Literal name;
  uint32_t setNegative;
  uint32_t getNegative;
};

constexpr Number kCrlNumber{
    .extension = {&X509Objid_CRLNumber, schema::Entry::CRLNumber, "/"},
    .critical = 0,
    .name = "cRLNumber",
    .setNegative = KetraError_SetCRLNumber,
    .getNegative = KetraError_GetCRLNumber,
};
constexpr Number kDeltaCrlIndicator{
    .extension = {&X509Objid_DeltaCRLIndicator, schema::Entry::BaseCRLNumber, "/"},
    .critical = 1,
    .name = "deltaCRLIndicator",
    .setNegative = KetraError_SetDeltaCRLIndicator,
    .getNegative = KetraError_GetDeltaCRLIndicator,
};

int32_t set(const Operation &op, const Number &row, KetraObject extensions, const int32_t *number) {
  const auto check = [&] { return *number < 0 ? op.reject(row.setNegative, row.name, *number) : 0; };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetIntDER(work, root, "/", *number, op.err()), "Call AsnSetIntDER") ? -1 : 0;
  };
  return setFrame(op, extensions, number, row.extension, row.critical, check, fill);
}

int32_t get(const Operation &op, const Number &row, KetraObject extensions, int32_t *number) {
  return getFrame(op, extensions, number, row.extension, [&](AsnObject work, AsnValue root) {
    if (op.failed(AsnGetIntBER(work, root, "/", number, op.err()), "Call AsnGetIntBER")) return -1;
    return *number < 0 ? op.reject(row.getNegative, row.name, *number) : 0;
  });
}

}  // namespace

int32_t KetraObjectSsetCRLNumber(KetraObject extensions, const int32_t *number, AsnErrorBlock *err) {
  return set({__func__, err}, kCrlNumber, extensions, number);
}

int32_t KetraObjectSgetCRLNumber(KetraObject extensions, int32_t *number, AsnErrorBlock *err) {
  return get({__func__, err}, kCrlNumber, extensions, number);
}

int32_t KetraObjectSsetDeltaCRLIndicator(KetraObject extensions, const int32_t *number, AsnErrorBlock *err) {
  return set({__func__, err}, kDeltaCrlIndicator, extensions, number);
}

int32_t KetraObjectSgetDeltaCRLIndicator(KetraObject extensions, int32_t *number, AsnErrorBlock *err) {
  return get({__func__, err}, kDeltaCrlIndicator, extensions, number);
}
