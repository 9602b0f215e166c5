// Counts what operations ask of the system, and lets it refuse.

#include <functional>

#include "library/system_requests.h"
#include "support/names.h"

namespace ketra::test {
namespace {

template <class Run>
int count(Run &&run) {
  const int before = requests.made;
  EXPECT_EQ(run(), 0);
  return requests.made - before;
}

TEST(Allocations, FewPerOperation) {
  const Extensions extensions;
  KetraBasicConstraints value{{1, 1}, {0, 1}};
  EXPECT_LE(count([&] { return KetraObjectSsetBasicConstraints(extensions, 1, &value, nullptr); }), 4);
  const int gets = count([&] { return KetraObjectSgetBasicConstraints(extensions, &value, nullptr); });
  EXPECT_GE(gets, 1) << "the count sees the runtime's requests";
  EXPECT_LE(gets, 2);
  KetraObject object = nullptr;
  EXPECT_EQ(count([&] { return KetraObjectCreate(&object, nullptr); }), 1);
  EXPECT_EQ(KetraObjectDestroy(object, nullptr), 0);
  AsnObject work = nullptr;
  const int working = count([&] {
    AsnValue root = nullptr;
    AsnObjectCreate(&work, nullptr);
    AsnOpenNew(work, AsnType_SequenceOfAny, &root, nullptr);
    return AsnObjectDestroy(work, nullptr);
  });
  EXPECT_EQ(working, 1);
}

// An object with a host name of ordinary length costs what its pool starts with.
TEST(Allocations, OnePerGeneralName) {
  static const uint8_t host[] = "subdomain.some-organisation.example";
  X509GenNameParam param{};
  param.type = X509GenName_DNSName;
  param.dNSName = {host, sizeof host - 1};
  X509GenNameObject object = nullptr;
  requests.octets = 0;
  EXPECT_EQ(count([&] {
              return X509GenNameObjectCreate(&object, nullptr) + X509GenNameObjectSetName(object, &param, nullptr);
            }),
            1);
  EXPECT_LE(requests.octets, 280u);
  AsnEncodedData encoding{};
  EXPECT_EQ(count([&] { return X509GenNameObjectGetPduDER(object, &encoding, nullptr); }), 1) << "the work object";
  X509GenNameObject read = nullptr;
  EXPECT_EQ(count([&] {
              return X509GenNameObjectCreate(&read, nullptr) + X509GenNameObjectSetPduBER(read, &encoding, nullptr);
            }),
            2);
  EXPECT_EQ(X509GenNameObjectDestroy(object, nullptr) + X509GenNameObjectDestroy(read, nullptr), 0);
}

// As for the typed operations in the sweep: whichever request the system refuses, the operation fails with the code for
// it and leaves its object as it was; the next call works.
TEST(Allocations, EachMayBeRefused) {
  static Octets list = fromHex("30 82 0B B8");
  for (uint8_t i = 0; i < 250; ++i) {  // 2.5.1.n and 2.5.2.n
    const uint8_t arc = i < 125 ? 1 : 2;
    list.insert(list.end(), {0x30, 0x0A, 0x06, 0x03, 0x55, arc, static_cast<uint8_t>(i % 125), 0x04, 0x03, 1, 1, 0xFF});
  }
  static const AsnEncodedData pdu{list.data(), static_cast<uint32_t>(list.size())};
  static const Octets attributeOctets = tlv(0x30, tlv(0x30, fromHex("06 01 2A") + tlv(0x31, fromHex("05 00*20000"))));
  static const AsnEncodedData attributeList{attributeOctets.data(), static_cast<uint32_t>(attributeOctets.size())};
  const std::pair<const char *, std::function<int32_t(KetraObject, AsnErrorBlock *)>> operations[] = {
      {"SetPdu", [](auto object, auto err) { return KetraObjectSetPduBER(object, &pdu, err); }},
      {"GetPdu",
       [](auto object, auto err) {
         AsnEncodedData der{};
         return KetraObjectGetPduDER(object, &der, err);
       }},
      {"Attributes",
       [](auto, auto err) {
         X509AttributesObject attributes = nullptr;
         const bool done = X509AttributesObjectCreate(&attributes, err) == 0 &&
                           X509AttributesObjectSetPduBER(attributes, &attributeList, err) == 0 &&
                           X509AttributesObjectAppend(attributes, &X509Objid_SubjectKeyId, &attributeList, 1, err) == 0;
         X509AttributesObjectDestroy(attributes, nullptr);
         return done ? 0 : -1;
       }},
  };
  for (const auto &[name, run] : operations) {
    int refused = 0;
    for (bool reached = true; reached; ++refused) {
      SCOPED_TRACE(std::string(name) + ", request " + std::to_string(refused + 1));
      Extensions extensions;
      extensions.store(X509Objid_SubjectKeyId, fromHex("04 82 27 10+CC*10000"));
      const std::string before = extensions.stored(X509Objid_SubjectKeyId);
      Err err;
      requests = {.made = 0, .refuseFrom = refused + 1, .refuseTo = refused + 1};
      const int32_t result = run(extensions, err);
      reached = requests.made > refused;
      requests.refuseFrom = 0;
      EXPECT_EQ(result, reached ? -1 : 0) << err.text();
      if (!reached) break;
      EXPECT_TRUE(err.code() == AsnError_OutOfMemory || err.code() == AsnMemError_OutOfMemory) << err.text();
      EXPECT_EQ(extensions.stored(X509Objid_SubjectKeyId), before);
      EXPECT_EQ(run(extensions, err), 0);
    }
    EXPECT_GE(refused, 1) << name;
  }
}

}  // namespace
}  // namespace ketra::test
