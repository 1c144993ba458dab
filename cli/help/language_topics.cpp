#include "cli/help/help_topics.h"

namespace kelvarin {

namespace {

constexpr char kExpressions[] = R"(An expression computes one value from the columns of one row.

  numbers     1.5  2e-3  0xff  3{k}          texts     "abc"  (\" \\ \n \r \t inside)
  missing     _null  _nullS                  other     _nan  _infinity  true  false

  a ^ b                 power                a < b  <=  >  >=  ==  !=   compare, texts too
  a * b  a / b  a % b                        a && b,  a || b            and, or
  a + b  a - b          numbers              (c ? a : b)                choice
  s // t                joins two texts      nvl(x, 0)                  0 where x is missing

What surprises:
  =  assigns, == compares. Comparisons do not chain: write 3 < x && x < 5.
  x == _null is never true: ask isNull(x), or isMissing(s) for a text that may be empty.
  Texts are joined by //, positions count from 0, and a text in a sum is an error: atof(s).
  In XML, & and < of an expression are written &amp; and &lt;, or the whole as <![CDATA[...]]>.

Names are columns, as the action's input variables call them, then constants, then parameters of
the graph. Functions: 'kelvarin functions' lists them, 'kelvarin functions WORDS' searches.

Examples:
  kelvarin eval 'distance / (minutes / 60)' --var distance=1400 --var minutes=227
  kelvarin eval 'left(city, 3) // "-" // itoa(year)' --text city=Gent --var year=2024
  kelvarin functions "days between"
)";

constexpr char kTypes[] =
    R"(Every column has one of three types; every type has a missing value, null.

  F  number   a 64-bit floating-point number; null is apart from NaN
  K  key      a whole number from 0 to 4294967293
  U  text     null is apart from the empty text

In CSV files the type is inferred from the first 10,000 rows: numbers where every value is one, else
text. Numbers that would lose digits (007, 9007199254740993) make it text. A declaration rules:

  <ReadCSV name='stock' file='stock.csv'><Column name='id' meta='K'/></ReadCSV>

The result of an expression has the type that its output says (meta='U' for a text). A text for a
number column is an error of that row: write atof(s). A number for a text column becomes text in the
shortest form that reads back; itoa(x) and ftoa(x) print otherwise. A result for a key column that
is out of range or has a fraction stops the run, unless castToKey1 and castToKey2 say otherwise.

Arithmetic with null is null. 'kelvarin functions NAME' says what a function does with null.

Examples:
  kelvarin eval 'nvl(a, 0) + 1' --null a
  kelvarin eval 'atof(s) * 2' --text s=21
  kelvarin check examples/flights/flights.kelvarin
)";

constexpr char kDates[] =
    R"(A date is a text in the format of the action's settings, or an elapsed time: a number of
units since a reference time. Functions on texts begin with date, those on elapsed times with et.

  dateFormat='yyyy-MM-dd'               how texts are read and printed
  referenceTime='20000101 00:00:00'     from when elapsed times count
  elapsedTimeUnit='3'                   0 seconds, 1 minutes, 2 hours, 3 days, 4 weeks
  isUTC='0'                             local time; UTC without it

  yyyy yy       year; of two digits it is in the 1900s
  MMMM MMM MM M month: name, short name, two digits, one or two
  dddd ddd dd d weekday, its short name; day with two digits, with one or two
  HH H  hh h    hour; hh and h go to 12 where the format has AP or ap
  mm ss zzz     minute, second, millisecond
  t             time zone                        'text'  text as it is

Month is M and minute is m: a format such as yyyy-mm-dd or %Y-%m-%d gets a warning. What cannot be
read is null. Years, months and days are counted whole: dateDiffInMonth, dateDiffInDay.

Examples:
  kelvarin eval 'dateAdd("2024-01-31", 0, 1, 0)' --opt dateFormat=yyyy-MM-dd
  kelvarin eval 'dateDiffInDay(a, b)' --text a=2024-02-28 --text b=2024-03-01 \
      --opt dateFormat=yyyy-MM-dd
  kelvarin functions dateWeekNumber
)";

constexpr HelpTopic kTopics[] = {
    {"expressions", "expression,operators,formulas,language", "what formulas are made of",
     kExpressions},
    {"types", "type,columns,null,nulls,numbers,keys,texts",
     "numbers, keys, texts, and what is "
     "missing",
     kTypes},
    {"dates", "date,time,times", "formats of dates, elapsed times", kDates},
};

}  // namespace

std::span<const HelpTopic> languageTopics() {
  return kTopics;
}

}  // namespace kelvarin
