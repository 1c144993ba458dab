// The journal of an exchange: how the files of the new table are renamed, and which files of the
// old table are removed.
//
// A table is several files, which cannot be renamed atomically. The journal appears atomically:
// from then on the new table is valid, and every process that opens the table carries out the rest
// of the list, as often as needed. The journal is in the folder of the main file and has names
// without folders, so that the folder may be moved or copied at any time. Used by table_exchange.h.
// Layout: docs/gel-format.md, "Exchange".
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/byte_cursor.h"

namespace kelvarin {

struct ExchangeJournal {
  std::vector<std::string> removed;                        // of the old table
  std::vector<std::pair<std::string, std::string>> moves;  // the new table: from, to

  bool operator==(const ExchangeJournal&) const = default;
};

std::vector<unsigned char> encoded(const ExchangeJournal& journal);
// Nothing: the bytes are no journal, or are damaged.
std::optional<ExchangeJournal> decodedJournal(Bytes bytes);

}  // namespace kelvarin
