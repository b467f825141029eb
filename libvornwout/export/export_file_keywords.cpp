#include "libvornwout/export/export_file_keywords.h"

#include <string_view>
#include <utility>

#include "libvornwout/frame/blame.h"
#include "platform/files/file_specification.h"
#include "platform/text/encoding.h"
#include "platform/text/multibyte.h"
#include "platform/text/xml_text.h"

namespace vornwout {
namespace {

/// What bytes that are no characters become in UTF-8: U+FFFD.
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";

/// Gives a workbook the extension of its type unless it has it.
void completeExtension(std::string& path, const std::string& type) {
  // "XLM" instead of "XLSM" is deliberate: such a file keeps the name that it was given, and jobs
  // rely on it.
  if (type != "XLS" && type != "XLSX" && type != "XLM") return;
  // What names no file does not become one.
  if (path.empty() || path.back() == '/') return;
  const std::size_t period = path.rfind('.');
  const std::string extension =
      period == std::string::npos ? std::string() : path.substr(period + 1);
  if (VORNMBstricmp_A(extension.c_str(), type.c_str()) == 0) return;
  path += '.' + VORNMBMvLower_A(type.c_str());
}

/// Whether the host gets just this path: the export document holds neither control characters nor
/// bytes that are no characters. An encoding may have two codes for a character, and either names
/// the same file.
bool reachesHost(const std::string& path) {
  const std::string utf8 = currentToUtf8(path);
  const bool mayHaveLost = utf8.find(kReplacementCharacter) != std::string::npos;
  return isXmlText(utf8) && (!mayHaveLost || currentEncoding().fromUtf8(utf8) == path);
}

}  // namespace

bool readImageRoot(std::string& imageRoot, const SubComObj* subcommand,
                   const ParserMessage& messages, bool required) {
  if (subcommand == nullptr) return false;
  const ParamObj* param = subcommand->getParamObj(kImageRoot);
  if (param == nullptr) {
    if (required) {
      blame(subcommand->nameToken());
      messages.GenericError(
          "When an image type subcommand is used, the IMAGEROOT keyword is required.");
    }
    return false;
  }
  std::string text;
  bool literal = false;
  if (!param->getStringOrLiteral(text, literal)) {
    messages.WrongValueType(kImageRoot, subcommand->name());
    return false;
  }
  std::string root = CheckFileRef(text, true, false);
  if (!reachesHost(root)) {
    messages.WrongValueType(kImageRoot, subcommand->name());
    return false;
  }
  imageRoot = std::move(root);
  return true;
}

bool readDocumentFile(std::string& documentFile, const SubComObj* subcommand,
                      const ParserMessage& messages, bool* fileExists) {
  *fileExists = false;
  if (subcommand == nullptr) return false;
  const ParamObj* param = subcommand->getParamObj(kDocumentFile);
  if (param == nullptr) {
    blame(subcommand->nameToken());
    messages.GenericError(
        "When a document type subcommand is used, the DOCUMENTFILE keyword is required.");
    return false;
  }
  std::string text;
  bool literal = false;
  if (!param->getStringOrLiteral(text, literal)) {
    messages.WrongValueType(kDocumentFile, subcommand->name());
    return false;
  }
  std::string path = CheckFileRef(text, true, true);
  completeExtension(path, subcommand->name());
  if (!reachesHost(path)) {
    messages.GenericError("File ^1 has no access...", path);
    return false;
  }
  const int length = static_cast<int>(path.size());
  int usable = 0;
  int exists = 0;
  int accessible = 0;
  validateclientfilespec_(path.c_str(), &length, &usable, &exists, &accessible);
  if (usable == 0 || accessible == 0) {
    messages.GenericError("File ^1 has no access...", path);
    return false;
  }
  *fileExists = exists != 0;
  documentFile = std::move(path);
  return true;
}

}  // namespace vornwout
