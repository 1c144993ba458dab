// A stream of the rows that reach the sink of a graph, computed while it is pulled.
//
// Used by: scans, applied expressions.
// Threads: those of BatchSupply.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <stop_token>

#include "host/engine/pulled_run.h"
#include "library/arrow_streams/output_stream.h"
#include "library/runs/run_services.h"
#include "library/runs/stream_sink.h"

namespace kelvarin {

class PulledStream final : public BatchSupply {
 public:
  // The last action of the graph is its sink, which is replaced. With `whole` columns, all rows
  // come at the end.
  static Outcome<std::unique_ptr<PulledStream>> open(Graph graph, const WorkSettings& settings,
                                                     const BatchForm& form, long long firstRow = 0,
                                                     std::shared_ptr<WholeColumns> whole = nullptr);

  // Of the rows that come out of the first action; opens what that reads.
  Outcome<TableColumns> columnsOfSource();

  Outcome<TableColumns> columns() override { return columnsOfSource(); }
  // Those that came to the sink, when next() has been called.
  const TableColumns& columnsOfSink() const { return m_waiting->columns; }
  PulledRun& run() { return m_run; }
  Outcome<OwnedArray> next() override;

 private:
  // What the sink has given, and nobody has taken.
  struct Waiting final : BatchReceiver {
    void begin(const TableColumns& announced) override { columns = announced; }
    bool take(std::vector<OwnedArray> taken) override;
    TableColumns columns;
    std::deque<OwnedArray> arrays;
  };

  PulledStream(Graph graph, const WorkSettings& settings, std::shared_ptr<Waiting> waiting,
               long long firstRow);
  ErrorDetails end();

  std::shared_ptr<Waiting> m_waiting;
  RunServices m_services;
  PulledRun m_run;
  using StopCallback = std::stop_callback<std::function<void()>>;
  std::optional<StopCallback> m_stopCallback;  // uses the run
};

}  // namespace kelvarin
