// The table of a preview, with the keys that it takes before the window does.
//
// Threads: the user-interface thread.
#pragma once

#include <QHeaderView>
#include <QTableView>

namespace kelvarin {

// The numbers of the rows, as flat as the header of the columns.
class RowNumbersHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit RowNumbersHeader(QWidget* parent = nullptr);

 protected:
  void paintSection(QPainter* painter, const QRect& rectangle, int row) const override;
};

class PreviewView : public QTableView {
  Q_OBJECT

 public:
  explicit PreviewView(QWidget* parent = nullptr);

  // Would look at every row.
  void keyboardSearch(const QString&) override {}

 signals:
  void openWanted();                 // Enter
  void filterWanted();               // Ctrl+F
  void copyWanted(bool withHeader);  // Ctrl+C, Ctrl+Shift+C

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kelvarin
