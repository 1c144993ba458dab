// A preview while its rows are computed: stopped in the middle, overtaken by a change, without rows
// or columns, and with texts as long as they come.
#include <algorithm>
#include <atomic>
#include <thread>

#include <gtest/gtest.h>
#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>

#include "gui/preview/preview_view.h"
#include "gui/preview/tests/shown_preview.h"
#include "host/engine/tests/made_actions.h"
#include "host/tables/table_actions.h"

namespace kelvarin::testing {
namespace {

// A step of a source that takes a while, so that a preview is seen at work.
void takeAWhile(long long row) {
  if (row % 64 == 63) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

ActionCatalogue::Prototypes prototypes() {
  ActionCatalogue::Prototypes all = testPrototypes();
  for (auto& prototype : makeTableActions()) {
    all.push_back(std::move(prototype));
  }
  return all;
}

class PreviewComputingTest : public ::testing::Test, protected ShownPreview {
 protected:
  PreviewComputingTest() : ShownPreview(prototypes()) {}
  void SetUp() override { witness = &seen; }
  void TearDown() override { witness = nullptr; }

  void open(const QByteArray& actions) {
    openGraph("<KelvarinGraph version='1.0'><Actions>" + actions +
              "</Actions><Links/></KelvarinGraph>");
  }
  bool awaitRows(int count) {
    return QTest::qWaitFor([&] { return table().model().rowCount() >= count; }, 20'000);
  }
  bool awaitEnd() {
    return QTest::qWaitFor([this] { return stopButton().isHidden(); }, 20'000);
  }

  Witness seen;
};

TEST_F(PreviewComputingTest, StopsAtARowAndKeepsTheRowsThatCame) {
  seen.onSourceRow = takeAWhile;
  open("<Count name='s' rows='1000000'/>");
  panel.showPin(pinOf("s"));
  ASSERT_TRUE(awaitRows(1));
  ASSERT_TRUE(stopButton().isVisible());
  EXPECT_TRUE(status().contains(QStringLiteral("so far"))) << status().toStdString();
  QElapsedTimer clock;
  clock.start();
  QTest::mouseClick(&stopButton(), Qt::LeftButton);
  ASSERT_TRUE(awaitEnd());
  EXPECT_LT(clock.elapsed(), 400);  // 100 ms where nothing else is at work
  const int count = table().model().rowCount();
  EXPECT_GT(count, 0);
  EXPECT_LT(count, 1000);
  EXPECT_TRUE(status().startsWith(QStringLiteral("stopped after"))) << status().toStdString();
  EXPECT_EQ(table().model().index(count - 1, 0).data().toInt(), count - 1);
}

TEST_F(PreviewComputingTest, SaysThatNoRowHasComeAndCanBeStopped) {
  std::atomic<bool> mayGoOn{false};
  seen.onSourceRow = [&mayGoOn](long long) { mayGoOn.wait(false); };
  open("<Count name='s'/>");
  panel.showPin(pinOf("s"));
  const auto isSaid = [this](const char* text) {
    const QList<QLabel*> labels = panel.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [text](const QLabel* label) {
      return label->isVisible() && label->text().contains(QLatin1String(text));
    });
  };
  EXPECT_TRUE(isSaid("being computed"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return isSaid("No row has come yet"); }, 10'000));
  QTest::mouseClick(&stopButton(), Qt::LeftButton);
  mayGoOn = true;
  mayGoOn.notify_all();
  ASSERT_TRUE(awaitEnd());
  EXPECT_TRUE(status().startsWith(QStringLiteral("stopped"))) << status().toStdString();
}

// The rows of the graph as it was never come into the view of the new one.
TEST_F(PreviewComputingTest, AChangeAboveOvertakesWhatIsBeingComputed) {
  seen.onSourceRow = takeAWhile;
  open("<Count name='s' rows='1000000'/>");
  panel.showPin(pinOf("s"));
  ASSERT_TRUE(awaitRows(1));
  ASSERT_TRUE(commands.setElement(pinOf("s").action, "<Count name='s' rows='3' texts='1'/>"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return table().model().columnCount() == 2; }, 20'000));
  ASSERT_TRUE(awaitEnd());
  EXPECT_EQ(table().model().rowCount(), 3);
  EXPECT_EQ(table().model().index(1, 1).data().toString(), QStringLiteral("row 1"));
  EXPECT_EQ(status(), QStringLiteral("all 3 rows"));
}

TEST_F(PreviewComputingTest, WithoutRowsThereAreColumnsAndNothingToCopy) {
  open(
      "<InlineTable name='none'><Column name='a' meta='F'/>"
      "<Column name='b' meta='U'/></InlineTable>");
  panel.showPin(pinOf("none"));
  ASSERT_TRUE(QTest::qWaitFor([this] { return status() == QStringLiteral("all 0 rows"); }));
  EXPECT_EQ(table().model().columnCount(), 2);
  QGuiApplication::clipboard()->setText(QStringLiteral("kept"));
  table().view().setFocus();
  QTest::keyClick(&table().view(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&table().view(), Qt::Key_C, Qt::ControlModifier);
  QTest::keyClick(&table().view(), Qt::Key_Return);
  QTest::qWait(50);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));

  // Headers alone make a file that can be read again.
  QTemporaryDir folder;
  table().exportTo(folder.filePath("none.csv"));
  QFile file(folder.filePath("none.csv"));
  ASSERT_TRUE(QTest::qWaitFor([&file] { return file.exists(); }));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(file.readAll(), "a,b\n");
}

TEST_F(PreviewComputingTest, LongTextsAreOneLineAndWholeOnEnter) {
  const QByteArray text = QByteArray("first line\n") + QByteArray(100'000, 'x') + "\nend";
  open("<InlineTable name='t'><Column name='t' meta='U'/><Column name='n' meta='F'/><Row><V>" +
       text + "</V><V>0.1234567890123456</V></Row></InlineTable>");
  panel.showPin(pinOf("t"));
  ASSERT_TRUE(awaitRows(1));
  const QString shown = table().model().index(0, 0).data().toString();
  EXPECT_LT(shown.size(), 3000);
  EXPECT_FALSE(shown.contains(u'\n'));
  table().view().setFocus();
  table().view().setCurrentIndex(table().model().index(0, 0));
  QTest::keyClick(&table().view(), Qt::Key_Return);
  auto* whole = table().findChild<QPlainTextEdit*>();
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(whole->toPlainText().toUtf8(), text);
  QTest::keyClick(&table().view(), Qt::Key_C, Qt::ControlModifier);
  ASSERT_TRUE(
      QTest::qWaitFor([] { return QGuiApplication::clipboard()->text().size() > 100'000; }));
  EXPECT_EQ(table().model().index(0, 1).data(Qt::ToolTipRole).toString(),
            QStringLiteral("0.1234567890123456"));
}

}  // namespace
}  // namespace kelvarin::testing
