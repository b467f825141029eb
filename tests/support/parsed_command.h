// Parses the text of one command by a descriptor and keeps what was read and said.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/adapter/output_sink.h"
#include "platform/message/parser_message.h"
#include "platform/parser/current_command.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"

namespace vornwout {

/// The first command of a text, with the text that it points into.
class TokenizedText {
 public:
  explicit TokenizedText(std::string text) : text_(std::move(text)) {
    Tokenizer tokenizer(text_);
    if (!tokenizer.next(command_)) throw std::invalid_argument("no command in: " + text_);
  }
  TokenizedText(const TokenizedText&) = delete;
  TokenizedText& operator=(const TokenizedText&) = delete;

  const TokenizedCommand& command() const { return command_; }

 private:
  std::string text_;
  TokenizedCommand command_;
};

/// A command of one word, parsed; it stays current while this object lives.
class ParsedCommand : public OutputSink {
 public:
  /// `arguments` follow the command's name and a blank; a period at the end is up to them.
  ParsedCommand(CommandDescriptor descriptor, const std::string& arguments)
      : descriptor_(std::move(descriptor)),
        text_(descriptor_.name() + " " + arguments),
        current_(text_.command(), 1),
        parser_(tokens_, spec_, descriptor_),
        errors_(parser_.getCommandSpecifications()) {}

  void parserMessage(const ParserMessageRecord& record) override { records.push_back(record); }

  const CommandSpec& spec() const { return spec_; }
  const TokenizedCommand& command() const { return text_.command(); }
  const ParserMessage& messages() const { return messages_; }
  int errors() const { return errors_; }

  /// A keyword of a subcommand of the command itself; fails when it was not given.
  const ParamObj& param(const std::string& name, const std::string& subcommand = "") const {
    const SubComObj* found = spec_.getSubComObj(subcommand);
    const ParamObj* param = found == nullptr ? nullptr : found->getParamObj(name);
    if (param == nullptr) throw std::invalid_argument("not given: " + subcommand + " " + name);
    return *param;
  }

  /// The texts of a keyword's tokens as its reader gets them.
  std::vector<std::string> tokensOf(const std::string& name,
                                    const std::string& subcommand = "") const {
    std::vector<TokenInfoObj> tokens;
    param(name, subcommand).getTokenList(tokens);
    std::vector<std::string> texts;
    for (const TokenInfoObj& token : tokens) texts.push_back(token.getString());
    return texts;
  }

  /// "UnknownParam(NAEM, )@1:4" for every message.
  std::vector<std::string> reports() const {
    std::vector<std::string> all;
    for (const ParserMessageRecord& record : records) {
      std::string report(record.operation);
      for (std::size_t i = 0; i < record.arguments.size(); ++i) {
        report += (i == 0 ? "(" : ", ") + record.arguments[i];
      }
      report += record.arguments.empty() ? "(" : "";
      report +=
          ")@" + std::to_string(record.place.line) + ":" + std::to_string(record.place.column);
      all.push_back(report);
    }
    return all;
  }

  std::vector<ParserMessageRecord> records;

 private:
  SinkRegistration registration_{*this};
  CommandDescriptor descriptor_;
  TokenizedText text_;
  CurrentCommand current_;
  ParserMessage messages_;
  CommandSpec spec_;
  VORN_TokenSequence tokens_{true};
  UniversalParser parser_;
  int errors_;
};

}  // namespace vornwout
