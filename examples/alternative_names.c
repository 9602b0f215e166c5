/* Stores a subjectAltName and reads it back: count, prepare a chain, get. */
#include <stdio.h>

#include "ketra/ketra.h"
#include "ketra/ketra_runtime.h"

enum { kMost = 2 };

static int run(KetraObject extensions, X509GenNameChain *chain, AsnErrorBlock *err) {
  static const uint8_t kHost[] = "www.example", kAddress[] = {192, 0, 2, 1};
  const X509GenNameParam host = {.type = X509GenName_DNSName, .dNSName = {kHost, sizeof kHost - 1}};
  const X509GenNameParam address = {.type = X509GenName_IPAddress, .iPAddress = {kAddress, sizeof kAddress}};
  const X509GenNames names = {chain};
  X509GenNameParam name;
  uint32_t count, i;

  if (X509GenNameObjectSetName(chain[0].genName, &host, err) ||
      X509GenNameObjectSetName(chain[1].genName, &address, err) ||
      KetraObjectSsetSubjectAltName(extensions, 0, &names, err))
    return -1;
  if (KetraObjectSgetSubjectAltNameCalGenName(extensions, &count, err) || count > kMost ||
      KetraObjectSgetSubjectAltName(extensions, &names, err))
    return -1;
  for (i = 0; i < count; i++) {
    if (X509GenNameObjectGetName(chain[i].genName, &name, err)) return -1;
    if (name.type == X509GenName_DNSName)
      printf("DNS %.*s\n", (int)name.dNSName.length, (const char *)name.dNSName.octets);
    if (name.type == X509GenName_IPAddress) printf("IP address of %u octets\n", name.iPAddress.length);
  }
  return 0;
}

int main(void) {
  X509GenNameChain chain[kMost] = {{&chain[1], NULL}, {NULL, NULL}};
  KetraObject extensions = NULL;
  AsnErrorBlock err;
  char text[1024];
  int i, failed;

  AsnErrorReset(&err);
  failed = KetraObjectCreate(&extensions, &err) || X509GenNameObjectCreate(&chain[0].genName, &err) ||
           X509GenNameObjectCreate(&chain[1].genName, &err) || run(extensions, chain, &err);
  if (failed && AsnErrorText(&err, NULL, 0, text, sizeof text) > 0) puts(text);
  for (i = 0; i < kMost; i++) X509GenNameObjectDestroy(chain[i].genName, NULL);
  KetraObjectDestroy(extensions, NULL);
  return failed;
}
