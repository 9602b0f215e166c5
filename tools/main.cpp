#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <optional>

#include "batches.hpp"
#include "check.hpp"
#include "exit_status.hpp"
#include "out_of_memory.hpp"
#include "parallel.hpp"
#include "platform.hpp"
#include "show.hpp"
#include "usage.hpp"

namespace {

bool isColoured(tool::ColourChoice choice) {
  if (choice != tool::ColourChoice::Auto) return choice == tool::ColourChoice::Always;
  const char *unwanted = std::getenv("NO_COLOR");
  return (unwanted == nullptr || *unwanted == '\0') && tool::hasColours(stdout);
}

int run(int argc, char **argv) {
  int status = tool::kAllGood;
  const std::optional<tool::Request> request = tool::readCommandLine(argc, argv, status);
  if (!request) return std::cout.flush() ? status : throw std::runtime_error("the results cannot be written");

  // Progress would stand in the middle of results on the same terminal.
  const bool hasTerminal = tool::isTerminal(stderr) && (request->isSummary || !tool::isTerminal(stdout));
  const tool::Run how{.threads = request->threads,
                      .isColoured = !request->asJson && isColoured(request->colour),
                      .showsProgress = hasTerminal};
  tool::BatchReader reader(request->files, request->mostOctets);
  if (request->command == tool::Command::Check) return tool::check(reader, request->isSummary, how);
  return tool::show(reader, request->asJson, how);
}

}  // namespace

int main(int argc, char **argv) {
  tool::makeStreamsBinary();
  std::set_terminate(tool::endUnwinding);
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc &) {
    std::fputs("ketra: out of memory\n", stderr);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "ketra: %s\n", error.what());
  }
  return tool::kNotPossible;
}
