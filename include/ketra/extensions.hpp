/// @file
/// All typed extensions, and the objects that hold them.
#pragma once

#include "ketra/asn1/walk.hpp"
#include "ketra/extensions/admission.hpp"
#include "ketra/extensions/adobe.hpp"
#include "ketra/extensions/application_policies.hpp"
#include "ketra/extensions/authority_info_access.hpp"
#include "ketra/extensions/authority_key_id.hpp"
#include "ketra/extensions/autonomous_sys_ids.hpp"
#include "ketra/extensions/basic_constraints.hpp"
#include "ketra/extensions/biometric_info.hpp"
#include "ketra/extensions/cabf_organization_identifier.hpp"
#include "ketra/extensions/cert_issuer.hpp"
#include "ketra/extensions/cert_policies.hpp"
#include "ketra/extensions/crl_distribution_points.hpp"
#include "ketra/extensions/crl_number.hpp"
#include "ketra/extensions/delta_crl_indicator.hpp"
#include "ketra/extensions/entrust_version_info.hpp"
#include "ketra/extensions/etsi_short_term.hpp"
#include "ketra/extensions/expired_certs_on_crl.hpp"
#include "ketra/extensions/ext_key_usage.hpp"
#include "ketra/extensions/freshest_crl.hpp"
#include "ketra/extensions/fulcio.hpp"
#include "ketra/extensions/icao.hpp"
#include "ketra/extensions/inhibit_any_policy.hpp"
#include "ketra/extensions/instruction_code.hpp"
#include "ketra/extensions/invalidity_date.hpp"
#include "ketra/extensions/ip_addr_blocks.hpp"
#include "ketra/extensions/issuer_alt_name.hpp"
#include "ketra/extensions/issuing_distribution_point.hpp"
#include "ketra/extensions/key_usage.hpp"
#include "ketra/extensions/lei.hpp"
#include "ketra/extensions/logotype.hpp"
#include "ketra/extensions/microsoft.hpp"
#include "ketra/extensions/microsoft_certificate_template.hpp"
#include "ketra/extensions/microsoft_crl_self_cdp.hpp"
#include "ketra/extensions/name_constraints.hpp"
#include "ketra/extensions/netscape.hpp"
#include "ketra/extensions/no_rev_avail.hpp"
#include "ketra/extensions/ntds_ca_security.hpp"
#include "ketra/extensions/ocsp_no_check.hpp"
#include "ketra/extensions/piv.hpp"
#include "ketra/extensions/policy_constraints.hpp"
#include "ketra/extensions/policy_mappings.hpp"
#include "ketra/extensions/precert_poison.hpp"
#include "ketra/extensions/private_key_usage_period.hpp"
#include "ketra/extensions/proxy_cert_info.hpp"
#include "ketra/extensions/qc_statements.hpp"
#include "ketra/extensions/reason_code.hpp"
#include "ketra/extensions/restriction.hpp"
#include "ketra/extensions/sct_list.hpp"
#include "ketra/extensions/smime_capabilities.hpp"
#include "ketra/extensions/subject_alt_name.hpp"
#include "ketra/extensions/subject_directory_attributes.hpp"
#include "ketra/extensions/subject_info_access.hpp"
#include "ketra/extensions/subject_key_id.hpp"
#include "ketra/extensions/tls_feature.hpp"
#include "ketra/extensions/tor_service_descriptor.hpp"
#include "ketra/extensions/validity_model.hpp"
#include "ketra/objects/extensions.hpp"

/// The C++ library.
namespace ketra {

/// Types in a row.
template <class... Ts>
struct Types {};

/// Every typed extension: what deals with all of them takes them from here.
using ExtensionTypes =
    Types<SubjectDirectoryAttributes, SubjectKeyId, KeyUsage, PrivateKeyUsagePeriod, SubjectAltName, IssuerAltName,
          BasicConstraints, CrlNumber, ReasonCode, HoldInstruction, InvalidityDate, DeltaCrlIndicator,
          IssuingDistributionPoint, CertificateIssuer, NameConstraints, CrlDistributionPoints, CertificatePolicies,
          PolicyMappings, AuthorityKeyId, PolicyConstraints, ExtKeyUsage, InhibitAnyPolicy, FreshestCrl, NoRevAvail,
          ExpiredCertsOnCrl, AuthorityInfoAccess, BiometricInfo, SpanishBiometricInfo, QcStatements, IpAddrBlocks,
          IpAddrBlocksV2, AutonomousSysIds, AutonomousSysIdsV2, SubjectInfoAccess, Logotype, ProxyCertInfo, TlsFeature,
          OcspNoCheck, SmimeCapabilities, SctList, PrecertPoison, CabfOrganizationIdentifier, TorServiceDescriptor,
          EtsiShortTerm, Lei, LeiRole, NetscapeCertType, NetscapeBaseUrl, NetscapeRevocationUrl,
          NetscapeCaRevocationUrl, NetscapeCertRenewalUrl, NetscapeCaPolicyUrl, NetscapeSslServerName, NetscapeComment,
          MicrosoftCertTypeName, MicrosoftCaVersion, MicrosoftPreviousCaCertHash, MicrosoftVirtualBaseCrlNumber,
          MicrosoftNextCrlPublish, MicrosoftCertificateTemplate, ApplicationPolicies, ApplicationPolicyMappings,
          ApplicationPolicyConstraints, MicrosoftCrlSelfCdp, NtdsCaSecurity, EntrustVersionInfo, AdobeTimestamp,
          AdobeArchiveRevInfo, PivInterim, IcaoNameChange, IcaoDocumentTypeList, Restriction, Admission, ValidityModel,
          FulcioIssuer, FulcioBuildSignerUri, FulcioBuildSignerDigest, FulcioRunnerEnvironment,
          FulcioSourceRepositoryUri, FulcioSourceRepositoryDigest, FulcioSourceRepositoryRef,
          FulcioSourceRepositoryIdentifier, FulcioSourceRepositoryOwnerUri, FulcioSourceRepositoryOwnerIdentifier,
          FulcioBuildConfigUri, FulcioBuildConfigDigest, FulcioBuildTrigger, FulcioRunInvocationUri,
          FulcioSourceRepositoryVisibility, FulcioDeploymentEnvironment>;

}  // namespace ketra
