#include "platform/parser/command_spec.h"

#include <stdexcept>

#include "platform/message/parser_message.h"
#include "platform/parser/bracket_pairs.h"
#include "platform/parser/current_command.h"
#include "platform/parser/value_shape.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr std::string_view kAllText = "ALL";

bool isOperator(const Token& token, OperatorCode code) { return token.code == code; }

/// True when the first and the last of the tokens are brackets that belong together, as they do not
/// in "['a'] ['b']".
bool arePartners(std::span<const Token> tokens) {
  const BracketPairs pairs(tokens, [](std::size_t) { return false; });
  return pairs.hasPartner(0) && pairs.partner(0) == tokens.size() - 1;
}

const SubComObj* firstNamed(std::span<const SubComObj> subcommands, std::string_view name) {
  for (const SubComObj& subcommand : subcommands) {
    if (AreStringsEqualCase(subcommand.name(), name)) return &subcommand;
  }
  return nullptr;
}

bool allNamed(std::span<const SubComObj> subcommands, std::string_view name,
              std::vector<const SubComObj*>& found) {
  found.clear();
  for (const SubComObj& subcommand : subcommands) {
    if (AreStringsEqualCase(subcommand.name(), name)) found.push_back(&subcommand);
  }
  return !found.empty();
}

}  // namespace

bool commasSeparate(const ParamDescriptor& descriptor) {
  switch (descriptor.spec()) {
    case UPSpecTypes::kDeclaredList:
    case UPSpecTypes::kLiteralList:
    case UPSpecTypes::kNumber:
    case UPSpecTypes::kNumberList:
    case UPSpecTypes::kInteger:
    case UPSpecTypes::kQualifiers:
    case UPSpecTypes::kMeasure:
    case UPSpecTypes::kQualifierLists:
      return true;
    default:
      return descriptor.brackets() != UPSpecTypes::kBracketsRaw;
  }
}

MeasureParts splitMeasure(const TokenizedCommand& command, const ParamDescriptor& measure,
                          std::span<const Token> value) {
  if (value.empty()) return {value, nullptr};
  const auto unitAt = [&](const Token& token) -> const ParamDescriptor* {
    if (token.kind != TokenKind::kWord) return nullptr;
    return measure.findQualifier(command.sourceText(token));
  };
  const ParamDescriptor* first = unitAt(value.front());
  if (first != nullptr && value.size() >= 3 && isOperator(value[1], OperatorCode::kLeftParen) &&
      isOperator(value.back(), OperatorCode::kRightParen)) {
    return {value.subspan(2, value.size() - 3), first};
  }
  const ParamDescriptor* last = unitAt(value.back());
  if (last != nullptr) return {value.first(value.size() - 1), last};
  return {value, nullptr};
}

const std::string& ParamObj::getParamName() const {
  static const std::string noName;
  return descriptor_ == nullptr ? noName : descriptor_->name();
}

std::span<const Token> ParamObj::readableTokens() const {
  if (descriptor_ == nullptr) return {};
  if (descriptor_->spec() == UPSpecTypes::kMeasure) {
    return splitMeasure(*command_, *descriptor_, value_).values;
  }
  const bool isBracketed = descriptor_->brackets() != UPSpecTypes::kBracketsRaw &&
                           value_.size() >= 2 &&
                           isOperator(value_.front(), OperatorCode::kLeftBracket) &&
                           isOperator(value_.back(), OperatorCode::kRightBracket);
  return isBracketed && arePartners(value_) ? value_.subspan(1, value_.size() - 2) : value_;
}

template <typename Visit>
void ParamObj::visitTokens(Visit visit) const {
  const std::span<const Token> tokens = readableTokens();
  if (tokens.empty()) return;
  const bool dropCommas = commasSeparate(*descriptor_);
  bool inNumberArguments = false;  // of RGB(...) or POSITION(...)
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (isOperator(token, OperatorCode::kComma)) {
      if (dropCommas) continue;
      const bool betweenNumbers = i > 0 && i + 1 < tokens.size() &&
                                  tokens[i - 1].kind == TokenKind::kNumber &&
                                  tokens[i + 1].kind == TokenKind::kNumber;
      if (inNumberArguments && betweenNumbers) continue;
    } else if (isOperator(token, OperatorCode::kLeftParen)) {
      inNumberArguments = i > 0 && tokens[i - 1].kind == TokenKind::kWord &&
                          (command_->textEquals(tokens[i - 1], "RGB") ||
                           command_->textEquals(tokens[i - 1], "POSITION"));
    } else if (isOperator(token, OperatorCode::kRightParen)) {
      inNumberArguments = false;
    }
    if (!visit(token)) return;
  }
}

const Token* ParamObj::onlyToken() const {
  const Token* only = nullptr;
  int count = 0;
  visitTokens([&](const Token& token) {
    only = &token;
    return ++count < 2;
  });
  return count == 1 ? only : nullptr;
}

std::string ParamObj::getStringToken() const {
  const Token* token = onlyToken();
  if (token == nullptr) return {};
  if (descriptor_->required() && token->kind != TokenKind::kString) return {};
  return command_->text(*token);
}

