// Certificates, CRLs, requests, PEM and PKCS #7, by the rows of data/objects.tsv and the samples.
#include <fstream>
#include <map>
#include <sstream>

#include "ketra/asn1/explain.hpp"
#include "ketra/asn1/walk.hpp"
#include "ketra/c.hpp"
#include "ketra/names/curves.hpp"
#include "ketra/objects/pem.hpp"
#include "ketra/objects/permits.hpp"
#include "ketra/objects/pkcs7.hpp"
#include "ketra/objects/request.hpp"
#include "support/support.h"

std::size_t requestsForMemory();  // types_test.cpp

namespace ketra {
namespace {

using test::fromHex;
using test::operator+;
using test::Row;
using test::tlv;

std::vector<Row> rowsAbout(const std::string &what) {
  std::vector<Row> rows;
  for (const Row &row : test::rowsOf("data/objects.tsv")) {
    if (row.column(0) == what) rows.push_back(row);
  }
  EXPECT_FALSE(rows.empty()) << what;
  return rows;
}

// Each leaf with its path, and how many members could not be read.
class Paths : public Visitor {
 public:
  std::map<std::string, std::string> leaves;
  std::size_t faults = 0;

  void enter(const char *name, const Structure &) override { open_.push_back({next(name), 0}); }
  void leave() override { open_.pop_back(); }
  void leaf(const char *name, const LeafValue &value) override { leaves[next(name)] = value.text(); }
  void absent(const char *, const LeafValue &) override {}
  void fault(const char *name, View, const Fault &) override { next(name), ++faults; }

