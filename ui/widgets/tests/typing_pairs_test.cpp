// What is typed, as texts: `|` is the cursor, and what stands between two of them is selected.
#include <gtest/gtest.h>

#include "ui/widgets/typing_pairs.h"

namespace kelvarin {
namespace {

struct Marked {
  QString text;
  qsizetype anchor = 0;
  qsizetype position = 0;
};

Marked marked(const char* pattern) {
  Marked result{QString::fromLatin1(pattern)};
  result.anchor = result.text.indexOf(u'|');
  result.text.remove(result.anchor, 1);
  result.position = result.text.indexOf(u'|');
  if (result.position < 0) {
    result.position = result.anchor;
  } else {
    result.text.remove(result.position, 1);
  }
  return result;
}

std::string shown(QString text, const std::optional<TextChange>& change) {
  if (!change) {
    return "plain";
  }
  text.replace(change->start, change->size, change->replacement);
  text.insert(change->position, u'|');
  if (change->anchor != change->position) {
    text.insert(change->anchor, u'|');
  }
  return text.toStdString();
}

std::string typed(const char* pattern, char character) {
  const Marked before = marked(pattern);
  return shown(before.text,
               typedBracket(before.text, before.anchor, before.position, QLatin1Char(character)));
}

std::string erased(const char* pattern) {
  const Marked before = marked(pattern);
  return shown(before.text, removedPair(before.text, before.position));
}

TEST(TypingPairs, AnOpeningBracketBringsItsPartnerUnlessAValueFollows) {
  EXPECT_EQ(typed("floor|", '('), "floor(|)");
  EXPECT_EQ(typed("a + | * b", '('), "a + (|) * b");
  EXPECT_EQ(typed("(a + |)", '['), "(a + [|])");
  EXPECT_EQ(typed("3|", '{'), "3{|}");
  EXPECT_EQ(typed("|price", '('), "plain");
  EXPECT_EQ(typed("|(a)", '('), "plain");
  EXPECT_EQ(typed("a|", '+'), "plain");
}

TEST(TypingPairs, QuotesPairOutsideOfTextsOnly) {
  EXPECT_EQ(typed("a // |", '"'), "a // \"|\"");
  EXPECT_EQ(typed("\"it|s\"", '"'), "plain");
  EXPECT_EQ(typed("\"it|", '"'), "plain");
  EXPECT_EQ(typed("\"it|\"", '"'), "\"it\"|");
  EXPECT_EQ(typed("\"a|b\"", '('), "plain");
}

TEST(TypingPairs, AClosingBracketThatIsThereIsPassedOver) {
  EXPECT_EQ(typed("floor(x|)", ')'), "floor(x)|");
  EXPECT_EQ(typed("((x|)", ')'), "plain");
  EXPECT_EQ(typed("x|", ')'), "plain");
  EXPECT_EQ(typed("3{k|}", '}'), "3{k}|");
}

TEST(TypingPairs, ASelectionIsWrappedAndStaysSelected) {
  EXPECT_EQ(typed("|a + b| * c", '('), "(|a + b|) * c");
  EXPECT_EQ(typed("|name|", '"'), "\"|name|\"");
  EXPECT_EQ(typed("|a|", ')'), "plain");
}

TEST(TypingPairs, BackspaceRemovesAnEmptyPair) {
  EXPECT_EQ(erased("floor(|)"), "floor|");
  EXPECT_EQ(erased("\"|\""), "|");
  EXPECT_EQ(erased("(|x)"), "plain");
  EXPECT_EQ(erased("\"a\"|\"b\""), "plain");
}

}  // namespace
}  // namespace kelvarin
