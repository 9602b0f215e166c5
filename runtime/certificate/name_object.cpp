// The Name object: one distinguished name, kept in DER.

#include "runtime/certificate/name_object.h"

#include <new>

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/ketra_runtime.h"
#include "runtime/asn1/access.h"
#include "runtime/asn1/encoder.h"
#include "runtime/asn1/pool.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

constexpr std::size_t kPoolSize = 384;  // an object with a name of some 200 octets asks the system once

constexpr schema::Row kRows[] = {
    // clang-format off
    schema::SequenceOf("Name"),
        schema::Element("RelativeDistinguishedName"),
    schema::SetOf("RelativeDistinguishedName"),
        schema::Element("AttributeTypeAndValue"),
    schema::Sequence("AttributeTypeAndValue"),
        schema::Component("type", schema::ObjectIdentifier),
        schema::Component("value", schema::OpenType),
    // clang-format on
};
constexpr auto kName = schema::compile(kRows);

int32_t failNull(Call call) {
  return call.fail(X509NameError_NullParameter, "no name, structure or place for the result");
}

// ---- Making one ----------------------------------------------------------------------------------------------------

int32_t create(Call call, X509NameObject *name) {
  AsnMemObject pool = nullptr;
  if (asn1::createPool(kPoolSize, &pool, call) != 0) return -1;
  void *memory = asn1::allocate(pool, sizeof(X509NameObjectRecord), call.err);
  if (memory == nullptr) {
    AsnMemObjectDestroy(pool, nullptr);
    return -1;
  }
  *name = new (memory) X509NameObjectRecord{pool, {}};
  return 0;
}

// ---- From an encoding ----------------------------------------------------------------------------------------------

// Reads a name in BER; its relative distinguished names in DER lie in the arena.
int32_t readName(Call call, AsnObject work, const AsnEncodedData &encoding, AsnOct *rdns) {
  AsnValue value = nullptr;
  uint32_t scratch = 0;
  if (AsnOpenFromMem(work, kName.data(), &encoding, &value, call.err) != 0 ||
      AsnDecode(work, value, 0, &scratch, call.err) != 0) {
    return -1;
  }
  for (uint32_t i = 0; i < value->length; ++i) {
    if (value->children[i]->length > 0) continue;
    return call.fail(X509NameError_Empty, Text() << "relative distinguished name " << i + 1 << " has no attribute");
  }
  const AsnOct der = asn1::encode(call, work->arena, value, asn1::Rules::Der);
  if (der.octets == nullptr) return -1;
  Encoding whole{};
  Walk(der).next(&whole);
  *rdns = whole.content;
  return 0;
}

int32_t setName(Call call, X509NameObject name, const AsnEncodedData &encoding) {
  return asn1::withWorkObject(call, [&](AsnObject work) {
    AsnOct rdns{};
    return readName(call, work, encoding, &rdns) == 0 ? name->rdns.store(call, name->pool, 0, rdns) : -1;
  });
}

// ---- In elements ---------------------------------------------------------------------------------------------------

int32_t getName(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path, X509NameObject *name,
                bool der) {
  if (pool == nullptr || object == nullptr || name == nullptr) return failNull(call);
  const asn1::Found found = asn1::findScalar(call, value, path, asn1::Need::Mandatory, asn1::isOpen);
  if (!found) return -1;
  const AsnOct encoding = asn1::encodingOf(call, object->arena, found.element, der);
  if (encoding.octets == nullptr) return -1;
  X509NameObject made = nullptr;
  if (create(call, &made) != 0) return -1;
  if (setName(call, made, {encoding.octets, encoding.length}) != 0) {
    AsnMemObjectDestroy(made->pool, nullptr);
    return -1;
  }
  *name = made;
  return 0;
}

using SetEncoded = int32_t(AsnObject, AsnValue, const char *, const AsnEncodedData *, AsnErrorBlock *);

int32_t setElement(Call call, AsnObject object, AsnValue value, const char *path, X509NameObject name,
                   SetEncoded *setEncoded) {
  if (name == nullptr) return failNull(call);
  const AsnEncodedData encoding = name->rdns.encoding();
  return setEncoded(object, value, path, &encoding, call.err);
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509NameObjectCreate(X509NameObject *name, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return name == nullptr ? failNull(call) : create(call, name);
}

int32_t X509NameObjectDestroy(X509NameObject name, AsnErrorBlock *err) {
  return name == nullptr ? 0 : AsnMemObjectDestroy(name->pool, err);
}

int32_t X509NameObjectSetPduBER(X509NameObject name, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (name == nullptr || encoding == nullptr) return failNull(call);
  return setName(call, name, *encoding);
}

int32_t X509NameObjectGetPduDER(X509NameObject name, AsnEncodedData *encoding, AsnErrorBlock *err) {
  if (name == nullptr || encoding == nullptr) return failNull({__func__, err});
  *encoding = name->rdns.encoding();
  return 0;
}

int32_t X509MUtilCopyNameObject(X509NameObject *name, X509NameObject source, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (name == nullptr || source == nullptr) return failNull(call);
  X509NameObject made = nullptr;
  if (create(call, &made) != 0) return -1;
  if (made->rdns.store(call, made->pool, 0, source->rdns.members()) != 0) {
    AsnMemObjectDestroy(made->pool, nullptr);
    return -1;
  }
  *name = made;
  return 0;
}

int32_t X509MUtilSetNameObjectDER(AsnObject object, AsnValue value, const char *path, X509NameObject name,
                                  AsnErrorBlock *err) {
  return setElement({__func__, err}, object, value, path, name, AsnSetEncodedDataDER);
}

int32_t X509MUtilSetNameObjectBER(AsnObject object, AsnValue value, const char *path, X509NameObject name,
                                  AsnErrorBlock *err) {
  return setElement({__func__, err}, object, value, path, name, AsnSetEncodedDataBER);
}

int32_t X509MUtilGetNameObjectDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                  X509NameObject *name, AsnErrorBlock *err) {
  return getName({__func__, err}, pool, object, value, path, name, true);
}

int32_t X509MUtilGetNameObjectBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                  X509NameObject *name, AsnErrorBlock *err) {
  return getName({__func__, err}, pool, object, value, path, name, false);
}
