#include "platform/parser/secret_tokens.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/parser/bracket_pairs.h"
#include "platform/parser/command_names.h"
#include "platform/parser/descriptor.h"
#include "platform/parser/value_shape.h"
#include "platform/text/multibyte.h"

namespace vornwout {
namespace {

constexpr const char* kUsualName = "PASSWORD";
constexpr std::string_view kNoSecret = "NONE";
constexpr std::size_t kShortestAbbreviation = 4;
constexpr std::size_t kMostMistakes = 2;

/// What is known of a command whose grammar is not.
const CommandDescriptor& guessedGrammar() {
  static const CommandDescriptor guessed = [] {
    ParamDescriptor password(kUsualName, UPSpecTypes::kString, false, true);
    password.setSecret();
    CommandDescriptor grammar("");
    SubComDescriptor main("", UPSpecTypes::kKeywords, false, false);
    main.addParamDesc(password);
    grammar.addSubComDesc(main);
    SubComDescriptor protect("PASSPROTECT", UPSpecTypes::kKeywords, false, false);
    protect.addParamDesc(password);
    ParamDescriptor encrypted("ENCRYPTEDPW", UPSpecTypes::kDeclaredValue, false, true);
    encrypted.addStringValue("YES");
    encrypted.addStringValue("NO");
    protect.addParamDesc(encrypted);
    grammar.addSubComDesc(protect);
    return grammar;
  }();
  return guessed;
}

/// True for a name that is meant for another, misspelt or cut short.
bool resembles(std::string_view written, std::string_view name) {
  if (written.size() > name.size() + kMostMistakes) return false;
  if (written.size() >= kShortestAbbreviation &&
      AreStringsEqualCase(written, name.substr(0, written.size()))) {
    return true;
  }
  return written.size() + kMostMistakes >= name.size() &&
         editDistance(toUpperCase(written), toUpperCase(name)) <= kMostMistakes;
}

/// True for what people call a password, whatever a command calls it.
bool isUsualName(std::string_view written) {
  const std::string name = toUpperCase(written);
  return name.find(kUsualName) != std::string::npos || name.ends_with("PW") ||
         name.ends_with("PWD");
}

/// True for one of the values that a keyword takes, or one that is meant for it. What has too
/// little in common with them may be anything.
bool isMeantForValue(std::string_view written, const ParamDescriptor& param) {
  const std::string text = toUpperCase(written);
  return std::any_of(param.values().begin(), param.values().end(), [&](const std::string& value) {
    if (text.size() > value.size() + kMostMistakes) return false;
    return editDistance(text, toUpperCase(value)) <= std::min(kMostMistakes, value.size() - 1);
  });
}

bool hasSecrets(const SubComDescriptor& subcommand) {
  return std::any_of(subcommand.params().begin(), subcommand.params().end(),
                     [](const ParamDescriptor& param) { return param.secret(); });
}

class SecretScan {
 public:
  SecretScan(const TokenizedCommand& command, const CommandDescriptor* grammar)
      : command_(command),
        tokens_(command.tokens()),
        secret_(tokens_.size(), false),
        brackets_(tokens_, [](std::size_t) { return false; }) {
    enterCommand(grammar == nullptr ? guessedGrammar() : *grammar);
  }

  std::vector<bool> run() {
    while (at_ < tokens_.size()) readNext();
    hideBehindLostQuotes();
    return std::move(secret_);
  }

 private:
  bool isName(std::size_t i) const {
    return i < tokens_.size() &&
           (tokens_[i].kind == TokenKind::kWord || tokens_[i].code == OperatorCode::kAll);
  }
  bool isOperator(std::size_t i, OperatorCode code) const {
    return i < tokens_.size() && tokens_[i].code == code;
  }
  bool isString(std::size_t i) const {
    return i < tokens_.size() && tokens_[i].kind == TokenKind::kString;
  }
  std::string_view source(std::size_t i) const { return command_.sourceText(tokens_[i]); }

  /// True when the token is a part of the unquoted text before it, as the last two of "a/b".
  bool continuesText(std::size_t i) const {
    return i > 0 && tokens_[i - 1].kind != TokenKind::kString &&
           tokens_[i - 1].offset + tokens_[i - 1].length == tokens_[i].offset;
  }

  bool beginsCommand(std::size_t i) const {
    return i > 0 && tokens_[i].line != tokens_[i - 1].line && beginsCommandName(command_, i);
  }

