// The preview of pins with real widgets, over graphs of the host's own actions.
#include <gtest/gtest.h>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

#include "gui/preview/preview_header.h"
#include "gui/preview/preview_view.h"
#include "gui/preview/profile_panel.h"
#include "gui/preview/tests/shown_preview.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/info_line.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

// Each value of the names that a spreadsheet, a screen or a sort could take for another one.
QByteArray rowsOf(int count) {
  QByteArray rows;
  for (int i = 0; i < count; ++i) {
    const QByteArray town = i % 7 == 3   ? "<V null='1'/>"
                            : i % 7 == 5 ? "<V></V>"
                            : i % 7 == 6 ? "<V> Lyon </V>"
                            : i % 2 == 0 ? "<V>Gent</V>"
                                         : "<V>Le Havre</V>";
    const QByteArray number =
        i % 11 == 4 ? "<V>nan</V>" : "<V>" + QByteArray::number(i * 37 % 100 / 4.0) + "</V>";
    rows += "<Row>" + town + number + "<V>" + QByteArray::number(i) + "</V></Row>";
  }
  return rows;
}

QByteArray graphOf(int rows) {
  return "<KelvarinGraph version='1.0'><Actions><InlineTable name='towns'>"
         "<Column name='town' meta='U'/><Column name='size' meta='F'/>"
         "<Column name='id' meta='K'/>" +
         rowsOf(rows) +
         "</InlineTable><ReadCSV name='lost' file='/no/such/file.csv'/><Discard name='none'/>"
         "<Discard name='free'/><InlineTable name='bare'><Column name='x' meta='U'/></InlineTable>"
         "</Actions><Links><Link from='towns' to='none'/></Links></KelvarinGraph>";
}

void expectNone(const QStringList& faults) {
  EXPECT_EQ(faults.join(u'\n').toStdString(), "");
}

class PreviewPanelTest : public ::testing::Test, protected testing::ShownPreview {
 protected:
  PreviewPanelTest() : ShownPreview(makeTableActions()) {}

  void open(int rows) { openGraph(graphOf(rows)); }
  // Until nothing is computed any more.
  void show(const PinRef& pin) {
    panel.showPin(pin);
    await();
  }
  void await() {
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return stopButton().isHidden() && !table().isOrdering() && isQuiet(); }, 20'000));
  }
  bool isQuiet() {
    QApplication::processEvents();
    return true;
  }
  QString cell(int row, int column) { return table().model().index(row, column).data().toString(); }
  QString message() {
    QString all;
    for (const InfoLine* line : panel.findChildren<InfoLine*>()) {
      all += line->text();
    }
    return all;
  }
  void clickHeader(int column) {
    PreviewHeader& header = table().header();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(column) + header.sectionSize(column) / 2, 8});
    await();
  }
  QAction* menuAction(const char* menu, const QString& text) {
    auto* shown = panel.findChild<QMenu*>(QLatin1String(menu));
    for (QAction* action : shown->actions()) {
      if (QString(action->text()).remove(u'&').startsWith(text)) {
        return action;
      }
    }
    return nullptr;
  }
};

TEST_F(PreviewPanelTest, WhatIsNoOrdinaryValueLooksUnlikeOne) {
  open(20);
  show(pinOf("towns"));
  EXPECT_EQ(status(), QStringLiteral("all 20 rows"));
  EXPECT_EQ(cell(0, 0), QStringLiteral("Gent"));
  EXPECT_EQ(cell(3, 0), QStringLiteral("null"));
  EXPECT_EQ(cell(5, 0), QStringLiteral("(empty)"));
  EXPECT_EQ(cell(6, 0), QStringLiteral("\u00B7Lyon\u00B7"));
  EXPECT_EQ(cell(4, 1), QStringLiteral("NaN"));
  const int alignment = table().model().index(0, 1).data(Qt::TextAlignmentRole).toInt();
  EXPECT_TRUE((alignment & Qt::AlignRight) != 0);
}

