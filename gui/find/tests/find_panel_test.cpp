// Find and replace by real keys: what is found where, what a replacement changes, and how long a
// key takes in a large graph.
#include <gtest/gtest.h>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include "gui/document/tests/loaded_catalogue.h"
#include "gui/find/find_panel.h"
#include "host/widget_testing/key_times.h"
#include "host/widget_testing/widget_walk.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'>\n"
    "  <Actions>\n"
    "    <ReadCSV name='in' x='0' y='0' file='distances.csv'/>\n"
    "    <Calculator name='speed' x='200' y='0'>\n"
    "      <InputVars><InputVar column='distance'/></InputVars>\n"
    "      <OutputVars>\n"
    "        <OutputVar name='far'>distance &gt; 100</OutputVar>\n"
    "        <OutputVar name='km'>1.609 * distance</OutputVar>\n"
    "      </OutputVars>\n"
    "    </Calculator>\n"
    "    <FilterRows name='far?' x='400' y='0'>\n"
    "      <Expression>far and distance</Expression>\n"
    "      <InputVars><InputVar column='far'/><InputVar column='distance'/></InputVars>\n"
    "    </FilterRows>\n"
    "  </Actions>\n"
    "  <Links>\n    <Link from='in' to='speed'/>\n    <Link from='speed' to='far?'/>\n  </Links>\n"
    "  <Notes>\n    <Note x='0' y='90' w='90' h='40' color='#d0ebff'>a Distance</Note>\n"
    "  </Notes>\n"
    "</KelvarinGraph>\n";

class FindPanelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    load(kGraph);
    panel.resize(900, 300);
    panel.show();
    panel.activateWindow();
    panel.open(FindQuery::Task::find);
  }
  void load(const QByteArray& document) { ASSERT_TRUE(graph.load(document, {})); }
  template <typename Widget>
  Widget& child(const char* name) {
    return *panel.findChild<Widget*>(QLatin1String(name));
  }
  void type(const char* field, const QString& text) {
    child<QLineEdit>(field).clear();
    QTest::keyClicks(&child<QLineEdit>(field), text);
  }
  bool hasEnded() {
    QTest::qWait(0);
    return QTest::qWaitFor([this] { return !panel.model().isSearching(); });
  }
  // A line for each row: action, where, text, what it becomes.
  QStringList rows() {
    EXPECT_TRUE(hasEnded());
    QStringList lines;
    for (int row = 0; row < panel.model().rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < FindModel::columnCountOfFound; ++column) {
        cells += panel.model().index(row, column).data().toString();
      }
      lines += cells.join(u'|');
    }
    return lines;
  }
  QByteArray with(const QByteArray& before, const QByteArray& now) const {
    return QByteArray(kGraph).replace(before, now);
  }

  EditedGraph graph{loadedCatalogue()};
  GraphCommands commands{graph};
  FindPanel panel{commands};
};

