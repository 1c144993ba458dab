// The editor of the action that is selected, with the action's picture, name and what it does.
//
// The panel makes the editor, and a new one wherever the action is made anew; commits what is being
// typed before anything else happens to the graph; and makes every change of an editor a step of
// undo.
// Threads: the user-interface thread.
#pragma once

#include <QPointer>
#include <QWidget>

#include "gui/document/graph_commands.h"

class QLabel;
class QScrollArea;
class QStackedWidget;
class UpdateClassWidget;

namespace kelvarin {

class EmptyState;
class InfoLine;

class PropertyPanel : public QWidget {
  Q_OBJECT

 public:
  explicit PropertyPanel(GraphCommands& commands, QWidget* parent = nullptr);
  // Stops what the editor runs.
  ~PropertyPanel() override;

  // Shows its editor; kNoId for none. What is being typed is committed first.
  void showAction(ActionId action);
  ActionId action() const { return m_action; }
  UpdateClassWidget* editor() const { return m_editor; }
  void commit();
  // An editor has changed its action in place.
  void noteEdit();
  // Leads to where an undo or a line of the log points.
  void showPosition(const EditorPosition& position);
  // The editor is made anew, as when the user's mode has changed.
  void renewEditor();
  void focusEditor();

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void followFocus(QWidget* focused);
  void openEditor();
  void closeEditor();
  UpdateClassWidget* newEditor();
  EditorPosition position() const;
  void showHeader();
  void forgetReplaced(ActionId action);
  void renewReplaced(ActionId action);

  GraphCommands& m_commands;
  EditedGraph& m_graph;
  ActionId m_action = kNoId;
  UpdateClassWidget* m_editor = nullptr;
  EditorPosition m_lastPosition;  // of the editor that was closed because its action is made anew
  bool m_hadFocus = false;        // that editor
  QMap<QString, QString> m_lastTexts;  // that it did not take
  QPointer<QWidget> m_field;           // of the editor, which had the focus last
  QString m_fieldPages;                // that were shown when the user typed into it
  bool m_isCommitting = false;         // an editor that holds an element reports another one

  QStackedWidget* m_pages;
  EmptyState* m_nothing;
  QWidget* m_page;
  QLabel* m_picture;
  QLabel* m_title;
  QLabel* m_toolTip;
  InfoLine* m_fault;
  QScrollArea* m_scroll;
};

}  // namespace kelvarin
