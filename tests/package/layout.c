/* The layouts that callers compile against. A change here breaks every program that was built before it. */
#include <stddef.h>

#include "ketra.h"
#include "ketra_runtime.h"

#define OFFSET(type, field, expected) _Static_assert(offsetof(type, field) == (expected), #type "." #field)
#define SIZE(type, expected) _Static_assert(sizeof(type) == (expected), #type)
enum { kPointer = sizeof(void *) };

SIZE(AsnType, 16 + kPointer);
SIZE(Gtime, 8);
SIZE(GtimeOpt, 12);
SIZE(AsnBoolOpt, 8);
SIZE(AsnOct, 2 * kPointer);
SIZE(AsnOctOpt, 3 * kPointer);
SIZE(KetraBasicConstraints, 16);
OFFSET(KetraBasicConstraints, pathLenConstraint, 8);
OFFSET(KetraExtension, critical, 2 * kPointer);
OFFSET(KetraExtension, criticalOption, 2 * kPointer + 4);
OFFSET(KetraExtension, value, 2 * kPointer + 8);
OFFSET(struct KetraObjectRecord, structuredCache, 6 * kPointer);
OFFSET(AsnErrorBlock, code, 0);
SIZE(X509DirStr, 3 * kPointer);
SIZE(X509DirStrOpt, 4 * kPointer);
OFFSET(X509DirStrOpt, option, 3 * kPointer);
SIZE(X509GenNameParam, 8 * kPointer);
OFFSET(X509GenNameParam, dNSName, kPointer);
OFFSET(X509GenNameParam, otherName.value.option, 5 * kPointer);
OFFSET(X509GenNameParam, ediPartyName.partyName, 5 * kPointer);
OFFSET(X509GenNameChain, genName, kPointer);
OFFSET(X509GenNamesOpt, option, kPointer);

int main(void) { return 0; }
