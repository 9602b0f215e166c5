// Colours in what is printed: out << Colour::Bad << "rejected" << Colour::None. They are left out unless the stream has
// been told that it is coloured.
#pragma once

#include <ostream>

namespace tool {

enum class Colour { None, Heading, Name, Notable, Bad };

void setColoured(std::ostream &out, bool isColoured);
std::ostream &operator<<(std::ostream &out, Colour colour);

}  // namespace tool
