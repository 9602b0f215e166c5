/// @file
/// Points in time.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

/// A point in time of the years 0000 to 9999.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

namespace detail {

inline Gtime gtime(Time time) {
  constexpr int64_t kMicroseconds = 1'000'000;
  int64_t seconds = time.time_since_epoch().count() / kMicroseconds;
  int64_t fraction = time.time_since_epoch().count() % kMicroseconds;
  if (fraction < 0) {
    --seconds;
    fraction += kMicroseconds;
  }
  Gtime c{};
  run([&](AsnErrorBlock *err) { return GtimeFromUnix(seconds, static_cast<uint32_t>(fraction), &c, err); });
  return c;
}

inline Time time(const Gtime &c) {
  int64_t seconds = 0;
  uint32_t fraction = 0;
  run([&](AsnErrorBlock *err) { return GtimeToUnix(&c, &seconds, &fraction, err); });
  return Time(std::chrono::seconds(seconds) + std::chrono::microseconds(fraction));
}

inline GtimeOpt optional(const std::optional<Time> &value) { return {value ? gtime(*value) : Gtime{}, value ? 1 : 0}; }
inline std::optional<Time> optional(const GtimeOpt &c) {
  return c.option == 1 ? std::optional<Time>(time(c.value)) : std::nullopt;
}

}  // namespace detail

/// Times as text of ISO 8601, "2026-01-31T23:59:59Z", with up to six digits of fraction; read with an offset ("+01:00")
/// too. What is no such text, and a time outside those years, is an Error.
/// @{
inline std::string timeText(Time time) {
  const Gtime c = detail::gtime(time);
  char text[32];
  detail::run([&](AsnErrorBlock *err) { return GtimeToText(&c, text, sizeof text, err); });
  return text;
}
inline Time parseTime(const std::string &text) {
  if (text.find('\0') != std::string::npos) detail::fail(AsnError_Time, "ketra::parseTime", "an embedded NUL");
  Gtime c{};
  detail::run([&](AsnErrorBlock *err) { return GtimeFromText(text.c_str(), &c, err); });
  return detail::time(c);
}
/// @}

}  // namespace face
}  // namespace ketra
