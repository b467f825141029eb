#include "platform/parser/universal_parser.h"

#include <utility>

#include "platform/message/parser_message.h"
#include "platform/parser/current_command.h"
#include "platform/parser/grammar_capture.h"
#include "platform/parser/lexical_error.h"
#include "platform/parser/value_shape.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

/// What the group counter of a subcommand holds before it stood anywhere.
constexpr std::uint32_t kNever = 0;

}  // namespace

UniversalParser::UniversalParser(const VORN_TokenSequence& tokens, CommandSpec& spec,
                                 const CommandDescriptor& descriptor)
    : command_(tokens.command()), tokens_(tokens.tokens()), spec_(spec), descriptor_(descriptor) {}

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
  seen_.assign(descriptor_.subcommands().size(), false);
  seenInGroup_.clear();
  for (const GroupComDescriptor& group : descriptor_.groups()) {
    seenInGroup_.emplace_back(group.subcommands().size(), kNever);
  }
  reportLexicalErrors();
  parseMainSubcommand();
  parseSubcommands();
  checkRequired();
  return errors_;
}

bool UniversalParser::isName(std::size_t i) const {
  return i < tokens_.size() &&
         (tokens_[i].kind == TokenKind::kWord || tokens_[i].code == OperatorCode::kAll);
}

void UniversalParser::error(MessageKey key, std::vector<std::string> arguments, const Token* token,
                            std::string_view hint) {
  ++errors_;
  std::optional<SourcePlace> place;
  if (token != nullptr) {
    place = command_->place(*token);
  } else if (!command_->tokens().empty()) {
    place = command_->place(command_->tokens().front());
  }
  messages_->report(key, std::move(arguments), place, hint);
}

void UniversalParser::reportLexicalErrors() {
  for (const LexicalError& lexical : command_->errors()) {
    ++errors_;
    reportLexicalError(*messages_, *command_, lexical);
  }
}

