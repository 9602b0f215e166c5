#include "core/operation.h"

#include <algorithm>
#include <cstring>

namespace ketra {

void Operation::record(const char *message, const void *value, uint32_t length) const {
  AsnErrorInfo("X509", function_, message, err_, value, length);
}

int32_t Operation::rejectValue(uint32_t code, const char *reason, const void *value, uint32_t length) const {
  if (err_ != nullptr) err_->code = code;
  record(reason, value, length);
  return -1;
}

int32_t Operation::rejectFields(uint32_t code, const char *reason, const void *structure,
                                std::initializer_list<Field> fields) const {
  uint8_t octets[ASN_TRACE_VALUE] = {};
  std::size_t end = 0;
  for (const auto &[field, size] : fields) {
    const auto begin =
        static_cast<std::size_t>(static_cast<const uint8_t *>(field) - static_cast<const uint8_t *>(structure));
    end = begin + size;
    if (begin < sizeof octets) std::memcpy(octets + begin, field, std::min(size, sizeof octets - begin));
  }
  const uint32_t entry = err_ == nullptr ? 0 : err_->count;
  rejectValue(code, reason, structure, static_cast<uint32_t>(end));
  // The block has copied the padding with the rest.
  if (err_ != nullptr && err_->count > entry) std::memcpy(err_->entries[entry].valueOctets, octets, sizeof octets);
  return -1;
}

}  // namespace ketra
