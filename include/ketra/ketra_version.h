/** @file
 * The version of the headers, for the preprocessor; KetraVersion tells that of the library which runs. */
#ifndef KETRA_VERSION_H
#define KETRA_VERSION_H

/** MAJOR.MINOR.PATCH, as numbers and as text. Below 1.0, minor versions may be incompatible. @{ */
#define KETRA_VERSION_MAJOR 0
#define KETRA_VERSION_MINOR 2
#define KETRA_VERSION_PATCH 0
#define KETRA_VERSION_TEXT "0.2.0"
/** @} */

#endif
