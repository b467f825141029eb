// Whole OUTPUT MODIFY commands, made from arbitrary bytes by walking the grammar that the command
// declares: groups in any number, their subcommands in any order, a value of its kind for every
// keyword, and now and then something that belongs nowhere.
//
// Properties: a command that sends nothing says something; one that sends has met no mistake but
// those that deliberately refuse nothing; what is sent is closed element by element, in the order
// of the modify document, whatever the texts in it are; the command as it is printed sends the
// same.
//
// With VORN_FUZZ_SHOW in the environment the commands and what they send are printed, to see what a
// crash file makes.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/fuzz_check.h"
#include "platform/adapter/host_adapter.h"
#include "platform/adapter/output_sink.h"
#include "platform/files/path_context.h"
#include "platform/parser/command_printer.h"
#include "platform/parser/current_command.h"
#include "platform/parser/grammar_capture.h"
#include "platform/parser/tokenizer.h"
#include "platform/parser/universal_parser.h"
#include "platform/text/encoding.h"
#include "vornwout/entry_points.h"

namespace vornwout {
namespace {

/// The fuzzer's bytes, one decision each; zeros when they are used up.
class Decisions {
 public:
  Decisions(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

  bool exhausted() const { return at_ == end_; }
  std::size_t next() { return exhausted() ? 0 : *at_++; }
  std::size_t below(std::size_t bound) { return next() % bound; }
  /// True once in `times`; never when the bytes are used up, so that every command ends.
  bool once(std::size_t times) { return !exhausted() && below(times) == times - 1; }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

class CommandMaker {
 public:
  CommandMaker(const CommandDescriptor& grammar, Decisions& decisions)
      : grammar_(grammar), decide_(decisions) {}

  std::string make() {
    text_ = grammar_.name();
    for (const SubComDescriptor& own : grammar_.subcommands()) {
      if (own.name().empty() || decide_.once(3)) subcommand(own);
    }
    const GroupComDescriptor& group = grammar_.groups().front();
    for (std::size_t groups = 1 + decide_.below(4); groups > 0; --groups) {
      subcommand(*group.leader());
      std::vector<const SubComDescriptor*> left;
      for (const SubComDescriptor& member : group.subcommands()) {
        if (&member != group.leader()) left.push_back(&member);
      }
      for (std::size_t members = decide_.below(6); members > 0 && !left.empty(); --members) {
        const std::size_t chosen = decide_.below(left.size());
        subcommand(*left[chosen]);
        dropMostly(left, chosen, left[chosen]->repeatable());
      }
    }
    return text_ + " .\n";
  }

  /// False when a quote without its partner may have made a text of what was meant as code.
  bool textsAreKnown() const { return textsAreKnown_; }

 private:
  void add(std::string_view token) { text_.append(" ").append(token); }

  /// Once is enough for what may stand only once; a second time, now and then, is an error.
  template <typename Descriptor>
  void dropMostly(std::vector<const Descriptor*>& left, std::size_t chosen, bool repeatable) {
    if (repeatable || decide_.once(64)) return;
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(chosen));
  }

  void subcommand(const SubComDescriptor& descriptor) {
    if (!descriptor.name().empty()) add("/" + descriptor.name());
    std::vector<const ParamDescriptor*> left;
    for (const ParamDescriptor& param : descriptor.params()) left.push_back(&param);
    // The first keyword is the one that a subcommand can least do without.
    const bool withFirst = decide_.below(4) != 0;
    for (std::size_t params = decide_.below(5); params > 0 && !left.empty(); --params) {
      const std::size_t chosen =
          withFirst && left.size() == descriptor.params().size() ? 0 : decide_.below(left.size());
      keyword(*left[chosen]);
      dropMostly(left, chosen, false);
    }
    if (decide_.once(100)) hostile();
  }

  void keyword(const ParamDescriptor& param) {
    add(param.name());
    if (param.spec() == UPSpecTypes::kNoValue) return;
    add("=");
    const bool inBrackets = param.brackets() != UPSpecTypes::kBracketsRaw && decide_.once(2);
    if (inBrackets) add("[");
    value(param);
    if (inBrackets) add("]");
    if (decide_.once(100)) hostile();
  }

  void value(const ParamDescriptor& param) {
    switch (param.spec()) {
      case UPSpecTypes::kNoValue:
        return;
      case UPSpecTypes::kRawTokens:
        return raw(param);
      case UPSpecTypes::kDeclaredValue:
        return declared(param);
      case UPSpecTypes::kString:
        return decide_.once(4) ? declared(param) : quoted();
      case UPSpecTypes::kDeclaredList:
        return list([&] { declared(param); });
      case UPSpecTypes::kLiteralList:
        return list([&] { quoted(); });
      case UPSpecTypes::kNumber:
      case UPSpecTypes::kInteger:
        return number();
      case UPSpecTypes::kNumberList:
        return list([&] { number(); });
      case UPSpecTypes::kMeasure:
        return measure(param);
      case UPSpecTypes::kQualifiers:
      case UPSpecTypes::kQualifierLists:
        return param.qualifiers().empty() ? list([&] { number(); })
                                          : list([&] { qualifier(param); });
    }
  }

  template <typename Element>
  void list(Element element) {
    element();
    while (decide_.once(2)) {
      if (decide_.once(3)) add(",");
      element();
    }
  }

  void declared(const ParamDescriptor& param) {
    if (param.values().empty() || decide_.once(50)) return word();
    add(param.values()[decide_.below(param.values().size())]);
  }

  /// NAME(value), or the name alone where it takes none.
  void qualifier(const ParamDescriptor& param) {
    const ParamDescriptor& chosen = param.qualifiers()[decide_.below(param.qualifiers().size())];
    add(chosen.name());
    if (chosen.spec() == UPSpecTypes::kNoValue) return;
    add("(");
    value(chosen);
    add(")");
  }

  void measure(const ParamDescriptor& param) {
    const std::string& unit = param.qualifiers()[decide_.below(param.qualifiers().size())].name();
    const bool unitFirst = decide_.once(2);
    if (unitFirst) {
      add(unit);
      add("(");
    }
    number();
    if (decide_.once(2)) {
      if (decide_.once(3)) add(",");
      decide_.once(3) ? add("PROPORTIONAL") : number();
    }
    if (unitFirst) return add(")");
    if (!decide_.once(8)) add(unit);
  }

  /// What the readers of token lists take, by the keyword, as the grammar does not tell. A keyword
  /// that is not here gets raw() alone.
  bool expected(const ParamDescriptor& param) {
    const std::string_view name = param.name();
    if (name == "NAME" || name == "TLOOK") {
      name == "TLOOK" && decide_.once(3) ? declared(param) : quoted();
    } else if (name == "COMMANDS") {
      list([&] { decide_.once(6) ? add("LAST") : quoted(); });
    } else if (name == "INSTANCES") {
      list([&] { decide_.once(4) ? add("LAST") : number(); });
    } else if (name == "INDEXSTART") {
      static constexpr std::array kStarts = {"1", "5", "a", "AB", "xiv", "'MCM'", "iiii", "i"};
      add(kStarts[decide_.below(kStarts.size())]);
    } else if (name == "SELECT") {
      add("[");
      list([&] {
        decide_.once(4) ? quoted() : decide_.once(6) ? qualifier(param) : declared(param);
      });
      add("]");
    } else if (name == "SELECTCONDITION") {
      if (decide_.once(3)) {
        add("[ x");
        list([&] { loose(param); });
        add("]");
      } else {
        list([&] { qualifier(param); });
      }
    } else if (name == "SELECTEDLAYER") {
      add("[");
      list([&] {
        decide_.once(2) ? quoted() : decide_.once(3) ? add("ALL") : number();
        decide_.once(2) ? quoted() : decide_.once(3) ? add("LAST") : number();
      });
      add("]");
    } else if (name == "REPLACE") {
      decide_.once(2) ? quoted() : number();
    } else if (!param.values().empty()) {
      declared(param);
    } else {
      return false;
    }
    return true;
  }

  /// Mostly what is expected, else one of the shapes that token lists have.
  void raw(const ParamDescriptor& param) {
    if (decide_.below(8) != 0 && expected(param)) return;
    switch (decide_.below(8)) {
      case 0:
        return declared(param);
      case 1:
        return quoted();
      case 2:
        return number();
      case 3:
        add("RGB(");
        for (std::size_t i = 0; i < 3; ++i) number();
        return add(")");
      case 4:
        if (!param.qualifiers().empty()) return list([&] { qualifier(param); });
        return list([&] { loose(param); });
      case 5:
        return list([&] { loose(param); });
      default:
        add("[");
        list([&] { loose(param); });
        return add("]");
    }
  }

  void loose(const ParamDescriptor& param) {
    switch (decide_.below(8)) {
      case 0:
      case 1:
        return quoted();
      case 2:
        return param.values().empty() ? number() : declared(param);
      case 3:
        return number();
      case 4:
        return param.qualifiers().empty() ? quoted() : qualifier(param);
      case 5:
        return decide_.once(3) ? word() : quoted();
      default:
        return param.values().empty() ? number() : declared(param);
    }
  }

  void word() {
    static constexpr std::array kWords = {"LAST", "ALL",  "x",  ">", "=",    "i",
                                          "XL",   "NONE", "ab", "<", "F8.2", "*"};
    add(kWords[decide_.below(kWords.size())]);
  }

  void number() {
    static constexpr std::array kNumbers = {"1",   "2",    "3",    "7",          "12",  "50",
                                            "100", "255",  "0",    "-1",         "256", "2.5",
                                            "0.5", "1e30", "-0.1", "2147483648", "400"};
    // Mostly one of the first, which any reader takes.
    if (decide_.below(3) != 0) return add(kNumbers[decide_.below(6)]);
    add(kNumbers[decide_.below(kNumbers.size())]);
  }

  /// A text in quotes. A double quotation mark in it always has an "x" behind it, which lets
  /// checkStructure() tell it from one that ends a value, as it goes into the document as it is.
  void quoted() {
    static constexpr std::array kPieces = {
        "a",   "fuzz", "1",  ",", "(",    ")",   "LAST",     "\"x",    "''",       "<",      ">",
        "&",   "</",   "/>", ";", "=",    "iv",  "\xC3\xBC", "\x83\\", ")ADATEX",  "<!--",   "b c",
        "2,3", "]]>",  " ",  "^", "amp;", "\\n", "RGB",      "NONE",   "T-TEST(2", "M(LAST)"};
    // What readers look into, whole.
    static constexpr std::array kWholes = {
        "'fuzz'", "'fuzz'", "'fuzz'", "'a'",    "'R(2,3)'",     "'T-TEST(LAST)'", "'xiv'",
        "'AB'",   "'NONE'", "''",     "'F8.2'", "'Fr(1,,0,2)'", "')ETIMEX'",      "'Deja Vu'"};
    if (decide_.once(2)) return add(kWholes[decide_.below(kWholes.size())]);
    const char mark = decide_.once(3) ? '"' : '\'';
    text_ += ' ';
    text_ += mark;
    for (std::size_t pieces = decide_.below(6); pieces > 0; --pieces) {
      const std::size_t chosen = decide_.below(kPieces.size() + 4);
      std::string piece;
      if (chosen < kPieces.size()) {
        piece = kPieces[chosen];
      } else {
        const char any = static_cast<char>(decide_.next());
        if (any != '\n' && any != '\r' && any != '\0' && any != '"' && any != '\'') piece = any;
      }
      // The mark within its own text is doubled; of the pieces only one holds each mark.
      if (mark == '"' && piece == "\"x") piece = "\"\"x";
      if (mark == '"' && piece == "''") piece = "'";
      text_ += piece;
    }
    text_ += mark;
  }

  void hostile() {
    static constexpr std::array kTokens = {"=",  "(",  ")", "[", "]",  ",",  "/",  "ALL",
                                           "/*", "*/", "5", "x", "''", "\"", "\n", "&"};
    const std::string_view token = kTokens[decide_.below(kTokens.size())];
    if (token == "\"") textsAreKnown_ = false;
    add(token);
  }

  const CommandDescriptor& grammar_;
  Decisions& decide_;
  std::string text_;
  bool textsAreKnown_ = true;
};

/// Walks a document and checks everything in it but the texts. What the elements of a group are,
/// and which stands before which, is said here a second time, on purpose.
class StructureCheck {
 public:
  explicit StructureCheck(std::string_view document) : rest_(document) {}

