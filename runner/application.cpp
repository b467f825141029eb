#include "runner/application.h"

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "platform/files/path_context.h"
#include "platform/strings/language.h"
#include "runner/command_table.h"
#include "runner/help_text.h"
#include "runner/run_options.h"

namespace vornwout {
namespace {

struct HelpOptions {
  std::vector<std::string> command;
  bool markdown = false;
  bool messages = false;
};

/// What the command line says, before it is checked.
struct Written {
  std::string encoding = "UTF-8";
  std::string color = "auto";
  std::vector<std::string> handles;
};

std::string checkEncoding(const std::string& name) {
  if (Encoding::find(name) != nullptr) return {};
  return "there is no encoding " + name +
         "; UTF-8, windows-1252, Shift-JIS, Big5, GB18030 and "
         "EUC-KR are some of those there are";
}

std::string checkLanguage(const std::string& code) {
  if (findLanguage(code)) return {};
  return fmt::format("there is no language {}; there are {}", code, fmt::join(kLanguages, ", "));
}

std::string checkHandle(const std::string& handle) {
  const std::size_t equals = handle.find('=');
  if (equals != std::string::npos && equals > 0 && equals + 1 < handle.size()) return {};
  return "write NAME=DIRECTORY, not " + handle;
}

void addRun(CLI::App& application, RunOptions& options, Written& written) {
  CLI::App* run = application.add_subcommand("run", "Run jobs: files of commands");
  run->add_option("job", options.jobs, "Files of commands; - reads standard input")
      ->required()
      ->type_name("JOB");
  run->add_option("--encoding", written.encoding, "Character set of the jobs (default UTF-8)")
      ->check(checkEncoding)
      ->type_name("NAME");
  run->add_option("--language", options.language, "Language of texts and month names (default en)")
      ->check(checkLanguage)
      ->type_name("CODE");
  run->add_option("--handle", written.handles, "File handle that paths may start with")
      ->check(checkHandle)
      ->allow_extra_args(false)
      ->type_name("NAME=DIRECTORY");
  run->add_option("--host", options.host,
                  "embedded (default), none, or script=FILE for scripted answers")
      ->type_name("HOST");
  run->add_option("--trace", options.traceFile, "Write what happens to FILE, as JSON lines")
      ->type_name("FILE");
  run->add_flag("--trace-secrets", options.traceSecrets, "Write passwords to the trace as well");
  run->add_flag("-q,--quiet", options.quiet, "Show messages only, no output");
  run->add_option("--color", written.color, "Colours: auto (default), always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
  run->footer(
      "Exit status: 0 when nothing worse than a warning was reported, 1 when an error was\n"
      "reported, 2 for wrong usage or a file that cannot be read or written.");
}

void addHelp(CLI::App& application, HelpOptions& options) {
  CLI::App* help = application.add_subcommand("help", "Show the commands, or how one is written");
  help->add_option("command", options.command, "For instance OUTPUT COMMENT")->type_name("COMMAND");
  help->add_flag("--markdown", options.markdown, "Print the whole language reference");
  help->add_flag("--messages", options.messages, "Print the list of messages");
}

int showHelp(const HelpOptions& options) {
  if (options.markdown || options.messages) {
    std::cout << (options.messages ? messageReference() : languageReference());
    return kExitSuccess;
  }
  if (options.command.empty()) {
    std::cout << "Commands of this version:\n\n"
              << commandOverview() << "\nvornwout help COMMAND shows how one is written.\n";
    return kExitSuccess;
  }
  const std::string name = fmt::format("{}", fmt::join(options.command, " "));
  const Command* command = findCommand(name);
  if (command == nullptr || command->run == nullptr) {
    std::cerr << fmt::format(
        "vornwout: error: There is no command {} in this version. "
        "vornwout help lists those there are.\n",
        name);
    return kExitUsage;
  }
  std::cout << command->summary << "\n\n" << usageOf(*command);
  if (!command->details.empty()) std::cout << "\n" << command->details;
  return kExitSuccess;
}

void applyWritten(const Written& written, RunOptions& options) {
  options.encoding = Encoding::find(written.encoding);
  options.color = *parseStyleMode(written.color);
  const ScopedEncoding encoding(options.encoding);
  for (const std::string& handle : written.handles) {
    const std::size_t equals = handle.find('=');
    options.handles[fromNativePath(handle.substr(0, equals))] =
        fromNativePath(handle.substr(equals + 1));
  }
}

}  // namespace

int runApplication(int argc, char** argv) {
  CLI::App application("Runs the OUTPUT commands of jobs on output documents.", "vornwout");
  application.set_version_flag("--version", "vornwout " VORN_VERSION);
  application.require_subcommand(1);
  application.footer("vornwout COMMAND --help tells more about each of them.");
  RunOptions runOptions;
  HelpOptions helpOptions;
  Written written;
  addRun(application, runOptions, written);
  addHelp(application, helpOptions);
  try {
    application.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const int status = application.exit(error);
    return status == 0 ? kExitSuccess : kExitUsage;
  }
  if (application.got_subcommand("help")) return showHelp(helpOptions);
  applyWritten(written, runOptions);
  return runJobs(runOptions);
}

}  // namespace vornwout
