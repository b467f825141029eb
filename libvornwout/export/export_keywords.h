// What the subcommands of OUTPUT EXPORT declare and read in the same way: flags, enumerations,
// percentages and whether a subcommand counts.
//
// The keywords of an enumeration stand beside it (platform/exportspec); here a keyword's value
// becomes an argument of its setter, so that what a keyword means is said once.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "platform/exportspec/export_setting.h"
#include "platform/exportspec/export_spec.h"
#include "platform/message/parser_message.h"
#include "platform/parser/command_spec.h"
#include "platform/parser/descriptor.h"

namespace vornwout {

inline constexpr const char* kImageRoot = "IMAGEROOT";
inline constexpr const char* kDocumentFile = "DOCUMENTFILE";
inline constexpr const char* kPercentSize = "PERCENTSIZE";
inline constexpr double kMaxPercent = 200;
inline constexpr const char* kNotesCaptions = "NOTESCAPTIONS";
inline constexpr const char* kWideTables = "WIDETABLES";
inline constexpr const char* kImageFormat = "IMAGEFORMAT";

/// A subcommand for a type of document, with DOCUMENTFILE.
SubComDescriptor documentSubcommand(const char* name);
/// A subcommand for a type of image, with IMAGEROOT.
SubComDescriptor imageSubcommand(const char* name);

/// An optional keyword with the declared values.
ParamDescriptor exportKeyword(const char* name, UPSpecTypes::ParamSpec spec,
                              std::initializer_list<const char*> values = {});
/// The keyword PERCENTSIZE.
ParamDescriptor percentSizeKeyword();

/// True when the value is this one. ALL is a reserved word, which comes as an operator.
bool isKeywordValue(const ParamObj& param, std::string_view keyword);

/// The value of an enumeration that one of its keywords stands for.
template <typename Enumeration, typename IsKeyword>
std::optional<Enumeration> enumerationValue(const IsKeyword& isKeyword) {
  const auto& names = Keywords<Enumeration>::kNames;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (isKeyword(names[i])) return static_cast<Enumeration>(i);
  }
  return std::nullopt;
}

/// The keywords whose values stand in another order than those of their enumeration.
ParamDescriptor wideTablesKeyword();
ParamDescriptor imageFormatKeyword();

/// An optional keyword that takes the values of an enumeration, in their own order.
template <typename Enumeration>
ParamDescriptor enumerationKeyword(const char* name) {
  ParamDescriptor keyword = exportKeyword(name, UPSpecTypes::kDeclaredValue);
  for (const char* value : Keywords<Enumeration>::kNames) keyword.addStringValue(value);
  return keyword;
}

/// Gives the value of a keyword to its setter; a keyword that was not given sets nothing.
template <typename Option, typename Owner, typename Enumeration>
void readEnumeration(const SubComObj& subcommand, const char* keyword, Option& option,
                     void (Owner::*set)(Enumeration)) {
  const ParamObj* param = subcommand.getParamObj(keyword);
  if (param == nullptr) return;
  const auto value = enumerationValue<Enumeration>(
      [&](std::string_view name) { return isKeywordValue(*param, name); });
  if (value) (option.*set)(*value);
}

/// True for YES, false for NO, nothing for a keyword that was not given.
std::optional<bool> readYesNo(const SubComObj& subcommand, const char* keyword);

/// Gives true for YES and false for NO to the keyword's setter.
template <typename Option, typename Owner>
void readFlag(const SubComObj& subcommand, const char* keyword, Option& option,
              void (Owner::*set)(bool)) {
  if (const std::optional<bool> value = readYesNo(subcommand, keyword)) (option.*set)(*value);
}

/// Reads a number above 0 and at most 200; false after reporting another value, written as `token`,
/// of the keyword or unit `name`.
bool readPercent(const ParamObj& param, const std::string& token, const char* name,
                 const ParserMessage& messages, double& percent);

/// Reports a value that is no number above 0, of what the message calls `name`.
void reportNotAboveZero(const ParserMessage& messages, const std::string& token,
                        const std::string& name);

/// Reads PERCENTSIZE; false after reporting a value that is refused.
inline bool readPercentSize(const SubComObj& subcommand, const ParserMessage& messages,
                            SizedImageOption& option) {
  const ParamObj* param = subcommand.getParamObj(kPercentSize);
  if (param == nullptr) return true;
  const std::string token = param->getStringToken();
  double percent = 0;
  if (!readPercent(*param, token, kPercentSize, messages, percent)) return false;
  option.setPercentSize(percent, token);
  return true;
}

/// 1, and the option is marked as present, when its subcommand was accepted; 0 otherwise.
inline int countOption(ExportOption& option, bool accepted) {
  if (!accepted) return 0;
  option.setOptionPresent(true);
  return 1;
}

}  // namespace vornwout
