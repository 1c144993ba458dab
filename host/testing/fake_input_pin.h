// An input pin whose rows a test has typed.
//
// As strict as a running graph: one row object for all rows, and the bytes of a row are overwritten
// at the next pull from the same pin, so that an action that holds on to them is found out. Steady
// pulling allocates nothing. Where batches are asked for, the same rows are collected.
#pragma once

#include "host/contract/batch_rows.h"
#include "host/contract/pin_ports.h"
#include "host/testing/value.h"

namespace kelvarin::testing {

// How rows are put into batches.
struct BatchShape {
  std::size_t rows = 4096;
  // Rows of nulls that are stored before each row and do not count.
  std::size_t strayRows = 0;
  // Columns of texts have one, with an entry that no row has.
  bool hasDictionaries = false;
};

inline constexpr char kEntryWithoutRows[] = "(";  // which is no regular expression

class FakeInputPin : public InputPin {
 public:
  explicit FakeInputPin(const PinOutMetaData& columns);

  void push(const Values& values, long long times = 1);
  void setSortOrder(const QVector<SortInfos>& order) { m_row.setSortInfos(order); }
  void setUpstreamAction(ActionItem* action) { m_upstream = action; }
  // The upstream action has not announced its columns; they come with the first row.
  void hideColumns() { m_isAnnounced = false; }
  void setBatchShape(BatchShape shape) { m_shape = shape; }
  long long rowsPulled() const { return m_rowsPulled; }

  const OneRow* next() override;
  const OneRow* announcedColumns() override { return m_isAnnounced ? &m_row : nullptr; }
  ActionItem* upstreamAction() const override { return m_upstream; }
  TakenBatch nextBatch() override;

  // For who drives a stage: the rows to come, up to the end of their batch, or null at the end; and
  // how many of them are done.
  RowBatchPointer restOfBatch();
  void passRows(std::size_t count);

 private:
  struct TypedRow {
    std::vector<unsigned char> bytes;
    std::vector<std::size_t> offsets;  // of each column's value
    long long times;
    long long timesLeft;
  };

  // Null at the end.
  const TypedRow* takeTypedRow();
  RowBatchPointer collectBatch();

  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  std::vector<TypedRow> m_rows;
  std::size_t m_current = 0;
  std::vector<unsigned char> m_bytes[2];  // of the current row and, spoilt, of the one before
  std::size_t m_largestRow = 0;
  bool m_isAnnounced = true;
  BatchShape m_shape;
  BatchRows m_batch;
  long long m_rowsPulled = 0;
  ActionItem* m_upstream = nullptr;
};

// Columns from "name:F other:U": the code after the last colon.
PinOutMetaData columnsFromText(const std::string& text);
std::string textFromColumns(const PinOutMetaData& columns);

}  // namespace kelvarin::testing
