#include "platform/message/parser_message.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "platform/parser/current_command.h"
#include "platform/pivot/cell_text.h"
#include "platform/text/encoding.h"

namespace vornwout {
namespace {

const ParserMessage* innermost = nullptr;

constexpr std::size_t kMostPlaceholders = 9;

std::string fill(std::string_view text, std::vector<std::string> arguments) {
  // What no argument was given for shows nothing, so that no "^4" meets the user.
  arguments.resize(std::max(arguments.size(), kMostPlaceholders));
  return substitutePlaceholders(std::string(text), arguments);
}

SourceSpot currentSpot() {
  const CurrentCommand* command = CurrentCommand::current();
  return command == nullptr ? SourceSpot{} : command->spot();
}

/// The shortest text that reads back as the same number; integers without an exponent.
std::string shortestNumber(double value) {
  constexpr double kLongestInteger = 1e21;  // beyond, digits in full say less than an exponent
  std::array<char, 64> text{};
  const bool inFull = value == std::trunc(value) && std::abs(value) < kLongestInteger;
  char* const end = text.data() + text.size();
  const auto written = inFull ? std::to_chars(text.data(), end, value, std::chars_format::fixed)
                              : std::to_chars(text.data(), end, value);
  const std::string shown(text.data(), written.ptr);
  return shown == "-0" ? "0" : shown;
}

/// What to say about a value that a command refuses when another command seems to stand in it.
std::string forgottenPeriodHint() {
  const CurrentCommand* command = CurrentCommand::current();
  const Token* stray = command == nullptr ? nullptr : command->strayCommand();
  if (stray == nullptr) return {};
  return "Line " + std::to_string(stray->line) +
         " begins a command: does the one before it lack its period?";
}

/// The arguments as sinks take them: in UTF-8, and without a password that they would repeat.
std::vector<std::string> forSinks(std::vector<std::string> arguments) {
  CurrentCommand* command = CurrentCommand::current();
  for (std::string& argument : arguments) {
    const bool isSecret =
        command != nullptr && !argument.empty() &&
        std::count(command->secrets().begin(), command->secrets().end(), argument) > 0;
    argument = isSecret ? kHiddenSecret : currentToUtf8(argument);
  }
  return arguments;
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    if (!list.empty()) list += ", ";
    list += name;
  }
  return list;
}

}  // namespace

ParserMessage::ParserMessage() : previous_(innermost) { innermost = this; }

ParserMessage::~ParserMessage() { innermost = previous_; }

const ParserMessage* ParserMessage::current() { return innermost; }

void ParserMessage::WrongValueType(const std::string& keyword, const std::string& detail) const {
  report(MessageKey::kWrongValueType, {keyword, detail}, std::nullopt, forgottenPeriodHint());
}

void ParserMessage::InvalidParam(const std::string& keyword, const std::string& subcommand) const {
  report(MessageKey::kInvalidParam, {keyword, subcommand});
}

void ParserMessage::InvalidParamValue(const std::string& value, const std::string& keyword,
                                      const std::string& subcommand) const {
  report(MessageKey::kInvalidParamValue, {value, keyword, subcommand});
}

void ParserMessage::IgnoredParamValue(const std::string& keyword, const std::string& subcommand,
                                      const std::string& value) const {
  report(MessageKey::kIgnoredParamValue, {keyword, subcommand, value});
}

void ParserMessage::FileNameInvalid(const std::string& path) const {
  report(MessageKey::kFileNameInvalid, {path});
}

void ParserMessage::ParamValueBreakBdry(double value, double lower, double upper,
                                        const std::string& keyword,
                                        const std::string& subcommand) const {
  ParamValueBreakBdry(shortestNumber(value), lower, upper, keyword, subcommand);
}

void ParserMessage::ParamValueBreakBdry(const std::string& value, double lower, double upper,
                                        const std::string& keyword,
                                        const std::string& subcommand) const {
  report(MessageKey::kParamValueBreakBdry,
         {value, shortestNumber(lower), shortestNumber(upper), keyword, subcommand});
}

