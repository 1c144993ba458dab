// Help on functions of texts.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kGivesFalse;
using null_rules::kGivesNull;

constexpr char kPositionNote[] =
    "Positions count from 0. One below 0 counts as 0, one past the end as the end.";
constexpr char kSearchNote[] = "Positions count from 0; -1 when there is none.";
constexpr char kAnyNumberNote[] = "Of a number instead of a text the answer is always 1.";
constexpr char kNullIsNumber[] = "The null text gives 1, as everything that is no text does.";

constexpr HelpEntry kEntries[] = {
    {"contains(x,y)", "return 1 if the string x contains the string y, otherwise return 0",
     kGivesFalse, R"(contains("banana", "nan"))", "1", R"(contains("banana", "NAN"))", "0"},
    {"indexOf(x,y)", "position of the string y inside the string x", kGivesNull,
     R"(indexOf("banana", "na"))", "2", R"(indexOf("banana", "x"))", "-1", kSearchNote},
    {"indexOf2(x,y,p)", "position of the string y inside the string x, searching from position p",
     kGivesNull, R"(indexOf2("banana", "na", 3))", "4", R"(indexOf2("banana", "na", 5))", "-1",
     kSearchNote},
    {"lastIndexOf(x,y)", "last position of the string y inside the string x", kGivesNull,
     R"(lastIndexOf("banana", "na"))", "4", R"(lastIndexOf("banana", "x"))", "-1", kSearchNote},
    {"lastIndexOf2(x,y,p)",
     "last position of the string y inside the string x, searching backwards from position p",
     kGivesNull, R"(lastIndexOf2("banana", "na", 3))", "2", R"(lastIndexOf2("banana", "na", 1))",
     "-1", kSearchNote},
    {"countText(x,y)", "number of occurrences of the string y inside the string x", kGivesNull,
     R"(countText("banana", "an"))", "2", R"(countText("aaa", "aa"))", "1"},
    {"substr(x,b,l)", "part of the string x that starts at position b and has l characters",
     kGivesNull, R"(substr("abcdef", 1, 3))", "bcd", R"(substr("abcdef", 4, 10))", "ef",
     kPositionNote},
    {"mid(x,b,l)", "part of the string x that starts at position b and has l characters",
     kGivesNull, R"(mid("abcdef", 1, 3))", "bcd", R"(mid("abcdef", -2, 3))", "abc", kPositionNote},
    {"substring(x,b,e)", "part of the string x from position b up to, but without, position e",
     kGivesNull, R"(substring("abcdef", 2, 4))", "cd", R"(substring("abcdef", 4, 2))", "null",
     "When e is not behind b the result is the null text, not the empty one."},
    {"replace(s,before,after)", "replaces every \"before\" inside the string s by \"after\"",
     kGivesNull, R"(replace("a-b-c", "-", "+"))", "a+b+c", R"(replace("aaa", "aa", "b"))", "ba"},
    {"left(s,l)", "the first l characters of the string s", kGivesNull, R"(left("abcdef", 2))",
     "ab", R"(left("ab", 5))", "ab"},
    {"right(s,l)", "the last l characters of the string s", kGivesNull, R"(right("abcdef", 2))",
     "ef", R"(right("ab", 0) // "!")", "!"},
    {"startsWith(x,s)", "return 1 if the string x starts with the string s, otherwise return 0",
     kGivesFalse, R"(startsWith("abcdef", "abc"))", "1", R"(startsWith("abcdef", "ABC"))", "0"},
    {"endsWith(x,s)", "return 1 if the string x ends with the string s, otherwise return 0",
     kGivesFalse, R"(endsWith("abcdef", "abc"))", "0", R"(endsWith("abcdef", "def"))", "1"},
    {"strlen(s)", "number of characters of the string s", kGivesNull, R"(strlen("abc"))", "3",
     R"(strlen(""))", "0",
     "Lengths and positions count 16-bit units, so a character beyond the basic plane, such as "
     "most emoji, counts 2."},
    {"toupper(s)", "the string s in upper case", kGivesNull, R"(toupper("Zoë"))", "ZOË",
     R"(toupper("straße"))", "STRASSE"},
    {"tolower(s)", "the string s in lower case", kGivesNull, R"(tolower("ZOË"))", "zoë",
     R"(tolower("A1-B2"))", "a1-b2"},
    {"toCaseFolded(s)", "the string s in the form that compares without regard to case", kGivesNull,
     R"(toCaseFolded("Straße") == toCaseFolded("STRASSE"))", "0",
     R"(toCaseFolded("ZOË") == toCaseFolded("zoë"))", "1",
     "Characters are folded one by one, so \"ß\" and \"SS\" stay apart."},
    {"trim(s)", "the string s without blanks at its start and end", kGivesNull,
     R"(trim("  ab ") // "!")", "ab!", R"(trim("a  b "))", "a  b"},
    {"ltrim(s)", "the string s without blanks at its start", kGivesNull, R"(ltrim("  ab ") // "!")",
     "ab !", R"(ltrim("\ta b"))", "a b"},
    {"rtrim(s)", "the string s without blanks at its end", kGivesNull, R"(rtrim("  ab ") // "!")",
     "  ab!", R"(rtrim("a b\n") // "!")", "a b!"},
    {"trim2(x,y)", "the string x without the string y at its start and end", kGivesNull,
     R"(trim2("--ab--", "-"))", "ab", R"(trim2("abcab", "ab"))", "c"},
    {"isNumber(x)", "return 1 if the string x contains a number, otherwise return 0", kNullIsNumber,
     R"(isNumber("about 12.5 km"))", "1", R"(isNumber("none"))", "0", kAnyNumberNote},
    {"isNumberStrict(x)", "return 1 if the string x is a number, otherwise return 0", kNullIsNumber,
     R"(isNumberStrict("12.5 km"))", "0", R"(isNumberStrict("-1.5e3"))", "1", kAnyNumberNote},
    {"isInteger(x)", "return 1 if the string x contains an integer number, otherwise return 0",
     kNullIsNumber, R"(isInteger("room 101"))", "1", R"(isInteger("12.5"))", "1", kAnyNumberNote},
    {"isIntegerStrict(x)", "return 1 if the string x is an integer number, otherwise return 0",
     kNullIsNumber, R"(isIntegerStrict("101"))", "1", R"(isIntegerStrict("101.0"))", "0",
     kAnyNumberNote},
    {"codepoint(x)", "unicode codepoint of the last character of the string x", kGivesNull,
     R"(codepoint("abc"))", "99", R"(codepoint("€"))", "8364", "Of the empty text it is null."},
};

