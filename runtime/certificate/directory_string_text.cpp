// DirectoryString values as text.

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/error.h"
#include "runtime/certificate/directory_string.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

Characters charactersOf(const X509DirStr &string) {
  constexpr Alphabet kAlphabets[] = {Alphabet::Teletex, Alphabet::Printable, Alphabet::Bmp, Alphabet::Universal,
                                     Alphabet::Utf8};
  return {kAlphabets[string.choice - 1], string.octets, string.length};
}

// Writes what fits in `size` octets, and tells how many octets all have. False at octets that are
// no character.
bool convert(Characters characters, char *text, uint64_t size, uint64_t *total) {
  *total = 0;
  for (uint32_t character = 0; characters.next(&character);) {
    uint8_t octets[4];
    const uint32_t length = writeUtf8(character, octets);
    for (uint32_t i = 0; i < length; ++i, ++*total) {
      if (*total < size) text[*total] = static_cast<char>(octets[i]);
    }
  }
  return characters.atEnd();
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509DirStrToText(const X509DirStr *string, char *text, uint32_t size, uint32_t *length, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (text == nullptr && size > 0) return call.fail(X509NameError_NullParameter, "no place for the text");
  if (!hasShape(call, string, "the string")) return -1;
  uint64_t total = 0;
  if (!convert(charactersOf(*string), text, size, &total)) {
    return call.fail(X509DirStrError_Characters,
                     Text() << "octets that are no character, behind " << total << " octets of text");
  }
  if (length != nullptr) *length = static_cast<uint32_t>(total < UINT32_MAX ? total : UINT32_MAX);
  if (total >= size) {
    if (size > 0) text[0] = '\0';
    return call.fail(AsnError_Range, Text() << "the text needs " << total + 1 << " octets");
  }
  text[total] = '\0';
  return 0;
}
