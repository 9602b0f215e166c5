// The floor: what a straight-line reader and writer of one extension costs that somebody writes by hand for it alone.
// It reads definite lengths into structures of views, does not look at characters or identifiers, and writes backwards.
// Capacities are fixed, but for lists of names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace bench::lean {

struct View {
  const uint8_t *at;
  uint32_t size;
};

class Reader {
 public:
  Reader() = default;
  Reader(const uint8_t *at, std::size_t size) : at_(at), end_(at + size) {}
  bool done() const { return at_ == end_; }
  bool has(uint8_t tag) const { return at_ != end_ && *at_ == tag; }
  View view() const { return {at_, static_cast<uint32_t>(end_ - at_)}; }
  uint8_t operator[](std::size_t i) const { return at_[i]; }

  bool any(uint8_t &tag, Reader &content) {
    if (end_ - at_ < 2) return false;
    tag = at_[0];
    std::size_t length = at_[1];
    const uint8_t *from = at_ + 2;
    if ((length & 0x80) != 0) {
      std::size_t octets = length & 0x7F;
      if (octets == 0 || octets > 4 || static_cast<std::size_t>(end_ - from) < octets) return false;
      for (length = 0; octets > 0; --octets) length = length << 8 | *from++;
    }
    if (static_cast<std::size_t>(end_ - from) < length) return false;
    content = {from, length};
    at_ = from + length;
    return true;
  }
  bool next(uint8_t expected, Reader &content) {
    uint8_t tag = 0;
    return has(expected) && any(tag, content);
  }
  bool only(uint8_t tag, Reader &content) { return next(tag, content) && done(); }
  bool next(uint8_t tag, View &value) {
    Reader content;
    if (!next(tag, content)) return false;
    value = content.view();
    return true;
  }
  bool next(uint8_t tag, uint32_t &number) {
    Reader content;
    if (!next(tag, content) || content.done() || content.view().size > 4 || content[0] >= 0x80) return false;
    number = 0;
    for (uint32_t i = 0; i < content.view().size; ++i) number = number << 8 | content[i];
    return true;
  }
  bool next(uint8_t tag, bool &value) {
    Reader content;
    if (!next(tag, content) || content.view().size != 1) return false;
    value = content[0] != 0;
    return true;
  }
  // The first 16 bits.
  bool nextBits(uint8_t tag, uint32_t &bits) {
    Reader content;
    if (!next(tag, content) || content.done() || content.view().size > 3 || content[0] > 7) return false;
    bits = content.view().size > 1 ? uint32_t{content[1]} << 8 : 0;
    if (content.view().size > 2) bits |= content[2];
    return true;
  }

 private:
  const uint8_t *at_ = nullptr;
  const uint8_t *end_ = nullptr;
};

class Writer {
 public:
  explicit Writer(uint8_t *end) : at_(end) {}
  uint8_t *at() const { return at_; }

  void octet(unsigned value) { *--at_ = static_cast<uint8_t>(value); }
  // In front of what was written since `end`.
  void header(uint8_t tag, const uint8_t *end) {
    auto length = static_cast<std::size_t>(end - at_);
    if (length < 0x80) {
      octet(static_cast<unsigned>(length));
    } else {
      unsigned octets = 0x80;
      for (; length > 0; length >>= 8, ++octets) octet(length & 0xFF);
      octet(octets);
    }
    octet(tag);
  }
  void value(uint8_t tag, View value) {
    const uint8_t *end = at_;
    at_ -= value.size;
    std::memcpy(at_, value.at, value.size);
    header(tag, end);
  }
  void number(uint8_t tag, uint32_t number) {
    const uint8_t *end = at_;
    do octet(number & 0xFF);
    while ((number >>= 8) != 0);
    if (*at_ >= 0x80) octet(0);
    header(tag, end);
  }
  void yes(uint8_t tag) { octet(0xFF), octet(1), octet(tag); }
  void bits(uint8_t tag, uint32_t bits) {
    const uint8_t *end = at_;
    const int unused = bits == 0 ? 16 : __builtin_ctz(bits);
    if (unused < 8) octet(bits & 0xFF);
    if (unused < 16) octet(bits >> 8);
    octet(static_cast<unsigned>(unused % 8));
    header(tag, end);
  }

 private:
  uint8_t *at_;
};

