#include "platform/parser/universal_parser.h"

#include <algorithm>
#include <utility>

#include "platform/message/parser_message.h"
#include "platform/parser/current_command.h"
#include "platform/parser/grammar_capture.h"
#include "platform/parser/lexical_error.h"
#include "platform/parser/value_shape.h"
#include "platform/strings/localized.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

/// What the group counter of a subcommand holds before it stood anywhere.
constexpr std::uint32_t kNever = 0;

constexpr const char* kForgottenPeriod = localizable("Does the command before it lack its period?");

/// What stands behind a keyword that is not declared: a value, or nothing.
const ParamDescriptor kUnknownWithValue("", UPSpecTypes::kRawTokens, false, false);
const ParamDescriptor kUnknownAlone("", UPSpecTypes::kNoValue, false, false);

}  // namespace

UniversalParser::UniversalParser(const VORN_TokenSequence& tokens, CommandSpec& spec,
                                 const CommandDescriptor& descriptor)
    : command_(tokens.command()), tokens_(tokens.tokens()), spec_(spec), descriptor_(descriptor) {}

UniversalParser::~UniversalParser() { CurrentCommand::forgetGrammar(descriptor_); }

int UniversalParser::getCommandSpecifications() {
  if (GrammarCapture* capture = GrammarCapture::current()) {
    capture->take(descriptor_);
    return 1;
  }
  if (command_ == nullptr) return 0;

  // A command without a ParserMessage of its own reports in the same way as the others.
  std::optional<ParserMessage> own;
  messages_ = ParserMessage::current();
  if (messages_ == nullptr) {
    messages_ = &own.emplace();
    own->SetCommandName(descriptor_.name());
    own->SetProcedureTitle(descriptor_.title().empty() ? descriptor_.name() : descriptor_.title());
  }
  CurrentCommand* current = CurrentCommand::current();
  const bool isCurrent = current != nullptr && &current->command() == command_;
  if (isCurrent) current->setGrammar(descriptor_);
  seen_.assign(descriptor_.subcommands().size(), false);
  seenInGroup_.clear();
  for (const GroupComDescriptor& group : descriptor_.groups()) {
    seenInGroup_.emplace_back(group.subcommands().size(), kNever);
  }
  errors_ = reportLexicalErrors(*messages_, *command_);
  // A command with a zero byte is no text, most often one in UTF-16, and whatever else could be
  // said of it would be noise. Deliberately the one error that hides the others.
  if (zeroByte(*command_) != nullptr) return errors_;
  if (isCurrent) stray_ = current->strayCommand();
  brackets_ =
      BracketPairs(tokens_, [this](std::size_t slash) { return isDeclaredSubcommand(slash + 1); });
  parseMainSubcommand();
  parseSubcommands();
  checkRequired();
  return errors_;
}

bool UniversalParser::isName(std::size_t i) const {
  return i < tokens_.size() &&
         (tokens_[i].kind == TokenKind::kWord || tokens_[i].code == OperatorCode::kAll);
}

void UniversalParser::error(MessageKey key, std::vector<MessageArgument> arguments,
                            const Token* token, std::string_view hint) {
  if (stopped_ || (token != nullptr && token->unterminated)) return;
  ++errors_;
  if (token == nullptr) token = &command_->tokens().front();
  if (stray_ != nullptr && token->offset >= stray_->offset) {
    // The mistake is the period that is missing, not what the parser makes of the next command.
    stopped_ = true;
    hint = localizedText(kForgottenPeriod);
    if (token != stray_) {
      token = stray_;
      key = MessageKey::kUnexpectedToken;
      arguments = {MessageArgument::ofToken(*command_, *stray_), ""};
    }
  }
  messages_->report(key, std::move(arguments), command_->spot(*token), hint);
}

bool UniversalParser::textLostBehind(const Token& keyword) const {
  const std::vector<LexicalError>& lost = command_->errors();
  const auto next = std::lower_bound(
      lost.begin(), lost.end(), keyword.offset,
      [](const LexicalError& error, std::uint32_t offset) { return error.offset < offset; });
  return next != lost.end() && (atEnd(position_) || next->offset < tokens_[position_].offset);
}

