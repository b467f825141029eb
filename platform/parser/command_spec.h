// What the parser read: subcommands with their keywords and values, and groups of them.
//
// A CommandSpec is filled by UniversalParser and read by the command. All objects are views on the
// current command's tokens; pointers that the getters return stay valid while the CommandSpec lives
// and the command is current. Texts are in the current encoding.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/parser/descriptor.h"
#include "platform/parser/token_sequence.h"

namespace vornwout {

class ParserMessage;

/// A keyword with its value, or a qualifier with what stands in its parentheses.
///
/// A getter returns false, and leaves its out-value alone, when the value is not of the kind asked
/// for.
class ParamObj {
 public:
  ParamObj() = default;
  /// `value` holds the tokens behind the "=", brackets and commas included.
  ParamObj(const ParamDescriptor* descriptor, const TokenizedCommand* command, const Token* keyword,
           std::span<const Token> value)
      : descriptor_(descriptor), command_(command), keyword_(keyword), value_(value) {}

  /// The name under which the keyword or qualifier was declared; empty for no parameter.
  const std::string& getParamName() const;

  /// The text when the value is exactly one token; for a required keyword only when that token is
  /// quoted. Empty otherwise.
  std::string getStringToken() const;
  /// The same in upper case.
  std::string getUpStringToken() const;
  /// The text of one word, number or quoted string; fails for an operator.
  bool getStringGeneric(std::string& text) const;
  /// The text of one token; `literal` tells whether it was quoted.
  bool getStringOrLiteral(std::string& text, bool& literal) const;
  /// The text of one quoted string.
  bool getLiteral(std::string& text) const;

  /// A number within the declared bounds.
  bool getNumberValue(double& value) const;
  /// An integer within the declared bounds.
  bool getIntegerValue(int& value) const;
  /// The same; a refusal is reported, for a command that has no message of its own for it.
  bool getNumberValue(double& value, std::string_view subcommand, const ParserMessage&) const;
  bool getIntegerValue(int& value, std::string_view subcommand, const ParserMessage&) const;
  /// The text of one integer as it is written, of whatever size.
  bool getIntegerText(std::string& text) const;
  bool getNumberList(std::vector<double>& values) const;
  /// The texts of a list of words, numbers or strings.
  bool getStringList(std::vector<std::string>& texts) const;
  /// The texts of a list of quoted strings.
  bool getLiteralList(std::vector<std::string>& texts) const;

  /// True when the value is one token whose text equals `text` without regard to case.
  bool isStringValueCase(std::string_view text) const;
  /// True when the value is one operator token of that code, or the declared value ALL in quotes.
  bool isOperatorValue(int code) const;

  /// True for a value that is a raw token list.
  bool isTokenList() const;
  bool getTokenList(std::vector<TokenInfoObj>& tokens) const;
  int getTokenListSize() const;
  /// The token at `index`, counted from 0. Throws std::out_of_range unless `index` is below
  /// getTokenListSize().
  TokenInfoObj getTokenObj(int index) const;

  /// The qualifiers of the value, as `declared` has them, each with its own value. An undeclared
  /// one is reported with ParamNoSubCom and makes the result false.
  bool getStringQualList(const ParamDescriptor& declared, const ParserMessage& messages,
                         std::vector<ParamObj>& qualifiers) const;
  /// Splits a measure: `value` becomes the text of its values, joined by single blanks, `qualifier`
  /// the unit with those values. False when no unit was given; `value` is then set all the same.
  bool getStringAndQual(std::string& value, ParamObj& qualifier) const;

  /// The value's tokens as written, joined by single blanks.
  std::string sourceText() const;
  /// The value as it stands in the job, from its first token to its last, for a message.
  MessageArgument writtenText() const;
  /// The place of the value, or of the keyword when there is none.
  SourcePlace place() const;
  const Token* placeToken() const { return value_.empty() ? keyword_ : &value_.front(); }
  const ParamDescriptor* descriptor() const { return descriptor_; }
  std::span<const Token> rawTokens() const { return value_; }

