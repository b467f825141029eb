#include "platform/parser/value_shape.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/parser/command_spec.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

class ShapeCheck {
 public:
  ShapeCheck(const TokenizedCommand& command, const ParamDescriptor& param,
             std::string_view subcommand, std::span<const Token> value,
             const std::function<void(ShapeError)>& report)
      : command_(command), param_(param), subcommand_(subcommand), value_(value), report_(report) {}

  void run() {
    const std::span<const Token> written = value_;
    if (!written.empty() && commasSeparate(param_) && consistsOfCommas()) {
      return failEmpty(written.front());
    }
    if (!stripBrackets()) return;
    const bool isStripped = value_.size() < written.size();
    if (isStripped && isListOfTexts() && consistsOfCommas()) return failEmpty(written.front());
    switch (param_.spec()) {
      case UPSpecTypes::kNoValue:
      case UPSpecTypes::kRawTokens:
        return;
      case UPSpecTypes::kDeclaredValue:
        return checkDeclaredValue();
      case UPSpecTypes::kString:
      case UPSpecTypes::kNumber:
      case UPSpecTypes::kInteger: {
        single();
        return;
      }
      case UPSpecTypes::kDeclaredList:
        return checkDeclaredList();
      case UPSpecTypes::kLiteralList:
        return checkLiterals(value_);
      case UPSpecTypes::kNumberList:
        return;
      case UPSpecTypes::kMeasure:
        return checkMeasure();
      case UPSpecTypes::kQualifiers:
      case UPSpecTypes::kQualifierLists:
        return checkQualifiers();
    }
  }

 private:
  /// True for commas that separate nothing, and for no token at all; a reader would see nothing.
  bool consistsOfCommas() const {
    return std::all_of(value_.begin(), value_.end(),
                       [](const Token& token) { return token.code == OperatorCode::kComma; });
  }

  /// True for the lists of words and texts. One of numbers has a reader that words its own
  /// refusal, and what a raw one means without members its command says.
  bool isListOfTexts() const {
    return param_.spec() == UPSpecTypes::kDeclaredList ||
           param_.spec() == UPSpecTypes::kLiteralList ||
           param_.spec() == UPSpecTypes::kQualifierLists;
  }

  void failEmpty(const Token& token) {
    fail(MessageKey::kParamValueRequired, {param_.name(), std::string(subcommand_)}, token);
  }

  /// Takes the brackets off a list; false, after reporting it, when something stands behind them.
  bool stripBrackets() {
    const bool inBrackets = param_.brackets() != UPSpecTypes::kBracketsRaw &&
                            param_.spec() != UPSpecTypes::kRawTokens && !value_.empty() &&
                            value_.front().code == OperatorCode::kLeftBracket;
    if (!inBrackets) return true;
    const std::size_t end =
        endOfBrackets(0, OperatorCode::kLeftBracket, OperatorCode::kRightBracket);
    if (end < value_.size()) {
      fail(MessageKey::kUnexpectedToken, {told(value_[end]), param_.name()}, value_[end]);
      return false;
    }
    value_ = value_.subspan(1, end - 2);
    return true;
  }

  void fail(MessageKey key, std::vector<MessageArgument> arguments, const Token& token,
            std::string hint = {}) {
    report_({key, std::move(arguments), &token, std::move(hint)});
  }

  /// The token's text as a message repeats it.
  MessageArgument told(const Token& token) const {
    return MessageArgument::ofToken(command_, token);
  }

  std::string allowedValues() const {
    std::vector<std::string> allowed(param_.values().begin(), param_.values().end());
    if (allowed.empty()) return {};
    for (const ParamDescriptor& qualifier : param_.qualifiers()) {
      allowed.push_back(qualifier.name() + "(...)");
    }
    if (allowed.size() == 1) return localized("The value must be ^1.", allowed.front());
    std::string list;
    for (const std::string& value : allowed) {
      if (!list.empty()) list += ", ";
      list += value;
    }
    return localized("It must be one of ^1.", list);
  }

  void failValue(const Token& token, std::string hint) {
    fail(MessageKey::kInvalidParamValue, {told(token), param_.name(), std::string(subcommand_)},
         token, std::move(hint));
  }

