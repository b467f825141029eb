#include "host/changes/cell_expression.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/changes/change_notes.h"

namespace vornwout {
namespace {

const double kInfinity = std::numeric_limits<double>::infinity();
const double kNone = std::numeric_limits<double>::quiet_NaN();

struct ValueCase {
  const char* text;
  std::vector<double> fulfilled;
  std::vector<double> notFulfilled;
};

void PrintTo(const ValueCase& c, std::ostream* stream) { *stream << c.text; }

class CellExpressionTest : public testing::TestWithParam<ValueCase> {};

TEST_P(CellExpressionTest, ValuesThatFulfilItAreFound) {
  const CellExpression expression = CellExpression::compile(GetParam().text);
  for (const double x : GetParam().fulfilled) EXPECT_TRUE(expression(x)) << x;
  for (const double x : GetParam().notFulfilled) EXPECT_FALSE(expression(x)) << x;
}

INSTANTIATE_TEST_SUITE_P(
    Comparisons, CellExpressionTest,
    testing::Values(ValueCase{"x<5", {4, -5}, {5, 6}}, ValueCase{"x<=5", {4, 5}, {6}},
                    ValueCase{"x>5", {6}, {5, 4}}, ValueCase{"x>=5", {6, 5}, {4}},
                    ValueCase{"x=5", {5}, {4, 6}}, ValueCase{"x<>5", {4, 6}, {5}},
                    ValueCase{"x~=5", {4, 6}, {5}}, ValueCase{"xLT5", {4}, {5, 6}},
                    ValueCase{"xle5", {4, 5}, {6}}, ValueCase{"xGt5", {6}, {5, 4}},
                    ValueCase{"xge5", {6, 5}, {4}}, ValueCase{"xeq5", {5}, {4, 6}},
                    ValueCase{"xne5", {4, 6}, {5}}, ValueCase{"5ltx", {6}, {5, 4}},
                    ValueCase{"5=x", {5}, {4}}, ValueCase{"X=5", {5}, {4}},
                    ValueCase{" x >\t5\n", {6}, {5}}));

INSTANTIATE_TEST_SUITE_P(Numbers, CellExpressionTest,
                         testing::Values(ValueCase{"x>=1e3|x=-2", {1000, -2}, {999, 2}},
                                         ValueCase{"x=1.5E-2", {0.015}, {1.5}},
                                         ValueCase{"x=.5", {0.5}, {5}}, ValueCase{"x=5.", {5}, {4}},
                                         ValueCase{"x=+5", {5}, {-5}},
                                         // The "e" of a word is no exponent.
                                         ValueCase{"5eqx", {5}, {50}}));

INSTANTIATE_TEST_SUITE_P(
    Arithmetic, CellExpressionTest,
    testing::Values(ValueCase{"x+1=3", {2}, {3}}, ValueCase{"x-1=3", {4}, {3}},
                    ValueCase{"1-x=3", {-2}, {2}}, ValueCase{"x*2=6", {3}, {6}},
                    ValueCase{"x/2=6", {12}, {6}}, ValueCase{"6/x=2", {3}, {12}},
                    ValueCase{"x**2=9", {3, -3}, {9}}, ValueCase{"x**3=-8", {-2}, {2}},
                    ValueCase{"x**0.5=3", {9}, {3, -9}}, ValueCase{"2**x=8", {3}, {4}},
                    ValueCase{"-x=3", {-3}, {3}}, ValueCase{"--x=3", {3}, {-3}},
                    ValueCase{"abs(x)>2", {3, -3}, {2, -2}}, ValueCase{"ABS (x-1)=1", {0, 2}, {1}},
                    ValueCase{"x", {1, -1, 0.5}, {0}}, ValueCase{"x-2", {1}, {2}},
                    ValueCase{"1", {0, 5}, {}}, ValueCase{"0", {}, {0, 5}},
                    ValueCase{"(x>1)+(x>2)=2", {3}, {2, 1}}));

INSTANTIATE_TEST_SUITE_P(
    Ranks, CellExpressionTest,
    testing::Values(ValueCase{"x+2*3=7", {1}, {}}, ValueCase{"x*2+3=5", {1}, {}},
                    ValueCase{"x-2-3=1", {6}, {0}}, ValueCase{"x/2/3=1", {6}, {1.5}},
                    ValueCase{"2**x**2=512", {3, -3}, {}}, ValueCase{"-x**2=-4", {2}, {}},
                    ValueCase{"2**-x=0.25", {2}, {}}, ValueCase{"2**-x*8=2", {2}, {}},
                    ValueCase{"x*-2=6", {-3}, {3}}, ValueCase{"(x+2)*3=9", {1}, {}},
                    ValueCase{"x=1|x=2&x=3", {1}, {2, 3}}, ValueCase{"(x=1|x=2)&x=2", {2}, {1}},
                    ValueCase{"NOTx=3", {2}, {3}}, ValueCase{"~x=3", {2}, {3}},
                    ValueCase{"notx=3andx>0", {2}, {3, -1}},
                    ValueCase{"not(x=3orx>4)", {2}, {3, 5}}, ValueCase{"x&~x=3", {2}, {0, 3}},
                    ValueCase{"notnotx=3", {3}, {2}}, ValueCase{"x>5andx<10", {6, 9}, {5, 10}},
                    ValueCase{"x<5ORx>10", {4, 11}, {5, 10}}));

INSTANTIATE_TEST_SUITE_P(
    Missing, CellExpressionTest,
    testing::Values(ValueCase{"x<>5", {}, {kNone, kInfinity, -kInfinity}},
                    ValueCase{"notx=5", {}, {kNone, kInfinity}}, ValueCase{"x", {}, {kInfinity}},
                    ValueCase{"1", {}, {kNone, kInfinity}}, ValueCase{"x>5|1", {}, {kNone}},
                    ValueCase{"x**0=1", {4, 0}, {kNone}},
                    // What cannot be computed is missing, but the other side may decide.
                    ValueCase{"1/x<>2", {1}, {0}}, ValueCase{"not(1/x=2)", {1}, {0}},
                    ValueCase{"1/x=1|x<1", {1, 0}, {2}}, ValueCase{"x<1|1/x=1", {1, 0}, {2}},
                    ValueCase{"not(1/x=1&x>1)", {0, 1}, {}},
                    ValueCase{"not(x>1&1/x=1)", {0, 1}, {}},
                    ValueCase{"not(1/x=1|x>1)", {}, {0, 1}}, ValueCase{"1/(1/x)=0", {}, {0}},
                    ValueCase{"x*1e308*10=0|1", {1}, {kNone}},
                    ValueCase{"1/(x*1e308*10)=0", {}, {1}},
                    ValueCase{"(x-9)**0.5<>1", {13}, {0, 10}}));

struct FaultCase {
  std::string text;
  std::string message;
};

void PrintTo(const FaultCase& c, std::ostream* stream) { *stream << c.text; }

class CellExpressionFaultTest : public testing::TestWithParam<FaultCase> {};

TEST_P(CellExpressionFaultTest, PlaceOfWhatIsNoExpressionIsNamed) {
  try {
    CellExpression::compile(GetParam().text);
    FAIL() << "compiled";
  } catch (const ChangeError& error) {
    EXPECT_EQ(error.what(), GetParam().message);
  }
}

INSTANTIATE_TEST_SUITE_P(
    CellExpression, CellExpressionFaultTest,
    testing::Values(
        FaultCase{"", "at its end the condition is incomplete: \"\""},
        FaultCase{"  ", "at its end the condition is incomplete: \"  \""},
        FaultCase{"x>", "at its end the condition is incomplete: \"x>\""},
        FaultCase{"(x>5", "at its end the condition is incomplete: \"(x>5\""},
        FaultCase{"abs(x", "at its end the condition is incomplete: \"abs(x\""},
        FaultCase{"not", "at its end the condition is incomplete: \"not\""},
        FaultCase{"x>5)", "at character 4 the condition is not understood: \")\""},
        FaultCase{")", "at character 1 the condition is not understood: \")\""},
        FaultCase{"()", "at character 2 the condition is not understood: \")\""},
        FaultCase{"y>5", "at character 1 the condition is not understood: \"y>5\""},
        FaultCase{"x>5foo", "at character 4 the condition is not understood: \"foo\""},
        FaultCase{"x>5x", "at character 4 the condition is not understood: \"x\""},
        FaultCase{"xx", "at character 2 the condition is not understood: \"x\""},
        FaultCase{"x5", "at character 2 the condition is not understood: \"5\""},
        FaultCase{"x==5", "at character 3 the condition is not understood: \"=5\""},
        FaultCase{"x>*5", "at character 3 the condition is not understood: \"*5\""},
        FaultCase{"x>.", "at character 3 the condition is not understood: \".\""},
        FaultCase{"absx", "at character 1 the condition is not understood: \"absx\""},
        FaultCase{"x>1.2.3", "at character 6 the condition is not understood: \".3\""},
        FaultCase{"x>5e", "at character 4 the condition is not understood: \"e\""},
        FaultCase{"x>5andé", "at character 7 the condition is not understood: \"é\""},
        FaultCase{"x=5é>1", "at character 4 the condition is not understood: \"é>1\""},
        FaultCase{"sqrt(x)", "at character 1 the condition is not understood: \"sqrt(x)\""},
        FaultCase{"x>1e999", "at character 3 the condition has a number out of range: \"1e999\""},
        FaultCase{"1<x<3", "at character 4 the condition compares a comparison: \"<3\""},
        FaultCase{"x=1ne2", "at character 4 the condition compares a comparison: \"ne2\""}));

std::string repeated(const std::string& text, std::size_t count) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(CellExpression, NestingUpToItsLimitIsUnderstoodAndBeyondRefused) {
  const std::size_t limit = CellExpression::kMaxDepth;
  for (const char* opening : {"(", "-", "~", "abs(", "x**"}) {
    const std::string closing = std::string(opening).find('(') == std::string::npos ? "" : ")";
    EXPECT_NO_THROW(
        CellExpression::compile(repeated(opening, limit) + "x" + repeated(closing, limit)))
        << opening;
    EXPECT_THROW(
        CellExpression::compile(repeated(opening, limit + 1) + "x" + repeated(closing, limit + 1)),
        ChangeError)
        << opening;
    EXPECT_THROW(CellExpression::compile(repeated(opening, 1'000'000)), ChangeError) << opening;
  }
}

TEST(CellExpression, LengthUpToItsLimitIsUnderstoodAndBeyondRefused) {
  // n values and n - 1 operators.
  const std::size_t most = CellExpression::kMaxParts / 2;
  EXPECT_TRUE(CellExpression::compile(repeated("x+", most - 1) + "x")(1));
  EXPECT_THROW(CellExpression::compile(repeated("x+", most) + "x"), ChangeError);
}

TEST(CellExpression, ResultsOfAnotherNumberThanValuesAreRefused) {
  const std::vector<double> values(3);
  std::vector<std::uint8_t> result(2);
  EXPECT_THROW(CellExpression::compile("x").evaluate(values, result), std::invalid_argument);
}

/// An expression as a tree, judged by the rules themselves.
struct Node {
  std::string text;
  std::function<std::optional<double>(double)> value;
};

using Value = std::optional<double>;

Value finite(double value) { return std::isfinite(value) ? Value(value) : std::nullopt; }

Node randomNode(std::mt19937& random, int depth) {
  const auto pick = [&](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  if (depth == 0 || pick(5) == 0) {
    if (pick(2) == 0) return {"x", [](double x) { return finite(x); }};
    const int number = pick(5);
    return {std::to_string(number), [=](double) { return Value(number); }};
  }
  const Node a = randomNode(random, depth - 1);
  if (pick(5) == 0) {
    switch (pick(3)) {
      case 0:
        return {"-(" + a.text + ")", [=](double x) {
                  const Value v = a.value(x);
                  return v ? Value(-*v) : v;
                }};
      case 1:
        return {"Abs(" + a.text + ")", [=](double x) {
                  const Value v = a.value(x);
                  return v ? Value(std::fabs(*v)) : v;
                }};
      default:
        return {"not(" + a.text + ")", [=](double x) {
                  const Value v = a.value(x);
                  return v ? Value(*v == 0 ? 1 : 0) : v;
                }};
    }
  }
  const Node b = randomNode(random, depth - 1);
  const auto arithmetic = [&](const char* name, auto function) {
    return Node{"(" + a.text + ")" + name + "(" + b.text + ")", [=](double x) {
                  const Value left = a.value(x);
                  const Value right = b.value(x);
                  return left && right ? finite(function(*left, *right)) : std::nullopt;
                }};
  };
  switch (pick(13)) {
    case 0:
      return arithmetic("+", [](double l, double r) { return l + r; });
    case 1:
      return arithmetic("-", [](double l, double r) { return l - r; });
    case 2:
      return arithmetic("*", [](double l, double r) { return l * r; });
    case 3:
      return arithmetic("/", [](double l, double r) { return l / r; });
    case 4:
      return arithmetic("**", [](double l, double r) { return std::pow(l, r); });
    case 5:
      return arithmetic("lt", [](double l, double r) { return l < r ? 1.0 : 0.0; });
    case 6:
      return arithmetic("<=", [](double l, double r) { return l <= r ? 1.0 : 0.0; });
    case 7:
      return arithmetic("GT", [](double l, double r) { return l > r ? 1.0 : 0.0; });
    case 8:
      return arithmetic(">=", [](double l, double r) { return l >= r ? 1.0 : 0.0; });
    case 9:
      return arithmetic("eq", [](double l, double r) { return l == r ? 1.0 : 0.0; });
    case 10:
      return arithmetic("<>", [](double l, double r) { return l != r ? 1.0 : 0.0; });
    case 11:
      return {"(" + a.text + ")And(" + b.text + ")", [=](double x) {
                const Value left = a.value(x);
                const Value right = b.value(x);
                if (left == 0.0 || right == 0.0) return Value(0);
                return left && right ? Value(1) : std::nullopt;
              }};
    default:
      return {"(" + a.text + ")|(" + b.text + ")", [=](double x) {
                const Value left = a.value(x);
                const Value right = b.value(x);
                if ((left && *left != 0) || (right && *right != 0)) return Value(1);
                return left && right ? Value(0) : std::nullopt;
              }};
  }
}

TEST(CellExpression, AnyExpressionIsWhatItsPartsAreInBlocksAndAlone) {
  std::mt19937 random(20261120);
  std::vector<double> values = {kNone, kInfinity, -kInfinity, 0, -0.0, 1e308, -1e308, 1e-310};
  // More than one block, the last one not full.
  while (values.size() < 700) values.push_back(static_cast<double>(random() % 21) / 2 - 5);
  std::vector<std::uint8_t> result(values.size());
  for (int round = 0; round < 300; ++round) {
    const Node node = randomNode(random, 4);
    const CellExpression expression = CellExpression::compile(node.text);
    expression.evaluate(values, result);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const Value value = node.value(values[i]);
      const bool expected = std::isfinite(values[i]) && value && *value != 0;
      ASSERT_EQ(result[i], expected ? 1 : 0) << node.text << " of " << values[i];
      if (i >= 30) continue;
      ASSERT_EQ(expression(values[i]), expected) << node.text << " of " << values[i];
    }
  }
}

}  // namespace
}  // namespace vornwout
