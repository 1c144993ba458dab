// The tab of the reading dialog about files that are missing, unfinished or damaged.
#pragma once

#include "columnar/actions/read_settings.h"
#include "ui/panels/settings_page.h"

namespace kelvarin {

class ReadReliabilityPage : public SettingsPage {
  Q_OBJECT

 public:
  explicit ReadReliabilityPage(QWidget* parent = nullptr);

  void load(const ReadColumnarSettings& settings);
  void store(ReadColumnarSettings& settings) const;

 private:
  QRadioButton* m_abort;
  QRadioButton* m_skip;
  QSpinBox* m_timeOut;
  QCheckBox* m_incomplete;
  QCheckBox* m_skipCorrupted;
  QCheckBox* m_accurateProgress;
};

}  // namespace kelvarin