  /// True when the value is one token; commas that reach no reader do not count.
  bool single() {
    const Token* extra = nullptr;
    std::size_t count = 0;
    for (const Token& token : value_) {
      if (token.code == OperatorCode::kComma && commasSeparate(param_)) continue;
      if (++count == 2) extra = &token;
    }
    if (extra == nullptr) return true;
    // In "(50)" and "- 5" it is the mark in front that does not belong there.
    const bool marked = value_.front().kind == TokenKind::kOperator &&
                        value_.front().code != OperatorCode::kAll &&
                        value_.front().code != OperatorCode::kComma;
    if (marked) extra = &value_.front();
    // In NAME= LOCK=YES the value is LOCK, which is hardly what was meant.
    const bool isEquals = extra->code == OperatorCode::kEquals;
    fail(MessageKey::kUnexpectedToken, {told(*extra), param_.name()}, *extra,
         isEquals ? localized("Is the value of ^1 missing?", param_.name()) : "");
    return false;
  }

  void checkDeclaredValue() {
    if (value_.empty()) return;
    const Token& token = value_.front();
    if (param_.values().empty()) {
      if (token.kind != TokenKind::kOperator) {
        single();
        return;
      }
      // ALL is a reserved word of the language; quoted it is a text like any other.
      failValue(token, token.code == OperatorCode::kAll
                           ? "ALL is a reserved word; write it in quotes."
                           : "A word, a number or a quoted text is needed.");
    } else if (!isDeclaredValue(command_, param_, token)) {
      // Words behind a refused value are deliberately taken as part of it: they are one mistake,
      // mostly a text of several words that lacks its quotes.
      failValue(token, allowedValues());
    } else {
      single();
    }
  }

  void checkDeclaredList() {
    for (const Token& token : value_) {
      // A closing bracket goes with the opening one, which is refused.
      if (token.code == OperatorCode::kComma || token.code == OperatorCode::kRightParen ||
          token.code == OperatorCode::kRightBracket) {
        continue;
      }
      if (!isDeclaredValue(command_, param_, token)) failValue(token, allowedValues());
    }
  }

  void checkLiterals(std::span<const Token> tokens) {
    // Several tokens in a row are one text whose quotes are missing.
    bool inUnquoted = false;
    for (const Token& token : tokens) {
      const bool quoted = token.code == OperatorCode::kComma || token.kind == TokenKind::kString;
      if (!quoted && !inUnquoted) {
        fail(MessageKey::kParamNeedLiteral, {told(token), param_.name(), std::string(subcommand_)},
             token);
      }
      inUnquoted = !quoted;
    }
  }

  void checkMeasure() {
    const MeasureParts parts = splitMeasure(command_, param_, value_);
    if (parts.unit != nullptr) return checkUnitText(*parts.unit, parts.values);
    if (value_.size() >= 2 && value_[1].code == OperatorCode::kLeftParen &&
        value_.front().kind == TokenKind::kWord) {
      const ParamDescriptor* unit = unitOf(value_.front());
      if (unit == nullptr) return failQualifier(value_.front());
      const Token& behind =
          value_[endOfBrackets(1, OperatorCode::kLeftParen, OperatorCode::kRightParen)];
      return fail(MessageKey::kUnexpectedToken, {told(behind), unit->name()}, behind);
    }
    if (value_.size() >= 2) {
      if (isMisspeltUnit(value_.back())) return failQualifier(value_.back());
      if (const ParamDescriptor* unit = unitOf(value_.front())) {
        return fail(MessageKey::kParenRequired, {unit->name()}, value_.front());
      }
    }
    if (!param_.values().empty()) checkDeclaredValue();
  }

  const ParamDescriptor* unitOf(const Token& token) const {
    return token.kind == TokenKind::kWord ? param_.findQualifier(command_.sourceText(token))
                                          : nullptr;
  }

  /// True for a word at the end of a measure that stands where a unit would. Where the measure
  /// takes any value, such a word may be one, unless it is spelt nearly like a unit.
  bool isMisspeltUnit(const Token& token) const {
    if (token.kind != TokenKind::kWord || unitOf(token) != nullptr) return false;
    if (!param_.values().empty()) return !isDeclaredValue(command_, param_, token);
    return !suggestedQualifier(token).empty();
  }

