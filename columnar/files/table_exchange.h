// Puts a new table in the place of an old one, at one moment as far as anybody can see.
//
// The new table is written in the same folder, as a table whose main file is replacementFile().
// When it is whole and on the disk, exchangeTable() writes the journal and carries it out. A process
// that is killed before the journal appears leaves the old table, and files that the next writer
// removes; one that is killed afterwards leaves the new one: whoever opens the table next carries
// out the rest, and who may not change the folder reads the files from where they are.
// Used by: the writing action, GelFile. Layout: docs/gel-format.md, "Exchange".
// Threads: any.  Errors: enums; errno says why.
#pragma once

#include <optional>
#include <string>

#include "columnar/files/exchange_journal.h"

namespace kelvarin {

// The main file of the table that is to take the place of `mainFile`.
std::string replacementFile(const std::string& mainFile);
std::string journalFile(const std::string& mainFile);

enum class OpenExchange {
  none,        // or it is carried out now
  unfinished,  // the folder cannot be changed; the new table counts
  damaged      // its journal cannot be read, so nobody knows which files belong together
};

// Carries out what is left of an exchange. The caller holds the FolderLock.
OpenExchange finishExchange(const std::string& mainFile);
// The same for who only reads: takes the FolderLock itself, and only where there is something to
// do.
OpenExchange finishExchangeBeforeReading(const std::string& mainFile);

// Begins the exchange and carries it out; everything of the new table is on the disk. False: the old
// table is as it was, or, when its journal has appeared, the rest is left to the next.  The caller
// holds the FolderLock, and no exchange is open.
[[nodiscard]] bool exchangeTable(const std::string& mainFile);

// Where the files of a table lie while an exchange is open.
class TableLocation {
 public:
  // Nothing special, in nearly all cases.
  TableLocation() = default;
  // Nothing: the journal is damaged.
  static std::optional<TableLocation> of(const std::string& mainFile);

  // Where to open what belongs under this name.
  std::string pathOf(const std::string& file) const;
  bool isMoved() const { return m_journal.has_value(); }

 private:
  std::optional<ExchangeJournal> m_journal;
};

}  // namespace kelvarin
