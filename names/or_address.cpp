#include "names/or_address.h"

#include "core/member_path.h"
#include "core/operation.h"

namespace ketra {
namespace {

// One of the two optional lists.
struct AttributeList {
  const char *path;
  const char *membersPath;
  X509ORAttribute *X509ORAddress::*chain;
  int32_t X509ORAddress::*option;
  Literal name;
  Literal setMessage;
  uint32_t setEmpty;
  uint32_t getEmpty;
};

constexpr AttributeList kLists[] = {
    {
        .path = "domainDefinedAttributes",
        .membersPath = "domainDefinedAttributes/",
        .chain = &X509ORAddress::domainDefinedAttributes,
        .option = &X509ORAddress::domainDefinedAttributesOption,
        .name = "domainDefinedAttributes",
        .setMessage = "Call AsnSetAnyXER(domainDefinedAttributes)",
        .setEmpty = KetraError_SetORAddressDomain,
        .getEmpty = KetraError_GetORAddressDomain,
    },
    {
        .path = "extensionAttributes",
        .membersPath = "extensionAttributes/",
        .chain = &X509ORAddress::extensionAttributes,
        .option = &X509ORAddress::extensionAttributesOption,
        .name = "extensionAttributes",
        .setMessage = "Call AsnSetAnyXER(extensionAttributes)",
        .setEmpty = KetraError_SetORAddressExtension,
        .getEmpty = KetraError_GetORAddressExtension,
    },
};

// Where the encoding at the path lies.
int32_t locate(const Operation &op, AsnObject work, AsnValue value, const char *path, Literal name,
               AsnEncodedData *encoding) {
  const int32_t result = AsnCalAddressOfValFld(work, value, path, &encoding->octets, &encoding->length, op.err());
  if (op.failed(result, "Call AsnCalAddressOfValFld")) return -1;
  if (encoding->length == ASN_ABSENT_LENGTH) return op.reject(KetraError_ORAddressPartAbsent, name);
  if (encoding->length == 0) return op.reject(KetraError_ORAddressPartEmpty, name);
  return 0;
}

int32_t readMembers(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t count, Literal name,
                    X509ORAttribute **chain) {
  for (uint32_t number = 1; number <= count; ++number) {
    void *memory = nullptr;
    if (op.failed(AsnMemObjectMalloc(pool, sizeof(X509ORAttribute), &memory, op.err()), "Call AsnMemObjectMalloc")) {
      return -1;
    }
    auto *node = static_cast<X509ORAttribute *>(memory);
    *node = {nullptr, {nullptr, 0}};
    *chain = node;
    chain = &node->next;
    if (locate(op, work, list, MemberPath(number), name, &node->attribute) != 0) return -1;
  }
  return 0;
}

int32_t readList(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue element, const AttributeList &row,
                 X509ORAddress *address) {
  AsnValue list = nullptr;
  if (op.failed(AsnGetElement(work, element, row.path, &list, op.err()), "Call AsnGetElement")) return -1;
  address->*row.option = list != nullptr ? 1 : 0;
  if (list == nullptr) return 0;
  uint32_t count = 0;
  if (op.failed(AsnCalCountOfSequence(work, list, nullptr, &count, op.err()), "Call AsnCalCountOfSequence")) return -1;
  if (count == 0) return op.reject(row.getEmpty, "Count of SequenceOf is invalid");
  return readMembers(op, pool, work, list, count, row.name, &(address->*row.chain));
}

int32_t setEncoded(bool ber, AsnObject work, AsnValue element, const char *path, const AsnEncodedData &encoding,
                   AsnErrorBlock *err) {
  return (ber ? AsnSetEncodedDataBER : AsnSetEncodedDataDER)(work, element, path, &encoding, err);
}

int32_t writeList(const Operation &op, bool ber, AsnObject work, AsnValue element, const AttributeList &row,
                  const X509ORAddress &address) {
  if (address.*row.option != 1) return 0;
  uint32_t number = 0;
  for (const X509ORAttribute *node = address.*row.chain; node != nullptr; node = node->next) {
    const MemberPath path(row.membersPath, ++number);
    if (op.failed(setEncoded(ber, work, element, path, node->attribute, op.err()), row.setMessage)) return -1;
  }
  return number == 0 ? op.reject(row.setEmpty, "Count of SequenceOf is invalid") : 0;
}

}  // namespace

int32_t x509MUtilSgetORAddress(bool, AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                               X509ORAddress *address, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, value, path, &element, err), "Call AsnGetElement")) return -1;
  if (element == nullptr) return op.reject(KetraError_ORAddressAbsent, "Call AsnGetElement");
  if (locate(op, work, element, "standardAttributes", "standardAttributes", &address->standardAttributes) != 0) {
    return -1;
  }
  for (const AttributeList &row : kLists) {
    if (readList(op, pool, work, element, row, address) != 0) return -1;
  }
  return 0;
}

int32_t x509MUtilSetORAddress(bool ber, AsnObject work, AsnValue value, const char *path, const X509ORAddress *address,
                              AsnErrorBlock *err) {
  const Operation op(__func__, err);
  AsnValue element = nullptr;
  if (op.failed(AsnMakeElement(work, value, path, &element, err), "Call AsnMakeElement")) return -1;
  if (op.failed(setEncoded(ber, work, element, "standardAttributes", address->standardAttributes, err),
                "Call AsnSetAnyXER(standardAttributes)")) {
    return -1;
  }
  for (const AttributeList &row : kLists) {
    if (writeList(op, ber, work, element, row, *address) != 0) return -1;
  }
  return 0;
}

}  // namespace ketra
