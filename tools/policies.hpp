// Policies as JSON. A qualifier is an object:
//   "kind"      "cps", "userNotice" or "qualifier"
//   "text"      the address of the practice statement, the explicitText of a notice; escaped
//   "noticeRef" of a notice: "text", the organization, and "noticeNumbers"
//   "type"      of any other qualifier: the identifier
//   "remark"    that the qualifier is malformed
//   "octets"    the complete encoding of its value, in hex
#pragma once

#include <optional>

#include "fields.hpp"
#include "identifier.hpp"
#include "ketra/face/face.hpp"

namespace tool {

Json qualifierJson(const Identifier &id, const std::optional<ketra::View> &value);
Fields fields(const ketra::PolicyConstraints &value);

}  // namespace tool
