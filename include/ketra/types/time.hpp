/// @file
/// Points in time.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/writer.hpp"

namespace ketra {

/// A point in time of the years 0000 to 9999.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

namespace detail {

inline constexpr int64_t kMicroseconds = 1'000'000;  // in a second
inline constexpr int64_t kSecondsPerDay = 86'400;
inline constexpr int64_t kUnixEpochDays = 719'528;                                                  // since 0000-01-01
inline constexpr int64_t kTimeBegin = -kUnixEpochDays * kSecondsPerDay * kMicroseconds;             // 0000-01-01
inline constexpr int64_t kTimeEnd = (3'652'425 - kUnixEpochDays) * kSecondsPerDay * kMicroseconds;  // 10000-01-01

// Days since 1970-01-01 in the proleptic Gregorian calendar. Years are counted from March, so that the leap day comes
// last, and 400 years earlier, so that none is negative.
constexpr int64_t daysOf(uint32_t year, uint32_t month, uint32_t day) {
  const uint32_t y = year + 400 - (month <= 2 ? 1 : 0);
  const uint32_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return int64_t{365} * y + y / 4 - y / 100 + y / 400 + dayOfYear - (146'097 - 60) - kUnixEpochDays;
}

constexpr uint32_t daysInMonth(uint32_t year, uint32_t month) {
  if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
  return 30 + ((month + month / 8) & 1);  // 31 in odd months, from August on in even ones
}

// Reads a time from left to right; what is malformed ends it, what does not fit is remembered.
class TimeReader {
 public:
  explicit TimeReader(View content) : in_(content) {}

  // YYYYMMDDHH[MM[SS]][.f][Z|+HH[MM]|-HH[MM]] (X.680 46). Times without an offset, local ones, do not fit.
  bool generalized(int64_t &microseconds, Fault &fault) {
    uint32_t year = 0;
    return number(4, 0, 9999, year) ? rest(year, false, microseconds, fault) : malformed(fault);
  }
  // YYMMDDHHMM[SS](Z|+HHMM|-HHMM) (X.680 47), of the years 1950 to 2049 (RFC 5280 4.1.2.5.1).
  bool utc(int64_t &microseconds, Fault &fault) {
    uint32_t year = 0;
    if (!number(2, 0, 99, year)) return malformed(fault);
    return rest(year + (year < 50 ? 2000 : 1900), true, microseconds, fault);
  }

 private:
  bool rest(uint32_t year, bool isUtc, int64_t &microseconds, Fault &fault) {
    uint32_t month = 0, day = 0, hour = 0, minute = 0, second = 0;
    if (!number(2, 1, 12, month) || !number(2, 1, daysInMonth(year, month), day) || !number(2, 0, 24, hour) ||
        (isUtc && !isDigit())) {
      return malformed(fault);
    }
    int64_t unit = 3600 * kMicroseconds;
    if (isDigit()) {
      if (!number(2, 0, 59, minute)) return malformed(fault);
      unit = 60 * kMicroseconds;
      if (isDigit()) {
        if (!number(2, 0, 60, second)) return malformed(fault);
        unit = kMicroseconds;
      }
    }
    if (hour == 24 || second == 60) fits_ = false;
    microseconds =
        (daysOf(year, month, day) * kSecondsPerDay + (int64_t{hour} * 60 + minute) * 60 + second) * kMicroseconds;
    if (!isUtc && (accept('.') || accept(',')) && !fraction(unit, microseconds)) return malformed(fault);
    if (isUtc && in_.left() != 1 && in_.left() != 5) return malformed(fault);  // Z, or an offset with minutes
    if (!zone(microseconds)) return malformed(fault);
    const bool isInside = microseconds >= kTimeBegin && microseconds < kTimeEnd;
    return (fits_ && isInside) || fail(fault, Reason::TimeRange, start_);
  }

  bool malformed(Fault &fault) const { return fail(fault, Reason::Time, start_); }
  bool isDigit() const { return !in_.done() && *in_.at >= '0' && *in_.at <= '9'; }
  bool accept(char c) {
    if (in_.done() || *in_.at != static_cast<uint8_t>(c)) return false;
    ++in_.at;
    return true;
  }
  bool number(int digits, uint32_t low, uint32_t high, uint32_t &value) {
    value = 0;
    for (; digits > 0; --digits, ++in_.at) {
      if (!isDigit()) return false;
      value = value * 10 + (*in_.at - uint32_t{'0'});
    }
    return value >= low && value <= high;
  }
  // Of a unit, which must come out in whole microseconds. Tenths of an hour do so to the tenth digit: the sum is kept
  // in hundredths of a microsecond.
  bool fraction(int64_t unit, int64_t &microseconds) {
    if (!isDigit()) return false;
    int64_t rest = unit * 100, sum = 0;
    for (; isDigit(); ++in_.at) {
      const int64_t digit = *in_.at - '0';
      if (rest % 10 == 0) {
        rest /= 10;
        sum += digit * rest;
      } else if (digit != 0) {
        fits_ = false;
      }
    }
    if (sum % 100 != 0) fits_ = false;
    microseconds += sum / 100;
    return true;
  }
  bool zone(int64_t &microseconds) {
    if (accept('Z')) return in_.done();
    if (in_.done()) {
      fits_ = false;
      return true;
    }
    const bool isEast = accept('+');
    uint32_t hour = 0, minute = 0;
    if ((!isEast && !accept('-')) || !number(2, 0, 23, hour)) return false;
    if (!in_.done() && !number(2, 0, 59, minute)) return false;
    const int64_t offset = int64_t{60} * (hour * 60 + minute) * kMicroseconds;
    microseconds += isEast ? -offset : offset;
    return in_.done();
  }

  Reader in_;
  const uint8_t *start_ = in_.at;
  bool fits_ = true;
};

// "YYYYMMDDHHMMSSZ", the form of nearly every time, or "YYMMDDHHMMSSZ"; false for any other, right or wrong.
template <bool kIsUtc>
KETRA_INLINE bool readPlainTime(View content, int64_t &microseconds) {
  constexpr std::size_t kFirst = kIsUtc ? 1 : 0;
  if (content.size() != 15 - 2 * kFirst || content.back() != 'Z') return false;
  uint32_t pairs[7] = {}, wrong = 0;
  for (std::size_t i = kFirst; i < 7; ++i) {
    const std::size_t at = 2 * (i - kFirst);
    const uint32_t tens = content[at] - uint32_t{'0'}, ones = content[at + 1] - uint32_t{'0'};
    wrong |= (tens > 9 ? 1u : 0u) | (ones > 9 ? 1u : 0u);
    pairs[i] = tens * 10 + ones;
  }
  if (wrong != 0) return false;
  if (kIsUtc) pairs[0] = pairs[1] < 50 ? 20 : 19;
  const uint32_t year = pairs[0] * 100 + pairs[1];
  const bool isTime = pairs[2] - 1 < 12 && pairs[3] - 1 < daysInMonth(year, pairs[2]) && pairs[4] < 24 &&
                      pairs[5] < 60 && pairs[6] < 60;
  if (!isTime) return false;
  const int64_t seconds = (pairs[4] * 60 + pairs[5]) * 60 + pairs[6];
  microseconds = (daysOf(year, pairs[2], pairs[3]) * kSecondsPerDay + seconds) * kMicroseconds;
  return true;
}

// The parts of a time: digits of date and clock with separators between them (0: none), and the fraction without zeros
// at its end (X.690 11.7). Returns how many octets, at most 27; none of a time outside the years 0000 to 9999.
inline std::size_t writeTime(Time time, char dash, char middle, char colon, uint8_t *out) {
  const int64_t sinceEpoch = time.time_since_epoch().count();
  if (sinceEpoch < kTimeBegin || sinceEpoch >= kTimeEnd) return 0;
  const int64_t total = sinceEpoch - kTimeBegin;
  auto fraction = static_cast<uint32_t>(total % kMicroseconds);
  const auto seconds = static_cast<uint32_t>(total / kMicroseconds % kSecondsPerDay);
  const auto z = static_cast<uint32_t>(total / kMicroseconds / kSecondsPerDay) + 146'097 - 60;
  const uint32_t era = z / 146'097, dayOfEra = z % 146'097;
  const uint32_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const uint32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const uint32_t shifted = (5 * dayOfYear + 2) / 153;
  const uint32_t month = shifted < 10 ? shifted + 3 : shifted - 9;
  const uint32_t year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0) - 400;
  const uint8_t *const start = out;
  const auto two = [&out](uint32_t number, char before) {
    if (before != 0) *out++ = static_cast<uint8_t>(before);
    *out++ = static_cast<uint8_t>('0' + number / 10);
    *out++ = static_cast<uint8_t>('0' + number % 10);
  };
  two(year / 100, 0);
  two(year % 100, 0);
  two(month, dash);
  two(dayOfYear - (153 * shifted + 2) / 5 + 1, dash);
  two(seconds / 3600, middle);
  two(seconds / 60 % 60, colon);
  two(seconds % 60, colon);
  if (fraction != 0) {
    *out++ = '.';
    for (uint32_t unit = 100'000; fraction != 0; unit /= 10) {
      *out++ = static_cast<uint8_t>('0' + fraction / unit);
      fraction %= unit;
    }
  }
  *out++ = 'Z';
  return static_cast<std::size_t>(out - start);
}

}  // namespace detail

/// ISO 8601, "2026-01-31T23:59:59Z", with up to six digits of fraction; empty outside the years 0000 to 9999.
inline std::string timeText(Time time) {
  uint8_t text[27];
  const std::size_t size = detail::writeTime(time, '-', 'T', ':', text);
  return {reinterpret_cast<const char *>(text), size};
}

/// GeneralizedTime (X.680 46); written in the form of DER (X.690 11.7). A time outside the years 0000 to 9999 is
/// written without contents octets, which no reader accepts.
template <>
struct Leaf<Time> {
  static constexpr LeafKind kind = LeafKind::Time;
  static constexpr uint8_t identifier = 0x18;
  static constexpr bool inSegments = true;
  static bool read(const Tlv &tlv, Time &value, Fault &fault) {
    int64_t microseconds = 0;
    if (!detail::readPlainTime<false>(tlv.contents(), microseconds) &&
        !detail::TimeReader(tlv.contents()).generalized(microseconds, fault)) {
      return false;
    }
    value = Time(std::chrono::microseconds(microseconds));
    return true;
  }
  static void write(Time value, Writer &out) {
    detail::Scratch scratch;
    out.octets(content(value, scratch));
  }
  static View content(Time value, detail::Scratch &scratch) {
    return {scratch.octets, detail::writeTime(value, 0, 0, 0, scratch.octets)};
  }
  static std::string text(Time value) { return timeText(value); }
};

// Time ::= CHOICE {                                              RFC 5280 4.1.2.5
//     utcTime      UTCTime,
//     generalTime  GeneralizedTime }
//
// The time of a certificate or CRL.
struct EitherTime {
  Time time{};             ///< the point in time
  bool isUtcTime = false;  ///< which alternative it is
  /// Whether it has the form that RFC 5280 4.1.2.5 demands: seconds, no fraction, "Z", and GeneralizedTime only for
  /// years from 2050 on.
  bool isProfiled = false;

