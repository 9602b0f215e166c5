#include "walk.hpp"

#include <iostream>
#include <optional>
#include <set>

#include "asn1_reader.hpp"
#include "container.hpp"
#include "escape.hpp"

namespace tool {
namespace {

std::string member(const std::string &list, uint32_t number) { return list + "/" + std::to_string(number); }

void walkExtensions(const Asn1Reader &reader, const std::string &list, const Place &place, Visitor &visitor) {
  std::set<ketra::ObjectIdentifier> seen;
  const uint32_t count = reader.count(list);
  for (uint32_t number = 1; number <= count; ++number) {
    Extension extension;
    try {
      extension = readExtension(reader.octets(member(list, number)).value());
    } catch (const ketra::Error &error) {
      visitor.unreadableExtension(place, number, error);
      continue;
    }
    extension.isRepeated = !seen.insert(extension.objid).second;
    visitor.extension(place, extension);
  }
}

std::string serialNumber(const Asn1Reader &reader, const std::string &path) {
  return ketra::SerialNumber::ofContent(reader.octets(path).value()).hex();
}

void walkCertificate(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader certificate(kCertificate, encoding);
  visitor.beginObject(place, {{"serialNumber", serialNumber(certificate, "tbsCertificate/serialNumber")}});
  walkExtensions(certificate, "tbsCertificate/extensions", place, visitor);
  visitor.endObject();
}

void walkEntry(const Place &place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader entry(kRevokedCertificate, encoding);
  if (entry.count("crlEntryExtensions") == 0) return;
  visitor.beginEntry(place, {{"serialNumber", serialNumber(entry, "userCertificate")},
                             {"revocationDate", timeText(entry, "revocationDate")}});
  walkExtensions(entry, "crlEntryExtensions", place, visitor);
  visitor.endEntry();
}

void walkCrl(Place place, ketra::View encoding, Visitor &visitor) {
  const Asn1Reader crl(kCertificateList, encoding);
  const std::string revoked = "tbsCertList/revokedCertificates";
  const uint32_t count = crl.count(revoked);
  Json facts{{"thisUpdate", timeText(crl, "tbsCertList/thisUpdate")}};
  if (std::string next = timeText(crl, "tbsCertList/nextUpdate"); !next.empty()) facts["nextUpdate"] = std::move(next);
  facts["revoked"] = count;
  visitor.beginObject(place, facts);
  walkExtensions(crl, "tbsCertList/crlExtensions", place, visitor);
  for (place.entry = 1; place.entry <= count; ++place.entry) {
    try {
      walkEntry(place, crl.octets(member(revoked, place.entry)).value(), visitor);
    } catch (const ketra::Error &error) {
      visitor.unreadable(place, problem(error));
    }
  }
  visitor.endObject();
}

class FileWalk : public ContainerVisitor {
 public:
  FileWalk(const std::string &file, Visitor &visitor) : place_{.file = escape(file)}, visitor_(visitor) {}

  void object(Kind kind, ketra::View encoding) override {
    ++place_.index;
    place_.kind = kind;
    try {
      if (kind == Kind::Unknown) place_.kind = recognise(encoding);
      open(encoding);
    } catch (const ketra::Error &error) {
      visitor_.unreadable(place_, problem(error));
    }
  }
  void note(const std::string &text) override { visitor_.note(place_.file, text); }
  void fault(const std::string &text) override {
    ++place_.index;
    place_.kind = Kind::Unknown;
    visitor_.unreadable(place_, problem(text));
  }

 private:
  void open(ketra::View encoding) {
    switch (place_.kind) {
      case Kind::Certificate: return walkCertificate(place_, encoding, visitor_);
      case Kind::Crl: return walkCrl(place_, encoding, visitor_);
      case Kind::Unknown: return visitor_.unreadable(place_, problem("neither a certificate nor a CRL"));
    }
  }

  Place place_;
  Visitor &visitor_;
};

}  // namespace

bool walk(const std::vector<std::string> &files, Visitor &visitor) {
  bool allRead = true;
  for (const std::string &file : files) {
    std::string why;
    const std::optional<ketra::Octets> content = readFile(file, why);
    if (content) {
      FileWalk walker(file, visitor);
      splitContainer(*content, walker);
    } else {
      std::cerr << "ketra: " << escape(file) << ": " << escape(why) << "\n";
      allRead = false;
    }
  }
  return allRead;
}

}  // namespace tool
