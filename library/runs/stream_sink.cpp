#include "library/runs/stream_sink.h"

#include <utility>

#include "library/runs/messages.h"

namespace kelvarin {

TableColumns tableColumnsOf(const OneRow& row) {
  TableColumns columns;
  for (int i = 0; i < row.sz(); ++i) {
    columns.names.append(row.colName(i));
    columns.types.push_back(row.getMetaType(i));
  }
  return columns;
}

const ActionDescription& StreamSink::catalogue() {
  static const ActionDescription entry{.typeName = "ArrowStreamOutput",
                                       .toolTip = "Rows go to an Arrow stream"};
  return entry;
}

StreamSink::StreamSink(XMLNode node, GlobalParameters* parameters) : Described(node, parameters) {
  m_inputPinCount = 1;
  m_outputPinCount = 0;
}

void StreamSink::setReceiver(std::shared_ptr<BatchReceiver> receiver, const BatchForm& form) {
  m_receiver = std::move(receiver);
  m_encoder = std::make_unique<ArrowBatchEncoder>(form);
}

void StreamSink::gatherIn(std::shared_ptr<WholeColumns> columns, const BatchForm& form) {
  m_whole.emplace(std::move(columns), form.texts);
}

bool StreamSink::takeFirstBatch(ActionItem* action) {
  auto& self = static_cast<StreamSink&>(*action);
  TakenBatch taken = self.getNextBatchFromInPin(0);
  if (const OneRow* columns = self.announcedColumnsOfInPin(0)) {
    const TableColumns announced = tableColumnsOf(*columns);
    if (self.m_whole) {
      self.m_whole->begin(announced);
    }
    self.m_receiver->begin(announced);
  }
  self.computeRoutine = &StreamSink::takeBatch;
  return self.take(std::move(taken));
}

bool StreamSink::takeBatch(ActionItem* action) {
  return static_cast<StreamSink&>(*action).take(action->getNextBatchFromInPin(0));
}

// True: it has finished.
bool StreamSink::take(TakenBatch taken) {
  if (taken.batch == nullptr) {
    if (run() == nullptr || run()->isRunning()) {
      if (m_whole) {
        m_receiver->take(m_whole->end());
      }
      m_receiver->end();
    }
    return true;
  }
  return !m_receiver->take(arraysOf(std::move(taken)));
}

std::vector<OwnedArray> StreamSink::arraysOf(TakenBatch taken) {
  if (m_whole) {
    return m_whole->take(*taken.batch, std::move(taken.encoded));
  }
  if (taken.encoded == nullptr) {
    taken.encoded = m_encoder->encode(*taken.batch);
  }
  return std::move(static_cast<ArrowBatch&>(*taken.encoded).arrays);
}

Status<ErrorDetails> bindOutput(Graph& graph, int action, std::shared_ptr<BatchReceiver> receiver,
                                const BatchForm& form, std::shared_ptr<WholeColumns> whole) {
  std::unique_ptr<ActionItem>& item = graph.actions[static_cast<std::size_t>(action)].item;
  if (item->outputPinCount() != 0) {
    return Failure{errorOf(KELVARIN_WRONG_ARGUMENT, library_messages::noSink(item->name()))};
  }
  auto sink = std::make_unique<StreamSink>(item->node(), graph.settings.get());
  sink->setReceiver(std::move(receiver), form);
  if (whole != nullptr) {
    sink->gatherIn(std::move(whole), form);
  }
  item = std::move(sink);
  return Done{};
}

}  // namespace kelvarin
