#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/encoder.h"

namespace ketra::asn1 {

bool hasDerLength(const Call &call, const Node *element) {
  if (element->encoding == nullptr || element->derLength) return true;
  call.fail(AsnError_NotDer, Text() << nameOf(element->record) << " is not in DER form");
  return false;
}

bool encodingOf(const Call &call, Arena &arena, const Node *element, bool der, const uint8_t **octets,
                uint32_t *length) {
  if (kindOf(element->record) == Kind::Open) {
    *octets = element->content;
    *length = element->length;
  } else if (element->encoding != nullptr) {
    *octets = element->encoding;
    *length = element->encodingLength;
  } else {
    return encode(call, arena, element, der ? Rules::Der : Rules::Ber, octets, length);
  }
  if (!der) return true;
  Fault fault;
  switch (checkLengths(*octets, *length, fault)) {
    case Lengths::Der: return true;
    case Lengths::Other:
      call.fail(AsnError_NotDer, Text() << nameOf(element->record) << " has lengths that are not DER");
      return false;
    default:
      call.fail(fault.code, Text() << fault.text.c_str() << " (" << nameOf(element->record) << ")");
      return false;
  }
}

}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnMakeElement(AsnObject object, AsnValue value, const char *path, AsnValue *element, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (!isGiven(call, object, element)) return -1;
  Node *made = makeElement(call, object->arena, value, path, nullptr);
  if (made == nullptr) return -1;
  *element = made;
  return 0;
}

int32_t AsnGetElement(AsnObject object, AsnValue value, const char *path, AsnValue *element, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  Found found;
  if (!find(call, object, value, path, element, &found)) return -1;
  *element = found.element;
  return 0;
}

int32_t AsnCalCountOfSequence(AsnObject object, AsnValue value, const char *path, uint32_t *count, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  Found found;
  if (!find(call, object, value, path, count, &found)) return -1;
  const auto [list, type] = found;
  if (!isList(kindOf(type))) return call.fail(AsnError_Kind, Text() << nameOf(type) << " is no list");
  if (list == nullptr) return call.fail(AsnError_Absent, Text() << nameOf(type) << " is absent");
  *count = list->length;
  return 0;
}

int32_t AsnCalNumberOfChoice(AsnObject object, AsnValue value, const char *path, uint32_t *number, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  Found found;
  if (!find(call, object, value, path, number, &found)) return -1;
  const auto [choice, type] = found;
  if (kindOf(type) != Kind::Choice) return call.fail(AsnError_Kind, Text() << nameOf(type) << " is no CHOICE");
  if (choice == nullptr || choice->children[0] == nullptr) {
    return call.fail(AsnError_Absent, Text() << nameOf(type) << " has no alternative");
  }
  *number = static_cast<uint32_t>(choice->children[0]->record - definitionOf(type));
  return 0;
}

int32_t AsnCalAddressOfValFld(AsnObject object, AsnValue value, const char *path, const uint8_t **address,
                              uint32_t *length, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  Found found;
  if (!isGiven(call, object, address) || !find(call, object, value, path, length, &found)) return -1;
  const auto [element, type] = found;
  if (element == nullptr) {
    *address = nullptr;
    *length = ASN_ABSENT_LENGTH;
    return 0;
  }
  if (!hasChildren(kindOf(type))) {
    if (!element->inPlace) {
      return call.fail(AsnError_Kind, Text() << "the value of " << nameOf(type) << " has no place in the encoding");
    }
    *address = element->content;
    *length = element->length;
    return 0;
  }
  if (element->encoding == nullptr) {
    return call.fail(AsnError_State, Text() << nameOf(type) << " was not decoded: it has no encoding yet");
  }
  Fault fault;
  Header header{};  // cannot fail: the decoder has read it
  readHeader(element->encoding, element->encoding + element->encodingLength, header, fault);
  *address = element->encoding + header.size;
  *length = header.indefinite ? element->encodingLength - header.size - 2 : header.length;
  return 0;
}

int32_t AsnCalLengthOfValFld(AsnObject object, AsnValue value, const char *path, uint32_t *length, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  Found found;
  if (!find(call, object, value, path, length, &found)) return -1;
  const Node *element = found.element;
  if (element == nullptr) {
    *length = ASN_ABSENT_LENGTH;
    return 0;
  }
  const uint8_t *octets = nullptr;
  return encodingOf(call, object->arena, element, false, &octets, length) ? 0 : -1;
}
