// The fields of a value as JSON, from which the text form is rendered too: whatever the type, by its description.
//   SEQUENCE             an object; a component is called as in its ASN.1
//   CHOICE               an object with the alternative
//   SEQUENCE OF, SET OF  an array
//   named bits           an array of the names of those that are set
//   INTEGER              a number of at most 64 bits, otherwise text; serial numbers are hexadecimal digits
//   OBJECT IDENTIFIER    see identifier_names.hpp
//   GeneralName          see general_names.hpp
//   other leaves         text, or hexadecimal digits where they have none
// A member of a list that cannot be read is {"kind": "unreadable", "error", "octets"}. Foreign text is escaped.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "ketra/asn1/explain.hpp"
#include "ketra/asn1/walk.hpp"
#include "problem.hpp"

namespace tool {

struct Fields {
  Json json;
  bool allRead = true;  // false: a part is unreadable, which the JSON tells
};

class FieldsBuilder : public ketra::Visitor {
 public:
  using Locate = std::optional<ketra::FaultPlace> (*)(ketra::View octets, const ketra::Fault &fault);

  // `octets`: those of the value, in which `locate` finds faults.
  FieldsBuilder(ketra::View octets, Locate locate) : octets_(octets), locate_(locate) {}

  Fields take() { return {std::move(result_), allRead_}; }

  void enter(const char *name, const Structure &structure) override;
  void leave() override;
  void leaf(const char *name, const LeafValue &value) override;
  void absent(const char *, const LeafValue &) override {}
  void fault(const char *name, ketra::View octets, const ketra::Fault &fault) override;

 private:
  // A value whose members are visited.
  struct Open {
    const char *name;
    ketra::Group group;
    Json json;
    std::optional<std::string> text;  // the words of the type itself
    ketra::View content;              // of the last leaf
    std::size_t leaves = 0;
  };

  void put(const char *name, Json value);
  void addBit(const char *name, const LeafValue &value);
  void finish(Open root);

  ketra::View octets_;
  Locate locate_;
  std::vector<Open> open_;
  std::size_t faults_ = 0;
  Json result_;
  bool allRead_ = true;
};

}  // namespace tool
