// The tab of the writing dialog about rows and columns: which rows are written, and to which set
// each column goes.
#pragma once

#include "columnar/actions/write_settings.h"
#include "ui/columnar/column_sets_model.h"
#include "ui/panels/settings_page.h"

class QComboBox;

namespace kelvarin {

class InfoLine;
class MyTable;

class WriteColumnsPage : public SettingsPage {
  Q_OBJECT

 public:
  explicit WriteColumnsPage(QWidget* parent = nullptr);

  const ColumnSetsModel& model() const { return *m_model; }
  void load(const WriteColumnarSettings& settings, const ListedColumnSets& sets);
  void store(WriteColumnarSettings& settings) const;
  void setColumns(const PinColumns& columns);

 private:
  void addRowGroup();
  void addSetGroup();
  std::vector<int> chosenRows() const;
  void showNote(const PinColumns& columns);

  ColumnSetsModel* m_model;
  QCheckBox* m_testRows;
  QComboBox* m_testColumn;
  QLineEdit* m_testValue;
  QRadioButton* m_oneSet;
  QRadioButton* m_listedSets;
  QRadioButton* m_setForEach;
  MyTable* m_table;
  QWidget* m_setButtons;
  QSpinBox* m_set;
  InfoLine* m_note;
};

}  // namespace kelvarin
