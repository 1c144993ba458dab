#include "library/tables/table_writing.h"

#include <utility>

#include "library/runs/graph_text.h"
#include "library/runs/installation.h"

namespace kelvarin {

namespace {

Outcome<Graph> graphOf(const QString& path, const TableSettings& settings,
                       const ActionCatalogue& catalogue) {
  constexpr int kSetForEachColumn = 2;
  GraphText graph;
  graph.openAction(u"InlineTable", u"stream");
  graph.close();
  graph.openAction(u"writeColumnarGel", u"table");
  graph.attribute(u"file", path);
  graph.attribute(u"replaceAtEnd", 1);
  graph.attribute(u"alwaysDelete", 1);  // no rows replace the old ones, too
  graph.attribute(u"nRowsInBlock", settings.rowsInBlock);
  graph.attribute(u"columnStrategy", settings.separatesColumns ? kSetForEachColumn : 0);
  graph.attribute(u"createDir", settings.createsFolder ? 1 : 0);
  graph.attribute(u"split", settings.split);
  if (settings.split == KELVARIN_SPLIT_BY_SIZE) {
    graph.attribute(u"segmentSize", QString::number(settings.splitMebibytes, 'g', 17));
  }
  if (settings.split == KELVARIN_SPLIT_BY_VALUE) {
    graph.attribute(u"splitVar", settings.splitColumn);
  }
  graph.close();
  return graph.parse(catalogue);
}

}  // namespace

Outcome<long long> writeTable(const QString& path, InputStream stream,
                              const TableSettings& settings) {
  const auto catalogue = installedActions();
  if (!catalogue) {
    return Failure{catalogue.error()};
  }
  auto graph = graphOf(path, settings, **catalogue);
  if (!graph) {
    return Failure{graph.error()};
  }
  if (const auto bound = bindInput(*graph, 0, std::move(stream), settings.input); !bound) {
    return Failure{bound.error()};
  }
  ExecutionOptions options;
  options.progress = progressCall(settings.progress);
  const auto result = runToEnd(*graph, settings.work, options);
  if (!result) {
    return Failure{result.error()};
  }
  return result->actions.back().rowsIn.front();
}

}  // namespace kelvarin
