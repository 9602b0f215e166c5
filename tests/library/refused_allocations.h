// Requests of the C++ side to the system, refused on demand.
#pragma once

namespace ketra::test {

// How many more succeed until one is refused; -1: none is.
extern int allocationsLeft;

}  // namespace ketra::test
