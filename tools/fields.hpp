#pragma once

#include "problem.hpp"

namespace tool {

// The fields of an extension as JSON, from which the text form is rendered too. Foreign text in it is escaped.
struct Fields {
  Json json;
  bool allRead = true;  // false: a part is unreadable, which the JSON tells
};

}  // namespace tool
