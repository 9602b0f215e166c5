#include "usage.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <system_error>
#include <thread>

#include "escape.hpp"
#include "exit_status.hpp"
#include "ketra/ketra.h"

namespace tool {
namespace {

// Lines of at most 80 characters.
constexpr const char *kFooter =
    "FILE holds certificates, CRLs and certificate requests as PEM or DER, any number\n"
    "of them in any mixture. Of a directory, all files below it are read. - is\n"
    "standard input.\n"
    "\n"
    "Exit status: 0 all good; 1 some of the input is faulty, the rest was handled;\n"
    "2 a file cannot be read, results cannot be written, out of memory, wrong usage.";

constexpr const char *kExamples =
    "Examples:\n"
    "  ketra show server.pem\n"
    "  ketra check --summary /etc/ssl/certs\n"
    "  ketra show --json - < request.der\n"
    "\n"
    "ketra show --help and ketra check --help tell the options.\n"
    "\n";

std::string version() {
  const char *banner = "";
  KetraVersion(&banner);
  std::string text = banner;
  while (text.ends_with('\n')) text.pop_back();
  return text;
}

class CommandLine {
 public:
  explicit CommandLine(Request &request) : request_(request) {
    for (CLI::App *each : {&app_, show_, check_}) {
      each->allow_windows_style_options(false);  // "/" begins a path everywhere
    }
    app_.set_version_flag("--version", version, "Print the version and exit");
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.require_subcommand(1);
    app_.footer(std::string(kExamples) + kFooter);
    show_->add_flag("--json", request.asJson, "Print one JSON array instead of text")->disable_flag_override();
    check_
        ->add_flag(
            "--summary", request.isSummary,
            "Print how many there are of each extension, and the\nreasons of what is not identical, not every case")
        ->disable_flag_override();
    for (CLI::App *command : {show_, check_}) addCommon(*command);
    app_.get_formatter()->column_width(24);  // the commands have the same
  }

  void parse(int argc, char **argv) {
    app_.parse(argc, argv);
    request_.command = check_->parsed() ? Command::Check : Command::Show;
    readJobs();
    readMostOctets();
    readColour();
  }

  // Help and version are no errors.
  int report(const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) return app_.exit(error), kAllGood;
    std::cerr << "ketra: " << explain(error) << "\n";
    return kNotPossible;
  }

 private:
  void addCommon(CLI::App &command) {
    command.set_help_flag("-h,--help", "Print this help and exit");
    command.add_option("FILE", request_.files, "Files and directories to read")->required()->type_name("");
    command.add_option("-j,--jobs", jobs_, "Use N threads (default: one for each processor)")->type_name("N");
    command
        .add_option("--max-object", mostOctets_,
                    "Do not read an object of more than SIZE octets; SIZE\nmay end in K, M or G (default: 256M)")
        ->type_name("SIZE");
    command
        .add_option("--color", colour_, "always, never, or auto (the default): on a terminal,\nunless NO_COLOR is set")
        ->type_name("WHEN");
    command.footer(kFooter);
  }

  void readJobs() {
    constexpr unsigned kMost = 1024;
    const auto [end, error] = std::from_chars(jobs_.data(), jobs_.data() + jobs_.size(), request_.threads);
    const bool isNumber = error == std::errc() && end == jobs_.data() + jobs_.size();
    if (isNumber && request_.threads >= 1 && request_.threads <= kMost) return;
    throw CLI::ValidationError("--jobs", jobs_ + " is no number from 1 to " + std::to_string(kMost));
  }

  // The library reads encodings of up to 4294967295 octets.
  void readMostOctets() {
    constexpr uint64_t kMost = uint64_t{1} << 32;
    constexpr std::string_view kUnits = "KMG";
    const std::size_t unit = mostOctets_.empty() ? kUnits.npos : kUnits.find(mostOctets_.back());
    const char *const digitsEnd = mostOctets_.data() + mostOctets_.size() - (unit == kUnits.npos ? 0 : 1);
    const std::size_t shift = unit == kUnits.npos ? 0 : 10 * (unit + 1);
    uint64_t number = 0;
    const auto [end, error] = std::from_chars(mostOctets_.data(), digitsEnd, number);
    const bool isNumber = error == std::errc() && end == digitsEnd;
    if (!isNumber || number == 0 || number > kMost >> shift) {
      throw CLI::ValidationError("--max-object", mostOctets_ + " is not a size from 1 to 4G");
    }
    request_.mostOctets = number << shift;
  }

  void readColour() {
    if (colour_ == "always") {
      request_.colour = ColourChoice::Always;
    } else if (colour_ == "never") {
      request_.colour = ColourChoice::Never;
    } else if (colour_ != "auto") {
      throw CLI::ValidationError("--color", colour_ + " is none of auto, always, never");
    }
  }

  std::string explain(const CLI::ParseError &error) const {
    const CLI::App *command = show_->parsed() ? show_ : check_->parsed() ? check_ : nullptr;
    const std::vector<std::string> before = app_.remaining();
    if (command == nullptr || !before.empty()) return explainCommand(before.empty() ? "" : before.front());
    const std::string name = "ketra " + command->get_name();
    const std::string help = "; " + name + " --help tells more";
    if (const std::vector<std::string> unknown = command->remaining(); !unknown.empty()) {
      return name + " has no option " + escape(unknown.front()) + ", it has" + optionsOf(*command) + help;
    }
    if (error.get_name() == "RequiredError") return "which files? " + name + " FILE..., - is standard input" + help;
    const std::string what = error.what();
    if (error.get_name() == "ArgumentMismatch") return escape(what.substr(0, what.find(':'))) + " needs a value" + help;
    return escape(what) + help;
  }

  static std::string optionsOf(const CLI::App &command) {
    std::string text;
    for (const CLI::Option *option : command.get_options()) {
      for (const std::string &name : option->get_lnames()) text.append(text.empty() ? " --" : ", --").append(name);
    }
    return text;
  }

  static std::string explainCommand(const std::string &word) {
    const std::string help = "; ketra --help tells more";
    if (word.empty()) return "say what to do: ketra show FILE... or ketra check FILE..." + help;
    const std::string shown = escape(word);
    if (word.starts_with("-") && word != "-") return "options come behind the command, show or check: " + shown + help;
    std::error_code error;
    if (word == "-" || std::filesystem::exists(word, error)) {
      return shown + " is a file, not a command; to print what it holds: ketra show " + shown;
    }
    return "there is no command " + shown + ", there are show and check" + help;
  }

  Request &request_;
  std::string jobs_ = std::to_string(std::max(1U, std::thread::hardware_concurrency()));
  std::string mostOctets_ = "256M";
  std::string colour_ = "auto";
  CLI::App app_{"Shows and checks the extensions of X.509 certificates, CRLs and certificate requests.", "ketra"};
  CLI::App *show_ = app_.add_subcommand("show", "Print every extension, field by field");
  CLI::App *check_ = app_.add_subcommand("check", "Write every extension anew and report what differs");
};

}  // namespace

std::optional<Request> readCommandLine(int argc, char **argv, int &status) {
  Request request;
  CommandLine line(request);
  try {
    line.parse(argc, argv);
    return request;
  } catch (const CLI::ParseError &error) {
    status = line.report(error);
    return std::nullopt;
  }
}

}  // namespace tool
