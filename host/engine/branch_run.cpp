#include "host/engine/branch_run.h"

#include <utility>

#include "host/contract/host_services.h"
#include "host/contract/host_session.h"
#include "host/engine/branch_copy.h"
#include "host/engine/graph_execution.h"
#include "host/engine/graph_stack.h"

namespace kelvarin {

namespace {

void compute(const Graph& branch, RunRecord& record, const ExecutionOptions& options) {
  GraphExecution execution(branch, std::vector<RunRecord*>(branch.actions.size(), &record), record,
                           options);
  if (execution.open()) {
    execution.drive();
  }
  record.endNormally();
  execution.close();
}

// While it lives, the edited action stands in a copy of its branch, in place of its own copy.
class BorrowedAction {
 public:
  BorrowedAction(std::unique_ptr<ActionItem>& position, ActionItem& edited)
      : m_position(position), m_copy(std::exchange(position, nullptr)) {
    m_position.reset(&edited);
  }
  ~BorrowedAction() {
    (void)m_position.release();
    m_position = std::move(m_copy);
  }
  BorrowedAction(const BorrowedAction&) = delete;
  BorrowedAction& operator=(const BorrowedAction&) = delete;

 private:
  std::unique_ptr<ActionItem>& m_position;
  std::unique_ptr<ActionItem> m_copy;
};

// The last action of the branch, -1 when there is none.
int endOfBranch(const Graph& graph, const ActionItem& action, int inputPin) {
  if (inputPin < 0) {
    return graph.indexOf(action);
  }
  const GraphLink* link = graph.linkTo(action, inputPin);
  return link == nullptr ? -1 : link->from;
}

// `edited` is null where the copies alone are run.
void runCopy(const BranchDocument& document, const ActionCatalogue& catalogue, ActionItem* edited,
             RunRecord& record, const ExecutionOptions& options) {
  HostSession session(hostServices());
  const HostSession::Scope scope(&session);
  auto branch = document.makeCopy(catalogue);
  if (!branch) {
    const CurrentAction onBehalf(edited);
    MainUI::addLog(LogLevel::error, branch.error());
    record.fail();
    return;
  }
  const auto run = [&] {
    if (!workOnGraphStack(*branch, [&] { compute(*branch, record, options); })) {
      record.fail();
    }
  };
  if (edited == nullptr) {
    run();
    return;
  }
  const auto index = static_cast<std::size_t>(branch->indexOf(document.lastAction()));
  const BorrowedAction borrowed(branch->actions[index].item, *edited);
  branch->actions[index].isDisabled = false;  // who debugs it wants to see it at work
  run();
}

}  // namespace

bool runBranch(const Graph& graph, const ActionCatalogue& catalogue, EngineRunner& runner,
               ActionItem& action, int inputPin, const ExecutionOptions& options) {
  const int end = endOfBranch(graph, action, inputPin);
  if (end < 0) {
    return false;
  }
  ActionItem* edited = inputPin < 0 ? &action : nullptr;
  runner.start([document = BranchDocument(graph, end), &catalogue, edited, options](
                   RunRecord& record) { runCopy(document, catalogue, edited, record, options); });
  return true;
}

}  // namespace kelvarin
