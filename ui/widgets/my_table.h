// The table of an action's variables. A click on a header sorts by that column, the next one the
// other way, the third one returns to the order of the action; a double click edits.
//
// Sorting changes what is seen, never the model. Rows and indices in the operations below are the
// model's.
#pragma once

#include <optional>
#include <vector>

#include <QTableView>

class QSortFilterProxyModel;

namespace kelvarin {

// The index in the model below all proxies.
QModelIndex sourceIndexOf(const QModelIndex& index);

class MyTable : public QTableView {
  Q_OBJECT

 public:
  explicit MyTable(QWidget* parent = nullptr);

  void setModel(QAbstractItemModel* model) override;

  // Where nothing is sorted, the order of the action is seen and rows can be moved in it.
  bool isSorted() const;
  void showUnsorted();
  void setHeaderSorts(bool isEnabled) { m_sortingEnabled = isEnabled; }
  // Rows can be dragged, and dropped between others where nothing is sorted; the model moves them.
  void setRowsDraggable();

  // To what they hold now, for when the model has got its rows. Those that the user has set stay.
  void fitColumns();

  // A few rows: pages that scroll take it for what a table needs.
  QSize sizeHint() const override;

  // -1 for none.
  int currentRow() const;
  void setCurrentCell(int row, int column);
  void editCell(int row, int column);
  // In the order of the model.
  std::vector<int> selectedRows() const;

  // The cell whose editor is open, with what is typed in it.
  struct OpenCell {
    int row = 0;
    int column = 0;
    QString text;
  };
  std::optional<OpenCell> openCell() const;
  // Opens its editor with that text.
  void reopen(const OpenCell& cell);
  // As if the focus had left the editor.
  void commitOpenCell();

 signals:
  void sortingChanged();

 public slots:
  void columnClicked(int column);
  void isDoubleClicked(const QModelIndex& index);

 protected:
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void startDrag(Qt::DropActions supportedActions) override;

 private:
  QModelIndex shownIndexOf(int row, int column) const;
  // Null where none is open.
  QWidget* openEditor() const;

  QSortFilterProxyModel* m_proxy;
  bool m_sortOrder = false;  // false: ascending
  bool m_sortingEnabled = true;
  int m_sortedColumn = -1;
  bool m_isFitting = false;
  bool m_hasUserWidths = false;
};

}  // namespace kelvarin
