// The column sets of a writing action: each column of its input, and the number of its set.
//
// Columns that are listed but do not reach the action stay, and are marked.
// Threads: the user-interface thread.
#pragma once

#include <QAbstractTableModel>

#include "columnar/actions/write_settings.h"
#include "host/contract/pin_columns.h"

namespace kelvarin {

class ColumnSetsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kName, kType, kSet, kColumnCount };
  static constexpr int kNotWritten = -1;
  static constexpr int kLastSet = 254;

  explicit ColumnSetsModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

  void setSets(const ListedColumnSets& sets);
  // What is listed, in its order.
  const ListedColumnSets& sets() const { return m_sets; }
  void setInput(const PinColumns& columns);
  // Each reports edited(). Columns in `rows` get the set.
  void assign(const std::vector<int>& rows, int set);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void edited();

 private:
  struct Row {
    QString name;
    const PinColumns::Column* input = nullptr;  // in m_input; null where it does not reach the pin
  };

  void listRows();
  // kNotWritten where the column is not listed.
  int setOf(const QString& name) const;
  void put(const QString& name, int set);

  ListedColumnSets m_sets;
  PinColumns m_input;
  std::vector<Row> m_rows;
};

}  // namespace kelvarin
