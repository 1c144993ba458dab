// The files that the actions of a graph read and write, so that none writes what another reads or
// writes.
//
// Files are claimed before anything is written, and given back when the claim ends. A file is known
// by its folder, links followed, and its name, by what a link of that name leads to, and by its
// identity on the disk. Devices and pipes may be shared; the standard streams may not.
// Graphs that run side by side in one process have claims of their own. What one of them writes, no
// other may write meanwhile; what it reads is found by the other as between two processes: whole,
// for files appear under their names when they are complete. Used by the sources and sinks of
// host/tables, the columnar actions, and the engine before a run.
// Threads: any.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>
#include <QStringList>

#include "base/export.h"
#include "host/contract/file_user.h"

class ActionItem;

namespace kelvarin {

// All claims of one graph.
class KELVARIN_CORE FileClaims {
 public:
  FileClaims();
  ~FileClaims();
  FileClaims(const FileClaims&) = delete;
  FileClaims& operator=(const FileClaims&) = delete;

  // Claims the file until the end. Nothing, or why it cannot be had, which names both actions. What
  // the same action has claimed before is no hindrance.
  [[nodiscard]] std::optional<QString> add(const ActionItem& action, const UsedFile& file);

 private:
  friend class ClaimedNames;
  class Table;
  std::shared_ptr<Table> m_table;  // with the names that are claimed in it
};

// What one action has claimed in the session of the thread that claims.
class KELVARIN_CORE ClaimedNames {
 public:
  ClaimedNames() = default;
  ~ClaimedNames() { giveBack(); }
  ClaimedNames(const ClaimedNames&) = delete;
  ClaimedNames& operator=(const ClaimedNames&) = delete;

  // As FileClaims::add(), until giveBack(). Of a file to be written it may also be an action of
  // another graph that has it.
  [[nodiscard]] std::optional<QString> claim(const ActionItem& action, const UsedFile& file);
  void giveBack();

  // The action will learn only from its rows which files it reads. Until readsAreKnown(), no file
  // that is there may be removed by the actions of its graph.
  void awaitReads();
  void readsAreKnown();
  static bool areReadsAwaited();

 private:
  struct Entries {
    std::shared_ptr<FileClaims::Table> table;
    const ActionItem* action;
    QStringList keys;
  };
  // The graphs of a process share one file system, so this table is theirs together.
  static const std::shared_ptr<FileClaims::Table>& writtenByAllGraphs();
  void giveBackAfter(std::size_t count);

  std::vector<Entries> m_entries;
  std::shared_ptr<FileClaims::Table> m_awaiting;  // null: all reads are known
};

}  // namespace kelvarin