  void enterCommand(const CommandDescriptor& grammar) {
    grammar_ = &grammar;
    subcommand_ = grammar.findSubCom("");
    isProtected_ = false;
    names_.clear();
    forEachSubcommand([this](const SubComDescriptor& subcommand) {
      for (const ParamDescriptor& param : subcommand.params()) {
        if (param.secret()) names_.push_back(param.name());
      }
    });
  }

  template <typename Visit>
  void forEachSubcommand(const Visit& visit) const {
    for (const SubComDescriptor& subcommand : grammar_->subcommands()) visit(subcommand);
    for (const GroupComDescriptor& group : grammar_->groups()) {
      for (const SubComDescriptor& subcommand : group.subcommands()) visit(subcommand);
    }
  }

  /// The subcommand of that name; where there is none, the one with secrets that may be meant.
  const SubComDescriptor* findSubcommand(std::string_view name) const {
    const SubComDescriptor* found = nullptr;
    bool isExact = false;
    forEachSubcommand([&](const SubComDescriptor& subcommand) {
      if (isExact || subcommand.name().empty()) return;
      isExact = AreStringsEqualCase(subcommand.name(), name);
      if (isExact || (hasSecrets(subcommand) && resembles(name, subcommand.name()))) {
        found = &subcommand;
      }
    });
    return found;
  }

  bool isDeclared(std::size_t i) const {
    return subcommand_ != nullptr && subcommand_->findParam(source(i)) != nullptr;
  }

  /// True for the name of a keyword with a secret, whether it may stand here or not.
  bool namesSecret(std::size_t i) const {
    if (!isName(i)) return false;
    const bool isExact = std::any_of(names_.begin(), names_.end(), [&](std::string_view name) {
      return AreStringsEqualCase(source(i), name);
    });
    if (isExact) return true;
    if (isDeclared(i)) return false;
    // A word that is no keyword here counts when it is written like one.
    const bool hasEquals = isOperator(i + 1, OperatorCode::kEquals);
    if (hasEquals && resembles(source(i), kUsualName)) return true;
    if ((hasEquals || isString(i + 1)) && isUsualName(source(i))) return true;
    return (hasEquals || isString(i + 1)) &&
           std::any_of(names_.begin(), names_.end(),
                       [&](std::string_view name) { return resembles(source(i), name); });
  }

  void readNext() {
    if (beginsCommand(at_)) {
      enterCommand(guessedGrammar());
      ++at_;
    } else if (isOperator(at_, OperatorCode::kSlash)) {
      enterSubcommand();
    } else if (namesSecret(at_)) {
      ++at_;
      readSecret();
    } else if (isName(at_) && isOperator(at_ + 1, OperatorCode::kEquals) && mayTakeSecret(at_)) {
      ++at_;
      readSecret();
    } else if (isName(at_) && isOperator(at_ + 1, OperatorCode::kEquals)) {
      at_ += 2;
      passFirstOfValue();
    } else {
      // What stands in a subcommand of secrets and belongs to no keyword is a secret without one.
      const bool isKeyword = isName(at_) && (isDeclared(at_) || !isProtected_);
      secret_[at_] = isProtected_ && !isKeyword && tokens_[at_].kind != TokenKind::kOperator;
      ++at_;
    }
  }

  /// True for a word with an equals sign, in a subcommand of secrets, whose value may be one that
  /// was meant for another keyword: the word is none, or has values of its own and this is none of
  /// them.
  bool mayTakeSecret(std::size_t i) const {
    if (!isProtected_) return false;
    const ParamDescriptor* param =
        subcommand_ == nullptr ? nullptr : subcommand_->findParam(source(i));
    if (param == nullptr) return true;
    const std::size_t value = i + 2;
    if (param->values().empty() || value >= tokens_.size()) return false;
    // The value was left out, and the next keyword is there.
    if (isName(value) && isOperator(value + 1, OperatorCode::kEquals)) return false;
    std::string_view text = source(value);
    if (isString(value) && text.size() >= 2) text = text.substr(1, text.size() - 2);
    return !isMeantForValue(text, *param);
  }

  void enterSubcommand() {
    ++at_;
    // Written with a slash by mistake, the keyword is read as one all the same.
    if (!isName(at_) || namesSecret(at_)) return;
    const SubComDescriptor* found = findSubcommand(source(at_));
    subcommand_ = found;
    // Behind an unknown name a text may still belong to the subcommand before.
    if (found != nullptr) isProtected_ = hasSecrets(*found);
    ++at_;
    if (isOperator(at_, OperatorCode::kEquals)) ++at_;
  }

