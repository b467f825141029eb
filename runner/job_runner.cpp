#include "runner/job_runner.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include <fmt/format.h>

#include "host/controller/embedded_host.h"
#include "platform/adapter/go_to_caller.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_names.h"
#include "platform/parser/current_command.h"
#include "platform/parser/grammar_capture.h"
#include "platform/parser/lexical_error.h"
#include "platform/parser/secret_tokens.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/value_shape.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"
#include "runner/command_log.h"
#include "runner/foreign_bytes.h"

namespace vornwout {
namespace {

constexpr const char* kEndedBefore = localizable(
    "A subcommand belongs to a command, and the one before it has ended: an empty line ends a "
    "command, and so does a period at the end of a line.");

std::vector<std::string_view> commandNames() {
  std::vector<std::string_view> names;
  for (const Command& command : commandTable()) names.push_back(command.name);
  return names;
}

/// What a user wrote for the name of a command that there is not.
MessageArgument nameAsWritten(const TokenizedCommand& command) {
  const std::vector<Token>& tokens = command.tokens();
  MessageArgument name = MessageArgument::ofSource(command, tokens[0]);
  if (tokens.size() < kNameTokens || tokens[1].kind != TokenKind::kWord) return name;
  // A subcommand's name follows its slash directly.
  if (tokens[0].code != OperatorCode::kSlash) name += " ";
  name += MessageArgument::ofSource(command, tokens[1]);
  return name;
}

/// Memory of a large job is given back in steps of so many bytes.
constexpr std::size_t kWindow = std::size_t{4} << 20;

/// Lines end with CR, LF or both.
std::uint32_t lineEndsIn(std::string_view text) {
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' || (text[i] == '\r' && text.substr(i + 1, 1) != "\n")) ++count;
  }
  return count;
}

/// Where the command ends in the job's text, without the period.
std::size_t endOf(const TokenizedCommand& command) {
  if (command.tokens().empty()) return 0;
  const std::string_view last = command.sourceText(command.tokens().back());
  return static_cast<std::size_t>(last.data() + last.size() - command.jobText().data());
}

/// The command's name for the document: one of the language's, or the words as written where there
/// is no such command; empty where it does not start with a word.
std::string nameForLog(const Command* known, const TokenizedCommand& command) {
  if (known != nullptr) return std::string(known->name);
  const std::vector<bool> secret = secretTokens(command, nullptr);
  std::string name;
  for (std::size_t i = 0; i < kNameTokens && i < command.tokens().size(); ++i) {
    const Token& token = command.tokens()[i];
    if (token.kind != TokenKind::kWord || secret[i]) break;
    if (i > 0) name += ' ';
    name += toUpperCase(command.sourceText(token));
  }
  return currentToUtf8(name);
}

}  // namespace

bool JobRunner::run(const Job& job) {
  const ScopedCommandNames names(commandNames());
  warnOfForeignByte(job);
  Tokenizer tokenizer(job.text);
  TokenizedCommand command;
  bool isOver = false;
  std::size_t released = 0;
  while (!isOver && tokenizer.next(command)) {
    diagnostics_.setSource(&job, &command);
    runCommand(command);
    isOver = isOver_();
    const std::size_t reached = endOf(command);
    if (reached - released >= kWindow) {
      job.text.release(reached);
      released = reached;
    }
  }
  diagnostics_.setSource(nullptr, nullptr);
  return !isOver;
}

void JobRunner::warnOfForeignByte(const Job& job) {
  const Encoding& encoding = currentEncoding();
  const std::string_view text = job.text;
  std::optional<ForeignByte> foreign;
  std::size_t begin = 0;
  // In windows of whole lines, so that a large job is never in memory as a whole. No encoding has a
  // line feed within a character.
  for (std::size_t end = 0; end < text.size() && !foreign; begin = end) {
    const std::size_t line = text.find('\n', std::min(end + kWindow, text.size()));
    end = line == std::string_view::npos ? text.size() : line + 1;
    foreign = findForeignByte(text.substr(begin, end - begin), encoding);
    job.text.release(begin);
    if (foreign) break;
  }
  if (!foreign) return;
  diagnostics_.warnOfText(
      job, foreign->offset + static_cast<std::uint32_t>(begin),
      foreign->line + lineEndsIn(text.substr(0, begin)),
      fmt::format("The byte {:02X} is no valid {}.", foreign->value, encoding.name()),
      localized("Name the job's encoding with --encoding, for instance --encoding ^1.",
                encoding.isUtf8() ? "windows-1252" : "UTF-8"));
}

void JobRunner::runCommand(const TokenizedCommand& command) {
  const Command* known = findCommand(command);
  // Before anything is reported: a message belongs below its own command, whether that runs or not.
  if (host_ != nullptr) {
    host_->setCommandLog(nameForLog(known, command), commandLogText(command, grammarFor(known)));
  }
  if (command.tokens().empty()) {
    // Only a lexical error, such as a comment without end, comes without tokens.
    const ParserMessage messages;
    reportLexicalErrors(messages, command);
    return;
  }
  if (known == nullptr || known->run == nullptr) return reportUnknown(command);
  callEntry(*known, command);
}

void JobRunner::reportUnknown(const TokenizedCommand& command) {
  const CurrentCommand current(command, 0);
  const ParserMessage messages;
  if (zeroByte(command) == nullptr) {
    if (const Command* known = findCommand(command)) {
      messages.report(MessageKey::kCommandNotIncluded, {std::string(known->name)});
    } else {
      const MessageArgument name = nameAsWritten(command);
      const bool isSubcommand = command.tokens().front().code == OperatorCode::kSlash;
      messages.report(
          MessageKey::kUnknownCommand, {name}, std::nullopt,
          isSubcommand ? localized(kEndedBefore) : suggestion(name.text(), commandNames()));
    }
  }
  reportLexicalErrors(messages, command);
}

const CommandDescriptor* JobRunner::grammarFor(const Command* known) {
  if (known == nullptr || known->run == nullptr) return nullptr;
  auto grammar = grammars_.find(known);
  if (grammar == grammars_.end()) grammar = grammars_.emplace(known, grammarOf(known->run)).first;
  return &grammar->second;
}

void JobRunner::callEntry(const Command& known, const TokenizedCommand& command) {
  if (trace_ != nullptr) trace_->enter(known.entry, known.name, command.line());
  CurrentCommand current(command, kNameTokens);
  std::optional<std::string> failure;
  try {
    known.run();
  } catch (const VornGoToCaller&) {
    current.noteRead(nullptr);
    if (trace_ != nullptr) trace_->unwind(known.entry);
    const ParserMessage messages;
    messages.GenericError("The host broke the command off.");
    return;
  } catch (const std::bad_alloc&) {
    failure = localized("there is not enough memory");
  } catch (const std::exception& exception) {
    failure = exception.what();
  } catch (const char* text) {
    failure = text == nullptr ? "" : text;
  } catch (...) {
    failure.emplace();
  }
  if (trace_ != nullptr) trace_->leave(known.entry, known.name, command.line());
  if (failure) {
    // It is about the whole command, whatever value was read last.
    current.noteRead(nullptr);
    const ParserMessage messages;
    messages.GenericError(
        "The command was broken off: ^1.",
        failure->empty() ? localized("an unknown failure of the host") : *failure);
  }
}

}  // namespace vornwout
