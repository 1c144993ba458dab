// The files that the actions of one graph read and write, so that none writes what another reads
// or writes.
//
// Files are claimed for a graph before anything is written, and given back when the claim ends. A
// file is known by its folder, links followed, and its name, by what a link of that name leads to,
// and by its identity on the disk. Devices and pipes may be shared; standard output may not.
// Used by the sources and sinks of host/tables, the columnar actions, and the engine before a run.
// Threads: any.
#pragma once

#include <optional>

#include <QString>
#include <QStringList>

#include "base/export.h"
#include "host/files/file_user.h"
#include "host/contract/global_parameters.h"

class ActionItem;

namespace kelvarin {

class KELVARIN_CORE ClaimedNames {
 public:
  ClaimedNames() = default;
  ~ClaimedNames() { giveBack(); }
  ClaimedNames(const ClaimedNames&) = delete;
  ClaimedNames& operator=(const ClaimedNames&) = delete;

  // Nothing, or why the file cannot be had, which names both actions. What the same action has
  // claimed before is no hindrance.
  [[nodiscard]] std::optional<QString> claim(const ActionItem& action, const UsedFile& file);
  void giveBack();

  // The action will learn only from its rows which files it reads. Until readsAreKnown(), no file
  // that is there may be removed.
  void awaitReads(const ActionItem& action);
  void readsAreKnown();
  static bool areReadsAwaited(const GlobalParameters* graph);

 private:
  const GlobalParameters* m_graph = nullptr;
  const ActionItem* m_action = nullptr;
  QStringList m_keys;
  bool m_awaitsReads = false;
};

// Whether the name is that of the program's standard output.
KELVARIN_CORE bool isStandardOutput(const QString& path);

}  // namespace kelvarin
