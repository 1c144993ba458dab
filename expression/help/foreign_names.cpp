#include "expression/help/foreign_names.h"

namespace kelvarin {

namespace {

constexpr char kOneRow[] =
    "An expression sees one row. Totals over rows are no functions of expressions.";
constexpr char kYearOf[] = "The year of a date: atof(datePrint(date, \"yyyy\"))";
constexpr char kMonthOf[] = "The month of a date: atof(datePrint(date, \"M\"))";
constexpr char kDayOf[] = "The day of the month of a date: atof(datePrint(date, \"d\"))";
constexpr char kHourOf[] = "The hour of a date: atof(datePrint(date, \"H\"))";
constexpr char kMinuteOf[] = "The minute of a date: atof(datePrint(date, \"m\"))";
constexpr char kSecondOf[] = "The second of a date: atof(datePrint(date, \"s\"))";
constexpr char kCaseAdvice[] = "Chain them: (a ? 1 : b ? 2 : 3)";
constexpr char kFindAdvice[] = "Positions count from 0, and -1 means that there is none.";
constexpr char kMiddleAdvice[] = "Positions count from 0.";
constexpr char kToText[] = "itoa(x) for integers, ftoa(x) for 6 digits.";

constexpr ForeignName kNames[] = {
    // Missing values
    {"IFNULL", {"nvl"}},
    {"COALESCE", {"nvl"}, "For more than two values: nvl(a, nvl(b, c))"},
    {"ZN", {"nvl"}, "nvl(x, 0)"},
    {"NULLIF", {"?:"}, "(x == y ? _null : x)"},
    {"NULL", {"_null", "_nullS"}, "isNull(x) asks whether a value is missing."},
    {"NA", {"_null"}},
    {"ISNA", {"isNull"}},
    {"ISBLANK", {"isMissing"}},
    {"ISEMPTY", {"isMissing"}},
    {"ISERROR", {"isFinite", "isNull"}, "Numbers that cannot be computed are nan or infinite."},
    {"IFERROR", {"finitevl", "nanvl"}},
    {"DECODE", {"?:"}, kCaseAdvice},
    // Conditions
    {"IF", {"?:"}, "(condition ? then : else)"},
    {"IIF", {"?:"}, "(condition ? then : else)"},
    {"IFS", {"?:"}, kCaseAdvice},
    {"CASE", {"?:"}, kCaseAdvice},
    {"SWITCH", {"?:"}, kCaseAdvice},
    {"CHOOSE", {"?:"}, kCaseAdvice},
    {"XOR", {"!="}, "isTrue(a) != isTrue(b)"},
    {"BETWEEN", {"&&"}, "x >= a && x <= b"},
    {"IN", {"||"}, "x == a || x == b"},
    {"LIKE", {"contains", "startsWith", "endsWith"}},
    {"EXACT", {"=="}},
    {"=", {"=="}, "A single = assigns to a variable; == compares."},
    {"<>", {"!="}},
    // Numbers
    {"MOD", {"%"}, "x % y"},
    {"POWER", {"^", "pow"}},
    {"**", {"^"}},
    {"SQUARE", {"sqr"}},
    {"CEILING", {"ceil"}},
    {"TRUNCATE", {"trunc", "roundDown"}},
    {"FIX", {"trunc"}},
    {"INT", {"floor", "(int)"}, "floor(x) rounds down, (int)x rounds towards zero."},
    {"MROUND", {"round", "floor2"}, "The closest multiple of y: round(x / y) * y"},
    {"SGN", {"sign"}},
    {"FABS", {"abs"}},
    {"RANDOM", {"rand1"}},
    {"RANDBETWEEN", {"randN"}, "An integer from a to b: a + randN(b - a + 1)"},
    {"AVERAGE", {"avg"}, kOneRow},
    {"MEAN", {"avg"}, kOneRow},
    {"LEAST", {"min"}},
    {"GREATEST", {"max"}},
    {"COUNT", {}, kOneRow},
    {"SUMIF", {}, kOneRow},
    {"COUNTIF", {}, kOneRow},
    {"ROWNUM", {"_n"}, "_n counts from 0."},
    {"ROW_NUMBER", {"_n"}, "_n counts from 0."},
    {"ROW", {"_n"}, "_n counts from 0."},
    {"RADIANS", {"pi"}, "x * pi / 180"},
    {"DEGREES", {"pi"}, "x * 180 / pi"},
    {"BITAND", {"&"}},
    {"BITOR", {"|"}},
    {"HAVERSINE", {"hdist"}},
    {"FACT", {"!"}},
    {"INF", {"_infinity"}},
    {"INFINITY", {"_infinity"}},
    // Conversions
    {"VALUE", {"atof"}},
    {"TO_NUMBER", {"atof"}},
    {"PARSEFLOAT", {"atof"}},
    {"PARSEINT", {"atof"}, "(int)atof(s)"},
    {"CAST", {"(float)", "(int)", "atof"}},
    {"TEXT", {"ftoa", "itoa"}, kToText},
    {"STR", {"ftoa", "itoa"}, kToText},
    {"TOSTRING", {"ftoa", "itoa"}, kToText},
    {"TO_CHAR", {"ftoa", "itoa", "datePrint"}},
    {"HEX", {"ftoh"}},
    {"HEX2DEC", {"htof"}},
    {"DEC2HEX", {"ftoh"}},
    {"BASE64", {"atob64", "b64toa"}},
    {"TO_BASE64", {"atob64"}},
    {"FROM_BASE64", {"b64toa"}},
    {"ENCODEURL", {"urlEncode"}},
    // Texts
    {"LEN", {"strlen"}},
    {"LENGTH", {"strlen"}},
    {"CHAR_LENGTH", {"strlen"}},
    {"UPPER", {"toupper"}},
    {"UCASE", {"toupper"}},
    {"LOWER", {"tolower"}},
    {"LCASE", {"tolower"}},
    {"CASEFOLD", {"toCaseFolded"}},
    {"CONCAT", {"//"}, "a // b // c"},
    {"CONCATENATE", {"//"}, "a // b // c"},
    {"STRING_AGG", {}, kOneRow},
    {"SUBSTRING_INDEX", {"left", "indexOf"}},
    {"SLICE", {"substring"}, kMiddleAdvice},
    {"INSTR", {"indexOf"}, kFindAdvice},
    {"FIND", {"indexOf"}, kFindAdvice},
    {"SEARCH", {"indexOf"}, kFindAdvice},
    {"CHARINDEX", {"indexOf"}, kFindAdvice},
    {"POSITION", {"indexOf"}, kFindAdvice},
    {"STRPOS", {"indexOf"}, kFindAdvice},
    {"RFIND", {"lastIndexOf"}, kFindAdvice},
    {"INCLUDES", {"contains"}},
    {"SUBSTITUTE", {"replace"}},
    {"CLEAN", {"trim"}},
    {"STRIP", {"trim", "trim2"}},
    {"ASCII", {"charAt", "codepoint"}},
    {"CODE", {"charAt", "codepoint"}},
    {"UNICODE", {"codepoint"}},
    {"ORD", {"codepoint"}},
    {"CHAR", {"htoa"}, "htoa(ftoh(code)) gives the Latin-1 character of a code."},
    {"CHR", {"htoa"}, "htoa(ftoh(code)) gives the Latin-1 character of a code."},
    {"ISNUMERIC", {"isNumberStrict"}},
    // Dates
    {"TODAY", {"_nowS", "_now"}},
    {"NOW", {"_now", "_nowS"}},
    {"GETDATE", {"_nowS"}},
    {"CURRENT_DATE", {"_nowS"}},
    {"CURRENT_TIMESTAMP", {"_nowS"}},
    {"SYSDATE", {"_nowS"}},
    {"DATEDIFF", {"dateDiffInDay", "dateDiffInMonth", "dateDiffInSecond"}},
    {"DATEDIF", {"dateDiffInDay", "dateDiffInMonth", "dateDiffInYear"}},
    {"DAYS", {"dateDiffInDay"}},
    {"MONTHS_BETWEEN", {"dateDiffInMonth"}},
    {"ADD_MONTHS", {"dateAdd"}, "dateAdd(date, 0, months, 0)"},
    {"EDATE", {"dateAdd"}, "dateAdd(date, 0, months, 0)"},
    {"DATE_ADD", {"dateAdd", "dateAddS"}},
    {"EOMONTH", {"dateEOM"}},
    {"LAST_DAY", {"dateEOM"}, "dateEOM(date, 0)"},
    {"WEEKNUM", {"dateWeekNumber", "etWeekNumber"}},
    {"ISOWEEKNUM", {"dateWeekNumber", "etWeekNumber"}},
    {"WEEK", {"dateWeekNumber", "etWeekNumber"}},
    {"WEEKDAY", {"dateDayOfWeek", "etDayOfWeek"}},
    {"DAYOFWEEK", {"dateDayOfWeek", "etDayOfWeek"}},
    {"DATE_FORMAT", {"datePrint"}},
    {"STRFTIME", {"datePrint"}},
    {"TO_DATE", {"toET", "datePrint"}},
    {"DATEVALUE", {"toET"}},
    {"STRPTIME", {"toET"}},
    {"DATEPART", {"datePrint"}, kYearOf},
    {"EXTRACT", {"datePrint"}, kYearOf},
    {"YEAR", {"datePrint"}, kYearOf},
    {"MONTH", {"datePrint"}, kMonthOf},
    {"DAY", {"datePrint"}, kDayOf},
    {"HOUR", {"datePrint"}, kHourOf},
    {"MINUTE", {"datePrint"}, kMinuteOf},
    {"SECOND", {"datePrint"}, kSecondOf},
    // The program
    {"UUID", {"_uniqueID"}},
    {"NEWID", {"_uniqueID"}},
    {"INET_ATON", {"ip4tof"}},
    {"READFILE", {"load"}},
};

}  // namespace

std::span<const ForeignName> foreignNames() {
  return kNames;
}

}  // namespace kelvarin
