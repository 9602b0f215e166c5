#include "cxx/agreement.hpp"

#include <algorithm>
#include <optional>
#include <variant>
#include <vector>

#include "ketra/asn1/der.hpp"
#include "ketra/extensions.hpp"
#include "ketra/ketra_chains.h"

namespace ketra::agreement {
namespace {

// ---- What C delivers, as the C++ type ------------------------------------------------------------------------------

View viewOf(const AsnOct &octets) { return {octets.octets, octets.length}; }
View viewOf(const AsnEncodedData &octets) { return {octets.octets, octets.length}; }

ObjectIdentifier of(const Objid &objid) {
  std::string text;
  for (uint32_t i = 0; i < objid.count; ++i) text += (i == 0 ? "" : ".") + std::to_string(objid.arcs[i]);
  const auto parsed = ObjectIdentifier::parse(text);
  if (parsed) return *parsed;
  Writer out;  // beyond what a literal holds
  const auto put = [&out](uint64_t arc) {
    int groups = 1;
    while (arc >> (7 * groups) != 0) ++groups;
    while (groups-- > 0) out.octet((arc >> (7 * groups) & 0x7F) | (groups > 0 ? 0x80u : 0u));
  };
  put(uint64_t{objid.arcs[0]} * 40 + objid.arcs[1]);
  for (uint32_t i = 2; i < objid.count; ++i) put(objid.arcs[i]);
  return *ObjectIdentifier::ofContent(out.written());
}
Time of(const Gtime &time) {
  const auto count = static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(time.high)) << 32 | time.low);
  return Time(std::chrono::microseconds(count - int64_t{719'528} * 86'400 * 1'000'000));
}
std::optional<Integer> of(const AsnIntOpt &number) {
  return number.option == 1 ? std::optional(Integer(number.value)) : std::nullopt;
}
std::optional<Time> of(const GtimeOpt &time) { return time.option == 1 ? std::optional(of(time.value)) : std::nullopt; }
void copy(const AsnBoolOpt &from, Default<bool, false> &to) {
  if (from.option == 1) to.emplace() = from.value != 0;
}

template <std::size_t kBits>
struct SetBits {
  const AsnBit &bits;
  bool operator()(const char *, bool &member, As as) {
    const auto number = static_cast<uint32_t>(as.number);
    member = number < bits.bits && (bits.octets[number / 8] & (0x80u >> number % 8)) != 0;
    return true;
  }
  template <class Bits>
  bool nameless(Bits &) {
    return true;
  }
};
template <class T>
T bitsOf(const AsnBit &bits) {
  T value;
  SetBits<9> visit{bits};
  T::describe(value, visit);
  return value;
}
std::optional<ReasonFlags> of(const AsnBitOpt &bits) {
  return bits.option == 1 ? std::optional(bitsOf<ReasonFlags>(bits.value)) : std::nullopt;
}

DirectoryString of(const X509DirStr &string) {
  constexpr TextType kTypes[] = {TextType::Teletex, TextType::Printable, TextType::Bmp, TextType::Universal,
                                 TextType::Utf8};
  return {kTypes[string.choice - 1], View(string.octets, string.length)};
}

// The contents octets of one encoding.
View contentsOf(View encoding) {
  Tlv tlv;
  Fault fault;
  detail::readOnly(encoding, tlv, fault);
  return tlv.contents();
}

bool of(X509GenNameObject object, GeneralName &name, AsnErrorBlock *err) {
  X509GenNameParam param{};
  if (X509GenNameObjectGetName(object, &param, err) != 0) return false;
  const auto kind = static_cast<NameKind>(param.type - 1);
  Octets encoding;
  View content;
  switch (kind) {
    case NameKind::otherName: {
      OtherName other{of(param.otherName.type), {}};
      if (param.otherName.value.option == 1) other.value = Any(viewOf(param.otherName.value.value));
      encoding = encode(other);
      content = contentsOf(View(encoding));
      break;
    }
    case NameKind::x400Address: content = contentsOf(viewOf(param.x400Address)); break;
    case NameKind::directoryName: {
      AsnEncodedData pdu{};
      if (X509NameObjectGetPduDER(param.directoryName, &pdu, err) != 0) return false;
      content = viewOf(pdu);
      break;
    }
    case NameKind::ediPartyName: {
      EdiPartyName party;
      if (param.ediPartyName.nameAssigner.option == 1) party.nameAssigner = of(param.ediPartyName.nameAssigner.value);
      party.partyName = of(param.ediPartyName.partyName);
      encoding = encode(party);
      content = contentsOf(View(encoding));
      break;
    }
    case NameKind::registeredID: {
      const ObjectIdentifier id = of(param.registeredID);
      encoding = id.content().copy();
      content = View(encoding);
      break;
    }
    default: content = viewOf(param.dNSName);  // a string, as all that are left
  }
  name = GeneralName::of(kind, content);
  return true;
}
bool of(const X509GenNameChain *node, std::vector<GeneralName> &names, AsnErrorBlock *err) {
  for (; node != nullptr; node = node->next) {
    if (!of(node->genName, names.emplace_back(), err)) return false;
  }
  return true;
}
bool of(const X509GenNamesOpt &list, std::optional<std::vector<GeneralName>> &names, AsnErrorBlock *err) {
  return list.option != 1 || of(list.genNames, names.emplace(), err);
}
bool of(const X509DistributionPointNameOpt &from, std::optional<DistributionPointName> &to, AsnErrorBlock *err) {
  if (from.option != 1) return true;
  auto &name = to.emplace().name;
  if (from.value.type == X509DistributionPointName_FullName) return of(from.value.fullName, name.emplace<0>(), err);
  for (const auto *node = from.value.nameRelativeToCRLIssuer; node != nullptr; node = node->next) {
    if (name.index() == 0) name.emplace<1>();
    std::get<1>(name).attributes.push_back({of(node->type), Any(viewOf(node->value))});
  }
  return true;
}
bool of(const X509GenSubtreesOpt &from, std::optional<std::vector<GeneralSubtree>> &to, AsnErrorBlock *err) {
  if (from.option != 1) return true;
  to.emplace();
  for (const auto *node = from.genSubtrees; node != nullptr; node = node->next) {
    GeneralSubtree &subtree = to->emplace_back();
    if (!of(node->base, subtree.base, err)) return false;
    if (const auto minimum = of(node->minimum)) subtree.minimum.emplace() = *minimum;
    subtree.maximum = of(node->maximum);
  }
  return true;
}

// One extension: false when the C interface refuses it.
class ReadC {
 public:
  ReadC(KetraObject object, AsnErrorBlock *err) : object_(object), err_(err) {}
  ReadC(const ReadC &) = delete;
  ReadC &operator=(const ReadC &) = delete;
  ~ReadC() { KetraChainsFree(&chains_); }

