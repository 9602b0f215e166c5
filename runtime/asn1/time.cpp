#include <bit>
#include <cstring>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/content.h"

namespace ketra::asn1 {

namespace {

// Days from 0000-01-01 in the proleptic Gregorian calendar, for years 0 to 9999. Years are counted from March, so that
// the leap day comes last, and 400 years earlier, so that none is negative.
uint32_t daysSinceYear0(uint32_t year, uint32_t month, uint32_t day) {
  const uint32_t y = year + 400 - (month <= 2 ? 1 : 0);
  const uint32_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return 365 * y + y / 4 - y / 100 + y / 400 + dayOfYear - (146'097 - 60);
}

struct Date {
  uint32_t year, month, day;
};

Date dateOf(uint32_t daysSince0) {
  const uint32_t z = daysSince0 + 146'097 - 60;
  const uint32_t era = z / 146'097;
  const uint32_t dayOfEra = z - era * 146'097;
  const uint32_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const uint32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const uint32_t shifted = (5 * dayOfYear + 2) / 153;
  const uint32_t month = shifted < 10 ? shifted + 3 : shifted - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0) - 400, month, dayOfYear - (153 * shifted + 2) / 5 + 1};
}

uint32_t daysInMonth(uint32_t year, uint32_t month) {
  if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
  return 30 + ((month + month / 8) & 1);  // 31 in odd months, from August on in even ones
}

constexpr int64_t kSecondsPerDay = 86'400;
constexpr int64_t kUnixEpochSeconds = 719'528 * kSecondsPerDay;

// Reads a time from left to right; the first thing that is wrong decides.
class TimeReader {
 public:
  TimeReader(const uint8_t *p, const uint8_t *end, Text &reason) : p_(p), end_(end), reason_(reason) {}

  bool atEnd() const { return p_ == end_; }
  bool isDigit() const { return p_ != end_ && *p_ >= '0' && *p_ <= '9'; }
  bool accept(char c) {
    if (p_ == end_ || *p_ != static_cast<uint8_t>(c)) return false;
    ++p_;
    return true;
  }
  int64_t digit() { return *p_++ - '0'; }
  // A number of `count` digits from `low` to `high`.
  bool number(int count, uint32_t low, uint32_t high, const char *what, uint32_t &value) {
    value = 0;
    for (int i = 0; i < count; ++i) {
      if (!isDigit()) return malformed(what);
      value = value * 10 + static_cast<uint32_t>(digit());
    }
    return (value >= low && value <= high) || malformed(what);
  }
  bool malformed(const char *what) {
    reason_ = Text() << "malformed time: " << what;
    form = TimeForm::Malformed;
    return false;
  }
  // Well formed, but nothing that the value can carry; reading goes on, since what follows may be malformed.
  void outOfRange(const char *what) {
    if (form != TimeForm::Valid) return;
    reason_ << "time out of range: " << what;
    form = TimeForm::OutOfRange;
  }

  TimeForm form = TimeForm::Valid;

