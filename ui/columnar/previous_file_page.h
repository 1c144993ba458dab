// The tab of the writing dialog about the file that is there already, and about other users of it.
#pragma once

#include "columnar/actions/write_settings.h"
#include "ui/columnar/summary_texts.h"
#include "ui/panels/settings_page.h"

namespace kelvarin {

class InfoLine;

class PreviousFilePage : public SettingsPage {
  Q_OBJECT

 public:
  explicit PreviousFilePage(QWidget* parent = nullptr);

  void load(const WriteColumnarSettings& settings);
  void store(WriteColumnarSettings& settings) const;
  // What is there under the name now; no text: it is not known.
  void showOldFile(const ShownText& text);
  void setDeletable(bool isDeletable, const QString& reason);
  void showDeletion(const ShownText& text);

 signals:
  void deletionWanted();

 private:
  InfoLine* m_oldFile;
  QCheckBox* m_replaceAtEnd;
  QCheckBox* m_alwaysDelete;
  QCheckBox* m_checkNames;
  QSpinBox* m_timeOut;
  QPushButton* m_delete;
  InfoLine* m_deletion;
};

}  // namespace kelvarin
