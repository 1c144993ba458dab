// `kelvarin run --preview`: the first rows of an output of a graph, and nothing is written.
//
// Used by: run_command.cpp.
#pragma once

#include <string>

#include "cli/first_rows.h"
#include "cli/graph_session.h"

namespace kelvarin {

struct Preview {
  std::string pin;  // ACTION or ACTION:PIN; empty: none was asked for
  std::int64_t rows = 10;
  RowFormatOption form;

  // --preview, -n and --format.
  void addTo(CLI::App& command);
};

ExitStatus showPreview(GraphArguments arguments, const Preview& preview);

}  // namespace kelvarin
