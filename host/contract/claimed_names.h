// The files that the actions of one graph write, so that no two write the same one.
//
// Names are claimed for a graph before anything is written, and given back when the claim ends.
// Used by the sinks of host/tables and by writeColumnarGel. Threads: any.
#pragma once

#include <QString>
#include <QStringList>

#include "host/contract/export.h"
#include "host/contract/global_parameters.h"

namespace kelvarin {

class KELVARIN_CORE ClaimedNames {
 public:
  ClaimedNames() = default;
  ~ClaimedNames() { giveBack(); }
  ClaimedNames(const ClaimedNames&) = delete;
  ClaimedNames& operator=(const ClaimedNames&) = delete;

  // False when another claim on the same graph holds the name. Claiming twice is no collision.
  [[nodiscard]] bool claim(const GlobalParameters* graph, const QString& name);
  void giveBack();

  // One name for every way to write a path.
  static QString nameOf(const QString& path);

 private:
  const GlobalParameters* m_graph = nullptr;
  QStringList m_names;
};

}  // namespace kelvarin
