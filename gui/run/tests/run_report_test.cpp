// The report of a run as a table, and its panel.
#include <QClipboard>
#include <QGuiApplication>
#include <QTreeView>

#include "gui/run/run_report_model.h"
#include "gui/run/run_report_panel.h"
#include "gui/run/tests/open_graph.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin::testing {
namespace {

RunResult madeResult() {
  RunResult result;
  result.state = GlobalParameters::RunningState::endedNormally;
  result.seconds = 0.25;
  ActionResult source;
  source.name = QStringLiteral("flights");
  source.typeName = QStringLiteral("ReadCSV");
  source.phase = ActionPhase::finished;
  source.seconds = 0.2;
  source.rowsOut = {19811};
  ActionResult speed;
  speed.name = QStringLiteral("speed");
  speed.typeName = QStringLiteral("Calculator");
  speed.seconds = 0.03;
  speed.rowsIn = {19811, 0};
  speed.rowsOut = {19811};
  speed.source = 0;
  OutputReport kmh;
  kmh.name = QStringLiteral("kmh");
  kmh.engine = QStringLiteral("Fast Parser");
  kmh.slowedBy = QStringLiteral("nvl");
  kmh.nulls = 12;
  kmh.nans = 0;
  kmh.failures = 3;
  speed.report.outputs = {kmh};
  speed.files = {{QStringLiteral("/tests/out/speed.csv"), 2'500'000}};
  source.report.blocksRead = 3;
  source.report.blocksSkipped = 47;
  result.actions = {source, speed};
  return result;
}

TEST(RunReport, UnfoldsOutputsAndFilesBelowTheirAction) {
  RunReportModel model;
  model.setResult(madeResult());
  ASSERT_EQ(model.rowCount(), 2);
  const QModelIndex speed = model.index(1, 0);
  ASSERT_EQ(model.rowCount(speed), 2);
  EXPECT_EQ(model.index(0, 0, speed).data().toString(),
            QStringLiteral("kmh: Fast Parser, because of 'nvl'; nulls: 12, NaN: 0, failures: 3"));
  EXPECT_EQ(model.index(0, 0, model.index(0, 0)).data().toString(),
            QStringLiteral("3 blocks read, 47 skipped by the block filter"));
  EXPECT_EQ(model.index(1, 0, speed).data(RunReportModel::fileRole).toString(),
            QStringLiteral("/tests/out/speed.csv"));
  EXPECT_EQ(model.index(1, 0, speed).parent(), speed);
  EXPECT_EQ(model.index(1, 0, speed).data(RunReportModel::actionRole).toString(),
            QStringLiteral("speed"));
  EXPECT_EQ(model.index(0, RunReportModel::speedColumn).data(RunReportModel::sortRole).toDouble(),
            19811 / 0.2);
  EXPECT_TRUE(
      model.asText().contains(QStringLiteral("flights\tdone\t\t19,811\t0.200 s\t99,055\n")));
  EXPECT_EQ(summaryOf(madeResult()), QStringLiteral("ok, 19,811 rows, 0.25 s"));
}

TEST(RunReport, IsShownAfterARunAndLeadsToActions) {
  OpenGraph t("<Count name='s' rows='20'/><EveryNth name='f'/><Collect name='w'/>", "s f, f w");
  GraphRun run(t.graph, t.services);
  RunReportPanel panel(run);
  panel.resize(700, 220);
  panel.show();
  ASSERT_TRUE(run.start());
  ASSERT_TRUE(QTest::qWaitFor([&run] { return !run.isRunning(); }));
  auto* tree = panel.findChild<QTreeView*>(QStringLiteral("runReport"));
  ASSERT_EQ(tree->model()->rowCount(), 3);
  tree->sortByColumn(RunReportModel::rowsOutColumn, Qt::DescendingOrder);
  EXPECT_EQ(tree->model()->index(0, 0).data().toString(), QStringLiteral("s"));
  QSignalSpy wanted(&panel, &RunReportPanel::actionWanted);
  QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                    tree->visualRect(tree->model()->index(2, 0)).center());
  ASSERT_EQ(wanted.size(), 1);
  EXPECT_EQ(wanted[0][0].toString(), QStringLiteral("w"));
  QTest::keySequence(tree, QKeySequence::Copy);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("f\tdone\t20\t20")));
  EXPECT_EQ(controlsWithoutName(panel), QStringList());
  EXPECT_EQ(controlsOutOfTabReach(panel), QStringList());
  EXPECT_EQ(keysWithTwoOwners(panel), QStringList());
}

}  // namespace
}  // namespace kelvarin::testing
