// An input pin whose rows a test has typed.
//
// As strict as a running graph: one row object for all rows, and the bytes of a row are overwritten
// at the next pull from the same pin, so that an action that holds on to them is found out. Steady
// pulling allocates nothing. Rows can be looked at ahead only where the test says so.
#pragma once

#include "host/contract/pin_ports.h"
#include "host/testing/value.h"

namespace kelvarin::testing {

class FakeInputPin : public InputPin, public RowsInHand {
 public:
  explicit FakeInputPin(const PinOutMetaData& columns);

  void push(const Values& values, long long times = 1);
  void setSortOrder(const QVector<SortInfos>& order) { m_row.setSortInfos(order); }
  void setUpstreamAction(ActionItem* action) { m_upstream = action; }
  // The upstream action has not announced its columns; they come with the first row.
  void hideColumns() { m_isAnnounced = false; }
  // All rows may be looked at ahead, which is counted, but for the columns in `hidden`.
  void offerRows(std::vector<int> hidden = {}) {
    m_isOffering = true;
    m_hiddenColumns = std::move(hidden);
  }
  long long rowsPulled() const { return m_rowsPulled; }
  long long valuesLookedAt() const { return m_valuesLookedAt; }

  const OneRow* next() override;
  const OneRow* announcedColumns() override { return m_isAnnounced ? &m_row : nullptr; }
  ActionItem* upstreamAction() const override { return m_upstream; }
  RowsAhead rowsAhead() const override;
  const double* numbers(int column, std::size_t first, std::size_t count,
                        double* buffer) const override {
    return valuesAhead(column, first, count, buffer);
  }
  const std::uint32_t* keys(int column, std::size_t first, std::size_t count,
                            std::uint32_t* buffer) const override {
    return valuesAhead(column, first, count, buffer);
  }

 private:
  struct TypedRow {
    std::vector<unsigned char> bytes;
    std::vector<std::size_t> offsets;  // of each column's value
    long long times;
    long long timesLeft;
  };

  template <typename Value>
  const Value* valuesAhead(int column, std::size_t first, std::size_t count, Value* buffer) const;

  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  std::vector<TypedRow> m_rows;
  std::size_t m_current = 0;
  std::vector<unsigned char> m_bytes[2];  // of the current row and, spoilt, of the one before
  std::size_t m_largestRow = 0;
  bool m_isAnnounced = true;
  bool m_isOffering = false;
  std::vector<int> m_hiddenColumns;
  mutable long long m_valuesLookedAt = 0;
  std::size_t m_rowCount = 0;
  long long m_rowsPulled = 0;
  ActionItem* m_upstream = nullptr;
};

// Columns from "name:F other:U": the code after the last colon.
PinOutMetaData columnsFromText(const std::string& text);
std::string textFromColumns(const PinOutMetaData& columns);

}  // namespace kelvarin::testing
