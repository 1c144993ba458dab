// Light and dark, and the fields that windows share.
#include <cmath>

#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include "host/widgets/icons.h"
#include "host/widgets/info_line.h"
#include "host/widgets/path_field.h"
#include "host/widgets/search_field.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const double bright = std::max(luminance(one), luminance(other));
  const double dim = std::min(luminance(one), luminance(other));
  return (bright + 0.05) / (dim + 0.05);
}

class ThemeTest : public ::testing::Test {
 protected:
  ThemeTest() { QSettings().remove(QStringLiteral("theme")); }
  ~ThemeTest() override { Theme().setChoice(ThemeChoice::system); }
};

TEST_F(ThemeTest, TheChoiceIsRememberedAndObeyed) {
  {
    Theme theme;
    EXPECT_EQ(theme.choice(), ThemeChoice::system);
    QSignalSpy changed(&theme, &Theme::changed);
    theme.setChoice(ThemeChoice::dark);
    EXPECT_TRUE(theme.isDark());
    EXPECT_EQ(changed.count(), 1);
  }
  Theme next;
  EXPECT_EQ(next.choice(), ThemeChoice::dark);
  EXPECT_TRUE(next.isDark());
  next.setChoice(ThemeChoice::light);
  EXPECT_FALSE(next.isDark());
}

TEST_F(ThemeTest, TextsAndMarksAreReadableInBothThemes) {
  Theme theme;
  for (const ThemeChoice choice : {ThemeChoice::light, ThemeChoice::dark}) {
    theme.setChoice(choice);
    const QPalette palette = QApplication::palette();
    for (const auto paper : {QPalette::Window, QPalette::Base, QPalette::AlternateBase}) {
      const QColor background = palette.color(paper);
      for (const auto role : {QPalette::WindowText, QPalette::PlaceholderText, QPalette::Link}) {
        EXPECT_GE(contrast(palette.color(role), background), 4.5)
            << int(choice) << ' ' << paper << ' ' << role;
      }
      for (const Severity severity :
           {Severity::information, Severity::success, Severity::warning, Severity::error}) {
        EXPECT_GE(contrast(severityColor(severity, palette), background), 4.5) << int(severity);
      }
    }
    EXPECT_GE(
        contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)),
        4.5);
  }
}

// The outline's corner would be mixed with the window, so the middle of a side is looked at.
TEST_F(ThemeTest, ControlsThatAreNotTickedStandOut) {
  Theme theme;
  theme.setChoice(ThemeChoice::dark);
  const QColor window = QApplication::palette().color(QPalette::Window);
  QCheckBox check;
  QLineEdit field;
  for (QWidget* widget : {static_cast<QWidget*>(&check), static_cast<QWidget*>(&field)}) {
    const QImage image = widget->grab().toImage();
    double best = 0;
    for (int x = 0; x < 4; ++x) {
      best = std::max(best, contrast(image.pixelColor(x, image.height() / 2), window));
    }
    EXPECT_GE(best, 3) << widget->metaObject()->className();
  }
}

TEST_F(ThemeTest, IconsFollowTheThemeAndAreSharpAtEachSize) {
  Theme theme;
  const QIcon add = icon(IconName::add);
  const auto center = [&](int side) {
    const QImage image = add.pixmap(QSize(side, side)).toImage();
    EXPECT_EQ(image.width(), side);
    return image.pixelColor(side / 2, side / 2);
  };
  theme.setChoice(ThemeChoice::light);
  const QColor onLight = center(24);
  theme.setChoice(ThemeChoice::dark);
  const QColor onDark = center(48);
  EXPECT_LT(onLight.lightness(), 100);
  EXPECT_GT(onDark.lightness(), 150);
}

TEST(InfoLine, ShowsTextAsItIsAndReportsLinks) {
  InfoLine line;
  EXPECT_TRUE(line.isHidden());
  line.setMessage(Severity::error, QStringLiteral("a <b> is unknown"),
                  {{QStringLiteral("0"), QStringLiteral("Replace by 'b'")}});
  EXPECT_FALSE(line.isHidden());
  QSignalSpy activated(&line, &InfoLine::linkActivated);
  QLabel* label = nullptr;
  for (QLabel* candidate : line.findChildren<QLabel*>()) {
    label = candidate->text().isEmpty() ? label : candidate;
  }
  ASSERT_NE(label, nullptr);
  EXPECT_TRUE(label->text().contains(QStringLiteral("a &lt;b&gt; is unknown")));
  emit label->linkActivated(QStringLiteral("0"));
  EXPECT_EQ(activated.count(), 1);
  line.clear();
  EXPECT_TRUE(line.isHidden());
}

TEST(SearchField, ReportsAfterARestAndAtOnceOnEnter) {
  SearchField field;
  QSignalSpy searched(&field, &SearchField::searched);
  QTest::keyClicks(&field, QStringLiteral("round"));
  EXPECT_EQ(searched.count(), 0);
  QTest::keyClick(&field, Qt::Key_Return);
  ASSERT_EQ(searched.count(), 1);
  EXPECT_EQ(searched[0][0].toString(), QStringLiteral("round"));
  QTest::keyClick(&field, Qt::Key_Escape);
  ASSERT_EQ(searched.count(), 2);
  EXPECT_EQ(searched[1][0].toString(), QString());
}

TEST(PathField, ReportsAChangeOnceAndCompletesParameters) {
  PathField field(PathField::Mode::openFile);
  field.setParameters({QStringLiteral("folder"), QStringLiteral("year")});
  field.setPath(QStringLiteral("old.gel"));
  QSignalSpy changed(&field, &PathField::pathChanged);
  QLineEdit* edit = field.lineEdit();
  edit->setText(QStringLiteral("in/${fo.gel"));
  edit->setCursorPosition(7);
  QCompleter* completer = edit->completer();
  completer->setCompletionPrefix(completer->splitPath(edit->text()).front());
  ASSERT_EQ(completer->completionCount(), 1);
  EXPECT_EQ(completer->pathFromIndex(completer->currentIndex()),
            QStringLiteral("in/${folder}.gel"));
  edit->setText(QStringLiteral("new.gel"));
  QTest::keyClick(edit, Qt::Key_Return);
  QTest::keyClick(edit, Qt::Key_Return);
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toString(), QStringLiteral("new.gel"));
}

}  // namespace
}  // namespace kelvarin
