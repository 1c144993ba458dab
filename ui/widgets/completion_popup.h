// The list of names that complete what is being typed, in a window of its own that never takes the
// focus.
//
// Used by ExpressionField, which passes the editor's keys to it.
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QFrame>
#include <QString>

class QLabel;
class QStandardItemModel;
class QTreeView;

namespace kelvarin {

// One line of the list.
struct CompletionLine {
  QString name;
  QString kind;     // in words: "function", "column, becomes a variable"
  QString comment;  // shown below the list while the line is chosen
};

class CompletionPopup : public QFrame {
  Q_OBJECT

 public:
  explicit CompletionPopup(QWidget* parent);

  // Shows the lines below the cursor, or above it where the screen ends; the first one is chosen.
  // `cursor` is in global coordinates. Without lines it closes.
  void offer(const std::vector<CompletionLine>& lines, const QRect& cursor);
  // Whether the key was one of the popup's: arrows, pages, Enter, Tab, Esc.
  bool takeKey(int key);
  int currentLine() const;

 signals:
  void accepted(int line);

 private:
  void showComment();
  void fitHeight();
  void moveBeside(const QRect& cursor);
  void moveCurrent(int lines);

  QTreeView* m_list;
  QStandardItemModel* m_model;
  QLabel* m_comment;
};

}  // namespace kelvarin
