// The rows of a pin as a table that can be sorted, filtered and copied; the rows themselves stay as
// they are.
//
// Used by the preview panel.
// Threads: the user-interface thread; orders, copies and files are made on the queue's.
#pragma once

#include <memory>

#include <QPointer>
#include <QWidget>

#include "gui/preview/pin_preview.h"
#include "gui/preview/preview_model.h"
#include "gui/preview/row_condition.h"
#include "gui/preview/row_order.h"
#include "gui/preview/row_texts.h"

class QMenu;

namespace kelvarin {

class PreviewHeader;
class PreviewView;

class PreviewTable : public QWidget {
  Q_OBJECT

 public:
  // The queue outlives this widget.
  explicit PreviewTable(BackgroundQueue& queue, QWidget* parent = nullptr);
  ~PreviewTable() override;

  // At most so many of its rows are shown; null shows nothing. Rows of the same columns as before
  // keep filters, order and position.
  void setPreview(PinPreview* preview, long long maximumRows);
  // There is more of the preview than before.
  void refresh();
  // Rows of any origin; null: none.
  void setRows(std::shared_ptr<PreviewRows> rows);

  PreviewModel& model() { return *m_model; }
  PreviewView& view() { return *m_view; }
  PreviewHeader& header() { return *m_header; }
  bool isOrdering() const { return m_ordering != nullptr; }
  bool isOrdered() const { return m_model->order() != nullptr; }
  int currentColumn() const { return m_currentColumn; }

  void copy(bool withHeader);
  // All that is shown, as CSV.
  void exportTo(const QString& file);
  void editFilter();
  void clearFilters();

 signals:
  void stepToRowWanted(long long row);
  void keepRowsWanted(const kelvarin::RowCondition& condition);
  // `name` is one that no column has.
  void newColumnWanted(const kelvarin::PinColumns::Column& column, const QString& name);
  void renameColumnWanted(const QString& column);
  // Other rows are shown, or will be: isOrdering(), the model's rows.
  void orderChanged();
  void currentColumnChanged(int column);
  // Something that was asked for was done, or could not be.
  void reported(bool isGood, const QString& text);

 private:
  void connectHeader();
  void applyOrder();
  void takeOrder(std::shared_ptr<const RowNumbers> order);
  RowOrder wantedOrder();
  static void stop(std::shared_ptr<StopFlag>& work);
  void sortBy(int column, bool isDescending);
  void cycleSorting(int column);
  void setCurrentColumn(int column);
  void showWholeValue();
  void layOut();
  void fitColumns();
  void fitRowNumbers();
  void showCellMenu(const QPoint& position);
  void showHeaderMenu(const QPoint& position);
  void addSortActions(QMenu& menu, int column);
  void wantNewColumn(int column);
  RowTextRequest selectedTexts() const;
  void copyTexts(RowTextRequest request);
  void keepRowsLikeChosen();

  void changeEvent(QEvent* event) override;

  BackgroundQueue& m_queue;
  PreviewModel* m_model;
  PreviewView* m_view;
  PreviewHeader* m_header;
  QPointer<PinPreview> m_preview;
  long long m_maximumRows = PreviewModel::kMaximumRows;
  long long m_orderedRows = 0;  // of the order that is shown or being made
  std::shared_ptr<StopFlag> m_ordering;
  std::shared_ptr<StopFlag> m_copying;
  std::shared_ptr<StopFlag> m_choosing;
  std::vector<std::shared_ptr<StopFlag>> m_exports;
  int m_sortColumn = -1;
  bool m_isDescending = false;
  std::pair<int, bool> m_sortBeforeClick{-1, false};
  int m_currentColumn = -1;
  bool m_areColumnsFitted = false;
};

}  // namespace kelvarin
