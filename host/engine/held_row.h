// The row that an input pin last gave, which stays what it is until the pin's next row.
//
// It shows the producer's values without copying them. Where another reader can make the same
// source go on in the meantime, the values are copied just before that happens.
// Used by: row_links.cpp, running_action.cpp.
// Threads: one.
#pragma once

#include "host/contract/pin_ports.h"

namespace kelvarin {

class HeldRow {
 public:
  explicit HeldRow(const OutputPin& producer) : m_producer(producer) {}
  HeldRow(const HeldRow&) = delete;
  HeldRow& operator=(const HeldRow&) = delete;

  // The producer's row as it is now.
  const OneRow* show() {
    adoptColumns();
    m_row.showValuesOf(&m_producer.row);
    m_isShared = true;
    return &m_row;
  }

  // A row whose values the caller points at something that lasts until the next row.
  const OneRow* row() const { return &m_row; }
  unsigned char** valuesToFill() {
    adoptColumns();
    return m_row.getAllColForWrite();
  }

  // True while the values are the producer's.
  bool isShared() const { return m_isShared; }
  // The consumer is done with the row.
  void release() { m_isShared = false; }

  // Called before the producer's values may go.
  void keep() {
    if (m_isShared) {
      m_row.copyFrom(&m_producer.row);
      m_isShared = false;
    }
  }

 private:
  void adoptColumns() {
    if (!m_hasColumns) [[unlikely]] {
      m_metaData = m_producer.metaData;
      m_row.setNumberOfColumns(m_producer.row.sz());
      m_hasColumns = true;
    }
  }

  const OutputPin& m_producer;
  PinOutMetaData m_metaData;
  OneRow m_row{&m_metaData};
  bool m_hasColumns = false;
  bool m_isShared = false;
};

}  // namespace kelvarin
