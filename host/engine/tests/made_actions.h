// Small actions that the engine's tests draw graphs of, and a graph made of a text.
#pragma once

#include <cstring>
#include <functional>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/contract/host_services.h"
#include "host/engine/graph_reader.h"
#include "host/engine/run_graph.h"
#include "host/testing/recording_host.h"

namespace kelvarin::testing {

// What the actions of a test saw, by the name of the action.
struct Witness {
  std::mutex mutex;  // guards calls and steps, for graphs of which copies run at the same time
  std::map<std::string, std::vector<double>> values;      // column 0 of the rows of sinks
  std::map<std::string, std::vector<std::string>> calls;  // "init", "close running" ...
  std::map<std::string, long long> steps;  // calls of row routines of sources that were closed
  std::map<std::string, const unsigned char*> lastValue;  // where column 0 of the last row lay
  std::function<void(long long)> onSourceRow;
};
inline Witness* witness = nullptr;

class TestAction : public ActionItem {
 public:
  TestAction(XMLNode node, GlobalParameters* parameters, int pinsIn, int pinsOut)
      : ActionItem(node, parameters) {
    m_inputPinCount = pinsIn;
    m_outputPinCount = pinsOut;
  }
  void saveXML(std::wostringstream& out, QString name) override {
    static const QStringList kWrittenForAll{"name", "version", "x", "y", "disabled"};
    ToXMLStringTool escape;
    saveAI(out, name, 1.0);
    for (int i = 0; i < node().nAttribute(); ++i) {
      const QString attribute = node().attributeName(i);
      if (!kWrittenForAll.contains(attribute)) {
        out << L' ' << attribute.toStdWString() << L"='";
        out << escape.toXML(node().attributeValue(i)) << L'\'';
      }
    }
    out << L"/>\n";
  }
  char init() override {
    ActionItem::init();
    note("init");
    return has("refuse") ? 1 : 0;
  }
  char close() override {
    const auto state = run()->status.load();
    note(state == GlobalParameters::RunningState::endedNormally ? "close" : "close after failure");
    return has("failClose") ? 1 : 0;
  }

 protected:
  std::string key() const { return name().toStdString(); }
  void note(const std::string& call) {
    const std::lock_guard lock(witness->mutex);
    witness->calls[key()].push_back(call);
  }
  bool has(const char* attribute) const { return number(attribute, 0) != 0; }
  long long number(const char* attribute, int otherwise) const {
    const std::u16string wide(attribute, attribute + std::strlen(attribute));
    return xmltoi(node().getAttribute(utf16(wide.c_str())), otherwise);
  }
  void copyColumns(int pin, const OneRow& from) {
    OneRow* out = getOutputRowForOutputPin(pin);
    out->setNumberOfColumns(from.sz());
    out->setColName(from.getColNamesDeep());
    out->setMetaData(from.getMetaDataDeep());
    announceColumnsOfOutputPin(pin);
  }
};

// A type name, a constructor and createFromXML for an action with a row routine `bool step()`.
#define KELVARIN_TEST_ACTION(Type, pinsIn, pinsOut)                                         \
  Type(XMLNode node, GlobalParameters* parameters)                                          \
      : TestAction(node, parameters, pinsIn, pinsOut) {}                                    \
  const char* typeName() const override {                                                   \
    return #Type;                                                                           \
  }                                                                                         \
  void setComputeRoutine() override {                                                       \
    computeRoutine = [](ActionItem* action) { return static_cast<Type*>(action)->step(); }; \
  }                                                                                         \
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {          \
    return new Type(node, parameters);                                                      \
  }

// Rows 0, 1, 2 ... in a number column `n` and, with texts='1', "row N" in `t`.
class Count final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Count, 0, 1)

  char init() override {
    m_next = -1;
    m_steps = 0;
    return TestAction::init();
  }
  char close() override {
    {
      const std::lock_guard lock(witness->mutex);
      witness->steps[key()] += m_steps;
    }
    return TestAction::close();
  }

  bool step() {
    ++m_steps;
    OneRow* row = getOutputRowForOutputPin(0);
    if (m_next < 0) {
      m_rows = number("rows", 10);
      m_throwAt = number("throwAt", -1);
      m_hasTexts = has("texts");
      row->setNumberOfColumns(m_hasTexts ? 2 : 1);
      row->setColName(0, QStringLiteral("n"));
      row->setMetaType(0, MetaInfo(MetaTypeColumn::number, 0));
      if (m_hasTexts) {
        row->setColName(1, QStringLiteral("t"));
      }
      announceColumnsOfOutputPin(0);
      m_next = 0;
    }
    if (m_next == m_rows || !mustComputeFull()) {
      return true;
    }
    if (m_next == m_throwAt) {
      throw std::runtime_error("out of luck");
    }
    if (witness->onSourceRow) {
      witness->onSourceRow(m_next);
    }
    m_buffer.reset();
    unsigned char** values = row->getAllColForWrite();
    m_value = static_cast<double>(m_next++);
    values[0] = reinterpret_cast<unsigned char*>(&m_value);
    if (m_hasTexts) {
      values[1] =
          m_next % 3 == 0 ? nullptr : bytesFromUtf8(&m_buffer, "row " + std::to_string(m_next - 1));
    }
    setRowReadyForOutput(0);
    return false;
  }

 private:
  long long m_steps = 0;
  long long m_next = -1;
  long long m_rows = 0;
  long long m_throwAt = -1;
  bool m_hasTexts = false;
  double m_value = 0.0;
  RowBuffer m_buffer{256};
};