TEST_F(PreviewPanelTest, RowsStayUntilSomethingAboveChanges) {
  open(2500);
  show(pinOf("towns"));
  EXPECT_EQ(status(), QStringLiteral("the first 1,000 rows"));
  const std::shared_ptr<PreviewRows> before = table().model().rows();
  commands.rename(graph.idOf(QStringLiteral("none")), QStringLiteral("nothing"));
  const ActionId towns = graph.idOf(QStringLiteral("towns"));
  commands.moveActions({{towns, QPointF(300, 200)}}, {});
  commands.rename(towns, QStringLiteral("cities"));
  commands.rename(towns, QStringLiteral("towns"));
  commands.addNote(QRectF(0, 0, 50, 50), QStringLiteral("a note"), Qt::yellow);
  commands.remove({{graph.idOf(QStringLiteral("lost"))}, {}, {}});
  QTest::qWait(600);
  await();
  EXPECT_EQ(table().model().rows(), before);

  // A sink's input shows what comes in; the first pin's rows are kept meanwhile.
  show(pinOf("nothing", false));
  EXPECT_NE(table().model().rows(), before);
  EXPECT_EQ(table().model().rowCount(), 1000);
  show(pinOf("towns"));
  EXPECT_EQ(table().model().rows(), before);

  const QByteArray fewer =
      "<InlineTable name='towns'><Column name='town' meta='U'/><Row><V>Ulm</V></Row></InlineTable>";
  ASSERT_TRUE(commands.setElement(graph.idOf(QStringLiteral("towns")), fewer));
  ASSERT_TRUE(QTest::qWaitFor([&] { return table().model().rowCount() == 1; }, 20'000));
  EXPECT_EQ(cell(0, 0), QStringLiteral("Ulm"));
  commands.stack().undo();
  ASSERT_TRUE(QTest::qWaitFor([&] { return table().model().rowCount() == 1000; }, 20'000));
}

TEST_F(PreviewPanelTest, ALargerChoiceComputesAnewAndASmallerOneDoesNot) {
  open(2500);
  show(pinOf("towns"));
  auto* limit = panel.findChild<QComboBox*>(QStringLiteral("previewLimit"));
  const auto choose = [&](int index) {
    limit->setCurrentIndex(index);
    emit limit->activated(index);
    await();
  };
  choose(3);
  ASSERT_TRUE(QTest::qWaitFor([&] { return table().model().rowCount() == 2500; }, 20'000));
  EXPECT_EQ(status(), QStringLiteral("all 2,500 rows"));
  const std::shared_ptr<PreviewRows> all = table().model().rows();
  choose(0);
  EXPECT_EQ(table().model().rowCount(), 100);
  EXPECT_EQ(status(), QStringLiteral("the first 100 rows"));
  EXPECT_EQ(table().model().rows(), all);
}

TEST_F(PreviewPanelTest, AFailureSaysWhyAndLeadsToItsAction) {
  open(3);
  QSignalSpy wanted(&panel, &PreviewPanel::actionWanted);
  show(pinOf("lost"));
  EXPECT_TRUE(message().contains(QStringLiteral("/no/such/file.csv"))) << message().toStdString();
  for (InfoLine* line : panel.findChildren<InfoLine*>()) {
    if (!line->text().isEmpty()) {
      emit line->linkActivated(QStringLiteral("action"));
    }
  }
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_EQ(wanted[0][0].value<ActionId>(), graph.idOf(QStringLiteral("lost")));

  show(pinOf("free", false));
  const QStringList labels = [&] {
    QStringList texts;
    for (const QLabel* label : panel.findChildren<QLabel*>()) {
      texts += label->isVisible() ? label->text() : QString();
    }
    return texts;
  }();
  EXPECT_TRUE(labels.join(u' ').contains(QStringLiteral("Nothing is linked")))
      << labels.join(u' ').toStdString();

  show(pinOf("bare"));
  EXPECT_EQ(table().model().columnCount(), 1);
  EXPECT_TRUE(message().contains(QStringLiteral("its columns are known")));
}

TEST_F(PreviewPanelTest, SortingAndFilteringAreOfTheViewAloneAndRowsKeepTheirNumbers) {
  open(40);
  show(pinOf("towns"));
  clickHeader(2);
  clickHeader(2);
  EXPECT_EQ(cell(0, 2), QStringLiteral("39"));
  EXPECT_EQ(table().model().headerData(0, Qt::Vertical, Qt::DisplayRole).toString(),
            QStringLiteral("39"));
  table().view().setFocus();
  table().view().setCurrentIndex(table().model().index(0, 2));
  QTest::keyClick(&table().view(), Qt::Key_F, Qt::ControlModifier);
  auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, QStringLiteral("<= 3"));
  QTest::keyClick(field, Qt::Key_Return);
  await();
  EXPECT_EQ(status(), QStringLiteral("4 of 40 rows"));
  EXPECT_EQ(cell(3, 2), QStringLiteral("0"));
  EXPECT_TRUE(table().view().hasFocus());

  QTest::keyClick(&table().view(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&table().view(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  ASSERT_TRUE(QTest::qWaitFor([] { return !QGuiApplication::clipboard()->text().isEmpty(); }));
  EXPECT_EQ(
      QGuiApplication::clipboard()->text(),
      QStringLiteral("town\tsize\tid\n\t2.75\t3\nGent\t18.5\t2\nLe Havre\t9.25\t1\nGent\t0\t0\n"));

  // A filter that is none is marked, and hides nothing.
  table().header().setFilter(2, QStringLiteral("> many"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return table().model().rowCount() == 40; }));
}

TEST_F(PreviewPanelTest, TheMenuOfACellLeadsToActions) {
  open(20);
  show(pinOf("towns"));
  qRegisterMetaType<RowCondition>();
  QSignalSpy steps(&panel, &PreviewPanel::stepToRowWanted);
  QSignalSpy kept(&panel, &PreviewPanel::keepRowsWanted);
  QSignalSpy columns(&panel, &PreviewPanel::newColumnWanted);
  const QModelIndex index = table().model().index(3, 0);
  emit table().view().customContextMenuRequested(table().view().visualRect(index).center());
  menuAction("previewCellMenu", QStringLiteral("Step to this row"))->trigger();
  menuAction("previewCellMenu", QStringLiteral("Keep rows like this"))->trigger();
  menuAction("previewCellMenu", QStringLiteral("New column"))->trigger();
  ASSERT_EQ(steps.size(), 1);
  EXPECT_EQ(steps[0][1].toLongLong(), 3);
  ASSERT_TRUE(kept.size() == 1 || kept.wait());
  EXPECT_EQ(kept[0][1].value<RowCondition>().expression, QStringLiteral("isNull(town)"));
  EXPECT_EQ(columns[0][1].value<PinColumns::Column>().name, QStringLiteral("town"));
  EXPECT_EQ(columns[0][2].toString(), QStringLiteral("new_town"));

  table().view().setCurrentIndex(table().model().index(6, 0));
  QTest::keyClick(&table().view(), Qt::Key_Return);
  auto* whole = table().findChild<QPlainTextEdit*>();
  ASSERT_NE(whole, nullptr);
  EXPECT_EQ(whole->toPlainText(), QStringLiteral(" Lyon "));
}

TEST_F(PreviewPanelTest, EveryControlHasANameAndIsReachedAndNothingIsCut) {
  open(200);
  show(pinOf("towns"));
  for (QCheckBox* box : panel.findChildren<QCheckBox*>()) {
    box->setChecked(true);
  }
  table().view().setCurrentIndex(table().model().index(0, 1));
  ASSERT_TRUE(QTest::qWaitFor([&] {
    return panel.findChild<ProfilePanel*>()
        ->findChild<QWidget*>(QStringLiteral("frequentValues"))
        ->isVisible();
  }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return testing::cutTexts(panel).isEmpty(); }));
  expectNone(testing::controlsWithoutName(panel));
  expectNone(testing::controlsOutOfTabReach(panel));
  expectNone(testing::keysWithTwoOwners(panel));
  const testing::LargeFonts fonts(2.0);
  panel.resize(1900, 700);
  QTest::qWait(200);
  EXPECT_TRUE(QTest::qWaitFor([&] { return testing::cutTexts(panel).isEmpty(); }));
  expectNone(testing::cutTexts(panel));
}

}  // namespace
}  // namespace kelvarin
