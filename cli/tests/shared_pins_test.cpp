// Where many readers share pins, every sink writes what it writes when it is alone in its graph
// with the actions that it needs, to the byte.
//
// Random graphs of the plug-in's actions: readers of readers, both pins of filters, tables of
// variables that come from the same source as the rows, filters that end early, every kind of
// source and of sink, queues that go to disk.
#include <map>
#include <set>

#include "cli/tests/drawn_graphs.h"

namespace kelvarin {
namespace {

struct Action {
  QByteArray name;
  QByteArray xml;
};

struct Link {
  QByteArray from;
  QByteArray to;
  int fromPin = 0;
  int toPin = 0;
};

// Two tables of variables: one for calculators over the drawn tables, and one for itself.
constexpr char kNames[] =
    "<InlineTable name='names'><Column name='alias' meta='U'/><Column name='column' meta='U'/>"
    "<Row><V>v0</V><V>a</V></Row><Row><V>v1</V><V>b</V></Row><Row><V>v2</V><V>id</V></Row>"
    "</InlineTable>";
constexpr char kOwn[] =
    "<InlineTable name='own'><Column name='alias' meta='U'/><Column name='column' meta='U'/>"
    "<Row><V>w0</V><V>alias</V></Row><Row><V>w1</V><V>column</V></Row><Row><V>w2</V><V>alias</V>"
    "</Row><Row><V>w3</V><V>column</V></Row></InlineTable>";

class SharedGraph {
 public:
  SharedGraph(Dice& dice, const QByteArray& source, const Drawn& drawn)
      : m_dice(dice), m_drawn(drawn) {
    m_actions.push_back({"source", source});
    std::vector<Output> outputs{{"source", 0}};
    for (int i = m_dice.below(9) + 2; i > 0; --i) {
      addTransform(outputs);
    }
    if (m_dice.oneIn(4)) {
      addJoin();
    }
    for (int i = m_dice.below(5) + 3; i > 0; --i) {
      addSink(outputs[below(outputs)]);
    }
  }

  const std::vector<QByteArray>& sinks() const { return m_sinks; }
  QByteArray actionsXml(const std::set<QByteArray>& wanted) const {
    QByteArray xml;
    for (const Action& action : m_actions) {
      xml += wanted.contains(action.name) ? action.xml + "\n" : QByteArray();
    }
    return xml;
  }
  QByteArray linksXml(const std::set<QByteArray>& wanted) const {
    QByteArray xml;
    for (const Link& one : m_links) {
      if (wanted.contains(one.from) && wanted.contains(one.to)) {
        xml += link(one.from, one.to, one.fromPin, one.toPin) + "\n";
      }
    }
    return xml;
  }
  std::set<QByteArray> all() const {
    std::set<QByteArray> names;
    for (const Action& action : m_actions) {
      names.insert(action.name);
    }
    return names;
  }
  // The action and what it needs; links go from earlier actions to later ones.
  std::set<QByteArray> neededBy(const QByteArray& name) const {
    std::set<QByteArray> names{name};
    for (std::size_t before = 0; before != names.size();) {
      before = names.size();
      for (const Link& one : m_links) {
        if (names.contains(one.to)) {
          names.insert(one.from);
        }
      }
    }
    return names;
  }

 private:
  struct Output {
    QByteArray action;
    int pin = 0;
  };

  template <typename Items>
  std::size_t below(const Items& items) {
    return static_cast<std::size_t>(m_dice.below(static_cast<int>(items.size())));
  }

  // New actions read any pin of the ones before, so that many pins have several readers.
  void addTransform(std::vector<Output>& outputs) {
    const Output from = outputs[m_dice.oneIn(3) ? outputs.size() - 1 : below(outputs)];
    const QByteArray name = "n" + QByteArray::number(m_actions.size());
    const bool isFilter = m_dice.oneIn(2);
    m_actions.push_back(
        {name, isFilter ? filterXml(m_dice, m_drawn, name) : calculatorXml(m_dice, m_drawn, name)});
    m_links.push_back({from.action, name, from.pin, 0});
    outputs.push_back({name, 0});
    if (isFilter) {
      outputs.push_back({name, 1});
      if (m_dice.oneIn(6)) {
        m_links.push_back({from.action, name, from.pin, 1});  // which it does not read
      }
    } else if (m_dice.oneIn(4)) {
      addSource("names", kNames);
      m_links.push_back({"names", name, 0, 1});
    }
  }