void UniversalParser::parseMainSubcommand() {
  const SubComDescriptor* main = descriptor_.findSubCom("");
  if (main != nullptr && main->spec() == UPSpecTypes::kTokenList) {
    SubComObj& object = spec_.commandSubComs_.emplace_back();
    object.spec_ = &spec_;
    object.descriptor_ = main;
    return takeRest(object, nullptr);
  }
  if (atEnd(position_) || isOperator(position_, OperatorCode::kSlash)) return;
  if (main == nullptr) {
    error(MessageKey::kUnexpectedToken, {text(position_), descriptor_.name()}, &tokens_[position_]);
    skipToSubcommand();
    return;
  }
  SubComObj& object = spec_.commandSubComs_.emplace_back();
  object.spec_ = &spec_;
  object.descriptor_ = main;
  parseContent(*main, object, nullptr);
}

void UniversalParser::takeRest(SubComObj& object, const Token* name) {
  static const ParamDescriptor kFreeList("", UPSpecTypes::kRawTokens, false, true);
  object.firstParam_ = static_cast<std::uint32_t>(spec_.params_.size());
  object.paramCount_ = 1;
  spec_.params_.emplace_back(&kFreeList, command_, name, tokens_.subspan(position_));
  position_ = tokens_.size();
}

void UniversalParser::parseSubcommands() {
  while (!atEnd(position_) && !stopped_) parseOneSubcommand();
}

void UniversalParser::parseOneSubcommand() {
  const Token& slash = tokens_[position_++];
  if (!isName(position_)) {
    // A run of slashes is one mistake.
    while (isOperator(position_, OperatorCode::kSlash) &&
           isOperator(position_ + 1, OperatorCode::kSlash)) {
      ++position_;
    }
    error(MessageKey::kUnknownSubCom, {""}, &slash);
    return skipToSubcommand();
  }
  const Token& name = tokens_[position_];
  const std::string_view nameText = source(position_);
  ++position_;
  // An equals sign behind a subcommand's name is allowed and means nothing.
  if (isOperator(position_, OperatorCode::kEquals)) ++position_;

  const Declaration declaration = find(nameText);
  if (declaration.subcommand == nullptr) {
    const SubComDescriptor* main = descriptor_.findSubCom("");
    const bool isKeyword = main != nullptr && main->findParam(nameText) != nullptr;
    error(MessageKey::kUnknownSubCom, {MessageArgument::ofToken(*command_, name)}, &name,
          isKeyword ? localized("It is a keyword of the command: write it without the slash.")
                    : closestSubcommand(nameText));
    return skipToSubcommand();
  }
  SubComObj* object = beginSubcommand(declaration, name);
  if (object != nullptr) return parseContent(*declaration.subcommand, *object, &name);
  // What may not stand here is read all the same, for the errors inside.
  SubComObj discarded;
  discarded.spec_ = &spec_;
  discarded.descriptor_ = declaration.subcommand;
  parseContent(*declaration.subcommand, discarded, &name);
}

UniversalParser::Declaration UniversalParser::find(std::string_view name) const {
  Declaration found;
  for (std::size_t g = 0; g < descriptor_.groups().size(); ++g) {
    const GroupComDescriptor& group = descriptor_.groups()[g];
    if (const SubComDescriptor* subcommand = group.findSubCom(name)) {
      found.subcommand = subcommand;
      found.index = static_cast<std::size_t>(subcommand - group.subcommands().data());
      found.group = &group;
      found.groupIndex = g;
      return found;
    }
  }
  // The subcommand with the empty name has no slash in front.
  found.subcommand = name.empty() ? nullptr : descriptor_.findSubCom(name);
  if (found.subcommand != nullptr) {
    found.index = static_cast<std::size_t>(found.subcommand - descriptor_.subcommands().data());
  }
  return found;
}

bool UniversalParser::isDeclaredSubcommand(std::size_t i) const {
  return isName(i) && find(source(i)).subcommand != nullptr;
}

