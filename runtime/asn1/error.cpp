#include "runtime/asn1/error.h"

#include <algorithm>

#include "ketra/contracts/attributes.h"
#include "ketra/contracts/certificate.h"
#include "ketra/ketra_runtime.h"

namespace ketra::asn1 {

namespace {

struct Module {
  std::string_view prefix;
  const char *name;
};

// Which component a function belongs to; the first that fits.
constexpr Module kModules[] = {
    {"AsnMemObject", "ASN1-MEM"}, {"AsnCheck", "ASN1-CHECK"},
    {"AsnMUtil", "ASN1-MUTIL"},   {"KetraObject", "X509-EXT"},
    {"X509MUtil", "X509-MUTIL"},  {"X509Attributes", "X509-ATTR"},
    {"X509", "X509-NAME"},        {"", "ASN1"},
};

const char *moduleOf(std::string_view function) {
  const Module *module = kModules;
  while (!function.starts_with(module->prefix)) ++module;
  return module->name;
}

void append(const char *module, const char *function, const char *message, AsnErrorBlock *err,
            const Offending &offending) {
  if (err == nullptr) return;
  if (err->count >= ASN_TRACE_ENTRIES) {
    ++err->dropped;
    return;
  }
  AsnTraceEntry &entry = err->entries[err->count++];
  const auto &[value, valueLength, kind] = offending;
  entry.module = module == nullptr ? "" : module;
  entry.function = function == nullptr ? "" : function;
  const std::size_t length = message == nullptr ? 0 : strnlen(message, ASN_TRACE_MESSAGE - 1);
  if (length > 0) std::memcpy(entry.message, message, length);
  entry.message[length] = '\0';
  entry.value = value;
  entry.valueLength = valueLength;
  entry.valueKind = kind;
  if (value != nullptr) std::memcpy(entry.valueOctets, value, std::min<uint32_t>(valueLength, ASN_TRACE_VALUE));
}

}  // namespace

int32_t reportFailure(const char *function, AsnErrorBlock *err, uint32_t code, const char *message,
                      const Offending &offending) {
  if (err != nullptr) err->code = code;
  append(moduleOf(function), function, message, err, offending);
  return -1;
}

namespace {

constexpr AsnErrorMeaning kMeanings[] = {
#define MEANING(name, code, meaning) {code, meaning},
    ASN_RUNTIME_ERROR_LIST(MEANING) ASN_POOL_ERROR_LIST(MEANING) ASN_CHECK_ERROR_LIST(MEANING)
        ASN_MUTIL_ERROR_LIST(MEANING) KETRA_CERTIFICATE_ERROR_LIST(MEANING) X509_NAME_ERROR_LIST(MEANING)
            X509_ATTRIBUTES_ERROR_LIST(MEANING)
#undef MEANING
};

const char *find(const AsnErrorMeaning *meanings, uint32_t count, uint32_t code) {
  const auto *end = meanings + count;
  const auto *found = std::find_if(meanings, end, [&](const AsnErrorMeaning &m) { return m.code == code; });
  return found == end ? nullptr : found->meaning;
}

// Writes into the caller's buffer as far as it reaches, and counts everything.
class Output {
 public:
  Output(char *text, uint32_t size) : text_(text), size_(text == nullptr ? 0 : size) {}

  void put(char c) {
    if (length_ + 1 < size_) text_[length_] = c;
    ++length_;
  }
  void put(std::string_view part) {
    for (const char c : part) put(c);
  }
  void hex(uint32_t number, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) put("0123456789ABCDEF"[number >> shift & 0xF]);
  }
  // Messages can hold octets of the input, by way of paths.
  void escaped(const char *part) {
    for (; *part != '\0'; ++part) {
      const auto c = static_cast<unsigned char>(*part);
      if (c >= 0x20 && c < 0x7F && c != '\\') {
        put(*part);
      } else {
        put("\\x");
        hex(c, 2);
      }
    }
  }
  uint32_t finish() {
    if (size_ > 0) text_[std::min(length_, size_ - 1)] = '\0';
    return length_;
  }

 private:
  char *text_;
  uint32_t size_;
  uint32_t length_ = 0;
};

void renderNumber(Output &out, const uint8_t *octets) {
  int32_t number = 0;
  std::memcpy(&number, octets, sizeof number);
  out.put((Text() << " [" << number).c_str());
  if (number < 0) {
    out.put(" (0x");
    out.hex(static_cast<uint32_t>(number), 8);
    out.put(')');
  }
  out.put(']');
}

void renderOctets(Output &out, const AsnTraceEntry &entry) {
  out.put(" [");
  const uint32_t copied = std::min<uint32_t>(entry.valueLength, ASN_TRACE_VALUE);
  for (uint32_t i = 0; i < copied; ++i) {
    if (i > 0) out.put(' ');
    out.hex(entry.valueOctets[i], 2);
  }
  out.put(copied < entry.valueLength ? " ...]" : "]");
}

void render(Output &out, const AsnTraceEntry &entry) {
  out.put("\n  ");
  out.escaped(entry.module);
  out.put(' ');
  out.escaped(entry.function);
  out.put(": ");
  out.escaped(entry.message);
  if (entry.value == nullptr || entry.valueLength == 0) return;
  if (entry.valueKind == ASN_VALUE_NUMBER) renderNumber(out, entry.valueOctets);
  if (entry.valueKind == ASN_VALUE_OCTETS) renderOctets(out, entry);
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnErrorInfo(const char *module, const char *function, const char *message, AsnErrorBlock *err,
                     const void *value, uint32_t valueLength) {
  Offending offending;
  if (value != nullptr) {
    offending.value = value;
    if (valueLength == sizeof(uint32_t)) offending.kind = ASN_VALUE_NUMBER;
  }
  offending.length = valueLength;
  append(module, function, message, err, offending);
  return 0;
}

void AsnErrorReset(AsnErrorBlock *err) {
  if (err == nullptr) return;
  err->code = 0;
  err->count = 0;
  err->dropped = 0;
}

uint32_t AsnErrorText(const AsnErrorBlock *err, const AsnErrorMeaning *meanings, uint32_t meaningCount, char *text,
                      uint32_t size) {
  Output out(text, size);
  if (err == nullptr) return out.finish();
  const char *meaning = meanings == nullptr ? nullptr : find(meanings, meaningCount, err->code);
  if (meaning == nullptr) meaning = find(kMeanings, static_cast<uint32_t>(std::size(kMeanings)), err->code);
  out.put("error 0x");
  out.hex(err->code, 8);
  if (meaning != nullptr) {
    out.put(": ");
    out.put(meaning);
  }
  for (uint32_t i = 0; i < std::min<uint32_t>(err->count, ASN_TRACE_ENTRIES); ++i) render(out, err->entries[i]);
  if (err->dropped > 0) out.put("\n  (further entries did not fit)");
  return out.finish();
}
