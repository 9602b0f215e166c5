// DistributionPointName ::= CHOICE {                            RFC 5280 4.2.1.13
//     fullName                 [0] GeneralNames,
//     nameRelativeToCRLIssuer  [1] RelativeDistinguishedName }
// RelativeDistinguishedName ::= SET OF SEQUENCE { type OBJECT IDENTIFIER, value ANY }
//
// A failure releases nothing: the work value belongs to the caller.

#include "core/member_path.h"
#include "core/operation.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr char kFullName[] = "fullName";
constexpr char kRelativeName[] = "nameRelativeToCRLIssuer";

int32_t setRelativeName(const Operation &op, AsnObject work, AsnValue element, const X509AttributeTypeAndValue *chain) {
  uint32_t number = 0;
  for (const X509AttributeTypeAndValue *node = chain; node != nullptr; node = node->next) {
    AsnValue attribute = nullptr;
    const MemberPath path("nameRelativeToCRLIssuer/", ++number);
    if (op.failed(AsnMakeElement(work, element, path, &attribute, op.err()),
                  "Call AsnMakeElement(nameRelativeToCRLIssuer)")) {
      return -1;
    }
    if (op.failed(AsnSetObjidDER(work, attribute, "type", &node->type, op.err()), "Call AsnSetObjidDER")) return -1;
    const int32_t set = AsnSetEncodedDataDER(work, attribute, "value", &node->value, op.err());
    if (op.failed(set, "Call AsnSetAnyDER")) return -1;
  }
  return 0;
}

int32_t getAttribute(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t number,
                     X509AttributeTypeAndValue *node) {
  const Operation opOfMember("X509MUtilSgetDistributionPointName(nameRelativeToCRLIssuer/No)", op.err());
  AsnValue attribute = nullptr;
  if (opOfMember.failed(AsnGetElement(work, list, MemberPath(number), &attribute, op.err()), "Call AsnGetElement")) {
    return -1;
  }
  const int32_t got = AsnMUtilGetObjidConstBER(pool, work, attribute, "type", &node->type, op.err());
  if (op.failed(got, "Call AsnMUtilGetObjidConstBER")) return -1;
  AsnEncodedData &value = node->value;
  const int32_t found = AsnCalAddressOfValFld(work, attribute, "value", &value.octets, &value.length, op.err());
  if (op.failed(found, "Call AsnCalAddressOfValFld")) return -1;
  if (value.length == ASN_ABSENT_LENGTH) return op.reject(KetraError_RelativeNameValueAbsent, "value");
  if (value.length == 0) return op.reject(KetraError_RelativeNameValueEmpty, "value");
  return 0;
}

int32_t getRelativeName(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue element,
                        X509AttributeTypeAndValue *chain) {
  AsnValue list = nullptr;
  uint32_t count = 0;
  if (op.failed(AsnGetElement(work, element, kRelativeName, &list, op.err()),
                "Call AsnGetElement(nameRelativeToCRLIssuer)")) {
    return -1;
  }
  if (op.failed(AsnCalCountOfSequence(work, list, nullptr, &count, op.err()), "Call AsnCalCountOfSequence")) return -1;
  if (count == 0) return op.reject(KetraError_RelativeNameEmpty, "Count of SequenceOf = 0");
  for (uint32_t i = 0; i < count; ++i, chain = chain->next) {
    if (chain == nullptr) return op.reject(KetraError_RelativeNameChainShort, "Chain of DistributionPointName ");
    if (getAttribute(op, pool, work, list, i + 1, chain) != 0) return -1;
  }
  return 0;
}

int32_t checkRelativeName(const Operation &op, const X509AttributeTypeAndValue *chain) {
  if (chain == nullptr) return op.reject(KetraError_CheckRelativeNameEmpty, "AttributeTypeAndValue Count = 0");
  for (const X509AttributeTypeAndValue *node = chain; node != nullptr; node = node->next) {
    if (op.failed(AsnCheckObjidBER(&node->type, op.err()), "Call AsnCheckObjidBER")) return -1;
    if (op.failed(AsnCheckEncodedDataBER(&node->value, op.err()), "Call AsnCheckAnydBER")) return -1;
  }
  return 0;
}

}  // namespace

int32_t X509MUtilSetDistributionPointName(AsnObject work, AsnValue parent, const char *path,
                                          const X509DistributionPointName *name, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(work, parent, name)) return -1;
  AsnValue element = nullptr;
  if (op.failed(AsnMakeElement(work, parent, path, &element, err), "Call AsnMakeElement(/)")) return -1;
  switch (name->type) {
    case X509DistributionPointName_FullName: {
      const int32_t set = X509MUtilSetGenNamesDER(work, element, kFullName, name->fullName, err);
      return op.failed(set, "Call X509MUtilSetGenNamesDER") ? set : 0;
    }
    case X509DistributionPointName_NameRelativeToCRLIssuer:
      return setRelativeName(op, work, element, name->nameRelativeToCRLIssuer);
    default: return op.reject(KetraError_SetDistributionPointNameType, "type", name->type);
  }
}

