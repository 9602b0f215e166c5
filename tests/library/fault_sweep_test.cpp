// Fails every outside call of every operation in turn, and holds calls, results and traces against
// tests/data/outside_calls.txt.

#include <climits>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "library/outside_calls.h"
#include "library/outside_operations.h"
#include "library/system_requests.h"
#include "names/general_name_object.h"

namespace ketra::test {
namespace {

// ---- The table -----------------------------------------------------------------------------------------------------

struct ExpectedCall {
  std::string name;
  std::vector<std::string> trace;  // when it fails
  int32_t result = -1;
  std::vector<std::string> then;  // what cleans up after that
};

struct Case {
  std::string operation;
  std::string input;
  std::vector<ExpectedCall> calls;
};

std::string replaced(std::string text, const std::string &rules) {
  for (std::size_t at = 0; (at = text.find("XER", at)) != std::string::npos;) text.replace(at, 3, rules);
  return text;
}

// One line of the table.
struct Line {
  std::size_t depth = 0;
  std::string name;
  std::string message;
  std::string recorder;           // whose entry it is, when not that of the line above
  std::string paragraph;          // where its own calls stand, when not below it
  std::vector<std::string> then;  // when it is a line of what cleans up
  bool silent = false;
  bool passes = false;

  Line(const std::string &text, const std::string &rules) {
    const std::size_t begin = text.find_first_not_of(' ');
    depth = begin / 2;
    const std::size_t colon = text.find(": ");
    const std::size_t open = text.find(" (");
    std::istringstream words(replaced(text.substr(begin, std::min(colon, open) - begin), rules));
    words >> name;
    message = colon == std::string::npos ? "Call " + name : text.substr(colon + 2);
    if (open < colon) {
      const std::string input = text.substr(open + 2, text.find(')', open) - open - 2);
      paragraph = name + (input.empty() ? "" : " ") + input;
    }
    for (std::string word; words >> word;) {
      if (name == "then" && word != "nothing") then.push_back(word);
      if (word == "as") std::getline(words >> std::ws, recorder);
      silent = silent || word == "silent";
      passes = passes || word == "passes";
    }
  }
};

class Table {
 public:
  explicit Table(const std::string &path) {
    std::ifstream file(pathOf(path));
    std::string name;
    for (std::string line; std::getline(file, line);) {
      if (line.empty() || line.starts_with('#')) continue;
      if (line[0] != ' ') name = line;
      for (const char *rules : {"DER", "BER"}) {
        std::vector<Line> &lines = paragraphs_[replaced(name, rules)];
        const bool isTwin = name.find("XER") != std::string::npos;
        if (line[0] == ' ' && (isTwin || *rules == 'D')) lines.emplace_back(line, rules);
      }
    }
  }
  std::vector<Case> cases() const {
    std::vector<Case> cases;
    for (const auto &[name, lines] : paragraphs_) {
      const std::size_t blank = std::min(name.find(' '), name.size());
      Case one{name.substr(0, blank), name.substr(std::min(blank + 1, name.size())), {}};
      append(name, {}, {}, one.operation, &one.calls);
      cases.push_back(one);
    }
    return cases;
  }

