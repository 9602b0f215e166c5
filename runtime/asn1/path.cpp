#include "runtime/asn1/path.h"

#include <algorithm>
#include <cstring>

namespace ketra::asn1 {
namespace {

bool isUsable(const Node *base) { return base != nullptr && base->state <= State::Decoded; }

[[gnu::cold]] void failBase(Call call, const Node *base) {
  if (base == nullptr) {
    call.fail(AsnError_NullParameter, "no value or element");
  } else {
    call.fail(AsnError_State, base->state == State::Closed ? "the value is closed" : "the value is not decoded");
  }
}

bool isUsable(Call call, const Node *base) {
  if (isUsable(base)) [[likely]]
    return true;
  failBase(call, base);
  return false;
}

[[gnu::cold]] void failStep(Call call, const AsnType *type, std::string_view rest) {
  const std::string_view step = rest.substr(0, rest.find('/'));
  if (isList(kindOf(type))) {
    call.fail(AsnError_Path, Text() << "\"" << step << "\" is no member number of " << nameOf(type));
  } else {
    call.fail(AsnError_Path, Text() << nameOf(type) << " has no component \"" << step << "\"");
  }
}

const char *begin(const char *path) { return path == nullptr ? "" : path[0] == '/' ? path + 1 : path; }
bool isEnd(char c) { return c == '\0' || c == '/'; }

// A member number; one that no list can have comes out as 0. Returns where it ends, null when it is none.
inline const char *readNumber(const char *path, uint32_t *number) {
  constexpr uint64_t kTooLarge = uint64_t{1} << 32;
  const char *const digits = path + (*path == '-' ? 1 : 0);
  const char *at = digits;
  uint64_t value = 0;
  for (uint32_t digit = 0; (digit = static_cast<uint32_t>(*at - '0')) <= 9; ++at) {
    value = std::min(value * 10 + digit, kTooLarge);
  }
  *number = digits == path && value != kTooLarge ? static_cast<uint32_t>(value) : 0;
  return at != digits && isEnd(*at) ? at : nullptr;
}

// Where the name ends at the start of the path, null when the path's first step is another.
inline const char *matchName(const char *path, const char *name) {
  if (*path != *name) return nullptr;
  const std::size_t length = std::strlen(name);
  return std::strncmp(path, name, length) == 0 && isEnd(path[length]) ? path + length : nullptr;
}

// Moves `place` one step along the path: by type, and along the elements as far as they are there. `number` is that of
// a list's member. Returns where the step ends, null after a failure.
[[gnu::always_inline]] inline const char *takeStep(const Call &call, const char *path, Found *place, uint32_t *number) {
  const auto [from, type] = *place;
  const AsnType *const definition = definitionOf(type);
  const Kind kind = kindOf(type);
  const char *end = nullptr;
  if (isList(kind)) {
    end = readNumber(path, number);
    const bool isThere = from != nullptr && *number - 1 < from->length;  // 0 wraps: there is no such member
    *place = {isThere ? from->children[*number - 1] : nullptr, definition + 1};
  } else if (hasComponents(kind)) {
    const AsnType *component = definition;
    const AsnType *const last = definition + definition->count;
    while (end == nullptr && component != last) end = matchName(path, (++component)->name);
    Node *child = nullptr;
    if (end != nullptr && from != nullptr) {
      child = kind == Kind::Sequence ? from->children[component - definition - 1] : from->chosen;
      if (child != nullptr && child->record != component) child = nullptr;  // another alternative
    }
    *place = {child, component};
  }
  if (end == nullptr) failStep(call, type, path);
  return end;
}

// Most paths are member numbers, a component's name, or one behind the other; and most names are the very text that the
// component's record points to (equal ones are stored once). Where the path goes on in another way, there is no type,
// and the steps above go on from `from` and `path`.
[[gnu::always_inline]] inline Found takeEasySteps(Node *&from, const char *&path, uint32_t *number) {
  for (;;) {
    const AsnType *const definition = definitionOf(from->record);
    switch (kindOf(definition)) {
      case Kind::Sequence:
        for (uint32_t i = 0; i < definition->count; ++i) {
          if (definition[1 + i].name == path) return {from->children[i], definition + 1 + i};
        }
        return {};
      case Kind::Choice: {
        Node *const chosen = from->chosen;
        if (chosen != nullptr && chosen->record->name == path) return {chosen, chosen->record};
        for (uint32_t i = 1; i <= definition->count; ++i) {
          if (definition[i].name == path) return {nullptr, definition + i};
        }
        return {};
      }
      case Kind::SequenceOf:
      case Kind::SetOf: break;
      default: return {};
    }
    constexpr uint32_t kMost = 100'000'000;  // one digit more has room as well
    const char *at = path;
    uint32_t digit = 0;
    for (*number = 0; (digit = static_cast<uint32_t>(*at - '0')) <= 9 && *number < kMost; ++at) {
      *number = *number * 10 + digit;
    }
    if (*number == 0) return {};
    Node *const member = *number <= from->length ? from->children[*number - 1] : nullptr;
    if (*at == '\0') return {member, definition + 1};
    if (*at != '/' || member == nullptr) return {};
    from = member;
    path = at + 1;
  }
}

// What is missing on a path, from the outermost element to make.
struct Plan {
  Node *existing;       // the deepest element that is there
  const AsnType *type;  // of the element at the end
  uint32_t missing = 0;
  const AsnType *records[ASN_MAX_NESTING];
};

[[gnu::always_inline]] inline bool planStep(const Call &call, const AsnType *outer, const Found &place, uint32_t number,
                                            std::string_view step, Plan *plan) {
  if (place.element != nullptr) {
    plan->existing = place.element;
    return true;
  }
  const uint32_t members = plan->missing == 0 ? plan->existing->length : 0;
  if (isList(kindOf(outer)) && number - 1 != members) {
    call.fail(AsnError_Path, Text() << "member " << step << " cannot be made: " << nameOf(outer) << " has " << members);
    return false;
  }
  if (plan->missing == ASN_MAX_NESTING) {
    call.fail(AsnError_Nesting, Text() << "more than " << uint32_t{ASN_MAX_NESTING} << " elements to make");
    return false;
  }
  plan->records[plan->missing++] = place.type;
  return true;
}

[[gnu::always_inline]] inline bool plan(const Call &call, Node *base, const char *path, Plan *plan) {
  Found place{base, base->record};
  plan->existing = base;
  plan->type = base->record;
  const char *at = begin(path);
  if (*at == '\0') return true;
  for (;; ++at) {
    const AsnType *const outer = place.type;
    uint32_t number = 0;
    const char *const start = at;
    at = takeStep(call, at, &place, &number);
    if (at == nullptr || !planStep(call, outer, place, number, {start, at}, plan)) return false;
    plan->type = place.type;
    if (*at == '\0') return true;
  }
}

[[gnu::cold]] void failMemory(const Call &call) {
  call.fail(AsnError_OutOfMemory, "the system has no memory for an element");
}

Node *makeChild(Arena &arena, Node *parent, const AsnType *record) {
  const Kind kind = kindOf(parent->record);
  if (isList(kind)) return appendMember(arena, parent);
  Node *child = newNode(arena, record);
  if (child == nullptr) return nullptr;
  Node *&place = kind == Kind::Choice ? parent->chosen : parent->children[record - definitionOf(parent->record) - 1];
  place = child;
  return child;
}

// A scalar that was made but never set is absent.
Found present(const Found &found) {
  const Node *element = found.element;
  if (element == nullptr || element->isSet || hasChildren(kindOf(element->record))) [[likely]]
    return found;
  return {nullptr, found.type};
}

// The rest of a path, which is not empty.
[[gnu::noinline]] Found takeSteps(Call call, Node *from, const char *path) {
  if (!isUsable(call, from)) return {};
  Found place{from, from->record};
  uint32_t number = 0;
  for (;; ++path) {
    path = takeStep(call, path, &place, &number);
    if (path == nullptr) return {};
    if (*path == '\0') return present(place);
  }
}

[[gnu::noinline]] Node *makeSteps(const Call &call, Arena &arena, Node *base, const char *path,
                                  bool (*fits)(const AsnType *)) {
  if (!isUsable(call, base)) return nullptr;
  if (base->encoding != nullptr) {
    call.fail(AsnError_State, "a value that was decoded cannot be changed");
    return nullptr;
  }
  Plan made;
  if (!plan(call, base, path, &made)) return nullptr;
  if (fits != nullptr && !fits(made.type)) {
    call.fail(AsnError_Kind, Text() << nameOf(made.type) << " is of another type than the operation sets");
    return nullptr;
  }
  Node *node = made.existing;
  for (uint32_t i = 0; node != nullptr && i < made.missing; ++i) node = makeChild(arena, node, made.records[i]);
  if (node == nullptr) failMemory(call);
  return node;
}

// Makes the last element where those before it are there, which is nearly always.
[[gnu::noinline]] Node *makeKnown(const Call &call, Arena &arena, Node *base, const char *path,
                                  bool (*fits)(const AsnType *)) {
  uint32_t number = 0;
  Node *parent = base;
  const char *at = begin(path);
  const Found found = takeEasySteps(parent, at, &number);
  const bool isNext = !isList(kindOf(parent->record)) || number - 1 == parent->length;
  const bool isKnown = found && (found.element != nullptr || isNext);
  if (!isKnown || (fits != nullptr && !fits(found.type))) return makeSteps(call, arena, base, path, fits);
  Node *node = found.element != nullptr ? found.element : makeChild(arena, parent, found.type);
  if (node == nullptr) failMemory(call);
  return node;
}

}  // namespace

Found findElement(Call call, Node *base, const char *path) {
  const char *at = begin(path);
  if (isUsable(base)) [[likely]] {
    uint32_t number = 0;
    const Found found = *at == '\0' ? Found{base, base->record} : takeEasySteps(base, at, &number);
    if (found) [[likely]]
      return present(found);
  }
  return takeSteps(call, base, at);
}

Node *makeElement(const Call &call, Arena &arena, Node *base, const char *path, bool (*fits)(const AsnType *)) {
  const char *const at = begin(path);
  if (isUsable(base) && base->encoding == nullptr) [[likely]] {
    if (*at != '\0') return makeKnown(call, arena, base, path, fits);
    if (fits == nullptr || fits(base->record)) return base;
  }
  return makeSteps(call, arena, base, path, fits);
}

}  // namespace ketra::asn1
