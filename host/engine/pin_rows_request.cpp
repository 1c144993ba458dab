#include "host/engine/pin_rows_request.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <thread>
#include <utility>

#include "host/contract/host_session.h"
#include "host/engine/branch_copy.h"
#include "host/engine/graph_execution.h"
#include "host/engine/graph_stack.h"
#include "host/engine/input_columns.h"
#include "host/engine/messages.h"
#include "host/engine/recording_services.h"
#include "host/engine/row_tap.h"
#include "host/engine/run_results.h"

namespace kelvarin {

namespace {

using RunningState = GlobalParameters::RunningState;

class Request final : public RowsRequest {
 public:
  explicit Request(std::shared_ptr<RunRecord> record) : m_record(std::move(record)) {}
  ~Request() override { m_record->stop(); }
  void cancel() override { m_record->stop(); }

 private:
  std::shared_ptr<RunRecord> m_record;
};

// An output pin of an action; -1 where there is none.
struct PinPosition {
  int action = -1;
  int pin = 0;
};

PinPosition sourceOfRows(const Graph& graph, const ActionItem& action, int pin, bool isOutput) {
  if (isOutput) {
    return pin >= 0 && pin < action.outputPinCount() ? PinPosition{graph.indexOf(action), pin}
                                                     : PinPosition{};
  }
  const GraphLink* link = graph.linkTo(action, pin);
  return link == nullptr ? PinPosition{} : PinPosition{link->from, link->fromPin};
}

}  // namespace

// One request at work. What it needs is its own, but for the catalogue.
class PinRowsRequests::Task {
 public:
  Task(BranchDocument document, int pin, long long limit, std::shared_ptr<RowsReceiver> receiver,
       quint64 version, const ActionCatalogue& catalogue, const ExecutionOptions& options)
      : m_document(std::move(document)),
        m_pin(pin),
        m_limit(limit),
        m_version(version),
        m_receiver(std::move(receiver)),
        m_catalogue(catalogue),
        m_options(options),
        m_thread([this] { work(); }) {}
  ~Task() {
    m_record->stop();
    m_thread.join();
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;

  std::unique_ptr<RowsRequest> newHandle() const { return std::make_unique<Request>(m_record); }
  void stop() { m_record->stop(); }
  bool hasEnded() const { return m_hasEnded; }

 private:
  void work() {
    RecordingServices services(nullptr);
    HostSession session(&services);
    const HostSession::Scope scope(&session);
    QString failure;
    try {
      failure = compute();
    } catch (const std::bad_alloc&) {
      m_record->fail();
      failure = engine_messages::outOfMemory(m_document.lastAction());
    } catch (const std::exception& exception) {
      m_record->fail();
      failure = engine_messages::exceptionOutOfAction(m_document.lastAction(),
                                                      QString::fromLocal8Bit(exception.what()));
    }
    end(failure, firstErrorOf(services.takeLog()));
    m_receiver.reset();
    m_hasEnded = true;
  }

  // What the log does not say of a failure.
  QString compute() {
    const auto graph = m_document.makeCopy(m_catalogue);
    if (!graph) {
      m_record->fail();
      return graph.error();
    }
    const int action = graph.value().indexOf(m_document.lastAction());
    if (m_limit <= 0) {
      computeColumns(graph.value(), action);
    } else if (!workOnGraphStack(graph.value(), [&] { computeRows(graph.value(), action); })) {
      m_record->fail();
    }
    return {};
  }

  void computeColumns(const Graph& graph, int action) {
    PinColumns columns = announcedColumns(graph, action, m_pin, *m_record, m_options);
    if (!columns.isKnown) {
      m_record->fail();
      return;
    }
    columns.version = m_version;
    m_hasColumns = true;
    m_receiver->columnsArrived(columns);
    m_isLimited = true;
    m_record->endNormally();
  }

  void computeRows(const Graph& graph, int action) {
    RowTap* openTap = nullptr;
    ExecutionOptions options = m_options;
    options.progress = [&openTap](const RunProgress&) {
      if (openTap != nullptr) {
        openTap->flushWhenDue();
      }
    };
    GraphExecution execution(graph, std::vector<RunRecord*>(graph.actions.size(), m_record.get()),
                             *m_record, options);
    RunningAction& last = *execution.action(action);
    OutputPin& pin = last.output(m_pin);
    RowTap tap(pin, *m_receiver, m_limit, m_version);
    openTap = &tap;
    pin.receiver = &tap;
    pin.isRead = true;
    if (execution.open()) {
      while (!tap.isFull() && last.advance()) {
        tap.flushWhenDue();
      }
    }
    tap.finish();
    m_hasColumns = tap.hasColumns();
    m_isLimited = tap.isFull();
    m_record->endNormally();
    execution.close();
  }

  void end(const QString& failureOfCopy, const LogLine& firstError) {
    const QString failure = failureOfCopy.isEmpty() ? firstError.text : failureOfCopy;
    const bool hasFailed = m_record->status == RunningState::failed && !m_isLimited;
    if (!m_hasColumns && hasFailed) {
      PinColumns unknown;
      unknown.version = m_version;
      unknown.whyUnknown = failure;
      m_receiver->columnsArrived(unknown);
    }
    using End = RowsReceiver::End;
    const bool isCancelled = m_record->status == RunningState::stoppedByUser;
    const End end = isCancelled   ? End::cancelled
                    : hasFailed   ? End::failed
                    : m_isLimited ? End::limit
                                  : End::complete;
    if (end == End::failed && !firstError.action.isEmpty()) {
      m_receiver->actionFailed(firstError.action);
    }
    m_receiver->rowsEnded(end, end == End::failed ? failure : QString());
  }

  const std::shared_ptr<RunRecord> m_record = std::make_shared<RunRecord>();
  const BranchDocument m_document;
  const int m_pin;
  const long long m_limit;
  const quint64 m_version;
  std::shared_ptr<RowsReceiver> m_receiver;
  const ActionCatalogue& m_catalogue;
  const ExecutionOptions m_options;
  bool m_hasColumns = false;
  bool m_isLimited = false;
  std::atomic<bool> m_hasEnded{false};
  std::thread m_thread;  // uses all of the above
};

PinRowsRequests::PinRowsRequests(const ActionCatalogue& catalogue, ExecutionOptions options)
    : m_catalogue(catalogue), m_options(std::move(options)) {}

PinRowsRequests::~PinRowsRequests() {
  for (const auto& task : m_tasks) {
    task->stop();
  }
}

std::unique_ptr<RowsRequest> PinRowsRequests::start(const Graph& graph, const ActionItem& action,
                                                    int pin, bool isOutput, long long limit,
                                                    std::shared_ptr<RowsReceiver> receiver,
                                                    quint64 version) {
  const PinPosition source = sourceOfRows(graph, action, pin, isOutput);
  if (source.action < 0 || receiver == nullptr) {
    return nullptr;
  }
  forgetEndedTasks();
  m_tasks.push_back(std::make_unique<Task>(BranchDocument(graph, source.action), source.pin, limit,
                                           std::move(receiver), version, m_catalogue, m_options));
  return m_tasks.back()->newHandle();
}

// Their threads are at their ends, so joining them takes no time.
void PinRowsRequests::forgetEndedTasks() {
  std::erase_if(m_tasks, [](const auto& task) { return task->hasEnded(); });
}

}  // namespace kelvarin
