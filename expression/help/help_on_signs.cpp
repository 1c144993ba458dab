// Help on operators, constants and units.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kComparesFalse;
using null_rules::kGivesNull;

constexpr char kConditionNote[] =
    "In the String Parser a condition is a comparison or a test, not a number: write x != 0 "
    "rather than x.";
constexpr char kFlagNote[] =
    "An action offers it when its setting is ticked; it is taken once, when the run starts.";

constexpr HelpEntry kOperators[] = {
    {"(a?b:c)", "if a is true then b, otherwise c",
     "A null condition is an error or true; test it with isNull(x).", "(3 > 2 ? 10 : 20)", "10",
     "(1 > 2 ? 10 : (1 > 0 ? 20 : 30))", "20", kConditionNote, "?:"},
    {"-", "unary minus: x with the opposite sign", kGivesNull, "-(2 + 3)", "-5", "-2 ^ 2", "-4"},
    {"(float)", "converts what follows to a floating point number", kGivesNull, "(float)7 / 2",
     "3.5", "(float)1 / 4", "0.25", "It binds closer than + and -, and looser than ^."},
    {"(int)", "converts what follows to an integer, towards zero", kGivesNull, "(int)2.7", "2",
     "(int)(7 / 2)", "3", "It binds closer than + and -, and looser than ^."},
    {"+, -, *, /, ^", "addition, subtraction, multiplication, division, power",
     "With a null on either side the result is null, but x^0 and 1^x are 1.", "2 + 3 * 4^2 / 8",
     "8", "1 / 0", "inf", "a^b^c is a^(b^c), and -a^b is -(a^b).", "+ - * / ^"},
    {"%", "modulo: the remainder of a division", kGivesNull, "17 % 5", "2", "-5.5 % 2", "-1.5",
     "The remainder has the sign of the left side and may have a fraction."},
    {"&&", "logical and", "Compare or test values first; see isNull(x).", "1 < 2 && 2 < 1", "0",
     "1 < 2 && 2 < 3", "1", kConditionNote, "&& and"},
    {"||", "logical or", "Compare or test values first; see isNull(x).", "1 < 2 || 2 < 1", "1",
     "2 < 1 || 3 < 2", "0", kConditionNote, "|| or"},
    {"==, !=, >, <, <=, >=", "comparisons", kComparesFalse, "3 >= 2", "1", "0.1 + 0.2 == 0.3", "0",
     "A single = assigns to a variable; == compares. Texts compare by their characters.",
     "== != > < <= >="},
    {"&, |, <<, >>", "and, or, shift left and shift right of the bits of integers", kGivesNull,
     "12 & 10", "8", "1 << 4", "16",
     "Numbers with a fraction, and those from 2^53 on, have no bits: a NaN.", "& | << >>"},
    {"//", "string concatenation", kGivesNull, R"("data" // "base")", "database",
     R"("n = " // itoa(5))", "n = 5",
     "Both sides are strings. ftoa(x) and itoa(x) make one of a number."},
};

