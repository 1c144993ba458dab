// The base of the actions that write a table to a file, or to one for each value of a column: one
// pin in, none out.
//
// init() creates the temporary file, so that a folder that cannot be written stops the run before
// it reads anything; files of values are created when their values come. A file is complete when
// the input ends, or when no more of its rows can come, and all get their names in close() when the
// run has ended normally. Batches are encoded by any thread.
// Errors: logged, and the run fails.
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "host/contract/claimed_names.h"
#include "host/contract/column_user.h"
#include "host/contract/described_action.h"
#include "host/files/file_hints.h"
#include "host/files/output_check.h"
#include "host/files/split_values.h"
#include "host/tables/files/output_settings.h"
#include "host/tables/files/sink_file.h"
#include "host/tables/files/split_encoder.h"

namespace kelvarin {

class TableSink : public WithDescription<ActionItem>,
                  public BatchSink,
                  public FileUser,
                  public OutputCheck,
                  public ColumnUser {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &TableSink::takeFirstBatch; }
  char canRunInParallel(QString what, bool* reason) override;
  void checkOutput() override;
  std::vector<ElementFault> settingFaults() const override;
  const BatchEncoder* encoder() const override { return m_encoder.get(); }

  QList<UsedFile> usedFiles() const override;
  QStringList warningsAboutFiles() const override;
  ColumnFate followColumn(const QString& oldName, const QString& newName) override;

  const QString& file() const { return m_file; }
  const OutputSettings& settings() const { return m_settings; }
  // The attribute `file`, and what is about files of any format behind `attributes`.
  static std::vector<AttributeDescription> describedAttributes(
      std::vector<AttributeDescription> attributes);

 protected:
  TableSink(XMLNode node, GlobalParameters* parameters);

  virtual FileFormat format() const = 0;
  // Checks the settings, before the file is created.
  virtual Status<QString> checkSettings() { return Done{}; }
  // Whether a table with these columns can be written.
  virtual Status<QString> checkColumns(const OneRow& /*columns*/) { return Done{}; }
  // These come after the checks.
  virtual std::unique_ptr<BatchEncoder> makeEncoder(const OneRow& columns) = 0;
  virtual std::unique_ptr<TableFileWriter> makeWriter(SinkFile& file) = 0;

  // Writes the element's head and the attribute `file`; and the attributes behind those of the
  // format.
  void saveHead(std::wostringstream& out, const QString& name) const;
  void saveOutput(std::wostringstream& out) const;
  QString expandedFile() const;

 private:
  static bool takeFirstBatch(ActionItem* action);
  static bool takeBatch(ActionItem* action);

  QString faultOfSplit() const;
  Status<QString> checkAllSettings();
  Status<QString> checkAllColumns(const OneRow& columns);
  Status<QString> claim(const UsedFile& file);
  void warnOfIdleSplit() const;
  Status<QString> plan(const OneRow& columns);
  Result<SinkFile*, QString> addFile(const QString& path);
  Status<QString> begin(SinkFile& file);
  bool take(TakenBatch taken);
  Status<QString> writeSplit(SplitBatch& batch);
  Status<QString> changeSplit(const std::string& mark);
  Result<QString, QString> fileOfSplit(const std::string& mark);
  Status<QString> complete(SinkFile& file);
  bool endOfInput();
  // Unless the reader of standard output has seen enough, which only ends this action.
  bool endWithError(const QString& text);
  bool hasRunEndedNormally() const;

  QString m_file;
  OutputSettings m_settings;
  ClaimedNames m_names;
  std::unique_ptr<BatchEncoder> m_encoder;
  std::vector<std::unique_ptr<SinkFile>> m_files;  // in the order of their first rows

  // Between the first row and close().
  PinOutMetaData m_metaData;
  OneRow m_columns{&m_metaData};
  int m_splitColumn = -1;
  bool m_isSortedOnSplit = false;
  std::optional<std::string> m_splitMark;                   // of the current rows
  SinkFile* m_current = nullptr;                            // their file
  std::unordered_map<std::string, SinkFile*> m_openSplits;  // where the table is not sorted
  SplitFiles m_splitFiles;                                  // by their paths
};

}  // namespace kelvarin
