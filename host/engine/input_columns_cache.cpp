#include "host/engine/input_columns_cache.h"

#include <mutex>
#include <optional>

namespace kelvarin {

// Written by the request's thread, read by the editor's.
class InputColumnsCache::Answer final : public RowsReceiver {
 public:
  std::optional<PinColumns> columns() const {
    const std::lock_guard lock(m_mutex);
    return m_columns;
  }
  void columnsArrived(const PinColumns& columns) override {
    const std::lock_guard lock(m_mutex);
    m_columns = columns;
  }
  void rowsArrived(std::shared_ptr<const PinRows>) override {}
  void rowsEnded(End, const QString&) override {}

 private:
  mutable std::mutex m_mutex;  // guards m_columns
  std::optional<PinColumns> m_columns;
};

PinColumns InputColumnsCache::columns(const Graph& graph, const ActionItem& action, int pin,
                                      quint64 version) {
  Entry& entry = m_entries[{action.name(), pin}];
  if (entry.answer == nullptr || entry.version != version) {
    if (entry.answer != nullptr) {
      entry.previous = entry.answer->columns().value_or(entry.previous);
    }
    entry.version = version;
    entry.answer = std::make_shared<Answer>();
    entry.request = m_requests.start(graph, action, pin, false, 0, entry.answer, version);
  }
  if (entry.request == nullptr) {
    return {};
  }
  PinColumns columns = entry.previous;
  columns.isBeingComputed = true;
  return entry.answer->columns().value_or(columns);
}

}  // namespace kelvarin