  EitherTime() = default;
  /// As RFC 5280 4.1.2.5 demands, but that a fraction of a second is kept.
  EitherTime(Time of) : time(of) {
    const int64_t seconds = of.time_since_epoch().count() / detail::kMicroseconds;
    isUtcTime = seconds >= detail::daysOf(1950, 1, 1) * detail::kSecondsPerDay && isBefore2050();
    isProfiled = of.time_since_epoch().count() % detail::kMicroseconds == 0;
  }

  friend bool operator==(const EitherTime &a, const EitherTime &b) {
    return a.time == b.time && a.isUtcTime == b.isUtcTime;
  }
  friend bool operator!=(const EitherTime &a, const EitherTime &b) { return !(a == b); }

 private:
  friend struct Leaf<EitherTime>;
  bool isBefore2050() const {
    return time.time_since_epoch().count() <
           detail::daysOf(2050, 1, 1) * detail::kSecondsPerDay * detail::kMicroseconds;
  }
};

template <>
struct Leaf<EitherTime> {
  static constexpr LeafKind kind = LeafKind::Time;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = true;
  static constexpr bool matches(uint8_t octet) { return (octet & ~0x20) == 0x17 || (octet & ~0x20) == 0x18; }
  KETRA_INLINE static bool read(const Tlv &tlv, EitherTime &value, Fault &fault) {
    int64_t microseconds = 0;
    const View content = tlv.contents();
    value.isUtcTime = (tlv.identifier & ~0x20) == 0x17;
    value.isProfiled = value.isUtcTime ? detail::readPlainTime<true>(content, microseconds)
                                       : detail::readPlainTime<false>(content, microseconds);
    if (!value.isProfiled && !readOdd(content, value.isUtcTime, microseconds, fault)) return false;
    value.time = Time(std::chrono::microseconds(microseconds));
    value.isProfiled = value.isProfiled && value.isUtcTime == value.isBefore2050();
    return true;
  }
  static void write(const EitherTime &value, Writer &out) {
    detail::Scratch scratch;
    out.value(value.isUtcTime ? 0x17 : 0x18, content(value, scratch));
  }
  static View content(const EitherTime &value, detail::Scratch &scratch) {
    const View generalized = Leaf<Time>::content(value.time, scratch);
    return value.isUtcTime ? View(generalized.begin() + 2, generalized.end()) : generalized;
  }
  static std::string text(const EitherTime &value) { return timeText(value.time); }

 private:
  static bool readOdd(View content, bool isUtcTime, int64_t &microseconds, Fault &fault) {
    detail::TimeReader reader(content);
    return isUtcTime ? reader.utc(microseconds, fault) : reader.generalized(microseconds, fault);
  }
};

}  // namespace ketra
