#include "host/testing/row_harness.h"

#include <deque>
#include <stdexcept>

namespace kelvarin::testing {

namespace {

XMLNode parsed(const std::string& xml) {
  const auto node = parseXml(QByteArray::fromStdString(xml));
  if (!node) {
    throw std::invalid_argument("the action's XML is broken: " +
                                node.error().message.toStdString());
  }
  return *node;
}

}  // namespace

// Copies the rows of an output pin.
class RowHarness::Collector : public RowReceiver {
 public:
  std::deque<Values> rows;
  long long rowsInBatches = 0;

  void receive(const OneRow& row) override {
    Values& values = rows.emplace_back();
    for (int i = 0; i < row.sz(); ++i) {
      values.push_back(valueFromBytes(row.getAllColForRead()[i], row.getMetaType(i)));
    }
  }

  void receive(const RowBatchPointer& batch) override {
    rowsInBatches += static_cast<long long>(batch->rowCount());
    forEachRow(*batch, 0, batch->rowCount(), [&](std::size_t, std::size_t storedRow) {
      Values& values = rows.emplace_back();
      for (const BatchColumn& column : batch->columns()) {
        values.push_back(valueFromBytes(column.value(storedRow), column.type()));
      }
    });
  }
};

RowHarness::RowHarness(const Factory& factory, const std::string& xml, const std::string& columns)
    : m_action(factory(parsed(xml), &m_parameters)) {
  attach();
  if (!columns.empty()) {
    columnsOfPin(0, columns);
  }
}

RowHarness::RowHarness(ActionItem& prototype, const std::string& xml, const std::string& columns)
    : RowHarness(
          [&prototype](XMLNode node, GlobalParameters* parameters) {
            return prototype.createFromXML(node, parameters);
          },
          xml, columns) {}

RowHarness::~RowHarness() {
  close();
}

void RowHarness::attach() {
  m_ports.inputs.resize(static_cast<std::size_t>(m_action->inputPinCount()));
  for (int pin = 0; pin < m_action->outputPinCount(); ++pin) {
    m_ports.outputs.push_back(std::make_unique<OutputPin>());
    m_collectors.push_back(std::make_unique<Collector>());
    m_ports.outputs.back()->receiver = m_collectors.back().get();
  }
  m_action->attach(&m_run, &m_ports);
}

FakeInputPin& RowHarness::columnsOfPin(int pin, const std::string& columns) {
  return columnsOfPin(pin, columnsFromText(columns));
}

FakeInputPin& RowHarness::columnsOfPin(int pin, const PinOutMetaData& columns) {
  m_ports.inputs.at(static_cast<std::size_t>(pin)) = std::make_unique<FakeInputPin>(columns);
  return input(pin);
}

FakeInputPin& RowHarness::input(int pin) {
  InputPin* linked = m_ports.inputs.at(static_cast<std::size_t>(pin)).get();
  if (linked == nullptr) {
    throw std::invalid_argument("the pin has no columns yet: call columnsOfPin() first");
  }
  return static_cast<FakeInputPin&>(*linked);
}

char RowHarness::init() {
  if (m_stage == Stage::created) {
    const HostSession::Scope scope(&m_host.session());
    const CurrentAction current(m_action.get());
    m_initAnswer = m_action->init();
    if (m_initAnswer == 0) {
      m_action->setComputeRoutine();
      m_stage = Stage::open;
    } else {
      m_stage = Stage::refused;
      m_run.fail();
    }
  }
  return m_initAnswer;
}

bool RowHarness::step() {
  init();
  if (m_stage != Stage::open || !m_run.isRunning()) {
    close();
    return false;
  }
  const HostSession::Scope scope(&m_host.session());
  const CurrentAction current(m_action.get());
  if (m_isRoutineCalled && (stepOverUnit() || stepOverBatch())) {
    return true;
  }
  m_isRoutineCalled = true;
  if (m_action->compute()) {
    close();
    return false;
  }
  return true;
}

bool RowHarness::stepOverUnit() {
  auto* source = dynamic_cast<BatchSource*>(m_action.get());
  if (source == nullptr) {
    return false;
  }
  while (m_run.isRunning() && source->canReadUnits()) {
    const std::unique_ptr<BatchUnit> unit = source->readUnit();
    if (unit != nullptr) {
      unit->parse();
      publish(0, source->accept(*unit));
      return true;
    }
    if (!source->readOn()) {
      return false;
    }
  }
  return false;
}

// Every other result is counted in two parts, as by a consumer that takes a few rows first.
bool RowHarness::stepOverBatch() {
  auto* transform = m_usesStage ? dynamic_cast<BatchTransform*>(m_action.get()) : nullptr;
  const BatchStage* stage = transform == nullptr ? nullptr : transform->stage();
  const RowBatchPointer batch = stage == nullptr ? nullptr : input(0).restOfBatch();
  if (batch == nullptr) {
    return false;
  }
  const long long firstRow = stage->needsRowNumbers() ? input(0).rowsPulled() : -1;
  const StageResult result = stage->process(*batch, firstRow);
  input(0).passRows(result.rowsDone);
  transform->passRows(result.rowsDone);
  m_isCountedInParts = !m_isCountedInParts;
  const std::size_t firstRows = m_isCountedInParts ? result.rowsDone / 3 : 0;
  transform->countRows(result, 0, firstRows);
  transform->countRows(result, firstRows, result.rowsDone);
  for (int pin = 0; pin < m_action->outputPinCount(); ++pin) {
    publish(pin, result.outputs[static_cast<std::size_t>(pin)]);
  }
  return result.rowsDone > 0;
}

void RowHarness::publish(int pin, const RowBatchPointer& batch) {
  if (batch == nullptr) {
    return;
  }
  OutputPin& output = *m_ports.outputs[static_cast<std::size_t>(pin)];
  output.rowsPublished += static_cast<long long>(batch->rowCount());
  if (output.receiver != nullptr) {
    output.receiver->receive(batch);
  }
}

void RowHarness::pullInBatches(BatchShape shape) {
  m_usesStage = true;
  input(0).setBatchShape(shape);
}

void RowHarness::close() {
  if (m_stage != Stage::open && m_stage != Stage::refused) {
    return;
  }
  m_stage = Stage::closed;
  auto expected = GlobalParameters::RunningState::running;
  m_run.status.compare_exchange_strong(expected, GlobalParameters::RunningState::endedNormally);
  const HostSession::Scope scope(&m_host.session());
  const CurrentAction current(m_action.get());
  m_action->close();
}

std::optional<Values> RowHarness::pull(int pin) {
  std::deque<Values>& rows = m_collectors.at(static_cast<std::size_t>(pin))->rows;
  while (rows.empty() && step()) {
  }
  if (rows.empty()) {
    return std::nullopt;
  }
  Values row = std::move(rows.front());
  rows.pop_front();
  return row;
}

Rows RowHarness::rows(int pin) {
  Rows all;
  while (auto row = pull(pin)) {
    all.push_back(std::move(*row));
  }
  return all;
}

long long RowHarness::runWithoutReading(long long limit) {
  for (auto& output : m_ports.outputs) {
    output->receiver = nullptr;
  }
  for (long long calls = 0; (limit < 0 || calls < limit) && step(); ++calls) {
  }
  long long published = 0;
  for (const auto& output : m_ports.outputs) {
    published += output->rowsPublished;
  }
  return published;
}

void RowHarness::finish() {
  while (step()) {
  }
}

std::string RowHarness::columns(int pin) const {
  return output(pin).isAnnounced ? textFromColumns(output(pin).metaData) : std::string();
}

long long RowHarness::rowsInBatches(int pin) const {
  return m_collectors[static_cast<std::size_t>(pin)]->rowsInBatches;
}

std::string RowHarness::saved() {
  std::wostringstream out;
  m_action->saveXML(out, m_action->name());
  return QString::fromStdWString(out.str()).toStdString();
}

}  // namespace kelvarin::testing
