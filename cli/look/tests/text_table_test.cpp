#include "cli/text_table.h"

#include <gtest/gtest.h>

#include "cli/row_printer.h"

namespace kelvarin {
namespace {

TextTable sold() {
  TextTable table({{"shop"}, {"price", true}, {"note"}});
  table.add({"Lyon", "9.5", "a"});
  table.add({"Saint-\xC3\x89tienne", "12", "bc"});
  return table;
}

TEST(TextTable, NumbersStandRightAndNothingEndsInBlanks) {
  EXPECT_EQ(sold().text(),
            "shop           price  note\n"
            "Lyon             9.5  a\n"
            "Saint-\xC3\x89tienne     12  bc\n");
}

TEST(TextTable, ColumnsThatDoNotFitAreCountedOrFollow) {
  EXPECT_EQ(sold().text(22),
            "shop           price\n"
            "Lyon             9.5\n"
            "Saint-\xC3\x89tienne     12\n"
            "... and 1 more column\xE2\x80\xA6\n");
  EXPECT_EQ(sold().text(22, WideTable::folded),
            "shop           price\n"
            "Lyon             9.5\n"
            "Saint-\xC3\x89tienne     12\n"
            "\n"
            "shop           note\n"
            "Lyon           a\n"
            "Saint-\xC3\x89tienne  bc\n");
}

TEST(TextTable, LongCellsAreCutByWhatTheyTakeOnTheScreen) {
  TextTable table({{"a"}});
  table.add({"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"});  // three wide characters
  table.add({"e\xCC\x81tat"});                          // an accent of its own takes none
  EXPECT_EQ(table.text(5), "a\n\xE6\x97\xA5\xE6\x9C\xAC\xE2\x80\xA6\ne\xCC\x81tat\n");
  EXPECT_EQ(shownWidth("\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E"), 6u);
  EXPECT_EQ(shownWidth("e\xCC\x81tat"), 4u);
}

TEST(TextTable, NullIsToldFromTextsThatLookLikeIt) {
  EXPECT_EQ(cellOf(MetaTypeColumn::text, nullptr), "null");
  EXPECT_EQ(cellOf(MetaTypeColumn::number, nullptr), "null");
  EXPECT_EQ(cellOfText("null"), "\"null\"");
  EXPECT_EQ(cellOfText(""), "\"\"");
  EXPECT_EQ(cellOfText(" a"), "\" a\"");
  EXPECT_EQ(cellOfText("a b"), "a b");
  EXPECT_EQ(cellOfText("a\tb\x1B[2J"), "a\\x09b\\x1b[2J");
}

}  // namespace
}  // namespace kelvarin
