#include "roots.hpp"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "certificates.hpp"
#include "operations.hpp"

namespace bench {

namespace {

// get(file) of each file.
template <class Get>
std::vector<Octets> ofFiles(Get &&get) {
  std::error_code absent;
  std::vector<std::string> files;
  for (const auto &entry : std::filesystem::directory_iterator("/usr/share/ca-certificates/mozilla", absent)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Octets> all;
  for (const std::string &file : files) {
    if (Octets octets = get(file); !octets.empty()) all.push_back(std::move(octets));
  }
  return all;
}

}  // namespace

const std::vector<Octets> &roots() {
  static const std::vector<Octets> kRoots = ofFiles(extensionsIn);
  return kRoots;
}
const std::vector<Octets> &certificates() {
  static const std::vector<Octets> kCertificates = ofFiles(certificateIn);
  return kCertificates;
}

void addObjects(const char *library, std::size_t (*seeCertificate)(const Octets &),
                std::size_t (*seeCrl)(const Octets &)) {
  constexpr std::size_t kEntries = 100'000;
  const auto crl = std::make_shared<const Octets>(der::revocationList(kEntries));
  add(
      "CRL 100000", "read", library, [=] { return seeCrl(*crl) == kEntries; },
      [=] { benchmark::DoNotOptimize(seeCrl(*crl)); }, kEntries);
  if (certificates().empty()) return;
  const auto seeAll = [=] {
    std::size_t count = 0;
    for (const Octets &certificate : certificates()) count += seeCertificate(certificate);
    return count;
  };
  const auto check = [=] {
    std::size_t count = 0;
    for (const Octets &root : roots()) forEachExtension(root, [&](uint8_t, lean::View) { ++count; });
    return seeAll() == count;
  };
  add(
      "Certificate", "read", library, check, [=] { benchmark::DoNotOptimize(seeAll()); },
      static_cast<double>(certificates().size()));
}

void addRoots(const char *library, std::size_t (*read)()) {
  if (roots().empty()) return;
  const auto check = [read] {
    std::size_t count = 0;
    for (const Octets &root : roots()) forEachExtension(root, [&](uint8_t, lean::View) { ++count; });
    return read() == count;
  };
  add(
      "Extensions of a certificate", "read", library, check, [read] { benchmark::DoNotOptimize(read()); },
      static_cast<double>(roots().size()));
}

namespace {

std::size_t readWithC() {
  std::size_t all = 0;
  uint32_t count = 0;
  for (const Octets &root : roots()) {
    if (readCertificate(root, &count) == 0) all += count;
  }
  return all;
}

struct FewAltNames {
  lean::FewNames<16> names;
  bool read(lean::Reader in) {
    lean::Reader list;
    return in.only(0x30, list) && names.read(list);
  }
};

// use.operator()<the structure of the floor>().
template <class Use>
bool withFloor(uint8_t id, Use &&use) {
  switch (id) {
    case 14: return use.template operator()<lean::SubjectKeyId>();
    case 15: return use.template operator()<lean::KeyUsage>();
    case 17: return use.template operator()<FewAltNames>();
    case 19: return use.template operator()<lean::BasicConstraints>();
    case 30: return use.template operator()<lean::NameConstraints>();
    case 31: return use.template operator()<lean::CrlDistributionPoints>();
    case 32: return use.template operator()<lean::CertPolicies>();
    case 33: return use.template operator()<lean::PolicyMappings>();
    case 35: return use.template operator()<lean::AuthorityKeyId>();
    case 36: return use.template operator()<lean::PolicyConstraints>();
    case 37: return use.template operator()<lean::ExtKeyUsage>();
    default: return false;
  }
}

std::size_t readWithFloor() {
  std::size_t all = 0;
  for (const Octets &root : roots()) {
    forEachExtension(root, [&](uint8_t id, lean::View octets) {
      all += withFloor(id, [&]<class S>() {
        S value;
        const bool isRead = value.read({octets.at, octets.size});
        sink(&value);
        return isRead;
      });
    });
  }
  return all;
}

// One for each extension.
std::size_t readWithFloorAndAllocations() {
  std::size_t all = 0;
  for (const Octets &root : roots()) {
    forEachExtension(root, [&](uint8_t id, lean::View octets) {
      all += withFloor(id, [&]<class S>() {
        auto *memory = static_cast<uint8_t *>(std::malloc(sizeof(S) + octets.size));
        std::memcpy(memory + sizeof(S), octets.at, octets.size);
        const bool isRead = (new (memory) S)->read({memory + sizeof(S), octets.size});
        sink(memory);
        std::free(memory);
        return isRead;
      });
    });
  }
  return all;
}

}  // namespace

void addCertificates() {
  addRoots("C interface", readWithC);
  addRoots("floor", readWithFloor);
  addRoots("floor, 1 allocation", readWithFloorAndAllocations);
}

}  // namespace bench
