// The columns of input pins as editors ask for them: answered at once, from what is known by then,
// and computed beside.
//
// Used by: the HostServices::columnsOfInputPin() of programs with editors.
// Threads: the thread that edits the graph.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "host/engine/pin_rows_request.h"

namespace kelvarin {

class InputColumnsCache {
 public:
  // `requests` outlives this object.
  explicit InputColumnsCache(PinRowsRequests& requests) : m_requests(requests) {}

  // `version` is the graph's; with another one than before the columns are computed anew.
  PinColumns columns(const Graph& graph, const ActionItem& action, int pin, quint64 version);
  void clear() { m_entries.clear(); }

 private:
  class Answer;
  struct Entry {
    quint64 version = 0;
    PinColumns previous;  // of an older version
    std::shared_ptr<Answer> answer;
    std::unique_ptr<RowsRequest> request;  // null: nothing is linked to the pin
  };

  PinRowsRequests& m_requests;
  std::map<std::pair<QString, int>, Entry> m_entries;  // by action and pin
};

}  // namespace kelvarin
