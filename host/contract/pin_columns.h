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
  bool isKnown = false;
  std::vector<Column> columns;
  QString whyUnknown;  // for the user; may be empty
};

}  // namespace kelvarin
