/// @file
/// Fulcio's extensions: who has built what is signed, and from which source. Those with the identifiers
/// 1.3.6.1.4.1.57264.1.1 to .6, which are outdated, are characters without an encoding and have no type.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

/// FulcioIssuer ::= UTF8String
/// @{
template <class Form>
struct FulcioIssuerOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioIssuer";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.8"_oid;
};
using FulcioIssuer = FulcioIssuerOf<Owned>;
using FulcioIssuerView = FulcioIssuerOf<Viewed>;
/// @}

/// FulcioBuildSignerURI ::= UTF8String
/// @{
template <class Form>
struct FulcioBuildSignerUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildSignerURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.9"_oid;
};
using FulcioBuildSignerUri = FulcioBuildSignerUriOf<Owned>;
using FulcioBuildSignerUriView = FulcioBuildSignerUriOf<Viewed>;
/// @}

/// FulcioBuildSignerDigest ::= UTF8String
/// @{
template <class Form>
struct FulcioBuildSignerDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildSignerDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.10"_oid;
};
using FulcioBuildSignerDigest = FulcioBuildSignerDigestOf<Owned>;
using FulcioBuildSignerDigestView = FulcioBuildSignerDigestOf<Viewed>;
/// @}

/// FulcioRunnerEnvironment ::= UTF8String
/// @{
template <class Form>
struct FulcioRunnerEnvironmentOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioRunnerEnvironment";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.11"_oid;
};
using FulcioRunnerEnvironment = FulcioRunnerEnvironmentOf<Owned>;
using FulcioRunnerEnvironmentView = FulcioRunnerEnvironmentOf<Viewed>;
/// @}

/// FulcioSourceRepositoryURI ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.12"_oid;
};
using FulcioSourceRepositoryUri = FulcioSourceRepositoryUriOf<Owned>;
using FulcioSourceRepositoryUriView = FulcioSourceRepositoryUriOf<Viewed>;
/// @}

/// FulcioSourceRepositoryDigest ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.13"_oid;
};
using FulcioSourceRepositoryDigest = FulcioSourceRepositoryDigestOf<Owned>;
using FulcioSourceRepositoryDigestView = FulcioSourceRepositoryDigestOf<Viewed>;
/// @}

/// FulcioSourceRepositoryRef ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryRefOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryRef";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.14"_oid;
};
using FulcioSourceRepositoryRef = FulcioSourceRepositoryRefOf<Owned>;
using FulcioSourceRepositoryRefView = FulcioSourceRepositoryRefOf<Viewed>;
/// @}

/// FulcioSourceRepositoryIdentifier ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryIdentifierOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryIdentifier";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.15"_oid;
};
using FulcioSourceRepositoryIdentifier = FulcioSourceRepositoryIdentifierOf<Owned>;
using FulcioSourceRepositoryIdentifierView = FulcioSourceRepositoryIdentifierOf<Viewed>;
/// @}

/// FulcioSourceRepositoryOwnerURI ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryOwnerUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryOwnerURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.16"_oid;
};
using FulcioSourceRepositoryOwnerUri = FulcioSourceRepositoryOwnerUriOf<Owned>;
using FulcioSourceRepositoryOwnerUriView = FulcioSourceRepositoryOwnerUriOf<Viewed>;
/// @}

/// FulcioSourceRepositoryOwnerIdentifier ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryOwnerIdentifierOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryOwnerIdentifier";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.17"_oid;
};
using FulcioSourceRepositoryOwnerIdentifier = FulcioSourceRepositoryOwnerIdentifierOf<Owned>;
using FulcioSourceRepositoryOwnerIdentifierView = FulcioSourceRepositoryOwnerIdentifierOf<Viewed>;
/// @}

/// FulcioBuildConfigURI ::= UTF8String
/// @{
template <class Form>
struct FulcioBuildConfigUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildConfigURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.18"_oid;
};
using FulcioBuildConfigUri = FulcioBuildConfigUriOf<Owned>;
using FulcioBuildConfigUriView = FulcioBuildConfigUriOf<Viewed>;
/// @}

/// FulcioBuildConfigDigest ::= UTF8String
/// @{
template <class Form>
struct FulcioBuildConfigDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildConfigDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.19"_oid;
};
using FulcioBuildConfigDigest = FulcioBuildConfigDigestOf<Owned>;
using FulcioBuildConfigDigestView = FulcioBuildConfigDigestOf<Viewed>;
/// @}

/// FulcioBuildTrigger ::= UTF8String
/// @{
template <class Form>
struct FulcioBuildTriggerOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildTrigger";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.20"_oid;
};
using FulcioBuildTrigger = FulcioBuildTriggerOf<Owned>;
using FulcioBuildTriggerView = FulcioBuildTriggerOf<Viewed>;
/// @}

/// FulcioRunInvocationURI ::= UTF8String
/// @{
template <class Form>
struct FulcioRunInvocationUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioRunInvocationURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.21"_oid;
};
using FulcioRunInvocationUri = FulcioRunInvocationUriOf<Owned>;
using FulcioRunInvocationUriView = FulcioRunInvocationUriOf<Viewed>;
/// @}

/// FulcioSourceRepositoryVisibility ::= UTF8String
/// @{
template <class Form>
struct FulcioSourceRepositoryVisibilityOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryVisibility";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.22"_oid;
};
using FulcioSourceRepositoryVisibility = FulcioSourceRepositoryVisibilityOf<Owned>;
using FulcioSourceRepositoryVisibilityView = FulcioSourceRepositoryVisibilityOf<Viewed>;
/// @}

/// FulcioDeploymentEnvironment ::= UTF8String
/// @{
template <class Form>
struct FulcioDeploymentEnvironmentOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioDeploymentEnvironment";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.23"_oid;
};
using FulcioDeploymentEnvironment = FulcioDeploymentEnvironmentOf<Owned>;
using FulcioDeploymentEnvironmentView = FulcioDeploymentEnvironmentOf<Viewed>;
/// @}

}  // namespace ketra
