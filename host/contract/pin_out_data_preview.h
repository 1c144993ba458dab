// What a table in the making already shows: which rows can be read from where in the file that
// holds them.
//
// A writer appends an entry per block; a viewer reads the entries while the run goes on.
// Threads: any; everything is under one lock.
#pragma once

#include <mutex>
#include <vector>

#include "host/contract/pin_out_meta_data.h"

class PinOutDataPreview {
 public:
  struct Entry {
    long long rowCount;  // rows before the entry's
    int width;           // bytes of one descriptor
    long long offset;    // where the entry begins in the file
    friend bool operator==(const Entry&, const Entry&) = default;
  };

  // Forgets all entries: a new table with these columns begins.
  void start(const PinOutMetaData& columns) {
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_columns = columns;
    m_areRowsComplete = m_areColumnsComplete = false;
  }

  void append(const Entry& entry) {
    const std::lock_guard lock(m_mutex);
    m_entries.push_back(entry);
  }

  // Appends the last entry; nothing more comes. A table that ends before its end is not complete.
  void complete(const Entry& last, bool isComplete = true) {
    const std::lock_guard lock(m_mutex);
    m_areRowsComplete = m_areColumnsComplete = isComplete;
    m_entries.push_back(last);
  }

  std::vector<Entry> entries() const {
    const std::lock_guard lock(m_mutex);
    return m_entries;
  }

  PinOutMetaData columns() const {
    const std::lock_guard lock(m_mutex);
    return m_columns;
  }

  bool isComplete() const {
    const std::lock_guard lock(m_mutex);
    return m_areRowsComplete && m_areColumnsComplete;
  }

 private:
  mutable std::mutex m_mutex;  // guards all members
  std::vector<Entry> m_entries;
  PinOutMetaData m_columns;
  bool m_areRowsComplete = false;
  bool m_areColumnsComplete = false;
};
