// Undo by its key while the focus is in a field of an editor: typing first, then the graph.
#include <functional>

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTableView>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include "gui/document/tests/loaded_catalogue.h"
#include "gui/host_editors/host_editors.h"
#include "gui/properties/property_panel.h"
#include "gui/window/tests/host_program.h"
#include "host/widgets/user_interface.h"

namespace kelvarin {
namespace {

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<InlineTable name='t'><Column name='a' meta='F'/><Row><V>1</V></Row><Row><V>2</V></Row>"
    "</InlineTable>"
    "<Calculator name='calc' x='240' y='0'><InputVars><InputVar label='a' column='a'/></InputVars>"
    "<OutputVars><OutputVar name='b'>a+1</OutputVar></OutputVars></Calculator>"
    "<WriteCSV name='out' x='480' y='0' file='out.csv'/>"
    "</Actions><Links><Link from='t' to='calc'/><Link from='calc' to='out'/></Links>"
    "</KelvarinGraph>";

class UndoInFields : public ::testing::Test, protected testing::HostProgram {
 protected:
  UndoInFields() : HostProgram(loadedCatalogue()) {}
  static void SetUpTestSuite() { addHostEditors(EditorRegistry::instance()); }
  void SetUp() override {
    QSettings().clear();
    QFile file(m_folder.filePath("g.kelvarin"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(kGraph);
    file.close();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    open(file.fileName());
    ASSERT_EQ(graph.actionCount(), 3);
  }

  static void press(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key), modifiers);
  }
  template <typename Widget>
  Widget& field(const char* name) {
    auto* found = window.properties().editor()->findChild<Widget*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  QPlainTextEdit* expression() { return field<QWidget>("expression").findChild<QPlainTextEdit*>(); }
  // What follows the focus does so when the event is over.
  static void focus(QWidget& field) {
    field.setFocus();
    QCoreApplication::processEvents();
  }
  static void retype(QLineEdit& line, const char* text) {
    focus(line);
    line.selectAll();
    QTest::keyClicks(&line, text);
  }
  static void redo() { press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier); }
  static void undo() { press(Qt::Key_Z, Qt::ControlModifier); }
  QByteArray element(const char* name) { return graph.element(graph.idOf(QLatin1String(name))); }

  QTemporaryDir m_folder;
};

TEST_F(UndoInFields, TypingIsUndoneBeforeTheGraph) {
  select("out");
  QLineEdit& file = field<QLineEdit>("file");
  retype(file, "new.csv");
  undo();
  EXPECT_EQ(file.text(), "out.csv");
  EXPECT_EQ(commands.stack().count(), 0);

  retype(file, "new.csv");
  press(Qt::Key_Return);
  EXPECT_TRUE(element("out").contains("new.csv"));
  EXPECT_EQ(commands.stack().undoText(), "Change file of 'out'");
  undo();  // what was typed
  EXPECT_EQ(file.text(), "out.csv");
  undo();  // what the field got is committed, and is undone: the graph is as it was
  EXPECT_EQ(graph.document(), kGraph);
  EXPECT_EQ(QApplication::focusWidget(), &field<QLineEdit>("file"));
}

TEST_F(UndoInFields, AFieldWithoutStepsPassesTheKeyToTheGraph) {
  select("out");
  retype(field<QLineEdit>("file"), "new.csv");
  select("calc");
  EXPECT_TRUE(element("out").contains("new.csv"));
  for (const char* name : {"leName", "leNotes", "leBreakpoint", "twVariables", "rb1"}) {
    field<QWidget>(name).setFocus();
    ASSERT_EQ(QApplication::focusWidget(), &field<QWidget>(name)) << name;
    undo();
    EXPECT_EQ(graph.document(), kGraph) << name;
    EXPECT_EQ(QApplication::focusWidget(), &field<QLineEdit>("file")) << name;
    redo();
    EXPECT_TRUE(element("out").contains("new.csv")) << name;
    EXPECT_EQ(QApplication::focusWidget(), &field<QLineEdit>("file")) << name;
    select("calc");
  }
}

TEST_F(UndoInFields, AnExpressionComesBackWithItsTabAndCursor) {
  select("calc");
  auto* tabs = window.properties().editor()->findChild<QTabWidget*>("tabs");
  QPlainTextEdit* text = expression();
  focus(*text);
  text->moveCursor(QTextCursor::End);
  QTest::keyClicks(text, "+2");
  undo();
  EXPECT_EQ(text->toPlainText(), "a+1");
  QTest::keyClicks(text, "*3");
  tabs->setCurrentIndex(1);  // commits
  EXPECT_TRUE(element("calc").contains("a+1*3")) << element("calc").constData();
  window.canvas().setFocus();
  undo();
  EXPECT_EQ(graph.document(), kGraph);
  tabs = window.properties().editor()->findChild<QTabWidget*>("tabs");
  EXPECT_EQ(tabs->currentIndex(), 0);
  EXPECT_EQ(QApplication::focusWidget(), expression());
  EXPECT_EQ(expression()->toPlainText(), "a+1");
}

TEST_F(UndoInFields, CellsOfATableComeBackOneByOne) {
  select("t");
  QTableView* table = &field<QTableView>("table");
  focus(*table);
  table->setCurrentIndex(table->model()->index(1, 0));
  QTest::keyClicks(table->viewport(), "7");
  press(Qt::Key_Return);
  window.properties().commit();
  ASSERT_TRUE(element("t").contains("<V>7</V>")) << element("t").constData();
  table->setCurrentIndex(table->model()->index(0, 0));
  undo();
  EXPECT_EQ(graph.document(), kGraph);
  table = &field<QTableView>("table");
  EXPECT_EQ(QApplication::focusWidget(), table);
  EXPECT_EQ(table->currentIndex().row(), 1);
}

TEST_F(UndoInFields, ASpinBoxAndATextOnTheCanvasAreFields) {
  select("calc");
  field<QTabWidget>("tabs").setCurrentIndex(1);
  QWidget& seed = field<QWidget>("sbSeed");
  seed.setFocus();
  press(Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&seed, "17");
  undo();
  press(Qt::Key_Tab);
  EXPECT_EQ(graph.document(), kGraph);

  window.canvas().setFocus();
  window.canvas().renameCurrent();
  QTest::keyClicks(QApplication::focusWidget(), "late?");
  undo();
  EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), "calc");
  QTest::keyClicks(QApplication::focusWidget(), "late?");
  press(Qt::Key_Return);
  EXPECT_EQ(commands.stack().undoText(), "Rename 'calc'");
  window.canvas().renameCurrent();
  undo();  // nothing is typed yet
  EXPECT_EQ(graph.document(), kGraph);
}