 private:
  std::string next(const char *name) {
    if (open_.empty()) return "";
    auto &[path, count] = open_.back();
    ++count;
    return path + (path.empty() ? "" : "/") + (name != nullptr ? name : std::to_string(count));
  }
  std::vector<std::pair<std::string, std::size_t>> open_;
};

// What is wrong with an object or anywhere in it, and what a walk sees. Both forms agree on whether it can be read.
template <class V>
std::string judge(const Octets &octets, Paths &paths) {
  const Octets exact(octets.begin(), octets.end());
  const auto object = view<V>(View(exact));
  const auto owned = read<ObjectOf<V>>(View(exact));
  EXPECT_EQ(static_cast<bool>(object), static_cast<bool>(owned));
  const Fault fault = firstFault(object);
  if (!object) {
    EXPECT_EQ(explain<V>(View(exact), owned.fault()), explain<V>(View(exact), fault));
    return explain<V>(View(exact), fault);
  }
  EXPECT_EQ(encode(*owned), exact);
  EXPECT_TRUE(*object->signatureAlgorithm.octets().data() != 0 && object->extensions().size() < exact.size());
  walk(*object, paths);
  return fault ? explain<V>(View(exact), fault) : "";
}
std::string judge(const std::string &kind, const Octets &octets, Paths &paths) {
  if (kind == "Certificate") return judge<CertificateView>(octets, paths);
  return kind == "CertificateList" ? judge<CrlView>(octets, paths) : judge<RequestView>(octets, paths);
}

Octets make(const std::string &kind, const std::string &field, const std::string &hex) {
  Octets inside, outside;
  for (const Row &row : rowsAbout("base")) {
    if (row.column(1) != kind) continue;
    Octets &part = row.column(2)[0] == '|' ? outside : inside;
    part = part + fromHex(row.column(2) == field ? hex : row.column(3));
  }
  return tlv(0x30, tlv(0x30, inside) + outside);
}

TEST(Objects, AFaultOfAFieldHidesNothingElse) {
  for (const Row &row : rowsAbout("field")) {
    SCOPED_TRACE(row.place);
    Paths base, changed;
    EXPECT_EQ(judge(row.column(1), make(row.column(1), "", ""), base), "");
    const std::string found = judge(row.column(1), make(row.column(1), row.column(2), row.column(3)), changed);
    EXPECT_EQ(found.substr(0, row.column(4).empty() ? found.npos : row.column(4).size()), row.column(4));
    EXPECT_EQ(changed.faults, row.column(4).empty() ? 0u : 1u);
    const std::string name = row.column(2).substr(row.column(2)[0] == '|' ? 1 : 0);
    for (const auto &[path, text] : base.leaves) {
      if (("/" + path + "/").find("/" + name + "/") != std::string::npos) continue;
      EXPECT_EQ(changed.leaves[path], text) << path;
    }
  }
}

TEST(Objects, ABrokenFrameIsNamed) {
  for (const Row &row : rowsAbout("frame")) {
    SCOPED_TRACE(row.place);
    Paths paths;
    const std::string found = judge(row.column(1), make(row.column(1), row.column(2), row.column(3)), paths);
    EXPECT_EQ(found.substr(0, row.column(4).size()), row.column(4));
    EXPECT_TRUE(paths.leaves.empty());
  }
}

TEST(Objects, Times) {
  for (const Row &row : rowsAbout("time")) {
    const Octets octets = fromHex(row.column(1));
    const auto time = Field<EitherTime>(View(octets)).value();
    const std::string text = time ? timeText(time->time) + (time->isProfiled ? "" : " odd") : time.fault().text();
    EXPECT_EQ(text, row.column(2)) << row.place;
    if (time && time->isProfiled) {
      EXPECT_EQ(encode(*time), octets) << row.place;
      EXPECT_EQ(EitherTime(time->time), *time) << row.place;
    }
  }
}

// The issuer of an entry as the test names it.
std::string issuerOf(const CrlEntry &entry) {
  const auto &issuer = entry.certificateIssuer();
  if (issuer.isAbsent()) return "crl";
  return issuer && !firstFault(*issuer) ? (**issuer->names.begin()).text() : "unknown";
}

TEST(Objects, EntriesInheritTheirIssuer) {
  const Octets start = fromHex("02 01 09 17 0D 32 36 30 31 30 31 30 30 30 30 30 30 5A");
  const auto list = [&](const std::string &extensions) { return tlv(0x30, start + fromHex(extensions)); };
  const std::map<std::string, Octets> kEntries = {
      {"-", list("")},
      {"A", list("30 0E 30 0C 06 03 55 1D 1D 04 05 30 03 82 01 41")},
      {"B", list("30 1A 30 0A 06 03 55 1D 15 04 03 0A 01 01 30 0C 06 03 55 1D 1D 04 05 30 03 82 01 42")},
      {"r", list("30 0C 30 0A 06 03 55 1D 15 04 03 0A 01 01")},
      {"?", list("30 0E 30 0C 06 03 55 1D 1D 04 05 30 03 82 02 41")},
      {"!", fromHex("30 03 02 01 09")},
      {"x", list("10 00")},
      {"y", list("30 04 30 02 05 00")}};
  for (const Row &row : rowsAbout("entries")) {
    SCOPED_TRACE(row.place);
    Octets entries;
    std::istringstream names(row.column(1));
    for (std::string name; names >> name;) entries = entries + kEntries.at(name);
    const Octets octets = make("CertificateList", "revokedCertificates", test::toHex(tlv(0x30, entries)));
    const auto crl = view<CrlView>(View(octets));
    ASSERT_TRUE(crl);
    std::string issuers;
    std::size_t count = 0;
    for (const CrlEntry &entry : crl->entries()) issuers += (count++ == 0 ? "" : " ") + issuerOf(entry);
    EXPECT_EQ(issuers, row.column(2));
    EXPECT_EQ(count, crl->entries().size());
  }
  const Octets broken = make("CertificateList", "revokedCertificates", "10 00");
  EXPECT_TRUE((*view<CrlView>(View(broken))).entries().fault());
}

TEST(Objects, ExtensionsOfARequest) {
  const std::string request = "06 09 2A 86 48 86 F7 0D 01 09 0E ", value = "30 0B 30 09 06 03 55 1D 0F 04 02 30 00 ";
  const std::map<std::string, Octets> kAttributes = {
      {"O", fromHex("30 09 06 03 2A 03 04 31 02 05 00")},
      {"E", tlv(0x30, fromHex(request + "31 0D" + value))},
      {"M", tlv(0x30, fromHex("06 0A 2B 06 01 04 01 82 37 02 01 0E 31 0D" + value))},
      {"0", tlv(0x30, fromHex(request + "31 00"))},
      {"2", tlv(0x30, fromHex(request + "31 1A" + value + value))},
      {"!", fromHex("30 00")},
      {"?", fromHex("30 07 06 03 2A 03 04 31 00")}};
  for (const Row &row : rowsAbout("attributes")) {
    SCOPED_TRACE(row.place);
    Octets attributes;
    std::istringstream names(row.column(1));
    for (std::string name; names >> name;) attributes = attributes + kAttributes.at(name);
    const Octets octets = make("CertificationRequest", "attributes", test::toHex(tlv(0xA0, attributes)));
    const auto read = view<RequestView>(View(octets));
    ASSERT_TRUE(read);
    const ExtensionsView extensions = read->extensions();
    EXPECT_EQ(extensions.fault() ? extensions.fault().text() : std::to_string(extensions.size()), row.column(2));
    EXPECT_EQ(extensions.find("2.5.29.15"_oid).isFaulty(), bool(extensions.fault())) << "not taken for absent";
  }
}

TEST(Objects, AreRecognised) {
  for (const Row &row : rowsAbout("recognise")) {
    const Octets octets = fromHex(row.column(1));
    EXPECT_EQ(nameOf(recognise(View(octets))), row.column(2)) << row.place;
  }
}

std::string unescape(const std::string &text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result += text[i];
    } else if (text[++i] == 'x') {
      result += static_cast<char>(fromHex(text.substr(i + 1, 2)).at(0));
      i += 2;
    } else {
      result += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i];
    }
  }
  return result;
}