struct BasicConstraints {
  bool cA, hasLength;
  uint32_t length;
  bool read(Reader in) {
    Reader s;
    cA = hasLength = false;
    if (!in.only(0x30, s) || (s.has(0x01) && !s.next(0x01, cA))) return false;
    if (s.has(0x02)) hasLength = s.next(0x02, length);
    return s.done();
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    if (hasLength) w.number(0x02, length);
    if (cA) w.yes(0x01);
    w.header(0x30, end);
  }
};

struct KeyUsage {
  uint32_t bits;
  bool read(Reader in) { return in.nextBits(0x03, bits) && in.done(); }
  void write(Writer &w) const { w.bits(0x03, bits); }
};

struct SubjectKeyId {
  View id;
  bool read(Reader in) { return in.next(0x04, id) && in.done(); }
  void write(Writer &w) const { w.value(0x04, id); }
};

// CRLNumber and ReasonCode.
template <uint8_t kTag>
struct Number {
  uint32_t number;
  bool read(Reader in) { return in.next(kTag, number) && in.done(); }
  void write(Writer &w) const { w.number(kTag, number); }
};

struct InvalidityDate {
  uint8_t pairs[7];  // century, year, month, day, hour, minute, second
  bool read(Reader in) {
    Reader s;
    if (!in.only(0x18, s) || s.view().size != 15 || s[14] != 'Z') return false;
    for (std::size_t i = 0; i < 7; ++i) {
      const unsigned tens = s[2 * i] - unsigned{'0'}, ones = s[2 * i + 1] - unsigned{'0'};
      if (tens > 9 || ones > 9) return false;
      pairs[i] = static_cast<uint8_t>(tens * 10 + ones);
    }
    return pairs[2] - 1u < 12 && pairs[3] - 1u < 31 && pairs[4] < 24 && pairs[5] < 60 && pairs[6] < 61;
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    w.octet('Z');
    for (std::size_t i = 7; i-- > 0;) w.octet('0' + pairs[i] % 10u), w.octet('0' + pairs[i] / 10u);
    w.header(0x18, end);
  }
};

struct PolicyConstraints {
  bool hasExplicit, hasInhibit;
  uint32_t requireExplicit, inhibit;
  bool read(Reader in) {
    Reader s;
    hasExplicit = hasInhibit = false;
    if (!in.only(0x30, s)) return false;
    if (s.has(0x80)) hasExplicit = s.next(0x80, requireExplicit);
    if (s.has(0x81)) hasInhibit = s.next(0x81, inhibit);
    return s.done();
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    if (hasInhibit) w.number(0x81, inhibit);
    if (hasExplicit) w.number(0x80, requireExplicit);
    w.header(0x30, end);
  }
};

struct ExtKeyUsage {
  uint32_t count;
  View purposes[8];
  bool read(Reader in) {
    Reader s;
    if (!in.only(0x30, s)) return false;
    for (count = 0; !s.done(); ++count) {
      if (count == 8 || !s.next(0x06, purposes[count])) return false;
    }
    return count > 0;
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    for (uint32_t i = count; i-- > 0;) w.value(0x06, purposes[i]);
    w.header(0x30, end);
  }
};

struct PolicyMappings {
  uint32_t count;
  View mappings[8][2];
  bool read(Reader in) {
    Reader s, one;
    if (!in.only(0x30, s)) return false;
    for (count = 0; !s.done(); ++count) {
      if (count == 8 || !s.next(0x30, one)) return false;
      if (!one.next(0x06, mappings[count][0]) || !one.next(0x06, mappings[count][1]) || !one.done()) return false;
    }
    return count > 0;
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    for (uint32_t i = count; i-- > 0;) {
      const uint8_t *one = w.at();
      w.value(0x06, mappings[i][1]);
      w.value(0x06, mappings[i][0]);
      w.header(0x30, one);
    }
    w.header(0x30, end);
  }
};

struct Tagged {
  uint8_t tag;
  View value;
};

struct CertPolicies {
  struct Qualifier {
    View id;
    Tagged value;
  };
  struct Policy {
    View id;
    uint32_t count;
    Qualifier qualifiers[2];
  };
  uint32_t count;
  Policy policies[8];

