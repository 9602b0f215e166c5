// Whether two names match (RFC 5280 7.1). Attributes are ordered by what counts for a match, so those of one relative
// distinguished name can be sorted and then compared in pairs.

#include <algorithm>
#include <cstring>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/error.h"
#include "runtime/asn1/work_object.h"
#include "runtime/certificate/name_object.h"

namespace ketra::certificate {
namespace {

using asn1::Call;

// The characters of a string that count: no space at its ends, one between words, ASCII letters in one case.
class Folded {
 public:
  static constexpr uint32_t kEnd = UINT32_MAX;

  explicit Folded(const Attribute &string)
      : characters_(string.alphabet, string.value.content.octets, string.value.content.length) {
    skipSpace();
  }

  uint32_t next() {
    if (space_) {
      space_ = false;
      return ' ';
    }
    const uint32_t character = ahead_;
    if (character == kEnd) return kEnd;
    space_ = skipSpace();
    return character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character;
  }

 private:
  // Moves to the next character but space; whether there is one, behind space.
  bool skipSpace() {
    for (bool skipped = false; characters_.next(&ahead_); skipped = true) {
      if (ahead_ != ' ') return skipped;
    }
    ahead_ = kEnd;
    return false;
  }

  Characters characters_;
  uint32_t ahead_ = kEnd;
  bool space_ = false;  // comes before what is ahead
};

int compareOctets(const AsnOct &a, const AsnOct &b) {
  if (a.length != b.length) return a.length < b.length ? -1 : 1;
  return a.length == 0 ? 0 : std::memcmp(a.octets, b.octets, a.length);
}

int compareStrings(const Attribute &a, const Attribute &b) {
  Folded left(a);
  Folded right(b);
  for (;;) {
    const uint32_t x = left.next();
    const uint32_t y = right.next();
    if (x != y) return x < y ? -1 : 1;
    if (x == Folded::kEnd) return 0;
  }
}

int compareAttributes(const Attribute &a, const Attribute &b) {
  const int types = compareOctets(a.type, b.type);
  if (types != 0) return types;
  const bool isString = a.alphabet != Alphabet::None;
  if (isString != (b.alphabet != Alphabet::None)) return isString ? 1 : -1;
  return isString ? compareStrings(a, b) : compareOctets(a.value.whole, b.value.whole);
}

// The attributes of one relative distinguished name after the other, in order.
class Attributes {
 public:
  explicit Attributes(asn1::Arena &arena) : arena_(arena) {}

  // False without memory.
  bool read(const Encoding &rdn) {
    count_ = 0;
    Walk members(rdn.content);
    for (Encoding member{}; members.next(&member);) {
      if (count_ == capacity_ && !grow()) return false;
      attributes_[count_++] = attributeOf(member);
    }
    std::sort(attributes_, attributes_ + count_,
              [](const Attribute &a, const Attribute &b) { return compareAttributes(a, b) < 0; });
    return true;
  }
  bool matches(const Attributes &other) const {
    return std::equal(attributes_, attributes_ + count_, other.attributes_, other.attributes_ + other.count_,
                      [](const Attribute &a, const Attribute &b) { return compareAttributes(a, b) == 0; });
  }

 private:
  bool grow() {
    const std::size_t capacity = std::max<std::size_t>(4, 2 * capacity_);
    auto *room = arena_.makeArray<Attribute>(capacity);
    if (room == nullptr) return false;
    std::copy_n(attributes_, count_, room);
    attributes_ = room;
    capacity_ = capacity;
    return true;
  }

  asn1::Arena &arena_;
  Attribute *attributes_ = nullptr;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
};

int32_t compareNames(Call call, asn1::Arena &arena, X509NameObject name, X509NameObject other, int32_t *equal) {
  Attributes left(arena);
  Attributes right(arena);
  Walk leftRdns(name->rdns.members());
  Walk rightRdns(other->rdns.members());
  Encoding leftRdn{};
  Encoding rightRdn{};
  bool matches = true;
  for (bool more = true; matches && more;) {
    more = leftRdns.next(&leftRdn);
    matches = more == rightRdns.next(&rightRdn);
    if (!matches || !more) break;
    if (!left.read(leftRdn) || !right.read(rightRdn)) {
      return call.fail(X509NameError_OutOfMemory, "the system has no memory to compare names");
    }
    matches = left.matches(right);
  }
  *equal = matches ? 1 : 0;
  return 0;
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509NameObjectCompare(X509NameObject name, X509NameObject other, int32_t *equal, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (name == nullptr || other == nullptr || equal == nullptr) {
    return call.fail(X509NameError_NullParameter, "no name or no place for the result");
  }
  if (compareOctets(name->rdns.members(), other->rdns.members()) == 0) {
    *equal = 1;
    return 0;
  }
  return ketra::asn1::withWorkObject(
      call, [&](AsnObject work) { return compareNames(call, work->arena, name, other, equal); });
}
