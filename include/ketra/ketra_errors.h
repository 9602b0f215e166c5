/** @file
 * Every error code that libketra sets: name, code, function, reason (the text of its trace entry), meaning.
 * 0x014 in the top 12 bits, a function number in the next 12, the reason in the last 8. */
#ifndef KETRA_ERRORS_H
#define KETRA_ERRORS_H

/** @addtogroup errors
 * @{ */

/** The codes of libketra: X(name, code, function, reason, meaning). */
#define KETRA_ERROR_LIST(X)                                                                                            \
  X(KetraError_NullParameter, 0x01460F02, "any", "None parameter",                                                     \
    "a required handle, structure or out-parameter is null")                                                           \
  X(KetraError_CriticalAbsent, 0x0146F104, "ketraObjectSgetCritical", "None extension",                                \
    "the extension is not in the Extensions object")                                                                   \
  X(KetraError_ExtensionAbsent, 0x0146F204, "ketraObjectSgetValueByObjid", "None extension",                           \
    "the extension is not in the Extensions object")                                                                   \
  X(KetraError_SetBasicConstraintsPathLen, 0x01464852, "KetraObjectSsetBasicConstraints", "pathLen",                   \
    "pathLenConstraint is present and negative")                                                                       \
  X(KetraError_GetBasicConstraintsPathLen, 0x0146B952, "KetraObjectSgetBasicConstraints", "pathLen",                   \
    "the stored pathLenConstraint is negative")                                                                        \
  X(KetraError_SetKeyUsageBitLength, 0x0146203A, "KetraObjectSsetKeyUsage", "bitlength",                               \
    "more than nine key usage bits")                                                                                   \
  X(KetraError_SetNameNoNameObject, 0x01472102, "X509GenNameObjectSetName", "None NameObject",                         \
    "a directoryName without Name object")                                                                             \
  X(KetraError_SetNameType, 0x01472144, "X509GenNameObjectSetName", "type", "no kind of GeneralName has this number")  \
  X(KetraError_GetNameEmpty, 0x01475102, "X509GenNameObjectGetName", "None parameter",                                 \
    "the GeneralName object holds no name")                                                                            \
  X(KetraError_GetPduEmpty, 0x01479103, "X509GenNameObjectGetPduDER, X509GenNameObjectGetPduBER",                      \
    "None PDU and None Param", "the GeneralName object holds no name")                                                 \
  X(KetraError_ResetParamType, 0x0147E144, "x509GenNameObjectResetParam", "type", "the GeneralName object is damaged") \
  X(KetraError_SetParamType, 0x0147E244, "x509GenNameObjectSetParam", "type", "the GeneralName object is damaged")     \
  X(KetraError_GetParamType, 0x0147E344, "x509GenNameObjectGetParam", "type",                                          \
    "no kind of GeneralName has this number")                                                                          \
  X(KetraError_GenNameObjectMissing, 0x0147F202, "x509MUtilSgetGenNameObject", "None GenNameObject",                   \
    "no GeneralName object to read into")                                                                              \
  X(KetraError_GenNameElementEmpty, 0x0147F221, "x509MUtilSgetGenNameObject", "the element path",                      \
    "no GeneralName stands at the path")                                                                               \
  X(KetraError_GenNamesNoObject, 0x0147F302, "x509MUtilSetGenNames", "None parameter",                                 \
    "a node names no GeneralName object")                                                                              \
  X(KetraError_GenNamesEmpty, 0x0147F382, "x509MUtilSetGenNames", "Count of SetOf = 0",                                \
    "the chain of GeneralNames is empty")                                                                              \
  X(KetraError_GenNamesAbsent, 0x0147F406, "x509MUtilSgetGenNames", "Call AsnGetElement",                              \
    "no GeneralNames stand at the path")                                                                               \
  X(KetraError_GenNamesChainShort, 0x0147F499, "x509MUtilSgetGenNames", "Chain is too short ",                         \
    "fewer nodes than GeneralNames")                                                                                   \
  X(KetraError_PathOfGenNameType, 0x0147F544, "X509MUtilGetPathOfGenName", "type",                                     \
    "no kind of GeneralName has this number")                                                                          \
  X(KetraError_CheckGenNamesNoObject, 0x0147F602, "X509MUtilCheckGenNames", "No Object",                               \
    "a node names no GeneralName object")                                                                              \
  X(KetraError_CheckGenNamesEmpty, 0x0147F682, "X509MUtilCheckGenNames", "Count = 0",                                  \
    "the chain of GeneralNames is empty")                                                                              \
  X(KetraError_CheckGenNamesOption, 0x0147F754, "X509MUtilCheckGenNamesOpt", "option",                                 \
    "a presence flag other than 0 and 1")                                                                              \
  X(KetraError_SetORAddressDomain, 0x0147F985, "x509MUtilSetORAddress", "Count of SequenceOf is invalid",              \
    "domain-defined attributes without a member")                                                                      \
  X(KetraError_SetORAddressExtension, 0x0147F986, "x509MUtilSetORAddress", "Count of SequenceOf is invalid",           \
    "extension attributes without a member")                                                                           \
  X(KetraError_ORAddressAbsent, 0x0147FA06, "x509MUtilSgetORAddress", "Call AsnGetElement",                            \
    "no ORAddress stands at the path")                                                                                 \
  X(KetraError_ORAddressPartAbsent, 0x0147FA21, "x509MUtilSgetORAddress", "the component",                             \
    "a component of the ORAddress is missing")                                                                         \
  X(KetraError_ORAddressPartEmpty, 0x0147FA22, "x509MUtilSgetORAddress", "the component",                              \
    "a component of the ORAddress is empty")                                                                           \
  X(KetraError_GetORAddressDomain, 0x0147FA85, "x509MUtilSgetORAddress", "Count of SequenceOf is invalid",             \
    "domain-defined attributes without a member")                                                                      \
  X(KetraError_GetORAddressExtension, 0x0147FA86, "x509MUtilSgetORAddress", "Count of SequenceOf is invalid",          \
    "extension attributes without a member")                                                                           \
  X(KetraError_CertIssuerAbsent, 0x0146DA82, "KetraObjectSgetCertIssuerCalGenName", "CertIssuer",                      \
    "no GeneralNames in the extension")                                                                                \
  X(KetraError_SetDistributionPointNameType, 0x014FD147, "X509MUtilSetDistributionPointName", "type",                  \
    "no DistributionPointName has this alternative")                                                                   \
  X(KetraError_DistributionPointNameAbsent, 0x014FD27B, "X509MUtilSgetDistributionPointName",                          \
    "Not Exist DistributionPointName", "no DistributionPointName stands at the path")                                  \
  X(KetraError_RelativeNameEmpty, 0x014FD288, "X509MUtilSgetDistributionPointName", "Count of SequenceOf = 0",         \
    "a relative name without attributes")                                                                              \
  X(KetraError_RelativeNameChainShort, 0x014FD299, "X509MUtilSgetDistributionPointName",                               \
    "Chain of DistributionPointName ", "fewer nodes than attributes of the relative name")                             \
  X(KetraError_RelativeNameValueAbsent, 0x014FD221, "X509MUtilSgetDistributionPointName", "value",                     \
    "an attribute of the relative name has no value")                                                                  \
  X(KetraError_RelativeNameValueEmpty, 0x014FD222, "X509MUtilSgetDistributionPointName", "value",                      \
    "an attribute of the relative name has an empty value")                                                            \
  X(KetraError_GetDistributionPointNameChoice, 0x014FD223, "X509MUtilSgetDistributionPointName", "choiceNo",           \
    "no DistributionPointName has this alternative")                                                                   \
  X(KetraError_CheckRelativeNameEmpty, 0x014FD488, "X509MUtilCheckDistributionPointName",                              \
    "AttributeTypeAndValue Count = 0", "a relative name without attributes")                                           \
  X(KetraError_CheckDistributionPointNameType, 0x014FD447, "X509MUtilCheckDistributionPointName", "type",              \
    "no DistributionPointName has this alternative")                                                                   \
  X(KetraError_CheckDistributionPointNameOption, 0x014FD554, "X509MUtilCheckDistributionPointNameOpt", "option",       \
    "a presence flag other than 0 and 1")                                                                              \
  X(KetraError_CalDistributionPointNameChoice, 0x014FD623, "X509MUtilCalDistributionPointName", "choiceNo",            \
    "no DistributionPointName has this alternative")                                                                   \
  X(KetraError_SetGenSubtreesEmpty, 0x014FB186, "X509MUtilSetGenSubtrees", "GenSubtree",                               \
    "the chain of subtrees is empty")                                                                                  \
  X(KetraError_GetGenSubtreesEmpty, 0x014FB286, "X509MUtilSgetGenSubtrees", "Count of SequenceOf = 0",                 \
    "the list of subtrees has no member")                                                                              \
  X(KetraError_GenSubtreesChainShort, 0x014FB299, "X509MUtilSgetGenSubtrees", "Chain of GenSubtrees",                  \
    "fewer nodes than subtrees")                                                                                       \
  X(KetraError_CheckGenSubtreesEmpty, 0x014FB486, "X509MUtilCheckGenSubtrees", "Count = 0",                            \
    "the chain of subtrees is empty")                                                                                  \
  X(KetraError_CheckGenSubtreesNoBase, 0x014FB402, "X509MUtilCheckGenSubtrees", "No Object",                           \
    "a subtree names no GeneralName object")                                                                           \
  X(KetraError_CheckGenSubtreesOption, 0x014FB554, "X509MUtilCheckGenSubtreesOpt", "option",                           \
    "a presence flag other than 0 and 1")                                                                              \
  X(KetraError_CheckDistributionPointsEmpty, 0x014FC187, "X509MUtilCheckCRLDistributionPoints", "Count = 0",           \
    "the chain of distribution points is empty")                                                                       \
  X(KetraError_CalDistributionPointsAbsent, 0x0146D487, "KetraObjectSgetCRLDistributionPointsCalDistributionPoint",    \
    "CRLDistributionPoints", "no list in the extension")                                                               \
  X(KetraError_GetDistributionPointsEmpty, 0x0146D787, "KetraObjectSgetCRLDistributionPoints",                         \
    "CRLDistributionPoints, Count of SequenceOf = 0", "no list in the extension, or a list without a point")           \
  X(KetraError_DistributionPointsChainShort, 0x0146D799, "KetraObjectSgetCRLDistributionPoints",                       \
    "Chain of CRLDistributionPoints", "fewer nodes than distribution points")                                          \
  X(KetraError_SetCRLNumber, 0x01465053, "KetraObjectSsetCRLNumber", "cRLNumber", "a negative CRL number")             \
  X(KetraError_SetDeltaCRLIndicator, 0x01466A53, "KetraObjectSsetDeltaCRLIndicator", "deltaCRLIndicator",              \
    "a negative CRL number")                                                                                           \
  X(KetraError_GetCRLNumber, 0x0146C053, "KetraObjectSgetCRLNumber", "cRLNumber", "the stored CRL number is negative") \
  X(KetraError_GetDeltaCRLIndicator, 0x0146DC53, "KetraObjectSgetDeltaCRLIndicator", "deltaCRLIndicator",              \
    "the stored CRL number is negative")                                                                               \
  X(KetraError_SetAuthorityKeyIdOpt, 0x01461059, "KetraObjectSsetAuthorityKeyId", "opt",                               \
    "issuer and serial number come together or not at all")                                                            \
  X(KetraError_GetAuthorityKeyIdIssuer, 0x01468182, "KetraObjectSgetAuthorityKeyId", "Count of SequenceOf = 0",        \
    "authorityCertIssuer without a name")                                                                              \
  X(KetraError_SetCertPoliciesEmpty, 0x01463083, "KetraObjectSsetCertPolicies", "Count = 0",                           \
    "the chain of policies is empty")                                                                                  \
  X(KetraError_SetCertPoliciesOption, 0x01463054, "KetraObjectSsetCertPolicies", "option",                             \
    "a presence flag other than 0 and 1")                                                                              \
  X(KetraError_SetCertPoliciesQualifiers, 0x01463084, "KetraObjectSsetCertPolicies", "Count = 0",                      \
    "policyQualifiers are present without a qualifier")                                                                \
  X(KetraError_CalCertPoliciesAbsent, 0x0146A183, "KetraObjectSgetCertPoliciesCalInformation", "CertPolicies",         \
    "no list in the extension")                                                                                        \
  X(KetraError_GetCertPoliciesIndex, 0x0146A383, "KetraObjectSgetCertPolicies", "certPolicies",                        \
    "no policy has this index")                                                                                        \
  X(KetraError_GetCertPoliciesChainShort, 0x0146A399, "KetraObjectSgetCertPolicies", "policyQualifiers",               \
    "fewer nodes than qualifiers")                                                                                     \
  X(KetraError_GetCertPoliciesQualifier, 0x0146A322, "KetraObjectSgetCertPolicies", "qualifier", "an empty qualifier") \
  X(KetraError_SetPolicyMappingsEmpty, 0x01466085, "KetraObjectSsetPolicyMappings", "Count = 0",                       \
    "the chain of mappings is empty")                                                                                  \
  X(KetraError_CalPolicyMappingsAbsent, 0x0146C885, "KetraObjectSgetPolicyMappingsCalPolicyMapping", "PolicyMappings", \
    "no list in the extension")                                                                                        \
  X(KetraError_GetPolicyMappingsEmpty, 0x0146C985, "KetraObjectSgetPolicyMappings",                                    \
    "PolicyMappings, Count of SequenceOf = 0", "no list in the extension, or a list without a mapping")                \
  X(KetraError_GetPolicyMappingsChainShort, 0x0146C999, "KetraObjectSgetPolicyMappings", "Chain of PolicyMappings",    \
    "fewer nodes than mappings")                                                                                       \
  X(KetraError_SetRequireExplicitPolicy, 0x01466364, "KetraObjectSsetPolicyConstraints",                               \
    "requireExplicitPolicy.value", "requireExplicitPolicy is present and negative")                                    \
  X(KetraError_SetInhibitPolicyMapping, 0x01466365, "KetraObjectSsetPolicyConstraints", "inhibitPolicyMapping.value",  \
    "inhibitPolicyMapping is present and negative")                                                                    \
  X(KetraError_GetRequireExplicitPolicy, 0x0146CF64, "KetraObjectSgetPolicyConstraints", "requireExplicitPolicy",      \
    "the stored requireExplicitPolicy is negative")                                                                    \
  X(KetraError_GetInhibitPolicyMapping, 0x0146CF65, "KetraObjectSgetPolicyConstraints", "inhibitPolicyMapping",        \
    "the stored inhibitPolicyMapping is negative")                                                                     \
  X(KetraError_SetExtKeyUsageEmpty, 0x01467089, "KetraObjectSsetExtKeyUsage", "Count = 0",                             \
    "the chain of key purposes is empty")                                                                              \
  X(KetraError_CalExtKeyUsageAbsent, 0x0146DE89, "KetraObjectSgetExtKeyUsageCalKeyPurposeId", "None ExtKeyUsage",      \
    "no list in the extension")                                                                                        \
  X(KetraError_GetExtKeyUsageEmpty, 0x0146DF89, "KetraObjectSgetExtKeyUsage",                                          \
    "None KeyPurposeId, Count of SequenceOf = 0", "no list in the extension, or a list without a key purpose")         \
  X(KetraError_GetExtKeyUsageChainShort, 0x0146DF99, "KetraObjectSgetExtKeyUsage", "Chain of KeyPurposeId",            \
    "fewer nodes than key purposes")                                                                                   \
  X(KetraError_SetReasonCode, 0x01466463, "KetraObjectSsetReasonCode", "reasonCode", "no reason code has this number") \
  X(KetraError_GetReasonCode, 0x0146D063, "KetraObjectSgetReasonCode", "reasonCode",                                   \
    "no reason code has the stored number")                                                                            \
  X(KetraError_SetAttributesMissing, 0x0146617C, "KetraObjectSsetSubjectDirectoryAttributes",                          \
    "Not Exist SubjectDirectoryAttributes", "no Attributes object to store")                                           \
  X(KetraError_GetAttributesMissing, 0x0146CA02, "KetraObjectSgetSubjectDirectoryAttributes", "None Param",            \
    "no Attributes object to read into")

/** A row for AsnErrorText: `static const AsnErrorMeaning meanings[] = {KETRA_ERROR_LIST(KETRA_ERROR_MEANING)};` */
#define KETRA_ERROR_MEANING(name, code, function, reason, meaning) {code, meaning},

/** A row as a constant. */
#define KETRA_ERROR_CONSTANT(name, code, function, reason, meaning) name = code,
/** The codes of libketra. */
enum { KETRA_ERROR_LIST(KETRA_ERROR_CONSTANT) };

/** @} */

#endif
