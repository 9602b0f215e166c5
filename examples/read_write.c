/* Encodes the extensions of a CA certificate and reads one of them back. */
#include <stdio.h>

#include "ketra/ketra.h"
#include "ketra/ketra_runtime.h"

int main(void) {
  KetraBasicConstraints ca = {.cA = {1, 1}, .pathLenConstraint = {0, 1}};
  KetraObject extensions = NULL;
  AsnEncodedData der;
  AsnErrorBlock err;
  char text[1024];

  AsnErrorReset(&err);
  if (KetraObjectCreate(&extensions, &err) == 0 && KetraObjectSsetBasicConstraints(extensions, 1, &ca, &err) == 0 &&
      KetraObjectGetPduDER(extensions, &der, &err) == 0 && KetraObjectSgetBasicConstraints(extensions, &ca, &err) == 0)
    printf("%u octets, pathLenConstraint %d\n", der.length, ca.pathLenConstraint.value);
  else if (AsnErrorText(&err, NULL, 0, text, sizeof text) > 0)
    puts(text);
  KetraObjectDestroy(extensions, NULL);
  return err.code != 0;
}
