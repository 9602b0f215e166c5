// What becomes of values on their way through the library.
#pragma once

#include <string>

#include "ketra/face/face.hpp"

namespace tool {

// Why a valid value of an extension comes back as `written`, when its lengths are DER.
std::string basicConstraintsReason(ketra::View value, ketra::View written);
std::string keyUsageReason(ketra::View value, ketra::View written);
std::string namesReason(ketra::View value, ketra::View written);
std::string pointsReason(ketra::View value, ketra::View written);
std::string issuingPointReason(ketra::View value, ketra::View written);
std::string nameConstraintsReason(ketra::View value, ketra::View written);
std::string authorityKeyIdReason(ketra::View value, ketra::View written);
std::string policiesReason(ketra::View value, ketra::View written);
std::string timeReason(ketra::View value, ketra::View written);
std::string attributesReason(ketra::View value, ketra::View written);

// Which DEFAULT is written out in a valid value; empty when none is.
std::string basicConstraintsDefault(ketra::View value);
std::string issuingPointDefault(ketra::View value);
std::string nameConstraintsDefault(ketra::View value);

// What is set in a value that was read and does not come with it; empty when nothing is.
std::string keyUsageLoss(ketra::View value);
std::string pointsLoss(ketra::View value);
std::string issuingPointLoss(ketra::View value);

}  // namespace tool
