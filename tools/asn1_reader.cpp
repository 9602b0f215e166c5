#include "asn1_reader.hpp"

#include "out_of_memory.hpp"

namespace tool {
namespace {

// Runs call(err), where a failure is an Error.
template <class Call>
void attempt(Call &&call) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (call(&err) != 0) throw ketra::Error(err);
}

class Pool {
 public:
  Pool() {
    attempt([&](AsnErrorBlock *err) { return AsnMemObjectCreate(&handle_, err); });
  }
  Pool(const Pool &) = delete;
  Pool &operator=(const Pool &) = delete;
  ~Pool() { AsnMemObjectDestroy(handle_, nullptr); }
  AsnMemObject handle() const { return handle_; }

 private:
  AsnMemObject handle_ = nullptr;
};

AsnEncodedData encoded(ketra::View view) {
  if (view.size() <= UINT32_MAX) return {view.data(), static_cast<uint32_t>(view.size())};
  fail(AsnError_TooLong, "more than 4294967295 octets");
}

}  // namespace

Asn1Reader::Asn1Reader(const AsnType *type, ketra::View encoding) {
  const AsnEncodedData data = encoded(encoding);
  AsnObject object = nullptr;
  attempt([&](AsnErrorBlock *err) { return AsnObjectCreate(&object, err); });
  object_.reset(object);
  attempt([&](AsnErrorBlock *err) { return AsnOpenFromMem(object, type, &data, &value_, err); });
  attempt([&](AsnErrorBlock *err) { return AsnDecode(object, value_, 0, nullptr, err); });
}

std::optional<ketra::View> Asn1Reader::octets(const std::string &path) const {
  const uint8_t *address = nullptr;
  uint32_t length = ASN_ABSENT_LENGTH;
  attempt([&](AsnErrorBlock *err) {
    return AsnCalAddressOfValFld(object_.get(), value_, path.c_str(), &address, &length, err);
  });
  if (length == ASN_ABSENT_LENGTH) return std::nullopt;
  return ketra::View(address, length);
}

bool Asn1Reader::isInSegments(const std::string &path) const {
  const uint8_t *address = nullptr;
  uint32_t length = 0;
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (AsnCalAddressOfValFld(object_.get(), value_, path.c_str(), &address, &length, &err) == 0) return false;
  if (err.code == AsnError_Kind) return true;
  throwIfOutOfMemory(ketra::Error(err));
  return false;
}

uint32_t Asn1Reader::count(const std::string &path) const {
  AsnValue list = nullptr;
  attempt([&](AsnErrorBlock *err) { return AsnGetElement(object_.get(), value_, path.c_str(), &list, err); });
  uint32_t count = 0;
  if (list == nullptr) return count;
  attempt([&](AsnErrorBlock *err) { return AsnCalCountOfSequence(object_.get(), list, "/", &count, err); });
  return count;
}

std::optional<bool> Asn1Reader::boolean(const std::string &path) const {
  AsnBoolOpt boolean{};
  attempt([&](AsnErrorBlock *err) { return AsnGetOptBoolBER(object_.get(), value_, path.c_str(), &boolean, err); });
  if (boolean.option != 1) return std::nullopt;
  return boolean.value != 0;
}

Identifier Asn1Reader::identifier(const std::string &path) const { return Identifier(octets(path).value()); }

std::optional<ketra::Octets> Asn1Reader::string(const std::string &path) const {
  const Pool pool;
  AsnOctOpt octets{};
  attempt([&](AsnErrorBlock *err) {
    return AsnMUtilGetOctOptBER(pool.handle(), object_.get(), value_, path.c_str(), &octets, err);
  });
  if (octets.option != 1) return std::nullopt;
  return ketra::Octets(octets.value.octets, octets.value.octets + octets.value.length);
}

ketra::Octets Asn1Reader::bits(const std::string &path, uint32_t count) const {
  const Pool pool;
  AsnBit bits{nullptr, count};
  attempt([&](AsnErrorBlock *err) {
    return AsnMUtilGetBitConstBER(pool.handle(), object_.get(), value_, path.c_str(), &bits, err);
  });
  ketra::Octets out;
  out.reserve(bits.bits);
  for (uint32_t i = 0; i < bits.bits; ++i) out.push_back(bits.octets[i / 8] >> (7 - i % 8) & 1);
  return out;
}

std::string memberPath(const std::string &list, uint32_t number) {
  return list == "/" ? std::to_string(number) : list + "/" + std::to_string(number);
}

void fail(uint32_t code, const std::string &message) {
  AsnErrorBlock err;
  AsnErrorReset(&err);
  err.code = code;
  AsnErrorInfo("ketra", "outline", message.c_str(), &err, nullptr, 0);
  throw ketra::Error(err);
}

bool hasDerLengths(ketra::View encoding) {
  const Pool pool;
  const AsnEncodedData source = encoded(encoding);
  AsnEncodedData copy{};
  AsnErrorBlock err;
  AsnErrorReset(&err);
  if (AsnMUtilCopyEncodedDataDER(pool.handle(), &copy, &source, &err) == 0) return true;
  if (err.code != AsnError_NotDer) throwIfOutOfMemory(ketra::Error(err));
  return false;
}

}  // namespace tool