constexpr HelpEntry kConstants[] = {
    {"pi", "3.141592653589793238462643", nullptr, "pi", "3.141592653589793", "2 * pi",
     "6.283185307179586"},
    {"e", "eulerian number (2.718281828459045235360287)", nullptr, "e", "2.718281828459045",
     "ln(e)", "1"},
    {"_null",
     "the NULL value (meta-type is \"number\") - cannot be used inside any binary operator",
     nullptr, "nvl(_null, 5)", "5", "nvl2(_null, 1, 0)", "0",
     "x == _null is never true; use isNull(x)."},
    {"_nullS",
     "the NULL string (meta-type is \"string\")- cannot be used inside any binary operator",
     nullptr, "isNull(_nullS)", "1", "strlen(_nullS)", "null",
     "It is apart from the empty string \"\"."},
    {"_nan", "not a number", nullptr, "isNan(_nan)", "1", "nanvl(_nan, 0)", "0"},
    {"_infinity", "positive infinity", nullptr, "1 / _infinity", "0", "_infinity > 1{G}", "1"},
    {"_now", "the current time as an Elapsed Time", nullptr, "_now > 8000", "1", "_now >= 0", "1",
     kFlagNote},
    {"_nowS", "the current time as a date", nullptr, "strlen(_nowS)", "10",
     "dateDiffInDay(_nowS, _nowS)", "0", kFlagNote},
    {"_kelvarinID", "identifier for the current version of Kelvarin", nullptr,
     R"(startsWith(_kelvarinID, "kelvarin "))", "1", "strlen(_kelvarinID) > 0", "1"},
    {"_currentDir", "the directory of the current .kelvarin file", nullptr, "isNull(_currentDir)",
     "0", "strlen(_currentDir) > 0", "1", "The working directory where there is no file."},
    {"_tempDir", "the directory for temporary files", nullptr, "isNull(_tempDir)", "0",
     "strlen(_tempDir) > 0", "1"},
    {"_currentFile", "the current .kelvarin filepath", nullptr, "isNull(_currentFile)", "1",
     "strlen(_currentFile)", "null", "Null where there is no file."},
    {"_uniqueID", "an ID that is guaranteed to be unique", nullptr, "strlen(_uniqueID)", "36",
     "_uniqueID == _uniqueID", "1",
     "A text, the same on every row of an action and another one in every run."},
};

constexpr char kUnitNote[] = "Written behind a number or a bracket: 3{k}, (x+1){k}.";

constexpr HelpEntry kPostfixes[] = {
    {"{n}", "nano (1e-9)", kGivesNull, "5{n}", "5e-09", "2500{n}", "2.5e-06", kUnitNote},
    {"{mu}", "micro (1e-6)", kGivesNull, "2{mu}", "2e-06", "2{u}", "2e-06",
     "{u} is another spelling.", "{mu} {u}"},
    {"{m}", "milli (1e-3)", kGivesNull, "5{m}", "0.005", "1500{m}", "1.5", kUnitNote},
    {"{k}", "kilo (1e3)", kGivesNull, "5{k}", "5000", "(1 + 2){k}", "3000", kUnitNote},
    {"{G}", "giga (1e6)", kGivesNull, "5{G}", "5000000000", "2{G} / 1{M}", "2000",
     "It multiplies by 1e9."},
    {"{M}", "mega (1e9)", kGivesNull, "5{M}", "5000000", "2.5{M}", "2500000",
     "It multiplies by 1e6."},
};

constexpr HelpEntry kFurtherConstants[] = {
    {"_pi", "pi with 12 decimals", nullptr, "_pi", "3.141592653589", "pi - _pi > 0", "1",
     "Prefer pi."},
    {"_e", "the same as e", nullptr, "_e", "2.718281828459045", "ln(_e)", "1"},
    {"_n", "the number of the row, from 0", nullptr, "_n", "0", "_n + 1", "1",
     "An action offers it when its setting is ticked."},
    {"true", "a condition that is true", nullptr, "true ? 1 : 2", "1", "true && 2 > 1 ? 1 : 2",
     "1"},
    {"false", "a condition that is false", nullptr, "false ? 1 : 2", "2", "false || 2 > 1 ? 1 : 2",
     "1"},
    {"kelvarinDir", "the directory of the running program", nullptr, "isNull(kelvarinDir)", "0",
     "strlen(kelvarinDir) >= 0", "1"},
};

constexpr HelpEntry kFurtherOperators[] = {
    {"x!", "factorial of a whole number", "A null is an error.", "5!", "120", "0!", "1", nullptr,
     "!"},
};

}  // namespace

std::span<const HelpEntry> helpOnOperators() {
  return kOperators;
}

std::span<const HelpEntry> helpOnConstants() {
  return kConstants;
}

std::span<const HelpEntry> helpOnPostfixes() {
  return kPostfixes;
}

std::span<const HelpEntry> furtherConstants() {
  return kFurtherConstants;
}

std::span<const HelpEntry> furtherOperators() {
  return kFurtherOperators;
}

}  // namespace kelvarin
