// XMLUtilities: what turns values of a command into XML text or into text shown in the output.
//
// Static operations without state; none reports a message, the caller words its own. insertDateTime
// reads the clock through localtime, so it belongs to the command thread.
#pragma once

#include <ctime>
#include <string>
#include <vector>

#include "platform/parser/command_spec.h"

namespace vornwout {

class XMLUtilities {
 public:
  /// What a colour's keyword is declared with: seventeen values, of which getRGB() knows thirteen
  /// by name and RGB by its components.
  static std::vector<const char*> colorKeywords();

  /// Reads a colour: one of thirteen keywords, or RGB(red green blue) with components of 0 to 255.
  /// False when it is neither; the out-values then hold what was read of an RGB form.
  static bool getRGB(const ParamObj& param, int& red, int& green, int& blue);

  /// Converts from the current encoding to UTF-8.
  static std::string genericToUTF8(const std::string& text);

  /// Replaces the five XML special characters; characters of two or more bytes are copied as they
  /// are.
  static std::string escapeHTML(const std::string& text);

  /// Resolves the name of a table look or chart template: as it stands, else in the Looks folder of
  /// the installation, else in that of the user; `name` becomes the path found. A null `extension`
  /// makes every name resolve, deliberately.
  static bool getFilePath(std::string& name, const char* extension);

  /// A copy with ")DATE", ")ADATE", ")EDATE", ")SDATE", ")TIME" and ")ETIME" replaced by the
  /// current local date and time, month names in the current language.
  static std::string insertDateTime(const std::string& text);

  /// The same for a given instant.
  static std::string insertDateTime(const std::string& text, const std::tm& instant);
};

}  // namespace vornwout
