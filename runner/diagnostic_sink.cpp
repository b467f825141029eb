#include "runner/diagnostic_sink.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/message/catalogue.h"
#include "platform/text/encoding.h"
#include "runner/terminal/diagnostics.h"

namespace vornwout {
namespace {

/// The token that stands at a place, or null.
const Token* tokenAt(const TokenizedCommand& command, SourcePlace place) {
  const auto line = static_cast<std::uint32_t>(place.line);
  const auto& tokens = command.tokens();
  auto token = std::lower_bound(tokens.begin(), tokens.end(), line,
                                [](const Token& t, std::uint32_t l) { return t.line < l; });
  for (; token != tokens.end() && token->line == line; ++token) {
    if (command.place(*token) == place) return &*token;
  }
  return nullptr;
}

int characterCount(std::string_view text) {
  int count = 0;
  for (; !text.empty(); ++count) {
    text.remove_prefix(static_cast<std::size_t>(currentEncoding().characterLength(text)));
  }
  return count;
}

/// The line of the job that the token stands in, in UTF-8.
std::string lineAround(std::string_view jobText, std::size_t offset) {
  constexpr std::string_view kLineEnds = "\r\n";
  const std::size_t before =
      offset == 0 ? std::string_view::npos : jobText.find_last_of(kLineEnds, offset - 1);
  std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
  if (begin == 0 && jobText.starts_with("\xEF\xBB\xBF")) begin = 3;
  const std::size_t end = std::min(jobText.find_first_of(kLineEnds, offset), jobText.size());
  return currentToUtf8(jobText.substr(begin, end - begin));
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
  show(message.severity, message.place, message.text, messageRemedy(message.operation));
}

void DiagnosticSink::outputMessage(const OutputMessageRecord& message) {
  std::string text = renderText(message.message);
  for (const CellText& name : message.message.sublist) text += "\n  " + renderText(name);
  SourcePlace place;
  if (command_ != nullptr && !command_->tokens().empty()) {
    place = command_->place(command_->tokens().front());
  }
  show(message.severity(), place, text, {});
}

void DiagnosticSink::show(MessageSeverity severity, SourcePlace place, const std::string& text,
                          std::string_view remedy) {
  if (severity == MessageSeverity::kError) ++errors_;
  if (severity == MessageSeverity::kWarning) ++warnings_;
  Diagnostic diagnostic;
  diagnostic.file = job_ == nullptr ? "vornwout" : job_->name;
  diagnostic.place = place;
  diagnostic.severity = severity;
  diagnostic.text = text;
  diagnostic.help = std::string(remedy);
  if (command_ != nullptr && place.line > 0) {
    const Token* token = tokenAt(*command_, place);
    if (token != nullptr) {
      diagnostic.length = characterCount(command_->sourceText(*token));
      diagnostic.sourceLine = lineAround(command_->jobText(), token->offset);
    } else if (!command_->errors().empty()) {
      diagnostic.sourceLine = lineAround(command_->jobText(), command_->errors().front().offset);
    }
  }
  beforeMessage_();
  printDiagnostic(out_, diagnostic, style_);
  out_.flush();
}

}  // namespace vornwout
