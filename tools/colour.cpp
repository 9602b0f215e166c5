#include "colour.hpp"

namespace tool {
namespace {

// The place for the setting that the streams keep for us.
int slot() {
  static const int kSlot = std::ios_base::xalloc();
  return kSlot;
}

const char *sequence(Colour colour) {
  switch (colour) {
    case Colour::None: return "\x1b[0m";
    case Colour::Heading: return "\x1b[1m";
    case Colour::Name: return "\x1b[36m";
    case Colour::Notable: return "\x1b[33m";
    case Colour::Bad: return "\x1b[31m";
  }
  return "";
}

}  // namespace

void setColoured(std::ostream &out, bool isColoured) { out.iword(slot()) = isColoured ? 1 : 0; }

std::ostream &operator<<(std::ostream &out, Colour colour) {
  return out.iword(slot()) != 0 ? out << sequence(colour) : out;
}

}  // namespace tool
