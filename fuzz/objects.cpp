// One certificate, CRL, request, PKCS #7 object or text with PEM blocks: all that is done with them, on any octets.
#include "cxx/fields.hpp"
#include "ketra/ketra.hpp"
#include "target.hpp"

namespace fuzz {
namespace {

using ketra::Octets;
using ketra::View;

template <class V>
void each(View octets) {
  const auto viewed = ketra::view<V>(octets);
  const auto owned = ketra::read<ketra::ObjectOf<V>>(octets);
  require(static_cast<bool>(viewed) == static_cast<bool>(owned), "both forms give the same verdict");
  const ketra::Fault fault = ketra::firstFault(viewed);
  if (fault) {
    require(fault.at >= octets.begin() && fault.at <= octets.end(), "a fault is inside the octets");
    require(!ketra::explain<V>(octets, fault).empty(), "a fault has words");
  }
  ketra::derFaults<V>(octets, [](const ketra::Fault &) {});
  if (!viewed) return;
  require(ketra::encode(*owned) == octets.copy(), "an object keeps its octets");
  ketra::test::Recorder recorder;
  ketra::walk(*viewed, recorder);
  require((recorder.faults == 0) == !fault, "a walk meets the faults that there are");
}

void certificate(View octets) {
  const auto viewed = ketra::view<ketra::CertificateView>(octets);
  if (!viewed) return;
  const auto key = viewed->subjectPublicKeyInfo.value();
  if (key) key->rsaBits(), key->curve();
  const auto constraints = viewed->extensions().view<ketra::NameConstraintsView>();
  const ketra::Permission one = ketra::permits(constraints, *viewed), none = ketra::permits(constraints, *viewed, 0);
  require(none.verdict == one.verdict || none.verdict == ketra::Permission::Verdict::unknown,
          "a limit gives the same answer or none");
  require(!one || !constraints.isFaulty(), "nothing is permitted by constraints that cannot be read");
  for (const auto &field : {viewed->subject, viewed->issuer}) {
    const auto name = field.value();
    if (!name) continue;
    const Octets encoding = name->encode();
    const auto sorted = ketra::NameView::of(View(encoding));
    require(sorted && sorted->matches(*name) && name->isWithin(*sorted), "a name matches its DER");
    require(sorted->encode() == encoding, "the DER of a name is its own");
  }
}

void crl(View octets) {
  const auto viewed = ketra::view<ketra::CrlView>(octets);
  if (!viewed) return;
  std::size_t count = 0;
  bool isTold = true;
  const ketra::CrlEntries entries = viewed->entries();
  for (const ketra::CrlEntry &entry : entries) {
    ++count;
    isTold = (isTold && entry) || (entry && entry->extensionList);
    require(isTold || entry.certificateIssuer().isFaulty(), "what a faulty entry may have hidden is not told");
  }
  require(count == entries.size(), "every entry is visited");
}

void text(View octets) {
  std::size_t end = 0;
  for (const ketra::pem::Block &block : ketra::pem::Blocks(octets.characters())) {
    require(block.begin >= end && block.end > block.begin && block.end <= octets.size(), "blocks follow each other");
    end = block.end;
    const auto decoded = block.decode();
    require(!decoded || block.isComplete, "only a complete block has octets");
  }
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  const ketra::View octets(data, size);
  fuzz::text(octets);
  ketra::recognise(octets);
  fuzz::each<ketra::CertificateView>(octets);
  fuzz::each<ketra::CrlView>(octets);
  fuzz::each<ketra::RequestView>(octets);
  fuzz::each<ketra::Pkcs7View>(octets);
  fuzz::certificate(octets);
  fuzz::crl(octets);
  if (const auto request = ketra::view<ketra::RequestView>(octets))
    (*request).extensions().find(ketra::SubjectAltName::oid);
  if (const auto pkcs7 = ketra::view<ketra::Pkcs7View>(octets)) (*pkcs7).certificates(), (*pkcs7).crls();
  return 0;
}
