// Every C++ header stands alone; this file is compiled once per header, as C++17 with warnings as errors.
#include KETRA_HEADER