 private:
  // The calls of a paragraph whose function is called as `outer` says, from the inside out.
  void append(const std::string &paragraph, const std::vector<std::string> &outer,
              const std::vector<std::string> &outerThen, const std::string &function,
              std::vector<ExpectedCall> *calls) const {
    const auto found = paragraphs_.find(paragraph);
    ASSERT_NE(found, paragraphs_.end()) << paragraph;
    const std::vector<Line> &lines = found->second;
    std::vector<const Line *> path;
    std::vector<std::string> then = outerThen;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (lines[i].name == "then") {
        then = lines[i].then;
        then.insert(then.end(), outerThen.begin(), outerThen.end());
        continue;
      }
      path.resize(lines[i].depth - 1);
      path.push_back(&lines[i]);
      if (i + 1 < lines.size() && lines[i + 1].depth > lines[i].depth) continue;
      std::vector<std::string> trace;
      for (std::size_t at = path.size(); at-- > 0;) {
        if (path[at]->silent) continue;
        const std::string &recorder = !path[at]->recorder.empty() ? path[at]->recorder
                                      : at == 0                   ? function
                                                                  : path[at - 1]->name;
        trace.push_back(recorder + ": " + path[at]->message);
      }
      trace.insert(trace.end(), outer.begin(), outer.end());
      if (!lines[i].paragraph.empty()) {
        append(lines[i].paragraph, trace, then, lines[i].name, calls);
      } else {
        calls->push_back({lines[i].name, trace, lines[i].passes ? kInjectedResult : -1, then});
      }
    }
  }

