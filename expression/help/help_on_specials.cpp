// Help on functions for missing values, files and distances, and on those that the help browser
// leaves out.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kGivesNull;
using null_rules::kIsTested;

constexpr char kSearchNote[] = "Positions count from 0; -1 when there is none.";
constexpr char kSpelling[] = "another spelling";

constexpr HelpEntry kSpecials[] = {
    {"not(x)", "return 1 if x is 0, otherwise return 0", kGivesNull, "not(0)", "1", "not(3)", "0"},
    {"isTrue(x)", "return 1 if x is TRUE (1,Y,y,T,t,O,o,P,p), otherwise return 0",
     "A null is not true: 0.", "isTrue(-2)", "1", "isTrue(0)", "0",
     "Every number but 0 is true, and every string that is not empty, whatever its letters."},
    {"isNull(x)", "return 1 if x is NULL, otherwise return 0", kIsTested, "isNull(_null)", "1",
     "isNull(0)", "0",
     "Native code knows it as isNuLL(x). Any other NaN is not null, nor is the empty string."},
    {"nvl(x,y)", "if x is NULL return y, otherwise return x", kIsTested, "nvl(_null, 5)", "5",
     "nvl(3, 5)", "3"},
    {"nvl2(x,y,z)", "if x is NULL return z, otherwise return y", kIsTested, "nvl2(_null, 1, 2)",
     "2", "nvl2(7, 1, 2)", "1"},
    {"load(filename)", "the text of a file", kGivesNull, R"(load("greeting.txt"))", "Hello",
     R"(load("missing.txt"))", "null",
     "The file is UTF-8 and at most 64 MiB long; null when it cannot be read. A relative name "
     "starts at the graph file's directory."},
    {"hdist(lat1,lon1,lat2,lon2)",
     "return the earth distance using Haversine Formula (all coord. in decimal degree)", kGivesNull,
     "round2(hdist(50.85, 4.35, 48.85, 2.35), 2)", "264.59", "round2(hdist(0, 0, 0, 180), 2)",
     "20015.09", "In kilometres."},
    {"hdist2(lat1Lon1,lat2Lon2)", "the same distance between two packed positions", kGivesNull,
     "round2(hdist2(1408500018435000, 1388500018235000), 2)", "264.59",
     "hdist2(1408500018435000, 1408500018435000)", "0",
     "A packed position is round((lat + 90) * 1e5) * 1e8 + round((lon + 180) * 1e5). Anything else "
     "gives null."},
};

constexpr HelpEntry kFurtherFunctions[] = {
    {"isNuLL(x)", "the spelling of isNull(x) that native code knows", kIsTested, "isNuLL(_null)",
     "1", "isNuLL(0)", "0", "An expression with it cannot be shown step by step; isNull(x) can."},
    {"isMissing(x)", "return 1 if x is NULL or an empty string, otherwise return 0", kIsTested,
     "isMissing(_null)", "1", "isMissing(0)", "0"},
    {"roundUP(x,d)", kSpelling, kGivesNull, "roundUP(1.231, 2)", "1.24", "roundUP(-1.231, 2)",
     "-1.24", "The same as roundUp."},
    {"roundup(x,d)", kSpelling, kGivesNull, "roundup(1.231, 2)", "1.24", "roundup(1001, -3)",
     "2000", "The same as roundUp."},
    {"roundDOWN(x,d)", kSpelling, kGivesNull, "roundDOWN(-1.239, 2)", "-1.23",
     "roundDOWN(1.239, 2)", "1.23", "The same as roundDown."},
    {"rounddown(x,d)", kSpelling, kGivesNull, "rounddown(-1.239, 2)", "-1.23",
     "rounddown(1999, -3)", "1000", "The same as roundDown."},
    {"rint(x)", "closest integer; a half goes up", kGivesNull, "rint(-2.5)", "-2", "rint(2.5)", "3",
     "round(x) takes a half away from zero."},
    {"trunc(x)", "the integer part of x, towards zero", kGivesNull, "trunc(-2.7)", "-2",
     "trunc(2.7)", "2"},
    {"sign(x)", "-1, 0 or 1 for a negative x, 0 or a positive x", "A null gives 0.", "sign(-7)",
     "-1", "sign(0)", "0"},
    {"cbrt(x)", "cube root of x", kGivesNull, "cbrt(8)", "2", "cbrt(-1)", "-1"},
    {"hypot(x,y)", "square root of x*x + y*y",
     "With a null the result is null, but infinite beside an infinite argument.", "hypot(3, 4)",
     "5", "hypot(_null, _infinity)", "inf"},
    {"fmod(x,y)", "remainder of x / y, the same as x % y", kGivesNull, "fmod(17, 5)", "2",
     "fmod(-5.5, 2)", "-1.5"},
    {"remainder(x,y)", "x minus the closest multiple of y", kGivesNull, "remainder(17, 5)", "2",
     "remainder(14, 5)", "-1"},
    {"pow(x,y)", "x to the power of y",
     "With a null the result is null, but pow(x, 0) and pow(1, y) are 1.", "pow(2, 10)", "1024",
     "pow(2, -1)", "0.5"},
    {"avg(x,y,z...)", "the mean of the arguments", kGivesNull, "avg(1, 2, 3, 4)", "2.5",
     "avg(1, _null)", "null"},
    {"charAt(x,i)", "16-bit code of the character at position i", kGivesNull, R"(charAt("abc", 1))",
     "98", R"(charAt("abc", 5))", "-1", "Positions count from 0; -1 outside the string."},
    {"indexof(x,y)", kSpelling, kGivesNull, R"(indexof("banana", "na"))", "2",
     R"(indexof("banana", "x"))", "-1", kSearchNote},
    {"indexof2(x,y,p)", kSpelling, kGivesNull, R"(indexof2("banana", "na", 3))", "4",
     R"(indexof2("banana", "na", 5))", "-1", kSearchNote},
    {"lastindexof(x,y)", kSpelling, kGivesNull, R"(lastindexof("banana", "na"))", "4",
     R"(lastindexof("banana", "x"))", "-1",
     "It takes two arguments, although its help text shows three; lastindexof2 takes three."},
    {"lastindexof2(x,y,p)", kSpelling, kGivesNull, R"(lastindexof2("banana", "na", 3))", "2",
     R"(lastindexof2("banana", "na", 1))", "-1", kSearchNote},
    {"whoami(x)", "the name of the program, whatever x is", nullptr, "whoami(0)", "kelvarin",
     "whoami(1)", "kelvarin"},
};

}  // namespace

std::span<const HelpEntry> helpOnSpecials() {
  return kSpecials;
}

std::span<const HelpEntry> furtherFunctions() {
  return kFurtherFunctions;
}

}  // namespace kelvarin
