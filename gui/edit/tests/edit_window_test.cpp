// The window of `kelvarin edit` with real widgets: editing by forms, saving, reading again, and
// closing.
#include <algorithm>
#include <functional>

#include <gtest/gtest.h>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include "gui/dialogs/tests/answered_question.h"
#include "gui/edit/edit_window.h"
#include "gui/forms/action_form.h"
#include "gui/log/log_model.h"
#include "gui/recovery/recovery_offer.h"
#include "host/contract/described_action.h"
#include "host/contract/engine_runner.h"
#include "host/tables/table_actions.h"
#include "host/widgets/info_line.h"
#include "host/widgets/theme.h"

namespace kelvarin {
namespace {

// A source without an end, and the editor that runs it as a step debugger does.
class Endless final : public ActionItem {
 public:
  Endless(XMLNode node, GlobalParameters* parameters) : ActionItem(node, parameters) {
    m_inputPinCount = 0;
  }
  const char* typeName() const override { return "Endless"; }
  void setComputeRoutine() override {
    computeRoutine = [](ActionItem* action) {
      action->setRowReadyForOutput(0);
      return false;
    };
  }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Endless(node, parameters);
  }
  UpdateClassWidget* editPropertyFrame(QWidget* parent) override;
};

class RunningEditor final : public UpdateClassWidget {
 public:
  RunningEditor(QWidget* parent, ActionItem* action) : UpdateClassWidget(parent) {
    EXPECT_TRUE(m_runner.run(-1, action, 1, false));
  }
  bool isRunning() const { return m_runner.isRunning(); }
  void showPosition(const QString& output, int position) override {
    shown = QStringLiteral("%1:%2").arg(output).arg(position);
  }

  QString shown;

 private:
  EngineRunner m_runner;
};

UpdateClassWidget* Endless::editPropertyFrame(QWidget* parent) {
  return new RunningEditor(parent, this);
}

ActionCatalogue::Prototypes prototypes() {
  ActionCatalogue::Prototypes actions = makeTableActions();
  actions.push_back(std::make_unique<Endless>(XMLNode::emptyNode(), nullptr));
  return actions;
}

bool isInRecoveryFolder(const QByteArray& text) {
  const QDir folder(recoveryFolder());
  const QStringList names = folder.entryList(QDir::Files);
  return std::ranges::any_of(names, [&](const QString& name) {
    QFile file(folder.filePath(name));
    return file.open(QIODevice::ReadOnly) && file.readAll().contains(text);
  });
}

constexpr char kGraph[] =
    "<KelvarinGraph version='1.0'><Actions>"
    "<InlineTable name='numbers'><Column name='a' meta='F'/><Row><V>1</V></Row></InlineTable>"
    "<WriteCSV name='out' file='result.csv'/><Discard name='none'/>"
    "</Actions><Links><Link from='numbers' to='out'/></Links></KelvarinGraph>";

class EditWindowTest : public ::testing::Test {
 protected:
  ~EditWindowTest() override { m_window.reset(); }

  QString file() const { return m_folder.filePath(QStringLiteral("g.kelvarin")); }
  void write(const QByteArray& text) const {
    QFile target(file());
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(text);
  }
  QByteArray onDisk() const {
    QFile source(file());
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
  }

  // Shows the graph, and the editor of `action`.
  EditWindow& open(const QByteArray& graph = kGraph, const char* action = "out") {
    write(graph);
    m_window.reset();  // with its lock
    m_window = std::make_unique<EditWindow>(m_commands, m_services, m_session, m_theme, file(),
                                            QString::fromLatin1(action));
    const QSignalSpy shown(m_window.get(), &EditWindow::graphShown);
    m_window->show();
    EXPECT_TRUE(QTest::qWaitFor([&shown] { return !shown.isEmpty(); }));
    return *m_window;
  }

  void type(const char* field, const QString& text) {
    auto* line = m_window->editor()->findChild<QLineEdit*>(QLatin1String(field));
    ASSERT_NE(line, nullptr);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
  }

  void enter(const char* field, const QString& text) {
    type(field, text);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  }

  void answer(QMessageBox::StandardButton button) { testing::answerQuestion(*m_window, button); }

  bool waitUntil(const std::function<bool()>& isTrue) const { return QTest::qWaitFor(isTrue); }

