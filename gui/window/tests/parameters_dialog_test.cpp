// The table of the graph's parameters: its model, and what the dialog makes of it.
#include <gtest/gtest.h>
#include <QAbstractItemView>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include "gui/window/parameters_dialog.h"
#include "gui/window/parameters_model.h"
#include "host/tables/table_actions.h"
#include "host/widget_testing/widget_walk.h"
#include "host/widgets/info_line.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Parameters><Parameter name='dir' value='data'/>"
    "<Parameter name='file' value='${dir}/in.csv'/></Parameters><Actions>"
    "<ReadCSV name='in' file='${file}'/><WriteCSV name='out' file='${dir}/${year}.csv'/>"
    "</Actions></KelvarinGraph>";

class ParametersTest : public ::testing::Test {
 protected:
  void SetUp() override { m_graph.load(kGraph, "g.kelvarin"); }
  static QString text(const ParametersModel& model, int row, int column) {
    return model.index(row, column).data().toString();
  }

  const ActionCatalogue m_catalogue{nullptr, makeTableActions()};
  EditedGraph m_graph{m_catalogue};
  GraphCommands m_commands{m_graph};
};

TEST_F(ParametersTest, UsesFollowANewNameAndAreOneStep) {
  ParametersModel model(m_graph);
  EXPECT_EQ(text(model, 0, ParametersModel::kUsedBy), "out, ${file}");
  EXPECT_TRUE(model.setData(model.index(0, ParametersModel::kName), "folder"));
  EXPECT_EQ(text(model, 1, ParametersModel::kValue), "${folder}/in.csv");
  EXPECT_EQ(text(model, 0, ParametersModel::kUsedBy), "out, ${file}");
  EXPECT_EQ(model.fault(), "");
  m_commands.setParameters(model.parameters(), model.newNames());
  const QByteArray now = m_graph.document();
  EXPECT_TRUE(now.contains("file='${folder}/${year}.csv'")) << now.constData();
  EXPECT_EQ(m_graph.graph().settings->values().value("file"), "data/in.csv");
  m_commands.stack().undo();
  EXPECT_EQ(m_graph.document(), kGraph);
}

TEST_F(ParametersTest, FaultsAndMissingOnesAreFound) {
  ParametersModel model(m_graph);
  EXPECT_EQ(model.missing(), (std::vector<ParametersModel::Missing>{{"year", {"out"}}}));
  model.add("year");
  EXPECT_TRUE(model.missing().empty());
  const auto faultWith = [&](int row, int column, const QString& typed) {
    const QVariant before = model.index(row, column).data();
    model.setData(model.index(row, column), typed);
    const QString fault = model.fault();
    model.setData(model.index(row, column), before);
    return fault;
  };
  EXPECT_TRUE(faultWith(2, ParametersModel::kName, "dir").contains("Two parameters"));
  EXPECT_TRUE(faultWith(2, ParametersModel::kName, "a}b").contains("no '}'"));
  EXPECT_TRUE(faultWith(2, ParametersModel::kValue, "${nope}").contains("is no parameter"));
  EXPECT_TRUE(faultWith(0, ParametersModel::kValue, "${file}").contains("must stand above"));
  EXPECT_TRUE(faultWith(0, ParametersModel::kName, " ").contains("has no name"));
  EXPECT_EQ(model.fault(), "");
  model.removeAt(0);
  EXPECT_EQ(model.missing().size(), 1U);
  EXPECT_EQ(model.missing().front().name, "dir");
  EXPECT_TRUE(model.fault().contains("'dir', which is no parameter"));
}

TEST_F(ParametersTest, TheDialogOffersWhatIsMissingAndCompletesNames) {
  ParametersDialog dialog(m_commands);
  dialog.show();
  dialog.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  EXPECT_EQ(testing::controlsWithoutName(dialog).join(u'\n').toStdString(), "");
  EXPECT_EQ(testing::cutTexts(dialog).join(u'\n').toStdString(), "");
  auto* missing = dialog.findChild<InfoLine*>("missing");
  EXPECT_TRUE(missing->text().contains("'year'"));
  emit missing->linkActivated("year");
  auto* table = dialog.findChild<QTableView*>("parameters");
  auto* field = table->viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClicks(field, "${d");
  ASSERT_NE(field->completer(), nullptr);
  ASSERT_TRUE(field->completer()->popup()->isVisible());
  QTest::keyClick(field->completer()->popup(), Qt::Key_Down);
  QTest::keyClick(field->completer()->popup(), Qt::Key_Return);
  EXPECT_EQ(field->text(), "${dir}");
  EXPECT_TRUE(missing->text().isEmpty());
  for (auto* button : dialog.findChild<QDialogButtonBox*>()->findChildren<QPushButton*>()) {
    if (button->text().contains("Use these")) {
      button->click();
      break;
    }
  }
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(m_graph.graph().settings->values().value("year"), "data");
  EXPECT_EQ(m_graph.whyCannotRun(m_graph.idOf(QStringLiteral("out"))), "");
}

// Saved all the same, and marked on the canvas and above the editor.
TEST_F(ParametersTest, TheNameOfAParameterThatDoesNotExistIsMarked) {
  const ActionId out = m_graph.idOf(QStringLiteral("out"));
  EXPECT_TRUE(m_graph.whyCannotRun(out).contains("no parameter 'year'"));
  ASSERT_TRUE(m_commands.setElement(out, "<WriteCSV name='out' file='${dir}/o.csv'/>"));
  EXPECT_EQ(m_graph.whyCannotRun(out), "");
  ASSERT_TRUE(m_commands.setElement(out, "<WriteCSV name='out' file='${dirr}/o.csv'/>"));
  EXPECT_TRUE(m_graph.whyCannotRun(out).contains("no parameter 'dirr'"));
}

}  // namespace
}  // namespace kelvarin
