// The table of an InlineTable action, edited in place.
//
// Threads: the user-interface thread.
#pragma once

#include <QAbstractTableModel>

#include "gui/host_editors/inline_content.h"

namespace kelvarin {

class InlineTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Paste {
    QModelIndexList withDecimalCommas;  // cells that may be meant as numbers
    bool tookNames = false;             // the first line became the names of the columns
  };

  using QAbstractTableModel::QAbstractTableModel;

  const InlineContent& content() const { return m_content; }
  // Reports nothing.
  void setContent(InlineContent content);

  // Each reports edited().
  void setNull(const QModelIndexList& cells);
  void addRow(int before);
  void removeRowsAt(std::vector<int> rows);
  void moveRowTo(int row, int target);
  void addColumn(int before);
  void removeColumnAt(int column);
  void moveColumnTo(int column, int target);
  void renameColumn(int column, const QString& name);
  void setColumnType(int column, const QString& meta);
  // From this cell to the right and downwards; the table grows where it must.
  Paste paste(const QString& text, int row, int column);
  // The names that a paste has taken become the first row.
  void makeNamesARow();
  void useDecimalPoints(const QModelIndexList& cells);

  // The cells of the smallest rectangle around them.
  QString copied(const QModelIndexList& cells) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void edited();

 private:
  QString value(const QModelIndex& index) const;
  void setValue(std::size_t row, std::size_t column, const QString& value);
  QString newColumnName() const;
  // Numbers and nulls, and at least one number.
  bool holdsNumbers(std::size_t column) const;

  InlineContent m_content;
};

}  // namespace kelvarin
