// Reading a table: a graph of the action that reads columnar files and a stream.
#include <set>

#include "base/usable_processors.h"
#include "expression/tokens/expression_tokens.h"
#include "library/runs/installation.h"
#include "library/tables/columnar_table.h"

namespace kelvarin {

namespace {

// While one block is decoded, the rows of another one wait to be pulled.
constexpr int kBlocksForAThread = 2;

std::set<QString> namesIn(const QString& expression) {
  std::set<QString> names;
  const ExpressionTokens tokens(expression);
  for (const Token& token : tokens) {
    if (token.kind == TokenKind::name) {
      names.insert(tokens.text(token).toString());
    }
  }
  return names;
}

}  // namespace

Outcome<std::unique_ptr<PulledStream>> ColumnarTable::scan(const ScanSettings& settings) const {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  auto graph = graphOf(settings, **catalogue);
  if (!graph) {
    return Failure{graph.error()};
  }
  if (auto* source = dynamic_cast<PartialSource*>(graph->actions.front().item.get())) {
    source->readOnly(settings.part);
  }
  return PulledStream::open(std::move(*graph), settings.work, settings.form);
}

Outcome<Graph> ColumnarTable::graphOf(const ScanSettings& settings,
                                      const ActionCatalogue& catalogue) const {
  GraphText graph;
  graph.openAction(u"ReadColumnarGel", u"table");
  graph.attribute(u"fileName", m_path);
  graph.attribute(u"readIncompleteFile", m_acceptsIncomplete ? 1 : 0);
  graph.attribute(u"skipCorruptedBlocks", settings.skipsDamage ? 1 : 0);
  const int threads = settings.work.threads > 0 ? settings.work.threads : usableProcessors();
  graph.attribute(u"nBlockForward", kBlocksForAThread * threads);
  graph.attribute(u"filterRows", settings.blockFilter.isEmpty() ? 0 : 1);
  graph.attribute(u"columnSelection", settings.columns ? 1 : 0);
  if (!settings.blockFilter.isEmpty()) {
    appendFilter(settings.blockFilter, graph);
  }
  if (settings.columns) {
    graph.open(u"ColumnsToRead");
    graph.open(u"SL");
    for (const QString& column : *settings.columns) {
      graph.open(u"S");
      graph.name(column);
      graph.close();
    }
    graph.close();
    graph.close();
  }
  graph.close();
  graph.openAction(u"Discard", u"stream");
  graph.close();
  return graph.parse(catalogue);
}

// The statistics that the filter names are its variables.
void ColumnarTable::appendFilter(const QString& filter, GraphText& graph) const {
  const std::set<QString> names = namesIn(filter);
  graph.open(u"CFilterRows");
  graph.open(u"Expression");
  graph.text(filter);
  graph.close();
  graph.open(u"InputVars");
  for (const Column& column : m_columns) {
    const QString name = QString::fromStdString(column.name);
    if (names.contains(name + QStringLiteral("_max")) ||
        names.contains(name + QStringLiteral("_min")) ||
        names.contains(name + QStringLiteral("_hasNull"))) {
      graph.open(u"CInputVar");
      graph.attribute(u"column", name);
      graph.attribute(u"isNumber", column.type == MetaTypeColumn::text ? 0 : 1);
      graph.close();
    }
  }
  graph.close();
  graph.close();
}

}  // namespace kelvarin
