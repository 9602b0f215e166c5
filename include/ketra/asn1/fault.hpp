/// @file
/// What is wrong with octets: a code, two numbers and the place. No allocation, no exception.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#if defined(__cpp_exceptions)
#include <exception>
#endif

#include "ketra/asn1/octets.hpp"
#include "ketra/contracts/asn1.h"

namespace ketra {

/// Codes of what the runtime's codes (AsnError_...) do not cover: X(name, code, meaning).
#define KETRA_FAULT_CODE_LIST(X)                                                           \
  X(FaultCode_Segmented, 0x02600001, "a string in segments, to which a view cannot point") \
  X(FaultCode_Empty, 0x02600002, "a list without members that ASN.1 wants to have one")    \
  X(FaultCode_Negative, 0x02600003, "a negative number where ASN.1 wants (0..MAX)")        \
  X(FaultCode_Unknown, 0x02600004, "an ENUMERATED value without a name")                   \
  X(FaultCode_Alphabet, 0x02600005, "characters that the string type does not have")       \
  X(FaultCode_OtherKind, 0x02600006, "a value of another kind was asked for")              \
  X(FaultCode_Rule, 0x02600008, "a rule of the standard that ASN.1 does not express")      \
  X(FaultCode_Text, 0x02600009, "a textual encoding (RFC 7468) that is malformed")         \
  X(FaultCode_Null, 0x0260000A, "a NULL that has contents")                                \
  X(FaultCode_Tls, 0x0260000B, "a structure of TLS (RFC 8446 3) that is malformed")

/// @cond
#define KETRA_FAULT_CODE(name, code, meaning) name = code,
#define KETRA_FAULT_MEANING(name, code, meaning) {code, meaning},
/// @endcond

/// The codes of KETRA_FAULT_CODE_LIST.
enum : uint32_t { KETRA_FAULT_CODE_LIST(KETRA_FAULT_CODE) };

/// Every kind of fault: X(name, code, text). In the text "#a" and "#b" are the numbers of the fault, "$a" and "$b"
/// the same as tags.
#define KETRA_REASON_LIST(X)                                                                                    \
  X(None, 0, "")                                                                                                \
  X(Ended, AsnError_Truncated, "the encoding ends where a value is expected")                                   \
  X(EndedInTag, AsnError_Truncated, "the encoding ends inside a tag")                                           \
  X(EndedInLength, AsnError_Truncated, "the encoding ends inside a length")                                     \
  X(BeyondEnd, AsnError_Truncated, "length #a exceeds the #b remaining octets")                                 \
  X(HugeLength, AsnError_Truncated, "a length beyond 32 bits exceeds the #b remaining octets")                  \
  X(PaddedTag, AsnError_Tag, "the tag number is padded")                                                        \
  X(LowTag, AsnError_Tag, "tag number #a in the form for high tag numbers")                                     \
  X(IndefinitePrimitive, AsnError_Length, "indefinite length of a primitive encoding")                          \
  X(ReservedLength, AsnError_Length, "reserved length octet 0xff")                                              \
  X(NoEndOfContents, AsnError_EndOfContents, "the end-of-contents octets are missing")                          \
  X(EndOfContents, AsnError_EndOfContents, "end-of-contents octets where a value is expected")                  \
  X(Trailing, AsnError_Trailing, "#a octets after the end of the value")                                        \
  X(OtherTag, AsnError_Component, "unexpected tag $a, expected $b")                                             \
  X(NoAlternative, AsnError_Component, "tag $a is not that of an alternative")                                  \
  X(Missing, AsnError_Component, "the component with tag $b is missing")                                        \
  X(MissingChoice, AsnError_Component, "a component that may have several tags is missing")                     \
  X(OtherComponent, AsnError_Component, "unexpected tag $a, no component that may follow has it")               \
  X(EmptyExplicit, AsnError_Component, "empty EXPLICIT tag")                                                    \
  X(CrowdedExplicit, AsnError_Component, "more than one value in an EXPLICIT tag")                              \
  X(Nesting, AsnError_Nesting, "nested deeper than #a levels")                                                  \
  X(SegmentTag, AsnError_Segment, "unexpected tag $a of a segment, expected $b")                                \
  X(BooleanSize, AsnError_Boolean, "BOOLEAN content is #a octets")                                              \
  X(NullSize, FaultCode_Null, "NULL content is #a octets")                                                      \
  X(IntegerEmpty, AsnError_Integer, "INTEGER content is 0 octets")                                              \
  X(IntegerPadded, AsnError_Integer, "INTEGER content is padded: its first nine bits are equal")                \
  X(ObjidEmpty, AsnError_Objid, "OBJECT IDENTIFIER content is 0 octets")                                        \
  X(ObjidEnded, AsnError_Objid, "OBJECT IDENTIFIER ends inside an arc")                                         \
  X(ObjidPadded, AsnError_Objid, "OBJECT IDENTIFIER with a padded arc")                                         \
  X(BitsUnused, AsnError_BitString, "BIT STRING content of #b octets with #a unused bits")                      \
  X(BitsInside, AsnError_BitString, "unused bits in a segment before the last")                                 \
  X(Time, AsnError_Time, "malformed time")                                                                      \
  X(TimeRange, AsnError_Range, "a time without offset, finer than microseconds or outside the years 0 to 9999") \
  X(Segmented, FaultCode_Segmented, "a string in segments: only an owning read joins it")                       \
  X(EmptyList, FaultCode_Empty, "a list without members, one or more are required")                             \
  X(Negative, FaultCode_Negative, "a negative number, 0 or more is required")                                   \
  X(UnknownValue, FaultCode_Unknown, "#a is a value without a name")                                            \
  X(Alphabet, FaultCode_Alphabet, "octet #a is not a character of the string type")                             \
  X(OddLength, FaultCode_Alphabet, "#a octets are not whole characters of the string type")                     \
  X(OtherKind, FaultCode_OtherKind, "a value of another kind was asked for")                                    \
  X(Rule, FaultCode_Rule, "against a rule of the standard")                                                     \
  X(TlsEnded, FaultCode_Tls, "a TLS structure ends early: #a octets wanted, #b remain")                         \
  X(TlsTrailing, FaultCode_Tls, "#a octets after the end of a TLS structure")                                   \
  X(Repeated, FaultCode_Rule, "it is there more than once")                                                     \
  X(Base64, FaultCode_Text, "octet #a is not a character of base64")                                            \
  X(Base64Ended, FaultCode_Text, "the base64 ends inside a group of four characters")                           \
  X(NoEndLine, FaultCode_Text, "the PEM block has no matching END line")                                        \
  X(OneValue, FaultCode_Rule, "#a values, one is required")                                                     \
  X(LengthForm, AsnError_NotDer, "the length is not in its shortest form (X.690 10.1)")                         \
  X(Indefinite, AsnError_NotDer, "indefinite length (X.690 10.1)")                                              \
  X(InSegments, AsnError_NotDer, "a string in segments (X.690 10.2)")                                           \
  X(TrueOctet, AsnError_NotDer, "TRUE is $a, not 0xff (X.690 11.1)")                                            \
  X(UnusedBits, AsnError_NotDer, "unused bits are not zero (X.690 11.2.1)")                                     \
  X(ZeroBits, AsnError_NotDer, "named bits end with zero bits (X.690 11.2.2)")                                  \
  X(WrittenDefault, AsnError_NotDer, "a written DEFAULT (X.690 11.5)")                                          \
  X(SetOrder, AsnError_NotDer, "the members of a SET OF are not in order (X.690 11.6)")                         \
  X(TimeForm, AsnError_NotDer, "the time is not in the form of DER (X.690 11.7)")

/// @cond
#define KETRA_REASON_NAME(name, code, text) name,
#define KETRA_REASON_CODE(name, code, text) code,
#define KETRA_REASON_TEXT(name, code, text) text,
/// @endcond

/// The kind of a fault.
enum class Reason : uint32_t { KETRA_REASON_LIST(KETRA_REASON_NAME) };

namespace detail {
inline constexpr uint32_t kReasonCodes[] = {KETRA_REASON_LIST(KETRA_REASON_CODE)};
inline constexpr const char *kReasonTexts[] = {KETRA_REASON_LIST(KETRA_REASON_TEXT)};
struct CodeMeaning {
  uint32_t code;
  const char *meaning;
};
inline constexpr CodeMeaning kCodeMeanings[] = {ASN_RUNTIME_ERROR_LIST(KETRA_FAULT_MEANING)
                                                    KETRA_FAULT_CODE_LIST(KETRA_FAULT_MEANING)};
}  // namespace detail

#undef KETRA_FAULT_CODE
#undef KETRA_FAULT_MEANING
#undef KETRA_REASON_NAME
#undef KETRA_REASON_CODE
#undef KETRA_REASON_TEXT

/// What is wrong, and where: 24 octets. `at` points into the octets that were read.
struct Fault {
  Reason reason = Reason::None;  ///< its kind
  uint32_t a = 0;                ///< what was found
  uint32_t b = 0;                ///< what was expected, or there is room for
  const uint8_t *at = nullptr;   ///< the first octet of what is wrong