  QTemporaryDir m_folder;
  const ActionCatalogue m_catalogue{nullptr, prototypes()};
  EditedGraph m_graph{m_catalogue};
  GraphCommands m_commands{m_graph};
  EditServices m_services{m_graph, m_catalogue};
  HostSession m_session{&m_services};
  const HostSession::Scope m_scope{&m_session};
  Theme m_theme;
  std::unique_ptr<EditWindow> m_window;
};

TEST_F(EditWindowTest, ASaveCommitsTheFieldThatIsBeingEdited) {
  EditWindow& window = open();
  EXPECT_FALSE(window.isWindowModified());
  EXPECT_TRUE(window.windowTitle().contains(u"g.kelvarin"));
  EXPECT_TRUE(window.windowTitle().contains(u"out"));
  type("file", QStringLiteral("other.csv"));
  EXPECT_EQ(window.editor()->uncommittedState().value(QStringLiteral("file")), u"other.csv");
  window.save();
  EXPECT_TRUE(window.isWindowModified());
  EXPECT_TRUE(waitUntil([&] { return !window.isWindowModified(); }));
  EXPECT_EQ(onDisk(), QByteArray(kGraph).replace("result.csv", "other.csv"));
  EXPECT_TRUE(window.editor()->uncommittedState().isEmpty());
}

TEST_F(EditWindowTest, AnEditTakenBackIsNoChange) {
  EditWindow& window = open();
  enter("file", QStringLiteral("other.csv"));
  EXPECT_TRUE(window.isWindowModified());
  enter("file", QStringLiteral("result.csv"));
  EXPECT_FALSE(window.isWindowModified());
}

TEST_F(EditWindowTest, UndoBringsTheActionBackAndShowsItsEditor) {
  EditWindow& window = open();
  type("file", QStringLiteral("other.csv"));
  m_commands.noteEdit(m_graph.idOf(QStringLiteral("out")));
  window.openAction(m_graph.idOf(QStringLiteral("none")));
  EXPECT_TRUE(window.isWindowModified());
  QAction* undo = nullptr;
  for (QAction* action : window.findChildren<QAction*>()) {
    undo = action->shortcut() == QKeySequence(QKeySequence::Undo) ? action : undo;
  }
  ASSERT_NE(undo, nullptr);
  EXPECT_TRUE(undo->text().contains(u"file of 'out'")) << qPrintable(undo->text());
  undo->trigger();
  EXPECT_FALSE(window.isWindowModified());
  EXPECT_TRUE(window.windowTitle().endsWith(u"out"));
  EXPECT_EQ(window.editor()->findChild<QLineEdit*>(QStringLiteral("file"))->text(), u"result.csv");
  EXPECT_FALSE(undo->isEnabled());
}

TEST_F(EditWindowTest, WhatWasNotSavedWhenTheProgramEndedIsOfferedAgain) {
  open();
  enter("file", QStringLiteral("kept.csv"));
  type("separator", QStringLiteral("too long"));
  ASSERT_TRUE(waitUntil([] { return isInRecoveryFolder("too long"); }));
  EditWindow& again = open(kGraph, "");  // the one before has ended without closing
  again.offerRecovery();
  auto* offer = again.findChild<RecoveryOffer*>();
  ASSERT_TRUE(waitUntil([offer] { return offer->isVisible(); }));
  emit offer->linkActivated(QStringLiteral("restore"));
  EXPECT_TRUE(m_graph.document().contains("kept.csv"));
  EXPECT_TRUE(again.isWindowModified());
  EXPECT_EQ(again.editor()->findChild<QLineEdit*>(QStringLiteral("separator"))->text(),
            u"too long");
  enter("separator", QStringLiteral(","));
  again.save();
  EXPECT_TRUE(waitUntil([&] { return !again.isWindowModified(); }));
  EXPECT_EQ(onDisk(), QByteArray(kGraph).replace("result.csv", "kept.csv"));
}

TEST_F(EditWindowTest, WhatTheActionCannotUseStaysInItsFieldWithTheReason) {
  EditWindow& window = open();
  enter("separator", QStringLiteral("too long"));
  EXPECT_FALSE(window.isWindowModified());
  EXPECT_FALSE(window.editor()->findChild<InfoLine*>()->text().isEmpty());
  enter("separator", QStringLiteral(";"));
  EXPECT_TRUE(window.isWindowModified());
  EXPECT_TRUE(window.editor()->findChild<InfoLine*>()->text().isEmpty());
}

TEST_F(EditWindowTest, ElementsAreEditedAddedAndRemoved) {
  EditWindow& window = open(kGraph, "numbers");
  auto* tree = window.editor()->findChild<QTreeWidget*>();
  QTreeWidgetItem* value = tree->topLevelItem(1)->child(0);
  ASSERT_EQ(value->text(0), u"V");
  value->setText(1, QStringLiteral("42"));
  EXPECT_TRUE(m_graph.document().contains("<Row><V>42</V></Row>"));
  tree->setCurrentItem(tree->topLevelItem(1));
  const auto buttons = tree->parentWidget()->findChildren<QToolButton*>();
  buttons[1]->click();
  EXPECT_FALSE(m_graph.document().contains("<Row>"));
}

TEST_F(EditWindowTest, FaultsAreShownWithTheirPositionsAndTheFileCanBeMended) {
  EditWindow& window = open(
      "<KelvarinGraph>\n<Actions>\n  <ReadCVS name='a'/>\n</Actions>"
      "<Links><Link from='a' to='b'/></Links></KelvarinGraph>");
  auto* faults = window.findChild<QTreeWidget*>(QStringLiteral("faults"));
  ASSERT_TRUE(faults->isVisible());
  ASSERT_GE(faults->topLevelItemCount(), 1);
  EXPECT_EQ(faults->topLevelItem(0)->text(0), u"3");
  EXPECT_TRUE(faults->topLevelItem(0)->text(2).contains(u"ReadCSV"));
  window.save();  // nothing to save
  write(kGraph);
  window.reload();
  EXPECT_TRUE(waitUntil([&] { return m_graph.actionCount() == 3; }));
}

TEST_F(EditWindowTest, ClosingAsksAboutChanges) {
  EditWindow& window = open();
  type("file", QStringLiteral("other.csv"));
  window.close();
  answer(QMessageBox::Cancel);
  EXPECT_TRUE(window.isVisible());
  window.close();
  answer(QMessageBox::Save);
  EXPECT_TRUE(waitUntil([&] { return !window.isVisible(); }));
  EXPECT_TRUE(onDisk().contains("other.csv"));
  EditWindow& again = open();
  type("file", QStringLiteral("third.csv"));
  again.close();
  answer(QMessageBox::Discard);
  EXPECT_FALSE(again.isVisible());
  EXPECT_FALSE(onDisk().contains("third.csv"));
}

TEST_F(EditWindowTest, AGraphChangedOnTheDiskIsNotOverwrittenUnasked) {
  EditWindow& window = open();
  enter("file", QStringLiteral("mine.csv"));
  const QByteArray theirs = QByteArray(kGraph).replace("result.csv", "theirs.csv");
  write(theirs);
  window.save();
  answer(QMessageBox::Cancel);
  EXPECT_EQ(onDisk(), theirs);
  window.save();
  answer(QMessageBox::Save);
  EXPECT_TRUE(waitUntil([&] { return onDisk().contains("mine.csv"); }));
  EXPECT_TRUE(waitUntil([&] { return !window.isWindowModified(); }));
  write(theirs);
  window.save();
  answer(QMessageBox::Reset);
  EXPECT_TRUE(waitUntil([&] { return m_graph.document().contains("theirs.csv"); }));
  EXPECT_FALSE(window.isWindowModified());
}

TEST_F(EditWindowTest, ACheckLogsBesideAndALineLeadsToItsAction) {
  EditWindow& window =
      open(QByteArray(kGraph).replace("'result.csv'", "'/no/such/folder/r.csv'"), "none");
  window.check();
  auto* log = window.findChild<QTableView*>(QStringLiteral("log"));
  ASSERT_TRUE(waitUntil([log] { return log->model()->rowCount() > 0; }));
  const QModelIndex line = log->model()->index(0, LogModel::action);
  EXPECT_EQ(line.data().toString(), u"none");  // nothing is linked to it
  QModelIndex aboutFile;
  ASSERT_TRUE(waitUntil([&] {
    for (int row = 0; row < log->model()->rowCount(); ++row) {
      aboutFile = log->model()->index(row, LogModel::action);
      if (aboutFile.data().toString() == u"out") {
        return true;
      }
    }
    return false;
  }));
  emit log->activated(aboutFile);
  EXPECT_TRUE(window.windowTitle().endsWith(u"out"));
}

TEST_F(EditWindowTest, ALineOfTheLogLeadsToItsPositionInTheExpression) {
  EditWindow& window = open(
      "<KelvarinGraph><Actions><Endless name='e'/><Discard name='d'/></Actions></KelvarinGraph>",
      "d");
  LogDetails details;
  details.output = QStringLiteral("share");
  details.position = 7;
  m_services.logDetailed(LogLevel::error, QStringLiteral("no such name"),
                         &m_graph.action(m_graph.actions()[0]), details);
  auto* log = window.findChild<QTableView*>(QStringLiteral("log"));
  ASSERT_TRUE(waitUntil([log] { return log->model()->rowCount() == 1; }));
  emit log->activated(log->model()->index(0, LogModel::text));
  EXPECT_EQ(static_cast<RunningEditor*>(window.editor())->shown, u"share:7");
}

TEST_F(EditWindowTest, TheEnginesOfTheOutputsAreSaidInFewWords) {
  const EditWindow& window = open();
  const auto said = [&](const QStringList& labels) {
    m_services.backendsChosen(m_graph.action(m_graph.idOf(QStringLiteral("out"))), labels);
    QCoreApplication::processEvents();
    return window.statusBar()->currentMessage().toStdString();
  };
  EXPECT_EQ(said({"String Parser", "String Parser", "String Parser"}),
            "out is computed by: String Parser");
  EXPECT_EQ(said({"Fastest Parser", "String Parser", "Fastest Parser"}),
            "out is computed by: Fastest Parser (output 1, 3), String Parser (output 2)");
}

TEST_F(EditWindowTest, LeavingAnEditorEndsItsRun) {
  EditWindow& window = open(
      "<KelvarinGraph><Actions><Endless name='e'/><Discard name='d'/></Actions>"
      "<Links><Link from='e' to='d'/></Links></KelvarinGraph>",
      "e");
  const ActionId endless = m_graph.idOf(QStringLiteral("e"));
  for (int i = 0; i < 20; ++i) {
    window.openAction(endless);
    ASSERT_TRUE(static_cast<RunningEditor*>(window.editor())->isRunning());
    window.openAction(m_graph.idOf(QStringLiteral("d")));
    EXPECT_EQ(m_graph.action(endless).run(), nullptr);
    window.openAction(endless);
  }
  const QSignalSpy readAgain(&window, &EditWindow::graphShown);
  window.reload();
  ASSERT_TRUE(waitUntil([&] { return !readAgain.isEmpty(); }));
  EXPECT_TRUE(static_cast<RunningEditor*>(window.editor())->isRunning());
  window.close();
  EXPECT_EQ(window.editor(), nullptr);
  EXPECT_EQ(m_graph.action(m_graph.idOf(QStringLiteral("e"))).run(), nullptr);
}

// Every control can be reached and has a name, and nothing is cut with fonts of twice the size.
TEST_F(EditWindowTest, IsForEverybody) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(2 * usual.pointSizeF());
  QApplication::setFont(large);
  EditWindow& window = open();
  window.resize(1600, 1000);
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    const bool isControl = widget->isVisible() && widget->focusPolicy() != Qt::NoFocus &&
                           !widget->objectName().startsWith(u"qt_");
    if (isControl && widget->inherits("QAbstractButton")) {
      const auto* button = static_cast<const QAbstractButton*>(widget);
      EXPECT_FALSE(button->accessibleName().isEmpty() && button->text().isEmpty());
      EXPECT_GE(button->width(), button->minimumSizeHint().width()) << qPrintable(button->text());
    } else if (isControl &&
               (widget->inherits("QLineEdit") || widget->inherits("QAbstractItemView"))) {
      EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->metaObject()->className();
      EXPECT_NE(widget->focusPolicy() & Qt::TabFocus, 0) << widget->metaObject()->className();
      EXPECT_GE(widget->height(), widget->minimumSizeHint().height());
    }
  }
  QApplication::setFont(usual);
}

