#include "parallel.hpp"

#include <cerrno>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <exception>
#include <mutex>
#include <new>
#include <optional>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "colour.hpp"
#include "out_of_memory.hpp"
#include "progress.hpp"

namespace tool {
namespace {

// Thrown in a thread to end it because another has failed.
struct Stopped {};

// Lets batches through in the order of their numbers.
class Turns {
 public:
  // Returns false when that turn will not come.
  bool await(uint64_t number) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return isStopped_ || turn_ == number; });
    return !isStopped_;
  }
  void pass() {
    change([&] { ++turn_; });
  }
  void stop() {
    change([&] { isStopped_ = true; });
  }
  bool isStopped() {
    const std::lock_guard lock(mutex_);
    return isStopped_;
  }

 private:
  template <class Change>
  void change(const Change &make) {
    {
      const std::lock_guard lock(mutex_);
      make();
    }
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  uint64_t turn_ = 0;
  bool isStopped_ = false;
};

// Keeps what a batch prints until its turn comes; when that is much, waits for the turn and lets it through.
class OrderedBuffer : public std::streambuf, public Unprinted {
 public:
  OrderedBuffer(Turns &turns, uint64_t number) : turns_(turns), number_(number) {}
  void finish() {
    if (!turns_.await(number_)) throw Stopped();
    writeResult(text_);
    text_.clear();
  }
  void printNow() noexcept override {
    if (!turns_.await(number_)) return;
    std::fwrite(text_.data(), 1, text_.size(), stdout);
    std::fflush(stdout);
  }

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) put(traits_type::to_char_type(c));
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(const char *text, std::streamsize size) override {
    put({text, static_cast<std::size_t>(size)});
    return size;
  }

 private:
  void put(char c) { put({&c, 1}); }
  void put(std::string_view text) {
    constexpr std::size_t kMost = std::size_t{1} << 20;
    text_ += text;
    if (text_.size() >= kMost) finish();
  }

  Turns &turns_;
  uint64_t number_;
  std::string text_;
};

class Workshop {
 public:
  Workshop(BatchReader &reader, const Handler &handler, const Run &run)
      : reader_(reader), handler_(handler), run_(run), progress_(run.showsProgress) {}

  // What each thread does.
  void work() {
    try {
      while (const std::optional<Batch> batch = take()) handle(*batch);
    } catch (const Stopped &) {
      return;
    } catch (...) {
      const std::lock_guard lock(mutex_);
      if (!failure_) failure_ = std::current_exception();
      turns_.stop();
    }
  }

  Outcome finish() {
    for (std::size_t i = 0; std::thread *helper = this->helper(i); ++i) helper->join();
    progress_.clear();
    if (failure_) std::rethrow_exception(failure_);
    if (isOutOfMemory_) throw std::bad_alloc();
    return std::move(outcome_);
  }

 private:
  std::optional<Batch> take() {
    const std::lock_guard lock(mutex_);
    if (turns_.isStopped() || isOutOfMemory_) return std::nullopt;
    try {
      std::optional<Batch> batch = reader_.next();
      if (batch && helpers_.size() + 1 < run_.threads) startHelper();
      return batch;
    } catch (const std::bad_alloc &) {
      isOutOfMemory_ = true;  // the other threads finish what they have
      return std::nullopt;
    }
  }

  // One with each batch, so that little input starts few.
  void startHelper() {
    try {
      helpers_.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
      // The system has no more: those that run are enough.
    } catch (const std::bad_alloc &) {
    }
  }

  // Null behind the last. Who has started the next one has done so before its own end.
  std::thread *helper(std::size_t i) {
    const std::lock_guard lock(mutex_);
    return i < helpers_.size() ? &helpers_[i] : nullptr;
  }

  void handle(const Batch &batch) {
    OrderedBuffer buffer(turns_, batch.number);
    std::ostream out(&buffer);
    out.exceptions(std::ios_base::badbit);  // lets through what the buffer throws
    setColoured(out, run_.isColoured);
    Tally tally;
    try {
      tally = handler_(batch, out);
      buffer.finish();
    } catch (const std::bad_alloc &) {
      buffer.printNow();
      throw;
    }
    // It is this batch's turn: nobody else is here.
    outcome_.tally.add(tally);
    for (const std::string &failure : tally.failures) report(failure);
    if (!batch.failure.empty()) report(batch.failure);
    progress_.show(batch.firstPiece + batch.pieces.size(), batch.filesBefore);
    turns_.pass();
  }

  void report(const std::string &failure) {
    outcome_.allRead = false;
    progress_.clear();
    std::fprintf(stderr, "ketra: %s\n", failure.c_str());
  }

  BatchReader &reader_;
  const Handler &handler_;
  const Run &run_;
  std::mutex mutex_;  // of reader_, isOutOfMemory_, helpers_ and failure_
  bool isOutOfMemory_ = false;
  std::deque<std::thread> helpers_;
  std::exception_ptr failure_;
  Turns turns_;
  Progress progress_;
  Outcome outcome_;
};

}  // namespace

void writeResult(std::string_view text) {
  errno = 0;
  const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (!isWritten) throw std::system_error(errno, std::generic_category(), "the results cannot be written");
}

Outcome handleAll(BatchReader &reader, const Handler &handler, const Run &run) {
  Workshop workshop(reader, handler, run);
  workshop.work();
  return workshop.finish();
}

}  // namespace tool