TEST_F(FindPanelTest, EveryKindOfTextIsFoundAndEnterStepsThroughIt) {
  panel.model().texts().setColumnsOfPin([this](const PinRef& pin) {
    const bool isOfFile = pin.action == graph.idOf("in") && pin.isOutput;
    return isOfFile ? std::optional(QStringList{"distance", "carrier"}) : std::nullopt;
  });
  type("findText", "DIST");
  EXPECT_EQ(rows(),
            (QStringList{"in|file|distances.csv|(stays)", "in|column of the file|distance|(stays)",
                         "speed|column|distance|(stays)",
                         "speed|expression of far|distance > 100|(stays)",
                         "speed|expression of km|1.609 * distance|(stays)",
                         "far?|expression|far and distance|(stays)", "far?|column|distance|(stays)",
                         "(note)|note|a Distance|(stays)"}));
  child<QCheckBox>("matchCase").click();
  child<QCheckBox>("wholeWords").click();
  type("findText", "distance");
  EXPECT_EQ(rows().size(), 6);
  type("findText", "Calculator");
  EXPECT_EQ(rows(), QStringList{"speed|type|Calculator|(stays)"});

  type("findText", "distance");
  ASSERT_TRUE(hasEnded());
  QSignalSpy wanted(&panel, &FindPanel::textWanted);
  auto& field = child<QLineEdit>("findText");
  for (int i = 0; i < 4; ++i) {
    QTest::keyClick(&field, Qt::Key_Return);
  }
  ASSERT_EQ(wanted.size(), 4);
  const auto found = wanted.last().front().value<FoundText>();
  EXPECT_EQ(found.text.output, u"km");
  EXPECT_EQ(found.position, 8);
  QTest::keyClick(&field, Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(wanted.last().front().value<FoundText>().text.output, u"far");
  QSignalSpy closed(&panel, &FindPanel::closeWanted);
  QTest::keyClick(&field, Qt::Key_Escape);
  QTest::keyClick(&child<QTableView>("foundTexts"), Qt::Key_Escape);
  QTest::keyClick(&child<QCheckBox>("matchCase"), Qt::Key_Escape);
  EXPECT_EQ(closed.size(), 3);
}

TEST_F(FindPanelTest, TickedTextsAreReplacedInOneStepAsTheListShowed) {
  panel.open(FindQuery::Task::replaceTexts);
  type("findText", "far");
  type("replacement", "way off");
  EXPECT_EQ(rows(), (QStringList{"speed|name|far|way off", "far?|name|far?|way off?",
                                 "far?|expression|far and distance|way off and distance",
                                 "far?|column|far|way off"}));
  auto& table = child<QTableView>("foundTexts");
  table.selectRow(2);
  QTest::keyClick(&table, Qt::Key_Space);
  EXPECT_EQ(child<QPushButton>("replace").text(), u"Replace (3)");
  child<QPushButton>("replace").click();
  EXPECT_EQ(graph.document().toStdString(), with("name='far'", "name='way off'")
                                                .replace("'far?'", "'way off?'")
                                                .replace("column='far'", "column='way off'")
                                                .toStdString());
  commands.stack().undo();
  EXPECT_EQ(graph.document(), kGraph);
}

TEST_F(FindPanelTest, AColumnIsRenamedWhereverItIsUsed) {
  panel.model().texts().setColumnsOfPin([](const PinRef& pin) {
    return std::optional(pin.isOutput ? QStringList{"distance", "far"} : QStringList{"distance"});
  });
  panel.open(FindQuery::Task::renameColumn);
  type("findText", "distance");
  type("replacement", "miles");
  EXPECT_EQ(rows(),
            (QStringList{
                "speed|column|distance|miles", "speed|OutputVar|distance > 100|miles > 100",
                "speed|OutputVar|1.609 * distance|1.609 * miles",
                "far?|Expression|far and distance|far and miles", "far?|column|distance|miles"}));
  EXPECT_EQ(panel.model().sourcesToRename(), QStringList{"in"});
  child<QPushButton>("replace").click();
  EXPECT_FALSE(graph.document().contains("column='distance'"));
  EXPECT_TRUE(graph.document().contains("1.609 * miles"));
  commands.stack().undo();
  EXPECT_EQ(graph.document(), kGraph);
}

TEST_F(FindPanelTest, WhatIsFoundFollowsTheGraph) {
  type("findText", "speed");
  EXPECT_EQ(rows().size(), 1);
  commands.remove({{graph.idOf("speed")}, {}, {}});
  ASSERT_TRUE(QTest::qWaitFor([this] { return panel.model().rowCount() == 0; }));
  commands.stack().undo();
  ASSERT_TRUE(QTest::qWaitFor([this] { return panel.model().rowCount() == 1; }));
}

TEST_F(FindPanelTest, KeysAreQuickInAGraphOfAThousandActions) {
  QByteArray document = "<KelvarinGraph version='1.0'><Actions>";
  for (int i = 0; i < 1000; ++i) {
    const QByteArray n = QByteArray::number(i);
    document += "<Calculator name='step " + n + "' x='0' y='0'><InputVars><InputVar column='c" + n +
                "'/></InputVars><OutputVars><OutputVar name='out" + n + "'>c" + n +
                " * distance / 2 + nvl(distance, 0)</OutputVar></OutputVars></Calculator>";
  }
  load(document + "</Actions></KelvarinGraph>");
  auto& field = child<QLineEdit>("findText");
  panel.open(FindQuery::Task::replaceTexts);
  const testing::KeyTimes times = testing::timeOfKeys(field, QStringLiteral("distance out"), 48);
  std::printf("key: median %.1f ms, longest %.1f ms\n", times.median, times.percentile999);
  EXPECT_LT(times.percentile999, 20.0);
  type("findText", "distance");
  EXPECT_EQ(rows().size(), 1000);
}

TEST_F(FindPanelTest, EverythingHasANameIsReachedByTabAndIsNotCut) {
  const testing::LargeFonts large(2.0);
  FindPanel another(commands);
  another.open(FindQuery::Task::replaceTexts);
  another.resize(another.minimumSizeHint().width(), 400);
  another.show();
  EXPECT_LT(another.width(), 960);
  EXPECT_EQ(testing::controlsWithoutName(another).join(u'\n').toStdString(), "");
  EXPECT_EQ(testing::controlsOutOfTabReach(another).join(u'\n').toStdString(), "");
  EXPECT_EQ(testing::cutTexts(another).join(u'\n').toStdString(), "");
}

}  // namespace
}  // namespace kelvarin