  static bool read(Reader in, Policy &policy) {
    Reader list, one, value;
    policy.count = 0;
    if (!in.next(0x06, policy.id)) return false;
    if (in.done()) return true;
    if (!in.only(0x30, list)) return false;
    for (; !list.done(); ++policy.count) {
      Qualifier &qualifier = policy.qualifiers[policy.count];
      if (policy.count == 2 || !list.next(0x30, one) || !one.next(0x06, qualifier.id)) return false;
      if (!one.any(qualifier.value.tag, value) || !one.done()) return false;
      qualifier.value.value = value.view();
    }
    return true;
  }
  bool read(Reader in) {
    Reader s, one;
    if (!in.only(0x30, s)) return false;
    for (count = 0; !s.done(); ++count) {
      if (count == 8 || !s.next(0x30, one) || !read(one, policies[count])) return false;
    }
    return count > 0;
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    for (uint32_t i = count; i-- > 0;) {
      const Policy &policy = policies[i];
      const uint8_t *one = w.at();
      for (uint32_t k = policy.count; k-- > 0;) {
        const uint8_t *info = w.at();
        w.value(policy.qualifiers[k].value.tag, policy.qualifiers[k].value.value);
        w.value(0x06, policy.qualifiers[k].id);
        w.header(0x30, info);
      }
      if (policy.count > 0) w.header(0x30, one);
      w.value(0x06, policy.id);
      w.header(0x30, one);
    }
    w.header(0x30, end);
  }
};

// A directoryName, its attributes in a row.
struct Directory {
  struct Attribute {
    View type;
    Tagged value;
    bool isFirst;  // of its RDN
  };
  uint32_t count;
  Attribute attributes[8];

  bool read(Reader in) {
    Reader s, rdn, one, value;
    count = 0;
    if (!in.only(0x30, s)) return false;
    while (!s.done()) {
      if (!s.next(0x31, rdn)) return false;
      for (bool isFirst = true; !rdn.done(); isFirst = false, ++count) {
        Attribute &attribute = attributes[count];
        if (count == 8 || !rdn.next(0x30, one) || !one.next(0x06, attribute.type)) return false;
        if (!one.any(attribute.value.tag, value) || !one.done()) return false;
        attribute.value.value = value.view();
        attribute.isFirst = isFirst;
      }
    }
    return true;
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at(), *rdn = end;
    for (uint32_t i = count; i-- > 0;) {
      const uint8_t *one = w.at();
      w.value(attributes[i].value.tag, attributes[i].value.value);
      w.value(0x06, attributes[i].type);
      w.header(0x30, one);
      if (attributes[i].isFirst) w.header(0x31, rdn), rdn = w.at();
    }
    w.header(0x30, end);
  }
};

// At most one of them is a directoryName, which lies in `directory`.
struct Names {
  Tagged *names;
  uint32_t capacity, count;
  Directory *directory;

  bool readOne(Reader &list) {
    Reader content;
    uint8_t tag = 0;
    if (count == capacity || !list.any(tag, content) || (tag & 0x1F) > 8) return false;
    names[count++] = {tag, content.view()};
    return tag != 0xA4 || directory->read(content);
  }
  bool readAll(Reader list) {
    for (count = 0; !list.done();) {
      if (!readOne(list)) return false;
    }
    return count > 0;
  }
  void writeOne(Writer &w, uint32_t i) const {
    const uint8_t *end = w.at();
    if (names[i].tag != 0xA4) return w.value(names[i].tag, names[i].value);
    directory->write(w);
    w.header(0xA4, end);
  }
  void writeAll(Writer &w) const {
    for (uint32_t i = count; i-- > 0;) writeOne(w, i);
  }
  // How many there are in a GeneralNames value.
  static uint32_t countIn(Reader in) {
    Reader s, content;
    uint32_t count = 0;
    uint8_t tag = 0;
    if (in.only(0x30, s)) {
      while (s.any(tag, content)) ++count;
    }
    return count;
  }
};

template <uint32_t kCapacity>
struct FewNames {
  uint32_t count;
  Tagged room[kCapacity];
  Directory directory;
  Names all() { return {room, kCapacity, count, &directory}; }
  bool read(Reader list) {
    Names names = all();
    const bool isRead = names.readAll(list);
    count = names.count;
    return isRead;
  }
};

struct SubjectAltName {
  Names names;
  bool read(Reader in) {
    Reader s;
    return in.only(0x30, s) && names.readAll(s);
  }
  void write(Writer &w) const {
    const uint8_t *end = w.at();
    names.writeAll(w);
    w.header(0x30, end);
  }
};