// The name that is typed on the canvas replaces the action, and so the editor that was pressed.
TEST_F(UndoInFields, APressInTheEditorEndsANameThatIsTypedOnTheCanvas) {
  select("calc");
  window.canvas().setFocus();
  window.canvas().renameCurrent();
  QTest::keyClicks(QApplication::focusWidget(), "sum");
  const QPointer<QLineEdit> pressed = &field<QLineEdit>("leName");
  QTest::mousePress(pressed, Qt::LeftButton);
  ASSERT_NE(pressed, nullptr) << "was destroyed while it took the press";
  EXPECT_TRUE(QTest::qWaitFor([this] { return graph.idOf(QStringLiteral("sum")) != kNoId; }));
}

TEST_F(UndoInFields, AnEditorInAWindowOfItsOwnHasTheSameKeys) {
  emit window.canvas().openWanted(graph.idOf(QStringLiteral("calc")));
  auto* dock = window.findChild<QDockWidget*>("properties");
  ASSERT_TRUE(dock->isFloating());
  ASSERT_TRUE(QTest::qWaitFor([dock] { return QApplication::activeWindow() == dock; }));
  EXPECT_TRUE(dock->isAncestorOf(QApplication::focusWidget()));
  retype(field<QLineEdit>("leName"), "sum");
  for (const QAction* action : window.findChildren<QAction*>()) {
    EXPECT_FALSE(action->shortcuts().contains(QKeySequence(Qt::Key_F5))) << "is the debugger's";
  }
  press(Qt::Key_Tab);
  EXPECT_TRUE(element("calc").contains("name='sum'"));
  undo();
  EXPECT_EQ(graph.document(), kGraph);
  EXPECT_EQ(QApplication::focusWidget(), &field<QLineEdit>("leName"));
  field<QLineEdit>("leName").setText("typed");
  select("out");  // commits
  EXPECT_TRUE(element("calc").contains("name='typed'"));
}

TEST_F(UndoInFields, WhateverLooksAtTheGraphCommitsWhatIsTyped) {
  select("out");
  const auto commits = [&](const char* text, const std::function<void()>& act) {
    retype(field<QLineEdit>("file"), text);
    act();
    return element("out").contains(text);
  };
  EXPECT_TRUE(commits("1.csv", [&] {
    emit window.canvas().previewWanted({graph.idOf(QStringLiteral("calc")), 0, true});
  }));
  EXPECT_TRUE(commits("2.csv", [&] { window.save(); }));
  QSignalSpy ended(&window.graphRun(), &GraphRun::ended);
  EXPECT_TRUE(commits("3.csv", [&] { window.run(); }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }));
  EXPECT_TRUE(QFile::exists(m_folder.filePath("3.csv")));
  EXPECT_TRUE(commits("4.csv", [&] { window.close(); }));
}

TEST_F(UndoInFields, WhatCannotBeUsedIsKeptBesideAnUndo) {
  select("out");
  retype(field<QLineEdit>("file"), "new.csv");
  press(Qt::Key_Tab);
  QWidget& separator = field<QWidget>("separator");
  separator.setFocus();
  press(Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&separator, "too long");
  window.undo();
  EXPECT_EQ(graph.document(), kGraph);
  EXPECT_EQ(window.properties().editor()->uncommittedState().value("separator"), "too long");
}

}  // namespace
}  // namespace kelvarin
