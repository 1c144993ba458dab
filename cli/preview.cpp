#include "cli/preview.h"

#include <limits>
#include <utility>

#include <QStringList>

#include "cli/messages.h"
#include "host/contract/nearest_names.h"
#include "host/engine/graph_links.h"
#include "host/engine/graph_reader.h"
#include "host/engine/messages.h"

namespace kelvarin {

namespace {

struct Pin {
  QString action;
  int number = 0;
};

// The name of an action may have colons itself.
Pin pinOf(const Graph& graph, const QString& given) {
  bool isNumber = false;
  const int number = given.section(u':', -1).toInt(&isNumber);
  if (graph.indexOf(given) >= 0 || !isNumber || !given.contains(u':')) {
    return {given, 0};
  }
  return {given.section(u':', 0, -2), number};
}

Status<QString> checkPin(const Graph& graph, const Pin& pin) {
  const int index = graph.indexOf(pin.action);
  if (index < 0) {
    QStringList names;
    for (const GraphAction& action : graph.actions) {
      names += action.name;
    }
    return Failure{engine_messages::absentAction(pin.action, nearestNames(pin.action, names))};
  }
  const int pins = graph.actions[static_cast<std::size_t>(index)].item->outputPinCount();
  if (pins == 0) {
    return Failure{program_messages::previewHasNoRows(pin.action)};
  }
  if (pin.number < 0 || pin.number >= pins) {
    return Failure{program_messages::pinIsNoOutput(pin.action, pins)};
  }
  return Done{};
}

// Leaves nothing but the action, what feeds it, and a sink that takes its rows.
Status<QString> replaceReaders(Graph& graph, const QString& given, RowTaker& taker) {
  const Pin pin = pinOf(graph, given);
  if (const auto status = checkPin(graph, pin); !status) {
    return Failure{GraphError{graph.file, {}, status.error()}.text()};
  }
  graph.keepOnly(GraphLinks(graph).withUpstream({graph.indexOf(pin.action)}));
  const int action = graph.indexOf(pin.action);
  const int sink = static_cast<int>(graph.actions.size());
  GraphAction& added = graph.actions.emplace_back();
  added.item = std::make_unique<TakenRows>(XMLNode::emptyNode(), graph.settings.get(), taker);
  graph.links.push_back({.from = action, .fromPin = pin.number, .to = sink, .toPin = 0});
  return Done{};
}

}  // namespace

void Preview::addTo(CLI::App& command) {
  CLI::Option* option =
      command.add_option("--preview", pin, "show the first rows of this output, and write nothing")
          ->type_name("ACTION[:PIN]");
  command.add_option("-n,--rows", rows, "how many rows --preview shows")
      ->check(CLI::Range(std::int64_t{0}, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N")
      ->needs(option)
      ->capture_default_str();
  form.addTo(command);
  command.get_option("--format")->needs(option);
}

ExitStatus showPreview(GraphArguments arguments, const Preview& preview) {
  FirstRows taker(preview.form.format(), preview.rows);
  arguments.prepare = [&](Graph& graph) {
    return replaceReaders(graph, QString::fromStdString(preview.pin), taker);
  };
  return workOnGraph(
      arguments, runGraph,
      [&taker](const GraphArguments&, const RunResult&, Console&) { taker.finish(); }, jsonOf);
}

}  // namespace kelvarin