  bool operator()(BasicConstraints &value) {
    KetraBasicConstraints read{};
    if (KetraObjectSgetBasicConstraints(object_, &read, err_) != 0) return false;
    copy(read.cA, value.cA);
    value.pathLenConstraint = of(read.pathLenConstraint);
    return true;
  }
  bool operator()(KeyUsage &value) {
    AsnBit read{};
    if (KetraObjectSgetKeyUsage(object_, &read, err_) != 0) return false;
    value = bitsOf<KeyUsage>(read);
    return true;
  }
  bool operator()(SubjectKeyId &value) {
    AsnOct read{};
    if (KetraObjectSgetSubjectKeyId(object_, &read, err_) != 0) return false;
    value.keyIdentifier = OctetString(viewOf(read));
    return true;
  }
  bool operator()(SubjectAltName &value) { return names(KetraChainsReadSubjectAltName, value); }
  bool operator()(IssuerAltName &value) { return names(KetraChainsReadIssuerAltName, value); }
  bool operator()(CertificateIssuer &value) { return names(KetraChainsReadCertIssuer, value); }
  bool operator()(CrlNumber &value) { return number(KetraObjectSgetCRLNumber, value.number); }
  bool operator()(DeltaCrlIndicator &value) { return number(KetraObjectSgetDeltaCRLIndicator, value.baseCrlNumber); }
  bool operator()(ReasonCode &value) {
    int32_t read = 0;
    if (KetraObjectSgetReasonCode(object_, &read, err_) != 0) return false;
    value.reason = static_cast<CrlReason>(read);
    return true;
  }
  bool operator()(HoldInstruction &value) {
    Objid read{};
    if (KetraObjectSgetInstructionCode(object_, &read, err_) != 0) return false;
    value.instruction = of(read);
    return true;
  }
  bool operator()(InvalidityDate &value) {
    Gtime read{};
    if (KetraObjectSgetInvalidityDate(object_, &read, err_) != 0) return false;
    value.date = of(read);
    return true;
  }
  bool operator()(PrivateKeyUsagePeriod &value) {
    KetraPrivateKeyUsagePeriod read{};
    if (KetraObjectSgetPrivateKeyUsagePeriod(object_, &read, err_) != 0) return false;
    value = {of(read.notBefore), of(read.notAfter)};
    return true;
  }
  bool operator()(PolicyConstraints &value) {
    KetraPolicyConstraints read{};
    if (KetraObjectSgetPolicyConstraints(object_, &read, err_) != 0) return false;
    value = {of(read.requireExplicitPolicy), of(read.inhibitPolicyMapping)};
    return true;
  }
  bool operator()(AuthorityKeyId &value) {
    KetraAuthorityKeyId read{};
    if (KetraChainsReadAuthorityKeyId(&chains_, object_, &read, err_) != 0) return false;
    if (read.keyIdentifier.option == 1) value.keyIdentifier = OctetString(viewOf(read.keyIdentifier.value));
    if (read.authorityCertSerialNumber.option == 1) {
      const X509CertSerialNumber &serial = read.authorityCertSerialNumber.value;
      value.authorityCertSerialNumber =
          serial.form == 0 ? Integer(serial.number) : *Integer::ofContent({serial.octets, serial.length});
    }
    return of(read.authorityCertIssuer, value.authorityCertIssuer, err_);
  }
  bool operator()(ExtKeyUsage &value) {
    KetraKeyPurposeId *node = nullptr;
    if (KetraChainsReadExtKeyUsage(&chains_, object_, &node, err_) != 0) return false;
    for (; node != nullptr; node = node->next) value.purposes.push_back(of(node->keyPurposeId));
    return true;
  }
  bool operator()(PolicyMappings &value) {
    KetraPolicyMapping *node = nullptr;
    if (KetraChainsReadPolicyMappings(&chains_, object_, &node, err_) != 0) return false;
    for (; node != nullptr; node = node->next) {
      value.mappings.push_back({of(node->issuerDomainPolicy), of(node->subjectDomainPolicy)});
    }
    return true;
  }
  bool operator()(CertificatePolicies &value) {
    KetraPolicyInformation *node = nullptr;
    if (KetraChainsReadCertPolicies(&chains_, object_, &node, err_) != 0) return false;
    for (; node != nullptr; node = node->next) {
      PolicyInformation &policy = value.policies.emplace_back();
      policy.policyIdentifier = of(node->policyIdentifier);
      if (node->policyQualifiers.option != 1) continue;
      policy.policyQualifiers.emplace();
      for (const auto *info = node->policyQualifiers.policyQualifiers; info != nullptr; info = info->next) {
        PolicyQualifierInfo &qualifier = policy.policyQualifiers->emplace_back();
        qualifier.policyQualifierId = of(info->policyQualifierId);
        if (info->qualifier.option == 1) qualifier.qualifier = Any(viewOf(info->qualifier.value));
      }
    }
    return true;
  }
  bool operator()(NameConstraints &value) {
    KetraNameConstraints read{};
    return KetraChainsReadNameConstraints(&chains_, object_, &read, err_) == 0 &&
           of(read.permittedSubtrees, value.permittedSubtrees, err_) &&
           of(read.excludedSubtrees, value.excludedSubtrees, err_);
  }
  bool operator()(CrlDistributionPoints &value) {
    KetraDistributionPoint *node = nullptr;
    if (KetraChainsReadCRLDistributionPoints(&chains_, object_, &node, err_) != 0) return false;
    for (; node != nullptr; node = node->next) {
      DistributionPoint &point = value.points.emplace_back();
      point.reasons = of(node->reasons);
      if (!of(node->distributionPoint, point.distributionPoint, err_) || !of(node->cRLIssuer, point.cRLIssuer, err_)) {
        return false;
      }
    }
    return true;
  }
  bool operator()(IssuingDistributionPoint &value) {
    KetraIssuingDistributionPoint read{};
    if (KetraChainsReadIssuingDistributionPoint(&chains_, object_, &read, err_) != 0) return false;
    copy(read.onlyContainsUserCerts, value.onlyContainsUserCerts);
    copy(read.onlyContainsCACerts, value.onlyContainsCACerts);
    copy(read.indirectCRL, value.indirectCRL);
    value.onlySomeReasons = of(read.onlySomeReasons);
    return of(read.distributionPoint, value.distributionPoint, err_);
  }
  bool operator()(SubjectDirectoryAttributes &value) {
    X509AttributesObject attributes = nullptr;
    X509AttributesObjectCreate(&attributes, nullptr);
    const bool isRead = KetraObjectSgetSubjectDirectoryAttributes(object_, attributes, err_) == 0;
    uint32_t count = 0, valueCount = 0;
    if (isRead) X509AttributesObjectCal(attributes, &count, nullptr);
    for (uint32_t i = 0; i < count; ++i) {
      Objid type{};
      X509AttributesObjectGetType(attributes, i, &type, &valueCount, nullptr);
      Attribute &attribute = value.attributes.emplace_back();
      attribute.type = of(type);
      for (uint32_t j = 0; j < valueCount; ++j) {
        AsnEncodedData each{};
        X509AttributesObjectGetValue(attributes, i, j, &each, nullptr);
        attribute.values.emplace_back(viewOf(each));
      }
    }
    X509AttributesObjectDestroy(attributes, nullptr);
    return isRead;
  }

