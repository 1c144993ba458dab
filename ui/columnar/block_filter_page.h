// The tab of the reading dialog with the block filter: its expression, the variables, what it would
// skip in the file, and the time parameters.
#pragma once

#include "columnar/actions/block_filter.h"
#include "columnar/actions/block_filter_trial.h"
#include "columnar/actions/read_settings.h"
#include "ui/columnar/block_variables_model.h"
#include "ui/columnar/summary_texts.h"
#include "ui/panels/settings_page.h"
#include "ui/widgets/expression_field.h"

class QComboBox;
class QTableView;
class QToolButton;

namespace kelvarin {

class BlockValuesModel;
class CommittedVerdict;
class InfoLine;
class MyTable;
class TimeParametersPanel;

class BlockFilterPage : public SettingsPage {
  Q_OBJECT

 public:
  explicit BlockFilterPage(const ActionItem& action, QWidget* parent = nullptr);

  ExpressionField* field() const { return m_field; }
  void load(const ReadColumnarSettings& settings, const BlockFilter& filter);
  void store(ReadColumnarSettings& settings) const;
  // As the controls have it.
  BlockFilter filter() const;
  // The user changed it since load().
  bool isEdited(const BlockFilter& loaded) const;
  void setFile(const TableSummary* summary);
  void showTrial(const BlockFilterTrial& trial, const ShownText& words);
  // Nothing was tried.
  void showNoTrial(const ShownText& why);

 signals:
  // The expression can be tried: it was checked, and is right.
  void trialWanted();
  void helpWanted(const QString& name);
  // The page is to be shown.
  void pageWanted();

 private:
  void addExpression();
  void addBlockValues(QGroupBox& box);
  void fitBlockValues();
  void addVariables();
  void addTime();
  void setFormula();
  void takeAnswer(const FormulaAnswer& answer);
  void edit();
  void addColumn();

  const ActionItem& m_action;
  QCheckBox* m_isApplied;
  ExpressionField* m_field;
  CommittedVerdict* m_verdict;
  InfoLine* m_trial;
  BlockValuesModel* m_values;
  QTableView* m_valuesTable;
  BlockVariablesModel* m_model;
  MyTable* m_table;
  QComboBox* m_newColumn;
  QCheckBox* m_addRowNumbers;
  QToolButton* m_timeButton;
  TimeParametersPanel* m_time;
  QSpinBox* m_blocksAhead;
  bool m_isEdited = false;  // the variables or the time parameters
  QString m_loaded;         // the expression as the action has it
};

}  // namespace kelvarin
