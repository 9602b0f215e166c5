/// @file
/// All of the C++ library: every typed extension, certificates, CRLs and requests, and what is written once over all
/// types.
/// Header only; C++17. What needs the libraries is ketra/c.hpp.
#pragma once

#include "ketra/asn1/build.hpp"
#include "ketra/asn1/der.hpp"
#include "ketra/asn1/explain.hpp"
#include "ketra/asn1/walk.hpp"
#include "ketra/extensions.hpp"
#include "ketra/objects/certificate.hpp"
#include "ketra/objects/crl.hpp"
#include "ketra/objects/pem.hpp"
#include "ketra/objects/permits.hpp"
#include "ketra/objects/pkcs7.hpp"
#include "ketra/objects/recognise.hpp"
#include "ketra/objects/request.hpp"