  /// A unit with numbers is left to its reader; a text would be passed over without a word.
  void checkUnitText(const ParamDescriptor& unit, std::span<const Token> text) {
    if (unit.spec() != UPSpecTypes::kString) return;
    if (text.empty()) return fail(MessageKey::kParenRequired, {unit.name()}, value_.front());
    ShapeCheck(command_, unit, subcommand_, text, report_).run();
  }

  /// The index behind the partner of the bracket at `open`, which has one.
  std::size_t endOfBrackets(std::size_t open, OperatorCode opening, OperatorCode closing) const {
    std::size_t depth = 0;
    std::size_t i = open;
    do {
      if (value_[i].code == opening) ++depth;
      if (value_[i].code == closing) --depth;
      ++i;
    } while (depth > 0 && i < value_.size());
    return i;
  }

  std::string suggestedQualifier(const Token& token) const {
    std::vector<std::string_view> names;
    for (const ParamDescriptor& qualifier : param_.qualifiers()) names.push_back(qualifier.name());
    return suggestion(command_.text(token), names);
  }

  void failQualifier(const Token& token) {
    fail(MessageKey::kParamNoSubCom, {told(token)}, token, suggestedQualifier(token));
  }

  /// NAME(...) NAME(...), commas between them or not.
  void checkQualifiers() {
    for (std::size_t i = 0; i < value_.size();) {
      const Token& name = value_[i++];
      if (name.code == OperatorCode::kComma) continue;
      if (name.kind != TokenKind::kWord && name.code != OperatorCode::kAll) {
        fail(MessageKey::kUnexpectedToken, {told(name), param_.name()}, name);
        return;
      }
      std::span<const Token> arguments;
      const bool inParentheses = i < value_.size() && value_[i].code == OperatorCode::kLeftParen;
      if (inParentheses) {
        std::size_t end = i + 1;
        while (end < value_.size() && value_[end].code != OperatorCode::kRightParen) ++end;
        arguments = value_.subspan(i + 1, end - i - 1);
        i = end + 1;
      }
      const ParamDescriptor* qualifier = param_.findQualifier(command_.sourceText(name));
      if (qualifier == nullptr) {
        failQualifier(name);
      } else if (qualifier->spec() == UPSpecTypes::kNoValue) {
        if (inParentheses)
          fail(MessageKey::kParamNoValue, {qualifier->name(), param_.name()}, name);
      } else if (!inParentheses || arguments.empty()) {
        fail(MessageKey::kParenRequired, {qualifier->name()}, name);
      } else if (qualifier->spec() == UPSpecTypes::kLiteralList) {
        ShapeCheck(command_, *qualifier, subcommand_, arguments, report_).run();
      }
    }
  }

  const TokenizedCommand& command_;
  const ParamDescriptor& param_;
  std::string_view subcommand_;
  std::span<const Token> value_;
  const std::function<void(ShapeError)>& report_;
};

}  // namespace

void checkValueShape(const TokenizedCommand& command, const ParamDescriptor& param,
                     std::string_view subcommand, std::span<const Token> value,
                     const std::function<void(ShapeError)>& report) {
  ShapeCheck(command, param, subcommand, value, report).run();
}

bool isDeclaredValue(const TokenizedCommand& command, const ParamDescriptor& param,
                     const Token& token) {
  if (token.kind == TokenKind::kOperator && token.code != OperatorCode::kAll) return false;
  return std::any_of(param.values().begin(), param.values().end(),
                     [&](const std::string& value) { return command.textEquals(token, value); });
}

std::size_t editDistance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> beforeLast(right.size() + 1);
  std::vector<std::size_t> last(right.size() + 1);
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
    std::swap(beforeLast, last);
    std::swap(last, row);
  }
  return last.back();
}

std::string suggestion(std::string_view name, const std::vector<std::string_view>& candidates) {
  constexpr std::size_t kLongestName = 64;  // nobody misspells a keyword into something longer
  if (name.size() > kLongestName) return {};
  const std::string upper = toUpperCase(name);
  std::size_t best = std::max<std::size_t>(1, name.size() / 4) + 1;
  std::string_view closest;
  for (const std::string_view candidate : candidates) {
    const std::size_t distance = editDistance(upper, toUpperCase(candidate));
    if (distance < best) {
      best = distance;
      closest = candidate;
    }
  }
  if (closest.empty()) return {};
  return localized("Did you mean ^1?", closest);
}

}  // namespace vornwout
