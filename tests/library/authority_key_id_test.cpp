#include "support/structures.h"

namespace ketra::test {
namespace {

constexpr auto kSamples = Structures::Content::Samples;
constexpr auto kPrepared = Structures::Content::Prepared;

TEST(AuthorityKeyId, WritesWhatIsThere) {
  Chains samples(kSamples);
  Chains read(kPrepared);
  const Extensions extensions;
  const X509CertSerialNumberOpt &serial = read.keyId.authorityCertSerialNumber;
  ASSERT_EQ(refusal(KetraObjectSsetAuthorityKeyId, extensions, &samples.keyId), "");
  EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), golden("authorityKeyIdentifier/all"));
  read.keyId.authorityCertSerialNumber.value.reserved = 77;
  read.keyId.authorityCertSerialNumber.value.length = 88;
  ASSERT_EQ(refusal(KetraObjectSgetAuthorityKeyId, extensions, &read.keyId), "");
  EXPECT_EQ(serial.value.number, 0x0102);
  EXPECT_TRUE(serial.value.reserved == 77 && serial.value.length == 88) << "only what the form needs is written";

  const KetraAuthorityKeyId none{};
  ASSERT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &none, nullptr), 0);
  EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), "30 00");
  uint32_t count = 9;
  ASSERT_EQ(KetraObjectSgetAuthorityKeyIdCalGenName(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  ASSERT_EQ(KetraObjectSgetAuthorityKeyId(extensions, &read.keyId, nullptr), 0);
  EXPECT_EQ(read.keyId.keyIdentifier.option + read.keyId.authorityCertIssuer.option + serial.option, 0);
  EXPECT_EQ(read.keyId.authorityCertIssuer.genNames, read.issuer.first()) << "the chain is the caller's";
  EXPECT_EQ(serial.value.octets, nullptr);
}

// Numbers come back as numbers when they have up to four octets, whatever their sign; longer ones as their octets.
TEST(AuthorityKeyId, SerialNumbers) {
  struct Row {
    const char *content;
    int32_t form;
    int32_t number;
  };
  const Row rows[] = {
      {"00", 0, 0}, {"FF", 0, -1}, {"80 00 00 00", 0, INT32_MIN}, {"00 80 00 00 00", 1, 0}, {"00 FF+AA*40", 1, 0},
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
    ASSERT_EQ(refusal(KetraObjectSsetAuthorityKeyId, extensions, &samples.keyId), "");
    ASSERT_EQ(refusal(KetraObjectSgetAuthorityKeyId, extensions, &read.keyId), "");
    const X509CertSerialNumber &got = read.keyId.authorityCertSerialNumber.value;
    EXPECT_EQ(got.form, row.form);
    if (row.form == 1) {
      EXPECT_EQ(toHex(got.octets, got.length), toHex(content));
    } else {
      EXPECT_EQ(got.number, row.number);
    }
  }
}

TEST(AuthorityKeyId, Refused) {
  static const uint8_t padded[] = {0x00, 0x01};
  struct Row {
    void (*change)(KetraAuthorityKeyId &);
    uint32_t code;
  };
  const Row rows[] = {
      {[](KetraAuthorityKeyId &v) { v.authorityCertSerialNumber.option = 0; }, 0x01461059},
      {[](KetraAuthorityKeyId &v) { v.authorityCertIssuer.option = 0; }, 0x01461059},
      {[](KetraAuthorityKeyId &v) { v.authorityCertIssuer.option = 2; }, 0x0147F754},
      {[](KetraAuthorityKeyId &v) { v.authorityCertSerialNumber.value.form = 2; }, X509SerialError_Form},
      {[](KetraAuthorityKeyId &v) {
         X509CertSerialNumber &serial = v.authorityCertSerialNumber.value;
         serial.form = 1;
         serial.octets = padded;
         serial.length = 2;
       },
       X509SerialError_Integer},
      {[](KetraAuthorityKeyId &v) { v.keyIdentifier.value.octets = nullptr; }, AsnCheckError_Pointer},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.code);
    Chains samples(kSamples);
    row.change(samples.keyId);
    const Extensions extensions;
    Err err;
    EXPECT_EQ(KetraObjectSsetAuthorityKeyId(extensions, &samples.keyId, err), -1);
    EXPECT_EQ(err.code(), row.code) << err.text();
    EXPECT_EQ(extensions.stored(X509Objid_AuthorityKeyId), "absent");
    if (row.code == 0x01461059) {
      EXPECT_EQ(err.trace(), std::vector<std::string>{"KetraObjectSsetAuthorityKeyId: opt"});
      EXPECT_TRUE(err.blames(samples.keyId));
    }
  }

  Extensions extensions;
  Chains read(kPrepared);
  extensions.store(X509Objid_AuthorityKeyId, fromHex("30 05 80 01 AA A1 00"));
  uint32_t count = 9;
  EXPECT_EQ(KetraObjectSgetAuthorityKeyIdCalGenName(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, 0u);
  EXPECT_EQ(refusal(KetraObjectSgetAuthorityKeyId, extensions, &read.keyId),
            "01468182 KetraObjectSgetAuthorityKeyId: Count of SequenceOf = 0");
  EXPECT_EQ(read.keyId.keyIdentifier.option + read.keyId.authorityCertIssuer.option, 2) << "written before";
}

}  // namespace
}  // namespace ketra::test