  /// Whether anything is wrong.
  constexpr explicit operator bool() const { return reason != Reason::None; }

  /// AsnError_... (ketra/contracts/asn1.h) or FaultCode_...
  constexpr uint32_t code() const { return detail::kReasonCodes[static_cast<uint32_t>(reason)]; }

  /// What the code means, which is less than text() says: the same for all faults with that code.
  const char *meaning() const {
    for (const detail::CodeMeaning &each : detail::kCodeMeanings) {
      if (each.code == code()) return each.meaning;
    }
    return "";
  }
  /// What is wrong, in words; explain() says where, too.
  std::string text() const {
    std::string result;
    for (const char *p = detail::kReasonTexts[static_cast<uint32_t>(reason)]; *p != '\0'; ++p) {
      const bool isNumber = *p == '#', isTag = *p == '$';
      if (!isNumber && !isTag) {
        result += *p;
        continue;
      }
      const uint32_t number = *++p == 'a' ? a : b;
      const auto tag = static_cast<uint8_t>(number);
      result += isTag ? "0x" + detail::hexOf({&tag, 1}) : std::to_string(number);
      constexpr std::string_view kMany = " octets";
      if (isNumber && number == 1 && std::string_view(p + 1).substr(0, kMany.size()) == kMany) {
        result += " octet";
        p += kMany.size();
      }
    }
    return result;
  }
};
static_assert(sizeof(Fault) <= 24, "faults are returned by value");

#if defined(__cpp_exceptions)
/// Thrown by operations that return a value: a fault, with its text in what().
class Error : public std::exception {
 public:
  /// A fault and its words, by default those of Fault::text().
  /// @{
  Error(const Fault &fault, std::string text) : fault_(fault), text_(std::move(text)) {}
  explicit Error(const Fault &fault) : Error(fault, fault.text()) {}
  /// @}

