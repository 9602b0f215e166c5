// Names as JSON. Each is an object:
//   "kind"      "dNSName", ...
//   "text"      what a person reads, escaped; left out when there is no text
//   "octets"    in hex: the characters of an rfc822Name, dNSName or uniformResourceIdentifier, the octets of an
//               iPAddress, the complete encoding that an otherName, x400Address or directoryName holds
//   "type"      of an otherName: the identifier
//   "typeName"  of an otherName and a registeredID: the name of the identifier, when it has one
//   "nameAssigner", "partyName"   of an ediPartyName, each with "text" and "octets"
//   "remark"    why there is no text
#pragma once

#include "ketra/types/general_name.hpp"
#include "problem.hpp"

namespace tool {

Json nameJson(const ketra::GeneralNameView &name);

// Any encoding: {"kind": "value", "text", "octets"}, the text of a character string only.
Json valueJson(ketra::View encoding);

}  // namespace tool
