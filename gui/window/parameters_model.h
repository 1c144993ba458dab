// The parameters of the graph as a table that is edited: name, value, and what uses each.
//
// A parameter that gets another name keeps its row, so that its uses can follow; values of other
// rows follow at once. Nothing changes the graph.
// Used by: ParametersDialog. Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QAbstractTableModel>

#include "gui/document/edited_graph.h"

namespace kelvarin {

class ParametersModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kName, kValue, kUsedBy, kColumnCount };
  // A name after `${` in the settings of actions that no row has.
  struct Missing {
    QString name;
    QStringList users;
    bool operator==(const Missing&) const = default;
  };

  explicit ParametersModel(const EditedGraph& graph, QObject* parent = nullptr);

  QList<DrawnParameter> parameters() const;  // rows without name and value are none
  QHash<QString, QString> newNames() const;  // by the old ones
  // Why the graph cannot have them; empty when it can.
  QString fault() const;
  std::vector<Missing> missing() const;
  // Those that the value of the row can refer to: values are expanded in their order.
  QStringList namesAbove(int row) const;

  QModelIndex add(const QString& name = {});
  void removeAt(int row);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 signals:
  void edited();

 private:
  struct Row {
    QString original;  // its name in the graph; empty for a new one
    QString name;
    QString value;
  };

  QStringList usersOf(const Row& row) const;
  QString faultOf(int row, Column column) const;
  void rename(int row, const QString& name);
  int indexOf(const QString& name) const;  // -1 when absent

  const EditedGraph& m_graph;
  std::vector<Row> m_rows;
};

}  // namespace kelvarin
