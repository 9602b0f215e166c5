#include "extensions/reason_flags.h"

namespace ketra {
namespace {

constexpr uint32_t kReadBits = 7;

}  // namespace

int32_t getReasonFlags(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                       Literal getElementMessage, AsnBitOpt *reasons) {
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, parent, path, &element, op.err()), getElementMessage)) return -1;
  reasons->option = element != nullptr ? 1 : 0;
  if (element == nullptr) return 0;
  reasons->value.bits = kReadBits;
  const int32_t got = AsnMUtilGetBitConstBER(pool, work, element, nullptr, &reasons->value, op.err());
  return op.failed(got, "Call AsnMUtilGetBitConstBER") ? -1 : 0;
}

}  // namespace ketra
