// Certificate serial numbers: a number, or the content octets of an INTEGER of any size.

#include "ketra/contracts/certificate.h"
#include "runtime/asn1/content.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

enum Form : int32_t { kNumber = 0, kOctets = 1 };

int32_t checkContent(Call call, const uint8_t *octets, uint32_t length) {
  if (octets == nullptr && length > 0) {
    return call.fail(X509SerialError_Integer, Text() << "a null pointer with a length of " << length);
  }
  if (asn1::isIntegerContent(octets, length)) return 0;
  asn1::Fault fault;
  asn1::explainInteger(octets, length, fault, "serial number");
  return call.fail(X509SerialError_Integer, fault.text);
}

int32_t failForm(Call call, const int32_t &form) {
  return call.fail(X509SerialError_Form, Text() << "a serial number of the form " << form, form);
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509MUtilCheckCertSerialNumberOpt(const X509CertSerialNumberOpt *serial, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (serial == nullptr) return call.fail(X509NameError_NullParameter, "no serial number to check");
  const X509CertSerialNumber &value = serial->value;
  switch (serial->option) {
    case 0: return 0;
    case 1: break;
    default: return call.fail(X509SerialError_Form, Text() << "a presence flag of " << serial->option, serial->option);
  }
  switch (value.form) {
    case kNumber: return 0;
    case kOctets: return checkContent(call, value.octets, value.length);
    default: return failForm(call, value.form);
  }
}

int32_t X509MUtilSetCertSerialNumberOpt(AsnObject object, AsnValue value, const char *path,
                                        const X509CertSerialNumberOpt *serial, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (serial == nullptr) return call.fail(X509NameError_NullParameter, "no serial number to set");
  if (serial->option != 1) return 0;
  uint8_t content[4];
  AsnOct octets{serial->value.octets, serial->value.length};
  switch (serial->value.form) {
    case kNumber: octets = {content, ketra::asn1::writeInteger(serial->value.number, content)}; break;
    case kOctets: break;
    default: return failForm(call, serial->value.form);
  }
  return AsnSetOctDER(object, value, path, &octets, err);
}

int32_t X509MUtilGetIntFromIntStr(const AsnOct *content, int32_t *integer, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (content == nullptr || integer == nullptr) {
    return call.fail(X509NameError_NullParameter, "no octets or no place for the integer");
  }
  if (checkContent(call, content->octets, content->length) != 0) return -1;
  if (content->length > 4) {
    return call.fail(X509SerialError_Integer, Text() << content->length << " octets are more than 32 bits");
  }
  *integer = ketra::asn1::readInteger(content->octets, content->length);
  return 0;
}
