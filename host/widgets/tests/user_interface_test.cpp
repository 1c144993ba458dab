#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

#include "host/contract/one_row.h"
#include "host/pictures/pictures.h"
#include "host/testing/recording_host.h"
#include "host/widgets/user_interface.h"
#include "host/widgets/widget_screen.h"

using kelvarin::testing::RecordingHost;
using kelvarin::testing::Strings;

namespace {

QApplication& screen() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static QApplication application(count, arguments);
  static kelvarin::WidgetScreen widgets;
  kelvarin::installScreen(&widgets);
  return application;
}

// Before any test makes the application.
TEST(AWithoutScreen, QuestionsGetNoAnswerAndTheLogALine) {
  RecordingHost host;
  EXPECT_EQ(renderSVG(48, ":/KelvarinPictures/plus.svg", nullptr, nullptr), nullptr);
  EXPECT_EQ(renderSVG(48, ":/KelvarinPictures/plus.svg", nullptr, nullptr), nullptr);
  EXPECT_EQ(host.log().size(), 1u);
  EXPECT_EQ(MainUI::selectColumn(QStringList{"a"}, 0, nullptr), -1);
  EXPECT_TRUE(tGetOpenFileName(nullptr, {}, {}, {}).isEmpty());
  EXPECT_EQ(host.log().size(), 3u);
}

TEST(Pictures, AreDrawnOnceASize) {
  screen();
  QPixmap cache;
  void* state = nullptr;
  QPixmap* picture = renderSVG(48, ":/KelvarinPictures/plus.svg", &cache, &state);
  ASSERT_EQ(picture, &cache);
  EXPECT_EQ(picture->width(), 48);
  const qint64 drawn = cache.cacheKey();
  renderSVG(48, ":/KelvarinPictures/plus.svg", &cache, &state);
  EXPECT_EQ(cache.cacheKey(), drawn);
  EXPECT_EQ(renderSVG(20, ":/KelvarinPictures/plus.svg", &cache, &state)->width(), 20);
  EXPECT_GT(picture->toImage().pixelColor(10, 10).alpha(), 200);
  EXPECT_FALSE(getPlusIcon().isNull());
  EXPECT_NE(getMinusIcon().pixmap(16).toImage(), getPlusIcon().pixmap(16).toImage());
}

TEST(Pictures, WhatIsNoPictureIsNamedOnce) {
  screen();
  RecordingHost host;
  QPixmap cache;
  void* state = nullptr;
  EXPECT_EQ(renderSVG(48, ":/absent.svg", &cache, &state), nullptr);
  EXPECT_EQ(renderSVG(48, ":/absent.svg", &cache, &state), nullptr);
  EXPECT_EQ(host.log(),
            Strings{"warning: The picture \":/absent.svg\" is missing or is no SVG file."});
}

TEST(Pickers, GiveTheColumnsThatTheUserMarks) {
  screen();
  PinOutMetaData columns;
  columns.setColumnCount(3);
  columns.setNames({"a", "b", "c"});
  const OneRow row(&columns);
  const auto answer = [](bool isAccepted) {
    QTimer::singleShot(0, [isAccepted] {
      auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (auto* list = dialog->findChild<QListWidget*>()) {
        list->item(2)->setSelected(true);
      }
      isAccepted ? dialog->accept() : dialog->reject();
    });
  };
  answer(true);
  EXPECT_EQ(MainUI::selectColumn(&row, QStringList{"a"}, nullptr), (QStringList{"a", "c"}));
  answer(false);
  EXPECT_EQ(MainUI::selectColumn(&row, QStringList{"a"}, nullptr), QStringList{"a"});
  answer(true);
  EXPECT_EQ(MainUI::selectColumn(QStringList{"a", "b"}, 1, nullptr), 1);
  answer(false);
  EXPECT_EQ(MainUI::selectColumn(QStringList{"a", "b"}, 1, nullptr), -1);
}

}  // namespace
