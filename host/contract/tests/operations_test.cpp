#include <atomic>

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QListWidget>
#include <QPixmap>
#include <QTimer>

#include "host/contract/engine_runner.h"
#include "host/contract/pictures.h"
#include "host/contract/pin_out_data_preview.h"
#include "host/contract/text_operations.h"
#include "host/contract/user_interface.h"
#include "host/testing/recording_host.h"

using kelvarin::testing::RecordingHost;
using kelvarin::testing::Strings;

namespace {

QApplication& screen() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static QApplication application(count, arguments);
  return application;
}

// Before any test makes the application.
TEST(AWithoutScreen, QuestionsGetNoAnswerAndTheLogALine) {
  RecordingHost host;
  EXPECT_EQ(renderSVG(48, ":/KelvarinCore/plus.svg", nullptr, nullptr), nullptr);
  EXPECT_EQ(renderSVG(48, ":/KelvarinCore/plus.svg", nullptr, nullptr), nullptr);
  EXPECT_EQ(host.log().size(), 1u);
  EXPECT_EQ(MainUI::selectColumn(QStringList{"a"}, 0, nullptr), -1);
  EXPECT_TRUE(tGetOpenFileName(nullptr, {}, {}, {}).isEmpty());
  EXPECT_EQ(host.log().size(), 3u);
}

TEST(Pictures, AreDrawnOnceASize) {
  screen();
  QPixmap cache;
  void* state = nullptr;
  QPixmap* picture = renderSVG(48, ":/KelvarinCore/plus.svg", &cache, &state);
  ASSERT_EQ(picture, &cache);
  EXPECT_EQ(picture->width(), 48);
  const qint64 drawn = cache.cacheKey();
  renderSVG(48, ":/KelvarinCore/plus.svg", &cache, &state);
  EXPECT_EQ(cache.cacheKey(), drawn);
  EXPECT_EQ(renderSVG(20, ":/KelvarinCore/plus.svg", &cache, &state)->width(), 20);
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

TEST(Texts, AreTrimmedAndListed) {
  EXPECT_EQ(myTrim(" \ta b\n"), "a b");
  EXPECT_EQ(myTrimLeft(" a "), "a ");
  EXPECT_EQ(myTrimRight(" a "), " a");
  EXPECT_EQ(myTrim(" \n "), "");
  EXPECT_TRUE(myTrim(QString()).isNull());
  EXPECT_EQ(stringFromStringList({"a", "b", "c"}, 0), "a, b, c");
  EXPECT_EQ(stringFromStringList({"a", "b", "c"}, 2), "a, b, ... (3 in all)");
  EXPECT_EQ(totalLengthField(QString::fromUtf8("\xC3\xA9")), 6);
  EXPECT_EQ(copyForWeb("/a b/c.png"), "file:///a%20b/c.png");
  EXPECT_EQ(copyForWeb(":/x.svg"), "qrc:/x.svg");
  const QString shared = "abc";
  EXPECT_EQ(detach(shared), shared);
  EXPECT_NE(detach(shared).constData(), shared.constData());
}

TEST(Texts, SortingMovesTheValuesAlongAndKeepsTheOrderOfEqualKeys) {
  int keys[] = {9, 3, 1, 3, 0};
  int values[] = {0, 1, 2, 3, 4};
  sortIntInt(keys, values, 1, 3);
  EXPECT_EQ((std::vector<int>(values, values + 5)), (std::vector<int>{0, 2, 1, 3, 4}));
  EXPECT_EQ((std::vector<int>(keys, keys + 5)), (std::vector<int>{9, 1, 3, 3, 0}));
}

TEST(Texts, ANameCollidesUnlessItsColumnIsReplaced) {
  RecordingHost host;
  PinOutMetaData columns;
  columns.setColumnCount(2);
  columns.setNames({"a", "b"});
  const OneRow row(&columns);
  EXPECT_FALSE(doCheckNameCollision(&row, true, nullptr, {}, "c"));
  EXPECT_FALSE(doCheckNameCollision(&row, true, nullptr, {1}, "b"));
  EXPECT_EQ(host.log(), Strings{});
  EXPECT_TRUE(doCheckNameCollision(&row, false, nullptr, {0}, "b"));
  ASSERT_EQ(host.lines().size(), 1u);
  EXPECT_EQ(host.lines()[0].level, LogLevel::warning);
}

class RunningHost : public RecordingHost {
 public:
  bool runBranch(EngineRunner& runner, ActionItem&, int pin) override {
    runner.start([this, pin](RunRecord&) { lastPin = pin; });
    return true;
  }
  std::atomic<int> lastPin{-7};
};

class CountingRunner : public EngineRunner {
 public:
  ~CountingRunner() override { wait(); }
  void computationFinished() override { ++finished; }
  std::atomic<int> finished{0};
};

class SomeAction : public ActionItem {
 public:
  SomeAction() : ActionItem(XMLNode(), nullptr) {}
  const char* typeName() const override { return "Some"; }
  void setComputeRoutine() override {}
  ActionItem* createFromXML(XMLNode, GlobalParameters*) override { return new SomeAction; }
};

TEST(EngineRunner, RunsTheBranchBesideItsCallerAndReportsTheEnd) {
  SomeAction action;
  CountingRunner runner;
  {
    RecordingHost unable;
    EXPECT_FALSE(runner.run(-1, &action, 0, false));
    EXPECT_EQ(unable.log().size(), 1u);
  }
  RunningHost host;
  for (int run = 1; run <= 3; ++run) {
    EXPECT_TRUE(runner.run(-1, &action, 0, true));
    EXPECT_EQ(runner.finished, run);
    EXPECT_EQ(host.lastPin, -1);
  }
  EXPECT_FALSE(runner.isRunning());
}

TEST(DataPreview, IsCompleteAtTheLastEntryAndStartsAgainEmpty) {
  PinOutDataPreview preview;
  PinOutMetaData columns;
  columns.setColumnCount(2);
  preview.append({0, 8, 100});
  EXPECT_FALSE(preview.isComplete());
  preview.complete({0, 11, 180});
  EXPECT_TRUE(preview.isComplete());
  EXPECT_EQ(preview.entries().back(), (PinOutDataPreview::Entry{0, 11, 180}));
  preview.start(columns);
  EXPECT_TRUE(preview.entries().empty());
  EXPECT_FALSE(preview.isComplete());
  EXPECT_EQ(preview.columns().columnCount(), 2);
}

}  // namespace
