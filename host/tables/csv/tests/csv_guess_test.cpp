#include "host/tables/csv/csv_guess.h"

#include <gtest/gtest.h>

namespace kelvarin {

TEST(CsvGuess, FindsHowFilesAreWritten) {
  struct Case {
    std::string_view text;
    char separator;
    bool hasHeader;
    const char* nullText;
  };
  const Case cases[] = {
      {"a,b\n1,2\n", ',', true, ""},          {"a;b\n1,5;2\n1,7;3\n", ';', true, ""},
      {"1,5;2,5\n3,5;4,5\n", ';', false, ""}, {"a\tb c, d\n1\tx, y\n", '\t', true, ""},
      {"1|2\n3|4\n", '|', false, ""},         {"\"x;y\",\"b\"\n1,NULL\n2,3\n", ',', true, "NULL"},
      {"alone\n1\n2\n", ',', true, ""}};
  for (const Case& file : cases) {
    const CsvGuess guess = guessCsv(file.text, true);
    EXPECT_EQ(guess.separator, file.separator) << file.text;
    EXPECT_EQ(guess.hasHeader, file.hasHeader) << file.text;
    EXPECT_EQ(guess.nullText.toStdString(), file.nullText) << file.text;
  }
  EXPECT_EQ(guessCsv("'a','b'\r\n'1','x'\r\n", true).quote, '\'');
  EXPECT_EQ(guessCsv("", true).columnCount, 0U);
}

TEST(CsvGuess, KeepsToWhatIsTold) {
  CsvDialect known;
  known.skippedLines = 1;
  known.hasComments = true;
  known.comment = '#';
  EXPECT_EQ(guessCsv("one, two, three\r\n# a, b, c\r\nx;y\r\n1;2\r\n", true, known).separator, ';');
  known.separator = '|';
  EXPECT_EQ(guessCsv("\nx;y\n1;2\n", true, known, {.isQuote = true}).separator, '|');
  known.quote = '\'';
  EXPECT_EQ(guessCsv("\n\"x\";'y'\n", true, known, {.isSeparator = true}).quote, '\'');
}

TEST(CsvGuess, TellsDecimalCommasFromThoseBetweenThousands) {
  const auto numbers = [](std::string_view text) {
    const CsvNumberFormat found = guessCsv(text, true).numbers;
    return std::pair(found.decimal, found.thousands);
  };
  EXPECT_EQ(numbers("a;b\n1;2\n"), std::pair('.', '\0'));
  EXPECT_EQ(numbers("a;b\n1,5;2\n"), std::pair(',', '\0'));
  EXPECT_EQ(numbers("a;b\n1.234,5;2\n"), std::pair(',', '.'));
  EXPECT_EQ(numbers("a,b\n\"1,234.5\",2\n"), std::pair('.', ','));
  // Either is possible.
  EXPECT_EQ(numbers("a;b\n1,234;2\n"), std::pair(',', '\0'));
  EXPECT_EQ(numbers("a,b\n\"1,234\",2\n"), std::pair('.', ','));
}

}  // namespace kelvarin