 private:
  template <class Read, class T>
  bool names(Read read, T &value) {
    X509GenNames names{};
    return read(&chains_, object_, &names, err_) == 0 && of(names.genNames, value.names, err_);
  }
  template <class Get>
  bool number(Get get, Integer &value) {
    int32_t read = 0;
    if (get(object_, &read, err_) != 0) return false;
    value = Integer(read);
    return true;
  }

  KetraObject object_;
  AsnErrorBlock *err_;
  KetraChains chains_{};
};

// ---- Fields as text, and what in them C cannot carry ---------------------------------------------------------------

bool hasLongArc(View content) {
  uint64_t arc = 0;
  bool isFirst = true;
  for (const uint8_t octet : content) {
    if (arc >> 40 != 0) return true;
    arc = arc << 7 | (octet & 0x7Fu);
    if ((octet & 0x80) != 0) continue;
    if (arc > (isFirst ? 0xFFFFFFFFu + uint64_t{80} : 0xFFFFFFFFu)) return true;
    isFirst = false;
    arc = 0;
  }
  return false;
}

// Well-formed encodings without their lengths: those of names and attributes C delivers as DER has them.
std::string withoutLengths(View encodings) {
  std::string text;
  Tlv tlv;
  Fault fault;
  for (Reader in(encodings); !in.done();) {
    if (!detail::readTlv(in, tlv, fault)) return text + "FAULT";
    const uint8_t *tagEnd = tlv.octets + 1;
    while ((tlv.identifier & 0x1F) == 0x1F && (*tagEnd++ & 0x80) != 0) {
    }
    text += detail::hexOf({tlv.octets, tagEnd});
    text += tlv.isConstructed() ? '{' + withoutLengths(tlv.contents()) + '}' : ':' + detail::hexOf(tlv.contents());
  }
  return text;
}

// All fields of a value of one form. Encodings that are kept as they are stored show as such.
template <class Form>
class Fields : public Visitor {
 public:
  std::string text;
  bool has[kReasons] = {};

