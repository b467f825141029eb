#include "runner/diagnostic_sink.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string_view>
#include <utility>

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
void describe(Diagnostic& diagnostic, const TokenizedCommand& command, const SourceSpot& spot,
              int reach) {
  diagnostic.place = spot.place;
  if (spot.length == 0) return;
  // No character has more bytes, and more characters than these are never shown.
  const std::size_t bytes = static_cast<std::size_t>(reach) * kMostBytesOfCharacter;
  const TokenizedCommand::LinePart part = command.partOfLine(
      static_cast<std::uint32_t>(spot.offset), static_cast<std::uint32_t>(spot.place.line), bytes);
  diagnostic.sourceLine = {currentToUtf8(part.text), part.column, part.isCutBefore,
                           part.isCutAfter};
  diagnostic.length =
      characterCount(command.jobText().substr(spot.offset, std::min(spot.length, bytes)));
}

}  // namespace

DiagnosticSink::DiagnosticSink(std::ostream& out, const TerminalStyle& style,
                               std::function<void()> beforeMessage)
    : out_(out), style_(style), beforeMessage_(std::move(beforeMessage)) {}

void DiagnosticSink::setSource(const Job* job, const TokenizedCommand* command) {
  job_ = job;
  command_ = command;
}

void DiagnosticSink::parserMessage(const ParserMessageRecord& message) {
  show(message.severity, {message.place, message.offset, message.length}, message.text,
       message.remedy);
}

void DiagnosticSink::outputMessage(const OutputMessageRecord& message) {
  SourceSpot spot;
  if (command_ != nullptr && !command_->tokens().empty()) {
    spot = command_->spot(command_->tokens().front());
  }
  show(message.severity(), spot, message.shownText(), {});
}

void DiagnosticSink::warnOfText(const Job& job, std::uint32_t offset, std::uint32_t line,
                                const std::string& text, const std::string& help) {
  const TokenizedCommand whole(job.text);
  Diagnostic diagnostic;
  diagnostic.file = job.name;
  diagnostic.severity = MessageSeverity::kWarning;
  diagnostic.text = text;
  diagnostic.help = help;
  describe(diagnostic, whole, {whole.place(offset, line), offset, 1}, excerptReach(style_));
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
  if (command_ != nullptr) describe(diagnostic, *command_, spot, excerptReach(style_));
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