// Passes rows on as they are; stops='N' finishes after N rows.
class Pass final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(Pass, 1, 1)

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    if (m_count == 0) {
      copyColumns(0, *row);
      m_stop = number("stops", -1);
    }
    getOutputRowForOutputPin(0)->showValuesOf(row);
    setRowReadyForOutput(0);
    return ++m_count == m_stop;
  }

 private:
  long long m_count = 0;
  long long m_stop = -1;
};

// Every N-th row to pin 0, the others to pin 1; like a filter it never reads its second input pin.
class EveryNth final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(EveryNth, 2, 2)

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    if (m_n == 0) {
      copyColumns(0, *row);
      copyColumns(1, *row);
      m_n = number("n", 2);
    }
    const int pin = m_count++ % m_n == 0 ? 0 : 1;
    getOutputRowForOutputPin(pin)->showValuesOf(row);
    setRowReadyForOutput(pin);
    return false;
  }

 private:
  long long m_n = 0;
  long long m_count = 0;
};

// Holds the first row of pin 0 while it reads the table on pin 1 to its end, as a calculator does;
// then passes the rows of pin 0 on.
class WithTable final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(WithTable, 2, 1)

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (!m_hasTable) {
      readTable(row);
    }
    if (row == nullptr) {
      return true;
    }
    getOutputRowForOutputPin(0)->showValuesOf(row);
    setRowReadyForOutput(0);
    return false;
  }

 private:
  void readTable(const OneRow* held) {
    m_hasTable = true;
    if (held == nullptr) {
      held = announcedColumnsOfInPin(0);
    }
    while (const OneRow* entry = getNextRowFromInPin(1)) {
      witness->values[key()].push_back(entry->colAsDouble(0, nullptr));
    }
    note(held == nullptr ? "no columns" : "columns " + held->colName(0).toStdString());
    if (held != nullptr) {
      copyColumns(0, *held);
    }
  }

  bool m_hasTable = false;
};

// Takes row by row from both pins and holds each row of pin 0 over the calls; its rows are the sums
// of columns 0.
class AddPairs final : public TestAction {
 public:
  KELVARIN_TEST_ACTION(AddPairs, 2, 1)

  bool step() {
    const OneRow* previous = m_held;
    const double before = previous == nullptr ? 0.0 : m_heldValue;
    if (previous != nullptr && previous->colAsDouble(0, nullptr) != before) {
      note("held row has changed");
    }
    m_held = getNextRowFromInPin(0);
    if (m_held == nullptr) {
      return true;
    }
    m_heldValue = m_held->colAsDouble(0, nullptr);
    const OneRow* other = getNextRowFromInPin(1);
    if (previous == nullptr) {
      copyColumns(0, *m_held);
    }
    if (other == nullptr || m_held->colAsDouble(0, nullptr) != m_heldValue) {
      note(other == nullptr ? "pin 1 is short" : "held row has changed");
      return true;
    }
    m_sum = m_heldValue + other->colAsDouble(0, nullptr);
    unsigned char** values = getOutputRowForOutputPin(0)->getAllColForWrite();
    std::fill_n(values, m_held->sz(), nullptr);
    values[0] = reinterpret_cast<unsigned char*>(&m_sum);
    setRowReadyForOutput(0);
    return false;
  }

 private:
  const OneRow* m_held = nullptr;
  double m_heldValue = 0.0;
  double m_sum = 0.0;
};

