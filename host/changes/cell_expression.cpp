#include "host/changes/cell_expression.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "host/changes/change_notes.h"
#include "platform/strings/localized.h"
#include "platform/text/shortened_text.h"

namespace vornwout {
namespace {

using Operation = CellExpression::Operation;
using Step = CellExpression::Step;

/// Values that are judged at once: their blocks stay in the nearest cache.
constexpr int kShownColumns = 24;  ///< of a condition in a message

constexpr std::size_t kBlock = 256;

// What the operations do. Vector code comes from there being no branches.

double missingUnlessFinite(double value) { return value + value * 0; }
double truthOf(double value) { return (value != 0 ? 1.0 : 0.0) + value * 0; }

/// A truth as 1, 0 or, where it is missing, the half between: then the smaller of two is what both
/// are together, and the larger what either is.
double degreeOf(double value) {
  return (value != 0 ? 0.5 : 0.0) + (std::fabs(value) > 0 ? 0.5 : 0.0);
}
double truthOfDegree(double degree) { return degree + 0 / (degree - 0.5); }

/// Calls `use` with the function of an operation that has one operand.
template <typename Use>
auto withUnary(Operation operation, const Use& use) {
  switch (operation) {
    case Operation::kNegate:
      return use([](double a) { return -a; });
    case Operation::kAbsolute:
      return use([](double a) { return std::fabs(a); });
    case Operation::kSquare:
      return use([](double a) { return missingUnlessFinite(a * a); });
    case Operation::kCube:
      return use([](double a) { return missingUnlessFinite(a * a * a); });
    default:
      return use([](double a) { return 1 - truthOf(a); });
  }
}

/// A comparison, missing where one of its operands is.
template <typename Compare>
auto comparison(const Compare& compare) {
  return [compare](double a, double b) { return (compare(a, b) ? 1.0 : 0.0) + (a * 0 + b * 0); };
}

/// Calls `use` with the function of an operation that has two operands.
template <typename Use>
auto withBinary(Operation operation, const Use& use) {
  switch (operation) {
    case Operation::kAdd:
      return use([](double a, double b) { return missingUnlessFinite(a + b); });
    case Operation::kSubtract:
      return use([](double a, double b) { return missingUnlessFinite(a - b); });
    case Operation::kMultiply:
      return use([](double a, double b) { return missingUnlessFinite(a * b); });
    case Operation::kDivide:
      return use([](double a, double b) { return missingUnlessFinite(a / b); });
    case Operation::kPower:
      // Of a missing value pow() knows that its power of 0 is 1.
      return use(
          [](double a, double b) { return missingUnlessFinite(std::pow(a, b)) + (a * 0 + b * 0); });
    case Operation::kLess:
      return use(comparison([](double a, double b) { return a < b; }));
    case Operation::kLessOrEqual:
      return use(comparison([](double a, double b) { return a <= b; }));
    case Operation::kGreater:
      return use(comparison([](double a, double b) { return a > b; }));
    case Operation::kGreaterOrEqual:
      return use(comparison([](double a, double b) { return a >= b; }));
    case Operation::kEqual:
      return use(comparison([](double a, double b) { return a == b; }));
    case Operation::kNotEqual:
      return use(comparison([](double a, double b) { return a != b; }));
    case Operation::kAnd:
      return use([](double a, double b) {
        const double left = degreeOf(a);
        const double right = degreeOf(b);
        return truthOfDegree(right < left ? right : left);
      });
    default:
      return use([](double a, double b) {
        const double left = degreeOf(a);
        const double right = degreeOf(b);
        return truthOfDegree(left > right ? left : right);
      });
  }
}

bool isUnary(Operation operation) {
  return operation >= Operation::kNegate && operation <= Operation::kCube;
}

bool isFulfilled(double outcome, double value) {
  return (outcome != 0) & (outcome * 0 == 0) & (value * 0 == 0);
}

/// The values of a step for a block, or one constant for all of them.
struct Operand {
  const double* values = nullptr;
  double constant = 0;
};

template <typename Function>
void fillBlock(const Function& function, const Operand& a, double* __restrict out,
               std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = function(a.values[i]);
}

template <typename Function>
void fillBlock(const Function& function, const Operand& a, const Operand& b, double* __restrict out,
               std::size_t count) {
  const double* const left = a.values;
  const double* const right = b.values;
  if (right == nullptr) {
    const double constant = b.constant;
    for (std::size_t i = 0; i < count; ++i) out[i] = function(left[i], constant);
  } else if (left == nullptr) {
    const double constant = a.constant;
    for (std::size_t i = 0; i < count; ++i) out[i] = function(constant, right[i]);
  } else {
    for (std::size_t i = 0; i < count; ++i) out[i] = function(left[i], right[i]);
  }
}

struct Symbol {
  std::string_view text;  ///< in lower case
  Operation operation;
};

/// A text that another one begins with stands behind it.
constexpr std::array<Symbol, 22> kBinarySymbols = {{
    {"**", Operation::kPower},    {"<=", Operation::kLessOrEqual},
    {"<>", Operation::kNotEqual}, {">=", Operation::kGreaterOrEqual},
    {"~=", Operation::kNotEqual}, {"<", Operation::kLess},
    {">", Operation::kGreater},   {"=", Operation::kEqual},
    {"+", Operation::kAdd},       {"-", Operation::kSubtract},
    {"*", Operation::kMultiply},  {"/", Operation::kDivide},
    {"&", Operation::kAnd},       {"|", Operation::kOr},
    {"and", Operation::kAnd},     {"or", Operation::kOr},
    {"lt", Operation::kLess},     {"le", Operation::kLessOrEqual},
    {"gt", Operation::kGreater},  {"ge", Operation::kGreaterOrEqual},
    {"eq", Operation::kEqual},    {"ne", Operation::kNotEqual},
}};

constexpr int kComparisonRank = 4;

int rankOf(Operation operation) {
  switch (operation) {
    case Operation::kOr:
      return 1;
    case Operation::kAnd:
      return 2;
    case Operation::kNot:
      return 3;
    case Operation::kAdd:
    case Operation::kSubtract:
      return 5;
    case Operation::kMultiply:
    case Operation::kDivide:
      return 6;
    case Operation::kNegate:
      return 7;
    case Operation::kPower:
      return 8;
    default:
      return kComparisonRank;
  }
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Turns the text of an expression into steps; see the head of the header for the method.
class Compiler {
 public:
  explicit Compiler(std::string_view text) : text_(text) {}

  std::vector<Step> run();
  std::size_t stackSize() const { return stackSize_; }

 private:
  /// An operator that waits for its last operand, or a parenthesis for its end.
  struct Waiting {
    Operation operation;
    bool isParenthesis = false;
  };

  void readOperand();
  void readOperator();
  void readNumber();
  void closeParenthesis();
  void skipBlanks();
  bool take(std::string_view symbol);
  void wait(Waiting waiting, std::size_t place);
  void countPart(std::size_t place);
  void emitWaiting();
  void emitOperand(Step step, std::size_t place);
  void emit(Operation operation);
  [[noreturn]] void fail(const std::string& what, std::size_t place) const;
  [[noreturn]] void failAtEnd() const;

  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t parts_ = 0;
  bool expectsOperand_ = true;
  std::vector<Waiting> waiting_;
  std::vector<Step> steps_;
  std::size_t values_ = 0;  ///< on the stack of who carries out the steps so far
  std::size_t stackSize_ = 0;
};

std::vector<Step> Compiler::run() {
  for (skipBlanks(); at_ < text_.size(); skipBlanks()) {
    if (expectsOperand_) {
      readOperand();
    } else {
      readOperator();
    }
  }
  if (expectsOperand_) failAtEnd();
  while (!waiting_.empty()) {
    if (waiting_.back().isParenthesis) failAtEnd();
    emitWaiting();
  }
  return std::move(steps_);
}

void Compiler::readOperand() {
  const std::size_t place = at_;
  if (isDigit(text_[at_]) || text_[at_] == '.') {
    readNumber();
  } else if (take("x")) {
    emitOperand({Operation::kValue}, place);
  } else if (take("-")) {
    wait({Operation::kNegate}, place);
  } else if (take("not") || take("~")) {
    wait({Operation::kNot}, place);
  } else if (take("(")) {
    wait({Operation::kValue, true}, place);
  } else if (take("abs")) {
    skipBlanks();
    if (!take("(")) fail(localized("is not understood"), place);
    wait({Operation::kAbsolute, true}, place);
  } else if (!take("+")) {
    fail(localized("is not understood"), place);
  }
}

void Compiler::readOperator() {
  const std::size_t place = at_;
  if (take(")")) {
    at_ = place;
    closeParenthesis();
    return;
  }
  const auto* const symbol = std::find_if(kBinarySymbols.begin(), kBinarySymbols.end(),
                                          [&](const Symbol& known) { return take(known.text); });
  if (symbol == kBinarySymbols.end()) fail(localized("is not understood"), place);
  const int rank = rankOf(symbol->operation);
  const bool joinsFromRight = symbol->operation == Operation::kPower;
  while (!waiting_.empty() && !waiting_.back().isParenthesis) {
    const int waitingRank = rankOf(waiting_.back().operation);
    if (waitingRank < rank || (waitingRank == rank && joinsFromRight)) break;
    if (waitingRank == rank && rank == kComparisonRank)
      fail(localized("compares a comparison"), place);
    emitWaiting();
  }
  wait({symbol->operation}, place);
  expectsOperand_ = true;
}

void Compiler::readNumber() {
  const std::size_t place = at_;
  std::size_t end = at_;
  const auto skipDigits = [&] {
    while (end < text_.size() && isDigit(text_[end])) ++end;
  };
  skipDigits();
  if (end < text_.size() && text_[end] == '.') ++end;
  skipDigits();
  // An "e" without digits behind it begins the next word: 5eq3.
  if (end < text_.size() && lower(text_[end]) == 'e') {
    const std::size_t mantissaEnd = end++;
    if (end < text_.size() && (text_[end] == '+' || text_[end] == '-')) ++end;
    if (end < text_.size() && isDigit(text_[end])) {
      skipDigits();
    } else {
      end = mantissaEnd;
    }
  }
  double number = 0;
  const auto [last, error] = std::from_chars(text_.data() + place, text_.data() + end, number);
  if (error == std::errc::result_out_of_range) fail(localized("has a number out of range"), place);
  if (error != std::errc() || last != text_.data() + end)
    fail(localized("is not understood"), place);
  at_ = end;
  emitOperand({Operation::kConstant, number}, place);
}

void Compiler::closeParenthesis() {
  while (!waiting_.empty() && !waiting_.back().isParenthesis) emitWaiting();
  if (waiting_.empty()) fail(localized("is not understood"), at_);
  const bool isAbsolute = waiting_.back().operation == Operation::kAbsolute;
  waiting_.pop_back();
  if (isAbsolute) emit(Operation::kAbsolute);
  ++at_;
}

void Compiler::skipBlanks() {
  while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
}

bool Compiler::take(std::string_view symbol) {
  const std::string_view found = text_.substr(at_, symbol.size());
  if (!std::equal(found.begin(), found.end(), symbol.begin(), symbol.end(),
                  [](char a, char b) { return lower(a) == b; })) {
    return false;
  }
  at_ += symbol.size();
  return true;
}

void Compiler::wait(Waiting waiting, std::size_t place) {
  countPart(place);
  if (waiting_.size() == CellExpression::kMaxDepth) fail(localized("is nested too deeply"), place);
  waiting_.push_back(waiting);
}

void Compiler::countPart(std::size_t place) {
  if (++parts_ > CellExpression::kMaxParts) fail(localized("is too long"), place);
}

void Compiler::emitWaiting() {
  const Operation operation = waiting_.back().operation;
  waiting_.pop_back();
  emit(operation);
}

void Compiler::emitOperand(Step step, std::size_t place) {
  countPart(place);
  steps_.push_back(step);
  stackSize_ = std::max(stackSize_, ++values_);
  expectsOperand_ = false;
}

void Compiler::emit(Operation operation) {
  const auto isConstant = [&](std::size_t fromEnd) {
    return steps_[steps_.size() - fromEnd].operation == Operation::kConstant;
  };
  if (isUnary(operation)) {
    if (isConstant(1)) {
      double& constant = steps_.back().constant;
      constant = withUnary(operation, [&](auto function) { return function(constant); });
    } else {
      steps_.push_back({operation});
    }
    return;
  }
  --values_;
  if (!isConstant(1)) {
    steps_.push_back({operation});
    return;
  }
  const double right = steps_.back().constant;
  // The last two steps are the two operands only if the second is a single step, which it is here.
  if (isConstant(2)) {
    steps_.pop_back();
    double& left = steps_.back().constant;
    left = withBinary(operation, [&](auto function) { return function(left, right); });
  } else if (operation == Operation::kPower && (right == 2 || right == 3)) {
    steps_.back() = {right == 2 ? Operation::kSquare : Operation::kCube};
  } else {
    steps_.push_back({operation});
  }
}

void Compiler::fail(const std::string& what, std::size_t place) const {
  const std::string_view before = text_.substr(0, place);
  // Bytes that go on with a character do not count.
  const auto characters = std::count_if(before.begin(), before.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  });
  throw ChangeError(localized("at character ^1 the condition ^2: \"^3\"", characters + 1, what,
                              textHead(text_.substr(place), kShownColumns)));
}

void Compiler::failAtEnd() const {
  throw ChangeError(
      localized("at its end the condition is incomplete: \"^1\"", textHead(text_, kShownColumns)));
}

}  // namespace

CellExpression CellExpression::compile(std::string_view text) {
  Compiler compiler(text);
  CellExpression expression;
  expression.steps_ = compiler.run();
  expression.stackSize_ = compiler.stackSize();
  return expression;
}

void CellExpression::evaluate(std::span<const double> values,
                              std::span<std::uint8_t> result) const {
  if (values.size() != result.size()) {
    throw std::invalid_argument("there is not one result for each value");
  }
  // Two blocks for each place of the stack: a step never writes to what it reads.
  std::vector<double> blocks(stackSize_ * 2 * kBlock);
  std::vector<Operand> stack(stackSize_);
  for (std::size_t start = 0; start < values.size(); start += kBlock) {
    const std::size_t count = std::min(kBlock, values.size() - start);
    const double* const x = values.data() + start;
    std::size_t top = 0;  // operands on the stack
    const auto freeBlock = [&](std::size_t place) {
      double* const first = blocks.data() + place * 2 * kBlock;
      return stack[place].values == first ? first + kBlock : first;
    };
    for (const Step& step : steps_) {
      if (step.operation == Operation::kValue) {
        stack[top++] = {x, 0};
      } else if (step.operation == Operation::kConstant) {
        stack[top++] = {nullptr, step.constant};
      } else if (isUnary(step.operation)) {
        double* const out = freeBlock(top - 1);
        withUnary(step.operation,
                  [&](auto function) { fillBlock(function, stack[top - 1], out, count); });
        stack[top - 1] = {out, 0};
      } else {
        --top;
        double* const out = freeBlock(top - 1);
        withBinary(step.operation, [&](auto function) {
          fillBlock(function, stack[top - 1], stack[top], out, count);
        });
        stack[top - 1] = {out, 0};
      }
    }
    const Operand& outcome = stack[0];
    std::uint8_t* __restrict judged = result.data() + start;
    for (std::size_t i = 0; i < count; ++i) {
      const double value = outcome.values == nullptr ? outcome.constant : outcome.values[i];
      judged[i] = static_cast<std::uint8_t>(isFulfilled(value, x[i]));
    }
  }
}

bool CellExpression::operator()(double value) const {
  std::uint8_t result = 0;
  evaluate({&value, 1}, {&result, 1});
  return result != 0;
}

}  // namespace vornwout
