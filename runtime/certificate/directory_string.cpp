#include "runtime/certificate/directory_string.h"

#include <iterator>

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

constexpr const char *kComponents[] = {"teletexString", "printableString", "bmpString", "universalString",
                                       "uTF8String"};

bool isChoice(uint32_t choice) { return choice >= 1 && choice <= std::size(kComponents); }

int32_t failNull(Call call) {
  return call.fail(X509NameError_NullParameter, "no work object, pool, string or place for the result");
}

using SetOct = int32_t(AsnObject, AsnValue, const char *, const AsnOct *, AsnErrorBlock *);
using GetOct = int32_t(AsnMemObject, AsnObject, AsnValue, const char *, AsnOct *, AsnErrorBlock *);

int32_t set(Call call, AsnObject object, AsnValue value, const char *path, const X509DirStr *string, SetOct *setOct) {
  if (object == nullptr) return failNull(call);
  if (!hasShape(call, string, "the string")) return -1;
  const AsnOct octets{string->octets, string->length};
  AsnValue element = nullptr;
  if (AsnMakeElement(object, value, path, &element, call.err) != 0) return -1;
  return setOct(object, element, componentOf(string->choice), &octets, call.err);
}

int32_t setOptional(Call call, AsnObject object, AsnValue value, const char *path, const X509DirStrOpt *string,
                    SetOct *setOct) {
  if (string == nullptr) return failNull(call);
  return string->option == 1 ? set(call, object, value, path, &string->value, setOct) : 0;
}

int32_t getOptional(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                    X509DirStrOpt *string, GetOct *getOct) {
  if (pool == nullptr || object == nullptr || string == nullptr) return failNull(call);
  AsnValue element = nullptr;
  if (AsnGetElement(object, value, path, &element, call.err) != 0) return -1;
  X509DirStrOpt read = {{0, nullptr, 0}, 0};
  if (element != nullptr) {
    AsnOct octets{};
    uint32_t choice = 0;
    if (AsnCalNumberOfChoice(object, element, "/", &choice, call.err) != 0) return -1;
    if (!isChoice(choice)) return call.fail(X509DirStrError_Choice, Text() << "alternative " << choice);
    if (getOct(pool, object, element, componentOf(choice), &octets, call.err) != 0) return -1;
    read = {{choice, octets.octets, octets.length}, 1};
  }
  *string = read;
  return 0;
}

int32_t get(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path, X509DirStr *string,
            GetOct *getOct) {
  if (string == nullptr) return failNull(call);
  X509DirStrOpt read{};
  if (getOptional(call, pool, object, value, path, &read, getOct) != 0) return -1;
  if (read.option == 0) {
    return call.fail(AsnError_Absent, Text() << (path == nullptr ? "/" : path) << " is absent");
  }
  *string = read.value;
  return 0;
}

int32_t copy(Call call, AsnMemObject pool, X509DirStr *destination, const X509DirStr *source) {
  if (pool == nullptr || destination == nullptr || source == nullptr) return failNull(call);
  const AsnOct octets{source->octets, source->length};
  AsnOct copied{};
  if (AsnMUtilCopyOctBER(pool, &copied, &octets, call.err) != 0) return -1;
  *destination = {source->choice, copied.octets, copied.length};
  return 0;
}

int32_t release(Call call, AsnMemObject pool, X509DirStr *string) {
  if (pool == nullptr || string == nullptr) return failNull(call);
  AsnOct octets{string->octets, string->length};
  if (AsnMUtilFreeOct(pool, &octets, call.err) != 0) return -1;
  *string = X509DirStr{};
  return 0;
}

const char *nameOf(int32_t lengthOf) {
  switch (lengthOf) {
    case X509LengthOf_NameAssigner: return "nameAssigner";
    case X509LengthOf_PartyName: return "partyName";
    default: return "the string";
  }
}

}  // namespace

const char *componentOf(uint32_t choice) { return kComponents[choice - 1]; }

bool hasShape(Call call, const X509DirStr *string, const char *what) {
  if (string == nullptr || (string->octets == nullptr && string->length > 0)) {
    call.fail(X509NameError_NullParameter, Text() << what << " has no octets");
    return false;
  }
  if (isChoice(string->choice)) return true;
  call.fail(X509DirStrError_Choice, Text() << what << " has alternative " << string->choice << "; there are 1 to 5",
            string->choice);
  return false;
}

