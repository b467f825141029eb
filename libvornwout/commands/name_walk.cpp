#include "libvornwout/commands/name_walk.h"

#include "libvornwout/frame/constants.h"

namespace vornwout {
namespace {

bool isEqualsSign(const TokenInfoObj& token) {
  return token.getOperatorCode() == static_cast<int>(OperatorCode::kEquals);
}

}  // namespace

std::optional<NamedDocument> walkNameTokens(const std::vector<TokenInfoObj>& tokens,
                                            BareNames rule) {
  NamedDocument document;
  // An empty quoted name is a name that was given, so the name itself cannot tell.
  bool hasName = false;
  const std::size_t count = tokens.size();
  std::size_t i = 0;
  while (i < count) {
    const std::string keyword = tokens[i].getUpperString();
    if (keyword == kKeywordName || keyword == kKeywordMinimized) {
      if (i + 3 > count || !isEqualsSign(tokens[i + 1])) return std::nullopt;
      if (keyword == kKeywordName) {
        document.name = tokens[i + 2].getString();
        hasName = true;
      } else if (tokens[i + 2].getUpperString() == kYes) {
        // Any other value leaves the flag as it is: YES given once is not taken back by NO.
        document.minimized = OutputDocumentMinimized::kYes;
      }
      i += 3;
      continue;
    }
    if (hasName) return std::nullopt;
    const bool isLast = i + 1 >= count;
    if (rule == BareNames::kWithEqualsSign && !isLast && isEqualsSign(tokens[i])) ++i;
    document.name = tokens[i].getString();
    hasName = true;
    ++i;
  }
  return document;
}

std::optional<NamedDocument> readNamedDocument(const CommandSpec& spec, BareNames rule) {
  const SubComObj* main = spec.getSubComObj("");
  const ParamObj* list = main == nullptr ? nullptr : main->exportParamObj();
  std::vector<TokenInfoObj> tokens;
  if (list == nullptr || !list->isTokenList() || !list->getTokenList(tokens)) {
    return NamedDocument{};
  }
  return walkNameTokens(tokens, rule);
}

}  // namespace vornwout