void UniversalParser::parseMainSubcommand() {
  const SubComDescriptor* main = descriptor_.findSubCom("");
  if (main != nullptr && main->spec() == UPSpecTypes::kTokenList) {
    SubComObj& object = spec_.commandSubComs_.emplace_back();
    object.spec_ = &spec_;
    object.descriptor_ = main;
    object.firstParam_ = static_cast<std::uint32_t>(spec_.params_.size());
    object.paramCount_ = 1;
    static const ParamDescriptor kFreeList("", UPSpecTypes::kRawTokens, false, true);
    spec_.params_.emplace_back(&kFreeList, command_, nullptr, tokens_);
    position_ = tokens_.size();
    return;
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

void UniversalParser::parseSubcommands() {
  while (!atEnd(position_)) parseOneSubcommand();
}

void UniversalParser::parseOneSubcommand() {
  const Token& slash = tokens_[position_++];
  if (!isName(position_)) {
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
    error(MessageKey::kUnknownSubCom, {std::string(nameText)}, &name,
          isKeyword ? "It is a keyword of the command: write it without the slash."
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
    for (const SubComDescriptor& subcommand : group.subcommands()) names.push_back(subcommand.name());
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
  return &object;
}

void UniversalParser::parseContent(const SubComDescriptor& subcommand, SubComObj& object,
                                   const Token* name) {
  object.firstParam_ = static_cast<std::uint32_t>(spec_.params_.size());
  while (!atEnd(position_) && !isOperator(position_, OperatorCode::kSlash)) {
    parseKeyword(subcommand, object);
  }
  checkRequiredKeywords(object, name);
}

void UniversalParser::parseKeyword(const SubComDescriptor& subcommand, SubComObj& object) {
  const Token& keyword = tokens_[position_];
  const ParamDescriptor* param = isName(position_) ? subcommand.findParam(source(position_)) : nullptr;
  if (param == nullptr) return skipUnknown(subcommand);
  ++position_;
  if (isOperator(position_, OperatorCode::kEquals)) {
    ++position_;
    return parseValue(subcommand, *param, object, keyword);
  }
  if (param->valueMayBeMissing()) {
    return addParam(object, *param, keyword, position_, position_, subcommand);
  }
  // A value without its equals sign is passed over, so that it is no error of its own.
  const bool valueFollows = !atEnd(position_) && !isOperator(position_, OperatorCode::kSlash) &&
                            !(isName(position_) && subcommand.findParam(source(position_)));
  error(valueFollows ? MessageKey::kEqualSignRequired : MessageKey::kParamValueRequired,
        {param->name(), subcommand.name()}, &keyword);
  bool balanced = true;
  if (valueFollows) position_ = findValueEnd(subcommand, *param, position_, balanced);
  addParam(object, *param, keyword, position_, position_, subcommand);
}

void UniversalParser::parseValue(const SubComDescriptor& subcommand, const ParamDescriptor& param,
                                 SubComObj& object, const Token& keyword) {
  const std::size_t begin = position_;
  bool balanced = true;
  position_ = findValueEnd(subcommand, param, begin, balanced);
  if (param.spec() == UPSpecTypes::kNoValue) {
    error(MessageKey::kParamNoValue, {param.name(), subcommand.name()}, &keyword);
  } else if (position_ == begin) {
    error(MessageKey::kParamValueRequired, {param.name(), subcommand.name()}, &keyword);
  } else if (balanced) {
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
  const bool closesBracket =
      token.code == OperatorCode::kRightParen || token.code == OperatorCode::kRightBracket;
  if (token.kind == TokenKind::kWord) {
    std::vector<std::string_view> names;
    for (const ParamDescriptor& param : subcommand.params()) names.push_back(param.name());
    error(MessageKey::kUnknownParam, {text(position_), subcommand.name()}, &token,
          suggestion(source(position_), names));
  } else if (!closesBracket) {  // of that the search for the end tells below
    error(MessageKey::kUnexpectedToken, {text(position_), subcommand.name()}, &token);
  }
  // What belongs to the unknown keyword goes with it.
  static const ParamDescriptor kUnknown("", UPSpecTypes::kRawTokens, false, false);
  const bool hasValue = isOperator(position_ + 1, OperatorCode::kEquals);
  const std::size_t begin = hasValue ? position_ + 2 : position_;
  bool balanced = true;
  position_ = std::max(findValueEnd(subcommand, kUnknown, begin, balanced), begin);
  if (position_ == begin && !hasValue) ++position_;
}

void UniversalParser::skipToSubcommand() {
  while (!atEnd(position_) && !isOperator(position_, OperatorCode::kSlash)) {
    std::size_t stop = position_ + 1;
    const bool opens = isOperator(position_, OperatorCode::kLeftParen) ||
                       isOperator(position_, OperatorCode::kLeftBracket);
    position_ = opens ? behindPartner(position_, stop).value_or(stop) : position_ + 1;
  }
}

std::size_t UniversalParser::findValueEnd(const SubComDescriptor& subcommand,
                                          const ParamDescriptor& param, std::size_t begin,
                                          bool& balanced) {
  std::size_t i = begin;
  while (!atEnd(i) && !isOperator(i, OperatorCode::kSlash)) {
    const OperatorCode code = tokens_[i].code;
    if (isName(i)) {
      const bool declared = param.spec() == UPSpecTypes::kDeclaredList &&
                            isDeclaredValue(*command_, param, tokens_[i]);
      // The first token belongs to the value whatever it is called, unless it is a keyword with its
      // own equals sign: then the value is missing.
      const bool startsKeyword = isOperator(i + 1, OperatorCode::kEquals);
      const bool isKeyword = i > begin && subcommand.findParam(source(i)) != nullptr;
      if (!declared && (startsKeyword || isKeyword)) return i;
    } else if (code == OperatorCode::kLeftParen || code == OperatorCode::kLeftBracket) {
      std::size_t stop = i;
      const std::optional<std::size_t> behind = behindPartner(i, stop);
      if (!behind) {
        error(MessageKey::kUnbalancedBracket, {text(i)}, &tokens_[i]);
        balanced = false;
        return stop;
      }
      i = *behind;
      continue;
    } else if (code == OperatorCode::kRightParen || code == OperatorCode::kRightBracket) {
      if (balanced) error(MessageKey::kUnbalancedBracket, {text(i)}, &tokens_[i]);
      balanced = false;
    }
    ++i;
  }
  return i;
}

std::optional<std::size_t> UniversalParser::behindPartner(std::size_t open,
                                                          std::size_t& stop) const {
  std::vector<OperatorCode> expected;
  bool matched = true;
  for (std::size_t i = open; i < tokens_.size(); ++i) {
    switch (tokens_[i].code) {
      case OperatorCode::kLeftParen: expected.push_back(OperatorCode::kRightParen); break;
      case OperatorCode::kLeftBracket: expected.push_back(OperatorCode::kRightBracket); break;
      case OperatorCode::kRightParen:
      case OperatorCode::kRightBracket:
        matched = matched && expected.back() == tokens_[i].code;
        if (matched) expected.pop_back();
        if (matched && expected.empty()) return i + 1;
        break;
      case OperatorCode::kSlash:
        // A division may stand in brackets; a subcommand cannot, so the bracket was forgotten.
        if (isDeclaredSubcommand(i + 1)) {
          stop = i;
          return std::nullopt;
        }
        break;
      default: break;
    }
  }
  stop = tokens_.size();
  return std::nullopt;
}

void UniversalParser::checkRequired() {
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
  for (const GroupComObj& group : spec_.groups_) {
    for (const SubComDescriptor& subcommand : group.descriptor_->subcommands()) {
      if (subcommand.required() && group.getSubComObj(subcommand.name()) == nullptr) {
        error(MessageKey::kSubComRequired, {subcommand.name()}, nullptr);
      }
    }
  }
}

void UniversalParser::checkRequiredKeywords(const SubComObj& object, const Token* name) {
  if (object.descriptor_->spec() == UPSpecTypes::kTokenList) return;
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
