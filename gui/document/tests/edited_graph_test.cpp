// The graph as a model: what commands do and what follows from them, faults that open, what is
// saved, and how long it takes.
#include <gtest/gtest.h>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStringEncoder>

#include "gui/document/graph_search.h"
#include "gui/document/tests/loaded_catalogue.h"

namespace kelvarin {
namespace {

constexpr char kFlights[] =
    "<KelvarinGraph version='1.0'>\n"
    "  <Parameters>\n    <Parameter name='limit' value='30'/>\n  </Parameters>\n"
    "  <Actions>\n"
    "    <InlineTable name='flights' x='0' y='0' sortedOn='delay 0'>\n"
    "      <Column name='delay' meta='F'/>\n      <Row><V>5</V></Row>\n    </InlineTable>\n"
    "    <!-- adds -->\n"
    "    <Calculator name='late' x='200' y='0'>\n"
    "      <InputVars><InputVar column='delay'/></InputVars>\n"
    "      <OutputVars>\n        <OutputVar name='isLate'>delay &gt; limit</OutputVar>\n"
    "        <OutputVar name='delay(1)'>delay(1) + delay*2</OutputVar>\n      </OutputVars>\n"
    "    </Calculator>\n"
    "    <FilterRows name='late?' x='400' y='0' comments='${limit}'>\n"
    "      <Expression>isLate</Expression>\n"
    "      <InputVars>\n        <InputVar column='isLate'/>\n"
    "        <InputVar column='delay' label='d'/>\n      </InputVars>\n    </FilterRows>\n"
    "    <Discard name='out'/>\n  </Actions>\n"
    "  <Links>\n    <Link from='flights' to='late'/>\n    <Link from='late' to='late?'/>\n"
    "    <Link from='late?' fromPin='1' to='out'/>\n  </Links>\n"
    "</KelvarinGraph>\n";

class EditedGraphTest : public ::testing::Test {
 protected:
  void load(const QByteArray& document = kFlights) {
    ASSERT_TRUE(m_graph.load(document, QStringLiteral("g.kelvarin")));
    m_document = m_graph.document();
  }
  ActionId id(const char* name) const { return m_graph.idOf(QString::fromUtf8(name)); }
  // The document with one text in place of another.
  QByteArray with(const char* before, const char* now) const {
    EXPECT_TRUE(m_document.contains(before)) << before;
    return QByteArray(m_document).replace(before, now);
  }
  void set(const char* name, const char* before, const char* now) {
    ASSERT_TRUE(m_commands.setElement(id(name),
                                      QByteArray(m_graph.element(id(name))).replace(before, now)));
  }
  void undo() { m_commands.stack().undo(); }
  QList<SearchedText> textsWith(const GraphSearch& search) const {
    const TextPattern pattern(search);
    QList<SearchedText> matches;
    for (const ActionId action : m_graph.actions()) {
      for (const SearchedText& text : textsOf(m_graph, action)) {
        if (pattern.positionIn(text.text) >= 0) {
          matches.append(text);
        }
      }
    }
    return matches;
  }

