// The grammar of a command as data: what is declared here is what the parser accepts, what the help
// and the language reference print, and what the fuzzers are fed with.
//
// A command declares its subcommands, each with its keywords; subcommands that repeat together
// stand in a group. Declaring a name again replaces the earlier declaration in its place: commands
// do hand over a descriptor twice, the second time with more in it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vornwout {

/// The numbers of the grammar. Their values are those of the command language.
struct UPSpecTypes {
  /// What stands in a subcommand.
  enum SubComSpec {
    kTokenList = 0,    ///< one free token list, possibly empty
    kKeywords = 1,     ///< keywords with values
    kKeywordList = 2,  ///< a list of keywords, as SELECT
  };

  /// What a keyword's value is.
  enum ParamSpec {
    kNoValue = 1,        ///< the keyword stands alone
    kRawTokens = 2,      ///< a raw token list, brackets and all; may be missing altogether
    kDeclaredValue = 3,  ///< one of the declared values; any one word, number or string if none
    kString = 4,         ///< one string: quoted, or one bare token
    kDeclaredList = 5,   ///< a list of declared values
    kLiteralList = 6,    ///< a list of quoted strings
    kNumber = 7,
    kNumberList = 8,
    kInteger = 9,
    kQualifiers = 26,      ///< qualifiers, each with its value in parentheses; may be missing
    kMeasure = 27,         ///< value(s) and unit either way round, or a declared value
    kQualifierLists = 28,  ///< qualifiers, each with a list in parentheses
  };

  /// Whether "[" and "]" around a list reach the reader.
  enum BracketOptions {
    kBracketsRaw = 0,       ///< the parser does not touch them
    kBracketsOptional = 1,  ///< optional; neither they nor the commas of the list reach the reader
    kBracketsOptionalList = 2,  ///< the same, for a list of quoted texts or qualifiers
  };
};

enum LowerBdryOptions { kLowerExclusive = 0, kLowerInclusive = 1 };
enum UpperBdryOptions { kUpperExclusive = 0, kUpperInclusive = 1 };

/// A keyword of a subcommand, or a qualifier of a keyword.
class ParamDescriptor {
 public:
  /// `required`: the keyword must be given; with kRawTokens the value is then a file specification
  /// and must be quoted. `standard` is carried for the interface's sake; nothing here depends on
  /// it.
  ParamDescriptor(std::string name, UPSpecTypes::ParamSpec spec, bool required, bool standard,
                  UPSpecTypes::BracketOptions brackets = UPSpecTypes::kBracketsRaw)
      : name_(std::move(name)),
        spec_(spec),
        required_(required),
        standard_(standard),
        brackets_(brackets) {}

  void addStringValue(std::string value) { values_.push_back(std::move(value)); }
  void addQualifDesc(ParamDescriptor qualifier) { qualifiers_.push_back(std::move(qualifier)); }
  /// Says that the value is a secret: no message repeats it, and neither a trace nor a document
  /// keeps it.
  void setSecret() { secret_ = true; }
  void setBracketOption(UPSpecTypes::BracketOptions brackets) { brackets_ = brackets; }
  void setLowerBoundary(double bound, LowerBdryOptions option = kLowerInclusive) {
    lower_ = {bound, option == kLowerInclusive};
  }
  void setUpperBoundary(double bound, UpperBdryOptions option = kUpperInclusive) {
    upper_ = {bound, option == kUpperInclusive};
  }

  struct Boundary {
    double value = 0;
    bool inclusive = true;
  };

  const std::string& name() const { return name_; }
  UPSpecTypes::ParamSpec spec() const { return spec_; }
  bool required() const { return required_; }
  bool standard() const { return standard_; }
  bool secret() const { return secret_; }
  UPSpecTypes::BracketOptions brackets() const { return brackets_; }
  const std::vector<std::string>& values() const { return values_; }
  const std::vector<ParamDescriptor>& qualifiers() const { return qualifiers_; }
  const std::optional<Boundary>& lowerBoundary() const { return lower_; }
  const std::optional<Boundary>& upperBoundary() const { return upper_; }

  /// The qualifier of that name (without regard to case), or null.
  const ParamDescriptor* findQualifier(std::string_view name) const;
  /// True when a number lies within the declared bounds; a NaN never does.
  bool withinBounds(double value) const;
  /// True when the keyword may stand without "=" and value.
  bool valueMayBeMissing() const {
    return spec_ == UPSpecTypes::kNoValue || spec_ == UPSpecTypes::kRawTokens ||
           spec_ == UPSpecTypes::kQualifiers;
  }