std::string UniversalParser::closestSubcommand(std::string_view name) const {
  std::vector<std::string_view> names;
  for (const SubComDescriptor& subcommand : descriptor_.subcommands()) {
    if (!subcommand.name().empty()) names.push_back(subcommand.name());
  }
  for (const GroupComDescriptor& group : descriptor_.groups()) {
    for (const SubComDescriptor& subcommand : group.subcommands())
      names.push_back(subcommand.name());
  }
  return suggestion(name, names);
}

SubComObj* UniversalParser::beginSubcommand(const Declaration& declaration, const Token& name) {
  if (declaration.group != nullptr) return beginInGroup(declaration, name);
  const SubComDescriptor& subcommand = *declaration.subcommand;
  if (seen_[declaration.index] && !subcommand.repeatable()) {
    error(MessageKey::kSubComRepeated, {subcommand.name()}, &name);
    return nullptr;
  }
  seen_[declaration.index] = true;
  SubComObj& object = spec_.commandSubComs_.emplace_back();
  object.spec_ = &spec_;
  object.descriptor_ = &subcommand;
  object.nameToken_ = &name;
  return &object;
}

SubComObj* UniversalParser::beginInGroup(const Declaration& declaration, const Token& name) {
  const SubComDescriptor& subcommand = *declaration.subcommand;
  const bool leads = declaration.group->leader() == &subcommand;
  if (leads) {
    GroupComObj& group = spec_.groups_.emplace_back();
    group.spec_ = &spec_;
    group.descriptor_ = declaration.group;
    group.firstSubCom_ = static_cast<std::uint32_t>(spec_.groupSubComs_.size());
    leaders_.push_back(&name);
  } else if (spec_.groups_.empty() || spec_.groups_.back().descriptor_ != declaration.group) {
    error(MessageKey::kSubComNeedsGroup, {subcommand.name(), declaration.group->leader()->name()},
          &name);
    return nullptr;
  }
  const auto groupNumber = static_cast<std::uint32_t>(spec_.groups_.size());
  std::uint32_t& lastSeen = seenInGroup_[declaration.groupIndex][declaration.index];
  if (lastSeen == groupNumber && !subcommand.repeatable()) {
    error(MessageKey::kSubComRepeated, {subcommand.name()}, &name);
    return nullptr;
  }
  lastSeen = groupNumber;
  ++spec_.groups_.back().subComCount_;
  SubComObj& object = spec_.groupSubComs_.emplace_back();
  object.spec_ = &spec_;
  object.descriptor_ = &subcommand;
  object.nameToken_ = &name;
  return &object;
}

void UniversalParser::parseContent(const SubComDescriptor& subcommand, SubComObj& object,
                                   const Token* name) {
  if (subcommand.spec() == UPSpecTypes::kTokenList) return takeRest(object, name);
  object.firstParam_ = static_cast<std::uint32_t>(spec_.params_.size());
  while (!atEnd(position_) && !isOperator(position_, OperatorCode::kSlash) && !stopped_) {
    parseKeyword(subcommand, object);
  }
  checkRequiredKeywords(object, name);
}

void UniversalParser::parseKeyword(const SubComDescriptor& subcommand, SubComObj& object) {
  const Token& keyword = tokens_[position_];
  const ParamDescriptor* param =
      isName(position_) ? subcommand.findParam(source(position_)) : nullptr;
  if (param == nullptr) return skipUnknown(subcommand);
  ++position_;
  if (isOperator(position_, OperatorCode::kEquals)) {
    ++position_;
    return parseValue(subcommand, *param, object, keyword);
  }
  // A value without its equals sign is passed over, so that it is no error of its own.
  const bool valueFollows = startsValue(subcommand, *param, position_);
  if (valueFollows) {
    error(MessageKey::kEqualSignRequired, {param->name(), subcommand.name()}, &keyword);
    bool balanced = true;
    position_ = findValueEnd(subcommand, *param, position_, balanced);
  } else if (!param->valueMayBeMissing()) {
    reportMissingValue(subcommand, *param, keyword);
  }
  addParam(object, *param, keyword, position_, position_, subcommand);
}

