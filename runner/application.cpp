#include "runner/application.h"

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "platform/files/path_context.h"
#include "platform/parser/value_shape.h"
#include "platform/strings/language.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"
#include "runner/build_document.h"
#include "runner/command_table.h"
#include "runner/help_text.h"
#include "runner/password_command.h"
#include "runner/run_options.h"
#include "runner/show_document.h"
#include "runner/standard_streams.h"

namespace vornwout {
namespace {

constexpr const char* kVersion = "vornwout " VORN_VERSION;

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

std::string behindBlank(const std::string& sentence) {
  return sentence.empty() ? sentence : " " + sentence;
}

std::string checkEncoding(const std::string& name) {
  if (Encoding::find(name) != nullptr) return {};
  return localized(
      "there is no encoding ^1; UTF-8, windows-1252, Shift-JIS, Big5, GB18030 and EUC-KR are some "
      "of those there are",
      name);
}

std::string checkLanguage(const std::string& code) {
  if (findLanguage(code)) return {};
  return localized("there is no language ^1; there are ^2", code,
                   fmt::format("{}", fmt::join(kLanguages, ", ")));
}

std::string checkTrace(const std::string& file) {
  if (file.empty()) return localized("the trace needs the name of a file");
  // Standard output shows the run's output, and a trace between it would be no trace.
  if (file == "-") {
    return localized("the trace goes to a file only; write ./- for one that is called -");
  }
  return {};
}

std::string checkHandle(const std::string& handle) {
  const std::size_t equals = handle.find('=');
  const bool isWhole = equals != std::string::npos && equals > 0 && equals + 1 < handle.size();
  if (!isWhole) return localized("write NAME=DIRECTORY, not ^1", handle);
  if (handle.find_first_of("/\\") < equals) {
    return localized("a handle's name is the first part of a path and holds no slash, not ^1",
                     handle);
  }
  return {};
}

void addRun(CLI::App& application, RunOptions& options, Written& written) {
  CLI::App* run = application.add_subcommand("run", localized("Run jobs: files of commands"));
  run->add_option("job", options.jobs, localized("Files of commands; - reads standard input"))
      ->required()
      ->type_name("JOB");
  run->add_option("--encoding", written.encoding,
                  localized("Character set of the jobs (default UTF-8)"))
      ->check(checkEncoding)
      ->type_name("NAME");
  run->add_option("--handle", written.handles,
                  localized("File handle that paths may start with; case matters in its name"))
      ->check(checkHandle)
      ->allow_extra_args(false)
      ->type_name("NAME=DIRECTORY");
  run->add_option("--host", options.host,
                  localized("embedded (default), none, or script=FILE for scripted answers"))
      ->type_name("HOST");
  run->add_option("--trace", options.traceFile,
                  localized("Write what happens to FILE, as JSON lines"))
      ->check(checkTrace)
      ->type_name("FILE");
  run->add_flag("--trace-secrets", options.traceSecrets,
                localized("Write passwords to the trace as well"));
  run->add_flag("-q,--quiet", options.quiet, localized("Show messages only, no output"));
  run->add_option("--color", written.color, localized("Colours: auto (default), always or never"))
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
  run->set_version_flag("--version", kVersion);
  run->footer(localized(
      "Exit status: 0 when nothing worse than a warning was reported, 1 when an error was\n"
      "reported, 2 for wrong usage or a file that cannot be read or written."));
}

void addShow(CLI::App& application, ShowOptions& options) {
  CLI::App* show =
      application.add_subcommand("show", localized("Show a document's outline and contents"));
  show->add_option("file", options.file, localized("A document, QXV or QXW"))
      ->required()
      ->type_name("FILE");
  auto* outline = show->add_flag("--outline", options.outline, localized("Show the outline only"));
  auto* object = show->add_option("--object", options.object,
                                  localized("Show one object only, by its number in the outline"));
  object->type_name("NUMBER");
  auto* raw =
      show->add_flag("--raw", options.raw, localized("Write the bytes of a chart or model"));
  auto* json = show->add_flag("--json", options.json, localized("Write JSON, for other programs"));
  raw->needs(object)->excludes(json)->excludes(outline);
  show->add_option("--password-file", options.passwordFile,
                   localized("Read the document's password from FILE; - is standard input"))
      ->type_name("FILE");
  show->add_option("--width", options.width,
                   localized("Columns to fit into (default: the terminal's)"))
      ->check(CLI::Range(1, kWidestShown))
      ->type_name("NUMBER");
  show->add_option("--color", options.color, localized("Colours: auto (default), always or never"))
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
  show->add_flag("--no-pager", options.noPager, localized("Do not turn pages on a terminal"));
  show->footer(localized(
      "On a terminal the output is shown by $VORNWOUT_PAGER, $PAGER or less.\n"
      "Exit status: 0, 1 when a part of the document could not be read, 2 for wrong usage or a\n"
      "file that cannot be opened."));
}

void addPassword(CLI::App& application) {
  application.add_subcommand("password", localized("Encrypt a password for a job file"))
      ->footer(passwordExplanation());
}

void addHelp(CLI::App& application, HelpOptions& options) {
  CLI::App* help =
      application.add_subcommand("help", localized("Show the commands, or how one is written"));
  help->add_option("command", options.command, localized("For instance OUTPUT COMMENT"))
      ->type_name("COMMAND");
  help->add_flag("--markdown", options.markdown, localized("Print the whole language reference"));
  help->add_flag("--messages", options.messages, localized("Print the list of messages"));
  help->footer(
      localized("vornwout help lists the commands, vornwout help OUTPUT those that begin so."));
}

int showHelp(const HelpOptions& options) {
  if (options.markdown || options.messages) {
    std::cout << (options.messages ? messageReference() : languageReference());
    return kExitSuccess;
  }
  const std::string name = fmt::format("{}", fmt::join(options.command, " "));
  if (name.empty()) {
    std::cout << localized("Commands of this version:") << "\n\n"
              << commandOverview() << '\n'
              << localized("vornwout help COMMAND shows how one is written.") << '\n';
    return kExitSuccess;
  }
  const Command* command = findCommand(name);
  if (command == nullptr || command->run == nullptr) {
    if (const std::string overview = commandOverview(name); !overview.empty()) {
      std::cout << localized("Commands of this version that begin with ^1:\n\n^2",
                             toUpperCase(name), overview);
      return kExitSuccess;
    }
    std::vector<std::string_view> names;
    for (const Command& candidate : commandTable()) {
      if (candidate.run != nullptr) names.push_back(candidate.name);
    }
    return refuse(
        localized("There is no command ^1 in this version.^2 vornwout help lists those "
                  "there are.",
                  name, behindBlank(suggestion(name, names))));
  }
  std::cout << localizedText(command->summary) << "\n\n" << usageOf(*command);
  if (!command->details.empty()) std::cout << "\n" << localizedText(command->details);
  return kExitSuccess;
}

/// The names of all subcommands, in the order in which help lists them.
std::vector<std::string> subcommandNames(const CLI::App& application) {
  std::vector<std::string> names;
  for (const CLI::App* command : application.get_subcommands({})) {
    names.push_back(command->get_name());
  }
  return names;
}

/// "run, show and help", with `word` before the last one.
std::string listed(const std::vector<std::string>& names, std::string_view word) {
  const auto last = names.end() - 1;
  return fmt::format("{} {} {}", fmt::join(names.begin(), last, ", "), word, *last);
}

/// Why the command line cannot be read, one or more sentences.
std::string problemOf(const CLI::App& application, const CLI::ParseError& error) {
  const std::vector<std::string> rest = application.remaining(true);
  const auto chosen = application.get_subcommands();
  if (rest.empty()) {
    if (chosen.empty() && dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
      return localized("A command is missing: ^1.",
                       listed(subcommandNames(application), localized("or")));
    }
    return fmt::format("{}.", error.what());
  }
  // An argument that nobody takes is the cause of what else may be missing.
  const std::string& unknown = rest.front();
  if (unknown.starts_with("-")) {
    const CLI::App& command = chosen.empty() ? application : *chosen.front();
    const std::string name = unknown.substr(0, unknown.find('='));
    if (command.get_option_no_throw(name) != nullptr) {
      return localized("^1 is an option of ^2 and stands behind it: vornwout ^2 ^1.", name,
                       command.get_name());
    }
    std::vector<std::string> options;
    for (const CLI::Option* option : command.get_options()) {
      for (const std::string& known : option->get_lnames()) options.push_back("--" + known);
    }
    return localized("There is no option ^1.^2", unknown,
                     behindBlank(suggestion(unknown, {options.begin(), options.end()})));
  }
  if (!chosen.empty()) return localized("The argument ^1 is not expected.", unknown);
  const std::vector<std::string> names = subcommandNames(application);
  return localized("There is no command ^1; there are ^2.^3", unknown,
                   listed(names, localized("and")),
                   behindBlank(suggestion(unknown, {names.begin(), names.end()})));
}

/// Takes over what was written; why it cannot be, or an empty text.
std::string applyWritten(const Written& written, RunOptions& options) {
  options.encoding = Encoding::find(written.encoding);
  options.color = *parseStyleMode(written.color);
  const ScopedEncoding encoding(options.encoding);
  for (const std::string& handle : written.handles) {
    const std::size_t equals = handle.find('=');
    const std::string name = handle.substr(0, equals);
    const bool isNew =
        options.handles.emplace(fromNativePath(name), fromNativePath(handle.substr(equals + 1)))
            .second;
    if (!isNew) return localized("--handle: ^1 is given twice.", name);
  }
  return {};
}

/// Every subcommand speaks to the user.
void addLanguage(CLI::App& application, std::string& language) {
  for (CLI::App* command : application.get_subcommands({})) {
    command
        ->add_option("--language", language,
                     localized("Language of messages and labels (default en)"))
        ->check(checkLanguage)
        ->type_name("CODE");
  }
}

/// The language that the command line asks for, before it is read: its own texts are in it. English
/// where it names none that there is, which is reported when it is read.
std::string_view languageWritten(int argc, char** argv) {
  constexpr std::string_view kOption = "--language";
  std::string_view language = kOriginalLanguage;
  for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
    std::string_view argument = argv[i];
    if (!argument.starts_with(kOption)) continue;
    argument.remove_prefix(kOption.size());
    if (argument.empty() && i + 1 < argc) {
      language = argv[i + 1];
    } else if (argument.starts_with('=')) {
      language = argument.substr(1);
    }
  }
  return findLanguage(language).value_or(kOriginalLanguage);
}

/// The option that is written with "=" and nothing behind it; empty when there is none. The parser
/// would take the next argument for its value: a trace would go into what is meant as a job.
std::string optionWithoutValue(int argc, char** argv) {
  for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
    const std::string_view argument = argv[i];
    if (argument.starts_with("--") && argument.find('=') == argument.size() - 1) {
      return std::string(argument);
    }
  }
  return {};
}

