// Reading a table: a graph of the action that reads columnar files and a stream.
#include <algorithm>
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
  auto whole = settings.isGathered
                   ? std::make_shared<WholeColumns>(mostRowsOf(settings.part), settings.form.texts)
                   : nullptr;
  if (auto* source = dynamic_cast<PartialSource*>(graph->actions.front().item.get())) {
    TablePart part = settings.part;
    part.targets = whole;
    source->readOnly(part);
  }
  return PulledStream::open(std::move(*graph), settings.work, settings.form, 0, std::move(whole));
}

// A block filter may leave some of them out.
std::size_t ColumnarTable::mostRowsOf(const TablePart& part) const {
  std::size_t rows = 0;
  const std::size_t end = std::min<std::uint64_t>(part.endBlock, m_blocks.size());
  for (std::size_t i = part.firstBlock; i < end; ++i) {
    const Block& block = m_blocks[i];
    const std::uint64_t first = std::max(block.firstRow, part.firstRow);
    const std::uint64_t last = std::min(block.firstRow + block.rows, part.endRow);
    rows += last > first ? last - first : 0;
  }
  return rows;
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
