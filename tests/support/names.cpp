#include "support/names.h"

namespace ketra::test {
namespace {

std::string hexOf(int32_t (*getPdu)(X509GenNameObject, AsnEncodedData *, AsnErrorBlock *), X509GenNameObject object) {
  Err err;
  AsnEncodedData encoding{};
  if (getPdu(object, &encoding, err) == 0) return toHex(encoding);
  return err.code() == 0x01479103 ? "empty" : err.text();
}

}  // namespace

std::string sampleOf(const std::string &kind) {
  static const std::map<std::string, std::string> samples = {
      {"otherName", "A0 13 06 0A 2B 06 01 04 01 82 37 14 02 03 A0 05 0C 03 75 40 61"},
      {"rfc822Name", "81 03 75 40 61"},
      {"dNSName", "82 01 61"},
      // Empty standard attributes, two domain-defined attributes and an extension attribute.
      {"x400Address",
       "A3 20 30 00 30 10 30 06 13 01 61 13 01 62 30 06 13 01 63 13 01 64 31 0A 30 08 80 01 01 A1 03 13 01 65"},
      {"directoryName", "A4 0E 30 0C 31 0A 30 08 06 03 55 04 03 13 01 41"},
      {"ediPartyName", "A5 0A A0 03 0C 01 58 A1 03 13 01 59"},
      {"uniformResourceIdentifier", "86 03 75 3A 61"},
      {"iPAddress", "87 04 C0 00 02 01"},
      {"registeredID", "88 03 88 37 03"},
  };
  return samples.at(kind);
}

GenName::GenName(const std::string &kind) : GenName() {
  if (!kind.empty()) {
    EXPECT_EQ(setPdu(fromHex(sampleOf(kind)), false), 0) << kind;
  }
}

int32_t GenName::setPdu(const Octets &octets, bool ber, AsnErrorBlock *err) {
  const Exact exact(octets);
  const AsnEncodedData encoding = exact.data();
  return ber ? set(octets, err) : X509GenNameObjectSetPduDER(handle, &encoding, err);
}

bool GenName::hasName() const {
  X509GenNameParam view{};
  return X509GenNameObjectGetName(handle, &view, nullptr) == 0;
}

X509GenNameParam GenName::param() const {
  X509GenNameParam view{};
  EXPECT_EQ(X509GenNameObjectGetName(handle, &view, nullptr), 0);
  return view;
}

std::string GenName::der() const { return hexOf(X509GenNameObjectGetPduDER, handle); }
std::string GenName::ber() const { return hexOf(X509GenNameObjectGetPduBER, handle); }

Names::Names(const std::vector<std::string> &kinds) : nodes_(kinds.size()) {
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    nodes_[i] = {i + 1 < kinds.size() ? &nodes_[i + 1] : nullptr, names_.emplace_back(kinds[i])};
  }
}

void Names::dropEncodings() {
  for (const GenName &name : names_) {
    const X509GenNameParam param = name.param();
    EXPECT_EQ(X509GenNameObjectSetName(name, &param, nullptr), 0);
  }
}

}  // namespace ketra::test
