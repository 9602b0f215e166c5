#include "core/operation.h"

namespace ketra {

void Operation::record(const char *message, const void *value, uint32_t length) const {
  AsnErrorInfo("X509", function_, message, err_, value, length);
}

int32_t Operation::rejectValue(uint32_t code, const char *reason, const void *value, uint32_t length) const {
  if (err_ != nullptr) err_->code = code;
  record(reason, value, length);
  return -1;
}

}  // namespace ketra
