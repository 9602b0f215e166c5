/** @file
 * The attribute library: the Attributes object, a list of attributes (X.501 8.2). The house rules of @ref runtime hold
 * here too. */
#ifndef KETRA_CONTRACTS_ATTRIBUTES_H
#define KETRA_CONTRACTS_ATTRIBUTES_H

#include "ketra/contracts/asn1.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup runtime
 * @{ */

/** @defgroup attributes Attributes
 * A list of attributes, each of a type and one value or more (X.501 8.2).
 * @{ */

/** Attributes object. */
typedef struct X509AttributesObjectRecord *X509AttributesObject;

/** @} */

/** @addtogroup errors
 * @{ */

/** The codes of Attributes objects: X(name, code, meaning). */
#define X509_ATTRIBUTES_ERROR_LIST(X)                                                                       \
  X(X509AttributesError_NullParameter, 0x02520002, "a required object, structure or out-parameter is null") \
  X(X509AttributesError_Index, 0x02520003, "no attribute, or no value of it, has this index")               \
  X(X509AttributesError_Empty, 0x02520004, "an attribute has at least one value, a list one attribute")

/** The codes of the list above. */
enum { X509_ATTRIBUTES_ERROR_LIST(ASN_ERROR_CONSTANT) };

/** @} */

/** @addtogroup attributes
 * @{ */

/** The attributes in DER: SEQUENCE OF Attribute. The octets belong to the object and live until it is changed or
 * destroyed. An object without attributes has no encoding (X509AttributesError_Empty). */
KETRA_RUNTIME_API int32_t X509AttributesObjectGetPduDER(X509AttributesObject attributes, AsnEncodedData *encoding,
                                                        AsnErrorBlock *err);
/** Replaces the attributes by those that are encoded, which are copied. On failure the object is unchanged. */
KETRA_RUNTIME_API int32_t X509AttributesObjectSetPduBER(X509AttributesObject attributes, const AsnEncodedData *encoding,
                                                        AsnErrorBlock *err);

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
