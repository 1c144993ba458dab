// The tab of the reading dialog on which the columns are chosen.
#pragma once

#include "columnar/actions/read_settings.h"
#include "ui/columnar/columns_to_read_model.h"
#include "ui/panels/settings_page.h"

class QLabel;
class QSortFilterProxyModel;

namespace kelvarin {

class MyTable;
class SearchField;

class ReadColumnsPage : public SettingsPage {
  Q_OBJECT

 public:
  explicit ReadColumnsPage(QWidget* parent = nullptr);

  ColumnsToReadModel& model() { return *m_model; }
  void load(const ReadColumnarSettings& settings, const QStringList& listed);
  void store(ReadColumnarSettings& settings) const;
  // Null where it is not known what the file has.
  void setFile(const TableSummary* summary);
  // "12 of 40 columns, 1.2 MB"
  QString extent() const;

 private:
  void addChoice();
  void addList();
  std::vector<int> shownRows() const;
  void moveCurrent(int step);
  void addTyped();
  void showExtent();

  ColumnsToReadModel* m_model;
  QSortFilterProxyModel* m_shown;
  QRadioButton* m_all;
  QRadioButton* m_listed;
  QRadioButton* m_fromPin;
  SearchField* m_search;
  MyTable* m_table;
  QWidget* m_listButtons;
  QWidget* m_addRow;
  QLineEdit* m_newColumn;
  QLabel* m_extent;
  int m_columnsOfFile = -1;  // unknown
};

}  // namespace kelvarin
