// Parses any command by its declared grammar.
//
// Entry point: UniversalParser::getCommandSpecifications(). It reads the token sequence once, fills
// the CommandSpec, reports every independent error through the current ParserMessage (its own when
// the command has none) and returns their number. It checks names, repetition, brackets, declared
// values and the shape of values; numbers are left to the getters, so that the command's own
// message about a bad number is the one that the user sees.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message/message_argument.h"
#include "platform/parser/bracket_pairs.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"
#include "platform/parser/token_sequence.h"

namespace vornwout {

class ParserMessage;
enum class MessageKey;

class UniversalParser {
 public:
  /// All three must outlive the parser; `descriptor` also every use of `spec` but its destruction.
  UniversalParser(const VORN_TokenSequence& tokens, CommandSpec& spec,
                  const CommandDescriptor& descriptor);
  ~UniversalParser();
  UniversalParser(const UniversalParser&) = delete;
  UniversalParser& operator=(const UniversalParser&) = delete;

  /// Fills the spec. Zero when there was no error; otherwise the number of errors, all reported,
  /// and the spec holds what could be read.
  int getCommandSpecifications();

 private:
  /// Where a subcommand of some name was declared.
  struct Declaration {
    const SubComDescriptor* subcommand = nullptr;
    std::size_t index = 0;  ///< among its siblings
    const GroupComDescriptor* group = nullptr;
    std::size_t groupIndex = 0;
  };

  bool atEnd(std::size_t i) const { return i >= tokens_.size(); }
  bool isOperator(std::size_t i, OperatorCode code) const {
    return i < tokens_.size() && tokens_[i].code == code;
  }
  /// A word, or the reserved word ALL, which serves as a keyword and a declared value.
  bool isName(std::size_t i) const;
  std::string_view source(std::size_t i) const { return command_->sourceText(tokens_[i]); }
  /// The token's text as a message repeats it.
  MessageArgument text(std::size_t i) const {
    return MessageArgument::ofToken(*command_, tokens_[i]);
  }

  /// Reports an error, unless it follows from one that was reported: it is about a text without
  /// end, or stands in a command whose period was forgotten before it.
  void error(MessageKey key, std::vector<MessageArgument> arguments, const Token* token,
             std::string_view hint = {});

  /// True when a lexical error starts between `keyword` and the current position: what is missing
  /// there may be lost in it.
  bool textLostBehind(const Token& keyword) const;
  void parseMainSubcommand();
  /// Gives all that is left to a subcommand that is one free token list.
  void takeRest(SubComObj& object, const Token* name);
  void parseSubcommands();
  void parseOneSubcommand();
  Declaration find(std::string_view name) const;
  bool isDeclaredSubcommand(std::size_t i) const;
  std::string closestSubcommand(std::string_view name) const;

  /// Opens the place of a subcommand in the spec; null when it may not stand here (reported).
  SubComObj* beginSubcommand(const Declaration& declaration, const Token& name);
  SubComObj* beginInGroup(const Declaration& declaration, const Token& name);
  void parseContent(const SubComDescriptor& subcommand, SubComObj& object, const Token* name);
  void parseKeyword(const SubComDescriptor& subcommand, SubComObj& object);
  /// True when the token can only be the value of `param`, whose equals sign is missing.
  bool startsValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                   std::size_t i) const;
  void reportMissingValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                          const Token& keyword);
  void parseValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                  SubComObj& object, const Token& keyword);
  void addParam(SubComObj& object, const ParamDescriptor& param, const Token& keyword,
                std::size_t begin, std::size_t end, const SubComDescriptor& subcommand);
  void skipUnknown(const SubComDescriptor& subcommand);
  void skipToSubcommand();

  /// The end of the value that begins at `begin`; clears `balanced` after reporting a bad bracket.
  std::size_t findValueEnd(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                           std::size_t begin, bool& balanced);
  /// True when the word at `i`, outside brackets, is no part of the value at `begin`.
  bool endsValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                 std::size_t begin, std::size_t i, bool bracketLeftOpen) const;
  /// Reports a bracket without partner, one per value, and clears `balanced`.
  void reportUnbalanced(std::size_t i, bool& balanced);

  void checkRequired();
  void checkRequiredKeywords(const SubComObj& object, const Token* name);

  const TokenizedCommand* command_;
  std::span<const Token> tokens_;
  CommandSpec& spec_;
  const CommandDescriptor& descriptor_;
  const ParserMessage* messages_ = nullptr;
  std::size_t position_ = 0;
  int errors_ = 0;

  /// For every subcommand of the command, and of every group: whether (in which group) it stood
  /// last.
  std::vector<bool> seen_;
  std::vector<std::vector<std::uint32_t>> seenInGroup_;
  /// The subcommand that began each group of the spec.
  std::vector<const Token*> leaders_;
  BracketPairs brackets_;
  /// The first token that begins a command of its own, or null; with the first error there or
  /// behind it the parser stops.
  const Token* stray_ = nullptr;
  bool stopped_ = false;
};

}  // namespace vornwout
