// The first lines of a file as they stand in it, with separators, quotes and line ends marked.
//
// Threads: the user-interface thread.
#pragma once

#include <vector>

#include <QPlainTextEdit>

#include "gui/host_editors/csv_raw_lines.h"

namespace kelvarin {

class CsvRawView : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit CsvRawView(QWidget* parent = nullptr);

  void setLines(std::vector<CsvRawLine> lines);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  class Highlighter;

  Highlighter* m_highlighter;
};

}  // namespace kelvarin
