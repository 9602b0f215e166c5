// The alternatives of GeneralName that are octet strings, and the texts of their failures.
#pragma once

#include "core/operation.h"
#include "ketra/ketra.h"

namespace ketra {

struct OctetsAlternative {
  uint32_t type;
  AsnOct X509GenNameParam::*octets;
  const char *path;
  Literal copy;
  Literal release;
  Literal set;
  Literal get;
};

inline constexpr OctetsAlternative kOctetsAlternatives[] = {
    {
        .type = X509GenName_Rfc822Name,
        .octets = &X509GenNameParam::rfc822Name,
        .path = "rfc822Name",
        .copy = "Call AsnMUtilCopyOctBER(rfc822Name)",
        .release = "Call AsnMUtilFreeOct(rfc822Name)",
        .set = "Call AsnSetOctXER(rfc822Name)",
        .get = "Call AsnMUtilGetOctXER(rfc822Name)",
    },
    {
        .type = X509GenName_DNSName,
        .octets = &X509GenNameParam::dNSName,
        .path = "dNSName",
        .copy = "Call AsnMUtilCopyOctBER(dNSName)",
        .release = "Call AsnMUtilFreeOct(dNSName)",
        .set = "Call AsnSetOctXER(dNSName)",
        .get = "Call AsnMUtilGetOctXER(dNSName)",
    },
    {
        .type = X509GenName_UniformResourceIdentifier,
        .octets = &X509GenNameParam::uniformResourceIdentifier,
        .path = "uniformResourceIdentifier",
        .copy = "Call AsnMUtilCopyOctBER(uniformResourceIdentifier)",
        .release = "Call AsnMUtilFreeOct(uniformResourceIdentifier)",
        .set = "Call AsnSetOctXER(uniformResourceIdentifier)",
        .get = "Call AsnMUtilGetOctXER(uniformResourceIdentifier)",
    },
    {
        .type = X509GenName_IPAddress,
        .octets = &X509GenNameParam::iPAddress,
        .path = "iPAddress",
        .copy = "Call AsnMUtilCopyOctBER(iPAddress)",
        .release = "Call AsnMUtilFreeOct(iPAddress)",
        .set = "Call AsnSetOctXER(iPAddress)",
        .get = "Call AsnMUtilGetOctXER(iPAddress)",
    },
};

// Null for the other kinds.
inline const OctetsAlternative *octetsAlternative(uint32_t type) {
  for (const OctetsAlternative &row : kOctetsAlternatives) {
    if (row.type == type) return &row;
  }
  return nullptr;
}

inline constexpr uint32_t kLongestString = 32768;  // characters of a DirectoryString in an ediPartyName

}  // namespace ketra
