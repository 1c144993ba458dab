// The first tab of the reading dialog: which file, what is in it, and how much of it is read.
#pragma once

#include "columnar/actions/read_settings.h"
#include "columnar/actions/table_summary.h"
#include "host/contract/action_item.h"
#include "ui/panels/settings_page.h"

class QLabel;

namespace kelvarin {

class InfoLine;
class PathField;

class ReadFilePage : public SettingsPage {
  Q_OBJECT

 public:
  explicit ReadFilePage(const ActionItem& action, QWidget* parent = nullptr);

  void load(const ReadColumnarSettings& settings);
  void store(ReadColumnarSettings& settings) const;

  // What is in the file; none of them: nothing is known, for the reason that is given.
  void showSummary(const TableSummary& summary);
  void showNoSummary(const QString& reason, bool isFailure);
  void showBusy();
  // How much of it is read.
  void showExtent(const QString& columns, const QString& blocks);

 signals:
  void lookAgainWanted();
  void verifyWanted();
  void salvageWanted();
  void columnsWanted();
  void blocksWanted();

 private:
  void addFileGroup();
  void addContentsGroup();
  void addExtentGroup();
  void takePath(const QString& path);

  const ActionItem& m_action;
  QRadioButton* m_isNamed;
  QRadioButton* m_isFromPin;
  PathField* m_file;
  QString m_typed;  // the text that was last typed, not chosen
  InfoLine* m_state;
  QLabel* m_contents;
  QPushButton* m_lookAgain;
  QPushButton* m_verify;
  QPushButton* m_salvage;
  QLabel* m_columns;
  QLabel* m_blocks;
};

}  // namespace kelvarin
