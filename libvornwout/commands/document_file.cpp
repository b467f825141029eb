#include "libvornwout/commands/document_file.h"

#include <vector>

#include "libvornwout/frame/constants.h"
#include "libvornwout/frame/file_path.h"
#include "platform/files/file_specification.h"

namespace vornwout {
namespace {

/// The value as the message shows it: the texts of its tokens, joined by blanks, in double quotes.
MessageArgument quotedTokens(const ParamObj& value) {
  std::vector<TokenInfoObj> tokens;
  value.getTokenList(tokens);
  MessageArgument text("\"");
  const char* separator = "";
  for (const TokenInfoObj& token : tokens) {
    text += separator;
    text += token.messageText();
    separator = " ";
  }
  text += "\"";
  return text;
}

}  // namespace

std::optional<std::string> readDocumentPath(const ParamObj& file, const ParserMessage& messages) {
  std::string path = file.getStringToken();
  if (path.empty()) {
    messages.WrongValueType(file.getParamName(), quotedTokens(file));
    return std::nullopt;
  }
  std::vector<char> expanded(kPathBufferSize);
  if (ExpandDirectoryHandle(path.c_str(), expanded.data(), path.size()) == 0) {
    path = expanded.data();
  }
  NormalizeOutputFilePath(path);
  return path;
}

ParamDescriptor passwordDescriptor() {
  ParamDescriptor password(kKeywordPassword, UPSpecTypes::kString, false, true);
  password.setSecret();
  return password;
}

std::string readPassword(const ParamObj& password) {
  std::string text;
  bool literal = false;
  if (!password.getStringOrLiteral(text, literal) || !literal) return {};
  return text;
}

}  // namespace vornwout
