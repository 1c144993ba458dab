// Help on functions of numbers.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kFirstCounts;
using null_rules::kGivesNull;

constexpr char kRandomNote[] =
    "Every row draws anew. The seed is the action's setting 'seed'; -1 takes it from the clock.";
constexpr char kDigitsNote[] =
    "A negative d rounds to tens, hundreds and so on. More than 16 digits leave x as it is.";

constexpr HelpEntry kEntries[] = {
    {"abs(x)", "absolute value of x (x<0?-x:x)", kGivesNull, "abs(-3.5)", "3.5", "abs(_null)",
     "null"},
    {"floor(x)", "returns the largest integer lower or equal to x", kGivesNull, "floor(-2.5)", "-3",
     "floor(2.9)", "2"},
    {"floor2(x,y)", "returns the largest multiple of y lower or equal to x", kGivesNull,
     "floor2(-7, 3)", "-9", "floor2(27, 5)", "25",
     "A negative y gives the smallest multiple that is not below x; y = 0 gives a NaN."},
    {"ceil(x)", "returns the smallest integer greater or equal to x", kGivesNull, "ceil(-2.5)",
     "-2", "ceil(2.1)", "3"},
    {"round(x)", "returns the closest integer to x", kGivesNull, "round(2.5)", "3", "round(-2.5)",
     "-3", "A half goes away from zero."},
    {"round2(x,d)", "rounds x to d digits after the decimal point", kGivesNull,
     "round2(1234.5678, -2)", "1200", "round2(1/3, 2)", "0.33", kDigitsNote},
    {"roundUp(x,d)", "rounds x away from zero, to d digits after the decimal point", kGivesNull,
     "roundUp(1.231, 2)", "1.24", "roundUp(-1.231, 2)", "-1.24", kDigitsNote},
    {"roundDown(x,d)", "rounds x towards zero, to d digits after the decimal point", kGivesNull,
     "roundDown(-1.239, 2)", "-1.23", "roundDown(1999, -3)", "1000", kDigitsNote},
    {"rand(x)", "uniform random number inside [0 x[", kGivesNull, "rand(10) < 10", "1", "rand(0)",
     "0", kRandomNote},
    {"randN(x)", "uniform random integer number inside [0 x[", kGivesNull, "randN(6) < 6", "1",
     "randN(1)", "0", kRandomNote},
    {"rand1()", "uniform random number inside [0 1[", nullptr, "rand1() < 1", "1", "rand1() >= 0",
     "1", kRandomNote},
    {"sin(x)", "sine of x (in radians)", kGivesNull, "sin(0)", "0", "sin(pi / 2)", "1"},
    {"cos(x)", "cosine of x (in radians)", kGivesNull, "cos(0)", "1", "cos(pi)", "-1"},
    {"tan(x)", "tangent of x (in radians)", kGivesNull, "tan(0)", "0",
     "abs(tan(pi / 4) - 1) < 1{n}", "1"},
    {"asin(x)", "arc sine of x, an angle in radians", kGivesNull, "asin(0)", "0", "asin(2)", "nan"},
    {"acos(x)", "arc cosine of x, an angle in radians", kGivesNull, "acos(1)", "0", "acos(-1)",
     "3.141592653589793"},
    {"atan(x)", "arc tangent of x, an angle in radians", kGivesNull, "atan(1) * 4",
     "3.141592653589793", "atan(_infinity) * 2", "3.141592653589793"},
    {"atan2(y,x)", "angle between the x axis and the point (x,y), in radians", kGivesNull,
     "atan2(1, 1) * 4", "3.141592653589793", "atan2(0, -1)", "3.141592653589793",
     "The String Parser declares it with one argument and so refuses two; of numbers alone, the "
     "other two parsers compute it."},
    {"cosh(x)", "hyperbolic sine", kGivesNull, "cosh(0)", "1", "cosh(1) > sinh(1)", "1",
     "It is the hyperbolic cosine."},
    {"sinh(x)", "hyperbolic cosine", kGivesNull, "sinh(0)", "0", "sinh(-1) < 0", "1",
     "It is the hyperbolic sine."},
    {"tanh(x)", "hyperbolic tangent", kGivesNull, "tanh(0)", "0", "tanh(_infinity)", "1"},
    {"asinh(x)", "inverse of sinh(x)", kGivesNull, "asinh(0)", "0",
     "abs(sinh(asinh(3)) - 3) < 1{n}", "1"},
    {"acosh(x)", "inverse of cosh(x)", kGivesNull, "acosh(1)", "0", "acosh(0)", "nan"},
    {"atanh(x)", "inverse of tanh(x)", kGivesNull, "atanh(0)", "0", "atanh(1)", "inf"},
    {"ln(x)", "Natural logarithm", kGivesNull, "ln(1)", "0", "ln(e)", "1"},
    {"log(x)", "Logarithm base 10", kGivesNull, "log(1)", "0", "log(e)", "1",
     "It is the natural logarithm, the same as ln(x). log10(x) has base 10."},
    {"log10(x)", "Logarithm base 10", kGivesNull, "log10(1000)", "3", "log10(0)", "-inf"},
    {"log2(x)", "Logarithm base 2", kGivesNull, "log2(8)", "3", "log2(0.5)", "-1"},
    {"exp(x)", "e to the power of x", kGivesNull, "exp(0)", "1", "exp(1)", "2.718281828459045"},
    {"sqr(x)", "square of x (x*x)", kGivesNull, "sqr(-4)", "16", "sqr(0.5)", "0.25"},
    {"sqrt(x)", "square root of x", kGivesNull, "sqrt(16)", "4", "sqrt(-4)", "nan"},
    {"min(x,y,z...)", "the smallest of the arguments", kFirstCounts, "min(3, 1, 2)", "1",
     "min(3, _null, 2)", "2"},
    {"max(x,y,z...)", "the largest of the arguments", kFirstCounts, "max(3, 1, 2)", "3",
     "max(_null, 3)", "null"},
    {"sum(x,y,z...)", "the sum of the arguments", kGivesNull, "sum(1, 2, 3, 4)", "10",
     "sum(1, _null)", "null"},
    {"nanvl(x,y)", "if x is nan or NULL return y, otherwise return x", null_rules::kIsTested,
     "nanvl(sqrt(-1), 0)", "0", "nanvl(_null, 0)", "0",
     "Any NaN counts, null included; isNan(x) knows only one."},
    {"nanvl2(x,y,z)", "if x is nan or NULL return z, otherwise return y", null_rules::kIsTested,
     "nanvl2(_nan, 1, 2)", "2", "nanvl2(5, 1, 2)", "1"},
    {"finitevl(x,y)", "if x is finite return x, otherwise return y",
     "A null is not finite, so y is the result.", "finitevl(1/0, 9)", "9", "finitevl(_null, 9)",
     "9"},
    {"finitevl2(x,y,z)", "if x is finite return y, otherwise return z",
     "A null is not finite, so z is the result.", "finitevl2(5, 1, 2)", "1", "finitevl2(1/0, 1, 2)",
     "2"},
    {"isNan(x)", "return 1 if x is nan, otherwise return 0",
     "A null is missing rather than not a number: 0.", "isNan(_nan)", "1", "isNan(_null)", "0",
     "It knows the nan of 0/0 and of most functions, but not those of acos(2), asin(2) and "
     "log10(-1). nanvl(x, y) replaces them all."},
    {"isFinite(x)", "return a true value if x is neither infinite nor nan nor NULL",
     "A null is not finite: 0.", "isFinite(1)", "-1", "isFinite(1/0)", "0",
     "The true value is -1. Write isFinite(x) ? 1 : 0 where 1 is wanted."},
};

}  // namespace

std::span<const HelpEntry> helpOnNumbers() {
  return kEntries;
}

}  // namespace kelvarin
