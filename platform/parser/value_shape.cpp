#include "platform/parser/value_shape.h"

#include <algorithm>
#include <cstddef>

#include "platform/parser/command_spec.h"
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
    stripBrackets();
    switch (param_.spec()) {
      case UPSpecTypes::kNoValue:
      case UPSpecTypes::kRawTokens: return;
      case UPSpecTypes::kDeclaredValue: return checkDeclaredValue();
      case UPSpecTypes::kString:
      case UPSpecTypes::kNumber:
      case UPSpecTypes::kInteger: {
        single();
        return;
      }
      case UPSpecTypes::kDeclaredList: return checkDeclaredList();
      case UPSpecTypes::kLiteralList: return checkLiterals(value_);
      case UPSpecTypes::kNumberList: return;
      case UPSpecTypes::kMeasure: return checkMeasure();
      case UPSpecTypes::kQualifiers:
      case UPSpecTypes::kQualifierLists: return checkQualifiers();
    }
  }

 private:
  void stripBrackets() {
    if (param_.brackets() == UPSpecTypes::kBracketsRaw || value_.size() < 2) return;
    if (value_.front().code == OperatorCode::kLeftBracket &&
        value_.back().code == OperatorCode::kRightBracket) {
      value_ = value_.subspan(1, value_.size() - 2);
    }
  }

  void fail(MessageKey key, std::vector<std::string> arguments, const Token& token,
            std::string hint = {}) {
    report_({key, std::move(arguments), &token, std::move(hint)});
  }

  std::string allowedValues() const {
    if (param_.values().empty()) return {};
    std::string list = param_.values().size() == 1 ? "The value must be " : "It must be one of ";
    for (std::size_t i = 0; i < param_.values().size(); ++i) {
      if (i > 0) list += ", ";
      list += param_.values()[i];
    }
    return list + ".";
  }

  void failValue(const Token& token, std::string hint) {
    fail(MessageKey::kInvalidParamValue,
         {command_.text(token), param_.name(), std::string(subcommand_)}, token, std::move(hint));
  }

  /// True when the value is one token; commas that reach no reader do not count.
  bool single() {
    const Token* extra = nullptr;
    std::size_t count = 0;
    for (const Token& token : value_) {
      const bool separates = token.code == OperatorCode::kComma &&
                             param_.spec() != UPSpecTypes::kString &&
                             param_.spec() != UPSpecTypes::kDeclaredValue;
      if (separates) continue;
      if (++count == 2) extra = &token;
    }
    if (extra == nullptr) return true;
    fail(MessageKey::kUnexpectedToken, {command_.text(*extra), param_.name()}, *extra);
    return false;
  }

  void checkDeclaredValue() {
    if (value_.empty() || !single()) return;
    const Token& token = value_.front();
    if (param_.values().empty()) {
      if (token.kind != TokenKind::kOperator) return;
      // ALL is a reserved word of the language; quoted it is a text like any other.
      failValue(token, token.code == OperatorCode::kAll
                           ? "ALL is a reserved word; write it in quotes."
                           : "A word, a number or a quoted text is needed.");
    } else if (!isDeclaredValue(command_, param_, token)) {
      failValue(token, allowedValues());
    }
  }

  void checkDeclaredList() {
    for (const Token& token : value_) {
      if (token.code == OperatorCode::kComma) continue;
      if (!isDeclaredValue(command_, param_, token)) failValue(token, allowedValues());
    }
  }

  void checkLiterals(std::span<const Token> tokens) {
    for (const Token& token : tokens) {
      if (token.code == OperatorCode::kComma || token.kind == TokenKind::kString) continue;
      fail(MessageKey::kParamNeedLiteral,
           {command_.text(token), param_.name(), std::string(subcommand_)}, token);
      return;
    }
  }

  void checkMeasure() {
    const MeasureParts parts = splitMeasure(command_, param_, value_);
    if (parts.unit != nullptr) return;
    if (value_.size() >= 2 && value_[1].code == OperatorCode::kLeftParen &&
        value_.front().kind == TokenKind::kWord) {
      return failQualifier(value_.front());
    }
    if (value_.empty() || param_.values().empty() || !single()) return;
    if (!isDeclaredValue(command_, param_, value_.front())) {
      failValue(value_.front(), allowedValues());
    }
  }

  void failQualifier(const Token& token) {
    std::vector<std::string_view> names;
    for (const ParamDescriptor& qualifier : param_.qualifiers()) names.push_back(qualifier.name());
    fail(MessageKey::kParamNoSubCom, {command_.text(token)}, token,
         suggestion(command_.text(token), names));
  }

  /// NAME(...) NAME(...), commas between them or not.
  void checkQualifiers() {
    for (std::size_t i = 0; i < value_.size();) {
      const Token& name = value_[i++];
      if (name.code == OperatorCode::kComma) continue;
      if (name.kind != TokenKind::kWord && name.code != OperatorCode::kAll) {
        fail(MessageKey::kUnexpectedToken, {command_.text(name), param_.name()}, name);
        return;
      }
      std::span<const Token> arguments;
      const bool inParentheses =
          i < value_.size() && value_[i].code == OperatorCode::kLeftParen;
      if (inParentheses) {
        std::size_t end = i + 1;
        while (end < value_.size() && value_[end].code != OperatorCode::kRightParen) ++end;
        arguments = value_.subspan(i + 1, end - i - 1);
        i = end + 1;
      }
      const ParamDescriptor* qualifier = param_.findQualifier(command_.sourceText(name));
      if (qualifier == nullptr) {
        failQualifier(name);
      } else if (qualifier->spec() != UPSpecTypes::kNoValue &&
                 (!inParentheses || arguments.empty())) {
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

/// Edit distance of insertions, deletions, replacements and swaps of neighbours; names are short.
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
  return "Did you mean " + std::string(closest) + "?";
}

}  // namespace vornwout
