// The base of WriteParquet and WriteArrow: collects rows into batches and hands these to the
// format's writer.
#pragma once

#include <memory>

#include "host/tables/arrow/arrow_output_stream.h"
#include "host/tables/arrow/row_collector.h"
#include "host/tables/files/table_sink.h"

namespace kelvarin {

// Writes batches of one schema to a stream. Exceptions of the format's library end here.
class ArrowWriter {
 public:
  virtual ~ArrowWriter() = default;
  virtual arrow::Status open(std::shared_ptr<ArrowOutputStream> stream,
                             std::shared_ptr<arrow::Schema> schema) = 0;
  virtual arrow::Status write(const arrow::RecordBatch& batch) = 0;
  virtual arrow::Status close() = 0;
};

class ArrowSink : public TableSink {
 public:
  ArrowSink(XMLNode node, GlobalParameters* parameters) : TableSink(node, parameters) {}
  void saveXML(std::wostringstream& out, QString name) override;

 protected:
  virtual std::unique_ptr<ArrowWriter> makeWriter() const = 0;

  Status<QString> begin(const OneRow& columns) override;
  Status<QString> writeRow(const OneRow& row) override;
  Status<QString> finish() override;
  void release() override;

 private:
  arrow::Status writeCollected();
  Status<QString> outcome(const arrow::Status& status) const;

  std::shared_ptr<ArrowOutputStream> m_stream;
  std::unique_ptr<RowCollector> m_collector;
  std::unique_ptr<ArrowWriter> m_writer;
};

}  // namespace kelvarin
