// Runs OUTPUT EXPORT in a folder of its own and gives what it sent and said, with that folder's
// path taken out.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "platform/exportspec/response_spec.h"
#include "platform/files/path_context.h"
#include "tests/support/command_run.h"
#include "tests/support/modify_grammar.h"
#include "tests/support/scratch_directory.h"
#include "vornwout/entry_points.h"

namespace vornwout {

/// A folder that relative paths start from.
class ExportFolder {
 public:
  const ScratchDirectory& files() const { return files_; }

  /// The text with the paths of the folder made relative.
  std::string without(std::string text) const {
    const std::string prefix = files_.path() + "/";
    for (std::size_t at = text.find(prefix); at != std::string::npos; at = text.find(prefix, at)) {
      text.erase(at, prefix.size());
    }
    return text;
  }

 private:
  ScratchDirectory files_;
  ScopedPathContext context_{PathContext{files_.path(), {}}};
};

/// A run of "OUTPUT EXPORT <arguments>." by a host that answers every export with `answer`.
class ExportRun : public CommandRun {
 public:
  explicit ExportRun(const ExportFolder& folder, const std::string& arguments,
                     std::string answer = exportResponseXml(ExportResponse()))
      : folder_(folder) {
    host.exportAnswer = std::move(answer);
    host.whenExported = [this] { events.push_back("export"); };
    host.whenControllerAsked = [] { ADD_FAILURE() << "the controller is not asked for"; };
    run(outexport_, "OUTPUT EXPORT " + arguments + " .", &host);
  }

  /// What stands between the root's tags of each document that the host was given.
  std::vector<std::string> sent() const {
    std::vector<std::string> contents;
    for (std::string document : host.exportDocuments) {
      constexpr std::string_view kStart = "<outputExport>";
      constexpr std::string_view kEnd = "</outputExport>";
      EXPECT_TRUE(document.starts_with(kStart) && document.ends_with(kEnd)) << document;
      document = folder_.without(std::move(document));
      contents.push_back(
          document.substr(kStart.size(), document.size() - kStart.size() - kEnd.size()));
    }
    return contents;
  }

  /// Every message in order: "WrongValueType(A, B)", "error: text ^1 (a, b)" for one of the
  /// command's own, "2: text" for one in the output, with its level.
  const std::vector<std::string>& said() const { return said_; }

  void parserMessage(const ParserMessageRecord& record) override {
    CommandRun::parserMessage(record);
    const std::string arguments = fmt::format("({})", fmt::join(record.arguments, ", "));
    std::string call(record.operation);
    if (!record.messageTemplate.empty()) {
      const bool isError = record.severity == MessageSeverity::kError;
      call = (isError ? "error: " : "warning: ") + record.messageTemplate + " ";
    }
    said_.push_back(folder_.without(call + arguments));
  }
  void outputMessage(const OutputMessageRecord& record) override {
    CommandRun::outputMessage(record);
    EXPECT_EQ(record.show, 2);
    said_.push_back(
        folder_.without(fmt::format("{}: {}", record.level, renderText(record.message))));
  }

  FakeHost host;

 private:
  const ExportFolder& folder_;
  std::vector<std::string> said_;
};

/// What a command says because nothing is left to be exported.
inline constexpr const char* kNothingToExport =
    "SubComRequired(DOC, HTML, REPORT, PDF, PPT, TEXT, XLS, XLSX, XLSM, BMP, EMF, EPS, JPG, PNG, "
    "TIF)";

/// A command with what it sends.
struct SentCase {
  std::string arguments;
  std::string elements;
};

/// Expects each command to send its elements and to say nothing.
inline void expectSent(const std::vector<SentCase>& cases) {
  const ExportFolder folder;
  for (const SentCase& test : cases) {
    const ExportRun run(folder, test.arguments);
    EXPECT_EQ(run.sent(), std::vector{test.elements}) << test.arguments;
    EXPECT_EQ(run.said(), std::vector<std::string>()) << test.arguments;
  }
}

/// A command with what it says and the part of the job at fault.
struct RefusedCase {
  std::string arguments;
  std::vector<std::string> said;
  std::string blamed = {};  ///< of the first message; not looked at when empty
};

/// Expects each command to say its messages, and that there is nothing left to be exported, and to
/// send nothing.
inline void expectRefused(const std::vector<RefusedCase>& cases) {
  const ExportFolder folder;
  for (const RefusedCase& test : cases) {
    const ExportRun run(folder, test.arguments);
    std::vector<std::string> said = test.said;
    said.push_back(kNothingToExport);
    EXPECT_EQ(run.said(), said) << test.arguments;
    EXPECT_EQ(run.sent(), std::vector<std::string>()) << test.arguments;
    if (test.blamed.empty() || run.parserMessages.empty()) continue;
    const ParserMessageRecord& first = run.parserMessages.front();
    const std::string text = "OUTPUT EXPORT " + test.arguments + " .";
    EXPECT_EQ(text.substr(first.offset, first.length), test.blamed) << test.arguments;
  }
}

/// Expects the parser to refuse each command, with these messages and nothing behind them.
inline void expectNotParsed(const std::vector<RefusedCase>& cases) {
  const ExportFolder folder;
  for (const RefusedCase& test : cases) {
    const ExportRun run(folder, test.arguments);
    EXPECT_EQ(run.said(), test.said) << test.arguments;
    EXPECT_EQ(run.sent(), std::vector<std::string>()) << test.arguments;
  }
}

/// A subcommand of OUTPUT EXPORT: "PDF 1 ff" (kind, required, repeatable), then its keywords in
/// order, as describe() gives them.
inline std::vector<std::string> exportGrammarOf(const std::string& subcommand) {
  const CommandDescriptor grammar = grammarOf(outexport_);
  const SubComDescriptor* declared = grammar.findSubCom(subcommand);
  if (declared == nullptr) return {};
  std::vector<std::string> lines = {
      fmt::format("{} {} {}{}", declared->name(), static_cast<int>(declared->spec()),
                  declared->required() ? 't' : 'f', declared->repeatable() ? 't' : 'f')};
  for (const ParamDescriptor& param : declared->params()) lines.push_back(describe(param));
  return lines;
}

/// What every image type says of a size that is no share of the picture's own.
inline std::vector<RefusedCase> percentSizeRefusals() {
  return {
      {"PERCENTSIZE=0",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (0, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=200.5",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (200.5, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE=-1",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (-1, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=1e999",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (1e999, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE=BIG",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (BIG, "
        "0, 200PERCENTSIZE)"}},
      {"PERCENTSIZE='50'",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (50, 0, "
        "200PERCENTSIZE)"}},
      {"PERCENTSIZE=ALL",
       {"error: Value ^1 breaks lower boundary ^2 or upper boundary ^3 for parameter ^4... (ALL, "
        "0, 200PERCENTSIZE)"}},
  };
}

}  // namespace vornwout
