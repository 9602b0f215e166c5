// Stands between libketra and its runtime: counts the outside calls of one operation and fails the one that is asked
// for. It works because the library calls the runtime through the dynamic symbol table.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ketra/contracts/asn1.h"

namespace ketra::test {

constexpr int32_t kInjectedResult = -77;
constexpr uint32_t kInjectedCode = 0x7EA50FFF;
constexpr uint32_t kCleanUpCode = 0x7EA50EEE;

// Makes one call answer what the runtime never does; for an element, null.
struct Answer {
  std::string call;
  int occurrence = 0;  // from 1; 0: none
  uint32_t value = 0;
};

struct OutsideCalls {
  bool armed = false;
  AsnErrorBlock *callers = nullptr;  // what every call up to the failure must be given, and none after it
  int failAt = 0;                    // 0: none
  bool cleanUpFails = false;         // so does every call after that one
  std::vector<std::string> calls;    // up to the failure
  std::vector<std::string> cleanUp;  // after it
  std::vector<const Objid *> lookedUp;
  std::map<AsnValue, std::pair<const AsnEncodedData *, AsnEncodedData>> bound;  // what values were opened from
  std::string opened;                                                           // the type of the first value
  std::map<AsnObject, AsnValue> openRoots;   // the first value of each work object, while it is open
  std::map<std::string, std::string> paths;  // of the calls that were made, each after a blank, by their names
  std::vector<int32_t> lengthsOf;            // what string lengths were said to belong to
  Answer answer;
  int liveWorkObjects = 0;
  int livePools = 0;
  int liveNames = 0;
};

extern thread_local OutsideCalls outside;  // of the thread, so that threads may run operations

}  // namespace ketra::test