bool countCharacters(Call call, const X509DirStr &string, const char *what, uint32_t *count) {
  if (string.choice == X509DirStr_Utf8String) {
    Characters characters(Alphabet::Utf8, string.octets, string.length);
    uint32_t character = 0;
    for (*count = 0; characters.next(&character);) ++*count;
    if (characters.atEnd()) return true;
    const auto offset = static_cast<uint32_t>(characters.at() - string.octets);
    call.fail(X509DirStrError_Characters, Text() << what << " is no UTF-8 from octet " << offset << " on",
              {characters.at(), string.length - offset});
    return false;
  }
  const uint32_t unit = string.choice == X509DirStr_BmpString ? 2 : string.choice == X509DirStr_UniversalString ? 4 : 1;
  *count = string.length / unit;
  if (string.length % unit == 0) return true;
  call.fail(X509DirStrError_Characters,
            Text() << what << " has " << string.length << " octets, but characters of " << unit << " octets each");
  return false;
}

}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509MUtilSetDirStrDER(AsnObject object, AsnValue value, const char *path, const X509DirStr *string,
                              AsnErrorBlock *err) {
  return set({__func__, err}, object, value, path, string, AsnSetOctDER);
}

int32_t X509MUtilSetDirStrBER(AsnObject object, AsnValue value, const char *path, const X509DirStr *string,
                              AsnErrorBlock *err) {
  return set({__func__, err}, object, value, path, string, AsnSetOctBER);
}

int32_t X509MUtilSetDirStrOptDER(AsnObject object, AsnValue value, const char *path, const X509DirStrOpt *string,
                                 AsnErrorBlock *err) {
  return setOptional({__func__, err}, object, value, path, string, AsnSetOctDER);
}

int32_t X509MUtilSetDirStrOptBER(AsnObject object, AsnValue value, const char *path, const X509DirStrOpt *string,
                                 AsnErrorBlock *err) {
  return setOptional({__func__, err}, object, value, path, string, AsnSetOctBER);
}

int32_t X509MUtilGetDirStrDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, X509DirStr *string,
                              AsnErrorBlock *err) {
  return get({__func__, err}, pool, object, value, path, string, AsnMUtilGetOctDER);
}

int32_t X509MUtilGetDirStrBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, X509DirStr *string,
                              AsnErrorBlock *err) {
  return get({__func__, err}, pool, object, value, path, string, AsnMUtilGetOctBER);
}

int32_t X509MUtilGetDirStrOptDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                 X509DirStrOpt *string, AsnErrorBlock *err) {
  return getOptional({__func__, err}, pool, object, value, path, string, AsnMUtilGetOctDER);
}

int32_t X509MUtilGetDirStrOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                 X509DirStrOpt *string, AsnErrorBlock *err) {
  return getOptional({__func__, err}, pool, object, value, path, string, AsnMUtilGetOctBER);
}

int32_t X509MUtilCopyDirStrBER(AsnMemObject pool, X509DirStr *destination, const X509DirStr *source,
                               AsnErrorBlock *err) {
  return copy({__func__, err}, pool, destination, source);
}

int32_t X509MUtilCopyDirStrOptBER(AsnMemObject pool, X509DirStrOpt *destination, const X509DirStrOpt *source,
                                  AsnErrorBlock *err) {
  const ketra::asn1::Call call{__func__, err};
  if (pool == nullptr || destination == nullptr || source == nullptr) return failNull(call);
  X509DirStrOpt copied = {{0, nullptr, 0}, 0};
  if (source->option == 1) {
    if (copy(call, pool, &copied.value, &source->value) != 0) return -1;
    copied.option = 1;
  }
  *destination = copied;
  return 0;
}

int32_t X509MUtilFreeDirStr(AsnMemObject pool, X509DirStr *string, AsnErrorBlock *err) {
  return release({__func__, err}, pool, string);
}

int32_t X509MUtilFreeDirStrOpt(AsnMemObject pool, X509DirStrOpt *string, AsnErrorBlock *err) {
  const ketra::asn1::Call call{__func__, err};
  if (string == nullptr) return failNull(call);
  if (release(call, pool, &string->value) != 0) return -1;
  string->option = 0;
  return 0;
}

int32_t X509MUtilGetCheckLengthOfDirStr(const X509DirStr *string, uint32_t upperBound, int32_t lengthOf,
                                        AsnErrorBlock *err) {
  const ketra::asn1::Call call{__func__, err};
  const char *what = nameOf(lengthOf);
  uint32_t count = 0;
  if (!hasShape(call, string, what) || !countCharacters(call, *string, what, &count)) return -1;
  if (count >= 1 && count <= upperBound) return 0;
  return call.fail(
      X509DirStrError_Length,
      ketra::asn1::Text() << what << " has " << count << " characters; 1 to " << upperBound << " are allowed", count);
}
