// The window of `kelvarin edit`: the actions of a graph at the left, the property editor of the
// chosen one at the right, the log below.
//
// Threads: the user-interface thread. Files, checks, runs and rows are read beside it.
#pragma once

#include <QMainWindow>

#include "gui/document/document_file.h"
#include "gui/document/graph_commands.h"
#include "gui/edit/background_check.h"
#include "gui/recovery/unsaved_work.h"
#include "gui/saving/graph_saving.h"
#include "gui/services/edit_services.h"

class QStackedWidget;
class UpdateClassWidget;

namespace kelvarin {

class ActionList;
class EmptyState;
class FaultPage;
class InfoLine;
class LogPanel;
class PropertyPanel;
class RecoveryOffer;
class Theme;

class EditWindow : public QMainWindow {
  Q_OBJECT

 public:
  // Reads the graph; `action` is the one to begin with, empty for none. What is passed by reference
  // outlives the window.
  EditWindow(GraphCommands& commands, EditServices& services, HostSession& session, Theme& theme,
             const QString& file, const QString& action,
             std::vector<ParameterOverride> settings = {});
  // Stops what the editor runs.
  ~EditWindow() override;

  void save();
  void reload();
  void check();
  // Shows its editor; the field that is being edited is committed first.
  void openAction(ActionId action);
  UpdateClassWidget* editor() const;
  // Looks for changes of this graph that were not saved when a program ended, and offers them.
  void offerRecovery();

 signals:
  void graphShown();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void makePages();
  void makeMenus();
  void connectFiles();
  void connectServices();

  void showGraph(const QByteArray& document);
  void showFaults(const std::vector<GraphError>& faults);
  void rememberAction();
  void openActionNamed(const QString& name);
  void undo();
  void redo();
  void makeEditMenu();
  void showAgain(ActionId action, const EditorPosition& position);
  void showStartPage();
  void restoreGraph();
  void showState();
  void showNotice(const QString& text);
  void noteSaved(const QByteArray& document);
  void askBeforeReloading();
  void readAgain();
  void setExpertMode(bool isExpert);
  void showHelp(const QString& helpId);

  GraphCommands& m_commands;
  EditedGraph& m_graph;
  EditServices& m_services;
  const ActionCatalogue& m_catalogue;
  Theme& m_theme;
  QString m_fileName;  // as the user wrote it, also of a copy
  const std::vector<ParameterOverride> m_settings;
  DocumentFile m_file;
  BackgroundCheck m_check;
  QString m_wantedAction;  // to be shown when the graph has been read

  ActionList* m_list;
  LogPanel* m_log;
  QStackedWidget* m_pages;
  FaultPage* m_faultPage;
  EmptyState* m_startPage;
  InfoLine* m_notice;
  GraphSaving m_saving;
  PropertyPanel* m_properties;
  RecoveryOffer* m_recovery;
  UnsavedWork m_unsaved;
  QAction* m_saveAction = nullptr;
  QAction* m_checkAction = nullptr;
};

}  // namespace kelvarin
