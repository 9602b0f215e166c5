// Why a valid value of an extension comes back as `written`, when its lengths are DER.
#pragma once

#include <string>

#include "ketra.hpp"

namespace tool {

std::string basicConstraintsReason(ketra::View value, ketra::View written);
std::string keyUsageReason(ketra::View value, ketra::View written);
std::string namesReason(ketra::View value, ketra::View written);
std::string pointsReason(ketra::View value, ketra::View written);
std::string issuingPointReason(ketra::View value, ketra::View written);
std::string nameConstraintsReason(ketra::View value, ketra::View written);

}  // namespace tool
