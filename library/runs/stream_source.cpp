#include "library/runs/stream_source.h"

#include <algorithm>
#include <utility>

#include "library/runs/messages.h"

namespace kelvarin {

const ActionDescription& StreamSource::catalogue() {
  static const ActionDescription entry{.typeName = "ArrowStream",
                                       .toolTip = "Rows of an Arrow stream"};
  return entry;
}

void StreamSource::setStream(InputStream stream, InputSettings settings) {
  m_stream.emplace(std::move(stream));
  m_settings = std::move(settings);
}

Result<std::unique_ptr<BatchReader>, QString> StreamSource::makeReader() {
  return std::unique_ptr<BatchReader>(
      std::make_unique<StreamReader>(std::move(*m_stream), m_settings));
}

Result<QVector<SortInfos>, QString> StreamSource::declaredOrder(
    const PinOutMetaData& columns) const {
  QVector<SortInfos> order;
  for (const InputSettings::SortColumn& sorted : m_settings.sortedBy) {
    const int index = columns.indexOf(sorted.name);
    if (index < 0) {
      return Failure{library_messages::unknownSortColumn(sorted.name)};
    }
    const bool isText = fixedSizeOf(columns.metas()[index].type()) == 0;
    const SortType ascending = isText ? SortType::textAscending : SortType::numberAscending;
    const SortType descending = isText ? SortType::textDescending : SortType::numberDescending;
    order.append(SortInfos(index, sorted.isDescending ? descending : ascending));
  }
  return order;
}

Status<ErrorDetails> bindInput(Graph& graph, int action, InputStream stream,
                               InputSettings settings) {
  std::unique_ptr<ActionItem>& item = graph.actions[static_cast<std::size_t>(action)].item;
  const bool isLinked =
      std::ranges::any_of(graph.links, [&](const GraphLink& link) { return link.to == action; });
  if (isLinked || item->outputPinCount() != 1) {
    return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::noSource(item->name()))};
  }
  auto source = std::make_unique<StreamSource>(item->node(), graph.settings.get());
  source->setStream(std::move(stream), std::move(settings));
  item = std::move(source);
  return Done{};
}

}  // namespace kelvarin
