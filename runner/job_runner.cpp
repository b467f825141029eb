#include "runner/job_runner.h"

#include <exception>
#include <string>

#include "host/controller/embedded_host.h"
#include "platform/adapter/go_to_caller.h"
#include "platform/message/parser_message.h"
#include "platform/parser/current_command.h"
#include "platform/parser/lexical_error.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/value_shape.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

void reportLexicalErrors(const TokenizedCommand& command) {
  const ParserMessage messages;
  for (const LexicalError& error : command.errors()) reportLexicalError(messages, command, error);
}

}  // namespace

void JobRunner::run(const Job& job) {
  Tokenizer tokenizer(job.text);
  TokenizedCommand command;
  while (tokenizer.next(command)) {
    diagnostics_.setSource(&job, &command);
    runCommand(command);
  }
  diagnostics_.setSource(nullptr, nullptr);
}

void JobRunner::runCommand(const TokenizedCommand& command) {
  if (command.tokens().empty()) {
    // Only a lexical error, such as a comment without end, comes without tokens.
    return reportLexicalErrors(command);
  }
  const Command* known = findCommand(command);
  if (known == nullptr || known->run == nullptr) return reportUnknown(command);
  callEntry(*known, command);
}

void JobRunner::reportUnknown(const TokenizedCommand& command) {
  const Command* known = findCommand(command);
  std::string name;
  for (std::size_t i = 0; i < kNameTokens && i < command.tokens().size(); ++i) {
    if (i > 0 && command.tokens()[i].kind != TokenKind::kWord) break;
    if (i > 0) name += ' ';
    name += command.sourceText(command.tokens()[i]);
  }
  std::string hint = "This version does not have it.";
  if (known == nullptr) {
    std::vector<std::string_view> names;
    for (const Command& candidate : commandTable()) names.push_back(candidate.name);
    hint = suggestion(name, names);
  }
  const CurrentCommand current(command, 0);
  const ParserMessage messages;
  messages.report(MessageKey::kUnknownCommand, {name}, std::nullopt, hint);
  reportLexicalErrors(command);
}

void JobRunner::callEntry(const Command& known, const TokenizedCommand& command) {
  if (host_ != nullptr) {
    host_->setCommandLog(std::string(known.name), currentToUtf8(command.source()));
  }
  if (trace_ != nullptr) trace_->enter(known.entry, known.name, command.line());
  const CurrentCommand current(command, kNameTokens);
  std::string failure;
  try {
    known.run();
  } catch (const VornGoToCaller&) {
    if (trace_ != nullptr) trace_->unwind(known.entry);
    const ParserMessage messages;
    messages.GenericError("The host broke the command off.");
    return;
  } catch (const std::exception& exception) {
    failure = exception.what();
  } catch (...) {
    failure = "an unknown failure of the host";
  }
  if (trace_ != nullptr) trace_->leave(known.entry, known.name, command.line());
  if (!failure.empty()) {
    const ParserMessage messages;
    messages.GenericError("The command was broken off: ^1.", failure);
  }
}

}  // namespace vornwout
