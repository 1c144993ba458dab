// The rows that a debug run has shown or passed by, the newest ones only.
//
// Filled by DebugSession; copied to the user interface, which shares the rows with it.
#pragma once

#include <deque>
#include <memory>

#include "ui/debugger/debug_rules.h"

namespace kelvarin {

struct DebuggedRow {
  ObservedRow row;
  StopReason reason = StopReason::none;
  QString note;  // why the condition could not be evaluated
};

class RowHistory {
 public:
  static constexpr std::size_t kMaxRows = 1000;
  // Rows with long texts or many elements are fewer.
  static constexpr std::size_t kMaxBytes = 64u << 20;

  void add(std::shared_ptr<const DebuggedRow> row);
  void clear();

  std::size_t size() const { return m_rows.size(); }
  bool isEmpty() const { return m_rows.empty(); }
  // The newest is the last one.
  const std::shared_ptr<const DebuggedRow>& at(std::size_t index) const { return m_rows[index]; }
  const std::shared_ptr<const DebuggedRow>& newest() const { return m_rows.back(); }

 private:
  std::deque<std::shared_ptr<const DebuggedRow>> m_rows;
  std::size_t m_bytes = 0;
};

}  // namespace kelvarin
