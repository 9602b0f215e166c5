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

// FulcioIssuer ::= UTF8String
template <class Form>
struct FulcioIssuerOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioIssuer";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.8"_oid;
};
using FulcioIssuer = FulcioIssuerOf<Owned>;       ///< owns what it holds
using FulcioIssuerView = FulcioIssuerOf<Viewed>;  ///< points to what it was read from

// FulcioBuildSignerURI ::= UTF8String
template <class Form>
struct FulcioBuildSignerUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildSignerURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.9"_oid;
};
using FulcioBuildSignerUri = FulcioBuildSignerUriOf<Owned>;       ///< owns what it holds
using FulcioBuildSignerUriView = FulcioBuildSignerUriOf<Viewed>;  ///< points to what it was read from

// FulcioBuildSignerDigest ::= UTF8String
template <class Form>
struct FulcioBuildSignerDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildSignerDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.10"_oid;
};
using FulcioBuildSignerDigest = FulcioBuildSignerDigestOf<Owned>;       ///< owns what it holds
using FulcioBuildSignerDigestView = FulcioBuildSignerDigestOf<Viewed>;  ///< points to what it was read from

// FulcioRunnerEnvironment ::= UTF8String
template <class Form>
struct FulcioRunnerEnvironmentOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioRunnerEnvironment";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.11"_oid;
};
using FulcioRunnerEnvironment = FulcioRunnerEnvironmentOf<Owned>;       ///< owns what it holds
using FulcioRunnerEnvironmentView = FulcioRunnerEnvironmentOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryURI ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.12"_oid;
};
using FulcioSourceRepositoryUri = FulcioSourceRepositoryUriOf<Owned>;       ///< owns what it holds
using FulcioSourceRepositoryUriView = FulcioSourceRepositoryUriOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryDigest ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.13"_oid;
};
using FulcioSourceRepositoryDigest = FulcioSourceRepositoryDigestOf<Owned>;       ///< owns what it holds
using FulcioSourceRepositoryDigestView = FulcioSourceRepositoryDigestOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryRef ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryRefOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryRef";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.14"_oid;
};
using FulcioSourceRepositoryRef = FulcioSourceRepositoryRefOf<Owned>;       ///< owns what it holds
using FulcioSourceRepositoryRefView = FulcioSourceRepositoryRefOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryIdentifier ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryIdentifierOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryIdentifier";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.15"_oid;
};
using FulcioSourceRepositoryIdentifier = FulcioSourceRepositoryIdentifierOf<Owned>;  ///< owns what it holds
using FulcioSourceRepositoryIdentifierView =
    FulcioSourceRepositoryIdentifierOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryOwnerURI ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryOwnerUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryOwnerURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.16"_oid;
};
using FulcioSourceRepositoryOwnerUri = FulcioSourceRepositoryOwnerUriOf<Owned>;  ///< owns what it holds
using FulcioSourceRepositoryOwnerUriView =
    FulcioSourceRepositoryOwnerUriOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryOwnerIdentifier ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryOwnerIdentifierOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryOwnerIdentifier";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.17"_oid;
};
using FulcioSourceRepositoryOwnerIdentifier = FulcioSourceRepositoryOwnerIdentifierOf<Owned>;  ///< owns what it holds
using FulcioSourceRepositoryOwnerIdentifierView =
    FulcioSourceRepositoryOwnerIdentifierOf<Viewed>;  ///< points to what it was read from

// FulcioBuildConfigURI ::= UTF8String
template <class Form>
struct FulcioBuildConfigUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildConfigURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.18"_oid;
};
using FulcioBuildConfigUri = FulcioBuildConfigUriOf<Owned>;       ///< owns what it holds
using FulcioBuildConfigUriView = FulcioBuildConfigUriOf<Viewed>;  ///< points to what it was read from

// FulcioBuildConfigDigest ::= UTF8String
template <class Form>
struct FulcioBuildConfigDigestOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildConfigDigest";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.19"_oid;
};
using FulcioBuildConfigDigest = FulcioBuildConfigDigestOf<Owned>;       ///< owns what it holds
using FulcioBuildConfigDigestView = FulcioBuildConfigDigestOf<Viewed>;  ///< points to what it was read from

// FulcioBuildTrigger ::= UTF8String
template <class Form>
struct FulcioBuildTriggerOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioBuildTrigger";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.20"_oid;
};
using FulcioBuildTrigger = FulcioBuildTriggerOf<Owned>;       ///< owns what it holds
using FulcioBuildTriggerView = FulcioBuildTriggerOf<Viewed>;  ///< points to what it was read from

// FulcioRunInvocationURI ::= UTF8String
template <class Form>
struct FulcioRunInvocationUriOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioRunInvocationURI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.21"_oid;
};
using FulcioRunInvocationUri = FulcioRunInvocationUriOf<Owned>;       ///< owns what it holds
using FulcioRunInvocationUriView = FulcioRunInvocationUriOf<Viewed>;  ///< points to what it was read from

// FulcioSourceRepositoryVisibility ::= UTF8String
template <class Form>
struct FulcioSourceRepositoryVisibilityOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioSourceRepositoryVisibility";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.22"_oid;
};
using FulcioSourceRepositoryVisibility = FulcioSourceRepositoryVisibilityOf<Owned>;  ///< owns what it holds
using FulcioSourceRepositoryVisibilityView =
    FulcioSourceRepositoryVisibilityOf<Viewed>;  ///< points to what it was read from

// FulcioDeploymentEnvironment ::= UTF8String
template <class Form>
struct FulcioDeploymentEnvironmentOf : Scalar<Utf8StringOf<Form>> {
  static constexpr std::string_view name = "FulcioDeploymentEnvironment";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.57264.1.23"_oid;
};
using FulcioDeploymentEnvironment = FulcioDeploymentEnvironmentOf<Owned>;       ///< owns what it holds
using FulcioDeploymentEnvironmentView = FulcioDeploymentEnvironmentOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
