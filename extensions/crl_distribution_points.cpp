// CRLDistributionPoints ::= SEQUENCE SIZE (1..MAX) OF DistributionPoint    RFC 5280 4.2.1.13
// DistributionPoint ::= SEQUENCE {
//     distributionPoint  [0] EXPLICIT DistributionPointName OPTIONAL,
//     reasons            [1] ReasonFlags OPTIONAL,
//     cRLIssuer          [2] GeneralNames OPTIONAL }

#include "core/frames.h"
#include "core/member_path.h"
#include "extensions/reason_flags.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kPoints{&X509Objid_CRLDistributionPoints, schema::Entry::CRLDistributionPoints, "/"};

int32_t setPoint(const Operation &op, AsnObject work, AsnValue element, const KetraDistributionPoint &point) {
  AsnErrorBlock *const err = op.err();
  const auto &[next, name, reasons, issuer] = point;
  if (name.option == 1) {
    const int32_t set = X509MUtilSetDistributionPointName(work, element, "distributionPoint", &name.value, err);
    if (op.failed(set, "Call X509MUtilSetDistributionPointName")) return set;
  }
  if (reasons.option == 1 &&
      op.failed(AsnSetBitDER(work, element, "reasons", &reasons.value, err), "Call AsnSetBitDER")) {
    return -1;
  }
  if (issuer.option == 1) {
    const int32_t set = X509MUtilSetGenNamesDER(work, element, "cRLIssuer", issuer.genNames, err);
    if (op.failed(set, "Call X509MUtilSetGenNamesDER")) return set;
  }
  return 0;
}

int32_t getIssuer(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue list, const char *path,
                  X509GenNamesOpt *issuer) {
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, list, path, &element, op.err()), "Call AsnGetElement(cRLIssuer)")) return -1;
  issuer->option = element != nullptr ? 1 : 0;
  if (element == nullptr) return 0;
  const int32_t got = X509MUtilSgetGenNamesBER(pool, work, element, "/", issuer->genNames, op.err());
  return op.failed(got, "Call X509MUtilSgetGenNamesBER") ? got : 0;
}

int32_t getPoint(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t number,
                 KetraDistributionPoint *point) {
  const int32_t named = X509MUtilSgetDistributionPointNameOpt(
      pool, work, list, MemberPath(number, "/distributionPoint"), &point->distributionPoint, op.err());
  if (op.failed(named, "Call X509MUtilSgetDistributionPointNameOpt")) return named;
  const int32_t reasoned = getReasonFlags(op, pool, work, list, MemberPath(number, "/reasons"),
                                          "Call AsnGetElement(reasons)", &point->reasons);
  if (reasoned != 0) return reasoned;
  return getIssuer(op, pool, work, list, MemberPath(number, "/cRLIssuer"), &point->cRLIssuer);
}

}  // namespace

int32_t X509MUtilCheckCRLDistributionPoints(const KetraDistributionPoint *points, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (points == nullptr) return op.reject(KetraError_CheckDistributionPointsEmpty, "Count = 0");
  for (const KetraDistributionPoint *point = points; point != nullptr; point = point->next) {
    if (op.failed(X509MUtilCheckDistributionPointNameOpt(&point->distributionPoint, err),
                  "Call X509MUtilCheckDistributionPointNameOpt")) {
      return -1;
    }
    if (op.failed(AsnCheckBitOptBER(&point->reasons, err), "Call AsnCheckBitOptBER")) return -1;
    if (op.failed(X509MUtilCheckGenNamesOpt(&point->cRLIssuer, err), "Call X509MUtilCheckGenNamesOpt")) return -1;
  }
  return 0;
}

int32_t KetraObjectSsetCRLDistributionPoints(KetraObject extensions, int32_t critical,
                                             const KetraDistributionPoint *points, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    const int32_t checked = X509MUtilCheckCRLDistributionPoints(points, err);
    return op.failed(checked, "Call X509MUtilCheckCRLDistributionPoints") ? -1 : 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    uint32_t number = 0;
    for (const KetraDistributionPoint *point = points; point != nullptr; point = point->next) {
      AsnValue element = nullptr;
      const int32_t made = AsnMakeElement(work, root, MemberPath(++number), &element, err);
      if (op.failed(made, "Call AsnMakeElement")) return -1;
      if (const int32_t set = setPoint(op, work, element, *point); set != 0) return set;
    }
    return 0;
  };
  return setFrame(op, extensions, kChain, kPoints, critical, check, fill);
}

int32_t KetraObjectSgetCRLDistributionPoints(KetraObject extensions, KetraDistributionPoint *points,
                                             AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, kChain, kPoints, [&](AsnObject work, AsnValue root) {
    AsnValue list = nullptr;
    uint32_t count = 0;
    if (op.failed(AsnGetElement(work, root, "/", &list, err), "Call AsnGetElement(/)")) return -1;
    if (list == nullptr) return op.reject(KetraError_GetDistributionPointsEmpty, "CRLDistributionPoints");
    if (op.failed(AsnCalCountOfSequence(work, list, nullptr, &count, err), "Call AsnCalCountOfSequence")) return -1;
    if (count == 0) return op.reject(KetraError_GetDistributionPointsEmpty, "Count of SequenceOf = 0");
    KetraDistributionPoint *point = points;
    for (uint32_t i = 0; i < count; ++i, point = point->next) {
      if (point == nullptr) {
        return op.reject(KetraError_DistributionPointsChainShort, "Chain of CRLDistributionPoints", count);
      }
      if (const int32_t got = getPoint(op, extensions->pool, work, list, i + 1, point); got != 0) return got;
    }
    return 0;
  });
}

int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPoint(KetraObject extensions, uint32_t *count,
                                                                 AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kPoints, [&](AsnObject work, AsnValue root) {
    return countRoot(op, work, root, KetraError_CalDistributionPointsAbsent, "CRLDistributionPoints", count);
  });
}

int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPointName(KetraObject extensions, uint32_t index,
                                                                     int32_t *choice, uint32_t *count,
                                                                     AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(choice)) return -1;
  return getFrame(op, extensions, count, kPoints, [&](AsnObject work, AsnValue root) {
    const MemberPath path("/", index + 1, "/distributionPoint");
    const int32_t counted = X509MUtilCalDistributionPointName(work, root, path, choice, count, err);
    return op.failed(counted, "Call X509MUtilCalDistributionPointName") ? counted : 0;
  });
}

int32_t KetraObjectSgetCRLDistributionPointsCalCRLIssuer(KetraObject extensions, uint32_t index, uint32_t *count,
                                                         AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kPoints, [&](AsnObject work, AsnValue root) {
    AsnValue issuer = nullptr;
    const MemberPath path("/", index + 1, "/cRLIssuer");
    if (op.failed(AsnGetElement(work, root, path, &issuer, err), "Call AsnGetElement")) return -1;
    *count = 0;
    if (issuer == nullptr) return 0;
    return op.failed(AsnCalCountOfSequence(work, issuer, nullptr, count, err), "Call AsnCalCountOfSequence") ? -1 : 0;
  });
}