  void run() {
    while (!rest_.empty()) {
      take("<");
      if (rest_.starts_with("/")) {
        take("/");
        VORN_FUZZ_CHECK(!open_.empty());
        take(open_.back());
        open_.pop_back();
        take(">");
      } else {
        startTag();
      }
      VORN_FUZZ_CHECK(!open_.empty() || rest_.empty());
    }
    VORN_FUZZ_CHECK(open_.empty());
  }

 private:
  void take(std::string_view expected) {
    VORN_FUZZ_CHECK(rest_.starts_with(expected));
    rest_.remove_prefix(expected.size());
  }

  std::string_view takeName() {
    std::size_t length = 0;
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    while (length < rest_.size() && isLetter(rest_[length])) ++length;
    VORN_FUZZ_CHECK(length > 0);
    const std::string_view name = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return name;
  }

  void startTag() {
    const std::string_view name = takeName();
    place(name);
    // A nameless command has a blank of its own, deliberately.
    if (name == "command" && !rest_.starts_with(" commandName=")) take(" ");
    while (rest_.starts_with(" ")) {
      take(" ");
      takeName();
      take("=\"");
      std::size_t end = rest_.find('"');
      while (end != std::string_view::npos && end + 1 < rest_.size() &&
             (rest_[end + 1] == 'x' || rest_[end + 1] == 'X')) {
        end = rest_.find('"', end + 1);
      }
      VORN_FUZZ_CHECK(end != std::string_view::npos);
      rest_.remove_prefix(end + 1);
    }
    if (rest_.starts_with("/")) return take("/>");
    take(">");
    open_.push_back(name);
  }

