#include "values.hpp"

#include <cstdio>
#include <initializer_list>

namespace bench {
namespace {

template <class Make>
std::vector<std::string> strings(Make &&make) {
  std::vector<std::string> strings(100'000);
  for (std::size_t i = 0; i < strings.size(); ++i) {
    const std::string digits = std::to_string(i);
    strings[i] = make(std::string(5 - digits.size(), '0') + digits);
  }
  return strings;
}

}  // namespace

const std::string &host(std::size_t i) {
  static const std::vector<std::string> kHosts = strings([](const auto &n) { return "host" + n + ".example.com"; });
  return kHosts.at(i);
}
const std::string &crl(std::size_t i) {
  static const std::vector<std::string> kCrls =
      strings([](const auto &n) { return "http://crl" + n + ".example.com/ca.crl"; });
  return kCrls.at(i);
}

Arcs policy(std::size_t i) { return {1, 3, 6, 1, 4, 1, 32473, 1, static_cast<uint32_t>(i + 1)}; }
Arcs subjectPolicy(std::size_t i) { return {1, 3, 6, 1, 4, 1, 32473, 2, static_cast<uint32_t>(i + 1)}; }
Arcs purpose(std::size_t i) { return {1, 3, 6, 1, 5, 5, 7, 3, static_cast<uint32_t>(i + 1)}; }

namespace {
std::string text(const Arcs &arcs) {
  std::string text;
  for (const uint32_t arc : arcs) text += (text.empty() ? "" : ".") + std::to_string(arc);
  return text;
}
}  // namespace

const std::string &policyText(std::size_t i) {
  static const std::string kTexts[] = {text(policy(0)), text(policy(1)), text(policy(2))};
  return kTexts[i];
}
const std::string &subjectPolicyText(std::size_t i) {
  static const std::string kTexts[] = {text(subjectPolicy(0)), text(subjectPolicy(1)), text(subjectPolicy(2))};
  return kTexts[i];
}
const std::string &purposeText(std::size_t i) {
  static const std::string kTexts[] = {text(purpose(0)), text(purpose(1)), text(purpose(2))};
  return kTexts[i];
}

namespace der {
namespace {

Octets tlv(uint8_t tag, const Octets &content) {
  Octets length;
  for (std::size_t n = content.size(); n > 0; n >>= 8) length.insert(length.begin(), static_cast<uint8_t>(n));
  if (content.size() < 0x80) length.resize(1);  // also when it is empty
  if (content.size() >= 0x80) length.insert(length.begin(), static_cast<uint8_t>(0x80 + length.size()));
  Octets all = {tag};
  all.insert(all.end(), length.begin(), length.end());
  all.insert(all.end(), content.begin(), content.end());
  return all;
}
Octets tlv(uint8_t tag, std::initializer_list<Octets> parts) {
  Octets content;
  for (const Octets &part : parts) content.insert(content.end(), part.begin(), part.end());
  return tlv(tag, content);
}
template <class Make>
Octets list(uint8_t tag, std::size_t first, std::size_t end, Make &&make) {
  Octets content;
  for (std::size_t i = first; i < end; ++i) {
    const Octets member = make(i);
    content.insert(content.end(), member.begin(), member.end());
  }
  return tlv(tag, content);
}

Octets octets(std::string_view text) { return {text.begin(), text.end()}; }
template <std::size_t kSize>
Octets octets(const uint8_t (&array)[kSize]) {
  return {array, array + kSize};
}

}  // namespace

Octets identifier(const Arcs &arcs) {
  Octets content = {static_cast<uint8_t>(arcs[0] * 40 + arcs[1])};
  for (std::size_t i = 2; i < arcs.size(); ++i) {
    Octets arc = {static_cast<uint8_t>(arcs[i] & 0x7F)};
    for (uint32_t rest = arcs[i] >> 7; rest > 0; rest >>= 7) {
      arc.insert(arc.begin(), static_cast<uint8_t>(0x80 | (rest & 0x7F)));
    }
    content.insert(content.end(), arc.begin(), arc.end());
  }
  return tlv(0x06, content);
}
Octets ia5String(std::string_view text) { return tlv(0x16, octets(text)); }
Octets name() {
  return list(0x30, 0, std::size(kName), [](std::size_t i) {
    const Attribute &attribute = kName[i];
    const uint8_t tag = attribute.string == X509DirStr_PrintableString ? 0x13 : 0x0C;
    return tlv(0x31, tlv(0x30, {identifier({std::begin(attribute.type), std::end(attribute.type)}),
                                tlv(tag, octets(attribute.text))}));
  });
}

namespace {
Octets fullName(std::size_t i) { return tlv(0xA0, tlv(0xA0, tlv(0x86, octets(crl(i))))); }
}  // namespace

Octets basicConstraints() { return {0x30, 6, 0x01, 1, 0xFF, 0x02, 1, kPathLength}; }
Octets keyUsage() { return {0x03, 2, 1, kCertAndCrlSign}; }
Octets subjectKeyId() { return tlv(0x04, octets(kKeyId)); }
Octets authorityKeyId() {
  return tlv(0x30, {tlv(0x80, octets(kKeyId)), tlv(0xA1, tlv(0xA4, name())), tlv(0x82, octets(kSerial))});
}
Octets extKeyUsage(std::size_t size) {
  return list(0x30, 0, size, [](std::size_t i) { return identifier(purpose(i)); });
}
Octets certPolicies(std::size_t size) {
  const Octets qualifiers = tlv(0x30, tlv(0x30, {identifier(kCpsId), ia5String(kCps)}));
  return list(0x30, 0, size, [&](std::size_t i) { return tlv(0x30, {identifier(policy(i)), qualifiers}); });
}
Octets policyMappings(std::size_t size) {
  return list(0x30, 0, size, [](std::size_t i) {
    return tlv(0x30, {identifier(policy(i)), identifier(subjectPolicy(i))});
  });
}
Octets policyConstraints() { return {0x30, 6, 0x80, 1, kExplicit, 0x81, 1, kInhibit}; }
Octets subjectAltName(std::size_t size) {
  return list(0x30, 0, size, [](std::size_t i) { return tlv(0x82, octets(host(i))); });
}
Octets directoryName() { return tlv(0x30, tlv(0xA4, name())); }
Octets crlDistributionPoints(std::size_t size) {
  return list(0x30, 0, size, [](std::size_t i) { return tlv(0x30, fullName(i)); });
}
Octets issuingDistributionPoint() { return tlv(0x30, {fullName(0), {0x81, 1, 0xFF}, {0x83, 2, 5, kCompromises}}); }
Octets nameConstraints(std::size_t size) {
  const auto subtree = [](std::size_t i) { return tlv(0x30, tlv(0x82, octets(host(i)))); };
  const std::size_t permitted = size - size / 2;
  return tlv(0x30, {list(0xA0, 0, permitted, subtree), size > 1 ? list(0xA1, permitted, size, subtree) : Octets{}});
}
Octets crlNumber() { return {0x02, 3, kCrlNumber >> 16, kCrlNumber >> 8 & 0xFF, kCrlNumber & 0xFF}; }
Octets reasonCode() { return {0x0A, 1, kReason}; }
Octets revocationList(std::size_t entries) {
  const Octets algorithm = tlv(0x30, tlv(0x06, octets("\x2B\x65\x70"))), time = tlv(0x17, octets("260101000000Z"));
  const Octets reason = tlv(0x30, {tlv(0x30, {tlv(0x06, octets("\x55\x1D\x15")), tlv(0x04, reasonCode())})});
  const Octets revoked = list(0x30, 0, entries, [&](std::size_t i) {
    Octets serial(16, 0x11);
    for (std::size_t octet = 0; octet < 4; ++octet) serial[15 - octet] = static_cast<uint8_t>(i >> (8 * octet));
    return tlv(0x30, {tlv(0x02, serial), time, i % 4 == 0 ? reason : Octets()});
  });
  const Octets tbs = tlv(0x30, {tlv(0x02, octets("\x01")), algorithm, tlv(0x30, Octets()), time, revoked});
  return tlv(0x30, {tbs, algorithm, tlv(0x03, octets("\x01\x80"))});
}
Octets invalidityDate() { return tlv(0x18, octets(kDate)); }

}  // namespace der
}  // namespace bench
