// Threads, each on objects of its own, get what one thread alone gets. ThreadSanitizer looks on in the preset tsan.
#include <barrier>
#include <thread>

#include "library/outside_calls.h"
#include "library/outside_operations.h"

namespace ketra::test {

// Nothing stands between the libraries here: its locks would order the threads and hide races.
thread_local OutsideCalls outside;

namespace {

constexpr std::size_t kThreads = 8;
// Kinds of names, lists, alternatives; operations that want no such input ignore it or fail.
constexpr const char *kInputs[] = {"",          "two",           "1",           "fullName",
                                   "otherName", "directoryName", "x400Address", "ediPartyName"};

// What each piece of work gave, by its name.
using Results = std::map<std::string, std::string>;

std::string pduOf(KetraObject extensions) {
  Err err;
  AsnEncodedData pdu{};
  return KetraObjectGetPduDER(extensions, &pdu, err) == 0 ? toHex(pdu) : err.text();
}

// The operation, and the same once more where it finds its extension broken.
std::string outcome(const Operation &operation, const std::string &input) {
  Stage stage(input);
  Err err;
  operation.prepare(stage, err);
  std::string text = std::to_string(operation.run(stage, err)) + " " + err.text();
  text += " " + std::to_string(stage.number) + " " + std::to_string(stage.integer) + " ";
  text += textOf(stage.objid) + " " + stage.object.der() + " " + stage.prepared.fullName.at(0).der() + " ";
  text += pduOf(stage.extensions);
  if (operation.objid != nullptr) {
    stage.extensions.store(*operation.objid, {0x30, 0x05, 0x01});
    AsnErrorReset(err);
    text += " " + std::to_string(operation.run(stage, err)) + " " + err.text();
  }
  return text;
}

// Everything, beginning at another place for each thread, so that different operations meet.
Results work(std::size_t thread) {
  Results results;
  std::size_t done = thread * operations().size() / kThreads;
  for (std::size_t i = 0; i < operations().size(); ++i, ++done) {
    const auto &[name, operation] = *std::next(operations().begin(), static_cast<long>(done % operations().size()));
    for (const char *input : kInputs) results[name + " " + input] = outcome(operation, input);
  }
  return results;
}

template <class Work>
void inThreads(Work &&each) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      each(i);
    });
  }
  for (std::thread &thread : threads) thread.join();
}

// The threads come first, so that what is made on first use is made by one of them.
TEST(Threads, GetWhatOneThreadGets) {
  Results results[kThreads];
  inThreads([&](std::size_t thread) { results[thread] = work(thread); });
  const Results alone = work(0);
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    for (const auto &[name, result] : alone) EXPECT_EQ(results[thread][name], result) << name << ", thread " << thread;
  }
}

// AsnGetObjidBER puts the arcs into memory of the thread.
TEST(Threads, ReadIdentifiersOfTheirOwn) {
  std::barrier all(kThreads);
  inThreads([&](std::size_t thread) {
    for (uint8_t round = 0; round < 100; ++round) {
      Work decoded(schema::record(schema::Entry::OBJECTIDENTIFIER),
                   {0x06, 0x03, 0x2A, static_cast<uint8_t>(thread), round});
      Objid read{};
      EXPECT_EQ(decoded.decode() + AsnGetObjidBER(decoded.object, decoded.value, "", &read, nullptr), 0);
      all.arrive_and_wait();
      EXPECT_EQ(textOf(read), "1.2." + std::to_string(thread) + "." + std::to_string(round));
      all.arrive_and_wait();
    }
  });
}

}  // namespace
}  // namespace ketra::test