int32_t X509MUtilSgetDistributionPointName(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                           X509DistributionPointName *name, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(pool, work, parent, name)) return -1;
  AsnValue element = nullptr;
  uint32_t choice = 0;
  if (op.failed(AsnGetElement(work, parent, path, &element, err), "Call AsnGetElement(/)")) return -1;
  if (element == nullptr) {
    return op.reject(KetraError_DistributionPointNameAbsent, "Not Exist DistributionPointName");
  }
  if (op.failed(AsnCalNumberOfChoice(work, element, nullptr, &choice, err), "Call AsnCalNumberOfChoice")) return -1;
  switch (choice) {
    case X509DistributionPointName_FullName: {
      name->type = X509DistributionPointName_FullName;
      const int32_t got = X509MUtilSgetGenNamesBER(pool, work, element, kFullName, name->fullName, err);
      return op.failed(got, "Call X509MUtilSgetGenNamesBER") ? got : 0;
    }
    case X509DistributionPointName_NameRelativeToCRLIssuer:
      name->type = X509DistributionPointName_NameRelativeToCRLIssuer;
      return getRelativeName(op, pool, work, element, name->nameRelativeToCRLIssuer);
    default: return op.reject(KetraError_GetDistributionPointNameChoice, "choiceNo", choice);
  }
}

int32_t X509MUtilSgetDistributionPointNameOpt(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                              X509DistributionPointNameOpt *name, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(pool, work, parent, name)) return -1;
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, parent, path, &element, err), "Call AsnGetElement")) return -1;
  name->option = element != nullptr ? 1 : 0;
  if (element == nullptr) return 0;
  const int32_t got = X509MUtilSgetDistributionPointName(pool, work, element, nullptr, &name->value, err);
  return op.failed(got, "Call X509MUtilSgetDistributionPointName") ? got : 0;
}

int32_t X509MUtilCheckDistributionPointName(const X509DistributionPointName *name, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(name)) return -1;
  switch (name->type) {
    case X509DistributionPointName_FullName:
      return op.failed(X509MUtilCheckGenNames(name->fullName, err), "Call X509MUtilCheckGenNames") ? -1 : 0;
    case X509DistributionPointName_NameRelativeToCRLIssuer: return checkRelativeName(op, name->nameRelativeToCRLIssuer);
    default: return op.reject(KetraError_CheckDistributionPointNameType, "type", name->type);
  }
}

int32_t X509MUtilCheckDistributionPointNameOpt(const X509DistributionPointNameOpt *name, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(name)) return -1;
  switch (name->option) {
    case 0: return 0;
    case 1: {
      const int32_t checked = X509MUtilCheckDistributionPointName(&name->value, err);
      return op.failed(checked, "Call X509MUtilCheckDistributionPointName") ? checked : 0;
    }
    default:
      return op.rejectStructure(KetraError_CheckDistributionPointNameOption, "option", *name, name->value.type,
                                name->value.fullName, name->option);
  }
}

int32_t X509MUtilCalDistributionPointName(AsnObject work, AsnValue parent, const char *path, int32_t *choice,
                                          uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(work, parent, choice, count)) return -1;
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, parent, path, &element, err), "Call AsnGetElement")) return -1;
  if (element == nullptr) {
    *choice = 0;
    *count = 0;
    return 0;
  }
  uint32_t number = 0;
  if (op.failed(AsnCalNumberOfChoice(work, element, nullptr, &number, err), "Call AsnCalNumberOfChoice")) return -1;
  switch (number) {
    case X509DistributionPointName_FullName: {
      *choice = X509DistributionPointName_FullName;
      const int32_t counted = AsnCalCountOfSequence(work, element, kFullName, count, err);
      return op.failed(counted, "Call AsnCalCountOfSequence(fullName)") ? -1 : 0;
    }
    case X509DistributionPointName_NameRelativeToCRLIssuer: {
      *choice = X509DistributionPointName_NameRelativeToCRLIssuer;
      const int32_t counted = AsnCalCountOfSequence(work, element, kRelativeName, count, err);
      return op.failed(counted, "Call AsnCalCountOfSequence") ? -1 : 0;
    }
    default: return op.reject(KetraError_CalDistributionPointNameChoice, "choiceNo", number);
  }
}