// A sink; collects column 0 unless quiet='1'. With texts the text must belong to the number.
class Collect final : public TestAction {
 public:
  Collect(XMLNode node, GlobalParameters* parameters) : TestAction(node, parameters, 1, 0) {
    m_endpoint = static_cast<std::int32_t>(Endpoint::writer);
  }
  const char* typeName() const override { return "Collect"; }
  void setComputeRoutine() override {
    m_isQuiet = has("quiet");
    m_values = &witness->values[key()];
    m_lastValue = &witness->lastValue[key()];
    computeRoutine = [](ActionItem* action) { return static_cast<Collect*>(action)->step(); };
  }
  ActionItem* createFromXML(XMLNode node, GlobalParameters* parameters) override {
    return new Collect(node, parameters);
  }

  bool step() {
    const OneRow* row = getNextRowFromInPin(0);
    if (row == nullptr) {
      return true;
    }
    *m_lastValue = row->getAllColForRead()[0];
    if (!m_isQuiet) {
      m_values->push_back(row->colAsDouble(0, nullptr));
      checkText(*row);
    }
    return false;
  }

 private:
  void checkText(const OneRow& row) {
    if (row.sz() < 2) {
      return;
    }
    bool isMissing = false;
    const std::string text(row.colAsUtf8(1, &isMissing));
    const auto number = static_cast<long long>(row.colAsDouble(0, nullptr));
    const bool isRight = number % 3 == 2 ? isMissing : text == "row " + std::to_string(number);
    if (!isRight) {
      note("wrong text");
    }
  }

  bool m_isQuiet = false;
  std::vector<double>* m_values = nullptr;
  const unsigned char** m_lastValue = nullptr;
};

inline ActionCatalogue::Prototypes testPrototypes() {
  ActionCatalogue::Prototypes prototypes;
  const XMLNode none = XMLNode::emptyNode();
  prototypes.push_back(std::make_unique<Count>(none, nullptr));
  prototypes.push_back(std::make_unique<Pass>(none, nullptr));
  prototypes.push_back(std::make_unique<EveryNth>(none, nullptr));
  prototypes.push_back(std::make_unique<WithTable>(none, nullptr));
  prototypes.push_back(std::make_unique<AddPairs>(none, nullptr));
  prototypes.push_back(std::make_unique<Collect>(none, nullptr));
  return prototypes;
}

// With an action of the test's own.
template <typename Action>
ActionCatalogue::Prototypes prototypesWith() {
  ActionCatalogue::Prototypes prototypes = testPrototypes();
  prototypes.push_back(std::make_unique<Action>(XMLNode::emptyNode(), nullptr));
  return prototypes;
}

// A graph of test actions: their elements, then links "a b", "a:1 b:1" separated by commas.
class TestGraph {
 public:
  TestGraph(const std::string& actions, const std::string& links,
            ActionCatalogue::Prototypes prototypes = testPrototypes())
      : m_catalogue(nullptr, std::move(prototypes)) {
    witness = &seen;
    auto parsed = parseGraph(QByteArray::fromStdString(document(actions, links)),
                             QStringLiteral("/tests/graph.kelvarin"), m_catalogue);
    if (!parsed) {
      throw std::invalid_argument(parsed.error().front().text().toStdString());
    }
    graph = std::move(*parsed);
  }
  ~TestGraph() { witness = nullptr; }
  TestGraph(const TestGraph&) = delete;
  TestGraph& operator=(const TestGraph&) = delete;

  const ActionCatalogue& catalogue() const { return m_catalogue; }
  RunResult run() { return runGraph(graph, record, options); }
  const ActionResult& of(const RunResult& result, const char* name) const {
    return result.actions[static_cast<std::size_t>(graph.indexOf(QString::fromLatin1(name)))];
  }

  RecordingHost host;
  Witness seen;
  RunRecord record;
  ExecutionOptions options;
  Graph graph;

 private:
  static std::string endOf(const std::string& end, const std::string& attribute) {
    const std::size_t colon = end.find(':');
    std::string text = " " + attribute + "='" + end.substr(0, colon) + "'";
    return colon == std::string::npos
               ? text
               : text + " " + attribute + "Pin='" + end.substr(colon + 1) + "'";
  }
  static std::string document(const std::string& actions, const std::string& links) {
    std::string text = "<KelvarinGraph><Actions>" + actions + "</Actions><Links>";
    for (const QString& link : QString::fromStdString(links).split(u',', Qt::SkipEmptyParts)) {
      const QStringList ends = link.simplified().split(u' ');
      text += "<Link" + endOf(ends[0].toStdString(), "from") + endOf(ends[1].toStdString(), "to") +
              "/>";
    }
    return text + "</Links></KelvarinGraph>";
  }

  ActionCatalogue m_catalogue;
};

inline std::vector<double> countedTo(long long rows) {
  std::vector<double> values;
  for (long long i = 0; i < rows; ++i) {
    values.push_back(static_cast<double>(i));
  }
  return values;
}

}  // namespace kelvarin::testing