struct AuthorityKeyId {
  View id, serial;
  FewNames<4> issuer;
  bool read(Reader in) {
    Reader s, names;
    id = serial = {};
    issuer.count = 0;
    if (!in.only(0x30, s) || (s.has(0x80) && !s.next(0x80, id))) return false;
    if (s.has(0xA1) && (!s.next(0xA1, names) || !issuer.read(names))) return false;
    if (s.has(0x82) && !s.next(0x82, serial)) return false;
    return s.done();
  }
  void write(Writer &w) {
    const uint8_t *end = w.at();
    if (serial.size > 0) w.value(0x82, serial);
    const uint8_t *names = w.at();
    issuer.all().writeAll(w);
    if (issuer.count > 0) w.header(0xA1, names);
    if (id.size > 0) w.value(0x80, id);
    w.header(0x30, end);
  }
};

// The distributionPoint of a point: a fullName.
struct FullName {
  FewNames<4> names;
  bool read(Reader &point) {
    Reader choice, list;
    names.count = 0;
    if (!point.has(0xA0)) return true;
    return point.next(0xA0, choice) && choice.only(0xA0, list) && names.read(list);
  }
  void write(Writer &w) {
    const uint8_t *end = w.at();
    if (names.count == 0) return;
    names.all().writeAll(w);
    w.header(0xA0, end);
    w.header(0xA0, end);
  }
};

struct CrlDistributionPoints {
  struct Point {
    FullName name;
    bool hasReasons;
    uint32_t reasons;
    FewNames<2> issuer;
  };
  uint32_t count;
  Point points[4];

  static bool read(Reader in, Point &point) {
    Reader names;
    point.hasReasons = false;
    point.issuer.count = 0;
    if (!point.name.read(in)) return false;
    if (in.has(0x81)) point.hasReasons = in.nextBits(0x81, point.reasons);
    if (in.has(0xA2) && (!in.next(0xA2, names) || !point.issuer.read(names))) return false;
    return in.done();
  }
  bool read(Reader in) {
    Reader s, one;
    if (!in.only(0x30, s)) return false;
    for (count = 0; !s.done(); ++count) {
      if (count == 4 || !s.next(0x30, one) || !read(one, points[count])) return false;
    }
    return count > 0;
  }
  void write(Writer &w) {
    const uint8_t *end = w.at();
    for (uint32_t i = count; i-- > 0;) {
      const uint8_t *one = w.at();
      points[i].issuer.all().writeAll(w);
      if (points[i].issuer.count > 0) w.header(0xA2, one);
      if (points[i].hasReasons) w.bits(0x81, points[i].reasons);
      points[i].name.write(w);
      w.header(0x30, one);
    }
    w.header(0x30, end);
  }
};

struct IssuingDistributionPoint {
  FullName name;
  bool onlyUser, onlyCa, hasReasons, indirect;
  uint32_t reasons;
  bool read(Reader in) {
    Reader s;
    onlyUser = onlyCa = hasReasons = indirect = false;
    if (!in.only(0x30, s) || !name.read(s)) return false;
    if ((s.has(0x81) && !s.next(0x81, onlyUser)) || (s.has(0x82) && !s.next(0x82, onlyCa))) return false;
    if (s.has(0x83)) hasReasons = s.nextBits(0x83, reasons);
    return (!s.has(0x84) || s.next(0x84, indirect)) && s.done();
  }
  void write(Writer &w) {
    const uint8_t *end = w.at();
    if (indirect) w.yes(0x84);
    if (hasReasons) w.bits(0x83, reasons);
    if (onlyCa) w.yes(0x82);
    if (onlyUser) w.yes(0x81);
    name.write(w);
    w.header(0x30, end);
  }
};

struct NameConstraints {
  FewNames<8> lists[2];  // permitted, excluded; a minimum or maximum is refused
  bool read(Reader in) {
    Reader s, list, one;
    if (!in.only(0x30, s)) return false;
    for (uint8_t i = 0; i < 2; ++i) {
      Names names = lists[i].all();
      names.count = 0;
      if (s.has(0xA0 + i)) {
        if (!s.next(0xA0 + i, list)) return false;
        while (!list.done()) {
          if (!list.next(0x30, one) || !names.readOne(one) || !one.done()) return false;
        }
      }
      lists[i].count = names.count;
    }
    return s.done();
  }
  void write(Writer &w) {
    const uint8_t *end = w.at();
    for (uint8_t i = 2; i-- > 0;) {
      const uint8_t *list = w.at();
      for (uint32_t k = lists[i].count; k-- > 0;) {
        const uint8_t *one = w.at();
        lists[i].all().writeOne(w, k);
        w.header(0x30, one);
      }
      if (lists[i].count > 0) w.header(static_cast<uint8_t>(0xA0 + i), list);
    }
    w.header(0x30, end);
  }
};

}  // namespace bench::lean
