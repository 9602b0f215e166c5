// A list of hostile and borderline values with verdicts, where it is at hand: a tab-separated file of id, type, hex,
// verdicts as BER and DER, and what a typed read has to answer. The worst of them stand in the other tests as well.

#include <algorithm>
#include <fstream>
#include <map>

#include "ketra.hpp"
#include "support/names.h"

namespace ketra::test {
namespace {

// "24*100+0400", and "nest:TAG*DEPTH:INNER" for constructed encodings of definite length inside each other.
Octets build(const std::string &hex) {
  Octets octets;
  std::istringstream pieces(hex);
  for (std::string piece; std::getline(pieces, piece, '+');) {
    Octets part;
    if (piece.starts_with("nest:")) {
      const std::size_t star = piece.find('*');
      const std::size_t colon = piece.find(':', star);
      const auto tag = fromHex(piece.substr(5, star - 5)).at(0);
      part = fromHex(piece.substr(colon + 1));
      std::reverse(part.begin(), part.end());
      for (int depth = std::stoi(piece.substr(star + 1)); depth > 0; --depth) {
        std::size_t length = part.size();
        const bool isShort = length < 0x80;
        uint8_t count = 0;
        do {
          part.push_back(static_cast<uint8_t>(length));
          ++count;
        } while ((length >>= 8) != 0);
        if (!isShort) part.push_back(static_cast<uint8_t>(0x80 | count));
        part.push_back(tag);
      }
      std::reverse(part.begin(), part.end());
    } else {
      part = fromHex(piece);
    }
    octets.insert(octets.end(), part.begin(), part.end());
  }
  return octets;
}

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
int32_t readCrlNumber(KetraObject object, AsnErrorBlock *err) {  // the face reads longer ones too
  int32_t number = 0;
  return KetraObjectSgetCRLNumber(object, &number, err);
}

struct Type {
  const Objid &objid;
  int32_t (*read)(KetraObject, AsnErrorBlock *);
};

const std::map<std::string, Type> kTypes = {
    {"authorityKeyIdentifier", {X509Objid_AuthorityKeyId, readAs<AuthorityKeyId>}},
    {"basicConstraints", {X509Objid_BasicConstraints, readAs<BasicConstraints>}},
    {"cRLDistributionPoints", {X509Objid_CRLDistributionPoints, readAs<CrlDistributionPoints>}},
    {"cRLNumber", {X509Objid_CRLNumber, readCrlNumber}},
    {"certificatePolicies", {X509Objid_CertPolicies, readAs<CertificatePolicies>}},
    {"extKeyUsage", {X509Objid_ExtKeyUsage, readAs<ExtKeyUsage>}},
    {"invalidityDate", {X509Objid_InvalidityDate, readAs<InvalidityDate>}},
    {"issuingDistributionPoint", {X509Objid_IssuingDistributionPoint, readAs<IssuingDistributionPoint>}},
    {"keyUsage", {X509Objid_KeyUsage, readAs<KeyUsage>}},
    {"nameConstraints", {X509Objid_NameConstraints, readAs<NameConstraints>}},
    {"policyMappings", {X509Objid_PolicyMappings, readAs<PolicyMappings>}},
    {"privateKeyUsagePeriod", {X509Objid_PrivateKeyUsagePeriod, readAs<PrivateKeyUsagePeriod>}},
    {"reasonCode", {X509Objid_ReasonCode, readAs<ReasonCode>}},
    {"subjectAltName", {X509Objid_SubjectAltName, readAs<SubjectAltName>}},
    {"subjectDirectoryAttributes", {X509Objid_SubjectDirectoryAttributes, readAs<SubjectDirectoryAttributes>}},
    {"subjectKeyIdentifier", {X509Objid_SubjectKeyId, readAs<SubjectKeyId>}},
};

int32_t read(const std::string &type, const Octets &octets, AsnErrorBlock *err) {
  if (type == "GeneralName") return GenName().setPdu(octets, true, err);
  const Type &row = kTypes.at(type);
  Extensions extensions;
  extensions.store(row.objid, octets);
  return row.read(extensions, err);
}

TEST(BadInputs, EveryVerdict) {
  if (!std::ifstream(KETRA_BAD_INPUTS)) GTEST_SKIP() << "no list of bad inputs at " << KETRA_BAD_INPUTS;
  int rows = 0;
  for (const auto &row : rowsOf(KETRA_BAD_INPUTS)) {
    const std::string &id = row.at(0), &type = row.at(1), &hex = row.at(2), &library = row.at(5);
    ++rows;
    Err err;
    const int32_t result = read(type, build(hex), err);
    SCOPED_TRACE(id + " " + err.text());
    if (library == "accept") {
      EXPECT_EQ(result, 0);
    } else if (library != "limit") {
      EXPECT_EQ(result, -1);
      EXPECT_EQ(err.code() == uint32_t{AsnError_Range}, library == "range");
    }
    EXPECT_EQ(result == 0, err.block.count == 0);
  }
  EXPECT_GE(rows, 80);
}

}  // namespace
}  // namespace ketra::test