std::string ParamObj::getUpStringToken() const { return toUpperCase(getStringToken()); }

bool ParamObj::getStringGeneric(std::string& text) const {
  const Token* token = onlyToken();
  if (token == nullptr || token->kind == TokenKind::kOperator) return false;
  text = command_->text(*token);
  return true;
}

bool ParamObj::getStringOrLiteral(std::string& text, bool& literal) const {
  const Token* token = onlyToken();
  if (token == nullptr) return false;
  text = command_->text(*token);
  literal = token->kind == TokenKind::kString;
  return true;
}

bool ParamObj::getLiteral(std::string& text) const {
  const Token* token = onlyToken();
  if (token == nullptr || token->kind != TokenKind::kString) return false;
  text = command_->text(*token);
  return true;
}

bool ParamObj::getNumberValue(double& value) const {
  const Token* token = onlyToken();
  double number = 0;
  if (token == nullptr || token->kind != TokenKind::kNumber ||
      !readNumber(command_->sourceText(*token), number) || !descriptor_->withinBounds(number)) {
    return false;
  }
  value = number;
  return true;
}

bool ParamObj::getIntegerValue(int& value) const {
  const Token* token = onlyToken();
  int number = 0;
  if (token == nullptr || token->kind != TokenKind::kNumber ||
      !readInteger(command_->sourceText(*token), number) || !descriptor_->withinBounds(number)) {
    return false;
  }
  value = number;
  return true;
}

bool ParamObj::getNumberValue(double& value, std::string_view subcommand,
                              const ParserMessage& messages) const {
  if (getNumberValue(value)) return true;
  messages.ParamNeedNumber(getParamName(), std::string(subcommand));
  return false;
}

bool ParamObj::getIntegerValue(int& value, std::string_view subcommand,
                               const ParserMessage& messages) const {
  if (getIntegerValue(value)) return true;
  messages.ParamNeedInteger(getParamName(), std::string(subcommand));
  return false;
}

bool ParamObj::getIntegerText(std::string& text) const {
  const Token* token = onlyToken();
  if (token == nullptr || token->kind != TokenKind::kNumber) return false;
  const std::string_view written = command_->sourceText(*token);
  // A number token without decimal point and exponent has nothing but digits and a sign.
  if (written.find_first_of(".eE") != std::string_view::npos) return false;
  text = written;
  return true;
}

bool ParamObj::getNumberList(std::vector<double>& values) const {
  std::vector<double> numbers;
  bool allNumbers = true;
  visitTokens([&](const Token& token) {
    double number = 0;
    allNumbers = token.kind == TokenKind::kNumber &&
                 readNumber(command_->sourceText(token), number) &&
                 descriptor_->withinBounds(number);
    if (allNumbers) numbers.push_back(number);
    return allNumbers;
  });
  if (!allNumbers || numbers.empty()) return false;
  values = std::move(numbers);
  return true;
}

bool ParamObj::getStringList(std::vector<std::string>& texts) const {
  std::vector<std::string> read;
  bool noOperator = true;
  visitTokens([&](const Token& token) {
    noOperator = token.kind != TokenKind::kOperator || isOperator(token, OperatorCode::kAll);
    if (noOperator) read.push_back(command_->text(token));
    return noOperator;
  });
  if (!noOperator) return false;
  texts = std::move(read);
  return true;
}

bool ParamObj::getLiteralList(std::vector<std::string>& texts) const {
  std::vector<std::string> read;
  bool allQuoted = true;
  visitTokens([&](const Token& token) {
    allQuoted = token.kind == TokenKind::kString;
    if (allQuoted) read.push_back(command_->text(token));
    return allQuoted;
  });
  if (!allQuoted) return false;
  texts = std::move(read);
  return true;
}

bool ParamObj::isStringValueCase(std::string_view text) const {
  const Token* token = onlyToken();
  return token != nullptr && command_->textEquals(*token, text);
}

bool ParamObj::isOperatorValue(int code) const {
  const Token* token = onlyToken();
  if (token == nullptr) return false;
  // A declared value may be quoted, and this is the only way in which commands ask for ALL.
  if (code == static_cast<int>(OperatorCode::kAll) && token->kind == TokenKind::kString) {
    return command_->textEquals(*token, kAllText) &&
           isDeclaredValue(*command_, *descriptor_, *token);
  }
  return token->kind == TokenKind::kOperator && static_cast<int>(token->code) == code;
}

bool ParamObj::isTokenList() const {
  return descriptor_ != nullptr && descriptor_->spec() == UPSpecTypes::kRawTokens;
}

bool ParamObj::getTokenList(std::vector<TokenInfoObj>& tokens) const {
  if (descriptor_ == nullptr) return false;
  tokens.clear();
  visitTokens([&](const Token& token) {
    tokens.emplace_back(*command_, token);
    return true;
  });
  return true;
}

int ParamObj::getTokenListSize() const {
  int count = 0;
  visitTokens([&](const Token&) {
    ++count;
    return true;
  });
  return count;
}

