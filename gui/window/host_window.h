// The window of `kelvarin gui`: palette, canvas, property panel; preview, log and run report below.
//
// The window owns what works beside it: the run, the check of the graph while it is edited, the
// arrangement, the file. Every change of the graph is a command.
// Threads: the user-interface thread; files, rows, checks, runs and layouts are worked on beside
// it.
#pragma once

#include <QMainWindow>

#include "gui/arrange/arrangement.h"
#include "gui/document/document_file.h"
#include "gui/document/graph_commands.h"
#include "gui/drops/file_drop.h"
#include "gui/recovery/unsaved_work.h"
#include "gui/run/design_columns.h"
#include "gui/run/graph_run.h"
#include "gui/saving/graph_saving.h"
#include "gui/services/edit_services.h"

class QDockWidget;
class QLabel;
class QMenu;
class QStackedWidget;
class QToolBar;

namespace kelvarin {

class CanvasMenus;
class CanvasView;
class ExampleCopy;
class FindDock;
class DiskQuestionLine;
class InfoLine;
class LogPanel;
class PalettePanel;
class PreviewPanel;
class ProblemWalk;
class PropertyPanel;
class RecoveryOffer;
class RunReportPanel;
class StartPage;
class Theme;
class Tour;
struct FoundText;
struct Problem;

class HostWindow : public QMainWindow {
  Q_OBJECT

 public:
  // What is passed outlives the window. `settings` are values for parameters of graphs.
  HostWindow(GraphCommands& commands, EditServices& services, Theme& theme,
             std::vector<ParameterOverride> settings = {});
  ~HostWindow() override;

  // Asks first where changes would be lost.
  void newGraph();
  void open(const QString& path);
  // As a copy: it is saved under another name, and what was installed stays as it is.
  void openExample(const QString& path);
  // Of the flights example, which is opened where it is not open.
  void startTour();
  // Looks for graphs that were not saved when a program ended, and offers them over the canvas.
  void offerRecovery();
  void save();
  void saveAs();
  // What is being typed is committed first, and is then the step that is undone.
  void undo();
  void redo();
  void run();
  void runToCurrent();
  void arrange();
  CanvasView& canvas() { return *m_canvas; }
  PropertyPanel& properties() { return *m_properties; }
  GraphRun& graphRun() { return m_run; }

 signals:
  // A graph, or its absence, is shown.
  void graphShown();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool focusNextPrevChild(bool isForward) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // host_window.cpp
  void makeCentre();
  void makeDocks();
  QDockWidget* newDock(const QString& name, const QString& title, QWidget* content,
                       Qt::DockWidgetArea area);
  void connectGraph();
  void connectWork();
  void showCurrentAction();
  void showTitle();
  void showPage();
  void showPanels(bool areShown);
  void showRunState();
  void showStates();
  void showOutcome(const RunResult& result);
  void showArranged(QHash<ActionId, QPointF> positions);
  void showHelp(const QString& helpId);
  void showNotice(const QString& text);

  // host_window_menus.cpp
  void makeMenus();
  void makeFileMenu();
  void makeEditMenu();
  void makeGraphMenu();
  void makeViewMenu();
  QAction* newPanelAction(QDockWidget& panel, const QKeySequence& key);
  void makeHelpMenu();
  void makeToolBar();
  void showRecentGraphs();
  void enableActions();
  void showContextMenu(QPoint globalPosition);
  void setExpertMode(bool isExpert);

  // host_window_finding.cpp
  void connectFinding();
  void addFindActions(QMenu& menu);
  void addProblemActions(QMenu& menu);
  void openLogEntry(const LogEntry& entry);
  void goTo(ActionId action, const QString& output, int position);
  void showFound(const FoundText& found, bool takesFocus);
  void showProblem(const Problem& problem);

  // host_window_files.cpp
  void connectFile();
  void showDocument(const QString& path, const QByteArray& document, PreparedGraph& prepared);
  void restoreGraph();
  void showTyped(const RecoveryRecord& record);
  void noteSaved(const QByteArray& document);
  QString suggestedName() const;
  void chooseFileToOpen();
  void exportCanvas();
  void keepState();
  void restoreState();
  void arrangeUnplaced();
  QString graphName() const;
  void showExamples();

  // host_window_examples.cpp
  void connectExample();
  void beginTour();

  // host_window_editing.cpp
  void connectCanvas();
  // In the editor and on the canvas.
  void commitTyping();
  void connectPreview();
  void addChosen(const QString& typeName);
  void offerActions(const PinRef& pin, QPointF scenePosition, QPoint globalPosition,
                    const QString& typed);
  void addAt(const QString& typeName, const PinRef& pin, QPointF scenePosition);
  void connectDrops();
  void select(ActionId action, bool opensEditor);
  void openEditorWindow(ActionId action);
  void previewSelection();
  void stepToRow(const PinRef& pin, long long row);
  void replaceCurrent(const QString& typeName);
  void askForColumnName(const PinRef& pin, const QString& column);
  void editParameters();
  void copyCommandLine(ActionId lastAction);

  GraphCommands& m_commands;
  EditedGraph& m_graph;
  EditServices& m_services;
  Theme& m_theme;
  const std::vector<ParameterOverride> m_settings;
  DocumentFile m_file;
  GraphRun m_run;
  DesignColumns m_columns;
  Arrangement m_arrangement;
  FileDrop m_drops;
  QString m_exampleToOpen;
  bool m_startsTour = false;  // as soon as the example is shown
  bool m_hasGraph = false;    // else the start page is shown
  QByteArray m_hidden;        // the state of the panels, while they are hidden
  bool m_hasExamples = false;
  bool m_arrangesUnasked = false;  // actions of a file without positions

  QStackedWidget* m_pages;
  StartPage* m_start;
  CanvasView* m_canvas;
  RecoveryOffer* m_recovery;
  InfoLine* m_notice;
  GraphSaving m_saving;
  DiskQuestionLine* m_diskQuestion;
  PalettePanel* m_palette;
  PropertyPanel* m_properties;
  PreviewPanel* m_preview;
  LogPanel* m_log;
  RunReportPanel* m_report;
  UnsavedWork m_unsaved;
  FindDock* m_find;
  CanvasMenus* m_canvasMenus;
  ProblemWalk* m_problems;
  ExampleCopy* m_example;
  Tour* m_tour = nullptr;  // made when it is asked for
  QDockWidget* m_paletteDock = nullptr;
  QDockWidget* m_propertiesDock = nullptr;
  QDockWidget* m_previewDock = nullptr;
  QDockWidget* m_logDock = nullptr;
  QDockWidget* m_reportDock = nullptr;
  QLabel* m_outcome;
  QMenu* m_recentMenu = nullptr;
  QMenu* m_contextMenu = nullptr;
  QMenu* m_replaceMenu = nullptr;
  QToolBar* m_bar = nullptr;
  QAction* m_newAction = nullptr;
  QAction* m_openAction = nullptr;
  QAction* m_saveAction = nullptr;
  QAction* m_saveAsAction = nullptr;
  QAction* m_undoAction = nullptr;
  QAction* m_redoAction = nullptr;
  QAction* m_runAction = nullptr;
  QAction* m_runToAction = nullptr;
  QAction* m_stopAction = nullptr;
  QAction* m_parametersAction = nullptr;
  std::vector<QAction*> m_graphActions;   // that need a graph
  std::vector<QAction*> m_actionActions;  // that need one selected action
};

}  // namespace kelvarin
