// The base of the actions that write a table to a file: one pin in, none out.
//
// init() creates the temporary file, so that a folder that cannot be written stops the run before
// it reads anything. The file is complete when the input ends, and gets its name in close() when
// the run has ended normally. Rows are written behind, so that formatting and compressing overlap
// with making the next rows.
// Threads: the engine's, but for writeRow(), which runs on the thread of a WriteBehind between
// begin() and finish().
// Errors: logged, and the run fails.
#pragma once

#include <optional>

#include "host/contract/claimed_names.h"
#include "host/contract/columns_in_hand.h"
#include "host/contract/described_action.h"
#include "host/files/file_hints.h"
#include "host/files/output_check.h"
#include "host/tables/files/output_file.h"
#include "host/tables/files/write_behind.h"

namespace kelvarin {

class TableSink : public ActionItem, public FileUser, public OutputCheck {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &TableSink::takeFirstRow; }
  char canRunInParallel(QString what, bool* reason) override;
  void checkOutput() override;

  QList<UsedFile> usedFiles() const override;
  QStringList warningsAboutFiles() const override;

  const QString& file() const { return m_file; }
  // The attribute `file`.
  static AttributeDescription describedFile();

 protected:
  TableSink(XMLNode node, GlobalParameters* parameters);

  virtual FileFormat format() const = 0;
  // Checks the settings, before the file is created.
  virtual Status<QString> checkSettings() { return Done{}; }
  // `columns` has the names and types of all rows to come.
  virtual Status<QString> begin(const OneRow& columns) = 0;
  // On the writing thread. `row` has the names and types of the columns and nothing else of theirs.
  virtual Status<QString> writeRow(const OneRow& row) = 0;
  // Passes everything to output().
  virtual Status<QString> finish() = 0;
  // Forgets what belongs to one run.
  virtual void release() = 0;

  OutputFile& output() { return m_output; }
  // Writes the element's head and the attribute `file`.
  void saveHead(std::wostringstream& out, const QString& name) const;
  QString expandedFile() const;

 private:
  static bool takeFirstRow(ActionItem* action);
  static bool takeRow(ActionItem* action);

  bool write(const OneRow* row);
  bool endOfInput();
  // Unless the reader of standard output has seen enough, which only ends this action.
  bool endWithError(const QString& text);
  bool hasRunEndedNormally() const;
  Status<QString> claimFile();

  QString m_file;
  ClaimedNames m_names;
  OutputFile m_output;
  std::unique_ptr<WriteBehind> m_behind;
  std::optional<ColumnsInHand> m_columns;
};

}  // namespace kelvarin
