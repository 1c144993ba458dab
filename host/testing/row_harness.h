// Runs one action without a graph: a test types the rows of its input pins and reads those of its
// output pins.
//
//   auto h = RowHarness::of<FilterRows>("<FilterRows expression='a &gt; 1'/>", "a:F");
//   h.push({2});
//   EXPECT_EQ(h.rows(0), (Rows{{2}}));
//   EXPECT_EQ(h.log(), Strings{});
//
// The action goes through the engine's calling order: init(), setComputeRoutine(), the row routine,
// close(). It is closed when its row routine has answered true, or at the end of the harness. A
// BatchSource is driven by its units behind the first call of its routine, as an engine does; a
// BatchTransform by the batches of its stage where a test says so.
#pragma once

#include <concepts>
#include <functional>
#include <memory>
#include <optional>

#include "host/testing/fake_input_pin.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {

using Rows = std::vector<Values>;

class RowHarness {
 public:
  using Factory = std::function<ActionItem*(XMLNode, GlobalParameters*)>;

  // `columns`, when given, are those of input pin 0: "name:F other:U"; names with blanks need
  // columnsOfPin(). Throws std::invalid_argument when the XML is broken.
  RowHarness(const Factory& factory, const std::string& xml, const std::string& columns = {});
  // From a prototype, as a host does.
  RowHarness(ActionItem& prototype, const std::string& xml, const std::string& columns = {});
  template <typename Action>
  static RowHarness of(const std::string& xml, const std::string& columns = {}) {
    return RowHarness(
        [](XMLNode node, GlobalParameters* parameters) -> ActionItem* {
          return new Action(node, parameters);
        },
        xml, columns);
  }
  ~RowHarness();

  // Links an input pin; without it the pin is not linked. Before the first row.
  FakeInputPin& columnsOfPin(int pin, const std::string& columns);
  FakeInputPin& columnsOfPin(int pin, const PinOutMetaData& columns);
  FakeInputPin& input(int pin);
  // Rows of pin 0.
  void push(const Values& values) { input(0).push(values); }
  // A template, so that braces alone are one row: h.push({1, "x"}), h.push(Rows{{1, "x"}, {2,
  // "y"}}).
  template <std::same_as<Rows> Several>
  void push(const Several& rows) {
    for (const Values& values : rows) {
      input(0).push(values);
    }
  }
  void pushRepeated(const Values& values, long long times) { input(0).push(values, times); }
  // Rows of pin 0 go through the action's stage in batches, where it has one. Before the first row.
  void pullInBatches(BatchShape shape);
  // Nobody takes the rows of an output pin. Before the first row.
  void leaveUnread(int pin) { m_ports.outputs[static_cast<std::size_t>(pin)]->isRead = false; }

  // The next row of an output pin; nothing at the end. Rows of the other pins wait for their turn.
  std::optional<Values> pull(int pin);
  // All that remain, to the end of the run.
  Rows rows(int pin);
  // Runs to the end (at most `limit` calls of the row routine) with the rows of all output pins
  // counted, not copied.
  long long runWithoutReading(long long limit = -1);
  // Runs to the end and closes; rows that were not pulled stay.
  void finish();
  // Ends the run before its end, as an engine does when another action has failed.
  void close();
  // What init() answered; calls it when it was not called yet.
  char init();

  // "name:F other:U" once the action has announced them, else empty.
  std::string columns(int pin) const;
  // Of the rows so far, those that came as batches.
  long long rowsInBatches(int pin) const;
  const OutputPin& output(int pin) const { return *m_ports.outputs[static_cast<std::size_t>(pin)]; }
  QVector<SortInfos> sortOrder(int pin) const { return output(pin).metaData.sortOrder(); }

  Strings log() const { return m_host.log(); }
  Strings explanations() const { return m_host.explanations(); }
  RecordingHost& host() { return m_host; }
  GlobalParameters& parameters() { return m_parameters; }
  RunRecord& run() { return m_run; }
  GlobalParameters::RunningState state() const { return m_run.status.load(); }
  bool hasFailed() const { return state() == GlobalParameters::RunningState::failed; }
  // A check asks for the columns only. Before the first row.
  void checkOnly() { m_run.mustComputeFull = false; }

  ActionItem& action() { return *m_action; }
  template <typename Action>
  Action& actionAs() {
    return dynamic_cast<Action&>(*m_action);
  }
  // The element that saveXML() writes under the action's name.
  std::string saved();

 private:
  class Collector;
  enum class Stage { created, refused, open, closed };

  RowHarness(const RowHarness&) = delete;
  RowHarness& operator=(const RowHarness&) = delete;
  void attach();
  // A unit, a batch or a call of the row routine; false when there is nothing more to call.
  bool step();
  // False: the row routine has its turn.
  bool stepOverUnit();
  bool stepOverBatch();
  void publish(int pin, const RowBatchPointer& batch);

  RecordingHost m_host;
  GlobalParameters m_parameters;
  RunRecord m_run;
  std::unique_ptr<ActionItem> m_action;
  ActionPorts m_ports;
  std::vector<std::unique_ptr<Collector>> m_collectors;  // one an output pin
  Stage m_stage = Stage::created;
  bool m_isRoutineCalled = false;
  bool m_usesStage = false;
  bool m_isCountedInParts = false;
  char m_initAnswer = 0;
};

}  // namespace kelvarin::testing