TEST(Objects, PemBlocks) {
  for (const Row &row : rowsAbout("pem")) {
    const std::string escaped = unescape(row.column(1));
    const std::vector<char> text(escaped.begin(), escaped.end());  // with no NUL after it
    std::string blocks;
    for (const pem::Block &block : pem::Blocks({text.data(), text.size()})) {
      const auto octets = block.decode();
      blocks += (blocks.empty() ? "" : "|") + std::string(block.label) + ' ';
      blocks += octets ? detail::hexOf(View(*octets)) : octets.fault().text();
    }
    EXPECT_EQ(blocks, row.column(2)) << row.place;
  }
}

Octets sample(const std::string &name) {
  std::ifstream file(test::pathOf("../samples/" + name), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(file)), {});
  const auto octets = pem::Blocks(text).begin()->decode();
  EXPECT_TRUE(octets) << name;
  return *octets;
}
const std::map<std::string, std::string> kSamples = {{"ca.pem", "Certificate"},
                                                     {"end-entity.pem", "Certificate"},
                                                     {"crl.pem", "CertificateList"},
                                                     {"indirect-crl.pem", "CertificateList"},
                                                     {"request.pem", "CertificationRequest"}};

TEST(Objects, Samples) {
  for (const auto &[name, kind] : kSamples) {
    Paths paths;
    EXPECT_EQ(judge(kind, sample(name), paths), "") << name;
    for (const Row &row : rowsAbout("fact")) {
      if (row.column(1) != name) continue;
      EXPECT_EQ(paths.leaves[row.column(2)], row.column(3)) << row.place;
    }
  }
  const Octets octets = sample("ca.pem"), list = sample("indirect-crl.pem"), request = sample("request.pem");
  const std::size_t before = requestsForMemory();
  EXPECT_FALSE(firstFault(view<CertificateView>(View(octets))) || firstFault(view<RequestView>(View(request))));
  EXPECT_TRUE((*view<RequestView>(View(request))).extensions().find("2.5.29.19"_oid));
  for (const CrlEntry &entry : (*view<CrlView>(View(list))).entries())
    EXPECT_FALSE(entry.certificateIssuer().isFaulty());
  EXPECT_EQ(requestsForMemory(), before) << "views allocate nothing";
  Certificate owned = *read<Certificate>(View(octets)), copy = owned;
  EXPECT_EQ(owned->signedOctets.data(), owned.octets().data() + 4);
  const Octets other = make("Certificate", "", "");
  owned = *read<Certificate>(View(other));
  EXPECT_EQ(copy->signedOctets.data(), copy.octets().data() + 4);
  EXPECT_TRUE(copy->extensions().find("2.5.29.19"_oid));
  const auto key = copy->subjectPublicKeyInfo.value();
  EXPECT_EQ(findCurve(*key->curve())->name, "P-256");
  EXPECT_FALSE(key->rsaBits());
}

