// Both spellings find the headers, whatever the user's own folders are called.
#include <ketra/ketra.hpp>
#include "ketra/ketra.hpp"

int main() { return ketra::Extensions().get<ketra::BasicConstraints>() ? 1 : 0; }
