// Distribution points as JSON; what is absent is left out. A point has
//   "fullName"                 names (general_names.hpp)
//   "nameRelativeToCRLIssuer"  an object: "text" as in RFC 4514, or a "remark" why there is none; "octets", one
//                              RelativeDistinguishedName in hex
//   "reasons"                  their names
//   "cRLIssuer"                names
// and an issuing distribution point the first two, its flags, and "onlySomeReasons".
#pragma once

#include "fields.hpp"
#include "ketra/face/face.hpp"

namespace tool {

Fields fields(const ketra::TolerantCrlDistributionPoints &value);
Fields fields(const ketra::TolerantIssuingDistributionPoint &value);

}  // namespace tool
