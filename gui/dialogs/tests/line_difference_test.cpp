#include "gui/dialogs/line_difference.h"

#include <gtest/gtest.h>

namespace kelvarin {

namespace {

QString shown(const QString& first, const QString& second) {
  QString text;
  for (const DifferenceLine& line : lineDifference(first, second)) {
    text += line.kind == DifferenceLine::Kind::both        ? u' '
            : line.kind == DifferenceLine::Kind::onlyFirst ? u'-'
                                                           : u'+';
    text += line.text + u'\n';
  }
  return text;
}

TEST(LineDifference, ShowsOnlyWhatOneOfBothHas) {
  EXPECT_EQ(shown("a\nb\nc", "a\nb\nc"), " a\n b\n c\n");
  EXPECT_EQ(shown("a\nb\nc\nd", "a\nc\nx\nd"), " a\n-b\n c\n+x\n d\n");
  EXPECT_EQ(shown("", "a"), "-\n+a\n");
  EXPECT_EQ(shown("a\na", "a"), " a\n-a\n");
}

// Reading it from either side yields that text, also where the texts are too long to match.
TEST(LineDifference, BothTextsCanBeReadBackFromIt) {
  QStringList first;
  QStringList second;
  for (int i = 0; i < 5000; ++i) {
    first += QString::number(i * 3);
    second += QString::number(i * 2);
  }
  QStringList readFirst;
  QStringList readSecond;
  for (const DifferenceLine& line : lineDifference(first.join(u'\n'), second.join(u'\n'))) {
    if (line.kind != DifferenceLine::Kind::onlySecond) {
      readFirst += line.text;
    }
    if (line.kind != DifferenceLine::Kind::onlyFirst) {
      readSecond += line.text;
    }
  }
  EXPECT_EQ(readFirst, first);
  EXPECT_EQ(readSecond, second);
}

}  // namespace

}  // namespace kelvarin
