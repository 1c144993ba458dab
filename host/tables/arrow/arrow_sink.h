// The base of WriteParquet and WriteArrow.
#pragma once

#include <memory>

#include "host/tables/arrow/arrow_formats.h"
#include "host/tables/files/table_sink.h"

namespace kelvarin {

class ArrowSink : public TableSink {
 public:
  ArrowSink(XMLNode node, GlobalParameters* parameters) : TableSink(node, parameters) {}
  void saveXML(std::wostringstream& out, QString name) override;

 protected:
  virtual ArrowFormat arrowFormat() const = 0;

  Status<QString> checkSettings() override;
  Status<QString> begin(const OneRow& columns) override;
  Status<QString> writeRow(const OneRow& row) override { return m_writer->writeRow(row); }
  Status<QString> finish() override { return m_writer->finish(); }
  void release() override { m_writer.reset(); }

 private:
  std::unique_ptr<ArrowTableWriter> m_writer;
};

}  // namespace kelvarin