constexpr HelpEntry kEncodings[] = {
    {"atof(s)", "the number that the string s contains", kGivesNull, R"(atof("about 12.5 km"))",
     "12.5", R"(atof("1,5"))", "1.5",
     "Null when there is no number. \",\" is a decimal comma where it stands between digits and no "
     "\".\" occurs."},
    {"ftoa(x)", "the number x as a string, with 6 significant digits", kGivesNull,
     R"(ftoa(1/3) // "!")", "0.333333!", "ftoa(1234567)", "1.23457e+06",
     "Text outputs and text variables keep all digits of a number. Of the nans only the one that "
     "isNan(x) knows is \"nan\"; others are \"inf\" or \"-inf\"."},
    {"itoa(x)", "the integer part of x as a string", kGivesNull, R"(itoa(12.7) // "!")", "12!",
     R"(itoa(-12.7) // "!")", "-12!"},
    {"urlEncode", "urlEncode(s): the string s as a part of a URL", kGivesNull,
     R"(urlEncode("a b&c"))", "a%20b%26c", R"(urlEncode("Zoë"))", "Zo%C3%AB"},
    {"xmlEncode", "xmlEncode(s): the string s as a text inside XML", kGivesNull,
     R"(xmlEncode("a<b"))", "a&lt;b", R"(xmlEncode("\"a\" & b"))", "&quot;a&quot; &amp; b"},
    {"jsonEncode", "jsonEncode(s): the string s as a text inside JSON", kGivesNull,
     R"(jsonEncode("say \"hi\""))", R"(say \"hi\")", R"(jsonEncode("a\tb"))", R"(a\tb)"},
    {"atob64(x)", "the UTF-8 bytes of the string x in base64", kGivesNull, R"(atob64("Zoë"))",
     "Wm/Dqw==", R"(atob64("€"))", "4oKs"},
    {"atob642(x)", "the Latin-1 bytes of the string x in base64", kGivesNull, R"(atob642("Zoë"))",
     "Wm/r", R"(atob642("A"))", "QQ=="},
    {"b64toa(x)", "the string whose UTF-8 bytes x holds in base64", kGivesNull,
     R"(b64toa("Wm/Dqw=="))", "Zoë", R"(b64toa("?"))", "null", "Null when x is no base64."},
    {"b64toa2(x)", "the string whose Latin-1 bytes x holds in base64", kGivesNull,
     R"(b64toa2("Wm/r"))", "Zoë", R"(b64toa2("QQ=="))", "A", "Null when x is no base64."},
    {"htof(x)", "the number that the string x holds in hexadecimal digits", kGivesNull,
     R"(htof("ff"))", "255", R"(htof("xyz"))", "null", "Null when x is not hexadecimal."},
    {"ftoh(x)", "the positive integer x in hexadecimal digits", kGivesNull, R"(ftoh(255))", "ff",
     "ftoh(4095)", "fff"},
    {"htoa(x)", "the Latin-1 string whose bytes x holds in hexadecimal digits", kGivesNull,
     R"(htoa("4b6579"))", "Key", R"(htoa("4b6"))", "null", "Null when x is not hexadecimal."},
};

constexpr HelpEntry kAddresses[] = {
    {"isip4(x)", "return 1 if the string x is an IP v4 address, otherwise return 0", kGivesFalse,
     R"(isip4("10.0.0.300"))", "0", R"(isip4("10.0.0.30"))", "1"},
    {"ip4tof(x)", "the IP v4 address x as a number", kGivesNull, R"(ip4tof("10.0.0.1"))",
     "167772161", R"(ip4tof("10.0.0.300"))", "null"},
    {"ip4part(x,pos)", "one of the 4 parts of the IP v4 address x", kGivesNull,
     R"(ip4part("10.20.30.40", 3))", "40", R"(ip4part("10.20.30.40", 0))", "10",
     "Parts count from 0."},
    {"ip4RangeLow(x)", "the first address of the range x as a number", kGivesNull,
     R"(ip4RangeLow("10.0.0.0/24"))", "167772160", R"(ip4RangeLow("10.0.0.1-10.0.0.9"))",
     "167772161", "A range is a.b.c.d/len, or two addresses joined by \"-\"."},
    {"ip4RangeHigh(x)", "the last address of the range x as a number", kGivesNull,
     R"(ip4RangeHigh("10.0.0.0/24"))", "167772415", R"(ip4RangeHigh("10.0.0.1-10.0.0.9"))",
     "167772169", "A range is a.b.c.d/len, or two addresses joined by \"-\"."},
};

}  // namespace

std::span<const HelpEntry> helpOnTexts() {
  return kEntries;
}

std::span<const HelpEntry> helpOnEncodings() {
  return kEncodings;
}

std::span<const HelpEntry> helpOnAddresses() {
  return kAddresses;
}

}  // namespace kelvarin
