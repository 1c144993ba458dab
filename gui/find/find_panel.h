// Find and replace in the open graph: actions, columns, expressions, settings and notes, with a
// list of what was found and of what a replacement makes of it.
//
// Never modal: the canvas, the editors and the list are used side by side. In the field Enter and
// Shift+Enter step through what was found, arrow down goes to the list, Esc closes.
// Threads: the user-interface thread, a few milliseconds at a time.
#pragma once

#include <QWidget>

#include "gui/find/find_model.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace kelvarin {

class InfoLine;

class FindPanel : public QWidget {
  Q_OBJECT

 public:
  explicit FindPanel(GraphCommands& commands, QWidget* parent = nullptr);

  FindModel& model() { return *m_model; }
  // Shows the fields for what is meant, with the focus in the first one. A text is put there.
  void open(FindQuery::Task task, const QString& text = {});
  // Leads to the next text that was found, or the one before; from the end to the beginning.
  // Without what to search for, the focus goes to the field.
  void step(int direction);

 signals:
  // The user goes to what was found; `takesFocus` when it is to be edited there.
  void textWanted(const kelvarin::FoundText& found, bool takesFocus);
  // Editors have to commit what is typed before it is searched and replaced.
  void aboutToReplace();
  void closeWanted();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void makeTable();
  QWidget* newFindRow();
  QWidget* newReplaceRow();
  FindQuery::Task task() const;
  void search();
  void showOutcome();
  QString countText() const;
  void showReplaceButton();
  void replace();
  bool actOnFieldKey(int key, Qt::KeyboardModifiers modifiers);
  void want(int row, bool takesFocus);

  const EditedGraph& m_graph;
  FindModel* m_model;
  QLineEdit* m_text;
  QCheckBox* m_case;
  QCheckBox* m_word;
  QLabel* m_count;
  QWidget* m_replaceRow;
  QLineEdit* m_replacement;
  QComboBox* m_what;
  QPushButton* m_replace;
  InfoLine* m_note;  // about what would be replaced, and what was
  QTableView* m_table;
  int m_row = -1;  // to which the user went last
};

}  // namespace kelvarin