 private:
  const uint8_t *p_;
  const uint8_t *end_;
  Text &reason_;
};

// A fraction of `unit` microseconds, which must come out whole. Digits of an hour can do so up to the tenth: the sum is
// kept in hundredths of a microsecond.
bool readFraction(TimeReader &reader, int64_t unit, int64_t *microseconds) {
  if (!reader.isDigit()) return reader.malformed("fraction");
  int64_t rest = unit * 100;
  int64_t sum = 0;
  while (reader.isDigit()) {
    const int64_t digit = reader.digit();
    if (rest % 10 == 0) {
      rest /= 10;
      sum += digit * rest;
    } else if (digit != 0) {
      reader.outOfRange("finer than microseconds");
    }
  }
  if (sum % 100 != 0) reader.outOfRange("finer than microseconds");
  *microseconds += sum / 100;
  return true;
}

// "HH[MM[SS]][.f]" after the date.
bool readClock(TimeReader &reader, int64_t *microseconds) {
  uint32_t hour = 0;
  uint32_t minute = 0;
  uint32_t second = 0;
  int64_t unit = 3600 * kMicrosecondsPerSecond;
  if (!reader.number(2, 0, 24, "hour", hour)) return false;
  if (reader.isDigit()) {
    if (!reader.number(2, 0, 59, "minute", minute)) return false;
    unit = 60 * kMicrosecondsPerSecond;
    if (reader.isDigit()) {
      if (!reader.number(2, 0, 60, "second", second)) return false;
      unit = kMicrosecondsPerSecond;
    }
  }
  if (hour == 24) reader.outOfRange("hour 24");
  if (second == 60) reader.outOfRange("second 60");
  *microseconds += int64_t{(hour * 60 + minute) * 60 + second} * kMicrosecondsPerSecond;
  return (!reader.accept('.') && !reader.accept(',')) || readFraction(reader, unit, microseconds);
}

// "Z", "+HH[MM]" or "-HH[MM]"; nothing at all is local time.
bool readZone(TimeReader &reader, bool isIso, int64_t *microseconds) {
  if (reader.accept('Z')) return reader.atEnd() || reader.malformed("octets after the end");
  if (reader.atEnd()) {
    reader.outOfRange("local time without offset from UTC");
    return true;
  }
  const bool east = reader.accept('+');
  if (!east && !reader.accept('-')) return reader.malformed("zone");
  uint32_t hour = 0;
  uint32_t minute = 0;
  if (!reader.number(2, 0, 23, "offset", hour)) return false;
  const bool needsMinutes = isIso && reader.accept(':');
  if ((needsMinutes || !reader.atEnd()) && !reader.number(2, 0, 59, "offset", minute)) return false;
  const int64_t offset = int64_t{60} * (hour * 60 + minute) * kMicrosecondsPerSecond;
  *microseconds += east ? -offset : offset;
  return reader.atEnd() || reader.malformed("octets after the end");
}

TimeForm finish(TimeReader &reader, bool wellFormed, int64_t microseconds, int64_t *result) {
  if (!wellFormed) return TimeForm::Malformed;
  if (microseconds < 0 || microseconds >= kTimeEnd) reader.outOfRange("outside the years 0000 to 9999");
  *result = microseconds;
  return reader.form;
}

bool readDate(TimeReader &reader, bool isIso, int64_t *microseconds) {
  uint32_t year = 0;
  uint32_t month = 0;
  uint32_t day = 0;
  if (!reader.number(4, 0, 9999, "year", year) || (isIso && !reader.accept('-') && !reader.malformed("date")) ||
      !reader.number(2, 1, 12, "month", month) || (isIso && !reader.accept('-') && !reader.malformed("date")) ||
      !reader.number(2, 1, daysInMonth(year, month), "day", day)) {
    return false;
  }
  *microseconds = daysSinceYear0(year, month, day) * kSecondsPerDay * kMicrosecondsPerSecond;
  return true;
}

void writeDigits(uint32_t value, int count, char *out) {
  for (int i = count; i-- > 0; value /= 10) out[i] = static_cast<char>('0' + value % 10);
}

struct Clock {
  Date date;
  uint32_t hour, minute, second, fraction;
};

Clock clockOf(int64_t microseconds) {
  const int64_t seconds = microseconds / kMicrosecondsPerSecond;
  const auto ofDay = static_cast<uint32_t>(seconds % kSecondsPerDay);
  return {dateOf(static_cast<uint32_t>(seconds / kSecondsPerDay)), ofDay / 3600, ofDay / 60 % 60, ofDay % 60,
          static_cast<uint32_t>(microseconds % kMicrosecondsPerSecond)};
}

// ".f" without trailing zeros, or nothing; returns its length.
uint32_t writeFraction(uint32_t fraction, char *out) {
  if (fraction == 0) return 0;
  out[0] = '.';
  writeDigits(fraction, 6, out + 1);
  uint32_t length = 7;
  while (out[length - 1] == '0') --length;
  return length;
}

// Eight digits as four numbers of two, the first in the lowest 16 bits; false when one is no digit.
bool readPairs(const uint8_t *digits, uint64_t *pairs) {
  uint64_t octets = 0;
  std::memcpy(&octets, digits, sizeof octets);
  if constexpr (std::endian::native == std::endian::big) octets = __builtin_bswap64(octets);
  constexpr uint64_t kHigh = 0xF0F0F0F0F0F0F0F0, kZeros = 0x3030303030303030, kSixes = 0x0606060606060606;
  if ((octets & kHigh) != kZeros || ((octets + kSixes) & kHigh) != kZeros) return false;
  octets -= kZeros;
  *pairs = (octets * 10 + (octets >> 8)) & 0x00FF00FF00FF00FF;
  return true;
}

// "YYYYMMDDHHMMSSZ", the form of nearly every time; anything else, valid or not, is left to the reader. Without a place
// for the result it is only checked.
bool readPlainTime(const uint8_t *content, uint32_t length, int64_t *microseconds) {
  uint64_t date = 0;
  uint64_t clock = 0;  // behind the day
  if (length != 15 || content[14] != 'Z' || !readPairs(content, &date) || !readPairs(content + 6, &clock)) return false;
  const auto pair = [](uint64_t pairs, int i) { return static_cast<uint32_t>(pairs >> 16 * i & 0xFF); };
  const uint32_t year = pair(date, 0) * 100 + pair(date, 1), month = pair(date, 2), day = pair(date, 3);
  const uint32_t hour = pair(clock, 1), minute = pair(clock, 2), second = pair(clock, 3);
  if (month < 1 || month > 12 || hour > 23 || minute > 59 || second > 59) return false;
  if (day < 1 || (day > 28 && day > daysInMonth(year, month))) return false;
  if (microseconds == nullptr) return true;
  const int64_t seconds = (hour * 60 + minute) * 60 + second;
  *microseconds = (daysSinceYear0(year, month, day) * kSecondsPerDay + seconds) * kMicrosecondsPerSecond;
  return true;
}

}  // namespace

