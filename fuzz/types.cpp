// One value, after an octet that chooses its type: all that the C++ library does along a description, on any octets.
#include "cxx/fields.hpp"
#include "ketra/ketra.hpp"
#include "target.hpp"

namespace fuzz {
namespace {

using ketra::Octets;
using ketra::View;

template <class T>
void explainFault(View octets, const ketra::Fault &fault) {
  if (!fault) return;
  require(fault.at == nullptr || (fault.at >= octets.begin() && fault.at <= octets.end()),
          "a fault is inside the octets");
  require(fault.code() != 0 && !ketra::explain<T>(octets, fault).empty(), "a fault has a code and words");
}

// What was read is built, written, read and stored as the same value; where a SET OF was not in order, it is put so.
template <class T>
void write(const T &value, bool isDer) {
  ketra::test::Recorder recorder;
  ketra::walk(value, recorder);
  const Octets written = ketra::encode(value);
  T built{};
  std::string path;
  require(ketra::build(recorder.root.at(0), built, path), "what was walked can be built", path);
  require(built == value && ketra::encode(built) == written, "what was built is the same value");
  const auto again = ketra::read<T>(View(written));
  require(again && ketra::encode(*again) == written, "what was written is written again");
  require(!isDer || *again == value, "what was written is read as the same value");

  ketra::Extensions extensions;
  try {
    if constexpr (ketra::detail::FixedCritical<T>::value) {
      extensions.set(value);
    } else {
      extensions.set(value, true);
    }
  } catch (const ketra::Error &error) {
    require(extensions.empty() && error.code() != 0, "a refused set changes nothing", error.what());
    return;
  }
  const auto got = extensions.get<T>();
  require(got && *got == *again, "what was set can be got");
  require(extensions.view<T>().octets() == View(written), "what was set is stored as it is written");
}

template <class T>
void each(View octets) {
  using V = typename ketra::detail::ViewedOf<T>::type;
  const auto viewed = ketra::view<V>(octets);
  explainFault<T>(octets, ketra::firstFault(viewed));
  if (viewed) {
    ketra::test::Recorder recorder;
    ketra::walk(*viewed, recorder);
    require((recorder.faults == 0) == !ketra::firstFault(viewed), "a walk meets the faults that there are");
  }
  bool isDer = true;
  ketra::derFaults<T>(octets, [&](const ketra::Fault &fault) {
    isDer = false;
    explainFault<T>(octets, fault);
  });
  const auto owned = ketra::read<T>(octets);
  explainFault<T>(octets, owned.fault());
  if (!owned) return;
  require(!isDer || ketra::encode(*owned) == octets.copy(), "DER is written as it was");
  write(*owned, isDer);
}

template <class... Ts>
void choose(ketra::Types<Ts...>, std::size_t type, View octets) {
  constexpr void (*kEach[])(View) = {each<Ts>...};
  kEach[type % sizeof...(Ts)](octets);
}

}  // namespace
}  // namespace fuzz

int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  fuzz::choose(ketra::ExtensionTypes{}, data[0], {data + 1, size - 1});
  return 0;
}
