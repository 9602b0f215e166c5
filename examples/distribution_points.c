/* Says where the CRLs of a CA are, by both kinds of names, and reads it back. */
#include <stdio.h>

#include "ketra/ketra_chains.h"

static int set_points(KetraObject extensions, KetraChains *chains, AsnErrorBlock *err) {
  static const uint8_t kUri[] = "http://ca.example/ca.crl", kCrl1[] = {0x0C, 0x05, 'C', 'R', 'L', ' ', '1'};
  static const uint8_t kKeyCompromise[] = {0x80 >> 1};
  static const uint32_t kCommonName[] = {2, 5, 4, 3};
  const X509GenNameParam uri = {.type = X509GenName_UniformResourceIdentifier,
                                .uniformResourceIdentifier = {kUri, sizeof kUri - 1}};
  KetraDistributionPoint *points;
  X509DistributionPointName full = {.type = X509DistributionPointName_FullName};
  X509DistributionPointName relative = {.type = X509DistributionPointName_NameRelativeToCRLIssuer};

  if (KetraChainsMakeNames(chains, &uri, 1, &full.fullName, err) ||
      KetraChainsMakeAttributes(chains, 1, &relative.nameRelativeToCRLIssuer, err) ||
      KetraChainsMakeDistributionPoints(chains, 2, &points, err))
    return -1;
  relative.nameRelativeToCRLIssuer->type = (Objid){kCommonName, 4};
  relative.nameRelativeToCRLIssuer->value = (AsnEncodedData){kCrl1, sizeof kCrl1};
  points[0].distributionPoint = (X509DistributionPointNameOpt){full, 1};
  points[0].reasons = (AsnBitOpt){{kKeyCompromise, 2}, 1};
  points[1].distributionPoint = (X509DistributionPointNameOpt){relative, 1};
  return KetraObjectSsetCRLDistributionPoints(extensions, 0, points, err);
}

static int print_name(const X509DistributionPointName *name, AsnErrorBlock *err) {
  const X509AttributeTypeAndValue *attribute;
  const X509GenNameChain *node;
  X509GenNameParam param;

  if (name->type == X509DistributionPointName_NameRelativeToCRLIssuer) {
    for (attribute = name->nameRelativeToCRLIssuer; attribute != NULL; attribute = attribute->next)
      printf("relative name, value of %u octets\n", attribute->value.length);
    return 0;
  }
  for (node = name->fullName; node != NULL; node = node->next) {
    if (X509GenNameObjectGetName(node->genName, &param, err)) return -1;
    if (param.type == X509GenName_UniformResourceIdentifier)
      printf("%.*s\n", (int)param.uniformResourceIdentifier.length,
             (const char *)param.uniformResourceIdentifier.octets);
  }
  return 0;
}

static int print_points(KetraObject extensions, KetraChains *chains, AsnErrorBlock *err) {
  KetraDistributionPoint *point;

  if (KetraChainsReadCRLDistributionPoints(chains, extensions, &point, err)) return -1;
  for (; point != NULL; point = point->next) {
    if (point->distributionPoint.option == 1 && print_name(&point->distributionPoint.value, err)) return -1;
    if (point->reasons.option == 1) puts("  for some reasons only");
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
  failed = KetraObjectCreate(&extensions, &err) || set_points(extensions, &chains, &err) ||
           print_points(extensions, &chains, &err);
  if (failed && AsnErrorText(&err, NULL, 0, text, sizeof text) > 0) puts(text);
  KetraChainsFree(&chains);
  KetraObjectDestroy(extensions, NULL);
  return failed;
}
