#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "check.hpp"
#include "exit_status.hpp"
#include "ketra.hpp"
#include "output.hpp"
#include "show.hpp"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

constexpr const char *kFooter =
    "FILE is PEM or DER, one or more certificates and CRLs in any mixture; - is standard input.\n"
    "Exit status: 0 all good; 1 some of the input is faulty, the rest was handled; 2 a file cannot be read, or usage.";

std::string version() {
  const char *banner = "";
  KetraVersion(&banner);
  std::string text = banner;
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

int run(int argc, char **argv) {
  CLI::App app("Shows and checks the extensions of X.509 certificates and CRLs.", "ketra");
  app.allow_windows_style_options(false);  // "/" begins a path everywhere
  app.set_version_flag("--version", version);
  app.require_subcommand(1);
  app.footer(kFooter);

  std::vector<std::string> files;
  bool asJson = false;
  CLI::App *show = app.add_subcommand("show", "Print every extension, field by field");
  show->add_flag("--json", asJson, "Print JSON instead of text");
  CLI::App *check = app.add_subcommand("check", "Read and write every extension again and report what differs");
  for (CLI::App *command : {show, check}) {
    command->add_option("FILE", files, "Certificates and CRLs")->required();
    command->footer(kFooter);
  }

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError &error) {
    return app.exit(error) == 0 ? tool::kAllGood : tool::kNotPossible;
  }
  if (check->parsed()) return tool::check(files, std::cout);
  const auto printer = asJson ? tool::makeJsonPrinter(std::cout) : tool::makeTextPrinter(std::cout);
  return tool::show(files, *printer);
}

}  // namespace

// Unwinding would ask for memory again, in destructors.
[[noreturn]] void outOfMemory() {
  std::fputs("ketra: out of memory\n", stderr);
  std::_Exit(tool::kNotPossible);
}

int main(int argc, char **argv) {
#ifdef _WIN32
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  std::set_new_handler(outOfMemory);
  try {
    const int status = run(argc, argv);
    if (std::cout.flush()) return status;
    std::cerr << "ketra: the results cannot be written\n";
  } catch (const std::exception &error) {
    std::cerr << "ketra: " << error.what() << "\n";
  }
  return tool::kNotPossible;
}