bool UniversalParser::startsValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                                  std::size_t i) const {
  if (param.spec() == UPSpecTypes::kNoValue || atEnd(i)) return false;
  if (isName(i)) {
    if (isOperator(i + 1, OperatorCode::kEquals)) return false;
    if (isDeclaredValue(*command_, param, tokens_[i]) || param.findQualifier(source(i)))
      return true;
    // Behind a keyword that may stand alone an unknown word is taken for a misspelt keyword.
    return !param.valueMayBeMissing() && subcommand.findParam(source(i)) == nullptr;
  }
  const bool closes = isBracket(tokens_[i]) && !isOpeningBracket(tokens_[i]);
  return !closes && !isOperator(i, OperatorCode::kSlash) && !isOperator(i, OperatorCode::kComma);
}

void UniversalParser::reportMissingValue(const SubComDescriptor& subcommand,
                                         const ParamDescriptor& param, const Token& keyword) {
  if (textLostBehind(keyword)) return;
  error(MessageKey::kParamValueRequired, {param.name(), subcommand.name()}, &keyword,
        isOperator(position_, OperatorCode::kSlash) &&
                isOperator(position_ - 1, OperatorCode::kEquals)
            ? "A value that holds a slash must stand in quotes."
            : "");
}

void UniversalParser::parseValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                                 SubComObj& object, const Token& keyword) {
  const std::size_t begin = position_;
  bool balanced = true;
  position_ = findValueEnd(subcommand, param, begin, balanced);
  if (param.spec() == UPSpecTypes::kNoValue) {
    error(MessageKey::kParamNoValue, {param.name(), subcommand.name()}, &keyword);
  } else if (position_ == begin) {
    reportMissingValue(subcommand, param, keyword);
  } else if (balanced && !textLostBehind(keyword)) {
    const auto value = tokens_.subspan(begin, position_ - begin);
    checkValueShape(*command_, param, subcommand.name(), value, [this](ShapeError shape) {
      error(shape.key, std::move(shape.arguments), shape.token, shape.hint);
    });
  }
  // A keyword whose value is refused was given all the same: it is not missing as well.
  addParam(object, param, keyword, begin, position_, subcommand);
}

void UniversalParser::addParam(SubComObj& object, const ParamDescriptor& param,
                               const Token& keyword, std::size_t begin, std::size_t end,
                               const SubComDescriptor& subcommand) {
  for (const ParamObj& given : object.params()) {
    if (given.descriptor() == &param) {
      return error(MessageKey::kParamRepeated, {param.name(), subcommand.name()}, &keyword);
    }
  }
  spec_.params_.emplace_back(&param, command_, &keyword, tokens_.subspan(begin, end - begin));
  ++object.paramCount_;
}

void UniversalParser::skipUnknown(const SubComDescriptor& subcommand) {
  const Token& token = tokens_[position_];
  const bool hasNoPartner = isBracket(token) && !brackets_.hasPartner(position_);
  if (token.kind == TokenKind::kWord) {
    std::vector<std::string_view> names;
    for (const ParamDescriptor& param : subcommand.params()) names.push_back(param.name());
    error(MessageKey::kUnknownParam, {text(position_), subcommand.name()}, &token,
          suggestion(source(position_), names));
  } else if (!hasNoPartner) {  // of that the search for the end tells below
    error(MessageKey::kUnexpectedToken, {text(position_), subcommand.name()}, &token);
  }
  // What belongs to the unknown keyword goes with it.
  const bool hasValue = isOperator(position_ + 1, OperatorCode::kEquals);
  const std::size_t begin = hasValue ? position_ + 2 : position_;
  bool balanced = true;
  position_ =
      findValueEnd(subcommand, hasValue ? kUnknownWithValue : kUnknownAlone, begin, balanced);
}

void UniversalParser::skipToSubcommand() {
  while (!atEnd(position_) && !isOperator(position_, OperatorCode::kSlash)) {
    const bool pairs = isOpeningBracket(tokens_[position_]) && brackets_.hasPartner(position_);
    position_ = pairs ? brackets_.partner(position_) + 1 : position_ + 1;
  }
}

