// IssuingDistributionPoint ::= SEQUENCE {                        RFC 5280 5.2.5
//     distributionPoint      [0] EXPLICIT DistributionPointName OPTIONAL,
//     onlyContainsUserCerts  [1] BOOLEAN DEFAULT FALSE,
//     onlyContainsCACerts    [2] BOOLEAN DEFAULT FALSE,
//     onlySomeReasons        [3] ReasonFlags OPTIONAL,
//     indirectCRL            [4] BOOLEAN DEFAULT FALSE }
//
// No default is applied in either direction.

#include "core/frames.h"
#include "extensions/reason_flags.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kPoint{&X509Objid_IssuingDistributionPoint, schema::Entry::IssuingDistributionPoint, "/"};
constexpr int32_t kCritical = 1;

int32_t setBool(const Operation &op, AsnObject work, AsnValue root, const char *path, const AsnBoolOpt &boolean,
                Literal message) {
  if (boolean.option != 1) return 0;
  return op.failed(AsnSetBoolDER(work, root, path, boolean.value, op.err()), message) ? -1 : 0;
}

}  // namespace

int32_t KetraObjectSsetIssuingDistributionPoint(KetraObject extensions, const KetraIssuingDistributionPoint *value,
                                                AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    const auto &[name, userCerts, caCerts, reasons, indirect] = *value;
    if (op.failed(X509MUtilCheckDistributionPointNameOpt(&name, err), "Call X509MUtilCheckDistributionPointNameOpt") ||
        op.failed(AsnCheckBoolOptBER(&userCerts, err), "Call AsnCheckBoolOptBER(onlyContainsUserCerts)") ||
        op.failed(AsnCheckBoolOptBER(&caCerts, err), "Call AsnCheckBoolOptBER(onlyContainsCACerts)") ||
        op.failed(AsnCheckBitOptBER(&reasons, err), "Call AsnCheckBitOptBER") ||
        op.failed(AsnCheckBoolOptBER(&indirect, err), "Call AsnCheckBoolOptBER(indirectCRL)")) {
      return -1;
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    const auto &[name, userCerts, caCerts, reasons, indirect] = *value;
    if (name.option == 1) {
      const int32_t set = X509MUtilSetDistributionPointName(work, root, "distributionPoint", &name.value, err);
      if (op.failed(set, "Call X509MUtilSetDistributionPointName")) return set;
    }
    if (setBool(op, work, root, "onlyContainsUserCerts", userCerts, "Call AsnSetBoolDER(onlyContainsUserCerts)") != 0 ||
        setBool(op, work, root, "onlyContainsCACerts", caCerts, "Call AsnSetBoolDER(onlyContainsCACerts)") != 0) {
      return -1;
    }
    if (reasons.option == 1 &&
        op.failed(AsnSetBitDER(work, root, "onlySomeReasons", &reasons.value, err), "Call AsnSetBitDER")) {
      return -1;
    }
    return setBool(op, work, root, "indirectCRL", indirect, "Call AsnSetBoolDER(indirectCRL)");
  };
  return setFrame(op, extensions, value, kPoint, kCritical, check, fill);
}

int32_t KetraObjectSgetIssuingDistributionPoint(KetraObject extensions, KetraIssuingDistributionPoint *value,
                                                AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, value, kPoint, [&](AsnObject work, AsnValue root) {
    auto &[name, userCerts, caCerts, reasons, indirect] = *value;
    AsnMemObject pool = extensions->pool;
    const int32_t named = X509MUtilSgetDistributionPointNameOpt(pool, work, root, "distributionPoint", &name, err);
    if (op.failed(named, "Call X509MUtilSgetDistributionPointNameOpt")) return named;
    if (op.failed(AsnGetOptBoolBER(work, root, "onlyContainsUserCerts", &userCerts, err),
                  "Call AsnGetOptBoolBER(onlyContainsUserCerts)") ||
        op.failed(AsnGetOptBoolBER(work, root, "onlyContainsCACerts", &caCerts, err),
                  "Call AsnGetOptBoolBER(onlyContainsCACerts)") ||
        getReasonFlags(op, pool, work, root, "onlySomeReasons", "Call AsnGetElement", &reasons) != 0 ||
        op.failed(AsnGetOptBoolBER(work, root, "indirectCRL", &indirect, err), "Call AsnGetOptBoolBER(indirectCRL)")) {
      return -1;
    }
    return 0;
  });
}

int32_t KetraObjectSgetIssuingDistributionPointCalDistributionPointName(KetraObject extensions, int32_t *choice,
                                                                        uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(choice)) return -1;
  return getFrame(op, extensions, count, kPoint, [&](AsnObject work, AsnValue root) {
    const int32_t counted = X509MUtilCalDistributionPointName(work, root, "distributionPoint", choice, count, err);
    return op.failed(counted, "Call X509MUtilCalDistributionPointName") ? counted : 0;
  });
}
