// Rows of a preview as text: for the clipboard with tabs, which spreadsheets take apart right, and
// as CSV.
//
// Missing values are empty; an empty text is a pair of quotes in CSV, which has both.
// Threads: any; the values may come from the disk.
#pragma once

#include <functional>
#include <optional>

#include <QByteArray>

#include "gui/preview/background_queue.h"
#include "gui/preview/preview_rows.h"

namespace kelvarin {

enum class TextFormat { tabs, csv };

struct RowTextRequest {
  TextFormat format = TextFormat::tabs;
  bool hasHeader = true;
  std::vector<int> columns;
  // Rows of the view.
  long long first = 0;
  long long end = 0;
  std::shared_ptr<const RowNumbers> order;  // null: as they came
};

// In UTF-8, piece by piece. `write` returns false to end it. False where it was ended, stopped, or
// values cannot be read.
bool writeRowTexts(const PreviewRows& rows, const RowTextRequest& request,
                   const StopFlag& isStopped, const std::function<bool(const QByteArray&)>& write);

}  // namespace kelvarin
