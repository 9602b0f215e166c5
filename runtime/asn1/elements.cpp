#include <algorithm>

#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/encoder.h"

namespace ketra::asn1 {

void failFound(Call call, const AsnType *type, bool isRight) {
  if (isRight) {
    call.fail(AsnError_Absent, Text() << nameOf(type) << " is absent");
  } else {
    call.fail(AsnError_Kind, Text() << nameOf(type) << " is of another type than the operation reads");
  }
}

bool hasDerLength(Call call, const Node *element) {
  if (element->encoding == nullptr || element->derLength) return true;
  call.fail(AsnError_NotDer, Text() << nameOf(element->record) << " is not in DER form");
  return false;
}

namespace {

AsnOct requireDer(Call call, const Node *element, const AsnOct &encoding) {
  Fault fault;
  switch (checkLengths(encoding.octets, encoding.length, fault)) {
    case Lengths::Der: return encoding;
    case Lengths::Other:
      call.fail(AsnError_NotDer, Text() << nameOf(element->record) << " has lengths that are not DER");
      return {};
    default: call.fail(fault.code, Text() << fault.text.c_str() << " (" << nameOf(element->record) << ")"); return {};
  }
}

}  // namespace

AsnOct encodingOf(Call call, Arena &arena, const Node *element, bool der) {
  AsnOct encoding{};
  if (kindOf(element->record) == Kind::Open) {
    encoding = {element->content, element->length};
  } else if (element->encoding != nullptr) {
    encoding = {element->encoding, element->encodingLength};
  } else {
    return encode(call, arena, element, der ? Rules::Der : Rules::Ber);
  }
  return der ? requireDer(call, element, encoding) : encoding;
}

}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnMakeElement(AsnObject object, AsnValue value, const char *path, AsnValue *element, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, element)) return -1;
  Node *made = makeElement(call, object->arena, value, path, nullptr);
  if (made == nullptr) return -1;
  *element = made;
  return 0;
}

int32_t AsnGetElement(AsnObject object, AsnValue value, const char *path, AsnValue *element, AsnErrorBlock *err) {
  const Call call{__func__, err};
  const Found found = find(call, object, value, path, element);
  if (!found) return -1;
  *element = found.element;
  return 0;
}

int32_t AsnCalCountOfSequence(AsnObject object, AsnValue value, const char *path, uint32_t *count, AsnErrorBlock *err) {
  const Call call{__func__, err};
  const Found found = find(call, object, value, path, count);
  if (!found) return -1;
  const auto [list, type] = found;
  if (!isList(kindOf(type))) return call.fail(AsnError_Kind, Text() << nameOf(type) << " is no list");
  if (list == nullptr) return call.fail(AsnError_Absent, Text() << nameOf(type) << " is absent");
  *count = list->length;
  return 0;
}

int32_t AsnCalNumberOfChoice(AsnObject object, AsnValue value, const char *path, uint32_t *number, AsnErrorBlock *err) {
  const Call call{__func__, err};
  const Found found = find(call, object, value, path, number);
  if (!found) return -1;
  const auto [choice, type] = found;
  if (kindOf(type) != Kind::Choice) return call.fail(AsnError_Kind, Text() << nameOf(type) << " is no CHOICE");
  if (choice == nullptr || choice->chosen == nullptr) {
    return call.fail(AsnError_Absent, Text() << nameOf(type) << " has no alternative");
  }
  *number = static_cast<uint32_t>(choice->chosen->record - definitionOf(type));
  return 0;
}

int32_t AsnCalAddressOfValFld(AsnObject object, AsnValue value, const char *path, const uint8_t **address,
                              uint32_t *length, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, address)) return -1;
  const Found found = find(call, object, value, path, length);
  if (!found) return -1;
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
  const Call call{__func__, err};
  const Found found = find(call, object, value, path, length);
  if (!found) return -1;
  const Node *element = found.element;
  if (element == nullptr) {
    *length = ASN_ABSENT_LENGTH;
    return 0;
  }
  const AsnOct encoding = encodingOf(call, object->arena, element, false);
  if (encoding.octets == nullptr) return -1;
  *length = encoding.length;
  if (element->encoding != nullptr || !hasChildren(kindOf(element->record))) return 0;
  // A built value may need more in DER: the end of an indefinite form is two octets, a length up to five.
  const AsnOct der = encode({call.function, nullptr}, object->arena, element, Rules::Der);
  if (der.octets != nullptr) *length = std::max(*length, der.length);
  return 0;
}
