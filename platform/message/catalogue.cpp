#include "platform/message/catalogue.h"

#include <array>

namespace vornwout {
namespace {

using enum MessageKey;
constexpr auto kError = MessageSeverity::kError;
constexpr auto kWarning = MessageSeverity::kWarning;

constexpr std::string_view kNameRemedy =
    "A document name is one word that starts with a letter and goes on with letters, digits and "
    ". _ $ # @; OUTPUT ACTIVATE, CLOSE and SAVE also take *, CLOSE also ALL.";
constexpr std::string_view kFileRemedy = "The name of a file stands in quotes.";

constexpr std::array kCatalogue = {
    MessageEntry{
        kWrongValueType,
        "WrongValueType",
        kError,
        "The value of ^1 is missing or not of the type that it takes (^2).",
        "The value of ^1 is missing, given more than once or not of the type that it takes.",
        "A text of several words stands in quotes.",
        {KeywordRemedy{"NAME", kNameRemedy},
         {"FILE", kFileRemedy},
         {"OUTFILE", kFileRemedy},
         {"DOCUMENTFILE", kFileRemedy},
         {"IMAGEROOT", kFileRemedy}}},
    MessageEntry{kInvalidParam, "InvalidParam", kError,
                 "What is written for ^1 in ^2 is not valid.", "^1 is not valid here.",
                 "Compare the keyword with the command's help: vornwout help COMMAND."},
    MessageEntry{kInvalidParamValue, "InvalidParamValue", kError,
                 "\"^1\" is not a valid value for ^2 in ^3.", "\"^1\" is not a valid value for ^2.",
                 "Use one of the values that the command's help lists for the keyword."},
    MessageEntry{kIgnoredParamValue, "IgnoredParamValue", kWarning,
                 "The value \"^3\" of ^1 is not known and is ignored.",
                 "The value of ^1 is not known and is ignored.",
                 "Use one of the values that the command's help lists for the keyword."},
    MessageEntry{kFileNameInvalid, "FileNameInvalid", kError,
                 "The file \"^1\" does not exist or cannot be read.", "A file name is empty.",
                 "Check the file's name, its directory and its permissions."},
    MessageEntry{kParamValueBreakBdry, "ParamValueBreakBdry", kError,
                 "The value ^1 of ^4 in ^5 lies outside the bounds ^2 to ^3.",
                 "The value ^1 of ^4 lies outside the bounds ^2 to ^3.",
                 "Give a value within the bounds; the bounds themselves are allowed."},
    MessageEntry{kParamRequiredForSubCom, "ParamRequiredForSubCom", kError,
                 "The keyword ^1 is required in the subcommand ^2.", "The keyword ^1 is required.",
                 "Add the keyword with its value."},
    MessageEntry{kParamNoSubCom, "ParamNoSubCom", kError, "^1 does not belong here.", "",
                 "Use one of the qualifiers that the command's help lists for the keyword."},
    MessageEntry{kParamNeedParam, "ParamNeedParam", kError,
                 "The keyword ^1 is required when ^2 is ^3.", "The keyword ^1 is required with ^2.",
                 "Add the missing keyword, or change the other one."},
    MessageEntry{kParamNeedInteger, "ParamNeedInteger", kError,
                 "^1 in ^2 needs an integer within its bounds.",
                 "^1 needs an integer within its bounds.",
                 "Write digits only, with no decimal point and no quotes."},
    MessageEntry{kParamNeedIntegerList, "ParamNeedIntegerList", kError,
                 "^1 in ^2 needs a list of integers.", "A list of integers is needed in ^1.",
                 "Write integers separated by commas or blanks."},
    MessageEntry{kParamNeedNumber, "ParamNeedNumber", kError,
                 "^1 in ^2 needs a number within its bounds.",
                 "^1 needs a number within its bounds.",
                 "Write a number such as 10 or 8.5, with no quotes."},
    MessageEntry{kParamExclusive, "ParamExclusive", kError, "^1 and ^2 exclude each other in ^3.",
                 "^1 and ^2 exclude each other.", "Keep one of the two."},
    MessageEntry{kParenRequired, "ParenRequired", kError, "^1 needs its values in parentheses.", "",
                 "Put the values between ( and )."},
    MessageEntry{kSquareBracketRequired, "SquareBracketRequired", kError,
                 "^1 in ^2 needs its values in square brackets.",
                 "^1 needs its values in square brackets.", "Put the values between [ and ]."},
    MessageEntry{kSubComRequired, "SubComRequired", kError,
                 "One of these subcommands is required: ^1.", "The subcommand ^1 is required.",
                 "Add the subcommand with a slash in front."},
    MessageEntry{kGenericError, "GenericError", kError, "", "", ""},
    MessageEntry{kGenericWarning, "GenericWarning", kWarning, "", "", ""},
    MessageEntry{kUnknownCommand, "UnknownCommand", kError, "There is no command ^1.", "",
                 "Check the spelling, and that the command before it ends with a period."},
    MessageEntry{kCommandNotIncluded, "CommandNotIncluded", kError,
                 "This version does not have the command ^1.", "",
                 "vornwout help lists the commands that this version has."},
    MessageEntry{kUnknownSubCom, "UnknownSubCom", kError,
                 "There is no subcommand ^1 in this command.",
                 "A subcommand's name is missing after \"/\".",
                 "See vornwout help COMMAND for the subcommands there are."},
    MessageEntry{kUnknownParam, "UnknownParam", kError,
                 "There is no keyword ^1 in the subcommand ^2.",
                 "There is no keyword ^1 in this command.",
                 "See vornwout help COMMAND for the keywords there are."},
    MessageEntry{kSubComRepeated, "SubComRepeated", kError,
                 "The subcommand ^1 is given more than once.", "",
                 "Keep one of them and put its keywords together."},
    MessageEntry{kSubComNeedsGroup, "SubComNeedsGroup", kError,
                 "The subcommand ^1 must stand behind ^2.", "",
                 "Write the leading subcommand first; what follows belongs to it."},
    MessageEntry{kParamRepeated, "ParamRepeated", kError,
                 "The keyword ^1 is given more than once in the subcommand ^2.",
                 "The keyword ^1 is given more than once.", "Keep one of them."},
    MessageEntry{kParamNoValue, "ParamNoValue", kError,
                 "The keyword ^1 in ^2 stands alone and takes no value.",
                 "The keyword ^1 stands alone and takes no value.", "Leave out what follows it."},
    MessageEntry{kParamValueRequired, "ParamValueRequired", kError,
                 "The keyword ^1 in ^2 has no value.", "The keyword ^1 has no value.",
                 "Write the value behind the equals sign."},
    MessageEntry{kParamNeedLiteral, "ParamNeedLiteral", kError,
                 "\"^1\" must stand in quotes for ^2 in ^3.", "\"^1\" must stand in quotes for ^2.",
                 "Put each text between quotes."},
    MessageEntry{kEqualSignRequired, "EqualSignRequired", kError,
                 "An equals sign is missing behind ^1 in ^2.",
                 "An equals sign is missing behind ^1.", "Write KEYWORD=value."},
    MessageEntry{kUnbalancedBracket, "UnbalancedBracket", kError,
                 "The bracket \"^1\" has no partner.", "",
                 "Close every bracket that is opened, innermost first."},
    MessageEntry{kUnexpectedToken, "UnexpectedToken", kError, "\"^1\" is not expected behind ^2.",
                 "\"^1\" is not expected here.",
                 "Remove it, or put a text of several words in quotes."},
    MessageEntry{kUnterminatedString, "UnterminatedString", kError,
                 "The text that starts here with ^1 has no closing quote on its line.", "",
                 "Close the quote on the same line; a quote inside is written twice."},
    MessageEntry{kUnterminatedComment, "UnterminatedComment", kError,
                 "The comment that starts here has no end.", "", "Close it with */."},
    MessageEntry{kNulCharacter, "NulCharacter", kError,
                 "A zero byte stands here; a job is plain text.", "",
                 "Save the job as plain text, and name its encoding with --encoding."},
};

constexpr bool rowsFollowTheKeys() {
  for (std::size_t i = 0; i < kCatalogue.size(); ++i) {
    if (static_cast<std::size_t>(kCatalogue[i].key) != i) return false;
  }
  return kCatalogue.size() == static_cast<std::size_t>(kNulCharacter) + 1;
}
static_assert(rowsFollowTheKeys());

}  // namespace

std::span<const MessageEntry> messageCatalogue() { return kCatalogue; }

const MessageEntry& messageEntry(MessageKey key) {
  return kCatalogue[static_cast<std::size_t>(key)];
}

std::string_view messageRemedy(MessageKey key, std::span<const std::string> arguments) {
  const MessageEntry& entry = messageEntry(key);
  if (!arguments.empty()) {
    for (const KeywordRemedy& special : entry.keywordRemedies) {
      if (!special.keyword.empty() && special.keyword == arguments.front()) return special.remedy;
    }
  }
  return entry.remedy;
}

std::string documentedRemedy(const MessageEntry& entry) {
  std::string text;
  std::string keywords;
  for (std::size_t i = 0; i < entry.keywordRemedies.size(); ++i) {
    const KeywordRemedy& special = entry.keywordRemedies[i];
    if (special.keyword.empty()) break;
    if (!keywords.empty()) keywords += ", ";
    keywords += special.keyword;
    // Keywords with the same remedy stand together in the table and in the text.
    const bool last = i + 1 == entry.keywordRemedies.size();
    if (!last && entry.keywordRemedies[i + 1].remedy == special.remedy) continue;
    text += keywords + ": " + std::string(special.remedy) + " ";
    keywords.clear();
  }
  if (text.empty()) return std::string(entry.remedy);
  return text + "Others: " + std::string(entry.remedy);
}

}  // namespace vornwout
