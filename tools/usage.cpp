#include "usage.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <system_error>
#include <thread>

#include "escape.hpp"
#include "exit_status.hpp"
#include "ketra.hpp"

namespace tool {
namespace {

constexpr const char *kFooter =
    "FILE holds certificates, CRLs and certificate requests, as PEM or DER, any number of them\n"
    "in any mixture. Of a directory every file below it is read. - is standard input.\n"
    "\n"
    "Exit status: 0 all good; 1 some of the input is faulty, the rest was handled;\n"
    "2 a file cannot be read, results cannot be written, or the command line is wrong.";

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
    app_.set_version_flag("--version", version, "Print the version and exit");
    app_.set_help_flag("-h,--help", "Print this help and exit");
    app_.require_subcommand(1);
    app_.footer(std::string(kExamples) + kFooter);
    show_->add_flag("--json", request.asJson, "Print one JSON array instead of text");
    check_->add_flag(
        "--summary", request.isSummary,
        "Print how many there are of each extension, and the reasons\nof what is not identical, instead of every case");
    for (CLI::App *command : {show_, check_}) addCommon(*command);
  }

  void parse(int argc, char **argv) {
    app_.parse(argc, argv);
    request_.command = check_->parsed() ? Command::Check : Command::Show;
  }

  // Help and version are no errors.
  int report(const CLI::ParseError &error) {
    if (error.get_exit_code() == 0) return app_.exit(error), kAllGood;
    std::cerr << "ketra: " << explain(error) << "\n";
    return kNotPossible;
  }

 private:
  void addCommon(CLI::App &command) {
    static const std::map<std::string, ColourChoice> kChoices = {
        {"auto", ColourChoice::Auto}, {"always", ColourChoice::Always}, {"never", ColourChoice::Never}};
    command.add_option("FILE", request_.files, "Files and directories to read")->required()->type_name("");
    command.add_option("-j,--jobs", request_.threads, "Use N threads; as many as there are processors unless given")
        ->check(CLI::Range(1U, 1024U))
        ->type_name("N");
    command
        .add_option("--color", request_.colour,
                    "Colours: auto (the default: on a terminal, unless\nNO_COLOR is set), always, never")
        ->transform(CLI::Transformer(kChoices).description(""))
        ->type_name("WHEN");
    command.footer(kFooter);
  }

  std::string explain(const CLI::ParseError &error) const {
    const std::vector<std::string> rest = app_.remaining();
    const CLI::App *command = show_->parsed() ? show_ : check_->parsed() ? check_ : nullptr;
    if (command == nullptr) return explainCommand(rest.empty() ? "" : rest.front());
    const std::string help = "; ketra " + command->get_name() + " --help tells more";
    if (request_.files.empty() && rest.empty() && error.get_name() == "RequiredError") {
      return "which files? Say ketra " + command->get_name() + " FILE..., with - for standard input" + help;
    }
    if (!rest.empty()) return command->get_name() + " has no option " + escape(rest.front()) + help;
    return escape(error.what()) + help;
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
  CLI::App app_{"Shows and checks the extensions of X.509 certificates, CRLs and certificate requests.", "ketra"};
  CLI::App *show_ = app_.add_subcommand("show", "Print every extension, field by field");
  CLI::App *check_ = app_.add_subcommand("check", "Read and write every extension again and report what differs");
};

}  // namespace

std::optional<Request> readCommandLine(int argc, char **argv, int &status) {
  Request request{.threads = std::max(1U, std::thread::hardware_concurrency())};
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
