// The journal of an exchange: which files of a new table take which names, and which files of the
// old table go.
//
// A table is several files, which cannot change their names at one moment. The journal can appear
// at one moment; from then on the new table is the table, and whoever comes by carries out what is
// left of the list, as often as needed. It lies beside the main file and holds names without
// folders, so that a folder may be moved or copied at any time.
// Layout: docs/gel-format.md, "Exchange". Used by table_exchange.h.  Threads: plain values.
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
// Nothing: the bytes are not those of a journal, or are damaged.
std::optional<ExchangeJournal> decodedJournal(Bytes bytes);

}  // namespace kelvarin
