#include "library/outside_operations.h"

#include <algorithm>
#include <utility>

#include "library/outside_calls.h"

namespace ketra::test {
namespace {

bool isKind(const std::string &text) { return std::find(kKinds.begin(), kKinds.end(), text) != kKinds.end(); }

int32_t setName(const GenName &to, const GenName &from, AsnErrorBlock *err = nullptr) {
  const X509GenNameParam param = from.param();
  return X509GenNameObjectSetName(to, &param, err);
}

// An object that has its name as a parameter only and has to encode it.
void dropEncoding(GenName &name) { EXPECT_EQ(setName(name, name), 0); }

}  // namespace

const std::string kTime = " 32 30 32 34 30 31 30 31 30 30 30 30 30 30 5A ";

Stage::Stage(const std::string &name) : input(name), held(sampleOf(isKind(name) ? name : "directoryName")) {
  const std::pair<const Objid *, std::string> values[] = {
      {&X509Objid_BasicConstraints, "30 00"},
      {&X509Objid_KeyUsage, "03 02 07 80"},
      {&X509Objid_SubjectKeyId, "04 01 AA"},
      {&X509Objid_SubjectAltName, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_IssuerAltName, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_CertIssuer, "30 09 82 01 61 87 04 C0 00 02 01"},
      {&X509Objid_CRLDistributionPoints, Structures::pointsDer()},
      {&X509Objid_IssuingDistributionPoint, Structures::issuingDer()},
      {&X509Objid_NameConstraints, Structures::constraintsDer(name != "excludedSubtrees", name != "permittedSubtrees")},
      {&X509Objid_CRLNumber, "02 01 2A"},
      {&X509Objid_DeltaCRLIndicator, "02 01 2A"},
      {&X509Objid_AuthorityKeyId, Chains::kKeyId},
      {&X509Objid_CertPolicies, Chains::kPolicies},
      {&X509Objid_PolicyMappings, Chains::kMappings},
      {&X509Objid_PolicyConstraints, "30 06 80 01 03 81 01 00"},
      {&X509Objid_ExtKeyUsage, Chains::kPurposes},
      {&X509Objid_PrivateKeyUsagePeriod, "30 22 80 0F" + kTime + "81 0F" + kTime},
      {&X509Objid_ReasonCode, "0A 01 01"},
      {&X509Objid_InstructionCode, "06 03 2A 03 01"},
      {&X509Objid_InvalidityDate, "18 0F" + kTime},
      {&X509Objid_SubjectDirectoryAttributes, Attributes::kDer},
  };
  for (const auto &[objid, hex] : values) extensions.store(*objid, fromHex(hex));
  for (Names *list : {&samples.fullName, &samples.bases}) {
    dropEncoding(list->at(0));
    dropEncoding(list->at(1));
  }
  dropEncoding(samples.issuer.at(0));
  dropEncoding(sampleChains.issuer.at(0));
  EXPECT_EQ(object.setPdu(fromHex(held), false), 0);
  if (input != "empty") {
    EXPECT_EQ(source.setPdu(fromHex(held), false), 0);
  }
}

namespace {

// ---- Families ------------------------------------------------------------------------------------------------------

template <class Get>
Operation getPdu(Get get) {
  const Step run = [=](Stage &s, auto err) {
    AsnEncodedData encoding{};
    return get(s.object, &encoding, err);
  };
  return {.run = run, .prepare = [](Stage &s, auto err) { return setName(s.object, s.source, err); }};
}

template <class Set>
Operation setPdu(Set set) {
  const Step run = [=](Stage &s, auto err) {
    const bool isFirst = s.input.starts_with("first-");
    const Exact encoding(fromHex(sampleOf(isFirst ? s.input.substr(sizeof "first-" - 1) : s.input)));
    const AsnEncodedData data = encoding.data();
    return set(isFirst ? s.prepared.fullName.at(0) : s.object, &data, err);
  };
  return {.run = run};
}

template <class Set>
Operation setList(Set set) {
  const Step run = [=](Stage &s, auto err) {
    Names &names = s.input == "two" ? s.samples.fullName : s.samples.issuer;
    return set(s.names.object, s.names.value, "", names.first(), err);
  };
  return {.run = run};
}

template <class Get>
Operation getList(Get get) {
  const Step run = [=](Stage &s, auto err) {
    const Decoded &list = s.input == "two" ? s.two : s.one;
    return get(s.pool, list.object(), list.value(), "", s.prepared.fullName.first(), err);
  };
  return {.run = run};
}

template <class Get>
Operation getOne(Get get) {
  const Step run = [=](Stage &s, auto err) {
    const GenName &object = s.prepared.fullName.at(0);
    if (s.input == "iPAddress") return get(s.pool, s.one.object(), s.one.value(), "1", object, err);
    if (s.input.size() == 1) return get(s.pool, s.two.object(), s.two.value(), s.input.c_str(), object, err);
    const bool armed = std::exchange(outside.armed, false);
    const AsnValue list = s.subtrees.element("permittedSubtrees");
    outside.armed = armed;
    return get(s.pool, s.subtrees.object(), list, s.input.c_str(), object, err);
  };
  return {.run = run};
}

template <class Set>
Operation setNames(Set set, const Objid &objid) {
  const Step run = [=](Stage &s, auto err) {
    const X509GenNames value{s.samples.fullName.first()};
    if constexpr (std::is_invocable_v<Set, KetraObject, int32_t, const X509GenNames *, AsnErrorBlock *>) {
      return set(s.extensions, 1, &value, err);
    } else {
      return set(s.extensions, &value, err);
    }
  };
  return {run, &objid, "GeneralNames"};
}

template <class Get>
Operation getNames(Get get, const Objid &objid, const char *opened) {
  const Step run = [=](Stage &s, auto err) {
    const X509GenNames value{s.prepared.fullName.first()};
    return get(s.extensions, &value, err);
  };
  return {run, &objid, opened};
}

template <class Get>
Operation count(Get get, const Objid &objid, const char *opened) {
  return {[=](Stage &s, auto err) { return get(s.extensions, &s.number, err); }, &objid, opened};
}

template <class Set, class Value>
Operation setScalar(Set set, Value value, const Objid &objid, const char *opened) {
  return {[=](Stage &s, auto err) { return set(s.extensions, &value, err); }, &objid, opened};
}

template <class Value, class Get>
Operation getScalar(Get get, const Objid &objid, const char *opened) {
  const Step run = [=](Stage &s, auto err) {
    Value value{};
    return get(s.extensions, &value, err);
  };
  return {run, &objid, opened};
}

// ---- One by one ----------------------------------------------------------------------------------------------------

constexpr uint8_t kOctets[] = {0x06, 0x00};

int32_t createAndDestroy(Stage &, AsnErrorBlock *err) {
  X509GenNameObject made = nullptr;
  const int32_t result = X509GenNameObjectCreate(&made, err);
  outside.armed = false;
  X509GenNameObjectDestroy(made, nullptr);
  return result;
}

int32_t setNameOf(Stage &s, AsnErrorBlock *err) {
  const bool isOwn = s.input.starts_with("its-own") && s.object.hasName();
  return setName(s.object, isOwn ? s.object : s.source, err);
}

int32_t prepareCopy(Stage &s, AsnErrorBlock *err) {
  dropEncoding(s.source);
  return s.object.setPdu(fromHex(sampleOf("directoryName")), true, err);
}

int32_t getPointName(Stage &s, AsnErrorBlock *err) {
  X509DistributionPointName name = s.preparedName();
  return X509MUtilSgetDistributionPointName(s.pool, s.point().object(), s.point().value(), "distributionPoint", &name,
                                            err);
}

int32_t getPointNameOpt(Stage &s, AsnErrorBlock *err) {
  X509DistributionPointNameOpt name{s.preparedName(), 0};
  return X509MUtilSgetDistributionPointNameOpt(s.pool, s.point().object(), s.point().value(), "distributionPoint",
                                               &name, err);
}

int32_t setConstraints(Stage &s, AsnErrorBlock *err) {
  const bool isPermitted = s.input == "permittedSubtrees";
  const KetraNameConstraints value{{s.samples.subtrees, isPermitted ? 1 : 0},
                                   {s.samples.subtrees, isPermitted ? 0 : 1}};
  return KetraObjectSsetNameConstraints(s.extensions, 1, &value, err);
}

int32_t getConstraints(Stage &s, AsnErrorBlock *err) {
  KetraNameConstraints value{{s.prepared.subtrees, 0}, {s.prepared.subtrees, 0}};
  return KetraObjectSgetNameConstraints(s.extensions, &value, err);
}

const std::map<std::string, Operation> kOperations = {
    {"KetraObjectSsetBasicConstraints",
     {[](Stage &s, auto err) {
        const KetraBasicConstraints value{{1, 1}, {3, 1}};
        return KetraObjectSsetBasicConstraints(s.extensions, 1, &value, err);
      },
      &X509Objid_BasicConstraints, "BasicConstraints"}},
    {"KetraObjectSgetBasicConstraints",
     {[](Stage &s, auto err) {
        KetraBasicConstraints value{};
        return KetraObjectSgetBasicConstraints(s.extensions, &value, err);
      },
      &X509Objid_BasicConstraints, "BasicConstraints"}},
    {"KetraObjectSgetBasicConstraintsCritical",
     {[](Stage &s, auto err) {
        int32_t critical = 0;
        return KetraObjectSgetBasicConstraintsCritical(s.extensions, &critical, err);
      },
      &X509Objid_BasicConstraints}},
    {"KetraObjectSsetKeyUsage",
     {[](Stage &s, auto err) {
        const AsnBit value{kOctets, 9};
        return KetraObjectSsetKeyUsage(s.extensions, 1, &value, err);
      },
      &X509Objid_KeyUsage, "BITSTRING"}},
    {"KetraObjectSgetKeyUsage",
     {[](Stage &s, auto err) {
        AsnBit value{};
        return KetraObjectSgetKeyUsage(s.extensions, &value, err);
      },
      &X509Objid_KeyUsage, "BITSTRING"}},
    {"KetraObjectSsetSubjectKeyId",
     {[](Stage &s, auto err) {
        const AsnOct value{kOctets, 2};
        return KetraObjectSsetSubjectKeyId(s.extensions, &value, err);
      },
      &X509Objid_SubjectKeyId, "SubjectKeyIdentifier"}},
    {"KetraObjectSgetSubjectKeyId",
     {[](Stage &s, auto err) {
        AsnOct value{};
        return KetraObjectSgetSubjectKeyId(s.extensions, &value, err);
      },
      &X509Objid_SubjectKeyId, "SubjectKeyIdentifier"}},
    {"X509GenNameObjectCreate", {createAndDestroy}},
    {"X509GenNameObjectDestroy",
     {[](Stage &s, auto err) { return X509GenNameObjectDestroy(std::exchange(*s.object.handle(), nullptr), err); }}},
    {"X509GenNameObjectSetName", {setNameOf}},
    {"X509GenNameObjectGetPduDER", getPdu(X509GenNameObjectGetPduDER)},
    {"X509GenNameObjectGetPduBER", getPdu(X509GenNameObjectGetPduBER)},
    {"X509GenNameObjectSetPduDER", setPdu(X509GenNameObjectSetPduDER)},
    {"X509GenNameObjectSetPduBER", setPdu(X509GenNameObjectSetPduBER)},
    {"X509GenNameObjectCopy", {[](Stage &s, auto err) { return X509GenNameObjectCopy(s.object, s.source, err); }}},
    {"X509MUtilSetGenNamesDER", setList(X509MUtilSetGenNamesDER)},
    {"X509MUtilSetGenNamesBER", setList(X509MUtilSetGenNamesBER)},
    {"X509MUtilSgetGenNamesDER", getList(X509MUtilSgetGenNamesDER)},
    {"X509MUtilSgetGenNamesBER", getList(X509MUtilSgetGenNamesBER)},
    {"X509MUtilSgetGenNameObjectDER", getOne(X509MUtilSgetGenNameObjectDER)},
    {"X509MUtilSgetGenNameObjectBER", getOne(X509MUtilSgetGenNameObjectBER)},
    {"X509MUtilCopyGenNameObject",
     {.run = [](Stage &s, auto err) { return X509MUtilCopyGenNameObject(s.object.handle(), s.source, err); },
      .prepare = prepareCopy}},
    {"KetraObjectSsetSubjectAltName", setNames(KetraObjectSsetSubjectAltName, X509Objid_SubjectAltName)},
    {"KetraObjectSsetIssuerAltName", setNames(KetraObjectSsetIssuerAltName, X509Objid_IssuerAltName)},
    {"KetraObjectSsetCertIssuer", setNames(KetraObjectSsetCertIssuer, X509Objid_CertIssuer)},
    {"KetraObjectSgetSubjectAltName",
     getNames(KetraObjectSgetSubjectAltName, X509Objid_SubjectAltName, "GeneralNames")},
    {"KetraObjectSgetIssuerAltName", getNames(KetraObjectSgetIssuerAltName, X509Objid_IssuerAltName, "GeneralNames")},
    {"KetraObjectSgetCertIssuer", getNames(KetraObjectSgetCertIssuer, X509Objid_CertIssuer, "CertificateIssuer")},
    {"KetraObjectSgetSubjectAltNameCalGenName",
     count(KetraObjectSgetSubjectAltNameCalGenName, X509Objid_SubjectAltName, "GeneralNames")},
    {"KetraObjectSgetIssuerAltNameCalGenName",
     count(KetraObjectSgetIssuerAltNameCalGenName, X509Objid_IssuerAltName, "GeneralNames")},
    {"KetraObjectSgetCertIssuerCalGenName",
     count(KetraObjectSgetCertIssuerCalGenName, X509Objid_CertIssuer, "CertificateIssuer")},
    {"X509MUtilSetDistributionPointName",
     {.run =
          [](Stage &s, auto err) {
            const X509DistributionPointName name = s.sampleName();
            return X509MUtilSetDistributionPointName(s.issuing.object, s.issuing.value, "distributionPoint", &name,
                                                     err);
          }}},
    {"X509MUtilSgetDistributionPointName", {getPointName}},
    {"X509MUtilSgetDistributionPointNameOpt", {getPointNameOpt}},
    {"X509MUtilCalDistributionPointName", {[](Stage &s, auto err) {
       return X509MUtilCalDistributionPointName(s.point().object(), s.point().value(), "distributionPoint", &s.choice,
                                                &s.number, err);
     }}},
    {"X509MUtilCheckDistributionPointName", {[](Stage &s, auto err) {
       return X509MUtilCheckDistributionPointName(&s.samples.issuing.distributionPoint.value, err);
     }}},
    {"X509MUtilCheckDistributionPointNameOpt", {[](Stage &s, auto err) {
       return X509MUtilCheckDistributionPointNameOpt(&s.samples.issuing.distributionPoint, err);
     }}},
    {"X509MUtilCheckCRLDistributionPoints",
     {[](Stage &s, auto err) { return X509MUtilCheckCRLDistributionPoints(s.samples.points, err); }}},
    {"KetraObjectSsetCRLDistributionPoints",
     {[](Stage &s, auto err) { return KetraObjectSsetCRLDistributionPoints(s.extensions, 1, s.samples.points, err); },
      &X509Objid_CRLDistributionPoints, "CRLDistributionPoints"}},
    {"KetraObjectSgetCRLDistributionPoints",
     {[](Stage &s, auto err) { return KetraObjectSgetCRLDistributionPoints(s.extensions, s.prepared.points, err); },
      &X509Objid_CRLDistributionPoints, "CRLDistributionPoints"}},
    {"KetraObjectSgetCRLDistributionPointsCalDistributionPoint",
     count(KetraObjectSgetCRLDistributionPointsCalDistributionPoint, X509Objid_CRLDistributionPoints,
           "CRLDistributionPoints")},
    {"KetraObjectSgetCRLDistributionPointsCalDistributionPointName",
     {[](Stage &s, auto err) {
        return KetraObjectSgetCRLDistributionPointsCalDistributionPointName(s.extensions, 0, &s.choice, &s.number, err);
      },
      &X509Objid_CRLDistributionPoints, "CRLDistributionPoints"}},
    {"KetraObjectSgetCRLDistributionPointsCalCRLIssuer",
     {[](Stage &s, auto err) {
        return KetraObjectSgetCRLDistributionPointsCalCRLIssuer(s.extensions, 0, &s.number, err);
      },
      &X509Objid_CRLDistributionPoints, "CRLDistributionPoints"}},
    {"KetraObjectSsetIssuingDistributionPoint",
     {[](Stage &s, auto err) { return KetraObjectSsetIssuingDistributionPoint(s.extensions, &s.samples.issuing, err); },
      &X509Objid_IssuingDistributionPoint, "IssuingDistributionPoint"}},
    {"KetraObjectSgetIssuingDistributionPoint",
     {[](Stage &s, auto err) {
        return KetraObjectSgetIssuingDistributionPoint(s.extensions, &s.prepared.issuing, err);
      },
      &X509Objid_IssuingDistributionPoint, "IssuingDistributionPoint"}},
    {"KetraObjectSgetIssuingDistributionPointCalDistributionPointName",
     {[](Stage &s, auto err) {
        return KetraObjectSgetIssuingDistributionPointCalDistributionPointName(s.extensions, &s.choice, &s.number, err);
      },
      &X509Objid_IssuingDistributionPoint, "IssuingDistributionPoint"}},
    {"X509MUtilSetGenSubtrees",
     {.run =
          [](Stage &s, auto err) {
            return X509MUtilSetGenSubtrees(s.constraints.object, s.constraints.value, "permittedSubtrees",
                                           s.samples.subtrees, err);
          }}},
    {"X509MUtilSgetGenSubtrees",
     {.run =
          [](Stage &s, auto err) {
            return X509MUtilSgetGenSubtrees(s.pool, s.subtrees.object(), s.subtrees.value(), "permittedSubtrees",
                                            s.prepared.subtrees, err);
          }}},
    {"X509MUtilSgetGenSubtreesOpt",
     {.run =
          [](Stage &s, auto err) {
            X509GenSubtreesOpt list{s.prepared.subtrees, 0};
            return X509MUtilSgetGenSubtreesOpt(s.pool, s.subtrees.object(), s.subtrees.value(), "permittedSubtrees",
                                               &list, err);
          }}},
    {"X509MUtilCheckGenSubtrees",
     {[](Stage &s, auto err) { return X509MUtilCheckGenSubtrees(s.samples.subtrees, err); }}},
    {"X509MUtilCheckGenSubtreesOpt", {[](Stage &s, auto err) {
       const X509GenSubtreesOpt list{s.samples.subtrees, 1};
       return X509MUtilCheckGenSubtreesOpt(&list, err);
     }}},
    {"KetraObjectSsetNameConstraints", {setConstraints, &X509Objid_NameConstraints, "NameConstraints"}},
    {"KetraObjectSgetNameConstraints", {getConstraints, &X509Objid_NameConstraints, "NameConstraints"}},
    {"KetraObjectSgetNameConstraintsCalGenSubtree",
     {[](Stage &s, auto err) {
        return KetraObjectSgetNameConstraintsCalGenSubtree(s.extensions, &s.number, &s.number, err);
      },
      &X509Objid_NameConstraints, "NameConstraints"}},
    {"KetraObjectSsetAuthorityKeyId",
     {[](Stage &s, auto err) { return KetraObjectSsetAuthorityKeyId(s.extensions, &s.sampleChains.keyId, err); },
      &X509Objid_AuthorityKeyId, "AuthorityKeyIdentifier"}},
    {"KetraObjectSgetAuthorityKeyId",
     {[](Stage &s, auto err) { return KetraObjectSgetAuthorityKeyId(s.extensions, &s.preparedChains.keyId, err); },
      &X509Objid_AuthorityKeyId, "AuthorityKeyIdentifier"}},
    {"KetraObjectSgetAuthorityKeyIdCalGenName",
     count(KetraObjectSgetAuthorityKeyIdCalGenName, X509Objid_AuthorityKeyId, "AuthorityKeyIdentifier")},
    {"KetraObjectSsetCertPolicies",
     {[](Stage &s, auto err) { return KetraObjectSsetCertPolicies(s.extensions, 1, &s.sampleChains.head, err); },
      &X509Objid_CertPolicies, "CertificatePoliciesSyntax"}},
    {"KetraObjectSgetCertPolicies",
     {[](Stage &s, auto err) { return KetraObjectSgetCertPolicies(s.extensions, 0, s.preparedChains.policies, err); },
      &X509Objid_CertPolicies, "CertificatePoliciesSyntax"}},
    {"KetraObjectSgetCertPoliciesCalInformation",
     count(KetraObjectSgetCertPoliciesCalInformation, X509Objid_CertPolicies, "CertificatePoliciesSyntax")},
    {"KetraObjectSgetCertPoliciesCalQualifier",
     {[](Stage &s, auto err) { return KetraObjectSgetCertPoliciesCalQualifier(s.extensions, 0, &s.number, err); },
      &X509Objid_CertPolicies, "CertificatePoliciesSyntax"}},
    {"KetraObjectSsetPolicyMappings",
     {[](Stage &s, auto err) { return KetraObjectSsetPolicyMappings(s.extensions, s.sampleChains.mappings, err); },
      &X509Objid_PolicyMappings, "PolicyMappings"}},
    {"KetraObjectSgetPolicyMappings",
     {[](Stage &s, auto err) { return KetraObjectSgetPolicyMappings(s.extensions, s.preparedChains.mappings, err); },
      &X509Objid_PolicyMappings, "PolicyMappings"}},
    {"KetraObjectSgetPolicyMappingsCalPolicyMapping",
     count(KetraObjectSgetPolicyMappingsCalPolicyMapping, X509Objid_PolicyMappings, "PolicyMappings")},
    {"KetraObjectSsetPolicyConstraints",
     {[](Stage &s, auto err) {
        const KetraPolicyConstraints value{{3, 1}, {0, 1}};
        return KetraObjectSsetPolicyConstraints(s.extensions, 1, &value, err);
      },
      &X509Objid_PolicyConstraints, "PolicyConstraints"}},
    {"KetraObjectSgetPolicyConstraints",
     {[](Stage &s, auto err) {
        KetraPolicyConstraints value{};
        return KetraObjectSgetPolicyConstraints(s.extensions, &value, err);
      },
      &X509Objid_PolicyConstraints, "PolicyConstraints"}},
    {"KetraObjectSsetExtKeyUsage",
     {[](Stage &s, auto err) { return KetraObjectSsetExtKeyUsage(s.extensions, 1, s.sampleChains.purposes, err); },
      &X509Objid_ExtKeyUsage, "ExtKeyUsage"}},
    {"KetraObjectSgetExtKeyUsage",
     {[](Stage &s, auto err) { return KetraObjectSgetExtKeyUsage(s.extensions, s.preparedChains.purposes, err); },
      &X509Objid_ExtKeyUsage, "ExtKeyUsage"}},
    {"KetraObjectSgetExtKeyUsageCalKeyPurposeId",
     count(KetraObjectSgetExtKeyUsageCalKeyPurposeId, X509Objid_ExtKeyUsage, "ExtKeyUsage")},
    {"KetraObjectSsetPrivateKeyUsagePeriod",
     {[](Stage &s, auto err) {
        const KetraPrivateKeyUsagePeriod value{{{0, 0}, 1}, {{0, 0}, 1}};
        return KetraObjectSsetPrivateKeyUsagePeriod(s.extensions, &value, err);
      },
      &X509Objid_PrivateKeyUsagePeriod, "PrivateKeyUsagePeriod"}},
    {"KetraObjectSgetPrivateKeyUsagePeriod",
     {[](Stage &s, auto err) {
        KetraPrivateKeyUsagePeriod value{};
        return KetraObjectSgetPrivateKeyUsagePeriod(s.extensions, &value, err);
      },
      &X509Objid_PrivateKeyUsagePeriod, "PrivateKeyUsagePeriod"}},
    {"KetraObjectSsetCRLNumber", setScalar(KetraObjectSsetCRLNumber, int32_t{1}, X509Objid_CRLNumber, "CRLNumber")},
    {"KetraObjectSgetCRLNumber", getScalar<int32_t>(KetraObjectSgetCRLNumber, X509Objid_CRLNumber, "CRLNumber")},
    {"KetraObjectSsetDeltaCRLIndicator",
     setScalar(KetraObjectSsetDeltaCRLIndicator, int32_t{1}, X509Objid_DeltaCRLIndicator, "BaseCRLNumber")},
    {"KetraObjectSgetDeltaCRLIndicator",
     getScalar<int32_t>(KetraObjectSgetDeltaCRLIndicator, X509Objid_DeltaCRLIndicator, "BaseCRLNumber")},
    {"KetraObjectSsetReasonCode", setScalar(KetraObjectSsetReasonCode, int32_t{1}, X509Objid_ReasonCode, "CRLReason")},
    {"KetraObjectSgetReasonCode", getScalar<int32_t>(KetraObjectSgetReasonCode, X509Objid_ReasonCode, "CRLReason")},
    {"KetraObjectSsetInstructionCode",
     setScalar(KetraObjectSsetInstructionCode, X509Objid_ReasonCode, X509Objid_InstructionCode, "HoldInstruction")},
    {"KetraObjectSgetInstructionCode",
     getScalar<Objid>(KetraObjectSgetInstructionCode, X509Objid_InstructionCode, "HoldInstruction")},
    {"KetraObjectSsetInvalidityDate",
     setScalar(KetraObjectSsetInvalidityDate, Gtime{0, 0}, X509Objid_InvalidityDate, "InvalidityDate")},
    {"KetraObjectSgetInvalidityDate",
     getScalar<Gtime>(KetraObjectSgetInvalidityDate, X509Objid_InvalidityDate, "InvalidityDate")},
    {"KetraObjectSsetSubjectDirectoryAttributes",
     {[](Stage &s, auto err) { return KetraObjectSsetSubjectDirectoryAttributes(s.extensions, s.attributes, err); },
      &X509Objid_SubjectDirectoryAttributes}},
    {"KetraObjectSgetSubjectDirectoryAttributes",
     {[](Stage &s, auto err) { return KetraObjectSgetSubjectDirectoryAttributes(s.extensions, s.attributes, err); },
      &X509Objid_SubjectDirectoryAttributes}},
};

}  // namespace

const std::map<std::string, Operation> &operations() { return kOperations; }

}  // namespace ketra::test
