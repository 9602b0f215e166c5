// Names as text (RFC 4514).

#include <charconv>
#include <string_view>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/error.h"
#include "runtime/certificate/attribute_types.h"
#include "runtime/certificate/name_object.h"

namespace ketra::certificate {
namespace {

using asn1::Call;

// Counts what is put, and writes it if there is a place.
class Output {
 public:
  explicit Output(char *place) : place_(place) {}

  void put(char c) {
    if (place_ != nullptr) place_[length_] = c;
    ++length_;
  }
  void put(std::string_view part) {
    for (const char c : part) put(c);
  }
  void hex(const uint8_t *octets, uint32_t length) {
    for (uint32_t i = 0; i < length; ++i) hexOctet(octets[i]);
  }
  void hexOctet(uint8_t octet) {
    put("0123456789abcdef"[octet >> 4]);
    put("0123456789abcdef"[octet & 15]);
  }
  void number(uint64_t value) {
    char digits[20];
    const char *const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    put({digits, static_cast<std::size_t>(end - digits)});
  }
  uint64_t length() const { return length_; }

 private:
  char *place_;
  uint64_t length_ = 0;
};

// Characters that a display obeys instead of showing them: controls, line separators, invisible and directional ones.
bool isControl(uint32_t c) {
  struct Range {
    uint32_t first;
    uint32_t last;
  };
  static constexpr Range kRanges[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},      {0x61C, 0x61C},
                                      {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F},
                                      {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
  for (const Range &range : kRanges) {
    if (c >= range.first && c <= range.last) return true;
  }
  return false;
}

void putCharacter(Output &out, uint32_t c, bool isFirst, bool isLast) {
  uint8_t octets[4];
  const uint32_t size = writeUtf8(c, octets);
  if (isControl(c)) {
    for (uint32_t i = 0; i < size; ++i) {
      out.put('\\');
      out.hexOctet(octets[i]);
    }
    return;
  }
  const bool isSpecial =
      size == 1 && std::string_view("\"+,;<>\\").find(static_cast<char>(c)) != std::string_view::npos;
  if (isSpecial || (c == ' ' && (isFirst || isLast)) || (c == '#' && isFirst)) out.put('\\');
  for (uint32_t i = 0; i < size; ++i) out.put(static_cast<char>(octets[i]));
}

// The next arc, of up to 64 bits.
bool readArc(const AsnOct &objid, uint32_t *at, uint64_t *arc) {
  uint8_t octet = 0;
  *arc = 0;
  do {
    if (*arc > UINT64_MAX >> 7) return false;
    octet = objid.octets[(*at)++];
    *arc = *arc << 7 | (octet & 0x7Fu);
  } while ((octet & 0x80) != 0);
  return true;
}

bool putArcs(Output &out, const AsnOct &objid) {
  uint32_t at = 0;
  uint64_t arc = 0;
  if (!readArc(objid, &at, &arc)) return false;
  const uint64_t first = arc < 80 ? arc / 40 : 2;
  out.number(first);
  out.put('.');
  out.number(arc - 40 * first);
  while (at < objid.length) {
    if (!readArc(objid, &at, &arc)) return false;
    out.put('.');
    out.number(arc);
  }
  return true;
}

// Dotted form. With an arc beyond 64 bits, "oid-" and the content octets in hex: no other keyword looks like that.
void putType(Output &out, const AsnOct &objid) {
  Output trial(nullptr);
  if (putArcs(trial, objid)) {
    putArcs(out, objid);
  } else {
    out.put("oid-");
    out.hex(objid.octets, objid.length);
  }
}

void putAttribute(Output &out, const Attribute &attribute) {
  const AttributeType *known = findAttributeType(attribute.type.octets, attribute.type.length);
  if (known != nullptr) {
    out.put(known->keyword);
  } else {
    putType(out, attribute.type);
  }
  out.put('=');
  const Encoding &value = attribute.value;
  if (known == nullptr || attribute.alphabet == Alphabet::None) {
    out.put('#');
    out.hex(value.whole.octets, value.whole.length);
    return;
  }
  Characters characters(attribute.alphabet, value.content.octets, value.content.length);
  uint32_t character = 0;
  for (bool isFirst = true; characters.next(&character); isFirst = false) {
    putCharacter(out, character, isFirst, characters.atEnd());
  }
}

uint64_t putRdn(char *place, const Encoding &rdn) {
  Output out(place);
  Walk members(rdn.content);
  Encoding member{};
  for (bool isFirst = true; members.next(&member); isFirst = false) {
    if (!isFirst) out.put('+');
    putAttribute(out, attributeOf(member));
  }
  return out.length();
}

uint64_t measure(X509NameObject name) {
  uint64_t length = 0;
  Walk rdns(name->rdns.members());
  for (Encoding rdn{}; rdns.next(&rdn);) length += putRdn(nullptr, rdn) + (length > 0 ? 1 : 0);
  return length;
}

// Backwards from the end of the text: the name begins with what the text ends with.
void write(X509NameObject name, const char *begin, char *end) {
  Walk rdns(name->rdns.members());
  for (Encoding rdn{}; rdns.next(&rdn);) {
    end -= putRdn(nullptr, rdn);
    putRdn(end, rdn);
    if (end != begin) *--end = ',';
  }
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509NameObjectGetText(X509NameObject name, char *text, uint32_t size, uint32_t *length, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (name == nullptr || (text == nullptr && size > 0)) {
    return call.fail(X509NameError_NullParameter, "no name or no place for the text");
  }
  const uint64_t total = measure(name);
  if (length != nullptr) *length = static_cast<uint32_t>(total < UINT32_MAX ? total : UINT32_MAX);
  if (total >= size) {
    if (size > 0) text[0] = '\0';
    return call.fail(AsnError_Range, ketra::asn1::Text() << "the text needs " << total + 1 << " octets");
  }
  write(name, text, text + total);
  text[total] = '\0';
  return 0;
}
