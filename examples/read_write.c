/* Builds the extensions of a CA certificate, encodes them, and reads one back: the C interface. */
#include <stdio.h>
#include <stdlib.h>

#include "ketra.h"
#include "ketra_runtime.h"

int main(void) {
  AsnErrorBlock err;
  KetraObject extensions = NULL;
  AsnEncodedData der;
  KetraBasicConstraints ca = {{1, 1}, {0, 1}}, read;
  char text[1024];

  AsnErrorReset(&err);
  if (KetraObjectCreate(&extensions, &err) != 0 || KetraObjectSsetBasicConstraints(extensions, 1, &ca, &err) != 0 ||
      KetraObjectGetPduDER(extensions, &der, &err) != 0 ||
      KetraObjectSgetBasicConstraints(extensions, &read, &err) != 0) {
    AsnErrorText(&err, NULL, 0, text, sizeof text);
    fprintf(stderr, "%s\n", text);
    return EXIT_FAILURE;
  }
  printf("%u octets, cA %d, pathLenConstraint %d\n", (unsigned)der.length, (int)read.cA.value,
         (int)read.pathLenConstraint.value);
  return KetraObjectDestroy(extensions, NULL) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