void ParserMessage::ParamRequiredForSubCom(const std::string& keyword,
                                           const std::string& subcommand) const {
  report(MessageKey::kParamRequiredForSubCom, {keyword, subcommand});
}

void ParserMessage::ParamNoSubCom(const std::string& name) const {
  report(MessageKey::kParamNoSubCom, {name});
}

void ParserMessage::ParamNeedParam(const std::string& keyword, const std::string& otherKeyword,
                                   const std::string& otherValue) const {
  report(MessageKey::kParamNeedParam, {keyword, otherKeyword, otherValue});
}

void ParserMessage::ParamNeedInteger(const std::string& keyword,
                                     const std::string& subcommand) const {
  report(MessageKey::kParamNeedInteger, {keyword, subcommand});
}

void ParserMessage::ParamNeedIntegerList(const std::string& subcommand) const {
  report(MessageKey::kParamNeedIntegerList, {subcommand});
}

void ParserMessage::ParamNeedIntegerList(const std::string& keyword,
                                         const std::string& subcommand) const {
  report(MessageKey::kParamNeedIntegerList, {keyword, subcommand});
}

void ParserMessage::ParamNeedNumber(const std::string& keyword,
                                    const std::string& subcommand) const {
  report(MessageKey::kParamNeedNumber, {keyword, subcommand});
}

void ParserMessage::ParamExclusive(const std::string& keyword, const std::string& otherKeyword,
                                   const std::string& subcommand) const {
  report(MessageKey::kParamExclusive, {keyword, otherKeyword, subcommand});
}

void ParserMessage::ParenRequired(const std::string& name) const {
  report(MessageKey::kParenRequired, {name});
}

void ParserMessage::SquareBracketRequired(const std::string& keyword,
                                          const std::string& subcommand) const {
  report(MessageKey::kSquareBracketRequired, {keyword, subcommand});
}

void ParserMessage::SubComRequired(const std::vector<std::string>& names) const {
  report(MessageKey::kSubComRequired, names);
}

void ParserMessage::report(MessageKey key, std::vector<std::string> arguments,
                           std::optional<SourceSpot> spot, std::string_view hint) const {
  const MessageEntry& entry = messageEntry(key);
  ParserMessageRecord record;
  record.operation = entry.operation;
  record.severity = entry.severity;
  record.arguments = forSinks(std::move(arguments));
  if (key == MessageKey::kSubComRequired) {
    const bool one = record.arguments.size() == 1;
    record.text = fill(one ? entry.shortText : entry.text, {joined(record.arguments)});
  } else if (key == MessageKey::kParamNeedIntegerList && record.arguments.size() == 1) {
    record.text = fill(entry.shortText, record.arguments);
  } else {
    const bool lastIsEmpty = !record.arguments.empty() && record.arguments.back().empty();
    const bool useShort = lastIsEmpty && !entry.shortText.empty();
    record.text = fill(useShort ? entry.shortText : entry.text, record.arguments);
  }
  if (hint.empty()) {
    record.remedy = messageRemedy(key, record.arguments);
  } else {
    record.text += " " + currentToUtf8(hint);
  }
  send(record, spot ? *spot : currentSpot());
}

void ParserMessage::reportGeneric(MessageKey key, const std::string& text,
                                  std::vector<std::string> arguments) const {
  const MessageEntry& entry = messageEntry(key);
  ParserMessageRecord record;
  record.operation = entry.operation;
  record.severity = entry.severity;
  record.messageTemplate = currentToUtf8(text);
  record.arguments = forSinks(std::move(arguments));
  record.text = fill(record.messageTemplate, record.arguments);
  send(record, currentSpot());
}

void ParserMessage::send(ParserMessageRecord& record, const SourceSpot& spot) const {
  record.place = spot.place;
  record.offset = spot.offset;
  record.length = spot.length;
  if (record.severity == MessageSeverity::kError) ++errorCount_;
  for (OutputSink* sink : outputSinks()) sink->parserMessage(record);
}

}  // namespace vornwout