  const Fault &fault() const noexcept { return fault_; }    ///< its address may point into octets that are gone
  uint32_t code() const noexcept { return fault_.code(); }  ///< that of the fault
  const char *what() const noexcept override { return text_.c_str(); }  ///< what is wrong, and where, as explain() says

 private:
  Fault fault_;
  std::string text_;
};
#endif

namespace detail {

inline uint32_t clamp(std::size_t number) { return number > 0xFFFFFFFF ? 0xFFFFFFFF : static_cast<uint32_t>(number); }

// Sets the fault; returns false, so that a refusal is one line.
#if defined(__GNUC__)
[[gnu::cold, gnu::noinline]]
#endif
inline bool
fail(Fault &fault, Reason reason, const uint8_t *at, std::size_t a = 0, std::size_t b = 0) {
  fault = {reason, clamp(a), clamp(b), at};
  return false;
}

}  // namespace detail

/// A value, or a fault in its place. Asking for the value of a faulty one ends the process, in every build.
template <class T>
class Result {
 public:
  Result(T value) : value_(std::move(value)) {}  ///< a value
  Result(const Fault &fault) : fault_(fault) {}  ///< a fault, which must be one: not Reason::None

  /// Whether there is a value.
  explicit operator bool() const { return !fault_; }
  const Fault &fault() const { return fault_; }  ///< what is wrong; Reason::None when there is a value

  /// The value; without one the process ends.
  /// @{
  const T &operator*() const & { return check().value_; }
  T &operator*() & { return check().value_; }
  T operator*() && { return std::move(check().value_); }
  const T *operator->() const & { return &check().value_; }
  T *operator->() & { return &check().value_; }
  /// @}
  /// The value lives no longer than this temporary: name the result first.
  /// @{
  const T *operator->() const && = delete;
  T *operator->() && = delete;
  /// @}

 private:
  Result &check() {
    if (fault_) std::abort();
    return *this;
  }
  const Result &check() const {
    if (fault_) std::abort();
    return *this;
  }

  T value_{};
  Fault fault_{};
};

}  // namespace ketra
