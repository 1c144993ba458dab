// Forms of graph files that are still read and that nothing writes any more, and the same in
// today's form.
#pragma once

#include <QString>
#include <QStringList>

#include "host/engine/action_catalogue.h"

namespace kelvarin {

struct UpgradedGraph {
  QString document;
  QStringList changes;  // one line each, in the order of the file; empty: nothing was older
};

// The document was parsed before; its lines end with LF. What is not older stays as it is.
UpgradedGraph upgraded(const QString& document, const ActionCatalogue& catalogue);

}  // namespace kelvarin
