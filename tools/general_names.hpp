// Names as JSON. Each is an object:
//   "kind"      "dNSName", ..., or "unreadable"
//   "text"      what a person reads, escaped; left out when there is no text
//   "octets"    in hex: the characters of an rfc822Name, dNSName or uniformResourceIdentifier, the octets of an
//               iPAddress, the complete encoding that an otherName, x400Address or directoryName holds, the complete
//               member when it is unreadable
//   "type"      of an otherName: the identifier
//   "typeName"  of an otherName and a registeredID: the name of the identifier, when it has one
//   "nameAssigner", "partyName"   of an ediPartyName, each with "text" and "octets"
//   "remark"    why there is no text
//   "error"     why the member is unreadable
#pragma once

#include <vector>

#include "ketra/face/face.hpp"
#include "problem.hpp"

namespace tool {

Json nameJson(const ketra::GeneralName &name);
// These clear `allRead` when a name is unreadable.
Json nameJson(const ketra::NameOrError &name, bool &allRead);
Json namesJson(const std::vector<ketra::NameOrError> &names, bool &allRead);

}  // namespace tool
