// Building names: relative distinguished names of text.

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/ketra_runtime.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/encoder.h"
#include "runtime/asn1/work_object.h"
#include "runtime/certificate/attribute_types.h"
#include "runtime/certificate/name_object.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

constexpr schema::Row kRows[] = {
    // clang-format off
    schema::SetOf("RelativeDistinguishedName"),
        schema::Element("AttributeTypeAndValue"),
    schema::Sequence("AttributeTypeAndValue"),
        schema::Component("type", schema::ObjectIdentifier),
        schema::Component("value", "AttributeValue"),
    schema::Choice("AttributeValue"),
        schema::Component("teletexString", "TeletexString"),
        schema::Component("printableString", "PrintableString"),
        schema::Component("bmpString", "BMPString"),
        schema::Component("universalString", "UniversalString"),
        schema::Component("uTF8String", "UTF8String"),
        schema::Component("ia5String", "IA5String"),
    schema::Type("TeletexString", schema::Octets(20)),
    schema::Type("PrintableString", schema::Octets(19)),
    schema::Type("BMPString", schema::Octets(30)),
    schema::Type("UniversalString", schema::Octets(28)),
    schema::Type("UTF8String", schema::Octets(12)),
    schema::Type("IA5String", schema::Octets(22)),
    // clang-format on
};
constexpr auto kRdn = schema::compile(kRows);

bool isIa5Type(const Objid &type) {
  uint8_t octets[sizeof(AttributeType::octets)];
  const uint64_t length = asn1::measureArcs(type);
  if (length > sizeof octets) return false;
  asn1::writeArcs(type, octets);
  const AttributeType *known = findAttributeType(octets, static_cast<uint32_t>(length));
  return known != nullptr && known->isIa5;
}

bool fitsIa5(const X509DirStr &value) {
  return (value.choice == X509DirStr_PrintableString || value.choice == X509DirStr_Utf8String) &&
         isAscii(value.octets, value.length);
}

int32_t checkAttribute(Call call, const X509NameAttribute &attribute, uint32_t number) {
  const X509DirStr &value = attribute.value;
  const Text what = Text() << "attribute " << number;
  uint32_t count = 0;
  if (AsnCheckObjidBER(&attribute.type, call.err) != 0 || !hasShape(call, &value, what.c_str()) ||
      !countCharacters(call, value, what.c_str(), &count)) {
    return -1;
  }
  if (count == 0) return call.fail(X509DirStrError_Length, Text() << what.c_str() << " has no characters");
  if (value.choice == X509DirStr_PrintableString && !isPrintable(value.octets, value.length)) {
    return call.fail(X509DirStrError_Characters, Text() << what.c_str() << " has characters beyond PrintableString",
                     {value.octets, value.length});
  }
  if (!isIa5Type(attribute.type) || fitsIa5(value)) return 0;
  return call.fail(X509NameError_Attribute,
                   Text() << what.c_str() << " is an IA5String: ASCII, given as PrintableString or UTF8String",
                   {value.octets, value.length});
}

int32_t writeAttribute(Call call, AsnObject work, AsnValue rdn, const X509NameAttribute &attribute) {
  const AsnOct octets{attribute.value.octets, attribute.value.length};
  const char *alternative = isIa5Type(attribute.type) ? "ia5String" : componentOf(attribute.value.choice);
  AsnValue member = asn1::appendMember(work->arena, rdn);
  AsnValue text = nullptr;
  if (member == nullptr) return call.fail(X509NameError_OutOfMemory, "the system has no memory for an attribute");
  if (AsnSetObjidDER(work, member, "type", &attribute.type, call.err) != 0 ||
      AsnMakeElement(work, member, "value", &text, call.err) != 0) {
    return -1;
  }
  return AsnSetOctDER(work, text, alternative, &octets, call.err);
}

int32_t appendRdn(Call call, AsnObject work, X509NameObject name, const X509NameAttribute *attributes, uint32_t count) {
  AsnValue rdn = nullptr;
  if (AsnOpenNew(work, kRdn.data(), &rdn, call.err) != 0) return -1;
  for (uint32_t i = 0; i < count; ++i) {
    if (checkAttribute(call, attributes[i], i + 1) != 0 || writeAttribute(call, work, rdn, attributes[i]) != 0) {
      return -1;
    }
  }
  const AsnOct der = asn1::encode(call, work->arena, rdn, asn1::Rules::Der);
  if (der.octets == nullptr) return -1;
  return name->rdns.store(call, name->pool, name->rdns.members().length, der);
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509NameObjectAppendRdn(X509NameObject name, const X509NameAttribute *attributes, uint32_t count,
                                AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (name == nullptr || (attributes == nullptr && count > 0)) {
    return call.fail(X509NameError_NullParameter, "no name or attributes");
  }
  if (count == 0) return call.fail(X509NameError_Empty, "a relative distinguished name of no attributes");
  return ketra::asn1::withWorkObject(call,
                                     [&](AsnObject work) { return appendRdn(call, work, name, attributes, count); });
}
