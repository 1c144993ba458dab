#include "ui/debugger/tests/debugged_branch.h"

#include "host/contract/engine_runner.h"

namespace kelvarin::testing {

DebuggedBranch::DebuggedBranch(const std::function<MadeAction(GlobalParameters*)>& make,
                               std::string columns)
    : m_columns(std::move(columns)), m_action(make(&m_parameters)) {}

bool DebuggedBranch::runBranch(EngineRunner& runner, ActionItem& action, int /*pin*/) {
  if (!canRun) {
    return false;
  }
  runner.start([this, &action](RunRecord& record) { run(action, record); });
  return true;
}

void DebuggedBranch::run(ActionItem& action, RunRecord& record) {
  ActionPorts ports;
  ports.inputs.resize(static_cast<std::size_t>(action.inputPinCount()));
  auto data = std::make_unique<FakeInputPin>(columnsFromText(m_columns));
  rows(*data);
  ports.inputs[0] = std::move(data);
  if (!columnsOfTable.empty()) {
    auto variables = std::make_unique<FakeInputPin>(columnsFromText(columnsOfTable));
    table(*variables);
    ports.inputs[1] = std::move(variables);
  }
  for (int pin = 0; pin < action.outputPinCount(); ++pin) {
    ports.outputs.push_back(std::make_unique<OutputPin>());
  }
  action.attach(&record, &ports);
  if (action.init() == 0) {
    action.setComputeRoutine();
    bool isFinished = false;
    while (!isFinished && record.isRunning()) {
      if (beforeRow) {
        beforeRow(record);
        if (!record.isRunning()) {
          break;
        }
      }
      isFinished = action.compute();
    }
    action.close();
  }
  action.attach(nullptr, nullptr);
}

}  // namespace kelvarin::testing
