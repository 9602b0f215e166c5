#include "core/scratch.h"
#include "names/general_name_object.h"
#include "names/or_address.h"
#include "schema/schema.h"

namespace ketra {
namespace {

int32_t closeAfterFailure(AsnObject work, AsnValue value, int32_t result) {
  intoScratch([&](AsnErrorBlock *err) { AsnClose(work, value, err); });
  return result;
}

// Reads an ORAddress at one place and writes it at another. One of the two values is an ORAddress of its own, `opened`,
// which a failure closes.
int32_t transfer(const Operation &op, bool ber, AsnObject work, AsnValue from, const char *fromPath, AsnValue to,
                 const char *toPath, AsnValue opened) {
  AsnMemObject pool = nullptr;
  if (op.failed(AsnMemObjectCreate(&pool, op.err()), "Call AsnMemObjectCreate")) {
    return closeAfterFailure(work, opened, -1);
  }
  X509ORAddress address{};
  int32_t result = x509MUtilSgetORAddress(ber, pool, work, from, fromPath, &address, op.err());
  if (!op.failed(result, "Call x509MUtilSgetORAddress")) {
    result = x509MUtilSetORAddress(ber, work, to, toPath, &address, op.err());
    op.failed(result, "Call x509MUtilSetORAddress");
  }
  if (result != 0) {
    closeAfterFailure(work, opened, result);
    intoScratch([&](AsnErrorBlock *err) { AsnMemObjectDestroy(pool, err); });
    return result;
  }
  if (op.failed(AsnMemObjectDestroy(pool, op.err()), "Call AsnMemObjectDestroy")) {
    return closeAfterFailure(work, opened, -1);
  }
  return 0;
}

}  // namespace

int32_t setX400Address(const Operation &op, bool ber, AsnObject work, AsnValue value, const AsnEncodedData &address) {
  const AsnType *type = schema::record(schema::Entry::ORAddress);
  AsnValue given = nullptr;
  uint32_t unused = 0;
  if (op.failed(AsnOpenFromMem(work, type, &address, &given, op.err()), "Call AsnOpenFromMem")) return -1;
  if (op.failed(AsnDecode(work, given, 0, &unused, op.err()), "Call AsnDecode")) {
    return closeAfterFailure(work, given, -1);
  }
  const int32_t result = transfer(op, ber, work, given, "/", value, "x400Address", given);
  if (result != 0) return result;
  return op.failed(AsnClose(work, given, op.err()), "Call AsnClose") ? -1 : 0;
}

int32_t getX400Address(const Operation &op, bool ber, AsnMemObject pool, AsnObject work, AsnValue value,
                       AsnEncodedData *address) {
  const AsnType *type = schema::record(schema::Entry::ORAddress);
  AsnValue made = nullptr;
  if (op.failed(AsnOpenNew(work, type, &made, op.err()), "Call AsnOpenNew")) return -1;
  const int32_t result = transfer(op, ber, work, value, "x400Address", made, "/", made);
  if (result != 0) return result;
  const auto encode = ber ? AsnMUtilEncodeBER : AsnMUtilEncodeDER;
  if (op.failed(encode(pool, work, made, "/", address, op.err()), "Call AsnMUtilEncodeXER")) {
    return closeAfterFailure(work, made, -1);
  }
  return op.failed(AsnClose(work, made, op.err()), "Call AsnClose") ? -1 : 0;
}

}  // namespace ketra
