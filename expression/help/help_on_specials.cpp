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
    {"not(x)", "return 1 if x is 0, otherwise return 0", kGivesNull, "not(0)", "1"},
    {"isTrue(x)", "return 1 if x is TRUE (1,Y,y,T,t,O,o,P,p), otherwise return 0",
     "A null is not true: 0.", "isTrue(-2)", "1",
     "Every number but 0 is true, and every string that is not empty, whatever its letters."},
    {"isNull(x)", "return 1 if x is NULL, otherwise return 0", kIsTested, "isNull(_null)", "1",
     "Native code knows it as isNuLL(x). Any other NaN is not null, nor is the empty string."},
    {"nvl(x,y)", "if x is NULL return y, otherwise return x", kIsTested, "nvl(_null, 5)", "5"},
    {"nvl2(x,y,z)", "if x is NULL return z, otherwise return y", kIsTested, "nvl2(_null, 1, 2)",
     "2"},
    {"load(filename)", "the text of a file", kGivesNull, R"(load("greeting.txt"))", "Hello",
     "The file is UTF-8 and at most 64 MiB long; null when it cannot be read. A relative name "
     "starts at the graph file's directory."},
    {"hdist(lat1,lon1,lat2,lon2)",
     "return the earth distance using Haversine Formula (all coord. in decimal degree)", kGivesNull,
     "round2(hdist(50.85, 4.35, 48.85, 2.35), 2)", "264.59", "In kilometres."},
    {"hdist2(lat1Lon1,lat2Lon2)", "the same distance between two packed positions", kGivesNull,
     "round2(hdist2(1408500018435000, 1388500018235000), 2)", "264.59",
     "A packed position is round((lat + 90) * 1e5) * 1e8 + round((lon + 180) * 1e5). Anything else "
     "gives null."},
};

constexpr HelpEntry kFurtherFunctions[] = {
    {"isNuLL(x)", "the spelling of isNull(x) that native code knows", kIsTested, "isNuLL(_null)",
     "1", "An expression with it cannot be shown step by step; isNull(x) can."},
    {"isMissing(x)", "return 1 if x is NULL or an empty string, otherwise return 0", kIsTested,
     "isMissing(_null)", "1"},
    {"roundUP(x,d)", kSpelling, kGivesNull, "roundUP(1.231, 2)", "1.24", "The same as roundUp."},
    {"roundup(x,d)", kSpelling, kGivesNull, "roundup(1.231, 2)", "1.24", "The same as roundUp."},
    {"roundDOWN(x,d)", kSpelling, kGivesNull, "roundDOWN(-1.239, 2)", "-1.23",
     "The same as roundDown."},
    {"rounddown(x,d)", kSpelling, kGivesNull, "rounddown(-1.239, 2)", "-1.23",
     "The same as roundDown."},
    {"rint(x)", "closest integer; a half goes up", kGivesNull, "rint(-2.5)", "-2",
     "round(x) takes a half away from zero."},
    {"trunc(x)", "the integer part of x, towards zero", kGivesNull, "trunc(-2.7)", "-2"},
    {"sign(x)", "-1, 0 or 1 for a negative x, 0 or a positive x", "A null gives 0.", "sign(-7)",
     "-1"},
    {"cbrt(x)", "cube root of x", kGivesNull, "cbrt(8)", "2"},
    {"hypot(x,y)", "square root of x*x + y*y",
     "With a null the result is null, but infinite beside an infinite argument.", "hypot(3, 4)",
     "5"},
    {"fmod(x,y)", "remainder of x / y, the same as x % y", kGivesNull, "fmod(17, 5)", "2"},
    {"remainder(x,y)", "x minus the closest multiple of y", kGivesNull, "remainder(17, 5)", "2"},
    {"pow(x,y)", "x to the power of y",
     "With a null the result is null, but pow(x, 0) and pow(1, y) are 1.", "pow(2, 10)", "1024"},
    {"avg(x,y,z...)", "the mean of the arguments", kGivesNull, "avg(1, 2, 3, 4)", "2.5"},
    {"charAt(x,i)", "16-bit code of the character at position i", kGivesNull, R"(charAt("abc", 1))",
     "98", "Positions count from 0; -1 outside the string."},
    {"indexof(x,y)", kSpelling, kGivesNull, R"(indexof("banana", "na"))", "2", kSearchNote},
    {"indexof2(x,y,p)", kSpelling, kGivesNull, R"(indexof2("banana", "na", 3))", "4", kSearchNote},
    {"lastindexof(x,y)", kSpelling, kGivesNull, R"(lastindexof("banana", "na"))", "4",
     "It takes two arguments, although its help text shows three; lastindexof2 takes three."},
    {"lastindexof2(x,y,p)", kSpelling, kGivesNull, R"(lastindexof2("banana", "na", 3))", "2",
     kSearchNote},
    {"whoami(x)", "the name of the program, whatever x is", nullptr, "whoami(0)", "kelvarin"},
};

}  // namespace

std::span<const HelpEntry> helpOnSpecials() {
  return kSpecials;
}

std::span<const HelpEntry> furtherFunctions() {
  return kFurtherFunctions;
}

}  // namespace kelvarin
