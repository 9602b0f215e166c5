// ReasonFlags ::= BIT STRING {                                   RFC 5280 4.2.1.13
//     unused (0), keyCompromise (1), cACompromise (2), affiliationChanged (3), superseded (4),
//     cessationOfOperation (5), certificateHold (6), privilegeWithdrawn (7), aACompromise (8) }
//
// The first seven are read.
#pragma once

#include "core/operation.h"

namespace ketra {

// Reads an optional element into the pool. Absent flags leave pointer and length as they are.
int32_t getReasonFlags(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                       Literal getElementMessage, AsnBitOpt *reasons);

}  // namespace ketra
