// A list of hostile and borderline values with verdicts, where it is at hand: a tab-separated file of id, type, hex,
// verdicts as BER and DER, and what a typed read has to answer. The worst of them stand in the other tests as well.

#include <algorithm>
#include <fstream>
#include <map>
#include <set>

#include "ketra.h"
#include "schema/schema.h"
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

const std::map<std::string, schema::Entry> kUntyped = {
    {"authorityKeyIdentifier", schema::Entry::AuthorityKeyIdentifier},
    {"cRLDistributionPoints", schema::Entry::CRLDistributionPoints},
    {"cRLNumber", schema::Entry::CRLNumber},
    {"certificatePolicies", schema::Entry::CertificatePoliciesSyntax},
    {"extKeyUsage", schema::Entry::ExtKeyUsage},
    {"invalidityDate", schema::Entry::InvalidityDate},
    {"issuingDistributionPoint", schema::Entry::IssuingDistributionPoint},
    {"nameConstraints", schema::Entry::NameConstraints},
    {"policyMappings", schema::Entry::PolicyMappings},
    {"privateKeyUsagePeriod", schema::Entry::PrivateKeyUsagePeriod},
    {"reasonCode", schema::Entry::CRLReason},
    {"subjectDirectoryAttributes", schema::Entry::SubjectDirectoryAttributes},
};

// Refused by what reads the values, above the decoder: signs, ranges, empty lists.
const std::set<std::string> kAboveDecoding = {"I06", "I11", "Q02"};

// The typed read as far as there is one; of the other types, decoding against the schema.
int32_t read(const std::string &type, const Octets &octets, AsnErrorBlock *err) {
  if (const auto untyped = kUntyped.find(type); untyped != kUntyped.end()) {
    const Exact exact(octets);
    return Work(schema::record(untyped->second), exact.data()).decode(err);
  }
  Extensions extensions;
  extensions.store(X509Objid_BasicConstraints, octets);
  extensions.store(X509Objid_KeyUsage, octets);
  extensions.store(X509Objid_SubjectKeyId, octets);
  extensions.store(X509Objid_SubjectAltName, octets);
  KetraBasicConstraints constraints{};
  AsnBit bits{};
  AsnOct identifier{};
  if (type == "GeneralName") return GenName().setPdu(octets, true, err);
  if (type == "subjectAltName") {
    uint32_t count = 0;
    if (KetraObjectSgetSubjectAltNameCalGenName(extensions, &count, err) != 0) return -1;
    Names names(std::vector<std::string>(count, ""));
    const X509GenNames value{names.first()};
    return KetraObjectSgetSubjectAltName(extensions, &value, err);
  }
  if (type == "keyUsage") return KetraObjectSgetKeyUsage(extensions, &bits, err);
  if (type == "subjectKeyIdentifier") return KetraObjectSgetSubjectKeyId(extensions, &identifier, err);
  EXPECT_EQ(type, "basicConstraints");
  return KetraObjectSgetBasicConstraints(extensions, &constraints, err);
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
    const bool decodesOnly = kUntyped.count(type) != 0;
    if (library == "accept" || (library == "range" && decodesOnly) || kAboveDecoding.count(id) != 0) {
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
