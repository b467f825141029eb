// The messages of the parser and of ParserMessage: one table for key, severity, text and remedy.
//
// tests/platform/catalogue_test.cpp fails when a row is never provoked; docs/messages.md is printed
// from the same table.
#pragma once

#include <span>
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

struct MessageEntry {
  MessageKey key;
  std::string_view operation;  ///< the name of the ParserMessage operation
  MessageSeverity severity;
  std::string_view text;       ///< "^1" and so on stand for the arguments
  std::string_view shortText;  ///< used when the last argument is empty, or one of a list stands
                               ///< alone; empty for "the same"
  std::string_view remedy;     ///< what the user can do about it
};

/// All rows, in the order of the keys.
std::span<const MessageEntry> messageCatalogue();

const MessageEntry& messageEntry(MessageKey key);

/// The remedy of the row of that operation, empty for a name that is none.
std::string_view messageRemedy(std::string_view operation);

}  // namespace vornwout