// Of each host action: a form without a fault in its use for everybody, that changes nothing.
TEST_F(EditWindowTest, EveryActionOfTheHostHasAForm) {
  QByteArray actions;
  for (const CatalogueEntry& entry : m_catalogue.entries()) {
    actions += "<" + entry.typeName.toUtf8() + " name='" + entry.typeName.toUtf8() + "'/>";
  }
  EditWindow& window =
      open("<KelvarinGraph><Actions>" + actions + "</Actions></KelvarinGraph>", "");
  EXPECT_EQ(window.editor(), nullptr);
  for (const ActionId action : m_graph.actions()) {
    window.openAction(action);
    if (m_graph.typeName(action) == u"Endless") {
      continue;
    }
    ASSERT_NE(dynamic_cast<ActionForm*>(window.editor()), nullptr);
    const ActionDescription* description = descriptionOf(m_graph.action(action));
    for (const AttributeDescription& attribute : description->attributes) {
      const auto* field = window.editor()->findChild<QWidget*>(attribute.name);
      ASSERT_NE(field, nullptr) << attribute.name.toStdString();
      EXPECT_FALSE(field->accessibleName().isEmpty());
      EXPECT_NE(field->focusPolicy(), Qt::NoFocus);
    }
    window.editor()->commit();
    EXPECT_FALSE(window.isWindowModified()) << description->typeName;
  }
}

TEST(EditLog, KeepsTheLatestLinesAndCopiesThemAsTheCommandLineShowsThem) {
  LogModel model;
  std::vector<LogEntry> entries;
  for (int i = 0; i < LogModel::kMaxLines + 5; ++i) {
    entries.push_back({LogLevel::warning, QStringLiteral("a"), QString::number(i), {}});
  }
  model.append({entries.begin(), entries.begin() + 10});
  model.append(entries);
  EXPECT_EQ(model.rowCount(), LogModel::kMaxLines);
  EXPECT_EQ(model.entry(0).text, u"5");
  EXPECT_EQ(model.asText({model.index(1, 0), model.index(0, 0)}), u"warning: 5\nwarning: 6");
}

}  // namespace
}  // namespace kelvarin
