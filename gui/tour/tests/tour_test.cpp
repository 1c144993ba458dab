// A tour by real keys, and where its bubbles go.
#include <gtest/gtest.h>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "gui/tour/bubble_placement.h"
#include "gui/tour/tour.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin {
namespace {

using Side = BubblePlacement::Side;

TEST(BubblePlacement, IsBesideTheTargetAndInsideTheWindow) {
  const QRect window(0, 0, 1024, 700);
  const QSize bubble(360, 160);
  const auto beside = [&](const QRect& target, Qt::LayoutDirection direction = Qt::LeftToRight) {
    return bubbleBeside(window, target, bubble, 12, direction);
  };
  const QRect targets[] = {{0, 20, 60, 30},     {400, 300, 120, 60}, {0, 520, 760, 180},
                           {600, 40, 424, 660}, {0, 40, 200, 660},   {960, 0, 64, 24}};
  for (const QRect& target : targets) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
      const BubblePlacement placed = beside(target, direction);
      EXPECT_TRUE(window.contains(placed.rectangle));
      EXPECT_FALSE(placed.rectangle.intersects(target));
      EXPECT_NE(placed.side, Side::none);
    }
  }
  EXPECT_EQ(beside(targets[0]).side, Side::below);
  EXPECT_EQ(beside(targets[2]).side, Side::above);
  EXPECT_EQ(beside(targets[3]).side, Side::left);
  EXPECT_EQ(beside({450, 0, 40, 700}, Qt::LeftToRight).side, Side::right);
  EXPECT_EQ(beside({450, 0, 40, 700}, Qt::RightToLeft).side, Side::left);
  EXPECT_EQ(beside(window).side, Side::none);
  EXPECT_EQ(beside({}).side, Side::none);
}

class TourTest : public ::testing::Test {
 protected:
  void SetUp() override {
    auto* layout = new QVBoxLayout(&window);
    for (QPushButton* button : {&first, &second}) {
      layout->addWidget(button, 0, Qt::AlignLeft);
    }
    window.resize(1024, 700);
    window.show();
    window.activateWindow();
    tour.start();
  }
  QWidget& bubble() { return *window.findChild<QWidget*>("tourBubble"); }
  QString textOf(const char* button) {
    return bubble().findChild<QPushButton*>(QLatin1String(button))->text();
  }

  QWidget window;
  QPushButton first{QStringLiteral("one"), &window};
  QPushButton second{QStringLiteral("two"), &window};
  int shown = 0;
  Tour tour{window,
            {{QStringLiteral("First"), QStringLiteral("This is one."), nullptr,
              [this] { return partOfWindow(first, first.rect()); }},
             {QStringLiteral("Second"), QStringLiteral("This is two."), [this] { ++shown; },
              [this] { return partOfWindow(second, second.rect()); }}}};
};

TEST_F(TourTest, GoesOnAndBackByKeysAndLeavesTheWindowToItsUser) {
  QSignalSpy left(&tour, &Tour::left);
  EXPECT_TRUE(bubble().accessibleName().endsWith(u"First"));
  QTest::keyClick(window.focusWidget(), Qt::Key_Space);
  EXPECT_TRUE(bubble().accessibleName().endsWith(u"Second"));
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(textOf("tourNext"), u"Done");
  bubble().findChild<QPushButton*>("tourBack")->click();
  EXPECT_TRUE(bubble().accessibleName().endsWith(u"First"));
  // Beside the bubble everything can be used.
  QSignalSpy clicked(&second, &QPushButton::clicked);
  QTest::mouseClick(&second, Qt::LeftButton);
  EXPECT_EQ(clicked.size(), 1);
  QTest::keyClick(&second, Qt::Key_Escape);
  EXPECT_FALSE(bubble().isVisible());
  EXPECT_FALSE(tour.isOpen());
  EXPECT_EQ(left.size(), 1);
}

TEST_F(TourTest, FollowsWhatItPointsAt) {
  const QPoint before = bubble().pos();
  first.hide();
  EXPECT_TRUE(QTest::qWaitFor([&] { return bubble().pos() != before; }));
  first.show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return bubble().pos() == before; }));
}

TEST_F(TourTest, IsReadableWithLargeFontsAndMirrored) {
  EXPECT_EQ(testing::cutTexts(bubble()).join(u'\n').toStdString(), "");
  const testing::LargeFonts large(2.0);
  QWidget mirrored;
  mirrored.setLayoutDirection(Qt::RightToLeft);
  mirrored.resize(1024, 700);
  mirrored.show();
  Tour another(mirrored,
               {{QStringLiteral("Title"), QStringLiteral("A long text of a step. ").repeated(12),
                 nullptr, [] { return QRect(500, 300, 40, 40); }}});
  another.start();
  auto& bubbleOfAnother = *mirrored.findChild<QWidget*>("tourBubble");
  EXPECT_TRUE(mirrored.rect().contains(bubbleOfAnother.geometry()));
  EXPECT_EQ(testing::cutTexts(bubbleOfAnother).join(u'\n').toStdString(), "");
  EXPECT_EQ(testing::controlsWithoutName(bubbleOfAnother).join(u'\n').toStdString(), "");
}

}  // namespace
}  // namespace kelvarin