TokenInfoObj ParamObj::getTokenObj(int index) const {
  const Token* found = nullptr;
  int at = 0;
  visitTokens([&](const Token& token) {
    if (at++ == index) found = &token;
    return found == nullptr;
  });
  if (found == nullptr) throw std::out_of_range("no such token in the value of " + getParamName());
  return {*command_, *found};
}

bool ParamObj::getStringQualList(const ParamDescriptor& declared, const ParserMessage& messages,
                                 std::vector<ParamObj>& qualifiers) const {
  qualifiers.clear();
  const std::span<const Token> tokens = readableTokens();
  bool known = true;
  for (std::size_t i = 0; i < tokens.size();) {
    const Token& name = tokens[i++];
    if (isOperator(name, OperatorCode::kComma)) continue;
    const std::size_t begin =
        i < tokens.size() && isOperator(tokens[i], OperatorCode::kLeftParen) ? i + 1 : i;
    std::size_t end = begin;
    if (begin > i) {
      while (end < tokens.size() && !isOperator(tokens[end], OperatorCode::kRightParen)) ++end;
      i = end + 1;
    }
    const ParamDescriptor* qualifier = declared.findQualifier(command_->rawText(name));
    if (qualifier == nullptr) {
      if (CurrentCommand* current = CurrentCommand::current()) current->noteRead(&name);
      messages.ParamNoSubCom(MessageArgument::ofToken(*command_, name));
      known = false;
      continue;
    }
    qualifiers.emplace_back(qualifier, command_, &name, tokens.subspan(begin, end - begin));
  }
  return known;
}

bool ParamObj::getStringAndQual(std::string& value, ParamObj& qualifier) const {
  if (descriptor_ == nullptr) return false;
  const MeasureParts parts = splitMeasure(*command_, *descriptor_, value_);
  value.clear();
  visitTokens([&](const Token& token) {
    if (!value.empty()) value += ' ';
    value += command_->text(token);
    return true;
  });
  if (parts.unit == nullptr) return false;
  qualifier = ParamObj(parts.unit, command_, keyword_, parts.values);
  return true;
}

std::string ParamObj::sourceText() const {
  std::string text;
  for (const Token& token : value_) {
    if (!text.empty()) text += ' ';
    text += command_->sourceText(token);
  }
  return text;
}

MessageArgument ParamObj::writtenText() const {
  MessageArgument text;
  std::size_t copied = value_.empty() ? 0 : value_.front().offset;
  for (const Token& token : value_) {
    text += std::string(command_->jobText().substr(copied, token.offset - copied));
    text += MessageArgument::ofSource(*command_, token);
    copied = token.offset + token.length;
  }
  return text;
}

SourcePlace ParamObj::place() const {
  const Token* token = placeToken();
  return token == nullptr ? SourcePlace{} : command_->place(*token);
}

std::span<const ParamObj> SubComObj::params() const {
  return std::span(spec_->params_).subspan(firstParam_, paramCount_);
}

const ParamObj* SubComObj::getParamObj(std::string_view name) const {
  for (const ParamObj& param : params()) {
    if (AreStringsEqualCase(param.getParamName(), name)) {
      // What the command reads now is what its next message will be about.
      if (CurrentCommand* current = CurrentCommand::current())
        current->noteRead(param.placeToken());
      return &param;
    }
  }
  return nullptr;
}

const ParamObj* SubComObj::exportParamObj() const {
  if (descriptor_->spec() != UPSpecTypes::kTokenList || paramCount_ == 0) return nullptr;
  const ParamObj& list = params().front();
  if (CurrentCommand* current = CurrentCommand::current()) current->noteRead(list.placeToken());
  return &list;
}

std::span<const SubComObj> GroupComObj::subcommands() const {
  if (descriptor_ == nullptr) return spec_->commandSubComs_;
  return std::span(spec_->groupSubComs_).subspan(firstSubCom_, subComCount_);
}

const SubComObj* GroupComObj::getSubComObj(std::string_view name) const {
  return firstNamed(subcommands(), name);
}

bool GroupComObj::getSubComObj(std::string_view name,
                               std::vector<const SubComObj*>& subcommands) const {
  return allNamed(this->subcommands(), name, subcommands);
}

CommandSpec::CommandSpec() { global_.spec_ = this; }

const SubComObj* CommandSpec::getSubComObj(std::string_view name) const {
  return firstNamed(commandSubComs_, name);
}

bool CommandSpec::getSubComObj(std::string_view name,
                               std::vector<const SubComObj*>& subcommands) const {
  return allNamed(commandSubComs_, name, subcommands);
}

bool CommandSpec::getGroupObj(std::vector<const GroupComObj*>& groups,
                              std::string_view leader) const {
  groups.clear();
  for (const GroupComObj& group : groups_) {
    const SubComDescriptor* groupLeader = group.descriptor_->leader();
    if (groupLeader != nullptr && AreStringsEqualCase(groupLeader->name(), leader)) {
      groups.push_back(&group);
    }
  }
  return !groups.empty();
}

}  // namespace vornwout
