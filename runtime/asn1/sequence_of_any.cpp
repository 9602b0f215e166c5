#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/ketra_runtime.h"

namespace ketra::asn1 {
namespace {

using namespace schema;

constexpr Row kRows[] = {
    // clang-format off
    SequenceOf("SequenceOfAny"),
        Element(OpenType),
    // clang-format on
};
constexpr auto kRecords = compile(kRows);

}  // namespace
}  // namespace ketra::asn1

constexpr AsnType AsnType_SequenceOfAny[] = {ketra::asn1::kRecords[0], ketra::asn1::kRecords[1],
                                             ketra::asn1::kRecords[2]};
