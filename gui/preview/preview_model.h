// The rows of a preview as a table: in their own order or in the one that a user wants, each with
// the number that it has at its pin.
//
// Threads: the user-interface thread.
#pragma once

#include <memory>

#include <QAbstractTableModel>

#include "gui/preview/preview_rows.h"
#include "gui/threads/posted_calls.h"
#include "host/contract/shown_value.h"

namespace kelvarin {

class PreviewModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  // What a view needs for each row does not fit into memory for more.
  static constexpr long long kMaximumRows = 5'000'000;

  // Of a column's header: its type, for the user.
  static constexpr int kTypeNameRole = Qt::UserRole;

  struct Cell {
    bool isThere = true;
    ShownValue value;
  };

  explicit PreviewModel(QObject* parent = nullptr);
  ~PreviewModel() override;

  // Null: nothing. Its first rows are shown, in their order.
  void setRows(std::shared_ptr<PreviewRows> rows, long long rowCount);
  const std::shared_ptr<PreviewRows>& rows() const { return m_rows; }
  // More of them count. In an order of one's own they appear with the next order.
  void setSourceRowCount(long long count);
  long long sourceRowCount() const { return m_sourceRowCount; }
  // Null: as they came.
  void setOrder(std::shared_ptr<const RowNumbers> order);
  const std::shared_ptr<const RowNumbers>& order() const { return m_order; }

  // Of a row of the view, counted from 0.
  long long sourceRow(int row) const;
  // Shortened where it is longer than a line.
  Cell cell(int row, int column) const;
  // The whole value; `isThere` as above.
  Cell wholeCell(int row, int column) const;
  MetaTypeColumn typeOf(int column) const;
  QString nameOf(int column) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  // Values that were not there have come from the disk.
  void valuesCame();

 private:
  int shownRowCount() const;

  PostedCalls m_calls;  // of the rows, from any thread
  std::shared_ptr<PreviewRows> m_rows;
  long long m_sourceRowCount = 0;
  std::shared_ptr<const RowNumbers> m_order;
};

// "number", "key", "text", translated.
QString nameOfType(MetaTypeColumn type);

}  // namespace kelvarin
