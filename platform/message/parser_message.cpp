#include "platform/message/parser_message.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>

#include "platform/parser/current_command.h"
#include "platform/pivot/cell_text.h"
#include "platform/strings/localized.h"
#include "platform/text/encoding.h"
#include "platform/text/shortened_text.h"

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
  return localized("Line ^1 begins a command: does the one before it lack its period?",
                   stray->line);
}

/// A message as its texts are made from its arguments.
using Render = std::function<std::string(const std::vector<std::string>& arguments)>;

/// Fills in the arguments and every text made from them: as all may see it, shortened for people,
/// and with the secrets.
void fillTexts(ParserMessageRecord& record, const std::vector<MessageArgument>& arguments,
               const Render& render) {
  std::vector<std::string> shortened;
  bool isShortened = false;
  bool hasSecrets = false;
  for (const MessageArgument& argument : arguments) {
    record.arguments.push_back(argument.hidden());
    shortened.push_back(shortenedText(record.arguments.back()));
    isShortened = isShortened || shortened.back() != record.arguments.back();
    hasSecrets = hasSecrets || argument.hasSecrets();
  }
  record.text = render(record.arguments);
  if (isShortened) record.shortened = render(shortened);
  if (!hasSecrets) return;
  ParserMessageRecord::Texts& uncovered = record.uncovered.emplace();
  for (const MessageArgument& argument : arguments) {
    uncovered.arguments.push_back(argument.uncovered());
  }
  uncovered.text = render(uncovered.arguments);
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) {
    if (!list.empty()) list += ", ";
    list += name;
  }
  return list;
}

/// The text of a row of the catalogue.
std::string rowText(const MessageEntry& entry, const std::vector<std::string>& arguments) {
  const bool isOne = arguments.size() == 1;
  if (entry.key == MessageKey::kSubComRequired) {
    return fill(localizedText(isOne ? entry.shortText : entry.text), {joined(arguments)});
  }
  const bool lastIsEmpty = !arguments.empty() && arguments.back().empty();
  const bool listStandsAlone = entry.key == MessageKey::kParamNeedIntegerList && isOne;
  const bool useShort = listStandsAlone || (lastIsEmpty && !entry.shortText.empty());
  return fill(localizedText(useShort ? entry.shortText : entry.text), arguments);
}

}  // namespace

ParserMessage::ParserMessage() : previous_(innermost) { innermost = this; }

ParserMessage::~ParserMessage() { innermost = previous_; }

const ParserMessage* ParserMessage::current() { return innermost; }

void ParserMessage::WrongValueType(const std::string& keyword,
                                   const MessageArgument& detail) const {
  report(MessageKey::kWrongValueType, {keyword, detail}, std::nullopt, forgottenPeriodHint());
}

void ParserMessage::InvalidParam(const std::string& keyword, const std::string& subcommand) const {
  report(MessageKey::kInvalidParam, {keyword, subcommand});
}

void ParserMessage::InvalidParamValue(const MessageArgument& value, const std::string& keyword,
                                      const std::string& subcommand) const {
  report(MessageKey::kInvalidParamValue, {value, keyword, subcommand});
}

void ParserMessage::IgnoredParamValue(const std::string& keyword, const std::string& subcommand,
                                      const MessageArgument& value) const {
  report(MessageKey::kIgnoredParamValue, {keyword, subcommand, value});
}

void ParserMessage::FileNameInvalid(const MessageArgument& path) const {
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

void ParserMessage::ParamNoSubCom(const MessageArgument& name) const {
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
  report(MessageKey::kSubComRequired, {names.begin(), names.end()});
}

void ParserMessage::report(MessageKey key, const std::vector<MessageArgument>& arguments,
                           std::optional<SourceSpot> spot, std::string_view hint) const {
  const MessageEntry& entry = messageEntry(key);
  ParserMessageRecord record;
  record.operation = entry.operation;
  record.severity = entry.severity;
  std::string behind;
  if (!hint.empty()) behind.append(" ").append(hint);
  fillTexts(record, arguments,
            [&](const std::vector<std::string>& texts) { return rowText(entry, texts) + behind; });
  if (hint.empty()) record.remedy = localizedText(messageRemedy(key, record.arguments));
  send(record, spot ? *spot : currentSpot());
}

void ParserMessage::reportGeneric(MessageKey key, const std::string& text,
                                  const std::vector<MessageArgument>& arguments) const {
  const MessageEntry& entry = messageEntry(key);
  ParserMessageRecord record;
  record.operation = entry.operation;
  record.severity = entry.severity;
  record.messageTemplate = currentToUtf8(text);
  fillTexts(record, arguments, [&](const std::vector<std::string>& texts) {
    return fill(localizedText(record.messageTemplate), texts);
  });
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
