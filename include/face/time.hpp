// Points in time.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "face/base.hpp"

namespace ketra {

// Of the years 0000 to 9999.
using Time = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

namespace detail {

inline Gtime gtime(Time time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const auto fraction = static_cast<uint32_t>((time - seconds).count());
  Gtime c{};
  run([&](AsnErrorBlock *err) { return GtimeFromUnix(seconds.time_since_epoch().count(), fraction, &c, err); });
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

}  // namespace ketra