 private:
  std::string name_;
  UPSpecTypes::ParamSpec spec_;
  bool required_;
  bool standard_;
  bool secret_ = false;
  UPSpecTypes::BracketOptions brackets_;
  std::vector<std::string> values_;
  std::vector<ParamDescriptor> qualifiers_;
  std::optional<Boundary> lower_;
  std::optional<Boundary> upper_;
};

/// A subcommand. The one with the empty name holds the keywords that follow the command's name.
class SubComDescriptor {
 public:
  SubComDescriptor(std::string name, UPSpecTypes::SubComSpec spec, bool required, bool repeatable)
      : name_(std::move(name)), spec_(spec), required_(required), repeatable_(repeatable) {}

  void addParamDesc(ParamDescriptor param);
  void addParamDesc(std::string name, UPSpecTypes::ParamSpec spec, bool required, bool standard,
                    UPSpecTypes::BracketOptions brackets = UPSpecTypes::kBracketsRaw) {
    addParamDesc(ParamDescriptor(std::move(name), spec, required, standard, brackets));
  }
  void setSubComName(std::string name) { name_ = std::move(name); }
  void setSubComRequired(bool required) { required_ = required; }
  void setSubComRepeatable(bool repeatable) { repeatable_ = repeatable; }
  /// Says that the subcommand may stand alone; every subcommand without a required keyword may.
  void allowSubComEmpty(bool allowed) { emptyAllowed_ = allowed; }

  const std::string& name() const { return name_; }
  UPSpecTypes::SubComSpec spec() const { return spec_; }
  bool required() const { return required_; }
  bool repeatable() const { return repeatable_; }
  bool emptyAllowed() const { return emptyAllowed_; }
  const std::vector<ParamDescriptor>& params() const { return params_; }

  /// The keyword of that name (without regard to case), or null.
  const ParamDescriptor* findParam(std::string_view name) const;

 private:
  std::string name_;
  UPSpecTypes::SubComSpec spec_;
  bool required_;
  bool repeatable_;
  bool emptyAllowed_ = false;
  std::vector<ParamDescriptor> params_;
};

/// Subcommands that repeat together. A group starts at its leading subcommand.
class GroupComDescriptor {
 public:
  /// `kind` and `repeatable` are 0 and true for the one kind of group there is; `message` is what a
  /// command says when a group's leader is missing, "^1" standing for the subcommand.
  GroupComDescriptor(int kind, bool repeatable, std::string message)
      : kind_(kind), repeatable_(repeatable), message_(std::move(message)) {}

  /// `leads`: this subcommand starts a group. Without a leader the first one declared leads.
  void addSubComDesc(SubComDescriptor subcommand, bool leads);

  int kind() const { return kind_; }
  bool repeatable() const { return repeatable_; }
  const std::string& message() const { return message_; }
  const std::vector<SubComDescriptor>& subcommands() const { return subcommands_; }
  /// Null for a group without subcommands.
  const SubComDescriptor* leader() const;
  const SubComDescriptor* findSubCom(std::string_view name) const;

 private:
  int kind_;
  bool repeatable_;
  std::string message_;
  std::vector<SubComDescriptor> subcommands_;
  std::optional<std::size_t> leader_;
};

/// A whole command.
class CommandDescriptor {
 public:
  explicit CommandDescriptor(std::string name) : name_(std::move(name)) {}
  CommandDescriptor(std::string name, std::string title)
      : name_(std::move(name)), title_(std::move(title)) {}

  void addSubComDesc(SubComDescriptor subcommand);
  void addGroupDesc(GroupComDescriptor group) { groups_.push_back(std::move(group)); }

  const std::string& name() const { return name_; }
  const std::string& title() const { return title_; }
  const std::vector<SubComDescriptor>& subcommands() const { return subcommands_; }
  const std::vector<GroupComDescriptor>& groups() const { return groups_; }
  /// A subcommand of the command itself, or null.
  const SubComDescriptor* findSubCom(std::string_view name) const;

 private:
  std::string name_;
  std::string title_;
  std::vector<SubComDescriptor> subcommands_;
  std::vector<GroupComDescriptor> groups_;
};

}  // namespace vornwout
