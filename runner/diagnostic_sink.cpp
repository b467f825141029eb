#include "runner/diagnostic_sink.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/parser/current_command.h"
#include "platform/parser/hidden_text.h"
#include "platform/parser/secret_tokens.h"
#include "platform/parser/tokenizer.h"
#include "platform/pivot/cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

constexpr std::size_t kMostBytesOfCharacter = 4;

int characterCount(std::string_view text) {
  int count = 0;
  for (; !text.empty(); ++count) {
    text.remove_prefix(static_cast<std::size_t>(currentEncoding().characterLength(text)));
  }
  return count;
}

/// Fills in the place, the source line and the length of the offender.
void describe(Diagnostic& diagnostic, const TokenizedCommand& command,
              const std::vector<bool>& secret, const SourceSpot& spot, int reach) {
  diagnostic.place = spot.place;
  if (spot.length == 0) return;
  // No character has more bytes, and more characters than these are never shown.
  const std::size_t bytes = static_cast<std::size_t>(reach) * kMostBytesOfCharacter;
  const TokenizedCommand::LinePart part = command.partOfLine(
      static_cast<std::uint32_t>(spot.offset), static_cast<std::uint32_t>(spot.place.line), bytes);
  const auto begin = static_cast<std::size_t>(part.text.data() - command.jobText().data());
  const std::size_t end = begin + part.text.size();
  // What stands inside a secret is shown at its beginning.
  const std::size_t split = std::max(begin, hiddenStart(command, secret, spot.offset));
  const std::string before = hiddenText(command, secret, begin, split);
  const std::string behind = hiddenText(command, secret, split, end);
  // The place stays that of the job; in the line it lies behind what is shown of it. Characters are
  // counted anew only where there are others now.
  const bool isAsWritten = split == spot.offset && part.text.substr(0, split - begin) == before;
  const int column = isAsWritten ? part.column : spot.place.column - characterCount(before);
  diagnostic.sourceLine = {currentToUtf8(before + behind), column, part.isCutBefore,
                           part.isCutAfter};
  const std::size_t length = std::min({spot.length, bytes, command.jobText().size() - spot.offset});
  diagnostic.length =
      characterCount(hiddenText(command, secret, spot.offset, spot.offset + length));
}

}  // namespace

DiagnosticSink::DiagnosticSink(std::ostream& out, const TerminalStyle& style,
                               std::function<void()> beforeMessage)
    : out_(out), style_(style), beforeMessage_(std::move(beforeMessage)) {}

void DiagnosticSink::setSource(const Job* job, const TokenizedCommand* command) {
  job_ = job;
  command_ = command;
  guessedSecrets_.reset();
}

const std::vector<bool>& DiagnosticSink::secrets() {
  const CurrentCommand* current = CurrentCommand::current();
  if (current != nullptr && &current->command() == command_) return current->secretTokens();
  if (!guessedSecrets_) guessedSecrets_ = secretTokens(*command_, nullptr);
  return *guessedSecrets_;
}

void DiagnosticSink::parserMessage(const ParserMessageRecord& message) {
  show(message.severity, {message.place, message.offset, message.length}, message.briefText(),
       message.remedy);
}

void DiagnosticSink::outputMessage(const OutputMessageRecord& message) {
  SourceSpot spot;
  if (command_ != nullptr && !command_->tokens().empty()) {
    spot = command_->spot(command_->tokens().front());
  }
  OutputMessageRecord shown = message;
  shown.message = withoutSecrets(message.message);
  show(shown.severity(), spot, shown.briefText(), {});
}

void DiagnosticSink::warnOfText(const Job& job, std::uint32_t offset, std::uint32_t line,
                                const std::string& text, const std::string& help) {
  // The line is shown as it is in a message of the command that it stands in.
  Tokenizer tokenizer(job.text);
  TokenizedCommand command(job.text);
  while (tokenizer.next(command)) {
    if (!command.tokens().empty() && command.tokens().back().line >= line) break;
  }
  Diagnostic diagnostic;
  diagnostic.file = job.name;
  diagnostic.severity = MessageSeverity::kWarning;
  diagnostic.text = text;
  diagnostic.help = help;
  describe(diagnostic, command, secretTokens(command, nullptr),
           {command.place(offset, line), offset, 1}, excerptReach(style_));
  write(diagnostic);
}

void DiagnosticSink::show(MessageSeverity severity, const SourceSpot& spot, const std::string& text,
                          std::string_view remedy) {
  Diagnostic diagnostic;
  diagnostic.file = job_ == nullptr ? "vornwout" : job_->name;
  diagnostic.place = spot.place;
  diagnostic.severity = severity;
  diagnostic.text = text;
  diagnostic.help = std::string(remedy);
  if (command_ != nullptr) {
    describe(diagnostic, *command_, secrets(), spot, excerptReach(style_));
  }
  write(diagnostic);
}

void DiagnosticSink::write(const Diagnostic& diagnostic) {
  if (diagnostic.severity == MessageSeverity::kError) ++errors_;
  if (diagnostic.severity == MessageSeverity::kWarning) ++warnings_;
  beforeMessage_();
  // In one piece: standard error is not buffered, and others may write to it as well.
  std::ostringstream whole;
  printDiagnostic(whole, diagnostic, style_);
  out_ << whole.str() << std::flush;
}

}  // namespace vornwout
