#include "library/reading.h"

#include <algorithm>

#include "ketra/face/face.hpp"
#include "ketra/ketra_chains.h"
#include "library/outside_operations.h"

namespace ketra::test {
namespace {

using Kind = Way::Kind;

// ---- Extensions ----------------------------------------------------------------------------------------------------

// As the C++ face reads it: it counts, prepares what the counts tell, and gets.
template <class T>
int32_t readAs(KetraObject object, AsnErrorBlock *err) {
  T value;
  try {
    return ExtensionTraits<T>::get(object, value, err);
  } catch (const Error &error) {
    err->code = error.code();
    return AsnErrorInfo("face", "get", error.what(), err, nullptr, 0) - 1;
  }
}

// As ketra_chains.h does.
template <class T, auto kRead>
int32_t readChains(KetraObject object, AsnErrorBlock *err) {
  KetraChains chains{};
  T value{};
  const int32_t result = kRead(&chains, object, &value, err);
  KetraChainsFree(&chains);
  return result;
}

struct Type {
  const char *name;
  const Objid &objid;
  int32_t (*strict)(KetraObject, AsnErrorBlock *);
  int32_t (*tolerant)(KetraObject, AsnErrorBlock *) = nullptr;
  int32_t (*chains)(KetraObject, AsnErrorBlock *) = nullptr;
  Kind strictKind = Kind::Get;
};

const Type kTypes[] = {
    {"authorityKeyIdentifier", X509Objid_AuthorityKeyId, readAs<AuthorityKeyId>, readAs<TolerantAuthorityKeyId>,
     readChains<KetraAuthorityKeyId, KetraChainsReadAuthorityKeyId>},
    {"basicConstraints", X509Objid_BasicConstraints, readAs<BasicConstraints>},
    {"cRLDistributionPoints", X509Objid_CRLDistributionPoints, readAs<CrlDistributionPoints>,
     readAs<TolerantCrlDistributionPoints>, readChains<KetraDistributionPoint *, KetraChainsReadCRLDistributionPoints>},
    {"cRLNumber", X509Objid_CRLNumber, readAs<CrlNumber>, nullptr, nullptr, Kind::Other},  // longer ones too
    {"certificateIssuer", X509Objid_CertIssuer, readAs<CertificateIssuer>, readAs<TolerantCertificateIssuer>,
     readChains<X509GenNames, KetraChainsReadCertIssuer>},
    {"certificatePolicies", X509Objid_CertPolicies, readAs<CertificatePolicies>, nullptr,
     readChains<KetraPolicyInformation *, KetraChainsReadCertPolicies>},
    {"deltaCRLIndicator", X509Objid_DeltaCRLIndicator, readAs<DeltaCrlIndicator>, nullptr, nullptr, Kind::Other},
    {"extKeyUsage", X509Objid_ExtKeyUsage, readAs<ExtKeyUsage>, nullptr,
     readChains<KetraKeyPurposeId *, KetraChainsReadExtKeyUsage>},
    {"instructionCode", X509Objid_InstructionCode, readAs<HoldInstruction>},
    {"invalidityDate", X509Objid_InvalidityDate, readAs<InvalidityDate>},
    {"issuerAltName", X509Objid_IssuerAltName, readAs<IssuerAltName>, readAs<TolerantIssuerAltName>,
     readChains<X509GenNames, KetraChainsReadIssuerAltName>},
    {"issuingDistributionPoint", X509Objid_IssuingDistributionPoint, readAs<IssuingDistributionPoint>,
     readAs<TolerantIssuingDistributionPoint>,
     readChains<KetraIssuingDistributionPoint, KetraChainsReadIssuingDistributionPoint>},
    {"keyUsage", X509Objid_KeyUsage, readAs<KeyUsage>},
    {"nameConstraints", X509Objid_NameConstraints, readAs<NameConstraints>, readAs<TolerantNameConstraints>,
     readChains<KetraNameConstraints, KetraChainsReadNameConstraints>},
    {"policyConstraints", X509Objid_PolicyConstraints, readAs<PolicyConstraints>},
    {"policyMappings", X509Objid_PolicyMappings, readAs<PolicyMappings>, nullptr,
     readChains<KetraPolicyMapping *, KetraChainsReadPolicyMappings>},
    {"privateKeyUsagePeriod", X509Objid_PrivateKeyUsagePeriod, readAs<PrivateKeyUsagePeriod>},
    {"reasonCode", X509Objid_ReasonCode, readAs<ReasonCode>},
    {"subjectAltName", X509Objid_SubjectAltName, readAs<SubjectAltName>, readAs<TolerantSubjectAltName>,
     readChains<X509GenNames, KetraChainsReadSubjectAltName>},
    {"subjectDirectoryAttributes", X509Objid_SubjectDirectoryAttributes, readAs<SubjectDirectoryAttributes>},
    {"subjectKeyIdentifier", X509Objid_SubjectKeyId, readAs<SubjectKeyId>},
};

Way extensionWay(const std::string &name, Kind kind, const Objid &objid,
                 int32_t (*read)(KetraObject, AsnErrorBlock *)) {
  return {name, kind, [=, &objid](const Octets &value, AsnErrorBlock *err) {
            Extensions extensions;
            extensions.store(objid, value);
            return read(extensions, err);
          }};
}

// What it holds comes back intact, whatever it is.
int32_t readWhole(const Objid &objid, const Octets &value, AsnErrorBlock *err) {
  Extensions extensions;
  const Octets octets = wholeExtensions(objid, value);
  const AsnEncodedData encoding{octets.data(), static_cast<uint32_t>(octets.size())};
  AsnEncodedData again{};
  EXPECT_EQ(KetraObjectSetPduBER(extensions, &encoding, err), 0);
  EXPECT_EQ(KetraObjectGetPduDER(extensions, &again, err), 0);
  EXPECT_TRUE(std::equal(octets.begin(), octets.end(), again.octets, again.octets + again.length));
  // The value itself taken for a list of extensions.
  const AsnEncodedData odd{value.data(), static_cast<uint32_t>(value.size())};
  return KetraObjectSetPduBER(extensions, &odd, err);
}

std::vector<Way> waysOf(const Type &type) {
  std::vector<Way> ways = {extensionWay("strict face", type.strictKind, type.objid, type.strict)};
  if (type.tolerant != nullptr) {
    ways.push_back(extensionWay("tolerant face", Kind::Tolerant, type.objid, type.tolerant));
  }
  if (type.chains != nullptr) ways.push_back(extensionWay("chains", Kind::Get, type.objid, type.chains));
  for (const auto &row : operations()) {
    const std::string &name = row.first;
    const Operation &operation = row.second;
    if (operation.objid != &type.objid || !name.starts_with("KetraObjectSget")) continue;
    const bool isGet = name.find("Cal") == std::string::npos && !name.ends_with("Critical");
    // Nodes for points depend on what was counted: the face prepares them so.
    if (isGet && name.find("DistributionPoint") != std::string::npos) continue;
    ways.push_back({name, isGet ? Kind::Nodes : Kind::Count, [&](const Octets &value, AsnErrorBlock *err) {
                      Stage stage;
                      stage.extensions.store(*operation.objid, value);
                      return operation.run(stage, err);
                    }});
  }
  ways.push_back({"whole Extensions", Kind::Other,
                  [&](const Octets &value, AsnErrorBlock *err) { return readWhole(type.objid, value, err); }});
  return ways;
}

// ---- Names ---------------------------------------------------------------------------------------------------------

int32_t readGeneralName(const Octets &octets, AsnErrorBlock *err) {
  GenName name;
  if (name.setPdu(octets, true, err) != 0) return -1;
  AsnEncodedData der{};
  return X509GenNameObjectGetPduDER(name, &der, err);
}

int32_t readName(const Octets &octets, AsnErrorBlock *err) {
  const NameObject name;
  if (name.set(octets, err) != 0) return -1;
  uint32_t length = 0;
  X509NameObjectGetText(name, nullptr, 0, &length, nullptr);
  std::string text(length + std::size_t{1}, '\0');
  Err unreadable;
  EXPECT_TRUE(X509NameObjectGetText(name, text.data(), length + 1, &length, unreadable) == 0 ||
              unreadable.code() != AsnError_Range);
  X509NameObject copy = nullptr;
  int32_t equal = 0;
  EXPECT_EQ(X509MUtilCopyNameObject(&copy, name, nullptr), 0);
  EXPECT_EQ(X509NameObjectCompare(name, copy, &equal, nullptr), 0);
  EXPECT_EQ(equal, 1);
  EXPECT_EQ(X509NameObjectDestroy(copy, nullptr), 0);
  return 0;
}

// As the one member of a list.
int32_t readMember(const Octets &octets, AsnErrorBlock *err) {
  Work work(schema::record(schema::Entry::GeneralNames), wrapped({0x30}, octets));
  const GenName name;
  const Pool pool;
  const X509GenNameChain node{nullptr, name};
  if (work.decode(err) != 0) return -1;
  return X509MUtilSgetGenNamesDER(pool, work.object, work.value, "", &node, err);
}

std::vector<Way> waysOfGeneralName() {
  std::vector<Way> ways = {
      {"X509GenNameObjectSetPduBER", Kind::Get, readGeneralName},
      {"X509GenNameObjectSetPduDER", Kind::Der,
       [](const Octets &octets, AsnErrorBlock *err) { return GenName().setPdu(octets, false, err); }},
      {"X509MUtilSgetGenNamesDER", Kind::Der, readMember},
  };
  static const std::pair<const char *, Octets> kHolders[] = {
      {"subjectAltName", {0x30}},
      {"issuerAltName", {0x30}},
      {"certificateIssuer", {0x30}},
      {"authorityKeyIdentifier", {0x30, 0xA1}},
      {"cRLDistributionPoints", {0x30, 0x30, 0xA0, 0xA0}},
      {"cRLDistributionPoints", {0x30, 0x30, 0xA2}},
      {"issuingDistributionPoint", {0x30, 0xA0, 0xA0}},
      {"nameConstraints", {0x30, 0xA0, 0x30}},
      {"nameConstraints", {0x30, 0xA1, 0x30}},
  };
  for (const auto &holder : kHolders) {
    for (const Way &way : waysToRead(holder.first)) {
      if (way.kind == Kind::Count || way.kind == Kind::Other) continue;
      ways.push_back({std::string(holder.first) + ": " + way.name, way.kind,
                      [&way, &tags = holder.second](const Octets &octets, AsnErrorBlock *err) {
                        return way.read(wrapped(tags, octets), err);
                      }});
    }
  }
  return ways;
}

}  // namespace

Octets wrapped(const Octets &tags, Octets content) {
  std::reverse(content.begin(), content.end());  // headers are appended
  for (auto tag = tags.rbegin(); tag != tags.rend(); ++tag) {
    const std::size_t length = content.size();
    uint8_t count = 0;
    for (std::size_t rest = length; count == 0 || rest > 0; rest >>= 8, ++count) {
      content.push_back(static_cast<uint8_t>(rest));
    }
    if (length >= 0x80) content.push_back(static_cast<uint8_t>(0x80 | count));
    content.push_back(*tag);
  }
  std::reverse(content.begin(), content.end());
  return content;
}

Octets wholeExtensions(const Objid &objid, const Octets &value) {
  const Octets identifier = {0x06, 0x03, 0x55, 0x1D, static_cast<uint8_t>(objid.arcs[3])};
  return wrapped({0x30, 0x30}, identifier + tlv(0x04, value));
}

std::map<std::string, Octets> sampleValues() {
  const Stage stage;
  std::map<std::string, Octets> samples;
  for (const Type &type : kTypes) samples[type.name] = fromHex(stage.extensions.stored(type.objid));
  return samples;
}

const std::vector<Way> &waysToRead(const std::string &type) {
  static std::map<std::string, std::vector<Way>> ways = [] {
    std::map<std::string, std::vector<Way>> ofTypes = {{"Name", {{"X509NameObjectSetPduBER", Kind::Get, readName}}}};
    for (const Type &row : kTypes) ofTypes[row.name] = waysOf(row);
    return ofTypes;
  }();
  if (type == "GeneralName" && !ways.contains(type)) ways[type] = waysOfGeneralName();
  return ways.at(type);
}

}  // namespace ketra::test
