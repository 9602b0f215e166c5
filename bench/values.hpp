// The values that every library reads and writes: their parts, and their octets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ketra/ketra.h"
#include "ketra/ketra_runtime.h"

namespace bench {

using Octets = std::vector<uint8_t>;
using Arcs = std::vector<uint32_t>;

inline constexpr uint8_t kKeyId[] = {0x9A, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19};
inline constexpr uint8_t kSerial[] = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 1, 2, 3, 4, 5, 6, 7, 8};
inline constexpr char kCps[] = "https://ca.example/policy/cps.html";
inline constexpr char kDate[] = "20240131123456Z";
inline constexpr char kDateText[] = "2024-01-31T12:34:56Z";
inline constexpr int32_t kPathLength = 3, kCrlNumber = 0x0A1B2C, kReason = 1, kExplicit = 2, kInhibit = 1;
inline constexpr uint8_t kCertAndCrlSign = 0x06;  // keyCertSign and cRLSign, bits 5 and 6 of KeyUsage
inline constexpr uint8_t kCompromises = 0x60;     // keyCompromise and cACompromise, bits 1 and 2 of ReasonFlags

// The directoryName: three relative distinguished names of one attribute.
struct Attribute {
  uint32_t type[4];
  uint32_t string;  // X509DirStr_...
  std::string_view text;
};
inline constexpr Attribute kName[] = {{{2, 5, 4, 6}, X509DirStr_PrintableString, "GB"},
                                      {{2, 5, 4, 10}, X509DirStr_Utf8String, "Example Organization"},
                                      {{2, 5, 4, 3}, X509DirStr_Utf8String, "Example Root CA G1"}};

// Members of lists, by number from 0; they stay where they are.
const std::string &host(std::size_t i);  // "host00000.example.com"
const std::string &crl(std::size_t i);   // a URI

Arcs policy(std::size_t i);         // 1.3.6.1.4.1.32473.1.(i + 1)
Arcs subjectPolicy(std::size_t i);  // 1.3.6.1.4.1.32473.2.(i + 1)
Arcs purpose(std::size_t i);        // 1.3.6.1.5.5.7.3.(i + 1)
// The same in dotted form, of the first three.
const std::string &policyText(std::size_t i);
const std::string &subjectPolicyText(std::size_t i);
const std::string &purposeText(std::size_t i);
inline const Arcs kCpsId = {1, 3, 6, 1, 5, 5, 7, 2, 1};

// The DER of each value, put together without any of the libraries.
namespace der {
Octets identifier(const Arcs &arcs);
Octets ia5String(std::string_view text);
Octets name();  // of the directoryName
Octets basicConstraints();
Octets keyUsage();
Octets subjectKeyId();
Octets authorityKeyId();
Octets extKeyUsage(std::size_t size);
Octets certPolicies(std::size_t size);
Octets policyMappings(std::size_t size);
Octets policyConstraints();
Octets subjectAltName(std::size_t size);
Octets directoryName();  // the subjectAltName that has one
Octets crlDistributionPoints(std::size_t size);
Octets issuingDistributionPoint();
Octets nameConstraints(std::size_t size);  // half of them permitted, half excluded
Octets crlNumber();
Octets reasonCode();
Octets revocationList(std::size_t entries);  // with serial numbers of 16 octets; each fourth has a reason
Octets invalidityDate();
}  // namespace der

// The lengths of subjectAltName that are measured.
inline constexpr std::size_t kLengths[] = {1, 10, 100, 1'000, 10'000, 100'000};
inline constexpr std::size_t kMostOfQuadratic = 10'000;  // for peers whose time grows with the square of the length

}  // namespace bench
