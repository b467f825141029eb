// ParserMessage: how the parser and the commands report errors and warnings about a command's text.
//
// A command makes one ParserMessage; while it lives the parser reports through it. Every operation
// sends one ParserMessageRecord to the output sinks at once and returns: whether the command goes
// on is the command's decision. Arguments are in the current encoding; where one repeats tokens of
// the command it says which of them are secret, and sinks get "***" for these. The place of a
// message is the value or keyword that the command read last, unless the parser names one.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/message/catalogue.h"
#include "platform/message/message_argument.h"

namespace vornwout {

class ParserMessage {
 public:
  ParserMessage();
  ~ParserMessage();
  ParserMessage(const ParserMessage&) = delete;
  ParserMessage& operator=(const ParserMessage&) = delete;

  /// The innermost one that lives, or null.
  static const ParserMessage* current();

  void SetCommandName(std::string name) { commandName_ = std::move(name); }
  void SetProcedureTitle(std::string title) { procedureTitle_ = std::move(title); }
  const std::string& commandName() const { return commandName_; }
  const std::string& procedureTitle() const { return procedureTitle_; }

  /// `detail` is the subcommand or the value as written; may be empty, as every last argument may.
  void WrongValueType(const std::string& keyword, const MessageArgument& detail) const;
  void InvalidParam(const std::string& keyword, const std::string& subcommand) const;
  void InvalidParamValue(const MessageArgument& value, const std::string& keyword,
                         const std::string& subcommand) const;
  /// A warning: the value is not used, the command goes on.
  void IgnoredParamValue(const std::string& keyword, const std::string& subcommand,
                         const MessageArgument& value) const;
  void FileNameInvalid(const MessageArgument& path) const;
  void ParamValueBreakBdry(double value, double lower, double upper, const std::string& keyword,
                           const std::string& subcommand) const;
  /// The same for a value that no double holds, as it was written.
  void ParamValueBreakBdry(const std::string& value, double lower, double upper,
                           const std::string& keyword, const std::string& subcommand) const;
  void ParamRequiredForSubCom(const std::string& keyword, const std::string& subcommand) const;
  void ParamNoSubCom(const MessageArgument& name) const;
  void ParamNeedParam(const std::string& keyword, const std::string& otherKeyword,
                      const std::string& otherValue) const;
  void ParamNeedInteger(const std::string& keyword, const std::string& subcommand) const;
  void ParamNeedIntegerList(const std::string& subcommand) const;
  void ParamNeedIntegerList(const std::string& keyword, const std::string& subcommand) const;
  void ParamNeedNumber(const std::string& keyword, const std::string& subcommand) const;
  void ParamExclusive(const std::string& keyword, const std::string& otherKeyword,
                      const std::string& subcommand) const;
  void ParenRequired(const std::string& name) const;
  void SquareBracketRequired(const std::string& keyword, const std::string& subcommand) const;
  void SubComRequired(const std::vector<std::string>& names) const;

  /// A message of the command's own. A placeholder without an argument shows nothing.
  template <typename... Arguments>
  void GenericError(const std::string& text, const Arguments&... arguments) const {
    reportGeneric(MessageKey::kGenericError, text, {MessageArgument(arguments)...});
  }
  template <typename... Arguments>
  void GenericWarning(const std::string& text, const Arguments&... arguments) const {
    reportGeneric(MessageKey::kGenericWarning, text, {MessageArgument(arguments)...});
  }

  /// Reports a row of the catalogue. `spot` where known; `hint` is a sentence in UTF-8 shown behind
  /// the text, and as it is about this very mistake it takes the place of the row's remedy.
  void report(MessageKey key, const std::vector<MessageArgument>& arguments,
              std::optional<SourceSpot> spot = std::nullopt, std::string_view hint = {}) const;

  /// How many errors were reported so far.
  int errorCount() const { return errorCount_; }

 private:
  void reportGeneric(MessageKey key, const std::string& text,
                     const std::vector<MessageArgument>& arguments) const;
  void send(ParserMessageRecord& record, const SourceSpot& spot) const;

  std::string commandName_;
  std::string procedureTitle_;
  mutable int errorCount_ = 0;
  const ParserMessage* previous_;
};

}  // namespace vornwout
