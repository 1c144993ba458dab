// Faults of graph files, each with its position, and the saving of graphs.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "host/contract/nearest_names.h"
#include "host/engine/graph_writer.h"
#include "host/engine/tests/made_actions.h"

namespace kelvarin::testing {
namespace {

class GraphReader : public ::testing::Test {
 protected:
  Result<Graph, GraphErrors> parse(const std::string& document,
                                   const std::vector<ParameterOverride>& overrides = {}) {
    return parseGraph(QByteArray::fromStdString(document), QStringLiteral("g.kelvarin"), catalogue,
                      overrides);
  }
  // All errors, a line each.
  std::string errors(const std::string& document,
                     const std::vector<ParameterOverride>& overrides = {}) {
    const auto graph = parse(document, overrides);
    std::string text;
    if (!graph) {
      for (const GraphError& error : graph.error()) {
        text += error.text().toStdString() + "\n";
      }
    }
    return text;
  }
  static std::string withActions(const std::string& actions, const std::string& links = {}) {
    return "<KelvarinGraph>\n<Actions>\n" + actions + "</Actions>\n<Links>\n" + links +
           "</Links>\n</KelvarinGraph>";
  }

  ActionCatalogue catalogue{nullptr, testPrototypes()};
};

TEST_F(GraphReader, ReportsThePositionOfBrokenXml) {
  EXPECT_EQ(errors("<KelvarinGraph>\n  <Actions>\n</KelvarinGraph>").substr(0, 13),
            "g.kelvarin:3:");
  EXPECT_EQ(
      errors("<Graph/>"),
      "g.kelvarin:1:1: this is no graph: the outermost element is <Graph>, not <KelvarinGraph>.\n");
  EXPECT_EQ(errors("<KelvarinGraph version='2.0'/>"),
            "g.kelvarin:1:1: the graph has version '2.0'; this program reads version 1.0.\n");
}

TEST_F(GraphReader, RefusesUnknownElementsAttributesAndText) {
  EXPECT_EQ(
      errors("<KelvarinGraph kind='x'>\n <Action/>\n <Actions/>\n <Actions/>hello</KelvarinGraph>"),
      "g.kelvarin:1:1: the attribute 'kind' is not known in <KelvarinGraph>; known: version.\n"
      "g.kelvarin:1:1: there is text inside <KelvarinGraph>, where only elements are expected.\n"
      "g.kelvarin:2:2: <Action> is not known inside <KelvarinGraph>; known: Parameters, Actions, "
      "Links, Notes.\n"
      "g.kelvarin:4:2: <Actions> stands here a second time; a graph has one.\n");
  EXPECT_EQ(errors(withActions("", "<Lnk/>\n")),
            "g.kelvarin:5:1: <Lnk> is not known inside <Links>; known: Link.\n");
}

TEST_F(GraphReader, NamesUnknownActionsAndTheirNearest) {
  EXPECT_EQ(errors(withActions("<Colect name='w'/>\n<Xylophone name='x'/>\n",
                               "<Link from='x' to='w'/>\n")),
            "g.kelvarin:3:1: there is no action <Colect>; did you mean Collect?\n"
            "g.kelvarin:4:1: there is no action <Xylophone>; the actions are: Count, Pass, "
            "EveryNth, WithTable, "
            "AddPairs, Collect.\n");
  EXPECT_EQ(nearestNames(QStringLiteral("filterrow"),
                         {QStringLiteral("FilterRows"), QStringLiteral("ReadCSV")}),
            QStringList{QStringLiteral("FilterRows")});
}

TEST_F(GraphReader, WantsANameOfItsOwnForEveryAction) {
  EXPECT_EQ(
      errors(withActions("<Count/>\n<Count name=''/>\n<Count name='a'/>\n<Pass name='a'/>\n")),
      "g.kelvarin:3:1: <Count> needs the attribute 'name'.\n"
      "g.kelvarin:4:1: the action's name is empty; links refer to actions by their names.\n"
      "g.kelvarin:6:1: the action name 'a' is taken by the action in line 5.\n");
}

TEST_F(GraphReader, RefusesLinksThatLeadNowhere) {
  EXPECT_EQ(errors(withActions(
                "<Count name='count'/><Collect name='w'/><Pass name='p'/>\n",
                "<Link from='cout' to='w'/>\n<Link from='count' fromPin='1' to='w'/>\n"
                "<Link from='w' to='p'/>\n<Link from='p' to='count'/>\n"
                "<Link from='count' to='w' toPin='x'/>\n<Link from='count' to='w' toPin='-1'/>\n"
                "<Link from='count' to='p'/>\n<Link from='count' to='p'/>\n<Link to='p'/>\n")),
            "g.kelvarin:6:1: there is no action named 'cout'; did you mean 'count'?\n"
            "g.kelvarin:7:1: 'count' has no output pin 1; it has 1, counted from 0.\n"
            "g.kelvarin:8:1: 'w' has no output pins.\n"
            "g.kelvarin:9:1: 'count' has no input pins.\n"
            "g.kelvarin:10:1: toPin='x' is not a pin number; pins are counted from 0.\n"
            "g.kelvarin:11:1: 'w' has no input pin -1; it has 1, counted from 0.\n"
            "g.kelvarin:13:1: input pin 0 of 'p' is linked already; an input pin takes one link.\n"
            "g.kelvarin:14:1: <Link> needs the attribute 'from'.\n");
}

TEST_F(GraphReader, NamesTheActionsOfACycle) {
  EXPECT_EQ(errors(withActions(
                "<AddPairs name='a'/><Pass name='b'/><Count name='s'/><EveryNth name='c'/><Collect "
                "name='w'/>\n",
                "<Link from='s' to='a'/>\n<Link from='a' to='b'/>\n<Link from='b' to='c'/>\n"
                "<Link from='c' to='a' toPin='1'/>\n<Link from='c' fromPin='1' to='w'/>\n")),
            "g.kelvarin:9:1: the links form a cycle: a -> b -> c -> a.\n");
  EXPECT_EQ(errors(withActions("<Pass name='p'/>\n", "<Link from='p' to='p'/>\n")),
            "g.kelvarin:6:1: the links form a cycle: p -> p.\n");
}

TEST_F(GraphReader, ReplacesParametersAndListsTheKnownOnes) {
  const std::string parameters =
      "<KelvarinGraph>\n<Parameters>\n<Parameter name='dir' value='data'/>\n"
      "<Parameter name='file' value='${dir}/a.csv'/>\n</Parameters>\n";
  auto graph = parse(parameters + "</KelvarinGraph>");
  ASSERT_TRUE(graph);
  EXPECT_EQ(graph->settings->expandString2(QStringLiteral("x-${file}")),
            QStringLiteral("x-data/a.csv"));
  graph =
      parse(parameters + "</KelvarinGraph>", {{QStringLiteral("dir"), QStringLiteral("other")}});
  ASSERT_TRUE(graph);
  EXPECT_EQ(graph->settings->expandString2(QStringLiteral("${file}")),
            QStringLiteral("other/a.csv"));

  EXPECT_EQ(errors(parameters + "</KelvarinGraph>", {{QStringLiteral("Dir"), QStringLiteral("x")}}),
            "g.kelvarin:2:1: the parameter 'Dir' cannot be set: the graph does not declare it; it "
            "declares: dir, "
            "file.\n");
  EXPECT_EQ(errors(parameters +
                   "<Actions>\n<Count name='s' file='${fil}' notes='${any}' expression='${x}'>\n"
                   "<In column='${dir}${y}'>${text}</In>\n</Count>\n</Actions></KelvarinGraph>"),
            "g.kelvarin:7:1: there is no parameter 'fil'; the parameters are: dir, file.\n"
            "g.kelvarin:8:1: there is no parameter 'y'; the parameters are: dir, file.\n");
  EXPECT_EQ(
      errors(
          "<KelvarinGraph>\n<Parameters>\n<Parameter name='a' value='${a}'/>\n<Parameter name='a' "
          "value=''/>\n<Parameter/>\n</Parameters></KelvarinGraph>"),
      "g.kelvarin:3:1: the value of the parameter 'a' names the parameter itself; give it a "
      "value, or name parameters that stand before it.\n"
      "g.kelvarin:4:1: the parameter 'a' is declared twice.\n"
      "g.kelvarin:5:1: <Parameter> needs the attribute 'name'.\n"
      "g.kelvarin:5:1: <Parameter> needs the attribute 'value'.\n");
}

// Thirty short values that double one another would take gigabytes.
TEST_F(GraphReader, BoundsWhatParametersGrowTo) {
  std::string doubling = "<Parameter name='p0' value='0123456789'/>\n";
  std::string wide;
  for (int i = 1; i <= 16; ++i) {
    const std::string before = "${p" + std::to_string(i - 1) + "}";
    doubling += "<Parameter name='p" + std::to_string(i) + "' value='" + before + before + "'/>\n";
  }
  for (int i = 0; i < 30; ++i) {
    wide += "<Parameter name='w" + std::to_string(i) + "' value='${p16}'/>\n";
  }
  const auto graphWith = [&doubling](const std::string& rest) {
    return "<KelvarinGraph>\n<Parameters>\n" + doubling + rest + "</KelvarinGraph>";
  };
  EXPECT_EQ(errors(graphWith("</Parameters>")), "");
  EXPECT_EQ(
      errors(graphWith("<Parameter name='q' value='${p16}${p16}'/></Parameters>")),
      "g.kelvarin:20:1: the value of the parameter 'q' becomes longer than 1048576 characters "
      "when the parameters in it are replaced; shorten it, or name fewer parameters in it.\n");
  EXPECT_EQ(errors(graphWith(wide + "</Parameters>")).substr(0, 61),
            "g.kelvarin:43:1: with the parameter 'w23' the values of all p");
  EXPECT_EQ(
      errors(graphWith("</Parameters><Actions>\n<Count name='s' file='${p16}${p16}'/>"
                       "</Actions>")),
      "g.kelvarin:21:1: the attribute 'file' of <Count> becomes longer than 1048576 characters "
      "when the parameters in it are replaced; shorten it, or name fewer parameters in it.\n");
}

TEST_F(GraphReader, TellsWhyAFileCannotBeRead) {
  const auto absent = readGraph(QStringLiteral("/nonexistent/g.kelvarin"), catalogue);
  ASSERT_FALSE(absent);
  EXPECT_EQ(
      absent.error()[0].text(),
      QStringLiteral(
          "/nonexistent/g.kelvarin: the graph cannot be read: No such file or directory. There "
          "is no folder '/nonexistent'."));
  EXPECT_FALSE(readGraph(QStringLiteral("/tmp"), catalogue));
}

TEST_F(GraphReader, SavesWhatItReads) {
  const QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("g.kelvarin"));
  const auto graph = parse(
      "<KelvarinGraph version='1.0'><Parameters><Parameter name='p' "
      "value='a&lt;&#10;${p1}'/></Parameters></KelvarinGraph>");
  ASSERT_FALSE(graph);  // p1 is not declared
  auto first = parse(
      "<KelvarinGraph><Parameters><Parameter name='p' value='a&lt;&apos;&#10;'/></Parameters>"
      "<Actions><Count name='s&amp;&#233;' x='3' y='4'/><EveryNth name='f'/><Collect "
      "name='w'/></Actions>"
      "<Links><Link from='s&amp;&#233;' to='f'/><Link from='f' fromPin='1' to='w' "
      "toPin='0'/></Links></KelvarinGraph>",
      {{QStringLiteral("p"), QStringLiteral("of this run")}});
  ASSERT_TRUE(first);
  const QByteArray saved = graphDocument(*first);
  EXPECT_TRUE(saveGraph(*first, file));
  const auto second = readGraph(file, catalogue);
  ASSERT_TRUE(second);
  EXPECT_EQ(graphDocument(*second), saved);
  EXPECT_EQ(second->settings->values()[QStringLiteral("p")], QStringLiteral("a<'\n"));
  ASSERT_EQ(second->links.size(), 2u);
  EXPECT_EQ(second->links[1].fromPin, 1);
  EXPECT_FALSE(saveGraph(*second, QStringLiteral("/nonexistent/g.kelvarin")));
}

TEST_F(GraphReader, KeepsNotesAndRefusesThoseThatCannotBeDrawn) {
  const std::string notes =
      "  <Notes>\n"
      "    <Note x='-12.5' y='40' w='200' h='80' color='#FFF4C2'>a &lt; b\n  second line</Note>\n"
      "    <Note x='0' y='0' w='120' h='60'></Note>\n"
      "  </Notes>\n";
  const auto graph = parse("<KelvarinGraph><Actions/>" + notes + "</KelvarinGraph>");
  ASSERT_TRUE(graph);
  ASSERT_EQ(graph.value().notes.size(), 2u);
  EXPECT_EQ(graph.value().notes[0].text, QStringLiteral("a < b\n  second line"));
  EXPECT_EQ(graph.value().notes[0].x, -12.5);
  EXPECT_TRUE(graphDocument(graph.value()).contains(QByteArray::fromStdString(notes)));
  EXPECT_EQ(errors("<KelvarinGraph><Notes>\n<Note x='left'/>\n<Note w='inf' color='red'/>\n"
                   "<Note z='1'><b/></Note>\n<Text/></Notes></KelvarinGraph>"),
            "g.kelvarin:2:1: x='left' in <Note> is not a number.\n"
            "g.kelvarin:3:1: color='red' is not a colour; write it as red, green and blue in "
            "hexadecimal digits, such as #FFF4C2.\n"
            "g.kelvarin:3:1: w='inf' in <Note> is not a number.\n"
            "g.kelvarin:4:1: the attribute 'z' is not known in <Note>; known: x, y, w, h, color.\n"
            "g.kelvarin:4:13: <b> is not known inside <Note>; known: nothing.\n"
            "g.kelvarin:5:1: <Text> is not known inside <Notes>; known: Note.\n");
}

// Nothing of the file is missing, and what is wrong is said of each part.
TEST_F(GraphReader, OpensAGraphToBeMended) {
  const auto opened = openGraph(
      "<KelvarinGraph><Actions><Vanished name='v' key='&lt;'><In>ner</In></Vanished>"
      "<Pass name='s'/><Pass name='s'/></Actions>"
      "<Links><Link from='v' fromPin='2' to='s'/><Link from='s' to='nobody'/></Links>"
      "</KelvarinGraph>",
      QStringLiteral("g.kelvarin"), catalogue);
  ASSERT_TRUE(opened);
  ASSERT_EQ(opened->graph.actions.size(), 3u);
  ASSERT_EQ(opened->links.size(), 2u);
  EXPECT_EQ(opened->links[1].to, u"nobody");
  EXPECT_GE(opened->faults.size(), 3u);
  EXPECT_TRUE(opened->whyActionCannotRun[0].contains(u"Vanished"));
  EXPECT_TRUE(opened->whyActionCannotRun[1].isEmpty());
  EXPECT_TRUE(opened->whyActionCannotRun[2].contains(u"'s'"));
  ActionItem& missing = *opened->graph.actions[0].item;
  EXPECT_EQ(missing.outputPinCount(), 3);
  EXPECT_NE(missing.init(), 0);
  std::wostringstream out;
  missing.saveXML(out, QStringLiteral("w"));
  EXPECT_EQ(out.str(), L"<Vanished name='w' key='&lt;'><In>ner</In></Vanished>\n");
  EXPECT_FALSE(openGraph("<Graph/>", {}, catalogue));
}

}  // namespace
}  // namespace kelvarin::testing
