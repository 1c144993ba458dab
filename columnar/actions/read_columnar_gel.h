// Reads columnar files and gives their rows.
//
// Its row work is not built yet: init() says so. Here are its settings, their XML and its pins.
// Threads: those of ActionItem.
#pragma once

#include "actions/frame/catalogued.h"
#include "columnar/actions/block_filter.h"
#include "host/contract/action_item.h"

namespace kelvarin {

struct ReadColumnarSettings {
  QString fileName = QStringLiteral("");  // read when the names do not come from the input pin
  bool fileNameFromPin = false;
  bool abortIfMissing = true;  // a missing file is an error; otherwise it is skipped with a warning
  bool accurateProgressBar = true;  // progress counts rows; otherwise files
  bool readIncompleteFile = false;
  bool skipCorruptedBlocks = false;
  bool filterRows = false;  // applies the block filter
  int blocksAhead = 2;
  int columnSelection =
      0;  // 0 all columns, 1 those of `columnsToRead`, 2 those named by an input pin
  int timeOutSeconds = 0;      // how long to wait for a missing file
  bool readAllColumns = true;  // when not set, columnSelection is 1
};

class ReadColumnarGel : public Catalogued<ReadColumnarGel, ActionItem> {
 public:
  ReadColumnarGel(XMLNode node, GlobalParameters* parameters);

  static const ActionDescription& catalogue();

  void saveXML(std::wostringstream& out, QString name) override;
  char init() override;
  void setComputeRoutine() override;

 private:
  ReadColumnarSettings m_settings;
  BlockFilter m_blockFilter;
  QStringList m_columnsToRead;
};

}  // namespace kelvarin
