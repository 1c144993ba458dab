// The editor of ReadCSV: the file as it stands on the disk and as it is read, what it seems to be
// written like, and each setting to be overruled.
//
// Threads: the user-interface thread.
#pragma once

#include "gui/host_editors/read_table_editor.h"
#include "host/tables/csv/csv_guess.h"
#include "host/tables/csv/csv_read_settings.h"

class QScrollArea;

namespace kelvarin {

class CsvRawView;

class ReadCsvEditor : public ReadTableEditor {
  Q_OBJECT

 public:
  ReadCsvEditor(ActionItem& action, QWidget* parent);

  bool isBusy() const override { return ReadTableEditor::isBusy() || m_startTask.isRunning(); }

 protected:
  MakeBatchReader reader(const QString& path) const override;
  bool hasHeader() const override;
  FileFormat format() const override { return FileFormat::csv; }
  QString filter() const override;
  void look() override;

 private:
  struct Start;  // of the file

  QWidget* newForeignPage();
  void showForeignCount();
  Result<CsvFileSettings, QString> csvSettings() const;
  void showStart(const Start& start);
  QString guessInWords() const;
  // What decides how lines are cut into fields.
  bool areFieldsAsGuessed(const CsvFileSettings& now) const;
  bool areValuesAsGuessed(const CsvDialect& now) const;
  void takeGuess();

  CsvGuess m_guess;
  TextEncoding m_encoding = TextEncoding::utf8;  // that the file seems to have
  BackgroundTask m_startTask;
  InfoLine* m_found;
  CsvRawView* m_raw;
  QScrollArea* m_foreign;
};

}  // namespace kelvarin
