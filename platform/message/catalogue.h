// The messages of the parser and of ParserMessage: one table for key, severity, text and remedy.
//
// tests/platform/catalogue_test.cpp fails when a row is never provoked; docs/messages.md is printed
// from the same table.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "platform/adapter/output_sink.h"

namespace vornwout {

/// One per row of the catalogue, named after the operation that reports it.
enum class MessageKey {
  // Reported by commands and by the parser.
  kWrongValueType,
  kInvalidParam,
  kInvalidParamValue,
  kIgnoredParamValue,
  kFileNameInvalid,
  kParamValueBreakBdry,
  kParamRequiredForSubCom,
  kParamNoSubCom,
  kParamNeedParam,
  kParamNeedInteger,
  kParamNeedIntegerList,
  kParamNeedNumber,
  kParamExclusive,
  kParenRequired,
  kSquareBracketRequired,
  kSubComRequired,
  kGenericError,
  kGenericWarning,
  // Reported by the parser and the command processor alone.
  kUnknownCommand,
  kCommandNotIncluded,
  kUnknownSubCom,
  kUnknownParam,
  kSubComRepeated,
  kSubComNeedsGroup,
  kParamRepeated,
  kParamNoValue,
  kParamValueRequired,
  kParamNeedLiteral,
  kEqualSignRequired,
  kUnbalancedBracket,
  kUnexpectedToken,
  kUnterminatedString,
  kUnterminatedComment,
  kNulCharacter,
};

/// What the user can do when the message is about this keyword.
struct KeywordRemedy {
  std::string_view keyword;
  std::string_view remedy;
};

struct MessageEntry {
  MessageKey key;
  std::string_view operation;  ///< the name of the ParserMessage operation
  MessageSeverity severity;
  std::string_view text;       ///< "^1" and so on stand for the arguments
  std::string_view shortText;  ///< used when the last argument is empty, or one of a list stands
                               ///< alone; empty for "the same"
  std::string_view remedy;     ///< what the user can do about it; empty where the text says it
  /// Remedies that come before it when the first argument is their keyword; the last are unused.
  std::array<KeywordRemedy, 5> keywordRemedies{};
};

/// All rows, in the order of the keys.
std::span<const MessageEntry> messageCatalogue();

const MessageEntry& messageEntry(MessageKey key);

/// The remedy of a message, which may depend on the keyword that it is about. May be empty.
std::string_view messageRemedy(MessageKey key, std::span<const std::string> arguments);

/// The remedies of a row in one text, for its page in the documentation.
std::string documentedRemedy(const MessageEntry& entry);

}  // namespace vornwout
