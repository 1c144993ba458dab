// Replaces a table by a new one atomically.
//
// The new table is written in the same folder, as a table whose main file is replacementFile().
// When it is whole and on the disk, exchangeTable() writes the journal and carries it out. A
// process that is killed before the journal appears leaves the old table, and files that the next
// writer removes. One that is killed afterwards leaves the new table: the next process that opens
// it carries out the rest, or reads the files under their current names if it may not change the
// folder.
// Used by the writing action and GelFile.
// Layout: docs/gel-format.md, "Exchange".
// Threads: any.
// Errors: enums; errno says why.
#pragma once

#include <optional>
#include <string>

#include "columnar/files/exchange_journal.h"

namespace kelvarin {

// The main file of the table that will replace `mainFile`.
std::string replacementFile(const std::string& mainFile);
std::string journalFile(const std::string& mainFile);

enum class OpenExchange {
  none,        // none was open, or it has been carried out
  unfinished,  // the folder cannot be changed; the new table is valid
  damaged      // its journal cannot be read, so it is unknown which files belong together
};

// Carries out the rest of an exchange. The caller holds the FolderLock.
OpenExchange finishExchange(const std::string& mainFile);
// The same for readers: takes the FolderLock itself, and only if an exchange is open.
OpenExchange finishExchangeBeforeReading(const std::string& mainFile);

// Begins the exchange and carries it out. The new table is on the disk, the caller holds the
// FolderLock, and no exchange is open. False: the old table is unchanged or, when the journal has
// appeared, the next process carries out the rest.
[[nodiscard]] bool exchangeTable(const std::string& mainFile);

// The paths of a table's files, also while an exchange is open.
class TableLocation {
 public:
  // No exchange is open.
  TableLocation() = default;
  // Nothing: the journal is damaged.
  static std::optional<TableLocation> of(const std::string& mainFile);

  // The path under which `file` is found now.
  std::string pathOf(const std::string& file) const;
  bool isMoved() const { return m_journal.has_value(); }

 private:
  std::optional<ExchangeJournal> m_journal;
};

}  // namespace kelvarin