std::size_t UniversalParser::findValueEnd(const SubComDescriptor& subcommand,
                                          const ParamDescriptor& param, std::size_t begin,
                                          bool& balanced) {
  bool bracketLeftOpen = false;
  std::size_t i = begin;
  for (; !atEnd(i) && !isOperator(i, OperatorCode::kSlash); ++i) {
    if (isName(i)) {
      if (endsValue(subcommand, param, begin, i, bracketLeftOpen)) return i;
    } else if (isBracket(tokens_[i]) && !brackets_.hasPartner(i)) {
      reportUnbalanced(i, balanced);
      bracketLeftOpen = bracketLeftOpen || isOpeningBracket(tokens_[i]);
    } else if (isOpeningBracket(tokens_[i])) {
      const std::size_t partner = brackets_.partner(i);
      for (++i; i < partner; ++i) {
        if (isBracket(tokens_[i]) && !brackets_.hasPartner(i)) reportUnbalanced(i, balanced);
      }
    }
  }
  return i;
}

bool UniversalParser::endsValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                                std::size_t begin, std::size_t i, bool bracketLeftOpen) const {
  const bool isDeclared = subcommand.findParam(source(i)) != nullptr;
  // The first token belongs to the value whatever it is called. A word that is no keyword of the
  // subcommand but has an equals sign is an unknown keyword, and then the value is missing.
  if (i == begin && isDeclared) return false;
  // In a bracket that was left open a keyword with its equals sign is the first sure sign of where
  // the value ends.
  if (isOperator(i + 1, OperatorCode::kEquals)) return isDeclared || !bracketLeftOpen;
  if (i == begin || bracketLeftOpen) return false;
  // Behind a keyword that takes no value, and behind an unknown word, every word is one of its own.
  if (param.spec() == UPSpecTypes::kNoValue) return true;
  // A list in brackets ends with its bracket.
  const bool listIsClosed = param.brackets() != UPSpecTypes::kBracketsRaw &&
                            isOperator(begin, OperatorCode::kLeftBracket);
  const bool belongs = param.spec() == UPSpecTypes::kDeclaredList && !listIsClosed &&
                       isDeclaredValue(*command_, param, tokens_[i]);
  return isDeclared && !belongs;
}

void UniversalParser::reportUnbalanced(std::size_t i, bool& balanced) {
  // The partner may stand in a text that was lost with a missing quote.
  const bool partnerLost = !command_->errors().empty();
  if (balanced && !partnerLost) error(MessageKey::kUnbalancedBracket, {text(i)}, &tokens_[i]);
  balanced = false;
}

void UniversalParser::checkRequired() {
  // What is missing may be lost in a text or comment without end.
  if (!command_->errors().empty()) return;
  const SubComDescriptor* main = descriptor_.findSubCom("");
  for (std::size_t i = 0; i < descriptor_.subcommands().size(); ++i) {
    const SubComDescriptor& subcommand = descriptor_.subcommands()[i];
    if (!subcommand.required() || seen_[i]) continue;
    if (&subcommand != main) {
      error(MessageKey::kSubComRequired, {subcommand.name()}, nullptr);
    } else if (spec_.getSubComObj("") == nullptr) {
      // Nothing stands behind the command's name: what is missing are its required keywords.
      SubComObj absent;
      absent.spec_ = &spec_;
      absent.descriptor_ = main;
      checkRequiredKeywords(absent, nullptr);
    }
  }
  for (std::size_t g = 0; g < spec_.groups_.size(); ++g) {
    const GroupComObj& group = spec_.groups_[g];
    for (const SubComDescriptor& subcommand : group.descriptor_->subcommands()) {
      if (subcommand.required() && group.getSubComObj(subcommand.name()) == nullptr) {
        error(MessageKey::kSubComRequired, {subcommand.name()}, leaders_[g]);
      }
    }
  }
}

void UniversalParser::checkRequiredKeywords(const SubComObj& object, const Token* name) {
  const bool textLost = !command_->errors().empty();
  if (textLost || object.descriptor_->spec() == UPSpecTypes::kTokenList) return;
  for (const ParamDescriptor& param : object.descriptor_->params()) {
    if (!param.required()) continue;
    bool given = false;
    for (const ParamObj& present : object.params()) given |= present.descriptor() == &param;
    if (!given) {
      error(MessageKey::kParamRequiredForSubCom, {param.name(), object.descriptor_->name()}, name);
    }
  }
}

}  // namespace vornwout