  // The rows of a calculator and its table of variables come from one source, the table by a filter
  // that ends early.
  void addJoin() {
    addSource("own", kOwn);
    m_actions.push_back(
        {"few", "<FilterRows name='few'><Expression>_n &lt; 2</Expression></FilterRows>"});
    m_actions.push_back(
        {"join",
         "<Calculator name='join'><OutputVars><OutputVar name='r'>_n*2</OutputVar></OutputVars>"
         "</Calculator>"});
    m_links.push_back({"own", "few"});
    m_links.push_back({"own", "join"});
    m_links.push_back({"few", "join", 0, 1});
    addSink({"join", 0});
    addSink({"own", 0});
    addSink({"few", 0});
  }

  void addSource(const QByteArray& name, const char* xml) {
    if (!all().contains(name)) {
      m_actions.insert(m_actions.begin(), {name, xml});
    }
  }

  void addSink(const Output& from) {
    const QByteArray name = "x" + QByteArray::number(m_sinks.size());
    m_sinks.push_back(name);
    m_actions.push_back({name, sinkXml(m_dice, name)});
    m_links.push_back({from.action, name, from.pin, 0});
  }

  Dice& m_dice;
  Drawn m_drawn;
  std::vector<Action> m_actions;
  std::vector<Link> m_links;
  std::vector<QByteArray> m_sinks;
};

class SharedPins : public DrawnGraphs {
 protected:
  // What the run left of each sink: its files, and the rows that it got; empty when it failed.
  std::map<QByteArray, QByteArray> outcome(const SharedGraph& graph,
                                           const std::set<QByteArray>& actions,
                                           const ExecutionOptions& options, int threads) {
    removeFiles({"x*.*"});
    const RunResult result =
        run(document(graph.actionsXml(actions), graph.linksXml(actions)), options, threads);
    std::map<QByteArray, QByteArray> left;
    for (const ActionResult& action : result.actions) {
      if (result.isOk() && action.name.startsWith('x')) {
        left[action.name.toUtf8()] =
            "rows " + QByteArray::number(action.rowsIn[0]) + "\n" + contentOf({action.name + ".*"});
      }
    }
    return left;
  }
};

// More of them with KELVARIN_SHARED_PIN_GRAPHS.
TEST_F(SharedPins, EverySinkGetsWhatItGetsAlone) {
  constexpr int kRowCounts[] = {0, 1, 7, 40, 300, 1026, 2500, 6000};
  constexpr long long kMemory[] = {64LL << 20, 0, 100'000};
  constexpr int kRowsInBatch[] = {0, 0, 1, 300};
  const int graphs = graphCount("KELVARIN_SHARED_PIN_GRAPHS", 150);
  int complete = 0;
  for (int seed = 0; seed < graphs && !HasFailure(); ++seed) {
    Dice dice(static_cast<unsigned>(seed));
    if (seed % 8 == 0) {
      writeTables(dice, kRowCounts[(seed / 8) % 8]);
    }
    const bool hasTexts = !dice.oneIn(3);
    const SharedGraph graph(dice, hasTexts ? dice.oneOf(kSources) : QByteArray(kNumbersAlone),
                            {.hasTexts = hasTexts, .canFail = false});
    ExecutionOptions options;
    options.queueMemoryBytes = kMemory[dice.below(3)];
    options.rowsInBatch = kRowsInBatch[dice.below(4)];
    const auto together = outcome(graph, graph.all(), options, 1 + dice.below(4));
    if (together.empty()) {
      continue;
    }
    ++complete;
    for (const QByteArray& sink : graph.sinks()) {
      const auto alone = outcome(graph, graph.neededBy(sink), {}, 1);
      EXPECT_TRUE(alone == std::map({std::pair(sink, together.at(sink))}))
          << "seed " << seed << ", sink " << sink.data() << "\n"
          << document(graph.actionsXml(graph.all()), graph.linksXml(graph.all())).data();
    }
  }
  EXPECT_GT(complete, graphs * 3 / 4);  // a row fails, or a table without rows was not written
}

}  // namespace
}  // namespace kelvarin