 private:
  /// Calls `visit(token)` for every token that reaches the reader until it returns false.
  template <typename Visit>
  void visitTokens(Visit visit) const;
  /// The value's one token, or null when it has none or several.
  const Token* onlyToken() const;
  std::span<const Token> readableTokens() const;

  const ParamDescriptor* descriptor_ = nullptr;
  const TokenizedCommand* command_ = nullptr;
  const Token* keyword_ = nullptr;
  std::span<const Token> value_;
};

/// True when the commas of this kind of value separate its members and do not reach the reader.
bool commasSeparate(const ParamDescriptor& descriptor);

/// A measure's parts: "2 1 INCHES" and "INCHES(2 1)" are the same.
struct MeasureParts {
  std::span<const Token> values;
  const ParamDescriptor* unit = nullptr;  ///< null when none was given
};
MeasureParts splitMeasure(const TokenizedCommand& command, const ParamDescriptor& measure,
                          std::span<const Token> value);

class CommandSpec;

/// One subcommand as it stood in the command.
class SubComObj {
 public:
  /// The keyword of that name, or null when it was not given.
  const ParamObj* getParamObj(std::string_view name) const;
  /// The whole content as one token list, for a subcommand that takes one; null for others.
  const ParamObj* exportParamObj() const;

  const std::string& name() const { return descriptor_->name(); }
  const SubComDescriptor* descriptor() const { return descriptor_; }
  /// The name as it stood in the command; null for the subcommand with the empty name.
  const Token* nameToken() const { return nameToken_; }
  std::span<const ParamObj> params() const;

 private:
  friend class CommandSpec;
  friend class UniversalParser;

  const CommandSpec* spec_ = nullptr;
  const SubComDescriptor* descriptor_ = nullptr;
  const Token* nameToken_ = nullptr;
  std::uint32_t firstParam_ = 0;
  std::uint32_t paramCount_ = 0;
};

/// One group, or all the subcommands that belong to the command itself.
class GroupComObj {
 public:
  /// The subcommand of that name, the first one where it repeats; null when it was not given.
  const SubComObj* getSubComObj(std::string_view name) const;
  /// Every occurrence, in order; true when there is at least one.
  bool getSubComObj(std::string_view name, std::vector<const SubComObj*>& subcommands) const;

  std::span<const SubComObj> subcommands() const;

 private:
  friend class CommandSpec;
  friend class UniversalParser;

  const CommandSpec* spec_ = nullptr;
  const GroupComDescriptor* descriptor_ = nullptr;  ///< null for the command's own
  std::uint32_t firstSubCom_ = 0;
  std::uint32_t subComCount_ = 0;
};

/// The container that the parser fills.
class CommandSpec {
 public:
  CommandSpec();
  CommandSpec(const CommandSpec&) = delete;
  CommandSpec& operator=(const CommandSpec&) = delete;

  /// A subcommand of the command itself, the first one where it repeats; null when it was not
  /// given.
  const SubComObj* getSubComObj(std::string_view name) const;
  bool getSubComObj(std::string_view name, std::vector<const SubComObj*>& subcommands) const;
  /// The subcommands that belong to the command itself.
  const GroupComObj& getGlobalGroupObj() const { return global_; }
  /// Every group that `leader` starts, in order; true when there is at least one.
  bool getGroupObj(std::vector<const GroupComObj*>& groups, std::string_view leader) const;

  const std::vector<GroupComObj>& groups() const { return groups_; }

 private:
  friend class UniversalParser;
  friend class SubComObj;
  friend class GroupComObj;

  // Flat on purpose: a command may have 100,000 groups, and each object is a range of these.
  std::vector<ParamObj> params_;
  std::vector<SubComObj> commandSubComs_;
  std::vector<SubComObj> groupSubComs_;
  std::vector<GroupComObj> groups_;
  GroupComObj global_;
};

}  // namespace vornwout
