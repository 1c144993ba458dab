// The action whose rows come from an Arrow stream; it replaces a source of a graph.
//
// Threads and errors: those of ReaderSource.
#pragma once

#include <optional>
#include <vector>

#include "host/tables/files/reader_source.h"
#include "library/arrow_streams/stream_reader.h"
#include "library/errors/error_details.h"

namespace kelvarin {

class StreamSource final : public Described<StreamSource, ReaderSource> {
 public:
  // Has the name that the element of the replaced action says.
  StreamSource(XMLNode node, GlobalParameters* parameters) : Described(node, parameters) {}

  static const ActionDescription& catalogue();

  // Before the run, which is the only one.
  void setStream(InputStream stream, InputSettings settings);
  Result<std::unique_ptr<BatchReader>, QString> makeReader() override;

 protected:
  Result<QVector<SortInfos>, QString> declaredOrder(const PinOutMetaData& columns) const override;

 private:
  std::optional<InputStream> m_stream;
  InputSettings m_settings;
};

// Replaces the action, which must read no rows itself, by a source of the stream's rows.
Status<ErrorDetails> bindInput(Graph& graph, int action, InputStream stream,
                               InputSettings settings);

}  // namespace kelvarin
