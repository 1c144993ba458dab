// What is known about columns and faults while a graph is edited.
#include "gui/run/design_columns.h"
#include "gui/run/tests/open_graph.h"

namespace kelvarin::testing {
namespace {

// Fails where its column is absent.
class NeedsColumn final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(NeedsColumn, 1, 1)
  bool step() {
    const OneRow* columns = announcedColumnsOfInPin(0);
    const QString wanted = qString(node().getAttribute(utf16(u"column")));
    if (columns == nullptr || columns->getIndexOfColumn(wanted) < 0) {
      MainUI::addLog(LogLevel::error, QStringLiteral("no column ") + wanted);
      failRun();
    } else {
      copyColumns(0, *columns);
    }
    return true;
  }
};

struct Designed : OpenGraph {
  Designed(const std::string& actions, const std::string& links)
      : OpenGraph(actions, links, prototypesWith<NeedsColumn>()) {}
  bool await() {
    QSignalSpy changed(&columns, &DesignColumns::changed);
    return changed.wait(30'000);
  }
  std::string namesAt(const char* action, int pin, bool isOutput) const {
    const PinColumns known = columns.columns({id(action), pin, isOutput});
    std::string names = known.isKnown ? "" : "unknown";
    for (const PinColumns::Column& column : known.columns) {
      names += column.name.toStdString() + " ";
    }
    return names;
  }

  DesignColumns columns{graph, services};
};

TEST(DesignColumns, FlowAlongTheLinks) {
  Designed t(
      "<Count name='s' texts='1'/><NeedsColumn name='c' column='t'/><Collect name='w'/>"
      "<NeedsColumn name='d' column='z'/>",
      "s c, c w, s d");
  EXPECT_EQ(t.namesAt("w", 0, false), "unknown");
  ASSERT_TRUE(t.await());
  EXPECT_EQ(t.namesAt("s", 0, true), "n t ");
  EXPECT_EQ(t.namesAt("w", 0, false), "n t ");
  EXPECT_EQ(t.columns.problems().size(), 1);
  EXPECT_EQ(t.columns.problems().value(t.id("d")), QStringLiteral("no column z"));
  EXPECT_EQ(t.seen.calls.count("w"), 0u);

  ASSERT_TRUE(t.commands.setElement(t.id("s"), "<Count name='s'/>"));
  EXPECT_TRUE(t.columns.columns({t.id("w"), 0, false}).isBeingComputed);
  ASSERT_TRUE(t.await());
  EXPECT_EQ(t.columns.problems().value(t.id("c")), QStringLiteral("no column t"));
  EXPECT_EQ(t.namesAt("w", 0, false), "unknown");
}

TEST(DesignColumns, AnswerEditorsWithoutAnotherCheck) {
  Designed t("<Count name='s'/><Collect name='w'/>", "s w");
  ASSERT_TRUE(t.await());
  const auto steps = t.seen.steps["s"];
  const PinColumns known = t.services.columnsOfInputPin(t.item("w"), 0);
  EXPECT_TRUE(known.isKnown && !known.isBeingComputed);
  EXPECT_EQ(known.version, t.graph.version());
  EXPECT_EQ(t.seen.steps["s"], steps);
}

TEST(DesignColumns, KnowTheRestOfAGraphWithFaults) {
  Designed t("<Absent name='x'/><Count name='s'/><Pass name='p'/>", "x s:4, s p");
  ASSERT_TRUE(t.await());
  EXPECT_EQ(t.namesAt("p", 0, false), "n ");
}

// A table of variables is read, but not for ever; a change overtakes the check that goes on.
TEST(DesignColumns, GiveUpOnATableThatTakesTooLong) {
  Designed t("<Count name='s'/><Count name='t' rows='1000000000'/><WithTable name='c'/>",
             "s c, t c:1");
  t.seen.onSourceRow = [](long long) {};
  QTest::qWait(300);
  ASSERT_TRUE(t.commands.setElement(t.id("s"), "<Count name='s' texts='1'/>"));
  ASSERT_TRUE(t.await());
  EXPECT_EQ(t.namesAt("s", 0, true), "n t ");
  EXPECT_TRUE(t.columns.problems().value(t.id("c")).startsWith(QStringLiteral("Not checked")));
}

}  // namespace
}  // namespace kelvarin::testing
