#include <gtest/gtest.h>

#include <bit>

#include "base/null_number.h"
#include "jit/tests/library_parser.h"
#include "jit/tests/random_expression.h"
#include "jit/tests/system_functions.h"

namespace kelvarin::jit {

namespace {

constexpr double kValues[] = {2.0, 3.0, 5.0, -0.5, 7.0};

std::uint64_t bitsOf(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

class Language : public testing::Test {
 protected:
  Language() : m_context(systemContext()) {
    for (std::size_t i = 0; i < LibraryParser::kVariables.size(); ++i) {
      m_context.addVariable(LibraryParser::kVariables[i], i);
    }
  }

  std::unique_ptr<CompiledFunction> compile(std::string_view expression) {
    return m_context.compile(expression, m_failure);
  }

  // NaN where it does not compile, so that no comparison holds.
  double valueOf(std::string_view expression) {
    const auto function = compile(expression);
    return function == nullptr ? std::nan("") : (*function)(kValues);
  }

  CompileFailure failureOf(std::string_view expression) {
    EXPECT_EQ(compile(expression), nullptr) << expression;
    return m_failure;
  }

  CompilerContext m_context;
  CompileFailure m_failure;
};

TEST_F(Language, BindsAsTheLibraryDoes) {
  LibraryParser parser;
  for (const char* expression : {"-2^2",           "2^3^2",       "2^-2",
                                 "2^-a^2",         "2^-a*3",      "2*-3^2",
                                 "a--b^2",         "2^3{k}",      "-2{k}^2",
                                 "a%-b*c",         "a*-b%c",      "-7%4*2",
                                 "2*7%4",          "a-2*3^2-1",   "1<2<3",
                                 "a!=b==c>1",      "a-b<c-a",     "1||0&&0",
                                 "1&&0||1",        "0?1:2?3:4",   "1?0?3:4:5",
                                 "1?2:3+4",        "1+0?2:3",     "1>2?3:4>5",
                                 "a?b:-c^2",       "a&&b?1:2&&c", "-a?-b:-c",
                                 "2-sum(a,b)^2",   "sum(a?b:c)",  "min(a?1:2,3)",
                                 "sum+sum(sum,1)", "(a?0:1)?2:3", "a<-b",
                                 "2^+b",           "a\n+\tb\r*c", "1e5-3",
                                 "1.e2",           ".5e+1",       "00012",
                                 "0x1F+0xe",       "0x0",         "e^2-2e2",
                                 "a {k}",          "(a){m}",      "rint(2.5)",
                                 "abs(-0.0)",      "-0",          "_pi-pi",
                                 "_e-e",           "log2(8)",     "avg(1,2,4)",
                                 "max(3)",         "sign(-3)"}) {
    ASSERT_TRUE(parser.setExpression(expression)) << expression;
    ASSERT_NE(compile(expression), nullptr) << expression << ": " << m_failure.reason;
    EXPECT_EQ(bitsOf(valueOf(expression)), bitsOf(parser.evaluate(kValues))) << expression;
  }
}

TEST_F(Language, PowersTwoToFourAreProducts) {
  const double x = 1.1;
  m_context.addConstant("x", x);
  EXPECT_EQ(valueOf("x^3"), x * x * x);
  EXPECT_EQ(valueOf("x^(a+2)"), x * x * x * x);
  EXPECT_EQ(valueOf("x^3.5"), std::pow(x, 3.5));
}

TEST_F(Language, PowersOfANullAreNullUnlessTheyDoNotDependOnIt) {
  m_context.addConstant("null", kNullNumber);
  m_context.addConstant("nan", kNotANumber);
  for (const char* expression : {"null^1", "null^2", "null^5", "null^-1", "null^a", "2^null",
                                 "nan^null", "null^nan", "pow(null,3)", "pow(a,null)"}) {
    EXPECT_TRUE(isNullNumber(valueOf(expression))) << expression;
  }
  EXPECT_EQ(valueOf("null^0 + 1^null + pow(null,0) + pow(1,null)"), 4.0);
  EXPECT_TRUE(std::isnan(valueOf("nan^5")) && !isNullNumber(valueOf("nan^5")));
}

TEST_F(Language, UnitsScale) {
  const double x = 7.0;
  EXPECT_EQ(valueOf("sum{n}"), x * 1e-9);
  EXPECT_EQ(valueOf("sum{u}"), x * 1e-6);
  EXPECT_EQ(valueOf("sum{mu}"), x * 1e-6);
  EXPECT_EQ(valueOf("sum{m}"), x * 1e-3);
  EXPECT_EQ(valueOf("sum{k}"), x * 1e3);
  EXPECT_EQ(valueOf("sum{M}"), x * 1e6);
  EXPECT_EQ(valueOf("sum{G}"), x * 1e9);
}

TEST_F(Language, NullsFollowTheirRules) {
  EXPECT_EQ(valueOf("isNuLL(_null)+isMissing(_null)*2+isNuLL(_nan)*4"), 3.0);
  EXPECT_EQ(valueOf("isNan(_nan)+isNan(_null)*2"), 1.0);
  EXPECT_EQ(valueOf("isFinite(1)+isFinite(_infinity)*2+isFinite(_null)*4"), -1.0);
  EXPECT_EQ(valueOf("isTrue(_null)+isTrue(0)*2+isTrue(_nan)*4"), 4.0);
  EXPECT_EQ(valueOf("not(_nan)+not(0)*2"), 2.0);
  EXPECT_EQ(valueOf("nanvl(_null,5)+nanvl2(_nan,1,2)+nvl2(_null,1,2)"), 9.0);
  EXPECT_EQ(valueOf("finitevl(_infinity,4)+finitevl2(1,2,3)"), 6.0);
  EXPECT_EQ(valueOf("floor2(7,3)*100+floor2(-7,3)"), 591.0);
  for (const char* expression : {"not(_null)", "floor2(7,_null)", "_null+a", "a*_null-1",
                                 "nvl(_null,_null)", "sqrt(_null)", "-_null", "abs(-_null)", "0?1:_null", "min(_null,1)"}) {
    EXPECT_EQ(bitsOf(valueOf(expression)), kNullNumberBits) << expression;
  }
  EXPECT_EQ(bitsOf(valueOf("nvl(_nan,5)")), kNotANumberBits);
  EXPECT_EQ(valueOf("_null ? 1 : 2"), 1.0);  // a NaN is true
}

TEST_F(Language, AColumnWinsOverAConstantAndOwnNamesOverSharedOnes) {
  m_context.addVariable("e", 1);
  m_context.addConstant("_null", 8.0);
  m_context.addFunction("sin", Function1([](double x) { return x + 1.0; }));
  EXPECT_EQ(valueOf("e*10+sin(a)+_null"), 41.0);
  m_context.addVariable(
      "gr\xF6\xDF"
      "e",
      2);
  EXPECT_EQ(valueOf("gr\xF6\xDF"
                    "e*2"),
            10.0);
}

TEST_F(Language, AnIntrinsicOfAnotherArityIsCalled) {
  m_context.addFunction("twice", Function1([](double x) { return x * 2.0; }), Intrinsic::nvl);
  EXPECT_EQ(valueOf("twice(a)"), 4.0);
}

struct Refusal {
  const char* expression;
  CompileStatus status;
  int position;
};

TEST_F(Language, RefusesWithThePlaceOfTheFault) {
  for (const Refusal& refusal : {
           Refusal{"", CompileStatus::syntaxError, 0},
           {" \t", CompileStatus::syntaxError, 2},
           {"a=5", CompileStatus::unsupported, 1},
           {"1,2", CompileStatus::unsupported, 1},
           {"(1,2)", CompileStatus::unsupported, 2},
           {"\"x\"", CompileStatus::unsupported, 0},
           {"1e400", CompileStatus::unsupported, 0},
           {"0x100000000", CompileStatus::unsupported, 0},
           {"a+nope", CompileStatus::unknownName, 2},
           {"a+nope(1)", CompileStatus::unknownName, 2},
           {"sin", CompileStatus::unknownName, 0},
           {"sin (1)", CompileStatus::unknownName, 0},
           {"isNull(a)", CompileStatus::unknownName, 0},
           {"floor(a)", CompileStatus::unknownName, 0},
           {"a+", CompileStatus::syntaxError, 2},
           {"--a", CompileStatus::syntaxError, 1},
           {"a b", CompileStatus::syntaxError, 2},
           {"2a", CompileStatus::syntaxError, 1},
           {"2e", CompileStatus::syntaxError, 1},
           {".", CompileStatus::syntaxError, 0},
           {"1.2.3", CompileStatus::syntaxError, 3},
           {"a{k}{k}", CompileStatus::syntaxError, 4},
           {"a{x}", CompileStatus::syntaxError, 1},
           {"(a", CompileStatus::syntaxError, 2},
           {"a)", CompileStatus::syntaxError, 1},
           {"()", CompileStatus::syntaxError, 1},
           {"sin()", CompileStatus::syntaxError, 4},
           {"sum()", CompileStatus::syntaxError, 4},
           {"min(1,)", CompileStatus::syntaxError, 6},
           {"sin(1,2)", CompileStatus::syntaxError, 5},
           {"atan2(1)", CompileStatus::syntaxError, 7},
           {"1?2", CompileStatus::syntaxError, 1},
           {"1:2", CompileStatus::syntaxError, 1},
           {"(1?2):3", CompileStatus::syntaxError, 2},
           {"a&b", CompileStatus::syntaxError, 1},
           {"!a", CompileStatus::syntaxError, 0},
           {"a#b", CompileStatus::syntaxError, 1},
       }) {
    const CompileFailure failure = failureOf(refusal.expression);
    EXPECT_EQ(failure.status, refusal.status) << refusal.expression;
    EXPECT_EQ(failure.position, refusal.position) << refusal.expression;
    EXPECT_FALSE(failure.reason.empty()) << refusal.expression;
  }
  EXPECT_EQ(failureOf(std::string_view("a\0+b", 4)).position, 1);
}

TEST_F(Language, LimitsLengthAndNesting) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '(') + "a" + std::string(depth, ')');
  };
  EXPECT_EQ(valueOf(nested(100)), 2.0);
  EXPECT_EQ(failureOf(nested(9'000)).status, CompileStatus::tooLarge);
  std::string chain = "a";
  while (chain.size() + 2 < 19'999) {
    chain += "^a";
  }
  EXPECT_EQ(failureOf(chain).status, CompileStatus::tooLarge);
  std::string sum = "a";
  while (sum.size() + 2 < 20'000) {
    sum += "+a";
  }
  EXPECT_EQ(valueOf(sum), 20'000.0);
  EXPECT_EQ(failureOf(sum + " ").status, CompileStatus::tooLarge);
  EXPECT_EQ(failureOf("a+" + std::string(101, 'x')).status, CompileStatus::tooLarge);
}

std::string damaged(std::string expression, std::mt19937& random) {
  constexpr std::string_view characters = "ab25.eEx+-*/%^<>=!&|?:,(){} kmsin_\t#";
  const std::size_t place = random() % expression.size();
  const char character = characters[random() % characters.size()];
  switch (random() % 3) {
    case 0:
      expression[place] = character;
      return expression;
    case 1:
      return expression.insert(place, 1, character);
    default:
      return expression.erase(place, 1);
  }
}

TEST_F(Language, TakesNothingThatTheLibraryRefuses) {
  RandomExpression expressions(3);
  std::mt19937 random(4);
  LibraryParser parser;
  int acceptedCount = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::string expression = damaged(expressions.expression(), random);
    if (i % 2 == 0 && !expression.empty()) {
      expression = damaged(std::move(expression), random);
    }
    const auto function = compile(expression);
    if (function == nullptr) {
      continue;
    }
    ++acceptedCount;
    ASSERT_TRUE(parser.setExpression(expression)) << expression;
    ASSERT_EQ(bitsOf((*function)(kValues)), bitsOf(parser.evaluate(kValues))) << expression;
  }
  EXPECT_GT(acceptedCount, 1'000);
}

}  // namespace

}  // namespace kelvarin::jit