  void place(std::string_view name) {
    if (open_.empty()) {
      VORN_FUZZ_CHECK(name == "modifyOutputObject");
    } else if (open_.back() == "modifyOutputObject") {
      VORN_FUZZ_CHECK(name == "modifyEvent");
      turn_ = 0;
    } else if (open_.back() == "modifyEvent") {
      static const std::map<std::string_view, int> kTurns = {
          {"command", 1},     {"subtype", 2},      {"label", 3},       {"instance", 4},
          {"indexObject", 5}, {"deleteObject", 6}, {"modifyGraph", 7}, {"objectProperties", 8},
          {"modifyTable", 9}, {"tableCells", 10},  {"modifyText", 11}};
      const auto turn = kTurns.find(name);
      VORN_FUZZ_CHECK(turn != kTurns.end());
      VORN_FUZZ_CHECK(turn->second >= turn_);
      turn_ = turn->second;
    }
  }

  std::string_view rest_;
  std::vector<std::string_view> open_;
  int turn_ = 0;
};

/// Keeps what it is sent; answers with something to warn of and to count.
class RecordingHost : public HostAdapter {
 public:
  bool IsPathExpansionSuppressed() override { return false; }
  OutputControllerInterface* GetOutputController() override { return nullptr; }
  std::string ExportOutput(const std::string&) override { std::abort(); }
  std::string ModifyOutput(const std::string& xml) override {
    documents.push_back(xml);
    return "Invalid format (F8.99) (3,2,1)";
  }

