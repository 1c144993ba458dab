// A host that runs one action over typed rows, as an engine runs the branch of a debugged action.
//
//   DebuggedBranch branch(makeAction<FilterRows>("<FilterRows expression='a &gt; 1'/>"), "a:F");
//   branch.rows = [](FakeInputPin& pin) { pin.push({2}, 1000); };
//   DebugSession session(branch.action());
#pragma once

#include <functional>
#include <memory>

#include "actions/frame/expression_action.h"
#include "host/testing/fake_input_pin.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {

using MadeAction = std::unique_ptr<ExpressionAction>;

template <typename Action>
std::function<MadeAction(GlobalParameters*)> makeAction(const QByteArray& xml) {
  return [xml](GlobalParameters* parameters) {
    return std::make_unique<Action>(parseXml(xml).value(), parameters);
  };
}

class DebuggedBranch : public RecordingHost {
 public:
  DebuggedBranch(const std::function<MadeAction(GlobalParameters*)>& make, std::string columns);

  ExpressionAction& action() { return *m_action; }
  void deleteAction() { m_action.reset(); }
  GlobalParameters& parameters() { return m_parameters; }

  // Types the rows of pin 0, and of pin 1 where it has columns; at the start of each run.
  std::function<void(FakeInputPin&)> rows = [](FakeInputPin&) {};
  std::string columnsOfTable;
  std::function<void(FakeInputPin&)> table = [](FakeInputPin&) {};
  // On the engine's thread, before each row.
  std::function<void(const RunRecord&)> beforeRow;
  bool canRun = true;
  GlobalUserMode mode = GlobalUserMode::expert;

  bool runBranch(EngineRunner& runner, ActionItem& action, int pin) override;
  GlobalUserMode userMode() override { return mode; }

 private:
  void run(ActionItem& action, RunRecord& record);

  GlobalParameters m_parameters;
  std::string m_columns;
  MadeAction m_action;
};

}  // namespace kelvarin::testing