TEST(Objects, KeyBits) {
  const std::string start = "30 0B 06 09 2A 86 48 86 F7 0D 01 01 01 ";
  const std::map<std::string, std::string> kKeys = {{"02 81 81 00 80 +00*127+ 02 01 03", "1024"},
                                                    {"02 02 01 FF 02 01 03", "9"},
                                                    {"02 01 00 02 01 03", "0"},
                                                    {"02 01 80 02 01 03", "none"},
                                                    {"02 01 05", "none"}};
  for (const auto &[key, bits] : kKeys) {
    const Octets octets = tlv(0x30, fromHex(start) + tlv(0x03, fromHex("00") + tlv(0x30, fromHex(key))));
    const auto read = view<SubjectPublicKeyInfoView>(View(octets));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->rsaBits() ? std::to_string(*read->rsaBits()) : "none", bits) << key;
  }
}

TEST(Objects, DamagedSamples) {
  for (const auto &[name, kind] : kSamples) {
    const Octets octets = sample(name);
    Paths paths;
    for (std::size_t at = 0; at < octets.size(); ++at) {
      const Octets truncated(octets.begin(), octets.begin() + static_cast<std::ptrdiff_t>(at));
      EXPECT_NE(judge(kind, truncated, paths), "") << name << " cut at " << at;
      EXPECT_EQ(recognise(View(truncated)), ObjectKind::none);
      Octets damaged = octets;
      for (const int change : {0x01, 0x20, 0x80, 0xFF}) {
        damaged[at] = static_cast<uint8_t>(octets[at] ^ change);
        judge(kind, damaged, paths);
        const auto crl = view<CrlView>(View(damaged));
        if (!crl) continue;
        std::size_t count = 0;
        for (const CrlEntry &entry : crl->entries()) count += entry ? 1u : 1u;
        EXPECT_EQ(count, crl->entries().size());
      }
    }
  }
}

TEST(Objects, Pkcs7) {
  const Octets certificate = sample("ca.pem"), crl = sample("crl.pem");
  const auto of = [&](const std::string &type, const Octets &certificates, const Octets &crls) {
    const Octets data = fromHex("02 01 01 31 00 30 0B 06 09 2A 86 48 86 F7 0D 01 07 01") + certificates + crls;
    return tlv(0x30, fromHex(type) + tlv(0xA0, tlv(0x30, data + fromHex("31 00"))));
  };
  const std::string kSigned = "06 09 2A 86 48 86 F7 0D 01 07 02";
  const Octets attribute = fromHex("A2 03 02 01 00");
  const Octets octets = of(kSigned, tlv(0xA0, certificate + attribute + certificate), tlv(0xA1, crl));
  EXPECT_EQ(recognise(View(octets)), ObjectKind::pkcs7);
  const auto owned = read<Pkcs7>(View(octets));
  ASSERT_TRUE(owned);
  const auto certificates = (**owned).certificates();
  ASSERT_TRUE(certificates);
  std::string good;
  for (const auto &each : *certificates) good += each ? (each.octets() == View(certificate) ? "1" : "?") : "0";
  EXPECT_EQ(good, "101");
  EXPECT_EQ((*(**owned).crls()).size(), 1u);
  const Octets none = of(kSigned, {}, {}), other = of("06 09 2A 86 48 86 F7 0D 01 07 03", {}, {});
  EXPECT_TRUE((*(*view<Pkcs7View>(View(none))).certificates()).empty());
  const auto enveloped = view<Pkcs7View>(View(other));
  EXPECT_EQ(enveloped->contentName(), "envelopedData");
  EXPECT_EQ(enveloped->certificates().fault().code(), FaultCode_OtherKind);
}

