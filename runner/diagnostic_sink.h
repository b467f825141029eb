// Shows the messages of a run on standard error and counts them.
//
// A message comes with the line of the job that it is about. Secrets are hidden in both, for
// standard error ends up in logs.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/adapter/output_sink.h"
#include "platform/parser/token.h"
#include "runner/job.h"
#include "runner/terminal/diagnostics.h"
#include "runner/terminal/style.h"

namespace vornwout {

class DiagnosticSink : public OutputSink {
 public:
  /// `beforeMessage` is called before anything is written, so that output that was produced earlier
  /// can be brought to the terminal first.
  DiagnosticSink(std::ostream& out, const TerminalStyle& style,
                 std::function<void()> beforeMessage);

  /// What messages are about from now on; both must live until the next call.
  void setSource(const Job* job, const TokenizedCommand* command);

  void parserMessage(const ParserMessageRecord& message) override;
  void outputMessage(const OutputMessageRecord& message) override;

  /// Warns of the character of a job's text at `offset`, which stands in line `line`. No other sink
  /// sees it: it is about the job's file and not about what the job does.
  void warnOfText(const Job& job, std::uint32_t offset, std::uint32_t line, const std::string& text,
                  const std::string& help);

  int errors() const { return errors_; }
  int warnings() const { return warnings_; }

 private:
  /// Which tokens of the command that messages are about are secret.
  const std::vector<bool>& secrets();
  void show(MessageSeverity severity, const SourceSpot& spot, const std::string& text,
            std::string_view remedy);
  void write(const Diagnostic& diagnostic);

  std::ostream& out_;
  TerminalStyle style_;
  std::function<void()> beforeMessage_;
  const Job* job_ = nullptr;
  const TokenizedCommand* command_ = nullptr;
  std::optional<std::vector<bool>> guessedSecrets_;  ///< where the command is not being carried out
  int errors_ = 0;
  int warnings_ = 0;
};

}  // namespace vornwout
