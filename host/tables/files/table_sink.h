// The base of the actions that write a table to a file: one pin in, none out.
//
// init() creates the temporary file, so that a folder that cannot be written stops the run before
// it reads anything. The file is complete when the input ends, and gets its name in close() when
// the run has ended normally. Batches are encoded by any thread, where the format has an encoder.
// Errors: logged, and the run fails.
#pragma once

#include <memory>

#include "host/contract/claimed_names.h"
#include "host/contract/described_action.h"
#include "host/files/file_hints.h"
#include "host/files/output_check.h"
#include "host/tables/files/output_file.h"
#include "host/tables/files/output_queue.h"

namespace kelvarin {

class TableSink : public ActionItem, public BatchSink, public FileUser, public OutputCheck {
 public:
  char init() override;
  char close() override;
  void setComputeRoutine() override { computeRoutine = &TableSink::takeFirstBatch; }
  char canRunInParallel(QString what, bool* reason) override;
  void checkOutput() override;
  const BatchEncoder* encoder() const override { return m_encoder.get(); }

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
  // After begin(). Null: batches are written as they are.
  virtual std::unique_ptr<BatchEncoder> makeEncoder() { return nullptr; }
  // Of sinks without an encoder.
  virtual Status<QString> write(const RowBatch& /*batch*/) { return Done{}; }
  // Of sinks with an encoder, which has made `batch`.
  virtual Status<QString> writeEncoded(std::unique_ptr<EncodedBatch> /*batch*/) { return Done{}; }
  // Passes everything to output() or write().
  virtual Status<QString> finish() = 0;
  // Forgets what belongs to one run.
  virtual void release() = 0;

  OutputFile& output() { return m_output; }
  const OutputFile& output() const { return m_output; }
  // To the output, in the order of the calls, perhaps by a task; `owner` keeps the bytes.
  Status<QString> write(std::shared_ptr<const void> owner, std::string_view bytes) {
    return m_queue.append(std::move(owner), bytes);
  }
  // Writes the element's head and the attribute `file`.
  void saveHead(std::wostringstream& out, const QString& name) const;
  QString expandedFile() const;

 private:
  static bool takeFirstBatch(ActionItem* action);
  static bool takeBatch(ActionItem* action);

  bool take(TakenBatch taken);
  bool endOfInput();
  // Unless the reader of standard output has seen enough, which only ends this action.
  bool endWithError(const QString& text);
  bool hasRunEndedNormally() const;
  Status<QString> claimFile();

  QString m_file;
  ClaimedNames m_names;
  OutputFile m_output;
  OutputQueue m_queue{m_output};
  std::unique_ptr<BatchEncoder> m_encoder;
};

}  // namespace kelvarin