// The matches of the C interface, for every name of the table with every other one.
TEST(Names, MatchAsInC) {
  std::vector<Octets> names;
  for (const Row &row : test::rowsOf("runtime/name_matches.tsv")) {
    for (const std::size_t column : {0u, 1u}) names.push_back(test::writtenName(row.column(column)));
  }
  std::size_t matching = 0;
  for (const Octets &x : names) {
    const test::NameObject left;
    ASSERT_EQ(left.set(x), 0);
    const auto a = NameView::of(View(x));
    EXPECT_TRUE(a && a->isWithin(Name()) && (*Name::of(View(x))).matches(*a));
    for (const Octets &y : names) {
      const test::NameObject right;
      ASSERT_EQ(right.set(y), 0);
      int32_t equal = -1;
      ASSERT_EQ(X509NameObjectCompare(left, right, &equal, nullptr), 0);
      const auto b = NameView::of(View(y));
      EXPECT_EQ(a->matches(*b), equal == 1) << test::toHex(x) << ' ' << test::toHex(y);
      matching += a->matches(*b) ? 1 : 0;
    }
  }
  EXPECT_GT(matching, names.size());
}

TEST(Names, EncodeSorts) {
  const Octets odd =
      fromHex("30 81 1C 31 1A 30 0A 06 03 55 04 0B 0C 03 61 62 63 30 0C 06 03 55 04 0A 1C 81 04 00 00 00 41");
  const auto name = NameView::of(View(odd));
  ASSERT_TRUE(name);
  EXPECT_EQ(name->encode(),
            fromHex("30 1C 31 1A 30 0A 06 03 55 04 0B 0C 03 61 62 63 30 0C 06 03 55 04 0A 1C 81 04 00 00 00 41"));
  const Octets unsorted = test::writtenName("0C 01 62, 0C 01 61");
  EXPECT_EQ((*NameView::of(View(unsorted))).encode(), test::writtenName("0C 01 61, 0C 01 62"));
}

