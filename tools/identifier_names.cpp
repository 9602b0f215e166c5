#include "identifier_names.hpp"

#include <string>
#include <string_view>

#include "escape.hpp"
#include "identifier.hpp"

namespace tool {
namespace {

struct Name {
  std::string_view identifier;
  const char *name;
};

constexpr Name kNames[] = {
    // id-ce, X.509 and RFC 5280
    {"2.5.29.9", "subjectDirectoryAttributes"},
    {"2.5.29.14", "subjectKeyIdentifier"},
    {"2.5.29.15", "keyUsage"},
    {"2.5.29.16", "privateKeyUsagePeriod"},
    {"2.5.29.17", "subjectAltName"},
    {"2.5.29.18", "issuerAltName"},
    {"2.5.29.19", "basicConstraints"},
    {"2.5.29.20", "cRLNumber"},
    {"2.5.29.21", "reasonCode"},
    {"2.5.29.23", "holdInstructionCode"},
    {"2.5.29.24", "invalidityDate"},
    {"2.5.29.27", "deltaCRLIndicator"},
    {"2.5.29.28", "issuingDistributionPoint"},
    {"2.5.29.29", "certificateIssuer"},
    {"2.5.29.30", "nameConstraints"},
    {"2.5.29.31", "cRLDistributionPoints"},
    {"2.5.29.32", "certificatePolicies"},
    {"2.5.29.33", "policyMappings"},
    {"2.5.29.35", "authorityKeyIdentifier"},
    {"2.5.29.36", "policyConstraints"},
    {"2.5.29.37", "extKeyUsage"},
    {"2.5.29.46", "freshestCRL"},
    {"2.5.29.54", "inhibitAnyPolicy"},
    {"2.5.29.55", "targetInformation"},
    {"2.5.29.56", "noRevAvail"},
    {"2.5.29.60", "expiredCertsOnCRL"},
    // id-pe and other PKIX arcs
    {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess"},
    {"1.3.6.1.5.5.7.1.2", "biometricInfo"},
    {"1.3.6.1.5.5.7.1.3", "qcStatements"},
    {"1.3.6.1.5.5.7.1.7", "ipAddrBlocks"},
    {"1.3.6.1.5.5.7.1.8", "autonomousSysIds"},
    {"1.3.6.1.5.5.7.1.11", "subjectInfoAccess"},
    {"1.3.6.1.5.5.7.1.12", "logotype"},
    {"1.3.6.1.5.5.7.1.14", "proxyCertInfo"},
    {"1.3.6.1.5.5.7.1.24", "tlsFeature"},
    {"1.3.6.1.5.5.7.1.31", "acmeIdentifier"},
    {"1.3.6.1.5.5.7.48.1.5", "ocspNoCheck"},
    // Certificate Transparency, RFC 6962
    {"1.3.6.1.4.1.11129.2.4.2", "signedCertificateTimestampList"},
    {"1.3.6.1.4.1.11129.2.4.3", "precertificatePoison"},
    {"1.3.6.1.4.1.11129.2.4.4", "precertificateSigningKey"},
    // Types of otherName, RFC 4043, 4108, 6120, 4985, 7585, 8398, 4556, FIPS 201
    {"1.3.6.1.5.5.7.8.3", "permanentIdentifier"},
    {"1.3.6.1.5.5.7.8.4", "hardwareModuleName"},
    {"1.3.6.1.5.5.7.8.5", "xmppAddr"},
    {"1.3.6.1.5.5.7.8.7", "SRVName"},
    {"1.3.6.1.5.5.7.8.8", "NAIRealm"},
    {"1.3.6.1.5.5.7.8.9", "SmtpUTF8Mailbox"},
    {"1.3.6.1.5.2.2", "KRB5PrincipalName"},
    {"2.16.840.1.101.3.6.6", "FASC-N"},
    {"1.3.6.1.4.1.311.20.2.3", "userPrincipalName"},
    // Key purposes, RFC 5280 and later
    {"2.5.29.37.0", "anyExtendedKeyUsage"},
    {"1.3.6.1.5.5.7.3.1", "serverAuth"},
    {"1.3.6.1.5.5.7.3.2", "clientAuth"},
    {"1.3.6.1.5.5.7.3.3", "codeSigning"},
    {"1.3.6.1.5.5.7.3.4", "emailProtection"},
    {"1.3.6.1.5.5.7.3.5", "ipsecEndSystem"},
    {"1.3.6.1.5.5.7.3.6", "ipsecTunnel"},
    {"1.3.6.1.5.5.7.3.7", "ipsecUser"},
    {"1.3.6.1.5.5.7.3.8", "timeStamping"},
    {"1.3.6.1.5.5.7.3.9", "OCSPSigning"},
    {"1.3.6.1.5.5.7.3.17", "ipsecIKE"},
    {"1.3.6.1.5.5.7.3.21", "secureShellClient"},
    {"1.3.6.1.5.5.7.3.22", "secureShellServer"},
    {"1.3.6.1.5.5.7.3.27", "cmcCA"},
    {"1.3.6.1.5.5.7.3.28", "cmcRA"},
    {"1.3.6.1.5.5.7.3.36", "documentSigning"},
    {"1.3.6.1.5.2.3.4", "pkinitKPClientAuth"},
    {"1.3.6.1.5.2.3.5", "pkinitKPKdc"},
    {"1.3.6.1.4.1.311.10.3.3", "microsoftServerGatedCrypto"},
    {"1.3.6.1.4.1.311.10.3.4", "microsoftEncryptedFileSystem"},
    {"1.3.6.1.4.1.311.10.3.12", "microsoftDocumentSigning"},
    {"1.3.6.1.4.1.311.20.2.2", "microsoftSmartcardLogon"},
    {"2.16.840.1.113730.4.1", "netscapeServerGatedCrypto"},
    {"2.23.133.8.1", "tcgEndorsementKeyCertificate"},
    // Policies and their qualifiers, RFC 5280 and CA/Browser Forum
    {"2.5.29.32.0", "anyPolicy"},
    {"1.3.6.1.5.5.7.2.1", "cps"},
    {"1.3.6.1.5.5.7.2.2", "userNotice"},
    {"2.23.140.1.1", "extendedValidation"},
    {"2.23.140.1.2.1", "domainValidated"},
    {"2.23.140.1.2.2", "organizationValidated"},
    {"2.23.140.1.2.3", "individualValidated"},
    // Hold instructions, RFC 3280
    {"1.2.840.10040.2.1", "none"},
    {"1.2.840.10040.2.2", "callIssuer"},
    {"1.2.840.10040.2.3", "reject"},
    // Attributes of a subject, RFC 3739, X.520, RFC 5755, TCG
    {"1.3.6.1.5.5.7.9.1", "dateOfBirth"},
    {"1.3.6.1.5.5.7.9.2", "placeOfBirth"},
    {"1.3.6.1.5.5.7.9.3", "gender"},
    {"1.3.6.1.5.5.7.9.4", "countryOfCitizenship"},
    {"1.3.6.1.5.5.7.9.5", "countryOfResidence"},
    {"2.5.4.3", "commonName"},
    {"2.5.4.5", "serialNumber"},
    {"2.5.4.6", "countryName"},
    {"2.5.4.9", "streetAddress"},
    {"2.5.4.12", "title"},
    {"2.5.4.16", "postalAddress"},
    {"2.5.4.20", "telephoneNumber"},
    {"2.5.4.52", "supportedAlgorithms"},
    {"2.5.4.72", "role"},
    {"2.5.1.5.55", "clearance"},
    {"2.23.133.2.16", "tPMSpecification"},
    {"2.23.133.2.18", "tPMSecurityAssertions"},
    // Attributes of a certificate request, RFC 2985
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"1.2.840.113549.1.9.7", "challengePassword"},
    {"1.2.840.113549.1.9.8", "unstructuredAddress"},
    {"1.2.840.113549.1.9.14", "extensionRequest"},
    // Of single makers
    {"1.3.6.1.4.1.311.2.1.14", "microsoftCertExtensions"},
    {"1.3.6.1.4.1.311.13.2.3", "microsoftOSVersion"},
    {"2.16.840.1.113730.1.1", "netscapeCertType"},
    {"2.16.840.1.113730.1.13", "netscapeComment"},
    {"1.2.840.113533.7.65.0", "entrustVersionInfo"},
    {"1.3.6.1.4.1.311.20.2", "microsoftCertTypeName"},
    {"1.3.6.1.4.1.311.21.1", "microsoftCAVersion"},
    {"1.3.6.1.4.1.311.21.2", "microsoftPreviousCACertHash"},
    {"1.3.6.1.4.1.311.21.7", "microsoftCertificateTemplate"},
    {"1.3.6.1.4.1.311.21.10", "microsoftApplicationPolicies"},
};

}  // namespace

const char *identifierName(const ketra::ObjectIdentifierView &identifier) {
  const std::string text = identifier.text();
  for (const Name &name : kNames) {
    if (name.identifier == text) return name.name;
  }
  return nullptr;
}

Json identifierJson(const ketra::ObjectIdentifierView &identifier) {
  Json json{{"identifier", identifier.text()}};
  addIdentifierHex(json, identifier);
  if (const char *name = identifierName(identifier); name != nullptr) json["name"] = name;
  return json;
}

void addIdentifierHex(Json &json, const ketra::ObjectIdentifierView &identifier) {
  if (hasLargeArc(identifier)) json["identifierHex"] = hex(identifier.content());
}

}  // namespace tool
