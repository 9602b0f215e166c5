/* Stores a subjectAltName and reads it back. */
#include <stdio.h>

#include "ketra/ketra_chains.h"

static int run(KetraObject extensions, KetraChains *chains, AsnErrorBlock *err) {
  static const uint8_t kHost[] = "www.example", kAddress[] = {192, 0, 2, 1};
  const X509GenNameParam params[] = {
      {.type = X509GenName_DNSName, .dNSName = {kHost, sizeof kHost - 1}},
      {.type = X509GenName_IPAddress, .iPAddress = {kAddress, sizeof kAddress}},
  };
  const X509GenNameChain *node;
  X509GenNameParam name;
  X509GenNames names;

  if (KetraChainsMakeNames(chains, params, 2, &names.genNames, err) ||
      KetraObjectSsetSubjectAltName(extensions, 0, &names, err) ||
      KetraChainsReadSubjectAltName(chains, extensions, &names, err))
    return -1;
  for (node = names.genNames; node != NULL; node = node->next) {
    if (X509GenNameObjectGetName(node->genName, &name, err)) return -1;
    if (name.type == X509GenName_DNSName)
      printf("DNS %.*s\n", (int)name.dNSName.length, (const char *)name.dNSName.octets);
    if (name.type == X509GenName_IPAddress) printf("IP address of %u octets\n", name.iPAddress.length);
  }
  return 0;
}

int main(void) {
  KetraChains chains = {0};
  KetraObject extensions = NULL;
  AsnErrorBlock err;
  char text[1024];
  int failed;

  AsnErrorReset(&err);
  failed = KetraObjectCreate(&extensions, &err) || run(extensions, &chains, &err);
  if (failed && AsnErrorText(&err, NULL, 0, text, sizeof text) > 0) puts(text);
  KetraChainsFree(&chains);
  KetraObjectDestroy(extensions, NULL);
  return failed;
}