// A set of attributes is sorted, not compared with each: the time limit of the test is the check.
TEST(Names, ManyAttributes) {
  Octets sets[2];
  for (std::size_t i = 0; i < 200'000; ++i) {
    for (const std::size_t which : {0u, 1u}) {
      const std::string value = "xX"[which] + std::to_string(which == 0 ? i : 199'999 - i);
      const Octets one = tlv(0x30, fromHex("06 03 55 04 03") + tlv(0x0C, Octets(value.begin(), value.end())));
      sets[which].insert(sets[which].end(), one.begin(), one.end());
    }
  }
  const Octets first = tlv(0x30, tlv(0x31, sets[0])), second = tlv(0x30, tlv(0x31, sets[1]));
  EXPECT_TRUE((*NameView::of(View(first))).matches(*NameView::of(View(second))));
}

Octets directoryOf(const std::string &text) {
  const std::map<std::string, std::string> kTypes = {{"C", "55 04 06"},
                                                     {"O", "55 04 0A"},
                                                     {"OU", "55 04 0B"},
                                                     {"CN", "55 04 03"},
                                                     {"E", "2A 86 48 86 F7 0D 01 09 01"}};
  Octets rdns;
  std::istringstream levels(text);
  for (std::string level; std::getline(levels, level, '/');) {
    Octets rdn;
    std::istringstream attributes(level);
    for (std::string each; std::getline(attributes, each, '+');) {
      const std::size_t at = each.find('=');
      const Octets value = tlv(0x0C, Octets(each.begin() + static_cast<std::ptrdiff_t>(at) + 1, each.end()));
      rdn = rdn + tlv(0x30, tlv(0x06, fromHex(kTypes.at(each.substr(0, at)))) + value);
    }
    rdns = rdns + tlv(0x31, rdn);
  }
  return tlv(0x30, rdns);
}

// One GeneralName as data/permits.tsv writes it.
Octets generalName(const std::string &written) {
  if (written[0] == '#') return fromHex(written.substr(1));
  const std::size_t colon = written.find(':');
  const std::string kind = written.substr(0, colon), value = unescape(written.substr(colon + 1));
  if (kind == "dns") return encode(dns(value));
  if (kind == "mail") return encode(email(value));
  if (kind == "uri") return encode(uri(value));
  if (kind == "ip") return encode(ipFromText(value));
  if (kind == "dir") return tlv(0xA4, directoryOf(value));
  const std::string id = value.substr(0, value.find('='));
  const Octets type = encode(*ObjectIdentifier::parse(id));
  if (kind == "id") return tlv(0x88, Octets(type.begin() + 2, type.end()));
  return tlv(0xA0, type + tlv(0xA0, fromHex(value.substr(id.size() + 1))));
}

Octets subtrees(uint8_t tag, const std::string &written) {
  if (written.empty()) return {};
  Octets all;
  for (std::size_t at = 0; at < written.size();) {
    const std::size_t end = std::min(written.find("; ", at), written.size());
    std::string name = written.substr(at, end - at);
    at = end + 2;
    const std::string last = name.size() > 4 ? name.substr(name.size() - 4) : "";
    const bool isMin = last == " min", isMax = last == " max";
    if (isMin || isMax) name.resize(name.size() - 4);
    all = all + tlv(0x30, generalName(name) + fromHex(isMin ? "80 01 01" : isMax ? "81 01 05" : ""));
  }
  return tlv(tag, all);
}

// A certificate with a subject and names after a blank each, as data/permits.tsv writes it.
Octets certificateOf(const std::string &written) {
  const std::size_t blank = written.find(' ', 5);
  std::string names = written.substr(blank + 1);
  Octets extensions;
  if (names != "nosan") {
    Octets all, list;
    const auto close = [&] {
      list = list + tlv(0x30, fromHex("06 03 55 1D 11") + tlv(0x04, tlv(0x30, all))), all = {};
    };
    while (!names.empty()) {
      const std::size_t end = names[0] == '#' ? names.size() : std::min(names.find(' '), names.size());
      const std::string name = names.substr(0, end);
      names.erase(0, end + 1);
      if (name == "&") {
        close();
      } else if (name == "!") {
        list = list + fromHex("30 00");
      } else {
        all = all + generalName(name);
      }
    }
    close();
    extensions = tlv(0xA3, tlv(0x30, list));
  }
  Octets inside, outside;
  for (const Row &row : rowsAbout("base")) {
    if (row.column(1) != "Certificate") continue;
    Octets &part = row.column(2)[0] == '|' ? outside : inside;
    part = part + (row.column(2) == "subject"      ? directoryOf(written.substr(5, blank - 5))
                   : row.column(2) == "extensions" ? extensions
                                                   : fromHex(row.column(3)));
  }
  return tlv(0x30, tlv(0x30, inside) + outside);
}

TEST(Permits, Table) {
  const char *const kVerdicts[] = {"permitted", "excluded", "notPermitted", "unknown"};
  const auto textOf = [&](const Permission &found) { return kVerdicts[static_cast<int>(found.verdict)]; };
  const std::vector<Row> rows = test::rowsOf("data/permits.tsv");
  EXPECT_GE(rows.size(), 120u);
  for (const Row &row : rows) {
    SCOPED_TRACE(row.place);
    const Octets octets = tlv(0x30, subtrees(0xA0, row.column(0)) + subtrees(0xA1, row.column(1)));
    const auto constraints = view<NameConstraintsView>(View(octets));
    ASSERT_TRUE(constraints);
    const std::string written = row.column(2);
    const bool isCertificate = written.rfind("cert ", 0) == 0;
    const Octets name = isCertificate ? certificateOf(written) : generalName(written);
    const auto judged = [&](const auto &by, std::size_t most) {
      if (!isCertificate) return permits(by, *view<GeneralNameView>(View(name)), most);
      return permits(by, *view<CertificateView>(View(name)), most);
    };
    const Permission found = judged(*constraints, kMostComparisons);
    EXPECT_EQ(textOf(found), row.column(3)) << found.why;
    EXPECT_EQ(found.verdict == Permission::Verdict::unknown, found.why[0] != '\0');
    EXPECT_EQ(static_cast<bool>(found), row.column(3) == "permitted");
    if (const auto owned = read<NameConstraints>(View(octets))) {
      EXPECT_EQ(textOf(judged(*owned, kMostComparisons)), row.column(3));
    }
    const bool isCompared = !row.column(0).empty() || !row.column(1).empty();
    if (isCompared && !isCertificate) {
      EXPECT_EQ(textOf(judged(*constraints, 0)), std::string("unknown"));
    }
  }
  const Found<NameConstraintsView> absent,
      faulty(Item<NameConstraintsView>::faulty({}, {Reason::Trailing, 1, 0, nullptr}), true);
  EXPECT_TRUE(permits(absent, dns("a")));
  EXPECT_FALSE(permits(faulty, dns("a")));
}

}  // namespace
}  // namespace ketra
