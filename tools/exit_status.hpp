#pragma once

namespace tool {

inline constexpr int kAllGood = 0;
inline constexpr int kInputFaulty = 1;  // all was read, and some of it is wrong
inline constexpr int kNotPossible =
    2;  // a file that cannot be read, results that cannot be written, no memory, wrong usage

constexpr int exitStatus(bool allRead, bool allGood) {
  return !allRead ? kNotPossible : allGood ? kAllGood : kInputFaulty;
}

}  // namespace tool
