#include "runtime/asn1/path.h"

#include <charconv>
#include <string_view>

namespace ketra::asn1 {
namespace {

// The steps of a path, one by one.
class Steps {
 public:
  explicit Steps(const char *path) : rest_(path == nullptr ? "" : path) {
    if (!rest_.empty() && rest_.front() == '/') rest_.remove_prefix(1);
    done_ = rest_.empty();
  }
  bool next(std::string_view *step) {
    if (done_) return false;
    const std::size_t slash = rest_.find('/');
    *step = rest_.substr(0, slash);
    done_ = slash == std::string_view::npos;
    if (!done_) rest_.remove_prefix(slash + 1);
    return true;
  }

 private:
  std::string_view rest_;
  bool done_;
};

const AsnType *componentNamed(const AsnType *definition, std::string_view name) {
  for (uint32_t i = 1; i <= definition->count; ++i) {
    if (name == definition[i].name) return definition + i;
  }
  return nullptr;
}

// A member number; what no list can have comes out as 0. False when the step is no number.
bool memberNumber(std::string_view step, uint32_t *number) {
  const bool negative = !step.empty() && step.front() == '-';
  const char *begin = step.data() + (negative ? 1 : 0);
  const char *end = step.data() + step.size();
  const auto [next, error] = std::from_chars(begin, end, *number);
  if (begin == end || next != end || error == std::errc::invalid_argument) return false;
  if (negative || error == std::errc::result_out_of_range) *number = 0;
  return true;
}

bool isUsable(const Call &call, const Node *base) {
  if (base == nullptr) {
    call.fail(AsnError_NullParameter, "no value or element");
    return false;
  }
  if (!base->isRoot) return true;
  switch (static_cast<const OpenValue *>(base)->state) {
    case OpenValue::State::Bound: call.fail(AsnError_State, "the value is not decoded"); return false;
    case OpenValue::State::Closed: call.fail(AsnError_State, "the value is closed"); return false;
    default: return true;
  }
}

// Where one step leads by type alone; null after a failure. For a list, also which member.
const AsnType *stepType(const Call &call, const AsnType *type, std::string_view step, uint32_t *number) {
  const Kind kind = kindOf(type);
  const AsnType *definition = definitionOf(type);
  if (isList(kind)) {
    if (memberNumber(step, number)) return definition + 1;
    call.fail(AsnError_Path, Text() << "\"" << step << "\" is no member number of " << nameOf(type));
    return nullptr;
  }
  const AsnType *component =
      kind == Kind::Sequence || kind == Kind::Choice ? componentNamed(definition, step) : nullptr;
  if (component == nullptr) call.fail(AsnError_Path, Text() << nameOf(type) << " has no component \"" << step << "\"");
  return component;
}

Node *childOf(const Node *parent, const AsnType *component, uint32_t number) {
  switch (kindOf(parent->record)) {
    case Kind::Sequence: return parent->children[component - definitionOf(parent->record) - 1];
    case Kind::Choice: {
      Node *chosen = parent->children[0];
      return chosen != nullptr && chosen->record == component ? chosen : nullptr;
    }
    default: return number >= 1 && number <= parent->length ? parent->children[number - 1] : nullptr;
  }
}

// Whether the path can be made as far as its types and member numbers go; with the element when it is there already.
bool canMake(const Call &call, Node *base, const char *path, bool (*fits)(const AsnType *), Node **element) {
  const AsnType *type = base->record;
  *element = base;
  std::string_view step;
  for (Steps steps(path); steps.next(&step);) {
    uint32_t number = 0;
    const AsnType *component = stepType(call, type, step, &number);
    if (component == nullptr) return false;
    const uint32_t members = *element == nullptr ? 0 : (*element)->length;
    if (isList(kindOf(type)) && (number == 0 || number - 1 > members)) {
      call.fail(AsnError_Path,
                Text() << "member " << step << " cannot be made: " << nameOf(type) << " has " << members);
      return false;
    }
    if (*element != nullptr) *element = childOf(*element, component, number);
    type = component;
  }
  if (fits == nullptr || fits(type)) return true;
  call.fail(AsnError_Kind, Text() << nameOf(type) << " is of another type than the operation sets");
  return false;
}

Node *makeChild(Arena &arena, Node *parent, const AsnType *component) {
  if (isList(kindOf(parent->record))) return appendMember(arena, parent);
  Node *child = newNode(arena, component);
  const auto place = kindOf(parent->record) == Kind::Choice ? 0 : component - definitionOf(parent->record) - 1;
  if (child != nullptr) parent->children[place] = child;
  return child;
}

}  // namespace

bool findElement(const Call &call, Node *base, const char *path, Node **element, const AsnType **type) {
  if (!isUsable(call, base)) return false;
  *element = base;
  *type = base->record;
  std::string_view step;
  for (Steps steps(path); steps.next(&step);) {
    uint32_t number = 0;
    const AsnType *component = stepType(call, *type, step, &number);
    if (component == nullptr) return false;
    if (*element != nullptr) *element = childOf(*element, component, number);
    *type = component;
  }
  if (*element != nullptr && !hasChildren(kindOf(*type)) && !(*element)->isSet) *element = nullptr;
  return true;
}

Node *makeElement(const Call &call, Arena &arena, Node *base, const char *path, bool (*fits)(const AsnType *)) {
  if (!isUsable(call, base)) return nullptr;
  if (base->encoding != nullptr) {
    call.fail(AsnError_State, "a value that was decoded cannot be changed");
    return nullptr;
  }
  Node *node = nullptr;
  if (!canMake(call, base, path, fits, &node)) return nullptr;
  if (node != nullptr) return node;
  node = base;
  std::string_view step;
  for (Steps steps(path); node != nullptr && steps.next(&step);) {
    uint32_t number = 0;
    const AsnType *component = stepType(call, node->record, step, &number);
    Node *child = childOf(node, component, number);
    node = child != nullptr ? child : makeChild(arena, node, component);
  }
  if (node == nullptr) call.fail(AsnError_OutOfMemory, "the system has no memory for an element");
  return node;
}

}  // namespace ketra::asn1
