// Rows that a preview shows: random access for what is on the screen, and whole columns for
// profiles, filters, sorting and copies.
//
// Threads: value() and setListener() on the user-interface thread; all else on any. Rows are only
// ever added, and those that are there do not change.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "host/contract/pin_columns.h"

namespace kelvarin {

// Numbers of rows, in the order in which a view shows them.
using RowNumbers = std::vector<std::uint32_t>;

// A value as a row holds it (host/contract/column_bytes.h).
struct PreviewValue {
  bool isThere = true;  // false: it comes from the disk, and the listener is called
  const unsigned char* bytes = nullptr;  // null: missing
  std::shared_ptr<const void> owner;     // keeps the bytes
};

class PreviewRows {
 public:
  using Columns = std::vector<PinColumns::Column>;
  // Returns false to end the visit.
  using Visitor = std::function<bool(long long row, const unsigned char* bytes)>;

  virtual ~PreviewRows() = default;

  virtual const Columns& columns() const = 0;
  virtual long long rowCount() const = 0;
  // Never waits for the disk.
  virtual PreviewValue value(long long row, int column) = 0;
  // Called on any thread when values have come from the disk; an empty one ends that for good.
  virtual void setListener(std::function<void()> listener) = 0;

  // The values of a column in the rows from `first` to before `end`, in their order. May wait for
  // the disk. False where the visitor ended it or the values cannot be read.
  virtual bool visit(int column, long long first, long long end, const Visitor& visitor) const = 0;
  // The same in an order of one's own.
  virtual bool visit(int column, std::span<const std::uint32_t> rows,
                     const Visitor& visitor) const = 0;
};

}  // namespace kelvarin
