// What was found, counted: of a batch, and of all of them together. Takes a bounded amount of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "identifier.hpp"

namespace tool {

// What check says of an extension.
enum class Verdict { Identical, ReEncoded, Refused, Rejected, Unknown };
const char *verdictName(Verdict verdict);

class Tally {
 public:
  bool allGood = true;
  uint64_t certificates = 0;
  uint64_t crls = 0;
  uint64_t requests = 0;
  uint64_t unreadable = 0;
  std::vector<std::string> failures;  // of a batch: what the program could not do, escaped

  void count(Verdict verdict, bool critical) { all_.add(verdict, critical); }
  // For the summary: one row for each identifier, and one for each reason, with the place where it came first.
  void countRow(const ketra::ObjectIdentifier &objid, Verdict verdict, bool critical);
  void countReason(const std::string &what, const std::string &reason, const std::string &place);

  // Adds what comes later in the input.
  void add(const Tally &later);

  void printLine(std::ostream &out) const;
  void printSummary(std::ostream &out) const;

 private:
  static constexpr std::size_t kVerdicts = 5;
  struct Row {
    uint64_t critical = 0;
    uint64_t verdicts[kVerdicts] = {};

    void add(Verdict verdict, bool isCritical);
    void add(const Row &other);
    uint64_t extensions() const;
  };
  struct Reason {
    uint64_t count = 0;
    std::string firstPlace;
  };
  using ReasonKey = std::pair<std::string, std::string>;

  Row &rowOf(const ketra::ObjectIdentifier &objid);
  void addReason(const ReasonKey &key, const Reason &reason);
  void printHeading(std::ostream &out) const;
  void printRow(std::ostream &out, const Row &row, const std::string &name) const;
  void printReasons(std::ostream &out) const;

  Row all_;
  std::map<ketra::ObjectIdentifier, Row, ByArcs> rows_;
  Row otherRows_;  // of identifiers for which there was no room
  std::map<ReasonKey, Reason> reasons_;
  uint64_t otherReasons_ = 0;
};

}  // namespace tool
