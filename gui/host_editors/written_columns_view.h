// The columns that a sink writes, with their types, and for formats that have more types than rows
// do, the type that each gets in the file.
//
// Threads: the user-interface thread.
#pragma once

#include <QMap>
#include <QStringList>
#include <QWidget>

#include "host/contract/pin_columns.h"

class QComboBox;
class QLabel;
class QListWidget;

namespace kelvarin {

class SearchField;

class WrittenColumnsView : public QWidget {
  Q_OBJECT

 public:
  // Without types, nothing can be chosen.
  WrittenColumnsView(const QStringList& types, QWidget* parent = nullptr);

  // `chosen` are the types in the file by the columns' names.
  void showColumns(const PinColumns& columns, const QMap<QString, QString>& chosen);

 signals:
  // An empty type leaves it to the column.
  void typeChosen(const QString& column, const QString& type);

 private:
  void addTypeBox(const QStringList& types);
  void fillList(const PinColumns& columns, const QMap<QString, QString>& chosen);
  void showMatches(const QString& text);
  void showChosenType();

  QLabel* m_count;
  SearchField* m_search;
  QListWidget* m_list;
  QWidget* m_typeRow = nullptr;
  QComboBox* m_type = nullptr;  // null without types
};

}  // namespace kelvarin
