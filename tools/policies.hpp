// Policy qualifiers as JSON. Each is an object:
//   "kind"      "cps", "userNotice" or "qualifier"
//   "text"      the address of the practice statement, the explicitText of a notice; escaped
//   "noticeRef" of a notice: "text", the organization, and "noticeNumbers"
//   "type"      of any other qualifier: the identifier
//   "remark"    that the qualifier is malformed
//   "octets"    the complete encoding of its value, in hex
#pragma once

#include <optional>

#include "ketra/asn1/octets.hpp"
#include "problem.hpp"

namespace tool {

// `id`: as identifierJson() gives it.
Json qualifierJson(const Json &id, const std::optional<ketra::View> &value);

}  // namespace tool
