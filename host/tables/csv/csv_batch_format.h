// Writes the rows of batches as CSV text.
//
// Numbers take the shortest form that reads back to the same double, and are printed column by
// column before the rows are put together. Fields are quoted where they would otherwise be read
// back as something else.
// Threads: any, at the same time.
// Errors: the field that needs a quote where there is none ends a batch's text.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "host/contract/one_row.h"
#include "host/tables/csv/csv_dialect.h"
#include "host/tables/csv/csv_text.h"
#include "host/tables/csv/printed_rows.h"

namespace kelvarin {

class CsvBatchFormat final : public BatchEncoder {
 public:
  // The types of the columns of all batches.
  CsvBatchFormat(const CsvDialect& dialect, std::vector<MetaTypeColumn> types);

  std::unique_ptr<EncodedBatch> encode(const RowBatch& batch) const override {
    return encodeRows(batch);
  }
  std::unique_ptr<CsvText> encodeRows(const RowBatch& batch) const;
  // The header; of an unwritable name only the column counts.
  std::unique_ptr<CsvText> encodeNames(const OneRow& columns) const;

 private:
  // A column of the rows at work.
  struct Cursor {
    const NumberText* numbers;  // null: a column of texts
    const BatchColumn* column;
    const unsigned char* textEnd;  // bytes before it may be read
  };

  bool appendRows(CsvText& text, const PrintedRows& rows, const std::vector<Cursor>& columns) const;
  // These write at `target` and return the end; null when the field needs a quote that does not
  // exist.
  char* appendNumber(char* target, const NumberText& number) const;
  char* appendText(CsvText& text, char* target, const Cursor& column, std::size_t row) const;
  bool copyPlain(char* target, std::string_view value, const unsigned char* end) const;
  char* appendQuoted(char* target, std::string_view text) const;
  char* appendNull(char* target) const;
  bool needsQuote(std::string_view text) const;

  CsvDialect m_dialect;
  std::vector<MetaTypeColumn> m_types;
  bool m_isSpecial[256] = {};  // bytes that make a field need quotes
  // A missing value has a text, or a printed number may hold the separator or the quote.
  bool m_needsNumberCheck = false;
  std::size_t m_fixedCapacity;  // for a row but its texts
  std::shared_ptr<CsvTextStore> m_store = std::make_shared<CsvTextStore>();
};

}  // namespace kelvarin