  void enter(const char *name, const Structure &structure) override {
    begin(name);
    text += structure.group() == Group::List ? '[' : '{';
  }
  void leave() override {
    std::sort(set_.begin(), set_.end());
    for (const std::string &each : set_) (text += ' ') += each;
    set_.clear();
    text += '}';
  }
  void leaf(const char *name, const LeafValue &value) override {
    const std::string_view called = name != nullptr ? name : "";
    const bool isLateBit = called == "privilegeWithdrawn" || called == "aACompromise";
    if (called == "nameless" || (isLateBit && value.content()[0] != 0)) {
      has[LateBits] = true;
      return;
    }
    if (isLateBit) return;
    if (name == nullptr && value.kind() == LeafKind::Any) {  // of a SET OF: C delivers the order of DER
      set_.push_back(open(value.content()));
      return;
    }
    begin(name);
    switch (value.kind()) {
      case LeafKind::Integer:
        has[LongInteger] |= value.content().size() > 4;
        text += value.text();
        break;
      case LeafKind::Enumerated:
        has[LateReason] |= value.content()[0] > 8;
        text += value.text();
        break;
      case LeafKind::Objid: identifier(value.content()); break;
      case LeafKind::Any: text += open(value.content()); break;
      case LeafKind::GeneralName: generalName(*static_cast<const GeneralNameOf<Form> *>(value.value())); break;
      default: text += value.kind() == LeafKind::Time ? value.text() : detail::hexOf(value.content());
    }
  }
  void absent(const char *, const LeafValue &) override {}
  void fault(const char *, View, const Fault &) override { text += "FAULT"; }

