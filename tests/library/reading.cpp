#include "library/reading.h"

#include <algorithm>

#include "ketra/ketra.hpp"
#include "ketra/ketra_chains.h"
#include "library/outside_operations.h"

namespace ketra::test {
namespace {

using Kind = Way::Kind;

// ---- Extensions ----------------------------------------------------------------------------------------------------

// A fault as an entry of the block; that of a view without text, because a view allocates nothing.
template <class T>
int32_t answer(const Octets &octets, const Fault &fault, AsnErrorBlock *err) {
  if (!fault) return 0;
  err->code = fault.code();
  const std::string text = isView<T> ? "faulty" : explain<T>(View(octets), fault);
  return AsnErrorInfo("C++", "read", text.c_str(), err, nullptr, 0) - 1;
}

// By the C++ library: into a value that owns, and as a view, all of it.
template <class T>
void addCxx(std::vector<Way> &ways) {
  using V = typename ketra::detail::ViewedOf<T>::type;
  ways.push_back({"owning read", Kind::Other, [](const Octets &octets, AsnErrorBlock *err) {
                    return answer<T>(octets, read<T>(View(octets)).fault(), err);
                  }});
  ways.push_back({"view", Kind::Other, [](const Octets &octets, AsnErrorBlock *err) {
                    return answer<V>(octets, firstFault(view<V>(View(octets))), err);
                  }});
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

using ReadChains = int32_t (*)(KetraObject, AsnErrorBlock *);
const std::map<std::string, ReadChains> kChains = {
    {"authorityKeyIdentifier", readChains<KetraAuthorityKeyId, KetraChainsReadAuthorityKeyId>},
    {"cRLDistributionPoints", readChains<KetraDistributionPoint *, KetraChainsReadCRLDistributionPoints>},
    {"certificateIssuer", readChains<X509GenNames, KetraChainsReadCertIssuer>},
    {"certificatePolicies", readChains<KetraPolicyInformation *, KetraChainsReadCertPolicies>},
    {"extKeyUsage", readChains<KetraKeyPurposeId *, KetraChainsReadExtKeyUsage>},
    {"issuerAltName", readChains<X509GenNames, KetraChainsReadIssuerAltName>},
    {"issuingDistributionPoint", readChains<KetraIssuingDistributionPoint, KetraChainsReadIssuingDistributionPoint>},
    {"nameConstraints", readChains<KetraNameConstraints, KetraChainsReadNameConstraints>},
    {"policyMappings", readChains<KetraPolicyMapping *, KetraChainsReadPolicyMappings>},
    {"subjectAltName", readChains<X509GenNames, KetraChainsReadSubjectAltName>},
};

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

// By the C interface, where it has the extension.
void addC(std::vector<Way> &ways, const std::string &type, const Objid &objid) {
  const auto chains = kChains.find(type);
  if (chains != kChains.end()) {
    ways.push_back({"chains", Kind::Get, [&objid, read = chains->second](const Octets &value, AsnErrorBlock *err) {
                      Extensions extensions;
                      extensions.store(objid, value);
                      return read(extensions, err);
                    }});
  }
  for (const auto &row : operations()) {
    const std::string &name = row.first;
    const Operation &operation = row.second;
    if (operation.objid != &objid || !name.starts_with("KetraObjectSget")) continue;
    const bool isGet = name.find("Cal") == std::string::npos && !name.ends_with("Critical");
    // Nodes for points depend on what was counted: chains are made so.
    if (isGet && name.find("DistributionPoint") != std::string::npos) continue;
    const Kind kind = !isGet ? Kind::Count : chains == kChains.end() ? Kind::Get : Kind::Nodes;
    ways.push_back({name, kind, [&operation](const Octets &value, AsnErrorBlock *err) {
                      Stage stage;
                      stage.extensions.store(*operation.objid, value);
                      return operation.run(stage, err);
                    }});
  }
  ways.push_back({"whole Extensions", Kind::Other,
                  [&objid](const Octets &value, AsnErrorBlock *err) { return readWhole(objid, value, err); }});
}

// The identifier of the C interface, or null.
const Objid *objidOf(View oid) {
  for (const auto &row : operations()) {
    const Objid *objid = row.second.objid;
    if (objid != nullptr && ketra::detail::isContentOf(oid, *objid)) return objid;
  }
  return nullptr;
}

// "subjectAltName" for SubjectAltName.
std::string valueName(std::string_view type) {
  std::string name(type);
  name[0] = static_cast<char>(name[0] | 0x20);
  return name;
}

// Calls call(name, objid or null, type) for each typed extension of id-ce, which are those that have rows.
template <class... Ts, class Call>
void forEach(Types<Ts...>, const Call &call) {
  const auto one = [&](auto *type) {
    using T = std::remove_pointer_t<decltype(type)>;
    constexpr View oid = T::oid.content();
    if constexpr (oid.size() == 3 && oid[0] == 0x55 && oid[1] == 0x1D) call(valueName(T::name), objidOf(oid), type);
  };
  (one(static_cast<Ts *>(nullptr)), ...);
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
  addCxx<GeneralName>(ways);
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
  forEach(ExtensionTypes{}, [&](const std::string &name, const Objid *objid, auto *) {
    if (objid != nullptr) samples[name] = fromHex(stage.extensions.stored(*objid));
  });
  return samples;
}

const std::vector<Way> &waysToRead(const std::string &type) {
  static std::map<std::string, std::vector<Way>> ways = [] {
    std::map<std::string, std::vector<Way>> ofTypes = {{"Name", {{"X509NameObjectSetPduBER", Kind::Get, readName}}}};
    addCxx<ketra::Name>(ofTypes["Name"]);
    forEach(ExtensionTypes{}, [&](const std::string &name, const Objid *objid, auto *extension) {
      addCxx<std::remove_pointer_t<decltype(extension)>>(ofTypes[name]);
      if (objid != nullptr) addC(ofTypes[name], name, *objid);
    });
    return ofTypes;
  }();
  if (type == "GeneralName" && !ways.contains(type)) ways[type] = waysOfGeneralName();
  return ways.at(type);
}

}  // namespace ketra::test