  EditedGraph m_graph{loadedCatalogue()};
  GraphCommands m_commands{m_graph};
  QByteArray m_document;
};

TEST_F(EditedGraphTest, OnlyWhatChangedIsWrittenAnew) {
  load();
  EXPECT_EQ(m_document, kFlights);
  EXPECT_TRUE(m_graph.faults().empty());
  m_commands.moveActions({{id("flights"), {10.4, 20}}}, {});
  EXPECT_EQ(m_graph.document(), with("'flights' x='0' y='0'", "'flights' x='10' y='20'"));
  EXPECT_TRUE(m_graph.isModified());
  undo();
  EXPECT_FALSE(m_graph.isModified());
  set("late?", "isLate</Expr", "!isLate</Expr");
  EXPECT_EQ(m_graph.document(), with("<Expression>isLate", "<Expression>!isLate"));
  EXPECT_EQ(m_commands.stack().undoText(), u"Change Expression of 'late?'");
  undo();
  m_commands.rename(id("late"), QStringLiteral("a<b"));
  EXPECT_EQ(m_graph.document(), with("name='late'", "name='a&lt;b'")
                                    .replace("to='late'", "to='a&lt;b'")
                                    .replace("from='late'", "from='a&lt;b'"));
  undo();
  m_commands.remove({{id("late")}, {}, {}});
  m_commands.addNote({1, 2, 30, 40}, QStringLiteral("n"));
  const QByteArray document = m_graph.document();
  EXPECT_TRUE(document.contains("</InlineTable>\n    <!-- adds -->\n    <FilterRows"))
      << document.constData();
  EXPECT_TRUE(
      document.endsWith("  <Links>\n    <Link from='late?' fromPin='1' to='out'/>\n"
                        "  </Links>\n  <Notes>\n    <Note x='1' y='2' w='30' h='40'>n"
                        "</Note>\n  </Notes>\n</KelvarinGraph>\n"));
  m_commands.stack().setIndex(0);
  EXPECT_EQ(m_graph.document(), kFlights);
}

TEST_F(EditedGraphTest, TheEncodingOfAFileStays) {
  QStringEncoder encoder(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
  const QByteArray document = encoder(QString::fromUtf8(kFlights));
  load(document);
  EXPECT_EQ(m_document, document);
  m_commands.rename(id("late"), QStringLiteral("sp\u00e4t"));
  EXPECT_TRUE(m_graph.document().startsWith("\xFE\xFF"));
  EXPECT_TRUE(parseXml(m_graph.document()));
}

TEST_F(EditedGraphTest, EditsOfAnEditorAreStepsOfAFieldAndLeadBackToIt) {
  load();
  const QSignalSpy positions(&m_commands, &GraphCommands::editorPositionWanted);
  const QSignalSpy rows(&m_graph, &EditedGraph::rowsMayDiffer);
  const EditorPosition field{QStringLiteral("page"), QStringLiteral("field"), 3};
  const QByteArray element = m_graph.element(id("late?"));
  for (const char* expression : {"isLate</", "isLate+1</", "isLate+12</"}) {
    m_commands.setElement(id("late?"), QByteArray(element).replace("isLate</", expression), field);
  }
  EXPECT_EQ(m_commands.stack().count(), 1);  // the first one changed nothing
  m_commands.setElement(id("late?"), m_graph.element(id("late?")).replace("12<", "13<"),
                        {{}, QStringLiteral("other"), 0});
  EXPECT_EQ(m_commands.stack().count(), 2);
  EXPECT_EQ(rows.size(), 4);
  undo();
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
  ASSERT_EQ(positions.size(), 2);
  EXPECT_EQ(positions.back()[0].toInt(), id("late?"));
  EXPECT_EQ(qvariant_cast<EditorPosition>(positions.back()[1]).cursor, 3);
}

TEST_F(EditedGraphTest, LinksBreakWithTheirPinsAndBecomeWholeAgain) {
  load();
  const LinkId link = m_graph.linksOf(id("out")).front();
  m_commands.replaceAction(id("late?"), QStringLiteral("Calculator"));
  EXPECT_FALSE(m_graph.link(link).whyBroken.isEmpty());
  EXPECT_EQ(m_graph.graph().links.size(), 2U);
  EXPECT_TRUE(m_graph.document().contains("fromPin='1'"));
  undo();
  EXPECT_TRUE(m_graph.link(link).whyBroken.isEmpty());
  EXPECT_EQ(m_graph.graph().links.size(), 3U);
}

TEST_F(EditedGraphTest, LinksThatCannotBeAreRefusedWithAReason) {
  load();
  EXPECT_TRUE(m_graph.refusal(id("flights"), 0, id("out"), 0).isEmpty());
  EXPECT_TRUE(m_graph.refusal(id("late?"), 0, id("late"), 0).contains(u"circle"));
  EXPECT_FALSE(m_graph.refusal(id("out"), 0, id("late"), 0).isEmpty());
  EXPECT_FALSE(m_graph.refusal(id("late"), 0, id("late"), 1).isEmpty());
  // A taken pin gets the new link in place of the old one, in one step.
  const LinkId link = m_commands.addLink(id("flights"), 0, id("out"), 0);
  EXPECT_EQ(m_graph.linkInto(id("out"), 0), link);
  EXPECT_EQ(m_graph.linksOf(id("out")).size(), 1);
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
}

TEST_F(EditedGraphTest, ActionsGoIntoLinksAndLeaveThemClosed) {
  load();
  const LinkId link = m_graph.linkInto(id("late"), 0);
  const ActionId added = m_commands.insertIntoLink(QStringLiteral("FilterRows"), link);
  EXPECT_EQ(m_graph.position(added), QPointF(240, 0));
  EXPECT_EQ(m_graph.position(id("late?")), QPointF(680, 0));
  EXPECT_EQ(m_graph.link(m_graph.linkInto(id("late"), 0)).from, added);
  EXPECT_EQ(m_graph.link(m_graph.linkInto(added, 0)).from, id("flights"));
  m_commands.removeClosingGaps({{added, id("late")}, {}, {}});
  EXPECT_EQ(m_graph.link(m_graph.linkInto(id("late?"), 0)).from, id("flights"));
  undo();
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
  const ActionId linked = m_commands.addLinked(QStringLiteral("Discard"), {id("late?"), 0, true});
  EXPECT_EQ(m_graph.link(m_graph.linkInto(linked, 0)).from, id("late?"));
  EXPECT_EQ(m_commands.stack().count(), 1);
  EXPECT_EQ(m_commands.insertIntoLink(QStringLiteral("ReadCSV"), link), kNoId);
}

TEST_F(EditedGraphTest, PiecesTravelAsText) {
  load();
  const QByteArray piece = m_commands.copy({{id("late"), id("late?")}, {}, {}});
  const GraphSelection pasted = m_commands.paste(piece, {1000, 500});
  ASSERT_EQ(pasted.actions.size(), 2);
  EXPECT_EQ(pasted.links.size(), 1);
  EXPECT_EQ(m_graph.position(id("late 2")), QPointF(1000, 500));
  EXPECT_EQ(m_graph.position(id("late? 2")), QPointF(1200, 500));
  EXPECT_EQ(m_graph.freeName(QStringLiteral("late 2")), u"late 3");
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
  QString reason;
  EXPECT_TRUE(m_commands.paste("no graph", {}, &reason).isEmpty());
  EXPECT_FALSE(reason.isEmpty());
  EXPECT_TRUE(m_commands.paste(QByteArray(17 << 20, ' '), {}, &reason).isEmpty());
  EXPECT_TRUE(reason.contains(u"16 MiB"));
  EXPECT_EQ(m_graph.document(), kFlights);
}

TEST_F(EditedGraphTest, ARenamedColumnIsFollowed) {
  load();
  // From the filter: the table above makes the column.
  const QList<ActionId> changed =
      m_commands.renameColumn(id("late?"), QStringLiteral("delay"), QStringLiteral("arrDelay"));
  EXPECT_EQ(changed, (QList{id("flights"), id("late"), id("late?")}));
  EXPECT_EQ(m_graph.document().toStdString(),
            with("<Column name='delay'", "<Column name='arrDelay'")
                .replace("sortedOn='delay 0'", "sortedOn='arrDelay 0'")
                .replace("<InputVar column='delay'", "<InputVar column='arrDelay'")
                .replace(">delay &gt;", ">arrDelay >")
                .replace(">delay(1) + delay*2", ">delay(1) + arrDelay*2")
                .toStdString());
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
  // No name of a variable: the expressions stay as they are.
  m_commands.renameColumn(id("late"), QStringLiteral("isLate"), QStringLiteral("is late"));
  EXPECT_EQ(m_graph.document(), with("<OutputVar name='isLate'", "<OutputVar name='is late'")
                                    .replace("<InputVar column='isLate'/>",
                                             "<InputVar column='is late' label='isLate'/>"));
}

TEST_F(EditedGraphTest, TextsAreFoundAndReplacedInOneStep) {
  load();
  const GraphSearch word{QStringLiteral("islate"), false, true};
  const QList<SearchedText> matches = textsWith(word);
  ASSERT_EQ(matches.size(), 3);
  EXPECT_EQ(matches[0].where, u"name");
  EXPECT_EQ(matches[1].kind, SearchedText::Kind::expression);
  EXPECT_EQ(matches[2].where, u"column");
  EXPECT_EQ(replaceInGraph(m_commands, word, QStringLiteral("a\\b"), matches).changed,
            (QList{id("late"), id("late?")}));
  EXPECT_EQ(m_graph.document().toStdString(),
            QByteArray(kFlights).replace("isLate", "a\\b").toStdString());
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
  // What is left out stays.
  replaceInGraph(m_commands, word, QStringLiteral("x"), {matches[1]});
  EXPECT_EQ(m_graph.document(), with("<Expression>isLate", "<Expression>x"));
  // However fast the next one follows, it is a step of its own.
  const GraphSearch next{QStringLiteral("x"), true, true};
  replaceInGraph(m_commands, next, QStringLiteral("y"), textsWith(next));
  undo();
  EXPECT_EQ(m_graph.document(), with("<Expression>isLate", "<Expression>x"));
  const GraphSearch name{QStringLiteral("late?"), true, false};
  replaceInGraph(m_commands, name, QStringLiteral("out"), textsWith(name));
  EXPECT_NE(id("out 2"), kNoId);
}

TEST_F(EditedGraphTest, GraphsWithFaultsOpenAndAreKept) {
  const QByteArray document =
      "<KelvarinGraph><Actions>"
      "<Vanished name='v' key='1'><Inner/></Vanished><Discard name='d'/><Discard name='d' x='1'/>"
      "<WriteCSV name='w' separator='too long' future='1'/><Discard/>"
      "</Actions><Links><Link from='v' fromPin='3' to='d'/><Link from='d' to='nobody'/>"
      "<Link from='v' to='d'/><Link from='v' to='w' note='kept'/></Links></KelvarinGraph>";
  load(document);
  EXPECT_EQ(m_document, document);
  EXPECT_FALSE(m_graph.faults().empty());
  const QList<ActionId> actions = m_graph.actions();
  ASSERT_EQ(actions.size(), 5);
  EXPECT_EQ(m_graph.pinCount(actions[0], true), 4);
  EXPECT_TRUE(m_graph.whyCannotRun(actions[0]).contains(u"Vanished"));
  EXPECT_TRUE(m_graph.whyCannotRun(actions[1]).isEmpty());
  for (const int faulty : {2, 3, 4}) {
    EXPECT_FALSE(m_graph.whyCannotRun(actions[faulty]).isEmpty()) << faulty;
  }
  const QList<LinkId> links = m_graph.links();
  EXPECT_TRUE(m_graph.link(links[0]).whyBroken.isEmpty());
  EXPECT_TRUE(m_graph.link(links[1]).whyBroken.contains(u"nobody"));
  EXPECT_TRUE(m_graph.link(links[2]).whyBroken.contains(u"already"));
  // Mended, one after the other.
  m_commands.rename(actions[2], QStringLiteral("nobody"));
  EXPECT_TRUE(m_graph.whyCannotRun(actions[2]).isEmpty());
  EXPECT_EQ(m_graph.link(links[1]).to, actions[2]);
  m_commands.remove({{}, {links[0]}, {}});
  EXPECT_TRUE(m_graph.link(links[2]).whyBroken.isEmpty());
  EXPECT_TRUE(m_commands.setElement(actions[3], "<WriteCSV name='w' separator=';'/>"));
  EXPECT_TRUE(m_graph.whyCannotRun(actions[3]).isEmpty())
      << qPrintable(m_graph.whyCannotRun(actions[3]));
  EXPECT_TRUE(m_graph.document().contains("<WriteCSV name='w' separator=';' future='1'"))
      << m_graph.document().constData();
  m_commands.replaceAction(actions[0], QStringLiteral("ReadCSV"));
  EXPECT_TRUE(m_graph.whyCannotRun(actions[0]).isEmpty());
  m_commands.stack().setIndex(0);
  EXPECT_EQ(m_graph.document(), document);
  EXPECT_FALSE(m_graph.load("<Other/>", {}));
  EXPECT_FALSE(m_graph.load("<KelvarinGraph", {}));
}

TEST_F(EditedGraphTest, SavedIsWhatTheFileHasThen) {
  load();
  m_commands.setDisabled({id("late")}, true);
  const QByteArray saved = m_graph.document();
  m_commands.rename(id("out"), QStringLiteral("end"));
  m_graph.markSaved(saved, QStringLiteral("h.kelvarin"));
  EXPECT_TRUE(m_graph.isModified());
  EXPECT_TRUE(m_graph.isModified(id("end")));
  EXPECT_FALSE(m_graph.isModified(id("late")));
  undo();
  EXPECT_FALSE(m_graph.isModified());
  undo();
  EXPECT_TRUE(m_graph.isModified());
  EXPECT_EQ(m_graph.document(), kFlights);
}

TEST_F(EditedGraphTest, ParametersAreKnownToActionsAndTheirUsers) {
  load();
  EXPECT_EQ(m_graph.usersOfParameter(QStringLiteral("limit")), (QList{id("late"), id("late?")}));
  m_commands.setParameters({{QStringLiteral("limit"), QStringLiteral("60")},
                            {QStringLiteral("b"), QStringLiteral("${limit}0")}});
  EXPECT_EQ(m_graph.graph().settings->values().value(QStringLiteral("b")), u"600");
  EXPECT_EQ(m_graph.document(),
            with("value='30'/>\n", "value='60'/>\n    <Parameter name='b' value='${limit}0'/>\n"));
  undo();
  EXPECT_EQ(m_graph.document(), kFlights);
}

TEST_F(EditedGraphTest, ARenamedParameterIsFollowedWhereverItIsUsed) {
  load();
  set("flights", "'delay 0'", "'${limit} ${other}'");
  const QByteArray before = m_graph.document();
  m_commands.setParameters({{QStringLiteral("most"), QStringLiteral("30")}},
                           {{QStringLiteral("limit"), QStringLiteral("most")}});
  EXPECT_EQ(m_commands.stack().undoText(), u"Rename parameter 'limit'");
  const QByteArray now = m_graph.document();
  EXPECT_TRUE(now.contains("delay > most")) << now.constData();
  EXPECT_TRUE(now.contains("comments='${most}'"));
  EXPECT_TRUE(now.contains("sortedOn='${most} ${other}'"));
  EXPECT_FALSE(now.contains("limit"));
  undo();
  EXPECT_EQ(m_graph.document(), before);
  // A variable of the same name is not the parameter.
  set("late", "column='delay'/>", "column='delay' label='limit'/>");
  m_commands.setParameters({{QStringLiteral("most"), QStringLiteral("30")}},
                           {{QStringLiteral("limit"), QStringLiteral("most")}});
  EXPECT_TRUE(m_graph.document().contains("delay &gt; limit")) << m_graph.document().constData();
}

// The bounds are four times what is wanted of a user's machine.
TEST_F(EditedGraphTest, AThousandActionsAreQuick) {
  constexpr int kActions = 1000;
  QByteArray actions;
  QByteArray links;
  for (int i = 0; i < kActions; ++i) {
    const QByteArray number = QByteArray::number(i);
    actions += "    <Calculator name='a" + number + "' x='" + number +
               "' y='0'>\n      <InputVars>\n        <InputVar column='c'/>\n      </InputVars>\n"
               "      <OutputVars>\n        <OutputVar name='o'>c*2</OutputVar>\n"
               "      </OutputVars>\n    </Calculator>\n";
    if (i > 0) {
      links += "    <Link from='a" + QByteArray::number(i - 1) + "' to='a" + number + "'/>\n";
    }
    if (i > 1 && i % 2 == 0) {
      links +=
          "    <Link from='a" + QByteArray::number(i - 2) + "' to='a" + number + "' toPin='1'/>\n";
    }
  }
  QElapsedTimer timer;
  const auto restart = [&timer](const char* what, qint64 limitMilliseconds) {
    const qint64 elapsed = timer.restart();
    std::printf("%-20s %lld ms\n", what, static_cast<long long>(elapsed));
    EXPECT_LE(elapsed, limitMilliseconds) << what;
  };
  timer.start();
  load("<KelvarinGraph>\n  <Actions>\n" + actions + "  </Actions>\n  <Links>\n" + links +
       "  </Links>\n</KelvarinGraph>\n");
  restart("load", 2000);
  for (int i = 0; i < 100; ++i) {
    m_commands.moveActions({{id("a500"), QPointF(i, i)}}, {}, true);
    EXPECT_TRUE(m_graph.isModified());
  }
  restart("100 moves", 400);
  EXPECT_FALSE(m_graph.document().isEmpty());
  restart("document", 200);
  const QList<ActionId> all = m_graph.actions();
  m_commands.remove({{all.begin(), all.end()}, {}, {}});
  restart("remove all", 400);
  undo();
  restart("undo", 400);
  EXPECT_EQ(m_graph.graph().links.size(), 1498U);
}

}  // namespace
}  // namespace kelvarin