  /// Passes over the first token of a value that is no secret: whatever it is called, it belongs to
  /// the value, unless that was left out and it is the next keyword.
  void passFirstOfValue() {
    if (at_ >= tokens_.size() || isOperator(at_, OperatorCode::kSlash) || beginsCommand(at_)) {
      return;
    }
    const bool isNext = isName(at_) && (isOperator(at_ + 1, OperatorCode::kEquals) ||
                                        (isString(at_ + 1) && namesSecret(at_)));
    if (!isNext) ++at_;
  }

  void readSecret() {
    const bool hasEquals = isOperator(at_, OperatorCode::kEquals);
    if (hasEquals) ++at_;
    const std::size_t begin = at_;
    bool isQuoted = true;
    while (at_ < tokens_.size()) {
      const bool isFirst = at_ == begin && hasEquals;
      if (endsSecret(isFirst) || closesOuterBracket(begin)) return;
      if (isKeywordAlone(isFirst)) {
        // What follows it may still belong to a text of several words without quotes.
        if (isQuoted) return;
      } else {
        isQuoted = isQuoted && isString(at_);
        hideOne(at_ == begin);
        continue;
      }
      ++at_;
    }
  }

  bool endsSecret(bool isFirst) const {
    if (beginsCommand(at_)) return true;
    if (continuesText(at_)) return false;
    if (isOperator(at_, OperatorCode::kSlash)) {
      // Where a value is due, a slash may be its beginning.
      return !isFirst || (isName(at_ + 1) && findSubcommand(source(at_ + 1)) != nullptr);
    }
    return isName(at_) && isOperator(at_ + 1, OperatorCode::kEquals);
  }

  /// True for a bracket that was opened before the secret at `begin`.
  bool closesOuterBracket(std::size_t begin) const {
    return isBracket(tokens_[at_]) && brackets_.hasPartner(at_) && brackets_.partner(at_) < begin;
  }

  bool isKeywordAlone(bool isFirst) const {
    return !isFirst && isName(at_) && !continuesText(at_) && isDeclared(at_);
  }

  /// Hides a token, a bracket with all that it holds; not the word for no secret.
  void hideOne(bool isFirst) {
    const bool isNone = isFirst && isName(at_) && AreStringsEqualCase(source(at_), kNoSecret) &&
                        !(at_ + 1 < tokens_.size() && continuesText(at_ + 1));
    const std::size_t last =
        isOpeningBracket(tokens_[at_]) && brackets_.hasPartner(at_) ? brackets_.partner(at_) : at_;
    for (; at_ <= last; ++at_) {
      secret_[at_] = !isNone && !isOperator(at_, OperatorCode::kEquals);
    }
  }

  /// A quote that was left out turns texts and what is between them inside out: a keyword with a
  /// secret may stand in a text, and its value behind that.
  void hideBehindLostQuotes() {
    const auto& errors = command_.errors();
    const bool isLost = std::any_of(errors.begin(), errors.end(), [](const LexicalError& error) {
      return error.kind == LexicalError::Kind::kUnterminatedString;
    });
    if (!isLost) return;
    std::uint32_t line = 0;  // the one whose rest is hidden
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
      const bool isHidden = tokens_[i].line == line;
      if (isHidden && tokens_[i].kind != TokenKind::kOperator) secret_[i] = true;
      if (!isHidden && isString(i) && holdsSecretName(i)) {
        line = tokens_[i].line;
        secret_[i] = secret_[i] || tokens_[i].unterminated;
      }
    }
  }

  bool holdsSecretName(std::size_t i) const {
    const std::string text = toUpperCase(source(i));
    return text.find(kUsualName) != std::string::npos ||
           std::any_of(names_.begin(), names_.end(),
                       [&](std::string_view name) { return text.find(name) != std::string::npos; });
  }

  const TokenizedCommand& command_;
  const std::vector<Token>& tokens_;
  std::vector<bool> secret_;
  BracketPairs brackets_;
  std::size_t at_ = 0;
  const CommandDescriptor* grammar_ = nullptr;
  const SubComDescriptor* subcommand_ = nullptr;  ///< null for one that is not known
  bool isProtected_ = false;                      ///< in a subcommand of secrets
  std::vector<std::string_view> names_;           ///< of all the command's keywords with secrets
};

}  // namespace

std::vector<bool> secretTokens(const TokenizedCommand& command, const CommandDescriptor* grammar) {
  return SecretScan(command, grammar).run();
}

}  // namespace vornwout
