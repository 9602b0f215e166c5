// Values built from the input: set, got and compared. Those that are well formed have to be taken; the odd ones, which
// the first octet allows, may be refused, and then leave nothing behind.

#include <algorithm>

#include "read.hpp"
#include "tlv.hpp"

namespace fuzz {
namespace {

// What the input decides. At its end it says 0 to everything.
class Input {
 public:
  Input(View octets, bool allowsOdd) : p_(octets.begin()), end_(octets.end()), allowsOdd_(allowsOdd) {}

  uint8_t octet() { return p_ == end_ ? uint8_t{0} : *p_++; }
  bool flag() { return (octet() & 1) != 0; }
  uint32_t below(uint32_t bound) { return octet() % bound; }
  uint64_t bits(int octets) {
    uint64_t bits = 0;
    for (; octets > 0; --octets) bits = bits << 8 | octet();
    return bits;
  }
  Octets octets(uint32_t most) {
    Octets octets(below(most + 1));
    for (uint8_t &each : octets) each = octet();
    return octets;
  }
  // Something that may be refused follows.
  bool isOdd() {
    const bool odd = allowsOdd_ && below(16) == 15;
    wasOdd_ |= odd;
    return odd;
  }
  bool wasOdd() const { return wasOdd_; }

 private:
  const uint8_t *p_;
  const uint8_t *end_;
  bool allowsOdd_;
  bool wasOdd_ = false;
};

// ---- Parts ----------------------------------------------------------------------------------------------------------

template <class T, class Make>
std::optional<T> optionally(Input &in, const Make &make) {
  if (!in.flag()) return std::nullopt;
  return make(in);
}

template <class T, class Make>
std::vector<T> list(Input &in, const Make &make) {
  std::vector<T> list(in.isOdd() ? 0 : 1 + in.below(4));
  for (T &each : list) each = make(in);
  return list;
}

ketra::ObjectIdentifier objid(Input &in) {
  std::vector<uint32_t> arcs = {in.below(3), in.below(40)};
  for (uint32_t more = in.below(6); more > 0; --more) {
    arcs.push_back(static_cast<uint32_t>(in.bits(1 + static_cast<int>(in.below(4)))));
  }
  if (arcs[0] == 2) arcs[1] += static_cast<uint32_t>(in.bits(3));  // only below 0 and 1 are there at most 40
  if (in.isOdd()) arcs.resize(in.below(2));
  if (in.isOdd()) arcs.assign({in.octet(), in.octet()});
  return ketra::ObjectIdentifier(Objid{arcs.data(), static_cast<uint32_t>(arcs.size())});
}

Octets encoding(Input &in) {
  constexpr uint8_t kTags[] = {0x04, 0x0C, 0x13, 0x16, 0x1E, 0x02, 0x80, 0x30};
  if (in.isOdd()) return in.octets(20);
  const uint8_t tag = kTags[in.below(std::size(kTags))];
  const Octets content = in.octets(20);
  if (tag != 0x30) return ketra::detail::encoding(tag, content);
  return ketra::detail::encoding(tag, ketra::detail::encoding(0x04, content));
}

std::string text(Input &in) {
  const Octets octets = in.octets(20);
  return {octets.begin(), octets.end()};
}

std::string printable(Input &in) {
  std::string text = "a";
  for (const uint8_t octet : in.octets(20)) text += static_cast<char>('A' + octet % 26);
  return text;
}

int32_t number(Input &in) {  // 0 or more
  const auto number = static_cast<int32_t>(in.bits(1 + static_cast<int>(in.below(4))) & 0x7FFFFFFF);
  return in.isOdd() ? -number - 1 : number;
}

ketra::Integer integer(Input &in) {
  const ketra::Integer number = ketra::Integer::ofUnsigned(in.octets(21));
  return in.isOdd() ? ketra::Integer(-5) : number;
}

ketra::Time time(Input &in) {
  constexpr int64_t kStart = -62'167'219'200, kEnd = 253'402'300'800;  // of the years 0000 and 10000
  const auto seconds = kStart + static_cast<int64_t>(in.bits(6) % static_cast<uint64_t>(kEnd - kStart));
  return ketra::Time(std::chrono::seconds(seconds) + std::chrono::microseconds(in.bits(3) % 1'000'000));
}

// ---- Names ----------------------------------------------------------------------------------------------------------

ketra::Name name(Input &in) {
  const ketra::ObjectIdentifier types[] = {ketra::attribute::commonName, ketra::attribute::countryName,
                                           ketra::attribute::emailAddress};
  ketra::Name name;
  for (uint32_t more = in.below(4); more > 0; --more) {
    std::vector<ketra::Name::Attribute> attributes;
    for (uint32_t count = 1 + in.below(2); count > 0; --count) {
      const uint32_t type = in.below(4);
      attributes.push_back({type < 3 ? types[type] : objid(in), in.flag() ? text(in) : printable(in)});
    }
    try {
      name.add(attributes);
    } catch (const ketra::Error &error) {  // of text that is no characters, or none: the name stays as it was
      failure(error);
    }
  }
  return name;
}

ketra::DirectoryString directoryString(Input &in) {
  const uint32_t choice = 1 + in.below(5);
  if (in.isOdd()) return {choice + in.below(2), in.octets(20)};
  const std::size_t width = choice == X509DirStr_UniversalString ? 4 : choice == X509DirStr_BmpString ? 2 : 1;
  Octets octets;
  for (const char c : printable(in)) {
    octets.insert(octets.end(), width - 1, 0);
    octets.push_back(static_cast<uint8_t>(c));
  }
  return {choice, octets};
}

// An ORAddress of empty standard attributes, with the other parts or without (X.411 8.5).
Octets orAddress(Input &in) {
  if (in.isOdd()) return encoding(in);
  const auto tlv = [](uint8_t tag, const Octets &content) { return ketra::detail::encoding(tag, content); };
  Octets content = tlv(0x30, {});
  if (in.flag()) {
    Octets attribute = tlv(0x13, in.octets(8));
    ketra::detail::append(attribute, tlv(0x13, in.octets(8)));
    ketra::detail::append(content, tlv(0x30, tlv(0x30, attribute)));
  }
  if (in.flag()) {
    Octets attribute = tlv(0x80, {in.octet()});
    ketra::detail::append(attribute, tlv(0xA1, tlv(0x13, in.octets(8))));
    ketra::detail::append(content, tlv(0x31, tlv(0x30, attribute)));
  }
  return tlv(0x30, content);
}

ketra::GeneralName generalName(Input &in) {
  switch (in.below(9)) {
    case 0: return ketra::OtherName{objid(in), optionally<Octets>(in, encoding)};
    case 1: return ketra::email(text(in));
    case 2: return ketra::dns(text(in));
    case 3: return ketra::x400(orAddress(in));
    case 4: return ketra::directory(name(in));
    case 5: return ketra::EdiPartyName{optionally<ketra::DirectoryString>(in, directoryString), directoryString(in)};
    case 6: return ketra::uri(text(in));
    case 7: return ketra::IpAddress{in.octets(33)};
    default: return ketra::registeredId(objid(in));
  }
}
std::vector<ketra::GeneralName> names(Input &in) { return list<ketra::GeneralName>(in, generalName); }

ketra::DistributionPointName pointName(Input &in) {
  if (in.flag()) return ketra::FullName{names(in)};
  ketra::RelativeName name;
  name.attributes = list<ketra::AttributeTypeAndValue>(in, [](Input &each) {
    return ketra::AttributeTypeAndValue{objid(each), encoding(each)};
  });
  return name;
}

ketra::Reasons reasons(Input &in) {
  const uint8_t bits = in.octet();
  ketra::Reasons reasons;
  int i = 0;
  for (const ketra::Reasons::Bit &bit : ketra::Reasons::bits()) reasons.*bit.member = (bits >> i++ & 1) != 0;
  return reasons;
}

ketra::DistributionPoint point(Input &in) {
  return {optionally<ketra::DistributionPointName>(in, pointName), optionally<ketra::Reasons>(in, reasons),
          optionally<std::vector<ketra::GeneralName>>(in, names)};
}

std::vector<ketra::GeneralSubtree> subtrees(Input &in) {
  return list<ketra::GeneralSubtree>(in, [](Input &each) {
    return ketra::GeneralSubtree{generalName(each), optionally<int32_t>(each, number),
                                 optionally<int32_t>(each, number)};
  });
}

// ---- Extensions -----------------------------------------------------------------------------------------------------

template <Names T>
void build(Input &in, T &value) {
  value.names = names(in);
}
void build(Input &in, ketra::AuthorityKeyId &value) {
  if (in.flag()) value.keyIdentifier = in.octets(40);
  if (!in.flag()) return;
  value.authorityCertIssuer = names(in);
  if (!in.isOdd()) value.authorityCertSerialNumber = integer(in);
}
void build(Input &in, ketra::SubjectKeyId &value) { value.keyIdentifier = in.octets(200); }
void build(Input &in, ketra::KeyUsage &value) {
  const uint64_t bits = in.bits(2);
  int i = 0;
  for (const ketra::KeyUsage::Bit &bit : ketra::KeyUsage::bits()) value.*bit.member = (bits >> i++ & 1) != 0;
}
void build(Input &in, ketra::ExtKeyUsage &value) { value.purposes = list<ketra::ObjectIdentifier>(in, objid); }
void build(Input &in, ketra::PrivateKeyUsagePeriod &value) {
  value = {optionally<ketra::Time>(in, time), optionally<ketra::Time>(in, time)};
}
void build(Input &in, ketra::CertificatePolicies &value) {
  value.policies = list<ketra::PolicyInformation>(in, [](Input &each) {
    ketra::PolicyInformation policy{objid(each), {}};
    for (uint32_t more = each.below(4); more > 0; --more) {
      const uint32_t kind = each.below(3);
      if (kind == 0) policy.qualifiers.push_back(ketra::PolicyQualifier::ofCps(text(each)));
      if (kind == 1) policy.qualifiers.push_back({objid(each), optionally<Octets>(each, encoding)});
      if (kind < 2) continue;
      ketra::UserNotice notice{{}, optionally<std::string>(each, printable)};
      if (each.flag()) notice.noticeRef = {printable(each), {integer(each)}};
      policy.qualifiers.push_back(ketra::PolicyQualifier::ofNotice(notice));
      require(policy.qualifiers.back().notice() == notice, "a notice reads as it was written");
    }
    return policy;
  });
}
void build(Input &in, ketra::BasicConstraints &value) {
  if (in.flag()) value.cA = in.flag();
  value.pathLenConstraint = optionally<int32_t>(in, number);
}
void build(Input &in, ketra::CrlNumber &value) { value.number = integer(in); }
void build(Input &in, ketra::DeltaCrlIndicator &value) { value.baseCrlNumber = integer(in); }
void build(Input &in, ketra::PolicyMappings &value) {
  value.mappings = list<ketra::PolicyMapping>(in, [](Input &each) {
    return ketra::PolicyMapping{objid(each), objid(each)};
  });
}
void build(Input &in, ketra::SubjectDirectoryAttributes &value) {
  value.attributes = list<ketra::Attribute>(in, [](Input &each) {
    return ketra::Attribute{objid(each), list<Octets>(each, encoding)};
  });
}
void build(Input &in, ketra::NameConstraints &value) {
  value = {optionally<std::vector<ketra::GeneralSubtree>>(in, subtrees),
           optionally<std::vector<ketra::GeneralSubtree>>(in, subtrees)};
}
void build(Input &in, ketra::PolicyConstraints &value) {
  value = {optionally<int32_t>(in, number), optionally<int32_t>(in, number)};
}
void build(Input &in, ketra::ReasonCode &value) {
  constexpr int32_t kReasons[] = {0, 1, 2, 3, 4, 5, 6, 8};
  value = static_cast<ketra::ReasonCode>(in.isOdd() ? in.octet() : kReasons[in.below(std::size(kReasons))]);
}
void build(Input &in, ketra::HoldInstruction &value) { value.instruction = objid(in); }
void build(Input &in, ketra::InvalidityDate &value) { value.date = time(in); }
void build(Input &in, ketra::CrlDistributionPoints &value) { value.points = list<ketra::DistributionPoint>(in, point); }
void build(Input &in, ketra::IssuingDistributionPoint &value) {
  value.distributionPoint = optionally<ketra::DistributionPointName>(in, pointName);
  for (auto *each : {&value.onlyContainsUserCerts, &value.onlyContainsCACerts, &value.indirectCRL}) {
    if (in.flag()) *each = in.flag();
  }
  value.onlySomeReasons = optionally<ketra::Reasons>(in, reasons);
}

// ---- Members of a SET come back in the order of DER (X.690 11.6) ----------------------------------------------------

template <class T>
void sortSets(T &) {}
void sortSets(std::optional<ketra::DistributionPointName> &name) {
  if (!name || name->index() == 0) return;
  std::ranges::sort(std::get<ketra::RelativeName>(*name).attributes, [](const auto &a, const auto &b) {
    return std::tie(a.type.arcs(), a.value) < std::tie(b.type.arcs(), b.value);
  });
}
void sortSets(ketra::CrlDistributionPoints &value) {
  for (ketra::DistributionPoint &each : value.points) sortSets(each.distributionPoint);
}
void sortSets(ketra::IssuingDistributionPoint &value) { sortSets(value.distributionPoint); }
void sortSets(ketra::SubjectDirectoryAttributes &value) {
  for (ketra::Attribute &each : value.attributes) {
    for (Octets &octets : each.values) octets = withDerLengths(octets);  // the octets of odd values may be BER
    std::ranges::sort(each.values);
  }
}

template <class T>
void setAndGet(Input &in) {
  T value{};
  const bool critical = in.flag();
  build(in, value);
  Extensions extensions;
  const uint32_t code = setCode(extensions, value, critical);
  if (code != 0) {
    require(in.wasOdd(), "what is well formed can be set");
    require(!extensions.contains<T>() && extensions.size() == 0, "what is refused is not stored");
    return;
  }
  Outcome<T> outcome = read<T>(extensions);
  require(std::holds_alternative<T>(outcome), "what was set can be read");
  if constexpr (ketra::ExtensionTraits<T>::kCallerSetsCritical) {
    require(extensions.find<T>()->critical == critical, "the criticality is the one that was set");
  }
  const Octets written = extensions.find<T>()->value.copy();
  require(setCode(extensions, std::get<T>(outcome), critical) == 0, "what was read can be set");
  require(extensions.find<T>()->value.copy() == written, "what was written is written again");
  sortSets(value);
  sortSets(std::get<T>(outcome));
  require(std::get<T>(outcome) == value, "what was set is what is read");
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  using namespace fuzz;
  if (size < 2) return 0;
  Input in({data + 2, size - 2}, data[0] % 2 != 0);
  withType(data[1] % kTypes, [&]<class T, std::size_t>() { setAndGet<T>(in); });
  return 0;
}
