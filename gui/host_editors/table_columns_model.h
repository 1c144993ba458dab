// The columns of a table file, one a row: name, type, first values. A type can be fixed, and, where
// the file has no header, a name given.
//
// A column that the settings declare and the file does not have stays, and is marked.
// Threads: the user-interface thread.
#pragma once

#include <QAbstractTableModel>

#include "gui/host_editors/declared_columns.h"

namespace kelvarin {

class TableColumnsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { kName, kType, kValues, kColumnCount };
  // The letter of a type that the user has fixed; empty where it is the one found.
  static constexpr int kMetaRole = Qt::UserRole;
  static constexpr int kFoundRole = Qt::UserRole + 1;  // in words; empty where not known

  using QAbstractTableModel::QAbstractTableModel;

  void setColumns(const TableLook& look, const std::vector<ColumnElement>& declared,
                  bool canBeRenamed);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // "Number" for F, "Key" for K, "Text" for U; another text as it is.
  static QString typeInWords(const QString& meta);

 signals:
  void typeChosen(const QString& name, const QString& meta);
  void renamed(int column, const QString& name);

 private:
  struct Row {
    QString name;
    QString meta;  // fixed by the user
    QString found;
    QString values;
    bool isInFile = true;
  };

  QString typeText(const Row& row) const;

  std::vector<Row> m_rows;
  bool m_canBeRenamed = false;
};

}  // namespace kelvarin
