#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;

TEST(AuthorityKeyId, SetCountGet) {
  Chains samples(kSamples);
  Chains read(kPrepared);
  const Extensions extensions;
  Err err;
  ASSERT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &samples.keyId, err), 0) << err.text();
  EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), golden("authorityKeyIdentifier/all"));
  uint32_t count = 0;
  ASSERT_EQ(KetraObjectSgetAuthorityKeyIdCalGenName(extensions, &count, err), 0);
  EXPECT_EQ(count, 1u);
  read.keyId.authorityCertSerialNumber.value.reserved = 77;
  read.keyId.authorityCertSerialNumber.value.length = 88;
  ASSERT_EQ(KetraObjectSgetAuthorityKeyId(extensions, &read.keyId, err), 0) << err.text();
  EXPECT_EQ(toHex(read.keyId.keyIdentifier.value.octets, read.keyId.keyIdentifier.value.length), "AA BB");
  EXPECT_EQ(read.keyId.authorityCertIssuer.option, 1);
  EXPECT_EQ(read.issuer.at(0).ber(), sampleOf("iPAddress"));
  EXPECT_EQ(read.keyId.authorityCertSerialNumber.value.number, 0x0102);
  EXPECT_EQ(read.keyId.authorityCertSerialNumber.value.reserved, 77u);
  EXPECT_EQ(read.keyId.authorityCertSerialNumber.value.length, 88u) << "only what the form needs is written";

  const KetraAuthorityKeyId none{};
  ASSERT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &none, err), 0);
  EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), "30 00");
  ASSERT_EQ(KetraObjectSgetAuthorityKeyIdCalGenName(extensions, &count, err), 0);
  EXPECT_EQ(count, 0u);
  const X509GenNameChain *const chain = read.keyId.authorityCertIssuer.genNames;
  ASSERT_EQ(KetraObjectSgetAuthorityKeyId(extensions, &read.keyId, err), 0);
  EXPECT_EQ(read.keyId.keyIdentifier.option + read.keyId.authorityCertIssuer.option, 0);
  EXPECT_EQ(read.keyId.authorityCertIssuer.genNames, chain);
  EXPECT_EQ(read.keyId.authorityCertSerialNumber.option, 0);
  EXPECT_EQ(read.keyId.authorityCertSerialNumber.value.octets, nullptr);
}

// Numbers come back as numbers when they have up to four octets, whatever their sign; longer ones as their octets.
TEST(AuthorityKeyId, SerialNumbers) {
  struct Row {
    const char *content;
    int32_t form;
    int32_t number;
  };
  const Row rows[] = {
      {"00", 0, 0},
      {"FF", 0, -1},
      {"01 02", 0, 0x0102},
      {"80 00 00 00", 0, INT32_MIN},
      {"00 80 00 00 00", 1, 0},
      {"7F +FF*19", 1, 0},
      {"00 FF+AA*40", 1, 0},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.content);
    const Octets content = fromHex(row.content);
    Chains samples(kSamples);
    Chains read(kPrepared);
    const Extensions extensions;
    X509CertSerialNumber &serial = samples.keyId.authorityCertSerialNumber.value;
    serial = {1, {}, static_cast<uint32_t>(content.size()), 0};
    serial.octets = content.data();
    Err err;
    ASSERT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &samples.keyId, err), 0) << err.text();
    const std::string stored = extensions.stored(X509Objid_AuthorityKeyId);
    ASSERT_EQ(KetraObjectSgetAuthorityKeyId(extensions, &read.keyId, err), 0) << err.text();
    const X509CertSerialNumber &got = read.keyId.authorityCertSerialNumber.value;
    EXPECT_EQ(got.form, row.form);
    if (row.form == 1) {
      EXPECT_EQ(toHex(got.octets, got.length), toHex(content));
    } else {
      EXPECT_EQ(got.number, row.number);
    }
    const Extensions again;
    ASSERT_EQ(KetraObjectSsetAuthorityKeyId(again, &read.keyId, err), 0);
    EXPECT_EQ(again.stored(X509Objid_AuthorityKeyId), stored);
  }
}

TEST(AuthorityKeyId, Refused) {
  struct Row {
    const char *what;
    void (*change)(KetraAuthorityKeyId &);
    uint32_t code;
    const char *message;
  };
  const Row rows[] = {
      {"issuer alone", [](KetraAuthorityKeyId &v) { v.authorityCertSerialNumber.option = 0; }, 0x01461059, "opt"},
      {"serial number alone", [](KetraAuthorityKeyId &v) { v.authorityCertIssuer.option = 0; }, 0x01461059, "opt"},
      {"flag", [](KetraAuthorityKeyId &v) { v.authorityCertIssuer.option = 2; }, 0x0147F754,
       "Call X509MUtilCheckGenNamesOpt"},
      {"form", [](KetraAuthorityKeyId &v) { v.authorityCertSerialNumber.value.form = 2; }, X509SerialError_Form,
       "Call X509MUtilCheckCertSerialNumberOpt"},
      {"padded",
       [](KetraAuthorityKeyId &v) {
         static const uint8_t padded[] = {0x00, 0x01};
         v.authorityCertSerialNumber.value.form = 1;
         v.authorityCertSerialNumber.value.octets = padded;
         v.authorityCertSerialNumber.value.length = 2;
       },
       X509SerialError_Integer, "Call X509MUtilCheckCertSerialNumberOpt"},
      {"null octets", [](KetraAuthorityKeyId &v) { v.keyIdentifier.value.octets = nullptr; }, AsnCheckError_Pointer,
       "Call AsnCheckOctOptBER"},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.what);
    Chains samples(kSamples);
    row.change(samples.keyId);
    const Extensions extensions;
    Err err;
    EXPECT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &samples.keyId, err), -1);
    EXPECT_EQ(err.code(), row.code) << err.text();
    EXPECT_EQ(err.trace().back(), std::string("KetraObjectSsetAuthorityKeyId: ") + row.message);
    EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), "absent");
    if (row.code == 0x01461059) {
      EXPECT_EQ(err.block.entries[0].value, &samples.keyId);
      EXPECT_EQ(err.block.entries[0].valueLength, sizeof samples.keyId);
    }
  }

  Extensions extensions;
  Chains read(kPrepared);
  extensions.store(X509Objid_AuthorityKeyId, fromHex("30 05 80 01 AA A1 00"));
  uint32_t count = 9;
  EXPECT_EQ(KetraObjectSgetAuthorityKeyIdCalGenName(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  Err empty;
  EXPECT_EQ(KetraObjectSgetAuthorityKeyId(extensions, &read.keyId, empty), -1);
  EXPECT_EQ(empty.code(), 0x01468182u);
  EXPECT_EQ(empty.trace(), std::vector<std::string>{"KetraObjectSgetAuthorityKeyId: Count of SequenceOf = 0"});
  EXPECT_EQ(read.keyId.keyIdentifier.option, 1);
  EXPECT_EQ(read.keyId.authorityCertIssuer.option, 1);
}

}  // namespace
}  // namespace ketra::test