  std::vector<std::string> documents;
};

/// The mistakes that are told and refuse nothing by themselves: a run of IF that is passed over,
/// and a member of a size, which its bounds may refuse all the same.
bool mayRefuseNothing(const ParserMessageRecord& message) {
  const std::vector<std::string>& arguments = message.arguments;
  if (message.operation == "ParamNeedInteger") return arguments.back() == "IF";
  if (message.operation == "InvalidParam") return arguments.front() == "SIZE";
  return message.operation == "GenericError" &&
         (message.text == "Value for WIDTH must be a positive number" ||
          message.text == "Value for HEIGHT must be a positive number");
}

class JudgingSink : public OutputSink {
 public:
  void parserMessage(const ParserMessageRecord& message) override {
    VORN_FUZZ_CHECK(!message.text.empty());
    if (message.severity != MessageSeverity::kError) return;
    ++errors;
    if (!mayRefuseNothing(message)) ++refusals;
  }

  int errors = 0;
  int refusals = 0;
};

/// What the command sends, none when it is refused.
std::vector<std::string> sentBy(const TokenizedCommand& command) {
  JudgingSink sink;
  RecordingHost host;
  const SinkRegistration registration(sink);
  const AdapterRegistration adapter(&host);
  const CurrentCommand current(command, 2);
  outmodify_();
  VORN_FUZZ_CHECK(host.documents.size() <= 1);
  VORN_FUZZ_CHECK(!host.documents.empty() || sink.errors > 0);
  VORN_FUZZ_CHECK(host.documents.empty() || sink.refusals == 0);
  return host.documents;
}

/// The command as it is printed; empty when the parser refuses it.
std::string printed(const CommandDescriptor& grammar, const TokenizedCommand& command) {
  JudgingSink sink;
  const SinkRegistration registration(sink);
  const CurrentCommand current(command, 2);
  const VORN_TokenSequence tokens(true);
  CommandSpec spec;
  UniversalParser parser(tokens, spec, grammar);
  return parser.getCommandSpecifications() == 0 ? printCommand(grammar, spec) : std::string();
}

/// What a date token makes differs from one second to the next.
bool holdsDateToken(const std::string& text) {
  static constexpr std::array kTokens = {")DATE", ")ADATE", ")EDATE", ")SDATE", ")TIME", ")ETIME"};
  return std::any_of(kTokens.begin(), kTokens.end(),
                     [&](const char* token) { return text.find(token) != std::string::npos; });
}

/// An installation with a table look and a chart template, both called fuzz; gone with the process.
class Installation {
 public:
  Installation() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "vornwout-modify-fuzz-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary directory");
    folder_ = pattern;
    std::filesystem::create_directory(folder_ / "Looks");
    std::ofstream(folder_ / "Looks/fuzz.qtt") << "<?xml?><tableProperties a=\"1\"/>";
    std::ofstream(folder_ / "Looks/fuzz.qgt") << "<?xml?><template><part/></template>";
    setenv("VORNWOUT_HOME", folder_.c_str(), 1);
    std::cout.rdbuf(nullptr);  // DEBUG would print every document
  }
  ~Installation() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  std::string folder() const { return folder_; }