 private:
  // What is malformed inside shows as it is stored.
  std::string open(View encoding) {
    Tlv tlv;
    Fault fault;
    const bool isRight =
        detail::readOnly(encoding, tlv, fault) && (!tlv.isConstructed() || detail::checkInside(tlv, fault));
    has[OpenValue] |= !isRight;
    return isRight ? withoutLengths(encoding) : detail::hexOf(encoding);
  }
  void begin(const char *name) { (text += ' ') += name != nullptr ? std::string(name) + "=" : ""; }
  void identifier(View content) {
    has[LongIdentifier] |= hasLongArc(content) || content.size() > 127;
    text += detail::textOfObjid(content);
  }
  void generalName(const GeneralNameOf<Form> &name) {
    (text += std::to_string(static_cast<int>(name.kind()))) += ':';
    if (const auto other = name.otherName()) {
      identifier(other->type.content());
      text += ' ' + (other->value ? open(other->value->encoding()) : "absent");
    } else if (const auto directory = name.directoryName()) {
      for (const auto &rdn : directory->rdns()) {
        std::vector<std::string> attributes;  // C delivers them in the order of DER
        for (const auto &each : rdn->attributes) {
          has[LongIdentifier] |= hasLongArc(each->type.content());
          attributes.push_back(each->type.text() + '=' + open(each->value.encoding()));
        }
        std::sort(attributes.begin(), attributes.end());
        for (const std::string &each : attributes) (text += '+') += each;
        text += ',';
      }
    } else if (name.is(NameKind::ediPartyName)) {
      Writer whole;
      whole.value(0x30, name.content());
      const auto party = read<EdiPartyName>(whole.written());
      if (party->nameAssigner) string(*party->nameAssigner);
      text += '/';
      string(party->partyName);
    } else if (const auto address = name.x400Address()) {
      text += open(address->standardAttributes.encoding());
      list(address->domainDefinedAttributes, false);
      list(address->extensionAttributes, true);
    } else if (name.is(NameKind::registeredID)) {
      identifier(name.content());
    } else {
      text += detail::hexOf(name.content());
    }
  }
  void list(const std::optional<Range<AnyView>> &members, bool isSet) {
    text += members ? '[' : '-';
    if (!members) return;
    std::vector<std::string> each;
    for (const auto &member : *members) each.push_back(open(member->encoding()));
    if (isSet) std::sort(each.begin(), each.end());
    for (const std::string &member : each) (text += ' ') += member;
  }
  void string(const DirectoryString &string) {
    const std::size_t unit = string.type() == TextType::Bmp ? 2 : string.type() == TextType::Universal ? 4 : 1;
    std::size_t characters = string.octets().size() / unit;
    if (string.type() == TextType::Utf8) {
      characters = 0;
      for (const uint8_t octet : string.octets()) characters += (octet & 0xC0) != 0x80 ? 1 : 0;
    }
    has[PartyLength] |= characters == 0 || characters > 32768 || string.hasOutside();
    (text += std::to_string(static_cast<int>(string.type()))) += ':' + detail::hexOf(string.octets());
  }

