#include "tally.hpp"

#include <iomanip>

#include "identifier_names.hpp"
#include "ketra/names/identifiers.hpp"

namespace tool {
namespace {

constexpr std::size_t kMostRows = 1000;   // identifiers, and reasons, that are told apart
constexpr std::size_t kMostOctets = 128;  // of an identifier
constexpr int kWidth = 11;                // of a column

std::string nameOf(const ketra::ObjectIdentifier &objid) {
  const std::string_view name = ketra::oid::name(objid);
  return name.empty() ? objid.text() : std::string(name) + " (" + objid.text() + ")";
}

}  // namespace

const char *verdictName(Verdict verdict) {
  switch (verdict) {
    case Verdict::Identical: return "identical";
    case Verdict::ReEncoded: return "re-encoded";
    case Verdict::Refused: return "refused";
    case Verdict::Rejected: return "rejected";
    case Verdict::Unknown: return "unknown";
  }
  return "";
}

void Tally::Row::add(Verdict verdict, bool isCritical) {
  critical += isCritical ? 1 : 0;
  ++verdicts[static_cast<std::size_t>(verdict)];
}

void Tally::Row::add(const Row &other) {
  critical += other.critical;
  for (std::size_t i = 0; i < kVerdicts; ++i) verdicts[i] += other.verdicts[i];
}

uint64_t Tally::Row::extensions() const {
  uint64_t sum = 0;
  for (const uint64_t count : verdicts) sum += count;
  return sum;
}

void Tally::countRow(const ketra::ObjectIdentifier &objid, Verdict verdict, bool critical) {
  rowOf(objid).add(verdict, critical);
}

Tally::Row &Tally::rowOf(const ketra::ObjectIdentifier &objid) {
  if (const auto found = rows_.find(objid); found != rows_.end()) return found->second;
  return rows_.size() < kMostRows && objid.content().size() <= kMostOctets ? rows_[objid] : otherRows_;
}

void Tally::countReason(const std::string &what, const std::string &reason, const std::string &place) {
  addReason({what, reason}, {1, place});
}

void Tally::addReason(const ReasonKey &key, const Reason &reason) {
  const auto found = reasons_.find(key);
  if (found != reasons_.end()) {
    found->second.count += reason.count;
  } else if (reasons_.size() < kMostRows) {
    reasons_.emplace(key, reason);
  } else {
    otherReasons_ += reason.count;
  }
}

void Tally::add(const Tally &later) {
  allGood = allGood && later.allGood;
  certificates += later.certificates;
  crls += later.crls;
  requests += later.requests;
  unreadable += later.unreadable;
  all_.add(later.all_);
  for (const auto &[objid, row] : later.rows_) rowOf(objid).add(row);
  otherRows_.add(later.otherRows_);
  for (const auto &[key, reason] : later.reasons_) addReason(key, reason);
  otherReasons_ += later.otherReasons_;
}

void Tally::printLine(std::ostream &out) const {
  out << certificates << " certificates, " << crls << " CRLs, " << requests << " requests, " << all_.extensions()
      << " extensions: ";
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    out << (i == 0 ? "" : ", ") << all_.verdicts[i] << " " << verdictName(static_cast<Verdict>(i));
  }
  if (unreadable > 0) out << "; " << unreadable << " unreadable";
  out << "\n";
}

// Columns without a number are left out, so that the table is narrow.
void Tally::printHeading(std::ostream &out) const {
  out << std::setw(kWidth) << "extensions";
  if (all_.critical > 0) out << std::setw(kWidth) << "critical";
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    if (all_.verdicts[i] > 0) out << std::setw(kWidth) << verdictName(static_cast<Verdict>(i));
  }
  out << "\n";
}

void Tally::printRow(std::ostream &out, const Row &row, const std::string &name) const {
  if (row.extensions() == 0) return;
  out << std::setw(kWidth) << row.extensions();
  if (all_.critical > 0) out << std::setw(kWidth) << row.critical;
  for (std::size_t i = 0; i < kVerdicts; ++i) {
    if (all_.verdicts[i] > 0) out << std::setw(kWidth) << row.verdicts[i];
  }
  out << "  " << name << "\n";
}

void Tally::printReasons(std::ostream &out) const {
  std::string what;
  for (const auto &[key, reason] : reasons_) {
    if (what != key.first) out << "\n" << key.first << "\n";
    what = key.first;
    out << std::setw(kWidth) << reason.count << "  " << key.second << "\n";
    out << std::string(kWidth, ' ') << "  first: " << reason.firstPlace << "\n";
  }
  if (otherReasons_ > 0) out << "\nothers\n" << std::setw(kWidth) << otherReasons_ << "\n";
}

void Tally::printSummary(std::ostream &out) const {
  if (all_.extensions() > 0) printHeading(out);
  for (const auto &[objid, row] : rows_) printRow(out, row, nameOf(objid));
  printRow(out, otherRows_, "others");
  printReasons(out);
  out << "\n";
  printLine(out);
}

}  // namespace tool
