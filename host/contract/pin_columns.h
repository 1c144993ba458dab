// The columns of a pin's rows, as far as they are known without a run.
//
// Editors ask for those of an input pin with columnsOfInputPin() (host_services.h); checks list
// those of output pins.
#pragma once

#include <vector>

#include <QString>

#include "host/contract/meta_info.h"

namespace kelvarin {

struct PinColumns {
  struct Column {
    QString name;
    MetaTypeColumn meta = MetaTypeColumn::text;
    bool operator==(const Column&) const = default;
  };
  // Both: they are those of an older version of the graph, until the new ones are there. Neither:
  // they cannot be known.
  bool isKnown = false;
  bool isBeingComputed = false;
  quint64 version = 0;  // of the graph for which they were computed; 0 where nobody counts
  std::vector<Column> columns;
  QString whyUnknown;  // for the user; may be empty
};

}  // namespace kelvarin