  std::map<std::string, std::vector<Line>> paragraphs_;
};

const std::vector<Case> &cases() {
  static const std::vector<Case> read = Table("data/outside_calls.txt").cases();
  return read;
}

// ---- The sweep -----------------------------------------------------------------------------------------------------

struct Live {
  int workObjects = outside.liveWorkObjects;
  int pools = outside.livePools;
  int names = outside.liveNames;
  bool operator==(const Live &) const = default;
};

// What an operation may change: the Extensions object with its pool (octets, blocks), and nodes.
struct State {
  explicit State(const Stage &stage)
      : pdu(stage.extensions.pdu()), used(usage(stage.extensions.pool())), nodes(stage.nodes()) {}
  std::string pdu;
  std::pair<uint64_t, uint32_t> used;
  std::vector<std::vector<Stage::Node>> nodes;
};

// What has become of each word of a node. The values of pointers differ from run to run.
enum class Word : uint8_t { Untouched, Zero, Filled };
std::vector<Word> changes(const Stage::Node &before, const Stage::Node &after) {
  std::vector<Word> words;
  for (std::size_t i = 0; i < before.size(); ++i) {
    words.push_back(before[i] == after.at(i) ? Word::Untouched : after[i] == 0 ? Word::Zero : Word::Filled);
  }
  return words;
}

struct Run {
  State before;
  State after;
  std::size_t encoded = 0;  // the length of the value that is stored afterwards
};

int32_t runArmed(const Operation &operation, Stage &stage, Err &err, int failAt) {
  outside.callers = err;
  outside.failAt = failAt;
  outside.calls.clear();
  outside.cleanUp.clear();
  outside.openRoots.clear();
  outside.bound.clear();
  outside.lookedUp.clear();
  outside.opened.clear();
  outside.lengthsOf.clear();
  outside.paths.clear();
  outside.armed = true;
  const int32_t result = operation.run(stage, err);
  outside.armed = false;
  return result;
}

Run expectSuccess(const Case &one, const Operation &operation) {
  Stage stage(one.input);
  Err err;
  EXPECT_EQ(operation.prepare(stage, err), 0);
  const State before(stage);
  EXPECT_EQ(runArmed(operation, stage, err, 0), 0) << err.text();
  std::vector<std::string> calls;
  for (const ExpectedCall &call : one.calls) calls.push_back(call.name);
  EXPECT_EQ(outside.calls, calls);
  if (operation.objid != nullptr) {
    EXPECT_EQ(outside.opened, operation.opened);
  }
  EXPECT_EQ(err.block.count, 0u);
  for (const Objid *objid : outside.lookedUp) EXPECT_EQ(objid, operation.objid) << "the export itself is passed";
  if (!outside.lengthsOf.empty()) {
    EXPECT_EQ(outside.lengthsOf, (std::vector<int32_t>{X509LengthOf_NameAssigner, X509LengthOf_PartyName}));
  }
  const std::string stored = operation.objid == nullptr ? "" : stage.extensions.stored(*operation.objid);
  return {before, State(stage), fromHex(stored).size()};
}

// Of the extensions nothing has changed, unless it was the free behind the store that failed. A set leaves its encoding
// in the pool once it has made one, and nothing else.
void expectStored(const Case &one, std::size_t failed, const Run &success, const State &after) {
  const ExpectedCall &call = one.calls[failed];
  const bool isStored = call.trace.front() == "ketraObjectSsetExt: Call AsnMemObjectFree";
  EXPECT_EQ(after.pdu, isStored ? success.after.pdu : success.before.pdu);
  if (!one.operation.starts_with("KetraObjectSset")) return;
  bool isOrphaned = false;
  for (std::size_t i = 0; i < failed && !isStored; ++i) {
    isOrphaned = isOrphaned || one.calls[i].trace.front() == one.operation + ": Call AsnMUtilEncodeDER" ||
                 one.calls[i].trace.front() == one.operation + ": Call AsnMUtilCopyEncodedDataDER";
  }
  auto rest = isStored ? success.after.used : success.before.used;
  if (isOrphaned) rest = {rest.first + success.encoded, rest.second + 1};
  EXPECT_EQ(after.used, rest);
}

// Behind a node that is not filled as far as a success fills it, no node has changed.
void expectInOrder(const Run &success, const State &before, const State &after) {
  for (std::size_t chain = 0; chain < before.nodes.size(); ++chain) {
    bool isFilled = true;
    for (std::size_t i = 0; i < before.nodes[chain].size(); ++i) {
      const auto changed = changes(before.nodes[chain][i], after.nodes[chain][i]);
      if (!isFilled) {
        EXPECT_EQ(changed, std::vector<Word>(changed.size())) << "chain " << chain << ", node " << i;
      }
      isFilled = isFilled && changed == changes(success.before.nodes[chain][i], success.after.nodes[chain][i]);
    }
  }
}

void expectFailure(const Case &one, const Operation &operation, const Run &success, std::size_t failed) {
  const ExpectedCall &call = one.calls[failed];
  SCOPED_TRACE(call.name + ", call " + std::to_string(failed + 1));
  Stage stage(one.input);
  Err err;
  ASSERT_EQ(operation.prepare(stage, err), 0);
  const Live live;
  const State before(stage);
  const AsnOct octets = stage.octets;
  EXPECT_EQ(runArmed(operation, stage, err, static_cast<int>(failed) + 1), call.result);
  EXPECT_EQ(err.code(), kInjectedCode);
  EXPECT_EQ(err.trace(), call.trace);
  if (!outside.cleanUpFails) {
    EXPECT_EQ(outside.cleanUp, call.then);
  }
  EXPECT_EQ(stage.octets.octets, octets.octets) << "written by a success only";
  EXPECT_EQ(outside.liveWorkObjects, live.workObjects);
  EXPECT_LE(outside.livePools, live.pools);
  EXPECT_LE(outside.liveNames, live.names);
  const State after(stage);
  expectStored(one, failed, success, after);
  expectInOrder(success, before, after);
  EXPECT_TRUE(stage.holdsOldNameOrNone());
  Err again;
  EXPECT_EQ(operation.run(stage, again), 0) << "the next call works: " << again.text();
}

void sweep() {
  for (const Case &one : cases()) {
    SCOPED_TRACE(one.operation + " " + one.input);
    const Live before;
    const auto operation = operations().find(one.operation);
    ASSERT_NE(operation, operations().end());
    const Run success = expectSuccess(one, operation->second);
    for (std::size_t call = 0; call < one.calls.size(); ++call) {
      expectFailure(one, operation->second, success, call);
    }
    EXPECT_EQ(Live(), before) << "everything is released";
  }
}

TEST(FaultSweep, EveryOutsideCallOfEveryOperation) {
  sweep();
  std::set<std::string> swept;
  for (const Case &one : cases()) swept.insert(one.operation);
  for (const auto &[name, operation] : operations()) EXPECT_TRUE(swept.contains(name)) << name;
}

// Calls that clean up after the failure change neither result nor code nor trace when they fail themselves.
TEST(FaultSweep, EveryOutsideCallAndTheCleanUpAfterIt) {
  outside.cleanUpFails = true;
  sweep();
  outside.cleanUpFails = false;
}

// A DER encoding takes the place of a BER one only when all of its making has succeeded.
TEST(FaultSweep, FailedEncodingKeepsTheOldOne) {
  const Octets ber = fromHex("82 81 01 61");
  const Operation get{
      [](Stage &stage, AsnErrorBlock *err) { return X509GenNameObjectGetPduDER(stage.object, &stage.encoding, err); }};
  for (int failAt = 1; failAt <= 6; ++failAt) {
    SCOPED_TRACE(failAt);
    Stage stage("dNSName");
    Err err;
    ASSERT_EQ(stage.object.setPdu(ber), 0);
    const auto used = usage(stage.object.handle->pool);
    EXPECT_EQ(runArmed(get, stage, err, failAt), -1);
    EXPECT_EQ(usage(stage.object.handle->pool), used);
    EXPECT_EQ(stage.object.ber(), toHex(ber)) << outside.calls.back();
    EXPECT_EQ(stage.object.der(), "82 01 61");
  }
}

TEST(FaultSweep, NullExtensionsObject) {
  Stage stage("");
  for (const auto &[name, operation] : operations()) {
    if (operation.withoutObject == nullptr) continue;
    Err err;
    EXPECT_EQ(operation.withoutObject(stage, err), -1);
    EXPECT_EQ(err.code(), 0x01460F02u);
    EXPECT_EQ(err.trace(), std::vector<std::string>{name + ": None parameter"});
  }
}

// A failure for want of memory leaves everything as it was, and the next call works.
void expectRefused(const Operation &operation, Stage &stage, const Err &err, const State &before, const Live &live) {
  EXPECT_FALSE(err.trace().empty());
  EXPECT_EQ(stage.extensions.pdu(), before.pdu);
  EXPECT_TRUE(stage.holdsOldNameOrNone());
  EXPECT_EQ(outside.liveWorkObjects, live.workObjects);
  EXPECT_EQ(operation.run(stage, nullptr), 0);
}

// Takes all that the pool can give without asking the system; returns what it holds then.
uint64_t fillUp(AsnMemObject pool) {
  void *memory = nullptr;
  EXPECT_EQ(AsnMemObjectSetLimit(pool, 1, nullptr), 0);
  for (uint32_t size = 16384; size >= 8; size -= std::max(8u, size / 64 * 8)) {
    while (AsnMemObjectMalloc(pool, size, &memory, nullptr) == 0) continue;
  }
  uint64_t held = 0;  // at the first limit that lets it have one more block, it holds as much as that
  do {
    EXPECT_EQ(AsnMemObjectSetLimit(pool, held += 8, nullptr), 0);
  } while (AsnMemObjectMalloc(pool, 8, &memory, nullptr) != 0);
  return held;
}

// However little more a limit lets the pool have, until it is enough.
TEST(FaultSweep, EveryLimitOfThePool) {
  for (const Case &one : cases()) {
    const Operation &operation = operations().at(one.operation);
    const bool isSet = one.operation.starts_with("KetraObjectSset");
    const Live all;
    uint64_t more = 0;
    for (int32_t result = -1; result != 0; more += 8) {
      SCOPED_TRACE(one.operation + " " + one.input + ", " + std::to_string(more) + " octets");
      Stage stage(one.input);
      Err err;
      ASSERT_EQ(operation.prepare(stage, err), 0);
      const State before(stage);
      const Live live;
      AsnMemObject pool = operation.objid == nullptr ? static_cast<AsnMemObject>(stage.pool) : stage.extensions.pool();
      ASSERT_EQ(AsnMemObjectSetLimit(pool, fillUp(pool) + more, nullptr), 0);
      const auto used = usage(pool);
      result = operation.run(stage, err);
      ASSERT_EQ(AsnMemObjectSetLimit(pool, 0, nullptr), 0);
      if (result == 0) break;
      if (isSet) {
        EXPECT_LE(usage(pool).second, used.second + 1) << "an encoding may stay";
      }
      EXPECT_EQ(result, -1);
      EXPECT_EQ(err.code(), uint32_t{AsnMemError_Limit}) << err.text();
      expectRefused(operation, stage, err, before, live);
    }
    EXPECT_TRUE(more > 0 || !isSet) << one.operation;
    EXPECT_EQ(Live(), all) << one.operation;
  }
}

#ifndef KETRA_SANITIZED  // a sanitizer brings its own malloc
// Whichever request the system refuses, alone or with all that follow, the operation fails with the code for it.
TEST(FaultSweep, EveryRequestToTheSystem) {
  for (const Case &one : cases()) {
    const Operation &operation = operations().at(one.operation);
    for (const bool isLasting : {false, true}) {
      bool reached = true;
      for (int refused = 1; reached; ++refused) {
        SCOPED_TRACE(one.operation + " " + one.input + ", request " + std::to_string(refused));
        Stage stage(one.input);
        Err err;
        ASSERT_EQ(operation.prepare(stage, err), 0);
        const State before(stage);
        const Live live;
        requests = {.made = 0, .refuseFrom = refused, .refuseTo = isLasting ? INT_MAX : refused};
        const int32_t result = operation.run(stage, err);
        reached = requests.made >= refused;
        requests.refuseFrom = 0;
        EXPECT_EQ(result, reached ? -1 : 0) << err.text();
        if (!reached) break;
        EXPECT_TRUE(err.code() == AsnError_OutOfMemory || err.code() == AsnMemError_OutOfMemory) << err.text();
        expectRefused(operation, stage, err, before, live);
      }
    }
  }
}
#endif

// The paths by which operations reach elements.
TEST(FaultSweep, Paths) {
  std::map<std::pair<std::string, std::string>, std::map<std::string, std::string>> expected;
  for (const auto &row : rowsOf("data/paths.tsv")) {
    for (const char *rules : {"DER", "BER"}) {
      expected[{replaced(row.at(0), rules), row.at(1)}][replaced(row.at(2), rules)] = " " + row.at(3);
    }
  }
  for (const Case &one : cases()) expected[{one.operation, one.input}];  // without rows: none
  for (const auto &[name, paths] : expected) {
    SCOPED_TRACE(name.first + " " + name.second);
    const Operation &operation = operations().at(name.first);
    Stage stage(name.second);
    Err err;
    ASSERT_EQ(operation.prepare(stage, err), 0);
    ASSERT_EQ(runArmed(operation, stage, err, 0), 0) << err.text();
    EXPECT_EQ(outside.paths, paths);
  }
}

// Answers that another runtime might give.
TEST(FaultSweep, OddAnswers) {
  for (const auto &row : rowsOf("data/odd_answers.tsv")) {
    SCOPED_TRACE(row.place + " " + row.at(0));
    Stage stage(row.at(1));
    Err err;
    ASSERT_EQ(operations().at(row.at(0)).prepare(stage, err), 0);
    outside.answer = {row.at(2), std::stoi(row.at(3)), static_cast<uint32_t>(std::stoul(row.at(4), nullptr, 0))};
    EXPECT_EQ(runArmed(operations().at(row.at(0)), stage, err, 0), -1);
    EXPECT_EQ(outside.answer.occurrence, 0) << "the answer was given";
    outside.answer = {};
    EXPECT_EQ(err.code(), std::stoul(row.at(5), nullptr, 0)) << err.text();
    EXPECT_EQ(err.trace().at(0), row.at(6));
    EXPECT_EQ(err.block.entries[0].valueLength, std::stoul(row.at(7)));
  }
}

}  // namespace
}  // namespace ketra::test
