/* Every C header stands alone; this file is compiled once per header, as C11 with warnings as errors. */
#include KETRA_HEADER
int ketra_header_stands_alone(void);
int ketra_header_stands_alone(void) { return 0; }
