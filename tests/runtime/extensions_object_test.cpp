#include <algorithm>
#include <random>

#include "support/support.h"

namespace ketra::test {
namespace {

// Extensions { basicConstraints critical, keyUsage with an explicit critical FALSE, subjectKeyIdentifier in segments }
constexpr char kEncoding[] =
    "30 80 30 0C 06 03 55 1D 13 01 01 01 04 02 30 00 30 0E 06 03 55 1D 0F 01 01 00 04 04 03 02 01 06"
    "30 80 06 03 55 1D 0E 24 80 04 01 04 04 02 01 AA 00 00 00 00 00 00";

std::string list(KetraObject object) {
  uint32_t count = 0;
  EXPECT_EQ(KetraObjectCalExt(object, &count, nullptr), 0);
  std::string text;
  for (uint32_t i = 0; i < count; ++i) {
    const KetraExtension *extension = nullptr;
    EXPECT_EQ(KetraObjectGetExtpByIndex(object, i, &extension, nullptr), 0);
    text += std::to_string(extension->objid.arcs[extension->objid.count - 1]) + " {" +
            std::to_string(extension->critical) + "," + std::to_string(extension->criticalOption) + "} " +
            toHex(extension->value) + "; ";
  }
  return text;
}

TEST(ExtensionsObject, WholeEncodings) {
  Extensions extensions;
  ASSERT_EQ(extensions.set(fromHex(kEncoding)), 0);
  const auto before = usage(extensions.pool());
  const uint32_t subjectKeyId[] = {2, 5, 29, 14};
  extensions.store({subjectKeyId, 4}, fromHex("04 01 AA"));
  EXPECT_EQ(usage(extensions.pool()), before) << "the joined octets of the value that was replaced are freed";
  EXPECT_EQ(list(extensions), "19 {1,1} 30 00; 15 {0,1} 03 02 01 06; 14 {0,0} 04 01 AA; ");
  const AsnEncodedData written = extensions.encoding();
  EXPECT_EQ(toHex(written),
            "30 27 30 0C 06 03 55 1D 13 01 01 FF 04 02 30 00 30 0B 06 03 55 1D 0F 04 04 03 02 01 06 30 0A 06 03 55 1D "
            "0E 04 03 04 01 AA");
  ASSERT_EQ(refusal(KetraObjectSetPduBER, extensions, &written), "") << "from the object's own encoding";
  EXPECT_EQ(list(extensions), "19 {1,1} 30 00; 15 {0,0} 03 02 01 06; 14 {0,0} 04 01 AA; ");
}

// Stores, deletions and look-ups in any order, against a plain list.
TEST(ExtensionsObject, RandomUse) {
  Extensions object;
  std::mt19937 random(1);
  std::vector<uint32_t> model;
  for (int step = 0; step < 20000; ++step) {
    const uint32_t arcs[4] = {1, 3, 6, static_cast<uint32_t>(random() % 100)};
    const Objid objid{arcs, 4};
    const auto place = std::find(model.begin(), model.end(), arcs[3]);
    ASSERT_EQ(object.stored(objid), place == model.end() ? "absent" : toHex({static_cast<uint8_t>(arcs[3])}));
    if (random() % 2 == 0) {
      if (place == model.end()) {
        object.store(objid, {static_cast<uint8_t>(arcs[3])});
        model.push_back(arcs[3]);
      } else {
        ASSERT_EQ(KetraObjectSetExt(object, object.find(objid), nullptr), 0) << "the object's own record";
      }
    } else if (place != model.end()) {
      ASSERT_EQ(KetraObjectDeleteExt(object, &objid, nullptr), 0);
      model.erase(place);
    }
    if (model.empty()) continue;
    const auto position = static_cast<uint32_t>(random() % model.size());
    const KetraExtension *extension = nullptr;
    ASSERT_EQ(KetraObjectGetExtpByIndex(object, position, &extension, nullptr), 0);
    ASSERT_EQ(extension->objid.arcs[3], model[position]);
  }
}

// Identifiers with an arc beyond 32 bits: so many that the object has an index, and others after them.
TEST(ExtensionsObject, IdentifiersWithoutArcs) {
  constexpr uint8_t kMany = 40;
  Octets octets = fromHex("30 82 02 12");
  const auto append = [&](const std::string &hex) {
    const Octets member = fromHex(hex);
    octets.insert(octets.end(), member.begin(), member.end());
  };
  for (uint8_t i = 0; i < kMany; ++i) append("30 0B 06 06 69 90 80 80 80 " + toHex({i}) + " 04 01 " + toHex({i}));
  append("30 08 06 03 55 1D 0F 04 01 AA");
  Extensions extensions;
  ASSERT_EQ(extensions.set(octets), 0);
  const std::string before = extensions.pdu();
  EXPECT_EQ(before, toHex(octets));
  uint32_t count = 0;
  EXPECT_EQ(KetraObjectCalExt(extensions, &count, nullptr), 0);
  EXPECT_EQ(count, kMany + 1u);
  for (uint8_t i = 0; i < kMany; ++i) {
    const KetraExtension *extension = nullptr;
    ASSERT_EQ(KetraObjectGetExtpByIndex(extensions, i, &extension, nullptr), 0);
    EXPECT_EQ(extension->objid.count, 0u);
    EXPECT_EQ(toHex(extension->value), toHex({i}));
    EXPECT_EQ(codeOf(KetraObjectSetExt, extensions, extension), uint32_t{AsnCheckError_Objid});
  }
  EXPECT_EQ(extensions.find({nullptr, 0}), nullptr);
  const uint32_t keyUsage[] = {2, 5, 29, 15};
  EXPECT_EQ(extensions.stored({keyUsage, 4}), "AA");
  const uint32_t arcs[] = {2, 25, 0};
  const Objid added{arcs, 3};
  extensions.store(added, {0xBB});
  EXPECT_EQ(KetraObjectDeleteExt(extensions, &added, nullptr), 0);
  EXPECT_EQ(extensions.pdu(), before);
}

// Replacing a value again and again does not let the pool grow.
TEST(ExtensionsObject, ManyExtensionsAndManyStores) {
  Extensions object;
  uint32_t arcs[4] = {1, 3, 6, 0};
  const Octets value(50, 0xAB);
  constexpr uint32_t kMany = 20000;
  for (arcs[3] = 0; arcs[3] < kMany; ++arcs[3]) object.store({arcs, 4}, value);
  for (arcs[3] = 0; arcs[3] < kMany; ++arcs[3]) ASSERT_NE(object.stored({arcs, 4}), "absent") << arcs[3];
  EXPECT_EQ(object.stored({arcs, 4}), "absent");
  const auto before = usage(object.pool());
  arcs[3] = 7;
  for (int i = 0; i < 1000; ++i) object.store({arcs, 4}, value);
  EXPECT_EQ(usage(object.pool()), before);
}

TEST(ExtensionsObject, NullsAreErrors) {
  const Extensions object;
  AsnEncodedData encoding{};
  EXPECT_EQ(codeOf(KetraObjectDestroy, nullptr), 0u);
  for (const KetraObject handle : {KetraObject{object}, KetraObject{}}) {
    refuseNulls(KetraObjectError_NullParameter, handle, KetraObjectSetExt, KetraObjectSearchExtpByObjid,
                KetraObjectDeleteExt, KetraObjectSetPduBER, KetraObjectGetPduDER, KetraObjectCalExt,
                KetraObjectGetExtpByIndex, KetraObjectGetMemObject);
  }
  EXPECT_EQ(codeOf(KetraObjectGetPduDER, object, &encoding), uint32_t{KetraObjectError_Empty});
}

}  // namespace
}  // namespace ketra::test
