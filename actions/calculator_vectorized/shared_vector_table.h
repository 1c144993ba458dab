// The table of vectors of one run, which the primary of several parallel copies of an action reads
// for all of them.
//
// Layout: the table does not change once it is published.
// Threads: each copy on its own; they wait for the primary.
#pragma once

#include <semaphore>

#include "actions/calculator_vectorized/vector_table.h"

namespace kelvarin {

class SharedVectorTable {
 public:
  // Before a run: forgets the table and the permits of an earlier one.
  void clear() {
    m_table = {};
    m_isRead = false;
    while (m_permits.try_acquire()) {
    }
  }
  // Before the copies are released, also with an empty table where reading failed.
  void publish(VectorTable table) {
    m_table = std::move(table);
    m_isRead = true;
    releaseCopies();
  }
  // Whoever waits goes on, be there a table or none.
  void releaseCopies() { m_permits.release(kPermits); }

  // For a copy. Null: the primary ended without reading the table.
  const VectorTable* waitForTable() {
    m_permits.acquire();
    return m_isRead ? &m_table : nullptr;
  }

 private:
  static constexpr int kPermits = 1000;  // more than a host runs copies

  VectorTable m_table;
  bool m_isRead = false;
  std::counting_semaphore<> m_permits{0};
};

}  // namespace kelvarin