TimeForm readTime(const uint8_t *content, uint32_t length, int64_t *microseconds, Text &reason) {
  if (readPlainTime(content, length, microseconds)) return TimeForm::Valid;
  TimeReader reader(content, content + length, reason);
  int64_t time = 0;
  const bool wellFormed = readDate(reader, false, &time) && readClock(reader, &time) && readZone(reader, false, &time);
  return finish(reader, wellFormed, time, microseconds);
}

bool isTimeContent(const uint8_t *content, uint32_t length) {
  if (readPlainTime(content, length, nullptr)) return true;
  int64_t ignored = 0;
  Text reason;
  return readTime(content, length, &ignored, reason) != TimeForm::Malformed;
}

uint32_t writeTime(int64_t microseconds, uint8_t *content) {
  const Clock clock = clockOf(microseconds);
  char text[kTimeLength];
  writeDigits(clock.date.year, 4, text);
  writeDigits(clock.date.month, 2, text + 4);
  writeDigits(clock.date.day, 2, text + 6);
  writeDigits(clock.hour, 2, text + 8);
  writeDigits(clock.minute, 2, text + 10);
  writeDigits(clock.second, 2, text + 12);
  const uint32_t length = 14 + writeFraction(clock.fraction, text + 14);
  text[length] = 'Z';
  std::memcpy(content, text, length + 1);
  return length + 1;
}

}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t GtimeFromText(const char *text, Gtime *time, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (text == nullptr || time == nullptr) return call.fail(AsnError_NullParameter, "no text or place for the time");
  Text reason;
  const auto *begin = reinterpret_cast<const uint8_t *>(text);
  TimeReader reader(begin, begin + std::strlen(text), reason);
  int64_t microseconds = 0;
  uint32_t clock[3] = {};
  bool wellFormed = readDate(reader, true, &microseconds) && (reader.accept('T') || reader.malformed("T")) &&
                    reader.number(2, 0, 23, "hour", clock[0]) && (reader.accept(':') || reader.malformed("clock")) &&
                    reader.number(2, 0, 59, "minute", clock[1]) && (reader.accept(':') || reader.malformed("clock")) &&
                    reader.number(2, 0, 59, "second", clock[2]);
  if (wellFormed) {
    microseconds += int64_t{(clock[0] * 60 + clock[1]) * 60 + clock[2]} * kMicrosecondsPerSecond;
    wellFormed = (!reader.accept('.') || readFraction(reader, kMicrosecondsPerSecond, &microseconds)) &&
                 readZone(reader, true, &microseconds);
  }
  switch (finish(reader, wellFormed, microseconds, &microseconds)) {
    case TimeForm::Malformed: return call.fail(AsnError_Time, reason);
    case TimeForm::OutOfRange: return call.fail(AsnError_Range, reason);
    default: break;
  }
  *time = gtimeOf(microseconds);
  return 0;
}

int32_t GtimeToText(const Gtime *time, char *text, uint32_t size, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (time == nullptr || text == nullptr) return call.fail(AsnError_NullParameter, "no time or place for the text");
  if (!isTime(*time)) return call.fail(AsnError_Range, "the time lies outside the years 0000 to 9999");
  if (size < 28) return call.fail(AsnError_Range, "the text needs 28 octets");
  const Clock clock = clockOf(microsecondsOf(*time));
  std::memcpy(text, "0000-00-00T00:00:00", 19);
  writeDigits(clock.date.year, 4, text);
  writeDigits(clock.date.month, 2, text + 5);
  writeDigits(clock.date.day, 2, text + 8);
  writeDigits(clock.hour, 2, text + 11);
  writeDigits(clock.minute, 2, text + 14);
  writeDigits(clock.second, 2, text + 17);
  const uint32_t length = 19 + writeFraction(clock.fraction, text + 19);
  text[length] = 'Z';
  text[length + 1] = '\0';
  return 0;
}

int32_t GtimeFromUnix(int64_t seconds, uint32_t microseconds, Gtime *time, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (time == nullptr) return call.fail(AsnError_NullParameter, "no place for the time");
  const bool fits = microseconds < kMicrosecondsPerSecond && seconds >= -kUnixEpochSeconds &&
                    seconds < kTimeEnd / kMicrosecondsPerSecond - kUnixEpochSeconds;
  if (!fits) return call.fail(AsnError_Range, "the time lies outside the years 0000 to 9999");
  *time = gtimeOf((seconds + kUnixEpochSeconds) * kMicrosecondsPerSecond + microseconds);
  return 0;
}

int32_t GtimeToUnix(const Gtime *time, int64_t *seconds, uint32_t *microseconds, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (time == nullptr || seconds == nullptr || microseconds == nullptr) {
    return call.fail(AsnError_NullParameter, "no time or place for the seconds");
  }
  if (!isTime(*time)) return call.fail(AsnError_Range, "the time lies outside the years 0000 to 9999");
  *seconds = microsecondsOf(*time) / kMicrosecondsPerSecond - kUnixEpochSeconds;
  *microseconds = static_cast<uint32_t>(microsecondsOf(*time) % kMicrosecondsPerSecond);
  return 0;
}
