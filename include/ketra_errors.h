/* Every error code that libketra sets: name, code, function, reason (the text of its trace entry), meaning.
 * 0x014 in the top 12 bits, a function number in the next 12, the reason in the last 8. */
#ifndef KETRA_ERRORS_H
#define KETRA_ERRORS_H

/* X(name, code, function, reason, meaning) */
#define KETRA_ERROR_LIST(X)                                                                          \
  X(KetraError_NullParameter, 0x01460F02, "any", "None parameter",                                   \
    "a required handle, structure or out-parameter is null")                                         \
  X(KetraError_CriticalAbsent, 0x0146F104, "ketraObjectSgetCritical", "None extension",              \
    "the extension is not in the Extensions object")                                                 \
  X(KetraError_ExtensionAbsent, 0x0146F204, "ketraObjectSgetValueByObjid", "None extension",         \
    "the extension is not in the Extensions object")                                                 \
  X(KetraError_SetBasicConstraintsPathLen, 0x01464852, "KetraObjectSsetBasicConstraints", "pathLen", \
    "pathLenConstraint is present and negative")                                                     \
  X(KetraError_GetBasicConstraintsPathLen, 0x0146B952, "KetraObjectSgetBasicConstraints", "pathLen", \
    "the stored pathLenConstraint is negative")                                                      \
  X(KetraError_SetKeyUsageBitLength, 0x0146203A, "KetraObjectSsetKeyUsage", "bitlength",             \
    "more than nine key usage bits")

/* A row for AsnErrorText: static const AsnErrorMeaning meanings[] = {KETRA_ERROR_LIST(KETRA_ERROR_MEANING)}; */
#define KETRA_ERROR_MEANING(name, code, function, reason, meaning) {code, meaning},

#define KETRA_ERROR_CONSTANT(name, code, function, reason, meaning) name = code,
enum { KETRA_ERROR_LIST(KETRA_ERROR_CONSTANT) };

#endif