  std::vector<std::string> set_;
};

// ---- The comparison ------------------------------------------------------------------------------------------------

bool isDirectoryStringCode(uint32_t code) {
  return code >= X509DirStrError_Choice && code <= X509DirStrError_Characters;
}

bool isSyntaxCode(uint32_t code) { return code >= AsnError_Truncated && code <= AsnError_Nesting; }

template <class T>
Comparison compareAs(View octets) {
  using V = typename detail::ViewedOf<T>::type;
  Comparison result;
  const auto differ = [&](const std::string &what) {
    if (result.difference.empty()) result.difference = what;
  };
  const auto explain = [&](Reason reason, bool isSo) { return isSo && (result.isExplained[reason] = true); };

  const Result<T> owned = read<T>(octets);
  result.isAccepted = static_cast<bool>(owned);
  Fields<Owned> fields;
  if (owned) walk(*owned, fields);

  bool isDer = static_cast<bool>(owned);
  if (owned) derFaults<T>(octets, [&](const Fault &) { isDer = false; });
  if (isDer && encode(*owned) != octets.copy()) differ("DER is written as other octets");

  const Item<V> viewed = view<V>(octets);
  const Fault fault = firstFault(viewed);
  if (!fault) {
    if (isDer && encode(*viewed) != octets.copy()) differ("DER is written as other octets from a view");
    Fields<Viewed> seen;
    walk(*viewed, seen);
    if (!owned) differ("a view is good, the owning read says " + ketra::explain<T>(octets, owned.fault()));
    if (owned && seen.text != fields.text) differ("owned " + fields.text + "\nviewed" + seen.text);
  } else if (fault.reason == ketra::Reason::Segmented) {
    if (owned) explain(Segments, (*fault.at & 0x20) != 0);
  } else if (owned) {  // which of several faults is the first differs: a view looks into lists last
    differ("only the view says " + ketra::explain<T>(octets, fault));
  }

  AsnErrorBlock err;
  AsnErrorReset(&err);
  KetraObject object = nullptr;
  KetraObjectCreate(&object, nullptr);
  const uint32_t arcs[] = {2, 5, 29, T::oid.content()[2]};
  const KetraExtension extension{{arcs, 4}, 0, 0, {octets.data(), static_cast<uint32_t>(octets.size())}};
  T delivered{};
  if (KetraObjectSetExt(object, &extension, &err) != 0) {
    differ("cannot be stored");
  } else if (!ReadC(object, &err)(delivered)) {
    const bool isRange = err.code == AsnError_Range;
    const bool isExplained =
        owned && (explain(LongInteger, isRange && fields.has[LongInteger]) ||
                  explain(LongIdentifier, isRange && fields.has[LongIdentifier]) ||
                  explain(LateReason, err.code == KetraError_GetReasonCode && fields.has[LateReason]) ||
                  explain(PartyLength, isDirectoryStringCode(err.code) && fields.has[PartyLength]) ||
                  explain(OpenValue, std::is_same_v<T, SubjectDirectoryAttributes> && isSyntaxCode(err.code) &&
                                         fields.has[OpenValue]));
    std::string trace(AsnErrorText(&err, nullptr, 0, nullptr, 0), '\0');
    AsnErrorText(&err, nullptr, 0, trace.data(), static_cast<uint32_t>(trace.size() + 1));
    if (owned && !isExplained) differ("C refuses: " + trace);
  } else if (!owned) {
    differ("C accepts, C++ says " + ketra::explain<T>(octets, owned.fault()));
  } else {
    explain(LateBits, fields.has[LateBits]);
    Fields<Owned> c;
    walk(delivered, c);
    if (c.text != fields.text) differ("C  " + c.text + "\nC++" + fields.text);
  }
  KetraObjectDestroy(object, nullptr);
  return result;
}

struct Row {
  unsigned arc;
  const char *name;
  Comparison (*compare)(View);
};
// The types that C has: those that ReadC has an operator for, itself and not by way of a base.
template <class T, class = void>
struct IsOfC : std::false_type {};
template <class T>
struct IsOfC<T, std::void_t<decltype(static_cast<bool (ReadC::*)(T &)>(&ReadC::operator()))>> : std::true_type {};

struct Table {
  Row rows[kTypes] = {};
  std::size_t count = 0;

  template <class T>
  constexpr void add() {
    if constexpr (IsOfC<T>::value) rows[count++] = {T::oid.content()[2], T::name.data(), compareAs<T>};
  }
};
template <class... Ts>
constexpr Table tableOf(Types<Ts...>) {
  Table table;
  (table.add<Ts>(), ...);
  return table;
}
constexpr Table kTable = tableOf(ExtensionTypes{});
static_assert(kTable.count == kTypes);

}  // namespace

const char *const kReasonNames[kReasons] = {
#define AGREEMENT_REASON(name, text) #name ": " text,
    AGREEMENT_REASONS(AGREEMENT_REASON)
#undef AGREEMENT_REASON
};

std::size_t typeOf(unsigned arc) {
  std::size_t type = 0;
  while (type < kTypes && kTable.rows[type].arc != arc) ++type;
  return type;
}
const char *nameOf(std::size_t type) { return kTable.rows[type].name; }
Comparison compare(std::size_t type, View octets) { return kTable.rows[type].compare(octets); }

}  // namespace ketra::agreement
