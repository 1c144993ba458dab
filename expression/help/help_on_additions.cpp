// Help on the functions that Kelvarin adds to the language: regular expressions, separators and
// padding.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kGivesFalse;
using null_rules::kGivesNull;

constexpr char kPatternNote[] =
    "A backslash is written twice, as in every text of an expression. There are no back-references "
    "and no looking ahead or back: searching takes time in proportion to the string. Upper and "
    "lower case are the same behind (?i).";
constexpr char kGroupNote[] =
    "Null where nothing matches and where the pattern has no such group or the group took no part. "
    "Groups count from 1 in the order of their opening brackets; (?:x) is none.";
constexpr char kReplacementNote[] =
    R"(In the third argument "\\1" to "\\9" are the groups, "\\0" is all of the match and "\\\\" )"
    "a backslash.";
constexpr char kPadNote[] =
    "A longer string stays as it is. Several characters of c are taken in turn.";

constexpr HelpEntry kEntries[] = {
    {"regexMatch(s,pattern)",
     "return 1 if the regular expression matches somewhere in the string s, otherwise return 0",
     kGivesFalse, R"(regexMatch("AB-123", "^[A-Z]+-\\d+$"))", "1",
     R"(regexMatch("ab-123", "^[A-Z]+-\\d+$"))", "0", kPatternNote},
    {"regexExtract(s,pattern,group)",
     "the part of the string s that a group of the regular expression matches; group 0 is all that "
     "it matches",
     kGivesNull, R"~(regexExtract("id=42;", "(\\w+)=(\\d+)", 2))~", "42",
     R"~(regexExtract("none", "(\\w+)=(\\d+)", 2))~", "null", kGroupNote},
    {"regexReplace(s,pattern,by)",
     "replaces every match of the regular expression in the string s by \"by\"", kGivesNull,
     R"~(regexReplace("2024-02-29", "(\\d+)-(\\d+)-(\\d+)", "\\3.\\2.\\1"))~", "29.02.2024",
     R"(regexReplace("a  b   c", " +", " "))", "a b c", kReplacementNote},
    {"split(s,separator,n)", "part n (from 0) of the string s, whose parts are between separators",
     kGivesNull, R"(split("a;b;c", ";", 1))", "b", R"(split("a;b;c", ";", 3))", "null",
     "Null where there are not so many parts. An empty separator stands nowhere, so part 0 is the "
     "whole string."},
    {"padLeft(s,n,c)", "the string s, filled with c at its start until it has n characters",
     kGivesNull, R"(padLeft(7, 3, "0"))", "007", R"(padLeft("abcd", 3, "0"))", "abcd", kPadNote},
    {"padRight(s,n,c)", "the string s, filled with c at its end until it has n characters",
     kGivesNull, R"(padRight("ab", 5, "."))", "ab...", R"(padRight("abcd", 3, "."))", "abcd",
     kPadNote},
};

}  // namespace

std::span<const HelpEntry> addedFunctions() {
  return kEntries;
}

}  // namespace kelvarin
