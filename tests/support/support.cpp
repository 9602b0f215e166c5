#include "support/support.h"

#include <cstdio>
#include <cstring>
#include <deque>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ketra::test {

Octets fromHex(const std::string &hex) {
  Octets octets;
  std::istringstream pieces(hex);
  for (std::string piece; std::getline(pieces, piece, '+');) {
    const std::size_t star = piece.find('*');
    Octets part;
    std::string digits;
    for (const char c : piece.substr(0, star)) {
      if (c == ' ') continue;
      digits += c;
      if (digits.size() < 2) continue;
      part.push_back(static_cast<uint8_t>(std::stoul(digits, nullptr, 16)));
      digits.clear();
    }
    const unsigned long times = star == std::string::npos ? 1 : std::stoul(piece.substr(star + 1));
    for (unsigned long i = 0; i < times; ++i) octets.insert(octets.end(), part.begin(), part.end());
  }
  return octets;
}

std::string toHex(const uint8_t *octets, std::size_t length) {
  std::string hex;
  for (std::size_t i = 0; i < length; ++i) {
    if (i > 0) hex += ' ';
    hex += "0123456789ABCDEF"[octets[i] >> 4];
    hex += "0123456789ABCDEF"[octets[i] & 15];
  }
  return hex;
}

Octets operator+(Octets a, const Octets &b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}
Octets tlv(uint8_t tag, const Octets &content) {
  Octets header = {static_cast<uint8_t>(content.size())};
  for (std::size_t rest = content.size() >> 8; rest > 0; rest >>= 8) header.insert(header.begin(), rest & 0xFF);
  if (content.size() >= 0x80) header.insert(header.begin(), static_cast<uint8_t>(0x80 | header.size()));
  return Octets{tag} + header + content;
}

std::string pathOf(const std::string &path) { return (std::filesystem::path(KETRA_TESTS) / path).string(); }

std::vector<Row> rowsOf(const std::string &path) {
  std::vector<Row> rows;
  std::ifstream file(pathOf(path));
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.starts_with('#')) continue;
    rows.emplace_back().place = path + ":" + std::to_string(number);
    std::istringstream columns(line);
    for (std::string column; std::getline(columns, column, '\t');) rows.back().push_back(column);
  }
  EXPECT_FALSE(rows.empty()) << path;
  return rows;
}

Octets writtenName(const std::string &written) {
  Octets rdns;
  std::istringstream names(written);
  for (std::string each; std::getline(names, each, '/');) {
    Octets members;
    std::istringstream attributes(each);
    for (std::string member; std::getline(attributes, member, ',');) {
      const std::size_t colon = member.find(':');
      const std::string type = colon == std::string::npos ? "55 04 03" : member.substr(0, colon);
      members = members + tlv(0x30, tlv(6, fromHex(type)) + fromHex(member.substr(colon + 1)));
    }
    rdns = rdns + tlv(0x31, members);
  }
  return tlv(0x30, rdns);
}

const std::map<std::string, std::string> &goldenRows() {
  static const std::map<std::string, std::string> rows = [] {
    std::map<std::string, std::string> read;
    for (const auto &row : rowsOf("golden.tsv")) read[row.at(0)] = toHex(fromHex(row.at(1)));
    return read;
  }();
  return rows;
}

std::string golden(const std::string &name) {
  const auto row = goldenRows().find(name);
  return row == goldenRows().end() ? "no golden row " + name : row->second;
}

AsnOct exactly(std::string_view characters) {
  static std::deque<Exact> kept;
  const AsnEncodedData data = kept.emplace_back(Octets(characters.begin(), characters.end())).data();
  return {data.octets, data.length};
}

std::string Err::text() const {
  std::string text(AsnErrorText(&block, nullptr, 0, nullptr, 0), '\0');
  AsnErrorText(&block, nullptr, 0, text.data(), static_cast<uint32_t>(text.size() + 1));
  return text;
}

std::vector<std::string> Err::trace() const {
  std::vector<std::string> entries;
  for (uint32_t i = 0; i < block.count; ++i) {
    entries.push_back(std::string(block.entries[i].function) + ": " + block.entries[i].message);
  }
  return entries;
}

std::string Err::innermost() const {
  const auto &entry = block.entries[0];
  char code[9];
  std::snprintf(code, sizeof code, "%08X", block.code);
  std::string text = std::string(code) + " " + trace().at(0);
  int32_t value = 0;
  if (entry.valueLength != sizeof value) return text;
  std::memcpy(&value, entry.valueOctets, sizeof value);
  return text + " [" + std::to_string(value) + "]";
}

std::pair<uint64_t, uint32_t> usage(AsnMemObject pool) {
  std::pair<uint64_t, uint32_t> live{};
  EXPECT_EQ(AsnMemObjectUsage(pool, &live.first, &live.second, nullptr), 0);
  return live;
}

Work::Work(const AsnType *type) : encoding_({}) {
  EXPECT_EQ(AsnObjectCreate(&object, nullptr), 0);
  EXPECT_EQ(AsnOpenNew(object, type, &value, nullptr), 0);
}

Work::Work(const AsnType *type, const Octets &encoding) : encoding_(encoding) {
  const AsnEncodedData data = encoding_.data();
  EXPECT_EQ(AsnObjectCreate(&object, nullptr), 0);
  EXPECT_EQ(AsnOpenFromMem(object, type, &data, &value, nullptr), 0);
}

AsnValue Work::element(const char *path) const {
  AsnValue element = nullptr;
  EXPECT_EQ(AsnGetElement(object, value, path, &element, nullptr), 0);
  return element;
}

std::string Work::encode(bool der, const char *path) {
  const Pool pool;
  Err err;
  AsnEncodedData encoding{};
  const int32_t result = der ? AsnMUtilEncodeDER(pool, object, value, path, &encoding, err)
                             : AsnMUtilEncodeBER(pool, object, value, path, &encoding, err);
  return result == 0 ? toHex(encoding) : err.text();
}

void Extensions::store(const Objid &objid, const Octets &value, int32_t critical) {
  const KetraExtension extension{objid, critical, critical, {value.data(), static_cast<uint32_t>(value.size())}};
  EXPECT_EQ(KetraObjectSetExt(handle, &extension, nullptr), 0);
}

const KetraExtension *Extensions::find(const Objid &objid) const {
  const KetraExtension *extension = nullptr;
  EXPECT_EQ(KetraObjectSearchExtpByObjid(handle, &objid, &extension, nullptr), 0);
  return extension;
}

std::string Extensions::stored(const Objid &objid) const {
  const KetraExtension *const extension = find(objid);
  return extension == nullptr ? "absent" : toHex(extension->value);
}

std::string Extensions::pdu() const {
  const AsnEncodedData whole = encoding();
  const std::string hex = toHex(whole);
  EXPECT_EQ(AsnMemObjectFree(pool(), whole.octets, nullptr), 0);
  return hex;
}

}  // namespace ketra::test
