#include "host/tables/csv/csv_file_writer.h"

#include "host/contract/batch_collector.h"
#include "host/tables/csv/csv_batch_format.h"
#include "host/tables/csv/messages.h"

namespace kelvarin {

namespace {
// Texts below this size wait for more, unless somebody may be waiting for them.
constexpr std::size_t kWrittenAtOnce = 32 * 1024;
}  // namespace

Status<QString> CsvFileWriter::begin(const OneRow& columns) {
  m_names = columns.getColNamesDeep();
  if (!m_dialect.hasHeader || columns.sz() == 0) {
    return Done{};
  }
  std::shared_ptr<const CsvText> header =
      CsvBatchFormat(m_dialect, typesOf(columns)).encodeNames(columns);
  if (header->unwritable()) {
    return Failure{needsQuoteText(0, *header->unwritable())};
  }
  return append(std::move(header));
}

Status<QString> CsvFileWriter::write(std::unique_ptr<EncodedBatch> rows) {
  const std::shared_ptr<const CsvText> text(static_cast<const CsvText*>(rows.release()));
  Status<QString> status = append(text);
  m_rowsWritten += text->rowCount();
  if (!text->unwritable()) {
    return status;
  }
  if (status) {
    status = flush();
  }
  return status ? Failure{needsQuoteText(m_rowsWritten + 1, *text->unwritable())} : status;
}

Status<QString> CsvFileWriter::append(std::shared_ptr<const CsvText> text) {
  const std::string_view bytes = text->text();
  if (bytes.size() < kWrittenAtOnce && !m_file.output.isStream()) {
    m_waiting += bytes;
    return m_waiting.size() < kWrittenAtOnce ? Status<QString>(Done{}) : flush();
  }
  const Status<QString> status = flush();
  return status ? m_file.queue.append(std::move(text), bytes) : status;
}

Status<QString> CsvFileWriter::flush() {
  if (m_waiting.empty()) {
    return Done{};
  }
  const auto text = std::make_shared<const std::string>(std::exchange(m_waiting, {}));
  return m_file.queue.append(text, *text);
}

QString CsvFileWriter::needsQuoteText(long long row, const UnwritableField& field) const {
  return table_messages::needsQuote(m_file.path, row, m_names[field.column], field.value);
}

}  // namespace kelvarin
