// A condition over the value of a cell, as SELECTCONDITION of OUTPUT MODIFY gives it: "x>5andx<10".
//
// CellExpression::compile() reads the text once; evaluate() then judges any number of values, block
// by block. From the loosest to the tightest there are
//
//     OR |   AND &   NOT ~   < <= > >= = <> ~= LT LE GT GE EQ NE   + -   * /   - (of one value) **
//
// and ABS(...), parentheses, numbers and x, without regard to case. Nothing need stand between two
// of them, so a word ends where no operator goes on: "NOTx=3", "5eq3". Operators of one rank join
// from the left, ** from the right; comparisons do not join, because 1<x<3 means nothing that its
// writer had in mind.
//
// The text becomes a list of steps for a machine with a stack, made with a stack and not by
// recursion. A truth is 1, 0 or, where it is missing, no number: that is what 0 times a number that
// is not finite gives, so all steps are plain arithmetic that a compiler turns into vector code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vornwout {

class CellExpression {
 public:
  /// Operators and parentheses that may wait for what stands behind them.
  static constexpr std::size_t kMaxDepth = 200;
  /// Values, operators and parentheses of an expression.
  static constexpr std::size_t kMaxParts = 1000;

  /// Throws ChangeError with the place of what is no expression.
  static CellExpression compile(std::string_view text);

  /// Whether each value fulfils the condition, as 1 or 0. A value that is not finite is a missing
  /// one and never does, and neither does one of which nothing can be said, as of 0 in 1/x>2. A
  /// number alone is true when it is not zero. Throws std::invalid_argument unless `result` is as
  /// long as `values`.
  void evaluate(std::span<const double> values, std::span<std::uint8_t> result) const;
  bool operator()(double value) const;

  enum class Operation : std::uint8_t {
    kValue,
    kConstant,
    kNegate,
    kAbsolute,
    kNot,
    kSquare,
    kCube,
    kAdd,
    kSubtract,
    kMultiply,
    kDivide,
    kPower,
    kLess,
    kLessOrEqual,
    kGreater,
    kGreaterOrEqual,
    kEqual,
    kNotEqual,
    kAnd,
    kOr,
  };
  struct Step {
    Operation operation;
    double constant = 0;
  };

 private:
  CellExpression() = default;

  std::vector<Step> steps_;    ///< operands before their operator
  std::size_t stackSize_ = 0;  ///< values that wait at a time
};

}  // namespace vornwout
