/// @file
/// All of the C++ library: every typed extension, the objects that hold them, and what is written once over all types.
/// Header only; C++17. What needs the libraries is ketra/c.hpp.
#pragma once

#include "ketra/asn1/build.hpp"
#include "ketra/asn1/der.hpp"
#include "ketra/asn1/explain.hpp"
#include "ketra/asn1/walk.hpp"
#include "ketra/extensions.hpp"