int refuseUsage(const std::string& problem) {
  const int status = refuse(problem);
  std::cerr << localized("Run vornwout --help for how it is used.") << '\n';
  return status;
}

}  // namespace

int runApplication(int argc, char** argv) {
  const ScopedLanguage language(languageWritten(argc, argv));
  CLI::App application(localized("Runs the OUTPUT commands of jobs on output documents."),
                       "vornwout");
  application.set_version_flag("--version", kVersion);
  application.require_subcommand(1);
  application.footer(
      localized("vornwout run --help, vornwout show --help and so on tell more about them."));
  RunOptions runOptions;
  HelpOptions helpOptions;
  Written written;
  addRun(application, runOptions, written);
  BuildOptions buildOptions;
  addBuildCommand(application, buildOptions);
  ShowOptions showOptions;
  addShow(application, showOptions);
  addPassword(application);
  addHelp(application, helpOptions);
  addLanguage(application, runOptions.language);
  if (const std::string option = optionWithoutValue(argc, argv); !option.empty()) {
    return refuseUsage(localized("^1 has no value.", option));
  }
  try {
    application.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      // What was asked for is help or the version.
      return finishStandardOutput(application.exit(error));
    }
    return refuseUsage(problemOf(application, error));
  }
  if (application.got_subcommand("build")) return finishStandardOutput(runBuild(buildOptions));
  if (application.got_subcommand("show")) return finishStandardOutput(runShow(showOptions));
  if (application.got_subcommand("password")) return finishStandardOutput(runPasswordCommand());
  if (application.got_subcommand("help")) return finishStandardOutput(showHelp(helpOptions));
  if (const std::string problem = applyWritten(written, runOptions); !problem.empty()) {
    return refuseUsage(problem);
  }
  return finishStandardOutput(runJobs(runOptions));
}

}  // namespace vornwout
