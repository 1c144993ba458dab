// What the file `case.xml` of a test says about it.
#pragma once

#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/result.h"
#include "host/engine/graph_reader.h"

namespace kelvarin {

// How a file is compared with what is expected.
struct ComparedFile {
  QString file;  // below the graph's folder; empty: those that no other line names
  double tolerance = 0.0;
  bool isOrderFree = false;
};

struct CaseSettings {
  std::vector<ParameterOverride> parameters;
  QString seed;  // as `kelvarin run` has them; empty: not given
  QString now;
  std::vector<ComparedFile> comparisons;
  QStringList messages;            // texts that the run's messages must have
  std::optional<QString> failure;  // the run must fail, with this text in its messages

  ComparedFile comparisonOf(const QString& file) const;
};

// Those of a test without the file where it is absent. The error has file and position.
Result<CaseSettings, QString> readCaseSettings(const QString& folder);

}  // namespace kelvarin
