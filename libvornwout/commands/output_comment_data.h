// The grammar and the values of OUTPUT COMMENT: the command's own keywords and its LINE subcommand.
//
// Both classes declare their subcommand on the command's descriptor and afterwards fill one vector
// of lineInfo records from what was parsed.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

/// One line of a comment; a text and colours in the current encoding.
struct lineInfo {
  bool bold = false;
  bool boldGiven = false;       ///< the line's own BOLD was written
  std::string textColor;        ///< empty when none
  std::string backgroundColor;  ///< empty when none
  std::string text;
};

/// The keywords that follow the command's name; they hold for every line that has none of its own.
class OutputCommentGlobalData {
 public:
  explicit OutputCommentGlobalData(CommandDescriptor& descriptor);

  /// Reads the values; a text given becomes the first line. False after reporting an error.
  bool populateSpecification(const CommandSpec& spec, const ParserMessage& messages,
                             std::vector<lineInfo>& lines);

  const std::string& textColor() const { return settings_.textColor; }
  const std::string& backgroundColor() const { return settings_.backgroundColor; }
  bool bold() const { return settings_.bold; }
  /// The column's width in points, empty when none was given.
  std::optional<int> width() const { return width_; }

 private:
  bool readWidth(const SubComObj& subcommand, const ParserMessage& messages);

  lineInfo settings_;
  std::optional<int> width_;
};

/// The repeatable LINE subcommand.
class OutputCommentLineData {
 public:
  explicit OutputCommentLineData(CommandDescriptor& descriptor);

  /// Appends one line per LINE, in the order written. False after reporting an error.
  bool populateSpecification(const CommandSpec& spec, const ParserMessage& messages,
                             std::vector<lineInfo>& lines);
};

/// True for a colour that OUTPUT COMMENT takes: "#" and six characters, or one of 26 names,
/// compared exactly.
bool isCommentColor(const std::string& value);

}  // namespace vornwout
