// The files that the actions of one graph write, so that no two write the same one.
//
// Names are claimed for a graph and given back when the claim ends. Used by writeColumnarGel.
// Threads: any.
#pragma once

#include <QString>
#include <QStringList>

#include "host/contract/global_parameters.h"

namespace kelvarin {

class ClaimedNames {
 public:
  ClaimedNames() = default;
  ~ClaimedNames() { giveBack(); }
  ClaimedNames(const ClaimedNames&) = delete;
  ClaimedNames& operator=(const ClaimedNames&) = delete;

  // False when another claim on the same graph holds the name. Claiming twice is no collision.
  [[nodiscard]] bool claim(const GlobalParameters* graph, const QString& name);
  void giveBack();

 private:
  const GlobalParameters* m_graph = nullptr;
  QStringList m_names;
};

}  // namespace kelvarin
