// KeyUsage ::= BIT STRING {                                      RFC 5280 4.2.1.3
//     digitalSignature (0), nonRepudiation (1), keyEncipherment (2), dataEncipherment (3), keyAgreement (4),
//     keyCertSign (5), cRLSign (6), encipherOnly (7), decipherOnly (8) }

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kKeyUsage{&X509Objid_KeyUsage, schema::Entry::BITSTRING, "/"};

constexpr uint32_t kNamedBits = 9;
constexpr uint32_t kBitsWithoutEncipherOnly = 7;  // what is reported when neither bit 7 nor bit 8 is set

}  // namespace

int32_t KetraObjectSsetKeyUsage(KetraObject extensions, int32_t critical, const AsnBit *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    if (op.failed(AsnCheckBitBER(value, err), "Call AsnCheckBitBER")) return -1;
    if (value->bits > kNamedBits) return op.reject(KetraError_SetKeyUsageBitLength, "bitlength", value->bits);
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetConstBitDER(work, root, "/", value, err), "Call AsnSetConstBitDER") ? -1 : 0;
  };
  return setFrame(op, extensions, value, kKeyUsage, critical, check, fill);
}

int32_t KetraObjectSgetKeyUsage(KetraObject extensions, AsnBit *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, value, kKeyUsage, [&](AsnObject work, AsnValue root) {
    value->bits = kNamedBits;  // how many to deliver
    const int32_t read = AsnMUtilGetBitConstBER(extensions->pool, work, root, "/", value, err);
    if (op.failed(read, "Call AsnMUtilGetBitConstBER")) return -1;
    const bool hasLateBits = (value->octets[0] & 0x01) != 0 || (value->octets[1] & 0x80) != 0;
    if (!hasLateBits) value->bits = kBitsWithoutEncipherOnly;
    return 0;
  });
}