 private:
  std::filesystem::path folder_;
};

}  // namespace
}  // namespace vornwout

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vornwout;
  static const Installation kInstallation;
  static const CommandDescriptor kGrammar = grammarOf(outmodify_);
  static constexpr std::array kEncodings = {"UTF-8", "windows-1252", "Shift-JIS", "GB18030"};
  Decisions decisions(data, size);
  const ScopedEncoding encoding(Encoding::find(kEncodings[decisions.below(kEncodings.size())]));
  // Relative paths find nothing, whatever folder the fuzzer runs in.
  const ScopedPathContext paths({kInstallation.folder() + "/none", {}});
  CommandMaker maker(kGrammar, decisions);
  const std::string job = maker.make();
  const bool show = std::getenv("VORN_FUZZ_SHOW") != nullptr;
  if (show) std::cerr << job;
  Tokenizer tokenizer(job);
  TokenizedCommand command;
  if (!tokenizer.next(command)) return 0;
  const std::vector<std::string> sent = sentBy(command);
  if (show && !sent.empty()) std::cerr << sent.front() << "\n";
  if (maker.textsAreKnown()) {
    for (const std::string& document : sent) StructureCheck(document).run();
  }
  if (holdsDateToken(job)) return 0;
  const std::string again = printed(kGrammar, command);
  VORN_FUZZ_CHECK(!again.empty() || sent.empty());
  if (again.empty()) return 0;
  Tokenizer printedTokenizer(again);
  TokenizedCommand printedCommand;
  VORN_FUZZ_CHECK(printedTokenizer.next(printedCommand));
  VORN_FUZZ_CHECK(sentBy(printedCommand) == sent);
  return 0;
}
