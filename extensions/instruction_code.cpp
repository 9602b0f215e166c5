// HoldInstructionCode ::= OBJECT IDENTIFIER                      RFC 3280 5.3.2

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kInstructionCode{&X509Objid_InstructionCode, schema::Entry::HoldInstruction, nullptr};
constexpr int32_t kNonCritical = 0;

}  // namespace

int32_t KetraObjectSsetInstructionCode(KetraObject extensions, const Objid *instruction, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] { return op.failed(AsnCheckObjidBER(instruction, err), "Call AsnCheckObjidBER") ? -1 : 0; };
  const auto fill = [&](AsnObject work, AsnValue root) {
    return op.failed(AsnSetObjidDER(work, root, "/", instruction, err), "Call AsnSetObjidDER") ? -1 : 0;
  };
  return setFrame(op, extensions, instruction, kInstructionCode, kNonCritical, check, fill);
}

int32_t KetraObjectSgetInstructionCode(KetraObject extensions, Objid *instruction, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, instruction, kInstructionCode, [&](AsnObject work, AsnValue root) {
    return op.failed(AsnGetObjidBER(work, root, "/", instruction, err), "Call AsnGetObjidBER") ? -1 : 0;
  });
}
